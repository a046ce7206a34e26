// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_MARKS_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_MARKS_P_H

#include "SkyGraphicsItem_p.h"

#include <QColor>
#include <QPointF>
#include <QString>
#include <QVector>

class QPainter;

/*
    The time cursor: a ring in its colour, and its name, where each visible
    satellite is at the cursor's time, its sample nearest in time within one
    mean sample interval. A satellite below the horizon there, or in a gap
    of its data, gets no mark.
*/
class SkyGraphicsItem_Marks : public SkyGraphicsItem
{
public:
    static constexpr double kRingRadius = 4.0;

    using SkyGraphicsItem::SkyGraphicsItem;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    struct Mark
    {
        QString track;
        qint64 index;
        QPointF at;  // scene pixels
        QColor colour;
    };
    // The marks of the cursor in force; none without a cursor.
    QVector<Mark> marks() const;
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_MARKS_P_H
