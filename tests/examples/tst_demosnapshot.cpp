// SPDX-License-Identifier: MIT
// Runs the demo's --snapshot mode as a user would and checks what it wrote:
// the pictures' sizes and colours and the summary, against counts made here
// from the data layer and from the independent statistics of the shared files.
#include "ObservationData.h"
#include "RinexReader.h"
#include "SyntheticSource.h"

#include <QtTest>

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <map>

using namespace gnssdemo;

namespace {

const QString kDataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);

struct Rgb
{
    int r, g, b;
};

// Number of pixels within \a tolerance of \a colour in every channel, alpha
// ignored.
int countColour(const QImage& image, Rgb colour, int tolerance)
{
    const QImage rgb = image.convertToFormat(QImage::Format_ARGB32);
    int n = 0;
    for (int y = 0; y < rgb.height(); ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x) {
            if (qAlpha(line[x]) == 0)
                continue;
            if (std::abs(qRed(line[x]) - colour.r) <= tolerance
                && std::abs(qGreen(line[x]) - colour.g) <= tolerance
                && std::abs(qBlue(line[x]) - colour.b) <= tolerance)
                ++n;
        }
    }
    return n;
}

// A curve colour drawn at the live view's alpha of 128 over a background.
Rgb halfOver(Rgb c, Rgb background)
{
    auto mix = [](int fg, int bg) { return (fg * 128 + bg * 127) / 255; };
    return {mix(c.r, background.r), mix(c.g, background.g), mix(c.b, background.b)};
}

const Rgb kTint{255, 245, 239};
const Rgb kWhite{255, 255, 255};
const std::map<char, Rgb> kSystemColours{{'G', {31, 119, 180}}, {'R', {214, 39, 40}},
                                         {'E', {44, 160, 44}},  {'C', {255, 127, 14}},
                                         {'J', {148, 103, 189}}, {'S', {140, 86, 75}}};
const Rgb kBandColours[] = {{0, 34, 255}, {0, 128, 0}, {128, 0, 128}, {154, 205, 50}};

QString summaryLine(const QStringList& lines, const QString& prefix)
{
    for (const QString& line : lines) {
        if (line.startsWith(prefix))
            return line;
    }
    return QString();
}

} // namespace

class tst_DemoSnapshot : public QObject
{
    Q_OBJECT
private slots:
    void snapshot_data();
    void snapshot();
    void skySnapshot_data();
    void skySnapshot();
    void cutFile();
    void unreadableFile();
};

void tst_DemoSnapshot::snapshot_data()
{
    QTest::addColumn<QString>("rinex");
    QTest::addColumn<bool>("curves");
    QTest::newRow("synthetic day") << QString() << true;
    QTest::newRow("GRAS 1 Hz file")
        << kDataDir + QStringLiteral("/GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz") << true;
    // A phone's file: code on two bands, phase on none.
    QTest::newRow("phone file without phase")
        << kDataDir + QStringLiteral("/GEOP092I.24o.gz") << false;
}

