// SPDX-License-Identifier: MIT
#include "CurveGraphicsScene.h"

#include "CurveGraphicsScene_p.h"

#include "CurveComposition_p.h"
#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_Overlay_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"
#include "TimeLabeller_p.h"

#include <QGraphicsView>
#include <QPainter>
#include <QPixmap>

#include <cmath>
#include <limits>
#include <memory>

namespace {

const double kSceneYTicks[] = {0.0, 0.25, 0.5, 0.75, 1.0};
const double kPixmapYTicks[] = {0.0, 0.5, 1.0};

template <size_t NY>
QMap<double, QString> makeYLabels(const Curve_Coord_XY& coord, const double (&yTicks)[NY],
                                  const QString& yUnit)
{
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    coord.getArea(xMin, xMax, yMin, yMax);
    QMap<double, QString> labels;
    for (const double f : yTicks) {
        const double value = (yMax - yMin) * f + yMin;
        labels.insert(f, std::isfinite(value) ? QString::number(value, 'f', 3) + yUnit
                                              : QString());
    }
    return labels;
}

} // namespace

class CurveGraphicsScene::PrivateData
{
public:
    CurveScene* m_curveScene = nullptr;
    QPointer<Curve_Coord> m_coord;
    CurveGraphicsItem_Coord* m_coordItem = nullptr;
    // Not owned: the items are the frame's children.
    QMap<QString, CurveGraphicsItem_Curve*> m_curveItems;
    // Optional labelling.
    bool m_roundTimeTicks = false;
    // The picture the curve items under the frame share, in their drawing
    // order (the frame's children in stacking order).
    CurveComposition m_composition{[this]() { return pictureMembers(); }};
    // The unit of the Y labels; empty for metres.
    QString m_valueUnit;
    // What is drawn over the curves, and the item that draws it, made only
    // once something is to be drawn there.
    CurveOverlayState m_overlay;
    QPointer<CurveGraphicsItem_Overlay> m_overlayItem;

    bool overlayWanted() const
    {
        if (m_overlay.bMarker)
            return true;
        for (const CurveGraphicsItem_Curve* item : m_curveItems) {
            const auto* xy = qobject_cast<const CurveGraphicsItem_Curve_XY*>(item);
            if (xy && xy->hasEventMarks())
                return true;
        }
        return false;
    }

    // Makes the overlay under the current frame if there is none, and
    // repaints it.
    void updateOverlay()
    {
        if (!m_overlayItem && m_coordItem) {
            auto* overlay = new CurveGraphicsItem_Overlay(
                &m_overlay, [this]() { return pictureMembers(); }, m_coordItem);
            m_overlayItem = overlay;
            QObject::connect(m_coordItem, &CurveGraphicsItem_Coord::sgDataAreaChanged, overlay,
                             &CurveGraphicsItem_Overlay::onDataAreaChanged);
            if (auto* frame = qobject_cast<CurveGraphicsItem_Coord_PXPY*>(m_coordItem)) {
                const QRectF area = frame->getDataRect();
                overlay->onDataAreaChanged(area.width(), area.height());
            }
        }
        if (m_overlayItem)
            m_overlayItem->update();
    }

    QVector<CurveGraphicsItem_Curve_XY*> pictureMembers() const
    {
        QVector<CurveGraphicsItem_Curve_XY*> members;
        if (!m_coordItem)
            return members;
        for (QGraphicsItem* child : m_coordItem->childItems()) {
            auto* item = qobject_cast<CurveGraphicsItem_Curve_XY*>(child->toGraphicsObject());
            if (item && item->isVisible())
                members.append(item);
        }
        return members;
    }
};

