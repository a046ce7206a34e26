// SPDX-License-Identifier: MIT
// The sky plot's arithmetic: directions to pixels, values to colours and
// bar labels, and the sky map's cells against a plain computation.

#include "sky/skytestsupport.h"

#include "SkyColorScale_p.h"
#include "SkyGraphicsItem_Map_p.h"
#include "SkyGraphicsItem_Tracks_p.h"
#include "SkyScaleMap_p.h"

#include <QPainter>
#include <QtTest>

#include <limits>

class tst_SkyMapping : public QObject
{
    Q_OBJECT
private slots:
    void polarMapping_data();
    void polarMapping();
    void trackAcrossNorth();
    void colourScale_data();
    void colourScale();
    void barLabels_data();
    void barLabels();
    void skyMapCells_data();
    void skyMapCells();
};

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// The tracks item of \a view painted alone into a transparent image at
// device pixel ratio \a ratio.
QImage tracksOnly(SkyGraphicsView& view, double ratio)
{
    QImage image(QSize(400, 300) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(0);
    QPainter painter(&image);
    st::itemOf<SkyGraphicsItem_Tracks>(view)->paint(&painter, nullptr, nullptr);
    return image;
}

QVector<QPoint> setPixels(const QImage& image)
{
    QVector<QPoint> out;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0)
                out.append(QPoint(x, y));
        }
    }
    return out;
}

} // namespace

void tst_SkyMapping::polarMapping_data()
{
    // A 400 x 300 viewport: the sky's centre at (200, 150), the rim 150 - 28
    // = 122 pixels from it (28 pixels are kept for the azimuth labels).
    QTest::addColumn<double>("azimuth");
    QTest::addColumn<double>("elevation");
    QTest::addColumn<QPointF>("expected");  // viewport pixels; null: not drawn
    QTest::newRow("north at the horizon") << 0.0 << 0.0 << QPointF(200, 28);
    QTest::newRow("east at the horizon") << 90.0 << 0.0 << QPointF(322, 150);
    QTest::newRow("south at the horizon") << 180.0 << 0.0 << QPointF(200, 272);
    QTest::newRow("west at the horizon") << 270.0 << 0.0 << QPointF(78, 150);
    QTest::newRow("360 is north") << 360.0 << 0.0 << QPointF(200, 28);
    QTest::newRow("zenith, any azimuth") << 123.4 << 90.0 << QPointF(200, 150);
    // r = 45 / 90 * 122 = 61; 61 / sqrt(2) = 43.1335...
    QTest::newRow("north-east at 45") << 45.0 << 45.0 << QPointF(243.13351365, 106.86648635);
    // r = 30 / 90 * 122 = 40.666...; east 20.333..., north 35.2184...
    QTest::newRow("30 east of north at 60") << 30.0 << 60.0 << QPointF(220.33333333, 114.7816);
    // r = 60 / 90 * 122 = 81.333...; sin 250 = -0.93969, cos 250 = -0.34202
    QTest::newRow("west-south-west at 30") << 250.0 << 30.0 << QPointF(123.57167, 177.81764);
    // 122 * sin(0.5 deg) = 1.06464, 122 * cos(0.5 deg) = 121.99535
    QTest::newRow("just east of north") << 0.5 << 0.0 << QPointF(201.06464, 28.00465);
    QTest::newRow("just west of north") << 359.5 << 0.0 << QPointF(198.93536, 28.00465);
    QTest::newRow("azimuth below 0") << -1.0 << 10.0 << QPointF();
    QTest::newRow("azimuth above 360") << 361.0 << 10.0 << QPointF();
    QTest::newRow("below the horizon") << 10.0 << -1.0 << QPointF();
    QTest::newRow("above the zenith") << 10.0 << 91.0 << QPointF();
    QTest::newRow("NaN azimuth") << kNaN << 10.0 << QPointF();
    QTest::newRow("infinite elevation") << 10.0 << kInf << QPointF();
}

