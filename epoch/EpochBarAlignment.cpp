// SPDX-License-Identifier: MIT
#include "EpochBarAlignment_p.h"

#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"

#include <QEvent>
#include <QHeaderView>

#include <algorithm>

EpochBarAlignment::EpochBarAlignment(CurveGraphicsTableWidget_Epoch* table,
                                     CurveGraphicsView* view)
    : QObject(table)
    , m_table(table)
    , m_view(view)
{
    Q_ASSERT(table && view);
    watch(table);
    watch(table->viewport());
    watch(view);
    watch(view->viewport());
    connect(table->horizontalHeader(), &QHeaderView::sectionResized, this,
            &EpochBarAlignment::schedule);
    // The view going first leaves a table that aligns with nothing.
    connect(view, &QObject::destroyed, this, [this] {
        m_view = nullptr;
        deleteLater();
    });
    schedule();
}

EpochBarAlignment::~EpochBarAlignment()
{
    if (m_view)
        m_view->setPlotMargins(0, 0);
    if (m_table) {
        if (m_columnAdded != 0)
            m_table->setColumnWidth(0, m_table->columnWidth(0) - m_columnAdded);
        if (m_bStretchTaken)
            m_table->horizontalHeader()->setStretchLastSection(true);
    }
}

void EpochBarAlignment::watch(QObject* object)
{
    object->installEventFilter(this);
}

bool EpochBarAlignment::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Show:
        schedule();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void EpochBarAlignment::schedule()
{
    if (m_bPending)
        return;
    m_bPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_bPending = false;
            align();
        },
        Qt::QueuedConnection);
}

bool EpochBarAlignment::align()
{
    CurveGraphicsTableWidget_Epoch* table = m_table;
    CurveGraphicsView* view = m_view;
    if (!table || !view || !table->isVisible() || !view->isVisible()
        || table->window() != view->window() || table->columnCount() < 2) {
        return false;
    }
    const QRectF area = view->dataAreaInViewport();
    if (area.isEmpty())
        return false;
    const QWidget* top = table->window();
    const auto xIn = [top](const QWidget* widget, double x) {
        return widget->mapTo(top, QPoint(qRound(x), 0)).x();
    };
    // Where each edge would be without what was added before.
    const int plotLeft = xIn(view->viewport(), area.left()) - m_viewLeft;
    const int plotRight = xIn(view->viewport(), area.right()) + m_viewRight;
    const int barsLeft =
        xIn(table->viewport(), table->columnViewportPosition(1)) - m_columnAdded;
    const int barsRight = xIn(table->viewport(), table->viewport()->width());

    const int viewLeft = std::max(0, barsLeft - plotLeft);
    const int added = std::max(0, plotLeft - barsLeft);
    const int viewRight = std::max(0, plotRight - barsRight);
    const int tableShort = std::max(0, barsRight - plotRight);
    // A change moves the other edges only once its layout has run, so it is
    // followed by another look; the look that changes nothing is the last.
    bool bChanged = false;
    if (viewLeft != m_viewLeft || viewRight != m_viewRight) {
        m_viewLeft = viewLeft;
        m_viewRight = viewRight;
        view->setPlotMargins(viewLeft, viewRight);
        bChanged = true;
    }
    QHeaderView* header = table->horizontalHeader();
    if (added != m_columnAdded) {
        const int base = table->columnWidth(0) - m_columnAdded;
        m_columnAdded = added;
        table->setColumnWidth(0, base + added);
        bChanged = true;
    }
    // The bar column stretches to the table's edge unless the plot ends
    // before it; then it ends where the plot does.
    if (tableShort > 0) {
        if (header->stretchLastSection()) {
            header->setStretchLastSection(false);
            m_bStretchTaken = true;
        }
        const int width = plotRight - (barsLeft + added);
        if (width > 0 && table->columnWidth(1) != width) {
            table->setColumnWidth(1, width);
            bChanged = true;
        }
    } else if (m_bStretchTaken) {
        // A stretching section that is already too long stays so; it is cut
        // back to the room there is first.
        m_bStretchTaken = false;
        const int room = table->viewport()->width() - table->columnViewportPosition(1);
        if (room > 0)
            table->setColumnWidth(1, room);
        header->setStretchLastSection(true);
        bChanged = true;
    }
    if (bChanged) {
        // The cells' widgets follow a column's new width only on the table's
        // next layout; it is asked for at once, so the bars move with it.
        table->relayoutCells();
        schedule();
    }
    return true;
}
