// SPDX-License-Identifier: MIT
// The demo's window as a quality-check station, in the process: one time
// window for plot, table and sky plot; a hover that names the satellite in
// every view; an axis for every file; the quality numbers in the window
// against the summary's; the exports; the layout at small sizes; the
// pictures' time axis; and the window's texts in German and Chinese.
#include "CsvExport.h"
#include "DemoHost.h"
#include "DemoWindow.h"
#include "ElidedLabel.h"
#include "MultipathView.h"
#include "Pictures.h"
#include "QualityPane.h"
#include "QualityText.h"
#include "ReadbackPanel.h"
#include "SkyPane.h"
#include "TextRecorder.h"

#include <gnssplot.h>

#include <QtTest>

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTranslator>
#include <QXmlStreamReader>

#include <cmath>
#include <memory>

using namespace gnssdemo;

namespace {

const QString kDataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);
const QString kNya = QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz");
const QString kAjac = QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz");
const QString kGeop = QStringLiteral("GEOP092I.24o.gz");
const QString kGras = QStringLiteral("GRAS00FRA_R_20223151700_15M_01S_MO.rnx.gz");
constexpr double kHour = 3600000.0;

QString dataFile(const QString& name)
{
    return kDataDir + QLatin1Char('/') + name;
}

// What a widget writes, as it is shown now.
QList<TextRecorder::Text> textsOf(QWidget* widget)
{
    TextRecorder recorder(widget->size());
    QPainter painter(&recorder);
    widget->render(&painter);
    painter.end();
    return recorder.texts();
}

// The time labels among \a texts: "HH:mm" or "HH:mm:ss".
QList<TextRecorder::Text> timeLabels(const QList<TextRecorder::Text>& texts)
{
    static const QRegularExpression time(QStringLiteral("^\\d\\d:\\d\\d(:\\d\\d)?$"));
    QList<TextRecorder::Text> out;
    for (const TextRecorder::Text& t : texts) {
        if (time.match(t.text.trimmed()).hasMatch())
            out.append(t);
    }
    return out;
}

QStringList dates(const QList<TextRecorder::Text>& texts)
{
    static const QRegularExpression date(QStringLiteral("\\d{4}/\\d\\d/\\d\\d"));
    QStringList out;
    for (const TextRecorder::Text& t : texts) {
        const QRegularExpressionMatch m = date.match(t.text);
        if (m.hasMatch())
            out.append(m.captured(0));
    }
    return out;
}

// Two labels overlap when their rectangles share more than a pixel.
QString overlapping(const QList<TextRecorder::Text>& labels)
{
    for (int i = 0; i < labels.size(); ++i) {
        for (int j = i + 1; j < labels.size(); ++j) {
            // A font's box is taller than its letters: lines of text that
            // touch share a few pixels of it.
            const QRectF both = labels[i].rect.adjusted(1, 3, -1, -3)
                                    .intersected(labels[j].rect.adjusted(1, 3, -1, -3));
            if (!both.isEmpty())
                return QStringLiteral("%1 at %2,%3 / %4 at %5,%6")
                    .arg(labels[i].text)
                    .arg(labels[i].rect.left())
                    .arg(labels[i].rect.top())
                    .arg(labels[j].text)
                    .arg(labels[j].rect.left())
                    .arg(labels[j].rect.top());
        }
    }
    return QString();
}

std::unique_ptr<DemoWindow> openWindow(const QStringList& files, const QSize& size)
{
    auto window = std::make_unique<DemoWindow>();
    window->resize(size);
    window->show();
    QString error;
    for (const QString& f : files) {
        if (!window->loadRinex(dataFile(f), &error))
            return nullptr;
    }
    QCoreApplication::processEvents();
    return window;
}

bool near(double a, double b)
{
    return std::abs(a - b) <= 1.0;
}

} // namespace

class tst_DemoViews : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void timeLink_data();
    void timeLink();
    void hover_data();
    void hover();
    void slipMarkNamed();
    void axisPerFile_data();
    void axisPerFile();
    void summaryTable();
    void exports_data();
    void exports();
    void uncheckedRowGreyedAndShowScrolls();
    void smallLayout_data();
    void smallLayout();
    void pictureTimeAxis_data();
    void pictureTimeAxis();
    void translations_data();
    void translations();

