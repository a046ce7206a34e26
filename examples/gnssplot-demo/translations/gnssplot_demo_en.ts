<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DemoTexts</name>
    <message numerus="yes">
        <source>%n mark(s)</source>
        <translation>
            <numerusform>%n mark</numerusform>
            <numerusform>%n marks</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s)</source>
        <translation>
            <numerusform>%n satellite</numerusform>
            <numerusform>%n satellites</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n action(s)</source>
        <translation>
            <numerusform>%n action</numerusform>
            <numerusform>%n actions</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No marks (%n action(s)). Drag over the bars to mark epochs.</source>
        <translation>
            <numerusform>No marks (%n action). Drag over the bars to mark epochs.</numerusform>
            <numerusform>No marks (%n actions). Drag over the bars to mark epochs.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) recomputed</source>
        <translation>
            <numerusform>%n satellite recomputed</numerusform>
            <numerusform>%n satellites recomputed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) fewer</source>
        <translation>
            <numerusform>%n curve sample fewer</numerusform>
            <numerusform>%n curve samples fewer</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) more</source>
        <translation>
            <numerusform>%n curve sample more</numerusform>
            <numerusform>%n curve samples more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve(s) hidden</source>
        <translation>
            <numerusform>%n curve hidden</numerusform>
            <numerusform>%n curves hidden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n satellite(s) enabled</source>
        <translation>
            <numerusform>%1 of %n satellite enabled</numerusform>
            <numerusform>%1 of %n satellites enabled</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</source>
        <translation>
            <numerusform>%n satellite with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</numerusform>
            <numerusform>%n satellites with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but never both phases at one epoch: no multipath to show.</source>
        <translation>
            <numerusform>%n satellite with code and phase on two bands, but never both phases at one epoch: no multipath to show.</numerusform>
            <numerusform>%n satellites with code and phase on two bands, but never both phases at one epoch: no multipath to show.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: file ends inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>line %1: file ends inside %2; %n complete epoch kept</numerusform>
            <numerusform>line %1: file ends inside %2; %n complete epochs kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early, inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>line %1: the compressed data ends early, inside %2; %n complete epoch kept</numerusform>
            <numerusform>line %1: the compressed data ends early, inside %2; %n complete epochs kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>line %1: the compressed data ends early; %n complete epoch kept</numerusform>
            <numerusform>line %1: the compressed data ends early; %n complete epochs kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The navigation has no ephemeris for any of the %n observed satellite(s).</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No ephemeris for %n satellite(s): %1.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n h</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n min</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n s</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Navigation: %n file(s) read</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
</context>
</TS>
