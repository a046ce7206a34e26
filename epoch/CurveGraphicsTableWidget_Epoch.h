// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H
#define GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H

#include "gnssplot_global.h"
#include "EventMark.h"
#include "stEpochDataSet.h"

#include <QColor>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPoint>
#include <QString>
#include <QTableWidget>
#include <QVector>

#include <memory>

class CurveGraphicsTableWidget_EpochPrivate;
class CurveGraphicsView;
class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;
class QPixmap;
class QWheelEvent;

/*!
    \class CurveGraphicsTableWidget_Epoch
    \brief The epoch availability table: one row per satellite with a check box
    and one thin bar per frequency band over a common epoch range.

    Row 0 is the header row: the "Satellite" check box, which sets or clears
    every satellite box, and the legend of the bands. Satellites follow in
    ascending name order from row 1. Column 0 is 80 pixels wide, column 1
    starts at 280 pixels and stretches with the table.

    Epochs are qint64 values in the host's own unit; the table never converts
    them and draws or marks nothing unless startTime < endTime.

    The user drags rectangles over the bars to mark epochs to erase: one drag
    is one erase-mark action giving the same interval to every satellite row
    it touches. Actions can be undone newest first (undoEraseMarkAction()) or
    cleared (clearEraseMarkActions()); a single mark can be removed through the
    context menu "Remove the rect for erase.". The host is told of changes by
    sgEraseMarksChanged() and sgStateliteSelection() and reads the state back
    with getStateliteEraseMarks() and getStateliteEnabled().

    The table owns every widget and item in its cells. Mouse presses, moves
    and releases on the bars never select cells.

    \section time_window Time window

    With timeNavigationEnabled (off by default) the bars can show a window of
    the epoch range instead of all of it:
    - Ctrl+wheel zooms about the cursor: the epoch under it stays put.
    - Shift+wheel, a horizontal wheel or a drag with the middle button pans.
    - A double-click with the left button on the bars, or the Home key,
      returns to the whole range (resetTimeWindow()).
    - Left and Right pan by a tenth of the window, + and - zoom about its
      middle, with the keyboard focus on the table.
    - The plain wheel scrolls the rows as before, keeping the window; a
      left (or right) drag still marks epochs.
    The gestures are those of CurveGraphicsView, from one shared event
    filter, so a plot and a table move alike for the same input; only the
    plain wheel and the pan button are each widget's own.
    Bars and erase marks are drawn for the window, and a drag marks the epochs
    the window shows under it, so a zoomed drag marks to the single epoch.
    Marks are stored in epochs and keep their meaning whatever the window.
    The window is kept inside the range and at least a few epochs wide; the
    legend row does not change. PaintAllLabelsToDevice() always paints the
    whole range.

    The window is exchanged in linked time units, t = msAtEpochZero + epoch *
    msPerEpoch (setEpochTimeScale(); by default the epochs themselves). For a
    host whose epochs are GPST milliseconds since 1970, as the time axis of
    CurveGraphicsView reads, the defaults already match, and two connections
    link table and view both ways:
    \code
    connect(view, &CurveGraphicsView::sgTimeWindowChanged,
            table, &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged,
            view, &CurveGraphicsView::setTimeWindow);
    \endcode
    setTimeWindow() emits only when the window really changes, so the echo of
    a linked widget ends the exchange.

    \section time_axis Time axis and alignment

    With timeAxisVisible (off by default) the header row above the table is
    a time axis for the bars, labelled as the plot labels its own: a table
    with nothing to plot still reads in time. alignBarsWith() lines the bars
    up with a CurveGraphicsView's data area to the pixel and keeps them so:
    \code
    table->setTimeAxisVisible(true);
    table->alignBarsWith(view);
    \endcode

    \section event_marks Event marks

    setEventMarks() (none by default) gives satellites events at epochs per
    band: cycle slips, losses of lock, gaps or the host's own kinds
    (EventMark), each drawn as a short tick across that band's bar in the
    colour of its kind (setEventKindColor()). Ticks follow the time window
    as the bars do; PaintAllLabelsToDevice() draws them into pixmaps too.
*/
class GNSSPLOT_EXPORT CurveGraphicsTableWidget_Epoch : public QTableWidget
{
    Q_OBJECT
    /*! Whether the user can zoom and pan the bars in time; false by default. */
    Q_PROPERTY(bool timeNavigationEnabled READ isTimeNavigationEnabled
                   WRITE setTimeNavigationEnabled)
    /*! Whether the header shows the time axis of the bars; false by default. */
    Q_PROPERTY(bool timeAxisVisible READ isTimeAxisVisible WRITE setTimeAxisVisible)
    /*! Whether the time axis ticks lie on round times of day; false by
        default. */
    Q_PROPERTY(bool roundTimeTicks READ hasRoundTimeTicks WRITE setRoundTimeTicks)
public:
    /*! Creates the empty table: the header row only, range 0 to 0, no
        actions, the "Satellite" check box checked. */
    explicit CurveGraphicsTableWidget_Epoch(QWidget* parent = nullptr);
    /*! Destroys the table with every widget in its cells. */
    ~CurveGraphicsTableWidget_Epoch() override;

