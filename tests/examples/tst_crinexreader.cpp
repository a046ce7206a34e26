// SPDX-License-Identifier: MIT
// The reader on compact (Hatanaka) RINEX: the shared compact files against
// their plain forms, hand-written compact epochs, damaged and randomly
// damaged input, Unix-compressed (.Z) streams, and the demo's snapshot of a
// compact file against that of its plain form.
#include "CompressStreamWriter.h"
#include "CompressedInput_p.h"
#include "CrinexDecoder_p.h"
#include "RinexReader.h"

#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <cstring>

using namespace gnssdemo;

namespace {

const QString DataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);

QByteArray expandedFile(const QString& path)
{
    QByteArray text;
    QString error;
    if (!readMaybeGzipped(path, &text, &error))
        qWarning("%s", qPrintable(error));
    return text;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// The plain records after the header, as the body parser reads them, each
// with the file line it comes from.
QList<QPair<QByteArray, qint64>> bodyLines(const QByteArray& text, QString* error)
{
    using namespace rinex;
    QList<QPair<QByteArray, qint64>> lines;
    try {
        LineCursor cursor(text.constData(), text.constData() + text.size());
        RinexHeader header;
        readHeader(cursor, &header);
        CrinexDecoder decoder(cursor, header);
        LineSource& source = header.compactVersion ? static_cast<LineSource&>(decoder) : cursor;
        Line l;
        while (source.next(l)) {
            int len = l.len;
            while (len > 0 && l.p[len - 1] == ' ')
                --len;
            lines.append(qMakePair(QByteArray(l.p, len), source.number()));
        }
    } catch (const ParseError& e) {
        *error = QStringLiteral("line %1: %2").arg(e.line).arg(e.message);
    }
    return lines;
}

bool sameValues(const std::vector<double>& a, const std::vector<double>& b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (!(a[i] == b[i] || (std::isnan(a[i]) && std::isnan(b[i]))))
            return false;
    return true;
}

void compareSources(const MemoryObservationSource& a, const MemoryObservationSource& b)
{
    QVERIFY(a.epochs() == b.epochs());
    QCOMPARE(a.intervalMs(), b.intervalMs());
    QCOMPARE(a.satelliteCount(), b.satelliteCount());
    for (int i = 0; i < a.satelliteCount(); ++i) {
        const SatelliteObservations* s = a.satelliteAt(i);
        const SatelliteObservations* t = b.satelliteAt(i);
        QCOMPARE(s->name, t->name);
        QVERIFY2(s->record == t->record, qPrintable(s->name));
        QCOMPARE(s->glonassChannel, t->glonassChannel);
        QCOMPARE(int(s->channelOrigin), int(t->channelOrigin));
        for (int band = 0; band < BandCount; ++band) {
            const SignalSeries& x = s->bands[band];
            const SignalSeries& y = t->bands[band];
            QCOMPARE(x.codeType, y.codeType);
            QCOMPARE(x.phaseType, y.phaseType);
            QCOMPARE(x.frequencyHz, y.frequencyHz);
            QVERIFY2(sameValues(x.pseudorange, y.pseudorange), qPrintable(s->name));
            QVERIFY2(sameValues(x.phase, y.phase), qPrintable(s->name));
            QVERIFY2(x.lli == y.lli, qPrintable(s->name));
        }
    }
}

QByteArray headerLine(const QByteArray& content, const char* label)
{
    return content.leftJustified(60, ' ') + label + '\n';
}

// A compact line of changes: \a texts placed at their columns, blanks between.
QByteArray changes(std::initializer_list<QPair<int, const char*>> texts)
{
    QByteArray line;
    for (const auto& t : texts) {
        line = line.leftJustified(t.first, ' ');
        line += t.second;
    }
    return line + '\n';
}

QByteArray compactV3Header()
{
    return headerLine("3.0                 COMPACT RINEX FORMAT", "CRINEX VERS   / TYPE")
           + headerLine("test", "CRINEX PROG / DATE")
           + headerLine("     3.04           OBSERVATION DATA    M", "RINEX VERSION / TYPE")
           + headerLine("G    3 C1C L1C S1C", "SYS / # / OBS TYPES")
           + headerLine("E    2 C1C L1C", "SYS / # / OBS TYPES")
           + headerLine(QByteArray(), "END OF HEADER");
}

// Three epochs: G01 throughout (differences growing to second order, a
// missing phase), E05 leaving and coming back, a clock offset that stops.
QByteArray compactV3Body()
{
    return "> 2024 01 02 03 04  5.0000000  0  2      G01E05\n"
           "3&1000\n"
           "3&20000000123 3&105000000456 3&45000 &4\n"
           "3&22000000000 3&115000000000\n"
           + changes({{20, "6"}, {34, "1"}, {44, "&&&"}})
           + "1\n"
             "1000 2000 -500   1\n"
           + changes({{20, "7"}, {34, "2"}, {44, "E05"}})
           + "\n"
             "10  -100\n"
             "3&22000100000 3&115000500000\n";
}

QByteArray plainObs(const char* value, const char* flags)
{
    return QByteArray(value).rightJustified(14, ' ') + flags;
}

QByteArray compactV1Header()
{
    return headerLine("1.0                 COMPACT RINEX FORMAT", "CRINEX VERS   / TYPE")
           + headerLine("test", "CRINEX PROG / DATE")
           + headerLine("     2.11           OBSERVATION DATA    G", "RINEX VERSION / TYPE")
           + headerLine("     6    C1    L1    P2    L2    S1    S2", "# / TYPES OF OBSERV")
           + headerLine(QByteArray(), "END OF HEADER");
}

// 13 satellites (two list lines in plain RINEX 2), an event with two header
// lines, and a complete epoch line after it.
QByteArray compactV1Body()
{
    QByteArray text = "&24  1  2  3  4  5.0000000  0 13";
    for (int prn = 1; prn <= 13; ++prn)
        text += QByteArray("G") + QByteArray::number(prn).rightJustified(2, '0');
    text += "\n3&123456789\n";
    for (int prn = 1; prn <= 13; ++prn)
        text += "3&" + QByteArray::number(20000000000LL + prn) + " 3&-" + QByteArray::number(prn)
                + "       &7\n";
    text += "&24  1  2  3  4 10.0000000  4  2\n"
            + headerLine("event comment", "COMMENT") + headerLine("second", "COMMENT")
            + "&24  1  2  3  4 30.0000000  0  1G13\n\n1000 -1\n";
    return text;
}

QByteArray withLine(const QByteArray& text, int line, const QByteArray& replacement)
{
    QList<QByteArray> lines = text.split('\n');
    lines[line - 1] = replacement;
    return lines.join('\n');
}

QByteArray withoutLine(const QByteArray& text, int line)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeAt(line - 1);
    return lines.join('\n');
}

