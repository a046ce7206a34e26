// SPDX-License-Identifier: MIT
#include "CurveGraphicsItem_Overlay_p.h"

#include "CurveGraphicsItem_Curve_p.h"
#include "CurveVectorPainter_p.h"

#include <QPainter>

CurveGraphicsItem_Overlay::CurveGraphicsItem_Overlay(CurveOverlayState* state, Curves curves,
                                                     QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_state(state)
    , m_curves(std::move(curves))
{
    // Above every curve item, and nothing of it reaches the labels.
    setZValue(1.0);
    setFlag(QGraphicsItem::ItemClipsToShape, true);
}

QRectF CurveGraphicsItem_Overlay::boundingRect() const
{
    return QRectF(0.0, -m_height, m_width, m_height);
}

void CurveGraphicsItem_Overlay::onDataAreaChanged(double w, double h)
{
    // Sized as the curve items size themselves, so that both clip alike.
    const int width = CurveVectorPainter::toPixel(w);
    const int height = CurveVectorPainter::toPixel(h);
    if (width == m_width && height == m_height)
        return;
    prepareGeometryChange();
    m_width = width;
    m_height = height;
}

void CurveGraphicsItem_Overlay::updateRing(const QPointF& centre)
{
    // The pen's half width and a pixel for antialiasing around the radius.
    const double reach = kRingRadius + kRingWidth / 2.0 + 1.0;
    update(QRectF(centre.x() - reach, centre.y() - reach, 2.0 * reach, 2.0 * reach));
}

void CurveGraphicsItem_Overlay::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                      QWidget*)
{
    CurveGraphicsItem_Curve_XY* picked =
        m_state->bMarker && m_state->picked && m_state->picked->isVisible()
            ? m_state->picked.data()
            : nullptr;
    if (picked)
        picked->paintThrough(painter, &m_state->front);

    painter->save();
    // Ticks and ring sit on whole item pixels, as the samples do.
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (CurveGraphicsItem_Curve_XY* item : m_curves()) {
        if (item->hasEventMarks())
            item->paintEventMarks(painter, m_state->palette);
    }
    QPointF centre;
    if (picked && picked->samplePixelCentre(m_state->pickedY, m_state->pickedIndex, &centre)) {
        painter->setRenderHint(QPainter::Antialiasing, true);
        QPen pen(Qt::black);
        pen.setWidthF(kRingWidth);
        painter->setPen(pen);
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(centre, kRingRadius, kRingRadius);
    }
    painter->restore();
}
