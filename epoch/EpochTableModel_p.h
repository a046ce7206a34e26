// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHTABLEMODEL_P_H
#define GNSSPLOT_EPOCHTABLEMODEL_P_H

#include "EventMark.h"
#include "stEpochDataSet.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/*
    What the user has chosen in an epoch table, kept apart from the widgets
    that show it: per satellite whether it is checked and its erase marks,
    and the stack of erase-mark actions.

    An erase mark is (start epoch, length) under the number of the action that
    made it. Actions are numbered from 0; actionCount() is both their count
    and the number the next one gets. One action may mark several satellites
    with the same interval, a satellite holds at most one mark per action,
    and removing a single mark leaves the count alone, so undo may then find
    nothing left of the newest action and still takes it off the stack.

    Satellites are kept in ascending name order, the order of the table's
    rows. The model knows nothing of pixels; the table turns gestures into
    calls here and shows the result in its labels.

    Apart from the user's choices it keeps the host's event marks: per
    satellite and band, epochs with a kind. They are the host's account of
    its data, not the user's, so they outlast reset() (a new setResources()
    of the same data keeps them) until the host gives others; names without
    a row and bands without a bar are kept and show nothing.
*/
class EpochTableModel
{
public:
    using Mark = QPair<qint64, qint64>;
    using Marks = QMap<int, Mark>;
    // Per band (data set order), the event marks on its bar.
    using EventMarks = QList<QVector<EventMark>>;

    // Forgets every satellite, mark and action.
    void reset();
    // Adds the satellite \a name (or replaces it, keeping its place in name
    // order) with its check state and \a preloaded marks, each of which
    // becomes an action of its own, in list order.
    void addSatellite(const QString& name, bool bChecked, const QList<Mark>& preloaded);
    bool hasSatellite(const QString& name) const { return m_satellites.contains(name); }
    QStringList satellites() const { return m_satellites.keys(); }

    // One action: gives \a mark to every known satellite of \a names. False,
    // changing nothing, when none of them is known.
    bool addAction(const QStringList& names, const Mark& mark);
    // Takes the newest action off the stack with its marks. False, changing
    // nothing, when there are no actions.
    bool undo();
    // Drops every mark and action. False, changing nothing, when there are
    // no actions.
    bool clear();
    // Removes the marks of actions \a keys from satellite \a name; returns
    // how many went. The action count stays.
    int removeMarks(const QString& name, const QList<int>& keys);
    // The marks of \a name by action number; empty for an unknown name.
    Marks marksOf(const QString& name) const;
    int actionCount() const { return m_actionCount; }
    // Stores under every satellite's name its marks: an empty list without
    // marks, else one data set with the marks in action order. Entries of
    // other names stay.
    void readMarks(QMap<QString, QList<stEpochDataSet>>& marks) const;

    // Check state of \a name; false for an unknown name.
    bool isChecked(const QString& name) const;
    // Sets the check state of a known satellite; false for an unknown one.
    bool setChecked(const QString& name, bool bChecked);
    // Sets every satellite's check state.
    void setAllChecked(bool bChecked);
    // Stores under every satellite's name whether it is checked. Entries of
    // other names stay; without satellites \a selection is untouched.
    void readSelection(QMap<QString, bool>& selection) const;

    // Replaces every satellite's event marks; satellites with no band
    // holding a mark are dropped. False when nothing changed.
    bool setEventMarks(const QMap<QString, EventMarks>& marks);
    // The event marks of \a name; empty for a name without any.
    EventMarks eventMarksOf(const QString& name) const { return m_eventMarks.value(name); }
    const QMap<QString, EventMarks>& eventMarks() const { return m_eventMarks; }

private:
    struct Satellite
    {
        bool bChecked = false;
        Marks marks;
    };
    QMap<QString, Satellite> m_satellites;
    int m_actionCount = 0;
    QMap<QString, EventMarks> m_eventMarks;
};

#endif // GNSSPLOT_EPOCHTABLEMODEL_P_H
