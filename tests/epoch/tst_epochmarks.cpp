// Drag-to-mark, the erase-mark context menu, undo and clear, driven by real
// mouse and context-menu events on a shown table.

// Mouse events go through the window system as a user's do: a press over a
// bar reaches the label first and falls through to the viewport, and moves
// carry the pressed button.
#define QTEST_QPA_MOUSE_HANDLING

#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTimer>
#include <QtTest>

class tst_EpochMarks : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void dragToMark_data();
    void dragToMark();
    void dragOverRowsUndoAndMenu();
    void clearAndHostileRanges();

private:
    EpochLabel* label(int row) const
    {
        return qobject_cast<EpochLabel*>(table->cellWidget(row, 1));
    }
    QRect head() const { return table->cellWidget(0, 1)->geometry(); }
    // Viewport point `dx` right of the legend's left edge, `dy` below the
    // centre of satellite row `row`.
    QPoint at(int row, int dx, int dy = 0) const
    {
        return QPoint(head().left() + dx, label(row)->geometry().center().y() + dy);
    }
    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(table->viewport(), Qt::LeftButton, {}, from);
        QTest::mouseMove(table->viewport(), to);
        QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, to);
    }
    QString contextMenu(const QPoint& pos, bool bTrigger);

    CurveGraphicsTableWidget_Epoch* table = nullptr;
    int menusAlive = 0; // menus still there after they were closed
};

void tst_EpochMarks::init()
{
    table = new CurveGraphicsTableWidget_Epoch(nullptr);
    const EpochData data = epochSatellites(5, 2);
    table->setResources(0, 1000, data, allEnabled(data), {}, {});
    table->resize(400, 260);
    table->show();
    QVERIFY(QTest::qWaitForWindowExposed(table));
    // A legend cell 201 pixels wide: right() - left() = 200 spans 0 to 1000.
    // The stretched column never shrinks below its own size: lower that first.
    table->horizontalHeader()->resizeSection(1, 100);
    table->resize(table->width() + 201 - head().width(), table->height());
    QTRY_COMPARE_WITH_TIMEOUT(head().width(), 201, 2000);
    QCOMPARE(label(1)->geometry().left(), head().left());
}

void tst_EpochMarks::cleanup()
{
    QCOMPARE(menusAlive, 0);
    delete table;
}

// Opens the context menu at `pos` (viewport) with a real event. A timer
// drives the modal menu: it reads its one action, then chooses it with the
// keyboard or closes the menu. Returns the text seen, empty without a menu.
QString tst_EpochMarks::contextMenu(const QPoint& pos, bool bTrigger)
{
    QString seen;
    QPointer<QMenu> shown;
    QTimer driver;
    driver.setInterval(5);
    connect(&driver, &QTimer::timeout, this, [&] {
        QMenu* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        driver.stop();
        shown = menu;
        QCOMPARE(menu->actions().size(), 1);
        seen = menu->actions().first()->text();
        menu->setActiveAction(menu->actions().first());
        if (bTrigger)
            QTest::keyClick(menu, Qt::Key_Return);
        else
            menu->close();
    });
    driver.start();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, table->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(table->viewport(), &event);
    driver.stop();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    menusAlive += shown.isNull() ? 0 : 1; // the menu deletes itself on close
    return seen;
}

void tst_EpochMarks::dragToMark_data()
{
    QTest::addColumn<QPoint>("from"); // (dx, dy) from at(1, 0)
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("bMarked");
    QTest::addColumn<EpochPair>("mark");

    const auto row = [](const char* name, QPoint from, QPoint to, EpochPair mark = {}) {
        QTest::newRow(name) << from << to << (mark != EpochPair()) << mark;
    };
    row("50 right, 40 wide", {90, -5}, {50, 5}, {250, 200});
    row("20 left, 40 wide: clipped", {20, 5}, {-20, -5}, {0, 100});
    row("past the end: clipped", {171, -5}, {201, 5}, {855, 145});
    row("6 by 6 is a drag", {10, 0}, {16, 6}, {50, 30});
    row("5 high is no drag", {10, 0}, {110, 5});
    row("5 wide is no drag", {10, -10}, {15, 10});
    row("a click is no drag", {10, 0}, {10, 0});
}

