// SPDX-License-Identifier: MIT
#include "TimeNavigator_p.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <cstdlib>

namespace {

// One notch of a wheel, in eighths of a degree.
constexpr double kNotch = 120.0;

QPointF positionOf(const QMouseEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position();
#else
    return event->localPos();
#endif
}

} // namespace

TimeNavigator::TimeNavigator(QAbstractScrollArea* widget, Target* target,
                             Qt::MouseButton panButton)
    : QObject(widget)
    , m_widget(widget)
    , m_target(target)
    , m_panButton(panButton)
{
    Q_ASSERT(widget && target);
    widget->installEventFilter(this);
    widget->viewport()->installEventFilter(this);
}

bool TimeNavigator::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_widget || !m_target->navigationEnabled())
        return false;
    const bool bViewport = watched == m_widget->viewport();
    switch (event->type()) {
    case QEvent::Wheel:
        return bViewport && wheel(static_cast<QWheelEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return bViewport && mouse(static_cast<QMouseEvent*>(event));
    case QEvent::KeyPress:
        return watched == m_widget && key(static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

bool TimeNavigator::wheel(QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    const bool bSideways = std::abs(angle.x()) > std::abs(angle.y());
    const double notches = double(bSideways ? angle.x() : angle.y()) / kNotch;
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (modifiers & Qt::ControlModifier) {
        zoomAt(event->position().x(), notches);
    } else if ((modifiers & Qt::ShiftModifier) || bSideways) {
        // Some platforms turn Shift+wheel into a sideways wheel themselves.
        // Turning the wheel away, or to the left, goes back in time, as a
        // scroll bar would.
        panByShare(-notches * kPanPerNotch);
    } else {
        return false;
    }
    // Accepted, or the wheel would go on to the parent widget as well.
    event->accept();
    return true;
}

bool TimeNavigator::mouse(QMouseEvent* event)
{
    const QPointF pos = positionOf(event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (event->button() != m_panButton || !m_target->navigationArea().contains(pos))
            return false;
        m_bPanning = true;
        m_panLastX = pos.x();
        break;
    case QEvent::MouseMove:
        if (!m_bPanning)
            return false;
        // The data follow the mouse: dragging right shows earlier times.
        panByPixels(m_panLastX - pos.x());
        m_panLastX = pos.x();
        break;
    case QEvent::MouseButtonRelease:
        if (!m_bPanning || event->button() != m_panButton)
            return false;
        m_bPanning = false;
        break;
    case QEvent::MouseButtonDblClick:
        if (event->button() != Qt::LeftButton || !m_target->navigationArea().contains(pos))
            return false;
        m_target->navigateHome();
        break;
    default:
        return false;
    }
    event->accept();
    return true;
}

bool TimeNavigator::key(QKeyEvent* event)
{
    // The keypad's keys count as the main keys; any other modifier leaves
    // the key to the widget.
    if ((event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::NoModifier)
        return false;
    const bool bShift = event->modifiers() & Qt::ShiftModifier;
    const QRectF area = m_target->navigationArea();
    switch (event->key()) {
    case Qt::Key_Home:
        if (bShift)
            return false;
        m_target->navigateHome();
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (bShift)
            return false;
        panByShare(event->key() == Qt::Key_Left ? -kPanPerNotch : kPanPerNotch);
        break;
    // + is a shifted key on many layouts, and = shares its key there.
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomAt(area.center().x(), 1.0);
        break;
    case Qt::Key_Minus:
        if (bShift)
            return false;
        zoomAt(area.center().x(), -1.0);
        break;
    default:
        return false;
    }
    event->accept();
    return true;
}

void TimeNavigator::zoomAt(double x, double notches)
{
    const QRectF area = m_target->navigationArea();
    const TimeWindow window = m_target->navigationWindow();
    if (notches == 0.0 || !std::isfinite(notches) || !(area.width() > 0.0) || !window.isValid())
        return;
    // The time under the cursor keeps its place; a cursor beside the time
    // area zooms about the nearer end.
    const double share = qBound(0.0, (x - area.left()) / area.width(), 1.0);
    const double factor = std::pow(kZoomPerNotch, notches);
    const TimeWindow zoomed =
        window.zoomedAbout(window.timeAt(share), factor, m_target->navigationMinimumSpan());
    if (zoomed != window)
        m_target->navigateTo(zoomed);
}

void TimeNavigator::panByShare(double shares)
{
    const TimeWindow window = m_target->navigationWindow();
    if (shares == 0.0 || !window.isValid())
        return;
    m_target->navigateTo(window.panned(shares * window.getSpan()));
}

void TimeNavigator::panByPixels(double pixels)
{
    const double width = m_target->navigationArea().width();
    if (!(width > 0.0))
        return;
    panByShare(pixels / width);
}
