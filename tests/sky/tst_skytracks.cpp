// SPDX-License-Identifier: MIT
// The tracks' layer against a plain drawer of the same line rule, bit for
// bit; hostile input; and the tracks on other devices.

#include "sky/skytestsupport.h"

#include "SkyColorScale_p.h"
#include "SkyGraphicsItem_Map_p.h"
#include "SkyGraphicsItem_Marks_p.h"
#include "SkyGraphicsItem_Tracks_p.h"
#include "SkyScaleMap_p.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QPicture>
#include <QtTest>

#include <limits>

class tst_SkyTracks : public QObject
{
    Q_OBJECT
private slots:
    void matchesPlainDrawer_data();
    void matchesPlainDrawer();
    void hostileInput_data();
    void hostileInput();
    void otherDevices();
};

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// --- The plain drawer -------------------------------------------------------

quint32 blendOnce(quint32 src, quint32 dst)
{
    const quint32 keep = 255 - qAlpha(src);
    const auto channel = [&](int shift) {
        const quint32 s = (src >> shift) & 0xff;
        const quint32 d = (dst >> shift) & 0xff;
        return (s + (d * keep + 127) / 255) << shift;
    };
    return channel(0) | channel(8) | channel(16) | channel(24);
}

quint32 premultiplied(QRgb c)
{
    const auto scaled = [&](int v) { return quint32((v * qAlpha(c) + 127) / 255); };
    return quint32(qAlpha(c)) << 24 | scaled(qRed(c)) << 16 | scaled(qGreen(c)) << 8
           | scaled(qBlue(c));
}

// What one track leaves on each pixel: how often the line rule set it and
// the sum of the levels it carried.
struct TrackPixels
{
    int width;
    int height;
    QVector<quint32> n;
    QVector<quint32> levels;
    TrackPixels(int w, int h)
        : width(w)
        , height(h)
        , n(w * h)
        , levels(w * h)
    {
    }
    void set(qint64 c, qint64 r, int level)
    {
        if (c < 0 || r < 0 || c >= width || r >= height)
            return;
        ++n[int(r * width + c)];
        levels[int(r * width + c)] += quint32(level);
    }
    // Every pixel of a segment but its first: along the longer axis one
    // pixel at a time, the other rounded half away from zero.
    void segment(qint64 c0, qint64 r0, qint64 c1, qint64 r1, int level)
    {
        const qint64 dc = c1 - c0;
        const qint64 dr = r1 - r0;
        const bool alongX = std::llabs(dc) >= std::llabs(dr);
        const qint64 steps = alongX ? std::llabs(dc) : std::llabs(dr);
        for (qint64 k = 1; k <= steps; ++k) {
            const long double t = (long double)(alongX ? dr : dc) * k / steps;
            const qint64 minor = std::llround(t);
            if (alongX)
                set(c0 + (dc > 0 ? k : -k), r0 + minor, level);
            else
                set(c0 + minor, r0 + (dr > 0 ? k : -k), level);
        }
    }
};

struct Drawn
{
    QString name;
    st::Track track;
    QColor colour;
    bool bVisible;
};

