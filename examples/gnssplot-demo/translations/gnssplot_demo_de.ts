<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: MIT -->
<TS version="2.1" language="de">
<context>
    <name>DemoTexts</name>
    <message>
        <source>%1 on %2, %3</source>
        <translation>%1 auf %2, %3</translation>
    </message>
    <message numerus="yes">
        <source>%n mark(s)</source>
        <translation>
            <numerusform>%n Markierung</numerusform>
            <numerusform>%n Markierungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s)</source>
        <translation>
            <numerusform>%n Satellit</numerusform>
            <numerusform>%n Satelliten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n action(s)</source>
        <translation>
            <numerusform>%n Aktion</numerusform>
            <numerusform>%n Aktionen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No marks (%n action(s)). Drag over the bars to mark epochs.</source>
        <translation>
            <numerusform>Keine Markierungen (%n Aktion). Ziehen Sie über die Balken, um Epochen zu markieren.</numerusform>
            <numerusform>Keine Markierungen (%n Aktionen). Ziehen Sie über die Balken, um Epochen zu markieren.</numerusform>
        </translation>
    </message>
    <message>
        <source>Applied: %1 (%2), %3, %4 ms.</source>
        <translation>Angewendet: %1 (%2), %3, %4 ms.</translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) recomputed</source>
        <translation>
            <numerusform>%n Satellit neu berechnet</numerusform>
            <numerusform>%n Satelliten neu berechnet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) fewer</source>
        <translation>
            <numerusform>%n Kurvenpunkt weniger</numerusform>
            <numerusform>%n Kurvenpunkte weniger</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) more</source>
        <translation>
            <numerusform>%n Kurvenpunkt mehr</numerusform>
            <numerusform>%n Kurvenpunkte mehr</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve(s) hidden</source>
        <translation>
            <numerusform>%n Kurve ausgeblendet</numerusform>
            <numerusform>%n Kurven ausgeblendet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n satellite(s) enabled</source>
        <translation>
            <numerusform>%1 von %n Satellit aktiviert</numerusform>
            <numerusform>%1 von %n Satelliten aktiviert</numerusform>
        </translation>
    </message>
    <message>
        <source>No satellite has code and phase on two bands: no multipath to show.</source>
        <translation>Kein Satellit hat Code und Phase auf zwei Bändern: kein Mehrweg darzustellen.</translation>
    </message>
    <message>
        <source>The file holds no epochs: nothing to show.</source>
        <translation>Die Datei enthält keine Epochen: nichts darzustellen.</translation>
    </message>
</context>
</TS>
