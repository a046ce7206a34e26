// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSVIEW_H
#define GNSSPLOT_CURVEGRAPHICSVIEW_H

#include "gnssplot_global.h"

#include "CurveScene.h"
#include "EventMark.h"

#include <QGraphicsView>
#include <QList>
#include <QPointer>

#include <memory>

class CurveGraphicsScene;

/*!
    \class CurveGraphicsView
    \brief The widget that shows a curve plot: it creates its own
    CurveGraphicsScene, keeps the coordinate frame filling its viewport, and
    zooms the Y range with the mouse wheel.

    The zoom keeps the Y range symmetric about zero: its half-range is the
    largest absolute Y value of all curves times a zoom factor, which each
    wheel step multiplies by 1.15 (forward) or 0.85 (backward or zero delta),
    within 5e-5 .. 20. The X range always spans all data. Wheel events are
    left unaccepted so that they reach the parent widget; the view never
    scrolls on them.

    The host registers curves through getCurveScene().

    The view always shows exactly its frame: it never scrolls, whatever key,
    wheel or scroll-bar action the user tries, and with navigation off the
    keys leave the picture alone.

    \par Time navigation

    With timeNavigationEnabled (off by default) the user can show a window of
    the time axis instead of all data:
    - Ctrl+wheel zooms time about the cursor: the time under it stays put.
    - Shift+wheel, a horizontal wheel or a left drag in the data area pans.
    - A left double-click in the data area, or the Home key, shows all
      data again (resetTimeWindow()).
    - Left and Right pan by a tenth of the window, + and - zoom about its
      middle, with the keyboard focus on the view.
    - The plain wheel zooms Y as before and keeps the window.
    The gestures come from one event filter that CurveGraphicsTableWidget_Epoch
    installs as well, so both widgets move alike for the same wheel, drag or
    key; only the plain wheel (Y zoom here, rows there) and the pan button
    (left here, middle there, where the left button marks epochs) differ.

    The window is kept inside the X range of the data and at least four
    sample intervals wide. Times are milliseconds since 1970 (GPST read on
    the UTC calendar), the units of CurveGraphicsTableWidget_Epoch's window,
    so two connections link a view and a table both ways:
    \code
    connect(view, &CurveGraphicsView::sgTimeWindowChanged,
            table, &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged,
            view, &CurveGraphicsView::setTimeWindow);
    \endcode
    setTimeWindow() emits only when the window really changes, so the echo of
    a linked widget ends the exchange. With navigation off the view behaves
    exactly as without it.

    \par Round time ticks

    With roundTimeTicks (off by default) the X ticks lie on round times of
    day ("HH:mm", or "HH:mm:ss" for steps below a minute), as many as fit
    without overlapping labels; a tick at midnight reads the date. Off, the
    eleven evenly spaced "HH:mm:ss" ticks stay.

    \par Hover read-out

    With hoverReadOutEnabled (off by default) the view follows the mouse and
    reports the drawn sample nearest to the cursor, within kHoverRadius
    pixels, by sgHover(), and sgHoverNone() when none is near any more. With
    hoverToolTip as well, it shows the sample in a tool tip.

    \par Units, event marks and the picked sample

    These are off (or metres) by default, and a plot that does not use them
    looks and behaves exactly as without them.
    - valueUnit names the unit of the Y values ("dB-Hz", "TECU", "ns") in
      the Y labels and the hover read-out; empty, the default, reads "m".
    - Event marks given per curve through the registry
      (CurveScene::setCurveEventMarks()) are drawn as short vertical ticks
      on the curve at their samples, in the colour of their kind
      (setEventKindColor()), over every curve, on each Y axis the
      Y-selection shows; they follow zoom, time navigation, visibility and
      single show. When the sample the hover read-out finds carries marks,
      sgHoverEventMarks() follows sgHover() and the tool tip names their
      kinds (getEventKindName()).
    - With pickedSampleMarker and the hover read-out on, a ring marks the
      sample the read-out names and its curve is drawn once more in front
      of the others, so that a satellite under a crowd of others shows; both
      go when the read-out reports nothing. Moving the marker repaints only
      the plot's data area and builds no new picture of all the curves.
*/
class GNSSPLOT_EXPORT CurveGraphicsView : public QGraphicsView
{
    Q_OBJECT
    /*! Whether the user can zoom and pan the time axis; false by default. */
    Q_PROPERTY(bool timeNavigationEnabled READ isTimeNavigationEnabled
                   WRITE setTimeNavigationEnabled)
    /*! Whether X ticks lie on round times of day; false by default. */
    Q_PROPERTY(bool roundTimeTicks READ hasRoundTimeTicks WRITE setRoundTimeTicks)
    /*! Whether the view reports the sample under the mouse; false by default. */
    Q_PROPERTY(bool hoverReadOutEnabled READ isHoverReadOutEnabled
                   WRITE setHoverReadOutEnabled)
    /*! Whether the hover read-out shows a tool tip; false by default. */
    Q_PROPERTY(bool hoverToolTip READ hasHoverToolTip WRITE setHoverToolTip)
    /*! Whether curves are mixed so that none hides another; false by
        default. */
    Q_PROPERTY(bool orderIndependentMix READ isOrderIndependentMix
                   WRITE setOrderIndependentMix)
    /*! The unit of the Y values in the labels and the hover read-out; empty
        (the default) for metres. */
    Q_PROPERTY(QString valueUnit READ getValueUnit WRITE setValueUnit)
    /*! Whether the hover read-out rings the sample it names and draws its
        curve in front; false by default. */
    Q_PROPERTY(bool pickedSampleMarker READ isPickedSampleMarkerShown
                   WRITE setPickedSampleMarkerShown)
public:
    /*! A drawn sample, as the hover read-out finds it. */
    struct HoverSample
    {
        /*! Name of the curve in the registry. */
        QString curveName;
        /*! Y index from 0: 0 is the first Y axis ("F 1"), 1 the second. */
        int yIndex = -1;
        /*! Index of the sample in the curve's axes. */
        qint64 sampleIndex = -1;
        /*! X value, milliseconds since 1970 for a time axis. */
        double timeMs = 0.0;
        /*! Y value, in the curve's units (metres on the plot's axis). */
        double value = 0.0;
    };
    /*! How far from the cursor a sample is still found, pixels. */
    static constexpr double kHoverRadius = 5.0;

