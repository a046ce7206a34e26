// SPDX-License-Identifier: MIT
#include "CurveGraphicsView.h"

#include "AxisData.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsScene_p.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet.h"

#include <QDateTime>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QTimeZone>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// A Ctrl+wheel notch shows this share of the window; a Shift+wheel notch
// pans by this share of the data area's width.
constexpr double kZoomPerNotch = 0.8;
constexpr double kPanPerNotch = 0.1;
// The narrowest window, in sample intervals of the densest curve.
constexpr double kMinimumSamples = 4.0;

} // namespace

class CurveGraphicsView::PrivateData
{
public:
    QPointer<CurveGraphicsScene> m_scene;
    double m_maxZoom = 20.0;
    double m_minZoom = 5e-5;
    double m_zoomStep = 0.15;
    double m_zoom = 1.0;

    // Time navigation: the window is only in force while bActive.
    struct TimeNavigation
    {
        bool bEnabled = false;
        bool bActive = false;
        double tMin = 0.0;
        double tMax = 0.0;
        bool bPanning = false;
        int panLastX = 0;
    } m_nav;
    // Hover read-out and the sample it last reported.
    struct HoverState
    {
        bool bEnabled = false;
        bool bToolTip = false;
        bool bReported = false;
        HoverSample last;
    } m_hover;
};

CurveGraphicsView::CurveGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , m_data(new PrivateData)
{
    m_data->m_scene = new CurveGraphicsScene(this);
    setScene(m_data->m_scene);
    // Connected after the scene's own connection, so the frame for a new
    // coordinate already exists when the view refits.
    if (CurveScene* registry = m_data->m_scene->getCurveScene()) {
        connect(registry, &CurveScene::sgLocalCoordChanged, this,
                &CurveGraphicsView::onScene_coordChanged, Qt::UniqueConnection);
    }
}

CurveGraphicsView::~CurveGraphicsView() = default;

CurveScene* CurveGraphicsView::getCurveScene()
{
    return m_data->m_scene ? m_data->m_scene->getCurveScene() : nullptr;
}

void CurveGraphicsView::fitCoordRect()
{
    if (m_data->m_scene)
        fitInView(m_data->m_scene->getCoordRect(), Qt::IgnoreAspectRatio);
}

void CurveGraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (!m_data->m_scene)
        return;
    const QSize size = viewport()->size();
    m_data->m_scene->setCoordPixelSize(size.width(), size.height());
    fitCoordRect();
}

void CurveGraphicsView::paintEvent(QPaintEvent* event)
{
    // The curves' picture is built before the scene paints, on every core;
    // an unchanged plot finds it current and paints it as it is.
    if (m_data->m_scene) {
        CurveGraphicsSceneAccess::preparePicture(m_data->m_scene, viewportTransform(),
                                                 viewport()->size(),
                                                 viewport()->devicePixelRatioF());
    }
    QGraphicsView::paintEvent(event);
}

void CurveGraphicsView::setOrderIndependentMix(bool bOn)
{
    if (bOn == isOrderIndependentMix())
        return;
    CurveGraphicsSceneAccess::setMixByCount(m_data->m_scene, bOn);
    viewport()->update();
}

bool CurveGraphicsView::isOrderIndependentMix() const
{
    return CurveGraphicsSceneAccess::isMixByCount(m_data->m_scene);
}

void CurveGraphicsView::onScene_coordChanged()
{
    fitCoordRect();
}

void CurveGraphicsView::wheelEvent(QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    if (m_data->m_nav.bEnabled) {
        const Qt::KeyboardModifiers modifiers = event->modifiers();
        if (modifiers & Qt::ControlModifier) {
            if (angle.y() != 0)
                zoomTimeAt(event->position().x(), double(angle.y()) / 120.0);
            event->accept();
            return;
        }
        // Some platforms turn Shift+wheel into a horizontal wheel themselves.
        const bool sideways = std::abs(angle.x()) > std::abs(angle.y());
        if ((modifiers & Qt::ShiftModifier) || sideways) {
            const int notches = sideways ? angle.x() : angle.y();
            // Turning the wheel away, or to the left, goes back in time.
            panTimeByPixels(-double(notches) / 120.0 * kPanPerNotch
                            * dataAreaInViewport().width());
            event->accept();
            return;
        }
    }
    // The single-axis delta that Qt 5's QWheelEvent::delta() reported and
    // Qt 6 no longer has: the component of larger magnitude, the vertical one
    // on a tie.
    const int delta = std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
    const double factor = delta > 0 ? 1.0 + m_data->m_zoomStep : 1.0 - m_data->m_zoomStep;
    const double candidate = m_data->m_zoom * factor;
    if (candidate >= m_data->m_minZoom && candidate <= m_data->m_maxZoom) {
        m_data->m_zoom = candidate;
        setCurvesPosToVerticalZero();
    }
    // The wheel belongs to the zoom and to the parent widget, never to the
    // scroll bars.
    event->ignore();
}

