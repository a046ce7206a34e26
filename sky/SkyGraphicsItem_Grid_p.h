// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_GRID_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_GRID_P_H

#include "SkyGraphicsItem_p.h"

#include <QString>
#include <QVector>

class QPainter;

/*
    The polar grid: elevation rings every 15 degrees (the horizon drawn
    darker), azimuth spokes every 30 degrees with their labels outside the
    rim, the elevation of each ring beside the north spoke, and, when the
    host sets an elevation mask, a dashed ring there with the sky below it
    shaded.
*/
class SkyGraphicsItem_Grid : public SkyGraphicsItem
{
public:
    static constexpr double kRingStep = 15.0;
    static constexpr double kSpokeStep = 30.0;

    using SkyGraphicsItem::SkyGraphicsItem;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // The label of the spoke at \a azimuth (a multiple of 30 degrees): the
    // translated "N", "E", "S" and "W" at the cardinal points, else the
    // degrees.
    static QString azimuthLabel(int azimuth);
    // The label of the ring at \a elevation.
    static QString elevationLabel(int elevation);
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_GRID_P_H
