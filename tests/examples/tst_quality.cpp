// SPDX-License-Identifier: MIT
// The quality numbers and the events against a plain recount: small RINEX
// files written here from a model whose multipath, gaps, loss-of-lock flags
// and phase jumps are known; hand-made 1 Hz series with known slips; the
// satellites per epoch of a shared file against its independent statistics;
// and the rows of the CSV export.
#include "CsvExport.h"
#include "Multipath.h"
#include "Quality.h"
#include "RinexReader.h"

#include <AxisData.h>
#include <Curve_DataSet_XY.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <cmath>
#include <set>

using namespace gnssdemo;

namespace {

constexpr double F1 = 1575.42e6;
constexpr double F2 = 1227.60e6;
const double Lambda1 = SpeedOfLight / F1;
const double Lambda2 = SpeedOfLight / F2;
const double Gamma = (F1 / F2) * (F1 / F2);
const double C1 = 2.0 / (Gamma - 1.0);     // MP1 = P1 - (1 + C1) l1 L1 + C1 l2 L2
const double C2 = 2.0 * Gamma / (Gamma - 1.0);
constexpr int Epochs = 40;
constexpr int StepSeconds = 30;
const qint64 Start = gpstMilliseconds(2024, 1, 10, 0, 0, 0.0);

// One satellite's day as the file is written from it.
struct Scenario
{
    QList<int> missing;     // epochs without a record
    QList<int> lliOnL2;     // epochs whose L2 phase reports loss of lock
    QList<int> jumpEpochs;  // from these epochs on, L1 holds jumpCycles more
    double jumpCycles = 0.0;
    QList<int> codeMissing; // epochs without C1C
    bool singleBand = false;
};

double multipath1(int k) { return 0.3 * std::sin(0.7 * k) + 0.1 * (k % 3); }
double multipath2(int k) { return 0.2 * std::cos(0.5 * k); }

// L1 cycles added by the jumps up to epoch k.
double jumpedCycles(const Scenario& s, int k)
{
    double n = 0.0;
    for (int e : s.jumpEpochs)
        n += k >= e ? s.jumpCycles : 0.0;
    return n;
}

QString obs(double value, char lli = ' ')
{
    return QString::asprintf("%14.3f%c ", value, lli);
}

QString headerLine(const QString& content, const char* label)
{
    return content.leftJustified(60, QLatin1Char(' ')) + QLatin1String(label) + QLatin1Char('\n');
}

// G05 follows the scenario, G07 is observed throughout without events.
QByteArray writeFile(const Scenario& g05)
{
    QString text = headerLine(QStringLiteral("     3.04           OBSERVATION DATA    G"),
                              "RINEX VERSION / TYPE")
                   + headerLine(QStringLiteral("G    6 C1C L1C S1C C2W L2W S2W"),
                                "SYS / # / OBS TYPES")
                   + headerLine(QStringLiteral("    30.000"), "INTERVAL")
                   + headerLine(QString(), "END OF HEADER");
    const Scenario clean;
    for (int k = 0; k < Epochs; ++k) {
        QStringList records;
        for (int prn : {5, 7}) {
            const Scenario& s = prn == 5 ? g05 : clean;
            if (s.missing.contains(k))
                continue;
            const double rho = 21e6 + 100.0 * k + 1e5 * prn;
            const double iono = 3.0 + 0.01 * k;
            const double l1 = (rho - iono) / Lambda1 + 1000.0 + jumpedCycles(s, k);
            QString r = QStringLiteral("G%1").arg(prn, 2, 10, QLatin1Char('0'));
            r += s.codeMissing.contains(k) ? QString(16, QLatin1Char(' '))
                                           : obs(rho + iono + multipath1(k));
            r += obs(l1) + obs(40.0 + k % 7);
            if (!s.singleBand) {
                const double l2 = (rho - Gamma * iono) / Lambda2 - 700.0;
                r += obs(rho + Gamma * iono + multipath2(k));
                r += obs(l2, s.lliOnL2.contains(k) ? '1' : ' ') + obs(35.25);
            }
            records.append(r);
        }
        const int seconds = k * StepSeconds;
        text += QStringLiteral("> 2024 01 10 %1 %2 %3  0 %4\n")
                    .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
                    .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
                    .arg(seconds % 60 + 0.0, 10, 'f', 7, QLatin1Char(' '))
                    .arg(records.size(), 2);
        for (const QString& r : records)
            text += r + QLatin1Char('\n');
    }
    return text.toLatin1();
}

// What the scenario must give, counted from the model alone.
struct Expected
{
    qint64 epochsWithData = 0;
    int gaps = 0;
    int lossOfLock = 0;
    double mp1Rms = std::numeric_limits<double>::quiet_NaN();
    double mp2Rms = std::numeric_limits<double>::quiet_NaN();
    qint64 mp1Samples = 0;
    std::vector<std::pair<qint64, EventKind>> curveEvents; // sample, kind
    qint64 aboveMask = 0;
    qint64 withDataAboveMask = 0;
};

double elevationOfG05(int k) { return 5.0 + 1.0 * k; }

Expected recount(const Scenario& s, int detectedJumps)
{
    Expected e;
    std::vector<int> present;
    for (int k = 0; k < Epochs; ++k) {
        if (!s.missing.contains(k))
            present.push_back(k);
        e.aboveMask += elevationOfG05(k) >= 10.0 ? 1 : 0;
        e.withDataAboveMask += elevationOfG05(k) >= 10.0 && !s.missing.contains(k) ? 1 : 0;
    }
    e.epochsWithData = qint64(present.size());
    for (size_t i = 1; i < present.size(); ++i)
        e.gaps += present[i] != present[i - 1] + 1 ? 1 : 0;
    for (int k : s.lliOnL2)
        e.lossOfLock += s.missing.contains(k) || s.singleBand ? 0 : 1;
    if (s.singleBand)
        return e;

    // Arcs: split where an epoch is missing, at loss of lock, and at the
    // jumps the row says are large enough to be seen.
    struct Arc { std::vector<int> epochs; EventKind startKind; };
    std::vector<Arc> arcs;
    for (size_t i = 0; i < present.size(); ++i) {
        const int k = present[i];
        EventKind kind = EventKind::Gap;
        bool starts = i == 0;
        if (!starts && k != present[i - 1] + 1) {
            starts = true;
        } else if (!starts && s.lliOnL2.contains(k)) {
            starts = true;
            kind = EventKind::LossOfLock;
        } else if (!starts && detectedJumps > 0 && s.jumpEpochs.contains(k)) {
            starts = true;
            kind = EventKind::PhaseJump;
        }
        if (starts)
            arcs.push_back({{}, kind});
        arcs.back().epochs.push_back(k);
    }
    double sum1 = 0.0, sum2 = 0.0;
    qint64 n1 = 0, n2 = 0, samples = 0;
    bool written = false;
    EventKind pending = EventKind::Gap;
    for (size_t a = 0; a < arcs.size(); ++a) {
        const std::vector<int>& arc = arcs[a].epochs;
        if (arc.size() < 5)
            continue;
        if (written)
            e.curveEvents.emplace_back(samples, pending);
        written = true;
        pending = a + 1 < arcs.size() ? arcs[a + 1].startKind : EventKind::Gap;
        // The model's MP1 and MP2 with the jumped cycles, which a mean
        // removed per arc takes out again when they are seen.
        std::vector<double> mp1, mp2;
        for (int k : arc) {
            const double jump = Lambda1 * jumpedCycles(s, k);
            if (!s.codeMissing.contains(k))
                mp1.push_back(multipath1(k) - (1.0 + C1) * jump);
            mp2.push_back(multipath2(k) - C2 * jump);
        }
        for (std::vector<double>* mp : {&mp1, &mp2}) {
            double mean = 0.0;
            for (double v : *mp)
                mean += v;
            mean /= double(mp->size());
            for (double v : *mp)
                (mp == &mp1 ? sum1 : sum2) += (v - mean) * (v - mean);
        }
        n1 += qint64(mp1.size());
        n2 += qint64(mp2.size());
        samples += qint64(arc.size());
    }
    e.mp1Samples = n1;
    e.mp1Rms = std::sqrt(sum1 / double(n1));
    e.mp2Rms = std::sqrt(sum2 / double(n2));
    return e;
}

// A 1 Hz series of one satellite on L1 and L2 whose geometry-free phase
// drifts slowly, as the ionosphere makes it.
SatelliteObservations series(int epochs)
{
    SatelliteObservations sat;
    sat.name = QStringLiteral("G12");
    sat.system = 'G';
    sat.prn = 12;
    sat.record.assign(size_t(epochs), 1);
    for (int b : {int(BandL1), int(BandL2)}) {
        SignalSeries& s = sat.bands[b];
        s.codeType = b == BandL1 ? QStringLiteral("C1C") : QStringLiteral("C2W");
        s.phaseType = b == BandL1 ? QStringLiteral("L1C") : QStringLiteral("L2W");
        s.frequencyHz = b == BandL1 ? F1 : F2;
        s.reset(size_t(epochs));
        for (int k = 0; k < epochs; ++k) {
            const double rho = 2.2e7 + 700.0 * k;
            const double iono = (b == BandL1 ? 1.0 : Gamma) * (4.0 + 0.0005 * k);
            s.pseudorange[size_t(k)] = rho + iono;
            s.phase[size_t(k)] = (rho - iono) * s.frequencyHz / SpeedOfLight;
        }
    }
    return sat;
}

std::vector<qint64> seconds(int epochs)
{
    std::vector<qint64> t;
    for (int k = 0; k < epochs; ++k)
        t.push_back(Start + 1000 * k);
    return t;
}

using EventList = QList<QPair<int, int>>; // (epoch or sample, kind)

EventList listOf(const std::vector<EpochEvent>& events)
{
    EventList out;
    for (const EpochEvent& e : events)
        out.append(qMakePair(int(e.epoch), int(e.kind)));
    return out;
}

constexpr int Lol = int(EventKind::LossOfLock);
constexpr int Jump = int(EventKind::PhaseJump);
constexpr int Gap = int(EventKind::Gap);

} // namespace

