// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TIMENAVIGATOR_P_H
#define GNSSPLOT_TIMENAVIGATOR_P_H

#include "TimeWindow.h"

#include <QObject>
#include <QPointer>
#include <QRectF>

class QAbstractScrollArea;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

/*
    The one set of time gestures of every widget that shows a stretch of the
    time axis (the curve view, the epoch table). It is an event filter on the
    widget (keys) and its viewport (wheel and mouse), installed by the widget
    in its constructor, and acts only while the widget says that navigation
    is on; everything it does not take goes on to the widget as before.

    - Wheel, read by its dominant component (the vertical one on a tie):
      with Ctrl it zooms about the time under the cursor, one notch (120) to
      kZoomPerNotch of the window; with Shift, or when the sideways component
      dominates, it pans by kPanPerNotch of the window per notch, turning away
      or to the left going back in time. The plain wheel stays the widget's.
    - A drag with the widget's pan button that starts in its time area pans:
      the data follow the mouse.
    - A left double-click in the time area, and the Home key, show the whole
      range again.
    - Left and Right pan by kPanPerNotch of the window, + and - zoom about its
      centre as one wheel notch does.
*/
class TimeNavigator : public QObject
{
    Q_OBJECT
public:
    // What a widget offers the navigator; all in the widget's own units of
    // time and in viewport pixels.
    class Target
    {
    public:
        virtual ~Target() = default;
        // Whether the gestures act at all.
        virtual bool navigationEnabled() const = 0;
        // The window shown; invalid when there is nothing to navigate.
        virtual TimeWindow navigationWindow() const = 0;
        // Where the time axis lies in the viewport: its left edge shows the
        // window's start, its right edge the end. Drags and double-clicks
        // start inside it. Empty when there is none.
        virtual QRectF navigationArea() const = 0;
        // The narrowest window a zoom may reach.
        virtual double navigationMinimumSpan() const = 0;
        // Shows \a window, fitted into the data; says so when it changed.
        virtual void navigateTo(const TimeWindow& window) = 0;
        // Shows the whole range again.
        virtual void navigateHome() = 0;
    };

    // A notch narrows the window to this share; one step back widens it.
    static constexpr double kZoomPerNotch = 0.8;
    // A notch or an arrow key moves the window by this share of its span.
    static constexpr double kPanPerNotch = 0.1;

    // Watches \a widget and its viewport for \a target, which must outlive
    // the navigator (the widget owns both). \a panButton drags the window.
    TimeNavigator(QAbstractScrollArea* widget, Target* target, Qt::MouseButton panButton);

    // Zooms by \a notches (positive: in) about viewport x \a x.
    void zoomAt(double x, double notches);
    // Moves the window by \a shares of its span (positive: later).
    void panByShare(double shares);
    // Moves the window by \a pixels of the time area (positive: later).
    void panByPixels(double pixels);
    // Ends a pan in progress, as when navigation is switched off.
    void cancelPan() { m_bPanning = false; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool wheel(QWheelEvent* event);
    bool mouse(QMouseEvent* event);
    bool key(QKeyEvent* event);

    QPointer<QAbstractScrollArea> m_widget;
    Target* const m_target;
    const Qt::MouseButton m_panButton;
    bool m_bPanning = false;
    double m_panLastX = 0.0;
};

#endif // GNSSPLOT_TIMENAVIGATOR_P_H
