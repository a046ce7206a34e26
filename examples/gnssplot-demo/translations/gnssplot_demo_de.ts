<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>DemoTexts</name>
    <message>
        <source>%1 on %2, %3</source>
        <extracomment>The three parts are &quot;%n mark(s)&quot;, &quot;%n satellite(s)&quot; and &quot;%n action(s)&quot;.</extracomment>
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
    <message>
        <source>No navigation: open a broadcast navigation file (File &gt; Open navigation) to see where the satellites are.</source>
        <translation>Keine Navigationsdaten: Öffnen Sie eine Broadcast-Navigationsdatei (Datei &gt; Navigation öffnen), um zu sehen, wo die Satelliten stehen.</translation>
    </message>
    <message>
        <source>The observations give no approximate position: no azimuth or elevation.</source>
        <translation>Die Beobachtungen nennen keine Näherungsposition: kein Azimut und keine Elevation.</translation>
    </message>
    <message numerus="yes">
        <source>The navigation has no ephemeris for any of the %n observed satellite(s).</source>
        <translation>
            <numerusform>Die Navigationsdaten enthalten keine Ephemeride für den %n beobachteten Satelliten.</numerusform>
            <numerusform>Die Navigationsdaten enthalten für keinen der %n beobachteten Satelliten eine Ephemeride.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No ephemeris for %n satellite(s): %1.</source>
        <translation>
            <numerusform>Keine Ephemeride für %n Satellit: %1.</numerusform>
            <numerusform>Keine Ephemeride für %n Satelliten: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n h</source>
        <translation>
            <numerusform>%n h</numerusform>
            <numerusform>%n h</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message numerus="yes">
        <source>%n min</source>
        <translation>
            <numerusform>%n min</numerusform>
            <numerusform>%n min</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n s</source>
        <translation>
            <numerusform>%n s</numerusform>
            <numerusform>%n s</numerusform>
        </translation>
    </message>
    <message>
        <source>Wheel: zoom Y.  Ctrl+wheel: zoom time.  Drag the plot: pan.  Double-click: whole file (%1).  Drag over the bars: mark epochs.  F: fit Y.</source>
        <translation>Mausrad: Y zoomen.  Strg+Mausrad: Zeit zoomen.  Diagramm ziehen: verschieben.  Doppelklick: ganze Datei (%1).  Über die Balken ziehen: Epochen markieren.  F: Y anpassen.</translation>
    </message>
    <message numerus="yes">
        <source>Navigation: %n file(s) read</source>
        <translation>
            <numerusform>Navigation: %n Datei gelesen</numerusform>
            <numerusform>Navigation: %n Dateien gelesen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Multipath</name>
    <message>
        <source>The curve needs two Y axes.</source>
        <translation>Die Kurve braucht zwei Y-Achsen.</translation>
    </message>
</context>
<context>
    <name>PictureTexts</name>
    <message>
        <source>%1 code multipath MP1 in metres, %2 GPST</source>
        <translation>%1 Code-Mehrweg MP1 in Metern, %2 GPST</translation>
    </message>
    <message>
        <source>Code and phase of %1, phase of %2</source>
        <translation>Code und Phase von %1, Phase von %2</translation>
    </message>
    <message>
        <source>%1: epoch availability per band, %2 to %3 GPST</source>
        <translation>%1: Epochenverfügbarkeit je Band, %2 bis %3 GPST</translation>
    </message>
    <message>
        <source>%1: epoch availability per band: no epochs</source>
        <translation>%1: Epochenverfügbarkeit je Band: keine Epochen</translation>
    </message>
