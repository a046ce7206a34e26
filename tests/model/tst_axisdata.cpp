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

// Refusals, signal order, area and break arithmetic and limits are checked
// call by call against a reference model in tests/fuzz; these cases pin what
// that model cannot see: exhausted memory, the hand-over of the very block
// written, and the published state as receivers of the signals see it.
class tst_AxisData : public QObject
{
    Q_OBJECT
private slots:
    void allocOutOfMemory_data();
    void allocOutOfMemory();
    void publishSignals_data();
    void publishSignals();
    void publishIsZeroCopy();
    void readers();
};

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

QTEST_GUILESS_MAIN(tst_AxisData)
#include "tst_axisdata.moc"
