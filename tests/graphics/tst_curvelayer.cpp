// SPDX-License-Identifier: MIT
// The curve item's density layer against a plain drawer of the same line
// rule, and the layer in a real view: prepared once, the same for any number
// of threads, and replaced by vector output where a device needs it.

#include "graphicstestsupport.h"

#include "CurveComposition_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsScene_p.h"
#include "CurveRaster_p.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"

#include <QBoxLayout>
#include <QBuffer>
#include <QPdfWriter>
#include <QPicture>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QThreadPool>

#include <cmath>
#include <limits>
#include <memory>
#include <numeric>

namespace {

// --- The reference: one segment at a time, every pixel blended in turn ----

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

quint32 premultiplied(const QColor& c)
{
    const auto scaled = [&](int v) { return quint32((v * c.alpha() + 127) / 255); };
    return quint32(c.alpha()) << 24 | scaled(c.red()) << 16 | scaled(c.green()) << 8
           | scaled(c.blue());
}

struct Reference
{
    QImage image;
    quint32 colour;
    void blend(qint64 c, qint64 r)
    {
        if (c < 0 || r < 0 || c >= image.width() || r >= image.height())
            return;
        auto* p = reinterpret_cast<quint32*>(image.scanLine(int(r))) + c;
        *p = blendOnce(colour, *p);
    }
    // Every pixel of the segment but its first, walking the longer axis and
    // rounding the other half away from zero; only the image's part of the
    // longer axis is walked.
    void segment(qint64 c0, qint64 r0, qint64 c1, qint64 r1)
    {
        const qint64 dc = c1 - c0;
        const qint64 dr = r1 - r0;
        const bool alongX = std::llabs(dc) >= std::llabs(dr);
        const qint64 steps = alongX ? std::llabs(dc) : std::llabs(dr);
        const qint64 extent = alongX ? image.width() : image.height();
        const qint64 start = alongX ? c0 : r0;
        const qint64 sign = (alongX ? dc : dr) > 0 ? 1 : -1;
        for (qint64 k = 1; k <= steps; ++k) {
            const qint64 major = start + sign * k;
            if (major < -1 || major > extent) {
                // Jump to where the walk enters the image, if it does.
                const qint64 target = sign > 0 ? -1 : extent;
                if ((target - major) * sign > 0) {
                    k += (target - major) * sign - 1;
                    continue;
                }
                break;
            }
            const long double t = (long double)(alongX ? dr : dc) * k / steps;
            const qint64 minor = (alongX ? r0 : c0) + std::llround(t);
            if (alongX)
                blend(major, minor);
            else
                blend(minor, major);
        }
    }
};

qint64 pixelOf(double scale, double offset, int p)
{
    return qint64(std::floor(scale * p + offset));
}

// One curve as the reference sees it: its samples, the breaks of each Y
// axis and the colour each shown Y axis is drawn in.
struct PlainCurve
{
    QVector<double> xs;
    QVector<QVector<double>> ys;
    QVector<std::set<qint64>> breaks;
    QVector<QColor> colours;  // one per Y axis drawn, in order
    QVector<int> shown;       // the Y indexes drawn
    bool bPoints = false;
};

// Where the curves are shown: the area and the data area in item pixels.
struct PlainArea
{
    double xMin, xMax, yMin, yMax;
    int width, height;  // a negative height flips Y
};

// An item pixel the way the behaviour states it: the plain formula, then
// truncated toward zero, saturated at +-2^28.
int plainPixel(double v)
{
    const double limit = double(1 << 28);
    return v >= limit ? 1 << 28 : v <= -limit ? -(1 << 28) : int(v);
}

// The runs of Y index k in item pixels: cut after every break (and at the
// last shared sample), samples with a NaN left out and their neighbours
// joined, empty runs dropped.
QList<QPolygon> plainRuns(const PlainCurve& curve, int k, const PlainArea& a)
{
    const QVector<double>& ys = curve.ys.at(k);
    const qint64 count = std::min(curve.xs.size(), ys.size());
    std::set<qint64> ends = curve.breaks.value(k);
    ends.insert(count - 1);
    // The data area's lower edge: y 0, or |height| when the height is
    // negative; larger values lie higher on screen either way.
    const double h = std::abs(a.height);
    const double lower = a.height < 0 ? h : 0.0;
    QList<QPolygon> runs;
    qint64 start = 0;
    for (const qint64 end : ends) {
        if (end >= count)
            break;
        QPolygon run;
        for (qint64 j = start; j <= end; ++j) {
            const double x = curve.xs.at(int(j));
            const double y = ys.at(int(j));
            const double px = (x - a.xMin) / (a.xMax - a.xMin) * a.width;
            const double t = (y - a.yMin) / (a.yMax - a.yMin) * h;
            const double py = lower - t;
            if (!std::isnan(px) && !std::isnan(py))
                run.append(QPoint(plainPixel(px), plainPixel(py)));
        }
        if (!run.isEmpty())
            runs.append(run);
        start = end + 1;
    }
    return runs;
}

// The width of a run of n points: a single point 4.0; 2 to 1000 points 2.0;
// 1000 to 2000 points 2000 / n; the points style 2.0 for every sample.
qreal plainWidth(int n, bool bPoints)
{
    if (bPoints)
        return 2.0;
    if (n == 1)
        return 4.0;
    return n <= 1000 ? 2.0 : 2000.0 / n;
}

// Draws what the picture must hold: every shown Y index of every curve in
// order, its runs of 2,000 points and more segment by segment with the rule
// above, blended as a whole over what is drawn before, then its shorter
// runs through QPainter on top.
QImage referencePicture(const QVector<PlainCurve>& curves, const PlainArea& area,
                        const QTransform& t, const QSize& size)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(0);
    for (const PlainCurve& curve : curves) {
        for (int s = 0; s < curve.shown.size(); ++s) {
            const int k = curve.shown.at(s);
            const QColor colour = curve.colours.at(s);
            const QList<QPolygon> runs = plainRuns(curve, k, area);
            Reference ref{QImage(size, QImage::Format_ARGB32_Premultiplied),
                          premultiplied(colour)};
            ref.image.fill(0);
            for (const QPolygon& run : runs) {
                if (curve.bPoints || run.size() < 2000)
                    continue;
                qint64 c0 = pixelOf(t.m11(), t.dx(), run.at(0).x());
                qint64 r0 = pixelOf(t.m22(), t.dy(), run.at(0).y());
                ref.blend(c0, r0);
                for (int i = 1; i < run.size(); ++i) {
                    const qint64 c1 = pixelOf(t.m11(), t.dx(), run.at(i).x());
                    const qint64 r1 = pixelOf(t.m22(), t.dy(), run.at(i).y());
                    ref.segment(c0, r0, c1, r1);
                    c0 = c1;
                    r0 = r1;
                }
            }
            for (int y = 0; y < size.height(); ++y) {
                auto* out = reinterpret_cast<quint32*>(picture.scanLine(y));
                const auto* in = reinterpret_cast<const quint32*>(ref.image.constScanLine(y));
                for (int x = 0; x < size.width(); ++x)
                    out[x] = in[x] ? blendOnce(in[x], out[x]) : out[x];
            }
            QPainter painter(&picture);
            painter.setTransform(t);
            for (const QPolygon& run : runs) {
                if (!curve.bPoints && run.size() >= 2000)
                    continue;
                QPen pen(colour);
                pen.setWidthF(plainWidth(run.size(), curve.bPoints));
                painter.setPen(pen);
                if (curve.bPoints || run.size() == 1)
                    painter.drawPoints(run);
                else
                    painter.drawPolyline(run);
            }
        }
    }
    return picture;
}

