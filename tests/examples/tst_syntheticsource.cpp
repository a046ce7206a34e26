// SPDX-License-Identifier: MIT
// The built-in synthetic day: constellations, passes, signals, and that the
// same seed gives the very same numbers.
#include "SyntheticSource.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <map>

using namespace gnssdemo;

namespace {

// FNV-1a over 64-bit words: a cryptographic hash of the whole day takes
// seconds and proves nothing more here.
template <typename T>
void mix(quint64& h, const std::vector<T>& values)
{
    for (const T& v : values) {
        quint64 word = 0;
        std::memcpy(&word, &v, sizeof(T));
        h = (h ^ word) * 0x100000001B3ULL;
    }
}

quint64 hashOf(const ObservationSource& source)
{
    quint64 h = 0xCBF29CE484222325ULL;
    SatelliteObservations sat;
    for (int i = 0; i < source.satelliteCount(); ++i) {
        source.satellite(i, sat);
        const QByteArray name = sat.name.toLatin1();
        mix(h, std::vector<char>(name.begin(), name.end()));
        mix(h, sat.record);
        for (const SignalSeries& s : sat.bands) {
            mix(h, s.pseudorange);
            mix(h, s.phase);
            mix(h, s.lli);
        }
    }
    return h;
}

} // namespace

class tst_SyntheticSource : public QObject
{
    Q_OBJECT
private slots:
    void constellations();
    void deterministic();
};

void tst_SyntheticSource::constellations()
{
    // The day's epochs and interval show in tst_demosnapshot's summary.
    const SyntheticSource source;
    std::map<QChar, int> perSystem;
    for (int i = 0; i < source.satelliteCount(); ++i) {
        const QString name = source.satelliteName(i);
        if (i > 0)
            QVERIFY(source.satelliteName(i - 1) < name);
        ++perSystem[name.at(0)];
    }
    const std::map<QChar, int> expected{{QLatin1Char('G'), 32}, {QLatin1Char('R'), 24},
                                        {QLatin1Char('E'), 36}, {QLatin1Char('C'), 46},
                                        {QLatin1Char('J'), 7}};
    QCOMPARE(perSystem, expected);
    QCOMPARE(source.satelliteName(145), QString());
    SatelliteObservations sat;
    QVERIFY(!source.satellite(-1, sat));
    QVERIFY(sat.name.isEmpty());
}


void tst_SyntheticSource::deterministic()
{
    const quint64 first = hashOf(SyntheticSource());
    QCOMPARE(hashOf(SyntheticSource()), first);
    QVERIFY(hashOf(SyntheticSource(SyntheticSource::DefaultSeed + 1)) != first);
}

QTEST_GUILESS_MAIN(tst_SyntheticSource)
#include "tst_syntheticsource.moc"
