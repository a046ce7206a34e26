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
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</source>
        <translation>
            <numerusform>%n Satellit mit Code und Phase auf zwei Bändern, aber jeder Bogen ist kürzer als %1 Epochen: kein Mehrweg darzustellen.</numerusform>
            <numerusform>%n Satelliten mit Code und Phase auf zwei Bändern, aber jeder Bogen ist kürzer als %1 Epochen: kein Mehrweg darzustellen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but never both phases at one epoch: no multipath to show.</source>
        <translation>
            <numerusform>%n Satellit mit Code und Phase auf zwei Bändern, aber nie beide Phasen in derselben Epoche: kein Mehrweg darzustellen.</numerusform>
            <numerusform>%n Satelliten mit Code und Phase auf zwei Bändern, aber nie beide Phasen in derselben Epoche: kein Mehrweg darzustellen.</numerusform>
        </translation>
    </message>
    <message>
        <source>The file records no signal strength (no S observations): nothing to show in dB-Hz.</source>
        <translation>Die Datei enthält keine Signalstärke (keine S-Beobachtungen): nichts in dB-Hz darzustellen.</translation>
    </message>
    <message numerus="yes">
        <source>line %1: file ends inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>Zeile %1: Die Datei endet innerhalb %2; %n vollständige Epoche behalten</numerusform>
            <numerusform>Zeile %1: Die Datei endet innerhalb %2; %n vollständige Epochen behalten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early, inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>Zeile %1: Die komprimierten Daten enden vorzeitig, innerhalb %2; %n vollständige Epoche behalten</numerusform>
            <numerusform>Zeile %1: Die komprimierten Daten enden vorzeitig, innerhalb %2; %n vollständige Epochen behalten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>Zeile %1: Die komprimierten Daten enden vorzeitig; %n vollständige Epoche behalten</numerusform>
            <numerusform>Zeile %1: Die komprimierten Daten enden vorzeitig; %n vollständige Epochen behalten</numerusform>
        </translation>
    </message>
    <message>
        <source>MP%1 = %2/%3 with %4</source>
        <translation>MP%1 = %2/%3 mit %4</translation>
    </message>
    <message>
        <source>The file could not be read: %1</source>
        <translation>Die Datei konnte nicht gelesen werden: %1</translation>
    </message>
</context>
<context>
    <name>RinexReader</name>
    <message>
        <source>a line</source>
        <translation>einer Zeile</translation>
    </message>
    <message>
        <source>an event record</source>
        <translation>eines Ereignisdatensatzes</translation>
    </message>
    <message>
        <source>a cycle-slip record</source>
        <translation>eines Cycle-Slip-Datensatzes</translation>
    </message>
    <message>
        <source>an epoch's satellite records</source>
        <translation>der Satellitendatensätze einer Epoche</translation>
    </message>
    <message>
        <source>an epoch's satellite list</source>
        <translation>der Satellitenliste einer Epoche</translation>
    </message>
    <message>
        <source>an epoch's observation records</source>
        <translation>der Beobachtungsdatensätze einer Epoche</translation>
    </message>
    <message>
        <source>an epoch (no receiver clock line)</source>
        <translation>einer Epoche (ohne Empfängeruhrzeile)</translation>
    </message>
</context>
</TS>
