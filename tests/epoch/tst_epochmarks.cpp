// Drag-to-mark, the erase-mark context menu, undo and clear, driven by real
// mouse and context-menu events on a shown table.

// Mouse events go through the window system, as a user's do: a press over a
// bar reaches the label under it first and falls through to the viewport,
// and moves carry the pressed button.
#define QTEST_QPA_MOUSE_HANDLING
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "HeadLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QtTest>

using Marks = QMap<int, EpochPair>;

class tst_EpochMarks : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void dragToMark_data();
    void dragToMark();
    void dragOverRowsIsOneAction();
    void contextMenuRemoval();
    void clearAndHostileRanges();

private:
    EpochLabel* label(int row) const
    {
        return qobject_cast<EpochLabel*>(table->cellWidget(row, 1));
    }
    QRect head() const { return table->cellWidget(0, 1)->geometry(); }
    // A point on satellite row `row`, `dx` pixels right of the legend cell's
    // left edge and `dy` below the row's centre, in viewport coordinates.
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
    // Size the window so that the legend cell is 201 pixels wide: its
    // right() - left() of 200 then spans the range 0 to 1000. The stretched
    // last column never shrinks below its own size, so lower that first.
    table->horizontalHeader()->resizeSection(1, 100);
    table->resize(table->width() + 201 - head().width(), table->height());
    QTRY_COMPARE_WITH_TIMEOUT(head().width(), 201, 2000);
    QCOMPARE(label(1)->geometry().left(), head().left());
    QCOMPARE(label(1)->width(), 201);
}

void tst_EpochMarks::cleanup()
{
    QCOMPARE(menusAlive, 0);
    delete table;
    table = nullptr;
}

// Opens the context menu at `pos` (viewport coordinates) with a real event.
// The modal menu is driven from a timer: it reads the menu's one action and
// either chooses it with the keyboard or closes the menu. Returns the action
// text seen, empty when no menu opened.
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
        if (bTrigger) {
            menu->setActiveAction(menu->actions().first());
            QTest::keyClick(menu, Qt::Key_Return);
        } else {
            menu->close();
        }
    });
    driver.start();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, table->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(table->viewport(), &event);
    driver.stop();
    // The menu deletes itself once closed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!shown.isNull())
        ++menusAlive;
    return seen;
}

void tst_EpochMarks::dragToMark_data()
{
    QTest::addColumn<QPoint>("from"); // (dx, dy) from the legend's left, row 1's centre
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("bMarked");
    QTest::addColumn<EpochPair>("mark");

    QTest::newRow("50 right, 40 wide") << QPoint(90, -5) << QPoint(50, 5) << true
                                       << EpochPair(250, 200);
    QTest::newRow("20 left, 40 wide: clipped") << QPoint(20, 5) << QPoint(-20, -5) << true
                                               << EpochPair(0, 100);
    QTest::newRow("past the end: clipped") << QPoint(171, -5) << QPoint(201, 5) << true
                                           << EpochPair(855, 145);
    QTest::newRow("6 by 6 is a drag") << QPoint(10, 0) << QPoint(16, 6) << true
                                      << EpochPair(50, 30);
    QTest::newRow("5 high is no drag") << QPoint(10, 0) << QPoint(110, 5) << false
                                       << EpochPair();
    QTest::newRow("5 wide is no drag") << QPoint(10, -10) << QPoint(15, 10) << false
                                       << EpochPair();
    QTest::newRow("a click is no drag") << QPoint(10, 0) << QPoint(10, 0) << false
                                        << EpochPair();
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
    // While dragging every satellite row outlines the same rectangle. (A
    // move to the press position itself is never delivered.)
    const QRect outline = QRect(press, release).normalized().adjusted(0, 0, -1, -1);
    for (int row = 1; row <= 5 && press != release; ++row)
        QCOMPARE(label(row)->getDragRect(), outline);
    QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, release);
    for (int row = 1; row <= 5; ++row)
        QVERIFY(label(row)->getDragRect().isNull());

    QCOMPARE(spy.count(), bMarked ? 1 : 0);
    QCOMPARE(table->eraseMarkActionNum(), bMarked ? 1 : 0);
    QCOMPARE(label(1)->getEraseMarks(), (bMarked ? Marks{{0, mark}} : Marks{}));
    for (int row = 2; row <= 5; ++row)
        QVERIFY(label(row)->getEraseMarks().isEmpty());
    // The mouse never selects cells here.
    QCOMPARE(table->selectedItems(), selected);
}

