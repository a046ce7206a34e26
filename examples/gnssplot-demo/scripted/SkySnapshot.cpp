// SPDX-License-Identifier: MIT
#include "SkySnapshot.h"

#include "CsvExport.h"
#include "DemoDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <limits>

namespace gnssdemo {


QByteArray skyCsv(const SkyTracks& sky, qint64* rows)
{
    QByteArray out(SkyCsvHeader);
    const double all = std::numeric_limits<double>::infinity();
    for (const SkyTrack& track : sky.tracks()) {
        const qint64 count = qint64(std::min({track.time.size(), track.azimuth.size(),
                                              track.elevation.size()}));
        appendSkyRows(out, track.name, track.time.data(), track.azimuth.data(),
                      track.elevation.data(), count, -all, all);
    }
    if (rows)
        *rows = qint64(out.count('\n')) - 1;
    return out;
}

QString writeSkySnapshot(const DemoDocument& doc, const QDir& dir, bool* failed)
{
    *failed = false;
    const NavigationData* navigation = doc.navigation();
    if (!navigation)
        return QString();
    QString text;
    for (const NavigationFileReport& report : navigation->reports())
        text += QStringLiteral("navigation: %1\n").arg(report.summary());
    const SkyTracks& sky = doc.skyTracks();
    if (!sky.isValid())
        return text + QStringLiteral("sky: the observations give no approximate position\n");

    qint64 rows = 0;
    const QByteArray csv = skyCsv(sky, &rows);
    QFile file(dir.filePath(QStringLiteral("sky.csv")));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(csv) != csv.size()) {
        *failed = true;
        return text;
    }
    int positioned = 0;
    int observedPositioned = 0;
    for (const SkyTrack& track : sky.tracks()) {
        positioned += track.positioned > 0 ? 1 : 0;
        observedPositioned += track.positioned > 0 && track.observed ? 1 : 0;
    }
    const QStringList without = sky.withoutEphemeris();
    text += QStringLiteral("sky: %1 satellites with a position (%2 of them observed), %3 rows "
                           "in sky.csv\n")
                .arg(positioned)
                .arg(observedPositioned)
                .arg(rows);
    text += QStringLiteral("observed without ephemeris: %1\n")
                .arg(without.isEmpty() ? QStringLiteral("none")
                                       : without.join(QStringLiteral(", ")));
    return text;
}

} // namespace gnssdemo