CurveGraphicsScene::CurveGraphicsScene(QGraphicsView* view)
    : QGraphicsScene(view)
    , m_data(new PrivateData)
{
    setSceneRect(-5000.0, -5000.0, 10000.0, 10000.0);
    setBackgroundBrush(QBrush(Qt::transparent, Qt::SolidPattern));
    m_data->m_curveScene = new CurveScene(this);
    connect(m_data->m_curveScene, &CurveScene::sgLocalCoordChanged, this,
            &CurveGraphicsScene::onSgCoordChanged, Qt::UniqueConnection);
    connect(m_data->m_curveScene, &CurveScene::sgCurveAdded, this,
            &CurveGraphicsScene::onSgCurveAdded,
            Qt::UniqueConnection);
    connect(m_data->m_curveScene, &CurveScene::sgCurveRemoved, this,
            &CurveGraphicsScene::onSgCurveRemoved, Qt::UniqueConnection);
    connect(m_data->m_curveScene, &CurveScene::sgCurveShowParamChanged, this,
            &CurveGraphicsScene::onSgCurveShowParamChanged, Qt::UniqueConnection);
    connect(m_data->m_curveScene, &CurveScene::sgCurveSingleShow, this,
            &CurveGraphicsScene::onSgSingleShow, Qt::UniqueConnection);
    connect(m_data->m_curveScene, &CurveScene::sgCurveEventMarksChanged, this,
            [this](const QString& curveName) {
                auto* item = qobject_cast<CurveGraphicsItem_Curve_XY*>(
                    m_data->m_curveItems.value(curveName, nullptr));
                if (!item)
                    return;
                item->setEventMarks(m_data->m_curveScene->getCurveEventMarks(curveName));
                m_data->updateOverlay();
            });
    setBackgroundBrush(QBrush(QColor(255, 255, 255, 255), Qt::SolidPattern));
}

CurveGraphicsScene::~CurveGraphicsScene()
{
    // The registry goes first, so that its signals are gone before the items
    // that listen to them are destroyed by the base class.
    delete m_data->m_curveScene;
    m_data->m_curveScene = nullptr;
}

CurveScene* CurveGraphicsScene::getCurveScene()
{
    return m_data->m_curveScene;
}

QRectF CurveGraphicsScene::getCoordRect() const
{
    if (!m_data->m_coordItem)
        return QRectF();
    return m_data->m_coordItem->mapRectToScene(m_data->m_coordItem->boundingRect());
}

void CurveGraphicsScene::setCoordPixelSize(int w, int h)
{
    if (!m_data->m_coordItem)
        return;
    m_data->m_coordItem->setPixelSize(w, h);
    // How many round ticks fit depends on the width.
    if (m_data->m_roundTimeTicks)
        onSgCoordAreaChanged();
}

void CurveGraphicsScene::setRoundTimeTicks(bool bRound)
{
    if (bRound == m_data->m_roundTimeTicks)
        return;
    m_data->m_roundTimeTicks = bRound;
    onSgCoordAreaChanged();
    if (m_data->m_coordItem)
        m_data->m_coordItem->update();
}

bool CurveGraphicsScene::hasRoundTimeTicks() const
{
    return m_data->m_roundTimeTicks;
}

void CurveGraphicsScene::switchOffCurvesListen()
{
    for (CurveGraphicsItem_Curve* item : qAsConst(m_data->m_curveItems))
        item->switchOffListen();
}

void CurveGraphicsScene::switchOnCurvesListen()
{
    for (CurveGraphicsItem_Curve* item : qAsConst(m_data->m_curveItems))
        item->switchOnListen();
}