// Paints \a item into \a target, cleared, through \a world, and returns what
// the plain drawer makes of \a curve in the same device transform.
QImage paintAndDrawPlainly(CurveGraphicsItem_Curve_XY& item, const PlainCurve& curve,
                           const PlainArea& area, QImage& target, const QTransform& world)
{
    target.fill(0);
    QPainter painter(&target);
    painter.setTransform(world);
    const QTransform device = painter.deviceTransform();
    item.paint(&painter, nullptr, nullptr);
    painter.end();
    return referencePicture({curve}, area, device, target.size());
}

const QImage& pictureOf(const CurveGraphicsItem_Curve_XY& item)
{
    static const QImage none;
    return item.ownPicture() ? item.ownPicture()->image() : none;
}

enum Shape { Noise, Steps, Spikes, Gaps, Breaks, OffScreen, Huge, Short };

// X 0 .. n-1 over an area of 0 .. n-1 and -1 .. 1.
void fillShape(Shape shape, int n, quint32 seed, QVector<double>& ys, std::set<qint64>& breaks)
{
    QRandomGenerator rng(seed);
    ys.resize(n);
    for (int i = 0; i < n; ++i) {
        const double noise = rng.generateDouble() * 2.0 - 1.0;
        switch (shape) {
        case Noise: ys[i] = 0.8 * noise; break;
        case Steps: ys[i] = (i / 700 % 3 - 1) * 0.6 + 0.01 * noise; break;
        case Spikes: ys[i] = i % 997 == 0 ? 0.95 * (noise > 0 ? 1 : -1) : 0.05 * noise; break;
        case Gaps: ys[i] = (i / 50) % 7 == 3 ? gt::NaN : 0.5 * std::sin(i * 0.01) + 0.2 * noise;
            break;
        case Breaks: ys[i] = 0.7 * std::sin(i * 0.003) + 0.1 * noise; break;
        case OffScreen: ys[i] = (i % 500 < 10) ? 300.0 * noise : 0.9 * noise; break;
        case Huge: ys[i] = i % 1500 == 7 ? (noise > 0 ? 1e300 : -1e300) : 0.5 * noise; break;
        case Short: ys[i] = 0.6 * noise; break;
        }
    }
    if (shape == Breaks)
        breaks = {2499, 2500, 4999, 5003};
    if (shape == Short)
        breaks = {0, 5, 1300, 1301, 2800};
}

// One step of a layer's life: an area to show, and what changes first.
struct Step
{
    enum Change { Nothing, NewValues, NewValuesTwice, XOutOfOrder, Shorter, Lower };
    double x0, x1, y0, y1;  // the area, X as shares of the samples
    Change change = Nothing;
};
using StepList = QVector<Step>;

struct Setup
{
    QTransform transform;
    qreal ratio;
    int height;  // of the data area; negative flips it
};

} // namespace

Q_DECLARE_METATYPE(Shape)
Q_DECLARE_METATYPE(StepList)

class tst_CurveLayer : public QObject
{
    Q_OBJECT
private slots:
    void stripesMatchPlainDrawer_data();
    void stripesMatchPlainDrawer();
    void composesCurvesInOrder();
    void listeningFixesWhatIsShown();
    void mixIgnoresOrder();
    void mapPathsAgree_data();
    void mapPathsAgree();
    void sameAsPlainDrawer_data();
    void sameAsPlainDrawer();
    void columnSteps_data();
    void columnSteps();
    void followsChanges_data();
    void followsChanges();
    void twoYIndexesCompose();
    void viewPreparesOnce();
    void sameForAnyThreadCount();
    void insideAWindow();
    void otherDevices();
};

void tst_CurveLayer::sameAsPlainDrawer_data()
{
    QTest::addColumn<Shape>("shape");
    QTest::addColumn<int>("alpha");
    QTest::addColumn<QString>("setup");

    const QList<QPair<const char*, Shape>> shapes{
        {"noise", Noise}, {"steps", Steps}, {"spikes", Spikes}, {"gaps", Gaps},
        {"breaks", Breaks}, {"off-screen", OffScreen}, {"huge", Huge}, {"short runs", Short}};
    const QStringList setups{"identity", "fit scale", "flipped", "ratio 2", "zoomed in time"};
    QRandomGenerator rng(7);
    for (const auto& shape : shapes) {
        for (const QString& setup : setups) {
            const int alphas[] = {1, 128, 255, 1 + int(rng.bounded(254))};
            for (int alpha : alphas) {
                QTest::addRow("%s, %s, alpha %d", shape.first, qPrintable(setup), alpha)
                    << shape.second << alpha << setup;
            }
        }
    }
}

