// The RINEX reader against the real files' independently derived facts,
// against hand-written files exercising the awkward parts of both format
// versions, and against malformed input.
#include "Multipath.h"
#include "RinexReader.h"

#include <AxisData.h>
#include <Curve_DataSet_XY.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <random>

using namespace gnssdemo;

namespace {

const QString DataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);

// "2024-04-01 08:31:16.442760" to GPST milliseconds, through Qt's calendar.
qint64 statsTime(const QString& text)
{
    const QDateTime dt = QDateTime::fromString(text.left(19),
                                               QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const double fraction = text.mid(19).isEmpty() ? 0.0 : text.mid(19).toDouble();
    return QDateTime(dt.date(), dt.time(), Qt::UTC).toMSecsSinceEpoch()
           + qint64(std::llround(fraction * 1000.0));
}

QString pad(QString s, int width) { return s.leftJustified(width, QLatin1Char(' ')); }

QString headerLine(const QString& content, const char* label)
{
    return pad(content, 60) + QLatin1String(label) + QLatin1Char('\n');
}

QString obs(double value, int lli = -1)
{
    QString s = std::isnan(value) ? QString(14, QLatin1Char(' '))
                                  : QString::asprintf("%14.3f", value);
    return s + (lli < 0 ? QLatin1Char(' ') : QLatin1Char(char('0' + lli))) + QLatin1Char(' ');
}

const double NaN = std::numeric_limits<double>::quiet_NaN();

QString v3Header()
{
    return headerLine(QStringLiteral("     3.04           OBSERVATION DATA    M"),
                      "RINEX VERSION / TYPE")
           + headerLine(QStringLiteral("G    4 C1C L1C C2W L2W"), "SYS / # / OBS TYPES")
           + headerLine(QStringLiteral("E    2 C1C L1C"), "SYS / # / OBS TYPES")
           + headerLine(QStringLiteral("E   10  1 C1C"), "SYS / SCALE FACTOR")
           + headerLine(QString(), "END OF HEADER");
}

std::unique_ptr<MemoryObservationSource> parse(const QString& text, QString* error)
{
    return RinexReader::readText(text.toLatin1(), QStringLiteral("test"), error);
}

} // namespace

class tst_RinexReader : public QObject
{
    Q_OBJECT
private slots:
    void realFiles_data();
    void realFiles();
    void declaredTypesWithoutData();
    void glonassChannels();
    void version2Records();
    void version3Events();
    void malformed_data();
    void malformed();
    void damagedFiles();
    void randomDamageNeverCrashes();
};

void tst_RinexReader::realFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("AJAC 3.04 day 30 s") << QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx");
    QTest::newRow("DGAR 2.11 day 30 s") << QStringLiteral("dgar0100.24o");
    QTest::newRow("SEPT 3.04 1 Hz QZSS") << QStringLiteral("SEPT078M.21O");
    QTest::newRow("GRAS 3.04 1 Hz") << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.rnx");
    QTest::newRow("GEOP 3.03 phone") << QStringLiteral("GEOP092I.24o");
}

void tst_RinexReader::realFiles()
{
    QFETCH(QString, file);
    const QString path = DataDir + QLatin1Char('/') + file + QStringLiteral(".gz");
    QFile statsFile(DataDir + QLatin1Char('/') + file + QStringLiteral(".stats.json"));
    if (!QFile::exists(path) || !statsFile.open(QIODevice::ReadOnly))
        QSKIP(qPrintable(QStringLiteral("shared data not found next to the repository: ") + path));
    const QJsonObject stats = QJsonDocument::fromJson(statsFile.readAll()).object();

    QString error;
    const auto source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    const std::vector<qint64>& epochs = source->epochs();
    QCOMPARE(qint64(epochs.size()), qint64(stats.value(QStringLiteral("epochs")).toInt()));
    QCOMPARE(epochs.front(), statsTime(stats.value(QStringLiteral("first_epoch")).toString()));
    QCOMPARE(epochs.back(), statsTime(stats.value(QStringLiteral("last_epoch")).toString()));

    const QJsonObject counts = stats.value(QStringLiteral("sat_epoch_counts")).toObject();
    QCOMPARE(source->satelliteCount(), counts.size());
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        QVERIFY2(counts.contains(sat->name), qPrintable(sat->name));
        QCOMPARE(sat->recordCount(), qint64(counts.value(sat->name).toInt()));
        QCOMPARE(sat->record.size(), epochs.size());
        for (const SignalSeries& band : sat->bands) {
            if (band.isEmpty())
                continue;
            QCOMPARE(band.pseudorange.size(), epochs.size());
            QCOMPARE(band.phase.size(), epochs.size());
            QVERIFY(band.frequencyHz > 1e9);
        }
    }
}