Q_DECLARE_METATYPE(EventList)
Q_DECLARE_METATYPE(Scenario)

class tst_Quality : public QObject
{
    Q_OBJECT
private slots:
    void recountSmallFile_data();
    void recountSmallFile();
    void slipEvents_data();
    void slipEvents();
    void satellitesPerEpoch();
    void csvRows_data();
    void csvRows();
};

void tst_Quality::recountSmallFile_data()
{
    QTest::addColumn<Scenario>("scenario");
    QTest::addColumn<int>("detectedJumps");
    Scenario s;
    QTest::newRow("clean") << s << 0;
    s = Scenario();
    s.missing = {12, 13, 14};
    QTest::newRow("three epochs missing") << s << 0;
    s = Scenario();
    s.lliOnL2 = {25};
    QTest::newRow("loss of lock on L2") << s << 0;
    s = Scenario();
    s.jumpEpochs = {18};
    s.jumpCycles = 5.0;
    QTest::newRow("five-cycle jump on L1") << s << 1;
    s.jumpCycles = 0.3;
    QTest::newRow("jump under the threshold") << s << 0;
    s = Scenario();
    s.lliOnL2 = {3};
    s.missing = {30};
    QTest::newRow("first arc too short, then a gap") << s << 0;
    s = Scenario();
    s.codeMissing = {20, 21};
    QTest::newRow("code missing at two epochs") << s << 0;
    s = Scenario();
    s.singleBand = true;
    s.missing = {7};
    QTest::newRow("one band only") << s << 0;
}

