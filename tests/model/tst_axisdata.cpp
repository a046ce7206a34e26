#include "AxisData.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

namespace {

// Publishes the values 0 .. count-1 (or the given values) with an optional
// area and breaks, through the public setting phase.
void publish(AxisData& axis, const QVector<double>& values, qint64 areaBegin = -1,
             qint64 areaEnd = -1, const std::set<qint64>& breaks = {})
{
    axis.beginSetData();
    QVERIFY(axis.allocData(values.size(), nullptr));
    double* p = axis.getInSettingData(0, nullptr);
    QVERIFY(p);
    std::copy(values.cbegin(), values.cend(), p);
    if (areaBegin >= 0)
        QVERIFY(axis.setInSettingDataArea(areaBegin, areaEnd));
    QVERIFY(axis.setInSettingBreaks(breaks));
    axis.endSetData(true);
}

QVector<double> iota(int n)
{
    QVector<double> v(n);
    for (int i = 0; i < n; ++i)
        v[i] = i;
    return v;
}

} // namespace

class tst_AxisData : public QObject
{
    Q_OBJECT
private slots:
    void allocRefusals();
    void allocOutOfMemory_data();
    void allocOutOfMemory();
    void inSettingAccess();
    void inSettingBreaks_data();
    void inSettingBreaks();
    void publishSignals_data();
    void publishSignals();
    void publishIsZeroCopy();
    void discardKeepsPublished();
    void readers();
    void areaControl();
    void dataLimits_data();
    void dataLimits();
};

void tst_AxisData::allocRefusals()
{
    AxisData axis;
    QString error;
    QVERIFY(!axis.allocData(5, &error)); // no phase open
    axis.beginSetData();
    QVERIFY(!axis.allocData(0, &error));
    QVERIFY(!axis.allocData(-3, &error));
    QVERIFY(error.isEmpty());
    QVERIFY(axis.allocData(5, &error));
    QVERIFY(!axis.allocData(5, &error)); // second alloc in the same phase
    QVERIFY(error.isEmpty());

    // Restarting the phase frees the pending block.
    axis.beginSetData();
    QVERIFY(!axis.getInSettingData(0, nullptr));
    QVERIFY(axis.allocData(2, nullptr));
    QVERIFY(axis.getInSettingData(0, nullptr));
}

void tst_AxisData::allocOutOfMemory_data()
{
    QTest::addColumn<qint64>("num");
    QTest::newRow("larger than the address space") << (qint64(1) << 58);
    QTest::newRow("byte size overflows 64 bits") << (std::numeric_limits<qint64>::max() / 4);
    QTest::newRow("largest count") << std::numeric_limits<qint64>::max();
}

void tst_AxisData::allocOutOfMemory()
{
    QFETCH(qint64, num);
    AxisData axis;
    axis.beginSetData();
    QString error;
    QVERIFY(!axis.allocData(num, &error));
    QCOMPARE(error, QStringLiteral("Alloc memory failed."));
    QVERIFY(!axis.allocData(num, nullptr)); // a null error string is fine
    QVERIFY(!axis.getInSettingData(0, nullptr));
    // The phase stays open: a smaller block can still be had.
    QVERIFY(axis.allocData(4, &error));
    qint64 n = 0;
    QVERIFY(axis.getInSettingData(0, &n));
    QCOMPARE(n, qint64(4));
}

void tst_AxisData::inSettingAccess()
{
    AxisData axis;
    QVERIFY(!axis.getInSettingData(0, nullptr));
    QVERIFY(!axis.setInSettingDataArea(0, 0));
    axis.beginSetData();
    QVERIFY(!axis.setInSettingDataArea(0, 0)); // no samples yet
    QVERIFY(axis.allocData(5, nullptr));

    qint64 n = -1;
    double* first = axis.getInSettingData(0, &n);
    QVERIFY(first);
    QCOMPARE(n, qint64(5));
    QVERIFY(!axis.getInSettingData(5, &n));
    QVERIFY(!axis.getInSettingData(-1, &n));
    QVERIFY(!axis.getInSettingData(std::numeric_limits<qint64>::max(), &n));

    QVERIFY(!axis.setInSettingDataArea(3, 2));
    QVERIFY(!axis.setInSettingDataArea(-1, 2));
    QVERIFY(!axis.setInSettingDataArea(0, 5));
    QVERIFY(axis.setInSettingDataArea(2, 3));
    QCOMPARE(axis.getInSettingData(0, &n), first + 2);
    QCOMPARE(n, qint64(2));
    QCOMPARE(axis.getInSettingData(1, &n), first + 3);
    QVERIFY(!axis.getInSettingData(2, &n));
    QVERIFY(!axis.getInSettingData(-2, &n));
}

