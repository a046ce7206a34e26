// SPDX-License-Identifier: MIT
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurvePen_p.h"
#include "gnssplot_qtcompat_p.h"

#include <QGraphicsSceneMouseEvent>
#include <QMarginsF>
#include <QPainter>
#include <QTextOption>

CurveGraphicsItem_ShowWhichY::CurveGraphicsItem_ShowWhichY(QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_rect(QRectF(0.0, 0.0, 60.0, 60.0) + QMarginsF(1.0, 1.0, 1.0, 1.0))
    , m_boxPen(QColor(63, 72, 204, 255))
    // The boxes wear the colours a curve shown alone is drawn in.
    , m_firstBrush(CurvePen::singleShowColor(0), Qt::SolidPattern)
    , m_otherBrush(CurvePen::singleShowColor(1), Qt::SolidPattern)
    , m_textPen(Qt::black)
    , m_font(QStringLiteral("Arial"), -1, -1, false)
{
    m_boxPen.setWidth(0);
    m_textPen.setWidthF(1.0);
    m_font.setPointSizeF(8.0);
    // Weight 2 on the 0..99 scale: a deliberately thin face for the legend.
    GnssPlotCompat::setLegacyFontWeight(m_font, 2);
    m_selection.insert(QStringLiteral("F 1"), true);
    m_selection.insert(QStringLiteral("F 2"), false);
}

void CurveGraphicsItem_ShowWhichY::getSelection(QMap<QString, bool>& selection) const
{
    selection = m_selection;
}

QRectF CurveGraphicsItem_ShowWhichY::boundingRect() const
{
    return m_rect;
}

QRectF CurveGraphicsItem_ShowWhichY::boxRect(int k)
{
    return QRectF(0.0, 30.0 * k + 5.0, 20.0, 20.0);
}

QRectF CurveGraphicsItem_ShowWhichY::labelRect(int k)
{
    return QRectF(32.0, 30.0 * k + 5.0, 28.0, 20.0);
}

void CurveGraphicsItem_ShowWhichY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                         QWidget*)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    int k = 0;
    for (auto it = m_selection.cbegin(); it != m_selection.cend(); ++it, ++k) {
        painter->setPen(m_boxPen);
        const QRectF box = boxRect(k);
        if (it.value()) {
            // The fill colours are the single-show colours of the curve items,
            // so a checked box doubles as the legend of that Y axis.
            painter->fillRect(box, k == 0 ? m_firstBrush : m_otherBrush);
        } else {
            painter->setBrush(Qt::NoBrush);
            painter->drawRect(box);
        }
        painter->setPen(m_textPen);
        painter->setFont(m_font);
        painter->drawText(labelRect(k), it.key(), QTextOption());
    }
    painter->restore();
}

void CurveGraphicsItem_ShowWhichY::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    // The base handler is deliberately not called: the press belongs to the
    // legend even when it misses every box, so nothing underneath reacts.
    const QPointF pos = event->pos();
    bool changed = false;
    int k = 0;
    for (auto it = m_selection.begin(); it != m_selection.end(); ++it, ++k) {
        if (boxRect(k).contains(pos)) {
            it.value() = !it.value();
            changed = true;
        }
    }
    if (changed) {
        emit selectionChanged();
        update();
    }
}
