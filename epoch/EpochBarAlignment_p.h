// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHBARALIGNMENT_P_H
#define GNSSPLOT_EPOCHBARALIGNMENT_P_H

#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"

#include <QObject>
#include <QPointer>

/*
    Keeps an epoch table's bars under a curve view's data area, so that an
    epoch sits at the same x in both. The plot's label strip and the table's
    check-box column have widths of their own and the table's scroll bar
    takes room on the right; whichever side starts earlier is moved in (plot
    margin on the view's left, or a wider check-box column), and whichever
    ends later is brought back (plot margin on the view's right, or a bar
    column that no longer stretches to the table's edge).

    It follows both widgets: their resizes and moves and the table's column
    widths re-align once the events in flight have been handled, because the
    view lays its frame out only after its viewport has been resized. Both
    widgets must share one top-level window; otherwise nothing is done.
    Deleting it gives back what it added.
*/
class EpochBarAlignment : public QObject
{
    Q_OBJECT
public:
    EpochBarAlignment(CurveGraphicsTableWidget_Epoch* table, CurveGraphicsView* view);
    ~EpochBarAlignment() override;

    CurveGraphicsView* view() const { return m_view; }
    // Aligns now; false when the two widgets cannot be compared (hidden,
    // in different windows, or the view has no data area).
    bool align();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void schedule();
    void watch(QObject* object);

    QPointer<CurveGraphicsTableWidget_Epoch> m_table;
    QPointer<CurveGraphicsView> m_view;
    int m_viewLeft = 0;
    int m_viewRight = 0;
    int m_columnAdded = 0;
    bool m_bStretchTaken = false;
    bool m_bPending = false;
};

#endif // GNSSPLOT_EPOCHBARALIGNMENT_P_H