void tst_DemoSnapshot::snapshot()
{
    QFETCH(QString, rinex);
    QFETCH(bool, curves);
    if (!rinex.isEmpty() && !QFileInfo::exists(rinex))
        QSKIP("shared data file not found");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QStringList args{QStringLiteral("--snapshot"), dir.path()};
    if (!rinex.isEmpty())
        args << QStringLiteral("--rinex") << rinex;
    QProcess demo;
    demo.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    demo.start(QStringLiteral(GNSSPLOT_DEMO_EXE), args);
    QVERIFY2(demo.waitForFinished(240000), "the demo did not finish");
    QCOMPARE(demo.exitStatus(), QProcess::NormalExit);
    QCOMPARE(demo.exitCode(), 0);

    QFile file(dir.filePath(QStringLiteral("summary.txt")));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));

    // What the source holds, counted here.
    QString expectedSatellites;
    QString expectedEpochs;
    std::map<char, int> systems;
    if (rinex.isEmpty()) {
        SyntheticSource source;
        for (int i = 0; i < source.satelliteCount(); ++i)
            ++systems[source.satelliteName(i).at(0).toLatin1()];
        expectedEpochs = QStringLiteral("epochs: 86400 from 2024/07/27 00:00:00 to 2024/07/27 "
                                        "23:59:59 GPST, interval 1000 ms");
    } else {
        QFile statsFile(rinex.left(rinex.size() - 3) + QStringLiteral(".stats.json"));
        QVERIFY(statsFile.open(QIODevice::ReadOnly));
        const QJsonObject stats = QJsonDocument::fromJson(statsFile.readAll()).object();
        const QJsonObject perSystem = stats.value(QStringLiteral("sats_per_system")).toObject();
        for (auto it = perSystem.begin(); it != perSystem.end(); ++it)
            systems[it.key().at(0).toLatin1()] = it.value().toInt();
        expectedEpochs = QStringLiteral("epochs: %1 from ")
                             .arg(stats.value(QStringLiteral("epochs")).toInt());
    }
    int total = 0;
    QStringList parts;
    for (const auto& entry : systems) {
        total += entry.second;
        parts << QStringLiteral("%1 %2").arg(QLatin1Char(entry.first)).arg(entry.second);
    }
    expectedSatellites =
        QStringLiteral("satellites: %1 (%2)").arg(total).arg(parts.join(QStringLiteral(", ")));
    QCOMPARE(summaryLine(lines, QStringLiteral("satellites:")), expectedSatellites);
    QVERIFY2(summaryLine(lines, QStringLiteral("epochs:")).startsWith(expectedEpochs),
             qPrintable(summaryLine(lines, QStringLiteral("epochs:"))));

    // Without curves the plot says why, in the summary and in the window;
    // the table and the bars are written all the same.
    if (!curves) {
        const QString why = QStringLiteral(
            "No satellite has code and phase on two bands: no multipath to show.");
        QCOMPARE(summaryLine(lines, QStringLiteral("curves:")), QStringLiteral("curves: 0"));
        QCOMPARE(summaryLine(lines, QStringLiteral("empty plot:")),
                 QStringLiteral("empty plot: ") + why);
        QCOMPARE(summaryLine(lines, QStringLiteral("curve picture:")),
                 QStringLiteral("curve picture: none"));
        const QStringList written =
            summaryLine(lines, QStringLiteral("pictures:")).mid(10).split(QLatin1Char(' '));
        QCOMPARE(written.size(), 8);
        for (const char* name : {"window.png", "view.png", "table.png", "bars.png"})
            QVERIFY(!QImage(dir.filePath(QString::fromLatin1(name))).isNull());
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("curve.png"))));
        QVERIFY(countColour(QImage(dir.filePath(QStringLiteral("bars.png"))), kBandColours[0],
                            0) > 100);
        return;
    }
    QVERIFY(summaryLine(lines, QStringLiteral("empty plot:")).isEmpty());

    // The round trip: three marked satellites and one unchecked one read
    // back, applied, and no curve sample left inside the marks.
    QCOMPARE(summaryLine(lines, QStringLiteral("enabled satellites read back:"))
                 .section(QLatin1Char('('), 0, 0),
             QStringLiteral("enabled satellites read back: %1 of %2 ").arg(total - 1).arg(total));
    QCOMPARE(summaryLine(lines, QStringLiteral("erase marks read back:")),
             QStringLiteral("erase marks read back: 3 satellites, 3 actions"));
    const QString apply = summaryLine(lines, QStringLiteral("apply:"));
    const QRegularExpression applyRe(QStringLiteral(
        "^apply: 3 satellites recomputed, (\\d+) curve samples removed, 0 curve samples left "
        "inside the marks, 1 curves hidden$"));
    const QRegularExpressionMatch applyMatch = applyRe.match(apply);
    QVERIFY2(applyMatch.hasMatch(), qPrintable(apply));
    QVERIFY(applyMatch.captured(1).toLongLong() > 0);

    // Every picture exists with the size the summary gives.
    const QString picturesLine = summaryLine(lines, QStringLiteral("pictures:"));
    const QStringList words = picturesLine.mid(10).split(QLatin1Char(' '));
    QCOMPARE(words.size(), 10);
    QMap<QString, QImage> pictures;
    for (int k = 0; k + 1 < words.size(); k += 2) {
        QImage image(dir.filePath(words[k]));
        QVERIFY2(!image.isNull(), qPrintable(words[k]));
        QCOMPARE(QStringLiteral("%1x%2").arg(image.width()).arg(image.height()), words[k + 1]);
        pictures.insert(words[k], image);
    }
    QCOMPARE(pictures.value(QStringLiteral("window.png")).size(), QSize(1280, 800));
    QCOMPARE(pictures.value(QStringLiteral("curve.png")).size(), QSize(800, 540));

    // Colours: the frame's tinted lower half in the view and the curve
    // picture; every constellation's curves at half alpha in the view; the
    // marked satellite's curve opaque in its picture; the band colours in
    // the table and in the bars picture, and the grey of the unchecked one.
    auto failed = [&](const QString& name) {
        pictures.value(name).save(QDir::temp().filePath(QStringLiteral("tst_demosnapshot-")
                                                        + name));
        return qPrintable(name + QStringLiteral(" saved to the temporary folder"));
    };
    const QImage view = pictures.value(QStringLiteral("view.png"));
    QVERIFY2(countColour(view, kTint, 0) > 1000, failed(QStringLiteral("view.png")));
    for (const auto& entry : systems) {
        const Rgb c = kSystemColours.at(entry.first);
        const int n = countColour(view, halfOver(c, kWhite), 3)
                      + countColour(view, halfOver(c, kTint), 3);
        QVERIFY2(n > 20, failed(QStringLiteral("view.png")));
    }
    const QImage curve = pictures.value(QStringLiteral("curve.png"));
    QVERIFY2(countColour(curve, kTint, 0) > 1000, failed(QStringLiteral("curve.png")));
    const QString curveSatellite = summaryLine(lines, QStringLiteral("curve picture: ")).mid(15);
    QVERIFY(!curveSatellite.isEmpty());
    QVERIFY2(countColour(curve, kSystemColours.at(curveSatellite.at(0).toLatin1()), 0) > 200,
             failed(QStringLiteral("curve.png")));
    for (const QString& name : {QStringLiteral("table.png"), QStringLiteral("bars.png")}) {
        for (int b = 0; b < 2; ++b) {
            QVERIFY2(countColour(pictures.value(name), kBandColours[b], 0) > 100,
                     failed(name));
        }
    }
    QVERIFY2(countColour(pictures.value(QStringLiteral("bars.png")), {205, 205, 205}, 0) > 20,
             failed(QStringLiteral("bars.png")));

    // The quality table: one row per satellite, per system and for all.
    // Satellites without marks keep the epochs the statistics count; the
    // marked ones lose some; the rows add up.
    if (rinex.isEmpty())
        return;
    QFile statsFile(rinex.left(rinex.size() - 3) + QStringLiteral(".stats.json"));
    QVERIFY(statsFile.open(QIODevice::ReadOnly));
    const QJsonObject counts = QJsonDocument::fromJson(statsFile.readAll())
                                   .object()
                                   .value(QStringLiteral("sat_epoch_counts"))
                                   .toObject();
    QStringList marked;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("  ")) && line.contains(QLatin1String(" GPST, ")))
            marked.append(line.trimmed().left(3));
    }
    QCOMPARE(marked.size(), 3);
    const int table = int(lines.indexOf(summaryLine(lines, QStringLiteral("quality ("))));
    QVERIFY(table > 0);
    qint64 sum = 0;
    int satellites = 0;
    int row = table + 2;
    for (; row < lines.size() && QRegularExpression(QStringLiteral("^  [A-Z]\\d\\d "))
                                         .match(lines[row]).hasMatch();
         ++row) {
        const QStringList w = lines[row].split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const qint64 epochs = w[1].toLongLong();
        const qint64 recorded = counts.value(w[0]).toInt();
        if (marked.contains(w[0]))
            QVERIFY2(epochs < recorded, qPrintable(lines[row]));
        else
            QVERIFY2(epochs == recorded, qPrintable(lines[row]));
        sum += epochs;
        ++satellites;
    }
    QCOMPARE(satellites, total);
    row += int(systems.size());
    QVERIFY(row < lines.size());
    const QStringList all = lines[row].split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QVERIFY2(all.size() > 2 && all[0] == QLatin1String("all") && all[1].toLongLong() == sum,
             qPrintable(lines[row]));
    QVERIFY(lines[row + 1].startsWith(QLatin1String("satellites per epoch (min/mean/max): ")));
}

