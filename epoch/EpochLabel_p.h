// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHLABEL_P_H
#define GNSSPLOT_EPOCHLABEL_P_H

#include "EpochGeometry_p.h"
#include "EventMark.h"
#include "EventMarkPalette_p.h"
#include "stEpochDataSet.h"

#include <QBrush>
#include <QLabel>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPen>
#include <QRect>
#include <QVector>

/*
    The bar cell of one satellite row of CurveGraphicsTableWidget_Epoch: one
    thin bar per data set over the epoch range, the satellite's erase marks as
    crossed boxes, and the outline of the drag in progress.

    The label only shows: the marks belong to the table's EpochTableModel,
    which hands each label a copy of its satellite's marks after every
    change. The setters below do not repaint; the table asks for that once
    it is done.
*/
class EpochLabel : public QLabel
{
    Q_OBJECT
public:
    EpochLabel();

    // Replaces everything the label shows and repaints: the range, the data
    // sets (one brush each, coloured or grey by bSatelliteEnabled) and marks.
    void setEpochData(qint64 startTime, qint64 endTime, const QList<stEpochDataSet>& dataSets,
                      bool satelliteEnabled, const QMap<int, QPair<qint64, qint64>>& eraseMarks);
    // Empties range, data sets, marks and brushes; keeps the enabled flag.
    void clearEpochData();

    qint64 getStartTime() const { return startTime; }
    qint64 getEndTime() const { return endTime; }
    bool getSatelliteEnabled() const { return satelliteEnabled; }
    const QList<stEpochDataSet>& getDataSets() const { return dataSets; }
    const QList<QBrush>& getBrushes() const { return brushes; }

    // The marks shown, by action number.
    const QMap<int, QPair<qint64, qint64>>& getEraseMarks() const { return eraseMarks; }
    void setEraseMarks(const QMap<int, QPair<qint64, qint64>>& marks) { eraseMarks = marks; }

    // The drag rectangle in the table viewport's coordinates; null when none.
    QRect getDragRect() const { return dragRect; }
    void setDragRect(const QRect& rect) { dragRect = rect; }

    // The first mark, in ascending key order, whose box contains the point
    // in label coordinates; -1 when none does or the range is empty.
    int eraseMarkKeyAt(const QPointF& pos) const;
    // Every mark whose box contains the point, in ascending key order.
    QList<int> eraseMarkKeysAt(const QPointF& pos) const;

    // The part of the range the bars and marks show; inactive (the whole
    // range) unless the table's time window is zoomed. Does not repaint.
    const EpochWindow& getTimeWindow() const { return window; }
    void setTimeWindow(const EpochWindow& w) { window = w; }

    // The host's event marks per data set and the colours of their kinds.
    // Do not repaint.
    const QList<QVector<EventMark>>& getEventMarks() const { return eventMarks; }
    void setEventMarks(const QList<QVector<EventMark>>& marks) { eventMarks = marks; }
    void setEventColors(const EventMarkPalette& colors) { eventColors = colors; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    EpochMapping markMapping() const;

    qint64 startTime = 0;
    qint64 endTime = 0;
    QList<stEpochDataSet> dataSets;
    bool satelliteEnabled = true;
    QMap<int, QPair<qint64, qint64>> eraseMarks;
    QList<QBrush> brushes;
    QPen markPen;
    QPen rectPen;
    QRect dragRect;
    EpochWindow window;
    QList<QVector<EventMark>> eventMarks;
    EventMarkPalette eventColors;
};

#endif // GNSSPLOT_EPOCHLABEL_P_H
