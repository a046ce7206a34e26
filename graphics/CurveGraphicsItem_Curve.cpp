// SPDX-License-Identifier: MIT
#include "CurveGraphicsItem_Curve_p.h"

#include "AxisData.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"
#include "CoordMapping_p.h"
#include "CurveRaster_p.h"

#include <QPaintEngine>
#include <QPainter>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

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
        connect(curveScene, &CurveScene::sgLocalCoordChanged, this,
                &CurveGraphicsItem_Curve::onScene_coordChanged, Qt::UniqueConnection);
        connect(curveScene, &CurveScene::sgCurveShowParamChanged, this,
                &CurveGraphicsItem_Curve::onScene_curveShowParamChanged, Qt::UniqueConnection);
    }
    if (coord) {
        connect(coord, &Curve_Coord::sgCoordAreaChanged, this,
                &CurveGraphicsItem_Curve::onCoord_areaChanged, Qt::UniqueConnection);
    }
    if (dataSet) {
        connect(dataSet, &Curve_DataSet::sgAxisAreaChanged, this,
                &CurveGraphicsItem_Curve::onAxis_areaChanged, Qt::UniqueConnection);
        connect(dataSet, &Curve_DataSet::sgAxisDataChanged, this,
                &CurveGraphicsItem_Curve::onAxis_dataChanged, Qt::UniqueConnection);
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

void CurveGraphicsItem_Curve::invalidate(Change)
{
    rebuildPolylines();
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
        disconnect(m_coord.data(), &Curve_Coord::sgCoordAreaChanged, this,
                   &CurveGraphicsItem_Curve::onCoord_areaChanged);
    }
    m_coord = current;
    if (current) {
        connect(current, &Curve_Coord::sgCoordAreaChanged, this,
                &CurveGraphicsItem_Curve::onCoord_areaChanged, Qt::UniqueConnection);
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
    invalidate(Change::Area);
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
    invalidate(Change::Area);
    update();
}

void CurveGraphicsItem_Curve::onAxis_areaChanged(int)
{
    if (!m_listen)
        return;
    invalidate(Change::Data);
    update();
}

void CurveGraphicsItem_Curve::onAxis_dataChanged(int)
{
    if (!m_listen)
        return;
    invalidate(Change::Data);
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

CurveGraphicsItem_Curve_XY::~CurveGraphicsItem_Curve_XY() = default;

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
    pixelsChanged();
    update();
}

void CurveGraphicsItem_Curve_XY::setSingleShow(bool bSingle)
{
    recolourYPens(bSingle);
    pixelsChanged();
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
    invalidate(Change::Area);
    update();
}

void CurveGraphicsItem_Curve_XY::invalidate(Change change)
{
    if (change == Change::Data) {
        ++m_dataVersion;
        m_runsValid = false;
    }
    m_polylinesValid = false;
    // The number of Y indexes is taken when the change arrives, as an eager
    // rebuild would: pens sized before it stay as they are.
    m_coordXY = qobject_cast<Curve_Coord_XY*>(m_coord.data());
    const bool drawable = m_coordXY && m_dataSetXY && m_dataSetXY->getAxisData(0);
    m_yIndexes = drawable ? std::max(0, m_dataSetXY->getAxisNum() - 1) : 0;
    pixelsChanged();
}

void CurveGraphicsItem_Curve_XY::pixelsChanged()
{
    ++m_version;
}

namespace {

// Where a layer is made for a painter: the device transform and the
// device's pixels as the device sees itself, and where its origin lies on
// the surface actually painted. A widget is painted into its window's buffer
// (or a QWidget::render() target) at an offset that its painter's device
// transform carries. The layer is made without that offset, as the view
// prepares it, and drawn shifted by it; only a fractional offset, which no
// shift of whole pixels can express, is kept in the transform.
struct LayerSpace
{
    QTransform transform;
    QRect device;
    QPoint shift;
};

LayerSpace layerSpace(const QPainter* painter)
{
    LayerSpace space;
    space.transform = painter->deviceTransform();
    const QPaintDevice* device = painter->device();
    if (!device)
        return space;
    // Images and pixmaps measure themselves in pixels and are painted as
    // they are.
    const int type = device->devType();
    if (type == QInternal::Image || type == QInternal::Pixmap) {
        space.device = QRect(0, 0, device->width(), device->height());
        return space;
    }
    // Widgets measure themselves in logical units; what the device transform
    // adds to the world transform is the scale to pixels and the offset.
    bool invertible = false;
    const QTransform toSurface =
        painter->worldTransform().inverted(&invertible) * space.transform;
    QRectF area(0, 0, device->width(), device->height());
    if (invertible && toSurface.type() <= QTransform::TxScale) {
        // The offset comes out of inverting the world transform, a rounding
        // error away from the whole pixels it is.
        const QPoint whole(int(std::lround(toSurface.dx())), int(std::lround(toSurface.dy())));
        if (std::abs(whole.x() - toSurface.dx()) < 1e-6
            && std::abs(whole.y() - toSurface.dy()) < 1e-6) {
            space.shift = whole;
            space.transform *= QTransform::fromTranslate(-whole.x(), -whole.y());
            area = QTransform::fromScale(toSurface.m11(), toSurface.m22()).mapRect(area);
        } else {
            area = toSurface.mapRect(area);
        }
    } else {
        const double ratio = device->devicePixelRatioF();
        area = QRectF(0, 0, device->width() * ratio, device->height() * ratio);
    }
    const double left = std::floor(area.left());
    const double top = std::floor(area.top());
    space.device = QRect(int(left), int(top), int(std::ceil(area.right()) - left),
                         int(std::ceil(area.bottom()) - top));
    return space;
}

bool near(double a, double b)
{
    return std::abs(a - b) <= 1e-9 * (1.0 + std::abs(a) + std::abs(b));
}

// How many pieces one item's counting is split into: one per pool thread,
// as long as each piece has a good share of samples.
int splitWays(qint64 samples)
{
    // Below this many samples per piece, starting the pool's threads costs
    // more than the piece.
    constexpr qint64 kPieceSamples = 250000;
    const qint64 threads = std::max(1, QThreadPool::globalInstance()->maxThreadCount());
    return int(std::max<qint64>(1, std::min(threads, samples / kPieceSamples)));
}

// Layers larger than this many pixels are not made; such targets are drawn
// straight through the painter.
constexpr qint64 kMaxLayerPixels = qint64(1) << 26;

} // namespace

bool CurveGraphicsItem_Curve_XY::takeSource()
{
    m_coordXY = qobject_cast<Curve_Coord_XY*>(m_coord.data());
    Source source;
    const AxisData* xAxis = (m_coordXY && m_dataSetXY) ? m_dataSetXY->getAxisData(0) : nullptr;
    if (xAxis && m_yIndexes > 0) {
        source.yIndexes = m_yIndexes;
        m_coordXY->getArea(source.xMin, source.xMax, source.yMin, source.yMax);
        source.xs = xAxis->getData(0, nullptr);
        const qint64 xCount = xAxis->getArea(nullptr, nullptr);
        const int available = m_dataSetXY->getAxisNum() - 1;
        for (int k = 0; k < std::min(m_yIndexes, available); ++k) {
            const AxisData* yAxis = m_dataSetXY->getAxisData(k + 1);
            if (!yAxis)
                break;
            const qint64 count = std::min({xCount, yAxis->getArea(nullptr, nullptr),
                                           kMaxSamples});
            if (count < 1)
                break;
            source.ys.push_back(yAxis->getData(0, nullptr));
            source.counts.push_back(count);
        }
    }
    // Samples that moved or changed in number without the item hearing of
    // it (while it was not listening) must never be read through runs made
    // for the old ones.
    if (source.xs != m_source.xs || source.ys != m_source.ys
        || source.counts != m_source.counts) {
        ++m_dataVersion;
        m_runsValid = false;
        m_polylinesValid = false;
        pixelsChanged();
    }
    m_source = std::move(source);
    return m_source.yIndexes > 0;
}

void CurveGraphicsItem_Curve_XY::updateRuns()
{
    if (m_runsValid)
        return;
    m_runs.assign(m_source.ys.size(), {});
    for (size_t k = 0; k < m_source.ys.size(); ++k) {
        const qint64 count = m_source.counts[k];
        std::set<qint64> breaks;
        m_dataSetXY->getAxisBreakInfo(int(k) + 1, breaks);
        // The Y axis may be longer than the X axis and carry breaks past the
        // last common sample; count - 1 always ends the last run.
        breaks.insert(count - 1);
        qint64 start = 0;
        for (const qint64 b : breaks) {
            if (b >= count)
                break;
            m_runs[k].push_back(Run{start, b, -1});
            start = b + 1;
        }
    }
    m_runsValid = true;
}

void CurveGraphicsItem_Curve_XY::countPoints()
{
    const double* xs = m_source.xs;
    for (size_t k = 0; k < m_runs.size(); ++k) {
        const double* ys = m_source.ys[k];
        for (Run& run : m_runs[k]) {
            if (run.points >= 0)
                continue;
            qint64 points = 0;
            for (qint64 j = run.begin; j <= run.end; ++j)
                points += (std::isnan(xs[j]) || std::isnan(ys[j])) ? 0 : 1;
            run.points = points;
        }
    }
}

void CurveGraphicsItem_Curve_XY::mapRun(const Run& run, const double* ys, QPolygon& out) const
{
    // The pixel of a sample is that of Curve_Coord_XY::map, truncated.
    const CoordMapping mapping(boundingRect(), m_source.xMin, m_source.xMax, m_source.yMin,
                               m_source.yMax, m_yDown);
    const double* xs = m_source.xs;
    out.resize(int(run.end - run.begin + 1));
    QPoint* points = out.data();
    int m = 0;
    for (qint64 j = run.begin; j <= run.end; ++j) {
        const double px = mapping.mapX(xs[j]);
        const double py = mapping.mapY(ys[j]);
        // A missing value leaves a gap in the samples but not in the run:
        // its neighbours are joined directly. A NaN X has no place on the
        // axis, nor has a value whose mapping overflowed; both are dropped
        // the same way.
        if (std::isnan(px) || std::isnan(py))
            continue;
        points[m++] = QPoint(toPixel(px), toPixel(py));
    }
    out.resize(m);
}

void CurveGraphicsItem_Curve_XY::rebuildPolylines()
{
    const bool drawable = takeSource();
    m_polylinesValid = true;
    if (!drawable) {
        m_polylines.clear();
        return;
    }
    updateRuns();
    // The runs' buffers are kept and refilled, so that rebuilding data of
    // the same shape allocates nothing.
    m_polylines.resize(m_yIndexes);
    for (int k = 0; k < m_polylines.size(); ++k) {
        QList<QPolygon>& runs = m_polylines[k];
        int used = 0;
        const size_t index = size_t(k);
        for (size_t r = 0; index < m_runs.size() && r < m_runs[index].size(); ++r) {
            if (runs.size() <= used)
                runs.append(QPolygon());
            mapRun(m_runs[index][r], m_source.ys[index], runs[used]);
            if (!runs[used].isEmpty())
                ++used;
        }
        while (runs.size() > used)
            runs.removeLast();
    }
}

const QVector<QList<QPolygon>>& CurveGraphicsItem_Curve_XY::polylines() const
{
    if (!m_polylinesValid)
        const_cast<CurveGraphicsItem_Curve_XY*>(this)->rebuildPolylines();
    return m_polylines;
}

bool CurveGraphicsItem_Curve_XY::xSorted(qint64 count)
{
    SortedKey& key = m_sortedKey;
    if (key.dataVersion == m_dataVersion && key.xs == m_source.xs && key.count == count)
        return key.bSorted;
    key = SortedKey{m_dataVersion, m_source.xs, count, true};
    const double* xs = m_source.xs;
    // Written so that a NaN anywhere counts as unsorted.
    for (qint64 j = 0; j < count; ++j) {
        if (!(xs[j] == xs[j]) || (j > 0 && !(xs[j] >= xs[j - 1]))) {
            key.bSorted = false;
            break;
        }
    }
    return key.bSorted;
}

bool CurveGraphicsItem_Curve_XY::nearestSample(const QPointF& pos, double radius, double limit2,
                                               Nearest* nearest)
{
    if (!nearest || !isVisible() || !(radius >= 0.0) || !takeSource())
        return false;
    const QRectF area = boundingRect();
    if (area.isEmpty() || !std::isfinite(pos.x()) || !std::isfinite(pos.y()))
        return false;
    const CoordMapping mapping(area, m_source.xMin, m_source.xMax, m_source.yMin, m_source.yMax,
                               m_yDown);
    if (!(mapping.rx > 0.0) || !std::isfinite(mapping.rx))
        return false;

    // The Y indexes the selection shows; those beyond its entries are drawn,
    // as in painting.
    const std::vector<int> shown = shownYIndexes(int(m_source.ys.size()));
    qint64 count = 0;
    for (const int k : shown)
        count = std::max(count, m_source.counts[size_t(k)]);
    if (count < 1)
        return false;

    const double* xs = m_source.xs;
    // Anything farther than this squared distance is of no interest: beyond
    // the radius, or no nearer than what other items found.
    double bound = std::min(radius * radius, limit2);
    bool bBoundInclusive = radius * radius < limit2;
    bool found = false;
    // Measures sample j on every shown Y axis; false once j lies farther
    // along X than the bound, which ends a walk away from the cursor.
    const auto visit = [&](qint64 j) {
        const double px = mapping.mapX(xs[j]);
        const double dx = px - pos.x();
        const double dx2 = dx * dx;
        if (!(dx2 <= bound))
            return false;
        if (px < area.left() || px > area.right())
            return true;
        for (const int k : shown) {
            if (j >= m_source.counts[size_t(k)])
                continue;
            const double y = m_source.ys[size_t(k)][j];
            const double py = mapping.mapY(y);
            if (!(py >= area.top() && py <= area.bottom()))
                continue;
            const double dy = py - pos.y();
            const double d2 = dx2 + dy * dy;
            if (d2 < bound || (bBoundInclusive && d2 == bound)) {
                bound = d2;
                bBoundInclusive = false;
                found = true;
                *nearest = Nearest{k, j, xs[j], y, d2};
            }
        }
        return true;
    };
    if (xSorted(count)) {
        // Walk outward from the cursor's time in both directions; the walk
        // ends where X alone is farther than the nearest sample so far.
        const double atCursor =
            m_source.xMin + (pos.x() - area.left()) / area.width() * mapping.rx;
        const qint64 middle = std::lower_bound(xs, xs + count, atCursor) - xs;
        for (qint64 j = middle; j < count && visit(j); ++j) {
        }
        for (qint64 j = middle - 1; j >= 0 && visit(j); --j) {
        }
    } else {
        for (qint64 j = 0; j < count; ++j)
            visit(j);
    }
    return found;
}

std::vector<int> CurveGraphicsItem_Curve_XY::shownYIndexes(int count) const
{
    // The selection is read by position; Y indexes beyond its entries have
    // no say in it and are drawn, as with an empty selection.
    std::vector<int> shown;
    auto selection = m_visibleSelection.cbegin();
    for (int k = 0; k < count; ++k) {
        if (selection != m_visibleSelection.cend()) {
            const bool bShown = selection.value();
            ++selection;
            if (!bShown)
                continue;
        }
        shown.push_back(k);
    }
    return shown;
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
    pixelsChanged();
    setVisible(visible);
}

void CurveGraphicsItem_Curve_XY::setPenColor(const QColor& color)
{
    m_pen = QPen(color);
    m_pen.setWidth(0);
    pixelsChanged();
}

void CurveGraphicsItem_Curve_XY::recolourYPens(bool bSingle)
{
    m_yPens.resize(m_yIndexes);
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

bool CurveGraphicsItem_Curve_XY::LayerTarget::matches(const LayerTarget& other) const
{
    return bounds == other.bounds && near(m11, other.m11) && near(m22, other.m22)
           && near(dx, other.dx) && near(dy, other.dy);
}

bool CurveGraphicsItem_Curve_XY::layerTargetFor(const QTransform& deviceTransform,
                                                const QRect& device, LayerTarget* target) const
{
    if (deviceTransform.type() > QTransform::TxScale)
        return false;
    LayerTarget t;
    t.m11 = deviceTransform.m11();
    t.m22 = deviceTransform.m22();
    t.dx = deviceTransform.dx();
    t.dy = deviceTransform.dy();
    if (!(std::isfinite(t.m11) && std::isfinite(t.m22) && std::isfinite(t.dx)
          && std::isfinite(t.dy) && t.m11 != 0.0 && t.m22 != 0.0))
        return false;
    QRectF covered = QRectF(device);
    // Inside a scene the item is clipped to its shape, so the layer need
    // not reach beyond it; painted on its own it may spill anywhere.
    if (scene() && (flags() & QGraphicsItem::ItemClipsToShape))
        covered = covered.intersected(deviceTransform.mapRect(boundingRect().normalized()));
    if (covered.isEmpty()) {
        t.bounds = QRect();
    } else {
        const double left = std::floor(covered.left());
        const double top = std::floor(covered.top());
        const double right = std::ceil(covered.right());
        const double bottom = std::ceil(covered.bottom());
        if ((right - left) * (bottom - top) > double(kMaxLayerPixels))
            return false;
        t.bounds = QRect(int(left), int(top), int(right - left), int(bottom - top));
    }
    *target = t;
    return true;
}

void CurveGraphicsItem_Curve_XY::countRun(const Run& run, qint64 begin, qint64 end,
                                          const RowSource& source, const LayerTarget& target,
                                          CurveRaster::Counter& counter) const
{
    const CoordMapping mapping(boundingRect(), m_source.xMin, m_source.xMax, m_source.yMin,
                               m_source.yMax, m_yDown);
    const auto columnAt = [&](qint64 j) {
        return m_columnsAsSteps ? m_steps.at(j) : m_columns[size_t(j)];
    };
    // A piece that starts inside the run carries on from the last point
    // before it, so that splitting a run changes no pixel. Its row is mapped
    // afresh: the cache there may be another piece's to fill.
    CurveRaster::Cursor cursor;
    for (qint64 j = begin - 1; j >= run.begin; --j) {
        const qint32 column = columnAt(j);
        qint32 row = 0;
        CurveRaster::mapRows(mapping, target.m22, target.dy, source.ys + j, &column, 1, &row);
        if (row != CurveRaster::kNoPixel) {
            cursor = CurveRaster::Cursor{false, column, row};
            break;
        }
    }
    constexpr qint64 kBlock = 1024;
    qint32 columnBlock[kBlock];
    qint32 rowBlock[kBlock];
    for (qint64 j = begin; j <= end; j += kBlock) {
        const qint64 n = std::min(kBlock, end - j + 1);
        const qint32* columns = columnBlock;
        if (m_columnsAsSteps)
            m_steps.fill(j, n, columnBlock);
        else
            columns = m_columns.data() + j;
        const qint32* rows = rowBlock;
        if (source.cached) {
            for (const auto& range : source.fill) {
                const qint64 lo = std::max(j, range[0]);
                const qint64 hi = std::min(j + n - 1, range[1]);
                if (lo <= hi)
                    CurveRaster::mapRows(mapping, target.m22, target.dy, source.ys + lo,
                                         columns + (lo - j), hi - lo + 1, source.cached + lo);
            }
            rows = source.cached + j;
        } else {
            CurveRaster::mapRows(mapping, target.m22, target.dy, source.ys + j, columns, n,
                                 rowBlock);
        }
        counter.polyline(columns, rows, n, cursor);
    }
}

bool CurveGraphicsItem_Curve_XY::ColumnsKey::operator==(const ColumnsKey& o) const
{
    return xMin == o.xMin && xMax == o.xMax && m11 == o.m11 && dx == o.dx && left == o.left
           && right == o.right && width == o.width && count == o.count
           && dataVersion == o.dataVersion;
}

bool CurveGraphicsItem_Curve_XY::RowsKey::operator==(const RowsKey& o) const
{
    return yMin == o.yMin && yMax == o.yMax && top == o.top && height == o.height
           && m22 == o.m22 && dy == o.dy && bYDown == o.bYDown && ys == o.ys && count == o.count
           && dataVersion == o.dataVersion;
}

CurveGraphicsItem_Curve_XY::RowSource CurveGraphicsItem_Curve_XY::rowSource(
    int yIndex, const LayerTarget& target)
{
    RowSource source;
    source.ys = m_source.ys[size_t(yIndex)];
    // Rows are kept only where they depend on Y alone: with every sample
    // in a column, which X in order gives unless the area has no width.
    if (!m_columnsAsSteps || !m_steps.allPlaced())
        return source;
    if (m_rowCaches.size() < m_source.ys.size())
        m_rowCaches.resize(m_source.ys.size());
    RowCache& cache = m_rowCaches[size_t(yIndex)];
    const QRectF area = boundingRect();
    const RowsKey key{m_source.yMin,    m_source.yMax, area.top(),
                      area.height(),    target.m22,    target.dy,
                      m_yDown,          source.ys,     m_source.counts[size_t(yIndex)],
                      m_dataVersion};
    if (!(cache.key == key)) {
        // Left uninitialised: pages are touched only as rows are filled.
        if (key.count != cache.key.count)
            cache.rows.reset(new qint32[size_t(key.count)]);
        cache.key = key;
        cache.first = 0;
        cache.last = -1;
    }
    // What this build walks; rows already there are read, the rest filled.
    // Ranges that do not meet start the cache afresh, so it always holds
    // one stretch of samples.
    const qint64 first = m_visibleFirst;
    const qint64 last = std::min(m_visibleLast, key.count - 1);
    if (first > last)
        return source;
    if (last < cache.first - 1 || first > cache.last + 1) {
        cache.first = 0;
        cache.last = -1;
    }
    if (cache.first > cache.last) {
        source.fill[0][0] = first;
        source.fill[0][1] = last;
        cache.first = first;
        cache.last = last;
    } else {
        source.fill[0][0] = first;
        source.fill[0][1] = cache.first - 1;
        source.fill[1][0] = cache.last + 1;
        source.fill[1][1] = last;
        cache.first = std::min(cache.first, first);
        cache.last = std::max(cache.last, last);
    }
    source.cached = cache.rows.get();
    return source;
}

namespace {

// The first index in [lo, hi) for which \a test fails, \a test being true
// for a prefix of the range.
template <class Test>
qint64 partitionPoint(qint64 lo, qint64 hi, Test test)
{
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (test(mid))
            lo = mid + 1;
        else
            hi = mid;
    }
    return lo;
}

} // namespace

void CurveGraphicsItem_Curve_XY::updateColumns(const LayerTarget& target)
{
    qint64 count = 0;
    for (const qint64 c : m_source.counts)
        count = std::max(count, c);
    const ColumnsKey key{m_source.xMin, m_source.xMax, target.m11, target.dx,
                         target.bounds.left(), target.bounds.right(), m_dataAreaWidth, count,
                         m_dataVersion};
    if (key == m_columnsKey)
        return;
    const CoordMapping mapping(boundingRect(), m_source.xMin, m_source.xMax, m_source.yMin,
                               m_source.yMax, m_yDown);
    const double* xs = m_source.xs;
    // With X in order (time, as a rule) only the samples whose columns fall
    // in the layer, and one neighbour on each side for the segments that
    // enter and leave it, can set a pixel: a zoomed window maps and counts
    // only those.
    qint64 first = 0;
    qint64 last = count - 1;
    m_columnsAsSteps = count > 0 && std::isfinite(mapping.rx) && mapping.rx > 0.0
                       && xSorted(count);
    if (m_columnsAsSteps) {
        const auto column = [&](qint64 j) {
            qint32 c = 0;
            CurveRaster::mapColumns(mapping, target.m11, target.dx, xs + j, 1, &c);
            return c;
        };
        const int left = target.bounds.left();
        const int right = target.bounds.right();
        const bool ascending = target.m11 > 0.0;
        const qint64 inside = partitionPoint(0, count, [&](qint64 j) {
            return ascending ? column(j) < left : column(j) > right;
        });
        const qint64 beyond = partitionPoint(inside, count, [&](qint64 j) {
            return ascending ? column(j) <= right : column(j) >= left;
        });
        first = std::max<qint64>(0, inside - 1);
        last = std::min(count - 1, beyond);
    }
    if (m_columnsAsSteps) {
        m_steps.build(mapping, target.m11, target.dx, xs, first, last);
        std::vector<qint32>().swap(m_columns);
    } else {
        m_columns.resize(size_t(count));
        CurveRaster::mapColumns(mapping, target.m11, target.dx, xs, count, m_columns.data());
        // Rows are kept only for X in order.
        m_rowCaches.clear();
    }
    m_visibleFirst = first;
    m_visibleLast = last;
    m_columnsKey = key;
}

void CurveGraphicsItem_Curve_XY::buildLayer(const LayerTarget& target, int ways)
{
    m_layerTarget = target;
    m_layerVersion = m_version;
    ++m_layerBuilds;
    const QRect bounds = target.bounds;
    if (bounds.isEmpty()) {
        m_layer = QImage();
        return;
    }
    if (m_layer.size() != bounds.size())
        m_layer = QImage(bounds.size(), QImage::Format_ARGB32_Premultiplied);
    // Transparent is all zero bytes; memset clears faster than a fill by
    // pixel value.
    std::memset(m_layer.bits(), 0, size_t(m_layer.sizeInBytes()));
    countPoints();
    updateColumns(target);

    // Counters are large (four bytes a pixel) and zeroed again by each
    // resolve, so they are kept between builds: one per pool thread for
    // items built side by side, a set on the GUI thread for one item split
    // into pieces.
    thread_local std::vector<CurveRaster::Counter> counters;
    ways = std::max(1, ways);
    if (counters.size() < size_t(ways))
        counters.resize(size_t(ways));
    QPainter painter;
    const QTransform toLayer(target.m11, 0.0, 0.0, target.m22, target.dx - bounds.left(),
                             target.dy - bounds.top());
    const auto beginPainter = [&]() {
        if (!painter.isActive()) {
            painter.begin(&m_layer);
            painter.setTransform(toLayer);
        }
    };
    QPen inForce = m_pen;
    for (const int k : shownYIndexes(m_yIndexes)) {
        if (k < m_yPens.size())
            inForce = m_yPens.at(k);
        if (size_t(k) >= m_runs.size())
            continue;
        const double* ys = m_source.ys[size_t(k)];
        const std::vector<Run>& runs = m_runs[size_t(k)];
        QPolygon points;
        if (m_showCap == ECurveShowCap_Point) {
            beginPainter();
            QPen pen = inForce;
            pen.setWidthF(2.0);
            painter.setPen(pen);
            for (const Run& run : runs) {
                mapRun(run, ys, points);
                painter.drawPoints(points);
            }
            continue;
        }
        // Thin runs first, counted; they blend into the layer once.
        if (countThinRuns(runs, rowSource(k, target), target, ways, counters)) {
            if (painter.isActive())
                painter.end();
            const CurveRaster::BlendTable table(
                CurveRaster::premultiply(inForce.color().rgba()));
            uchar* bits = m_layer.bits();
            const qsizetype stride = m_layer.bytesPerLine();
            CurveRaster::resolveSum(counters, size_t(ways), [&](int col, int row, quint32 n) {
                auto* pixel = reinterpret_cast<quint32*>(bits + row * stride) + col;
                *pixel = CurveRaster::over(table(n), *pixel);
            });
        }
        // Then the short runs, drawn 1 to 2 pixels wide as outlines Qt
        // fills once, and single points.
        for (const Run& run : runs) {
            if (run.points < 1 || run.points >= kThinRun)
                continue;
            mapRun(run, ys, points);
            const int n = points.size();
            if (n == 0)
                continue;
            beginPainter();
            QPen pen = inForce;
            if (n == 1) {
                pen.setWidthF(4.0);
                painter.setPen(pen);
                painter.drawPoints(points);
                continue;
            }
            // Long runs are drawn thinner so that dense data stays readable.
            pen.setWidthF(qBound(1.0, 2.0 / (n / 1000.0), 2.0));
            painter.setPen(pen);
            painter.drawPolyline(points);
        }
    }
}

bool CurveGraphicsItem_Curve_XY::countThinRuns(const std::vector<Run>& runs,
                                               const RowSource& source,
                                               const LayerTarget& target, int ways,
                                               std::vector<CurveRaster::Counter>& counters) const
{
    qint64 samples = 0;
    for (const Run& run : runs)
        samples += run.points >= kThinRun ? run.end - run.begin + 1 : 0;
    if (samples == 0)
        return false;
    // Each way counts one piece of every thin run into its own counter;
    // the counts add up to those of one walk.
    for (int t = 0; t < ways; ++t)
        counters[size_t(t)].begin(target.bounds);
    const auto countWay = [&](int t) {
        for (const Run& whole : runs) {
            if (whole.points < kThinRun)
                continue;
            // Only the part of the run that can reach the layer; where it
            // starts, nothing before it could have set a pixel either.
            const Run run{std::max(whole.begin, m_visibleFirst),
                          std::min(whole.end, m_visibleLast), whole.points};
            const qint64 length = run.end - run.begin + 1;
            if (length < 1)
                continue;
            const qint64 begin = run.begin + length * t / ways;
            const qint64 end = run.begin + length * (t + 1) / ways - 1;
            if (begin <= end)
                countRun(run, begin, end, source, target, counters[size_t(t)]);
        }
    };
    if (ways == 1) {
        countWay(0);
    } else {
        QVector<int> order(ways);
        std::iota(order.begin(), order.end(), 0);
        QtConcurrent::blockingMap(order, countWay);
    }
    return true;
}

qint64 CurveGraphicsItem_Curve_XY::sampleCount() const
{
    qint64 samples = 0;
    for (const qint64 count : m_source.counts)
        samples += count;
    return samples;
}

bool CurveGraphicsItem_Curve_XY::layerIsCurrent(const LayerTarget& target) const
{
    return m_layerVersion == m_version && m_layerTarget.matches(target);
}

void CurveGraphicsItem_Curve_XY::prepareLayers(const QVector<CurveGraphicsItem_Curve_XY*>& items,
                                               const QVector<LayerTarget>& targets)
{
    // Everything that reads objects happens here, on the GUI thread; the
    // builds touch only their own item and the sample arrays.
    QVector<CurveGraphicsItem_Curve_XY*> jobs;
    QVector<LayerTarget> jobTargets;
    for (int i = 0; i < items.size() && i < targets.size(); ++i) {
        CurveGraphicsItem_Curve_XY* item = items.at(i);
        if (!item->takeSource() || item->layerIsCurrent(targets.at(i)))
            continue;
        item->updateRuns();
        jobs.append(item);
        jobTargets.append(targets.at(i));
    }
    // One item alone is split into pieces instead.
    if (jobs.size() == 1) {
        jobs.first()->buildLayer(jobTargets.first(), splitWays(jobs.first()->sampleCount()));
        return;
    }
    QVector<int> order(jobs.size());
    std::iota(order.begin(), order.end(), 0);
    QtConcurrent::blockingMap(order, [&jobs, &jobTargets](int i) {
        jobs.at(i)->buildLayer(jobTargets.at(i), 1);
    });
}

void CurveGraphicsItem_Curve_XY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                       QWidget*)
{
    if (!takeSource())
        return;
    const QPaintEngine* engine = painter->paintEngine();
    if (!engine)
        return;
    const bool raster = engine->type() == QPaintEngine::Raster;
    LayerTarget target;
    const LayerSpace space = raster ? layerSpace(painter) : LayerSpace();
    if (raster && !painter->testRenderHint(QPainter::Antialiasing)
        && painter->compositionMode() == QPainter::CompositionMode_SourceOver
        && layerTargetFor(space.transform, space.device, &target)) {
        if (!layerIsCurrent(target)) {
            updateRuns();
            buildLayer(target, splitWays(sampleCount()));
        }
        if (m_layer.isNull())
            return;
        painter->save();
        // Device pixels one to one: the layer was made at device resolution.
        painter->setWorldTransform(painter->deviceTransform().inverted()
                                   * painter->worldTransform());
        painter->drawImage(m_layerTarget.bounds.topLeft() + space.shift, m_layer);
        painter->restore();
        return;
    }
    painter->save();
    drawRuns(painter, !raster);
    painter->restore();
}

