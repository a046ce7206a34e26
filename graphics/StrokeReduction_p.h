#ifndef GNSSPLOT_STROKEREDUCTION_P_H
#define GNSSPLOT_STROKEREDUCTION_P_H

// Cutting a translucent one-pixel polyline down to fewer points without
// changing a single pixel of Qt's raster drawing of it.
//
// Qt draws an aliased polyline whose pen is at most one device pixel wide by
// walking each segment pixel by pixel and blending the pen colour into every
// pixel it meets, once per meeting. A translucent pixel therefore darkens
// with every segment that crosses it, which is why simply dropping points
// (as an opaque pen would allow) changes the picture. But blending one colour
// again and again settles after a few rounds (eight for alpha 128): from then
// on the pixel no longer changes. Dense data crosses most pixels of a column
// far more often than that. So a column's inner points may go wherever every
// pixel keeps its crossing count, or a count at least that settling number
// where it already had one, and the line state handed on to the next column
// stays the same.
//
// StrokeModel repeats what Qt's stroker computes for each segment (first and
// last pixel, the duplicate pixel at joints, the pixel added where the
// direction turns, the state carried to the next segment) without drawing.
// reduceStroke() uses it to propose a shorter path through each column and
// keeps the proposal only where the model shows the same counts and the same
// state after it; everywhere else the original points stay.

#include "StrokeModel_p.h"

#include <QPolygon>

// Writes to \a out a polyline that \a target's painter draws exactly as it
// draws \a run, with fewer points where the data allows; returns false (and
// leaves \a out empty) when it keeps every point.
bool reduceStroke(const QPolygon& run, const StrokeTarget& target, QPolygon& out);

#endif // GNSSPLOT_STROKEREDUCTION_P_H
