// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEVECTORPAINTER_P_H
#define GNSSPLOT_CURVEVECTORPAINTER_P_H

#include "CoordMapping_p.h"
#include "CurveScene.h"
#include "CurveSnapshot_p.h"

#include <QList>
#include <QPen>
#include <QPolygon>
#include <QVector>

#include <vector>

class QPainter;

/*
    A curve as integer polylines in item pixels, and the painting of them
    through QPainter where no picture serves: vector devices (PDF, SVG,
    QPicture), antialiased painting, rotated or sheared painters. On vector
    devices each long run is reduced to the first, lowest, highest and last
    point of every device-pixel column, so a curve of a million samples makes
    a small file.
*/
namespace CurveVectorPainter {

// Item pixel coordinates are kept within +-kPixelLimit so that every int
// computed from them, also inside Qt, stays far from overflow.
constexpr int kPixelLimit = 1 << 28;
// Truncates toward zero for |v| < kPixelLimit, saturates beyond it, and
// maps NaN to 0.
int toPixel(double v);

// The points of \a run of Y index \a yIndex, in item pixels (the pixel of
// Curve_Coord_XY::map, truncated); samples with a NaN on either axis are left
// out and their neighbours joined.
void mapRun(const CurveSnapshot& snapshot, const CoordMapping& mapping, int yIndex,
            const CurveRun& run, QPolygon& out);

// One Y index as the painter draws it.
struct Pass
{
    int yIndex;
    QPen pen;
};

// Draws the runs of \a passes in order with the pen rule of CurvePen;
// \a bReduceThin reduces thin runs to four points per device column.
void draw(QPainter* painter, const CurveSnapshot& snapshot, const CoordMapping& mapping,
          const std::vector<Pass>& passes, ECurveShowCap cap, bool bReduceThin);

} // namespace CurveVectorPainter

#endif // GNSSPLOT_CURVEVECTORPAINTER_P_H
