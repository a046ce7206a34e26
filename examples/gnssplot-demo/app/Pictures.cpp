// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include "DemoHost.h"
#include "ReadbackPanel.h"

#include <gnssplot.h>

#include <QCoreApplication>
#include <QWidget>
#include <iterator>
#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <vector>

namespace gnssdemo {

namespace {

class PictureTexts
{
    Q_DECLARE_TR_FUNCTIONS(PictureTexts)
};

constexpr int kMargin = 12;

// Steps of a picture's time axis, milliseconds: round to a reader of clocks.
constexpr qint64 kTickSteps[] = {1000,    2000,    5000,     10000,    15000,    30000,
                                 60000,   120000,  300000,   600000,   900000,   1800000,
                                 3600000, 7200000, 10800000, 21600000, 43200000, 86400000};

QString tickText(qint64 ms, qint64 step)
{
    const QString full = gpstText(ms);
    // Midnight reads as the date; seconds only when the step has them.
    if (ms % 86400000 == 0)
        return full.left(10);
    return step < 60000 ? full.mid(11) : full.mid(11, 5);
}

} // namespace

QString stationName(const DemoDocument& doc)
{
    const QString marker = doc.source().station().markerName.trimmed();
    return marker.isEmpty() ? doc.source().description() : marker;
}

QImage viewPicture(QWidget* view, const QString& title)
{
    if (!view)
        return QImage();
    const QPixmap shown = view->grab();
    const qreal ratio = shown.devicePixelRatio();
    const QSize logical = view->size();
    QFont bold = view->font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    const int titleHeight = metrics.height() + 10;
    QImage image((QSizeF(logical.width(), logical.height() + titleHeight) * ratio).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(bold);
    painter.setPen(Qt::black);
    const int textWidth = logical.width() - 2 * kMargin;
    painter.drawText(QRect(kMargin, 5, textWidth, metrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(title, Qt::ElideRight, textWidth));
    painter.drawPixmap(QPoint(0, titleHeight), shown);
    return image;
}

void drawTimeAxis(QPainter* painter, const QRect& rect, qint64 tMin, qint64 tMax)
{
    if (!painter || rect.width() < 2 || tMax <= tMin)
        return;
    const QFontMetrics metrics(painter->font());
    const double span = double(tMax - tMin);
    const auto tickX = [&](qint64 t) {
        return rect.left() + int(std::lround(double(t - tMin) / span * rect.width()));
    };
    // A label is centred on its tick but stays inside the axis, so that the
    // first and the last are not cut at the edges.
    const auto labelLeft = [&](int x, int w) {
        return std::max(rect.left(), std::min(x - w / 2, rect.right() - w));
    };
    const auto firstTick = [tMin](qint64 step) { return (tMin + step - 1) / step * step; };
    // Whether the labels of \a step are apart by about a label's width, so
    // that the axis reads calmly, and, placed as they are drawn, keep a gap
    // between them: a date at midnight is the widest label, and at an end
    // of the axis it is pushed inside, towards its neighbour.
    const int gap = 6;
    const int labelWidth = metrics.horizontalAdvance(QStringLiteral("00:00:00")) + 12;
    const auto fits = [&](qint64 step) {
        const QString sample = tickText(86400000 + step, step);
        const int spacing = std::max(labelWidth, metrics.horizontalAdvance(sample) + 12);
        if (double(step) / span * rect.width() < spacing)
            return false;
        int previousRight = rect.left() - gap;
        for (qint64 t = firstTick(step); t <= tMax; t += step) {
            const int w = metrics.horizontalAdvance(tickText(t, step));
            const int left = labelLeft(tickX(t), w);
            if (left < previousRight + gap)
                return false;
            previousRight = left + w;
        }
        return true;
    };
    qint64 step = kTickSteps[std::size(kTickSteps) - 1];
    for (qint64 candidate : kTickSteps) {
        if (fits(candidate)) {
            step = candidate;
            break;
        }
    }
    painter->save();
    painter->setPen(QColor(90, 90, 90));
    painter->drawLine(rect.left(), rect.top(), rect.right(), rect.top());
    for (qint64 t = firstTick(step); t <= tMax; t += step) {
        const int x = tickX(t);
        painter->drawLine(x, rect.top(), x, rect.top() + 4);
        const QString text = tickText(t, step);
        const int w = metrics.horizontalAdvance(text);
        painter->drawText(QRect(labelLeft(x, w), rect.top() + 5, w + 1, metrics.height()),
                          Qt::AlignLeft | Qt::AlignTop, text);
    }
    painter->restore();
}

QImage curvePicture(const DemoHost& host, const QString& name, const QSize& size)
{
    Curve_DataSet_XY* dataSet = host.curve(name);
    const DemoDocument* doc = host.document();
    if (!dataSet || !doc || doc->epochs().empty() || size.width() < 200 || size.height() < 100)
        return QImage();
    // The picture gets a coordinate of its own: the whole day, and a Y range
    // symmetric about zero that holds this satellite's MP1.
    double yMin = 0.0;
    double yMax = 0.0;
    double h = 1.0;
    if (dataSet->getAxisData(1)->getDataLimits(yMin, yMax) && yMin <= yMax)
        h = std::max(std::abs(yMin), std::abs(yMax)) * 1.1;
    if (!(h > 0.0) || !std::isfinite(h))
        h = 1.0;
    // From the first to the last epoch, so that the date caption (the date
    // of the right end) is the day shown.
    Curve_Coord_XY coord;
    const std::vector<qint64>& epochs = doc->epochs();
    if (!coord.setArea(double(epochs.front()), double(epochs.back()), -h, h))
        coord.setArea(double(doc->startTime()), double(doc->endTime()), -h, h);

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont bold = painter.font();
    bold.setBold(true);
    const QFontMetrics boldMetrics(bold);
    const QFontMetrics metrics(painter.font());
    const int titleHeight = 6 + boldMetrics.height() + metrics.height() + 6;

    // The library draws on a transparent pixmap; the white ground under it
    // keeps the black labels readable in any image viewer.
    QPixmap plot(size.width(), size.height() - titleHeight);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet, systemColor(host.system(name)),
                                            &plot);
    painter.drawPixmap(0, titleHeight, plot);

    // What the curve is, since the library's labels are bare numbers.
    const int textWidth = size.width() - 2 * kMargin;
    const QString title = PictureTexts::tr("%1 code multipath MP1 in metres, %2 GPST")
                              .arg(name, gpstText(epochs.front()).left(10));
    const QString bands = PictureTexts::tr("Code and phase of %1, phase of %2")
                              .arg(bandName(host.bandA(name)), bandName(host.bandB(name)));
    painter.setPen(Qt::black);
    painter.setFont(bold);
    painter.drawText(QRect(kMargin, 6, textWidth, boldMetrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     boldMetrics.elidedText(title, Qt::ElideRight, textWidth));
    painter.setFont(QFont());
    painter.drawText(QRect(kMargin, 6 + boldMetrics.height(), textWidth, metrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(bands, Qt::ElideRight, textWidth));
    return image;
}

QImage barsPicture(const DemoHost& host, int barWidth, int rowsPerColumn)
{
    const DemoDocument* doc = host.document();
    const QMap<QString, QList<stEpochDataSet>>& epochData = host.epochData();
    const QStringList names = epochData.keys();
    barWidth = std::max(1, barWidth);
    const int perColumn = std::max(1, rowsPerColumn);
    const int columns = std::max(1, (int(names.size()) + perColumn - 1) / perColumn);
    const int rows = std::max(1, std::min(int(names.size()), perColumn));
    // The library's own bar geometry, so that the pixmaps hold every band.
    const int rowHeight = CurveGraphicsTableWidget_Epoch::barTop(BandCount) + 2;

    QFont bold;
    bold.setBold(true);
    const QFontMetrics boldMetrics(bold);
    const QFontMetrics metrics{QFont()};
    const QString station = doc ? stationName(*doc) : QString();
    const QString title =
        doc && !doc->epochs().empty()
            ? PictureTexts::tr("%1: epoch availability per band, %2 to %3 GPST")
                  .arg(station, gpstText(doc->startTime()), gpstText(doc->endTime()))
            : PictureTexts::tr("%1: epoch availability per band: no epochs").arg(station);
    const int swatch = 30;
    int legendWidth = 0;
    for (int b = 0; b < BandCount; ++b)
        legendWidth += swatch + 6 + metrics.horizontalAdvance(bandName(b)) + 18;
    int nameWidth = 0;
    for (const QString& name : names)
        nameWidth = std::max(nameWidth, metrics.horizontalAdvance(name));
    nameWidth += 8;
    const int columnWidth = nameWidth + barWidth + 20;
    const int width = 2 * kMargin
                      + std::max({columns * columnWidth - 20,
                                  boldMetrics.horizontalAdvance(title), legendWidth});
    const int titleHeight = boldMetrics.height() + 8;
    const int legendHeight = metrics.height() + 8;
    const int header = 4 + titleHeight + legendHeight;
    const int axisHeight = metrics.height() + 8;
    QImage image(width, header + rows * rowHeight + axisHeight + 8,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);

    // One pixmap per satellite, painted by the library in one call.
    std::vector<QPixmap> storage(size_t(names.size()), QPixmap(barWidth, rowHeight));
    QMap<QString, QPixmap*> pixmaps;
    for (int k = 0; k < names.size(); ++k) {
        storage[size_t(k)].fill(Qt::white);
        pixmaps.insert(names[k], &storage[size_t(k)]);
    }
    QMap<QString, bool> enabled;
    for (const QString& name : names)
        enabled.insert(name, host.readSelection().value(name, true));
    if (doc)
        CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(doc->startTime(), doc->endTime(),
                                                               epochData, enabled, pixmaps);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(bold);
    painter.setPen(Qt::black);
    painter.drawText(QRect(kMargin, 4, width - 2 * kMargin, titleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, title);
    painter.setFont(QFont());
    const int legendTop = 4 + titleHeight;
    int x = kMargin;
    for (int b = 0; b < BandCount; ++b) {
        const int barHeight = CurveGraphicsTableWidget_Epoch::barHeight();
        painter.fillRect(QRect(x, legendTop + (legendHeight - barHeight) / 2, swatch, barHeight),
                         CurveGraphicsTableWidget_Epoch::bandColor(b));
        const QString text = bandName(b);
        const int w = metrics.horizontalAdvance(text);
        painter.drawText(QRect(x + swatch + 6, legendTop, w + 2, legendHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
        x += swatch + 6 + w + 18;
    }
    for (int k = 0; k < names.size(); ++k) {
        const int left = kMargin + (k / perColumn) * columnWidth;
        const int top = header + (k % perColumn) * rowHeight;
        painter.setPen(Qt::black);
        painter.drawText(QRect(left, top, nameWidth, rowHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, names[k]);
        painter.drawPixmap(left + nameWidth, top, storage[size_t(k)]);
        painter.setPen(QColor(225, 225, 225));
        painter.drawLine(left + nameWidth, top + rowHeight - 1, left + nameWidth + barWidth,
                         top + rowHeight - 1);
    }
    // Each column's bars over the file's span, read on a time axis below.
    if (doc && doc->endTime() > doc->startTime()) {
        for (int c = 0; c < columns; ++c) {
            const int left = kMargin + c * columnWidth + nameWidth;
            drawTimeAxis(&painter, QRect(left, header + rows * rowHeight + 2, barWidth,
                                         axisHeight),
                         doc->startTime(), doc->endTime());
        }
    }
    return image;
}

} // namespace gnssdemo