void tst_AxisData::inSettingBreaks_data()
{
    QTest::addColumn<QList<qint64>>("breaks");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QList<qint64>>("stored");
    QTest::newRow("last sample dropped") << QList<qint64>{2, 4} << true << QList<qint64>{2};
    QTest::newRow("past the block") << QList<qint64>{5} << false << QList<qint64>{1};
    QTest::newRow("negative") << QList<qint64>{-1} << false << QList<qint64>{1};
    QTest::newRow("only the last") << QList<qint64>{4} << true << QList<qint64>{};
    QTest::newRow("replaced, not merged") << QList<qint64>{0, 3} << true << QList<qint64>{0, 3};
}

void tst_AxisData::inSettingBreaks()
{
    QFETCH(QList<qint64>, breaks);
    QFETCH(bool, accepted);
    QFETCH(QList<qint64>, stored);

    AxisData axis;
    axis.beginSetData();
    QVERIFY(axis.allocData(5, nullptr));
    std::fill_n(axis.getInSettingData(0, nullptr), 5, 1.0);
    // A narrowed area does not narrow what breaks may address.
    QVERIFY(axis.setInSettingDataArea(0, 4));
    QVERIFY(axis.setInSettingBreaks({1}));
    QCOMPARE(axis.setInSettingBreaks(std::set<qint64>(breaks.cbegin(), breaks.cend())), accepted);
    axis.endSetData(true);

    std::set<qint64> reported;
    axis.getBreakInfo(reported);
    QCOMPARE(QList<qint64>(reported.cbegin(), reported.cend()), stored);
}

void tst_AxisData::publishSignals_data()
{
    QTest::addColumn<int>("firstCount");
    QTest::addColumn<int>("secondCount");
    QTest::addColumn<qint64>("secondAreaBegin");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("same length, default area") << 4 << 4 << qint64(-1) << QStringList{"data"};
    QTest::newRow("different area") << 4 << 4 << qint64(1) << QStringList{"area", "data"};
    QTest::newRow("different length") << 4 << 6 << qint64(-1) << QStringList{"area", "data"};
    QTest::newRow("emptied") << 4 << 0 << qint64(-1) << QStringList{"area", "data"};
}

void tst_AxisData::publishSignals()
{
    QFETCH(int, firstCount);
    QFETCH(int, secondCount);
    QFETCH(qint64, secondAreaBegin);
    QFETCH(QStringList, expected);

    AxisData axis;
    publish(axis, iota(firstCount));

    QStringList log;
    connect(&axis, &AxisData::sgAreaChanged, [&] {
        // Receivers already see the new published state.
        qint64 b = 0;
        axis.getArea(&b, nullptr);
        log << QStringLiteral("area");
        QCOMPARE(b, secondCount ? qMax<qint64>(secondAreaBegin, 0) : qint64(-1));
    });
    connect(&axis, &AxisData::sgDataChanged, [&] { log << QStringLiteral("data"); });

    if (secondCount == 0) {
        axis.beginSetData();
        axis.endSetData(true);
    } else {
        publish(axis, iota(secondCount), secondAreaBegin,
                secondAreaBegin < 0 ? -1 : secondCount - 1);
    }
    QCOMPARE(log, expected);
    if (secondCount == 0) {
        qint64 b = 0, e = 0;
        QCOMPARE(axis.getArea(&b, &e), qint64(0));
        QCOMPARE(b, qint64(-1));
        QCOMPARE(e, qint64(-1));
        QVERIFY(!axis.getData(0, nullptr));
    }

    // An empty phase on an empty axis changes nothing.
    AxisData empty;
    QSignalSpy area(&empty, &AxisData::sgAreaChanged);
    QSignalSpy data(&empty, &AxisData::sgDataChanged);
    empty.beginSetData();
    empty.endSetData(true);
    empty.endSetData(true); // no phase: nothing
    QCOMPARE(area.count() + data.count(), 0);
}

void tst_AxisData::publishIsZeroCopy()
{
    AxisData axis;
    axis.beginSetData();
    QVERIFY(axis.allocData(1000, nullptr));
    double* written = axis.getInSettingData(0, nullptr);
    for (int i = 0; i < 1000; ++i)
        written[i] = i * 0.5;
    axis.endSetData(true);
    // The very block that was written is what readers see.
    QCOMPARE(axis.getData(0, nullptr), static_cast<const double*>(written));
    QCOMPARE(axis.getData(0, nullptr)[999], 499.5);
}

