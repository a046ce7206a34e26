// SPDX-License-Identifier: MIT
#include "CsvExport.h"

#include <QDate>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace gnssdemo {

QByteArray csvTime(qint64 ms)
{
    const qint64 dayMs = 86400000;
    // Floor division, so that times before 1970 fall on the day before.
    qint64 days = ms / dayMs;
    qint64 rest = ms % dayMs;
    if (rest < 0) {
        rest += dayMs;
        --days;
    }
    const QDate date = QDate(1970, 1, 1).addDays(days);
    const int seconds = int(rest / 1000);
    const int milli = int(rest % 1000);
    char text[48];
    int n = std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d", date.year(),
                          date.month(), date.day(), seconds / 3600, seconds / 60 % 60,
                          seconds % 60);
    if (milli != 0 && n > 0 && n < int(sizeof(text)))
        n += std::snprintf(text + n, sizeof(text) - size_t(n), ".%03d", milli);
    return QByteArray(text, std::max(0, std::min(n, int(sizeof(text)) - 1)));
}

void appendCurveRows(QByteArray& out, const QString& satellite, const QString& signal,
                     const double* x, const double* y, qint64 count, double tMin, double tMax,
                     int decimals)
{
    if (!x || !y || count < 1)
        return;
    const QByteArray prefix = satellite.toUtf8() + ',';
    const QByteArray middle = ',' + signal.toUtf8() + ',';
    for (qint64 i = 0; i < count; ++i) {
        // Beyond some 285,000 years a time has no calendar date to write.
        if (!(x[i] >= tMin && x[i] <= tMax) || !std::isfinite(y[i]) || std::fabs(x[i]) > 9e15)
            continue;
        out += prefix;
        out += csvTime(qint64(std::llround(x[i])));
        out += middle;
        out += QByteArray::number(y[i], 'f', decimals);
        out += '\n';
    }
}

void appendEventRows(QByteArray& out, const QString& satellite, const QString& signal,
                     const std::vector<EpochEvent>& events, double tMin, double tMax)
{
    const QByteArray prefix = satellite.toUtf8() + ',';
    const QByteArray middle = ',' + signal.toUtf8() + ',';
    for (const EpochEvent& e : events) {
        if (!(double(e.timeMs) >= tMin && double(e.timeMs) <= tMax))
            continue;
        out += prefix;
        out += csvTime(e.timeMs);
        out += middle;
        out += eventKindName(e.kind).toLatin1();
        out += '\n';
    }
}

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

void appendSkyRows(QByteArray& out, const QString& satellite, const double* time,
                   const double* azimuth, const double* elevation, qint64 count, double tMin,
                   double tMax)
{
    if (!time || !azimuth || !elevation)
        return;
    const QByteArray prefix = satellite.toUtf8() + ',';
    for (qint64 i = 0; i < count; ++i) {
        // Angles beyond a few turns are no direction; llround would overflow.
        if (!(time[i] >= tMin && time[i] <= tMax) || std::fabs(time[i]) > 9e15
            || !(std::fabs(azimuth[i]) < 1e6) || !(std::fabs(elevation[i]) < 1e6))
            continue;
        out += prefix;
        // Whole seconds, as the angles are given for the epoch's second.
        out += csvTime(qint64(std::floor(time[i] / 1000.0)) * 1000);
        out += ',';
        appendAngle(out, azimuth[i]);
        out += ',';
        appendAngle(out, elevation[i]);
        out += '\n';
    }
}

} // namespace gnssdemo