void tst_RinexReader::declaredTypesWithoutData()
{
    const QString path = DataDir + QStringLiteral("/GEOP092I.24o.gz");
    if (!QFile::exists(path))
        QSKIP("shared data not found");
    QString error;
    const auto source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    QCOMPARE(source->intervalMs(), qint64(1000)); // no INTERVAL line: taken from the epochs
    // Galileo declares C1B first but only C1C carries values; QZSS is declared
    // without a single record; no phase has data, so there is no multipath.
    qint64 galileoE1 = 0;
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        QVERIFY(sat->system != 'J');
        if (sat->system == 'E') {
            QCOMPARE(sat->bands[BandL1].codeType, QStringLiteral("C1C"));
            for (double v : sat->bands[BandL1].pseudorange)
                galileoE1 += std::isnan(v) ? 0 : 1;
        }
        for (const SignalSeries& band : sat->bands)
            for (double v : band.phase)
                QVERIFY(std::isnan(v));
        Curve_DataSet_XY curve(2);
        MultipathInfo info;
        QVERIFY(computeMultipath(*sat, source->epochs(), source->intervalMs(), &curve, &info,
                                 nullptr));
        QCOMPARE(info.samples, qint64(0));
        QCOMPARE(curve.getAxisData(1)->getArea(nullptr, nullptr), qint64(0));
    }
    QCOMPARE(galileoE1, qint64(5761));
}

void tst_RinexReader::glonassChannels()
{
    const QString ajac = DataDir + QStringLiteral("/AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz");
    const QString dgar = DataDir + QStringLiteral("/dgar0100.24o.gz");
    if (!QFile::exists(ajac) || !QFile::exists(dgar))
        QSKIP("shared data not found");
    QString error;
    const auto withHeader = RinexReader::readFile(ajac, &error);
    const auto withoutHeader = RinexReader::readFile(dgar, &error);
    QVERIFY2(withHeader && withoutHeader, qPrintable(error));
    QMap<QString, int> table;
    for (int i = 0; i < withHeader->satelliteCount(); ++i) {
        const SatelliteObservations* sat = withHeader->satelliteAt(i);
        if (sat->system != 'R')
            continue;
        QCOMPARE(sat->channelOrigin, ChannelOrigin::Header);
        table.insert(sat->name, sat->glonassChannel);
    }
    QCOMPARE(table.value(QStringLiteral("R02")), -4);
    QCOMPARE(table.value(QStringLiteral("R21")), 4);
    // The 2.11 file has no channel table: estimates from the data must agree
    // with the table the other station broadcast the same year.
    int estimated = 0;
    for (int i = 0; i < withoutHeader->satelliteCount(); ++i) {
        const SatelliteObservations* sat = withoutHeader->satelliteAt(i);
        if (sat->channelOrigin != ChannelOrigin::Estimated)
            continue;
        ++estimated;
        if (table.contains(sat->name))
            QCOMPARE(sat->glonassChannel, table.value(sat->name));
    }
    QVERIFY2(estimated >= 20, qPrintable(QString::number(estimated)));
}