void tst_SkyMapping::polarMapping()
{
    QFETCH(double, azimuth);
    QFETCH(double, elevation);
    QFETCH(QPointF, expected);
    SkyGraphicsView view;
    st::prepare(view, QSize(400, 300));
    const QPointF at = view.skyToViewport(azimuth, elevation);
    if (expected.isNull()) {
        QVERIFY(at.isNull());
    } else {
        const QString got = QStringLiteral("%1, %2").arg(at.x(), 0, 'f', 8).arg(at.y(), 0, 'f', 8);
        QVERIFY2(std::abs(at.x() - expected.x()) < 1e-4 && std::abs(at.y() - expected.y()) < 1e-4,
                 qPrintable(got));
    }

    // A track of one sample there sets exactly the pixel of that point, at
    // ratio 1 and at ratio 2 (twice the point, floored).
    st::Track track;
    track.times = {st::kDay0};
    track.azimuths = {azimuth};
    track.elevations = {elevation};
    st::addTrack(view, QStringLiteral("G01"), track, QColor(200, 0, 0));
    for (const double ratio : {1.0, 2.0}) {
        const QImage image = tracksOnly(view, ratio);
        const QVector<QPoint> set = setPixels(image);
        if (expected.isNull()) {
            PIXEL_VERIFY(set.isEmpty(), image, "sky_mapping");
            continue;
        }
        const QPoint pixel(int(std::floor(expected.x() * ratio)),
                           int(std::floor(expected.y() * ratio)));
        PIXEL_VERIFY(set == QVector<QPoint>{pixel}, image, "sky_mapping");
        QCOMPARE(image.pixel(pixel), qRgb(200, 0, 0));
    }
}

void tst_SkyMapping::trackAcrossNorth()
{
    // From azimuth 350 to 10 at 30 degrees elevation, a sample a second:
    // the azimuth wraps from 360 to 0 and the track stays near north. Its
    // pixels run from x = 200 - 81.33 * sin(10 deg) to 200 + that, around
    // y = 150 - 81.33 * cos(...) (r = 60 / 90 * 122 = 81.33).
    SkyGraphicsView view;
    st::prepare(view, QSize(400, 300));
    st::addTrack(view, QStringLiteral("G01"), st::arc(2001, 350.0, 370.0, 30.0, 30.0, 1));
    const QImage image = tracksOnly(view, 1.0);
    const QVector<QPoint> set = setPixels(image);
    const double r = 60.0 / 90.0 * 122.0;
    const double half = r * std::sin(10.0 * 3.14159265358979 / 180.0);
    int leftmost = 1000;
    int rightmost = -1;
    for (const QPoint& p : set) {
        PIXEL_VERIFY(p.y() >= int(150 - r) - 1 && p.y() <= int(150 - r * 0.98) + 1, image,
                     "sky_north");
        leftmost = std::min(leftmost, p.x());
        rightmost = std::max(rightmost, p.x());
    }
    QCOMPARE(leftmost, int(std::floor(200 - half)));
    QCOMPARE(rightmost, int(std::floor(200 + half)));
    // Unbroken across north: every column between has a pixel.
    for (int x = leftmost; x <= rightmost; ++x) {
        PIXEL_VERIFY(std::any_of(set.begin(), set.end(), [x](const QPoint& p) {
                         return p.x() == x;
                     }),
                     image, "sky_north");
    }
}

void tst_SkyMapping::colourScale_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("level");
    // Range 20 .. 52: 64 levels of 0.5.
    QTest::newRow("minimum") << 20.0 << 0;
    QTest::newRow("below the range") << -1e300 << 0;
    QTest::newRow("minus infinity") << -kInf << 0;
    QTest::newRow("first level's end") << 20.49 << 0;
    QTest::newRow("second level") << 20.5 << 1;
    QTest::newRow("middle") << 36.0 << 32;
    QTest::newRow("just below the maximum") << 51.9 << 63;
    QTest::newRow("maximum") << 52.0 << 63;
    QTest::newRow("above the range") << 1e300 << 63;
    QTest::newRow("infinity") << kInf << 63;
    QTest::newRow("NaN has no level") << kNaN << -1;
}