</context>
<context>
    <name>PlotQuantityTexts</name>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>dB-Hz</source>
        <translation>dB-Hz</translation>
    </message>
    <message>
        <source>satellites</source>
        <translation>Satelliten</translation>
    </message>
    <message>
        <source>Code multipath</source>
        <translation>Code-Mehrweg</translation>
    </message>
    <message>
        <source>Signal strength</source>
        <translation>Signalstärke</translation>
    </message>
    <message>
        <source>Satellites per epoch</source>
        <translation>Satelliten je Epoche</translation>
    </message>
    <message>
        <source>band %1</source>
        <translation>Band %1</translation>
    </message>
    <message>
        <source>Metres, each arc&apos;s mean removed; arcs end at cycle slips and gaps. F 1 shows MP1, F 2 MP2.</source>
        <translation>Meter, ohne den Mittelwert jedes Bogens; Bögen enden an Phasensprüngen und Lücken. F 1 zeigt MP1, F 2 MP2.</translation>
    </message>
    <message>
        <source>Carrier-to-noise density of each satellite&apos;s first two bands that record it. F 1 shows the first band, F 2 the second.</source>
        <translation>Träger-Rausch-Dichte der ersten beiden Bänder jedes Satelliten, die sie aufzeichnen. F 1 zeigt das erste Band, F 2 das zweite.</translation>
    </message>
    <message>
        <source>Satellites with a code or phase at each epoch, per system and in all.</source>
        <translation>Satelliten mit Code oder Phase in jeder Epoche, je System und insgesamt.</translation>
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
        <source>an epoch&apos;s satellite records</source>
        <translation>der Satellitendatensätze einer Epoche</translation>
    </message>
    <message>
        <source>an epoch&apos;s satellite list</source>
        <translation>der Satellitenliste einer Epoche</translation>
    </message>
    <message>
        <source>an epoch&apos;s observation records</source>
        <translation>der Beobachtungsdatensätze einer Epoche</translation>
    </message>
    <message>
        <source>an epoch (no receiver clock line)</source>
        <translation>einer Epoche (ohne Empfängeruhrzeile)</translation>
    </message>
</context>
<context>
    <name>gnssdemo::DemoHost</name>
    <message>
        <source>No observations to load.</source>
        <translation>Keine Beobachtungen zum Laden.</translation>
    </message>
    <message>
        <source>Out of memory while reading the observations.</source>
        <translation>Kein Speicher mehr beim Lesen der Beobachtungen.</translation>
    </message>
