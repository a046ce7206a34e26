// SPDX-License-Identifier: MIT
#include "CurvePen_p.h"

#include <algorithm>
#include <cmath>

namespace CurvePen {

qreal runWidth(qint64 points)
{
    if (points <= 1)
        return 4.0;
    // Long runs are drawn thinner so that dense data stays readable.
    return qBound(1.0, 2.0 / (double(points) / 1000.0), 2.0);
}

QPen forRun(const QPen& pen, ECurveShowCap cap, qint64 points)
{
    QPen out = pen;
    out.setWidthF(cap == ECurveShowCap_Point ? kPointWidth : runWidth(points));
    return out;
}

QColor singleShowColor(int yIndex)
{
    return yIndex == 0 ? QColor(0, 34, 255, 255) : QColor(0, 128, 0, 255);
}

QPen normalPen(const QPen& base, int yIndex)
{
    if (yIndex == 0)
        return base;
    // Later Y axes get brighter shades of the curve's red and green, so the
    // frequencies of one curve stay apart.
    const auto shade = [yIndex](qint64 component) {
        return int(std::min(std::trunc(double(component * yIndex) * 1.3), 255.0));
    };
    QPen pen(QColor(shade(base.color().red()), shade(base.color().green()), 0, 128));
    pen.setWidth(0);
    return pen;
}

} // namespace CurvePen