private:
    std::unique_ptr<DemoWindow> m_nya; // NYA1 with its navigation, shown
};

void tst_DemoViews::initTestCase()
{
    if (!QFileInfo::exists(dataFile(kNya)))
        QSKIP("shared data file not found");
    m_nya = openWindow({kNya}, QSize(1280, 800));
    QVERIFY(m_nya);
    QCOMPARE(m_nya->navigationLoad().files.size(), 3);
}

void tst_DemoViews::cleanupTestCase()
{
    m_nya.reset();
}

void tst_DemoViews::timeLink_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("plot moves table and sky") << QStringLiteral("plot");
    QTest::newRow("table moves plot and sky") << QStringLiteral("table");
    QTest::newRow("sky moves plot and table") << QStringLiteral("sky");
    QTest::newRow("signal strength plot moves all") << QStringLiteral("strength");
}

void tst_DemoViews::timeLink()
{
    QFETCH(QString, source);
    DemoWindow& w = *m_nya;
    MultipathView* plot = w.view();
    MultipathView* strength = w.view(PlotQuantity::SignalStrength);
    w.showQuantity(PlotQuantity::SignalStrength);
    w.showQuantity(PlotQuantity::Multipath);
    w.table()->resetTimeWindow();
    const double start = double(w.host()->document()->startTime());
    const double t0 = start + 3 * kHour;
    const double t1 = start + 4 * kHour;

    QSignalSpy plotSpy(plot, &CurveGraphicsView::sgTimeWindowChanged);
    QSignalSpy tableSpy(w.table(), &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    QSignalSpy skySpy(w.sky(), &SkyGraphicsView::sgTimeWindowChanged);
    QSignalSpy strengthSpy(strength, &CurveGraphicsView::sgTimeWindowChanged);
    if (source == QLatin1String("plot"))
        plot->setTimeWindow(t0, t1);
    else if (source == QLatin1String("table"))
        w.table()->setTimeWindow(t0, t1);
    else if (source == QLatin1String("sky"))
        w.sky()->setTimeWindow(t0, t1);
    else
        strength->setTimeWindow(t0, t1);

    double a = 0.0;
    double b = 0.0;
    plot->getTimeWindow(a, b);
    QVERIFY2(near(a, t0) && near(b, t1), qPrintable(QStringLiteral("plot %1 %2").arg(a).arg(b)));
    w.table()->getTimeWindow(a, b);
    QVERIFY2(near(a, t0) && near(b, t1), qPrintable(QStringLiteral("table %1 %2").arg(a).arg(b)));
    w.sky()->getTimeWindow(a, b);
    QVERIFY2(near(a, t0) && near(b, t1), qPrintable(QStringLiteral("sky %1 %2").arg(a).arg(b)));
    strength->getTimeWindow(a, b);
    QVERIFY(near(a, t0) && near(b, t1));
    // One step is one signal from each widget: no echo comes back.
    QCOMPARE(plotSpy.count(), 1);
    QCOMPARE(tableSpy.count(), 1);
    QCOMPARE(skySpy.count(), 1);
    QCOMPARE(strengthSpy.count(), 1);
    w.table()->resetTimeWindow();
}

void tst_DemoViews::hover_data()
{
    QTest::addColumn<int>("quantity");
    QTest::addColumn<QString>("satellite");
    QTest::addColumn<QString>("signal");
    QTest::newRow("multipath of G05") << int(PlotQuantity::Multipath) << QStringLiteral("G05")
                                      << QStringLiteral("MP1 = C1C/L1C with L2W");
    QTest::newRow("signal strength of E11")
        << int(PlotQuantity::SignalStrength) << QStringLiteral("E11") << QStringLiteral("S1X");
}

// The plot's hover read-out names the satellite in the status line, moves
// the sky plot's cursor to its time, rings it there and shows its table row;
// the end of the hover takes all of that back.
void tst_DemoViews::hover()
{
    QFETCH(int, quantity);
    QFETCH(QString, satellite);
    QFETCH(QString, signal);
    DemoWindow& w = *m_nya;
    const auto q = PlotQuantity(quantity);
    w.showQuantity(q);
    const SkyTrack* track = w.host()->document()->skyTracks().track(satellite);
    QVERIFY(track);
    // An epoch where the satellite is high in the sky.
    size_t i = 0;
    while (i < track->elevation.size() && !(track->elevation[i] > 30.0))
        ++i;
    QVERIFY(i < track->elevation.size());
    const double t = track->time[i];
    // The curve's row is scrolled away first.
    w.table()->scrollToTop();
    const int row = w.host()->tableRow(satellite);
    QVERIFY(row > 0);

    emit w.view(q)->sgHover(satellite, 0, t, 42.0);
    QVERIFY(w.sky()->hasTimeCursor());
    QCOMPARE(w.sky()->getTimeCursor(), t);
    QCOMPARE(w.skyPane()->markedSatellite(), satellite);
    const QString status = w.statusLine()->text();
    QVERIFY2(status.startsWith(satellite + QLatin1Char(' ')), qPrintable(status));
    QVERIFY2(status.contains(signal), qPrintable(status));
    QVERIFY2(status.contains(gpstText(qint64(t))), qPrintable(status));
    const QRect rowRect = w.table()->visualItemRect(w.table()->item(row, 1));
    QVERIFY2(w.table()->viewport()->rect().contains(rowRect),
             qPrintable(QStringLiteral("row %1 at %2").arg(row).arg(rowRect.top())));

    emit w.view(q)->sgHoverNone();
    QVERIFY(!w.sky()->hasTimeCursor());
    QVERIFY(w.skyPane()->markedSatellite().isEmpty());
    w.showQuantity(PlotQuantity::Multipath);
}

// A phase jump of NYA1 is a tick on its multipath curve and on its table
// bar; a real hover over the sample it marks rings the sample and names
// the slip in the status line. With GNSSPLOT_DEMO_PICTURES set to a folder
// the window is saved there as demo-nya1-slip.png.
void tst_DemoViews::slipMarkNamed()
{
    DemoWindow& w = *m_nya;
    w.showQuantity(PlotQuantity::Multipath);
    DemoHost* host = w.host();
    // A satellite high in the sky with a phase jump well inside an arc.
    QString name;
    qint64 sample = -1;
    for (const SatelliteQuality& q : host->qualities()) {
        const SatelliteFindings* f = host->findings(q.name);
        if (!f || q.system != 'G')
            continue;
        for (const CurveEvent& e : f->multipath.events) {
            if (e.kind == EventKind::PhaseJump && e.sample > 20) {
                name = q.name;
                sample = e.sample;
                break;
            }
        }
        if (!name.isEmpty())
            break;
    }
    QVERIFY2(!name.isEmpty(), "no GPS phase jump in NYA1");
    CurveScene* curves = w.view()->getCurveScene();
    QVERIFY(curves->getCurveEventMarks(name).contains(EventMark{sample, EEventMarkKind_CycleSlip}));
    QVERIFY(w.table()->getEventMarks().contains(name));
    // Every plot rings the sample it names; the plots not in metres say
    // their unit.
    for (int q = 0; q < PlotQuantityCount; ++q)
        QVERIFY(w.view(PlotQuantity(q))->isPickedSampleMarkerShown());
    QCOMPARE(w.view(PlotQuantity::Multipath)->getValueUnit(), QString());
    QCOMPARE(w.view(PlotQuantity::SignalStrength)->getValueUnit(), QStringLiteral("dB-Hz"));

    // The satellite alone, its slip in the middle of a 20-minute window.
    QVERIFY(host->setSingleCurve(name));
    const auto* set = qobject_cast<const Curve_DataSet_XY*>(curves->getCurve(name));
    QVERIFY(set);
    const double* time = set->getAxisData(0)->getData(sample, nullptr);
    const double* value = set->getAxisData(1)->getData(sample, nullptr);
    QVERIFY(time && value && std::isfinite(*value));
    w.view()->setTimeWindow(*time - 600000.0, *time + 600000.0);
    QCoreApplication::processEvents();
    double xMin, xMax, yMin, yMax;
    qobject_cast<const Curve_Coord_XY*>(curves->getCoord_Local())
        ->getArea(xMin, xMax, yMin, yMax);
    QVERIFY2(*value > yMin && *value < yMax, "the slip's sample is off the Y range");
    const QRectF area = w.view()->dataAreaInViewport();
    const QPoint at(int(area.left() + (*time - xMin) / (xMax - xMin) * area.width()),
                    int(area.top() + (yMax - *value) / (yMax - yMin) * area.height()));
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QTest::mouseMove(w.view()->viewport(), at);
    // On a real display the move arrives through the window system.
    QTRY_VERIFY2(w.statusLine()->text().startsWith(name + QLatin1Char(' ')),
                 qPrintable(w.statusLine()->text()));
    const QString status = w.statusLine()->text();
    QVERIFY2(status.contains(QStringLiteral("cycle slip")), qPrintable(status));
    QVERIFY2(status.contains(gpstText(qint64(*time))), qPrintable(status));

    const QString pictures = qEnvironmentVariable("GNSSPLOT_DEMO_PICTURES");
    if (!pictures.isEmpty())
        w.grab().save(pictures + QStringLiteral("/demo-nya1-slip.png"));
    QTest::mouseMove(w.view()->viewport(), QPoint(1, 1));
    host->setSingleCurve(QString());
    w.view()->resetTimeWindow();
}

void tst_DemoViews::axisPerFile_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("date");      // of the last file
    QTest::addColumn<QString>("firstHour"); // the hour the last file starts in, "HH"
    QTest::addColumn<QString>("lastHour");  // and ends in
    QTest::newRow("AJAC, then GEOP without curves")
        << QStringList{kAjac, kGeop} << QStringLiteral("2024/04/01") << QStringLiteral("08")
        << QStringLiteral("08");
    // A daily file ends at midnight: the plot's last sample and the table's
    // last epoch both belong to its own day.
    QTest::newRow("AJAC's day") << QStringList{kAjac} << QStringLiteral("2024/07/27")
                                << QStringLiteral("00") << QStringLiteral("23");
    QTest::newRow("GEOP first") << QStringList{kGeop} << QStringLiteral("2024/04/01")
                                << QStringLiteral("08") << QStringLiteral("08");
    QTest::newRow("GEOP, then GRAS") << QStringList{kGeop, kGras}
                                     << QStringLiteral("2022/11/11") << QStringLiteral("17")
                                     << QStringLiteral("17");
}