void tst_CurveLayer::sameAsPlainDrawer()
{
    QFETCH(Shape, shape);
    QFETCH(int, alpha);
    QFETCH(QString, setup);

    const int n = 7000;
    QVector<double> xs(n);
    std::iota(xs.begin(), xs.end(), 0.0);
    QVector<double> ys;
    std::set<qint64> breaks;
    fillShape(shape, n, quint32(alpha * 31 + int(shape)), ys, breaks);
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    Curve_Coord_XY coord;
    // Zoomed in time, most samples lie left and right of the picture and
    // only those near it are walked.
    if (setup == "zoomed in time")
        QVERIFY(coord.setArea(n * 0.31, n * 0.47, -1, 1));
    else
        QVERIFY(coord.setArea(0, n - 1, -1, 1));

    const QSize logical(320, 200);
    qreal ratio = 1.0;
    QTransform world = QTransform::fromTranslate(0, 190);
    int height = 180;
    if (setup == "fit scale")
        world = QTransform(0.995, 0, 0, 0.995, 0.4, 188.7);
    else if (setup == "flipped")
        height = -180, world = QTransform::fromTranslate(0, 10);
    else if (setup == "ratio 2")
        ratio = 2.0;

    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    item.setPenColor(QColor(30, 90, 200, alpha));
    item.setDataArea(300, height);

    QImage target(logical * ratio, QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(ratio);
    const PlainCurve curve{xs, {ys}, {breaks}, {QColor(30, 90, 200, alpha)}, {0}};
    const PlainArea area{setup == "zoomed in time" ? n * 0.31 : 0.0,
                         setup == "zoomed in time" ? n * 0.47 : n - 1.0, -1, 1, 300, height};
    const QImage expected = paintAndDrawPlainly(item, curve, area, target, world);
    QVERIFY(item.ownPicture());
    QCOMPARE(item.ownPicture()->target().bounds.topLeft(), QPoint(0, 0));
    QCOMPARE(pictureOf(item).size(), target.size());
    int differing = 0;
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x)
            differing += pictureOf(item).pixel(x, y) != expected.pixel(x, y) ? 1 : 0;
    }
    if (differing) {
        pictureOf(item).save("/tmp/gnssplot_layer.png");
        expected.save("/tmp/gnssplot_layer_expected.png");
    }
    QCOMPARE(differing, 0);
    // The layer reaches the target as it is: drawn over transparent, every
    // pixel arrives unchanged.
    target.setDevicePixelRatio(1.0);
    QCOMPARE(target, pictureOf(item));
}

void tst_CurveLayer::columnSteps_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<double>("m11");
    QTest::addColumn<double>("dx");

    QVector<double> day(86400);
    std::iota(day.begin(), day.end(), 0.0);
    QTest::newRow("a day at 1 s") << day << 1.0 << 0.0;
    QTest::newRow("a day, flipped and offset") << day << -1.0 << 799.5;
    QTest::newRow("a day at ratio 1.5") << day << 1.5 << 0.25;

    // Bursts, gaps and repeated times; the spacing changes all the time so
    // that guessing a step's length from the last one keeps failing.
    QRandomGenerator rng(11);
    QVector<double> uneven;
    double t = 0.0;
    while (uneven.size() < 50000) {
        const int kind = int(rng.bounded(4));
        t += kind == 0 ? 0.0 : kind == 1 ? rng.generateDouble() : kind == 2 ? 7.0 : 900.0;
        uneven.append(t);
    }
    QTest::newRow("uneven") << uneven << 1.0 << 0.0;

    QVector<double> sparse;
    for (int i = 0; i < 300; ++i)
        sparse.append(i * 3.7);
    QTest::newRow("fewer samples than columns") << sparse << 1.0 << 0.0;

    QVector<double> extremes{-1e300, -5.0, 0.0, 0.0, 0.0, 1.0, 1e10, 1e300};
    const double inf = std::numeric_limits<double>::infinity();
    extremes.prepend(-inf);
    extremes.append(inf);
    QTest::newRow("huge and infinite") << extremes << 1.0 << 0.0;
    QTest::newRow("one sample") << QVector<double>{42.0} << 1.0 << 0.0;
}

void tst_CurveLayer::columnSteps()
{
    QFETCH(QVector<double>, xs);
    QFETCH(double, m11);
    QFETCH(double, dx);

    const qint64 n = xs.size();
    const double span = std::max(1.0, xs.last() - xs.first());
    const double lo = std::isfinite(xs.first()) ? xs.first() : 0.0;
    const CoordMapping mapping(QRectF(0, -500, 800, 500), lo, lo + std::min(span, 1e6), -1, 1,
                               false);
    std::vector<qint32> expected(static_cast<size_t>(n));
    CurveRaster::mapColumns(mapping, m11, dx, xs.constData(), n, expected.data());

    // Whole ranges and pieces of them, as a zoomed window asks for.
    QRandomGenerator rng(3);
    for (int round = 0; round < 20; ++round) {
        qint64 first = round == 0 ? 0 : qint64(rng.bounded(quint32(n)));
        qint64 last = round == 0 ? n - 1 : first + qint64(rng.bounded(quint32(n - first)));
        CurveRaster::ColumnSteps steps;
        steps.build(mapping, m11, dx, xs.constData(), first, last);
        // One step per change of column, no more.
        size_t changes = 1;
        for (qint64 j = first + 1; j <= last; ++j)
            changes += expected[size_t(j)] != expected[size_t(j - 1)] ? 1 : 0;
        QCOMPARE(steps.size(), changes);
        std::vector<qint32> filled(size_t(last - first + 1));
        steps.fill(first, last - first + 1, filled.data());
        for (qint64 j = first; j <= last; ++j) {
            QCOMPARE(filled[size_t(j - first)], expected[size_t(j)]);
            QCOMPARE(steps.at(j), expected[size_t(j)]);
        }
        // A piece from the middle, as a counting thread asks for.
        const qint64 a = first + (last - first) / 3;
        const qint64 b = std::min(last, a + 1500);
        std::vector<qint32> piece(size_t(b - a + 1));
        steps.fill(a, b - a + 1, piece.data());
        QVERIFY(std::equal(piece.begin(), piece.end(), expected.begin() + a));
    }
}

