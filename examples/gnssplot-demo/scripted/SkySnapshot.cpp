// SPDX-License-Identifier: MIT
#include "SkySnapshot.h"

#include "DemoDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <cmath>
#include <cstdlib>

namespace gnssdemo {

namespace {

// Three decimals from the digits themselves, so that no locale puts a comma
// into the file.
void appendAngle(QByteArray& out, double degrees)
{
    const long long thousandths = std::llround(degrees * 1000.0);
    if (thousandths < 0)
        out += '-';
    const long long magnitude = std::llabs(thousandths);
    out += QByteArray::number(magnitude / 1000);
    out += '.';
    const int fraction = int(magnitude % 1000);
    out += char('0' + fraction / 100);
    out += char('0' + fraction / 10 % 10);
    out += char('0' + fraction % 10);
}

} // namespace

QByteArray skyCsv(const SkyTracks& sky, qint64* rows)
{
    QByteArray out("satellite,time_gpst,azimuth_deg,elevation_deg\n");
    qint64 count = 0;
    std::vector<QByteArray> times;
    for (const SkyTrack& track : sky.tracks()) {
        if (times.empty()) {
            times.reserve(track.time.size());
            for (double t : track.time)
                times.push_back(QDateTime::fromMSecsSinceEpoch(qint64(t), Qt::UTC)
                                    .toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"))
                                    .toLatin1());
        }
        const QByteArray name = track.name.toLatin1();
        for (size_t i = 0; i < track.elevation.size() && i < times.size(); ++i) {
            if (std::isnan(track.elevation[i]) || std::isnan(track.azimuth[i]))
                continue;
            out += name;
            out += ',';
            out += times[i];
            out += ',';
            appendAngle(out, track.azimuth[i]);
            out += ',';
            appendAngle(out, track.elevation[i]);
            out += '\n';
            ++count;
        }
    }
    if (rows)
        *rows = count;
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
