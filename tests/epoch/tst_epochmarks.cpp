// SPDX-License-Identifier: MIT
// Drag-to-mark and the erase-mark context menu, driven by real
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
    void dragOverRowsAndMenu();

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
    QString contextMenu(const QPoint& pos);

    CurveGraphicsTableWidget_Epoch* table = nullptr;
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
}

void tst_EpochMarks::cleanup()
{
    delete table;
}

// Opens the context menu at `pos` (viewport) with a real event. A timer
// drives the modal menu: it reads its one action, then chooses it with the
// keyboard. Returns the text seen, empty without a menu.
QString tst_EpochMarks::contextMenu(const QPoint& pos)
{
    QString seen;
    QTimer driver;
    driver.setInterval(5);
    connect(&driver, &QTimer::timeout, this, [&] {
        QMenu* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        driver.stop();
        QCOMPARE(menu->actions().size(), 1);
        seen = menu->actions().first()->text();
        menu->setActiveAction(menu->actions().first());
        QTest::keyClick(menu, Qt::Key_Return);
    });
    driver.start();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, table->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(table->viewport(), &event);
    driver.stop();
    return seen;
}

void tst_EpochMarks::dragToMark_data()
{
    QTest::addColumn<QPoint>("from"); // (dx, dy) from at(1, 0)
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<EpochPair>("mark"); // none: (0, 0)

    const auto row = [](const char* name, QPoint from, QPoint to, EpochPair mark = {}) {
        QTest::newRow(name) << from << to << mark;
    };
    row("50 right, 40 wide", {90, -5}, {50, 5}, {250, 200});
    row("20 left, 40 wide: clipped", {20, 5}, {-20, -5}, {0, 100});
    row("5 high is no drag", {10, 0}, {110, 5});
}

void tst_EpochMarks::dragToMark()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(EpochPair, mark);
    const bool bMarked = mark != EpochPair();

    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    const QPoint press = at(1, from.x(), from.y());
    const QPoint release = at(1, to.x(), to.y());
    QTest::mousePress(table->viewport(), Qt::LeftButton, {}, press);
    QTest::mouseMove(table->viewport(), release);
    // Every row outlines the drag.
    const QRect outline(QPoint(qMin(press.x(), release.x()), qMin(press.y(), release.y())),
                        QSize(qAbs(release.x() - press.x()), qAbs(release.y() - press.y())));
    for (int row = 1; row <= 5; ++row)
        QCOMPARE(label(row)->getDragRect(), outline);
    QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, release);
    QVERIFY(label(3)->getDragRect().isNull());

    QCOMPARE(spy.count(), bMarked ? 1 : 0);
    QCOMPARE(label(1)->getEraseMarks(), (bMarked ? EpochMarks{{0, mark}} : EpochMarks{}));
}

void tst_EpochMarks::dragOverRowsAndMenu()
{
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    drag(at(2, 10), at(4, 100)); // action 0: rows 2 to 4, epochs 50 to 500
    for (int row = 1; row <= 5; ++row) {
        QCOMPARE(label(row)->getEraseMarks(),
                 (row >= 2 && row <= 4 ? EpochMarks{{0, {50, 450}}} : EpochMarks{}));
    }
    drag(at(2, 60, -8), at(2, 150, 8)); // action 1: row 2, overlapping

    // Removing row 3's mark keeps the action count; both overlapping marks
    // of row 2 go at once.
    QCOMPARE(contextMenu(at(3, 50)), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(3)->getEraseMarks().isEmpty());
    QCOMPARE(contextMenu(at(2, 80)), QStringLiteral("Remove the rect for erase."));
    QVERIFY(label(2)->getEraseMarks().isEmpty());
    QCOMPARE(spy.count(), 4);
    QCOMPARE(table->eraseMarkActionNum(), 2);
}

QTEST_MAIN(tst_EpochMarks)
#include "tst_epochmarks.moc"