void tst_CurveLayer::followsChanges_data()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("threads");
    QTest::addColumn<StepList>("steps");

    const Step whole{0.0, 1.0, -1, 1};
    QTest::newRow("zoom in time and out") << 7000 << 1
        << StepList{whole, {0.3, 0.5, -1, 1}, {0.35, 0.4, -1, 1}, whole};
    QTest::newRow("pan") << 7000 << 1
        << StepList{{0.2, 0.4, -1, 1}, {0.3, 0.5, -1, 1}, {0.25, 0.45, -1, 1}, {0.1, 0.3, -1, 1}};
    QTest::newRow("pan away and back") << 7000 << 1
        << StepList{{0.0, 0.1, -1, 1}, {0.8, 0.9, -1, 1}, {0.0, 0.1, -1, 1}, whole};
    QTest::newRow("Y between time steps") << 7000 << 1
        << StepList{{0.3, 0.5, -1, 1}, {0.3, 0.5, -0.5, 0.5}, {0.2, 0.6, -0.5, 0.5},
                 {0.2, 0.6, -1, 1}};
    QTest::newRow("new values, same area") << 7000 << 1
        << StepList{{0.3, 0.5, -1, 1}, whole, {0.0, 1.0, -1, 1, Step::NewValues},
                 {0.3, 0.5, -1, 1}};
    // Two publishes between pictures may hand back the first block, at the
    // address the item saw before.
    QTest::newRow("new values twice") << 7000 << 1
        << StepList{whole, {0.0, 1.0, -1, 1, Step::NewValuesTwice},
                    {0.0, 1.0, -1, 1, Step::NewValuesTwice}};
    QTest::newRow("X out of order and back") << 7000 << 1
        << StepList{whole, {0.0, 1.0, -1, 1, Step::XOutOfOrder}, {0.0, 1.0, -1, 1, Step::NewValues},
                 {0.2, 0.4, -1, 1}};
    QTest::newRow("fewer samples") << 7000 << 1
        << StepList{whole, {0.0, 1.0, -1, 1, Step::Shorter}, {0.1, 0.5, -1, 1}};
    QTest::newRow("lower area") << 7000 << 1
        << StepList{{0.2, 0.6, -1, 1}, {0.2, 0.6, -1, 1, Step::Lower}, {0.3, 0.5, -1, 1}};
    QTest::newRow("pieces on two threads") << 600000 << 2
        << StepList{whole, {0.3, 0.7, -1, 1}, {0.2, 0.9, -1, 1}, {0.2, 0.9, -0.5, 0.5}, whole};
}

void tst_CurveLayer::followsChanges()
{
    // One item painted after every step and compared with the plain drawer:
    // whatever it keeps from one picture to the next must never show.
    QFETCH(int, samples);
    QFETCH(int, threads);
    QFETCH(StepList, steps);

    const int poolThreads = QThreadPool::globalInstance()->maxThreadCount();
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
    const auto restore = qScopeGuard(
        [poolThreads]() { QThreadPool::globalInstance()->setMaxThreadCount(poolThreads); });

    int n = samples;
    QVector<double> xs(n);
    std::iota(xs.begin(), xs.end(), 0.0);
    QVector<double> ys;
    std::set<qint64> breaks;
    // Rows of another row's data must not be what freed memory holds here.
    const quint32 seed = qHash(QByteArray(QTest::currentDataTag()));
    fillShape(Noise, n, seed, ys, breaks);
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys);
    Curve_Coord_XY coord;
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    item.switchOnListen();
    item.setPenColor(QColor(200, 40, 40, 90));
    item.setDataArea(300, 180);
    int height = 180;

    QImage target(QSize(320, 200), QImage::Format_ARGB32_Premultiplied);
    for (int i = 0; i < steps.size(); ++i) {
        const Step& step = steps.at(i);
        switch (step.change) {
        case Step::Nothing: break;
        case Step::NewValues:
            std::iota(xs.begin(), xs.end(), 0.0);
            fillShape(Steps, n, seed + quint32(i), ys, breaks);
            gt::fillAxis(dataSet.getAxisData(0), xs);
            gt::fillAxis(dataSet.getAxisData(1), ys);
            break;
        case Step::NewValuesTwice:
            for (int twice = 0; twice < 2; ++twice) {
                fillShape(twice ? Spikes : Steps, n, seed + quint32(i), ys, breaks);
                gt::fillAxis(dataSet.getAxisData(1), ys);
            }
            break;
        case Step::XOutOfOrder:
            for (int j = 0; j < n; ++j)
                xs[j] = j + 0.08 * n * std::sin(j * 60.0 / n);
            gt::fillAxis(dataSet.getAxisData(0), xs);
            break;
        case Step::Shorter:
            n = n * 2 / 3;
            xs.resize(n);
            ys.resize(n);
            gt::fillAxis(dataSet.getAxisData(0), xs);
            gt::fillAxis(dataSet.getAxisData(1), ys);
            break;
        case Step::Lower:
            item.setDataArea(300, 120);
            height = 120;
            break;
        }
        QVERIFY(coord.setArea(step.x0 * (n - 1), step.x1 * (n - 1), step.y0, step.y1));
        const PlainCurve curve{xs, {ys}, {{}}, {QColor(200, 40, 40, 90)}, {0}};
        const PlainArea area{step.x0 * (n - 1), step.x1 * (n - 1), step.y0, step.y1, 300, height};
        const QImage expected =
            paintAndDrawPlainly(item, curve, area, target, QTransform::fromTranslate(0, 190));
        if (pictureOf(item) != expected) {
            pictureOf(item).save("/tmp/gnssplot_layer.png");
            expected.save("/tmp/gnssplot_layer_expected.png");
        }
        QVERIFY2(pictureOf(item) == expected, qPrintable(QStringLiteral("step %1").arg(i)));
    }
}