struct Pair
{
    const char* compact;
    const char* plain;
};

} // namespace

class tst_CrinexReader : public QObject
{
    Q_OBJECT
private slots:
    void sameAsPlain_data();
    void sameAsPlain();
    void handWritten_data();
    void handWritten();
    void damaged_data();
    void damaged();
    void cutShort_data();
    void cutShort();
    void randomDamage_data();
    void randomDamage();
    void compressStream_data();
    void compressStream();
    void snapshotSameAsPlain_data();
    void snapshotSameAsPlain();
};

void tst_CrinexReader::sameAsPlain_data()
{
    QTest::addColumn<QString>("compact");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("packing"); // how the compact file is stored for the test
    const QString gras = QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO");
    const QString asIs = QStringLiteral("as is");
    QTest::newRow("GRAS 3.0 .crx.gz") << gras + QStringLiteral(".crx.gz")
                                      << gras + QStringLiteral(".rnx.gz") << asIs;
    QTest::newRow("GRAS 3.0 .crx.Z") << gras + QStringLiteral(".crx.gz")
                                     << gras + QStringLiteral(".rnx.gz") << QStringLiteral(".Z");
    QTest::newRow("DELF 1.0 .21d.gz") << QStringLiteral("delf0010.21d.gz")
                                      << QStringLiteral("delf0010.21o.gz") << asIs;
    QTest::newRow("DELF 1.0 .21d.Z") << QStringLiteral("delf0010.21d.gz")
                                     << QStringLiteral("delf0010.21o.gz") << QStringLiteral(".Z");
    QTest::newRow("DELF 1.0 .21d") << QStringLiteral("delf0010.21d.gz")
                                   << QStringLiteral("delf0010.21o.gz") << QStringLiteral("plain");
}

