// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_QUALITYTEXT_H
#define GNSSDEMO_QUALITYTEXT_H

#include <QString>
#include <QStringList>

#include <cmath>
#include <vector>

namespace gnssdemo {

class DemoHost;

/*!
    The quality summary of what \a host holds as plain text in columns, one
    row per satellite, one per system and one for all, then the number of
    satellites per epoch: epochs with data, epochs above the 10 degree mask
    and the completeness there ("-" without elevations), MP1 and MP2 RMS in
    metres ("-" without a curve), slips (loss of lock plus phase jumps),
    gaps, and the observations of MP1 and MP2. English, for files and logs;
    empty when nothing is loaded.
*/
QString qualityTableText(const DemoHost& host);

/*! The minimum, mean (one decimal) and maximum of a count per epoch as
    "min/mean/max"; "-" for no epochs. */
QString satellitesPerEpochCell(const std::vector<double>& values);

/*! A figure with \a decimals decimals, "-" for NaN (nothing to count). */
inline QString qualityNumberCell(double v, int decimals)
{
    return std::isnan(v) ? QStringLiteral("-") : QString::number(v, 'f', decimals);
}

/*!
    The cells of one row of the quality numbers of \a q (a satellite's or a
    system's), in the order both the Quality tab and summary.txt show them:
    name, epochs with data, epochs above the mask, completeness in percent,
    MP1 and MP2 RMS, slips, loss of lock, phase jumps, gaps. What cannot be
    known (no elevations, no curve) reads "-".
*/
template <typename Numbers>
QStringList qualityCells(const QString& name, const Numbers& q)
{
    return {name,
            QString::number(q.epochsWithData),
            q.epochsAboveMask < 0 ? QStringLiteral("-") : QString::number(q.epochsAboveMask),
            qualityNumberCell(q.completeness() * 100.0, 1),
            qualityNumberCell(q.mp1Rms, 3),
            qualityNumberCell(q.mp2Rms, 3),
            QString::number(q.slips()),
            QString::number(q.lossOfLock),
            QString::number(q.phaseJumps),
            QString::number(q.gaps)};
}

} // namespace gnssdemo

#endif // GNSSDEMO_QUALITYTEXT_H