void CurveGraphicsView::setCurvesPosToVerticalZero()
{
    if (!m_data->m_scene)
        return;
    m_data->m_scene->switchOffCurvesListen();
    CurveScene* registry = m_data->m_scene->getCurveScene();
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    bool bWindowMoved = false;
    if (registry && registry->getAreaLimits(xMin, xMax, yMin, yMax)) {
        if (auto* coordXY = qobject_cast<Curve_Coord_XY*>(registry->getCoord_Local())) {
            if (m_data->m_nav.bEnabled && m_data->m_nav.bActive) {
                // The data may have changed under the window: keep it inside.
                double tMin = m_data->m_nav.tMin;
                double tMax = m_data->m_nav.tMax;
                bool bActive = true;
                if (fitWindow(tMin, tMax, bActive)) {
                    bWindowMoved = tMin != m_data->m_nav.tMin || tMax != m_data->m_nav.tMax
                                   || !bActive;
                    m_data->m_nav.bActive = bActive;
                    m_data->m_nav.tMin = tMin;
                    m_data->m_nav.tMax = tMax;
                }
                if (m_data->m_nav.bActive) {
                    xMin = m_data->m_nav.tMin;
                    xMax = m_data->m_nav.tMax;
                }
            }
            const double h = std::max(std::abs(yMin), std::abs(yMax)) * m_data->m_zoom;
            coordXY->setArea(xMin, xMax, -h, h);
        }
    }
    m_data->m_scene->switchOnCurvesListen();

    // The curve items skipped the area change; the size signal of the frame
    // makes them rebuild once, with the new area.
    const QSize size = viewport()->size();
    m_data->m_scene->setCoordPixelSize(size.width(), size.height());
    fitCoordRect();
    viewport()->update();
    if (bWindowMoved) {
        double tMin = 0.0;
        double tMax = 0.0;
        getTimeWindow(tMin, tMax);
        emit sgTimeWindowChanged(tMin, tMax);
    }
}

// --- Time navigation --------------------------------------------------------

void CurveGraphicsView::setTimeNavigationEnabled(bool bEnabled)
{
    if (bEnabled == m_data->m_nav.bEnabled)
        return;
    m_data->m_nav.bPanning = false;
    if (!bEnabled && m_data->m_nav.bActive)
        showWholeRange();
    m_data->m_nav.bEnabled = bEnabled;
}

bool CurveGraphicsView::isTimeNavigationEnabled() const
{
    return m_data->m_nav.bEnabled;
}

bool CurveGraphicsView::dataLimits(double& xMin, double& xMax) const
{
    const CurveScene* registry = m_data->m_scene ? m_data->m_scene->getCurveScene() : nullptr;
    double yMin = 0.0;
    double yMax = 0.0;
    return registry && registry->getAreaLimits(xMin, xMax, yMin, yMax) && std::isfinite(xMin)
           && std::isfinite(xMax);
}

void CurveGraphicsView::getTimeWindow(double& tMin, double& tMax) const
{
    if (m_data->m_nav.bEnabled && m_data->m_nav.bActive) {
        tMin = m_data->m_nav.tMin;
        tMax = m_data->m_nav.tMax;
        return;
    }
    if (!dataLimits(tMin, tMax)) {
        tMin = 0.0;
        tMax = 0.0;
    }
}

double CurveGraphicsView::minimumSpan(double xMin, double xMax) const
{
    // A few intervals of the densest curve, and never so narrow that the
    // doubles around the times run out of steps.
    qint64 samples = 0;
    if (const CurveScene* registry = m_data->m_scene ? m_data->m_scene->getCurveScene() : nullptr) {
        QMap<QString, const Curve_DataSet*> curves;
        registry->getCurves(curves);
        for (const Curve_DataSet* set : qAsConst(curves)) {
            const AxisData* xAxis = set ? set->getAxisData(0) : nullptr;
            if (xAxis)
                samples = std::max(samples, xAxis->getArea(nullptr, nullptr));
        }
    }
    const double whole = xMax - xMin;
    const double interval = samples > 1 ? whole / double(samples - 1) : whole;
    const double floor = (std::abs(xMin) + std::abs(xMax)) * 0x1p-40;
    return std::min(whole, std::max(kMinimumSamples * interval, floor));
}

