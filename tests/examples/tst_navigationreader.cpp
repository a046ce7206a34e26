// SPDX-License-Identifier: MIT
// The navigation reader on the shared files, on one record written in each
// RINEX version, on each system's time scale, on damaged and cut files, and
// the choice of the ephemeris; the pick-up of navigation files by name.
#include "NavigationFiles.h"
#include "NavigationReader.h"
#include "ObservationData.h"

#include <QtTest>

using namespace gnssdemo;

namespace {

const QString kDataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);

QString headerLine(const QString& content, const char* label)
{
    return content.leftJustified(60, QLatin1Char(' ')) + QLatin1String(label) + QLatin1Char('\n');
}

QString v3Header(const char* version = "3.05", const char* system = "M")
{
    return headerLine(QStringLiteral("     %1           N: GNSS NAV DATA    %2")
                          .arg(QLatin1String(version), QLatin1String(system)),
                      "RINEX VERSION / TYPE")
           + headerLine(QStringLiteral("    18"), "LEAP SECONDS")
           + headerLine(QString(), "END OF HEADER");
}

// NYA1's G27 record of 2024-05-03 02:00, as the file has it.
const char* const kGpsRecord =
    "G27 2024 05 03 02 00 00-2.202996984124E-05-2.046363078989E-12 0.000000000000E+00\n"
    "     4.200000000000E+01-9.562500000000E+00 4.543403536708E-09 1.651359513615E+00\n"
    "    -5.774199962616E-07 1.256587530952E-02 7.808208465576E-06 5.153678092957E+03\n"
    "     4.392000000000E+05-2.402812242508E-07 1.466243505647E+00 4.656612873077E-08\n"
    "     9.623062617470E-01 2.312500000000E+02 7.882833055638E-01-8.204627469952E-09\n"
    "    -3.828730910582E-10 1.000000000000E+00 2.312000000000E+03 0.000000000000E+00\n"
    "     2.000000000000E+00 0.000000000000E+00 1.862645149231E-09 4.200000000000E+01\n"
    "     4.320180000000E+05 4.000000000000E+00\n";

// ESBC's E01 F/NAV record, moved to the end of a week.
const char* const kGalileoRecord =
    "E01 2020 06 27 23 59 59-8.846927667037e-04-7.972289495228e-12 0.000000000000e+00\n"
    "     6.100000000000e+01 1.865625000000e+01 2.656539226950e-09-1.832282909549e+00\n"
    "     8.568167686462e-07 9.650341235101e-05 1.049041748047e-05 5.440602037430e+03\n"
    "     6.039000000000e+05 1.862645149231e-09 2.123282284601e-01-1.452863216400e-07\n"
    "     9.828296477370e-01 1.298750000000e+02-2.778709093141e+00-5.216288707934e-09\n"
    "    -6.996720012901e-10 2.580000000000e+02 2.111000000000e+03\n"
    "     3.120000000000e+00 0.000000000000e+00-1.862645149231e-09 0.000000000000e+00\n"
    "     3.445400000000e+05\n";

// The same record with another satellite number and reference time
// (toe 04:00).
QString gpsRecord(int prn, const char* hour = "02", const char* toe = "4.392000000000E+05")
{
    QString text = QString::fromLatin1(kGpsRecord);
    text.replace(0, 3, QStringLiteral("G%1").arg(prn, 2, 10, QLatin1Char('0')));
    text.replace(QStringLiteral("2024 05 03 02"),
                 QStringLiteral("2024 05 03 ") + QLatin1String(hour));
    text.replace(QStringLiteral("4.392000000000E+05"), QLatin1String(toe));
    return text;
}

// The record as RINEX 2 writes it: two-digit year, seconds with a point,
// one column less in front, D exponents.
QString asVersion2(const QString& v3)
{
    QStringList lines = v3.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].isEmpty())
            continue;
        if (i == 0)
            lines[i] = QStringLiteral("%1 24  5  3  2  0  0.0").arg(lines[i].mid(1, 2).toInt(), 2)
                       + lines[i].mid(23);
        else
            lines[i] = lines[i].mid(1);
        lines[i].replace(QLatin1Char('E'), QLatin1Char('D'));
    }
    return lines.join(QLatin1Char('\n'));
}

