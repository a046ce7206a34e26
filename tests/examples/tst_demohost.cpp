// SPDX-License-Identifier: MIT
// The demo host's data logic on small files written here: why the plot is
// empty, which observations make MP1 and MP2, signal strength present or
// not, a file cut short, elevations for completeness, the numbers after an
// Apply, fitting Y to the data, and the CSV exports.
#include "DemoHost.h"
#include "DemoTexts.h"
#include "DemoWindow.h"
#include "MultipathView.h"
#include "RinexReader.h"

#include <gnssplot.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace gnssdemo;

namespace {

constexpr double F1 = 1575.42e6;
constexpr double F2 = 1227.60e6;

QString headerLine(const QString& content, const char* label)
{
    return content.leftJustified(60, QLatin1Char(' ')) + QLatin1String(label) + QLatin1Char('\n');
}

QString obs(double value)
{
    return std::isnan(value) ? QString(16, QLatin1Char(' '))
                             : QString::asprintf("%14.3f  ", value);
}

// Which of code and phase a satellite records on each band at an epoch.
struct Signals
{
    bool code1 = true, phase1 = true, code2 = true, phase2 = true;
};

// RINEX 3 with GPS C1C L1C S1C C2W L2W S2W at 30 s: \a epochs epochs of
// satellites G03 and G08, \a which telling what each records when.
template <typename Which>
QByteArray writeV3(int epochs, Which which)
{
    QString text = headerLine(QStringLiteral("     3.04           OBSERVATION DATA    G"),
                              "RINEX VERSION / TYPE")
                   + headerLine(QStringLiteral("G    6 C1C L1C S1C C2W L2W S2W"),
                                "SYS / # / OBS TYPES")
                   + headerLine(QString(), "END OF HEADER");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (int k = 0; k < epochs; ++k) {
        const int s = k * 30;
        text += QStringLiteral("> 2022 01 01 %1 %2 %3  0  2\n")
                    .arg(s / 3600, 2, 10, QLatin1Char('0'))
                    .arg(s / 60 % 60, 2, 10, QLatin1Char('0'))
                    .arg(s % 60 + 0.0, 10, 'f', 7, QLatin1Char(' '));
        for (int prn : {3, 8}) {
            const Signals w = which(prn, k);
            const double rho = 2.1e7 + 1e5 * prn + 90.0 * k;
            const double mp = 0.2 * std::sin(k + prn); // metres on both codes
            text += QStringLiteral("G%1").arg(prn, 2, 10, QLatin1Char('0'))
                    + obs(w.code1 ? rho + mp : nan)
                    + obs(w.phase1 ? rho * F1 / SpeedOfLight : nan) + obs(45.0)
                    + obs(w.code2 ? rho - mp : nan)
                    + obs(w.phase2 ? rho * F2 / SpeedOfLight : nan) + obs(38.5)
                    + QLatin1Char('\n');
        }
    }
    return text.toLatin1();
}

QByteArray everything(int epochs)
{
    return writeV3(epochs, [](int, int) { return Signals(); });
}

struct Fixture
{
    MultipathView view;
    CurveGraphicsTableWidget_Epoch table;
    DemoHost host{&view, &table};

    bool load(const QByteArray& text, QString* error = nullptr)
    {
        QString message;
        auto source = RinexReader::readText(text, QStringLiteral("test"), &message);
        if (!source) {
            if (error)
                *error = message;
            return false;
        }
        return host.load(std::move(source), error);
    }
};

} // namespace

class tst_DemoHost : public QObject
{
    Q_OBJECT
private slots:
    void emptyReason_data();
    void emptyReason();
    void multipathSignals();
    void signalStrength_data();
    void signalStrength();
    void cutShortSaysWhere();
    void elevationsGiveCompleteness();
    void applyRecountsTheNumbers();
    void fitYToData_data();
    void fitYToData();
    void csvExport();
    void windowSaysWhy();
};