// The tracks in name order, each counted on its own and composed over the
// ones before: a pixel set n times takes its colour blended n times over
// transparent (by value: the colour of its levels' mean, rounded half up).
QImage plainDrawing(const QVector<Drawn>& tracks, const SkyLayout& layout, const QTransform& t,
                    const QSize& size, const SkyColorScale* byValue, const TimeWindow* window)
{
    QImage out(size, QImage::Format_ARGB32_Premultiplied);
    out.fill(0);
    const SkyProjection projection = layout.projection();
    for (const Drawn& d : tracks) {
        if (!d.bVisible)
            continue;
        const st::Track& k = d.track;
        TrackPixels pixels(size.width(), size.height());
        bool bInRun = false;
        qint64 c0 = 0;
        qint64 r0 = 0;
        for (int j = 0; j < k.times.size(); ++j) {
            const double az = k.azimuths[j];
            const double el = k.elevations[j];
            const double v = j < k.values.size() ? k.values[j] : kNaN;
            const bool bDrawn = az >= 0.0 && az <= 360.0 && el >= 0.0 && el <= 90.0
                                && std::isfinite(k.times[j])
                                && (!byValue || std::isfinite(v))
                                && (!window || window->contains(k.times[j]));
            if (!bDrawn) {
                bInRun = false;
                continue;
            }
            if (k.breaks.count(j - 1))
                bInRun = false;
            double x = 0.0;
            double y = 0.0;
            projection.toScene(az, el, x, y);
            const qint64 c = qint64(std::floor(t.m11() * x + t.dx()));
            const qint64 r = qint64(std::floor(t.m22() * y + t.dy()));
            const int level = byValue ? byValue->levelOf(v) : 0;
            if (bInRun)
                pixels.segment(c0, r0, c, r, level);
            else
                pixels.set(c, r, level);
            bInRun = true;
            c0 = c;
            r0 = r;
        }
        for (int i = 0; i < pixels.n.size(); ++i) {
            const quint32 n = pixels.n[i];
            if (n == 0)
                continue;
            const QRgb colour = byValue ? byValue->colourOf(int((pixels.levels[i] + n / 2) / n))
                                        : d.colour.rgba();
            quint32 layer = 0;
            for (quint32 m = 0; m < n; ++m)
                layer = blendOnce(premultiplied(colour), layer);
            auto* p = reinterpret_cast<quint32*>(out.bits()) + i;
            *p = blendOnce(layer, *p);
        }
    }
    return out;
}

// --- Scenes -----------------------------------------------------------------

enum Scene { Passes, AcrossNorth, GapsAndBreaks, Jitter, OutOfRange, Translucent, Zenith };

QVector<Drawn> sceneTracks(Scene scene)
{
    QVector<Drawn> out;
    const auto add = [&](const st::Track& t, const QColor& c, bool bVisible = true) {
        out.append(Drawn{QStringLiteral("T%1").arg(out.size(), 2, 10, QLatin1Char('0')), t, c,
                         bVisible});
    };
    switch (scene) {
    case Passes:
        add(st::arc(6000, 200, 340, 0, 70, 1), QColor(30, 90, 200));
        add(st::arc(5000, 20, 160, 5, 50, 2), QColor(200, 40, 40));
        add(st::arc(8000, 300, 100, 0, 85, 3), QColor(30, 150, 60));
        add(st::arc(3000, 90, 270, 10, 30, 4), QColor(120, 0, 160), false);
        break;
    case AcrossNorth:
        add(st::arc(4000, 330, 390, 20, 40, 5), QColor(30, 90, 200));
        add(st::arc(4000, 30, -30, 50, 60, 6), QColor(200, 40, 40));
        break;
    case GapsAndBreaks: {
        st::Track t = st::arc(6000, 100, 250, 0, 60, 7);
        for (int i = 500; i < 900; ++i)
            t.elevations[i] = kNaN;
        for (int i = 1500; i < 1510; ++i)
            t.azimuths[i] = kNaN;
        t.times[2000] = kNaN;
        // A jump at a break is not joined.
        for (int i = 3000; i < 3500; ++i)
            t.azimuths[i] += 30.0;
        t.breaks = {2999, 3000, 3499, 4500, 5998};
        add(t, QColor(30, 90, 200, 150));
        // Breaks within one pixel count its pixel once more.
        st::Track u = st::arc(3000, 10, 80, 20, 20, 8);
        u.breaks = {0, 1, 2, 1000, 1001, 1002};
        add(u, QColor(200, 40, 40, 100));
        break;
    }
    case Jitter:
        // Directions jump several pixels from sample to sample.
        add(st::arc(3000, 0, 720, 0, 80, 9, 6.0), QColor(30, 90, 200));
        add(st::arc(3000, 180, 200, 40, 45, 10, 25.0), QColor(200, 40, 40, 128));
        break;
    case OutOfRange: {
        st::Track t = st::arc(4000, 60, 200, -10, 40, 11);
        for (int i = 0; i < 4000; i += 97)
            t.azimuths[i] = (i % 2) ? 361.0 + i : -0.5 - i;
        for (int i = 13; i < 4000; i += 101)
            t.elevations[i] = (i % 2) ? 90.5 : -kInf;
        t.times[17] = kInf;
        add(t, QColor(30, 90, 200));
        break;
    }
    case Translucent:
        for (int k = 0; k < 5; ++k) {
            add(st::arc(5000, 40.0 * k, 40.0 * k + 200, 0, 60 + 5 * k, quint32(20 + k)),
                QColor::fromHsv(70 * k, 220, 200, 40 + 50 * k));
        }
        break;
    case Zenith:
        // Through the zenith, and a track that stays at one direction.
        add(st::arc(3000, 0, 0, 0, 90, 30), QColor(30, 90, 200));
        add(st::arc(3000, 180, 180, 0, 90, 31), QColor(200, 40, 40));
        add(st::arc(200, 123, 123, 45, 45, 32), QColor(0, 0, 0));
        break;
    }
    return out;
}

} // namespace