// Each file gets the plot's and the table's time axis of its own span and
// date, whether it has curves or not, and nothing of the file before.
void tst_DemoViews::axisPerFile()
{
    QFETCH(QStringList, files);
    QFETCH(QString, date);
    QFETCH(QString, firstHour);
    QFETCH(QString, lastHour);
    for (const QString& f : files) {
        if (!QFileInfo::exists(dataFile(f)))
            QSKIP("shared data file not found");
    }
    std::unique_ptr<DemoWindow> w = openWindow(files, QSize(1280, 800));
    QVERIFY(w);
    for (QWidget* widget : {static_cast<QWidget*>(w->view()), static_cast<QWidget*>(w->table())}) {
        const QList<TextRecorder::Text> texts = textsOf(widget);
        const QList<TextRecorder::Text> labels = timeLabels(texts);
        QStringList words;
        for (const TextRecorder::Text& t : texts)
            words << t.text;
        QVERIFY2(labels.size() >= 3, qPrintable(words.join(QLatin1Char('|'))));
        for (const TextRecorder::Text& t : labels) {
            const QString hour = t.text.trimmed().left(2);
            QVERIFY2(hour >= firstHour && hour <= lastHour,
                     qPrintable(widget->metaObject()->className() + QStringLiteral(": ")
                                + words.join(QLatin1Char('|'))));
        }
        const QStringList seen = dates(texts);
        QVERIFY2(!seen.isEmpty(), qPrintable(words.join(QLatin1Char('|'))));
        for (const QString& d : seen)
            QCOMPARE(d, date);
    }
}