// A file cut short: the snapshot is written from its whole epochs, and both
// the command line and the summary say where it stopped.
void tst_DemoSnapshot::cutFile()
{
    const QString source =
        kDataDir + QStringLiteral("/GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz");
    if (!QFileInfo::exists(source))
        QSKIP("shared data file not found");
    QByteArray text;
    QString error;
    QVERIFY2(readMaybeGzipped(source, &text, &error), qPrintable(error));
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile cut(dir.filePath(QStringLiteral("cut.rnx")));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    const QByteArray kept = text.left(text.size() / 4);
    QVERIFY(cut.write(kept) == kept.size());
    cut.close();
    const int line = int(kept.count('\n')) + 1;

    QProcess demo;
    demo.start(QStringLiteral(GNSSPLOT_DEMO_EXE),
               {QStringLiteral("--snapshot"), dir.filePath(QStringLiteral("out")),
                QStringLiteral("--rinex"), cut.fileName()});
    QVERIFY2(demo.waitForFinished(240000), "the demo did not finish");
    QCOMPARE(demo.exitCode(), 0);
    const QString said = QString::fromUtf8(demo.readAllStandardError());
    const QString where = QStringLiteral("cut.rnx: line %1: file ends inside a line; ").arg(line);
    QVERIFY2(said.contains(QStringLiteral("gnssplot-demo: warning: ") + where), qPrintable(said));

    QFile file(dir.filePath(QStringLiteral("out/summary.txt")));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    const QString epochs =
        summaryLine(lines, QStringLiteral("epochs: ")).section(QLatin1Char(' '), 1, 1);
    QVERIFY(epochs.toInt() > 100);
    QCOMPARE(summaryLine(lines, QStringLiteral("cut short: ")),
             QStringLiteral("cut short: ") + where + epochs
                 + QStringLiteral(" complete epochs kept"));
}