    /*! Creates the view and its scene (a Qt child of the view) with an empty
        registry and a zoom factor of 1. */
    explicit CurveGraphicsView(QWidget* parent = nullptr);
    /*! Destroys the view; the scene dies with it as its Qt child. */
    ~CurveGraphicsView() override;

    /*! The registry of the view's scene, or null if the scene is gone. */
    CurveScene* getCurveScene();
    /*! Sets the local coordinate's area to the full X range of all curves and
        a Y range of -h .. +h, h being the largest absolute Y value times the
        zoom factor (curve items do not react while it changes), then gives the
        frame the viewport's size, refits it and repaints. Without curves,
        without an X/Y coordinate or when the range would be empty, the area
        stays as it was. */
    void setCurvesPosToVerticalZero();

    /*! Switches time navigation on or off (see the class description).
        Switching it off shows all data again and emits sgTimeWindowChanged()
        if a zoomed window goes. */
    void setTimeNavigationEnabled(bool bEnabled);
    /*! Whether time navigation is on; false by default. */
    bool isTimeNavigationEnabled() const;
    /*! Gives the time window shown, milliseconds since 1970: the X range of
        all data while navigation is off or nothing is zoomed; 0 and 0 when
        there are no data. */
    void getTimeWindow(double& tMin, double& tMax) const;

    /*! Where the data area (the curves' rectangle, without the axis labels)
        lies in the viewport, in viewport pixels; empty without a scene.
        A host aligns other widgets with it, as the demo aligns the epoch
        table's bars. */
    QRectF dataAreaInViewport() const;

    /*! Keeps \a left and \a right pixels free inside the view beside the
        plot: the viewport, and with it the frame, becomes that much narrower.
        Negative values count as 0; 0 and 0 (the default) let the plot fill
        the view. CurveGraphicsTableWidget_Epoch::alignBarsWith() sets them to
        line the table's bars up with the data area. */
    void setPlotMargins(int left, int right);
    /*! The margins set by setPlotMargins(), pixels. */
    void getPlotMargins(int& left, int& right) const;
    /*! Mixes the curves so that none hides another (true): a pixel's colour
        then depends on how many crossings of each colour reach it, not on
        the order of the curves, and every constellation of a dense plot
        stays visible. Each colour weighs by its coverage of the pixel,
        1 - (1 - alpha)^n for n crossings, and the coverages combine into
        the pixel's alpha. Short runs and single points, and curves whose
        times are not in order, are drawn on top in curve order. false (the
        default) composes each curve over the curves before it, in name
        order. Repaints when the setting changes. */
    void setOrderIndependentMix(bool bOn);
    /*! Whether the curves are mixed independently of their order; false by
        default. */
    bool isOrderIndependentMix() const;

    /*! Puts the X ticks on round times of day (true) or back on the eleven
        evenly spaced ticks (false, the default) and relabels at once. */
    void setRoundTimeTicks(bool bRound);
    /*! Whether the X ticks lie on round times of day. */
    bool hasRoundTimeTicks() const;

    /*! Switches the hover read-out on or off; switching it off while a sample
        was reported emits sgHoverNone(). */
    void setHoverReadOutEnabled(bool bEnabled);
    /*! Whether the hover read-out is on; false by default. */
    bool isHoverReadOutEnabled() const;
    /*! Shows the reported sample in a tool tip while the read-out is on. */
    void setHoverToolTip(bool bShow);
    /*! Whether the read-out shows a tool tip; false by default. */
    bool hasHoverToolTip() const;
    /*! Finds the drawn sample nearest to \a viewportPos (viewport pixels)
        within kHoverRadius pixels: of the visible curves, the Y axes the
        Y-selection shows, values that are numbers, inside the data area.
        Returns false, leaving \a sample alone, when none is that near.
        Works whether or not the read-out is switched on. */
    bool hoverSampleAt(const QPoint& viewportPos, HoverSample& sample);

