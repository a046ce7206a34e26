#include "CurveGraphicsItem_Curve_p.h"

#include "AxisData.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"
#include "StrokeRaster_p.h"

#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

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

namespace {

// Empties a run cache but keeps its lists and the runs' capacity, so that a
// rebuild of data of the same shape allocates nothing.
void resetRuns(QVector<QList<QPolygon>>& cache, int n)
{
    cache.resize(n);
    for (QList<QPolygon>& runs : cache) {
        for (QPolygon& run : runs)
            run.resize(0);
    }
}

// Whether two rectangles agree but for rounding in mapping back and forth.
bool sameRect(const QRectF& a, const QRectF& b)
{
    const double tolerance = 1e-6 * (1.0 + std::abs(b.width()) + std::abs(b.height()));
    return std::abs(a.left() - b.left()) <= tolerance && std::abs(a.top() - b.top()) <= tolerance
           && std::abs(a.right() - b.right()) <= tolerance
           && std::abs(a.bottom() - b.bottom()) <= tolerance;
}

// Drops the runs past the last one used by this rebuild.
void trimRuns(QList<QPolygon>& runs, int used)
{
    while (runs.size() > used)
        runs.removeLast();
}

// Appends to \a out the points of \a run that can change an opaque, aliased
// drawing of it. Consecutive points with one x form a column; every segment
// inside a column is vertical at that x, and together they cover every row
// from the column's smallest to its largest y whatever their order. Which
// rows a line rasteriser adds or leaves out at a segment's ends (the shared
// end pixel of two segments, a pixel more or less where the direction turns)
// reaches at most one row beyond those ends, so it can change the image only
// next to the column's extreme rows. A column therefore keeps:
// - its head and tail up to the second change of position, so that the
//   segments entering and leaving it, their caps and joins, and the line
//   state they hand on stay as they were (also where x goes backwards);
// - every point within one row of the column's smallest or largest y, with
//   its neighbours, so that each segment that reaches those rows is drawn
//   from the very same points.
// The points left out lie between kept points two rows or more inside the
// extremes; the straight segment that replaces them covers rows that stay
// covered anyway.
void reduceRun(const QPolygon& run, QPolygon& out)
{
    const int n = run.size();
    const QPoint* p = run.constData();
    int begin = 0;
    while (begin < n) {
        const int x = p[begin].x();
        int end = begin + 1;
        int lo = p[begin].y();
        int hi = lo;
        while (end < n && p[end].x() == x) {
            lo = std::min(lo, p[end].y());
            hi = std::max(hi, p[end].y());
            ++end;
        }
        if (end - begin <= 6) {
            for (int i = begin; i < end; ++i)
                out.append(p[i]);
            begin = end;
            continue;
        }
        // Head and tail: through the second point that differs from the one
        // before it (repeated points draw nothing and hand the state on).
        int head = begin;
        for (int changes = 0; head + 1 < end && changes < 2; ++head)
            changes += p[head + 1] != p[head] ? 1 : 0;
        int tail = end - 1;
        for (int changes = 0; tail - 1 > begin && changes < 2; --tail)
            changes += p[tail - 1] != p[tail] ? 1 : 0;
        const auto near = [p, lo, hi](int i) {
            return p[i].y() - lo <= 1 || hi - p[i].y() <= 1;
        };
        bool nearPrev = false;
        bool nearHere = near(begin);
        for (int i = begin; i < end; ++i) {
            const bool nearNext = i + 1 < end && near(i + 1);
            if (i <= head || i >= tail || nearPrev || nearHere || nearNext)
                out.append(p[i]);
            nearPrev = nearHere;
            nearHere = nearNext;
        }
        begin = end;
    }
}

} // namespace