void tst_AxisData::discardKeepsPublished()
{
    AxisData axis;
    publish(axis, iota(10), 2, 6, {3});
    const double* before = axis.getData(0, nullptr);

    QSignalSpy area(&axis, &AxisData::sgAreaChanged);
    QSignalSpy data(&axis, &AxisData::sgDataChanged);
    axis.beginSetData();
    QVERIFY(axis.allocData(3, nullptr));
    QVERIFY(axis.setInSettingBreaks({0}));
    axis.endSetData(false);

    QCOMPARE(area.count() + data.count(), 0);
    QCOMPARE(axis.getData(0, nullptr), before);
    qint64 b = 0, e = 0;
    QCOMPARE(axis.getArea(&b, &e), qint64(5));
    QCOMPARE(b, qint64(2));
    QCOMPARE(e, qint64(6));
    std::set<qint64> breaks;
    axis.getBreakInfo(breaks);
    QCOMPARE(breaks, (std::set<qint64>{1}));
    QVERIFY(!axis.getInSettingData(0, nullptr));
}

void tst_AxisData::readers()
{
    AxisData axis;
    QVERIFY(!axis.getData(0, nullptr));
    std::set<qint64> untouched{42};
    axis.getBreakInfo(untouched);
    QCOMPARE(untouched, (std::set<qint64>{42}));

    publish(axis, iota(10), 2, 6, {1, 2, 4, 6, 8});
    qint64 n = 0;
    const double* p = axis.getData(0, &n);
    QVERIFY(p);
    QCOMPARE(*p, 2.0);
    QCOMPARE(n, qint64(5));
    QCOMPARE(*axis.getData(4, &n), 6.0);
    QCOMPARE(n, qint64(1));
    QVERIFY(!axis.getData(5, &n));
    QVERIFY(!axis.getData(-1, &n));
    QCOMPARE(axis.getArea(nullptr, nullptr), qint64(5));

    // Relative to the area, added to what the caller holds, and the break at
    // the area's last sample is not reported.
    std::set<qint64> breaks{100};
    axis.getBreakInfo(breaks);
    QCOMPARE(breaks, (std::set<qint64>{0, 2, 100}));
}

void tst_AxisData::areaControl()
{
    AxisData axis;
    QSignalSpy area(&axis, &AxisData::sgAreaChanged);
    QVERIFY(!axis.setArea(0, 0));
    axis.clearArea();
    QCOMPARE(area.count(), 0);

    publish(axis, iota(8));
    area.clear();
    axis.clearArea(); // already full
    QCOMPARE(area.count(), 0);
    QVERIFY(!axis.setArea(3, 2));
    QVERIFY(!axis.setArea(-1, 2));
    QVERIFY(!axis.setArea(0, 8));
    QCOMPARE(area.count(), 0);
    QVERIFY(axis.setArea(3, 5));
    QVERIFY(axis.setArea(3, 5)); // the same area signals again
    QCOMPARE(area.count(), 2);
    QCOMPARE(axis.getArea(nullptr, nullptr), qint64(3));
    axis.clearArea();
    QCOMPARE(area.count(), 3);
    QCOMPARE(axis.getArea(nullptr, nullptr), qint64(8));
}

void tst_AxisData::dataLimits_data()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<bool>("found");
    QTest::addColumn<double>("minValue");
    QTest::addColumn<double>("maxValue");
    const double big = std::numeric_limits<double>::max();
    QTest::newRow("plain") << QVector<double>{3, -2, 7} << true << -2.0 << 7.0;
    QTest::newRow("NaN skipped") << QVector<double>{nan, 5, nan, -1} << true << -1.0 << 5.0;
    QTest::newRow("all NaN") << QVector<double>{nan, nan} << false << big << -big;
    QTest::newRow("infinities count") << QVector<double>{-inf, 1, inf} << true << -inf << inf;
}

void tst_AxisData::dataLimits()
{
    QFETCH(QVector<double>, values);
    QFETCH(bool, found);
    QFETCH(double, minValue);
    QFETCH(double, maxValue);

    AxisData axis;
    double lo = 11, hi = 12;
    QVERIFY(!axis.getDataLimits(lo, hi));
    QCOMPARE(lo, 11.0);
    QCOMPARE(hi, 12.0);

    publish(axis, values);
    QCOMPARE(axis.getDataLimits(lo, hi), found);
    QCOMPARE(lo, minValue);
    QCOMPARE(hi, maxValue);
}

QTEST_GUILESS_MAIN(tst_AxisData)
#include "tst_axisdata.moc"
