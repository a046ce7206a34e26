<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AxisData</name>
    <message>
        <location filename="../model/AxisData.cpp" line="0"/>
        <source>Alloc memory failed.</source>
        <translation>Speicher konnte nicht reserviert werden.</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsScene</name>
    <message>
        <location filename="../graphics/CurveGraphicsScene.cpp" line="0"/>
        <source>m</source>
        <translation>m</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsTableWidget_Epoch</name>
    <message>
        <location filename="../epoch/CurveGraphicsTableWidget_Epoch.cpp" line="0"/>
        <source>Satellite</source>
        <translation>Satellit</translation>
    </message>
    <message>
        <location filename="../epoch/CurveGraphicsTableWidget_Epoch.cpp" line="0"/>
        <source>Remove the rect for erase.</source>
        <translation>Löschrechteck entfernen.</translation>
    </message>
</context>
</TS>
