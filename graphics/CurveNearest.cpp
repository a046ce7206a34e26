// SPDX-License-Identifier: MIT
#include "CurveNearest_p.h"

#include "CoordMapping_p.h"

#include <algorithm>
#include <cmath>

namespace CurveNearest {

bool find(const CurveSnapshot& snapshot, const QRectF& area, bool bYDown,
          const std::vector<int>& shown, const QPointF& pos, double radius, double limit2,
          Nearest* nearest)
{
    if (!nearest || !(radius >= 0.0) || !snapshot.isDrawable())
        return false;
    if (area.isEmpty() || !std::isfinite(pos.x()) || !std::isfinite(pos.y()))
        return false;
    const CoordMapping mapping(area, snapshot.xMin, snapshot.xMax, snapshot.yMin,
                               snapshot.yMax, bYDown);
    if (!(mapping.rx > 0.0) || !std::isfinite(mapping.rx))
        return false;
    qint64 count = 0;
    for (const int k : shown) {
        if (k < snapshot.yCount())
            count = std::max(count, snapshot.count(k));
    }
    if (count < 1)
        return false;

    const double* xs = snapshot.xs();
    // Anything farther than this squared distance is of no interest: beyond
    // the radius, or no nearer than what other items found.
    double bound = std::min(radius * radius, limit2);
    bool bBoundInclusive = radius * radius < limit2;
    bool found = false;
    // Measures sample j on every shown Y axis; false once j lies farther
    // along X than the bound, which ends a walk away from the point.
    const auto visit = [&](qint64 j) {
        const double px = mapping.mapX(xs[j]);
        const double dx = px - pos.x();
        const double dx2 = dx * dx;
        if (!(dx2 <= bound))
            return false;
        if (px < area.left() || px > area.right())
            return true;
        for (const int k : shown) {
            if (k >= snapshot.yCount() || j >= snapshot.count(k))
                continue;
            const double y = snapshot.ys(k)[j];
            const double py = mapping.mapY(y);
            if (!(py >= area.top() && py <= area.bottom()))
                continue;
            const double dy = py - pos.y();
            const double d2 = dx2 + dy * dy;
            if (d2 < bound || (bBoundInclusive && d2 == bound)) {
                bound = d2;
                bBoundInclusive = false;
                found = true;
                *nearest = Nearest{k, j, xs[j], y, d2};
            }
        }
        return true;
    };
    if (snapshot.xSorted()) {
        const double atPoint =
            snapshot.xMin + (pos.x() - area.left()) / area.width() * mapping.rx;
        const qint64 middle = std::lower_bound(xs, xs + count, atPoint) - xs;
        for (qint64 j = middle; j < count && visit(j); ++j) {
        }
        for (qint64 j = middle - 1; j >= 0 && visit(j); --j) {
        }
    } else {
        for (qint64 j = 0; j < count; ++j)
            visit(j);
    }
    return found;
}

} // namespace CurveNearest