    /*! Rebuilds the satellite rows. Empties the table first (clearAll()),
        then stores the range [\a startTime, \a endTime] and adds one row per
        entry of \a epochData in ascending name order, with data set i drawn in
        palette colour i.

        A satellite's check box starts checked only when the "Satellite" box is
        checked, \a enabledMap holds the name with \c true and
        \a uncheckedNames lacks it. Its bars are coloured when \a enabledMap
        holds it with \c true, grey otherwise.

        Each pair of \a eraseMarks (start epoch, length) becomes an erase-mark
        action of its own, numbered from 0 in ascending name order, then list
        order. Names of \a enabledMap or \a eraseMarks that \a epochData lacks
        are ignored. Emits nothing. */
    void setResources(qint64 startTime, qint64 endTime,
                      const QMap<QString, QList<stEpochDataSet>>& epochData,
                      const QMap<QString, bool>& enabledMap, const QList<QString>& uncheckedNames,
                      const QMap<QString, QList<QPair<qint64, qint64>>>& eraseMarks);
    /*! Removes every satellite row with its marks, forgets all actions and
        resets the range to 0 to 0. The "Satellite" box keeps its state.
        Emits nothing. */
    void clearAll();

    /*! Paints the bars of every satellite of \a epochData that \a pixmaps
        holds with a non-null pixmap into that pixmap, scaled to its full size:
        coloured when \a enabledMap holds the satellite with \c true, grey
        otherwise. Draws no erase marks and does not clear the pixmaps first.
        Missing or null pixmaps and an empty or inverted range paint nothing.
        Needs no table. */
    static void PaintAllLabelsToDevice(qint64 startTime, qint64 endTime,
                                       const QMap<QString, QList<stEpochDataSet>>& epochData,
                                       const QMap<QString, bool>& enabledMap,
                                       const QMap<QString, QPixmap*>& pixmaps);
    /*! Paints as the call above does, with the event marks of
        \a eventMarks (per satellite, per band; see setEventMarks()) as ticks
        on the bars, in the colours of \a eventKindColors by kind and the
        defaults of setEventKindColor() for other kinds. Marks of satellites
        not painted and of bands without a bar draw nothing. */
    static void PaintAllLabelsToDevice(qint64 startTime, qint64 endTime,
                                       const QMap<QString, QList<stEpochDataSet>>& epochData,
                                       const QMap<QString, bool>& enabledMap,
                                       const QMap<QString, QPixmap*>& pixmaps,
                                       const QMap<QString, QList<QVector<EventMark>>>& eventMarks,
                                       const QMap<int, QColor>& eventKindColors = {});

    /*! Gives the bars event marks: under each satellite's name, per band in
        data set order, the epochs (in the host's epoch unit, as
        setResources() takes them) and kinds of its events, drawn as ticks
        across that band's bar. Replaces every mark given before; an empty
        map (the default) shows none. The marks are the host's: they stay
        through setResources() and clearAll() until replaced, satellites
        without a row and bands without a bar keep theirs but show nothing,
        and epochs outside the range or the time window show nothing.
        Emits nothing. */
    void setEventMarks(const QMap<QString, QList<QVector<EventMark>>>& marks);
    /*! The event marks given by setEventMarks(), without satellites whose
        bands hold none. */
    QMap<QString, QList<QVector<EventMark>>> getEventMarks() const;
    /*! Draws the event marks of \a kind (EEventMarkKind or the host's own)
        in \a color and repaints the bars when that changes. An invalid
        colour gives the default back: red for cycle slips, orange for
        losses of lock, dark grey for gaps, violet for the host's kinds,
        as CurveGraphicsView draws them. */
    void setEventKindColor(int kind, const QColor& color);
    /*! The colour the marks of \a kind are drawn in. */
    QColor getEventKindColor(int kind) const;