void tst_Quality::recountSmallFile()
{
    QFETCH(Scenario, scenario);
    QFETCH(int, detectedJumps);
    QString error;
    const auto source = RinexReader::readText(writeFile(scenario), QStringLiteral("test"),
                                              &error);
    QVERIFY2(source, qPrintable(error));
    QCOMPARE(source->satelliteCount(), 2);
    const Expected expected = recount(scenario, detectedJumps);

    std::vector<SatelliteQuality> qualities;
    for (int i = 0; i < 2; ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        Curve_DataSet_XY curve(2);
        MultipathInfo info;
        QVERIFY(computeMultipath(*sat, source->epochs(), source->intervalMs(), &curve, &info,
                                 &error));
        SatelliteQuality q = satelliteQuality(*sat, source->epochs(), source->intervalMs());
        addMultipath(q, info);
        const std::vector<double> elevations = [] {
            std::vector<double> e;
            for (int k = 0; k < Epochs; ++k)
                e.push_back(elevationOfG05(k));
            return e;
        }();
        applyElevations(q, sat->name == QLatin1String("G05") ? &elevations : nullptr,
                        source->epochs().size());
        qualities.push_back(q);
        if (sat->name != QLatin1String("G05")) {
            QCOMPARE(q.epochsWithData, qint64(Epochs));
            QCOMPARE(q.epochsAboveMask, qint64(-1));
            QVERIFY(std::isnan(q.completeness()));
            continue;
        }
        QCOMPARE(q.epochsWithData, expected.epochsWithData);
        QCOMPARE(q.gaps, expected.gaps);
        QCOMPARE(q.lossOfLock, expected.lossOfLock);
        QCOMPARE(q.phaseJumps, detectedJumps);
        QCOMPARE(q.slips(), expected.lossOfLock + detectedJumps);
        QCOMPARE(q.epochsAboveMask, expected.aboveMask);
        QCOMPARE(q.epochsWithDataAboveMask, expected.withDataAboveMask);
        QCOMPARE(q.completeness(),
                 double(expected.withDataAboveMask) / double(expected.aboveMask));
        QCOMPARE(std::isnan(q.mp1Rms), std::isnan(expected.mp1Rms));
        if (!std::isnan(expected.mp1Rms)) {
            // Values are written to a millimetre: the combinations gain a
            // noise of about half a millimetre, which barely moves a root
            // mean square of decimetres.
            QVERIFY2(std::fabs(q.mp1Rms - expected.mp1Rms) < 1e-4,
                     qPrintable(QStringLiteral("%1 %2").arg(q.mp1Rms).arg(expected.mp1Rms)));
            QVERIFY2(std::fabs(q.mp2Rms - expected.mp2Rms) < 1e-4,
                     qPrintable(QStringLiteral("%1 %2").arg(q.mp2Rms).arg(expected.mp2Rms)));
            QCOMPARE(q.mp1Samples, expected.mp1Samples);
        }
        QCOMPARE(int(info.events.size()), int(expected.curveEvents.size()));
        for (size_t k = 0; k < info.events.size(); ++k) {
            QCOMPARE(info.events[k].sample, expected.curveEvents[k].first);
            QCOMPARE(int(info.events[k].kind), int(expected.curveEvents[k].second));
        }
        // The signal strength rides along, chosen like the code.
        QCOMPARE(sat->bands[BandL1].snrType, QStringLiteral("S1C"));
        QCOMPARE(sat->bands[BandL1].snr[1], 41.0);
    }

    // The system adds its satellites up; elevations count where known.
    const SystemQuality gps = systemQuality(qualities, 'G');
    QCOMPARE(gps.satellites, 2);
    QCOMPARE(gps.epochsWithData, expected.epochsWithData + Epochs);
    QCOMPARE(gps.epochsAboveMask, expected.aboveMask);
    QCOMPARE(gps.lossOfLock, expected.lossOfLock);
    QCOMPARE(systemQuality(qualities, 'E').satellites, 0);
    QCOMPARE(systemQuality(qualities, 'E').epochsAboveMask, qint64(-1));
    const double pooled = std::sqrt(
        (qualities[0].mp1SumSquares + qualities[1].mp1SumSquares)
        / double(qualities[0].mp1Samples + qualities[1].mp1Samples));
    QCOMPARE(systemQuality(qualities, 0).mp1Rms, pooled);

    // Both satellites at every epoch but the ones G05 misses.
    const SatelliteCounts counts = countSatellites(qualities, source->epochs());
    QCOMPARE(int(counts.x.size()), Epochs);
    for (int k = 0; k < Epochs; ++k) {
        QCOMPARE(counts.x[size_t(k)], double(Start + 30000 * k));
        QCOMPARE(counts.total[size_t(k)], scenario.missing.contains(k) ? 1.0 : 2.0);
        QCOMPARE(counts.perSystem.at('G')[size_t(k)], counts.total[size_t(k)]);
    }
}

