// SPDX-License-Identifier: MIT
#include "CurveGraphicsTableWidget_Epoch.h"

#include "CurveGraphicsTableWidget_Epoch_p.h"
#include "EpochBarAlignment_p.h"
#include "EpochBars_p.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "EpochTimeHeader_p.h"
#include "HeadLabel_p.h"

#include <QAction>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include <cstdlib>

void CurveGraphicsTableWidget_EpochPrivate::showMarks()
{
    for (auto it = labels.cbegin(); it != labels.cend(); ++it) {
        it.value()->setEraseMarks(model.marksOf(it.key()));
        it.value()->update();
    }
}

void CurveGraphicsTableWidget_EpochPrivate::showEventMarks()
{
    for (auto it = labels.cbegin(); it != labels.cend(); ++it) {
        it.value()->setEventMarks(model.eventMarksOf(it.key()));
        it.value()->setEventColors(eventColors);
        it.value()->update();
    }
}

CurveGraphicsTableWidget_Epoch::CurveGraphicsTableWidget_Epoch(QWidget* parent)
    : QTableWidget(parent)
    , d(new CurveGraphicsTableWidget_EpochPrivate(this))
{
    // The header that can also show the time axis; until it is asked to, it
    // is the plain header the table had.
    d->header = new EpochTimeHeader(d.get(), horizontalHeader());
    setHorizontalHeader(d->header);
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

    // Left and right drags mark epochs; the middle button pans.
    d->navigator = new TimeNavigator(this, d.get(), Qt::MiddleButton);
}

CurveGraphicsTableWidget_Epoch::~CurveGraphicsTableWidget_Epoch()
{
    // Both look at the private data, which goes before the Qt children do.
    delete d->alignment;
    delete d->navigator;
}

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
    const TimeWindow oldShown = d->shownWindow();

    clearAll();
    d->startTime = startTime;
    d->endTime = endTime;
    if (d->bNavigation && previous.bActive)
        d->fitted(TimeWindow(previous.start, previous.end), d->window);

    const bool bTitleChecked = d->titleCheckBox->isChecked();
    for (auto it = epochData.cbegin(); it != epochData.cend(); ++it) {
        const QString& name = it.key();
        const bool bEnabled = enabledMap.value(name, false);
        const bool bChecked = bTitleChecked && bEnabled && !uncheckedNames.contains(name);
        d->model.addSatellite(name, bChecked, eraseMarks.value(name));

        QCheckBox* checkBox = new QCheckBox(name);
        checkBox->setChecked(bChecked);
        // The selection is the model's; the box follows it and reports the
        // user's clicks there, under the satellite's name.
        connect(checkBox, &QCheckBox::toggled, this,
                [this, name](bool bOn) { d->model.setChecked(name, bOn); });
        connect(checkBox, &QCheckBox::clicked, this,
                &CurveGraphicsTableWidget_Epoch::onItemCheck, Qt::UniqueConnection);

        EpochLabel* label = new EpochLabel;
        label->setEpochData(startTime, endTime, it.value(), bEnabled, d->model.marksOf(name));
        label->setTimeWindow(d->window);
        label->setEventMarks(d->model.eventMarksOf(name));
        label->setEventColors(d->eventColors);

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
        d->checkBoxes.insert(name, checkBox);
    }
    d->pushWindow();

    if (d->bNavigation && d->hasRange()) {
        if (!bHadRange || d->shownWindow() != oldShown)
            d->emitWindow();
    }
}

void CurveGraphicsTableWidget_Epoch::clearAll()
{
    // Removing the rows hands their cell widgets to deleteLater(). That is
    // what keeps a host safe that calls setResources() from a slot of
    // sgStateliteSelection(): the check box that emitted it is still running.
    setRowCount(1);
    d->model.reset();
    d->labels.clear();
    d->checkBoxes.clear();
    d->startTime = 0;
    d->endTime = 0;
    // An empty table shows nothing to navigate, and reports no window.
    d->window = EpochWindow();
    d->navigator->cancelPan();
    d->pushWindow();
}

void CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
    qint64 startTime, qint64 endTime, const QMap<QString, QList<stEpochDataSet>>& epochData,
    const QMap<QString, bool>& enabledMap, const QMap<QString, QPixmap*>& pixmaps)
{
    // Without event marks nothing but the bars is drawn.
    PaintAllLabelsToDevice(startTime, endTime, epochData, enabledMap, pixmaps, {}, {});
}

void CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
    qint64 startTime, qint64 endTime, const QMap<QString, QList<stEpochDataSet>>& epochData,
    const QMap<QString, bool>& enabledMap, const QMap<QString, QPixmap*>& pixmaps,
    const QMap<QString, QList<QVector<EventMark>>>& eventMarks,
    const QMap<int, QColor>& eventKindColors)
{
    // The same content as the table's labels fill, marks and all, so that a
    // pixmap shows a row as the table does.
    EventMarkPalette colors;
    for (auto it = eventKindColors.cbegin(); it != eventKindColors.cend(); ++it)
        colors.setColor(it.key(), it.value());
    EpochBarsContent content;
    content.startTime = startTime;
    content.endTime = endTime;
    content.eventColors = colors;
    for (auto it = epochData.cbegin(); it != epochData.cend(); ++it) {
        QPixmap* pixmap = pixmaps.value(it.key(), nullptr);
        if (!pixmap || pixmap->isNull())
            continue;
        makeEpochBrushes(it.value().size(), enabledMap.value(it.key(), false), content.brushes);
        content.dataSets = it.value();
        content.eventMarks = eventMarks.value(it.key());
        QPainter painter(pixmap);
        paintEpochBars(&painter, pixmap->rect(), content);
    }
}

void CurveGraphicsTableWidget_Epoch::setEventMarks(
    const QMap<QString, QList<QVector<EventMark>>>& marks)
{
    if (d->model.setEventMarks(marks))
        d->showEventMarks();
}

QMap<QString, QList<QVector<EventMark>>> CurveGraphicsTableWidget_Epoch::getEventMarks() const
{
    return d->model.eventMarks();
}

void CurveGraphicsTableWidget_Epoch::setEventKindColor(int kind, const QColor& color)
{
    if (d->eventColors.setColor(kind, color))
        d->showEventMarks();
}

QColor CurveGraphicsTableWidget_Epoch::getEventKindColor(int kind) const
{
    return d->eventColors.color(kind);
}

void CurveGraphicsTableWidget_Epoch::clearEraseMarkActions()
{
    if (!d->model.clear())
        return;
    d->showMarks();
    emit sgEraseMarksChanged();
}

int CurveGraphicsTableWidget_Epoch::eraseMarkActionNum() const
{
    return d->model.actionCount();
}

void CurveGraphicsTableWidget_Epoch::undoEraseMarkAction()
{
    if (!d->model.undo())
        return;
    d->showMarks();
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::getStateliteEraseMarks(
    QMap<QString, QList<stEpochDataSet>>& marks) const
{
    d->model.readMarks(marks);
}

void CurveGraphicsTableWidget_Epoch::getStateliteEnabled(QMap<QString, bool>& selection) const
{
    d->model.readSelection(selection);
}

void CurveGraphicsTableWidget_Epoch::mousePressEvent(QMouseEvent* event)
{
    d->pressPos = event->pos();
    d->currentPos = d->pressPos;
    d->dragging = true;
}

void CurveGraphicsTableWidget_Epoch::mouseMoveEvent(QMouseEvent* event)
{
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
    // The rectangle's height picks the satellites, its width the interval.
    QStringList touched;
    for (auto it = d->labels.cbegin(); it != d->labels.cend(); ++it) {
        if (it.value()->geometry().intersects(rect))
            touched.append(it.key());
    }
    if (!d->model.addAction(touched, qMakePair(t0, len)))
        return;
    // The release that made the action repaints every label.
    for (const QString& name : qAsConst(touched))
        d->labels.value(name)->setEraseMarks(d->model.marksOf(name));
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
    // Overlapping marks under the point all go, not only the first.
    const QPointF p = QPointF(label->mapFromGlobal(d->menuGlobalPos));
    d->model.removeMarks(d->menuSatellite, label->eraseMarkKeysAt(p));
    label->setEraseMarks(d->model.marksOf(d->menuSatellite));
    label->update();
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::onTitleCheck()
{
    const bool bChecked = d->titleCheckBox->isChecked();
    d->model.setAllChecked(bChecked);
    // setChecked() does not emit clicked(), so the rows stay quiet and the
    // host hears one signal for the whole change.
    for (QCheckBox* box : qAsConst(d->checkBoxes))
        box->setChecked(bChecked);
    emit sgStateliteSelection();
}

void CurveGraphicsTableWidget_Epoch::onItemCheck()
{
    const QObject* box = sender();
    for (auto it = d->checkBoxes.cbegin(); it != d->checkBoxes.cend(); ++it) {
        if (it.value() == box) {
            emit sgStateliteSelection();
            return;
        }
    }
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

// The time gestures are the navigator's, which sees every event first; these
// handlers are what is left to the table.

void CurveGraphicsTableWidget_Epoch::wheelEvent(QWheelEvent* event)
{
    QTableWidget::wheelEvent(event);
}

void CurveGraphicsTableWidget_Epoch::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTableWidget::mouseDoubleClickEvent(event);
}

void CurveGraphicsTableWidget_Epoch::keyPressEvent(QKeyEvent* event)
{
    QTableWidget::keyPressEvent(event);
}
