// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_QUALITYPANE_H
#define GNSSDEMO_QUALITYPANE_H

#include <QWidget>

class QLabel;
class QTableWidget;

namespace gnssdemo {

class DemoHost;

/*!
    The numbers of the daily check in the window: a table with one row per
    satellite, one per system and one for all (epochs with data, epochs above
    the 10 degree mask and the completeness there, MP1 and MP2 RMS in
    metres, slips, loss of lock, phase jumps, gaps), the same numbers that
    --snapshot writes into summary.txt, and a line with the satellites per
    epoch.
*/
class QualityPane : public QWidget
{
    Q_OBJECT
public:
    /*! The table's columns, in order. */
    enum Column {
        Column_Name,
        Column_Epochs,
        Column_AboveMask,
        Column_Complete,
        Column_Mp1Rms,
        Column_Mp2Rms,
        Column_Slips,
        Column_LossOfLock,
        Column_Jumps,
        Column_Gaps,
        ColumnCount
    };

    explicit QualityPane(QWidget* parent = nullptr);

    /*! Shows what \a host holds now; empty when nothing is loaded. */
    void showQualities(const DemoHost& host);

    QTableWidget* table() const { return m_table; }
    /*! The line of satellites per epoch. */
    QString countsText() const;

private:
    QTableWidget* m_table;
    QLabel* m_counts;
};

} // namespace gnssdemo

#endif // GNSSDEMO_QUALITYPANE_H
