// SPDX-License-Identifier: MIT
#include "CurveGraphicsView.h"

#include "CurveGraphicsScene.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QResizeEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

CurveGraphicsView::CurveGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , m_scene(nullptr)
    , m_maxZoom(20.0)
    , m_minZoom(5e-5)
    , m_zoomStep(0.15)
    , m_zoom(1.0)
{
    m_scene = new CurveGraphicsScene(this);
    setScene(m_scene);
    // Connected after the scene's own connection, so the frame for a new
    // coordinate already exists when the view refits.
    if (CurveScene* registry = m_scene->getCurveScene()) {
        connect(registry, &CurveScene::sgLocalCoordChanged, this,
                &CurveGraphicsView::onScene_coordChanged, Qt::UniqueConnection);
    }
}

CurveGraphicsView::~CurveGraphicsView() = default;

CurveScene* CurveGraphicsView::getCurveScene()
{
    return m_scene ? m_scene->getCurveScene() : nullptr;
}

void CurveGraphicsView::fitCoordRect()
{
    if (m_scene)
        fitInView(m_scene->getCoordRect(), Qt::IgnoreAspectRatio);
}

void CurveGraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (!m_scene)
        return;
    const QSize size = viewport()->size();
    m_scene->setCoordPixelSize(size.width(), size.height());
    fitCoordRect();
}

void CurveGraphicsView::onScene_coordChanged()
{
    fitCoordRect();
}

void CurveGraphicsView::wheelEvent(QWheelEvent* event)
{
    // The single-axis delta that Qt 5's QWheelEvent::delta() reported and
    // Qt 6 no longer has: the component of larger magnitude, the vertical one
    // on a tie.
    const QPoint angle = event->angleDelta();
    const int delta = std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
    const double factor = delta > 0 ? 1.0 + m_zoomStep : 1.0 - m_zoomStep;
    const double candidate = m_zoom * factor;
    if (candidate >= m_minZoom && candidate <= m_maxZoom) {
        m_zoom = candidate;
        setCurvesPosToVerticalZero();
    }
    // The wheel belongs to the zoom and to the parent widget, never to the
    // scroll bars.
    event->ignore();
}

void CurveGraphicsView::setCurvesPosToVerticalZero()
{
    if (!m_scene)
        return;
    m_scene->switchOffCurvesListen();
    CurveScene* registry = m_scene->getCurveScene();
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    if (registry && registry->getAreaLimits(xMin, xMax, yMin, yMax)) {
        if (auto* coordXY = qobject_cast<Curve_Coord_XY*>(registry->getCoord_Local())) {
            const double h = std::max(std::abs(yMin), std::abs(yMax)) * m_zoom;
            coordXY->setArea(xMin, xMax, -h, h);
        }
    }
    m_scene->switchOnCurvesListen();

    // The curve items skipped the area change; the size signal of the frame
    // makes them rebuild once, with the new area.
    const QSize size = viewport()->size();
    m_scene->setCoordPixelSize(size.width(), size.height());
    fitCoordRect();
    viewport()->update();
}