    /*! Names the unit of the Y values, for example "dB-Hz", "TECU" or "ns":
        the Y labels read "45.000 dB-Hz" and the hover tool tip "Value 45.000
        dB-Hz". An empty \a unit (the default) keeps the translated "m" of a
        plot in metres, labels and tool tip exactly as they were. Relabels
        at once when the unit changes. */
    void setValueUnit(const QString& unit);
    /*! The unit set by setValueUnit(); empty for metres. */
    QString getValueUnit() const;

    /*! Draws the event marks of \a kind (EEventMarkKind or the host's own)
        in \a color, alpha included, and repaints them when that changes.
        An invalid colour gives the default back: red for cycle slips,
        orange for losses of lock, dark grey for gaps, violet for the host's
        kinds. */
    void setEventKindColor(int kind, const QColor& color);
    /*! The colour the marks of \a kind are drawn in. */
    QColor getEventKindColor(int kind) const;
    /*! Names \a kind in the hover tool tip; an empty \a name gives the
        default back: the translated "cycle slip", "loss of lock" and "gap",
        and "event N" for the host's kind N. */
    void setEventKindName(int kind, const QString& name);
    /*! The name of \a kind in the hover tool tip. */
    QString getEventKindName(int kind) const;

    /*! Switches the picked-sample marker on or off (see the class
        description). It shows only while the hover read-out is on and names
        a sample; switching it off takes the ring away at once. */
    void setPickedSampleMarkerShown(bool bShown);
    /*! Whether the picked-sample marker is on; false by default. */
    bool isPickedSampleMarkerShown() const;

public slots:
    /*! Shows the time window [\a tMin, \a tMax], milliseconds since 1970,
        fitted into the data: no wider than the X range of all data, at least
        four sample intervals wide, shifted inside the range. Emits
        sgTimeWindowChanged() with the fitted window when it differs from the
        one shown. Does nothing while navigation is off, without data, or when
        a bound is not finite or \a tMin is not below \a tMax. */
    void setTimeWindow(double tMin, double tMax);
    /*! Shows all data again; emits sgTimeWindowChanged() when a zoomed window
        goes. Does nothing while navigation is off. */
    void resetTimeWindow();

signals:
    /*! The time window shown changed to [\a tMin, \a tMax], milliseconds
        since 1970: by the user's navigation, setTimeWindow(),
        resetTimeWindow() or switching navigation off. */
    void sgTimeWindowChanged(double tMin, double tMax);
    /*! The hover read-out found a sample other than the one last reported:
        curve \a curveName, Y index \a yIndex (0 for "F 1"), its time
        \a timeMs (milliseconds since 1970) and \a value. */
    void sgHover(QString curveName, int yIndex, double timeMs, double value);
    /*! No sample is near the cursor any more (or it left the view). Emitted
        once after the last sgHover(). */
    void sgHoverNone();
    /*! The sample just reported by sgHover() carries event marks: \a kinds
        are their kinds (EEventMarkKind or the host's own), in the order the
        marks were given. Emitted right after that sgHover(), and only for a
        sample with marks. */
    void sgHoverEventMarks(QString curveName, int yIndex, double timeMs, double value,
                           QList<int> kinds);

protected:
    /*! One zoom step per event (see the class description); the event is
        ignored so that it propagates. */
    void wheelEvent(QWheelEvent* event) override;
    /*! Gives the frame the new viewport size in pixels and fits it in. */
    void resizeEvent(QResizeEvent* event) override;
    /*! Brings the pictures of all changed curves up to date at once, spread
        over the cores, then paints the scene. */
    void paintEvent(QPaintEvent* event) override;
    /*! With time navigation: starts a pan on a left press in the data area. */
    void mousePressEvent(QMouseEvent* event) override;
    /*! Pans while dragging; runs the hover read-out. */
    void mouseMoveEvent(QMouseEvent* event) override;
    /*! Ends a pan. */
    void mouseReleaseEvent(QMouseEvent* event) override;
    /*! With time navigation: a left double-click in the data area resets. */
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    /*! With time navigation: Home resets the window. */
    void keyPressEvent(QKeyEvent* event) override;
    /*! Ends the hover read-out's report. */
    void leaveEvent(QEvent* event) override;

private slots:
    void onScene_coordChanged();

private:
    void fitCoordRect();
    // Leaves the time window for the whole range and says so.
    void showWholeRange();
    void updateHover(const QPoint& viewportPos);
    void clearHover();

    // The view's state lives behind this pointer, so that later releases
    // can add to it without changing the class's size.
    class PrivateData;
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(CurveGraphicsView)
};

#endif // GNSSPLOT_CURVEGRAPHICSVIEW_H