void tst_EpochMarks::dragToMark()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(bool, bMarked);
    QFETCH(EpochPair, mark);

    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    const QList<QTableWidgetItem*> selected = table->selectedItems();
    const QPoint press = at(1, from.x(), from.y());
    const QPoint release = at(1, to.x(), to.y());
    QTest::mousePress(table->viewport(), Qt::LeftButton, {}, press);
    QTest::mouseMove(table->viewport(), release);
    // Every row outlines the drag (a move onto the press point never comes).
    const QRect outline = QRect(press, release).normalized().adjusted(0, 0, -1, -1);
    for (int row = 1; row <= 5 && press != release; ++row)
        QCOMPARE(label(row)->getDragRect(), outline);
    QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, release);
    for (int row = 1; row <= 5; ++row)
        QVERIFY(label(row)->getDragRect().isNull());

    QCOMPARE(spy.count(), bMarked ? 1 : 0);
    QCOMPARE(table->eraseMarkActionNum(), bMarked ? 1 : 0);
    QCOMPARE(label(1)->getEraseMarks(), (bMarked ? EpochMarks{{0, mark}} : EpochMarks{}));
    for (int row = 2; row <= 5; ++row)
        QVERIFY(label(row)->getEraseMarks().isEmpty());
    QCOMPARE(table->selectedItems(), selected); // the mouse never selects cells
}

void tst_EpochMarks::dragOverRowsUndoAndMenu()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(2, 10), at(4, 100)); // action 0: rows 2 to 4, epochs 50 to 500
    QCOMPARE(spy.count(), 1);
    QCOMPARE(table->eraseMarkActionNum(), 1);
    for (int row = 1; row <= 5; ++row) {
        QCOMPARE(label(row)->getEraseMarks(),
                 (row >= 2 && row <= 4 ? EpochMarks{{0, {50, 450}}} : EpochMarks{}));
    }
    drag(at(2, 60, -8), at(2, 150, 8)); // action 1: row 2, overlapping
    saveImage(table->grab().toImage(), QStringLiteral("table-marked"));
    QCOMPARE(spy.count(), 2);

    // No mark under the point, the legend row, the check box column: no menu.
    for (const QPoint& p : {at(3, 150), at(1, 50), at(3, -40),
                            QPoint(head().left() + 50, head().center().y())})
        QCOMPARE(contextMenu(p, true), QString());
    // Closing the menu removes nothing.
    QCOMPARE(contextMenu(at(3, 50), false), QStringLiteral("Remove the rect for erase."));
    QCOMPARE(label(3)->getEraseMarks().size(), 1);
    QCOMPARE(spy.count(), 2);

    // Removing row 3's mark keeps the action count; both overlapping marks
    // of row 2 go at once.
    QCOMPARE(contextMenu(at(3, 50), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(3)->getEraseMarks().isEmpty());
    QCOMPARE(contextMenu(at(2, 80), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(2)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 4);
    QCOMPARE(table->eraseMarkActionNum(), 2);

    // Undo pops action 1 although no label holds it any more, then action 0
    // from every row at once; each undo signals once.
    table->undoEraseMarkAction();
    QCOMPARE(label(4)->getEraseMarks().size(), 1);
    QCOMPARE(spy.count(), 5);
    table->undoEraseMarkAction();
    QVERIFY(label(4)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 6);
    QCOMPARE(table->eraseMarkActionNum(), 0);
}

void tst_EpochMarks::clearAndHostileRanges()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(1, 10), at(2, 50));
    drag(at(4, 10), at(5, 50));
    table->clearEraseMarkActions();
    table->clearEraseMarkActions(); // nothing left: silent
    QCOMPARE(spy.count(), 3);
    QCOMPARE(table->eraseMarkActionNum(), 0);
    for (int row = 1; row <= 5; ++row)
        QVERIFY(label(row)->getEraseMarks().isEmpty());

    // Empty and inverted ranges mark nothing and offer no menu.
    const EpochData data = epochSatellites(5, 2);
    const QMap<QString, QList<EpochPair>> preload{{QStringLiteral("G01"), {{0, 1000}}}};
    for (const EpochPair& range : {EpochPair(7, 7), EpochPair(1000, 0)}) {
        table->setResources(range.first, range.second, data, allEnabled(data), {}, preload);
        drag(at(1, 10), at(3, 100));
        QCOMPARE(table->eraseMarkActionNum(), 1);
        QCOMPARE(contextMenu(at(1, 50), true), QString());
    }
    // The full qint64 range marks, and unmarks, without overflowing.
    table->setResources(kMin, kMax, data, allEnabled(data, false), {},
                        {{QStringLiteral("G01"), {{kMin, kMax}, {kMax, kMax}}}});
    QCOMPARE(spy.count(), 3);
    drag(at(1, 0), at(2, 200));
    QCOMPARE(table->eraseMarkActionNum(), 3);
    QCOMPARE(label(2)->getEraseMarks(), (EpochMarks{{2, {kMin, kMax}}}));
    saveImage(table->grab().toImage(), QStringLiteral("table-full-range"));
    QCOMPARE(contextMenu(at(2, 100), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(2)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 5);
}

QTEST_MAIN(tst_EpochMarks)
#include "tst_epochmarks.moc"
