// SPDX-License-Identifier: MIT
#include "Snapshot.h"

#include "DemoHost.h"
#include "DemoWindow.h"
#include "MultipathView.h"
#include "Pictures.h"
#include "QualityText.h"
#include "ReadbackPanel.h"
#include "SkySnapshot.h"

#include <gnssplot.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTextStream>

#include <algorithm>

namespace gnssdemo {

namespace {

struct Picture
{
    QString file;
    QSize size;
};

// The marks the snapshot hands the table: the three curves with the most
// samples in a stretch of the range, and the first other curve unchecked.
struct DemoEdits
{
    EpochInterval interval;
    QStringList marked;
    QString unchecked;
};

DemoEdits chooseEdits(const DemoHost& host)
{
    DemoEdits edits;
    const DemoDocument* doc = host.document();
    const qint64 span = doc->endTime() - doc->startTime();
    // Whole minutes, so the summary reads well.
    const qint64 minute = 60000;
    const qint64 start = doc->startTime() + (span * 2 / 5) / minute * minute;
    const qint64 length = std::max<qint64>((span / 12) / minute * minute, minute);
    edits.interval = qMakePair(start, std::min(length, doc->endTime() - start));

    QList<QPair<qint64, QString>> ranked;
    for (const QString& name : host.curveNames())
        ranked.append(qMakePair(-samplesInside(host.curve(name), {edits.interval}), name));
    std::sort(ranked.begin(), ranked.end());
    for (int k = 0; k < ranked.size() && edits.marked.size() < 3; ++k) {
        if (ranked[k].first < 0)
            edits.marked.append(ranked[k].second);
    }
    // Without curves the table still takes marks: the first satellites.
    const QStringList names = host.curveNames().isEmpty() ? host.satelliteNames()
                                                          : host.curveNames();
    if (edits.marked.isEmpty()) {
        for (int k = 0; k < std::min(3, int(names.size()) - 1); ++k)
            edits.marked.append(names[k]);
    }
    edits.marked.sort();
    for (const QString& name : names) {
        if (!edits.marked.contains(name)) {
            edits.unchecked = name;
            break;
        }
    }
    return edits;
}

QString summaryText(const DemoHost& host, const QString& curveSatellite,
                    const QList<Picture>& pictures)
{
    QString text;
    QTextStream s(&text);
    const LoadStats& stats = host.loadStats();
    const DemoDocument* doc = host.document();
    s << "gnssplot demo snapshot\n";
    s << "source: " << stats.description << "\n";
    if (stats.epochs > 0)
        s << "epochs: " << stats.epochs << " from " << gpstText(doc->epochs().front()) << " to "
          << gpstText(doc->epochs().back()) << " GPST, interval " << stats.intervalMs << " ms\n";
    else
        s << "epochs: 0\n";
    int total = 0;
    QStringList systems;
    for (auto it = stats.satellitesPerSystem.cbegin(); it != stats.satellitesPerSystem.cend();
         ++it) {
        total += it.value();
        systems.append(QStringLiteral("%1 %2").arg(QLatin1Char(it.key())).arg(it.value()));
    }
    s << "satellites: " << total << " (" << systems.join(QStringLiteral(", ")) << ")\n";
    s << "curves: " << stats.curves << "\n";
    s << "observations per band (epochs with code or phase):\n";
    for (int b = 0; b < BandCount; ++b)
        s << "  " << bandName(b) << ": " << stats.bandObservations[b] << "\n";
    s << "multipath: " << stats.multipathSamples << " samples in " << stats.arcs << " arcs\n";
    const QString empty = host.emptyReason();
    if (!empty.isEmpty())
        s << "empty plot: " << empty << "\n";
    const QString cut = host.readWarning();
    if (!cut.isEmpty())
        s << "cut short: " << cut << "\n";
    const QString noStrength = host.signalStrengthReason();
    if (!noStrength.isEmpty())
        s << "signal strength: " << noStrength << "\n";

    const QMap<QString, bool>& selection = host.readSelection();
    QStringList unchecked;
    for (auto it = selection.cbegin(); it != selection.cend(); ++it) {
        if (!it.value())
            unchecked.append(it.key());
    }
    s << "enabled satellites read back: " << selection.size() - unchecked.size() << " of "
      << selection.size() << " (unchecked: "
      << (unchecked.isEmpty() ? QStringLiteral("none") : unchecked.join(QStringLiteral(", ")))
      << ")\n";
    const QMap<QString, QList<stEpochDataSet>>& marks = host.readMarks();
    int markedSatellites = 0;
    QString markLines;
    for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
        const QList<EpochInterval> flat = flattenMarks(it.value());
        if (flat.isEmpty())
            continue;
        ++markedSatellites;
        for (const EpochInterval& m : flat)
            markLines += QStringLiteral("  %1: %2 GPST, %3 ms\n")
                             .arg(it.key(), gpstText(m.first))
                             .arg(m.second);
    }
    s << "erase marks read back: " << markedSatellites << " satellites, "
      << host.table()->eraseMarkActionNum() << " actions\n"
      << markLines;

