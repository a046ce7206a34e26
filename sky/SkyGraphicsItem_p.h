// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_P_H

#include "SkyScaleMap_p.h"
#include "SkySettings_p.h"
#include "SkyTrackSet_p.h"

#include <QGraphicsItem>

/*
    What every part of a sky plot shares: the layout of the picture, the
    host's settings and the tracks. The parts are graphics items in scene
    coordinates (the view's logical pixels) at position (0, 0), stacked by
    Z value: the sky map, the grid, the tracks, the time cursor's marks and
    the colour bar. Settings and tracks are not owned; the view keeps them
    alive longer than its items.
*/
class SkyGraphicsItem : public QGraphicsItem
{
public:
    SkyGraphicsItem(const SkySettings* settings, SkyTrackSet* tracks,
                    QGraphicsItem* parent = nullptr)
        : QGraphicsItem(parent)
        , m_settings(settings)
        , m_tracks(tracks)
    {
    }

    // Places the item's part of the picture; repaints when it moved.
    void setLayout(const SkyLayout& layout)
    {
        if (layout == m_layout)
            return;
        prepareGeometryChange();
        m_layout = layout;
        ++m_layoutVersion;
        update();
    }
    const SkyLayout& layout() const { return m_layout; }
    QRectF boundingRect() const override { return QRectF(QPointF(0.0, 0.0), m_layout.size); }

protected:
    const SkySettings* m_settings;
    SkyTrackSet* m_tracks;
    SkyLayout m_layout;
    quint64 m_layoutVersion = 1;
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_P_H
