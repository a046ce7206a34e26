// SPDX-License-Identifier: MIT
// What a curve item shows: the pinned samples, the runs between breaks and
// the order of X, apart from any painting.

#include "graphicstestsupport.h"

#include "AxisSamples_p.h"
#include "CurveSnapshot_p.h"
#include "Curve_Coord_XY.h"

#include <memory>

using RunList = QVector<QVector<qint64>>;  // begin, end, points
Q_DECLARE_METATYPE(std::set<qint64>)

class tst_CurveSnapshot : public QObject
{
    Q_OBJECT
private slots:
    void runs_data();
    void runs();
    void pinsOutlivePublish();
    void sameSamplesSameVersion();
    void xOrder_data();
    void xOrder();
    void missingAxes();
};

void tst_CurveSnapshot::runs_data()
{
    QTest::addColumn<QVector<double>>("ys");
    QTest::addColumn<std::set<qint64>>("breaks");
    QTest::addColumn<RunList>("runs");

    const QVector<double> ten{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    QVector<double> nan4 = ten;
    nan4[4] = gt::NaN;
    QVector<double> nan3to5 = ten;
    std::fill(nan3to5.begin() + 3, nan3to5.begin() + 6, gt::NaN);
    QTest::newRow("no breaks") << ten << std::set<qint64>{} << RunList{{0, 9, 10}};
    QTest::newRow("break at 4") << ten << std::set<qint64>{4} << RunList{{0, 4, 5}, {5, 9, 5}};
    QTest::newRow("a NaN counts no point") << nan4 << std::set<qint64>{} << RunList{{0, 9, 9}};
    QTest::newRow("all-NaN stretch") << nan3to5 << std::set<qint64>{2, 5}
                                     << RunList{{0, 2, 3}, {3, 5, 0}, {6, 9, 4}};
    QTest::newRow("single sample") << ten << std::set<qint64>{2, 3}
                                   << RunList{{0, 2, 3}, {3, 3, 1}, {4, 9, 6}};
    // Y longer than X: breaks past the last shared sample are not read.
    QTest::newRow("Y longer than X") << (ten + QVector<double>{10, 11, 12})
                                     << std::set<qint64>{7, 10, 11}
                                     << RunList{{0, 7, 8}, {8, 9, 2}};
}

void tst_CurveSnapshot::runs()
{
    QFETCH(QVector<double>, ys);
    QFETCH(std::set<qint64>, breaks);
    QFETCH(RunList, runs);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, -1, 1));
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    CurveSnapshot snapshot;
    snapshot.take(&dataSet, &coord, 1);
    QVERIFY(snapshot.isDrawable());
    QCOMPARE(snapshot.count(0), qint64(10));
    RunList got;
    for (const CurveRun& run : snapshot.runs(0))
        got.append({run.begin, run.end, run.points});
    QCOMPARE(got, runs);
    QCOMPARE(snapshot.xMax, 10.0);
    QCOMPARE(snapshot.yMin, -1.0);
}

void tst_CurveSnapshot::pinsOutlivePublish()
{
    // A publish after the snapshot hands the axis a new block; the snapshot
    // goes on reading the old one, values and breaks as they were.
    Curve_Coord_XY coord;
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), {0, 1, 2, 3});
    gt::fillAxis(dataSet.getAxisData(1), {5, 6, 7, 8}, {1});
    CurveSnapshot snapshot;
    snapshot.take(&dataSet, &coord, 1);
    const AxisSamples pinned = AxisSamples::pin(dataSet.getAxisData(1));
    gt::fillAxis(dataSet.getAxisData(1), {-1, -2, -3, -4, -5});
    gt::fillAxis(dataSet.getAxisData(0), {9, 9, 9, 9, 9});
    QCOMPARE(snapshot.ys(0)[3], 8.0);
    QCOMPARE(snapshot.xs()[3], 3.0);
    QCOMPARE(snapshot.count(0), qint64(4));
    QCOMPARE(snapshot.runs(0).size(), size_t(2));
    QCOMPARE(pinned.first[0], 5.0);
    QCOMPARE(pinned.breaks, std::set<qint64>{1});
    // The next snapshot sees the new samples.
    snapshot.take(&dataSet, &coord, 1);
    QCOMPARE(snapshot.ys(0)[3], -4.0);
    QCOMPARE(snapshot.count(0), qint64(5));
    QCOMPARE(snapshot.runs(0).size(), size_t(1));
    // An axis without samples pins nothing.
    AxisData empty;
    QVERIFY(!AxisSamples::pin(&empty).first);
    QVERIFY(!AxisSamples::pin(nullptr).block);
}

