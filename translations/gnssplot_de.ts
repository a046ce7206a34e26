<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AxisData</name>
    <message>
        <source>Alloc memory failed.</source>
        <translation>Speicher konnte nicht reserviert werden.</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsScene</name>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsTableWidget_Epoch</name>
    <message>
        <source>Satellite</source>
        <translation>Satellit</translation>
    </message>
    <message>
        <source>Remove the rect for erase.</source>
        <translation>Löschrechteck entfernen.</translation>
    </message>
</context>
<context>
    <name>CurveGraphicsView</name>
    <message>
        <source>Curve %1, F %2
Time %3 GPST
Value %4 m</source>
        <translation>Kurve %1, F %2
Zeit %3 GPST
Wert %4 m</translation>
    </message>
    <message>
        <source>cycle slip</source>
        <translation>Phasensprung</translation>
    </message>
    <message>
        <source>loss of lock</source>
        <translation>Verlust der Signalverfolgung</translation>
    </message>
    <message>
        <source>gap</source>
        <translation>Lücke</translation>
    </message>
    <message>
        <source>event %1</source>
        <translation>Ereignis %1</translation>
    </message>
    <message>
        <source>Curve %1, F %2
Time %3 GPST</source>
        <translation>Kurve %1, F %2
Zeit %3 GPST</translation>
    </message>
    <message>
        <source>Value %1 %2</source>
        <translation>Wert %1 %2</translation>
    </message>
    <message>
        <source>Event %1</source>
        <translation>Ereignis %1</translation>
    </message>
</context>
<context>
    <name>SkyGraphicsView</name>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>E</source>
        <translation>O</translation>
    </message>
    <message>
        <source>S</source>
        <translation>S</translation>
    </message>
    <message>
        <source>W</source>
        <translation>W</translation>
    </message>
    <message>
        <source>Satellite %1
Time %2 GPST
Azimuth %3
Elevation %4</source>
        <translation>Satellit %1
Zeit %2 GPST
Azimut %3
Elevation %4</translation>
    </message>
    <message>
        <source>Value %1 %2</source>
        <translation>Wert %1 %2</translation>
    </message>
</context>
</TS>
