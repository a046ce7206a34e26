// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVE_COORD_XY_H
#define GNSSPLOT_CURVE_COORD_XY_H

#include "Curve_Coord.h"

#include <QRectF>

/*!
    \class Curve_Coord_XY
    \brief A rectangular X/Y area in data units (X in milliseconds, Y in
    metres for time curves) and the mapping of sample arrays into a pixel
    rectangle.

    A new object spans the widest possible area (-DBL_MAX .. DBL_MAX on both
    axes) and has been set 0 times.
*/
class GNSSPLOT_EXPORT Curve_Coord_XY : public Curve_Coord
{
    Q_OBJECT
public:
    /*! Creates a coordinate with the widest area and a set counter of 0. */
    explicit Curve_Coord_XY(QObject* parent = nullptr);
    /*! Destroys the coordinate object. Emits nothing. */
    ~Curve_Coord_XY() override;

    /*! Takes the area, counts it and emits sgCoordAreaChanged(). Refused
        (\c false, nothing changes, no signal) when \a xMin >= \a xMax or
        \a yMin >= \a yMax. The comparisons are plain, so a NaN bound is not
        refused. */
    bool setArea(double xMin, double xMax, double yMin, double yMax);
    /*! Copies the four bounds out, in the order setArea() takes them. */
    void getArea(double& xMin, double& xMax, double& yMin, double& yMax) const;
    /*! Returns the number of successful setArea() calls since construction. */
    int areaSettedNumber() const;

    /*! Maps \a num sample pairs into \a rect (pixels): X minimum lands on the
        left edge, Y minimum on the bottom edge (the top edge with \a bYDown).
        Writes \a pixelXs[0 .. num-1] and \a pixelYs[0 .. num-1]. A NaN Y is
        passed through as NaN; nothing is clipped. Each coordinate is computed
        as ((value - minimum) / range) * extent + offset, in that order.
        \a pixelXs must not share storage with \a ys. */
    void map(const QRectF& rect, qint64 num, const double* xs, const double* ys,
             double* pixelXs, double* pixelYs, bool bYDown) const;

private:
    class PrivateData;
    // All state lives here, so that a later release can add to it without
    // changing the size of the class.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(Curve_Coord_XY)
};

#endif // GNSSPLOT_CURVE_COORD_XY_H
