// SPDX-License-Identifier: MIT
// The RINEX reader against the real files' independently derived facts and
// against malformed input.
#include "RinexReader.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <cmath>

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

QString headerLine(const QString& content, const char* label)
{
    return content.leftJustified(60, QLatin1Char(' ')) + QLatin1String(label) + QLatin1Char('\n');
}

QString obs(double value)
{
    return QString::asprintf("%14.3f  ", value);
}

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
    void signalStrength_data();
    void signalStrength();
    void malformed_data();
    void malformed();
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
    }
}

void tst_RinexReader::signalStrength_data()
{
    realFiles_data();
}

// The signal strengths kept lie in the ranges the statistics found for their
// system, and a band whose system declares a single S type there keeps all
// of its values; a file without S types has none.
void tst_RinexReader::signalStrength()
{
    QFETCH(QString, file);
    const QString path = DataDir + QLatin1Char('/') + file + QStringLiteral(".gz");
    QFile statsFile(DataDir + QLatin1Char('/') + file + QStringLiteral(".stats.json"));
    if (!QFile::exists(path) || !statsFile.open(QIODevice::ReadOnly))
        QSKIP("shared data not found; set GNSSPLOT_TEST_DATA_DIR");
    const QJsonObject stats = QJsonDocument::fromJson(statsFile.readAll()).object();
    const QJsonObject ranges = stats.value(QStringLiteral("value_ranges_by_system_and_kind"))
                                   .toObject();
    const QJsonObject counts = stats.value(QStringLiteral("obs_counts_by_type")).toObject();
    const QJsonObject types = stats.value(QStringLiteral("obs_types")).toObject();
    const double version = stats.value(QStringLiteral("header")).toObject()
                               .value(QStringLiteral("version")).toString().toDouble();
    // The S types a system declares on a band.
    auto declared = [&](char system, int band) {
        QStringList out;
        const QJsonArray list = types.value(QString(QLatin1Char(system))).toArray();
        for (const QJsonValue& v : list) {
            const QString t = v.toString();
            if (t.startsWith(QLatin1Char('S'))
                && bandOfSignal(system, t.at(1).toLatin1(), version).band == band)
                out.append(t);
        }
        return out;
    };

    QString error;
    const auto source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    const size_t n = source->epochs().size();
    QMap<QString, qint64> kept; // "G:S1C" -> values kept
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* sat = source->satelliteAt(i);
        const QString system(QLatin1Char(sat->system));
        const QJsonArray range = ranges.value(system + QStringLiteral(":S")).toArray();
        for (int band = 0; band < BandCount; ++band) {
            const SignalSeries& s = sat->bands[band];
            QCOMPARE(s.snr.size(), s.isEmpty() ? size_t(0) : n);
            qint64 values = 0;
            for (double v : s.snr) {
                if (std::isnan(v))
                    continue;
                ++values;
                QVERIFY2(v >= range[0].toDouble() && v <= range[1].toDouble(),
                         qPrintable(QStringLiteral("%1 %2 %3").arg(sat->name, s.snrType)
                                        .arg(v)));
            }
            QCOMPARE(s.snrType.isEmpty(), values == 0);
            if (values == 0)
                continue;
            QVERIFY2(declared(sat->system, band).contains(s.snrType), qPrintable(s.snrType));
            kept[system + QLatin1Char(':') + s.snrType] += values;
        }
    }
    // DGAR, a RINEX 2 file, has only SSI digits: no signal strength at all.
    QCOMPARE(!kept.isEmpty(), !counts.keys().filter(QStringLiteral(":S")).isEmpty());
    for (auto it = kept.cbegin(); it != kept.cend(); ++it) {
        const qint64 all = qint64(counts.value(it.key()).toInt());
        QVERIFY2(it.value() <= all, qPrintable(it.key()));
        const char system = it.key().at(0).toLatin1();
        const int band = bandOfSignal(system, it.key().at(3).toLatin1(), version).band;
        if (declared(system, band).size() == 1)
            QVERIFY2(it.value() == all, qPrintable(QStringLiteral("%1: %2 of %3").arg(it.key())
                                                       .arg(it.value()).arg(all)));
    }
}

void tst_RinexReader::malformed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QString h = v3Header(); // five lines
    const QString good = QStringLiteral("> 2024 07 27 00 00  0.0000000  0  1\nG01")
                         + obs(2.1e7) + QLatin1Char('\n');
    QTest::newRow("not rinex") << QStringLiteral("hello\n")
                               << QStringLiteral("line 1: not a RINEX");
    QTest::newRow("bad number")
        << h + good + QStringLiteral("> 2024 07 27 00 00 30.0000000  0  1\n")
               + QStringLiteral("G01  21000x00.000\n")
        << QStringLiteral("line 9: bad number \"21000x00.000\" for G01 C1C");
    QTest::newRow("too few records")
        << h + QStringLiteral("> 2024 07 27 00 00  0.0000000  0  2\nG01\n") + good
        << QStringLiteral("line 8: epoch announces 2 satellites but has 1");
    const QString h2 = headerLine(QStringLiteral("     2.11           OBSERVATION DATA    G"),
                                  "RINEX VERSION / TYPE")
                       + headerLine(QStringLiteral("     2    C1    L1"), "# / TYPES OF OBSERV")
                       + headerLine(QString(), "END OF HEADER");
    QTest::newRow("v2 bad satellite")
        << h2 + QStringLiteral(" 24  1 10  0  0  0.0000000  0  2G01G#2\n")
        << QStringLiteral("line 4: bad satellite \"G#2\"");
}

void tst_RinexReader::malformed()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!parse(text, &error));
    QVERIFY2(error.startsWith(expected), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_RinexReader)
#include "tst_rinexreader.moc"