    const ApplyResult& applied = host.lastApply();
    qint64 removed = 0;
    qint64 inside = 0;
    QString applyLines;
    for (auto it = applied.republished.cbegin(); it != applied.republished.cend(); ++it) {
        removed += it->samplesBefore - it->samplesAfter;
        inside += it->samplesInsideMarks;
        applyLines += QStringLiteral("  %1: %2 -> %3 curve samples\n")
                          .arg(it.key())
                          .arg(it->samplesBefore)
                          .arg(it->samplesAfter);
    }
    s << "apply: " << applied.republished.size() << " satellites recomputed, " << removed
      << " curve samples removed, " << inside << " curve samples left inside the marks, "
      << applied.hiddenCurves << " curves hidden\n"
      << applyLines;
    s << "curve picture: " << (curveSatellite.isEmpty() ? QStringLiteral("none") : curveSatellite)
      << "\n";
    s << "load: " << stats.readMs + stats.loadMs << " ms, first paint " << stats.paintMs
      << " ms\n";
    s << "pictures:";
    for (const Picture& p : pictures)
        s << " " << p.file << " " << p.size.width() << "x" << p.size.height();
    s << "\n";
    s << qualityTableText(host);
    return text;
}

} // namespace

int runSnapshot(DemoWindow& window, const QString& dir, QTextStream& out, QTextStream& err)
{
    if (!QDir().mkpath(dir)) {
        err << "error: cannot create " << dir << "\n";
        return 1;
    }
    const QDir target(dir);
    DemoHost& host = *window.host();
    const DemoDocument* doc = host.document();
    if (!doc) {
        err << "error: nothing loaded\n";
        return 1;
    }

    // The host's edits, handed over the way a host restores a saved session:
    // marks and unchecked names through setResources(), which emits nothing,
    // so the host reads back itself.
    const DemoEdits edits = chooseEdits(host);
    QMap<QString, bool> enabled;
    for (const QString& name : host.epochData().keys())
        enabled.insert(name, true);
    QMap<QString, QList<QPair<qint64, qint64>>> marks;
    for (const QString& name : edits.marked)
        marks.insert(name, {edits.interval});
    QList<QString> unchecked;
    if (!edits.unchecked.isEmpty())
        unchecked.append(edits.unchecked);
    window.table()->setResources(doc->startTime(), doc->endTime(), host.epochData(), enabled,
                                 unchecked, marks);
    host.readBack();
    host.applyMarks();
    QApplication::processEvents();

    QList<Picture> pictures;
    auto save = [&](const QString& file, const QImage& image) {
        if (!image.save(target.filePath(file), "PNG")) {
            err << "error: cannot write " << target.filePath(file) << "\n";
            return false;
        }
        pictures.append({file, image.size()});
        return true;
    };
    // A satellite with a curve: a marked one, else the panel's choice. A
    // plot without curves has no curve picture; the summary says why.
    QString curveSatellite = window.panel()->pictureSatellite();
    for (const QString& name : edits.marked) {
        if (host.curve(name)) {
            curveSatellite = name;
            break;
        }
    }
    if (!host.curve(curveSatellite))
        curveSatellite.clear();
    bool ok = save(QStringLiteral("window.png"), window.grab().toImage())
              && save(QStringLiteral("view.png"), window.view()->grab().toImage())
              && save(QStringLiteral("table.png"), window.table()->grab().toImage());
    if (ok && !curveSatellite.isEmpty())
        ok = save(QStringLiteral("curve.png"),
                  curvePicture(host, curveSatellite, QSize(800, 540)));
    ok = ok && save(QStringLiteral("bars.png"), barsPicture(host, 480, 50));
    // With navigation, the sky of the day coloured by the first band's
    // signal strength, as the window shows it first.
    if (ok && doc->navigation() && doc->skyTracks().isValid()) {
        host.setSkyValue(SkyValue::SignalStrengthA);
        QPixmap sky(800, 800);
        window.sky()->drawToPixmap(&sky);
        ok = save(QStringLiteral("sky.png"), sky.toImage());
    }
    if (!ok)
        return 1;

    QFile summary(target.filePath(QStringLiteral("summary.txt")));
    if (!summary.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        err << "error: cannot write " << summary.fileName() << "\n";
        return 1;
    }
    bool skyFailed = false;
    const QString text = summaryText(host, curveSatellite, pictures)
                         + writeSkySnapshot(*doc, target, &skyFailed);
    if (skyFailed) {
        err << "error: cannot write " << target.filePath(QStringLiteral("sky.csv")) << "\n";
        return 1;
    }
    summary.write(text.toUtf8());
    summary.close();
    out << text;
    out << "pictures and summary written to " << QDir(dir).absolutePath() << "/\n";
    return 0;
}

} // namespace gnssdemo
