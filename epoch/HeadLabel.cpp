// SPDX-License-Identifier: MIT
#include "HeadLabel_p.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextOption>

HeadLabel::HeadLabel(QWidget* parent)
    : QLabel(parent)
{
}

void HeadLabel::paintEvent(QPaintEvent*)
{
    // Band names are the systems' own signal names and stay untranslated.
    static const QLatin1String texts[4] = {
        QLatin1String("L1/G1/B1/E1/J1"), QLatin1String("L2/G2/B2/J2"),
        QLatin1String("L5/G3/B3/E5a/J5"), QLatin1String("E5b/B2a")};
    // Palette colours 0 to 3; the legend never follows palette growth.
    static const QColor swatchColours[4] = {QColor(0, 34, 255), QColor(0, 128, 0),
                                            QColor(128, 0, 128), QColor(154, 205, 50)};

    QPainter painter(this);
    const QFontMetrics metrics = painter.fontMetrics();
    QSize sizes[4];
    for (int k = 0; k < 4; ++k)
        sizes[k] = metrics.size(Qt::TextSingleLine, texts[k]);
    const int textHeight = sizes[0].height() + 4;

    QRect swatches[4];
    QRect boxes[4];
    int x = 5;
    for (int k = 0; k < 4; ++k) {
        swatches[k] = QRect(x, 5, 40, 3);
        boxes[k] = QRect(x + 40, 2, sizes[k].width(), textHeight);
        x += 40 + sizes[k].width() + 10;
    }

    painter.setPen(Qt::NoPen);
    for (int k = 0; k < 4; ++k) {
        painter.setBrush(QBrush(swatchColours[k], Qt::SolidPattern));
        painter.drawRect(swatches[k]);
    }
    painter.setPen(QColor(0, 0, 0, 255));
    painter.setBrush(Qt::NoBrush);
    for (int k = 0; k < 4; ++k)
        painter.drawText(QRectF(boxes[k]), texts[k], QTextOption());
}
