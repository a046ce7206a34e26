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
    <message>
        <source>cycle slip</source>
        <translation>周跳</translation>
    </message>
    <message>
        <source>loss of lock</source>
        <translation>失锁</translation>
    </message>
    <message>
        <source>gap</source>
        <translation>数据缺失</translation>
    </message>
    <message>
        <source>event %1</source>
        <translation>事件 %1</translation>
    </message>
    <message>
        <source>Curve %1, F %2
Time %3 GPST</source>
        <translation>曲线 %1，F %2
时间 %3 GPST</translation>
    </message>
    <message>
        <source>Value %1 %2</source>
        <translation>数值 %1 %2</translation>
    </message>
    <message>
        <source>Event %1</source>
        <translation>事件 %1</translation>
    </message>
</context>
<context>
    <name>SkyGraphicsView</name>
    <message>
        <source>N</source>
        <translation>北</translation>
    </message>
    <message>
        <source>E</source>
        <translation>东</translation>
    </message>
    <message>
        <source>S</source>
        <translation>南</translation>
    </message>
    <message>
        <source>W</source>
        <translation>西</translation>
    </message>
    <message>
        <source>Satellite %1
Time %2 GPST
Azimuth %3
Elevation %4</source>
        <translation>卫星 %1
时间 %2 GPST
方位角 %3
高度角 %4</translation>
    </message>
    <message>
        <source>Value %1 %2</source>
        <translation>数值 %1 %2</translation>
    </message>
</context>
</TS>
