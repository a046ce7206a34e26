// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHBARS_P_H
#define GNSSPLOT_EPOCHBARS_P_H

#include "EpochGeometry_p.h"
#include "EventMark.h"
#include "EventMarkPalette_p.h"
#include "stEpochDataSet.h"

#include <QBrush>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPen>
#include <QRect>
#include <QVector>

class QPainter;

/*!
    Everything one row of bars shows, handed to paintEpochBars() as one value.
    Lists and maps are Qt's implicitly shared containers, so filling one from
    a label's fields copies no elements. What a row will show later (marks of
    events, say) is added here, once, for the table and its pixmaps alike.
*/
struct EpochBarsContent
{
    /*! The epoch range; nothing but the drag outline is drawn unless
        startTime < endTime. */
    qint64 startTime = 0;
    qint64 endTime = 0;
    /*! One bar per data set, data set i in brushes[i]. */
    QList<stEpochDataSet> dataSets;
    QList<QBrush> brushes;
    /*! Erase marks by action number, drawn as crossed boxes in markPen. */
    QMap<int, QPair<qint64, qint64>> eraseMarks;
    QPen markPen;
    /*! The drag outline in the painted rectangle's own coordinates (0, 0 at
        its top-left), drawn in rectPen when it has a positive size. */
    QRect dragRect;
    QPen rectPen;
    /*! The part of the range shown; inactive for the whole range. */
    EpochWindow window;
    /*! Event marks per data set, drawn as ticks on that data set's bar in
        their kind's colour from eventColors. Marks of data sets without a
        bar draw nothing. */
    QList<QVector<EventMark>> eventMarks;
    /*! The colours of the marks' kinds. */
    EventMarkPalette eventColors;
};

/*! Half the width of an event tick on a bar, pixels. */
constexpr int kEpochTickHalfWidth = 1;

/*!
    The one painter of epoch bars, used by EpochLabel and by the pixmap
    painting of CurveGraphicsTableWidget_Epoch.

    Paints \a content into \a target, a rectangle of the painter's device
    whose size sets the scale and whose top-left is the bars' origin. Bars of
    data set i are 4 pixels high at y = 4 + 6 i, mapped with x = (t -
    startTime) * width / (endTime - startTime); erase marks are boxes with
    both diagonals from y 2 to height - 4. An active window maps its own span
    over the width instead; bars and marks keep their epochs and are only cut
    at the edges.

    An event mark at epoch t of [startTime, endTime] on data set i (marks at
    other epochs are skipped) is a tick over the bar, between
    the bars and the erase marks: the device-independent pixels from column
    floor(x) - kEpochTickHalfWidth to floor(x) + kEpochTickHalfWidth - 1,
    x being t's, and rows kEpochBarTop + kEpochBarPitch * i - 1 to the bar's
    bottom row + 1, filled in the kind's colour.

    Stretches and marks that lie wholly outside the target are skipped and
    far-away coordinates are cut back to just beyond it, which leaves the
    image unchanged. The painter's state is restored on return. Nothing is
    allocated per stretch.
*/
void paintEpochBars(QPainter* painter, const QRect& target, const EpochBarsContent& content);

#endif // GNSSPLOT_EPOCHBARS_P_H
