// Availability pairs, checked by drawing them the way the epoch table does:
// a bar between consecutive pairs and after the last one, nothing before the
// end of the first.
#include "Availability.h"

#include <QtTest>

#include <random>

using namespace gnssdemo;

using Pairs = QList<QPair<qint64, qint64>>;
Q_DECLARE_METATYPE(Pairs)
Q_DECLARE_METATYPE(std::vector<qint64>)
Q_DECLARE_METATYPE(std::vector<quint8>)

namespace {

// The table's bar rule, epoch by epoch: is time t inside a drawn stretch?
bool drawnAt(const Pairs& ranges, qint64 start, qint64 end, qint64 t)
{
    qint64 from = start;
    for (int j = 0; j < ranges.size(); ++j) {
        if (j >= 1 && ranges[j].first >= from && t >= from && t < ranges[j].first)
            return true;
        from = ranges[j].first + ranges[j].second;
    }
    return end > from && t >= from && t < end;
}

} // namespace

class tst_Availability : public QObject
{
    Q_OBJECT
private slots:
    void pairs_data();
    void pairs();
    void randomPresenceDrawsExactly();
    void bandsKeepTheirIndex();
};

void tst_Availability::pairs_data()
{
    QTest::addColumn<std::vector<qint64>>("epochs");
    QTest::addColumn<std::vector<quint8>>("present");
    QTest::addColumn<Pairs>("expected");
    const std::vector<qint64> ten{0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000};
    QTest::newRow("all present") << ten << std::vector<quint8>(10, 1) << Pairs{{0, 0}};
    QTest::newRow("none") << ten << std::vector<quint8>(10, 0) << Pairs{{0, 10000}};
    QTest::newRow("starts late") << ten << std::vector<quint8>{0, 0, 0, 1, 1, 1, 1, 1, 1, 1}
                                 << Pairs{{0, 3000}};
    QTest::newRow("ends early") << ten << std::vector<quint8>{1, 1, 1, 1, 1, 1, 1, 1, 0, 0}
                                << Pairs{{0, 0}, {8000, 2000}};
    QTest::newRow("gap inside") << ten << std::vector<quint8>{1, 1, 1, 1, 0, 0, 1, 1, 1, 1}
                                << Pairs{{0, 0}, {4000, 2000}};
    QTest::newRow("first epoch only") << ten << std::vector<quint8>{1, 0, 0, 0, 0, 0, 0, 0, 0, 0}
                                      << Pairs{{0, 0}, {1000, 9000}};
    QTest::newRow("last epoch only") << ten << std::vector<quint8>{0, 0, 0, 0, 0, 0, 0, 0, 0, 1}
                                     << Pairs{{0, 9000}};
    QTest::newRow("hole in the epochs")
        << std::vector<qint64>{0, 1000, 2000, 3000, 4000, 8000, 9000}
        << std::vector<quint8>(7, 1) << Pairs{{0, 0}, {5000, 3000}};
    QTest::newRow("jittered steps")
        << std::vector<qint64>{443, 1443, 2444, 3443, 4443} << std::vector<quint8>(5, 1)
        << Pairs{{443, 0}};
    QTest::newRow("no epochs") << std::vector<qint64>() << std::vector<quint8>()
                               << Pairs{{0, 0}};
}

void tst_Availability::pairs()
{
    QFETCH(std::vector<qint64>, epochs);
    QFETCH(std::vector<quint8>, present);
    QFETCH(Pairs, expected);
    QCOMPARE(availabilityRanges(epochs, 1000, present).ranges, expected);
}

void tst_Availability::randomPresenceDrawsExactly()
{
    std::mt19937 rng(42);
    for (int round = 0; round < 50; ++round) {
        const int n = 1 + int(rng() % 300);
        std::vector<qint64> epochs;
        std::vector<quint8> present;
        qint64 t = 1722038400000;
        for (int i = 0; i < n; ++i) {
            epochs.push_back(t);
            t += rng() % 20 == 0 ? 30000 * (2 + rng() % 5) : 30000; // a few holes
            present.push_back(rng() % 4 != 0 || (i > n / 3 && i < n / 2) ? 1 : 0);
        }
        const stEpochDataSet r = availabilityRanges(epochs, 30000, present);
        qint64 start = 0, end = 0;
        tableTimeRange(epochs, 30000, &start, &end);
        QCOMPARE(end, epochs.back() + 30000);
        for (int i = 0; i < n; ++i) {
            // Each epoch's own interval, probed at its start, middle and end.
            const qint64 stop = i + 1 < n && epochs[size_t(i) + 1] - epochs[size_t(i)] <= 45000
                                    ? epochs[size_t(i) + 1] : epochs[size_t(i)] + 30000;
            for (qint64 probe : {epochs[size_t(i)], (epochs[size_t(i)] + stop) / 2, stop - 1})
                QVERIFY2(drawnAt(r.ranges, start, end, probe) == bool(present[size_t(i)]),
                         qPrintable(QStringLiteral("round %1 epoch %2").arg(round).arg(i)));
            // Past the epoch's own width inside a hole: never drawn.
            if (i + 1 < n && epochs[size_t(i) + 1] > stop)
                QVERIFY(!drawnAt(r.ranges, start, end, stop));
        }
    }
}

void tst_Availability::bandsKeepTheirIndex()
{
    const std::vector<qint64> epochs{0, 1000, 2000, 3000};
    SatelliteObservations sat;
    sat.record.assign(4, 1);
    sat.bands[BandL1].reset(4);
    sat.bands[BandL5].reset(4);
    sat.bands[BandL1].pseudorange = {1.0, 2.0, 3.0, 4.0};
    sat.bands[BandL5].phase[2] = 10.0;
    const QList<stEpochDataSet> bands = bandAvailability(sat, epochs, 1000);
    QCOMPARE(bands.size(), 3); // up to the last band with data
    QCOMPARE(bands[0].ranges, (Pairs{{0, 0}}));
    QCOMPARE(bands[1].ranges, (Pairs{{0, 4000}}));
    QCOMPARE(bands[2].ranges, (Pairs{{0, 2000}, {3000, 1000}}));
}

QTEST_GUILESS_MAIN(tst_Availability)
#include "tst_availability.moc"
