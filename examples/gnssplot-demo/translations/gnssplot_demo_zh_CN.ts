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
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</source>
        <translation>
            <numerusform>%n 颗卫星在两个频段上有伪距和相位，但每段弧都短于 %1 个历元：没有可显示的多路径。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but never both phases at one epoch: no multipath to show.</source>
        <translation>
            <numerusform>%n 颗卫星在两个频段上有伪距和相位，但两个相位从未出现在同一历元：没有可显示的多路径。</numerusform>
        </translation>
    </message>
    <message>
        <source>The file records no signal strength (no S observations): nothing to show in dB-Hz.</source>
        <translation>文件没有记录信号强度（没有 S 观测值）：没有可显示的 dB-Hz 数据。</translation>
    </message>
    <message numerus="yes">
        <source>line %1: file ends inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：文件在%2中结束；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early, inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：压缩数据提前结束，位于%2中；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：压缩数据提前结束；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message>
        <source>MP%1 = %2/%3 with %4</source>
        <translation>MP%1 = %2/%3 与 %4</translation>
    </message>
    <message>
        <source>The file could not be read: %1</source>
        <translation>无法读取文件：%1</translation>
    </message>
</context>
<context>
    <name>RinexReader</name>
    <message>
        <source>a line</source>
        <translation>一行</translation>
    </message>
    <message>
        <source>an event record</source>
        <translation>事件记录</translation>
    </message>
    <message>
        <source>a cycle-slip record</source>
        <translation>周跳记录</translation>
    </message>
    <message>
        <source>an epoch's satellite records</source>
        <translation>历元的卫星记录</translation>
    </message>
    <message>
        <source>an epoch's satellite list</source>
        <translation>历元的卫星列表</translation>
    </message>
    <message>
        <source>an epoch's observation records</source>
        <translation>历元的观测记录</translation>
    </message>
    <message>
        <source>an epoch (no receiver clock line)</source>
        <translation>历元（缺少接收机钟差行）</translation>
    </message>
</context>
</TS>