void tst_CurveLayer::twoYIndexesCompose()
{
    // Two thin runs of different colours crossing: the second Y index blends
    // over the first wherever both pass.
    const int n = 4000;
    QVector<double> xs(n), y1(n), y2(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = i;
        y1[i] = std::sin(i * 0.05) * 0.8;
        y2[i] = std::cos(i * 0.07) * 0.8;
    }
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet(xs, {y1, y2}));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, n - 1, -1, 1));
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), dataSet.get(), nullptr);
    item.setPenColor(QColor(200, 20, 20, 100));
    item.setVisibleSelection({});
    item.setDataArea(200, 100);
    QImage target(220, 120, QImage::Format_ARGB32_Premultiplied);
    // Without pens per Y index both draw in the item's pen.
    const QColor colour(200, 20, 20, 100);
    const PlainCurve curve{xs, {y1, y2}, {{}, {}}, {colour, colour}, {0, 1}};
    const QImage expected = paintAndDrawPlainly(item, curve, {0, n - 1.0, -1, 1, 200, 100},
                                                target, QTransform::fromTranslate(10, 110));
    QCOMPARE(pictureOf(item), expected);
}

namespace {

struct ShownView
{
    explicit ShownView(int curves, int samples)
    {
        gt::makeBare(view);
        view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
        QVector<double> xs(samples);
        std::iota(xs.begin(), xs.end(), 0.0);
        for (int c = 0; c < curves; ++c) {
            QVector<double> ys(samples);
            for (int i = 0; i < samples; ++i)
                ys[i] = std::sin(i * 0.001 * (c + 1)) * 0.5 + ((i * 7919 + c) % 101) * 0.004;
            view.getCurveScene()->addCurve(QStringLiteral("C%1").arg(c, 2, 10, QLatin1Char('0')),
                                           gt::makeDataSet(xs, {ys, ys}), true,
                                           QColor::fromHsv(c * 40 % 360, 200, 200),
                                           ECurveShowCap_Line, true);
        }
        view.resize(640, 400);
        view.show();
        view.setCurvesPosToVerticalZero();
    }
    QImage grab()
    {
        QTest::qWait(10);
        return view.viewport()->grab().toImage();
    }
    QList<CurveGraphicsItem_Curve_XY*> items()
    {
        return gt::itemsOf<CurveGraphicsItem_Curve_XY>(view.scene());
    }
    // The picture the view's curves share, as last built.
    const CurvePicture* picture()
    {
        const CurveComposition* shared =
            items().isEmpty() ? nullptr : CurveGraphicsSceneAccess::compositionOf(items().first());
        return shared ? &shared->picture() : nullptr;
    }
    // Pictures built for the view so far.
    quint64 builds()
    {
        const CurveComposition* shared =
            items().isEmpty() ? nullptr : CurveGraphicsSceneAccess::compositionOf(items().first());
        return shared ? shared->picture().buildCount() : 0;
    }
    CurveGraphicsView view;
};

} // namespace

void tst_CurveLayer::viewPreparesOnce()
{
    ShownView shown(3, 5000);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.view));
    shown.grab();
    const quint64 first = shown.builds();
    // One picture for all three curves.
    QCOMPARE(first, quint64(1));
    // An unchanged plot paints its layers again and builds nothing.
    shown.view.viewport()->repaint();
    shown.grab();
    QCOMPARE(shown.builds(), first);

    // Publishing all three axes of a curve sends six signals; the curve is
    // picture is built once, before the paint.
    auto* dataSet = const_cast<Curve_DataSet_XY*>(qobject_cast<const Curve_DataSet_XY*>(
        shown.view.getCurveScene()->getCurve(QStringLiteral("C01"))));
    QVERIFY(dataSet);
    for (int k = 0; k < 3; ++k) {
        AxisData* axis = dataSet->getAxisData(k);
        QVector<double> values(4000);
        for (int i = 0; i < values.size(); ++i)
            values[i] = k == 0 ? i : 0.1 * k;
        gt::fillAxis(axis, values);
    }
    shown.grab();
    QCOMPARE(shown.builds(), first + 1);
    // A wheel step rebuilds every curve once.
    QWheelEvent wheel(QPointF(300, 200), QPointF(300, 200), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(shown.view.viewport(), &wheel);
    shown.grab();
    QCOMPARE(shown.builds(), first + 2);
}

void tst_CurveLayer::sameForAnyThreadCount()
{
    const int threads = QThreadPool::globalInstance()->maxThreadCount();
    QImage images[2];
    const int counts[2] = {1, 4};
    for (int i = 0; i < 2; ++i) {
        QThreadPool::globalInstance()->setMaxThreadCount(counts[i]);
        // Enough samples (280,000 shown) for the counting to run on the pool.
        ShownView shown(14, 20000);
        QVERIFY(QTest::qWaitForWindowExposed(&shown.view));
        images[i] = shown.grab();
    }
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
    QVERIFY(images[0] == images[1]);
}

void tst_CurveLayer::insideAWindow()
{
    // A view below and right of other widgets is painted into the window's
    // buffer at an offset. Its curves must reach every edge of the data area
    // there too, from the layers the view prepared.
    QWidget window;
    auto* rows = new QVBoxLayout(&window);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    auto* above = new QWidget;
    above->setFixedHeight(57);
    rows->addWidget(above);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(0);
    auto* beside = new QWidget;
    beside->setFixedWidth(31);
    columns->addWidget(beside);
    ShownView shown(3, 5000);
    columns->addWidget(&shown.view);
    rows->addLayout(columns);
    window.resize(671, 457);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::qWait(10);
    const quint64 builds = shown.builds();

    const QImage whole = window.grab().toImage();
    const QImage alone = shown.grab();
    const QPoint at = shown.view.viewport()->mapTo(&window, QPoint(0, 0));
    QCOMPARE(at, QPoint(31, 57));
    const QImage inWindow = whole.copy(QRect(at, alone.size()));
    if (inWindow != alone) {
        inWindow.save("/tmp/gnssplot_in_window.png");
        alone.save("/tmp/gnssplot_alone.png");
    }
    QVERIFY(inWindow == alone);
    // Both paints used the layers made before them.
    QCOMPARE(shown.builds(), builds);
}

