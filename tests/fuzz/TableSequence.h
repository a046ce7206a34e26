// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TESTS_TABLESEQUENCE_H
#define GNSSPLOT_TESTS_TABLESEQUENCE_H

#include <QString>

#include <memory>

class ByteReader;
class CurveGraphicsTableWidget_Epoch;

// The epoch table's part of the call-sequence harness: one shown table that
// receives resources, drags, undo, clear, menu removals and check-box clicks.
class TableSequence
{
public:
    TableSequence();
    ~TableSequence();

    // Runs one decoded call; returns a description of the first broken
    // promise, or an empty string.
    QString step(ByteReader& in);

private:
    QString check(const QString& what) const;

    std::unique_ptr<CurveGraphicsTableWidget_Epoch> m_table;
    int m_selectionSignals = 0;
    int m_markSignals = 0;
    int m_preloadedActions = 0; // actions that setResources made from given marks
};

#endif // GNSSPLOT_TESTS_TABLESEQUENCE_H