void tst_Quality::slipEvents_data()
{
    QTest::addColumn<QList<int>>("lliL1");
    QTest::addColumn<QList<int>>("jumpL2");    // epochs where L2 gains jumpCycles
    QTest::addColumn<double>("jumpCycles");
    QTest::addColumn<QList<int>>("missing");   // epochs without any observation
    QTest::addColumn<EventList>("onL1");
    QTest::addColumn<EventList>("onL2");
    QTest::addColumn<EventList>("onCurve");    // sample, kind

    QTest::newRow("none") << QList<int>() << QList<int>() << 0.0 << QList<int>() << EventList()
                          << EventList() << EventList();
    QTest::newRow("loss of lock on L1")
        << QList<int>{40} << QList<int>() << 0.0 << QList<int>() << EventList{{40, Lol}}
        << EventList() << EventList{{40, Lol}};
    QTest::newRow("one cycle on L2")
        << QList<int>() << QList<int>{30} << 1.0 << QList<int>() << EventList{{30, Jump}}
        << EventList{{30, Jump}} << EventList{{30, Jump}};
    QTest::newRow("a tenth of a cycle stays unseen")
        << QList<int>() << QList<int>{30} << 0.1 << QList<int>() << EventList() << EventList()
        << EventList();
    // Samples 20 to 22 are left out: the curve resumes at epoch 25 with
    // sample 20, after the arc that the gap ended.
    QTest::newRow("gap, a short arc, then loss of lock")
        << QList<int>{25} << QList<int>() << 0.0 << QList<int>{20, 21}
        << EventList{{22, Gap}, {25, Lol}} << EventList{{22, Gap}} << EventList{{20, Gap}};
}

