// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_COORDMAPPING_P_H
#define GNSSPLOT_COORDMAPPING_P_H

#include <QRectF>

/*
    The arithmetic that maps data values into a pixel rectangle, in one place:
    Curve_Coord_XY::map and the curve item's rebuild both go through it, so a
    pixel worked out in either is the same to the last bit. The order
    (subtract the minimum, divide by the range, multiply by the extent, then
    offset) is part of the contract: it fixes every rounded pixel.
*/
struct CoordMapping
{
    CoordMapping(const QRectF& rect, double xMin, double xMax, double yMin, double yMax,
                 bool bYDown)
        : xMin(xMin)
        , rx(xMax - xMin)
        , width(rect.width())
        , left(rect.left())
        , yMin(yMin)
        , ry(yMax - yMin)
        , height(rect.height())
        , top(rect.top())
        , bottom(rect.top() + rect.height())
        , yDown(bYDown)
    {
    }

    double mapX(double x) const { return ((x - xMin) / rx) * width + left; }
    // A NaN stays NaN through the arithmetic; callers that must pass it on
    // unchanged (payload and all) test for it themselves.
    double mapY(double y) const { return yDown ? mapYAs<true>(y) : mapYAs<false>(y); }
    // The same with the direction fixed, for loops that decide it once.
    template <bool bYDown>
    double mapYAs(double y) const
    {
        const double t = ((y - yMin) / ry) * height;
        return bYDown ? top + t : bottom - t;
    }

    double xMin;
    double rx;
    double width;
    double left;
    double yMin;
    double ry;
    double height;
    double top;
    double bottom;
    bool yDown;
};

#endif // GNSSPLOT_COORDMAPPING_P_H
