// SPDX-License-Identifier: MIT
// The epoch table's time axis: the window its bars show, the navigation
// that moves it, the axis strip over the bars and the alignment with a plot.
#include "CurveGraphicsTableWidget_Epoch.h"

#include "CurveGraphicsTableWidget_Epoch_p.h"
#include "EpochBarAlignment_p.h"
#include "EpochLabel_p.h"
#include "EpochTimeHeader_p.h"
#include "HeadLabel_p.h"

#include <QHeaderView>

#include <cmath>

TimeWindow CurveGraphicsTableWidget_EpochPrivate::shownWindow() const
{
    return window.bActive ? TimeWindow(window.start, window.end) : wholeRange();
}

bool CurveGraphicsTableWidget_EpochPrivate::fitted(const TimeWindow& asked,
                                                   EpochWindow& result) const
{
    const TimeWindow range = wholeRange();
    if (!hasRange() || !asked.isValid())
        return false;
    const TimeWindow fit = asked.fittedInto(range, navigationMinimumSpan());
    // A window that covers the range is the range: drawn and marked by the
    // exact integer arithmetic of the unzoomed table.
    result = fit.covers(range) ? EpochWindow() : EpochWindow{true, fit.getMin(), fit.getMax()};
    return true;
}

void CurveGraphicsTableWidget_EpochPrivate::showWindow(const TimeWindow& asked)
{
    EpochWindow next;
    if (!fitted(asked, next))
        return;
    const TimeWindow nextShown = next.bActive ? TimeWindow(next.start, next.end) : wholeRange();
    if (next.bActive == window.bActive && nextShown.fuzzyEquals(shownWindow()))
        return;
    window = next;
    pushWindow();
    emitWindow();
}

void CurveGraphicsTableWidget_EpochPrivate::showWholeRange()
{
    if (!window.bActive)
        return;
    window = EpochWindow();
    pushWindow();
    if (hasRange())
        emitWindow();
}

void CurveGraphicsTableWidget_EpochPrivate::pushWindow()
{
    for (EpochLabel* label : qAsConst(labels)) {
        label->setTimeWindow(window);
        label->update();
    }
    header->viewport()->update();
}

void CurveGraphicsTableWidget_EpochPrivate::emitWindow()
{
    const TimeWindow shown = shownWindow();
    const double tMin = toLinked(shown.getMin());
    const double tMax = toLinked(shown.getMax());
    // A scale that carries the epochs beyond the doubles has nothing to say.
    if (std::isfinite(tMin) && std::isfinite(tMax) && tMin < tMax)
        emit q->sgTimeWindowChanged(tMin, tMax);
}

bool CurveGraphicsTableWidget_EpochPrivate::barCell(QRect& geometry) const
{
    const QWidget* head = qobject_cast<HeadLabel*>(q->cellWidget(0, 1));
    if (!head || head->width() <= 0)
        return false;
    geometry = head->geometry();
    return true;
}

TimeWindow CurveGraphicsTableWidget_EpochPrivate::navigationWindow() const
{
    return hasRange() ? shownWindow() : TimeWindow();
}

QRectF CurveGraphicsTableWidget_EpochPrivate::navigationArea() const
{
    // The bar column, from the top of the viewport to its bottom.
    QRect cell;
    if (!barCell(cell))
        return QRectF();
    return QRectF(cell.left(), 0.0, cell.width(), q->viewport()->height());
}

double CurveGraphicsTableWidget_EpochPrivate::navigationMinimumSpan() const
{
    // Epochs are the sample interval of the bars.
    return TimeWindow::minimumSpan(wholeRange(), 1.0);
}

void CurveGraphicsTableWidget_Epoch::setTimeNavigationEnabled(bool bEnabled)
{
    if (bEnabled == d->bNavigation)
        return;
    if (!bEnabled) {
        d->navigator->cancelPan();
        d->showWholeRange();
    }
    d->bNavigation = bEnabled;
}

bool CurveGraphicsTableWidget_Epoch::isTimeNavigationEnabled() const
{
    return d->bNavigation;
}

bool CurveGraphicsTableWidget_Epoch::setEpochTimeScale(double msPerEpoch, double msAtEpochZero)
{
    if (!(msPerEpoch > 0.0) || !std::isfinite(msPerEpoch) || !std::isfinite(msAtEpochZero))
        return false;
    d->msPerEpoch = msPerEpoch;
    d->msAtEpochZero = msAtEpochZero;
    d->header->viewport()->update();
    return true;
}

void CurveGraphicsTableWidget_Epoch::getEpochTimeScale(double& msPerEpoch,
                                                       double& msAtEpochZero) const
{
    msPerEpoch = d->msPerEpoch;
    msAtEpochZero = d->msAtEpochZero;
}

void CurveGraphicsTableWidget_Epoch::getTimeWindow(double& tMin, double& tMax) const
{
    const TimeWindow shown = d->shownWindow();
    tMin = d->toLinked(shown.getMin());
    tMax = d->toLinked(shown.getMax());
}

void CurveGraphicsTableWidget_Epoch::setTimeWindow(double tMin, double tMax)
{
    if (!d->bNavigation || !d->hasRange())
        return;
    if (!(std::isfinite(tMin) && std::isfinite(tMax) && tMin < tMax))
        return;
    d->showWindow(TimeWindow(d->fromLinked(tMin), d->fromLinked(tMax)));
}

void CurveGraphicsTableWidget_Epoch::resetTimeWindow()
{
    if (d->bNavigation)
        d->showWholeRange();
}

void CurveGraphicsTableWidget_Epoch::setTimeAxisVisible(bool bVisible)
{
    if (bVisible == d->header->isAxisShown())
        return;
    // The strip is the horizontal header: shown for the axis, and back to
    // what the host had chosen for it afterwards.
    if (bVisible)
        d->bHeaderWasHidden = d->header->isHidden();
    d->header->setAxisShown(bVisible);
    d->header->setVisible(bVisible || !d->bHeaderWasHidden);
    updateGeometries();
}

bool CurveGraphicsTableWidget_Epoch::isTimeAxisVisible() const
{
    return d->header->isAxisShown();
}

void CurveGraphicsTableWidget_Epoch::setRoundTimeTicks(bool bRound)
{
    d->header->setRoundTicks(bRound);
}

bool CurveGraphicsTableWidget_Epoch::hasRoundTimeTicks() const
{
    return d->header->hasRoundTicks();
}

void CurveGraphicsTableWidget_Epoch::alignBarsWith(CurveGraphicsView* view)
{
    if (d->alignment && d->alignment->view() == view)
        return;
    delete d->alignment;
    d->alignment = view ? new EpochBarAlignment(this, view) : nullptr;
}

CurveGraphicsView* CurveGraphicsTableWidget_Epoch::getAlignedView() const
{
    return d->alignment ? d->alignment->view() : nullptr;
}

void CurveGraphicsTableWidget_Epoch::relayoutCells()
{
    updateGeometries();
}
