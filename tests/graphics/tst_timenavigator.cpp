// SPDX-License-Identifier: MIT
// One navigator for the plot and the epoch table: the same wheel, keys and
// double-click move both alike, and the plot never scrolls off its frame.
#include "graphicstestsupport.h"

#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"
#include "epoch/EpochTestSupport.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

namespace {

using Window = QPair<double, double>;

template <typename Widget>
Window windowOf(const Widget& widget)
{
    double tMin = 0.0;
    double tMax = 0.0;
    widget.getTimeWindow(tMin, tMax);
    return Window(tMin, tMax);
}

bool sameWindow(const Window& a, const Window& b)
{
    return std::abs(a.first - b.first) <= 1e-6 && std::abs(a.second - b.second) <= 1e-6;
}

void sendWheel(QWidget* viewport, QPointF pos, QPoint angle, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(pos, viewport->mapToGlobal(pos.toPoint()), QPoint(), angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &event);
}

// A plot of 0 .. 1000 ms sampled every millisecond and a table of epochs
// 0 .. 1000 counted in milliseconds: the same range and the same smallest
// window of four samples, linked in nothing but the input they get.
struct Pair
{
    Pair()
    {
        view.resize(500, 300);
        view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
        QVector<double> xs;
        QVector<double> ys;
        for (int i = 0; i <= 1000; ++i) {
            xs.append(i);
            ys.append(std::sin(i * 0.01));
        }
        view.getCurveScene()->addCurve(QStringLiteral("c"), gt::makeDataSet(xs, {ys}), true,
                                       Qt::red, ECurveShowCap_Line, true);
        view.setTimeNavigationEnabled(true);
        view.show();

        const EpochData data = epochSatellites(3, 1);
        table.setResources(0, 1000, data, allEnabled(data), {}, {});
        table.resize(500, 200);
        table.setTimeNavigationEnabled(true);
        table.show();
    }
    QRectF viewArea() const { return view.dataAreaInViewport(); }
    QRectF tableArea() const { return QRectF(table.cellWidget(0, 1)->geometry()); }
    // The viewport point at `share` of each widget's time axis.
    QPointF viewAt(double share) const
    {
        return QPointF(viewArea().left() + share * viewArea().width(), viewArea().center().y());
    }
    QPointF tableAt(double share) const
    {
        const QRect row = table.cellWidget(1, 1)->geometry();
        return QPointF(tableArea().left() + share * tableArea().width(), row.center().y());
    }

    CurveGraphicsView view;
    CurveGraphicsTableWidget_Epoch table;
};

} // namespace

class tst_TimeNavigator : public QObject
{
    Q_OBJECT
private slots:
    void sameWheelMovesBothAlike_data();
    void sameWheelMovesBothAlike();
    void sameKeysMoveBothAlike();
    void viewStaysOnItsFrame_data();
    void viewStaysOnItsFrame();
};

void tst_TimeNavigator::sameWheelMovesBothAlike_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("moves");
    const int ctrl = Qt::ControlModifier;
    const int shift = Qt::ShiftModifier;
    QTest::newRow("ctrl, vertical in") << QPoint(0, 120) << ctrl << true;
    QTest::newRow("ctrl, sideways dominates out") << QPoint(-200, 120) << ctrl << true;
    QTest::newRow("ctrl, half notch with a tilt") << QPoint(30, 60) << ctrl << true;
    QTest::newRow("shift, tie goes to vertical") << QPoint(120, -120) << shift << true;
    QTest::newRow("shift, sideways dominates") << QPoint(121, -120) << shift << true;
    QTest::newRow("plain, sideways dominates: pans") << QPoint(-121, 120) << 0 << true;
    QTest::newRow("plain, vertical dominates: not time") << QPoint(119, -120) << 0 << false;
    QTest::newRow("plain, tie: not time") << QPoint(-120, 120) << 0 << false;
}

void tst_TimeNavigator::sameWheelMovesBothAlike()
{
    QFETCH(QPoint, angle);
    QFETCH(int, modifiers);
    QFETCH(bool, moves);
    Pair pair;
    QVERIFY(QTest::qWaitForWindowExposed(&pair.table));
    const Window start(200.0, 600.0);
    pair.view.setTimeWindow(start.first, start.second);
    pair.table.setTimeWindow(start.first, start.second);
    QSignalSpy viewSpy(&pair.view, &CurveGraphicsView::sgTimeWindowChanged);
    QSignalSpy tableSpy(&pair.table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);

    // Three times the same event, at a quarter of each widget's time axis.
    for (int i = 0; i < 3; ++i) {
        sendWheel(pair.view.viewport(), pair.viewAt(0.25), angle,
                  Qt::KeyboardModifiers(modifiers));
        sendWheel(pair.table.viewport(), pair.tableAt(0.25), angle,
                  Qt::KeyboardModifiers(modifiers));
        const Window shownView = windowOf(pair.view);
        const Window shownTable = windowOf(pair.table);
        QVERIFY2(sameWindow(shownView, shownTable),
                 qPrintable(QStringLiteral("view %1..%2, table %3..%4")
                                .arg(shownView.first)
                                .arg(shownView.second)
                                .arg(shownTable.first)
                                .arg(shownTable.second)));
    }
    QCOMPARE(!sameWindow(windowOf(pair.view), start), moves);
    QCOMPARE(viewSpy.count(), moves ? 3 : 0);
    QCOMPARE(tableSpy.count(), viewSpy.count());
}

