// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVESNAPSHOT_P_H
#define GNSSPLOT_CURVESNAPSHOT_P_H

#include "AxisSamples_p.h"

#include <QtGlobal>

#include <vector>

class Curve_Coord_XY;
class Curve_DataSet_XY;

// A stretch of samples between breaks, and how many of them have a number
// on both axes (the points a polyline of it has).
struct CurveRun
{
    qint64 begin;
    qint64 end;  // inclusive
    qint64 points;
};

/*
    The samples a curve item shows, as of the last change it listened to:
    the X axis and the Y axes up to the first missing or empty one, pinned
    (AxisSamples), with the coordinate's area and the runs between breaks.
    Whatever the host publishes afterwards, a snapshot keeps reading what it
    pinned, so an item that stops listening goes on showing what it had
    heard of; and the drawing that runs on worker threads reads only the
    snapshot, never an object.

    Taking a snapshot of the samples already held costs a few pointer
    comparisons: the runs, their point counts and the order of X are worked
    out only when the samples differ (dataVersion() then changes).
*/
class CurveSnapshot
{
public:
    // Samples of one area beyond this count are not drawn: a run of them
    // would not fit into one Qt container.
    static constexpr qint64 kMaxSamples = qint64(1) << 27;

    // Pins X and Y indexes 0 .. yIndexes - 1 of \a dataSet and reads the
    // area of \a coord; empty when either is null or X has no samples.
    void take(const Curve_DataSet_XY* dataSet, const Curve_Coord_XY* coord, int yIndexes);
    // Lets go of every sample.
    void clear();

    // Whether there is anything to draw: an X axis and at least one Y axis
    // with samples in common.
    bool isDrawable() const { return !m_ys.empty(); }
    // Y indexes of the data set as of the snapshot (axis count - 1).
    int yIndexes() const { return m_yIndexes; }
    // Y indexes with samples, from 0 up to the first without.
    int yCount() const { return int(m_ys.size()); }
    const double* xs() const { return m_x.first; }
    const double* ys(int yIndex) const { return m_ys[size_t(yIndex)].first; }
    // Samples that Y index \a yIndex shares with X.
    qint64 count(int yIndex) const { return m_counts[size_t(yIndex)]; }
    qint64 maxCount() const { return m_maxCount; }
    qint64 totalCount() const;
    const std::vector<CurveRun>& runs(int yIndex) const { return m_runs[size_t(yIndex)]; }
    // Whether X ascends (equal neighbours allowed) with no NaN over the
    // longest shared count.
    bool xSorted() const { return m_xSorted; }
    // Changes whenever the samples differ from the previous snapshot's.
    quint64 dataVersion() const { return m_dataVersion; }

    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;

private:
    void rebuildRuns();

    AxisSamples m_x;
    std::vector<AxisSamples> m_ys;
    std::vector<qint64> m_counts;
    std::vector<std::vector<CurveRun>> m_runs;
    qint64 m_maxCount = 0;
    int m_yIndexes = 0;
    bool m_xSorted = false;
    quint64 m_dataVersion = 0;
};

#endif // GNSSPLOT_CURVESNAPSHOT_P_H
