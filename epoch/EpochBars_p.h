// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHBARS_P_H
#define GNSSPLOT_EPOCHBARS_P_H

#include "EpochGeometry_p.h"
#include "stEpochDataSet.h"

#include <QBrush>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPen>
#include <QRect>

class QPainter;
class QWidget;

/*!
    The one painter of epoch bars, used by EpochLabel and by the pixmap
    painting of CurveGraphicsTableWidget_Epoch.

    With a \a widget, \a rect is the drag rectangle in the coordinates of the
    widget's parent (the table viewport), outlined in \a rectPen when it has a
    positive size, and the widget's size sets the scale. Without a widget,
    \a rect is the target area whose size sets the scale; no drag rectangle is
    drawn. Bars of data set i are 4 pixels high at y = 4 + 6 i, in brushes[i],
    mapped with x = (t - startTime) * width / (endTime - startTime); erase marks
    are boxes with both diagonals in \a markPen from y 2 to height - 4. An
    empty or inverted range draws only the drag rectangle. An active
    \a window maps its own span over the width instead; bars and marks keep
    their epochs and are only cut at the edges.

    The painted device must span x 0 to width and y 0 to height (a widget's
    own painter, or a pixmap of that size): stretches and marks that lie wholly
    outside it are skipped and far-away coordinates are cut back to just
    beyond it, which leaves the image unchanged. The painter's state is
    restored on return. Nothing is allocated per stretch.
*/
void paintEpochBars(QPainter* painter, QWidget* widget, const QRect& rect, qint64 startTime,
                    qint64 endTime, const QList<stEpochDataSet>& dataSets,
                    const QMap<int, QPair<qint64, qint64>>& eraseMarks,
                    const QList<QBrush>& brushes, const QPen& markPen, const QPen& rectPen,
                    const EpochWindow& window = EpochWindow());

#endif // GNSSPLOT_EPOCHBARS_P_H
