// SPDX-License-Identifier: MIT
#include "Curve_Coord_XY.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_CurveCoord : public QObject
{
    Q_OBJECT
private slots:
    void setArea();
    void map_data();
    void map();
    void mapBeforeAnyArea();
};

// Refusals and the set counter are checked against a reference in tests/fuzz.
void tst_CurveCoord::setArea()
{
    Curve_Coord_XY coord;
    QSignalSpy spy(&coord, &Curve_Coord::sgCoordAreaChanged);
    double a, b, c, d;
    coord.getArea(a, b, c, d);
    const double big = std::numeric_limits<double>::max();
    QCOMPARE(QList<double>({a, b, c, d}), QList<double>({-big, big, -big, big}));
    QVERIFY(!coord.setArea(10, 0, -1, 1));
    QVERIFY(coord.setArea(0, 10, -1, 1));
    QVERIFY(coord.setArea(0, 10, -1, 1));
    QCOMPARE(spy.count(), 2); // also when nothing changed
    coord.getArea(a, b, c, d);
    QCOMPARE(QList<double>({a, b, c, d}), QList<double>({0, 10, -1, 1}));
}

void tst_CurveCoord::map_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("yDown");
    QTest::addColumn<double>("px");
    QTest::addColumn<double>("py");
    QTest::newRow("middle") << 5.0 << 25.0 << false << 100.0 << 37.5;
    QTest::newRow("minimum") << 0.0 << 0.0 << false << 0.0 << 50.0;
    QTest::newRow("maximum") << 10.0 << 100.0 << false << 200.0 << 0.0;
    QTest::newRow("y down") << 5.0 << 25.0 << true << 100.0 << 12.5;
    QTest::newRow("outside is not clipped") << 20.0 << 200.0 << false << 400.0 << -50.0;
}

void tst_CurveCoord::map()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, yDown);
    QFETCH(double, px);
    QFETCH(double, py);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, 0, 100));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double xs[] = {x, 7.5};
    const double ys[] = {y, nan};
    double pxs[3] = {-1, -1, -1};
    double pys[3] = {-1, -1, -1};
    coord.map(QRectF(0, 0, 200, 50), 2, xs, ys, pxs, pys, yDown);
    QCOMPARE(pxs[0], px);
    QCOMPARE(pys[0], py);
    QCOMPARE(pxs[1], 150.0); // the X of a NaN Y is still mapped
    QVERIFY(std::isnan(pys[1]));
    QCOMPARE(pxs[2], -1.0);

    double untouched = 42;
    coord.map(QRectF(0, 0, 200, 50), 0, xs, ys, &untouched, &untouched, yDown);
    QCOMPARE(untouched, 42.0);
}

void tst_CurveCoord::mapBeforeAnyArea()
{
    // The default ranges overflow to infinity: ordinary values land on the
    // minimum edge, values whose offset overflows map to NaN.
    Curve_Coord_XY coord;
    const double xs[] = {0, 5, -1e300, 1e300};
    const double ys[] = {0, 5, -1e300, 1e300};
    double px[4], py[4];
    const QRectF rect(10, 20, 200, 50);
    coord.map(rect, 4, xs, ys, px, py, false);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(px[i], 10.0);
        QCOMPARE(py[i], 70.0);
    }
    QVERIFY(std::isnan(px[3]));
    QVERIFY(std::isnan(py[3]));
    coord.map(rect, 1, xs, ys, px, py, true);
    QCOMPARE(py[0], 20.0);
}

QTEST_GUILESS_MAIN(tst_CurveCoord)
#include "tst_curvecoord.moc"
