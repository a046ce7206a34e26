// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include "DemoHost.h"
#include "ReadbackPanel.h"

#include <gnssplot.h>

#include <QCoreApplication>
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

} // namespace

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
    const QString title =
        doc && !doc->epochs().empty()
            ? PictureTexts::tr("Epoch availability per band, %1 to %2 GPST")
                  .arg(gpstText(doc->startTime()), gpstText(doc->endTime()))
            : PictureTexts::tr("Epoch availability per band: no epochs");
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
    QImage image(width, header + rows * rowHeight + 8, QImage::Format_ARGB32_Premultiplied);
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
    return image;
}

} // namespace gnssdemo
