// SPDX-License-Identifier: MIT
#include "TimeWindow.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");
// A day in milliseconds, starting at 2024-07-27 00:00 GPST.
constexpr double kDayStart = 1722038400000.0;
constexpr double kDay = 86400000.0;

} // namespace

Q_DECLARE_METATYPE(TimeWindow)

class tst_TimeWindow : public QObject
{
    Q_OBJECT
private slots:
    void validity_data();
    void validity();
    void zoomedAbout_data();
    void zoomedAbout();
    void panned_data();
    void panned();
    void fittedInto_data();
    void fittedInto();
    void minimumSpan_data();
    void minimumSpan();
    void fuzzyEquals_data();
    void fuzzyEquals();
    void zoomInAndOutKeepsThePivot();
};

void tst_TimeWindow::validity_data()
{
    QTest::addColumn<TimeWindow>("window");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<double>("fractionOfTen");

    QTest::newRow("default is empty") << TimeWindow() << false << kNaN;
    QTest::newRow("0 .. 20") << TimeWindow(0, 20) << true << 0.5;
    QTest::newRow("reversed") << TimeWindow(20, 0) << false << kNaN;
    QTest::newRow("a point") << TimeWindow(10, 10) << false << kNaN;
    QTest::newRow("NaN bound") << TimeWindow(kNaN, 10) << false << kNaN;
    QTest::newRow("infinite bound") << TimeWindow(0, kInf) << false << kNaN;
    QTest::newRow("10 .. 30") << TimeWindow(10, 30) << true << 0.0;
    QTest::newRow("-10 .. 0") << TimeWindow(-10, 0) << true << 2.0;
}

void tst_TimeWindow::validity()
{
    QFETCH(TimeWindow, window);
    QFETCH(bool, valid);
    QFETCH(double, fractionOfTen);
    QCOMPARE(window.isValid(), valid);
    const double fraction = window.fractionOf(10.0);
    if (std::isnan(fractionOfTen))
        QVERIFY(std::isnan(fraction));
    else
        QCOMPARE(fraction, fractionOfTen);
    if (valid)
        QCOMPARE(window.timeAt(window.fractionOf(10.0)), 10.0);
}

void tst_TimeWindow::zoomedAbout_data()
{
    QTest::addColumn<TimeWindow>("window");
    QTest::addColumn<double>("pivot");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("minSpan");
    QTest::addColumn<TimeWindow>("expected");

    QTest::newRow("in about the centre") << TimeWindow(0, 100) << 50.0 << 0.8 << 0.0
                                         << TimeWindow(10, 90);
    QTest::newRow("in about a quarter") << TimeWindow(0, 100) << 25.0 << 0.5 << 0.0
                                        << TimeWindow(12.5, 62.5);
    QTest::newRow("out about the start") << TimeWindow(0, 100) << 0.0 << 2.0 << 0.0
                                         << TimeWindow(0, 200);
    QTest::newRow("pivot left of the window zooms about min")
        << TimeWindow(100, 200) << -1e9 << 0.5 << 0.0 << TimeWindow(100, 150);
    QTest::newRow("pivot right of the window zooms about max")
        << TimeWindow(100, 200) << 1e9 << 0.5 << 0.0 << TimeWindow(150, 200);
    QTest::newRow("stops at the smallest span") << TimeWindow(0, 100) << 50.0 << 0.1 << 40.0
                                                << TimeWindow(30, 70);
    QTest::newRow("at the smallest span stays") << TimeWindow(30, 70) << 60.0 << 0.5 << 40.0
                                                << TimeWindow(30, 70);
    QTest::newRow("below the smallest span is not grown by a zoom in")
        << TimeWindow(40, 60) << 50.0 << 0.5 << 40.0 << TimeWindow(40, 60);
    QTest::newRow("below the smallest span can zoom out")
        << TimeWindow(40, 60) << 50.0 << 2.0 << 40.0 << TimeWindow(30, 70);
    QTest::newRow("factor 1") << TimeWindow(0, 100) << 30.0 << 1.0 << 0.0 << TimeWindow(0, 100);
    QTest::newRow("factor 0 refused") << TimeWindow(0, 100) << 30.0 << 0.0 << 0.0
                                      << TimeWindow(0, 100);
    QTest::newRow("negative factor refused") << TimeWindow(0, 100) << 30.0 << -2.0 << 0.0
                                             << TimeWindow(0, 100);
    QTest::newRow("NaN factor refused") << TimeWindow(0, 100) << 30.0 << kNaN << 0.0
                                        << TimeWindow(0, 100);
    QTest::newRow("infinite factor refused") << TimeWindow(0, 100) << 30.0 << kInf << 0.0
                                             << TimeWindow(0, 100);
    QTest::newRow("NaN pivot refused") << TimeWindow(0, 100) << kNaN << 0.5 << 0.0
                                       << TimeWindow(0, 100);
    QTest::newRow("invalid window unchanged") << TimeWindow(5, 5) << 5.0 << 0.5 << 0.0
                                              << TimeWindow(5, 5);
    QTest::newRow("a day at a millisecond pivot")
        << TimeWindow(kDayStart, kDayStart + kDay) << kDayStart + kDay / 4 << 0.5 << 0.0
        << TimeWindow(kDayStart + kDay / 8, kDayStart + kDay / 8 + kDay / 2);
}