    /*! Drops every erase mark, sets the action count to 0 and emits
        sgEraseMarksChanged(). Does nothing when there are no actions. */
    void clearEraseMarkActions();
    /*! Returns the number of erase-mark actions so far, which is also the
        number the next action gets. Removing a mark through the context menu
        does not lower it. */
    int eraseMarkActionNum() const;
    /*! Removes the marks of the newest action from every satellite, lowers the
        action count by one and emits sgEraseMarksChanged(), also when that
        action's marks had all been removed through the context menu. Does
        nothing when there are no actions. */
    void undoEraseMarkAction();
    /*! Stores under every satellite's name in \a marks its erase marks: an
        empty list when it has none, else one stEpochDataSet whose ranges are
        the (start epoch, length) marks in action order, neither merged nor
        sorted. Entries for other names are left as they are. */
    void getStateliteEraseMarks(QMap<QString, QList<stEpochDataSet>>& marks) const;

    /*! Stores under every satellite's name in \a selection whether its check
        box is checked. Entries for other names are left as they are; with no
        satellite rows \a selection is untouched. */
    void getStateliteEnabled(QMap<QString, bool>& selection) const;

    /*! Switches time navigation on or off (see the class description).
        Switching it off shows the whole range again and emits
        sgTimeWindowChanged() if a zoomed window goes. */
    void setTimeNavigationEnabled(bool bEnabled);
    /*! Whether time navigation is on; false by default. */
    bool isTimeNavigationEnabled() const;

    /*! Sets how epochs convert to the linked time units of the window's
        signal and slot: t = \a msAtEpochZero + epoch * \a msPerEpoch; the
        default is 1 and 0. For a host counting epochs in GPST seconds since
        1970, pass 1000 and 0. The window keeps its epochs; nothing is emitted,
        so set the scale before linking. Returns false, changing nothing, for
        a \a msPerEpoch that is not positive and finite or a non-finite
        \a msAtEpochZero. */
    bool setEpochTimeScale(double msPerEpoch, double msAtEpochZero);
    /*! Reads the scale set by setEpochTimeScale(). */
    void getEpochTimeScale(double& msPerEpoch, double& msAtEpochZero) const;

    /*! Gives the window the bars show, in linked time units (see
        setEpochTimeScale()). It is the whole range [startTime, endTime] while
        navigation is off, nothing is zoomed, or the table is empty. */
    void getTimeWindow(double& tMin, double& tMax) const;

    /*! Shows the time axis in the table's header (true) or gives the header
        back as it was (false, the default): a strip of two lines whose left
        part, over the check boxes, reads "GPST" and the date of the window's
        end, and whose right part marks and labels the ticks of the window
        the bars show, as CurveGraphicsView labels its time axis (eleven
        evenly spaced "HH:mm:ss" ticks, or round ticks with roundTimeTicks).
        The times are the linked time units (see setEpochTimeScale()), read
        as milliseconds since 1970 on the UTC calendar. Shown, the header is
        visible even if the host had hidden it; switched off, it is hidden
        again. */
    void setTimeAxisVisible(bool bVisible);
    /*! Whether the header shows the time axis; false by default. */
    bool isTimeAxisVisible() const;
    /*! Puts the axis ticks on round times of day (true), as
        CurveGraphicsView::setRoundTimeTicks() does for the plot, or on the
        eleven evenly spaced ticks (false, the default). */
    void setRoundTimeTicks(bool bRound);
    /*! Whether the axis ticks lie on round times of day. */
    bool hasRoundTimeTicks() const;

