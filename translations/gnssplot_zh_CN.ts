<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>AxisData</name>
    <message>
        <source>Alloc memory failed.</source>
        <translation>内存分配失败。</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsScene</name>
    <message>
        <source>m</source>
        <translation>米</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsTableWidget_Epoch</name>
    <message>
        <source>Satellite</source>
        <translation>卫星</translation>
    </message>
    <message>
        <source>Remove the rect for erase.</source>
        <translation>删除此擦除框。</translation>
    </message>
</context>
</TS>