void tst_TimeWindow::zoomedAbout()
{
    QFETCH(TimeWindow, window);
    QFETCH(double, pivot);
    QFETCH(double, factor);
    QFETCH(double, minSpan);
    QFETCH(TimeWindow, expected);
    const TimeWindow zoomed = window.zoomedAbout(pivot, factor, minSpan);
    QVERIFY2(zoomed.fuzzyEquals(expected, 1e-15),
             qPrintable(QStringLiteral("%1 .. %2").arg(zoomed.getMin(), 0, 'g', 17)
                            .arg(zoomed.getMax(), 0, 'g', 17)));
}

void tst_TimeWindow::panned_data()
{
    QTest::addColumn<TimeWindow>("window");
    QTest::addColumn<double>("shift");
    QTest::addColumn<TimeWindow>("expected");

    QTest::newRow("later") << TimeWindow(0, 10) << 5.0 << TimeWindow(5, 15);
    QTest::newRow("earlier") << TimeWindow(0, 10) << -5.0 << TimeWindow(-5, 5);
    QTest::newRow("NaN shift") << TimeWindow(0, 10) << kNaN << TimeWindow(0, 10);
    QTest::newRow("infinite shift") << TimeWindow(0, 10) << kInf << TimeWindow(0, 10);
    QTest::newRow("invalid window") << TimeWindow(10, 0) << 5.0 << TimeWindow(10, 0);
}

void tst_TimeWindow::panned()
{
    QFETCH(TimeWindow, window);
    QFETCH(double, shift);
    QFETCH(TimeWindow, expected);
    QCOMPARE(window.panned(shift), expected);
}

void tst_TimeWindow::fittedInto_data()
{
    QTest::addColumn<TimeWindow>("window");
    QTest::addColumn<TimeWindow>("range");
    QTest::addColumn<double>("minSpan");
    QTest::addColumn<TimeWindow>("expected");
    QTest::addColumn<bool>("covers");

    const TimeWindow range(100, 200);
    QTest::newRow("inside stays") << TimeWindow(120, 140) << range << 4.0
                                  << TimeWindow(120, 140) << false;
    QTest::newRow("as wide as the range is the range") << TimeWindow(150, 250) << range << 4.0
                                                       << range << true;
    QTest::newRow("wider than the range is the range") << TimeWindow(0, 1000) << range << 4.0
                                                       << range << true;
    QTest::newRow("span beyond the doubles is the range")
        << TimeWindow(-1.7e308, 1.7e308) << range << 4.0 << range << true;
    QTest::newRow("before the range shifts right") << TimeWindow(50, 70) << range << 4.0
                                                   << TimeWindow(100, 120) << false;
    QTest::newRow("after the range shifts left") << TimeWindow(190, 230) << range << 4.0
                                                 << TimeWindow(160, 200) << false;
    QTest::newRow("too narrow grows about its centre") << TimeWindow(149, 151) << range << 10.0
                                                       << TimeWindow(145, 155) << false;
    QTest::newRow("too narrow at the edge grows inside") << TimeWindow(100, 101) << range
                                                         << 10.0 << TimeWindow(100, 110)
                                                         << false;
    QTest::newRow("smallest span above the range gives the range")
        << TimeWindow(120, 130) << range << 500.0 << range << true;
    QTest::newRow("infinite smallest span gives the range")
        << TimeWindow(120, 130) << range << kInf << range << true;
    QTest::newRow("invalid window unchanged") << TimeWindow(130, 120) << range << 4.0
                                              << TimeWindow(130, 120) << false;
    QTest::newRow("invalid range unchanged") << TimeWindow(120, 130) << TimeWindow(5, 5) << 4.0
                                             << TimeWindow(120, 130) << false;
}

