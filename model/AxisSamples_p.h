// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_AXISSAMPLES_P_H
#define GNSSPLOT_AXISSAMPLES_P_H

#include <QtGlobal>

#include <memory>
#include <set>

class AxisData;

/*
    The published samples of an axis as a reader saw them: the area's first
    sample and count, its breaks (relative to the area, as getBreakInfo()
    gives them) and a share of the block. Published blocks are never written
    again, so what a pin holds stays exactly as it was when pinned, whatever
    the host publishes afterwards; the block is freed when its last pin and
    the axis have let go of it.
*/
struct AxisSamples
{
    std::shared_ptr<const double> block;
    const double* first = nullptr;
    qint64 count = 0;
    std::set<qint64> breaks;

    // What \a axis publishes now; empty (no samples) for a null axis or one
    // without samples.
    static AxisSamples pin(const AxisData* axis);
};

#endif // GNSSPLOT_AXISSAMPLES_P_H