void tst_Quality::slipEvents()
{
    QFETCH(QList<int>, lliL1);
    QFETCH(QList<int>, jumpL2);
    QFETCH(double, jumpCycles);
    QFETCH(QList<int>, missing);
    QFETCH(EventList, onL1);
    QFETCH(EventList, onL2);
    QFETCH(EventList, onCurve);
    const int n = 60;
    SatelliteObservations sat = series(n);
    for (int k : lliL1)
        sat.bands[BandL1].lli[size_t(k)] = 1;
    for (int e : jumpL2) {
        for (int k = e; k < n; ++k)
            sat.bands[BandL2].phase[size_t(k)] += jumpCycles;
    }
    for (int k : missing) {
        for (SignalSeries& s : sat.bands) {
            if (s.isEmpty())
                continue;
            s.pseudorange[size_t(k)] = std::numeric_limits<double>::quiet_NaN();
            s.phase[size_t(k)] = std::numeric_limits<double>::quiet_NaN();
        }
    }
    const std::vector<qint64> epochs = seconds(n);
    Curve_DataSet_XY curve(2);
    MultipathInfo info;
    QString error;
    QVERIFY(computeMultipath(sat, epochs, 1000, &curve, &info, &error));
    BandEvents events = bandEvents(sat, epochs, 1000);
    addPhaseJumps(events, info);
    QCOMPARE(listOf(events[BandL1]), onL1);
    QCOMPARE(listOf(events[BandL2]), onL2);
    QVERIFY(events[BandL5].empty());
    EventList curveEvents;
    for (const CurveEvent& e : info.events) {
        curveEvents.append(qMakePair(int(e.sample), int(e.kind)));
        // The sample sits at the event's epoch.
        qint64 count = 0;
        const double* x = curve.getAxisData(0)->getData(0, &count);
        QVERIFY(e.sample < count);
        QCOMPARE(x[e.sample], double(epochs[size_t(e.epoch)]));
    }
    QCOMPARE(curveEvents, onCurve);
    for (const EpochEvent& e : events[BandL1])
        QCOMPARE(e.timeMs, epochs[size_t(e.epoch)]);
}