void tst_RinexReader::version2Records()
{
    // Seven types (two lines per satellite), 14 satellites (a continued
    // satellite list), events with special records, a power failure, a
    // cycle-slip record and a fractional-second epoch.
    QString t = headerLine(QStringLiteral("     2.11           OBSERVATION DATA    M (MIXED)"),
                           "RINEX VERSION / TYPE")
                + headerLine(QStringLiteral("     7    C1    L1    L2    P2    P1    D1    S1"),
                             "# / TYPES OF OBSERV")
                + headerLine(QString(), "END OF HEADER");
    QStringList sats;
    for (int k = 1; k <= 12; ++k)
        sats << QStringLiteral("G%1").arg(k, 2, 10, QLatin1Char('0'));
    sats << QStringLiteral("R 3") << QStringLiteral("E11");
    auto epochLine = [](const QString& time, int flag, const QStringList& ids) {
        QString line = QStringLiteral(" %1  %2%3").arg(time).arg(flag).arg(ids.size(), 3);
        for (int i = 0; i < ids.size(); ++i) {
            if (i > 0 && i % 12 == 0)
                line += QLatin1Char('\n') + QString(32, QLatin1Char(' '));
            line += ids[i];
        }
        return line + QLatin1Char('\n');
    };
    auto records = [&](int epoch, const QStringList& ids) {
        QString out;
        for (int i = 0; i < ids.size(); ++i) {
            const double base = 2.0e7 + 1000.0 * i + epoch;
            const double p2 = (i == 2) ? NaN : base + 2.0;
            out += obs(base) + obs(base / 0.19, i == 1 ? 1 : -1) + obs(base / 0.24)
                   + obs(p2) + obs(base + 1.0) + QLatin1Char('\n');
            out += obs(-1234.5) + obs(45.0) + QLatin1Char('\n');
        }
        return out;
    };
    t += epochLine(QStringLiteral("24  1 10  0  0  0.0000000"), 0, sats) + records(0, sats);
    t += QStringLiteral("                            4  2\n")
         + headerLine(QStringLiteral("a comment"), "COMMENT")
         + headerLine(QStringLiteral("    30.000"), "INTERVAL");
    t += epochLine(QStringLiteral("24  1 10  0  0  1.5000000"), 1, sats) + records(1, sats);
    t += epochLine(QStringLiteral("24  1 10  0  0  1.5000000"), 6, {QStringLiteral("G05")})
         + obs(3.0) + obs(0.0) + QLatin1Char('\n') + QLatin1Char('\n');
    t += QStringLiteral(" 24  1 10  0  0  2.0000000  5  1\n") + QStringLiteral("EXTERNAL EVENT\n");
    t += epochLine(QStringLiteral("24  1 10  0  0  2.2500000"), 0, sats.mid(0, 13))
         + records(2, sats.mid(0, 13));

    QString error;
    const auto source = parse(t, &error);
    QVERIFY2(source, qPrintable(error));
    const qint64 t0 = QDateTime(QDate(2024, 1, 10), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
    QCOMPARE(source->epochs(), (std::vector<qint64>{t0, t0 + 1500, t0 + 2250}));
    QCOMPARE(source->satelliteCount(), 14);
    const SatelliteObservations* g02 = source->satelliteAt(2);
    const SatelliteObservations* g03 = source->satelliteAt(3);
    const SatelliteObservations* g05 = source->satelliteAt(5);
    const SatelliteObservations* r03 = source->satelliteAt(13);
    QCOMPARE(g02->name, QStringLiteral("G02"));
    QCOMPARE(r03->name, QStringLiteral("R03"));
    QCOMPARE(source->satelliteAt(0)->name, QStringLiteral("E11"));
    QCOMPARE(source->satelliteAt(0)->recordCount(), qint64(2)); // not in the last epoch
    QCOMPARE(g02->bands[BandL1].codeType, QStringLiteral("C1"));
    QCOMPARE(g02->bands[BandL2].codeType, QStringLiteral("P2"));
    QCOMPARE(g02->bands[BandL1].pseudorange[2], 2.0e7 + 1000.0 + 2);
    QCOMPARE(g02->bands[BandL2].pseudorange[0], 2.0e7 + 1000.0 + 2.0);
    QCOMPARE(g02->bands[BandL1].phase[0], std::round((2.0e7 + 1000.0) / 0.19 * 1000) / 1000);
    QCOMPARE(int(g02->bands[BandL1].lli[0]), 1);
    QCOMPARE(int(g02->bands[BandL1].lli[2]), 1);
    QCOMPARE(int(g02->bands[BandL2].lli[0]), 0);
    // G03's P2 is always blank: its L2 band has phase but no pseudorange.
    QCOMPARE(g03->bands[BandL2].codeType, QString());
    QCOMPARE(g03->bands[BandL2].phaseType, QStringLiteral("L2"));
    QVERIFY(std::isnan(g03->bands[BandL2].pseudorange[1]));
    QVERIFY(!std::isnan(g03->bands[BandL2].phase[1]));
    // Flag 1 marks a slip on every satellite of its epoch; flag 6 on its own.
    QCOMPARE(int(r03->bands[BandL1].lli[1]) & 1, 1);
    QCOMPARE(int(r03->bands[BandL1].lli[0]) & 1, 0);
    QCOMPARE(int(g05->bands[BandL2].lli[1]) & 1, 1);
    QCOMPARE(int(g05->bands[BandL2].lli[2]) & 1, 0);
    QCOMPARE(r03->channelOrigin, ChannelOrigin::Default);
    QCOMPARE(r03->glonassChannel, 5);
}

void tst_RinexReader::version3Events()
{
    QString t = v3Header();
    t += QStringLiteral("> 2024 07 27 00 00 59.9996000  2  0\n");
    t += QStringLiteral("> 2024 07 27 00 01  0.0000000  0  2\n");
    t += QStringLiteral("G07") + obs(2.1e7) + obs(1.1e8, 1) + obs(NaN) + obs(8.5e7)
         + QLatin1Char('\n');
    t += QStringLiteral("E11") + obs(234567890.0) + obs(1.2e8) + QLatin1Char('\n');
    t += QStringLiteral(">                              3  1\n");
    t += headerLine(QStringLiteral("SITE"), "MARKER NAME");
    t += QStringLiteral("> 2024 07 27 00 01 30.4996000  0  1\n");
    t += QStringLiteral("G07") + obs(2.2e7) + QLatin1Char('\n'); // short line: rest blank
    QString error;
    const auto source = parse(t, &error);
    QVERIFY2(source, qPrintable(error));
    const qint64 t0 = QDateTime(QDate(2024, 7, 27), QTime(0, 1), Qt::UTC).toMSecsSinceEpoch();
    QCOMPARE(source->epochs(), (std::vector<qint64>{t0, t0 + 30500}));
    QCOMPARE(source->intervalMs(), qint64(30500));
    const SatelliteObservations* e11 = source->satelliteAt(0);
    const SatelliteObservations* g07 = source->satelliteAt(1);
    QCOMPARE(e11->bands[BandL1].pseudorange[0], 23456789.0); // scale factor 10
    QCOMPARE(e11->recordCount(), qint64(1));
    QCOMPARE(g07->bands[BandL1].pseudorange[1], 2.2e7);
    QVERIFY(std::isnan(g07->bands[BandL1].phase[1]));
    QVERIFY(std::isnan(g07->bands[BandL2].pseudorange[0]));
    QCOMPARE(int(g07->bands[BandL1].lli[0]), 1);
    QCOMPARE(g07->bands[BandL2].phaseType, QStringLiteral("L2W"));
}

void tst_RinexReader::malformed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QString h = v3Header(); // five lines
    const QString good = QStringLiteral("> 2024 07 27 00 00  0.0000000  0  1\nG01")
                         + obs(2.1e7) + QLatin1Char('\n');
    QTest::newRow("empty") << QString() << QStringLiteral("line 1: empty file");
    QTest::newRow("not rinex") << QStringLiteral("hello\n")
                               << QStringLiteral("line 1: not a RINEX");
    QTest::newRow("truncated header") << h.left(h.indexOf(QLatin1String("E   10")))
                                      << QStringLiteral("line 4: file ends inside the header");
    QTest::newRow("bad type count")
        << headerLine(QStringLiteral("     3.04           OBSERVATION DATA    M"),
                      "RINEX VERSION / TYPE")
               + headerLine(QStringLiteral("G    x C1C"), "SYS / # / OBS TYPES")
        << QStringLiteral("line 2: bad SYS / # / OBS TYPES");
    QTest::newRow("garbage epoch line") << h + good + QStringLiteral("garbage\n")
                                        << QStringLiteral("line 8: expected an epoch line");
    QTest::newRow("unknown flag") << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  7  0\n")
                                  << QStringLiteral("line 6: unknown epoch flag 7");
    QTest::newRow("bad number")
        << h + good + QStringLiteral("> 2024 07 27 00 00 30.0000000  0  1\n")
               + QStringLiteral("G01  21000x00.000\n")
        << QStringLiteral("line 9: bad number \"21000x00.000\" for G01 C1C");
    QTest::newRow("bad lli") << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  0  1\n")
                                    + QStringLiteral("G01  21000000.000X\n")
                             << QStringLiteral("line 7: bad loss-of-lock");
    QTest::newRow("too few records")
        << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  0  2\nG01\n") + good
        << QStringLiteral("line 8: epoch announces 2 satellites but has 1");
    QTest::newRow("file ends in epoch")
        << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  0  2\nG01\n")
        << QStringLiteral("line 8: file ends inside an epoch's satellite records");
    QTest::newRow("undeclared system")
        << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  0  1\nJ01  21000000.000\n")
        << QStringLiteral("line 7: no observation types declared for system J");
    QTest::newRow("time goes back")
        << h + good + QStringLiteral("> 2024 07 26 00 00  0.0000000  0  1\nG01\n")
        << QStringLiteral("line 8: epoch is earlier");
    const QString h2 = headerLine(QStringLiteral("     2.11           OBSERVATION DATA    G"),
                                  "RINEX VERSION / TYPE")
                       + headerLine(QStringLiteral("     2    C1    L1"), "# / TYPES OF OBSERV")
                       + headerLine(QString(), "END OF HEADER");
    QTest::newRow("v2 garbage epoch") << h2 + QStringLiteral("this is not an epoch line\n")
                                      << QStringLiteral("line 4: bad epoch line");
    QTest::newRow("v2 bad satellite")
        << h2 + QStringLiteral(" 24  1 10  0  0  0.0000000  0  2G01G#2\n")
        << QStringLiteral("line 4: bad satellite \"G#2\"");
    QTest::newRow("v2 short satellite list")
        << h2 + QStringLiteral(" 24  1 10  0  0  0.0000000  0 13G01G02\n")
        << QStringLiteral("line 4: satellite list shorter");
}