</context>
<context>
    <name>gnssdemo::DemoWindow</name>
    <message>
        <source>gnssplot demo</source>
        <translation>gnssplot-Demo</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Fit Y</source>
        <translation>Y anpassen</translation>
    </message>
    <message>
        <source>Fit Y to the data in the time window shown (F)</source>
        <translation>Y an die Daten im gezeigten Zeitfenster anpassen (F)</translation>
    </message>
    <message>
        <source>Show:</source>
        <translation>Zeigen:</translation>
    </message>
    <message>
        <source>Show one satellite&apos;s curve alone, highlighted; satellites unchecked at the last Apply are not offered</source>
        <translation>Die Kurve eines Satelliten allein und hervorgehoben zeigen; beim letzten Anwenden abgewählte Satelliten werden nicht angeboten</translation>
    </message>
    <message>
        <source>Sky</source>
        <translation>Himmel</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>Markierungen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open RINEX file...</source>
        <translation>RINEX-Datei ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;navigation...</source>
        <translation>&amp;Navigation öffnen...</translation>
    </message>
    <message>
        <source>Broadcast navigation for the satellites&apos; azimuth and elevation</source>
        <translation>Broadcast-Navigation für Azimut und Elevation der Satelliten</translation>
    </message>
    <message>
        <source>&amp;Synthetic day</source>
        <translation>&amp;Synthetischer Tag</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>&amp;Exportieren</translation>
    </message>
    <message>
        <source>&amp;Curves as CSV...</source>
        <translation>&amp;Kurven als CSV...</translation>
    </message>
    <message>
        <source>&amp;Sky tracks as CSV...</source>
        <translation>&amp;Himmelsspuren als CSV...</translation>
    </message>
    <message>
        <source>&amp;Marks as CSV...</source>
        <translation>&amp;Markierungen als CSV...</translation>
    </message>
    <message>
        <source>Save &amp;curve picture...</source>
        <translation>&amp;Kurvenbild speichern...</translation>
    </message>
    <message>
        <source>Save table &amp;bars picture...</source>
        <translation>Bild der Tabellen&amp;balken speichern...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Fit Y to data</source>
        <translation>Y an die Daten an&amp;passen</translation>
    </message>
    <message>
        <source>&amp;Whole file</source>
        <translation>&amp;Ganze Datei</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>(left: F 1 = %1, right: F 2 = %2)</source>
        <translation>(links: F 1 = %1, rechts: F 2 = %2)</translation>
    </message>
    <message>
        <source>Loading %1...</source>
        <translation>Lade %1...</translation>
    </message>
    <message>
        <source>gnssplot demo - %1</source>
        <translation>gnssplot-Demo - %1</translation>
    </message>
    <message>
        <source>All satellites</source>
        <translation>Alle Satelliten</translation>
    </message>
    <message>
        <source>%1 is unchecked in the table: check it and Apply to show its curve.</source>
        <translation>%1 ist in der Tabelle abgewählt: auswählen und anwenden, um seine Kurve zu zeigen.</translation>
    </message>
    <message>
        <source>%1 (%2), %3 epochs; loaded in %4 ms</source>
        <translation>%1 (%2), %3 Epochen; geladen in %4 ms</translation>
    </message>
    <message>
        <source> + first paint %1 ms</source>
        <translation> + erstes Zeichnen %1 ms</translation>
    </message>
    <message>
        <source>Navigation: %1</source>
        <translation>Navigation: %1</translation>
    </message>
    <message>
        <source>F %1: %2</source>
        <translation>F %1: %2</translation>
    </message>
    <message>
        <source>%1 %2 %3 GPST: %4 %5</source>
        <translation>%1 %2 %3 GPST: %4 %5</translation>
    </message>
    <message>
        <source>%1 %2 GPST: azimuth %3 deg, elevation %4 deg</source>
        <translation>%1 %2 GPST: Azimut %3°, Elevation %4°</translation>
    </message>
    <message>
        <source>Open RINEX observation file</source>
        <translation>RINEX-Beobachtungsdatei öffnen</translation>
    </message>
    <message>
        <source>RINEX observations (*.rnx *.crx *.??o *.??O *.??d *.??D *.obs *.gz *.Z);;All files (*)</source>
        <translation>RINEX-Beobachtungen (*.rnx *.crx *.??o *.??O *.??d *.??D *.obs *.gz *.Z);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Cannot open the file</source>
        <translation>Die Datei kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Open navigation</source>
        <translation>Navigation öffnen</translation>
    </message>
    <message>
        <source>Open a RINEX observation file first: the satellites&apos; positions are seen from its station.</source>
        <translation>Öffnen Sie zuerst eine RINEX-Beobachtungsdatei: Die Satellitenpositionen werden von ihrer Station aus gesehen.</translation>
    </message>
    <message>
        <source>Open navigation files</source>
        <translation>Navigationsdateien öffnen</translation>
    </message>
    <message>
        <source>RINEX navigation (*.rnx *.??n *.??N *.??g *.??l *.??p *.nav *.gz *.Z);;All files (*)</source>
        <translation>RINEX-Navigation (*.rnx *.??n *.??N *.??g *.??l *.??p *.nav *.gz *.Z);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Nothing is loaded.</source>
        <translation>Nichts geladen.</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Export as CSV</source>
        <translation>Als CSV exportieren</translation>
    </message>
    <message>
        <source>CSV (*.csv)</source>
        <translation>CSV (*.csv)</translation>
    </message>
    <message>
        <source>Cannot save</source>
        <translation>Speichern nicht möglich</translation>
    </message>
    <message>
        <source>Cannot load the synthetic day</source>
        <translation>Der synthetische Tag kann nicht geladen werden</translation>
    </message>
    <message>
        <source>%1: %2 (%3), %4 GPST</source>
        <translation>%1: %2 (%3), %4 GPST</translation>
    </message>
    <message>
        <source>Save curve picture</source>
        <translation>Kurvenbild speichern</translation>
    </message>
    <message>
        <source>PNG (*.png)</source>
        <translation>PNG (*.png)</translation>
    </message>
    <message>
        <source>Save table bars picture</source>
        <translation>Bild der Tabellenbalken speichern</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>gnssdemo::QualityPane</name>
    <message>
        <source>Satellite</source>
        <translation>Satellit</translation>
    </message>
    <message>
        <source>Epochs</source>
        <translation>Epochen</translation>
    </message>
    <message>
        <source>Above mask</source>
        <translation>Über Maske</translation>
    </message>
    <message>
        <source>Complete %</source>
        <translation>Vollständig %</translation>
    </message>
    <message>
        <source>MP1 RMS (m)</source>
        <translation>MP1 RMS (m)</translation>
    </message>
    <message>
        <source>MP2 RMS (m)</source>
        <translation>MP2 RMS (m)</translation>
    </message>
    <message>
        <source>Slips</source>
        <translation>Sprünge</translation>
    </message>
    <message>
        <source>LLI</source>
        <translation>LLI</translation>
    </message>
    <message>
        <source>Jumps</source>
        <translation>Phasensprünge</translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation>Lücken</translation>
    </message>
    <message>
        <source>Epochs with the satellite 10 degrees or more above the horizon; - without navigation</source>
        <translation>Epochen mit dem Satelliten 10 Grad oder mehr über dem Horizont; - ohne Navigation</translation>
    </message>
    <message>
        <source>Epochs with data among those above the mask</source>
        <translation>Epochen mit Daten unter denen über der Maske</translation>
    </message>
    <message>
        <source>Loss of lock plus jumps of the geometry-free phase</source>
        <translation>Signalverlust plus Sprünge der geometriefreien Phase</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>all %1</source>
        <translation>alle %1</translation>
    </message>
    <message>
        <source>Satellites per epoch (min/mean/max): %1</source>
        <translation>Satelliten je Epoche (min/Mittel/max): %1</translation>
    </message>
