// SPDX-License-Identifier: MIT
#include "CurvePicture_p.h"

#include <algorithm>
#include <cmath>

namespace {

// The first index in [lo, hi) for which \a test fails, \a test being true
// for a prefix of the range.
template <class Test>
qint64 partitionPoint(qint64 lo, qint64 hi, Test test)
{
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (test(mid))
            lo = mid + 1;
        else
            hi = mid;
    }
    return lo;
}

} // namespace

bool CurveColumns::Key::operator==(const Key& o) const
{
    return xMin == o.xMin && xMax == o.xMax && m11 == o.m11 && dx == o.dx && left == o.left
           && width == o.width && columnLeft == o.columnLeft && columnRight == o.columnRight
           && count == o.count && dataVersion == o.dataVersion;
}

void CurveColumns::update(const CurveSnapshot& snapshot, const CoordMapping& mapping,
                          const PictureTarget& target)
{
    const qint64 count = snapshot.maxCount();
    const Key key{snapshot.xMin, snapshot.xMax, target.m11, target.dx, mapping.left,
                  mapping.width, target.bounds.left(), target.bounds.right(), count,
                  snapshot.dataVersion()};
    if (key == m_key)
        return;
    m_key = key;
    m_mapping = mapping;
    m_m11 = target.m11;
    m_dx = target.dx;
    const double* xs = snapshot.xs();
    m_xs = xs;
    first = 0;
    last = count - 1;
    bSteps = count > 0 && std::isfinite(mapping.rx) && mapping.rx > 0.0 && snapshot.xSorted();
    if (!bSteps) {
        perSample.resize(size_t(std::max<qint64>(0, count)));
        CurveRaster::mapColumns(mapping, target.m11, target.dx, xs, count, perSample.data());
        return;
    }
    std::vector<qint32>().swap(perSample);
    // With X in order only the samples whose columns fall in the target,
    // and one neighbour on each side for the segments that enter and leave
    // it, can set a pixel: a zoomed window maps and counts only those.
    const int left = target.bounds.left();
    const int right = target.bounds.right();
    const bool ascending = target.m11 > 0.0;
    const qint64 inside = partitionPoint(0, count, [&](qint64 j) {
        return ascending ? mapOne(j) < left : mapOne(j) > right;
    });
    const qint64 beyond = partitionPoint(inside, count, [&](qint64 j) {
        return ascending ? mapOne(j) <= right : mapOne(j) >= left;
    });
    first = std::max<qint64>(0, inside - 1);
    last = std::min(count - 1, beyond);
    steps = CurveRaster::ColumnSteps();
    steps.build(mapping, target.m11, target.dx, xs, first, last);
}

qint32 CurveColumns::at(qint64 j) const
{
    if (!bSteps)
        return perSample[size_t(j)];
    if (j >= steps.begin() && j < steps.end())
        return steps.at(j);
    return mapOne(j);
}

qint32 CurveColumns::mapOne(qint64 j) const
{
    qint32 c = 0;
    CurveRaster::mapColumns(m_mapping, m_m11, m_dx, m_xs + j, 1, &c);
    return c;
}

void CurveColumns::fill(qint64 j, qint64 n, qint32* columns) const
{
    if (!bSteps) {
        std::copy(perSample.begin() + j, perSample.begin() + j + n, columns);
    } else if (j >= steps.begin() && j + n <= steps.end()) {
        steps.fill(j, n, columns);
    } else {
        for (qint64 i = 0; i < n; ++i)
            columns[i] = at(j + i);
    }
}