void tst_RinexReader::malformed()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!parse(text, &error));
    QVERIFY2(error.startsWith(expected), qPrintable(error));
}

void tst_RinexReader::damagedFiles()
{
    QString error;
    QVERIFY(!RinexReader::readFile(QStringLiteral("/nonexistent/file.rnx"), &error));
    QCOMPARE(error, QStringLiteral("file.rnx: cannot open the file"));

    const QString path = DataDir + QStringLiteral("/GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz");
    QFile real(path);
    if (!real.open(QIODevice::ReadOnly))
        QSKIP("shared data not found");
    QTemporaryDir dir;
    QFile cut(dir.filePath(QStringLiteral("cut.rnx.gz")));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    cut.write(real.read(200000)); // the gzip stream stops mid-way
    cut.close();
    QVERIFY(!RinexReader::readFile(cut.fileName(), &error));
    QVERIFY2(error.startsWith(QStringLiteral("cut.rnx.gz: damaged compressed data")),
             qPrintable(error));
}

void tst_RinexReader::randomDamageNeverCrashes()
{
    const QString path = DataDir + QStringLiteral("/dgar0100.24o.gz");
    const QString path3 = DataDir + QStringLiteral("/GEOP092I.24o.gz");
    QByteArray v2, v3;
    QString error;
    if (!readMaybeGzipped(path, &v2, &error) || !readMaybeGzipped(path3, &v3, &error))
        QSKIP("shared data not found");
    std::mt19937 rng(7);
    const char alphabet[] = " 0123456789.-+>GREC\nXx";
    for (const QByteArray& whole : {v2.left(60000), v3.left(60000)}) {
        for (int round = 0; round < 150; ++round) {
            QByteArray text = whole;
            for (int edit = 0; edit < 1 + int(rng() % 4); ++edit) {
                const int at = int(rng() % quint32(text.size()));
                if (rng() % 3 == 0)
                    text.remove(at, int(rng() % 200)); // cut across line ends too
                else
                    text[at] = alphabet[rng() % (sizeof(alphabet) - 1)];
            }
            const auto source = RinexReader::readText(text, QStringLiteral("damaged"), &error);
            if (!source)
                QVERIFY2(error.startsWith(QStringLiteral("line ")), qPrintable(error));
            else
                for (int i = 0; i < source->satelliteCount(); ++i)
                    QCOMPARE(source->satelliteAt(i)->record.size(), source->epochs().size());
        }
    }
}

QTEST_GUILESS_MAIN(tst_RinexReader)
#include "tst_rinexreader.moc"