void tst_CrinexReader::sameAsPlain()
{
    QFETCH(QString, compact);
    QFETCH(QString, plain);
    QFETCH(QString, packing);
    QString compactPath = DataDir + QLatin1Char('/') + compact;
    const QString plainPath = DataDir + QLatin1Char('/') + plain;
    if (!QFile::exists(compactPath) || !QFile::exists(plainPath))
        QSKIP("shared data not found next to the repository");
    const QByteArray compactText = expandedFile(compactPath);
    const QByteArray plainText = expandedFile(plainPath);
    QVERIFY(!compactText.isEmpty() && !plainText.isEmpty());

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    if (packing != QLatin1String("as is")) {
        compactPath = dir.filePath(compact.chopped(3) + (packing == QLatin1String(".Z")
                                                              ? QStringLiteral(".Z")
                                                              : QString()));
        QVERIFY(writeFile(compactPath, packing == QLatin1String(".Z")
                                           ? writeCompressStream(compactText, 16, true)
                                           : compactText));
    }

    // Every record line: epochs, satellite lists, values, LLI and signal
    // strength characters.
    QString error;
    const auto decoded = bodyLines(compactText, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    const auto reference = bodyLines(plainText, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(decoded.size(), reference.size());
    for (int i = 0; i < decoded.size(); ++i) {
        if (decoded[i].first != reference[i].first)
            QFAIL(qPrintable(QStringLiteral("compact line %1 gives\n%2\ninstead of\n%3")
                                 .arg(decoded[i].second)
                                 .arg(QString::fromLatin1(decoded[i].first),
                                      QString::fromLatin1(reference[i].first))));
    }

    // And the reader's observations from either.
    const auto fromCompact = RinexReader::readFile(compactPath, &error);
    QVERIFY2(fromCompact, qPrintable(error));
    const auto fromPlain = RinexReader::readFile(plainPath, &error);
    QVERIFY2(fromPlain, qPrintable(error));
    compareSources(*fromCompact, *fromPlain);
}

void tst_CrinexReader::handWritten_data()
{
    QTest::addColumn<QByteArray>("compact");
    QTest::addColumn<QList<QByteArray>>("expected");
    QTest::addColumn<int>("epochs");

    const QByteArray g01e1 = "G01" + plainObs("20000000.123", " 4")
                             + plainObs("105000000.456", "  ") + plainObs("45.000", "");
    const QByteArray g01e2 = "G01" + plainObs("20000001.123", " 4")
                             + plainObs("105000002.456", "1 ") + plainObs("44.500", "");
    // Second-order differences by now; the phase is missing and shows no
    // flags, though its LLI 1 is kept for later.
    const QByteArray g01e3 = "G01" + plainObs("20000002.133", " 4") + QByteArray(16, ' ')
                             + plainObs("43.900", "");
    QTest::newRow("3.0 differences, flags, clock, leaving satellite")
        << compactV3Header() + compactV3Body()
        << QList<QByteArray>{
               "> 2024 01 02 03 04  5.0000000  0  2       0.000000001000", g01e1,
               "E05" + plainObs("22000000.000", "  ") + plainObs("115000000.000", ""),
               "> 2024 01 02 03 04  6.0000000  0  1       0.000000001001", g01e2,
               "> 2024 01 02 03 04  7.0000000  0  2", g01e3,
               "E05" + plainObs("22000100.000", "  ") + plainObs("115000500.000", "")}
        << 3;

    QList<QByteArray> v1{" 24  1  2  3  4  5.0000000  0 13G01G02G03G04G05G06G07G08G09G10G11G12"
                         " 0.123456789",
                         QByteArray(32, ' ') + "G13"};
    for (int prn = 1; prn <= 13; ++prn) {
        const QByteArray thousandths = QByteArray::number(prn).rightJustified(3, '0');
        v1 << plainObs("20000000." + thousandths, "  ") + plainObs("-0." + thousandths, " 7")
           << QByteArray(); // the sixth type, missing, on a line of its own
    }
    v1 << " 24  1  2  3  4 10.0000000  4  2" << headerLine("event comment", "COMMENT").trimmed()
       << headerLine("second", "COMMENT").trimmed()
       << " 24  1  2  3  4 30.0000000  0  1G13"
       << plainObs("20000001.013", "  ") + plainObs("-0.014", " 7") << QByteArray();
    QTest::newRow("1.0 long list, clock, event") << compactV1Header() + compactV1Body() << v1
                                                 << 2;
}

void tst_CrinexReader::handWritten()
{
    QFETCH(QByteArray, compact);
    QFETCH(QList<QByteArray>, expected);
    QFETCH(int, epochs);
    QString error;
    const auto lines = bodyLines(compact, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QList<QByteArray> texts;
    for (const auto& l : lines)
        texts << l.first;
    QCOMPARE(texts, expected);

    const auto source = RinexReader::readText(compact, QStringLiteral("test"), &error);
    QVERIFY2(source, qPrintable(error));
    QCOMPARE(int(source->epochs().size()), epochs);
}

void tst_CrinexReader::damaged_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    const QByteArray h3 = compactV3Header(); // six lines
    const QByteArray v3 = h3 + compactV3Body();
    const QByteArray h1 = compactV1Header(); // five lines
    QTest::newRow("truncated in the header")
        << h3.left(h3.indexOf("E    2"))
        << QStringLiteral("line 5: file ends inside the header");
    QTest::newRow("unknown compact version")
        << withLine(v3, 1, headerLine("2.0                 COMPACT RINEX FORMAT",
                                      "CRINEX VERS   / TYPE").trimmed())
        << QStringLiteral("line 1: unsupported compact RINEX version \"2.0\"");
    QTest::newRow("compact 1.0 holding RINEX 3")
        << withLine(v3, 1, headerLine("1.0                 COMPACT RINEX FORMAT",
                                      "CRINEX VERS   / TYPE").trimmed())
        << QStringLiteral("line 3: compact RINEX 1.0 cannot hold RINEX 3.04 observations");
    QTest::newRow("no program line") << withoutLine(v3, 2)
                                     << QStringLiteral("line 2: expected the CRINEX PROG / DATE");
    QTest::newRow("bad difference") << withLine(v3, 13, "1000 2x00 -500   1")
                                    << QStringLiteral("line 13: bad compressed value \"2x00\" "
                                                      "for G01 L1C");
    QTest::newRow("order out of range") << withLine(v3, 9, "0&20000000123")
                                        << QStringLiteral("line 9: bad compressed value "
                                                          "\"0&20000000123\" for G01 C1C");
    QTest::newRow("difference without a start") << withLine(v3, 17, "1000 2000")
                                                 << QStringLiteral("line 17: difference \"1000\" "
                                                                   "for E05 C1C without a "
                                                                   "starting value");
    QTest::newRow("difference after a gap")
        << v3 + changes({{20, "8"}, {34, "1"}, {44, "&&&"}}) + "\n1 5 1\n"
        << QStringLiteral("line 20: difference \"5\" for G01 L1C without a starting value");
    QTest::newRow("value too large") << withLine(v3, 9, "3&99999999999999 3&1 3&1")
                                     << QStringLiteral("line 9: value out of range for G01 C1C");
    QTest::newRow("bad flag") << withLine(v3, 13, "1000 2000 -500  x")
                              << QStringLiteral("line 13: bad flag 'x' for G01");
    QTest::newRow("too many flags") << withLine(v3, 13, "1000 2000 -500 1234567")
                                    << QStringLiteral("line 13: more flags than observations "
                                                      "for G01");
    QTest::newRow("bad clock") << withLine(v3, 8, "3&1x")
                               << QStringLiteral("line 8: bad compressed value \"3&1x\" for the "
                                                 "receiver clock offset");
    QTest::newRow("short satellite list")
        << withLine(v3, 7, "> 2024 01 02 03 04  5.0000000  0  3      G01E05")
        << QStringLiteral("line 7: satellite list shorter than the announced 3");
    QTest::newRow("bad satellite")
        << withLine(v3, 7, "> 2024 01 02 03 04  5.0000000  0  2      G01E#5")
        << QStringLiteral("line 7: bad satellite \"E#5\"");
    QTest::newRow("undeclared system")
        << withLine(v3, 7, "> 2024 01 02 03 04  5.0000000  0  2      G01R05")
        << QStringLiteral("line 7: no observation types declared for system R");
    QTest::newRow("first epoch line incomplete")
        << withLine(v3, 7, "  2024 01 02 03 04  5.0000000  0  2      G01E05")
        << QStringLiteral("line 7: expected an epoch line starting with '>'");
    QTest::newRow("bad epoch count") << withLine(v3, 14, changes({{33, "x"}}).chopped(1))
                                     << QStringLiteral("line 14: bad epoch line");
    QTest::newRow("epoch going back") << withLine(v3, 14, changes({{20, "4"}}).chopped(1))
                                      << QStringLiteral("line 14: epoch is earlier");
    QTest::newRow("1.0 unknown flag") << h1 + "&24  1  2  3  4 10.0000000  7  0\n"
                                      << QStringLiteral("line 6: unknown epoch flag 7");
}

void tst_CrinexReader::damaged()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!RinexReader::readText(text, QStringLiteral("test"), &error));
    QVERIFY2(error.startsWith(expected), qPrintable(error));
}

