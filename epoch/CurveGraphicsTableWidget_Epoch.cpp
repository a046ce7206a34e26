// SPDX-License-Identifier: MIT
#include "CurveGraphicsTableWidget_Epoch.h"

#include "EpochBars_p.h"
#include "EpochGeometry_p.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "HeadLabel_p.h"

#include <QAction>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QWheelEvent>

#include <cmath>
#include <cstdlib>

namespace {

// One wheel notch (120 units) narrows the window to 4/5, or widens it back.
constexpr double kZoomPerNotch = 0.8;
// One wheel notch pans by a tenth of the window.
constexpr double kPanPerNotch = 0.1;

} // namespace

// The table's state, kept out of the exported class so that adding to it
// does not change the class's size.
class CurveGraphicsTableWidget_EpochPrivate
{
public:
    explicit CurveGraphicsTableWidget_EpochPrivate(CurveGraphicsTableWidget_Epoch* table)
        : q(table)
    {
    }

    bool hasRange() const { return endTime > startTime; }
    // The window shown, in epochs; the whole range when none is active.
    void shownWindow(double& start, double& end) const;
    double toLinked(double epoch) const { return msAtEpochZero + epoch * msPerEpoch; }
    double fromLinked(double t) const { return (t - msAtEpochZero) / msPerEpoch; }
    // Shows [start, end] (epochs), fitted into the range; emits when what is
    // shown changes. False when the window was refused.
    bool showWindow(double start, double end);
    // Shows the whole range; emits when a zoomed window goes.
    void showWholeRange();
    void pushWindowToLabels();
    void emitWindow();
    // The legend cell's geometry in viewport pixels, which every bar cell
    // shares horizontally; false without a legend cell of positive width.
    bool barCell(QRect& geometry) const;
    // Zooms by `notches` wheel notches (positive: in) about viewport x.
    void zoomAt(double x, double notches);
    // Moves a zoomed window by `pixels` of bar width (positive: later).
    void panByPixels(double pixels);

    CurveGraphicsTableWidget_Epoch* const q;
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

    bool bNavigation = false;
    EpochWindow window;
    double msPerEpoch = 1.0;
    double msAtEpochZero = 0.0;
    bool bPanning = false;
    int panLastX = 0;
};

void CurveGraphicsTableWidget_EpochPrivate::shownWindow(double& start, double& end) const
{
    if (window.bActive) {
        start = window.start;
        end = window.end;
    } else {
        start = double(startTime);
        end = double(endTime);
    }
}

bool CurveGraphicsTableWidget_EpochPrivate::showWindow(double start, double end)
{
    if (!fitEpochWindow(start, end, startTime, endTime))
        return false;
    EpochWindow next;
    // A window that covers the range is the range: drawn and marked by the
    // exact integer arithmetic of the unzoomed table.
    if (start > double(startTime) || end < double(endTime))
        next = EpochWindow{true, start, end};
    double oldStart = 0.0;
    double oldEnd = 0.0;
    shownWindow(oldStart, oldEnd);
    // A linked widget's echo may come back off by a rounding step of the unit
    // conversion; that is the same window, and answering it would never end.
    const double tolerance = (end - start) * 1e-12;
    if (next.bActive == window.bActive && std::fabs(start - oldStart) <= tolerance
        && std::fabs(end - oldEnd) <= tolerance) {
        return true;
    }
    window = next;
    pushWindowToLabels();
    emitWindow();
    return true;
}

void CurveGraphicsTableWidget_EpochPrivate::showWholeRange()
{
    if (!window.bActive)
        return;
    window = EpochWindow();
    pushWindowToLabels();
    if (hasRange())
        emitWindow();
}

void CurveGraphicsTableWidget_EpochPrivate::pushWindowToLabels()
{
    for (EpochLabel* label : qAsConst(labels)) {
        label->setTimeWindow(window);
        label->update();
    }
}