void tst_TimeWindow::fittedInto()
{
    QFETCH(TimeWindow, window);
    QFETCH(TimeWindow, range);
    QFETCH(double, minSpan);
    QFETCH(TimeWindow, expected);
    QFETCH(bool, covers);
    const TimeWindow fitted = window.fittedInto(range, minSpan);
    QCOMPARE(fitted, expected);
    QCOMPARE(fitted.covers(range), covers);
    // Fitting is idempotent: a fitted window is left where it is.
    QCOMPARE(fitted.fittedInto(range, minSpan), fitted);
}

void tst_TimeWindow::minimumSpan_data()
{
    QTest::addColumn<TimeWindow>("range");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("expected");

    QTest::newRow("four intervals") << TimeWindow(0, 1000) << 10.0 << 40.0;
    QTest::newRow("no interval: the doubles' floor")
        << TimeWindow(kDayStart, kDayStart + kDay) << 0.0
        << (kDayStart + kDayStart + kDay) * 0x1p-40;
    QTest::newRow("tiny interval far from zero: the floor")
        << TimeWindow(kDayStart, kDayStart + kDay) << 1e-9
        << (kDayStart + kDayStart + kDay) * 0x1p-40;
    QTest::newRow("never wider than the range") << TimeWindow(0, 30) << 10.0 << 30.0;
    QTest::newRow("negative interval ignored") << TimeWindow(-1000, 1000) << -5.0
                                               << 2000.0 * 0x1p-40;
    QTest::newRow("NaN interval ignored") << TimeWindow(0, 1000) << kNaN << 1000.0 * 0x1p-40;
    QTest::newRow("invalid range") << TimeWindow() << 10.0 << 0.0;
}

void tst_TimeWindow::minimumSpan()
{
    QFETCH(TimeWindow, range);
    QFETCH(double, interval);
    QFETCH(double, expected);
    QCOMPARE(TimeWindow::minimumSpan(range, interval), expected);
}

void tst_TimeWindow::fuzzyEquals_data()
{
    QTest::addColumn<TimeWindow>("a");
    QTest::addColumn<TimeWindow>("b");
    QTest::addColumn<bool>("equal");

    const TimeWindow day(kDayStart, kDayStart + kDay);
    QTest::newRow("same") << day << day << true;
    QTest::newRow("one rounding step off")
        << day << TimeWindow(std::nextafter(kDayStart, 0.0), kDayStart + kDay) << true;
    QTest::newRow("a few rounding steps of a narrow window off")
        << TimeWindow(kDayStart, kDayStart + 4000.0)
        << TimeWindow(kDayStart + 0x1p-10, kDayStart + 4000.0 - 0x1p-10) << true;
    QTest::newRow("a millisecond off") << day << TimeWindow(kDayStart + 1, kDayStart + kDay)
                                       << false;
    QTest::newRow("NaN never equals") << TimeWindow(kNaN, 1) << TimeWindow(kNaN, 1) << false;
    QTest::newRow("empty equals empty") << TimeWindow() << TimeWindow() << true;
}

void tst_TimeWindow::fuzzyEquals()
{
    QFETCH(TimeWindow, a);
    QFETCH(TimeWindow, b);
    QFETCH(bool, equal);
    QCOMPARE(a.fuzzyEquals(b), equal);
    QCOMPARE(b.fuzzyEquals(a), equal);
}

void tst_TimeWindow::zoomInAndOutKeepsThePivot()
{
    // The time under the cursor keeps its place through any number of
    // steps, which is what the user sees while wheeling.
    const TimeWindow day(kDayStart, kDayStart + kDay);
    const double pivot = kDayStart + 0.3 * kDay + 17.0;
    const double share = day.fractionOf(pivot);
    TimeWindow window = day;
    for (int step = 0; step < 50; ++step) {
        window = window.zoomedAbout(pivot, 0.8, TimeWindow::minimumSpan(day, 1000.0));
        QVERIFY(std::fabs(window.timeAt(share) - pivot) < 1e-3);
    }
    QCOMPARE(window.getSpan(), 4000.0);
    for (int step = 0; step < 60; ++step)
        window = window.zoomedAbout(pivot, 1.25).fittedInto(day, 4000.0);
    QCOMPARE(window, day);
}

QTEST_APPLESS_MAIN(tst_TimeWindow)
#include "tst_timewindow.moc"