void tst_SkyMapping::colourScale()
{
    QFETCH(double, value);
    QFETCH(int, level);
    SkyColorScale scale;
    QVERIFY(scale.setRange(20.0, 52.0));
    QCOMPARE(scale.levelOf(value), level);
    // The ends of the gradient at the ends of the levels: the first level
    // lies half a level into the first stop's stretch.
    QCOMPARE(scale.colourAt(0.0), QColor(40, 40, 160));
    QCOMPARE(scale.colourAt(1.0), QColor(210, 40, 30));
    QCOMPARE(scale.colourAt(0.5), QColor(60, 180, 90));
    // Level 32's middle is 32.5 / 64 of the way: a little past green.
    const QColor mid = scale.colourAt(32.5 / 64.0);
    QCOMPARE(QColor::fromRgba(scale.colourOf(32)), mid);
    QCOMPARE(mid, QColor(qRound(60 + 180 * 0.03125), qRound(180 + 20 * 0.03125),
                         qRound(90 - 50 * 0.03125)));
    // Refusals leave the scale alone.
    QVERIFY(!scale.setRange(5.0, 5.0));
    QVERIFY(!scale.setRange(kNaN, 1.0));
    QVERIFY(!scale.setRange(-1e308, 1e308));
    QVERIFY(!scale.setStops({{0.0, Qt::red}}));
    QVERIFY(!scale.setStops({{0.5, Qt::red}, {0.2, Qt::blue}}));
    QVERIFY(!scale.setStops({{0.0, Qt::red}, {1.5, Qt::blue}}));
    QCOMPARE(scale.getMin(), 20.0);
    QCOMPARE(scale.levelOf(value), level);
}

