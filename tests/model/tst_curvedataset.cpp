// SPDX-License-Identifier: MIT
#include "graphics/graphicstestsupport.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

// Exposes the protected binding so a test can call it a second time.
class RebindableDataSet : public Curve_DataSet_XY
{
public:
    using Curve_DataSet_XY::Curve_DataSet_XY;
    void rebind() { bindAxises(); }
    void callSlotDirectly() { onAxisAreaChanged(); }
};

} // namespace

class tst_CurveDataSet : public QObject
{
    Q_OBJECT
private slots:
    void axes_data();
    void axes();
    void forwardsWithKey();
    void unknownSender();
    void deletesAxes();
};

void tst_CurveDataSet::axes_data()
{
    QTest::addColumn<bool>("xy");
    QTest::addColumn<int>("yAxisNum");
    QTest::addColumn<int>("axisNum");
    QTest::newRow("three Y axes") << true << 3 << 4;
    QTest::newRow("no Y axis") << true << 0 << 1;
    QTest::newRow("negative count") << true << -2 << 1;
    QTest::newRow("base kind has none") << false << 0 << 0;
}

void tst_CurveDataSet::axes()
{
    QFETCH(bool, xy);
    QFETCH(int, yAxisNum);
    QFETCH(int, axisNum);
    std::unique_ptr<Curve_DataSet> owner(xy ? new Curve_DataSet_XY(yAxisNum, nullptr)
                                            : new Curve_DataSet);
    Curve_DataSet& dataSet = *owner;
    QCOMPARE(dataSet.getAxisNum(), axisNum);
    QSet<AxisData*> distinct;
    for (int key = 0; key < axisNum; ++key) {
        AxisData* axis = dataSet.getAxisData(key);
        QVERIFY(axis);
        QVERIFY(!axis->parent());
        QCOMPARE(static_cast<const Curve_DataSet&>(dataSet).getAxisData(key), axis);
        distinct.insert(axis);
    }
    QCOMPARE(distinct.size(), axisNum);
    QVERIFY(!dataSet.getAxisData(axisNum));
    QVERIFY(!dataSet.getAxisData(-1));

    std::set<qint64> breaks{9};
    dataSet.getAxisBreakInfo(7, breaks);
    dataSet.getFirstAxisBreakInfo(breaks); // nothing published
    QCOMPARE(breaks, (std::set<qint64>{9}));
}

void tst_CurveDataSet::forwardsWithKey()
{
    RebindableDataSet dataSet(2, nullptr);
    gt::fillAxis(dataSet.getAxisData(0), QVector<double>(6));
    gt::fillAxis(dataSet.getAxisData(2), QVector<double>(6));

    QList<QPair<QString, int>> log;
    connect(&dataSet, &Curve_DataSet::sgAxisAreaChanged,
            [&](int key) { log.append({QStringLiteral("area"), key}); });
    connect(&dataSet, &Curve_DataSet::sgAxisDataChanged,
            [&](int key) { log.append({QStringLiteral("data"), key}); });

    dataSet.rebind(); // a second binding must not double the signals
    QVERIFY(dataSet.getAxisData(2)->setArea(1, 3));
    QCOMPARE(log, (QList<QPair<QString, int>>{{QStringLiteral("area"), 2}}));

    log.clear();
    gt::fillAxis(dataSet.getAxisData(0), {1, 1, 1}, {0});
    QCOMPARE(log, (QList<QPair<QString, int>>{{QStringLiteral("area"), 0},
                                              {QStringLiteral("data"), 0}}));

    std::set<qint64> breaks;
    dataSet.getFirstAxisBreakInfo(breaks);
    QCOMPARE(breaks, (std::set<qint64>{0}));
}

void tst_CurveDataSet::unknownSender()
{
    RebindableDataSet dataSet(1, nullptr);
    QSignalSpy area(&dataSet, &Curve_DataSet::sgAxisAreaChanged);

    dataSet.callSlotDirectly(); // no sender: nothing
    QCOMPARE(area.count(), 0);

    // A foreign axis that is connected but not in the map forwards as -1.
    AxisData stranger;
    gt::fillAxis(&stranger, {0, 0, 0});
    connect(&stranger, SIGNAL(sgAreaChanged()), &dataSet, SLOT(onAxisAreaChanged()));
    QVERIFY(stranger.setArea(0, 1));
    QCOMPARE(area.count(), 1);
    QCOMPARE(area.at(0).at(0).toInt(), -1);

    // A sender of another class is ignored.
    QObject notAnAxis;
    connect(&notAnAxis, SIGNAL(destroyed()), &dataSet, SLOT(onAxisAreaChanged()));
    area.clear();
    QMetaObject::invokeMethod(&notAnAxis, "destroyed");
    QCOMPARE(area.count(), 0);
}

void tst_CurveDataSet::deletesAxes()
{
    auto* dataSet = new Curve_DataSet_XY(2, nullptr);
    QList<QPointer<AxisData>> axes;
    for (int key = 0; key < 3; ++key)
        axes << dataSet->getAxisData(key);
    delete dataSet;
    for (const auto& axis : axes)
        QVERIFY(axis.isNull());
}

QTEST_GUILESS_MAIN(tst_CurveDataSet)
#include "tst_curvedataset.moc"
