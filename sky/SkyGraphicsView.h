// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSVIEW_H
#define GNSSPLOT_SKYGRAPHICSVIEW_H

#include "gnssplot_global.h"

#include <QGradientStops>
#include <QGraphicsView>
#include <QString>

#include <memory>

class CurveScene;
class QPixmap;

/*!
    \class SkyGraphicsView
    \brief The widget that shows a sky plot: where satellites are in the
    sky, one track each, seen from the receiver.

    Azimuth runs clockwise from north (up) through east (right); elevation
    is 90 degrees at the centre and 0 at the rim, the radius proportional to
    90 - elevation. Rings mark every 15 degrees of elevation, spokes every 30
    degrees of azimuth; setElevationMask() adds a dashed ring at the mask.

    \par Tracks

    The host registers one track per satellite in the view's registry,
    getTrackScene(), exactly as curves are registered in a curve view: by
    name, with a colour and a visibility, the registry owning the data set or
    not as \c bAutoDelete says. A track is a Curve_DataSet_XY with at least
    two Y axes, filled in place and published as any curve's axes:
    - key 0 (TrackAxis_Time): time, milliseconds since 1970 (GPST read on the
      UTC calendar), the plot's time unit;
    - key 1 (TrackAxis_Azimuth): azimuth, degrees, 0 .. 360;
    - key 2 (TrackAxis_Elevation): elevation, degrees;
    - keys 3, 4, ... (TrackAxis_FirstValue on): optional value axes, such as
      signal strength or multipath, in the host's unit.

    Sample j pairs the j-th sample of each axis's area. A sample is drawn
    when its time is finite, its azimuth lies in 0 .. 360 and its elevation
    in 0 .. 90 degrees; any other sample (NaN, infinite, below the horizon,
    out of range) is left out and cuts the track, as does a break on the
    time, azimuth or elevation axis. Tracks are drawn in name order, later
    names on top, each one device pixel wide in the registry's colour
    (alpha included). A track that passes north from 359 to 1 degree joins
    its two samples near north, never across the plot. The registry's
    drawing style is not used.

    \par Values

    setValueAxis() chooses a value axis. setTracksColoredByValue() then
    colours each track by the value of its samples through a colour scale
    (setColorRange(), setColorStops()) cut into 64 levels; setSkyMapShown()
    fills the sky behind the tracks with the mean, RMS or maximum of the
    value per cell of the sky. Either shows a colour bar at the right with
    the range, a few round values and setValueUnit()'s unit. Tracks in the
    value's colours need a finite value: samples without one are left out.

    \par Time

    The tracks show the part of the time window (milliseconds since 1970)
    that setTimeWindow() sets, or all data after resetTimeWindow(). The
    signature is the one of CurveGraphicsView and
    CurveGraphicsTableWidget_Epoch, so the three link with \c connect:
    \code
    connect(view, &CurveGraphicsView::sgTimeWindowChanged,
            sky, &SkyGraphicsView::setTimeWindow);
    \endcode
    The sky plot shows the window it is given as it is: it does not fit it
    into its own data, so a window never comes back changed.
    setTimeCursor() marks where each satellite is at one time.

    \par Hover read-out

    With hoverReadOutEnabled (off by default) the view reports the drawn
    sample nearest to the mouse, within kHoverRadius pixels, by sgHover(),
    and sgHoverNone() when none is near any more; with hoverToolTip as well
    it shows the sample in a tool tip.

    \par Other devices

    QGraphicsView::render() draws the plot into any painter: raster devices
    get the tracks at their own resolution, vector devices (QPdfWriter,
    QSvgGenerator, QPicture) real polylines with one point per device pixel
    the track passes, at most two per plot pixel. drawToPixmap() lays the
    plot out anew for a pixmap of any size and device pixel ratio.
*/
class GNSSPLOT_EXPORT SkyGraphicsView : public QGraphicsView
{
    Q_OBJECT
    /*! Whether the view reports the sample under the mouse; false by default. */
    Q_PROPERTY(bool hoverReadOutEnabled READ isHoverReadOutEnabled
                   WRITE setHoverReadOutEnabled)
    /*! Whether the hover read-out shows a tool tip; false by default. */
    Q_PROPERTY(bool hoverToolTip READ hasHoverToolTip WRITE setHoverToolTip)
    /*! Whether the tracks take the colours of the value axis; false by default. */
    Q_PROPERTY(bool tracksColoredByValue READ areTracksColoredByValue
                   WRITE setTracksColoredByValue)
    /*! Whether the sky map of the value axis is drawn; false by default. */
    Q_PROPERTY(bool skyMapShown READ isSkyMapShown WRITE setSkyMapShown)
public:
    /*! The keys of a track's axes in its data set. */
    enum TrackAxis {
        TrackAxis_Time = 0,       //!< Milliseconds since 1970.
        TrackAxis_Azimuth = 1,    //!< Degrees from north, clockwise.
        TrackAxis_Elevation = 2,  //!< Degrees above the horizon.
        TrackAxis_FirstValue = 3, //!< Value axis 0; value axis k is key 3 + k.
    };
    /*! What a cell of the sky map shows of the values in it. Its type is fixed,
        so that a value from outside the list is refused, not undefined. */
    enum SkyMapStatistic : int {
        SkyMapStatistic_Mean = 0,    //!< Their mean.
        SkyMapStatistic_Rms = 1,     //!< Their root mean square.
        SkyMapStatistic_Maximum = 2, //!< The largest of them.
    };
    Q_ENUM(SkyMapStatistic)