bool parse(const QString& text, NavigationData* data, QString* error = nullptr)
{
    return NavigationReader::readText(text.toLatin1(), QStringLiteral("test"), data, error);
}

qint64 gpst(const QString& iso)
{
    return QDateTime::fromString(iso, Qt::ISODate).toMSecsSinceEpoch();
}

} // namespace

class tst_NavigationReader : public QObject
{
    Q_OBJECT
private slots:
    void sharedFiles_data();
    void sharedFiles();
    void versions_data();
    void versions();
    void timeScales_data();
    void timeScales();
    void damaged_data();
    void damaged();
    void refused_data();
    void refused();
    void selection();
    void leapSeconds_data();
    void leapSeconds();
    void fileNames_data();
    void fileNames();
    void companions_data();
    void companions();
};

void tst_NavigationReader::sharedFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("records");
    // The record counts of the data folder's description.
    QTest::newRow("NYA1 GPS") << QStringLiteral("NYA100NOR_S_20241240000_01D_GN.rnx.gz")
                              << QStringLiteral("G 215");
    QTest::newRow("NYA1 Galileo") << QStringLiteral("NYA100NOR_S_20241240000_01D_EN.rnx.gz")
                                  << QStringLiteral("E 711");
    QTest::newRow("NYA1 BeiDou") << QStringLiteral("NYA100NOR_S_20241240000_01D_CN.rnx.gz")
                                 << QStringLiteral("C 194");
    QTest::newRow("ESBC mixed") << QStringLiteral("ESBC00DNK_R_20201770000_01D_MN.rnx.gz")
                                << QStringLiteral("C 357, E 1602, G 257, J 15, R 510, S 2130");
    QTest::newRow("GRAS Galileo") << QStringLiteral("GRAS00FRA_R_20242090000_01D_EN.rnx.gz")
                                  << QStringLiteral("E 2377");
}

void tst_NavigationReader::sharedFiles()
{
    QFETCH(QString, file);
    QFETCH(QString, records);
    const QString path = kDataDir + QLatin1Char('/') + file;
    if (!QFileInfo::exists(path))
        QSKIP("shared data file not found");
    NavigationData data;
    QString error;
    QVERIFY2(NavigationReader::readFile(path, &data, &error), qPrintable(error));
    QCOMPARE(int(data.reports().size()), 1);
    const NavigationFileReport& report = data.reports().front();
    QStringList counts;
    for (const auto& entry : report.records)
        counts << QStringLiteral("%1 %2").arg(QLatin1Char(entry.first)).arg(entry.second);
    QCOMPARE(counts.join(QStringLiteral(", ")), records);
    QCOMPARE(report.damaged, 0);
    QVERIFY(!report.cutShort);
    QCOMPARE(data.count(), qint64(report.recordCount() - report.duplicates));
    QVERIFY(report.summary().startsWith(file + QStringLiteral(": RINEX 3.0")));
    // Every ephemeris holds near its own reference time, but unhealthy ones.
    for (const QString& name : data.satellites()) {
        for (const Ephemeris& eph : *data.ephemerides(name)) {
            QCOMPARE(eph.satelliteName(), name);
            if (eph.healthy)
                QVERIFY(data.select(name, eph.referenceMs));
        }
    }
}

void tst_NavigationReader::versions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("line"); // of the record's first line
    const QString v3 = v3Header() + QString::fromLatin1(kGpsRecord);
    QTest::newRow("RINEX 3") << v3 << 4;
    QTest::newRow("RINEX 3, CRLF")
        << QString(v3).replace(QLatin1Char('\n'), QStringLiteral("\r\n")) << 4;
    QTest::newRow("RINEX 4") << v3Header("4.01") + QStringLiteral("> EPH G27 LNAV\n")
                                    + QString::fromLatin1(kGpsRecord)
                                    + QStringLiteral("> STO GP GPUT\n    1 2 3\n")
                             << 5;
    QTest::newRow("RINEX 2.11")
        << headerLine(QStringLiteral("     2.11           N: GPS NAV DATA"),
                      "RINEX VERSION / TYPE")
               + headerLine(QString(), "END OF HEADER")
               + asVersion2(QString::fromLatin1(kGpsRecord))
        << 3;
}