void tst_DemoHost::emptyReason_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    QTest::newRow("enough epochs") << everything(12) << QString();
    QTest::newRow("three epochs on two bands: arcs too short")
        << everything(3) << DemoTexts::shortArcs(2, 5);
    QTest::newRow("the two phases never together")
        << writeV3(20, [](int, int k) {
               Signals s;
               s.phase1 = k % 2 == 0;
               s.phase2 = k % 2 == 1;
               return s;
           })
        << DemoTexts::noCommonEpochs(2);
    QTest::newRow("one satellite's arcs short, the other without L2 phase")
        << writeV3(4, [](int prn, int) {
               Signals s;
               s.phase2 = prn == 3;
               return s;
           })
        << DemoTexts::shortArcs(1, 5);
    QTest::newRow("no phase at all")
        << writeV3(20, [](int, int) {
               Signals s;
               s.phase1 = s.phase2 = false;
               return s;
           })
        << DemoTexts::noMultipath();
    QTest::newRow("no epochs") << everything(0) << DemoTexts::noEpochs();
}

void tst_DemoHost::emptyReason()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    Fixture f;
    QString error;
    QVERIFY2(f.load(text, &error), qPrintable(error));
    QCOMPARE(f.host.emptyReason(), reason);
    QCOMPARE(f.view.emptyText(), reason);
    QCOMPARE(f.host.curveNames().isEmpty(), !reason.isEmpty());
}

void tst_DemoHost::multipathSignals()
{
    Fixture f;
    QVERIFY(f.load(everything(12)));
    QCOMPARE(f.host.multipathSignals(QStringLiteral("G03"), 0),
             DemoTexts::multipathSignals(1, QStringLiteral("C1C"), QStringLiteral("L1C"),
                                         QStringLiteral("L2W")));
    QCOMPARE(f.host.multipathSignals(QStringLiteral("G03"), 1),
             DemoTexts::multipathSignals(2, QStringLiteral("C2W"), QStringLiteral("L2W"),
                                         QStringLiteral("L1C")));
    QCOMPARE(f.host.multipathSignals(QStringLiteral("G03"), 2), QString());
    QCOMPARE(f.host.multipathSignals(QStringLiteral("G99"), 0), QString());
    QVERIFY(DemoTexts::multipathSignals(1, QStringLiteral("C1C"), QStringLiteral("L1C"),
                                        QStringLiteral("L2W"))
                .startsWith(QLatin1String("MP1 = C1C/L1C ")));
    const SatelliteFindings* found = f.host.findings(QStringLiteral("G08"));
    QVERIFY(found);
    QCOMPARE(found->bandSignals[BandL1], QStringLiteral("L1C"));
    QCOMPARE(found->snrSignals[BandL2], QStringLiteral("S2W"));
    QVERIFY(!f.host.findings(QStringLiteral("G99")));
}

void tst_DemoHost::signalStrength_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("strength");
    QTest::newRow("RINEX 3 with S types") << everything(12) << true;
    // Version 2 without S types: the digit after each value is not a
    // strength the host may show in dB-Hz.
    QString v2 = headerLine(QStringLiteral("     2.11           OBSERVATION DATA    G"),
                            "RINEX VERSION / TYPE")
                 + headerLine(QStringLiteral("     4    C1    L1    P2    L2"),
                              "# / TYPES OF OBSERV")
                 + headerLine(QString(), "END OF HEADER");
    for (int k = 0; k < 8; ++k) {
        v2 += QStringLiteral(" 22  1  1  0%1%2  0  1G05\n")
                  .arg(k / 2, 3)
                  .arg((k % 2) * 30 + 0.0, 11, 'f', 7);
        v2 += QString::asprintf("%14.3f 8%14.3f 8%14.3f 7%14.3f 7\n", 2.2e7 + k, 1.1e8 + k,
                                2.2e7 + k, 0.9e8 + k);
    }
    QTest::newRow("RINEX 2 without S types") << v2.toLatin1() << false;
}