void CurveGraphicsScene::onSgCoordChanged()
{
    // The previous coordinate may already be destroyed: it is never touched.
    m_data->m_coord = nullptr;
    if (m_data->m_coordItem) {
        // The curve items outlive the frame; take them off before it goes.
        for (CurveGraphicsItem_Curve* item : qAsConst(m_data->m_curveItems))
            item->setParentItem(nullptr);
        delete m_data->m_coordItem;
        m_data->m_coordItem = nullptr;
    }

    m_data->m_coord = m_data->m_curveScene->getCoord_Local();
    if (m_data->m_coord) {
        connect(m_data->m_coord.data(), &Curve_Coord::sgCoordAreaChanged, this,
                &CurveGraphicsScene::onSgCoordAreaChanged, Qt::UniqueConnection);
    }
    if (auto* coordXY = qobject_cast<Curve_Coord_XY*>(m_data->m_coord.data())) {
        auto* frame = new CurveGraphicsItem_Coord_PXPY(coordXY, nullptr);
        m_data->m_coordItem = frame;
        addItem(frame);
        frame->setPos(0.0, 0.0);
        connect(frame->getShowWhichY(), &CurveGraphicsItem_ShowWhichY::selectionChanged, this,
                &CurveGraphicsScene::onSgCoordVisibleSelectionChanged, Qt::UniqueConnection);
    }

    for (CurveGraphicsItem_Curve* item : qAsConst(m_data->m_curveItems)) {
        item->setParentItem(m_data->m_coordItem);
        // Kept items learn the new frame's data-area size like new ones do;
        // otherwise they would keep drawing at the old frame's size.
        if (m_data->m_coordItem) {
            connect(m_data->m_coordItem, &CurveGraphicsItem_Coord::sgDataAreaChanged, item,
                    &CurveGraphicsItem_Curve::onDataAreaChanged, Qt::UniqueConnection);
        }
        // The coordinate the items were made with may be gone already (the
        // registry deletes an auto-deleted one before announcing the new
        // one): they follow the registry's current one, bound here.
        item->rebindCoord(m_data->m_coord.data());
    }
    // The overlay went with the old frame.
    if (m_data->overlayWanted())
        m_data->updateOverlay();
    adjustCoordArea();
}

void CurveGraphicsScene::onSgCurveAdded(QString curveName)
{
    auto* coordXY = qobject_cast<Curve_Coord_XY*>(m_data->m_coord.data());
    // The registry hands its data sets out read-only; the item only reads the
    // samples but must connect to the data set's signals.
    auto* dataSet = const_cast<Curve_DataSet_XY*>(
        qobject_cast<const Curve_DataSet_XY*>(m_data->m_curveScene->getCurve(curveName)));
    if (coordXY && dataSet) {
        auto* item = new CurveGraphicsItem_Curve_XY(m_data->m_curveScene, coordXY, curveName,
                                                    dataSet, nullptr);
        item->setEventMarks(m_data->m_curveScene->getCurveEventMarks(curveName));
        m_data->m_curveItems.insert(curveName, item);
        if (m_data->m_coordItem) {
            connect(m_data->m_coordItem, &CurveGraphicsItem_Coord::sgDataAreaChanged, item,
                    &CurveGraphicsItem_Curve::onDataAreaChanged, Qt::UniqueConnection);
            item->setParentItem(m_data->m_coordItem);
            item->setPos(0.0, 0.0);
            onSgCoordAreaChanged();
        } else {
            // An X/Y coordinate always has a frame; should that ever not hold,
            // the scene still owns the item rather than leaking it.
            addItem(item);
        }
    }
    adjustCoordArea();
}

void CurveGraphicsScene::onSgCurveRemoved(QString curveName)
{
    const auto it = m_data->m_curveItems.find(curveName);
    if (it == m_data->m_curveItems.end())
        return;
    CurveGraphicsItem_Curve* item = it.value();
    m_data->m_curveItems.erase(it);
    delete item;
}

void CurveGraphicsScene::onSgCurveShowParamChanged(QString curveName)
{
    // Only the item of that name hears of it.
    if (CurveGraphicsItem_Curve* item = m_data->m_curveItems.value(curveName, nullptr))
        item->showParamChanged();
}