// A file that cannot be read: the snapshot fails, the window stays open.
void tst_DemoSnapshot::unreadableFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString missing = dir.filePath(QStringLiteral("missing.rnx"));
    QProcess snapshot;
    snapshot.start(QStringLiteral(GNSSPLOT_DEMO_EXE),
                   {QStringLiteral("--snapshot"), dir.path(), QStringLiteral("--rinex"), missing});
    QVERIFY(snapshot.waitForFinished(120000));
    QCOMPARE(snapshot.exitCode(), 1);
    QVERIFY(QString::fromUtf8(snapshot.readAllStandardError())
                .contains(QLatin1String("missing.rnx: cannot open the file")));

    QProcess window;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    window.setProcessEnvironment(env);
    window.start(QStringLiteral(GNSSPLOT_DEMO_EXE), {QStringLiteral("--rinex"), missing});
    QVERIFY(window.waitForStarted(30000));
    QString said;
    for (int i = 0; i < 100 && !said.contains(QLatin1String("cannot open")); ++i) {
        window.waitForReadyRead(300);
        said += QString::fromUtf8(window.readAllStandardError());
    }
    QVERIFY2(said.contains(QLatin1String("missing.rnx: cannot open the file")), qPrintable(said));
    // Still running: the window waits for another file.
    QVERIFY(!window.waitForFinished(1500));
    QCOMPARE(window.state(), QProcess::Running);
    window.kill();
    window.waitForFinished(10000);
}