void tst_CurveLayer::otherDevices()
{
    // One curve of a million samples: on screen, printed through
    // QGraphicsView::render at another scale, recorded as vector output and
    // written to a PDF. Every picture shows the curve where its samples are.
    const int n = 1000000;
    QVector<double> xs(n), ys(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = i;
        ys[i] = (i / 100000) % 2 ? 0.5 : -0.5;
    }
    ys[0] = 1.0;
    CurveGraphicsView view;
    gt::makeBare(view);
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    view.getCurveScene()->addCurve("a", gt::makeDataSet(xs, {ys}), true, Qt::blue,
                                   ECurveShowCap_Line, true);
    view.resize(800, 540);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setCurvesPosToVerticalZero();
    QTest::qWait(10);
    const QImage screen = view.viewport()->grab().toImage();
    // Where sample s at value y lands, through a scene-to-image transform:
    // the area is -1 .. 1 over a 720 x 500 data area.
    const auto curveAt = [&](const QImage& image, const QTransform& sceneToImage,
                             double sample, double y) {
        const QPointF scenePoint(sample * 720.0 / (n - 1), -(y + 1.0) * 250.0);
        return gt::anyNear(image, sceneToImage.map(scenePoint).toPoint(), 2, gt::isBluish);
    };
    const QTransform onScreen = view.viewportTransform();
    PIXEL_VERIFY(curveAt(screen, onScreen, 50000, -0.5), screen, "layer_screen");
    PIXEL_VERIFY(curveAt(screen, onScreen, 150000, 0.5), screen, "layer_screen");
    PIXEL_VERIFY(!curveAt(screen, onScreen, 50000, 0.5), screen, "layer_screen");

    // Printing path: half the size, through QGraphicsView::render.
    QImage printed(400, 270, QImage::Format_ARGB32_Premultiplied);
    printed.fill(Qt::white);
    {
        QPainter painter(&printed);
        view.render(&painter, QRectF(0, 0, 400, 270), view.viewport()->rect());
    }
    const QTransform half = onScreen * QTransform::fromScale(0.5, 0.5);
    PIXEL_VERIFY(curveAt(printed, half, 50000, -0.5), printed, "layer_printed");
    PIXEL_VERIFY(curveAt(printed, half, 150000, 0.5), printed, "layer_printed");

    // Vector output: recorded, then replayed into an image.
    QPicture picture;
    {
        QPainter painter(&picture);
        view.render(&painter, QRectF(0, 0, 800, 540), view.viewport()->rect());
    }
    QImage replayed(800, 540, QImage::Format_ARGB32_Premultiplied);
    replayed.fill(Qt::white);
    {
        QPainter painter(&replayed);
        painter.drawPicture(0, 0, picture);
    }
    PIXEL_VERIFY(curveAt(replayed, onScreen, 50000, -0.5), replayed, "layer_picture");
    PIXEL_VERIFY(curveAt(replayed, onScreen, 150000, 0.5), replayed, "layer_picture");
    QVERIFY2(picture.size() < 1000000, qPrintable(QString::number(picture.size())));

    // A PDF: small, yet with the curve in it as vectors, so bigger than
    // the same page with the curve hidden (frame, labels and boxes only).
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
    const qint64 withCurve = pdfSize();
    view.getCurveScene()->setCurveShowParam_visible("a", false);
    const qint64 frameOnly = pdfSize();
    QVERIFY2(withCurve > frameOnly + 2000,
             qPrintable(QStringLiteral("%1 vs %2").arg(withCurve).arg(frameOnly)));
    QVERIFY2(withCurve < 1000000, qPrintable(QString::number(withCurve)));
}

namespace {

// The curves of a ShownView as the reference draws them: Y index 0 of each,
// in name order, in the registry's colour at alpha 128.
QVector<PlainCurve> plainCurvesOf(CurveGraphicsView& view, const QStringList& names)
{
    QVector<PlainCurve> curves;
    for (const QString& name : names) {
        const auto* set = qobject_cast<const Curve_DataSet_XY*>(
            view.getCurveScene()->getCurve(name));
        PlainCurve curve;
        for (int k = 0; k < set->getAxisNum(); ++k) {
            const AxisData* axis = set->getAxisData(k);
            qint64 n = 0;
            const double* values = axis->getData(0, &n);
            QVector<double> copy(static_cast<int>(n));
            std::copy(values, values + n, copy.begin());
            if (k == 0) {
                curve.xs = copy;
            } else {
                curve.ys.append(copy);
                std::set<qint64> breaks;
                axis->getBreakInfo(breaks);
                curve.breaks.append(breaks);
            }
        }
        QColor colour = view.getCurveScene()->getCurveShowParam_color(name);
        colour.setAlpha(128);
        curve.colours = {colour};
        curve.shown = {0};
        curves.append(curve);
    }
    return curves;
}

PlainArea areaOf(CurveGraphicsView& view, const QSize& dataArea)
{
    PlainArea area{0, 0, 0, 0, dataArea.width(), dataArea.height()};
    auto* coord = qobject_cast<Curve_Coord_XY*>(view.getCurveScene()->getCoord_Local());
    coord->getArea(area.xMin, area.xMax, area.yMin, area.yMax);
    return area;
}

} // namespace

void tst_CurveLayer::composesCurvesInOrder()
{
    // Five crossing curves in one view: the one picture the view paints is
    // every curve's n-fold blend composed over those before it, in name
    // order.
    ShownView shown(5, 6000);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.view));
    shown.grab();
    const CurvePicture* picture = shown.picture();
    QVERIFY(picture);
    const QTransform device =
        shown.items().first()->deviceTransform(shown.view.viewportTransform());
    const QStringList names{"C00", "C01", "C02", "C03", "C04"};
    const QRectF data = CurveGraphicsSceneAccess::dataRectInScene(
        qobject_cast<CurveGraphicsScene*>(shown.view.scene()));
    const QSize dataArea(int(data.width()), int(data.height()));
    const QRect bounds = picture->target().bounds;
    const QImage expected =
        referencePicture(plainCurvesOf(shown.view, names), areaOf(shown.view, dataArea),
                         device * QTransform::fromTranslate(-bounds.left(), -bounds.top()),
                         bounds.size());
    if (picture->image() != expected) {
        picture->image().save("/tmp/gnssplot_picture.png");
        expected.save("/tmp/gnssplot_picture_expected.png");
    }
    QVERIFY(picture->image() == expected);
}

