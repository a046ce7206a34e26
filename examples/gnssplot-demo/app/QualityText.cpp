// SPDX-License-Identifier: MIT
#include "QualityText.h"

#include "DemoHost.h"

#include <QTextStream>

#include <algorithm>
#include <cmath>

namespace gnssdemo {

namespace {

// The columns shared by satellite and system rows, padded as the header.
template <typename Numbers>
QString row(const QString& name, const Numbers& q)
{
    static const int widths[] = {-9, 7, 10, 10, 7, 7, 5, 5, 5, 5};
    const QStringList c = qualityCells(name, q);
    QString line = QStringLiteral(" ");
    for (int i = 0; i < c.size(); ++i)
        line += QLatin1Char(' ') + QStringLiteral("%1").arg(c.at(i), widths[i]);
    return line;
}

} // namespace

QString satellitesPerEpochCell(const std::vector<double>& values)
{
    if (values.empty())
        return QStringLiteral("-");
    double sum = 0.0;
    for (double v : values)
        sum += v;
    const auto range = std::minmax_element(values.begin(), values.end());
    return QStringLiteral("%1/%2/%3")
        .arg(*range.first)
        .arg(sum / double(values.size()), 0, 'f', 1)
        .arg(*range.second);
}

QString qualityTableText(const DemoHost& host)
{
    const DemoDocument* doc = host.document();
    if (!doc)
        return QString();
    QString text;
    QTextStream s(&text);
    s << "quality (mask " << DefaultElevationMask
      << " deg; RMS in m; slips = lli, epochs with loss of lock, + jumps of the "
         "geometry-free phase):\n";
    s << QStringLiteral("  %1 %2 %3 %4 %5 %6 %7 %8 %9 %10  %11")
             .arg(QStringLiteral("satellite"), -9)
             .arg(QStringLiteral("epochs"), 7)
             .arg(QStringLiteral("above_mask"), 10)
             .arg(QStringLiteral("complete_%"), 10)
             .arg(QStringLiteral("mp1_rms"), 7)
             .arg(QStringLiteral("mp2_rms"), 7)
             .arg(QStringLiteral("slips"), 5)
             .arg(QStringLiteral("lli"), 5)
             .arg(QStringLiteral("jumps"), 5)
             .arg(QStringLiteral("gaps"), 5)
             .arg(QStringLiteral("mp1 / mp2"))
      << "\n";
    const std::vector<SatelliteQuality> all = host.qualities();
    QList<char> systems;
    for (const SatelliteQuality& q : all) {
        if (!systems.contains(q.system))
            systems.append(q.system);
        QString codes;
        if (const SatelliteFindings* f = host.findings(q.name)) {
            const MultipathInfo& m = f->multipath;
            if (host.curve(q.name))
                codes = QStringLiteral("  %1/%2+%3 / %4/%5+%6")
                            .arg(m.codeA, m.phaseA, m.phaseB, m.codeB, m.phaseB, m.phaseA);
        }
        s << row(q.name, q) << codes << "\n";
    }
    std::sort(systems.begin(), systems.end());
    for (char system : systems)
        s << row(systemName(system), host.qualityOfSystem(system)) << "\n";
    s << row(QStringLiteral("all"), host.qualityOfSystem(0)) << "\n";

    // Satellites per epoch, as the curves of countSatellites() hold them.
    const SatelliteCounts counts = host.satelliteCounts();
    QStringList parts;
    for (const auto& entry : counts.perSystem)
        parts.append(QStringLiteral("%1 %2").arg(QString(QLatin1Char(entry.first)),
                                                 satellitesPerEpochCell(entry.second)));
    parts.append(QStringLiteral("all %1").arg(satellitesPerEpochCell(counts.total)));
    s << "satellites per epoch (min/mean/max): " << parts.join(QStringLiteral(", ")) << "\n";
    return text;
}

} // namespace gnssdemo
