// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_COLORBAR_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_COLORBAR_P_H

#include "SkyGraphicsItem_p.h"

class QPainter;

/*
    The colour bar beside the sky: the scale's levels from the bottom (the
    range's minimum) to the top (its maximum), labelled with both ends and
    a few round values between them, the unit above. Shown while the tracks
    or the sky map are coloured by value.
*/
class SkyGraphicsItem_ColorBar : public SkyGraphicsItem
{
public:
    using SkyGraphicsItem::SkyGraphicsItem;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // The labels the bar shows, each with its scene y.
    struct Placed
    {
        double y;
        QString text;
    };
    QVector<Placed> labels() const;
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_COLORBAR_P_H