namespace {

// The points of a thin run that a vector device needs: per device-pixel
// column the first, lowest, highest and last point, in the run's order.
void reduceToColumns(const QPolygon& run, const QTransform& transform, QPolygon& out)
{
    out.clear();
    const int n = run.size();
    int begin = 0;
    const auto column = [&](int i) {
        return std::floor(transform.map(QPointF(run.at(i))).x());
    };
    while (begin < n) {
        const double c = column(begin);
        int end = begin + 1;
        int lo = begin;
        int hi = begin;
        while (end < n && column(end) == c) {
            if (run.at(end).y() < run.at(lo).y())
                lo = end;
            if (run.at(end).y() > run.at(hi).y())
                hi = end;
            ++end;
        }
        int keep[4] = {begin, std::min(lo, hi), std::max(lo, hi), end - 1};
        for (int i = 0; i < 4; ++i) {
            if (i == 0 || keep[i] != keep[i - 1])
                out.append(run.at(keep[i]));
        }
        begin = end;
    }
}

} // namespace

void CurveGraphicsItem_Curve_XY::drawRuns(QPainter* painter, bool reduceThin) const
{
    const QVector<QList<QPolygon>>& cache = polylines();
    const QTransform transform = painter->deviceTransform();
    painter->setPen(m_pen);
    QPolygon reduced;
    for (const int k : shownYIndexes(cache.size())) {
        if (k < m_yPens.size())
            painter->setPen(m_yPens.at(k));
        const QList<QPolygon>& runs = cache.at(k);
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
                continue;
            }
            pen.setWidthF(qBound(1.0, 2.0 / (n / 1000.0), 2.0));
            painter->setPen(pen);
            if (reduceThin && n >= kThinRun) {
                reduceToColumns(run, transform, reduced);
                painter->drawPolyline(reduced);
            } else {
                painter->drawPolyline(run);
            }
        }
    }
}