void tst_EpochMarks::dragOverRowsIsOneAction()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(2, 10), at(4, 100));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(table->eraseMarkActionNum(), 1);
    const Marks expected{{0, {50, 450}}};
    for (int row = 1; row <= 5; ++row)
        QCOMPARE(label(row)->getEraseMarks(), (row >= 2 && row <= 4 ? expected : Marks{}));

    QImage image = table->grab().toImage();
    saveImage(image, QStringLiteral("table-marked"));

    QMap<QString, QList<stEpochDataSet>> read;
    table->getStateliteEraseMarks(read);
    QCOMPARE(read.value(QStringLiteral("G03")), QList<stEpochDataSet>{epochSet({{50, 450}})});
    QVERIFY(read.value(QStringLiteral("G01")).isEmpty());

    table->undoEraseMarkAction();
    QCOMPARE(spy.count(), 2);
    QCOMPARE(table->eraseMarkActionNum(), 0);
    for (int row = 1; row <= 5; ++row)
        QVERIFY(label(row)->getEraseMarks().isEmpty());
    table->undoEraseMarkAction();
    QCOMPARE(spy.count(), 2);
}

void tst_EpochMarks::contextMenuRemoval()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(2, 10), at(4, 100)); // action 0 on rows 2..4: x 10 to 100
    drag(at(2, 60, -8), at(2, 150, 8)); // action 1 on row 2: x 60 to 150

    // Nothing under the point, the legend row or the check box column: no menu.
    QCOMPARE(contextMenu(at(3, 150), true), QString());
    QCOMPARE(contextMenu(at(1, 50), true), QString());
    QCOMPARE(contextMenu(QPoint(head().left() + 50, head().center().y()), true), QString());
    QCOMPARE(contextMenu(at(3, -40), true), QString());
    QCOMPARE(spy.count(), 2);

    // Closing the menu without choosing removes nothing.
    QCOMPARE(contextMenu(at(3, 50), false), QStringLiteral("Remove the rect for erase."));
    QCOMPARE(label(3)->getEraseMarks().size(), 1);
    QCOMPARE(spy.count(), 2);

    // Removing row 3's mark keeps the action count; undo then takes the
    // other two marks of that action.
    QCOMPARE(contextMenu(at(3, 50), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(3)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 3);
    QCOMPARE(table->eraseMarkActionNum(), 2);

    // Both overlapping marks under the point go.
    QCOMPARE(label(2)->getEraseMarks().size(), 2);
    QCOMPARE(contextMenu(at(2, 80), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(2)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 4);
    QCOMPARE(table->eraseMarkActionNum(), 2);

    // Undo pops action 1 although no label holds it any more, then action 0.
    table->undoEraseMarkAction();
    QCOMPARE(spy.count(), 5);
    QCOMPARE(label(4)->getEraseMarks().size(), 1);
    table->undoEraseMarkAction();
    QCOMPARE(spy.count(), 6);
    QVERIFY(label(4)->getEraseMarks().isEmpty());
    QCOMPARE(table->eraseMarkActionNum(), 0);
}

void tst_EpochMarks::clearAndHostileRanges()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(1, 10), at(2, 50));
    drag(at(4, 10), at(5, 50));
    QCOMPARE(spy.count(), 2);
    table->clearEraseMarkActions();
    QCOMPARE(spy.count(), 3);
    QCOMPARE(table->eraseMarkActionNum(), 0);
    for (int row = 1; row <= 5; ++row)
        QVERIFY(label(row)->getEraseMarks().isEmpty());
    table->clearEraseMarkActions();
    QCOMPARE(spy.count(), 3);

    // Empty and inverted ranges mark nothing; the full qint64 range marks
    // without overflowing.
    const EpochData data = epochSatellites(5, 2);
    for (const EpochPair& range : {EpochPair(7, 7), EpochPair(1000, 0)}) {
        table->setResources(range.first, range.second, data, allEnabled(data), {}, {});
        drag(at(1, 10), at(3, 100));
        QCOMPARE(table->eraseMarkActionNum(), 0);
        QCOMPARE(contextMenu(at(1, 50), true), QString());
    }
    constexpr qint64 kMin = std::numeric_limits<qint64>::min();
    constexpr qint64 kMax = std::numeric_limits<qint64>::max();
    const QMap<QString, QList<EpochPair>> preload{
        {QStringLiteral("G01"), {{kMin, kMax}, {kMax, kMax}}}};
    table->setResources(kMin, kMax, data, allEnabled(data, false), {}, preload);
    QCOMPARE(spy.count(), 3);
    drag(at(1, 0), at(2, 200));
    QCOMPARE(table->eraseMarkActionNum(), 3);
    QCOMPARE(label(2)->getEraseMarks(), (Marks{{2, {kMin, kMax}}}));
    saveImage(table->grab().toImage(), QStringLiteral("table-full-range"));
    QCOMPARE(contextMenu(at(2, 100), true), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(2)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 5);
}

QTEST_MAIN(tst_EpochMarks)
#include "tst_epochmarks.moc"
