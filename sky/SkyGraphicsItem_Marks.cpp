// SPDX-License-Identifier: MIT
#include "SkyGraphicsItem_Marks_p.h"

#include <QFontMetricsF>
#include <QPainter>

QVector<SkyGraphicsItem_Marks::Mark> SkyGraphicsItem_Marks::marks() const
{
    QVector<Mark> out;
    if (!m_settings->bCursor || !m_layout.isDrawable())
        return out;
    const SkyProjection projection = m_layout.projection();
    for (SkyTrackSet::Track* track : m_tracks->refresh()) {
        if (!track->bVisible)
            continue;
        SkyTrackSource& source = track->source;
        source.checkTimeOrder();
        const qint64 j = source.nearestInTime(m_settings->cursorMs);
        if (j < 0 || !source.isDrawable(j, false))
            continue;
        double x = 0.0;
        double y = 0.0;
        projection.toScene(source.azimuths[j], source.elevations[j], x, y);
        out.append(Mark{track->name, j, QPointF(x, y), track->colour});
    }
    return out;
}

void SkyGraphicsItem_Marks::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QVector<Mark> all = marks();
    if (all.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    QFont font = painter->font();
    font.setPointSizeF(8.0);
    painter->setFont(font);
    for (const Mark& mark : all) {
        QColor colour = mark.colour;
        colour.setAlpha(255);
        painter->setPen(QPen(colour, 2.0));
        painter->setBrush(QColor(255, 255, 255, 200));
        painter->drawEllipse(mark.at, kRingRadius, kRingRadius);
        painter->setPen(QColor(40, 40, 40));
        painter->drawText(mark.at + QPointF(kRingRadius + 2.0, -kRingRadius - 1.0), mark.track);
    }
    painter->restore();
}