// One record in every layout gives the same ephemeris.
void tst_NavigationReader::versions()
{
    QFETCH(QString, text);
    QFETCH(int, line);
    NavigationData data;
    QString error;
    QVERIFY2(parse(text, &data, &error), qPrintable(error));
    QCOMPARE(data.satellites(), QStringList{QStringLiteral("G27")});
    const Ephemeris& eph = data.ephemerides(QStringLiteral("G27"))->front();
    QCOMPARE(data.reports().front().damaged, 0);
    QCOMPARE(eph.referenceMs, gpst(QStringLiteral("2024-05-03T02:00:00Z")));
    QCOMPARE(eph.toeSeconds, 439200.0);
    QCOMPARE(eph.sqrtA, 5.153678092957e3);
    QCOMPARE(eph.e, 1.256587530952e-2);
    QCOMPARE(eph.m0, 1.651359513615);
    QCOMPARE(eph.omegaDot, -8.204627469952e-9);
    QCOMPARE(eph.idot, -3.828730910582e-10);
    QCOMPARE(eph.cis, 4.656612873077e-8);
    QCOMPARE(eph.fitHalfSeconds, 7200.0);
    QVERIFY(eph.healthy);
    QCOMPARE(eph.line, qint64(line));
}

void tst_NavigationReader::timeScales_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reference"); // GPST
    QTest::addColumn<int>("message");
    // BDT is 14 s behind GPST; toe (432000 s) falls on the epoch.
    QTest::newRow("BeiDou, BDT")
        << QStringLiteral(
               "C06 2024 05 03 00 00 00 3.918854054064E-04 2.833466794527E-11 0.000000000000E+00\n"
               "     1.000000000000E+00-2.071562500000E+02 9.303958975808E-10-8.308130068794E-01\n"
               "    -7.017515599728E-06 4.157007322647E-03 3.262050449848E-05 6.492921838760E+03\n"
               "     4.320000000000E+05 1.005828380585E-07-8.108378465138E-01 1.741573214531E-07\n"
               "     9.467232042387E-01-7.717968750000E+02-2.723800353126E+00-1.740786796472E-09\n"
               "     2.521533603424E-10                    9.560000000000E+02\n"
               "     2.000000000000E+00 0.000000000000E+00 8.499999815115E-09-1.200000000000E-09\n"
               "     4.320000000000E+05 0.000000000000E+00\n")
        << QStringLiteral("C06") << QStringLiteral("2024-05-03T00:00:14Z")
        << int(NavMessage::BeidouD1);
    // GLONASS epochs are UTC: GPST is 18 s ahead in 2020.
    QTest::newRow("GLONASS, UTC")
        << QStringLiteral(
               "R01 2020 06 24 23 15 00 6.355904042721e-05 0.000000000000e+00 3.420000000000e+05\n"
               "     1.090894238281e+04 1.407806396484e+00-1.862645149231e-09 0.000000000000e+00\n"
               "    -2.885726074219e+03 2.795855522156e+00-0.000000000000e+00 1.000000000000e+00\n"
               "     2.288353955078e+04-3.169984817505e-01-2.793967723846e-09 0.000000000000e+00\n"
               "                         .999999999999e+09 1.500000000000e+01\n")
        << QStringLiteral("R01") << QStringLiteral("2020-06-24T23:15:18Z")
        << int(NavMessage::Glonass);
    // Galileo: the data source 258 is F/NAV; toe 23:50 on a Saturday night
    // of GST, one second before the week ends for the toc.
    QTest::newRow("Galileo F/NAV across the week")
        << QString::fromLatin1(kGalileoRecord) << QStringLiteral("E01") << QStringLiteral("2020-06-27T23:45:00Z")
        << int(NavMessage::GalileoFnav);
}