// The shared file's satellites per epoch as its independent statistics
// count them.
void tst_Quality::satellitesPerEpoch()
{
    const QString base = QStringLiteral(GNSSPLOT_TEST_DATA_DIR
                                        "/GRAS00FRA_R_20223151700_15M_01S_MO.rnx");
    QFile statsFile(base + QStringLiteral(".stats.json"));
    if (!statsFile.open(QIODevice::ReadOnly))
        QSKIP("shared data not found; set GNSSPLOT_TEST_DATA_DIR");
    const QJsonObject stats = QJsonDocument::fromJson(statsFile.readAll()).object();
    QString error;
    const auto source = RinexReader::readFile(base + QStringLiteral(".gz"), &error);
    QVERIFY2(source, qPrintable(error));
    std::vector<SatelliteQuality> qualities;
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        qualities.push_back(satelliteQuality(*sat, source->epochs(), source->intervalMs()));
        QCOMPARE(qualities.back().epochsWithData,
                 qint64(stats.value(QStringLiteral("sat_epoch_counts")).toObject()
                            .value(sat->name).toInt()));
    }
    const SatelliteCounts counts = countSatellites(qualities, source->epochs());
    const auto range = std::minmax_element(counts.total.begin(), counts.total.end());
    double sum = 0.0;
    for (double v : counts.total)
        sum += v;
    const QJsonArray expected = stats.value(QStringLiteral("sats_per_epoch_min_mean_max"))
                                    .toArray();
    QCOMPARE(*range.first, expected[0].toDouble());
    QCOMPARE(std::round(sum / double(counts.total.size()) * 10.0) / 10.0,
             expected[1].toDouble());
    QCOMPARE(*range.second, expected[2].toDouble());
    const QJsonObject perSystem = stats.value(QStringLiteral("sats_per_system")).toObject();
    QCOMPARE(int(counts.perSystem.size()), perSystem.size());
    for (const auto& entry : counts.perSystem) {
        const double most = *std::max_element(entry.second.begin(), entry.second.end());
        QVERIFY(most <= perSystem.value(QString(QLatin1Char(entry.first))).toInt());
    }
}

void tst_Quality::csvRows_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<double>("value");
    QTest::addColumn<QByteArray>("row"); // empty: no row
    const qint64 t = gpstMilliseconds(2024, 7, 27, 10, 15, 30.0);
    QTest::newRow("whole second") << t << 0.41249
                                  << QByteArray("G05,2024-07-27T10:15:30,MP1,0.4125\n");
    QTest::newRow("milliseconds") << t + 443 << -1.5
                                  << QByteArray("G05,2024-07-27T10:15:30.443,MP1,-1.5000\n");
    QTest::newRow("before 1970") << qint64(-1) << 2.0
                                 << QByteArray("G05,1969-12-31T23:59:59.999,MP1,2.0000\n");
    QTest::newRow("NaN left out") << t << std::numeric_limits<double>::quiet_NaN()
                                  << QByteArray();
    QTest::newRow("after the window") << t + 3600001 << 1.0 << QByteArray();
}

void tst_Quality::csvRows()
{
    QFETCH(qint64, time);
    QFETCH(double, value);
    QFETCH(QByteArray, row);
    const double windowEnd = double(gpstMilliseconds(2024, 7, 27, 11, 15, 30.0));
    const double x = double(time);
    QByteArray out;
    appendCurveRows(out, QStringLiteral("G05"), QStringLiteral("MP1"), &x, &value, 1, -1e15,
                    windowEnd, 4);
    QCOMPARE(out, row);
    out.clear();
    appendEventRows(out, QStringLiteral("G05"), QStringLiteral("L1C"),
                    {{3, time, EventKind::PhaseJump}}, -1e15, windowEnd);
    QCOMPARE(out.isEmpty(), time > qint64(windowEnd));
    if (!out.isEmpty())
        QVERIFY(out.endsWith(",L1C,phase_jump\n"));
}

QTEST_GUILESS_MAIN(tst_Quality)
#include "tst_quality.moc"