void tst_CurveSnapshot::sameSamplesSameVersion()
{
    Curve_Coord_XY coord;
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), {0, 1, 2});
    gt::fillAxis(dataSet.getAxisData(1), {0, 1, 2});
    CurveSnapshot snapshot;
    snapshot.take(&dataSet, &coord, 1);
    const quint64 version = snapshot.dataVersion();
    // A new area alone is read, but the samples' work is kept.
    QVERIFY(coord.setArea(0, 2, -5, 5));
    snapshot.take(&dataSet, &coord, 1);
    QCOMPARE(snapshot.dataVersion(), version);
    QCOMPARE(snapshot.yMax, 5.0);
    // A shorter area of the same block is other samples.
    QVERIFY(dataSet.getAxisData(1)->setArea(0, 1));
    snapshot.take(&dataSet, &coord, 1);
    QVERIFY(snapshot.dataVersion() != version);
    QCOMPARE(snapshot.count(0), qint64(2));
    snapshot.clear();
    QVERIFY(!snapshot.isDrawable());
}

void tst_CurveSnapshot::xOrder_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<bool>("sorted");
    QTest::newRow("ascending") << QVector<double>{1, 2, 3, 4} << true;
    QTest::newRow("equal neighbours") << QVector<double>{1, 2, 2, 4} << true;
    QTest::newRow("one step back") << QVector<double>{1, 3, 2, 4} << false;
    QTest::newRow("NaN") << QVector<double>{1, gt::NaN, 3, 4} << false;
    QTest::newRow("one sample") << QVector<double>{7} << true;
}

void tst_CurveSnapshot::xOrder()
{
    QFETCH(QVector<double>, xs);
    QFETCH(bool, sorted);
    Curve_Coord_XY coord;
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet(xs, {QVector<double>(xs.size())}));
    CurveSnapshot snapshot;
    snapshot.take(dataSet.get(), &coord, 1);
    QCOMPARE(snapshot.xSorted(), sorted);
}

void tst_CurveSnapshot::missingAxes()
{
    Curve_Coord_XY coord;
    // The second Y axis is empty: only the first is taken.
    Curve_DataSet_XY dataSet(2);
    gt::fillAxis(dataSet.getAxisData(0), {0, 1, 2});
    gt::fillAxis(dataSet.getAxisData(1), {0, 1, 2});
    CurveSnapshot snapshot;
    snapshot.take(&dataSet, &coord, 2);
    QCOMPARE(snapshot.yIndexes(), 2);
    QCOMPARE(snapshot.yCount(), 1);
    QCOMPARE(snapshot.totalCount(), qint64(3));
    // No coordinate, or no X samples: nothing to draw.
    snapshot.take(&dataSet, nullptr, 2);
    QVERIFY(!snapshot.isDrawable());
    Curve_DataSet_XY bare(1);
    snapshot.take(&bare, &coord, 1);
    QVERIFY(!snapshot.isDrawable());
    snapshot.take(nullptr, &coord, 1);
    QVERIFY(!snapshot.isDrawable());
}

QTEST_MAIN(tst_CurveSnapshot)
#include "tst_curvesnapshot.moc"
