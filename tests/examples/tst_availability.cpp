// SPDX-License-Identifier: MIT
// Availability pairs as the epoch table draws them: a bar between
// consecutive pairs and after the last one, nothing before the end of the
// first.
#include "Availability.h"

#include <QtTest>

using namespace gnssdemo;

using Pairs = QList<QPair<qint64, qint64>>;
Q_DECLARE_METATYPE(Pairs)
Q_DECLARE_METATYPE(std::vector<qint64>)
Q_DECLARE_METATYPE(std::vector<quint8>)

class tst_Availability : public QObject
{
    Q_OBJECT
private slots:
    void pairs_data();
    void pairs();
};

void tst_Availability::pairs_data()
{
    QTest::addColumn<std::vector<qint64>>("epochs");
    QTest::addColumn<std::vector<quint8>>("present");
    QTest::addColumn<Pairs>("expected");
    const std::vector<qint64> ten{0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000};
    QTest::newRow("all present") << ten << std::vector<quint8>(10, 1) << Pairs{{0, 0}};
    QTest::newRow("gap inside") << ten << std::vector<quint8>{1, 1, 1, 1, 0, 0, 1, 1, 1, 1}
                                << Pairs{{0, 0}, {4000, 2000}};
    QTest::newRow("hole in the epochs")
        << std::vector<qint64>{0, 1000, 2000, 3000, 4000, 8000, 9000}
        << std::vector<quint8>(7, 1) << Pairs{{0, 0}, {5000, 3000}};
    QTest::newRow("jittered steps")
        << std::vector<qint64>{443, 1443, 2444, 3443, 4443} << std::vector<quint8>(5, 1)
        << Pairs{{443, 0}};
}

void tst_Availability::pairs()
{
    QFETCH(std::vector<qint64>, epochs);
    QFETCH(std::vector<quint8>, present);
    QFETCH(Pairs, expected);
    QCOMPARE(availabilityRanges(epochs, 1000, present).ranges, expected);
}

QTEST_GUILESS_MAIN(tst_Availability)
#include "tst_availability.moc"
