// SPDX-License-Identifier: MIT
// The frame and curve items on their own: geometry and run cutting.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "Curve_Coord_XY.h"

#include <QSignalSpy>

using Runs = QVector<int>;
Q_DECLARE_METATYPE(std::set<qint64>)

class tst_CurveGraphicsItems : public QObject
{
    Q_OBJECT
private slots:
    void frameGeometry();
    void runs_data();
    void runs();
};

void tst_CurveGraphicsItems::frameGeometry()
{
    Curve_Coord_XY coord;
    CurveGraphicsItem_Coord_PXPY frame(&coord, nullptr);
    QSignalSpy spy(&frame, &CurveGraphicsItem_Coord_PXPY::sgDataAreaChanged);
    frame.setPixelSize(800, 540);
    QCOMPARE(frame.boundingRect(), QRectF(-80, -500, 800, 540));
    QCOMPARE(frame.getShowWhichY()->pos(), QPointF(-70, -480));
    QCOMPARE(frame.getDataRect(), QRectF(0, -500, 720, 500));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0), (QVariantList{720.0, 500.0}));
}

void tst_CurveGraphicsItems::runs_data()
{
    QTest::addColumn<QVector<double>>("ys");
    QTest::addColumn<std::set<qint64>>("breaks");
    QTest::addColumn<int>("height");
    QTest::addColumn<Runs>("runs");
    QTest::addColumn<QPoint>("firstPoint");

    const auto with = [](int from, int to, double value) {
        QVector<double> v{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
        std::fill(v.begin() + from, v.begin() + to + 1, value);
        return v;
    };
    const QVector<double> v10 = with(0, 0, 0);
    const int limit = CurveGraphicsItem_Curve_XY::kPixelLimit;
    // X 0..9; area x 0..10, y 0..10 in a 100 x 100 data area: (x, y) lands on (10x, -10y).
    QTest::newRow("no breaks") << v10 << std::set<qint64>{} << 100 << Runs{10} << QPoint(0, 0);
    QTest::newRow("break at 4") << v10 << std::set<qint64>{4} << 100 << Runs{5, 5}
                                << QPoint(0, 0);
    QTest::newRow("NaN joins its neighbours") << with(4, 4, gt::NaN) << std::set<qint64>{}
                                              << 100 << Runs{9} << QPoint(0, 0);
    QTest::newRow("all-NaN stretch between breaks") << with(3, 5, gt::NaN)
                                                    << std::set<qint64>{2, 5} << 100
                                                    << Runs{3, 4} << QPoint(0, 0);
    QTest::newRow("single sample between breaks") << v10 << std::set<qint64>{2, 3} << 100
                                                  << Runs{3, 1, 6} << QPoint(0, 0);
    QTest::newRow("huge Y saturates") << with(0, 0, 1e300) << std::set<qint64>{} << 100
                                      << Runs{10} << QPoint(0, -limit);
    QTest::newRow("negative height flips") << with(0, 0, 3) << std::set<qint64>{} << -100
                                           << Runs{10} << QPoint(0, 70);
}

void tst_CurveGraphicsItems::runs()
{
    QFETCH(QVector<double>, ys);
    QFETCH(std::set<qint64>, breaks);
    QFETCH(int, height);
    QFETCH(Runs, runs);
    QFETCH(QPoint, firstPoint);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, 0, 10));
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    QVERIFY(item.polylines().isEmpty());
    item.setDataArea(100.9, height);
    QCOMPARE(item.isYDown(), height < 0);
    QCOMPARE(item.boundingRect(), QRectF(0, -height, 100, height));
    Runs sizes;
    for (const QPolygon& run : item.polylines().value(0))
        sizes.append(run.size());
    QCOMPARE(sizes, runs);
    QCOMPARE(item.polylines().at(0).at(0).at(0), firstPoint);

}

QTEST_MAIN(tst_CurveGraphicsItems)
#include "tst_curvegraphicsitems.moc"
