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
    <name>CurveGraphicsView</name>
    <message>
        <source>Curve %1, F %2
Time %3 GPST
Value %4 m</source>
        <translation>曲线 %1，F %2
时间 %3 GPST
数值 %4 米</translation>
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