</context>
<context>
    <name>gnssdemo::ReadbackPanel</name>
    <message>
        <source>&lt;b&gt;What the host reads back&lt;/b&gt;</source>
        <translation>&lt;b&gt;Was der Host zurückliest&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Enabled satellites</source>
        <translation>Aktivierte Satelliten</translation>
    </message>
    <message>
        <source>getStateliteEnabled(), read on sgStateliteSelection()</source>
        <translation>getStateliteEnabled(), gelesen bei sgStateliteSelection()</translation>
    </message>
    <message>
        <source>No satellites</source>
        <translation>Keine Satelliten</translation>
    </message>
    <message>
        <source>Every satellite is checked.</source>
        <translation>Alle Satelliten sind ausgewählt.</translation>
    </message>
    <message>
        <source>Erase marks</source>
        <translation>Löschmarkierungen</translation>
    </message>
    <message>
        <source>getStateliteEraseMarks(), read on sgEraseMarksChanged()</source>
        <translation>getStateliteEraseMarks(), gelesen bei sgEraseMarksChanged()</translation>
    </message>
    <message>
        <source>Drag over the bars to mark epochs.</source>
        <translation>Über die Balken ziehen, um Epochen zu markieren.</translation>
    </message>
    <message>
        <source>Satellite</source>
        <translation>Satellit</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To (GPST)</source>
        <translation>Bis (GPST)</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>clearEraseMarkActions()</source>
        <translation>clearEraseMarkActions()</translation>
    </message>
    <message>
        <source>undoEraseMarkAction()</source>
        <translation>undoEraseMarkAction()</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Remove the marked epochs from the observations, recompute their curves and hide the curves of unchecked satellites</source>
        <translation>Die markierten Epochen aus den Beobachtungen entfernen, ihre Kurven neu berechnen und die Kurven abgewählter Satelliten ausblenden</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Save curve picture...</source>
        <translation>Kurvenbild speichern...</translation>
    </message>
    <message>
        <source>The plot as shown, at its size, with the station and its time axis</source>
        <translation>Das Diagramm wie gezeigt, in seiner Größe, mit Station und Zeitachse</translation>
    </message>
    <message>
        <source>Save table bars picture...</source>
        <translation>Bild der Tabellenbalken speichern...</translation>
    </message>
    <message>
        <source>CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(), with the station and a time axis</source>
        <translation>CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(), mit Station und Zeitachse</translation>
    </message>
    <message>
        <source>Unchecked: %1</source>
        <translation>Abgewählt: %1</translation>
    </message>
</context>
<context>
    <name>gnssdemo::SkyPane</name>
    <message>
        <source>Colour: system</source>
        <translation>Farbe: System</translation>
    </message>
    <message>
        <source>Colour: signal strength, band 1</source>
        <translation>Farbe: Signalstärke, Band 1</translation>
    </message>
    <message>
        <source>Colour: signal strength, band 2</source>
        <translation>Farbe: Signalstärke, Band 2</translation>
    </message>
    <message>
        <source>Colour: |MP1|</source>
        <translation>Farbe: |MP1|</translation>
    </message>
    <message>
        <source>Colour: |MP2|</source>
        <translation>Farbe: |MP2|</translation>
    </message>
    <message>
        <source>What colours the tracks and fills the sky map</source>
        <translation>Was die Spuren färbt und die Himmelskarte füllt</translation>
    </message>
    <message>
        <source>No sky map</source>
        <translation>Keine Himmelskarte</translation>
    </message>
    <message>
        <source>Sky map: mean</source>
        <translation>Himmelskarte: Mittel</translation>
    </message>
    <message>
        <source>Sky map: RMS</source>
        <translation>Himmelskarte: RMS</translation>
    </message>
    <message>
        <source>Sky map: maximum</source>
        <translation>Himmelskarte: Maximum</translation>
    </message>
    <message>
        <source>Fills each 5 degree cell of the sky with a figure of the values in it</source>
        <translation>Füllt jede 5-Grad-Zelle des Himmels mit einer Kennzahl ihrer Werte</translation>
    </message>
</context>
</TS>