    /*! A drawn sample, as the hover read-out finds it. */
    struct HoverSample
    {
        /*! Name of the track in the registry. */
        QString trackName;
        /*! Index of the sample in the track's axes (within their areas). */
        qint64 sampleIndex = -1;
        /*! Time, milliseconds since 1970. */
        double timeMs = 0.0;
        /*! Azimuth, degrees. */
        double azimuth = 0.0;
        /*! Elevation, degrees. */
        double elevation = 0.0;
        /*! The chosen value axis's value, in its unit; NaN without a value
            axis or where the sample has none. */
        double value = 0.0;
    };
    /*! How far from the cursor a sample is still found, pixels. */
    static constexpr double kHoverRadius = 5.0;

    /*! Creates the view with an empty registry (a Qt child of the view),
        showing all data, no value axis and no cursor. */
    explicit SkyGraphicsView(QWidget* parent = nullptr);
    /*! Destroys the view; its registry goes with it and deletes the data
        sets it owns. */
    ~SkyGraphicsView() override;

    /*! The registry of the tracks; never null. Tracks are registered with
        CurveScene::addCurve() (colour and visibility are used, the drawing
        style is not) and leave with removeCurve(). */
    CurveScene* getTrackScene();

    /*! Draws the tracks (true, the default) or leaves them out (false), for
        a picture of the sky map alone; hidden tracks are not found by the
        hover read-out. Tracks hidden in the registry stay hidden, and are
        left out of the sky map, either way. */
    void setTracksShown(bool bShown);
    /*! Whether the tracks are drawn. */
    bool areTracksShown() const;

    /*! Colours by value axis \a valueIndex (0 for key 3): the tracks, while
        setTracksColoredByValue() is on, and the sky map. -1, the default,
        chooses none; any value below -1 counts as -1. */
    void setValueAxis(int valueIndex);
    /*! The chosen value axis, -1 for none. */
    int getValueAxis() const;
    /*! The unit of the value axis, shown above the colour bar and in the
        tool tip ("dB-Hz", "m"); empty by default. */
    void setValueUnit(const QString& unit);
    /*! The unit set by setValueUnit(). */
    QString getValueUnit() const;
    /*! Colours the tracks by the chosen value axis (true) or by the
        registry's colours (false, the default). Without a value axis the
        tracks keep the registry's colours. */
    void setTracksColoredByValue(bool bByValue);
    /*! Whether the tracks are coloured by value when a value axis is chosen. */
    bool areTracksColoredByValue() const;
    /*! Maps values from \a vMin (the first colour) to \a vMax (the last);
        values beyond take the end colours. Refused (\c false, unchanged)
        unless both are finite and vMin < vMax. */
    bool setColorRange(double vMin, double vMax);
    /*! Goes back to the automatic range, the smallest to the largest value
        of the value axis over all tracks (the default). */
    void resetColorRange();
    /*! The range in force, set or automatic (0 .. 1 without values). */
    void getColorRange(double& vMin, double& vMax) const;
    /*! The colours of the scale: a gradient over 0 (vMin) .. 1 (vMax).
        Refused (\c false, unchanged) unless there are two stops or more,
        positions in 0 .. 1 and ascending, and valid colours. */
    bool setColorStops(const QGradientStops& stops);

    /*! Shows (true) or hides (false, the default) the sky map of the chosen
        value axis; it needs a value axis to show. */
    void setSkyMapShown(bool bShown);
    /*! Whether the sky map is switched on. */
    bool isSkyMapShown() const;
    /*! What a cell of the sky map shows; SkyMapStatistic_Mean by default. An
        unknown value is refused (nothing changes). */
    void setSkyMapStatistic(SkyMapStatistic statistic);
    /*! What a cell of the sky map shows. */
    SkyMapStatistic getSkyMapStatistic() const;
    /*! The size of a sky map cell, degrees of azimuth and of elevation, 0.5
        to 90; 5 by default. Refused (\c false, unchanged) outside that
        range or for NaN. */
    bool setSkyMapCellSize(double degrees);
    /*! The size of a sky map cell, degrees. */
    double getSkyMapCellSize() const;

