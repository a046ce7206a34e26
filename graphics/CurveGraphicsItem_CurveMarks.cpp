// SPDX-License-Identifier: MIT
// The curve item's event marks: which marks a sample carries, their ticks
// over the picture, and where a sample stands for the picked-sample ring.
#include "CurveGraphicsItem_Curve_p.h"

#include "EventMarkPalette_p.h"

#include <QPainter>

#include <algorithm>

void CurveGraphicsItem_Curve_XY::setEventMarks(const QVector<EventMark>& marks)
{
    m_marks.assign(marks.cbegin(), marks.cend());
    std::stable_sort(m_marks.begin(), m_marks.end(), [](const EventMark& a, const EventMark& b) {
        return a.position < b.position;
    });
}

QList<int> CurveGraphicsItem_Curve_XY::eventKindsAt(qint64 index) const
{
    QList<int> kinds;
    const auto byPosition = [](const EventMark& mark, qint64 at) { return mark.position < at; };
    for (auto it = std::lower_bound(m_marks.cbegin(), m_marks.cend(), index, byPosition);
         it != m_marks.cend() && it->position == index; ++it) {
        kinds.append(it->kind);
    }
    return kinds;
}

namespace {

// The item pixel a sample is drawn in, as the curve's own mapping truncates
// it; false when either value has no place or it lies outside \a area.
bool drawnPixel(const CoordMapping& map, const QRectF& area, double x, double y, QPoint* pixel)
{
    const double px = map.mapX(x);
    const double py = map.mapY(y);
    if (!(px >= area.left() && px <= area.right() && py >= area.top() && py <= area.bottom()))
        return false;
    *pixel = QPoint(CurveVectorPainter::toPixel(px), CurveVectorPainter::toPixel(py));
    return true;
}

} // namespace

void CurveGraphicsItem_Curve_XY::paintEventMarks(QPainter* painter,
                                                 const EventMarkPalette& palette)
{
    if (m_marks.empty() || !isVisible())
        return;
    syncSnapshot();
    if (!m_snapshot.isDrawable())
        return;
    const CoordMapping map = mapping();
    const QRectF area = boundingRect();
    const double* xs = m_snapshot.xs();
    for (const int k : shownYIndexes(m_snapshot.yCount())) {
        const double* ys = m_snapshot.ys(k);
        const qint64 count = m_snapshot.count(k);
        for (const EventMark& mark : m_marks) {
            if (mark.position < 0)
                continue;
            if (mark.position >= count)
                break;
            QPoint pixel;
            if (!drawnPixel(map, area, xs[mark.position], ys[mark.position], &pixel))
                continue;
            painter->fillRect(QRect(pixel.x() - kTickHalfWidth, pixel.y() - kTickHalfHeight,
                                    2 * kTickHalfWidth + 1, 2 * kTickHalfHeight + 1),
                              palette.color(mark.kind));
        }
    }
}

bool CurveGraphicsItem_Curve_XY::samplePixelCentre(int yIndex, qint64 index, QPointF* centre)
{
    syncSnapshot();
    if (!centre || !m_snapshot.isDrawable() || yIndex < 0 || yIndex >= m_snapshot.yCount()
        || index < 0 || index >= m_snapshot.count(yIndex)) {
        return false;
    }
    const std::vector<int> shown = shownYIndexes(m_snapshot.yCount());
    if (std::find(shown.cbegin(), shown.cend(), yIndex) == shown.cend())
        return false;
    QPoint pixel;
    if (!drawnPixel(mapping(), boundingRect(), m_snapshot.xs()[index],
                    m_snapshot.ys(yIndex)[index], &pixel)) {
        return false;
    }
    *centre = QPointF(pixel) + QPointF(0.5, 0.5);
    return true;
}