void tst_NavigationReader::timeScales()
{
    QFETCH(QString, record);
    QFETCH(QString, name);
    QFETCH(QString, reference);
    QFETCH(int, message);
    NavigationData data;
    QString error;
    QVERIFY2(parse(v3Header() + record, &data, &error), qPrintable(error));
    QCOMPARE(data.reports().front().damaged, 0);
    QCOMPARE(data.satellites(), QStringList{name});
    const Ephemeris& eph = data.ephemerides(name)->front();
    QCOMPARE(QDateTime::fromMSecsSinceEpoch(eph.referenceMs, Qt::UTC).toString(Qt::ISODate),
             reference);
    QCOMPARE(int(eph.message), message);
}

void tst_NavigationReader::damaged_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("satellites");
    QTest::addColumn<int>("damaged");
    QTest::addColumn<QString>("firstMessage");
    QTest::addColumn<bool>("cutShort");
    QTest::addColumn<QString>("unsupported");
    const QString header = v3Header(); // 3 lines
    QString badNumber = gpsRecord(1);
    badNumber.replace(QStringLiteral("5.153678092957E+03"), QStringLiteral("5.15367809x957E+03"));
    QTest::newRow("bad number") << header + gpsRecord(2) + badNumber + gpsRecord(3)
                                << QStringList{QStringLiteral("G02"), QStringLiteral("G03")} << 1
                                << QStringLiteral("line 12: bad number \"5.15367809x957E+03\" in "
                                                  "line 3 of the record")
                                << false << QString();
    QString shortRecord = gpsRecord(1);
    shortRecord.remove(shortRecord.indexOf(QLatin1String("     4.392")), 81);
    QTest::newRow("a line missing") << header + shortRecord + gpsRecord(3)
                                    << QStringList{QStringLiteral("G03")} << 1
                                    << QStringLiteral("line 4: record has 7 of its 8 lines")
                                    << false << QString();
    QString badDate = gpsRecord(1);
    badDate.replace(QStringLiteral("2024 05 03"), QStringLiteral("2024 13 03"));
    QTest::newRow("month 13") << header + badDate << QStringList() << 1
                              << QStringLiteral("line 4: bad date or time in the record's first "
                                                "line")
                              << false << QString();
    QString noOrbit = gpsRecord(1);
    noOrbit.replace(QStringLiteral("1.256587530952E-02"), QStringLiteral("1.256587530952E+02"));
    QTest::newRow("eccentricity above 1")
        << header + noOrbit << QStringList() << 1
        << QStringLiteral("line 4: no orbit (semi-major axis or eccentricity)") << false
        << QString();
    // Flag words far outside their range are damage, not a flag.
    QString badHealth = QString::fromLatin1(kGalileoRecord);
    badHealth.replace(QStringLiteral("3.120000000000e+00 0.000000000000e+00"),
                      QStringLiteral("3.120000000000e+00 1.000000000000e+30"));
    badHealth.replace(QStringLiteral("2.580000000000e+02"), QStringLiteral("-1.00000000000e+99"));
    QTest::newRow("Galileo health word 1e30")
        << header + badHealth << QStringList() << 1
        << QStringLiteral("line 4: bad health word") << false << QString();
    const QString whole = gpsRecord(1) + gpsRecord(2);
    QTest::newRow("cut inside the last record")
        << header + whole.left(whole.size() - 200) << QStringList{QStringLiteral("G01")} << 0
        << QString() << true << QString();
    // Only the transmission time and the fit interval are in the last line.
    QTest::newRow("cut in the last line's optional numbers")
        << header + whole.left(whole.size() - 30)
        << QStringList{QStringLiteral("G01"), QStringLiteral("G02")} << 0 << QString() << false
        << QString();
    QTest::newRow("stray line") << header + gpsRecord(1) + QStringLiteral("   garbage\n")
                                << QStringList{QStringLiteral("G01")} << 0 << QString() << false
                                << QString();
    QString navic = gpsRecord(1);
    navic[0] = QLatin1Char('I');
    QTest::newRow("NavIC") << header + navic + gpsRecord(3) << QStringList{QStringLiteral("G03")}
                           << 0 << QString() << false << QStringLiteral("NavIC");
    const QString v4 = v3Header("4.00");
    QTest::newRow("RINEX 4 CNAV and STO")
        << v4 + QStringLiteral("> EPH G01 CNAV\n") + gpsRecord(1) + gpsRecord(1).right(81)
               + QStringLiteral("> STO GP GPUT\n    1.0\n> EPH G02 LNAV\n") + gpsRecord(2)
        << QStringList{QStringLiteral("G02")} << 0 << QString() << false
        << QStringLiteral("G CNAV");
    QTest::newRow("RINEX 4 cut")
        << v4 + QStringLiteral("> EPH G02 LNAV\n") + gpsRecord(2)
               + QStringLiteral("> EPH G03 LNAV\n") + gpsRecord(3).left(300)
        << QStringList{QStringLiteral("G02")} << 0 << QString() << true << QString();
    QTest::newRow("RINEX 4 satellite differs")
        << v4 + QStringLiteral("> EPH G05 LNAV\n") + gpsRecord(2)
        << QStringList() << 1 << QStringLiteral("line 4: record does not start with G05") << false
        << QString();
    QTest::newRow("RINEX 4 unknown record type")
        << v4 + QStringLiteral("> XYZ G05\n") + gpsRecord(2)
        << QStringList() << 1 << QStringLiteral("line 4: unknown record type") << false
        << QString();
}