void CurveGraphicsTableWidget_EpochPrivate::emitWindow()
{
    double start = 0.0;
    double end = 0.0;
    shownWindow(start, end);
    const double tMin = toLinked(start);
    const double tMax = toLinked(end);
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

void CurveGraphicsTableWidget_EpochPrivate::zoomAt(double x, double notches)
{
    QRect cell;
    if (!hasRange() || !barCell(cell) || notches == 0.0)
        return;
    double start = 0.0;
    double end = 0.0;
    shownWindow(start, end);
    const double span = end - start;
    // The epoch under the cursor keeps its place; a cursor beside the bars
    // zooms about the nearer end.
    const double ratio = qBound(0.0, (x - double(cell.left())) / double(cell.width()), 1.0);
    const double pivot = start + ratio * span;
    double factor = std::pow(kZoomPerNotch, notches);
    // Stop at the smallest span instead of letting the fit grow the window
    // about its centre, which would move the epoch under the cursor.
    const double minSpan = epochMinimumSpan(startTime, endTime);
    if (span * factor < minSpan)
        factor = qMin(1.0, minSpan / span);
    if (factor == 1.0 && span <= minSpan)
        return;
    const double newSpan = span * factor;
    showWindow(pivot - ratio * newSpan, pivot - ratio * newSpan + newSpan);
}

void CurveGraphicsTableWidget_EpochPrivate::panByPixels(double pixels)
{
    QRect cell;
    if (!hasRange() || !window.bActive || !barCell(cell) || pixels == 0.0)
        return;
    const double shift = pixels * (window.end - window.start) / double(cell.width());
    showWindow(window.start + shift, window.end + shift);
}

CurveGraphicsTableWidget_Epoch::CurveGraphicsTableWidget_Epoch(QWidget* parent)
    : QTableWidget(parent)
    , d(new CurveGraphicsTableWidget_EpochPrivate(this))
{
    setColumnCount(2);
    setColumnWidth(0, 80);
    setColumnWidth(1, 280);
    horizontalHeader()->setStretchLastSection(true);
    setRowCount(1);

    d->titleCheckBox = new QCheckBox(tr("Satellite"));
    d->titleCheckBox->setChecked(true);
    connect(d->titleCheckBox, &QCheckBox::clicked, this,
            &CurveGraphicsTableWidget_Epoch::onTitleCheck, Qt::UniqueConnection);
    HeadLabel* headLabel = new HeadLabel;

    setItem(0, 0, new QTableWidgetItem);
    setItem(0, 1, new QTableWidgetItem);
    setCellWidget(0, 0, d->titleCheckBox);
    setCellWidget(0, 1, headLabel);
}

CurveGraphicsTableWidget_Epoch::~CurveGraphicsTableWidget_Epoch() = default;

void CurveGraphicsTableWidget_Epoch::setResources(
    qint64 startTime, qint64 endTime, const QMap<QString, QList<stEpochDataSet>>& epochData,
    const QMap<QString, bool>& enabledMap, const QList<QString>& uncheckedNames,
    const QMap<QString, QList<QPair<qint64, qint64>>>& eraseMarks)
{
    // A zoomed window survives new data, fitted into the new range, so that a
    // host refreshing the table after each edit does not throw the user's
    // zoom away; the whole range stays the whole range.
    const EpochWindow previous = d->window;
    const bool bHadRange = d->hasRange();
    double oldStart = 0.0;
    double oldEnd = 0.0;
    d->shownWindow(oldStart, oldEnd);

    clearAll();
    d->startTime = startTime;
    d->endTime = endTime;
    if (d->bNavigation && previous.bActive) {
        double start = previous.start;
        double end = previous.end;
        if (fitEpochWindow(start, end, startTime, endTime)
            && (start > double(startTime) || end < double(endTime))) {
            d->window = EpochWindow{true, start, end};
        }
    }

    const bool bTitleChecked = d->titleCheckBox->isChecked();
    for (auto it = epochData.cbegin(); it != epochData.cend(); ++it) {
        const QString& name = it.key();
        const bool bEnabled = enabledMap.value(name, false);

        QCheckBox* checkBox = new QCheckBox(name);
        checkBox->setChecked(bTitleChecked && bEnabled && !uncheckedNames.contains(name));
        connect(checkBox, &QCheckBox::clicked, this,
                &CurveGraphicsTableWidget_Epoch::onItemCheck, Qt::UniqueConnection);

        // Every preloaded mark is an action of its own, so undo takes them
        // back one by one, newest (last name, last in list) first.
        QMap<int, QPair<qint64, qint64>> marks;
        const auto preloaded = eraseMarks.constFind(name);
        if (preloaded != eraseMarks.cend()) {
            for (const QPair<qint64, qint64>& mark : preloaded.value())
                marks.insert(d->eraseActionNum++, mark);
        }

        EpochLabel* label = new EpochLabel;
        label->setEpochData(startTime, endTime, it.value(), bEnabled, marks);
        label->setTimeWindow(d->window);

        const int row = rowCount();
        insertRow(row);
        QTableWidgetItem* nameItem = new QTableWidgetItem;
        QTableWidgetItem* barItem = new QTableWidgetItem;
        barItem->setData(Qt::UserRole, QVariant(name));
        setItem(row, 0, nameItem);
        setItem(row, 1, barItem);
        setCellWidget(row, 0, checkBox);
        setCellWidget(row, 1, label);
        d->labels.insert(name, label);
    }

    if (d->bNavigation && d->hasRange()) {
        double start = 0.0;
        double end = 0.0;
        d->shownWindow(start, end);
        if (!bHadRange || start != oldStart || end != oldEnd)
            d->emitWindow();
    }
}

void CurveGraphicsTableWidget_Epoch::clearAll()
{
    // Removing the rows hands their cell widgets to deleteLater(). That is
    // what keeps a host safe that calls setResources() from a slot of
    // sgStateliteSelection(): the check box that emitted it is still running.
    setRowCount(1);
    d->eraseActionNum = 0;
    d->labels.clear();
    d->startTime = 0;
    d->endTime = 0;
    // An empty table shows nothing to navigate, and reports no window.
    d->window = EpochWindow();
    d->bPanning = false;
}

void CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
    qint64 startTime, qint64 endTime, const QMap<QString, QList<stEpochDataSet>>& epochData,
    const QMap<QString, bool>& enabledMap, const QMap<QString, QPixmap*>& pixmaps)
{
    // One brush list and one empty mark map serve every pixmap.
    QList<QBrush> brushes;
    const QMap<int, QPair<qint64, qint64>> noMarks;
    const QPen defaultPen;
    for (auto it = epochData.cbegin(); it != epochData.cend(); ++it) {
        QPixmap* pixmap = pixmaps.value(it.key(), nullptr);
        if (!pixmap || pixmap->isNull())
            continue;
        makeEpochBrushes(it.value().size(), enabledMap.value(it.key(), false), brushes);
        QPainter painter(pixmap);
        paintEpochBars(&painter, nullptr, pixmap->rect(), startTime, endTime, it.value(), noMarks,
                       brushes, defaultPen, defaultPen);
    }
}