void tst_SkyMapping::barLabels_data()
{
    QTest::addColumn<double>("vMin");
    QTest::addColumn<double>("vMax");
    QTest::addColumn<QStringList>("ticks");
    QTest::addColumn<QStringList>("labels");  // a bar of 200 pixels, 14 apart
    QTest::newRow("dB-Hz") << 20.0 << 55.0 << QStringList{"20", "30", "40", "50"}
                           << QStringList{"20", "55", "30", "40", "50"};
    QTest::newRow("0 to 1") << 0.0 << 1.0
                            << QStringList{"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}
                            << QStringList{"0.0", "1.0", "0.2", "0.4", "0.6", "0.8"};
    QTest::newRow("about zero") << -0.5 << 0.5
                                << QStringList{"-0.4", "-0.2", "0.0", "0.2", "0.4"}
                                << QStringList{"-0.5", "0.5", "-0.4", "-0.2", "0.0", "0.2",
                                               "0.4"};
    QTest::newRow("multipath metres") << -0.05 << 0.08
                                      << QStringList{"-0.05", "0.00", "0.05"}
                                      << QStringList{"-0.05", "0.08", "0.00", "0.05"};
    QTest::newRow("thousands") << 1200.0 << 9800.0
                               << QStringList{"2000", "4000", "6000", "8000"}
                               << QStringList{"1200", "9800", "2000", "4000", "6000", "8000"};
}

void tst_SkyMapping::barLabels()
{
    QFETCH(double, vMin);
    QFETCH(double, vMax);
    QFETCH(QStringList, ticks);
    QFETCH(QStringList, labels);
    SkyColorScale scale;
    QVERIFY(scale.setRange(vMin, vMax));
    QStringList tickTexts;
    for (const SkyColorScale::Label& tick : scale.ticks()) {
        tickTexts << tick.text;
        QCOMPARE(tick.text.toDouble(), tick.value);
    }
    QCOMPARE(tickTexts, ticks);
    QStringList labelTexts;
    for (const SkyColorScale::Label& label : scale.barLabels(200.0, 14.0))
        labelTexts << label.text;
    QCOMPARE(labelTexts, labels);
}

void tst_SkyMapping::skyMapCells_data()
{
    QTest::addColumn<double>("cell");
    QTest::addColumn<int>("statistic");
    QTest::addColumn<bool>("bWindow");
    QTest::newRow("mean, 5 degree cells") << 5.0 << 0 << false;
    QTest::newRow("RMS, 7 degree cells (narrow last ones)") << 7.0 << 1 << false;
    QTest::newRow("maximum, one cell per band") << 90.0 << 2 << false;
    QTest::newRow("mean over an hour") << 10.0 << 0 << true;
}

void tst_SkyMapping::skyMapCells()
{
    QFETCH(double, cell);
    QFETCH(int, statistic);
    QFETCH(bool, bWindow);
    SkyGraphicsView view;
    st::prepare(view, QSize(400, 300));
    // Random directions and values, with the edges on purpose: north at
    // 360, the zenith, cell boundaries, and samples that are not drawn.
    QVector<st::Track> tracks(4);
    QRandomGenerator rng(42);
    for (int k = 0; k < tracks.size(); ++k) {
        st::Track& t = tracks[k];
        for (int i = 0; i < 7200; ++i) {
            t.times.append(st::kDay0 + i * 1000.0);
            t.azimuths.append(rng.generateDouble() * 360.0);
            t.elevations.append(rng.generateDouble() * 90.0);
            t.values.append(rng.generateDouble() * 40.0 - 5.0);
        }
        t.azimuths[0] = 360.0;
        t.elevations[1] = 90.0;
        t.azimuths[2] = cell * 3;
        t.elevations[2] = cell;
        t.values[3] = kNaN;
        t.elevations[4] = -3.0;
        t.azimuths[5] = 400.0;
        t.times[6] = kNaN;
        st::addTrack(view, QStringLiteral("S%1").arg(k), t, Qt::blue, k != 3);
    }
    view.setValueAxis(0);
    view.setSkyMapShown(true);
    QVERIFY(view.setSkyMapCellSize(cell));
    view.setSkyMapStatistic(SkyGraphicsView::SkyMapStatistic(statistic));
    const double tMin = st::kDay0 + 600e3;
    const double tMax = st::kDay0 + 4200e3;
    if (bWindow)
        view.setTimeWindow(tMin, tMax);

    // The plain computation: every drawn sample of the visible tracks in the
    // window into its cell, by the boundaries as written.
    const int bands = int(std::ceil(90.0 / cell));
    const int sectors = int(std::ceil(360.0 / cell));
    QVector<QVector<double>> expected(bands * sectors);
    for (int k = 0; k < 3; ++k) {
        const st::Track& t = tracks[k];
        for (int i = 0; i < t.times.size(); ++i) {
            const double az = t.azimuths[i];
            const double el = t.elevations[i];
            if (!(az >= 0 && az <= 360 && el >= 0 && el <= 90) || !std::isfinite(t.values[i])
                || !std::isfinite(t.times[i]) || (bWindow && !(t.times[i] >= tMin
                                                              && t.times[i] <= tMax))) {
                continue;
            }
            const int band = std::min(int(std::floor(el / cell)), bands - 1);
            const int sector = az == 360.0 ? 0 : std::min(int(std::floor(az / cell)), sectors - 1);
            expected[band * sectors + sector].append(t.values[i]);
        }
    }
    SkyGraphicsItem_Map* map = st::itemOf<SkyGraphicsItem_Map>(view);
    QVERIFY(map);
    const std::vector<SkyMapCell>& cells = map->cells();
    QCOMPARE(int(cells.size()), expected.size());
    int filled = 0;
    for (int c = 0; c < expected.size(); ++c) {
        const QVector<double>& values = expected[c];
        QCOMPARE(cells[size_t(c)].count, qint64(values.size()));
        if (values.isEmpty()) {
            QVERIFY(std::isnan(cells[size_t(c)].statistic(statistic)));
            continue;
        }
        ++filled;
        double sum = 0.0;
        double squares = 0.0;
        double maximum = values.front();
        for (const double v : values) {
            sum += v;
            squares += v * v;
            maximum = std::max(maximum, v);
        }
        const double plain = statistic == 0 ? sum / values.size()
                             : statistic == 1 ? std::sqrt(squares / values.size())
                                              : maximum;
        const double got = cells[size_t(c)].statistic(statistic);
        QVERIFY2(std::abs(got - plain) <= 1e-12 * (1.0 + std::abs(plain)),
                 qPrintable(QStringLiteral("cell %1: %2 vs %3").arg(c).arg(got).arg(plain)));
    }
    QVERIFY(filled > 0);
}

QTEST_MAIN(tst_SkyMapping)
#include "tst_skymapping.moc"
