// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEPEN_P_H
#define GNSSPLOT_CURVEPEN_P_H

#include "CurveScene.h"

#include <QColor>
#include <QPen>
#include <QtGlobal>

/*
    How a curve's pens look, in one place for every way of drawing it (the
    picture, vector devices, antialiased painting) and for the Y-selection
    boxes that share the single-show colours.

    The width rule by the number of points of a run, in the lines style:
    a single point is a 4.0-wide point; 2 to 1000 points are drawn 2.0 wide;
    from 1000 to 2000 points the width falls as 2000 / n; from 2000 points on
    the run is drawn with the one-pixel pen, which the picture counts instead
    of stroking. The points style draws every sample 2.0 wide.
*/
namespace CurvePen {

// Runs of this many points or more are drawn with the one-pixel pen.
constexpr qint64 kThinRun = 2000;

// The width of a run of \a points points in the lines style (1 point: 4.0).
qreal runWidth(qint64 points);
// Whether a run of \a points points is drawn with the one-pixel pen.
inline bool isThin(qint64 points)
{
    return points >= kThinRun;
}
// The width of every sample in the points style.
constexpr qreal kPointWidth = 2.0;

// \a pen with the width that a run of \a points points takes in \a cap.
QPen forRun(const QPen& pen, ECurveShowCap cap, qint64 points);

// The colours of Y index \a yIndex while a curve is shown alone (the
// first Y axis blue, the others green); the Y-selection item fills its
// boxes with the same two.
QColor singleShowColor(int yIndex);

// The normal pen of Y index \a yIndex of a curve whose pen is \a base: the
// first Y axis keeps \a base, later ones brighter shades of its red and
// green (R * k * 1.3 and G * k * 1.3, cut at 255), blue 0, alpha 128.
QPen normalPen(const QPen& base, int yIndex);

} // namespace CurvePen

#endif // GNSSPLOT_CURVEPEN_P_H
