// SPDX-License-Identifier: MIT
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
    void receiversSeePublishedState();
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
}

void tst_AxisData::receiversSeePublishedState()
{
    AxisData axis;
    publish(axis, iota(4));
    QStringList log;
    connect(&axis, &AxisData::sgAreaChanged, [&] {
        qint64 b = 0, e = 0;
        axis.getArea(&b, &e);
        log << QStringLiteral("area %1 %2").arg(b).arg(e);
    });
    connect(&axis, &AxisData::sgDataChanged, [&] {
        qint64 n = 0;
        const double* p = axis.getData(0, &n);
        log << QStringLiteral("data %1 %2").arg(n).arg(p ? *p : -1.0);
    });
    publish(axis, iota(6), 1, 5);
    axis.beginSetData();
    axis.endSetData(true); // emptied
    QCOMPARE(log, (QStringList{"area 1 5", "data 5 1", "area -1 -1", "data 0 -1"}));
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
    std::set<qint64> breaks{100};
    axis.getBreakInfo(breaks); // nothing published yet
    publish(axis, iota(10), 2, 6, {1, 2, 4, 6, 8});
    qint64 n = 0;
    QCOMPARE(*axis.getData(4, &n), 6.0);
    QCOMPARE(n, qint64(1));
    QCOMPARE(axis.getArea(nullptr, nullptr), qint64(5));
    // Relative to the area and added to what the caller holds.
    axis.getBreakInfo(breaks);
    QCOMPARE(breaks, (std::set<qint64>{0, 2, 100}));
}

QTEST_GUILESS_MAIN(tst_AxisData)
#include "tst_axisdata.moc"
