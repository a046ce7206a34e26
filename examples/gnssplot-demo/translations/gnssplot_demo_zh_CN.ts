<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: MIT -->
<TS version="2.1" language="zh_CN">
<context>
    <name>DemoTexts</name>
    <message>
        <source>%1 on %2, %3</source>
        <translation>%2上的%1，%3</translation>
    </message>
    <message numerus="yes">
        <source>%n mark(s)</source>
        <translation>
            <numerusform>%n 个标记</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s)</source>
        <translation>
            <numerusform>%n 颗卫星</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n action(s)</source>
        <translation>
            <numerusform>%n 次操作</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No marks (%n action(s)). Drag over the bars to mark epochs.</source>
        <translation>
            <numerusform>没有标记（%n 次操作）。在条形上拖动以标记历元。</numerusform>
        </translation>
    </message>
    <message>
        <source>Applied: %1 (%2), %3, %4 ms.</source>
        <translation>已应用：%1（%2），%3，%4 毫秒。</translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) recomputed</source>
        <translation>
            <numerusform>重新计算了 %n 颗卫星</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) fewer</source>
        <translation>
            <numerusform>曲线点少了 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) more</source>
        <translation>
            <numerusform>曲线点多了 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve(s) hidden</source>
        <translation>
            <numerusform>隐藏了 %n 条曲线</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n satellite(s) enabled</source>
        <translation>
            <numerusform>%n 颗卫星中 %1 颗已启用</numerusform>
        </translation>
    </message>
    <message>
        <source>No satellite has code and phase on two bands: no multipath to show.</source>
        <translation>没有卫星在两个频段上同时有伪距和相位：没有可显示的多路径。</translation>
    </message>
    <message>
        <source>The file holds no epochs: nothing to show.</source>
        <translation>文件中没有历元：没有可显示的内容。</translation>
    </message>
</context>
</TS>
