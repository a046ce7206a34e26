// SPDX-License-Identifier: MIT
// The curve view's optional extras: zooming and panning time with wheel,
// drag and keys, linking with the epoch table, round time ticks and the
// sample read-out under the mouse.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"
#include "TimeTicks_p.h"

#include <QToolTip>
#include <QWheelEvent>

#include <memory>

using Window = QPair<double, double>;

namespace {

// 2026/01/01 10:00:00 GPST; one hour of samples a second apart.
const double kT0 = 1767261600000.0;
const int kSamples = 3601;
const double kHourMs = 3600000.0;

Window windowOf(const CurveGraphicsView& view)
{
    Window w;
    view.getTimeWindow(w.first, w.second);
    return w;
}

Window areaOf(const Curve_Coord_XY* coord)
{
    double xMin, xMax, yMin, yMax;
    coord->getArea(xMin, xMax, yMin, yMax);
    return {xMin, xMax};
}

// Windows come out of floating-point steps on times near 1.8e12 ms: equal
// to a millisecond.
bool near(double a, double b)
{
    return qAbs(a - b) <= 1.0;
}

#define COMPARE_WINDOW(actual, expected)                                                    \
    QVERIFY2(near((actual).first, (expected).first) && near((actual).second, (expected).second), \
             qPrintable(QStringLiteral("%1 .. %2 instead of %3 .. %4")                       \
                            .arg((actual).first, 0, 'f', 3).arg((actual).second, 0, 'f', 3)  \
                            .arg((expected).first, 0, 'f', 3)                                \
                            .arg((expected).second, 0, 'f', 3)))

struct Plot
{
    explicit Plot(int samples = kSamples, double t0 = kT0, double step = 1000.0)
    {
        gt::makeBare(view);
        coord = new Curve_Coord_XY;
        view.getCurveScene()->setCoord(coord, true);
        QVector<double> xs, ys;
        for (int i = 0; i < samples; ++i) {
            xs.append(t0 + i * step);
            ys.append(std::sin(i * 0.01));
        }
        view.getCurveScene()->addCurve("a", gt::makeDataSet(xs, {ys}), true, Qt::blue,
                                       ECurveShowCap_Line, true);
        view.resize(800, 540);
        view.setCurvesPosToVerticalZero();
    }
    CurveGraphicsItem_Coord_PXPY* frame()
    {
        return gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
    }
    QRectF dataArea()
    {
        return view.viewportTransform().mapRect(
            frame()->mapRectToScene(frame()->getDataRect()));
    }
    // The time shown at viewport column x.
    double timeAt(double x)
    {
        const Window w = areaOf(coord);
        const QRectF area = dataArea();
        return w.first + (x - area.left()) / area.width() * (w.second - w.first);
    }
    QPoint at(double fraction, double yFraction = 0.5)
    {
        const QRectF area = dataArea();
        return QPointF(area.left() + fraction * area.width(),
                       area.top() + yFraction * area.height()).toPoint();
    }
    bool wheel(QPoint pos, QPoint angle, Qt::KeyboardModifiers modifiers)
    {
        QWheelEvent event(pos, view.viewport()->mapToGlobal(pos), QPoint(), angle, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
        return event.isAccepted();
    }
    void mouse(QEvent::Type type, QPoint pos, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, QPointF(pos), QPointF(view.viewport()->mapToGlobal(pos)), button,
                          buttons, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }
    void drag(QPoint from, QPoint to)
    {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }

    CurveGraphicsView view;
    Curve_Coord_XY* coord = nullptr;
};

} // namespace

class tst_CurveViewNavigation : public QObject
{
    Q_OBJECT
private slots:
    void offByDefault();
    void zoomKeepsTimeUnderCursor_data();
    void zoomKeepsTimeUnderCursor();
    void panAndReset_data();
    void panAndReset();
    void plainWheelAndSelectionKeepWindow();
    void linkedWithEpochTable();
    void roundTicks_data();
    void roundTicks();
    void hoverFindsNearestCurve_data();
    void hoverFindsNearestCurve();
    void hoverSignalsAndToolTip();
};

void tst_CurveViewNavigation::offByDefault()
{
    Plot plot;
    for (const char* name : {"timeNavigationEnabled", "roundTimeTicks", "hoverReadOutEnabled",
                             "hoverToolTip"}) {
        QCOMPARE(plot.view.property(name), QVariant(false));
    }
    QSignalSpy spy(&plot.view, &CurveGraphicsView::sgTimeWindowChanged);
    const Window whole(kT0, kT0 + kHourMs);
    // Ctrl+wheel, a drag and the slots leave time alone; the wheel zooms Y
    // and is left for the parent, as always.
    QVERIFY(!plot.wheel(plot.at(0.5), {0, 120}, Qt::ControlModifier));
    plot.drag(plot.at(0.5), plot.at(0.2));
    plot.view.setTimeWindow(kT0, kT0 + 60000.0);
    QTest::keyClick(&plot.view, Qt::Key_Home);
    COMPARE_WINDOW(areaOf(plot.coord), whole);
    COMPARE_WINDOW(windowOf(plot.view), whole);
    double yMin, yMax, xMin, xMax;
    plot.coord->getArea(xMin, xMax, yMin, yMax);
    QVERIFY(yMax > 1.14 && yMax < 1.16);
    QCOMPARE(spy.count(), 0);
    // Switched on, windows that are no windows are refused; switching off
    // without navigating emits nothing either.
    QVERIFY(plot.view.setProperty("timeNavigationEnabled", true));
    const double inf = std::numeric_limits<double>::infinity();
    for (const Window& bad : {Window(gt::NaN, kT0 + 1000.0), Window(kT0, kT0),
                              Window(kT0 + 2000.0, kT0 + 1000.0), Window(-inf, inf)}) {
        plot.view.setTimeWindow(bad.first, bad.second);
    }
    plot.view.setTimeNavigationEnabled(false);
    QCOMPARE(spy.count(), 0);
    COMPARE_WINDOW(areaOf(plot.coord), whole);

    // Without curves there is nothing to navigate or to find.
    CurveGraphicsView empty;
    empty.setTimeNavigationEnabled(true);
    empty.setHoverReadOutEnabled(true);
    QSignalSpy emptySpy(&empty, &CurveGraphicsView::sgTimeWindowChanged);
    empty.setTimeWindow(0.0, 1000.0);
    QWheelEvent event(QPointF(50, 50), QPointF(50, 50), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(empty.viewport(), &event);
    CurveGraphicsView::HoverSample sample;
    QVERIFY(!empty.hoverSampleAt(QPoint(50, 50), sample));
    QCOMPARE(windowOf(empty), Window(0.0, 0.0));
    QCOMPARE(emptySpy.count(), 0);
}

void tst_CurveViewNavigation::zoomKeepsTimeUnderCursor_data()
{
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QVector<int>>("notches");
    QTest::addColumn<double>("span");
    QTest::addColumn<int>("changes");
    QTest::newRow("in at the middle") << 0.5 << QVector<int>{120} << 0.8 * kHourMs << 1;
    QTest::newRow("in near the left") << 0.1 << QVector<int>{240} << 0.64 * kHourMs << 1;
    QTest::newRow("in then out at the right")
        << 0.9 << QVector<int>{360, -120} << 0.64 * kHourMs << 2;
    QTest::newRow("half notches") << 0.3 << QVector<int>{60, 60} << 0.8 * kHourMs << 2;
    // 0.8^30 of an hour is still above 4 s; the 31st notch stops at 4 s and
    // the nine after it change nothing.
    QTest::newRow("down to four samples") << 0.5 << QVector<int>(40, 120) << 4000.0 << 31;
}

void tst_CurveViewNavigation::zoomKeepsTimeUnderCursor()
{
    QFETCH(double, fraction);
    QFETCH(QVector<int>, notches);
    QFETCH(double, span);
    QFETCH(int, changes);
    Plot plot;
    plot.view.setTimeNavigationEnabled(true);
    QSignalSpy spy(&plot.view, &CurveGraphicsView::sgTimeWindowChanged);
    const QPoint cursor = plot.at(fraction);
    const double pinned = plot.timeAt(cursor.x());
    for (const int angle : notches)
        QVERIFY(plot.wheel(cursor, {0, angle}, Qt::ControlModifier));
    const Window shown = windowOf(plot.view);
    COMPARE_WINDOW(areaOf(plot.coord), shown);
    QVERIFY2(near(shown.second - shown.first, span), qPrintable(QString::number(shown.second
                                                                                - shown.first)));
    QVERIFY(near(plot.timeAt(cursor.x()), pinned));
    // One signal per step that changed the window, carrying the window.
    QCOMPARE(spy.count(), changes);
    COMPARE_WINDOW(Window(spy.last().at(0).toDouble(), spy.last().at(1).toDouble()), shown);
    // At the narrowest window one more step in changes nothing.
    if (span == 4000.0) {
        const int count = spy.count();
        plot.wheel(cursor, {0, 120}, Qt::ControlModifier);
        QCOMPARE(spy.count(), count);
    }
}

void tst_CurveViewNavigation::panAndReset_data()
{
    // From the window 10:20 .. 10:40, data 10:00 .. 11:00.
    QTest::addColumn<QString>("action");
    QTest::addColumn<double>("shiftMs");
    QTest::addColumn<bool>("reset");
    QTest::addColumn<int>("changes");
    const double tenth = 0.1 * kHourMs / 3.0;
    QTest::newRow("shift wheel forward goes back") << "shift" << -tenth << false << 1;
    QTest::newRow("horizontal wheel right goes on") << "horizontal" << tenth << false << 1;
    // The shift of a drag follows from its whole pixels, worked out below;
    // each of its two moves says so.
    QTest::newRow("drag right shows earlier times") << "drag" << 0.0 << false << 2;
    // Two drags of 90 %: 9, 9 and the last 2 minutes back, then nothing.
    QTest::newRow("long drag stops at the start") << "far drag" << -kHourMs / 3.0 << false << 3;
    QTest::newRow("double-click resets") << "double-click" << 0.0 << true << 1;
    QTest::newRow("Home resets") << "home" << 0.0 << true << 1;
    QTest::newRow("slot resets") << "slot" << 0.0 << true << 1;
    QTest::newRow("switching off resets") << "off" << 0.0 << true << 1;
}

void tst_CurveViewNavigation::panAndReset()
{
    QFETCH(QString, action);
    QFETCH(double, shiftMs);
    QFETCH(bool, reset);
    QFETCH(int, changes);
    Plot plot;
    plot.view.setTimeNavigationEnabled(true);
    const Window start(kT0 + kHourMs / 3.0, kT0 + 2.0 * kHourMs / 3.0);
    plot.view.setTimeWindow(start.first, start.second);
    COMPARE_WINDOW(areaOf(plot.coord), start);
    QSignalSpy spy(&plot.view, &CurveGraphicsView::sgTimeWindowChanged);
    if (action == "shift")
        QVERIFY(plot.wheel(plot.at(0.5), {0, 120}, Qt::ShiftModifier));
    else if (action == "horizontal")
        QVERIFY(plot.wheel(plot.at(0.5), {-120, 0}, Qt::NoModifier));
    else if (action == "drag") {
        plot.drag(plot.at(0.5), plot.at(0.75));
        shiftMs = -(plot.at(0.75).x() - plot.at(0.5).x()) / plot.dataArea().width()
                  * (start.second - start.first);
    }
    else if (action == "far drag") {
        plot.drag(plot.at(0.05), plot.at(0.95));
        plot.drag(plot.at(0.05), plot.at(0.95));
    }
    else if (action == "double-click")
        QTest::mouseDClick(plot.view.viewport(), Qt::LeftButton, {}, plot.at(0.5));
    else if (action == "home")
        QTest::keyClick(&plot.view, Qt::Key_Home);
    else if (action == "slot")
        plot.view.resetTimeWindow();
    else if (action == "off")
        plot.view.setTimeNavigationEnabled(false);
    const Window expected = reset ? Window(kT0, kT0 + kHourMs)
                                  : Window(start.first + shiftMs, start.second + shiftMs);
    COMPARE_WINDOW(windowOf(plot.view), expected);
    COMPARE_WINDOW(areaOf(plot.coord), expected);
    QCOMPARE(spy.count(), changes);
    COMPARE_WINDOW(Window(spy.last().at(0).toDouble(), spy.last().at(1).toDouble()), expected);
    // Once reset, resetting again says nothing.
    if (reset) {
        QCOMPARE(spy.count(), 1);
        plot.view.resetTimeWindow();
        QCOMPARE(spy.count(), 1);
    }
}

void tst_CurveViewNavigation::plainWheelAndSelectionKeepWindow()
{
    Plot plot;
    plot.view.setTimeNavigationEnabled(true);
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    const Window start(kT0 + 600000.0, kT0 + 900000.0);
    plot.view.setTimeWindow(start.first, start.second);
    QSignalSpy spy(&plot.view, &CurveGraphicsView::sgTimeWindowChanged);
    QVERIFY(!plot.wheel(plot.at(0.5), {0, 120}, Qt::NoModifier));
    double xMin, xMax, yMin, yMax;
    plot.coord->getArea(xMin, xMax, yMin, yMax);
    COMPARE_WINDOW(Window(xMin, xMax), start);
    QVERIFY(yMax > 1.14 && yMax < 1.16);
    // The "F 2" box still toggles on a click, and that press pans nothing.
    CurveGraphicsItem_ShowWhichY* selection = plot.frame()->getShowWhichY();
    QSignalSpy toggled(selection, &CurveGraphicsItem_ShowWhichY::selectionChanged);
    const QPoint box = plot.view.mapFromScene(selection->mapToScene(QPointF(10, 45)));
    QTest::mouseClick(plot.view.viewport(), Qt::LeftButton, {}, box);
    QCOMPARE(toggled.count(), 1);
    // Data that grow keep the window; data that shrink below it move it in.
    COMPARE_WINDOW(areaOf(plot.coord), start);
    QCOMPARE(spy.count(), 0);
    QVector<double> xs, ys;
    for (int i = 0; i < 500; ++i) {
        xs.append(kT0 + i * 1000.0);
        ys.append(0.5);
    }
    plot.view.getCurveScene()->removeCurve("a");
    plot.view.getCurveScene()->addCurve("a", gt::makeDataSet(xs, {ys}), true, Qt::blue,
                                        ECurveShowCap_Line, true);
    plot.view.setCurvesPosToVerticalZero();
    const Window moved(kT0 + 499000.0 - 300000.0, kT0 + 499000.0);
    COMPARE_WINDOW(windowOf(plot.view), moved);
    QCOMPARE(spy.count(), 1);
}

void tst_CurveViewNavigation::linkedWithEpochTable()
{
    Plot plot;
    CurveGraphicsTableWidget_Epoch table;
    table.resize(600, 200);
    stEpochDataSet band;
    band.ranges.append({qint64(kT0), qint64(kHourMs)});
    table.setResources(qint64(kT0), qint64(kT0 + kHourMs), {{"G01", {band}}}, {{"G01", true}},
                       {}, {});
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    plot.view.setTimeNavigationEnabled(true);
    table.setTimeNavigationEnabled(true);
    QSignalSpy fromView(&plot.view, &CurveGraphicsView::sgTimeWindowChanged);
    QSignalSpy fromTable(&table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    connect(&plot.view, &CurveGraphicsView::sgTimeWindowChanged, &table,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(&table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, &plot.view,
            &CurveGraphicsView::setTimeWindow);

    // The view leads: the table follows and its echo ends at the view.
    plot.wheel(plot.at(0.25), {0, 360}, Qt::ControlModifier);
    QCOMPARE(fromView.count(), 1);
    QCOMPARE(fromTable.count(), 1);
    Window tableWindow;
    table.getTimeWindow(tableWindow.first, tableWindow.second);
    COMPARE_WINDOW(tableWindow, windowOf(plot.view));
    // The table leads.
    table.setTimeWindow(kT0 + 60000.0, kT0 + 120000.0);
    QCOMPARE(fromTable.count(), 2);
    QCOMPARE(fromView.count(), 2);
    COMPARE_WINDOW(windowOf(plot.view), Window(kT0 + 60000.0, kT0 + 120000.0));
    COMPARE_WINDOW(areaOf(plot.coord), Window(kT0 + 60000.0, kT0 + 120000.0));
    // Home on the view brings both back to the whole hour, once each.
    QTest::keyClick(&plot.view, Qt::Key_Home);
    QCOMPARE(fromView.count(), 3);
    QCOMPARE(fromTable.count(), 3);
    table.getTimeWindow(tableWindow.first, tableWindow.second);
    COMPARE_WINDOW(tableWindow, Window(kT0, kT0 + kHourMs));
}

void tst_CurveViewNavigation::roundTicks_data()
{
    QTest::addColumn<double>("tMin");
    QTest::addColumn<double>("tMax");
    QTest::addColumn<QString>("dateTick");
    QTest::newRow("a quarter hour") << kT0 + 600000.0 << kT0 + 1500000.0 << QString();
    QTest::newRow("across midnight")
        << kT0 + 12.5 * kHourMs << kT0 + 15.5 * kHourMs << QString("2026/01/02");
}

void tst_CurveViewNavigation::roundTicks()
{
    QFETCH(double, tMin);
    QFETCH(double, tMax);
    QFETCH(QString, dateTick);
    Plot plot(24 * 3600 + 1);
    plot.view.setTimeNavigationEnabled(true);
    plot.view.setTimeWindow(tMin, tMax);
    CurveGraphicsItem_Coord_PXPY* frame = plot.frame();
    const QMap<double, QString> evenLabels = frame->xLabels();
    const QMap<double, QRectF> evenRects = frame->xLabelRects();
    QCOMPARE(evenLabels.size(), 11);

    plot.view.setRoundTimeTicks(true);
    QVERIFY(plot.view.hasRoundTimeTicks());
    const double width = frame->getDataRect().width();
    const QFontMetrics fm(frame->font());
    const QVector<TimeTick> ticks =
        roundTimeTicks(tMin, tMax, width, fm.horizontalAdvance("0000/00/00"));
    QVERIFY(ticks.size() >= 3);
    QStringList expected;
    for (const TimeTick& tick : ticks)
        expected.append(tick.text);
    QCOMPARE(frame->xLabels().values(), expected);
    QCOMPARE(frame->xLabels().values().contains(dateTick), !dateTick.isEmpty());
    // Each drawn label is centred on its tick and stays inside the data
    // area's right edge.
    int drawn = 0;
    for (auto it = frame->xLabelRects().cbegin(); it != frame->xLabelRects().cend(); ++it) {
        QVERIFY(qAbs(it.value().center().x() - it.key() * width) <= 0.5);
        QVERIFY(it.value().right() <= width + 1.0);
        ++drawn;
    }
    QVERIFY(drawn >= ticks.size() - 2);
    for (int i = 1; i < ticks.size(); ++i)
        QVERIFY(ticks[i].fraction > ticks[i - 1].fraction);

    // Off again: the even labels exactly as before.
    plot.view.setRoundTimeTicks(false);
    QCOMPARE(frame->xLabels(), evenLabels);
    QCOMPARE(frame->xLabelRects(), evenRects);
}

void tst_CurveViewNavigation::hoverFindsNearestCurve_data()
{
    // Two curves cross in an X at sample 50 of 0..100: "up" from -1 to 1 and
    // "down" from 1 to -1; "flat" at 0.9 is hidden; "late" has unsorted X.
    QTest::addColumn<double>("sample");
    QTest::addColumn<double>("y");
    QTest::addColumn<QString>("curve");
    QTest::addColumn<int>("yIndex");
    QTest::addColumn<qint64>("index");
    QTest::newRow("on up") << 20.0 << -0.6 << "up" << 0 << qint64(20);
    QTest::newRow("near down, a pixel off") << 80.0 << -0.59 << "down" << 0 << qint64(80);
    QTest::newRow("just past the crossing on up") << 53.0 << 0.06 << "up" << 0 << qint64(53);
    QTest::newRow("hidden curve is not found") << 30.0 << 0.9 << "" << -1 << qint64(-1);
    QTest::newRow("F 2 unchecked is not found") << 30.0 << -0.9 << "" << -1 << qint64(-1);
    QTest::newRow("nothing near") << 10.0 << 0.5 << "" << -1 << qint64(-1);
    QTest::newRow("unsorted X searched too") << 70.0 << 0.7 << "late" << 0 << qint64(1);
}

void tst_CurveViewNavigation::hoverFindsNearestCurve()
{
    QFETCH(double, sample);
    QFETCH(double, y);
    QFETCH(QString, curve);
    QFETCH(int, yIndex);
    QFETCH(qint64, index);
    CurveGraphicsView view;
    gt::makeBare(view);
    auto* coord = new Curve_Coord_XY;
    QVERIFY(coord->setArea(0, 100, -1, 1));
    CurveScene* registry = view.getCurveScene();
    registry->setCoord(coord, true);
    QVector<double> xs, up, down, flat, low;
    for (int i = 0; i <= 100; ++i) {
        xs.append(i);
        up.append(-1.0 + i * 0.02);
        down.append(1.0 - i * 0.02);
        flat.append(0.9);
        low.append(-0.9);
    }
    registry->addCurve("up", gt::makeDataSet(xs, {up, low}), true, Qt::blue, ECurveShowCap_Line,
                       true);
    registry->addCurve("down", gt::makeDataSet(xs, {down}), true, Qt::red, ECurveShowCap_Line,
                       true);
    registry->addCurve("flat", gt::makeDataSet(xs, {flat}), true, Qt::green, ECurveShowCap_Line,
                       false);
    registry->addCurve("late", gt::makeDataSet({90, 70, gt::NaN, 95}, {{0.2, 0.7, 0.7, 0.1}}),
                       true, Qt::black, ECurveShowCap_Point, true);
    view.resize(800, 540);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    auto* frame = gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
    const QRectF data = frame->getDataRect();
    const QPoint pos = view.mapFromScene(frame->mapToScene(
        QPointF(sample / 100.0 * data.width(), -(y + 1.0) / 2.0 * data.height())));
    CurveGraphicsView::HoverSample found;
    found.curveName = "untouched";
    QCOMPARE(view.hoverSampleAt(pos, found), !curve.isEmpty());
    if (curve.isEmpty()) {
        QCOMPARE(found.curveName, QString("untouched"));
        return;
    }
    QCOMPARE(found.curveName, curve);
    QCOMPARE(found.yIndex, yIndex);
    QCOMPARE(found.sampleIndex, index);
    const QVector<double> late{0.2, 0.7};
    const QVector<double>& values = curve == "up" ? up : curve == "down" ? down : late;
    QCOMPARE(found.value, values.at(int(index)));
}

void tst_CurveViewNavigation::hoverSignalsAndToolTip()
{
    Plot plot;
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    QSignalSpy hover(&plot.view, &CurveGraphicsView::sgHover);
    QSignalSpy none(&plot.view, &CurveGraphicsView::sgHoverNone);
    // The sample at the middle: index 1800, sin(18).
    const QRectF data = plot.frame()->getDataRect();
    double xMin, xMax, yMin, yMax;
    plot.coord->getArea(xMin, xMax, yMin, yMax);
    const QPoint onCurve = plot.view.mapFromScene(plot.frame()->mapToScene(
        QPointF(0.5 * data.width(), -(std::sin(18.0) - yMin) / (yMax - yMin) * data.height())));
    const QPoint empty = plot.at(0.5, 0.02);
    // Off: moves report nothing.
    plot.mouse(QEvent::MouseMove, onCurve, Qt::NoButton, Qt::NoButton);
    QCOMPARE(hover.count(), 0);

    plot.view.setHoverReadOutEnabled(true);
    plot.view.setHoverToolTip(true);
    plot.mouse(QEvent::MouseMove, onCurve, Qt::NoButton, Qt::NoButton);
    plot.mouse(QEvent::MouseMove, onCurve, Qt::NoButton, Qt::NoButton);
    QCOMPARE(hover.count(), 1);  // the same sample is reported once
    QCOMPARE(hover.at(0).at(0).toString(), QString("a"));
    QCOMPARE(hover.at(0).at(1).toInt(), 0);
    QVERIFY(qAbs(hover.at(0).at(2).toDouble() - (kT0 + 1800000.0)) <= 2000.0);
    QVERIFY(QToolTip::text().contains("GPST"));
    plot.mouse(QEvent::MouseMove, empty, Qt::NoButton, Qt::NoButton);
    plot.mouse(QEvent::MouseMove, empty + QPoint(1, 0), Qt::NoButton, Qt::NoButton);
    QCOMPARE(none.count(), 1);
    plot.mouse(QEvent::MouseMove, onCurve, Qt::NoButton, Qt::NoButton);
    QCOMPARE(hover.count(), 2);
    // Switching off ends the report.
    plot.view.setHoverReadOutEnabled(false);
    QCOMPARE(none.count(), 2);
    plot.mouse(QEvent::MouseMove, empty, Qt::NoButton, Qt::NoButton);
    QCOMPARE(none.count(), 2);
}

QTEST_MAIN(tst_CurveViewNavigation)
#include "tst_curveviewnavigation.moc"