void tst_DemoHost::signalStrength()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, strength);
    Fixture f;
    QString error;
    QVERIFY2(f.load(text, &error), qPrintable(error));
    QCOMPARE(f.host.signalStrengthReason().isEmpty(), strength);
    if (!strength)
        QCOMPARE(f.host.signalStrengthReason(), DemoTexts::noSignalStrength());
    SatelliteObservations sat;
    QVERIFY(f.host.document()->observations(0, sat));
    QCOMPARE(sat.bands[BandL1].snrType.isEmpty(), !strength);
    QCOMPARE(int(sat.bands[BandL1].snr.size()), int(f.host.document()->epochs().size()));
    QCOMPARE(std::isnan(sat.bands[BandL1].snr[0]), !strength);
    if (strength)
        QCOMPARE(sat.bands[BandL2].snr[3], 38.5);
}

void tst_DemoHost::cutShortSaysWhere()
{
    Fixture f;
    const QByteArray whole = everything(12); // 3 header lines, 3 lines per epoch
    QVERIFY(f.load(whole));
    QCOMPARE(f.host.readWarning(), QString());
    // Cut before G08's record of the twelfth epoch, line 3 + 11 * 3 + 3.
    const QByteArray cut = whole.left(whole.lastIndexOf("G08"));
    QVERIFY(f.load(cut));
    QCOMPARE(int(f.host.document()->epochs().size()), 11);
    ReadStop stop;
    stop.line = 39;
    stop.endsInside = "an epoch's satellite records";
    stop.epochsKept = 11;
    QCOMPARE(f.host.readWarning(), DemoTexts::readStopped(stop));
    QVERIFY(f.host.readWarning().startsWith(QLatin1String("line 39: file ends inside an "
                                                          "epoch's satellite records; 11 ")));
    QCOMPARE(f.host.curveNames().size(), 2); // the data that is there is shown
}

void tst_DemoHost::elevationsGiveCompleteness()
{
    Fixture f;
    QVERIFY(f.load(writeV3(20, [](int prn, int k) {
        Signals s;
        s.code1 = s.phase1 = s.code2 = s.phase2 = !(prn == 3 && k >= 15);
        return s;
    })));
    QCOMPARE(f.host.findings(QStringLiteral("G03"))->quality.epochsAboveMask, qint64(-1));
    // G03 rises through 10 degrees at epoch 4 and is seen until epoch 14; G08
    // has a vector of the wrong length, which counts as no elevations.
    std::vector<double> g03;
    for (int k = 0; k < 20; ++k)
        g03.push_back(k < 4 ? 5.0 : (k == 19 ? std::nan("") : 30.0));
    const std::vector<double> wrong(7, 45.0);
    int asked = 0;
    f.host.setElevationLookup([&](const QString& name) -> const std::vector<double>* {
        ++asked;
        return name == QLatin1String("G03") ? &g03 : &wrong;
    });
    QCOMPARE(asked, 2);
    const SatelliteQuality& q = f.host.findings(QStringLiteral("G03"))->quality;
    QCOMPARE(q.epochsWithData, qint64(15));
    QCOMPARE(q.epochsAboveMask, qint64(15));        // epochs 4 to 18
    QCOMPARE(q.epochsWithDataAboveMask, qint64(11)); // epochs 4 to 14
    QCOMPARE(f.host.findings(QStringLiteral("G08"))->quality.epochsAboveMask, qint64(-1));
    QCOMPARE(f.host.qualityOfSystem('G').completeness(), 11.0 / 15.0);
    // Forgotten again.
    f.host.setElevationLookup(ElevationLookup());
    QCOMPARE(f.host.findings(QStringLiteral("G03"))->quality.epochsAboveMask, qint64(-1));
    QVERIFY(!f.host.hasElevationLookup());
}