void CurveGraphicsScene::onSgCoordAreaChanged()
{
    auto* frame = qobject_cast<CurveGraphicsItem_Coord_PXPY*>(m_data->m_coordItem);
    auto* coordXY = qobject_cast<Curve_Coord_XY*>(m_data->m_coord.data());
    if (!frame || !coordXY)
        return;
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    coordXY->getArea(xMin, xMax, yMin, yMax);
    if (!(xMax > xMin) || !(yMax > yMin))
        return;
    const TimeLabeller::Labels labels = TimeLabeller::axisLabels(
        xMin, xMax, frame->getDataRect().width(), frame->font(), m_data->m_roundTimeTicks);
    frame->setXLabelsCentred(labels.bCentred);
    // A unit of the host's own stands apart from the number; metres keep
    // the label they always had.
    const QString unit = m_data->m_valueUnit.isEmpty()
                             ? tr("m")
                             : QLatin1Char(' ') + m_data->m_valueUnit;
    frame->setLabels(labels.ticks, makeYLabels(*coordXY, kSceneYTicks, unit), labels.date,
                     TimeLabeller::timeSystemCaption());
}

void CurveGraphicsScene::onSgSingleShow(QString curveName, bool bSingle)
{
    if (CurveGraphicsItem_Curve* item = m_data->m_curveItems.value(curveName, nullptr))
        item->setSingleShow(bSingle);
}

void CurveGraphicsScene::onSgCoordVisibleSelectionChanged()
{
    const auto* showWhichY = qobject_cast<const CurveGraphicsItem_ShowWhichY*>(sender());
    if (!showWhichY)
        return;
    QMap<QString, bool> selection;
    showWhichY->getSelection(selection);
    for (CurveGraphicsItem_Curve* item : qAsConst(m_data->m_curveItems))
        item->setVisibleSelection(selection);
}

void CurveGraphicsScene::adjustCoordArea()
{
    // Only a coordinate that was never given an area is fitted to the data;
    // once the host or the zoom has set one, it is left alone.
    auto* coordXY = qobject_cast<Curve_Coord_XY*>(m_data->m_coord.data());
    if (!coordXY || coordXY->areaSettedNumber() != 0)
        return;
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    if (m_data->m_curveScene->getAreaLimits(xMin, xMax, yMin, yMax))
        coordXY->setArea(xMin, xMax, yMin, yMax);
}

CurveComposition* CurveGraphicsSceneAccess::compositionOf(const CurveGraphicsItem_Curve_XY* item)
{
    auto* scene = item ? qobject_cast<CurveGraphicsScene*>(item->scene()) : nullptr;
    if (!scene || !scene->m_data->m_coordItem
        || item->parentItem() != scene->m_data->m_coordItem) {
        return nullptr;
    }
    return &scene->m_data->m_composition;
}

void CurveGraphicsSceneAccess::preparePicture(CurveGraphicsScene* scene,
                                              const QTransform& viewTransform,
                                              const QSize& size, qreal ratio)
{
    if (!scene || !scene->m_data->m_coordItem)
        return;
    const QVector<CurveGraphicsItem_Curve_XY*> members = scene->m_data->pictureMembers();
    if (members.isEmpty())
        return;
    // The target as the first curve's paint will see it: the item-to-device
    // transform of the frame's children, over the viewport's pixels.
    const QRect device(0, 0, int(std::ceil(size.width() * ratio)),
                       int(std::ceil(size.height() * ratio)));
    const QTransform toDevice = members.first()->deviceTransform(viewTransform)
                                * QTransform::fromScale(ratio, ratio);
    PictureTarget target;
    if (members.first()->pictureTargetFor(toDevice, device, &target))
        scene->m_data->m_composition.prepare(target);
}

QRectF CurveGraphicsSceneAccess::dataRectInScene(const CurveGraphicsScene* scene)
{
    auto* frame = scene ? qobject_cast<CurveGraphicsItem_Coord_PXPY*>(scene->m_data->m_coordItem)
                        : nullptr;
    return frame ? frame->mapRectToScene(frame->getDataRect()) : QRectF();
}