// The numbers in the window are those that --snapshot writes into
// summary.txt, row for row.
void tst_DemoViews::summaryTable()
{
    DemoWindow& w = *m_nya;
    const QStringList text = qualityTableText(*w.host()).split(QLatin1Char('\n'));
    QList<QStringList> expected;
    bool inTable = false;
    for (const QString& line : text) {
        if (line.startsWith(QLatin1String("  satellite"))) {
            inTable = true;
            continue;
        }
        if (!inTable || !line.startsWith(QLatin1String("  ")))
            continue;
        expected.append(line.simplified().split(QLatin1Char(' ')).mid(0, 10));
    }
    QTableWidget* table = w.qualityPane()->table();
    QCOMPARE(table->rowCount(), expected.size());
    QVERIFY(expected.size() > 90);
    int withMask = 0;
    for (int r = 0; r < table->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < QualityPane::ColumnCount; ++c)
            cells << table->item(r, c)->text();
        QCOMPARE(cells, expected[r]);
        withMask += cells[QualityPane::Column_AboveMask] != QLatin1String("-") ? 1 : 0;
    }
    // With navigation, completeness is counted above the mask.
    QVERIFY(withMask > 80);
    QVERIFY(w.qualityPane()->countsText().contains(QLatin1String("/")));
}

