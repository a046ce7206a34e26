// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVE_COORD_XY_P_H
#define GNSSPLOT_CURVE_COORD_XY_P_H

// The arithmetic of Curve_Coord_XY::map() for one value at a time, so that
// code which maps samples itself (the curve item) rounds exactly as map()
// does: subtract the minimum, divide by the range, multiply by the pixel
// extent, then offset.

#include "Curve_Coord_XY.h"

/*! The area of a Curve_Coord_XY as map() uses it: the minima and the ranges
    (maximum - minimum), each computed once. */
struct CoordMapping
{
    double xMin; //!< Data value at the left edge.
    double rx;   //!< X maximum - X minimum.
    double yMin; //!< Data value at the bottom edge (the top edge when Y runs down).
    double ry;   //!< Y maximum - Y minimum.

    /*! The mapping of \a coord's current area. */
    static CoordMapping of(const Curve_Coord_XY& coord)
    {
        double xMin, xMax, yMin, yMax;
        coord.getArea(xMin, xMax, yMin, yMax);
        return CoordMapping{xMin, xMax - xMin, yMin, yMax - yMin};
    }

    /*! Pixel X of \a x in a rectangle starting at \a left, \a width wide. */
    double mapX(double x, double left, double width) const
    {
        return ((x - xMin) / rx) * width + left;
    }

    /*! Pixel Y of \a y in a rectangle from \a top, \a height high: the Y
        minimum lands on the bottom edge (top + height), or on the top edge
        with \a bYDown. A NaN \a y gives NaN; map() passes NaN through before
        calling this. */
    double mapY(double y, double top, double height, bool bYDown) const
    {
        const double t = ((y - yMin) / ry) * height;
        return bYDown ? top + t : (top + height) - t;
    }
};

#endif // GNSSPLOT_CURVE_COORD_XY_P_H
