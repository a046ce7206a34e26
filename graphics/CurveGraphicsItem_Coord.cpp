// SPDX-License-Identifier: MIT
#include "CurveGraphicsItem_Coord_p.h"

#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "Curve_Coord.h"
#include "gnssplot_qtcompat_p.h"

#include "TimeLabeller_p.h"

#include <QFontMetrics>
#include <QMarginsF>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

CurveGraphicsItem_Coord::CurveGraphicsItem_Coord(Curve_Coord* coord, QGraphicsItem* parent)
    : QGraphicsObject(parent)
{
    if (coord) {
        connect(coord, &Curve_Coord::sgCoordAreaChanged, this,
                &CurveGraphicsItem_Coord::onCoordAreaChanged, Qt::UniqueConnection);
    }
}

void CurveGraphicsItem_Coord::setPixelSize(int, int)
{
}

void CurveGraphicsItem_Coord::onCoordAreaChanged()
{
    update();
}

namespace {

const QMarginsF kLabelGrowth(1.0, 1.0, 1.0, 1.0);
// How far a centred X label may reach into the left label strip, short of
// the date caption, pixels.
constexpr double kXLabelOverhang = 20.0;

} // namespace

CurveGraphicsItem_Coord_PXPY::CurveGraphicsItem_Coord_PXPY(Curve_Coord* coord,
                                                           QGraphicsItem* parent)
    : CurveGraphicsItem_Coord(coord, parent)
    , m_dataWidth(100.0)
    , m_dataHeight(100.0)
    , m_leftMargin(80)
    , m_bottomHeight(8.0)
    , m_axisPen(Qt::black)
    , m_gridPen(QColor(127, 127, 127, 255))
    , m_textPen(Qt::black)
    , m_bandBrush(QColor(255, 245, 239, 255), Qt::SolidPattern)
    , m_font(TimeLabeller::axisFont())
    , m_showWhichY(nullptr)
{
    m_axisPen.setWidthF(1.0);
    m_gridPen.setWidthF(1.0);
    m_textPen.setWidthF(1.0);
    m_showWhichY = new CurveGraphicsItem_ShowWhichY(this);
    placeShowWhichY();
}

void CurveGraphicsItem_Coord_PXPY::placeShowWhichY()
{
    m_showWhichY->setPos(10 - m_leftMargin, 20.0 - m_dataHeight);
}

void CurveGraphicsItem_Coord_PXPY::setPixelSize(int w, int h)
{
    double dw = double(w) - m_leftMargin;
    if (std::abs(dw) < 1.0)
        dw = 1.0;
    double hh = h;
    if (std::abs(hh) < 1.0)
        hh = 1.0;
    // The bounding rectangle follows the size: tell the scene before it
    // changes so that its index and the last painted area stay right.
    prepareGeometryChange();
    m_dataWidth = dw;
    m_bottomHeight = hh * 2.0 / 27.0;
    m_dataHeight = hh * 25.0 / 27.0;
    placeShowWhichY();
    layoutLabels();
    update();
    emit sgDataAreaChanged(m_dataWidth, m_dataHeight);
}

void CurveGraphicsItem_Coord_PXPY::setLabels(const QMap<double, QString>& xLabels,
                                             const QMap<double, QString>& yLabels,
                                             const QString& dateText,
                                             const QString& timeSystemText)
{
    m_xLabels.clear();
    m_yLabels.clear();
    m_xLabelRects.clear();
    m_yLabelRects.clear();
    m_xLabels = xLabels;
    m_yLabels = yLabels;
    m_dateText = dateText;
    m_timeSystemText = timeSystemText;
    layoutLabels();
}