void tst_CrinexReader::cutShort_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("epochs");
    QTest::addColumn<int>("line");         // 0: read to the end
    QTest::addColumn<QString>("endsInside");
    const QByteArray v3 = compactV3Header() + compactV3Body(); // 17 lines
    const int third = int(v3.lastIndexOf("3&22000100000"));
    QTest::newRow("whole") << v3 << 3 << 0 << QString();
    QTest::newRow("before the last record")
        << v3.left(third) << 2 << 17 << QStringLiteral("an epoch's satellite records");
    QTest::newRow("inside a difference")
        << v3.left(third + 5) << 2 << 17 << QStringLiteral("a line");
    QTest::newRow("last line without its end")
        << v3.chopped(1) << 2 << 17 << QStringLiteral("a line");
    QTest::newRow("after an epoch line")
        << compactV3Header() + "> 2024 01 02 03 04  5.0000000  0  2      G01E05\n" << 0 << 8
        << QStringLiteral("an epoch (no receiver clock line)");
    QTest::newRow("1.0 inside an event")
        << compactV1Header() + "&24  1  2  3  4 10.0000000  4  2\n" + headerLine("x", "COMMENT")
        << 0 << 8 << QStringLiteral("an event record");
}

// A compact file that ends early keeps its whole epochs, with the values of
// the whole file, and says where it stopped.
void tst_CrinexReader::cutShort()
{
    QFETCH(QByteArray, text);
    QFETCH(int, epochs);
    QFETCH(int, line);
    QFETCH(QString, endsInside);
    QString error;
    const auto source = RinexReader::readText(text, QStringLiteral("test"), &error);
    QVERIFY2(source, qPrintable(error));
    QCOMPARE(int(source->epochs().size()), epochs);
    const ReadStop stop = source->readStop();
    QCOMPARE(stop.line, qint64(line));
    QCOMPARE(QString::fromLatin1(stop.endsInside), endsInside);
    QCOMPARE(stop.epochsKept, qint64(epochs));
    QVERIFY(!stop.compressedCut);

    const QByteArray whole = compactV3Header() + compactV3Body();
    const auto full = RinexReader::readText(whole, QStringLiteral("test"), &error);
    QVERIFY(full);
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* s = source->satelliteAt(i);
        QCOMPARE(s->record.size(), size_t(epochs));
        const SatelliteObservations* t = nullptr;
        for (int j = 0; j < full->satelliteCount() && !t; ++j)
            t = full->satelliteAt(j)->name == s->name ? full->satelliteAt(j) : nullptr;
        QVERIFY(t);
        for (int band = 0; band < BandCount; ++band) {
            const SignalSeries& x = s->bands[band];
            const SignalSeries& y = t->bands[band];
            QCOMPARE(x.codeType, y.codeType);
            QCOMPARE(x.isEmpty(), y.isEmpty());
            if (y.isEmpty())
                continue;
            QVERIFY(sameValues(x.pseudorange,
                               std::vector<double>(y.pseudorange.begin(),
                                                   y.pseudorange.begin() + epochs)));
            QVERIFY(sameValues(x.phase, std::vector<double>(y.phase.begin(),
                                                            y.phase.begin() + epochs)));
        }
    }
}