void CurveGraphicsTableWidget_Epoch::clearEraseMarkActions()
{
    if (d->eraseActionNum <= 0)
        return;
    for (EpochLabel* label : qAsConst(d->labels)) {
        label->clearEraseMarks();
        label->update();
    }
    d->eraseActionNum = 0;
    emit sgEraseMarksChanged();
}

int CurveGraphicsTableWidget_Epoch::eraseMarkActionNum() const
{
    return d->eraseActionNum;
}

void CurveGraphicsTableWidget_Epoch::undoEraseMarkAction()
{
    const int n = d->eraseActionNum;
    if (n < 1)
        return;
    for (EpochLabel* label : qAsConst(d->labels)) {
        label->removeEraseMark(n - 1);
        label->update();
    }
    d->eraseActionNum = n - 1;
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::getStateliteEraseMarks(
    QMap<QString, QList<stEpochDataSet>>& marks) const
{
    for (auto it = d->labels.cbegin(); it != d->labels.cend(); ++it) {
        QList<stEpochDataSet> sets;
        const QMap<int, QPair<qint64, qint64>>& labelMarks = it.value()->getEraseMarks();
        if (!labelMarks.isEmpty()) {
            stEpochDataSet set;
            set.ranges.reserve(labelMarks.size());
            for (const QPair<qint64, qint64>& mark : labelMarks)
                set.ranges.append(mark);
            sets.append(set);
        }
        marks.insert(it.key(), sets);
    }
}

void CurveGraphicsTableWidget_Epoch::getStateliteEnabled(QMap<QString, bool>& selection) const
{
    for (int row = 1; row < rowCount(); ++row) {
        if (const QCheckBox* box = qobject_cast<QCheckBox*>(cellWidget(row, 0)))
            selection.insert(box->text(), box->isChecked());
    }
}

void CurveGraphicsTableWidget_Epoch::mousePressEvent(QMouseEvent* event)
{
    // The middle button pans; the left button keeps marking.
    if (d->bNavigation && event->button() == Qt::MiddleButton) {
        d->bPanning = true;
        d->panLastX = event->pos().x();
        event->accept();
        return;
    }
    d->pressPos = event->pos();
    d->currentPos = d->pressPos;
    d->dragging = true;
}

void CurveGraphicsTableWidget_Epoch::mouseMoveEvent(QMouseEvent* event)
{
    if (d->bPanning) {
        const int x = event->pos().x();
        // Dragging to the right brings earlier epochs into view.
        d->panByPixels(double(d->panLastX - x));
        d->panLastX = x;
    }
    if (!d->dragging)
        return;
    d->currentPos = event->pos();
    setDragRectOnLabels(QRect(qMin(d->pressPos.x(), d->currentPos.x()),
                              qMin(d->pressPos.y(), d->currentPos.y()),
                              std::abs(d->currentPos.x() - d->pressPos.x()),
                              std::abs(d->currentPos.y() - d->pressPos.y())));
}

void CurveGraphicsTableWidget_Epoch::mouseReleaseEvent(QMouseEvent* event)
{
    if (d->bPanning && event->button() == Qt::MiddleButton) {
        d->bPanning = false;
        event->accept();
        return;
    }
    if (!d->dragging)
        return;
    setDragRectOnLabels(QRect());
    d->currentPos = event->pos();
    const int dx = std::abs(d->currentPos.x() - d->pressPos.x());
    const int dy = std::abs(d->currentPos.y() - d->pressPos.y());
    // A small wobble of the hand while clicking is not a drag.
    if (dx > 5 && dy > 5) {
        makeEraseMarks(QRect(qMin(d->pressPos.x(), d->currentPos.x()),
                             qMin(d->pressPos.y(), d->currentPos.y()), dx, dy));
    }
    d->dragging = false;
    update();
}

void CurveGraphicsTableWidget_Epoch::setDragRectOnLabels(const QRect& rect)
{
    for (EpochLabel* label : qAsConst(d->labels)) {
        label->setDragRect(rect);
        label->update();
    }
}

void CurveGraphicsTableWidget_Epoch::makeEraseMarks(const QRect& rect)
{
    const QWidget* head = qobject_cast<HeadLabel*>(cellWidget(0, 1));
    if (!head)
        return;
    qint64 t0 = 0;
    qint64 len = 0;
    if (!epochEraseInterval(rect, head->geometry(), d->startTime, d->endTime, d->window, t0, len))
        return;
    const int key = d->eraseActionNum;
    bool bMarked = false;
    for (EpochLabel* label : qAsConst(d->labels)) {
        if (label->geometry().intersects(rect)) {
            label->setEraseMark(key, qMakePair(t0, len));
            bMarked = true;
        }
    }
    if (!bMarked)
        return;
    d->eraseActionNum = key + 1;
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::contextMenuEvent(QContextMenuEvent* event)
{
    const QTableWidgetItem* cell = itemAt(event->pos());
    if (!cell)
        return;
    // Only the bar items of satellite rows carry a name; the header row and
    // the check box column must not match a satellite named "".
    const QVariant nameData = cell->data(Qt::UserRole);
    if (!nameData.isValid())
        return;
    const QString name = nameData.toString();
    const EpochLabel* label = d->labels.value(name, nullptr);
    if (!label)
        return;
    const QPointF p = QPointF(label->mapFromGlobal(event->globalPos()));
    if (label->eraseMarkKeyAt(p) < 0)
        return;

    d->menuSatellite = name;
    d->menuGlobalPos = event->globalPos();
    QMenu* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* action = new QAction(tr("Remove the rect for erase."), menu);
    menu->addAction(action);
    connect(action, &QAction::triggered, this,
            &CurveGraphicsTableWidget_Epoch::onActionRemoveEraseAction, Qt::UniqueConnection);
    // The table may be gone when the modal menu returns; nothing of it is
    // touched afterwards.
    menu->exec(event->globalPos());
}

void CurveGraphicsTableWidget_Epoch::onActionRemoveEraseAction()
{
    EpochLabel* label = d->labels.value(d->menuSatellite, nullptr);
    if (!label)
        return;
    label->removeEraseMarksAt(d->menuGlobalPos);
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::onTitleCheck()
{
    const bool bChecked = d->titleCheckBox->isChecked();
    // setChecked() does not emit clicked(), so the rows stay quiet and the
    // host hears one signal for the whole change.
    for (int row = 1; row < rowCount(); ++row) {
        if (QCheckBox* box = qobject_cast<QCheckBox*>(cellWidget(row, 0)))
            box->setChecked(bChecked);
    }
    emit sgStateliteSelection();
}

void CurveGraphicsTableWidget_Epoch::onItemCheck()
{
    const QCheckBox* box = qobject_cast<QCheckBox*>(sender());
    if (!box)
        return;
    if (d->labels.contains(box->text()))
        emit sgStateliteSelection();
}

void CurveGraphicsTableWidget_Epoch::setTimeNavigationEnabled(bool bEnabled)
{
    if (bEnabled == d->bNavigation)
        return;
    if (!bEnabled) {
        d->bPanning = false;
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
    double start = 0.0;
    double end = 0.0;
    d->shownWindow(start, end);
    tMin = d->toLinked(start);
    tMax = d->toLinked(end);
}

void CurveGraphicsTableWidget_Epoch::setTimeWindow(double tMin, double tMax)
{
    if (!d->bNavigation || !d->hasRange())
        return;
    if (!(std::isfinite(tMin) && std::isfinite(tMax) && tMin < tMax))
        return;
    d->showWindow(d->fromLinked(tMin), d->fromLinked(tMax));
}

void CurveGraphicsTableWidget_Epoch::resetTimeWindow()
{
    if (d->bNavigation)
        d->showWholeRange();
}

QColor CurveGraphicsTableWidget_Epoch::bandColor(int band, bool bEnabled)
{
    if (band < 0 || band > 0xfffe)
        return QColor();
    ensureEpochPalettes(quint16(band + 1));
    return (bEnabled ? epochColourPalette() : epochGreyPalette()).at(band);
}

int CurveGraphicsTableWidget_Epoch::barTop(int band)
{
    if (band < 0 || band > 0xfffe)
        return -1;
    return kEpochBarTop + kEpochBarPitch * band;
}

int CurveGraphicsTableWidget_Epoch::barHeight()
{
    return kEpochBarHeight;
}

void CurveGraphicsTableWidget_Epoch::wheelEvent(QWheelEvent* event)
{
    if (!d->bNavigation) {
        QTableWidget::wheelEvent(event);
        return;
    }
    const QPoint delta = event->angleDelta();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (modifiers & Qt::ControlModifier) {
        if (delta.y() != 0)
            d->zoomAt(event->position().x(), double(delta.y()) / 120.0);
        event->accept();
        return;
    }
    // Some platforms turn Shift+wheel into a horizontal wheel themselves.
    if ((modifiers & Qt::ShiftModifier) || (delta.x() != 0 && delta.y() == 0)) {
        const int notches = delta.y() != 0 ? delta.y() : delta.x();
        QRect cell;
        if (d->barCell(cell)) {
            // Turning the wheel away, or to the left, goes back in time, as
            // a scroll bar would.
            d->panByPixels(-double(notches) / 120.0 * kPanPerNotch * double(cell.width()));
        }
        event->accept();
        return;
    }
    QTableWidget::wheelEvent(event);
}

void CurveGraphicsTableWidget_Epoch::mouseDoubleClickEvent(QMouseEvent* event)
{
    QRect cell;
    if (d->bNavigation && event->button() == Qt::LeftButton && d->barCell(cell)
        && event->pos().x() >= cell.left() && event->pos().x() <= cell.right()) {
        d->showWholeRange();
        event->accept();
        return;
    }
    QTableWidget::mouseDoubleClickEvent(event);
}

void CurveGraphicsTableWidget_Epoch::keyPressEvent(QKeyEvent* event)
{
    if (d->bNavigation && event->key() == Qt::Key_Home
        && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        d->showWholeRange();
        event->accept();
        return;
    }
    QTableWidget::keyPressEvent(event);
}