void tst_DemoViews::exports_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("quantity");
    QTest::addColumn<QString>("header");
    QTest::newRow("multipath curves")
        << int(DemoWindow::ExportKind::Curves) << int(PlotQuantity::Multipath)
        << QStringLiteral("satellite,time_gpst,signal,value");
    QTest::newRow("signal strength curves")
        << int(DemoWindow::ExportKind::Curves) << int(PlotQuantity::SignalStrength)
        << QStringLiteral("satellite,time_gpst,signal,value");
    QTest::newRow("sky tracks") << int(DemoWindow::ExportKind::SkyTracks)
                                << int(PlotQuantity::Multipath)
                                << QStringLiteral("satellite,time_gpst,azimuth_deg,elevation_deg");
    QTest::newRow("marks") << int(DemoWindow::ExportKind::Marks) << int(PlotQuantity::Multipath)
                           << QStringLiteral("satellite,time_gpst,signal,kind");
}

// What is plotted in the window shown, against a count made here from the
// host's data sets, tracks and events.
void tst_DemoViews::exports()
{
    QFETCH(int, kind);
    QFETCH(int, quantity);
    QFETCH(QString, header);
    DemoWindow& w = *m_nya;
    DemoHost& host = *w.host();
    const auto q = PlotQuantity(quantity);
    w.showQuantity(q);
    const double start = double(host.document()->startTime());
    w.table()->setTimeWindow(start + 10 * kHour, start + 11 * kHour);
    double t0 = 0.0;
    double t1 = 0.0;
    w.view(q)->getTimeWindow(t0, t1);

    qint64 expected = 0;
    if (kind == int(DemoWindow::ExportKind::Curves)) {
        for (const QString& name : host.curveNamesOf(q)) {
            const Curve_DataSet_XY* set = host.curveOf(q, name);
            qint64 n = 0;
            const double* x = set->getAxisData(0)->getData(0, &n);
            for (int key : {1, 2}) {
                const double* y = set->getAxisData(key)->getData(0, nullptr);
                for (qint64 i = 0; i < n; ++i)
                    expected += x[i] >= t0 && x[i] <= t1 && std::isfinite(y[i]) ? 1 : 0;
            }
        }
    } else if (kind == int(DemoWindow::ExportKind::SkyTracks)) {
        for (const QString& name : host.satelliteNames()) {
            const SkyTrack* track = host.document()->skyTracks().track(name);
            for (size_t i = 0; track && i < track->time.size(); ++i)
                expected += track->time[i] >= t0 && track->time[i] <= t1
                                    && std::isfinite(track->azimuth[i])
                                    && std::isfinite(track->elevation[i])
                                ? 1
                                : 0;
        }
    } else {
        for (const QString& name : host.satelliteNames()) {
            for (const auto& band : host.findings(name)->events) {
                for (const EpochEvent& e : band)
                    expected += double(e.timeMs) >= t0 && double(e.timeMs) <= t1 ? 1 : 0;
            }
        }
    }
    QVERIFY(expected > 0);

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("export.csv"));
    QString error;
    QVERIFY2(w.exportCsv(DemoWindow::ExportKind(kind), path, &error), qPrintable(error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(QString::fromUtf8(file.readLine()).trimmed(), header);
    const QString from = QString::fromLatin1(csvTime(qint64(t0)));
    const QString to = QString::fromLatin1(csvTime(qint64(t1)));
    qint64 rows = 0;
    while (!file.atEnd()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).trimmed().split(
            QLatin1Char(','));
        QCOMPARE(fields.size(), 4);
        QVERIFY2(fields[1] >= from && fields[1] <= to, qPrintable(fields.join(QLatin1Char(','))));
        ++rows;
    }
    QCOMPARE(rows, expected);
    w.table()->resetTimeWindow();
    w.showQuantity(PlotQuantity::Multipath);
}

