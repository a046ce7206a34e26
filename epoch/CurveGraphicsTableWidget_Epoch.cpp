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
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include <cstdlib>

CurveGraphicsTableWidget_Epoch::CurveGraphicsTableWidget_Epoch(QWidget* parent)
    : QTableWidget(parent)
{
    setColumnCount(2);
    setColumnWidth(0, 80);
    setColumnWidth(1, 280);
    horizontalHeader()->setStretchLastSection(true);
    setRowCount(1);

    titleCheckBox = new QCheckBox(tr("Satellite"));
    titleCheckBox->setChecked(true);
    connect(titleCheckBox, &QCheckBox::clicked, this,
            &CurveGraphicsTableWidget_Epoch::onTitleCheck, Qt::UniqueConnection);
    HeadLabel* headLabel = new HeadLabel;

    setItem(0, 0, new QTableWidgetItem);
    setItem(0, 1, new QTableWidgetItem);
    setCellWidget(0, 0, titleCheckBox);
    setCellWidget(0, 1, headLabel);
}

CurveGraphicsTableWidget_Epoch::~CurveGraphicsTableWidget_Epoch() = default;

void CurveGraphicsTableWidget_Epoch::setResources(
    qint64 startTime, qint64 endTime, const QMap<QString, QList<stEpochDataSet>>& epochData,
    const QMap<QString, bool>& enabledMap, const QList<QString>& uncheckedNames,
    const QMap<QString, QList<QPair<qint64, qint64>>>& eraseMarks)
{
    clearAll();
    this->startTime = startTime;
    this->endTime = endTime;
    if (epochData.isEmpty())
        return;

    const bool bTitleChecked = titleCheckBox->isChecked();
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
                marks.insert(eraseActionNum++, mark);
        }

        EpochLabel* label = new EpochLabel;
        label->setEpochData(startTime, endTime, it.value(), bEnabled, marks);

        const int row = rowCount();
        insertRow(row);
        QTableWidgetItem* nameItem = new QTableWidgetItem;
        QTableWidgetItem* barItem = new QTableWidgetItem;
        barItem->setData(Qt::UserRole, QVariant(name));
        setItem(row, 0, nameItem);
        setItem(row, 1, barItem);
        setCellWidget(row, 0, checkBox);
        setCellWidget(row, 1, label);
        labels.insert(name, label);
    }
}

void CurveGraphicsTableWidget_Epoch::clearAll()
{
    // Removing the rows hands their cell widgets to deleteLater(). That is
    // what keeps a host safe that calls setResources() from a slot of
    // sgStateliteSelection(): the check box that emitted it is still running.
    setRowCount(1);
    eraseActionNum = 0;
    labels.clear();
    startTime = 0;
    endTime = 0;
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
    if (eraseActionNum <= 0)
        return;
    for (EpochLabel* label : qAsConst(labels)) {
        label->clearEraseMarks();
        label->update();
    }
    eraseActionNum = 0;
    emit sgEraseMarksChanged();
}

int CurveGraphicsTableWidget_Epoch::eraseMarkActionNum() const
{
    return eraseActionNum;
}

void CurveGraphicsTableWidget_Epoch::undoEraseMarkAction()
{
    const int n = eraseActionNum;
    if (n < 1)
        return;
    for (EpochLabel* label : qAsConst(labels)) {
        label->removeEraseMark(n - 1);
        label->update();
    }
    eraseActionNum = n - 1;
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::getStateliteEraseMarks(
    QMap<QString, QList<stEpochDataSet>>& marks) const
{
    for (auto it = labels.cbegin(); it != labels.cend(); ++it) {
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
    pressPos = event->pos();
    currentPos = pressPos;
    dragging = true;
}

void CurveGraphicsTableWidget_Epoch::mouseMoveEvent(QMouseEvent* event)
{
    if (!dragging)
        return;
    currentPos = event->pos();
    setDragRectOnLabels(QRect(qMin(pressPos.x(), currentPos.x()),
                              qMin(pressPos.y(), currentPos.y()),
                              std::abs(currentPos.x() - pressPos.x()),
                              std::abs(currentPos.y() - pressPos.y())));
}

void CurveGraphicsTableWidget_Epoch::mouseReleaseEvent(QMouseEvent* event)
{
    if (!dragging)
        return;
    setDragRectOnLabels(QRect());
    currentPos = event->pos();
    const int dx = std::abs(currentPos.x() - pressPos.x());
    const int dy = std::abs(currentPos.y() - pressPos.y());
    // A small wobble of the hand while clicking is not a drag.
    if (dx > 5 && dy > 5) {
        makeEraseMarks(QRect(qMin(pressPos.x(), currentPos.x()),
                             qMin(pressPos.y(), currentPos.y()), dx, dy));
    }
    dragging = false;
    update();
}

void CurveGraphicsTableWidget_Epoch::setDragRectOnLabels(const QRect& rect)
{
    for (EpochLabel* label : qAsConst(labels)) {
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
    if (!epochEraseInterval(rect, head->geometry(), startTime, endTime, t0, len))
        return;
    const int key = eraseActionNum;
    bool bMarked = false;
    for (EpochLabel* label : qAsConst(labels)) {
        if (label->geometry().intersects(rect)) {
            label->setEraseMark(key, qMakePair(t0, len));
            bMarked = true;
        }
    }
    if (!bMarked)
        return;
    eraseActionNum = key + 1;
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
    const EpochLabel* label = labels.value(name, nullptr);
    if (!label)
        return;
    const QPointF p = QPointF(label->mapFromGlobal(event->globalPos()));
    if (label->eraseMarkKeyAt(p) < 0)
        return;

    menuSatellite = name;
    menuGlobalPos = event->globalPos();
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
    EpochLabel* label = labels.value(menuSatellite, nullptr);
    if (!label)
        return;
    label->removeEraseMarksAt(menuGlobalPos);
    emit sgEraseMarksChanged();
}

void CurveGraphicsTableWidget_Epoch::onTitleCheck()
{
    const bool bChecked = titleCheckBox->isChecked();
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
    if (labels.contains(box->text()))
        emit sgStateliteSelection();
}