void tst_DemoHost::applyRecountsTheNumbers()
{
    Fixture f;
    QVERIFY(f.load(everything(30)));
    const DemoDocument* doc = f.host.document();
    QCOMPARE(f.host.findings(QStringLiteral("G08"))->quality.epochsWithData, qint64(30));
    QCOMPARE(f.host.satelliteCounts().total[12], 2.0);
    // Epochs 10 to 14 erased from G08 make a gap in the middle of its day.
    QMap<QString, QList<QPair<qint64, qint64>>> marks;
    marks.insert(QStringLiteral("G08"), {qMakePair(doc->epochs()[10], qint64(150000))});
    QMap<QString, bool> enabled{{QStringLiteral("G03"), true}, {QStringLiteral("G08"), true}};
    f.table.setResources(doc->startTime(), doc->endTime(), f.host.epochData(), enabled, {},
                         marks);
    f.host.applyMarks();
    const SatelliteFindings* g08 = f.host.findings(QStringLiteral("G08"));
    QCOMPARE(g08->quality.epochsWithData, qint64(25));
    QCOMPARE(g08->quality.gaps, 1);
    QCOMPARE(f.host.satelliteCounts().total[12], 1.0);
    QCOMPARE(f.host.satelliteCounts().total[15], 2.0);
    QCOMPARE(int(g08->events[BandL1].size()), 1);
    QCOMPARE(g08->events[BandL1][0].epoch, qint64(15));
    QCOMPARE(int(g08->events[BandL1][0].kind), int(EventKind::Gap));
    QCOMPARE(int(g08->multipath.events.size()), 1);
    QCOMPARE(g08->multipath.events[0].sample, qint64(10));
    QCOMPARE(f.host.qualityOfSystem(0).epochsWithData, qint64(55));
}

void tst_DemoHost::fitYToData_data()
{
    QTest::addColumn<double>("tMin"); // milliseconds
    QTest::addColumn<double>("tMax");
    QTest::addColumn<QList<int>>("axes");
    QTest::addColumn<double>("yMin"); // NaN: no value in the window
    QTest::addColumn<double>("yMax");
    const double none = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("all, first axis") << -1e9 << 1e9 << QList<int>{1} << -3.0 << 2.0;
    QTest::newRow("first half, both axes") << 0.0 << 4000.0 << QList<int>{1, 2} << -0.7 << 0.6;
    QTest::newRow("bounds inside") << 1000.0 << 2000.0 << QList<int>{2} << -0.7 << 0.6;
    QTest::newRow("only a NaN") << 3000.0 << 3000.0 << QList<int>{1} << none << none;
    QTest::newRow("after the samples") << 9500.0 << 2e4 << QList<int>{1, 2} << none << none;
    QTest::newRow("no such axis") << -1e9 << 1e9 << QList<int>{0, 3} << none << none;
}

// The Y range of samples in a time window, on a curve whose values are
// known; then the host's step that fits the view to it.
void tst_DemoHost::fitYToData()
{
    QFETCH(double, tMin);
    QFETCH(double, tMax);
    QFETCH(QList<int>, axes);
    QFETCH(double, yMin);
    QFETCH(double, yMax);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> columns[3] = {
        {0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000},
        {0.1, -0.5, 0.2, nan, 0.3, 2.0, -0.1, 0.0, 0.4, -3.0},
        {0.0, 0.6, -0.7, nan, 0.1, 0.2, 0.0, 0.0, 0.0, 0.0}};
    Curve_DataSet_XY curve(2);
    for (int k = 0; k < 3; ++k) {
        AxisData* axis = curve.getAxisData(k);
        axis->beginSetData();
        QVERIFY(axis->allocData(10, nullptr));
        std::copy(columns[k].begin(), columns[k].end(), axis->getInSettingData(0, nullptr));
        axis->endSetData(true);
    }
    double lo = 42.0, hi = 42.0;
    const bool found = yRangeInWindow({&curve}, axes, tMin, tMax, &lo, &hi);
    QCOMPARE(found, !std::isnan(yMin));
    QCOMPARE(lo, found ? yMin : 42.0);
    QCOMPARE(hi, found ? yMax : 42.0);

    // The host fits the view's window, the wheel's zoom undone; with
    // nothing to fit it changes nothing.
    Fixture f;
    QVERIFY(f.load(everything(40)));
    const double before = f.view.baseHalfRange();
    QVERIFY(before > 0.0);
    QVERIFY(!f.host.fitYToData({2}));
    QCOMPARE(f.view.baseHalfRange(), before);
    double from = 0.0, to = 0.0;
    f.view.getTimeWindow(from, to);
    QVERIFY(f.host.fitYToData({0, 1}));
    QCOMPARE(f.view.baseHalfRange(), f.host.fitHalfRange(from, to, {0, 1}));
    QCOMPARE(f.view.zoomFactor(), 1.0);
}

