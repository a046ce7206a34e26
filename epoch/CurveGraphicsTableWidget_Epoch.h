#ifndef GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H
#define GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H

#include "gnssplot_global.h"
#include "stEpochDataSet.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QPoint>
#include <QString>
#include <QTableWidget>

class EpochLabel;
class QCheckBox;
class QContextMenuEvent;
class QMouseEvent;
class QPixmap;

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
*/
class GNSSPLOT_EXPORT CurveGraphicsTableWidget_Epoch : public QTableWidget
{
    Q_OBJECT
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

signals:
    /*! The user clicked the "Satellite" box or a satellite's check box: the
        selection may have changed. Read it with getStateliteEnabled(). */
    void sgStateliteSelection();
    /*! Erase marks were added by a drag, removed through the context menu,
        undone or cleared. Read them with getStateliteEraseMarks(). */
    void sgEraseMarksChanged();

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

private slots:
    void onTitleCheck();
    void onItemCheck();
    void onActionRemoveEraseAction();

private:
    void makeEraseMarks(const QRect& rect);
    void setDragRectOnLabels(const QRect& rect);

    int eraseActionNum = 0;
    QMap<QString, EpochLabel*> labels;
    qint64 startTime = 0;
    qint64 endTime = 0;
    bool dragging = false;
    QPoint pressPos;
    QPoint currentPos;
    QString menuSatellite;
    QPoint menuGlobalPos;
    QCheckBox* titleCheckBox = nullptr;

    Q_DISABLE_COPY(CurveGraphicsTableWidget_Epoch)
};

#endif // GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_H