bool CurveGraphicsView::fitWindow(double& tMin, double& tMax, bool& bActive) const
{
    double xMin = 0.0;
    double xMax = 0.0;
    if (!dataLimits(xMin, xMax) || !(xMin < xMax))
        return false;
    if (!(std::isfinite(tMin) && std::isfinite(tMax) && tMin < tMax))
        return false;
    double span = tMax - tMin;  // may overflow to infinity: too wide
    if (!(span < xMax - xMin)) {
        tMin = xMin;
        tMax = xMax;
        bActive = false;
        return true;
    }
    double first = tMin;
    const double minSpan = minimumSpan(xMin, xMax);
    if (span < minSpan) {
        first = tMin * 0.5 + tMax * 0.5 - minSpan * 0.5;
        span = minSpan;
    }
    first = qBound(xMin, first, xMax - span);
    tMin = first;
    tMax = std::min(first + span, xMax);
    bActive = tMin > xMin || tMax < xMax;
    return true;
}

bool CurveGraphicsView::showWindow(double tMin, double tMax)
{
    bool bActive = true;
    if (!fitWindow(tMin, tMax, bActive))
        return false;
    double oldMin = 0.0;
    double oldMax = 0.0;
    getTimeWindow(oldMin, oldMax);
    // A linked widget's echo may come back off by a rounding step of its unit
    // conversion; that is the same window, and answering it would never end.
    const double tolerance = (tMax - tMin) * 1e-12;
    if (bActive == m_data->m_nav.bActive && std::abs(tMin - oldMin) <= tolerance
        && std::abs(tMax - oldMax) <= tolerance) {
        return false;
    }
    m_data->m_nav.bActive = bActive;
    m_data->m_nav.tMin = tMin;
    m_data->m_nav.tMax = tMax;
    setCurvesPosToVerticalZero();
    emit sgTimeWindowChanged(tMin, tMax);
    return true;
}

void CurveGraphicsView::setTimeWindow(double tMin, double tMax)
{
    if (m_data->m_nav.bEnabled)
        showWindow(tMin, tMax);
}

void CurveGraphicsView::resetTimeWindow()
{
    if (!m_data->m_nav.bEnabled || !m_data->m_nav.bActive)
        return;
    showWholeRange();
}

void CurveGraphicsView::showWholeRange()
{
    m_data->m_nav.bActive = false;
    setCurvesPosToVerticalZero();
    double tMin = 0.0;
    double tMax = 0.0;
    getTimeWindow(tMin, tMax);
    if (tMin < tMax)
        emit sgTimeWindowChanged(tMin, tMax);
}

QRectF CurveGraphicsView::dataAreaInViewport() const
{
    const QRectF area = CurveGraphicsSceneAccess::dataRectInScene(m_data->m_scene);
    return area.isNull() ? QRectF() : viewportTransform().mapRect(area);
}

void CurveGraphicsView::zoomTimeAt(double x, double notches)
{
    const QRectF area = dataAreaInViewport();
    double tMin = 0.0;
    double tMax = 0.0;
    getTimeWindow(tMin, tMax);
    double xMin = 0.0;
    double xMax = 0.0;
    if (notches == 0.0 || !(area.width() > 0.0) || !(tMin < tMax) || !dataLimits(xMin, xMax))
        return;
    const double span = tMax - tMin;
    // The time under the cursor keeps its place; a cursor beside the data
    // area zooms about the nearer end.
    const double ratio = qBound(0.0, (x - area.left()) / area.width(), 1.0);
    const double pivot = tMin + ratio * span;
    double factor = std::pow(kZoomPerNotch, notches);
    // Stop at the narrowest window rather than let the fit grow it about its
    // centre, which would move the time under the cursor.
    const double minSpan = minimumSpan(xMin, xMax);
    if (span * factor < minSpan)
        factor = std::min(1.0, minSpan / span);
    if (factor == 1.0 && span <= minSpan)
        return;
    const double newSpan = span * factor;
    showWindow(pivot - ratio * newSpan, pivot - ratio * newSpan + newSpan);
}

void CurveGraphicsView::panTimeByPixels(double pixels)
{
    const QRectF area = dataAreaInViewport();
    if (!m_data->m_nav.bActive || !(area.width() > 0.0) || pixels == 0.0)
        return;
    const double shift = pixels * (m_data->m_nav.tMax - m_data->m_nav.tMin) / area.width();
    showWindow(m_data->m_nav.tMin + shift, m_data->m_nav.tMax + shift);
}

void CurveGraphicsView::mousePressEvent(QMouseEvent* event)
{
    // The Y-selection sits in the left label strip, outside the data area, so
    // its clicks pass on as before.
    if (m_data->m_nav.bEnabled && event->button() == Qt::LeftButton
        && dataAreaInViewport().contains(QPointF(event->pos()))) {
        m_data->m_nav.bPanning = true;
        m_data->m_nav.panLastX = event->pos().x();
        event->accept();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void CurveGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_data->m_nav.bPanning) {
        const int dx = event->pos().x() - m_data->m_nav.panLastX;
        m_data->m_nav.panLastX = event->pos().x();
        // The data follow the mouse: dragging right shows earlier times.
        panTimeByPixels(-double(dx));
        event->accept();
        return;
    }
    QGraphicsView::mouseMoveEvent(event);
    if (m_data->m_hover.bEnabled)
        updateHover(event->pos());
}