bool CurveGraphicsSceneAccess::nearestSample(CurveGraphicsScene* scene, const QPointF& scenePos,
                                             double radius, Nearest* nearest)
{
    auto* frame = scene ? qobject_cast<CurveGraphicsItem_Coord_PXPY*>(scene->m_data->m_coordItem)
                        : nullptr;
    if (!frame || !nearest)
        return false;
    const QPointF inFrame = frame->mapFromScene(scenePos);
    if (!frame->getDataRect().contains(inFrame))
        return false;
    double limit2 = std::numeric_limits<double>::infinity();
    bool found = false;
    for (QGraphicsItem* child : frame->childItems()) {
        auto* item = qobject_cast<CurveGraphicsItem_Curve_XY*>(child->toGraphicsObject());
        CurveNearest::Nearest sample;
        // The curve items share the frame's coordinates.
        if (item && item->nearestSample(inFrame - item->pos(), radius, limit2, &sample)) {
            *nearest = Nearest{item->curveName(), sample};
            limit2 = sample.distance2;
            found = true;
        }
    }
    return found;
}

void CurveGraphicsSceneAccess::setMixByCount(CurveGraphicsScene* scene, bool bByCount)
{
    if (!scene)
        return;
    scene->m_data->m_composition.setMix(bByCount ? CurvePicture::Mix::ByCount
                                                 : CurvePicture::Mix::InOrder);
    scene->update();
}

void CurveGraphicsSceneAccess::setValueUnit(CurveGraphicsScene* scene, const QString& unit)
{
    if (!scene || unit == scene->m_data->m_valueUnit)
        return;
    scene->m_data->m_valueUnit = unit;
    scene->onSgCoordAreaChanged();
    if (scene->m_data->m_coordItem)
        scene->m_data->m_coordItem->update();
}

QString CurveGraphicsSceneAccess::valueUnit(const CurveGraphicsScene* scene)
{
    return scene ? scene->m_data->m_valueUnit : QString();
}

bool CurveGraphicsSceneAccess::setEventKindColor(CurveGraphicsScene* scene, int kind,
                                                 const QColor& color)
{
    if (!scene || !scene->m_data->m_overlay.palette.setColor(kind, color))
        return false;
    if (scene->m_data->m_overlayItem)
        scene->m_data->m_overlayItem->update();
    return true;
}

QColor CurveGraphicsSceneAccess::eventKindColor(const CurveGraphicsScene* scene, int kind)
{
    return scene ? scene->m_data->m_overlay.palette.color(kind)
                 : EventMarkPalette::defaultColor(kind);
}

QList<int> CurveGraphicsSceneAccess::eventKindsAt(const CurveGraphicsScene* scene,
                                                  const QString& curveName, qint64 index)
{
    const auto* item = scene ? qobject_cast<const CurveGraphicsItem_Curve_XY*>(
                                   scene->m_data->m_curveItems.value(curveName, nullptr))
                             : nullptr;
    return item ? item->eventKindsAt(index) : QList<int>();
}

void CurveGraphicsSceneAccess::setPickedMarker(CurveGraphicsScene* scene, bool bOn)
{
    if (!scene || bOn == scene->m_data->m_overlay.bMarker)
        return;
    CurveOverlayState& overlay = scene->m_data->m_overlay;
    overlay.bMarker = bOn;
    if (!bOn) {
        overlay.picked = nullptr;
        overlay.front.release();
    }
    if (bOn || scene->m_data->m_overlayItem)
        scene->m_data->updateOverlay();
}

bool CurveGraphicsSceneAccess::isPickedMarker(const CurveGraphicsScene* scene)
{
    return scene && scene->m_data->m_overlay.bMarker;
}

void CurveGraphicsSceneAccess::setPicked(CurveGraphicsScene* scene, const QString& curveName,
                                         int yIndex, qint64 index)
{
    if (!scene || !scene->m_data->m_overlay.bMarker)
        return;
    CurveOverlayState& overlay = scene->m_data->m_overlay;
    auto* item = qobject_cast<CurveGraphicsItem_Curve_XY*>(
        scene->m_data->m_curveItems.value(curveName, nullptr));
    if (item == overlay.picked && yIndex == overlay.pickedY && index == overlay.pickedIndex)
        return;
    // Along the same curve only the ring moves: the curve in front stays as
    // it is, so only the ring's old and new places are painted again.
    CurveGraphicsItem_Overlay* overlayItem = scene->m_data->m_overlayItem;
    if (item && item == overlay.picked && yIndex == overlay.pickedY && overlayItem) {
        QPointF centre;
        if (item->samplePixelCentre(yIndex, overlay.pickedIndex, &centre))
            overlayItem->updateRing(centre);
        overlay.pickedIndex = index;
        if (item->samplePixelCentre(yIndex, index, &centre))
            overlayItem->updateRing(centre);
        return;
    }
    overlay.picked = item;
    overlay.pickedY = yIndex;
    overlay.pickedIndex = index;
    scene->m_data->updateOverlay();
}

