// SPDX-License-Identifier: MIT
// Code multipath: zero-mean arcs with sane magnitudes on real and synthetic
// days.
#include "Multipath.h"
#include "RinexReader.h"
#include "SyntheticSource.h"

#include <AxisData.h>
#include <Curve_DataSet_XY.h>

#include <QtTest>

#include <cmath>
#include <set>

using namespace gnssdemo;

namespace {

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
    void zeroMeanArcs_data();
    void zeroMeanArcs();
};

void tst_Multipath::zeroMeanArcs_data()
{
    QTest::addColumn<QString>("file"); // empty: the synthetic day
    QTest::addColumn<double>("limit"); // metres
    QTest::newRow("synthetic day") << QString() << 10.0;
    QTest::newRow("AJAC") << QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz") << 40.0;
    QTest::newRow("DGAR estimated GLONASS channels") << QStringLiteral("dgar0100.24o.gz") << 40.0;
    QTest::newRow("GRAS") << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz") << 40.0;
}

void tst_Multipath::zeroMeanArcs()
{
    QFETCH(QString, file);
    QFETCH(double, limit);
    const QString path = QStringLiteral(GNSSPLOT_TEST_DATA_DIR "/") + file;
    if (!file.isEmpty() && !QFile::exists(path))
        QSKIP(qPrintable(QStringLiteral("shared data not found: ") + path));
    QString error;
    std::unique_ptr<ObservationSource> source;
    if (file.isEmpty())
        source = std::make_unique<SyntheticSource>();
    else
        source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    SatelliteObservations sat;
    MultipathInfo total;
    for (int i = 0; i < source->satelliteCount(); i += file.isEmpty() ? 4 : 1) {
        QVERIFY(source->satellite(i, sat));
        Curve_DataSet_XY curve(2);
        MultipathInfo info;
        QVERIFY(computeMultipath(sat, source->epochs(), source->intervalMs(), &curve, &info,
                                 &error));
        total.samples += info.samples;
        total.phaseJumpBreaks += info.phaseJumpBreaks;
        total.lliBreaks += info.lliBreaks;
        // A wrong wavelength (say, a wrong GLONASS channel) lets MP drift by
        // hundreds of metres over an arc; real multipath stays within tens.
        checkArcs(published(curve), limit, sat.name);
    }
    QVERIFY(total.samples > 0);
    // The synthetic day slips both with and without loss-of-lock flags.
    if (file.isEmpty())
        QVERIFY(total.phaseJumpBreaks > 0 && total.lliBreaks > total.phaseJumpBreaks);
}

QTEST_GUILESS_MAIN(tst_Multipath)
#include "tst_multipath.moc"