    /*! Draws the elevation mask as a dashed ring at \a degrees, with the sky
        below it shaded; 0 (the default) draws none. Refused (\c false,
        unchanged) outside 0 .. 90 (90 excluded) or for NaN. */
    bool setElevationMask(double degrees);
    /*! The elevation mask, degrees; 0 for none. */
    double getElevationMask() const;

    /*! Gives the time window shown, milliseconds since 1970: the window set
        last, or the time range of all tracks when none is set (0 and 0
        without data). */
    void getTimeWindow(double& tMin, double& tMax) const;
    /*! Whether the time cursor is set. */
    bool hasTimeCursor() const;
    /*! The time cursor, milliseconds since 1970; 0 when none is set. */
    double getTimeCursor() const;

    /*! Switches the hover read-out on or off; switching it off while a
        sample was reported emits sgHoverNone(). */
    void setHoverReadOutEnabled(bool bEnabled);
    /*! Whether the hover read-out is on; false by default. */
    bool isHoverReadOutEnabled() const;
    /*! Shows the reported sample in a tool tip while the read-out is on. */
    void setHoverToolTip(bool bShow);
    /*! Whether the read-out shows a tool tip; false by default. */
    bool hasHoverToolTip() const;
    /*! Finds the drawn sample nearest to \a viewportPos (viewport pixels)
        within kHoverRadius pixels: of the visible tracks, in the time
        window. Returns false, leaving \a sample alone, when none is that
        near. Works whether or not the read-out is switched on. */
    bool hoverSampleAt(const QPoint& viewportPos, HoverSample& sample);

    /*! Where the direction (\a azimuth, \a elevation), degrees, lies in the
        viewport, in viewport pixels; a null point when the direction is not
        drawn (outside 0 .. 360 and 0 .. 90, NaN) or the view is too small
        for a sky. */
    QPointF skyToViewport(double azimuth, double elevation) const;

    /*! Draws the whole plot, laid out for the pixmap's size in logical
        pixels (its size divided by its device pixel ratio), into
        \a pixmap, over a white ground. The view is not changed. Nothing
        happens for a null pointer or an empty pixmap. */
    void drawToPixmap(QPixmap* pixmap);

public slots:
    /*! Shows the tracks' samples from \a tMin to \a tMax, milliseconds since
        1970, as given, and emits sgTimeWindowChanged() when that differs
        from the window shown (beyond a rounding step). Does nothing when a
        bound is not finite or \a tMin is not below \a tMax. */
    void setTimeWindow(double tMin, double tMax);
    /*! Shows all data again; emits sgTimeWindowChanged() with the time range
        of all tracks when a window goes. */
    void resetTimeWindow();
    /*! Marks where each visible satellite is at \a timeMs, milliseconds since
        1970, and emits sgTimeCursorChanged(); nothing for a non-finite time
        or the time already marked. */
    void setTimeCursor(double timeMs);
    /*! Removes the time cursor; emits sgTimeCursorChanged() when one was
        set. */
    void clearTimeCursor();

signals:
    /*! The time window shown changed to [\a tMin, \a tMax], milliseconds
        since 1970: by setTimeWindow() or resetTimeWindow(). */
    void sgTimeWindowChanged(double tMin, double tMax);
    /*! The time cursor was set to \a timeMs (\a bShown true) or removed
        (\a bShown false, \a timeMs 0). */
    void sgTimeCursorChanged(bool bShown, double timeMs);
    /*! The hover read-out found a sample other than the one last reported:
        track \a trackName at \a timeMs (milliseconds since 1970), \a azimuth
        and \a elevation (degrees) and \a value (NaN without a value). */
    void sgHover(QString trackName, double timeMs, double azimuth, double elevation,
                 double value);
    /*! No sample is near the cursor any more (or it left the view). Emitted
        once after the last sgHover(). */
    void sgHoverNone();

protected:
    /*! Lays the plot out for the new viewport size. */
    void resizeEvent(QResizeEvent* event) override;
    /*! Runs the hover read-out. */
    void mouseMoveEvent(QMouseEvent* event) override;
    /*! Ends the hover read-out's report. */
    void leaveEvent(QEvent* event) override;

private:
    void relayout();
    void tracksChanged();
    void updateHover(const QPoint& viewportPos);
    void clearHover();

    // The view's state lives behind this pointer, so that later releases
    // can add to it without changing the class's size.
    class PrivateData;
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(SkyGraphicsView)
};

#endif // GNSSPLOT_SKYGRAPHICSVIEW_H