void tst_CrinexReader::randomDamage_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("GRAS 3.0") << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.crx.gz");
    QTest::newRow("DELF 1.0") << QStringLiteral("delf0010.21d.gz");
}

// Cuts, changed characters, dropped and repeated lines, and damaged
// compressed bytes: the reader never crashes, and a refusal names a line
// that exists.
void tst_CrinexReader::randomDamage()
{
    QFETCH(QString, file);
    const QString path = DataDir + QLatin1Char('/') + file;
    if (!QFile::exists(path))
        QSKIP("shared data not found next to the repository");
    QByteArray full = expandedFile(path);
    // A few hundred epochs keep each round short.
    int cut = 0;
    for (int i = 0; i < 4000 && cut >= 0; ++i)
        cut = full.indexOf('\n', cut + 1);
    const QByteArray text = cut > 0 ? full.left(cut + 1) : full;
    const int lineCount = int(text.count('\n')) + 1;
    const QRegularExpression lineError(QStringLiteral("^line (\\d+): \\S"));
    const char alphabet[] = " &-0123456789>GREx\n";

    QRandomGenerator random(20240727);
    int refused = 0;
    for (int round = 0; round < 300; ++round) {
        QByteArray damaged = text;
        const int kind = round % 4;
        if (kind == 0) {
            damaged.truncate(random.bounded(int(damaged.size())));
        } else if (kind == 1) {
            for (int k = random.bounded(1, 5); k > 0; --k)
                damaged[random.bounded(int(damaged.size()))] =
                    alphabet[random.bounded(int(sizeof(alphabet)) - 1)];
        } else {
            QList<QByteArray> lines = damaged.split('\n');
            const int at = random.bounded(int(lines.size()));
            if (kind == 2)
                lines.removeAt(at);
            else
                lines.insert(at, lines[at]);
            damaged = lines.join('\n');
        }
        QString error;
        const auto source = RinexReader::readText(damaged, QStringLiteral("test"), &error);
        if (source)
            continue;
        ++refused;
        const QRegularExpressionMatch m = lineError.match(error);
        QVERIFY2(m.hasMatch(), qPrintable(error));
        QVERIFY2(m.captured(1).toInt() >= 1 && m.captured(1).toInt() <= lineCount + 1,
                 qPrintable(error));
    }
    QVERIFY2(refused > 100, qPrintable(QString::number(refused)));

    // The compressed bytes themselves, gzip and compress.
    QFile gz(path);
    QVERIFY(gz.open(QIODevice::ReadOnly));
    const QByteArray packed[] = {gz.readAll(), writeCompressStream(text, 16, true)};
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString damagedPath = dir.filePath(QStringLiteral("damaged"));
    const QRegularExpression fileError(QStringLiteral("^damaged: line (\\d+): \\S"));
    for (int round = 0; round < 40; ++round) {
        QByteArray bytes = packed[round % 2];
        if (round % 4 < 2) {
            bytes.truncate(random.bounded(3, int(bytes.size())));
        } else {
            const int at = random.bounded(3, int(bytes.size()));
            bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
        }
        QVERIFY(writeFile(damagedPath, bytes));
        QString error;
        if (!RinexReader::readFile(damagedPath, &error))
            QVERIFY2(fileError.match(error).hasMatch(), qPrintable(error));
    }
}