// Unchecking a satellite greys its bars at once; Show brings a satellite's
// row into view.
void tst_DemoViews::uncheckedRowGreyedAndShowScrolls()
{
    DemoWindow& w = *m_nya;
    CurveGraphicsTableWidget_Epoch* table = w.table();
    const QString name = QStringLiteral("G12");
    const int row = w.host()->tableRow(name);
    QVERIFY(row > 0);
    auto bandPixels = [&](bool bEnabled) {
        QWidget* bars = table->cellWidget(w.host()->tableRow(name), 1);
        QImage image(bars->size(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        bars->render(&image);
        const QRgb colour = CurveGraphicsTableWidget_Epoch::bandColor(0, bEnabled).rgb();
        int n = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                n += (image.pixel(x, y) & 0xffffff) == (colour & 0xffffff) ? 1 : 0;
        }
        return n;
    };
    QVERIFY(bandPixels(true) > 50);
    auto* box = qobject_cast<QCheckBox*>(table->cellWidget(row, 0));
    QVERIFY(box);
    box->click();
    QCoreApplication::processEvents();
    QCOMPARE(w.host()->readSelection().value(name), false);
    QCOMPARE(bandPixels(true), 0);
    QVERIFY(bandPixels(false) > 50);
    qobject_cast<QCheckBox*>(table->cellWidget(w.host()->tableRow(name), 0))->click();
    QCoreApplication::processEvents();
    QVERIFY(bandPixels(true) > 50);

    // Show, from the plot's choice, scrolls the table to the row.
    table->scrollToTop();
    QComboBox* show = nullptr;
    for (QComboBox* box : w.findChildren<QComboBox*>()) {
        if (box->findText(name) > 0 && box->itemText(0) == QLatin1String("All satellites"))
            show = box;
    }
    QVERIFY(show);
    const int last = show->count() - 1;
    const QString far = show->itemText(last);
    emit show->activated(last);
    const QRect rect = table->visualItemRect(table->item(w.host()->tableRow(far), 1));
    QVERIFY2(table->viewport()->rect().contains(rect), qPrintable(far));
    emit show->activated(0);
}

void tst_DemoViews::smallLayout_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("800x500") << QSize(800, 500);
    QTest::newRow("1280x800") << QSize(1280, 800);
}

