// SPDX-License-Identifier: MIT
#include "CurveGraphicsItem_Curve_p.h"

#include "CurveComposition_p.h"
#include "CurveGraphicsScene_p.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"

#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <atomic>
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

void CurveGraphicsItem_Curve::switchOffListen()
{
    if (m_listen)
        freeze();
    m_listen = false;
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

void CurveGraphicsItem_Curve::rebindCoord(Curve_Coord* coord)
{
    if (coord != m_coord.data()) {
        if (m_coord) {
            disconnect(m_coord.data(), &Curve_Coord::sgCoordAreaChanged, this,
                       &CurveGraphicsItem_Curve::onCoord_areaChanged);
        }
        m_coord = coord;
        if (coord) {
            connect(coord, &Curve_Coord::sgCoordAreaChanged, this,
                    &CurveGraphicsItem_Curve::onCoord_areaChanged, Qt::UniqueConnection);
        }
    }
    if (!m_listen)
        return;
    invalidate(Change::Area);
    update();
}

void CurveGraphicsItem_Curve::showParamChanged()
{
    if (!m_listen)
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

namespace {

// Versions are unique over all items, so that an item made where a deleted
// one lived never passes for it.
quint64 nextVersion()
{
    static std::atomic<quint64> counter(0);
    return ++counter;
}

// Pictures larger than this many pixels are not made; such targets are
// drawn straight through the painter.
constexpr qint64 kMaxPicturePixels = qint64(1) << 26;

} // namespace

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
    , m_version(nextVersion())
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

void CurveGraphicsItem_Curve_XY::invalidate(Change)
{
    // Nothing is read yet: the next paint (or listening stopping) takes the
    // snapshot, so a burst of signals costs one. The number of Y indexes is
    // taken now, as an eager rebuild would: pens sized before it stay.
    m_coordXY = qobject_cast<Curve_Coord_XY*>(m_coord.data());
    const bool drawable = m_coordXY && m_dataSetXY && m_dataSetXY->getAxisData(0);
    m_yIndexes = drawable ? std::max(0, m_dataSetXY->getAxisNum() - 1) : 0;
    m_snapshotStale = true;
    pixelsChanged();
}

void CurveGraphicsItem_Curve_XY::freeze()
{
    // The samples heard of are pinned now; a publish while not listening
    // then leaves them as they were.
    if (m_snapshotStale)
        takeSnapshot();
}

void CurveGraphicsItem_Curve_XY::takeSnapshot()
{
    m_snapshotStale = false;
    if (m_yIndexes > 0 && m_coordXY && m_dataSetXY)
        m_snapshot.take(m_dataSetXY, m_coordXY, m_yIndexes);
    else
        m_snapshot.clear();
}

void CurveGraphicsItem_Curve_XY::pixelsChanged()
{
    m_version = nextVersion();
}

CoordMapping CurveGraphicsItem_Curve_XY::mapping() const
{
    return CoordMapping(boundingRect(), m_snapshot.xMin, m_snapshot.xMax, m_snapshot.yMin,
                        m_snapshot.yMax, m_yDown);
}

void CurveGraphicsItem_Curve_XY::rebuildPolylines()
{
    takeSnapshot();
    m_polylinesVersion = 0;
    polylines();
}

const QVector<QList<QPolygon>>& CurveGraphicsItem_Curve_XY::polylines() const
{
    auto* self = const_cast<CurveGraphicsItem_Curve_XY*>(this);
    if (m_snapshotStale)
        self->takeSnapshot();
    if (m_polylinesVersion == m_version)
        return m_polylines;
    m_polylinesVersion = m_version;
    if (!m_snapshot.isDrawable()) {
        m_polylines.clear();
        return m_polylines;
    }
    // The runs' buffers are kept and refilled, so that rebuilding data of
    // the same shape allocates nothing.
    const CoordMapping map = mapping();
    m_polylines.resize(m_snapshot.yIndexes());
    for (int k = 0; k < m_polylines.size(); ++k) {
        QList<QPolygon>& runs = m_polylines[k];
        int used = 0;
        for (size_t r = 0; k < m_snapshot.yCount() && r < m_snapshot.runs(k).size(); ++r) {
            if (runs.size() <= used)
                runs.append(QPolygon());
            CurveVectorPainter::mapRun(m_snapshot, map, k, m_snapshot.runs(k)[r], runs[used]);
            if (!runs[used].isEmpty())
                ++used;
        }
        while (runs.size() > used)
            runs.removeLast();
    }
    return m_polylines;
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

std::vector<CurveVectorPainter::Pass> CurveGraphicsItem_Curve_XY::passes() const
{
    // A Y index without a pen of its own draws with the pen in force: the
    // item's, or the one last set for an earlier Y index.
    std::vector<CurveVectorPainter::Pass> out;
    QPen inForce = m_pen;
    for (const int k : shownYIndexes(m_snapshot.yIndexes())) {
        if (k < m_yPens.size())
            inForce = m_yPens.at(k);
        if (k < m_snapshot.yCount())
            out.push_back(CurveVectorPainter::Pass{k, inForce});
    }
    return out;
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
    for (int k = 0; k < m_yPens.size(); ++k) {
        QPen pen = bSingle ? QPen(CurvePen::singleShowColor(k)) : CurvePen::normalPen(m_pen, k);
        pen.setWidth(0);
        m_yPens[k] = pen;
    }
}

QRectF CurveGraphicsItem_Curve_XY::boundingRect() const
{
    return QRectF(0.0, -m_dataAreaHeight, m_dataAreaWidth, m_dataAreaHeight);
}

bool CurveGraphicsItem_Curve_XY::nearestSample(const QPointF& pos, double radius, double limit2,
                                               Nearest* nearest)
{
    if (!isVisible())
        return false;
    if (m_snapshotStale)
        takeSnapshot();
    return CurveNearest::find(m_snapshot, boundingRect(), m_yDown,
                              shownYIndexes(m_snapshot.yCount()), pos, radius, limit2, nearest);
}

bool CurveGraphicsItem_Curve_XY::pictureTargetFor(const QTransform& deviceTransform,
                                                  const QRect& device,
                                                  PictureTarget* target) const
{
    if (deviceTransform.type() > QTransform::TxScale)
        return false;
    PictureTarget t;
    t.m11 = deviceTransform.m11();
    t.m22 = deviceTransform.m22();
    t.dx = deviceTransform.dx();
    t.dy = deviceTransform.dy();
    if (!(std::isfinite(t.m11) && std::isfinite(t.m22) && std::isfinite(t.dx)
          && std::isfinite(t.dy) && t.m11 != 0.0 && t.m22 != 0.0))
        return false;
    QRectF covered = QRectF(device);
    // Inside a scene the item is clipped to its shape, so the picture need
    // not reach beyond it; painted on its own it may spill anywhere.
    if (scene() && (flags() & QGraphicsItem::ItemClipsToShape))
        covered = covered.intersected(deviceTransform.mapRect(boundingRect().normalized()));
    if (!covered.isEmpty()) {
        const double left = std::floor(covered.left());
        const double top = std::floor(covered.top());
        const double right = std::ceil(covered.right());
        const double bottom = std::ceil(covered.bottom());
        if ((right - left) * (bottom - top) > double(kMaxPicturePixels))
            return false;
        t.bounds = QRect(int(left), int(top), int(right - left), int(bottom - top));
    }
    *target = t;
    return true;
}

void CurveGraphicsItem_Curve_XY::syncSnapshot()
{
    if (m_snapshotStale)
        takeSnapshot();
}

void CurveGraphicsItem_Curve_XY::updateColumns(const PictureTarget& target)
{
    if (m_snapshot.isDrawable())
        m_columns.update(m_snapshot, mapping(), target);
}

void CurveGraphicsItem_Curve_XY::appendPasses(const PictureTarget& target,
                                              std::vector<CurvePass>& out)
{
    syncSnapshot();
    if (!m_snapshot.isDrawable())
        return;
    const CoordMapping map = mapping();
    m_columns.update(m_snapshot, map, target);
    for (const CurveVectorPainter::Pass& pass : passes()) {
        CurvePass p;
        p.snapshot = &m_snapshot;
        p.columns = &m_columns;
        p.mapping = map;
        p.yIndex = pass.yIndex;
        p.pen = pass.pen;
        p.cap = m_showCap;
        out.push_back(p);
    }
}

CurveComposition* CurveGraphicsItem_Curve_XY::composition()
{
    if (CurveComposition* shared = CurveGraphicsSceneAccess::compositionOf(this))
        return shared;
    if (!m_ownComposition) {
        m_ownComposition = std::make_unique<CurveComposition>([this]() {
            return QVector<CurveGraphicsItem_Curve_XY*>{this};
        });
    }
    return m_ownComposition.get();
}

const CurvePicture* CurveGraphicsItem_Curve_XY::ownPicture() const
{
    return m_ownComposition ? &m_ownComposition->picture() : nullptr;
}

namespace {

// Where a picture is made for a painter: the device transform and the
// device's pixels as the device sees itself, and where its origin lies on
// the surface actually painted. A widget is painted into its window's buffer
// (or a QWidget::render() target) at an offset that its painter's device
// transform carries. The picture is made without that offset, as the view
// prepares it, and drawn shifted by it; only a fractional offset, which no
// shift of whole pixels can express, is kept in the transform.
struct PictureSpace
{
    QTransform transform;
    QRect device;
    QPoint shift;
};

PictureSpace pictureSpace(const QPainter* painter)
{
    PictureSpace space;
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

} // namespace

void CurveGraphicsItem_Curve_XY::paint(QPainter* painter, const QStyleOptionGraphicsItem*,
                                       QWidget*)
{
    paintThrough(painter, nullptr);
}

void CurveGraphicsItem_Curve_XY::paintThrough(QPainter* painter, CurveComposition* through)
{
    if (m_snapshotStale)
        takeSnapshot();
    if (!m_snapshot.isDrawable())
        return;
    const QPaintEngine* engine = painter->paintEngine();
    if (!engine)
        return;
    const bool raster = engine->type() == QPaintEngine::Raster;
    PictureTarget target;
    const PictureSpace space = raster ? pictureSpace(painter) : PictureSpace();
    if (raster && !painter->testRenderHint(QPainter::Antialiasing)
        && painter->compositionMode() == QPainter::CompositionMode_SourceOver
        && pictureTargetFor(space.transform, space.device, &target)) {
        (through ? through : composition())->paint(this, painter, target, space.shift);
        return;
    }
    painter->save();
    CurveVectorPainter::draw(painter, m_snapshot, mapping(), passes(), m_showCap, !raster);
    painter->restore();
}
