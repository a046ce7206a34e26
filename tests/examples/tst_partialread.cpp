// SPDX-License-Identifier: MIT
// Files cut short load their complete epochs: the shared files cut at chosen
// bytes as plain text, compact text, gzip and Unix-compressed streams,
// against a recount of the whole epochs in what is left and against the
// values of the whole file.
#include "CompressStreamWriter.h"
#include "RinexReader.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace gnssdemo;

namespace {

const QString DataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);
const QString Gras = QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO");

QByteArray expanded(const QString& file)
{
    QByteArray text;
    QString error;
    if (!readMaybeGzipped(DataDir + QLatin1Char('/') + file, &text, &error))
        qWarning("%s", qPrintable(error));
    return text;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Where a text's whole epochs end, counted from its lines alone: the number
// of whole data epochs and the 1-based line where the first incomplete one
// stops (0 when none is).
struct Recount
{
    int epochs = 0;
    qint64 line = 0;
};

// Plain text after the header. An epoch is whole when all the lines it
// announces are there, each with its line end. \a linesOf gives, from an
// epoch line, how many lines follow it (-1: not an epoch line) and whether
// it carries data.
template <typename LinesOf>
Recount recount(const QByteArray& text, LinesOf linesOf)
{
    const QList<QByteArray> lines = text.split('\n'); // the last one has no end
    int first = 0;
    while (first < lines.size() && !lines[first].contains("END OF HEADER"))
        ++first;
    Recount r;
    for (int i = first + 1; i < lines.size();) {
        const bool cut = i == lines.size() - 1; // no line end after it
        if (lines[i].trimmed().isEmpty() && !cut) {
            ++i;
            continue;
        }
        if (cut && lines[i].isEmpty())
            break; // the text ends with a line end
        bool data = false;
        const int follow = linesOf(lines[i], &data);
        if (follow < 0)
            break;
        const int last = i + follow; // index of the epoch's last line
        if (last >= lines.size() - 1) {
            r.line = std::min<qint64>(last, lines.size() - 1) + 1;
            break;
        }
        r.epochs += data ? 1 : 0;
        i = last + 1;
    }
    return r;
}

int field(const QByteArray& line, int col, int width)
{
    return line.mid(col, width).trimmed().toInt();
}

Recount recountV3(const QByteArray& text)
{
    return recount(text, [](const QByteArray& l, bool* data) {
        if (!l.startsWith('>'))
            return -1;
        *data = field(l, 31, 1) <= 1;
        return field(l, 32, 3);
    });
}

Recount recountV2(const QByteArray& text, int typeCount)
{
    return recount(text, [typeCount](const QByteArray& l, bool* data) {
        const int flag = field(l, 28, 1);
        const int n = field(l, 29, 3);
        *data = flag <= 1;
        const int listLines = (n + 11) / 12 - 1;
        return flag > 1 && flag < 6 ? n : listLines + n * ((typeCount + 4) / 5);
    });
}

// The compact file's epochs span the lines of the plain epochs they stand
// for, plus one receiver clock line each: count them from the plain file.
Recount recountCompact(const QByteArray& compact, const QByteArray& plain)
{
    const QList<QByteArray> plainLines = plain.split('\n');
    QList<int> sizes; // compact lines per epoch
    for (const QByteArray& l : plainLines) {
        if (l.startsWith('>'))
            sizes.append(2 + field(l, 32, 3));
    }
    const QList<QByteArray> lines = compact.split('\n');
    int line = 0;
    while (line < lines.size() && !lines[line].contains("END OF HEADER"))
        ++line;
    ++line; // 0-based index of the first epoch line
    Recount r;
    for (int size : sizes) {
        if (line + size - 1 >= lines.size() - 1) {
            r.line = std::min(line + size - 1, int(lines.size()) - 1) + 1;
            break;
        }
        ++r.epochs;
        line += size;
    }
    return r;
}

// Byte \a at moved forward to the next line end, plus one: a whole line.
int afterLine(const QByteArray& text, int at)
{
    return int(text.indexOf('\n', at)) + 1;
}

bool sameOrBothNaN(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

class tst_PartialRead : public QObject
{
    Q_OBJECT
private slots:
    void cutFiles_data();
    void cutFiles();
};

void tst_PartialRead::cutFiles_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("file");   // shared file the cut file is made of
    QTest::addColumn<QString>("whole");  // its plain counterpart, to compare with
    QTest::addColumn<double>("at");      // where to cut, as a fraction of the bytes
    QTest::addColumn<QString>("endsInside");
    const QString rnx = Gras + QStringLiteral(".rnx.gz");
    QTest::newRow("plain 3.04 inside a value")
        << "plain" << rnx << rnx << 0.4 << QStringLiteral("a line");
    QTest::newRow("plain 3.04 at a line end inside an epoch")
        << "plain line end" << rnx << rnx << 0.4 << QStringLiteral("an epoch's satellite records");
    QTest::newRow("plain 3.04 after a whole epoch")
        << "plain epoch end" << rnx << rnx << 0.4 << QString();
    QTest::newRow("plain 2.11 inside a record")
        << "plain" << QStringLiteral("delf0010.21o.gz") << QStringLiteral("delf0010.21o.gz")
        << 0.5 << QStringLiteral("a line");
    QTest::newRow("compact 3.0 inside a line")
        << "compact" << Gras + QStringLiteral(".crx.gz") << rnx << 0.6
        << QStringLiteral("a line");
    QTest::newRow("gzip stream cut")
        << "gzip" << rnx << rnx << 0.3 << QStringLiteral("a line");
    QTest::newRow(".Z stream cut") << "Z" << rnx << rnx << 0.5 << QStringLiteral("a line");
}

void tst_PartialRead::cutFiles()
{
    QFETCH(QString, how);
    QFETCH(QString, file);
    QFETCH(QString, whole);
    QFETCH(double, at);
    QFETCH(QString, endsInside);
    if (!QFile::exists(DataDir + QLatin1Char('/') + file))
        QSKIP("shared data not found; set GNSSPLOT_TEST_DATA_DIR");
    const QByteArray text = expanded(file);
    const QByteArray plain = file == whole ? text : expanded(whole);
    QVERIFY(!text.isEmpty() && !plain.isEmpty());
    const bool v2 = file.startsWith(QLatin1String("delf"));
    const int v2Types = v2 ? field(plain.mid(plain.indexOf("# / TYPES OF OBSERV") - 60), 0, 6)
                           : 0;

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("cut.obs"));
    QByteArray left; // the text the reader gets to see
    bool streamCut = false;
    if (how == QLatin1String("gzip")) {
        QFile gz(DataDir + QLatin1Char('/') + file);
        QVERIFY(gz.open(QIODevice::ReadOnly));
        const QByteArray bytes = gz.readAll();
        QVERIFY(writeFile(path, bytes.left(int(bytes.size() * at))));
        QString error;
        QVERIFY2(readMaybeGzipped(path, &left, &error, &streamCut), qPrintable(error));
        QVERIFY(streamCut);
        // Without asking for it, a cut stream is still refused.
        QByteArray refused;
        QVERIFY(!readMaybeGzipped(path, &refused, &error));
        QVERIFY2(error.contains(QLatin1String("damaged compressed data")), qPrintable(error));
    } else if (how == QLatin1String("Z")) {
        // A quarter of the file is plenty for a stream cut in its middle.
        const QByteArray part = text.left(afterLine(text, text.size() / 4));
        const QByteArray packed = writeCompressStream(part, 16, true);
        QVERIFY(writeFile(path, packed.left(int(packed.size() * at))));
        QString error;
        QVERIFY2(readMaybeGzipped(path, &left, &error), qPrintable(error));
    } else {
        int cut = int(text.size() * at);
        if (how == QLatin1String("plain line end")) {
            cut = afterLine(text, cut);
            if (text.at(cut) == '>') // one more line, so that an epoch is open
                cut = afterLine(text, cut);
        } else if (how == QLatin1String("plain epoch end")) {
            cut = int(text.indexOf("\n>", cut)) + 1;
        }
        left = text.left(cut);
        QVERIFY(writeFile(path, left));
    }
    QVERIFY(text.startsWith(left));
    QVERIFY(left.size() < text.size());

    const Recount expected = how == QLatin1String("compact") ? recountCompact(left, plain)
                             : v2 ? recountV2(left, v2Types)
                                  : recountV3(left);
    QVERIFY(expected.epochs > 10);
    QString error;
    const auto source = RinexReader::readFile(path, &error);
    QVERIFY2(source, qPrintable(error));
    const ReadStop stop = source->readStop();
    QCOMPARE(int(source->epochs().size()), expected.epochs);
    QCOMPARE(stop.epochsKept, qint64(expected.epochs));
    QCOMPARE(stop.file, QStringLiteral("cut.obs"));
    QCOMPARE(stop.compressedCut, streamCut);
    QCOMPARE(QString::fromLatin1(stop.endsInside), endsInside);
    if (streamCut && endsInside.isEmpty())
        QCOMPARE(stop.line, qint64(left.count('\n')) + 1);
    else
        QCOMPARE(stop.line, expected.line);
    QCOMPARE(stop.isCut(), how != QLatin1String("plain epoch end"));

    // What is kept is what the whole file holds for those epochs.
    const auto full = RinexReader::readText(plain, QStringLiteral("whole"), &error);
    QVERIFY2(full, qPrintable(error));
    const size_t kept = source->epochs().size();
    QVERIFY(std::equal(source->epochs().begin(), source->epochs().end(),
                       full->epochs().begin()));
    int compared = 0;
    for (int i = 0; i < source->satelliteCount(); ++i) {
        const SatelliteObservations* s = source->satelliteAt(i);
        const SatelliteObservations* t = nullptr;
        for (int j = 0; j < full->satelliteCount() && !t; ++j)
            t = full->satelliteAt(j)->name == s->name ? full->satelliteAt(j) : nullptr;
        QVERIFY2(t, qPrintable(s->name));
        QVERIFY(std::equal(s->record.begin(), s->record.end(), t->record.begin()));
        for (int band = 0; band < BandCount; ++band) {
            const SignalSeries& x = s->bands[band];
            const SignalSeries& y = t->bands[band];
            // Fewer epochs may tip the choice between two codes of a band.
            if (x.isEmpty() || y.isEmpty() || x.codeType != y.codeType
                || x.phaseType != y.phaseType)
                continue;
            for (size_t e = 0; e < kept; ++e) {
                QVERIFY(sameOrBothNaN(x.pseudorange[e], y.pseudorange[e]));
                QVERIFY(sameOrBothNaN(x.phase[e], y.phase[e]));
                QCOMPARE(x.lli[e], y.lli[e]);
            }
            ++compared;
        }
    }
    QVERIFY(compared > 10);
}

QTEST_GUILESS_MAIN(tst_PartialRead)
#include "tst_partialread.moc"
