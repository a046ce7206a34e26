// SPDX-License-Identifier: MIT
// The nearest drawn sample for the hover read-out, against a plain search
// of every sample.

#include "graphicstestsupport.h"

#include "CoordMapping_p.h"
#include "CurveNearest_p.h"
#include "Curve_Coord_XY.h"

#include <QRandomGenerator>

#include <memory>

namespace {

// Every sample of the shown Y indexes, one by one: the nearest inside the
// area within the radius.
bool plainNearest(const CurveSnapshot& s, const QRectF& area, const std::vector<int>& shown,
                  const QPointF& pos, double radius, CurveNearest::Nearest* out)
{
    const CoordMapping mapping(area, s.xMin, s.xMax, s.yMin, s.yMax, false);
    double best = radius * radius;
    bool found = false;
    for (const int k : shown) {
        for (qint64 j = 0; j < s.count(k); ++j) {
            const double px = mapping.mapX(s.xs()[j]);
            const double py = mapping.mapY(s.ys(k)[j]);
            if (!(px >= area.left() && px <= area.right() && py >= area.top()
                  && py <= area.bottom())) {
                continue;
            }
            const double d2 = (px - pos.x()) * (px - pos.x()) + (py - pos.y()) * (py - pos.y());
            if (d2 < best || (!found && d2 == best)) {
                best = d2;
                found = true;
                *out = CurveNearest::Nearest{k, j, s.xs()[j], s.ys(k)[j], d2};
            }
        }
    }
    return found;
}

} // namespace

class tst_CurveNearest : public QObject
{
    Q_OBJECT
private slots:
    void againstPlainSearch_data();
    void againstPlainSearch();
    void refusals();
};

void tst_CurveNearest::againstPlainSearch_data()
{
    QTest::addColumn<bool>("sorted");
    QTest::addColumn<QVector<int>>("shown");
    QTest::newRow("time in order, both axes") << true << QVector<int>{0, 1};
    QTest::newRow("time in order, second only") << true << QVector<int>{1};
    QTest::newRow("time out of order") << false << QVector<int>{0, 1};
}

void tst_CurveNearest::againstPlainSearch()
{
    QFETCH(bool, sorted);
    QFETCH(QVector<int>, shown);

    QRandomGenerator rng(17);
    const int n = 3000;
    QVector<double> xs(n), y1(n), y2(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = sorted ? i : rng.generateDouble() * n;
        y1[i] = i % 97 == 5 ? gt::NaN : rng.generateDouble() * 2.0 - 1.0;
        y2[i] = std::sin(i * 0.01) * 1.5;
    }
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet(xs, {y1, y2}));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, n - 1, -1, 1));
    CurveSnapshot snapshot;
    snapshot.take(dataSet.get(), &coord, 2);
    const QRectF area(0, -300, 600, 300);
    const std::vector<int> indexes(shown.begin(), shown.end());
    for (int probe = 0; probe < 300; ++probe) {
        const QPointF pos(rng.generateDouble() * 620 - 10, rng.generateDouble() * 320 - 310);
        CurveNearest::Nearest got;
        CurveNearest::Nearest expected;
        const bool bFound = CurveNearest::find(snapshot, area, false, indexes, pos, 5.0,
                                               std::numeric_limits<double>::infinity(), &got);
        QCOMPARE(bFound, plainNearest(snapshot, area, indexes, pos, 5.0, &expected));
        if (bFound) {
            QCOMPARE(got.distance2, expected.distance2);
            QVERIFY(std::find(indexes.begin(), indexes.end(), got.yIndex) != indexes.end());
        }
        // Another item already found something this close: nothing farther
        // counts.
        CurveNearest::Nearest untouched;
        untouched.index = -7;
        if (bFound) {
            QVERIFY(!CurveNearest::find(snapshot, area, false, indexes, pos, 5.0,
                                        got.distance2, &untouched));
            QCOMPARE(untouched.index, qint64(-7));
        }
    }
}

void tst_CurveNearest::refusals()
{
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet({0, 1, 2}, {{0, 0.5, 1}}));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 2, 0, 1));
    CurveSnapshot snapshot;
    snapshot.take(dataSet.get(), &coord, 1);
    const QRectF area(0, -100, 200, 100);
    CurveNearest::Nearest nearest;
    QVERIFY(CurveNearest::find(snapshot, area, false, {0}, QPointF(100, -50), 5, 1e9, &nearest));
    QCOMPARE(nearest.index, qint64(1));
    QCOMPARE(nearest.distance2, 0.0);
    const double inf = std::numeric_limits<double>::infinity();
    QVERIFY(!CurveNearest::find(snapshot, area, false, {0}, QPointF(100, -50), -1, 1e9,
                                &nearest));
    QVERIFY(!CurveNearest::find(snapshot, area, false, {0}, QPointF(inf, -50), 5, 1e9,
                                &nearest));
    QVERIFY(!CurveNearest::find(snapshot, area, false, {}, QPointF(100, -50), 5, 1e9,
                                &nearest));
    QVERIFY(!CurveNearest::find(snapshot, QRectF(), false, {0}, QPointF(0, 0), 5, 1e9,
                                &nearest));
    QVERIFY(!CurveNearest::find(snapshot, area, false, {0}, QPointF(100, -50), 5, 1e9,
                                nullptr));
    // At the radius exactly, the sample is still found.
    QVERIFY(CurveNearest::find(snapshot, area, false, {0}, QPointF(103, -54), 5, 1e9,
                               &nearest));
}

QTEST_MAIN(tst_CurveNearest)
#include "tst_curvenearest.moc"
