// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVENEAREST_P_H
#define GNSSPLOT_CURVENEAREST_P_H

#include "CurveSnapshot_p.h"

#include <QPointF>
#include <QRectF>

#include <vector>

/*
    The drawn sample nearest to a point of the data area, for the hover
    read-out. Sorted X samples are searched outward from the time under the
    point and the walk ends where X alone is farther than the best so far,
    so a day of samples costs a few hundred visits; others are searched one
    by one.
*/
namespace CurveNearest {

struct Nearest
{
    int yIndex = -1;
    qint64 index = -1;
    double x = 0.0;
    double y = 0.0;
    double distance2 = 0.0;  // squared distance in item pixels
};

// Searches Y indexes \a shown of \a snapshot mapped into \a area (item
// pixels; \a bYDown as the item maps) for the sample nearest to \a pos within
// \a radius pixels and closer than \a limit2 (a squared distance; at it only
// when the radius is the tighter bound), with numbers on both axes and inside
// the area. False, leaving \a nearest alone, when there is none.
bool find(const CurveSnapshot& snapshot, const QRectF& area, bool bYDown,
          const std::vector<int>& shown, const QPointF& pos, double radius, double limit2,
          Nearest* nearest);

} // namespace CurveNearest

#endif // GNSSPLOT_CURVENEAREST_P_H
