// SPDX-License-Identifier: MIT
#include "ElidedLabel.h"

#include <QFontMetrics>
#include <QPainter>

namespace gnssdemo {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QFrame(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    updateGeometry();
    update();
    setToolTip(isElided() ? m_text : QString());
}

bool ElidedLabel::isElided() const
{
    return fontMetrics().horizontalAdvance(m_text) > contentsRect().width();
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return QSize(metrics.horizontalAdvance(m_text) + 4, metrics.height() + 2);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return QSize(20, fontMetrics().height() + 2);
}

void ElidedLabel::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    const QRect area = contentsRect();
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, area.width()));
    // The tool tip follows the width: whole text only when it is cut.
    const QString tip = isElided() ? m_text : QString();
    if (toolTip() != tip)
        setToolTip(tip);
}

} // namespace gnssdemo