    /*! Lines the bars up with the data area of \a view, so that an epoch
        (in linked time units) sits at the same x in both, and keeps them so
        while either widget is resized or moved or a column width changes.
        The table widens its check-box column or lets the bar column end
        early; the view gets margins beside its plot
        (CurveGraphicsView::setPlotMargins()). Both must be in one window;
        alignment happens once the events in flight are handled, since the
        view lays its plot out after its own resize. A null \a view stops
        aligning and gives back the column widths and margins it added. The
        table does not own \a view; a view that is destroyed ends the
        alignment. */
    void alignBarsWith(CurveGraphicsView* view);
    /*! The view the bars are aligned with; null when none. */
    CurveGraphicsView* getAlignedView() const;

    /*! Colour of the bars of data set (band) \a band: from the colour palette
        when \a bEnabled, else from the grey palette, as the table draws them.
        Bands 0 to 3 are the legend's "L1/G1/B1/E1/J1", "L2/G2/B2/J2",
        "L5/G3/B3/E5a/J5" and "E5b/B2a". An invalid QColor for a band below 0
        or above 65534. */
    static QColor bandColor(int band, bool bEnabled = true);
    /*! Top of the bar of data set \a band, in pixels from the top of its
        cell or pixmap: 4 + 6 * band; -1 for a band below 0 or above 65534.
        A pixmap for n bands is best barTop(n) + 2 pixels high. */
    static int barTop(int band);
    /*! Height of every bar, pixels (4). */
    static int barHeight();

public slots:
    /*! Shows the window [\a tMin, \a tMax], in linked time units (see
        setEpochTimeScale()), fitted into the range: at least a few epochs
        wide, no wider than the range, and shifted inside it. Emits
        sgTimeWindowChanged() with the fitted window when it differs from the
        one shown, so a linked widget's echo ends here. Does nothing while
        navigation is off, the range is empty, or a bound is not finite or
        \a tMin is not below \a tMax. */
    void setTimeWindow(double tMin, double tMax);
    /*! Shows the whole range again; emits sgTimeWindowChanged() when a zoomed
        window goes. Does nothing while navigation is off. */
    void resetTimeWindow();

signals:
    /*! The user clicked the "Satellite" box or a satellite's check box: the
        selection may have changed. Read it with getStateliteEnabled(). */
    void sgStateliteSelection();
    /*! Erase marks were added by a drag, removed through the context menu,
        undone or cleared. Read them with getStateliteEraseMarks(). */
    void sgEraseMarksChanged();
    /*! The window the bars show changed to [\a tMin, \a tMax], in linked time
        units (see setEpochTimeScale()): by the user's navigation,
        setTimeWindow(), resetTimeWindow(), switching navigation off, or
        setResources() with navigation on. An empty table reports nothing. */
    void sgTimeWindowChanged(double tMin, double tMax);

protected:
    /*! Starts a drag at the press position (viewport pixels), any button. */
    void mousePressEvent(QMouseEvent* event) override;
    /*! While dragging, outlines the rectangle from the press position to the
        cursor on every satellite row. */
    void mouseMoveEvent(QMouseEvent* event) override;
    /*! Ends a drag; a rectangle more than 5 pixels wide and high becomes an
        erase-mark action on the rows it touches. */
    void mouseReleaseEvent(QMouseEvent* event) override;
    /*! Offers "Remove the rect for erase." over an erase mark of a
        satellite's bars; shows no menu anywhere else. */
    void contextMenuEvent(QContextMenuEvent* event) override;
    /*! With time navigation, Ctrl+wheel zooms and Shift+wheel or a
        horizontal wheel pans the window; otherwise the rows scroll. */
    void wheelEvent(QWheelEvent* event) override;
    /*! With time navigation, a left double-click on the bars shows the whole
        range again; otherwise as QTableWidget. */
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    /*! With time navigation, Home shows the whole range again; otherwise as
        QTableWidget. */
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void onTitleCheck();
    void onItemCheck();
    void onActionRemoveEraseAction();

private:
    void makeEraseMarks(const QRect& rect);
    void setDragRectOnLabels(const QRect& rect);
    // Lays the cells' widgets out at once after a column changed width.
    void relayoutCells();
    friend class EpochBarAlignment;

    const std::unique_ptr<CurveGraphicsTableWidget_EpochPrivate> d;

    Q_DISABLE_COPY(CurveGraphicsTableWidget_Epoch)
};

#endif // GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H
