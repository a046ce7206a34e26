#include "CurveGraphicsItem_Curve_p.h"

#include "AxisData.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

CurveGraphicsItem_Curve::CurveGraphicsItem_Curve(CurveScene* curveScene, Curve_Coord* coord,
                                                 const QString& curveName,
                                                 Curve_DataSet* dataSet, QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_curveScene(curveScene)
    , m_coord(coord)
    , m_curveName(curveName)
    , m_dataSet(dataSet)
    , m_listen(true)
{
    if (curveScene) {
        connect(curveScene, SIGNAL(sgLocalCoordChanged()), this, SLOT(onScene_coordChanged()),
                Qt::UniqueConnection);
        connect(curveScene, SIGNAL(sgCurveShowParamChanged(QString)), this,
                SLOT(onScene_curveShowParamChanged(QString)), Qt::UniqueConnection);
    }
    if (coord) {
        connect(coord, SIGNAL(sgCoordAreaChanged()), this, SLOT(onCoord_areaChanged()),
                Qt::UniqueConnection);
    }
    if (dataSet) {
        connect(dataSet, SIGNAL(sgAxisAreaChanged(int)), this, SLOT(onAxis_areaChanged(int)),
                Qt::UniqueConnection);
        connect(dataSet, SIGNAL(sgAxisDataChanged(int)), this, SLOT(onAxis_dataChanged(int)),
                Qt::UniqueConnection);
    }
}

void CurveGraphicsItem_Curve::setVisibleSelection(const QMap<QString, bool>&)
{
}

void CurveGraphicsItem_Curve::setSingleShow(bool)
{
}

void CurveGraphicsItem_Curve::setDataArea(double, double)
{
}

void CurveGraphicsItem_Curve::rebindCoord()
{
    // The coordinate the item was made with may be gone already (the registry
    // deletes an auto-deleted one before announcing the new one), so the item
    // follows the registry's current coordinate instead of keeping its own.
    Curve_Coord* current = m_curveScene ? m_curveScene->getCoord_Local() : nullptr;
    if (current == m_coord.data())
        return;
    if (m_coord) {
        disconnect(m_coord.data(), SIGNAL(sgCoordAreaChanged()), this,
                   SLOT(onCoord_areaChanged()));
    }
    m_coord = current;
    if (current) {
        connect(current, SIGNAL(sgCoordAreaChanged()), this, SLOT(onCoord_areaChanged()),
                Qt::UniqueConnection);
    }
}

void CurveGraphicsItem_Curve::onScene_coordChanged()
{
    // Re-binding is done also while not listening: which object the item
    // follows is not a reaction to data, and a stale binding would outlast the
    // switch being turned on again.
    rebindCoord();
    if (!m_listen)
        return;
    rebuildPolylines();
    update();
}

void CurveGraphicsItem_Curve::onScene_curveShowParamChanged(QString curveName)
{
    if (!m_listen || curveName != m_curveName)
        return;
    applyShowParam();
    update();
}

void CurveGraphicsItem_Curve::onCoord_areaChanged()
{
    if (!m_listen)
        return;
    rebuildPolylines();
    update();
}

void CurveGraphicsItem_Curve::onAxis_areaChanged(int)
{
    if (!m_listen)
        return;
    rebuildPolylines();
    update();
}

void CurveGraphicsItem_Curve::onAxis_dataChanged(int)
{
    if (!m_listen)
        return;
    rebuildPolylines();
    update();
}

void CurveGraphicsItem_Curve::onDataAreaChanged(double w, double h)
{
    if (!m_listen)
        return;
    setDataArea(w, h);
}

// ---------------------------------------------------------------------------

CurveGraphicsItem_Curve_XY::CurveGraphicsItem_Curve_XY(CurveScene* curveScene,
                                                       Curve_Coord* coord,
                                                       const QString& curveName,
                                                       Curve_DataSet* dataSet,
                                                       QGraphicsItem* parent)
    : CurveGraphicsItem_Curve(curveScene, coord, curveName, dataSet, parent)
    , m_coordXY(qobject_cast<Curve_Coord_XY*>(coord))
    , m_dataSetXY(qobject_cast<Curve_DataSet_XY*>(dataSet))
    , m_dataAreaWidth(100)
    , m_dataAreaHeight(100)
    , m_showCap(ECurveShowCap_Line)
    , m_yDown(false)
{
    applyShowParam();
    m_pen.setWidth(0);
    m_visibleSelection.insert(QStringLiteral("a"), true);
    m_visibleSelection.insert(QStringLiteral("b"), false);
    // Inside a scene nothing of the curve may spill over the data area onto
    // the labels.
    setFlag(QGraphicsItem::ItemClipsToShape, true);
}

int CurveGraphicsItem_Curve_XY::toPixel(double v)
{
    if (std::isnan(v))
        return 0;
    if (v >= kPixelLimit)
        return kPixelLimit;
    if (v <= -kPixelLimit)
        return -kPixelLimit;
    return static_cast<int>(v);
}

void CurveGraphicsItem_Curve_XY::setVisibleSelection(const QMap<QString, bool>& selection)
{
    m_visibleSelection = selection;
    update();
}

void CurveGraphicsItem_Curve_XY::setSingleShow(bool bSingle)
{
    recolourYPens(bSingle);
    update();
}

void CurveGraphicsItem_Curve_XY::setDataArea(double w, double h)
{
    const int width = toPixel(w);
    const int height = toPixel(h);
    if (width != m_dataAreaWidth || height != m_dataAreaHeight)
        prepareGeometryChange();
    m_dataAreaWidth = width;
    m_dataAreaHeight = height;
    m_yDown = (h < 0.0);
    rebuildPolylines();
    update();
}

void CurveGraphicsItem_Curve_XY::rebuildPolylines()
{
    m_polylines.clear();
    // Follow the base's binding, which moves to the registry's current
    // coordinate when the old one is replaced.
    m_coordXY = qobject_cast<Curve_Coord_XY*>(m_coord.data());
    if (!m_coordXY || !m_dataSetXY)
        return;
    const AxisData* xAxis = m_dataSetXY->getAxisData(0);
    if (!xAxis)
        return;
    const int n = m_dataSetXY->getAxisNum() - 1;
    if (n < 1)
        return;
    m_polylines.resize(n);

    const QRectF rect = boundingRect();
    const qint64 xCount = xAxis->getArea(nullptr, nullptr);
    const double* xs = xAxis->getData(0, nullptr);
    for (int k = 0; k < n; ++k) {
        const int userType = k + 1;
        const AxisData* yAxis = m_dataSetXY->getAxisData(userType);
        if (!yAxis)
            return;
        std::set<qint64> breaks;
        m_dataSetXY->getAxisBreakInfo(userType, breaks);
        qint64 count = std::min(xCount, yAxis->getArea(nullptr, nullptr));
        if (count < 1)
            return;
        count = std::min(count, kMaxSamples);
        const double* ys = yAxis->getData(0, nullptr);
        Q_ASSERT(xs && ys);

        // The scratch only grows, so steady updates of the same size map
        // without allocating.
        if (m_pixelXs.size() < size_t(count)) {
            m_pixelXs.resize(size_t(count));
            m_pixelYs.resize(size_t(count));
        }
        m_coordXY->map(rect, count, xs, ys, m_pixelXs.data(), m_pixelYs.data(), m_yDown);
        breaks.insert(count - 1);
        cutRuns(count, breaks, m_polylines[k]);
    }
}

void CurveGraphicsItem_Curve_XY::cutRuns(qint64 count, const std::set<qint64>& breaks,
                                         QList<QPolygon>& runs) const
{
    const double* px = m_pixelXs.data();
    const double* py = m_pixelYs.data();
    qint64 start = 0;
    for (const qint64 b : breaks) {
        // The Y axis may be longer than the X axis and carry breaks past the
        // last common sample; count - 1 is always in the set and ends the walk.
        if (b >= count)
            break;
        runs.append(QPolygon());
        QPolygon& run = runs.last();
        run.reserve(int(b - start + 1));
        for (qint64 j = start; j <= b; ++j) {
            // A missing value leaves a gap in the samples but not in the run:
            // its neighbours are joined directly. A NaN X has no place on the
            // axis and is dropped the same way.
            if (std::isnan(py[j]) || std::isnan(px[j]))
                continue;
            run.append(QPoint(toPixel(px[j]), toPixel(py[j])));
        }
        if (run.isEmpty())
            runs.removeLast();
        start = b + 1;
    }
}

void CurveGraphicsItem_Curve_XY::applyShowParam()
{
    if (!m_curveScene || m_curveName.isEmpty())
        return;
    const QColor registryColor = m_curveScene->getCurveShowParam_color(m_curveName);
    const ECurveShowCap cap = m_curveScene->getCurveShowParam_cap(m_curveName);
    const bool visible = m_curveScene->getCurveShowParam_visible(m_curveName);
    if (cap == ECurveShowCap_Line || cap == ECurveShowCap_Point)
        m_showCap = cap;
    QColor color = registryColor;
    color.setAlpha(128);
    m_pen = QPen(color);
    m_pen.setWidth(0);
    recolourYPens(false);
    setVisible(visible);
}

void CurveGraphicsItem_Curve_XY::setPenColor(const QColor& color)
{
    m_pen = QPen(color);
    m_pen.setWidth(0);
}

void CurveGraphicsItem_Curve_XY::recolourYPens(bool bSingle)
{
    m_yPens.resize(m_polylines.size());
    const qint64 red = m_pen.color().red();
    const qint64 green = m_pen.color().green();
    for (int k = 0; k < m_yPens.size(); ++k) {
        QPen pen;
        if (bSingle) {
            pen = QPen(k == 0 ? QColor(0, 34, 255, 255) : QColor(0, 128, 0, 255));
        } else if (k == 0) {
            pen = m_pen;
        } else {
            // Later Y axes get brighter shades of the curve's red and green,
            // so the frequencies of one curve stay apart.
            const auto shade = [k](qint64 component) {
                return int(std::min(std::trunc(double(component * k) * 1.3), 255.0));
            };
            pen = QPen(QColor(shade(red), shade(green), 0, 128));
        }
        pen.setWidth(0);
        m_yPens[k] = pen;
    }
}

QRectF CurveGraphicsItem_Curve_XY::boundingRect() const
{
    return QRectF(0.0, -m_dataAreaHeight, m_dataAreaWidth, m_dataAreaHeight);
}

void CurveGraphicsItem_Curve_XY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                       QWidget*)
{
    if (m_polylines.isEmpty())
        return;
    painter->save();
    painter->setPen(m_pen);
    auto selection = m_visibleSelection.cbegin();
    for (int k = 0; k < m_polylines.size(); ++k) {
        // Y indexes beyond the selection's entries have no say in it and are
        // drawn, as with an empty selection.
        if (selection != m_visibleSelection.cend()) {
            const bool shown = selection.value();
            ++selection;
            if (!shown)
                continue;
        }
        if (k < m_yPens.size())
            painter->setPen(m_yPens.at(k));
        const QList<QPolygon>& runs = m_polylines.at(k);
        if (m_showCap == ECurveShowCap_Point) {
            QPen pen = painter->pen();
            pen.setWidthF(2.0);
            painter->setPen(pen);
            for (const QPolygon& run : runs)
                painter->drawPoints(run);
            continue;
        }
        for (const QPolygon& run : runs) {
            const int n = run.size();
            QPen pen = painter->pen();
            if (n == 1) {
                pen.setWidthF(4.0);
                painter->setPen(pen);
                painter->drawPoints(run);
            } else {
                // Long runs are drawn thinner so that dense data stays
                // readable; no point is dropped.
                pen.setWidthF(qBound(1.0, 2.0 / (n / 1000.0), 2.0));
                painter->setPen(pen);
                painter->drawPolyline(run);
            }
        }
    }
    painter->restore();
}