void tst_DemoHost::csvExport()
{
    Fixture f;
    QVERIFY(f.load(writeV3(20, [](int prn, int k) {
        Signals s;
        s.code1 = s.phase1 = s.code2 = s.phase2 = !(prn == 8 && k == 9); // a gap in G08
        return s;
    })));
    const qint64 first = f.host.document()->epochs().front();
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(f.host.writeCurvesCsv(&buffer, {QStringLiteral("G08"), QStringLiteral("X01")}, {1},
                                  double(first), double(first + 60000)));
    QList<QByteArray> lines = buffer.data().split('\n');
    QCOMPARE(lines.takeFirst(), QByteArray("satellite,time_gpst,signal,value"));
    QCOMPARE(lines.takeLast(), QByteArray()); // the text ends with a line end
    QCOMPARE(lines.size(), 3);                // epochs 0, 1 and 2 of the window
    for (int i = 0; i < 3; ++i)
        QVERIFY2(lines[i].startsWith("G08,2022-01-01T00:0" + QByteArray::number(i / 2) + ':'
                                     + (i % 2 ? "30" : "00") + ",MP2,"),
                 lines[i].constData());

    buffer.close();
    buffer.setData(QByteArray());
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(f.host.writeEventsCsv(&buffer, {QStringLiteral("G03"), QStringLiteral("G08")}, -1e18,
                                  1e18));
    // G08 comes back after its missing epoch: a gap on both bands.
    QCOMPARE(buffer.data(), QByteArray("satellite,time_gpst,signal,kind\n"
                                       "G08,2022-01-01T00:05:00,L1C,gap\n"
                                       "G08,2022-01-01T00:05:00,L2W,gap\n"));
    // A device that takes nothing is a failure.
    QBuffer closed;
    QVERIFY(!f.host.writeCurvesCsv(&closed, {QStringLiteral("G08")}, {0}, -1e18, 1e18));
    QVERIFY(!f.host.writeEventsCsv(&closed, {QStringLiteral("G08")}, -1e18, 1e18));
}

// A file that cannot be read leaves the window up, saying why over the
// plot; a file cut short is shown, and the status bar says where it ends.
void tst_DemoHost::windowSaysWhy()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    DemoWindow window;
    QString error;
    QVERIFY(!window.loadRinex(dir.filePath(QStringLiteral("missing.rnx")), &error));
    QVERIFY(error.contains(QLatin1String("missing.rnx")));
    window.showReadFailure(error);
    QCOMPARE(window.view()->emptyText(), DemoTexts::cannotRead(error));
    QCOMPARE(window.message(), DemoTexts::cannotRead(error));

    const QString path = dir.filePath(QStringLiteral("cut.rnx"));
    QFile file(path);
    const QByteArray whole = everything(12);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(whole.left(whole.lastIndexOf("G08") + 10));
    file.close();
    QVERIFY2(window.loadRinex(path, &error), qPrintable(error));
    QCOMPARE(int(window.host()->document()->epochs().size()), 11);
    QVERIFY(window.host()->readWarning().startsWith(QLatin1String("cut.rnx: line 39: ")));
    QCOMPARE(window.message(), window.host()->readWarning());
    QCOMPARE(window.view()->emptyText(), QString());
    // A whole file says nothing.
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(whole);
    file.close();
    QVERIFY(window.loadRinex(path, &error));
    QCOMPARE(window.message(), QString());
}

QTEST_MAIN(tst_DemoHost)
#include "tst_demohost.moc"