void tst_CurveLayer::stripesMatchPlainDrawer_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::addColumn<bool>("bPoints");
    QTest::newRow("lines") << 1.0 << false;
    QTest::newRow("lines at ratio 2") << 2.0 << false;
    QTest::newRow("points") << 1.0 << true;
}

void tst_CurveLayer::stripesMatchPlainDrawer()
{
    // Enough samples for the picture to be made in stripes on two threads:
    // runs of 1,500 points (painted 1.333 wide), of 2,500 (counted), single
    // points and NaN gaps that a stripe's edge may cut through.
    QFETCH(qreal, ratio);
    QFETCH(bool, bPoints);
    const int poolThreads = QThreadPool::globalInstance()->maxThreadCount();
    QThreadPool::globalInstance()->setMaxThreadCount(2);
    const auto restore = qScopeGuard(
        [poolThreads]() { QThreadPool::globalInstance()->setMaxThreadCount(poolThreads); });

    const int n = 300000;
    QVector<double> xs(n), ys(n);
    std::set<qint64> breaks;
    QRandomGenerator rng(23);
    qint64 next = 0;
    for (int i = 0; i < n; ++i) {
        xs[i] = i;
        ys[i] = (i / 40) % 97 == 5 ? gt::NaN : 0.7 * std::sin(i * 2e-4) + 0.2 * rng.generateDouble();
        if (i == next) {
            breaks.insert(i);
            const int kind = int(rng.bounded(3));
            next += kind == 0 ? 1 : kind == 1 ? 1500 : 2500;
        }
    }
    breaks.erase(n - 1);
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, n - 1, -1, 1));
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    const QColor colour(40, 160, 90, 140);
    item.setPenColor(colour);
    item.setDataArea(600, 180);
    if (bPoints) {
        // The points style comes from the registry; a stand-alone item has
        // none, so the plain drawer is compared with a registry item below.
        CurveScene registry;
        registry.setCoord(&coord, false);
        registry.addCurve(QStringLiteral("p"), &dataSet, false, colour, ECurveShowCap_Point,
                          true);
        CurveGraphicsItem_Curve_XY points(&registry, &coord, QStringLiteral("p"), &dataSet,
                                          nullptr);
        points.setPenColor(colour);
        points.setDataArea(600, 180);
        QCOMPARE(points.showCap(), ECurveShowCap_Point);
        QImage target(QSize(620, 200) * ratio, QImage::Format_ARGB32_Premultiplied);
        target.setDevicePixelRatio(ratio);
        PlainCurve curve{xs, {ys}, {breaks}, {colour}, {0}, true};
        const QImage expected = paintAndDrawPlainly(points, curve, {0, n - 1.0, -1, 1, 600, 180},
                                                    target, QTransform::fromTranslate(5, 190));
        if (pictureOf(points) != expected) {
            pictureOf(points).save("/tmp/gnssplot_stripes.png");
            expected.save("/tmp/gnssplot_stripes_expected.png");
        }
        QVERIFY(pictureOf(points) == expected);
        return;
    }
    QImage target(QSize(620, 200) * ratio, QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(ratio);
    const PlainCurve curve{xs, {ys}, {breaks}, {colour}, {0}};
    const QImage expected = paintAndDrawPlainly(item, curve, {0, n - 1.0, -1, 1, 600, 180},
                                                target, QTransform::fromTranslate(5, 190));
    if (pictureOf(item) != expected) {
        pictureOf(item).save("/tmp/gnssplot_stripes.png");
        expected.save("/tmp/gnssplot_stripes_expected.png");
    }
    QVERIFY(pictureOf(item) == expected);
}

void tst_CurveLayer::listeningFixesWhatIsShown()
{
    // A change the curves listened to but that was not painted yet fixes
    // what they show: switched off right after it, a publish that follows
    // does not reach the picture.
    ShownView shown(2, 5000);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.view));
    shown.grab();
    auto* scene = qobject_cast<CurveGraphicsScene*>(shown.view.scene());
    auto* dataSet = const_cast<Curve_DataSet_XY*>(qobject_cast<const Curve_DataSet_XY*>(
        shown.view.getCurveScene()->getCurve(QStringLiteral("C00"))));
    QVector<double> listened(5000);
    QVector<double> unheard(5000);
    for (int i = 0; i < 5000; ++i) {
        listened[i] = 0.4 * std::sin(i * 0.01);
        unheard[i] = -0.4;
    }
    gt::fillAxis(dataSet->getAxisData(1), listened);
    scene->switchOffCurvesListen();
    gt::fillAxis(dataSet->getAxisData(1), unheard);
    const QImage frozen = shown.grab();
    scene->switchOnCurvesListen();

    // The same view with the listened values published normally.
    ShownView reference(2, 5000);
    QVERIFY(QTest::qWaitForWindowExposed(&reference.view));
    auto* referenceSet = const_cast<Curve_DataSet_XY*>(qobject_cast<const Curve_DataSet_XY*>(
        reference.view.getCurveScene()->getCurve(QStringLiteral("C00"))));
    gt::fillAxis(referenceSet->getAxisData(1), listened);
    const QImage expected = reference.grab();
    if (frozen != expected) {
        frozen.save("/tmp/gnssplot_frozen.png");
        expected.save("/tmp/gnssplot_frozen_expected.png");
    }
    QVERIFY(frozen == expected);
    // Switching listening on changes nothing by itself.
    QVERIFY(shown.grab() == expected);
}