// The window takes the size asked for; no two controls above the plot
// overlap; the plot's and the table's time labels are there and apart.
void tst_DemoViews::smallLayout()
{
    QFETCH(QSize, size);
    if (!QFileInfo::exists(dataFile(kAjac)))
        QSKIP("shared data file not found");
    std::unique_ptr<DemoWindow> w = openWindow({kAjac}, size);
    QVERIFY(w);
    QVERIFY(QTest::qWaitForWindowExposed(w.get()));
    QCOMPARE(w->size(), size);
    QVERIFY(w->minimumSizeHint().width() <= size.width());
    QVERIFY(w->minimumSizeHint().height() <= size.height());

    // The bar above the plot: the quantity, Fit Y, Show and its choice.
    QWidget* pane = w->controls();
    QList<QWidget*> controls;
    for (QWidget* child : pane->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (child->isVisible() && (qobject_cast<QLabel*>(child)
                                   || qobject_cast<QAbstractButton*>(child)
                                   || qobject_cast<QComboBox*>(child)))
            controls.append(child);
    }
    QVERIFY(controls.size() >= 4);
    for (int i = 0; i < controls.size(); ++i) {
        QVERIFY2(pane->rect().contains(controls[i]->geometry()),
                 qPrintable(controls[i]->metaObject()->className()));
        for (int j = i + 1; j < controls.size(); ++j)
            QVERIFY2(!controls[i]->geometry().intersects(controls[j]->geometry()),
                     qPrintable(QStringLiteral("%1 and %2")
                                    .arg(controls[i]->metaObject()->className(),
                                         controls[j]->metaObject()->className())));
    }
    // The two status lines share the bar.
    QVERIFY(!w->statusLine()->geometry().intersects(w->hintLine()->geometry()));

    for (QWidget* widget : {static_cast<QWidget*>(w->view()), static_cast<QWidget*>(w->table())}) {
        const QList<TextRecorder::Text> texts = textsOf(widget);
        const QList<TextRecorder::Text> labels = timeLabels(texts);
        QVERIFY2(labels.size() >= 3, widget->metaObject()->className());
        // No text of the plot meets another; the table's cells are widgets
        // of their own, so there its time labels are held apart.
        QList<TextRecorder::Text> all;
        for (const TextRecorder::Text& t : widget == w->table() ? labels : texts) {
            if (!t.text.trimmed().isEmpty())
                all.append(t);
        }
        QVERIFY2(overlapping(all).isEmpty(),
                 qPrintable(overlapping(all) + QStringLiteral(" in %1 pixels").arg(widget->height())));
        for (const TextRecorder::Text& t : labels)
            QVERIFY2(t.rect.right() <= widget->width() + 1, qPrintable(t.text));
    }
}

void tst_DemoViews::pictureTimeAxis_data()
{
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<int>("width");
    QTest::addColumn<qint64>("step"); // between labels, ms
    QTest::newRow("day in 480 pixels") << qint64(1722038400000) << qint64(86400000) << 480
                                       << qint64(21600000);
    QTest::newRow("day in 1200 pixels") << qint64(1722038400000) << qint64(86400000) << 1200
                                        << qint64(7200000);
    // Two hours would do for times alone, but the date at midnight, pushed
    // inside at the left end, would meet 02:00.
    QTest::newRow("day in 1000 pixels") << qint64(1722038400000) << qint64(86400000) << 1000
                                        << qint64(10800000);
    QTest::newRow("15 minutes in 400 pixels") << qint64(1668186000000) << qint64(900000) << 400
                                              << qint64(300000);
}

// The bars picture's axis: round steps, labels apart and inside the axis.
void tst_DemoViews::pictureTimeAxis()
{
    QFETCH(qint64, start);
    QFETCH(qint64, length);
    QFETCH(int, width);
    QFETCH(qint64, step);
    TextRecorder recorder(QSize(width + 40, 40));
    QPainter painter(&recorder);
    // One font for every Qt and platform, so that the steps are known.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(11);
    painter.setFont(font);
    drawTimeAxis(&painter, QRect(20, 5, width, 30), start, start + length);
    painter.end();
    const QList<TextRecorder::Text>& labels = recorder.texts();
    QCOMPARE(qint64(labels.size()), length / step + 1);
    QCOMPARE(overlapping(labels), QString());
    for (int k = 0; k < labels.size(); ++k) {
        QVERIFY2(labels[k].rect.left() >= 19 && labels[k].rect.right() <= width + 21,
                 qPrintable(labels[k].text));
        const qint64 t = start + k * step;
        const QString expected = t % 86400000 == 0 ? gpstText(t).left(10) : gpstText(t).mid(11, 5);
        QCOMPARE(labels[k].text, expected);
    }
}

void tst_DemoViews::translations_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("pluralForms");
    QTest::newRow("German") << QStringLiteral("de") << 2;
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << 1;
}

