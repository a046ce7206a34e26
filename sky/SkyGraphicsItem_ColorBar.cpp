// SPDX-License-Identifier: MIT
#include "SkyGraphicsItem_ColorBar_p.h"

#include <QFontMetricsF>
#include <QPainter>

namespace {

QFont labelFont(const QFont& base)
{
    QFont font = base;
    font.setPointSizeF(8.0);
    return font;
}

} // namespace

QVector<SkyGraphicsItem_ColorBar::Placed> SkyGraphicsItem_ColorBar::labels() const
{
    QVector<Placed> out;
    const QRectF bar = m_layout.bar;
    if (bar.isEmpty() || !m_settings->colourBarShown())
        return out;
    const SkyColorScale scale = m_settings->scaleFor(*m_tracks);
    const QFontMetricsF metrics(labelFont(QFont()));
    const double span = scale.getMax() - scale.getMin();
    for (const SkyColorScale::Label& label : scale.barLabels(bar.height(), metrics.height())) {
        const double y = bar.bottom() - (label.value - scale.getMin()) / span * bar.height();
        out.append(Placed{y, label.text});
    }
    return out;
}

void SkyGraphicsItem_ColorBar::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                     QWidget*)
{
    const QRectF bar = m_layout.bar;
    if (bar.isEmpty() || !m_settings->colourBarShown())
        return;
    const SkyColorScale scale = m_settings->scaleFor(*m_tracks);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(Qt::NoPen);
    const double band = bar.height() / SkyColorScale::kLevels;
    for (int level = 0; level < SkyColorScale::kLevels; ++level) {
        // Each band reaches into the next one's first pixel, so no gap opens
        // between them at any scale.
        const QRectF rect(bar.left(), bar.bottom() - (level + 1) * band, bar.width(),
                          band + (level + 1 < SkyColorScale::kLevels ? 0.5 : 0.0));
        painter->fillRect(rect, QColor::fromRgba(scale.colourOf(level)));
    }
    painter->setPen(QPen(QColor(80, 80, 80), 1.0));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(bar);

    const QFont font = labelFont(painter->font());
    painter->setFont(font);
    const QFontMetricsF metrics(font);
    for (const Placed& label : labels()) {
        painter->drawLine(QPointF(bar.right(), label.y), QPointF(bar.right() + 4.0, label.y));
        painter->drawText(QPointF(bar.right() + 7.0, label.y + metrics.ascent() / 2.0 - 1.0),
                          label.text);
    }
    if (!m_settings->unit.isEmpty()) {
        const double width = metrics.horizontalAdvance(m_settings->unit);
        painter->drawText(QPointF(bar.center().x() - width / 2.0, bar.top() - metrics.descent()
                                                                     - 4.0),
                          m_settings->unit);
    }
    painter->restore();
}