void tst_SkyTracks::matchesPlainDrawer_data()
{
    QTest::addColumn<int>("scene");
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<bool>("bByValue");
    QTest::addColumn<bool>("bWindow");
    QTest::addColumn<bool>("bShuffled");  // times out of order
    const QTransform one;
    const QTransform hiDpi = QTransform::fromScale(2, 2);
    const QTransform printed(0.75, 0, 0, 0.6, 13.25, 7.5);
    QTest::newRow("passes") << int(Passes) << one << false << false << false;
    QTest::newRow("passes, ratio 2") << int(Passes) << hiDpi << false << false << false;
    QTest::newRow("passes, scaled and moved") << int(Passes) << printed << false << false
                                              << false;
    QTest::newRow("across north") << int(AcrossNorth) << one << false << false << false;
    QTest::newRow("gaps and breaks") << int(GapsAndBreaks) << one << false << false << false;
    QTest::newRow("gaps and breaks, ratio 2") << int(GapsAndBreaks) << hiDpi << false << false
                                              << false;
    QTest::newRow("jitter") << int(Jitter) << one << false << false << false;
    QTest::newRow("out of range") << int(OutOfRange) << one << false << false << false;
    QTest::newRow("translucent, overlapping") << int(Translucent) << one << false << false
                                              << false;
    QTest::newRow("through the zenith") << int(Zenith) << hiDpi << false << false << false;
    QTest::newRow("by value") << int(Passes) << one << true << false << false;
    QTest::newRow("by value, jitter") << int(Jitter) << one << true << false << false;
    QTest::newRow("by value, ratio 2") << int(Translucent) << hiDpi << true << false << false;
    QTest::newRow("time window") << int(Passes) << one << false << true << false;
    QTest::newRow("time window, times out of order") << int(Passes) << one << false << true
                                                     << true;
    QTest::newRow("time window by value, out of order") << int(GapsAndBreaks) << hiDpi << true
                                                        << true << true;
}

