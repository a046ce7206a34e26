// SPDX-License-Identifier: MIT
#include "EpochBars_p.h"

#include "EpochGeometry_p.h"

#include <QLineF>
#include <QPainter>
#include <QRectF>

#include <cmath>

namespace {

// How far beyond the device edges geometry is kept. It exceeds the reach of
// antialiasing and of the mark pen's square caps, so cutting there changes
// no pixel, while keeping the rasterizer away from huge coordinates.
constexpr double kMargin = 8.0;

// Cuts the line to lo <= x <= hi; false when nothing of it is left. A line
// already inside is returned untouched; the cut points of another lie on the
// same line, so the part that reaches the device is drawn as before.
bool clipLineX(QLineF& line, double lo, double hi)
{
    const QPointF p1 = line.p1();
    const QPointF p2 = line.p2();
    const double left = qMin(p1.x(), p2.x());
    const double right = qMax(p1.x(), p2.x());
    if (left >= lo && right <= hi)
        return true;
    if (right < lo || left > hi)
        return false;
    // Both ends share one x only when the line is inside or outside, handled
    // above, so the run is not zero here.
    const double slope = (p2.y() - p1.y()) / (p2.x() - p1.x());
    const auto cut = [&p1, slope, lo, hi](const QPointF& p) {
        const double x = qBound(lo, p.x(), hi);
        return x == p.x() ? p : QPointF(x, p1.y() + (x - p1.x()) * slope);
    };
    line = QLineF(cut(p1), cut(p2));
    return true;
}

} // namespace

void paintEpochBars(QPainter* painter, const QRect& target, const EpochBarsContent& content)
{
    if (!painter)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->translate(target.topLeft());

    const QRect& drag = content.dragRect;
    if (drag.width() > 0 && drag.height() > 0) {
        painter->setPen(content.rectPen);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(drag);
    }

    const qint64 startTime = content.startTime;
    const qint64 endTime = content.endTime;
    const int w = target.width();
    const int h = target.height();
    // A device without area shows nothing; leaving early spares the walk.
    if (endTime <= startTime || w <= 0 || h <= 0) {
        painter->restore();
        return;
    }
    const double width = double(w);
    const EpochMapping mapping = epochMapping(width, startTime, endTime, content.window);
    if (!(mapping.scale > 0.0) || std::isinf(mapping.scale)) {
        painter->restore();
        return;
    }

    const QList<QBrush>& brushes = content.brushes;
    const QList<stEpochDataSet>& dataSets = content.dataSets;
    Q_ASSERT(brushes.size() >= dataSets.size());
    const int bands = qMin(dataSets.size(), brushes.size());
    painter->setPen(Qt::NoPen);
    for (int i = 0; i < bands; ++i) {
        const double y = double(kEpochBarTop) + double(kEpochBarPitch) * i;
        // Bars below the bottom edge cannot reach a pixel, nor can any later.
        if (y >= double(h))
            break;
        painter->setBrush(brushes.at(i));
        forEachEpochBar(dataSets.at(i).ranges, startTime, endTime, mapping,
                        [painter, width, y](double x1, double x2) {
                            if (x2 <= 0.0 || x1 >= width)
                                return;
                            x1 = qMax(x1, -kMargin);
                            x2 = qMin(x2, width + kMargin);
                            painter->drawRect(QRectF(x1, y, x2 - x1, kEpochBarHeight));
                        });
    }

    // Ticks of events, whole pixels wide so that they stay crisp under
    // antialiasing, one colour per kind.
    const int tickBands = qMin(bands, content.eventMarks.size());
    for (int i = 0; i < tickBands; ++i) {
        const int top = kEpochBarTop + kEpochBarPitch * i - 1;
        if (top >= h)
            break;
        for (const EventMark& mark : content.eventMarks.at(i)) {
            // An epoch outside the range has no place on the bar, even one
            // that would map just inside the edge.
            if (mark.position < startTime || mark.position > endTime)
                continue;
            const double x = mapping.toX(mark.position);
            if (!(x >= -kMargin && x <= width + kMargin))
                continue;
            const int column = int(std::floor(x));
            painter->fillRect(QRect(column - kEpochTickHalfWidth, top, 2 * kEpochTickHalfWidth,
                                    kEpochBarHeight + 2),
                              content.eventColors.color(mark.kind));
        }
    }

    if (!content.eraseMarks.isEmpty()) {
        painter->setPen(content.markPen);
        painter->setBrush(Qt::NoBrush);
        const double top = 2.0;
        const double bottom = double(h - 4);
        const double lo = -kMargin;
        const double hi = width + kMargin;
        for (const QPair<qint64, qint64>& mark : content.eraseMarks) {
            const double x1 = mapping.toX(mark.first);
            const double x2 = mapping.toX(epochSaturatedAdd(mark.first, mark.second));
            const QLineF lines[6] = {
                QLineF(x1, top, x2, top),    QLineF(x1, top, x1, bottom),
                QLineF(x1, bottom, x2, bottom), QLineF(x2, top, x2, bottom),
                QLineF(x1, top, x2, bottom), QLineF(x1, bottom, x2, top),
            };
            for (QLineF line : lines) {
                if (clipLineX(line, lo, hi))
                    painter->drawLine(line);
            }
        }
    }
    painter->restore();
}