// Damage costs the damaged record only, says where it is, and never more.
void tst_NavigationReader::damaged()
{
    QFETCH(QString, text);
    QFETCH(QStringList, satellites);
    QFETCH(int, damaged);
    QFETCH(QString, firstMessage);
    QFETCH(bool, cutShort);
    QFETCH(QString, unsupported);
    NavigationData data;
    QString error;
    QVERIFY2(parse(text, &data, &error), qPrintable(error));
    QCOMPARE(data.satellites(), satellites);
    const NavigationFileReport& report = data.reports().front();
    QCOMPARE(report.damaged, damaged);
    QCOMPARE(report.damagedMessages.value(0), firstMessage);
    QCOMPARE(report.cutShort, cutShort);
    QCOMPARE(report.unsupportedKinds.join(QLatin1Char(',')), unsupported);
    QCOMPARE(report.skippedUnsupported, unsupported.isEmpty() ? 0 : 1);
    if (damaged > 0)
        QVERIFY(report.summary().contains(firstMessage));
}

void tst_NavigationReader::refused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QString() << QStringLiteral("line 1: empty file");
    QTest::newRow("observation file")
        << headerLine(QStringLiteral("     3.04           OBSERVATION DATA    M"),
                      "RINEX VERSION / TYPE")
               + headerLine(QString(), "END OF HEADER")
        << QStringLiteral("line 1: not a navigation file (type 'O')");
    QTest::newRow("version 5") << v3Header("5.00")
                               << QStringLiteral("line 1: unsupported RINEX version 5");
    QTest::newRow("no END OF HEADER")
        << v3Header().left(122) << QStringLiteral("line 3: file ends inside the header (no END "
                                                  "OF HEADER)");
    QTest::newRow("no RINEX") << QStringLiteral("hello\n")
                              << QStringLiteral("line 1: not a RINEX file (no RINEX VERSION / "
                                                "TYPE line)");
}

void tst_NavigationReader::refused()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    NavigationData data;
    QVERIFY(parse(v3Header() + gpsRecord(4), &data));
    QString message;
    QVERIFY(!parse(text, &data, &message));
    QCOMPARE(message, error);
    // What was read before stays as it was.
    QCOMPARE(data.satellites(), QStringList{QStringLiteral("G04")});
    QCOMPARE(int(data.reports().size()), 1);
    QVERIFY(!NavigationReader::readText(QByteArray(), QString(), nullptr, nullptr));
    QVERIFY(!NavigationReader::readFile(QStringLiteral("/nonexistent/x.rnx"), &data, &message));
    QCOMPARE(message, QStringLiteral("x.rnx: cannot open the file"));
}