void CurveGraphicsItem_Curve_XY::rebuildPolylines()
{
    // Follow the base's binding, which moves to the registry's current
    // coordinate when the old one is replaced.
    m_coordXY = qobject_cast<Curve_Coord_XY*>(m_coord.data());
    const AxisData* xAxis = (m_coordXY && m_dataSetXY) ? m_dataSetXY->getAxisData(0) : nullptr;
    const int n = xAxis ? m_dataSetXY->getAxisNum() - 1 : 0;
    if (n < 1) {
        m_polylines.clear();
        return;
    }
    resetRuns(m_polylines, n);
    // The points worked out for the old runs no longer apply; their
    // buffers are kept for the new ones.
    for (QVector<DrawnRun>& runs : m_drawn) {
        for (DrawnRun& drawn : runs)
            drawn.mode = DrawnRun::Unknown;
    }

    const qint64 xCount = xAxis->getArea(nullptr, nullptr);
    const double* xs = xAxis->getData(0, nullptr);
    int k = 0;
    for (; k < n; ++k) {
        const int userType = k + 1;
        const AxisData* yAxis = m_dataSetXY->getAxisData(userType);
        if (!yAxis)
            break;
        std::set<qint64> breaks;
        m_dataSetXY->getAxisBreakInfo(userType, breaks);
        qint64 count = std::min(xCount, yAxis->getArea(nullptr, nullptr));
        if (count < 1)
            break;
        count = std::min(count, kMaxSamples);
        const double* ys = yAxis->getData(0, nullptr);
        Q_ASSERT(xs && ys);
        breaks.insert(count - 1);
        mapAndCut(count, xs, ys, breaks, m_polylines[k]);
    }
    // A missing or empty Y axis ends the rebuild: it and every later one
    // keep no runs.
    for (; k < n; ++k)
        m_polylines[k].clear();
}

