// Code multipath: exact values on constructed observations, arc breaks for
// each cause, and zero-mean arcs with sane magnitudes on real and synthetic
// days.
#include "Multipath.h"
#include "RinexReader.h"
#include "SyntheticSource.h"

#include <AxisData.h>
#include <Curve_DataSet_XY.h>

#include <QtTest>

#include <cmath>
#include <numeric>
#include <set>

using namespace gnssdemo;

Q_DECLARE_METATYPE(std::set<qint64>)
Q_DECLARE_METATYPE(std::vector<int>)

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double F1 = 1575.42e6;
const double F2 = 1227.60e6;

// The code multipath added to P1 and P2 at epoch i; MP must give it back.
double m1(int i) { return 0.8 * std::sin(0.5 * i); }
double m2(int i) { return 0.5 * std::cos(0.3 * i); }

// Twenty 1 Hz epochs of a GPS satellite with a linear range, no ionosphere,
// and the multipath above.
SatelliteObservations makeSatellite(std::vector<qint64>& epochs)
{
    const int n = 20;
    epochs.clear();
    SatelliteObservations sat;
    sat.name = QStringLiteral("G01");
    sat.system = 'G';
    sat.record.assign(n, 1);
    sat.bands[BandL1].reset(n);
    sat.bands[BandL2].reset(n);
    sat.bands[BandL1].frequencyHz = F1;
    sat.bands[BandL2].frequencyHz = F2;
    for (int i = 0; i < n; ++i) {
        epochs.push_back(1000000 + 1000 * i);
        const double range = 2.2e7 + 700.0 * i;
        sat.bands[BandL1].pseudorange[size_t(i)] = range + m1(i);
        sat.bands[BandL2].pseudorange[size_t(i)] = range + m2(i);
        sat.bands[BandL1].phase[size_t(i)] = range / (SpeedOfLight / F1) + 12345.0;
        sat.bands[BandL2].phase[size_t(i)] = range / (SpeedOfLight / F2) - 5432.0;
    }
    return sat;
}

struct Published
{
    std::vector<double> x, mp1, mp2;
    std::set<qint64> breaks;
};

Published published(const Curve_DataSet_XY& curve)
{
    Published p;
    std::vector<double>* out[3] = {&p.x, &p.mp1, &p.mp2};
    for (int k = 0; k < 3; ++k) {
        qint64 n = 0;
        const double* v = curve.getAxisData(k)->getData(0, &n);
        if (v)
            out[k]->assign(v, v + n);
    }
    curve.getAxisBreakInfo(0, p.breaks);
    return p;
}

// Every arc's MP1 and MP2 average zero and stay within a plausible size.
void checkArcs(const Published& p, double limit, const QString& what)
{
    qint64 begin = 0;
    std::vector<qint64> ends(p.breaks.begin(), p.breaks.end());
    ends.push_back(qint64(p.x.size()) - 1);
    for (qint64 end : ends) {
        for (const std::vector<double>* mp : {&p.mp1, &p.mp2}) {
            double sum = 0.0;
            int count = 0;
            for (qint64 i = begin; i <= end; ++i) {
                if (std::isnan((*mp)[size_t(i)]))
                    continue;
                QVERIFY2(std::fabs((*mp)[size_t(i)]) < limit, qPrintable(what));
                sum += (*mp)[size_t(i)];
                ++count;
            }
            if (count)
                QVERIFY2(std::fabs(sum / count) < 1e-9, qPrintable(what));
        }
        for (qint64 i = begin + 1; i <= end; ++i)
            QVERIFY(p.x[size_t(i)] > p.x[size_t(i) - 1]);
        begin = end + 1;
    }
}

} // namespace

class tst_Multipath : public QObject
{
    Q_OBJECT
private slots:
    void constructed_data();
    void constructed();
    void refusesCurveWithoutTwoYAxes();
    void realFilesHaveZeroMeanArcs_data();
    void realFilesHaveZeroMeanArcs();
    void syntheticDay();
};

void tst_Multipath::constructed_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<std::vector<int>>("kept");  // epochs that become samples
    QTest::addColumn<std::set<qint64>>("breaks");
    std::vector<int> all(20);
    std::iota(all.begin(), all.end(), 0);
    QTest::newRow("one arc") << QString() << all << std::set<qint64>{};
    QTest::newRow("LLI on L2") << QStringLiteral("lli") << all << std::set<qint64>{7};
    QTest::newRow("slip without LLI") << QStringLiteral("silent slip") << all
                                      << std::set<qint64>{11};
    std::vector<int> gap = all;
    gap.erase(gap.begin() + 9, gap.begin() + 11);
    QTest::newRow("missing phases") << QStringLiteral("gap") << gap << std::set<qint64>{8};
    QTest::newRow("missing P2") << QStringLiteral("no P2") << all << std::set<qint64>{};
    std::vector<int> late(all.begin() + 4, all.end());
    QTest::newRow("short first arc left out") << QStringLiteral("short arc") << late
                                              << std::set<qint64>{};
}