// Nearest healthy reference time within the fit interval; Galileo I/NAV
// before F/NAV at the same distance.
void tst_NavigationReader::selection()
{
    NavigationData data;
    // G01 at 02:00 and 04:00; G02 at 02:00 unhealthy.
    QString sick = gpsRecord(2);
    sick.replace(QStringLiteral("     2.000000000000E+00 0.000000000000E+00 1.86"),
                 QStringLiteral("     2.000000000000E+00 1.000000000000E+00 1.86"));
    QVERIFY(parse(v3Header() + gpsRecord(1) + gpsRecord(1, "04", "4.464000000000E+05") + sick,
                  &data));
    const qint64 two = gpst(QStringLiteral("2024-05-03T02:00:00Z"));
    const qint64 hour = 3600000;
    auto chosen = [&](const char* name, qint64 t) {
        const Ephemeris* e = data.select(QLatin1String(name), t);
        return e ? (e->referenceMs - two) / hour : qint64(-99);
    };
    QCOMPARE(chosen("G01", two - 2 * hour), qint64(0));
    QCOMPARE(chosen("G01", two - 2 * hour - 1), qint64(-99)); // beyond the fit interval
    QCOMPARE(chosen("G01", two + hour - 1), qint64(0));
    QCOMPARE(chosen("G01", two + hour), qint64(2)); // equal distance: the later
    QCOMPARE(chosen("G01", two + 4 * hour), qint64(2));
    QCOMPARE(chosen("G01", two + 4 * hour + 1), qint64(-99));
    QCOMPARE(chosen("G02", two), qint64(-99)); // unhealthy
    QVERIFY(data.ephemerides(QStringLiteral("G02")));
    // The same record again is dropped and counted.
    QVERIFY(parse(v3Header() + gpsRecord(1), &data));
    QCOMPARE(data.ephemerides(QStringLiteral("G01"))->size(), size_t(2));
    QCOMPARE(data.reports().back().duplicates, 1);

    // Galileo: one toe from both messages, F/NAV read first.
    Ephemeris fnav;
    fnav.system = 'E';
    fnav.prn = 7;
    fnav.message = NavMessage::GalileoFnav;
    fnav.referenceMs = two;
    fnav.fitHalfSeconds = 7200;
    fnav.sqrtA = 5440.6;
    Ephemeris inav = fnav;
    inav.message = NavMessage::GalileoInav;
    QVERIFY(data.add(fnav));
    QVERIFY(data.add(inav));
    QVERIFY(!data.add(inav));
    QCOMPARE(int(data.select(QStringLiteral("E07"), two + 5)->message),
             int(NavMessage::GalileoInav));
}

void tst_NavigationReader::leapSeconds_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<int>("leap");
    QTest::newRow("GPS start") << QStringLiteral("1980-01-06T00:00:00Z") << 0;
    QTest::newRow("before 2017") << QStringLiteral("2016-12-31T23:59:59Z") << 17;
    QTest::newRow("2017 begins (GPST)") << QStringLiteral("2017-01-01T00:00:18Z") << 18;
    QTest::newRow("2024") << QStringLiteral("2024-05-03T00:00:00Z") << 18;
    QTest::newRow("2006") << QStringLiteral("2006-06-01T00:00:00Z") << 14;
}

void tst_NavigationReader::leapSeconds()
{
    QFETCH(QString, time);
    QFETCH(int, leap);
    QCOMPARE(gpsLeapSeconds(gpst(time)), leap);
}

