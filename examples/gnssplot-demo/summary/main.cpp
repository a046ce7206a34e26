// SPDX-License-Identifier: MIT
// Loads the demo's observation data the way the demo will (synthetic day or
// a RINEX file), computes multipath curves and availability for every
// satellite, and prints what it found and how long it took.
#include "Availability.h"
#include "Multipath.h"
#include "RinexReader.h"
#include "SyntheticSource.h"

#include <Curve_DataSet_XY.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QStringList>
#include <QTextStream>
#include <QTimeZone>

#include <map>
#include <memory>

using namespace gnssdemo;

namespace {

QString timeText(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC)
        .toString(QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    QString rinexPath;
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--rinex") && i + 1 < args.size()) {
            rinexPath = args[++i];
        } else {
            err << "usage: gnssplot-demo-summary [--rinex FILE]\n"
                   "  Without --rinex the built-in synthetic day is used.\n";
            return 2;
        }
    }

    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<ObservationSource> source;
    if (rinexPath.isEmpty()) {
        source = std::make_unique<SyntheticSource>();
    } else {
        QString error;
        source = RinexReader::readFile(rinexPath, &error);
        if (!source) {
            err << "error: " << error << "\n";
            return 1;
        }
    }
    const qint64 readMs = timer.elapsed();

    // Per satellite: the curves the demo will show and the table rows.
    std::vector<std::unique_ptr<Curve_DataSet_XY>> curves;
    std::map<QChar, int> perSystem;
    std::map<QChar, int> channelOrigins;
    qint64 bandObservations[BandCount] = {};
    qint64 mpSamples = 0;
    qint64 records = 0;
    qint64 countingMs = 0;
    int arcs = 0;
    int lliBreaks = 0, jumpBreaks = 0, gapBreaks = 0, rows = 0;
    const std::vector<qint64>& epochs = source->epochs();
    SatelliteObservations sat;
    for (int i = 0; i < source->satelliteCount(); ++i) {
        if (!source->satellite(i, sat))
            continue;
        ++perSystem[QLatin1Char(sat.system)];
        if (sat.system == 'R')
            ++channelOrigins[QLatin1Char("-HED"[int(sat.channelOrigin)])];
        auto curve = std::make_unique<Curve_DataSet_XY>(2);
        MultipathInfo info;
        QString error;
        if (!computeMultipath(sat, epochs, source->intervalMs(), curve.get(), &info, &error)) {
            err << "error: " << sat.name << ": " << error << "\n";
            return 1;
        }
        mpSamples += info.samples;
        arcs += info.arcs;
        lliBreaks += info.lliBreaks;
        jumpBreaks += info.phaseJumpBreaks;
        gapBreaks += info.gapBreaks;
        const QList<stEpochDataSet> table = bandAvailability(sat, epochs, source->intervalMs());
        rows += table.isEmpty() ? 0 : 1;
        curves.push_back(std::move(curve));
        // Counting is the summary's own business, not part of loading.
        QElapsedTimer counting;
        counting.start();
        records += sat.recordCount();
        for (int b = 0; b < BandCount; ++b)
            for (size_t e = 0; e < epochs.size(); ++e)
                bandObservations[b] += sat.bands[b].hasObservation(e) ? 1 : 0;
        countingMs += counting.elapsed();
    }
    const qint64 totalMs = timer.elapsed() - countingMs;

    out << source->description() << "\n";
    if (!epochs.empty())
        out << "epochs: " << epochs.size() << " from " << timeText(epochs.front()) << " to "
            << timeText(epochs.back()) << " GPST, interval " << source->intervalMs() << " ms\n";
    else
        out << "epochs: 0\n";
    out << "satellites: " << source->satelliteCount() << " (";
    bool first = true;
    for (const auto& entry : perSystem) {
        out << (first ? "" : ", ") << entry.first << " " << entry.second;
        first = false;
    }
    out << ")\n";
    if (!channelOrigins.empty()) {
        out << "GLONASS channels:";
        for (const auto& entry : channelOrigins)
            out << " " << (entry.first == QLatin1Char('H') ? "header"
                           : entry.first == QLatin1Char('E') ? "estimated" : "built-in table")
                << " " << entry.second;
        out << "\n";
    }
    out << "satellite records: " << records << "\n";
    out << "observations per band (epochs with code or phase):\n";
    for (int b = 0; b < BandCount; ++b)
        out << "  " << bandName(b) << ": " << bandObservations[b] << "\n";
    out << "multipath: " << mpSamples << " samples in " << arcs << " arcs; arcs ended by "
        << lliBreaks << " LLI, " << jumpBreaks << " phase jumps, " << gapBreaks << " gaps\n";
    out << "table rows: " << rows << "\n";
    out << "load time: " << readMs << " ms reading, " << totalMs
        << " ms with multipath and availability\n";
    return 0;
}