void CurveGraphicsItem_Curve_XY::mapAndCut(qint64 count, const double* xs, const double* ys,
                                           const std::set<qint64>& breaks,
                                           QList<QPolygon>& runs) const
{
    // One pass from samples to integer points, with the arithmetic of
    // Curve_Coord_XY::map in the same order (subtract, divide by the range,
    // multiply by the extent, offset), so every truncated pixel is the one
    // that map() followed by truncation gives.
    double xMin, xMax, yMin, yMax;
    m_coordXY->getArea(xMin, xMax, yMin, yMax);
    const QRectF rect = boundingRect();
    const double left = rect.left();
    const double top = rect.top();
    const double bottom = rect.top() + rect.height();
    const double width = rect.width();
    const double height = rect.height();
    const double rx = xMax - xMin;
    const double ry = yMax - yMin;
    const double yBase = m_yDown ? top : bottom;
    const double ySign = m_yDown ? 1.0 : -1.0;
    const double limit = kPixelLimit;

    int used = 0;
    qint64 start = 0;
    for (const qint64 b : breaks) {
        // The Y axis may be longer than the X axis and carry breaks past the
        // last common sample; count - 1 is always in the set and ends the walk.
        if (b >= count)
            break;
        if (runs.size() <= used)
            runs.append(QPolygon());
        QPolygon& run = runs[used];
        const int needed = int(b - start + 1);
        if (run.size() < needed)
            run.resize(needed);
        QPoint* out = run.data();
        int m = 0;
        for (qint64 j = start; j <= b; ++j) {
            const double px = ((xs[j] - xMin) / rx) * width + left;
            // yBase + ySign * t is top + t or bottom - t exactly: multiplying
            // by +-1 and adding a negated value round as the subtraction does.
            const double py = yBase + ySign * (((ys[j] - yMin) / ry) * height);
            // A missing value leaves a gap in the samples but not in the run:
            // its neighbours are joined directly. A NaN X has no place on the
            // axis, nor has a value whose mapping overflowed; both are dropped
            // the same way.
            if (std::isnan(px) || std::isnan(py))
                continue;
            out[m++] = QPoint(int(std::min(std::max(px, -limit), limit)),
                              int(std::min(std::max(py, -limit), limit)));
        }
        run.resize(m);
        start = b + 1;
        if (m > 0)
            ++used;
    }
    trimRuns(runs, used);
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

bool CurveGraphicsItem_Curve_XY::canDrawReduced(const QPainter* painter, const QPen& pen) const
{
    // The reduced runs cover the same pixels as the full ones; they give the
    // same image only where a pixel's colour does not depend on how often or
    // in which order it is covered within one run, and where the engine
    // decides coverage per pixel:
    // - a raster engine without antialiasing (a vector device such as a
    //   printer records every segment; coverage would blend edges);
    // - a plain scale and offset, so that a column stays a vertical line;
    // - either a wide stroke, which Qt outlines and fills once as a whole, so
    //   the union of the segments decides; or a one-pixel cosmetic line in an
    //   opaque solid colour painted over the target, where a pixel drawn twice
    //   looks as one drawn once.
    if (!m_reducedDrawing || painter->testRenderHint(QPainter::Antialiasing))
        return false;
    const QPaintEngine* engine = painter->paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return false;
    const QTransform transform = painter->deviceTransform();
    if (transform.type() > QTransform::TxScale || pen.style() != Qt::SolidLine
        || pen.brush().style() != Qt::SolidPattern)
        return false;
    const double scale = std::max(std::abs(transform.m11()), std::abs(transform.m22()));
    const bool wide = !pen.isCosmetic() && pen.widthF() * scale > 1.0 + 1e-9;
    if (wide)
        return true;
    return painter->compositionMode() == QPainter::CompositionMode_SourceOver
           && pen.color().alpha() == 255 && transform.type() <= QTransform::TxTranslate;
}

const QPolygon& CurveGraphicsItem_Curve_XY::pointsToDraw(int k, int r, const QPainter* painter,
                                                         const QPen& pen)
{
    const QPolygon& run = m_polylines.at(k).at(r);
    if (!m_reducedDrawing)
        return run;
    StrokeTarget target;
    DrawnRun::Mode mode = DrawnRun::Every;
    if (canDrawReduced(painter, pen))
        mode = DrawnRun::Columns;
    else if (StrokeTarget::forPainter(painter, pen, &target))
        mode = DrawnRun::Stroke;
    if (mode == DrawnRun::Every)
        return run;
    if (m_drawn.size() != m_polylines.size())
        m_drawn.resize(m_polylines.size());
    QVector<DrawnRun>& runs = m_drawn[k];
    if (runs.size() != m_polylines.at(k).size())
        runs.resize(m_polylines.at(k).size());
    DrawnRun& drawn = runs[r];
    if (drawn.mode != mode || (mode == DrawnRun::Stroke && drawn.target != target)) {
        drawn.mode = mode;
        drawn.target = target;
        if (mode == DrawnRun::Columns) {
            drawn.points.clear();
            reduceRun(run, drawn.points);
            drawn.reduced = drawn.points.size() < run.size();
        } else {
            drawn.reduced = reduceStroke(run, target, drawn.points);
        }
    }
    return drawn.reduced ? drawn.points : run;
}

void CurveGraphicsItem_Curve_XY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                       QWidget* widget)
{
    if (m_polylines.isEmpty())
        return;
    painter->save();
    // Long translucent runs are counted and blended straight into the
    // image where the painter's clip is known; what is left goes through
    // Qt. A view paints its items with a painter on its viewport and no clip
    // of its own, so there the only clip is the one the scene sets for this
    // item's shape.
    StrokeRaster raster;
    bool counted = false;
    if (m_reducedDrawing) {
        const QRectF rect = boundingRect();
        if (!painter->hasClipping()) {
            counted = raster.begin(painter, nullptr);
        } else if (widget && painter->device() == widget && scene()
                   && (flags() & QGraphicsItem::ItemClipsToShape)
                   && sameRect(painter->clipBoundingRect(), rect)) {
            counted = raster.begin(painter, &rect);
        }
    }
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
        raster.flush();
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
        for (int r = 0; r < runs.size(); ++r) {
            const QPolygon& run = runs.at(r);
            const int n = run.size();
            QPen pen = painter->pen();
            if (n == 1) {
                raster.flush();
                pen.setWidthF(4.0);
                painter->setPen(pen);
                painter->drawPoints(run);
                continue;
            }
            // Long runs are drawn thinner so that dense data stays readable.
            pen.setWidthF(qBound(1.0, 2.0 / (n / 1000.0), 2.0));
            painter->setPen(pen);
            // Opaque and wide pens draw fastest from the per-column copy.
            if (counted && !canDrawReduced(painter, pen) && raster.add(run, pen))
                continue;
            raster.flush();
            painter->drawPolyline(pointsToDraw(k, r, painter, pen));
        }
    }
    raster.flush();
    painter->restore();
}