void tst_SkyTracks::matchesPlainDrawer()
{
    QFETCH(int, scene);
    QFETCH(QTransform, transform);
    QFETCH(bool, bByValue);
    QFETCH(bool, bWindow);
    QFETCH(bool, bShuffled);
    QVector<Drawn> tracks = sceneTracks(Scene(scene));
    QRandomGenerator rng(99);
    for (Drawn& d : tracks) {
        // Values without a number here and there, which cut a track coloured
        // by value; times swapped in pairs.
        for (int i = 0; i < d.track.values.size(); i += 211)
            d.track.values[i] = kNaN;
        if (bShuffled) {
            for (int i = 0; i + 1 < d.track.times.size(); i += 7)
                std::swap(d.track.times[i], d.track.times[i + 1]);
        }
    }
    SkyGraphicsView view;
    st::prepare(view, QSize(360, 320));
    for (const Drawn& d : tracks)
        st::addTrack(view, d.name, d.track, d.colour, d.bVisible);
    view.setValueAxis(0);
    view.setTracksColoredByValue(bByValue);
    QVERIFY(view.setColorRange(32.0, 48.0));
    const TimeWindow window(st::kDay0 + 700e3, st::kDay0 + 3900e3);
    if (bWindow)
        view.setTimeWindow(window.getMin(), window.getMax());
    auto* item = st::itemOf<SkyGraphicsItem_Tracks>(view);
    QVERIFY(item);

    const QSize size = transform.mapRect(QRect(0, 0, 360, 320)).size();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    {
        QPainter painter(&image);
        painter.setTransform(transform);
        item->paint(&painter, nullptr, nullptr);
    }
    SkyColorScale scale;
    QVERIFY(scale.setRange(32.0, 48.0));
    const QImage expected = plainDrawing(tracks, item->layout(), transform, size,
                                         bByValue ? &scale : nullptr, bWindow ? &window : nullptr);
    if (image != expected) {
        image.save(QStringLiteral("/tmp/gnssplot_sky_layer.png"));
        expected.save(QStringLiteral("/tmp/gnssplot_sky_plain.png"));
    }
    QVERIFY(image == expected);
    // Something was drawn at all.
    QVERIFY(image != QImage(size, QImage::Format_ARGB32_Premultiplied).copy());
    int set = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            set += qAlpha(image.pixel(x, y)) != 0;
    QVERIFY(set > 100);

    // A second paint draws the same layer again without building it.
    const quint64 builds = item->layerBuildCount();
    QImage again(size, QImage::Format_ARGB32_Premultiplied);
    again.fill(0);
    {
        QPainter painter(&again);
        painter.setTransform(transform);
        item->paint(&painter, nullptr, nullptr);
    }
    QCOMPARE(item->layerBuildCount(), builds);
    QVERIFY(again == image);
}

void tst_SkyTracks::hostileInput_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<QVector<double>>("azimuths");
    QTest::addColumn<QVector<double>>("elevations");
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<int>("drawn");  // pixels the track sets
    const QVector<double> t3{st::kDay0, st::kDay0 + 1e3, st::kDay0 + 2e3};
    QTest::newRow("all NaN") << t3 << QVector<double>(3, kNaN) << QVector<double>(3, kNaN)
                             << QVector<double>(3, kNaN) << 0;
    QTest::newRow("infinities") << t3 << QVector<double>{kInf, -kInf, 10}
                                << QVector<double>{10, 10, kInf} << QVector<double>{kInf, 1, 1}
                                << 0;
    QTest::newRow("elevations beyond -90 .. 90")
        << t3 << QVector<double>{10, 20, 30} << QVector<double>{-1e300, 95, 1e300}
        << QVector<double>{1, 1, 1} << 0;
    QTest::newRow("azimuths beyond 0 .. 360")
        << t3 << QVector<double>{-720, 1e308, 360.0000001} << QVector<double>{10, 10, 10}
        << QVector<double>{1, 1, 1} << 0;
    QTest::newRow("one good sample among bad ones")
        << t3 << QVector<double>{kNaN, 90, -5} << QVector<double>{10, 0, 10}
        << QVector<double>{1, 1, 1} << 1;
    QTest::newRow("empty axes") << QVector<double>() << QVector<double>() << QVector<double>()
                                << QVector<double>() << 0;
    QTest::newRow("mismatched lengths: the shortest counts")
        << QVector<double>{st::kDay0} << QVector<double>{0, 90, 180}
        << QVector<double>{0, 0, 0} << QVector<double>{1} << 1;
    QTest::newRow("no time") << QVector<double>() << QVector<double>{0, 90}
                             << QVector<double>{0, 0} << QVector<double>{1, 1} << 0;
    QTest::newRow("huge times, one without a number between them")
        << QVector<double>{-1.7e308, kNaN, 1.7e308} << QVector<double>{0, 90, 180}
        << QVector<double>{45, 45, 45} << QVector<double>{1, 2, 3} << 2;
}

