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
    void passesAndSignals();
    void deterministic();
};

void tst_SyntheticSource::constellations()
{
    const SyntheticSource source;
    const std::vector<qint64>& epochs = source.epochs();
    QCOMPARE(epochs.size(), size_t(86400));
    QCOMPARE(source.intervalMs(), qint64(1000));
    QCOMPARE(epochs.front(), qint64(1722038400000)); // 2024-07-27 00:00:00
    QCOMPARE(epochs.back() - epochs.front(), qint64(86399000));

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

void tst_SyntheticSource::passesAndSignals()
{
    const SyntheticSource source;
    SatelliteObservations sat;
    int lliSlips = 0;
    int codeDropouts = 0;
    int outsideRecords = 0;
    for (int i = 0; i < source.satelliteCount(); ++i) {
        QVERIFY(source.satellite(i, sat));
        QVERIFY2(sat.observedBandCount() == 2 || sat.observedBandCount() == 3,
                 qPrintable(sat.name));
        QVERIFY(!sat.bands[BandL1].isEmpty());
        // Passes (records with gaps under ten minutes bridged): medium orbits
        // between 2.5 and 6 hours, geostationary ones nearly all day.
        int longest = 0;
        int first = -1;
        int last = -100000;
        for (int e = 0; e < int(sat.record.size()); ++e) {
            if (!sat.record[size_t(e)])
                continue;
            if (e - last > 600)
                first = e;
            last = e;
            longest = std::max(longest, last - first + 1);
        }
        const bool geo = sat.name == QLatin1String("J07")
                         || (sat.system == 'C' && sat.prn <= 5);
        if (sat.system == 'G' || sat.system == 'R' || sat.system == 'E')
            QVERIFY2(longest >= 9000 && longest <= 6 * 3600, qPrintable(sat.name));
        if (geo)
            QVERIFY2(sat.recordCount() > 86000, qPrintable(sat.name));
        if (sat.system == 'R')
            QCOMPARE(sat.bands[BandL1].frequencyHz,
                     1602e6 + 0.5625e6 * sat.glonassChannel);
        for (const SignalSeries& s : sat.bands) {
            if (s.isEmpty())
                continue;
            for (size_t e = 0; e < sat.record.size(); ++e) {
                outsideRecords += s.hasObservation(e) && !sat.record[e];
                lliSlips += s.lli[e] & 1;
                codeDropouts += sat.record[e] && std::isnan(s.pseudorange[e])
                                && !std::isnan(s.phase[e]);
            }
        }
    }
    QCOMPARE(outsideRecords, 0);
    QVERIFY(lliSlips > 50);
    QVERIFY(codeDropouts > 1000);
}

void tst_SyntheticSource::deterministic()
{
    const quint64 first = hashOf(SyntheticSource());
    QCOMPARE(hashOf(SyntheticSource()), first);
    QVERIFY(hashOf(SyntheticSource(SyntheticSource::DefaultSeed + 1)) != first);
}

QTEST_GUILESS_MAIN(tst_SyntheticSource)
#include "tst_syntheticsource.moc"