void tst_DemoSnapshot::skySnapshot_data()
{
    QTest::addColumn<QString>("rinex");
    QTest::addColumn<QStringList>("nav");
    QTest::addColumn<QString>("systems");      // of the satellites in sky.csv
    QTest::addColumn<QString>("withoutPrefix"); // of the summary's line, or "none"
    // The three navigation files beside it are picked up by themselves.
    QTest::newRow("NYA1, navigation beside it")
        << QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz") << QStringList()
        << QStringLiteral("CEG") << QStringLiteral("R01, R02, R03");
    // A mixed navigation file beside it: every system of the file has a sky.
    QTest::newRow("ESBC, mixed navigation beside it")
        << QStringLiteral("ESBC00DNK_R_20201770000_01D_30S_MO.crx.gz") << QStringList()
        << QStringLiteral("CEGJRS") << QStringLiteral("none");
    // GRAS's Galileo navigation given for AJAC's day.
    QTest::newRow("AJAC with GRAS's Galileo navigation")
        << QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz")
        << QStringList{QStringLiteral("GRAS00FRA_R_20242090000_01D_EN.rnx.gz")}
        << QStringLiteral("E") << QStringLiteral("C02, C05");
}

// sky.csv as a reader of it needs it: the header, one row per satellite and
// epoch in order, angles in range with three decimals, as many rows as the
// summary says, and the observed satellites without ephemeris named; sky.png
// with tracks in the colours of signal strength; and the quality numbers
// counted above the elevation mask.
void tst_DemoSnapshot::skySnapshot()
{
    QFETCH(QString, rinex);
    QFETCH(QStringList, nav);
    QFETCH(QString, systems);
    QFETCH(QString, withoutPrefix);
    const QString path = kDataDir + QLatin1Char('/') + rinex;
    if (!QFileInfo::exists(path))
        QSKIP("shared data file not found");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QStringList args{QStringLiteral("--snapshot"), dir.path(), QStringLiteral("--rinex"), path};
    for (const QString& file : nav)
        args << QStringLiteral("--nav") << kDataDir + QLatin1Char('/') + file;
    QProcess demo;
    demo.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    demo.start(QStringLiteral(GNSSPLOT_DEMO_EXE), args);
    QVERIFY2(demo.waitForFinished(240000), "the demo did not finish");
    QCOMPARE(demo.exitCode(), 0);

    QFile summaryFile(dir.filePath(QStringLiteral("summary.txt")));
    QVERIFY(summaryFile.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(summaryFile.readAll()).split(QLatin1Char('\n'));
    const QRegularExpression skyRe(QStringLiteral(
        "^sky: (\\d+) satellites with a position \\((\\d+) of them observed\\), (\\d+) rows "
        "in sky.csv$"));
    const QRegularExpressionMatch skyLine = skyRe.match(summaryLine(lines, QStringLiteral("sky:")));
    QVERIFY2(skyLine.hasMatch(), qPrintable(summaryLine(lines, QStringLiteral("sky:"))));
    QVERIFY(summaryLine(lines, QStringLiteral("observed without ephemeris: "))
                .startsWith(QStringLiteral("observed without ephemeris: ") + withoutPrefix));
    QVERIFY(!summaryLine(lines, QStringLiteral("navigation: ")).isEmpty());
    const QString epochsLine = summaryLine(lines, QStringLiteral("epochs: "));
    const int epochs = epochsLine.section(QLatin1Char(' '), 1, 1).toInt();
    QVERIFY(epochs > 0);

    QFile csv(dir.filePath(QStringLiteral("sky.csv")));
    QVERIFY(csv.open(QIODevice::ReadOnly));
    QCOMPARE(csv.readLine(), QByteArray("satellite,time_gpst,azimuth_deg,elevation_deg\n"));
    const QRegularExpression rowRe(QStringLiteral(
        "^([A-Z]\\d\\d),(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d),(-?\\d+\\.\\d{3}),"
        "(-?\\d+\\.\\d{3})$"));
    qint64 rows = 0;
    QString previousSatellite;
    QString previousTime;
    QMap<QString, int> perSatellite;
    QString seenSystems;
    while (!csv.atEnd()) {
        const QString row = QString::fromLatin1(csv.readLine()).chopped(1);
        const QRegularExpressionMatch m = rowRe.match(row);
        QVERIFY2(m.hasMatch(), qPrintable(row));
        const QString satellite = m.captured(1);
        const QString time = m.captured(2);
        // Satellites in name order, each one's epochs ascending, no repeats.
        QVERIFY2(satellite > previousSatellite
                     || (satellite == previousSatellite && time > previousTime),
                 qPrintable(row));
        previousSatellite = satellite;
        previousTime = time;
        ++perSatellite[satellite];
        if (!seenSystems.contains(satellite.at(0)))
            seenSystems += satellite.at(0);
        const double azimuth = m.captured(3).toDouble();
        const double elevation = m.captured(4).toDouble();
        QVERIFY2(azimuth >= 0.0 && azimuth < 360.0, qPrintable(row));
        QVERIFY2(elevation >= -90.0 && elevation <= 90.0, qPrintable(row));
        ++rows;
    }
    QCOMPARE(rows, skyLine.captured(3).toLongLong());
    QCOMPARE(perSatellite.size(), skyLine.captured(1).toInt());
    for (auto it = perSatellite.cbegin(); it != perSatellite.cend(); ++it)
        QVERIFY2(it.value() <= epochs, qPrintable(it.key()));
    std::sort(seenSystems.begin(), seenSystems.end());
    QCOMPARE(seenSystems, systems);

    // The sky picture: 800 x 800, its tracks in the scale's colours (grey
    // rings, white ground and black text are not colourful).
    const QImage sky(dir.filePath(QStringLiteral("sky.png")));
    QCOMPARE(sky.size(), QSize(800, 800));
    const QString picturesLine = summaryLine(lines, QStringLiteral("pictures:"));
    QVERIFY2(picturesLine.contains(QLatin1String(" sky.png 800x800")), qPrintable(picturesLine));
    int colourful = 0;
    for (int y = 0; y < sky.height(); ++y) {
        for (int x = 0; x < sky.width(); ++x) {
            const QRgb c = sky.pixel(x, y);
            const int hi = std::max({qRed(c), qGreen(c), qBlue(c)});
            const int lo = std::min({qRed(c), qGreen(c), qBlue(c)});
            colourful += hi - lo > 120 ? 1 : 0;
        }
    }
    QVERIFY2(colourful > 5000, qPrintable(QString::number(colourful)));

    // With positions, every system's completeness is counted above the mask.
    const QString all = summaryLine(lines, QStringLiteral("  all "));
    const QStringList numbers = all.simplified().split(QLatin1Char(' '));
    QVERIFY2(numbers.size() >= 10, qPrintable(all));
    QVERIFY2(numbers[2].toLongLong() > 0, qPrintable(all));
    const double complete = numbers[3].toDouble();
    QVERIFY2(complete > 50.0 && complete <= 100.0, qPrintable(all));
}

QTEST_MAIN(tst_DemoSnapshot)
#include "tst_demosnapshot.moc"