void tst_NavigationReader::fileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("station");
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("day");
    QTest::addColumn<bool>("navigation");
    QTest::newRow("long observation, compact gzip")
        << QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz") << true
        << QStringLiteral("NYA1") << 2024 << 124 << false;
    QTest::newRow("long navigation") << QStringLiteral("NYA100NOR_S_20241240000_01D_GN.rnx.gz")
                                     << true << QStringLiteral("NYA1") << 2024 << 124 << true;
    QTest::newRow("long mixed navigation, plain")
        << QStringLiteral("ESBC00DNK_R_20201770000_01D_MN.rnx") << true << QStringLiteral("ESBC")
        << 2020 << 177 << true;
    QTest::newRow("short observation") << QStringLiteral("dgar0100.24o.gz") << true
                                       << QStringLiteral("DGAR") << 2024 << 10 << false;
    QTest::newRow("short compact") << QStringLiteral("delf0010.21d.Z") << true
                                   << QStringLiteral("DELF") << 2021 << 1 << false;
    QTest::newRow("short GPS navigation") << QStringLiteral("dgar0100.24n") << true
                                          << QStringLiteral("DGAR") << 2024 << 10 << true;
    QTest::newRow("short GLONASS, hour session, 1999")
        << QStringLiteral("ABCD123a.99G.gz") << true << QStringLiteral("ABCD") << 1999 << 123
        << true;
    QTest::newRow("short mixed") << QStringLiteral("site2000.20p") << true
                                 << QStringLiteral("SITE") << 2020 << 200 << true;
    QTest::newRow("meteo file") << QStringLiteral("site2000.20m") << false << QString() << 0 << 0
                                << false;
    QTest::newRow("day 400") << QStringLiteral("site4000.20n") << false << QString() << 0 << 0
                             << false;
    QTest::newRow("statistics") << QStringLiteral("GEOP092I.24o.stats.json") << false
                                << QString() << 0 << 0 << false;
}

void tst_NavigationReader::fileNames()
{
    QFETCH(QString, name);
    QFETCH(bool, valid);
    QFETCH(QString, station);
    QFETCH(int, year);
    QFETCH(int, day);
    QFETCH(bool, navigation);
    RinexFileName parsed;
    parsed.year = -1;
    QCOMPARE(parseRinexFileName(name, &parsed), valid);
    if (!valid) {
        QCOMPARE(parsed.year, -1);
        return;
    }
    QCOMPARE(parsed.station, station);
    QCOMPARE(parsed.year, year);
    QCOMPARE(parsed.dayOfYear, day);
    QCOMPARE(parsed.navigation, navigation);
}

void tst_NavigationReader::companions_data()
{
    QTest::addColumn<QString>("observations");
    QTest::addColumn<QStringList>("found");
    QTest::newRow("NYA1: three files")
        << QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz")
        << QStringList{QStringLiteral("NYA100NOR_S_20241240000_01D_CN.rnx.gz"),
                       QStringLiteral("NYA100NOR_S_20241240000_01D_EN.rnx.gz"),
                       QStringLiteral("NYA100NOR_S_20241240000_01D_GN.rnx.gz")};
    QTest::newRow("ESBC: mixed") << QStringLiteral("ESBC00DNK_R_20201770000_01D_30S_MO.crx.gz")
                                 << QStringList{QStringLiteral(
                                        "ESBC00DNK_R_20201770000_01D_MN.rnx.gz")};
    // The Galileo file of that day is GRAS's, another station.
    QTest::newRow("AJAC: none") << QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz")
                                << QStringList();
    QTest::newRow("short name, no navigation") << QStringLiteral("dgar0100.24o.gz")
                                               << QStringList();
}

void tst_NavigationReader::companions()
{
    QFETCH(QString, observations);
    QFETCH(QStringList, found);
    const QString path = kDataDir + QLatin1Char('/') + observations;
    if (!QFileInfo::exists(path))
        QSKIP("shared data file not found");
    QStringList expected;
    for (const QString& name : found)
        expected << QDir(kDataDir).absoluteFilePath(name);
    QCOMPARE(companionNavigationFiles(path), expected);

    // Short names beside long ones, in a folder of our own.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    for (const char* name : {"nya11240.24n", "nya11240.24o", "nya11250.24n", "NYA10010.24g",
                             "nya1124a.24L.gz", "NYA100NOR_S_20241240000_01D_MN.rnx"}) {
        QFile f(dir.filePath(QLatin1String(name)));
        QVERIFY(f.open(QIODevice::WriteOnly));
    }
    QCOMPARE(companionNavigationFiles(dir.filePath(QStringLiteral("nya11240.24o"))),
             (QStringList{dir.filePath(QStringLiteral("NYA100NOR_S_20241240000_01D_MN.rnx")),
                          dir.filePath(QStringLiteral("nya11240.24n")),
                          dir.filePath(QStringLiteral("nya1124a.24L.gz"))}));
}

QTEST_MAIN(tst_NavigationReader)
#include "tst_navigationreader.moc"