void tst_CrinexReader::compressStream_data()
{
    QTest::addColumn<int>("maxBits");
    QTest::addColumn<bool>("blockMode");
    QTest::newRow("9 bits, cleared often") << 9 << true;
    QTest::newRow("12 bits") << 12 << true;
    QTest::newRow("16 bits") << 16 << true;
    QTest::newRow("16 bits, no clearing") << 16 << false;
}

void tst_CrinexReader::compressStream()
{
    QFETCH(int, maxBits);
    QFETCH(bool, blockMode);
    const QString path = DataDir + QStringLiteral("/GRAS00FRA_R_20223151700_15M_01S_MO.crx.gz");
    if (!QFile::exists(path))
        QSKIP("shared data not found next to the repository");
    const QByteArray text = expandedFile(path);
    const QByteArray packed = writeCompressStream(text, maxBits, blockMode);
    QVERIFY(packed.size() < text.size());

    QByteArray expanded;
    QString error;
    QVERIFY2(rinex::expandCompressStream(packed, &expanded, &error), qPrintable(error));
    QVERIFY(expanded == text);

    // The writer above against an independent reader of the format.
    const QString gzip = QStandardPaths::findExecutable(QStringLiteral("gzip"));
    if (!gzip.isEmpty()) {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString file = dir.filePath(QStringLiteral("text.Z"));
        QVERIFY(writeFile(file, packed));
        QProcess process;
        process.start(gzip, {QStringLiteral("-dc"), file});
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(process.readAllStandardOutput() == text);
    }

    // A code for a string not defined yet (97, then 300 where 257 is the
    // next entry), and an unknown width.
    QByteArray bad("\x1f\x9d\x00\x61\x58\x02", 6);
    bad[2] = char(maxBits | 0x80);
    QVERIFY(!rinex::expandCompressStream(bad, &expanded, &error));
    QCOMPARE(error, QStringLiteral("code 300 refers to no string yet"));
    QCOMPARE(expanded, QByteArray("a"));
    bad = packed.left(3);
    bad[2] = char(0x91);
    QVERIFY(!rinex::expandCompressStream(bad, &expanded, &error));
    QCOMPARE(error, QStringLiteral("unsupported code width 17"));
}

