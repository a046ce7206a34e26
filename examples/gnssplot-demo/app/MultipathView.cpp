// SPDX-License-Identifier: MIT
#include "MultipathView.h"

#include <gnssplot.h>

#include <QLabel>
#include <QResizeEvent>
#include <QWheelEvent>

#include <cmath>
#include <cstdlib>

namespace gnssdemo {

namespace {

// The library's wheel steps and limits, so that the wheel feels the same.
constexpr double kZoomStep = 0.15;
constexpr double kMinZoom = 5e-5;
constexpr double kMaxZoom = 20.0;

} // namespace

MultipathView::MultipathView(QWidget* parent)
    : CurveGraphicsView(parent)
    , m_emptyLabel(new QLabel(viewport()))
{
    setOrderIndependentMix(true);  // no constellation hides another in a dense day
    // The library's time navigation refits Y from the data after each
    // step; the host's own Y range is put back on top of it.
    connect(this, &CurveGraphicsView::sgTimeWindowChanged, this, [this] {
        if (m_base > 0.0)
            applyRange();
    });
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setWordWrap(true);
    m_emptyLabel->setStyleSheet(QStringLiteral("color: #404040; font-size: 13pt;"));
    m_emptyLabel->hide();
}

void MultipathView::setBaseHalfRange(double halfRange)
{
    setBaseRange(-halfRange, halfRange);
}

void MultipathView::setBaseRange(double yMin, double yMax)
{
    const bool usable = std::isfinite(yMin) && std::isfinite(yMax) && yMin < yMax;
    m_base = usable ? (yMax - yMin) / 2.0 : 0.0;
    m_centre = usable ? yMin + m_base : 0.0;
    applyRange();
}

void MultipathView::setTimeSpan(double tMin, double tMax)
{
    const bool usable = std::isfinite(tMin) && std::isfinite(tMax) && tMin < tMax;
    m_spanMin = usable ? tMin : 0.0;
    m_spanMax = usable ? tMax : 0.0;
    applyRange();
}

void MultipathView::resetZoom()
{
    m_zoom = 1.0;
    applyRange();
}

void MultipathView::setEmptyText(const QString& text)
{
    m_emptyLabel->setText(text);
    m_emptyLabel->setVisible(!text.isEmpty());
}

QString MultipathView::emptyText() const
{
    return m_emptyLabel->text();
}

void MultipathView::wheelEvent(QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    // Ctrl+wheel, Shift+wheel and a sideways wheel move in time: the
    // library's gestures.
    const bool inTime = isTimeNavigationEnabled()
                        && ((event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier))
                            || std::abs(angle.x()) > std::abs(angle.y()));
    if (m_base <= 0.0 || inTime) {
        CurveGraphicsView::wheelEvent(event);
        return;
    }
    const int delta = std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
    const double candidate = m_zoom * (delta > 0 ? 1.0 + kZoomStep : 1.0 - kZoomStep);
    if (candidate >= kMinZoom && candidate <= kMaxZoom) {
        m_zoom = candidate;
        applyRange();
    }
    // Like the library's view: the wheel is never the scroll bars'.
    event->ignore();
}

void MultipathView::resizeEvent(QResizeEvent* event)
{
    CurveGraphicsView::resizeEvent(event);
    m_emptyLabel->setGeometry(viewport()->rect().adjusted(40, 20, -40, -20));
}

void MultipathView::applyRange()
{
    CurveScene* registry = getCurveScene();
    auto* scene = qobject_cast<CurveGraphicsScene*>(this->scene());
    if (!registry || !scene)
        return;
    auto* coord = qobject_cast<Curve_Coord_XY*>(registry->getCoord_Local());
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    const bool hasData = registry->getAreaLimits(xMin, xMax, yMin, yMax);
    const bool hasSpan = m_spanMin < m_spanMax;
    if (!coord || (!hasData && !hasSpan))
        return;
    if (!hasData) {
        // Nothing to plot: the frame still shows the file's time with an
        // empty Y range, not the area of whatever was shown before.
        scene->switchOffCurvesListen();
        coord->setArea(m_spanMin, m_spanMax, -1.0, 1.0);
        scene->switchOnCurvesListen();
        const QSize size = viewport()->size();
        scene->setCoordPixelSize(size.width(), size.height());
        fitInView(scene->getCoordRect(), Qt::IgnoreAspectRatio);
        viewport()->update();
        return;
    }
    if (m_base <= 0.0) {
        setCurvesPosToVerticalZero();
        return;
    }
    // The time window shown, the whole day unless zoomed.
    if (isTimeNavigationEnabled())
        getTimeWindow(xMin, xMax);
    // Every curve item would rebuild on the area change; they rebuild once,
    // on the size signal below.
    scene->switchOffCurvesListen();
    const double h = m_base * m_zoom;
    coord->setArea(xMin, xMax, m_centre - h, m_centre + h);
    scene->switchOnCurvesListen();
    const QSize size = viewport()->size();
    scene->setCoordPixelSize(size.width(), size.height());
    fitInView(scene->getCoordRect(), Qt::IgnoreAspectRatio);
    viewport()->update();
}

} // namespace gnssdemo