void CurveGraphicsView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_data->m_nav.bPanning && event->button() == Qt::LeftButton) {
        m_data->m_nav.bPanning = false;
        event->accept();
        return;
    }
    QGraphicsView::mouseReleaseEvent(event);
}

void CurveGraphicsView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (m_data->m_nav.bEnabled && event->button() == Qt::LeftButton
        && dataAreaInViewport().contains(QPointF(event->pos()))) {
        resetTimeWindow();
        event->accept();
        return;
    }
    QGraphicsView::mouseDoubleClickEvent(event);
}

void CurveGraphicsView::keyPressEvent(QKeyEvent* event)
{
    if (m_data->m_nav.bEnabled && event->key() == Qt::Key_Home
        && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        resetTimeWindow();
        event->accept();
        return;
    }
    QGraphicsView::keyPressEvent(event);
}

// --- Round ticks ------------------------------------------------------------

void CurveGraphicsView::setRoundTimeTicks(bool bRound)
{
    if (m_data->m_scene)
        m_data->m_scene->setRoundTimeTicks(bRound);
}

bool CurveGraphicsView::hasRoundTimeTicks() const
{
    return m_data->m_scene && m_data->m_scene->hasRoundTimeTicks();
}

// --- Hover read-out ---------------------------------------------------------

void CurveGraphicsView::setHoverReadOutEnabled(bool bEnabled)
{
    if (bEnabled == m_data->m_hover.bEnabled)
        return;
    m_data->m_hover.bEnabled = bEnabled;
    if (bEnabled)
        viewport()->setMouseTracking(true);
    else
        clearHover();
}

bool CurveGraphicsView::isHoverReadOutEnabled() const
{
    return m_data->m_hover.bEnabled;
}

void CurveGraphicsView::setHoverToolTip(bool bShow)
{
    if (!bShow && m_data->m_hover.bToolTip && m_data->m_hover.bReported)
        QToolTip::hideText();
    m_data->m_hover.bToolTip = bShow;
}

bool CurveGraphicsView::hasHoverToolTip() const
{
    return m_data->m_hover.bToolTip;
}

bool CurveGraphicsView::hoverSampleAt(const QPoint& viewportPos, HoverSample& sample)
{
    bool bInvertible = false;
    const QTransform toScene = viewportTransform().inverted(&bInvertible);
    CurveGraphicsSceneAccess::Nearest nearest;
    if (!bInvertible
        || !CurveGraphicsSceneAccess::nearestSample(
            m_data->m_scene, toScene.map(QPointF(viewportPos)), kHoverRadius, &nearest)) {
        return false;
    }
    sample.curveName = nearest.curveName;
    sample.yIndex = nearest.sample.yIndex;
    sample.sampleIndex = nearest.sample.index;
    sample.timeMs = nearest.sample.x;
    sample.value = nearest.sample.y;
    return true;
}

void CurveGraphicsView::updateHover(const QPoint& viewportPos)
{
    HoverSample sample;
    if (!hoverSampleAt(viewportPos, sample)) {
        clearHover();
        return;
    }
    const HoverSample& last = m_data->m_hover.last;
    if (m_data->m_hover.bReported && last.curveName == sample.curveName
        && last.yIndex == sample.yIndex
        && last.sampleIndex == sample.sampleIndex) {
        return;
    }
    m_data->m_hover.last = sample;
    m_data->m_hover.bReported = true;
    if (m_data->m_hover.bToolTip) {
        QString time;
        if (std::abs(sample.timeMs) <= 8.64e15) {
            time = QDateTime::fromMSecsSinceEpoch(qint64(sample.timeMs), QTimeZone::utc())
                       .toString(QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
        }
        QToolTip::showText(viewport()->mapToGlobal(viewportPos),
                           tr("Curve %1, F %2\nTime %3 GPST\nValue %4 m")
                               .arg(sample.curveName)
                               .arg(sample.yIndex + 1)
                               .arg(time)
                               .arg(sample.value, 0, 'f', 3),
                           viewport());
    }
    emit sgHover(sample.curveName, sample.yIndex, sample.timeMs, sample.value);
}

void CurveGraphicsView::clearHover()
{
    if (!m_data->m_hover.bReported)
        return;
    m_data->m_hover.bReported = false;
    if (m_data->m_hover.bToolTip)
        QToolTip::hideText();
    emit sgHoverNone();
}

void CurveGraphicsView::leaveEvent(QEvent* event)
{
    QGraphicsView::leaveEvent(event);
    clearHover();
}