void CurveGraphicsSceneAccess::clearPicked(CurveGraphicsScene* scene)
{
    if (!scene || !scene->m_data->m_overlay.picked)
        return;
    scene->m_data->m_overlay.picked = nullptr;
    scene->m_data->updateOverlay();
}

const CurvePicture* CurveGraphicsSceneAccess::frontPicture(const CurveGraphicsScene* scene)
{
    return scene ? &scene->m_data->m_overlay.front.picture() : nullptr;
}

const CurvePicture* CurveGraphicsSceneAccess::picture(const CurveGraphicsScene* scene)
{
    return scene ? &scene->m_data->m_composition.picture() : nullptr;
}

bool CurveGraphicsSceneAccess::isMixByCount(const CurveGraphicsScene* scene)
{
    return scene && scene->m_data->m_composition.mix() == CurvePicture::Mix::ByCount;
}

void CurveGraphicsScene::DrawXYCurveToPixmap(Curve_Coord_XY* coord, Curve_DataSet_XY* dataSet,
                                             const QColor& color, QPixmap* pixmap)
{
    if (!coord || !dataSet || !pixmap)
        return;
    pixmap->fill(Qt::transparent);
    // A painter on a null pixmap cannot begin; skip it rather than have Qt
    // complain about it.
    if (pixmap->isNull())
        return;
    QPainter painter(pixmap);

    // Both items exist only for this call; while they do they are connected
    // to coord and dataSet like any frame and curve item.
    // The frame is laid out in logical pixels; on a pixmap with a device
    // pixel ratio the painter scales it up, so a HiDPI picture shows the same
    // plot drawn sharper. At ratio 1 both sizes are the pixmap's own.
    const qreal ratio = pixmap->devicePixelRatio();
    const int logicalWidth = ratio == 1.0 ? pixmap->width() : qRound(pixmap->width() / ratio);
    const int logicalHeight = ratio == 1.0 ? pixmap->height() : qRound(pixmap->height() / ratio);
    auto frame = std::make_unique<CurveGraphicsItem_Coord_PXPY>(coord, nullptr);
    frame->setPixelSize(logicalWidth, logicalHeight);
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    coord->getArea(xMin, xMax, yMin, yMax);
    const TimeLabeller::Labels labels =
        TimeLabeller::evenLabels(xMin, xMax, TimeLabeller::pictureFractions());
    frame->setLabels(labels.ticks, makeYLabels(*coord, kPixmapYTicks, QString()), labels.date,
                     TimeLabeller::timeSystemCaption());

    const QRectF frameRect = frame->boundingRect();
    painter.translate(-frameRect.left(), -frameRect.top());
    frame->paint(&painter, nullptr, nullptr);
    painter.resetTransform();
    const QRectF dataRect = frame->getDataRect();
    frame.reset();

    auto curve = std::make_unique<CurveGraphicsItem_Curve_XY>(nullptr, coord, QString(),
                                                              dataSet, nullptr);
    curve->setPenColor(color);
    curve->setDataArea(dataRect.width(), dataRect.height());
    // The curve's origin goes onto the lower-left corner of the data area.
    const QRectF curveRect = curve->boundingRect();
    painter.translate(-curveRect.left() - frameRect.left(), -curveRect.top());
    curve->paint(&painter, nullptr, nullptr);
    curve.reset();
    painter.end();
}