// Every message of the catalogue is translated, with its plural forms; and
// every text the window shows differs from the English one, save names and
// codes that read the same in every language.
void tst_DemoViews::translations()
{
    QFETCH(QString, language);
    QFETCH(int, pluralForms);
    QFile ts(QStringLiteral(GNSSDEMO_TS_DIR "/gnssplot_demo_") + language
             + QStringLiteral(".ts"));
    QVERIFY(ts.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&ts);
    int messages = 0;
    bool numerus = false;
    int forms = 0;
    QString source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("message")) {
            numerus = xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
            forms = 0;
            ++messages;
        } else if (xml.isStartElement() && xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.isStartElement() && xml.name() == QLatin1String("translation")) {
            QVERIFY2(xml.attributes().value(QLatin1String("type")).isEmpty(), qPrintable(source));
            if (!numerus)
                QVERIFY2(!xml.readElementText().isEmpty(), qPrintable(source));
        } else if (xml.isStartElement() && xml.name() == QLatin1String("numerusform")) {
            QVERIFY2(!xml.readElementText().isEmpty(), qPrintable(source));
            ++forms;
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message") && numerus) {
            QVERIFY2(forms == pluralForms, qPrintable(source));
        }
    }
    QVERIFY(!xml.hasError());
    QVERIFY(messages > 150);

    if (!QFileInfo::exists(dataFile(kGras)))
        QSKIP("shared data file not found");
    auto collect = [](DemoWindow& w) {
        QStringList texts;
        for (QAction* a : w.findChildren<QAction*>())
            texts << a->text() << a->toolTip();
        for (QLabel* l : w.findChildren<QLabel*>())
            texts << l->text() << l->toolTip();
        for (QAbstractButton* b : w.findChildren<QAbstractButton*>())
            texts << b->text() << b->toolTip();
        for (QComboBox* c : w.findChildren<QComboBox*>()) {
            texts << c->toolTip();
            for (int k = 0; k < c->count(); ++k)
                texts << c->itemText(k);
        }
        for (QDockWidget* d : w.findChildren<QDockWidget*>())
            texts << d->windowTitle();
        QTableWidget* quality = w.qualityPane()->table();
        for (int c = 0; c < quality->columnCount(); ++c)
            texts << quality->horizontalHeaderItem(c)->text()
                  << quality->horizontalHeaderItem(c)->toolTip();
        texts << w.statusLine()->text() << w.hintLine()->text() << w.skyPane()->note()
              << w.windowTitle();
        return texts;
    };
    std::unique_ptr<DemoWindow> english = openWindow({kGras}, QSize(1280, 800));
    QVERIFY(english);
    const QStringList before = collect(*english);
    english.reset();

    // As the demo installs them: the library's catalogue travels inside it.
    QTranslator library;
    QVERIFY(library.load(QStringLiteral("gnssplot_") + language,
                         QStringLiteral(":/gnssplot/translations")));
    QCoreApplication::installTranslator(&library);
    QTranslator demo;
    QVERIFY(demo.load(QStringLiteral("gnssplot_demo_") + language,
                      QStringLiteral(GNSSDEMO_QM_DIR)));
    QCoreApplication::installTranslator(&demo);
    std::unique_ptr<DemoWindow> translated = openWindow({kGras}, QSize(1280, 800));
    QVERIFY(translated);
    const QStringList after = collect(*translated);
    translated.reset();
    QCoreApplication::removeTranslator(&demo);
    QCoreApplication::removeTranslator(&library);

    QVERIFY(after.size() >= before.size() - 4);
    // Texts made only of names, codes, numbers and signs read the same.
    static const QRegularExpression universal(QStringLiteral(
        "^([A-Z]\\d\\d|GPS|GLONASS|Galileo|BeiDou|QZSS|SBAS|NavIC|MP\\d|F|dB-Hz|CSV|PNG|LLI|"
        "RMS|m|ms|GPST|Main|Colour:|\\|MP\\d\\||[A-Za-z_]+::[A-Za-z]+\\(\\)|[a-zA-Z]+\\(\\)|"
        "[\\d.,:/()%&;#=<>\"\\-+*|\\s]|span|style|color|white-space|nowrap|nbsp|"
        "L\\d|G\\d|B\\d|E\\d|J\\d|E5b|B2a|S\\d[A-Z]|GRAS\\S*)*$"));
    // No English text of the window is left among the translated ones.
    for (const QString& text : before) {
        if (text.isEmpty() || universal.match(text).hasMatch())
            continue;
        QVERIFY2(!after.contains(text), qPrintable(QStringLiteral("untranslated: ") + text));
    }
}

QTEST_MAIN(tst_DemoViews)
#include "tst_demoviews.moc"