void tst_CrinexReader::snapshotSameAsPlain_data()
{
    QTest::addColumn<QString>("compact");
    QTest::addColumn<QString>("plain");
    QTest::newRow("GRAS 3.0") << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.crx.gz")
                              << QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz");
    QTest::newRow("DELF 1.0") << QStringLiteral("delf0010.21d.gz")
                              << QStringLiteral("delf0010.21o.gz");
}

// The demo run as a user would, on either form: the same summary (but for
// the file name and the timings) and the same pictures (but for the window,
// whose title names the file).
void tst_CrinexReader::snapshotSameAsPlain()
{
    QFETCH(QString, compact);
    QFETCH(QString, plain);
    QStringList summaries[2];
    QTemporaryDir dirs[2];
    const QString names[2] = {compact, plain};
    for (int i = 0; i < 2; ++i) {
        const QString path = DataDir + QLatin1Char('/') + names[i];
        if (!QFile::exists(path))
            QSKIP("shared data not found next to the repository");
        QVERIFY(dirs[i].isValid());
        QProcess demo;
        demo.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        demo.start(QStringLiteral(GNSSPLOT_DEMO_EXE),
                   {QStringLiteral("--snapshot"), dirs[i].path(), QStringLiteral("--rinex"), path});
        QVERIFY2(demo.waitForFinished(240000), "the demo did not finish");
        QCOMPARE(demo.exitCode(), 0);
        QFile file(dirs[i].filePath(QStringLiteral("summary.txt")));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
            if (!line.startsWith(QLatin1String("load:")))
                summaries[i] << QString(line).replace(names[i], QStringLiteral("FILE"));
        }
    }
    QVERIFY(summaries[0].size() > 5);
    QCOMPARE(summaries[0], summaries[1]);
    const QStringList pictures = QDir(dirs[1].path()).entryList({QStringLiteral("*.png")});
    QVERIFY(!pictures.isEmpty());
    for (const QString& picture : pictures) {
        if (picture == QLatin1String("window.png"))
            continue;
        const QImage a(dirs[0].filePath(picture));
        const QImage b(dirs[1].filePath(picture));
        QVERIFY2(!a.isNull() && a == b, qPrintable(picture));
    }
}

QTEST_GUILESS_MAIN(tst_CrinexReader)
#include "tst_crinexreader.moc"
