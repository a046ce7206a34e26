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
    const QList<int> keys = eraseMarkKeysAt(pos);
    return keys.isEmpty() ? -1 : keys.first();
}

QList<int> EpochLabel::eraseMarkKeysAt(const QPointF& pos) const
{
    QList<int> keys;
    if (endTime <= startTime)
        return keys;
    const EpochMapping mapping = markMapping();
    const int h = height();
    for (auto it = eraseMarks.cbegin(); it != eraseMarks.cend(); ++it) {
        if (epochMarkBox(it.value(), mapping, h).contains(pos))
            keys.append(it.key());
    }
    return keys;
}

void EpochLabel::paintEvent(QPaintEvent*)
{
    EpochBarsContent content;
    content.startTime = startTime;
    content.endTime = endTime;
    content.dataSets = dataSets;
    content.brushes = brushes;
    content.eraseMarks = eraseMarks;
    content.markPen = markPen;
    // The drag rectangle comes in the table viewport's coordinates, where the
    // label lies at its geometry.
    if (!dragRect.isNull())
        content.dragRect = dragRect.translated(-geometry().topLeft());
    content.rectPen = rectPen;
    content.window = window;
    content.eventMarks = eventMarks;
    content.eventColors = eventColors;
    QPainter painter(this);
    paintEpochBars(&painter, rect(), content);
}
