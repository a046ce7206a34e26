// SPDX-License-Identifier: MIT
#include "CurveGraphicsView.h"
#include "CurveGraphicsView_p.h"

#include "AxisData.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsScene_p.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet.h"
#include "TimeNavigator_p.h"
#include "TimeWindow.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

CurveGraphicsView::CurveGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , m_data(new PrivateData(this))
{
    // Left drags in the data area pan; the Y-selection boxes lie outside it.
    m_data->m_navigator = new TimeNavigator(this, m_data.get(), Qt::LeftButton);
    m_data->m_scene = new CurveGraphicsScene(this);
    setScene(m_data->m_scene);
    // Connected after the scene's own connection, so the frame for a new
    // coordinate already exists when the view refits.
    if (CurveScene* registry = m_data->m_scene->getCurveScene()) {
        connect(registry, &CurveScene::sgLocalCoordChanged, this,
                &CurveGraphicsView::onScene_coordChanged, Qt::UniqueConnection);
    }
}

CurveGraphicsView::~CurveGraphicsView()
{
    // The navigator asks the private data, which goes before the Qt
    // children do.
    delete m_data->m_navigator;
}

CurveScene* CurveGraphicsView::getCurveScene()
{
    return m_data->m_scene ? m_data->m_scene->getCurveScene() : nullptr;
}

void CurveGraphicsView::fitCoordRect()
{
    if (!m_data->m_scene)
        return;
    // The view shows exactly the frame and can scroll nowhere else: fitted
    // with the view's small margin, the frame is narrower and lower than the
    // viewport, so the scroll bars have no range and no key, wheel or drag
    // of a scroll bar can move the frame off its place. Without a frame a
    // dot at the origin keeps the scene centred, as it was.
    const QRectF frame = m_data->m_scene->getCoordRect();
    setSceneRect(frame.isNull() ? QRectF(-0.5, -0.5, 1.0, 1.0) : frame);
    if (!frame.isNull())
        fitInView(frame, Qt::IgnoreAspectRatio);
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
    // With time navigation the navigator has taken the time gestures before
    // the event came here; what is left zooms Y.
    const QPoint angle = event->angleDelta();
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
                bool bActive = true;
                const TimeWindow window = m_data->fitted(m_data->m_nav.window, bActive);
                if (window.isValid()) {
                    bWindowMoved = window != m_data->m_nav.window || !bActive;
                    m_data->m_nav.bActive = bActive;
                    m_data->m_nav.window = window;
                }
                if (m_data->m_nav.bActive) {
                    xMin = m_data->m_nav.window.getMin();
                    xMax = m_data->m_nav.window.getMax();
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
    m_data->m_navigator->cancelPan();
    if (!bEnabled && m_data->m_nav.bActive)
        showWholeRange();
    m_data->m_nav.bEnabled = bEnabled;
}

bool CurveGraphicsView::isTimeNavigationEnabled() const
{
    return m_data->m_nav.bEnabled;
}

TimeWindow CurveGraphicsView::PrivateData::dataRange() const
{
    const CurveScene* registry = m_scene ? m_scene->getCurveScene() : nullptr;
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    if (!registry || !registry->getAreaLimits(xMin, xMax, yMin, yMax))
        return TimeWindow();
    return TimeWindow(xMin, xMax);
}

void CurveGraphicsView::getTimeWindow(double& tMin, double& tMax) const
{
    if (m_data->m_nav.bEnabled && m_data->m_nav.bActive) {
        tMin = m_data->m_nav.window.getMin();
        tMax = m_data->m_nav.window.getMax();
        return;
    }
    const CurveScene* registry = m_data->m_scene ? m_data->m_scene->getCurveScene() : nullptr;
    double yMin = 0.0;
    double yMax = 0.0;
    if (!registry || !registry->getAreaLimits(tMin, tMax, yMin, yMax) || !std::isfinite(tMin)
        || !std::isfinite(tMax)) {
        tMin = 0.0;
        tMax = 0.0;
    }
}

double CurveGraphicsView::PrivateData::navigationMinimumSpan() const
{
    // A few intervals of the densest curve.
    const TimeWindow range = dataRange();
    qint64 samples = 0;
    if (const CurveScene* registry = m_scene ? m_scene->getCurveScene() : nullptr) {
        QMap<QString, const Curve_DataSet*> curves;
        registry->getCurves(curves);
        for (const Curve_DataSet* set : qAsConst(curves)) {
            const AxisData* xAxis = set ? set->getAxisData(0) : nullptr;
            if (xAxis)
                samples = std::max(samples, xAxis->getArea(nullptr, nullptr));
        }
    }
    const double whole = range.getSpan();
    return TimeWindow::minimumSpan(range, samples > 1 ? whole / double(samples - 1) : whole);
}

TimeWindow CurveGraphicsView::PrivateData::fitted(const TimeWindow& window, bool& bActive) const
{
    const TimeWindow range = dataRange();
    if (!range.isValid() || !window.isValid())
        return TimeWindow();
    const TimeWindow result = window.fittedInto(range, navigationMinimumSpan());
    bActive = !result.covers(range);
    return result;
}

bool CurveGraphicsView::PrivateData::showWindow(const TimeWindow& window)
{
    bool bActive = true;
    const TimeWindow next = fitted(window, bActive);
    if (!next.isValid())
        return false;
    if (bActive == m_nav.bActive && next.fuzzyEquals(navigationWindow()))
        return false;
    m_nav.bActive = bActive;
    m_nav.window = next;
    q->setCurvesPosToVerticalZero();
    emit q->sgTimeWindowChanged(next.getMin(), next.getMax());
    return true;
}

void CurveGraphicsView::setTimeWindow(double tMin, double tMax)
{
    if (m_data->m_nav.bEnabled)
        m_data->showWindow(TimeWindow(tMin, tMax));
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

// The time gestures are the navigator's, which sees every event first; these
// handlers are what is left to the view.

void CurveGraphicsView::mousePressEvent(QMouseEvent* event)
{
    QGraphicsView::mousePressEvent(event);
}

void CurveGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    QGraphicsView::mouseMoveEvent(event);
    if (m_data->m_hover.bEnabled)
        updateHover(event->pos());
}

void CurveGraphicsView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
}

void CurveGraphicsView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QGraphicsView::mouseDoubleClickEvent(event);
}

void CurveGraphicsView::keyPressEvent(QKeyEvent* event)
{
    // The scene rect leaves the scroll bars no range, so the arrow and page
    // keys that would scroll move nothing.
    QGraphicsView::keyPressEvent(event);
}

void CurveGraphicsView::setPlotMargins(int left, int right)
{
    left = std::max(0, left);
    right = std::max(0, right);
    if (left == m_data->m_marginLeft && right == m_data->m_marginRight)
        return;
    m_data->m_marginLeft = left;
    m_data->m_marginRight = right;
    // The viewport's resize gives the frame its new size.
    setViewportMargins(left, 0, right, 0);
}

void CurveGraphicsView::getPlotMargins(int& left, int& right) const
{
    left = m_data->m_marginLeft;
    right = m_data->m_marginRight;
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
