// SPDX-License-Identifier: MIT
#include "SkyGraphicsItem_Grid_p.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace {

const QColor kRingColour(200, 200, 200);
const QColor kHorizonColour(120, 120, 120);
const QColor kLabelColour(80, 80, 80);
const QColor kMaskColour(190, 60, 60);
const QColor kMaskShade(120, 120, 120, 40);

QString degrees(int value)
{
    return QString::number(value) + QChar(0x00B0);
}

} // namespace

QString SkyGraphicsItem_Grid::azimuthLabel(int azimuth)
{
    switch (azimuth) {
    case 0:
        return QCoreApplication::translate("SkyGraphicsView", "N");
    case 90:
        return QCoreApplication::translate("SkyGraphicsView", "E");
    case 180:
        return QCoreApplication::translate("SkyGraphicsView", "S");
    case 270:
        return QCoreApplication::translate("SkyGraphicsView", "W");
    default:
        return degrees(azimuth);
    }
}

QString SkyGraphicsItem_Grid::elevationLabel(int elevation)
{
    return degrees(elevation);
}

void SkyGraphicsItem_Grid::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!m_layout.isDrawable())
        return;
    const SkyProjection projection = m_layout.projection();
    const QPointF centre(projection.cx, projection.cy);
    const SkyRadiusMap& radius = projection.radius;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);

    const double mask = m_settings->maskDegrees;
    if (mask > 0.0) {
        // The sky below the mask, between its ring and the horizon.
        QPainterPath below;
        below.addEllipse(centre, radius.rim(), radius.rim());
        const double r = radius.radiusOf(mask);
        below.addEllipse(centre, r, r);
        painter->fillPath(below, kMaskShade);
    }

    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(kRingColour, 1.0));
    for (double elevation = kRingStep; elevation < 90.0; elevation += kRingStep) {
        const double r = radius.radiusOf(elevation);
        painter->drawEllipse(centre, r, r);
    }
    for (int azimuth = 0; azimuth < 360; azimuth += int(kSpokeStep)) {
        double x = 0.0;
        double y = 0.0;
        projection.toScene(double(azimuth), 0.0, x, y);
        painter->drawLine(centre, QPointF(x, y));
    }
    painter->setPen(QPen(kHorizonColour, 1.0));
    painter->drawEllipse(centre, radius.rim(), radius.rim());
    if (mask > 0.0) {
        QPen pen(kMaskColour, 1.5, Qt::DashLine);
        painter->setPen(pen);
        const double r = radius.radiusOf(mask);
        painter->drawEllipse(centre, r, r);
    }

    QFont font = painter->font();
    font.setPointSizeF(8.0);
    painter->setFont(font);
    const QFontMetricsF metrics(font);
    painter->setPen(kLabelColour);
    // Azimuths outside the rim, centred on their spoke's direction.
    const double labelRadius = radius.rim() + SkyLayout::kLabelMargin / 2.0;
    for (int azimuth = 0; azimuth < 360; azimuth += int(kSpokeStep)) {
        double east = 0.0;
        double north = 0.0;
        SkyAzimuthMap::directionOf(double(azimuth), east, north);
        const QPointF at(centre.x() + labelRadius * east, centre.y() - labelRadius * north);
        const QString text = azimuthLabel(azimuth);
        const QSizeF size(metrics.horizontalAdvance(text), metrics.height());
        painter->drawText(QRectF(at - QPointF(size.width() / 2.0, size.height() / 2.0), size),
                          Qt::AlignCenter, text);
    }
    // Elevations just inside each ring, right of the north spoke.
    for (int elevation = int(kRingStep); elevation < 90; elevation += int(kRingStep)) {
        const double r = radius.radiusOf(double(elevation));
        painter->drawText(QPointF(centre.x() + 3.0, centre.y() - r + metrics.ascent()),
                          elevationLabel(elevation));
    }
    painter->restore();
}