void tst_CurveLayer::mixIgnoresOrder()
{
    // Two dense curves of different colours over the same place: mixed by
    // count, swapping their order leaves every pixel as it was; composed in
    // order (the default), the later one covers the earlier.
    // Enough samples (300,000) for the picture to be made in stripes.
    const int n = 150000;
    QVector<double> xs(n), ys(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = i;
        ys[i] = 0.5 * std::sin(i * 0.37);
    }
    // Every fifth run short, so that some of each curve is painted on top
    // of the mix, in stripes.
    std::set<qint64> breaks;
    for (qint64 b = 0; b + 1 < n; b += (b / 9000) % 5 == 0 ? 1500 : 9000)
        breaks.insert(b + 1500);
    breaks.erase(n - 1);
    const int poolThreads = QThreadPool::globalInstance()->maxThreadCount();
    const auto restore = qScopeGuard(
        [poolThreads]() { QThreadPool::globalInstance()->setMaxThreadCount(poolThreads); });
    // Both orders on two threads, then the first order on one; then with
    // short runs, which are painted on top in order, on two threads and on
    // one.
    QImage pictures[2][5];
    for (int mix = 0; mix < 2; ++mix) {
        for (int order = 0; order < 5; ++order) {
            QThreadPool::globalInstance()->setMaxThreadCount(order == 2 || order == 4 ? 1 : 2);
            CurveGraphicsView view;
            gt::makeBare(view);
            view.setOrderIndependentMix(mix == 1);
            QCOMPARE(view.isOrderIndependentMix(), mix == 1);
            view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
            const QColor colours[2] = {QColor(220, 30, 30), QColor(30, 30, 220)};
            for (int c = 0; c < 2; ++c) {
                auto* set = new Curve_DataSet_XY(1);
                gt::fillAxis(set->getAxisData(0), xs);
                gt::fillAxis(set->getAxisData(1), ys, order >= 3 ? breaks : std::set<qint64>{});
                view.getCurveScene()->addCurve(QStringLiteral("C%1").arg(c), set, true,
                                               colours[c ^ int(order == 1)], ECurveShowCap_Line, true);
            }
            view.resize(400, 300);
            view.show();
            QVERIFY(QTest::qWaitForWindowExposed(&view));
            view.setCurvesPosToVerticalZero();
            QTest::qWait(10);
            pictures[mix][order] = view.viewport()->grab().toImage();
        }
    }
    QVERIFY(pictures[0][0] != pictures[0][1]);
    QVERIFY(pictures[1][0] == pictures[1][1]);
    QVERIFY(pictures[1][0] == pictures[1][2]);
    QVERIFY(pictures[0][0] == pictures[0][2]);
    QVERIFY(pictures[1][3] == pictures[1][4]);
    QVERIFY(pictures[0][3] == pictures[0][4]);
    QVERIFY(pictures[1][3] != pictures[1][0]);
    // Both colours show in the mix.
    const QRgb middle = pictures[1][0].pixel(200, 135);
    QVERIFY2(qRed(middle) > qGreen(middle) + 20 && qBlue(middle) > qGreen(middle) + 20,
             qPrintable(QString::number(middle, 16)));
}

void tst_CurveLayer::mapPathsAgree_data()
{
    QTest::addColumn<int>("path");
    QTest::newRow("SSE2") << int(CurveRaster::MapPath::Sse2);
    QTest::newRow("AVX2") << int(CurveRaster::MapPath::Avx2);
}

void tst_CurveLayer::mapPathsAgree()
{
    // Every way of mapping several samples at a time gives the pixels of the
    // plain one, to the bit: ordinary, huge, infinite and NaN values, both Y
    // directions, odd counts (the tails) and columns without a pixel.
    QFETCH(int, path);
    const auto wanted = CurveRaster::MapPath(path);
    if (!CurveRaster::isMapPathAvailable(wanted))
        QSKIP("not available on this processor");
    const CurveRaster::MapPath before = CurveRaster::mapPath();
    const auto restore = qScopeGuard([before]() { CurveRaster::setMapPath(before); });

    QRandomGenerator rng(5);
    const double inf = std::numeric_limits<double>::infinity();
    const int n = 4099;
    std::vector<double> values(static_cast<size_t>(n));
    for (double& v : values) {
        const int kind = int(rng.bounded(10));
        v = kind == 0 ? gt::NaN : kind == 1 ? (rng.bounded(2) ? inf : -inf)
            : kind == 2 ? (rng.generateDouble() - 0.5) * 1e300
            : (rng.generateDouble() - 0.5) * 4e3;
    }
    std::vector<qint32> columns(static_cast<size_t>(n));
    for (qint32& c : columns)
        c = rng.bounded(7) == 0 ? CurveRaster::kNoPixel : qint32(rng.bounded(800));
    for (const bool bYDown : {false, true}) {
        const CoordMapping mapping(QRectF(0.5, -500.25, 719.75, 500.5), -1000.0, 1000.0, -3.0,
                                   7.0, bYDown);
        for (const double scale : {1.0, 2.0, -1.5}) {
            std::vector<qint32> plainRows(static_cast<size_t>(n)), rows(plainRows.size());
            std::vector<qint32> plainColumns(plainRows.size()), mapped(plainRows.size());
            QVERIFY(CurveRaster::setMapPath(CurveRaster::MapPath::Scalar));
            CurveRaster::mapRows(mapping, scale, 3.5, values.data(), columns.data(), n,
                                 plainRows.data());
            CurveRaster::mapColumns(mapping, scale, 0.25, values.data(), n,
                                    plainColumns.data());
            QVERIFY(CurveRaster::setMapPath(wanted));
            CurveRaster::mapRows(mapping, scale, 3.5, values.data(), columns.data(), n,
                                 rows.data());
            CurveRaster::mapColumns(mapping, scale, 0.25, values.data(), n, mapped.data());
            for (int i = 0; i < n; ++i) {
                QCOMPARE(rows[size_t(i)], plainRows[size_t(i)]);
                QCOMPARE(mapped[size_t(i)], plainColumns[size_t(i)]);
            }
        }
    }
}

QTEST_MAIN(tst_CurveLayer)
#include "tst_curvelayer.moc"