void tst_Multipath::constructed()
{
    QFETCH(QString, change);
    QFETCH(std::vector<int>, kept);
    QFETCH(std::set<qint64>, breaks);
    std::vector<qint64> epochs;
    SatelliteObservations sat = makeSatellite(epochs);
    SignalSeries& l1 = sat.bands[BandL1];
    SignalSeries& l2 = sat.bands[BandL2];
    if (change == QLatin1String("lli")) {
        l2.lli[8] = 1;
    } else if (change == QLatin1String("silent slip")) {
        for (size_t i = 12; i < 20; ++i)
            l1.phase[i] += 5.0;
    } else if (change == QLatin1String("gap")) {
        l1.phase[9] = NaN;
        l2.phase[10] = NaN;
    } else if (change == QLatin1String("no P2")) {
        l2.pseudorange[3] = NaN;
    } else if (change == QLatin1String("short arc")) {
        l1.phase[3] = NaN; // leaves a three-sample arc 0..2
    }

    Curve_DataSet_XY curve(2);
    MultipathInfo info;
    QVERIFY(computeMultipath(sat, epochs, 1000, &curve, &info, nullptr));
    QCOMPARE(info.bandA, int(BandL1));
    QCOMPARE(info.bandB, int(BandL2));
    const Published p = published(curve);
    QCOMPARE(p.x.size(), kept.size());
    QCOMPARE(p.breaks, breaks);
    QCOMPARE(info.lliBreaks, change == QLatin1String("lli") ? 1 : 0);
    QCOMPARE(info.phaseJumpBreaks, change == QLatin1String("silent slip") ? 1 : 0);
    QCOMPARE(info.droppedArcs, change == QLatin1String("short arc") ? 1 : 0);

    // Expected: the injected multipath minus its mean over each arc.
    std::vector<qint64> ends(breaks.begin(), breaks.end());
    ends.push_back(qint64(kept.size()) - 1);
    qint64 begin = 0;
    for (qint64 end : ends) {
        double mean1 = 0.0, mean2 = 0.0;
        int n2 = 0;
        for (qint64 k = begin; k <= end; ++k) {
            mean1 += m1(kept[size_t(k)]);
            if (!std::isnan(l2.pseudorange[size_t(kept[size_t(k)])])) {
                mean2 += m2(kept[size_t(k)]);
                ++n2;
            }
        }
        mean1 /= double(end - begin + 1);
        mean2 /= n2;
        for (qint64 k = begin; k <= end; ++k) {
            const int e = kept[size_t(k)];
            QCOMPARE(p.x[size_t(k)], double(epochs[size_t(e)]));
            QVERIFY2(std::fabs(p.mp1[size_t(k)] - (m1(e) - mean1)) < 1e-6,
                     qPrintable(QStringLiteral("MP1 at %1").arg(k)));
            if (std::isnan(l2.pseudorange[size_t(e)]))
                QVERIFY(std::isnan(p.mp2[size_t(k)]));
            else
                QVERIFY2(std::fabs(p.mp2[size_t(k)] - (m2(e) - mean2)) < 1e-6,
                         qPrintable(QStringLiteral("MP2 at %1").arg(k)));
        }
        begin = end + 1;
    }
}

void tst_Multipath::refusesCurveWithoutTwoYAxes()
{
    std::vector<qint64> epochs;
    const SatelliteObservations sat = makeSatellite(epochs);
    Curve_DataSet_XY one(1);
    QString error;
    QVERIFY(!computeMultipath(sat, epochs, 1000, &one, nullptr, &error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(one.getAxisData(0)->getArea(nullptr, nullptr), qint64(0));
    QVERIFY(!computeMultipath(sat, epochs, 1000, nullptr, nullptr, nullptr));
}

void tst_Multipath::realFilesHaveZeroMeanArcs_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("AJAC") << QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz");
    QTest::newRow("DGAR estimated GLONASS channels") << QStringLiteral("dgar0100.24o.gz");
    QTest::newRow("GRAS") << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz");
}

void tst_Multipath::realFilesHaveZeroMeanArcs()
{
    QFETCH(QString, file);
    const QString path = QStringLiteral(GNSSPLOT_TEST_DATA_DIR "/") + file;
    if (!QFile::exists(path))
        QSKIP(qPrintable(QStringLiteral("shared data not found: ") + path));
    QString error;
    const auto source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    qint64 samples = 0;
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        Curve_DataSet_XY curve(2);
        MultipathInfo info;
        QVERIFY(computeMultipath(*sat, source->epochs(), source->intervalMs(), &curve, &info,
                                 &error));
        samples += info.samples;
        // A wrong wavelength (say, a wrong GLONASS channel) lets MP drift by
        // hundreds of metres over an arc; real multipath stays within tens.
        checkArcs(published(curve), 40.0, sat->name);
    }
    QVERIFY(samples > 0);
}

void tst_Multipath::syntheticDay()
{
    const SyntheticSource source;
    SatelliteObservations sat;
    int phaseJumps = 0;
    int lliBreaks = 0;
    for (int i = 0; i < source.satelliteCount(); i += 4) {
        QVERIFY(source.satellite(i, sat));
        Curve_DataSet_XY curve(2);
        MultipathInfo info;
        QVERIFY(computeMultipath(sat, source.epochs(), 1000, &curve, &info, nullptr));
        QVERIFY(info.samples > 0);
        phaseJumps += info.phaseJumpBreaks;
        lliBreaks += info.lliBreaks;
        checkArcs(published(curve), 10.0, sat.name);
    }
    QVERIFY(phaseJumps > 0);
    QVERIFY(lliBreaks > phaseJumps);
}

QTEST_GUILESS_MAIN(tst_Multipath)
#include "tst_multipath.moc"
