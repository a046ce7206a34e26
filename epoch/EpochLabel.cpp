// SPDX-License-Identifier: MIT
#include "EpochLabel_p.h"

#include "EpochBars_p.h"
#include "EpochGeometry_p.h"
#include "EpochPalette_p.h"

#include <QPainter>

EpochLabel::EpochLabel()
    : QLabel(nullptr)
    , markPen(QColor(240, 135, 132, 100))
    , rectPen(QColor(0, 0, 0, 255))
{
    markPen.setWidthF(2.0);
}

void EpochLabel::setEpochData(qint64 startTime, qint64 endTime,
                              const QList<stEpochDataSet>& dataSets, bool satelliteEnabled,
                              const QMap<int, QPair<qint64, qint64>>& eraseMarks)
{
    clearEpochData();
    this->startTime = startTime;
    this->endTime = endTime;
    this->dataSets = dataSets;
    this->satelliteEnabled = satelliteEnabled;
    makeEpochBrushes(dataSets.size(), satelliteEnabled, brushes);
    this->eraseMarks = eraseMarks;
    update();
}

void EpochLabel::clearEpochData()
{
    startTime = 0;
    endTime = 0;
    dataSets.clear();
    eraseMarks.clear();
    brushes.clear();
}

EpochMapping EpochLabel::markMapping() const
{
    // Marks are hit-tested over the label's full width, the span painting uses.
    return epochMapping(double(geometry().width()), startTime, endTime, window);
}

int EpochLabel::eraseMarkKeyAt(const QPointF& pos) const
{
    if (endTime <= startTime)
        return -1;
    const EpochMapping mapping = markMapping();
    const int h = height();
    for (auto it = eraseMarks.cbegin(); it != eraseMarks.cend(); ++it) {
        if (epochMarkBox(it.value(), mapping, h).contains(pos))
            return it.key();
    }
    return -1;
}

void EpochLabel::removeEraseMarksAt(const QPoint& globalPos)
{
    if (endTime <= startTime)
        return;
    const EpochMapping mapping = markMapping();
    const QPointF p = QPointF(mapFromGlobal(globalPos));
    const int h = height();
    // Overlapping marks under the point all go, not only the first.
    for (auto it = eraseMarks.begin(); it != eraseMarks.end();) {
        if (epochMarkBox(it.value(), mapping, h).contains(p))
            it = eraseMarks.erase(it);
        else
            ++it;
    }
    update();
}

void EpochLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintEpochBars(&painter, this, dragRect, startTime, endTime, dataSets, eraseMarks, brushes,
                   markPen, rectPen, window);
}
