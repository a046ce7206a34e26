// SPDX-License-Identifier: MIT
#include "EpochTableModel_p.h"

#include <algorithm>

void EpochTableModel::reset()
{
    m_satellites.clear();
    m_actionCount = 0;
}

void EpochTableModel::addSatellite(const QString& name, bool bChecked,
                                   const QList<Mark>& preloaded)
{
    Satellite satellite;
    satellite.bChecked = bChecked;
    // Every preloaded mark is an action of its own, so undo takes them back
    // one by one, newest (last name, last in list) first.
    for (const Mark& mark : preloaded)
        satellite.marks.insert(m_actionCount++, mark);
    m_satellites.insert(name, satellite);
}

bool EpochTableModel::addAction(const QStringList& names, const Mark& mark)
{
    bool bMarked = false;
    for (const QString& name : names) {
        const auto it = m_satellites.find(name);
        if (it == m_satellites.end())
            continue;
        it->marks.insert(m_actionCount, mark);
        bMarked = true;
    }
    if (bMarked)
        ++m_actionCount;
    return bMarked;
}

bool EpochTableModel::undo()
{
    if (m_actionCount < 1)
        return false;
    --m_actionCount;
    for (Satellite& satellite : m_satellites)
        satellite.marks.remove(m_actionCount);
    return true;
}

bool EpochTableModel::clear()
{
    if (m_actionCount <= 0)
        return false;
    for (Satellite& satellite : m_satellites)
        satellite.marks.clear();
    m_actionCount = 0;
    return true;
}

int EpochTableModel::removeMarks(const QString& name, const QList<int>& keys)
{
    const auto it = m_satellites.find(name);
    if (it == m_satellites.end())
        return 0;
    int removed = 0;
    for (int key : keys)
        removed += it->marks.remove(key);
    return removed;
}

EpochTableModel::Marks EpochTableModel::marksOf(const QString& name) const
{
    const auto it = m_satellites.constFind(name);
    return it == m_satellites.cend() ? Marks() : it->marks;
}

void EpochTableModel::readMarks(QMap<QString, QList<stEpochDataSet>>& marks) const
{
    for (auto it = m_satellites.cbegin(); it != m_satellites.cend(); ++it) {
        QList<stEpochDataSet> sets;
        if (!it->marks.isEmpty()) {
            stEpochDataSet set;
            set.ranges.reserve(it->marks.size());
            for (const Mark& mark : it->marks)
                set.ranges.append(mark);
            sets.append(set);
        }
        marks.insert(it.key(), sets);
    }
}

bool EpochTableModel::isChecked(const QString& name) const
{
    const auto it = m_satellites.constFind(name);
    return it != m_satellites.cend() && it->bChecked;
}

bool EpochTableModel::setChecked(const QString& name, bool bChecked)
{
    const auto it = m_satellites.find(name);
    if (it == m_satellites.end())
        return false;
    it->bChecked = bChecked;
    return true;
}

void EpochTableModel::setAllChecked(bool bChecked)
{
    for (Satellite& satellite : m_satellites)
        satellite.bChecked = bChecked;
}

void EpochTableModel::readSelection(QMap<QString, bool>& selection) const
{
    for (auto it = m_satellites.cbegin(); it != m_satellites.cend(); ++it)
        selection.insert(it.key(), it->bChecked);
}

bool EpochTableModel::setEventMarks(const QMap<QString, EventMarks>& marks)
{
    // Satellites whose bands hold no mark say nothing: leaving them out
    // keeps "no marks" one value, however the host spelled it.
    QMap<QString, EventMarks> kept;
    for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
        const bool bAny = std::any_of(it.value().cbegin(), it.value().cend(),
                                      [](const QVector<EventMark>& band) {
                                          return !band.isEmpty();
                                      });
        if (bAny)
            kept.insert(it.key(), it.value());
    }
    if (kept == m_eventMarks)
        return false;
    m_eventMarks = kept;
    return true;
}