void CurveGraphicsItem_Coord_PXPY::layoutLabels()
{
    const QFontMetrics fm(m_font);
    const int fh = fm.height();

    // The outer labels are pulled inside the data area's extent so that the
    // first and last tick texts never hang over the frame's edges.
    // Centred labels that no longer fit after a resize lose their place.
    if (m_xLabelsCentred)
        m_xLabelRects.clear();
    const int nx = m_xLabels.size();
    int i = 0;
    for (auto it = m_xLabels.cbegin(); it != m_xLabels.cend(); ++it, ++i) {
        const int w = fm.horizontalAdvance(it.value());
        double left = m_dataWidth * it.key() - w * 0.5;
        if (m_xLabelsCentred) {
            // A label without a rectangle is not drawn.
            if (left >= -kXLabelOverhang && left + w <= m_dataWidth)
                m_xLabelRects.insert(it.key(), QRectF(left, 3.0, w, fh) + kLabelGrowth);
            continue;
        }
        if (nx >= 2) {
            if (i == 0)
                left = 0.0;
            else if (i == nx - 1)
                left = m_dataWidth - w;
        }
        m_xLabelRects.insert(it.key(), QRectF(left, 3.0, w, fh) + kLabelGrowth);
    }

    const int ny = m_yLabels.size();
    i = 0;
    for (auto it = m_yLabels.cbegin(); it != m_yLabels.cend(); ++it, ++i) {
        const int w = fm.horizontalAdvance(it.value());
        double top = -(it.key() * m_dataHeight) - fh * 0.5;
        if (ny >= 2) {
            if (i == 0)
                top -= fh * 0.5;
            else if (i == ny - 1)
                top += fh * 0.5;
        }
        m_yLabelRects.insert(it.key(), QRectF(-5 - w, top, w, fh) + kLabelGrowth);
    }

    const int wDate = fm.horizontalAdvance(m_dateText);
    const int wSys = fm.horizontalAdvance(m_timeSystemText);
    const double left = -22 - std::max(wDate, wSys);
    if (!m_dateText.isEmpty())
        m_dateRect = QRectF(left, m_bottomHeight - 1.7 * fh, wDate, fh) + kLabelGrowth;
    if (!m_timeSystemText.isEmpty())
        m_timeSystemRect = QRectF(left, m_bottomHeight - 2.5 * fh, wSys, fh) + kLabelGrowth;
}

CurveGraphicsItem_ShowWhichY* CurveGraphicsItem_Coord_PXPY::getShowWhichY() const
{
    return m_showWhichY;
}

QRectF CurveGraphicsItem_Coord_PXPY::getDataRect() const
{
    return QRectF(0.0, -m_dataHeight, m_dataWidth, m_dataHeight);
}

QRectF CurveGraphicsItem_Coord_PXPY::boundingRect() const
{
    return QRectF(-m_leftMargin, -m_dataHeight, m_leftMargin + m_dataWidth,
                  m_dataHeight + m_bottomHeight);
}

void CurveGraphicsItem_Coord_PXPY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                         QWidget*)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_bandBrush);

    // The band, the X axis and the grid run on 10 pixels past the data area's
    // right edge, beyond the bounding rectangle.
    const double right = m_dataWidth + 10.0;
    painter->fillRect(QRectF(0.0, -m_dataHeight * 0.5, right, m_dataHeight * 0.5), m_bandBrush);

    painter->setPen(m_axisPen);
    painter->drawLine(QPointF(-1.0, 0.0), QPointF(right, 0.0));
    painter->drawLine(QPointF(-1.0, 0.0), QPointF(-1.0, -m_dataHeight));

    painter->setPen(m_gridPen);
    painter->drawLine(QPointF(0.0, -m_dataHeight), QPointF(right, -m_dataHeight));
    painter->drawLine(QPointF(0.0, -m_dataHeight * 0.5), QPointF(right, -m_dataHeight * 0.5));

    painter->setPen(m_textPen);
    painter->setFont(m_font);
    const QTextOption option;
    for (auto it = m_xLabels.cbegin(); it != m_xLabels.cend(); ++it) {
        const auto rect = m_xLabelRects.constFind(it.key());
        if (rect != m_xLabelRects.cend())
            painter->drawText(rect.value(), it.value(), option);
    }
    for (auto it = m_yLabels.cbegin(); it != m_yLabels.cend(); ++it) {
        const auto rect = m_yLabelRects.constFind(it.key());
        if (rect != m_yLabelRects.cend())
            painter->drawText(rect.value(), it.value(), option);
    }
    if (!m_dateText.isEmpty())
        painter->drawText(m_dateRect, m_dateText, option);
    if (!m_timeSystemText.isEmpty())
        painter->drawText(m_timeSystemRect, m_timeSystemText, option);
    painter->restore();
}
