// SPDX-License-Identifier: MIT
#include "EpochTimeHeader_p.h"

#include "CurveGraphicsTableWidget_Epoch_p.h"
#include "TimeLabeller_p.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

// Room around the texts and the length of a tick mark, pixels.
constexpr int kPad = 2;
constexpr int kTickMark = 4;

} // namespace

EpochTimeHeader::EpochTimeHeader(CurveGraphicsTableWidget_EpochPrivate* table,
                                 const QHeaderView* like)
    : QHeaderView(Qt::Horizontal)
    , m_table(table)
{
    if (!like)
        return;
    setSectionsClickable(like->sectionsClickable());
    setHighlightSections(like->highlightSections());
    setDefaultAlignment(like->defaultAlignment());
    setDefaultSectionSize(like->defaultSectionSize());
    setMinimumSectionSize(like->minimumSectionSize());
    setStretchLastSection(like->stretchLastSection());
}

void EpochTimeHeader::setAxisShown(bool bShown)
{
    if (bShown == m_bAxis)
        return;
    m_bAxis = bShown;
    updateGeometry();
    viewport()->update();
}

void EpochTimeHeader::setRoundTicks(bool bRound)
{
    if (bRound == m_bRound)
        return;
    m_bRound = bRound;
    viewport()->update();
}

QSize EpochTimeHeader::sizeHint() const
{
    QSize size = QHeaderView::sizeHint();
    if (m_bAxis)
        size.setHeight(2 * QFontMetrics(TimeLabeller::axisFont()).height() + 2 * kPad + kTickMark);
    return size;
}

void EpochTimeHeader::paintEvent(QPaintEvent* event)
{
    if (!m_bAxis) {
        QHeaderView::paintEvent(event);
        return;
    }
    QPainter painter(viewport());
    const QRect strip = viewport()->rect();
    painter.fillRect(strip, palette().window());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(strip.bottomLeft(), strip.bottomRight());

    const TimeWindow shown = m_table->shownWindow();
    QRect cell;
    if (!shown.isValid() || !m_table->barCell(cell))
        return;
    const double tMin = m_table->toLinked(shown.getMin());
    const double tMax = m_table->toLinked(shown.getMax());
    // The plot's font, so that the same window gets the same ticks.
    const QFont font = TimeLabeller::axisFont();
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const int lineHeight = metrics.height();
    const TimeLabeller::Labels labels =
        TimeLabeller::axisLabels(tMin, tMax, double(cell.width()), font, m_bRound);

    // Over the check boxes: the time system above the date, as the plot
    // captions its axis.
    painter.setPen(palette().color(QPalette::WindowText));
    const int captionWidth = qMax(0, cell.left() - 2 * kPad);
    painter.drawText(QRect(kPad, kPad, captionWidth, lineHeight), Qt::AlignLeft,
                     TimeLabeller::timeSystemCaption());
    painter.drawText(QRect(kPad, kPad + lineHeight, captionWidth, lineHeight), Qt::AlignLeft,
                     labels.date);

    // Over the bars: a mark at each tick and its label on the lower line.
    const int textTop = kPad + lineHeight;
    const int markTop = strip.bottom() - kTickMark;
    int index = 0;
    const int count = labels.ticks.size();
    for (auto it = labels.ticks.cbegin(); it != labels.ticks.cend(); ++it, ++index) {
        const double x = double(cell.left()) + it.key() * double(cell.width());
        painter.drawLine(QPointF(x, markTop), QPointF(x, strip.bottom()));
        const int width = metrics.horizontalAdvance(it.value());
        double left = x - width * 0.5;
        // Evenly spaced labels keep the first and last inside the bars.
        if (!labels.bCentred && count >= 2 && index == 0)
            left = cell.left();
        else if (!labels.bCentred && count >= 2 && index == count - 1)
            left = cell.left() + cell.width() - width;
        // A centred label that would stick out past the bars is left out: it
        // would run into the date or off the table. The mark stays.
        if (left < cell.left() || left + width > cell.left() + cell.width())
            continue;
        painter.drawText(QRectF(left, textTop, width, lineHeight), Qt::AlignLeft, it.value());
    }
}