void tst_TimeNavigator::sameKeysMoveBothAlike()
{
    Pair pair;
    QVERIFY(QTest::qWaitForWindowExposed(&pair.table));
    pair.view.setTimeWindow(200.0, 600.0);
    pair.table.setTimeWindow(200.0, 600.0);
    const struct
    {
        int key;
        Window expected;
    } steps[] = {
        {Qt::Key_Right, {240.0, 640.0}},  // a tenth of the window later
        {Qt::Key_Left, {200.0, 600.0}},   // and back
        {Qt::Key_Plus, {240.0, 560.0}},   // 0.8 of it about its middle
        {Qt::Key_Minus, {200.0, 600.0}},  // and out again
        {Qt::Key_Home, {0.0, 1000.0}},    // the whole range
        {Qt::Key_Left, {0.0, 1000.0}},    // nothing to pan
    };
    for (const auto& step : steps) {
        QTest::keyClick(&pair.view, Qt::Key(step.key));
        QTest::keyClick(&pair.table, Qt::Key(step.key));
        QVERIFY2(sameWindow(windowOf(pair.view), step.expected), qPrintable(QString::number(step.key)));
        QVERIFY(sameWindow(windowOf(pair.table), step.expected));
    }
    // A left double-click in the time area also shows the whole range.
    pair.view.setTimeWindow(200.0, 600.0);
    pair.table.setTimeWindow(200.0, 600.0);
    QTest::mouseDClick(pair.view.viewport(), Qt::LeftButton, {}, pair.viewAt(0.5).toPoint());
    QTest::mouseDClick(pair.table.viewport(), Qt::LeftButton, {}, pair.tableAt(0.5).toPoint());
    QVERIFY(sameWindow(windowOf(pair.view), Window(0.0, 1000.0)));
    QVERIFY(sameWindow(windowOf(pair.table), Window(0.0, 1000.0)));
}

void tst_TimeNavigator::viewStaysOnItsFrame_data()
{
    QTest::addColumn<bool>("navigation");
    QTest::newRow("navigation off") << false;
    QTest::newRow("navigation on") << true;
}

// Once the fault: clicking the plot and pressing Left moved the labels 190
// pixels to the right, Up pushed the time axis out of view.
void tst_TimeNavigator::viewStaysOnItsFrame()
{
    QFETCH(bool, navigation);
    Pair pair;
    pair.view.setTimeNavigationEnabled(navigation);
    QVERIFY(QTest::qWaitForWindowExposed(&pair.view));
    pair.view.setFocus();
    const QImage before = pair.view.grab().toImage();
    const QRectF area = pair.viewArea();
    // Keys that scroll a graphics view; with navigation on only those that
    // are not time gestures.
    QList<Qt::Key> keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End};
    if (!navigation)
        keys << Qt::Key_Left << Qt::Key_Right << Qt::Key_Home;
    for (int round = 0; round < 4; ++round) {
        for (Qt::Key key : keys)
            QTest::keyClick(&pair.view, key);
    }
    // The scroll bars, had they a range, would be the last way to move.
    pair.view.horizontalScrollBar()->setValue(pair.view.horizontalScrollBar()->maximum());
    pair.view.verticalScrollBar()->setValue(pair.view.verticalScrollBar()->maximum());
    // Off, the wheel zooms Y (and is checked not to scroll elsewhere); on, a
    // sideways wheel pans time, and Home brings it back.
    if (navigation) {
        sendWheel(pair.view.viewport(), pair.viewAt(0.5), QPoint(120, 0), Qt::NoModifier);
        QTest::keyClick(&pair.view, Qt::Key_Home);
    }
    QCOMPARE(pair.viewArea(), area);
    const QImage after = pair.view.grab().toImage();
    if (after != before) {
        saveImage(before, QStringLiteral("frame-before"));
        saveImage(after, QStringLiteral("frame-after"));
    }
    QVERIFY(after == before);
}

QTEST_MAIN(tst_TimeNavigator)
#include "tst_timenavigator.moc"