void tst_SkyTracks::hostileInput()
{
    QFETCH(QVector<double>, times);
    QFETCH(QVector<double>, azimuths);
    QFETCH(QVector<double>, elevations);
    QFETCH(QVector<double>, values);
    QFETCH(int, drawn);
    SkyGraphicsView view;
    st::prepare(view, QSize(300, 300));
    auto* set = new Curve_DataSet_XY(3);
    gt::fillAxis(set->getAxisData(0), times);
    gt::fillAxis(set->getAxisData(1), azimuths);
    gt::fillAxis(set->getAxisData(2), elevations);
    gt::fillAxis(set->getAxisData(3), values);
    QVERIFY(view.getTrackScene()->addCurve(QStringLiteral("X"), set, true, Qt::black,
                                           ECurveShowCap_Line, true));
    // A data set without an elevation axis is no track, and a null one is
    // refused by the registry.
    QVERIFY(view.getTrackScene()->addCurve(QStringLiteral("Y"), new Curve_DataSet_XY(1), true,
                                           Qt::red, ECurveShowCap_Line, true));
    QVERIFY(!view.getTrackScene()->addCurve(QStringLiteral("Z"), nullptr, true, Qt::red,
                                            ECurveShowCap_Line, true));

    // Every part of the plot is asked for what it shows.
    for (const bool bByValue : {false, true}) {
        view.setValueAxis(0);
        view.setTracksColoredByValue(bByValue);
        view.setSkyMapShown(true);
        view.setTimeCursor(st::kDay0 + 1e3);
        QImage image(300, 300, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        {
            QPainter painter(&image);
            st::itemOf<SkyGraphicsItem_Tracks>(view)->paint(&painter, nullptr, nullptr);
        }
        int set = 0;
        for (int y = 0; y < 300; ++y)
            for (int x = 0; x < 300; ++x)
                set += qAlpha(image.pixel(x, y)) != 0;
        QCOMPARE(set, drawn);
        const QImage whole = view.viewport()->grab().toImage();
        QVERIFY(!whole.isNull());
        SkyGraphicsView::HoverSample sample;
        for (int x = 0; x < 300; x += 7)
            view.hoverSampleAt(QPoint(x, x), sample);
        st::itemOf<SkyGraphicsItem_Marks>(view)->marks();
        QVERIFY(st::itemOf<SkyGraphicsItem_Map>(view)->cells().size() > 0);
        double vMin = 0.0;
        double vMax = 0.0;
        view.getColorRange(vMin, vMax);
        QVERIFY(std::isfinite(vMin) && std::isfinite(vMax) && vMin < vMax);
    }

    // Refusals leave everything as it was.
    double tMin = 0.0;
    double tMax = 0.0;
    view.getTimeWindow(tMin, tMax);
    view.setTimeWindow(kNaN, 1.0);
    view.setTimeWindow(0.0, kInf);
    view.setTimeWindow(5.0, 5.0);
    view.setTimeWindow(6.0, 5.0);
    double after0 = 0.0;
    double after1 = 0.0;
    view.getTimeWindow(after0, after1);
    QCOMPARE(after0, tMin);
    QCOMPARE(after1, tMax);
    QVERIFY(!view.setColorRange(kNaN, 1.0));
    QVERIFY(!view.setColorRange(2.0, 1.0));
    QVERIFY(!view.setSkyMapCellSize(0.0));
    QVERIFY(!view.setSkyMapCellSize(kNaN));
    QVERIFY(!view.setSkyMapCellSize(91.0));
    QCOMPARE(view.getSkyMapCellSize(), 5.0);
    QVERIFY(!view.setElevationMask(-1.0));
    QVERIFY(!view.setElevationMask(90.0));
    QVERIFY(!view.setElevationMask(kNaN));
    QCOMPARE(view.getElevationMask(), 0.0);
    view.setSkyMapStatistic(SkyGraphicsView::SkyMapStatistic(7));
    QCOMPARE(view.getSkyMapStatistic(), SkyGraphicsView::SkyMapStatistic_Mean);
    view.setValueAxis(-5);
    QCOMPARE(view.getValueAxis(), -1);
    view.drawToPixmap(nullptr);
    QPixmap empty;
    view.drawToPixmap(&empty);
    QVERIFY(empty.isNull());
    // A view too small for a sky draws nothing and finds nothing.
    view.resize(20, 20);
    QCoreApplication::processEvents();
    QVERIFY(view.skyToViewport(0, 45).isNull());
    SkyGraphicsView::HoverSample sample;
    QVERIFY(!view.hoverSampleAt(QPoint(10, 10), sample));
    QVERIFY(!view.viewport()->grab().isNull());
}

void tst_SkyTracks::otherDevices()
{
    // Twenty satellites of four hours at 1 Hz: on screen, printed through
    // QGraphicsView::render at another scale, recorded as vector output and
    // written to a PDF. Every picture shows a track where its samples are.
    SkyGraphicsView view;
    st::prepare(view, QSize(500, 500));
    for (int k = 0; k < 20; ++k) {
        st::addTrack(view, QStringLiteral("G%1").arg(k, 2, 10, QLatin1Char('0')),
                     st::arc(14400, 18.0 * k, 18.0 * k + 150.0, 0.0, 75.0, quint32(k)),
                     QColor(0, 0, 230));
    }
    // Sample 7200 of the first track: the top of its pass.
    const QPointF top = view.skyToViewport(75.0, 75.0);
    const auto trackNear = [](const QImage& image, const QPointF& at) {
        return gt::anyNear(image, at.toPoint(), 2, gt::isBluish);
    };
    const QImage screen = view.viewport()->grab().toImage();
    PIXEL_VERIFY(trackNear(screen, top), screen, "sky_screen");
    // No pass reaches above 75 degrees.
    const QPointF empty = view.skyToViewport(200.0, 86.0);
    PIXEL_VERIFY(!trackNear(screen, empty), screen, "sky_screen");

    QImage printed(250, 250, QImage::Format_ARGB32_Premultiplied);
    printed.fill(Qt::white);
    {
        QPainter painter(&printed);
        view.render(&painter, QRectF(0, 0, 250, 250), view.viewport()->rect());
    }
    PIXEL_VERIFY(trackNear(printed, top / 2.0), printed, "sky_printed");

    QPicture picture;
    {
        QPainter painter(&picture);
        view.render(&painter, QRectF(0, 0, 500, 500), view.viewport()->rect());
    }
    QImage replayed(500, 500, QImage::Format_ARGB32_Premultiplied);
    replayed.fill(Qt::white);
    {
        QPainter painter(&replayed);
        painter.drawPicture(0, 0, picture);
    }
    PIXEL_VERIFY(trackNear(replayed, top), replayed, "sky_picture");
    // Reduced to one point per pixel passed: 288,000 samples make far fewer.
    QVERIFY2(picture.size() < 1500000, qPrintable(QString::number(picture.size())));

    // A PDF: small, yet with the tracks in it as vectors, so bigger than the
    // same page with every track hidden (rings, spokes and labels only).
    const auto pdfSize = [&view]() {
        QBuffer pdf;
        pdf.open(QIODevice::WriteOnly);
        {
            QPdfWriter writer(&pdf);
            QPainter painter(&writer);
            view.render(&painter);
        }
        return pdf.size();
    };
    const auto showTracks = [&view](bool bShown) {
        for (int k = 0; k < 20; ++k) {
            view.getTrackScene()->setCurveShowParam_visible(
                QStringLiteral("G%1").arg(k, 2, 10, QLatin1Char('0')), bShown);
        }
    };
    const qint64 withTracks = pdfSize();
    QVERIFY2(withTracks < 1000000, qPrintable(QString::number(withTracks)));
    showTracks(false);
    const qint64 gridOnly = pdfSize();
    showTracks(true);
    QVERIFY2(withTracks > gridOnly + 2000,
             qPrintable(QStringLiteral("%1 vs %2").arg(withTracks).arg(gridOnly)));

    // A pixmap at device pixel ratio 2 carries the plot at twice the pixels:
    // the top of the pass at twice its logical place.
    QPixmap sharp(1000, 1000);
    sharp.setDevicePixelRatio(2.0);
    view.drawToPixmap(&sharp);
    const QImage sharpImage = sharp.toImage();
    PIXEL_VERIFY(trackNear(sharpImage, top * 2.0), sharpImage, "sky_ratio2");
    PIXEL_VERIFY(!trackNear(sharpImage, empty * 2.0), sharpImage, "sky_ratio2");
}

QTEST_MAIN(tst_SkyTracks)
#include "tst_skytracks.moc"
