// SPDX-License-Identifier: MIT
// Speed of the curve plot against two general plotting libraries, with the
// same data and the same 800 x 540 image for every contender:
// - one curve of N samples (NaN samples and a few breaks): load + first
//   paint, re-paint of an unchanged plot, one wheel step + paint, and the
//   off-screen pixmap;
// - a full GNSS day: 122 satellites x 86,400 epochs x 2 Y axes in one view;
// - publishing an axis and mapping it, against a plain read of its bytes.
// Memory is measured in separate processes: bench_curve --memory <lib> <N>
// prints the bytes per sample beyond the axis buffers (see run_benchmarks.py).
#include "AxisData.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsView.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsScene_p.h"
#include "CurvePicture_p.h"
#include "EventMark.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QThread>
#include <QThreadPool>
#include <QWheelEvent>

#include <benchmark/benchmark.h>

#ifdef GNSSPLOT_BENCH_PEERS
#include <qcustomplot.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_renderer.h>
#endif

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace {

const QSize kImage(800, 540);
constexpr qint64 kEpochMs = 1000;
const double kDay0 = 1.6e12; // some day in 2020, milliseconds since 1970

// Host data: 1 Hz epochs, a multipath-like curve with noise, one NaN in
// every 1,000 samples and three breaks. Same values for every contender.
struct HostData
{
    std::vector<double> xs;
    std::vector<double> ys;
    std::set<qint64> breaks;
};

void fillSamples(qint64 n, double* xs, double* ys, quint32 seed)
{
    quint32 state = seed * 2654435761u + 1u;
    for (qint64 i = 0; i < n; ++i) {
        state = state * 1664525u + 1013904223u;
        const double noise = double(state >> 8) / double(1u << 24) - 0.5;
        xs[i] = kDay0 + double(i * kEpochMs);
        ys[i] = (i % 1000 == 999) ? std::numeric_limits<double>::quiet_NaN()
                                  : 0.8 * std::sin(double(i) * 1.7e-3 + seed) + 0.3 * noise;
    }
}

std::set<qint64> breaksOf(qint64 n)
{
    return n > 10 ? std::set<qint64>{n / 4, n / 2, n / 2 + 1} : std::set<qint64>{};
}

const HostData& hostData(qint64 n)
{
    static std::map<qint64, std::unique_ptr<HostData>> cache;
    auto& slot = cache[n];
    if (!slot) {
        slot.reset(new HostData);
        slot->xs.resize(size_t(n));
        slot->ys.resize(size_t(n));
        fillSamples(n, slot->xs.data(), slot->ys.data(), 1);
        slot->breaks = breaksOf(n);
    }
    return *slot;
}

// The host's side of gnssplot: it computes its values straight into the
// axis buffers (here: copies them from where the generator left them).
void writeAxis(AxisData* axis, qint64 n, const double* values, const std::set<qint64>& breaks)
{
    axis->beginSetData();
    axis->allocData(n, nullptr);
    std::memcpy(axis->getInSettingData(0, nullptr), values, size_t(n) * sizeof(double));
    axis->setInSettingBreaks(breaks);
}

Curve_DataSet_XY* writtenDataSet(const HostData& d)
{
    auto* set = new Curve_DataSet_XY(1, nullptr);
    const qint64 n = qint64(d.xs.size());
    writeAxis(set->getAxisData(0), n, d.xs.data(), {});
    writeAxis(set->getAxisData(1), n, d.ys.data(), d.breaks);
    return set;
}

void publish(Curve_DataSet_XY* set)
{
    for (int k = 0; k < set->getAxisNum(); ++k)
        set->getAxisData(k)->endSetData(true);
}

struct OurPlot
{
    OurPlot()
    {
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(kImage);
        view.show();
        view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
        QCoreApplication::processEvents();
        // The target is the window system's buffer, long there when the
        // host loads data, as QCustomPlot's is once it has been shown.
        image.fill(Qt::white);
    }
    // Paints the viewport as the window system asks for it on screen.
    void render()
    {
        QPainter painter(&image);
        view.viewport()->render(&painter);
    }
    void wheel(int delta)
    {
        QWheelEvent event(QPointF(400, 270), QPointF(400, 270), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }
    CurveGraphicsView view;
    QImage image{kImage, QImage::Format_ARGB32_Premultiplied};
};

void BM_Ours_LoadPaint(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto plot = std::make_unique<OurPlot>();
        state.ResumeTiming();
        // The host's work is charged as for the peers: from its own arrays
        // into the library's buffers.
        Curve_DataSet_XY* set = writtenDataSet(d);
        publish(set);
        plot->view.getCurveScene()->addCurve(QStringLiteral("G01"), set, true, Qt::blue,
                                             ECurveShowCap_Line, true);
        plot->view.setCurvesPosToVerticalZero();
        plot->render();
        benchmark::DoNotOptimize(plot->image.constBits());
        state.PauseTiming();
        plot.reset();
        state.ResumeTiming();
    }
}

struct LoadedOurPlot : OurPlot
{
    explicit LoadedOurPlot(const HostData& d)
    {
        Curve_DataSet_XY* set = writtenDataSet(d);
        publish(set);
        view.getCurveScene()->addCurve(QStringLiteral("G01"), set, true, Qt::blue,
                                       ECurveShowCap_Line, true);
        view.setCurvesPosToVerticalZero();
        render();
    }
};

void BM_Ours_Repaint(benchmark::State& state)
{
    LoadedOurPlot plot(hostData(state.range(0)));
    for (auto _ : state) {
        plot.render();
        benchmark::DoNotOptimize(plot.image.constBits());
    }
}

void BM_Ours_WheelPaint(benchmark::State& state)
{
    LoadedOurPlot plot(hostData(state.range(0)));
    int delta = 120;
    for (auto _ : state) {
        plot.wheel(delta);
        plot.render();
        delta = -delta;
        benchmark::DoNotOptimize(plot.image.constBits());
    }
}

void BM_Ours_Pixmap(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    std::unique_ptr<Curve_DataSet_XY> set(writtenDataSet(d));
    publish(set.get());
    Curve_Coord_XY coord;
    coord.setArea(d.xs.front(), d.xs.back(), -1.2, 1.2);
    QPixmap pixmap(kImage);
    for (auto _ : state) {
        CurveGraphicsScene::DrawXYCurveToPixmap(&coord, set.get(), Qt::blue, &pixmap);
        benchmark::DoNotOptimize(&pixmap);
    }
}

// Rebuilding the item's runs (one pass per Y axis) against Curve_Coord_XY::map
// and a plain read of the same 16 bytes per sample.
void BM_Ours_Rebuild(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    std::unique_ptr<Curve_DataSet_XY> set(writtenDataSet(d));
    publish(set.get());
    Curve_Coord_XY coord;
    coord.setArea(d.xs.front(), d.xs.back(), -1.2, 1.2);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), set.get(), nullptr);
    item.setDataArea(720, 500);
    for (auto _ : state)
        item.rebuildPolylines();
}

void BM_Map(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    Curve_Coord_XY coord;
    coord.setArea(d.xs.front(), d.xs.back(), -1.2, 1.2);
    std::vector<double> px(d.xs.size()), py(d.xs.size());
    for (auto _ : state) {
        coord.map(QRectF(0, -500, 720, 500), qint64(d.xs.size()), d.xs.data(), d.ys.data(),
                  px.data(), py.data(), false);
        benchmark::DoNotOptimize(px.data());
    }
}

void BM_PlainRead(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    for (auto _ : state) {
        double sum = 0.0;
        const size_t n = d.xs.size();
        for (size_t i = 0; i < n; ++i)
            sum += d.xs[i] + d.ys[i];
        benchmark::DoNotOptimize(sum);
    }
}

// Writing a fresh block in place and publishing it: the host's whole cost.
void BM_AxisPublish(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    AxisData axis;
    for (auto _ : state) {
        writeAxis(&axis, qint64(d.ys.size()), d.ys.data(), d.breaks);
        axis.endSetData(true);
    }
}

// --- The full day ---------------------------------------------------------

constexpr int kSatellites = 122;
constexpr qint64 kDayEpochs = 86400;

struct DayPlot : OurPlot
{
    explicit DayPlot(int satellites = kSatellites)
    {
        std::vector<double> xs(kDayEpochs), y1(kDayEpochs), y2(kDayEpochs);
        for (int s = 0; s < satellites; ++s) {
            fillSamples(kDayEpochs, xs.data(), y1.data(), quint32(2 * s + 1));
            fillSamples(kDayEpochs, xs.data(), y2.data(), quint32(2 * s + 2));
            auto* set = new Curve_DataSet_XY(2, nullptr);
            writeAxis(set->getAxisData(0), kDayEpochs, xs.data(), {});
            writeAxis(set->getAxisData(1), kDayEpochs, y1.data(), breaksOf(kDayEpochs));
            writeAxis(set->getAxisData(2), kDayEpochs, y2.data(), breaksOf(kDayEpochs));
            publish(set);
            view.getCurveScene()->addCurve(QStringLiteral("S%1").arg(s, 3, 10, QLatin1Char('0')),
                                           set, true, QColor::fromHsv(s * 3 % 360, 200, 200),
                                           ECurveShowCap_Line, true);
        }
        view.setCurvesPosToVerticalZero();
        render();
    }
};

// Argument: worker threads for the rebuild.
void BM_Ours_DayWheel(benchmark::State& state)
{
    QThreadPool::globalInstance()->setMaxThreadCount(int(state.range(0)));
    DayPlot plot;
    int delta = 120;
    for (auto _ : state) {
        plot.wheel(delta);
        plot.render();
        delta = -delta;
    }
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
}

// A Ctrl+wheel time-zoom step about the cursor and the paint after it, in
// and out in turn: one rebuild of every item, as a Y wheel step, with the
// X columns found again instead of the Y rows.
void BM_Ours_DayTimeZoom(benchmark::State& state)
{
    DayPlot plot;
    plot.view.setTimeNavigationEnabled(true);
    int delta = 120;
    for (auto _ : state) {
        QWheelEvent event(QPointF(300, 270), QPointF(300, 270), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(plot.view.viewport(), &event);
        plot.render();
        delta = -delta;
    }
}

// A quarter of the day panned by a tenth of its width, to and fro, as a drag
// does it: the columns are found again, the rows of the samples that stay
// in view are kept.
void BM_Ours_DayTimePan(benchmark::State& state)
{
    DayPlot plot;
    plot.view.setTimeNavigationEnabled(true);
    double tMin = 0.0;
    double tMax = 0.0;
    plot.view.getTimeWindow(tMin, tMax);
    const double quarter = (tMax - tMin) / 4.0;
    tMin += 1.5 * quarter;
    plot.view.setTimeWindow(tMin, tMin + quarter);
    plot.render();
    double shift = quarter / 10.0;
    for (auto _ : state) {
        tMin += shift;
        plot.view.setTimeWindow(tMin, tMin + quarter);
        plot.render();
        shift = -shift;
    }
}

// The hover read-out's query with 145 curves of a day, both Y axes shown,
// at cursor positions swept across the data area along viewport row
// range(0): 240 runs through the curves, 20 lies above most of them, where
// every curve is searched to the full radius.
void BM_Ours_DayHover(benchmark::State& state)
{
    DayPlot plot(145);
    // Both boxes ticked, as a user comparing the two frequencies has them.
    const QMap<QString, bool> both{{QStringLiteral("F 1"), true}, {QStringLiteral("F 2"), true}};
    for (QGraphicsItem* item : plot.view.scene()->items()) {
        if (auto* curve = dynamic_cast<CurveGraphicsItem_Curve_XY*>(item))
            curve->setVisibleSelection(both);
    }
    plot.render();
    CurveGraphicsView::HoverSample sample;
    int x = 81;
    qint64 hits = 0;
    for (auto _ : state) {
        hits += plot.view.hoverSampleAt(QPoint(x, int(state.range(0))), sample) ? 1 : 0;
        x = x >= 790 ? 81 : x + 7;
    }
    state.counters["hit share"] = double(hits) / double(state.iterations());
}

// The day's wheel step with event marks on every curve: 40 a curve, a day
// of cycle slips, losses of lock and gaps. Marks are drawn over the shared
// picture, not counted into it, so the step should cost what
// BM_Ours_DayWheel costs in the same run. Argument: worker threads.
void BM_Ours_DayWheelMarks(benchmark::State& state)
{
    QThreadPool::globalInstance()->setMaxThreadCount(int(state.range(0)));
    DayPlot plot;
    CurveScene* registry = plot.view.getCurveScene();
    for (int c = 0; c < kSatellites; ++c) {
        QVector<EventMark> marks;
        for (int i = 0; i < 40; ++i)
            marks.append({qint64(i) * 2111 + c * 7, 1 + (i + c) % 3});
        registry->setCurveEventMarks(QStringLiteral("S%1").arg(c, 3, 10, QLatin1Char('0')),
                                     marks);
    }
    plot.render();
    int delta = 120;
    for (auto _ : state) {
        plot.wheel(delta);
        plot.render();
        delta = -delta;
    }
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
}

// A mouse move of the hover read-out and the paint after it, swept along
// viewport row 240 through the day's curves, with the picked-sample marker
// off (0) or on (1). On, a move repaints the data area with the ring and the
// named curve in front; the picture of all curves is never built again
// (counter "shared builds"), the named curve's own picture only when
// another curve is named ("front builds", per move).
void BM_Ours_DayHoverMarker(benchmark::State& state)
{
    DayPlot plot;
    plot.view.setHoverReadOutEnabled(true);
    plot.view.setPickedSampleMarkerShown(state.range(0) != 0);
    const auto* scene = qobject_cast<CurveGraphicsScene*>(plot.view.scene());
    const CurvePicture* shared = CurveGraphicsSceneAccess::picture(scene);
    const CurvePicture* front = CurveGraphicsSceneAccess::frontPicture(scene);
    plot.render();
    const quint64 sharedBefore = shared->buildCount();
    const quint64 frontBefore = front->buildCount();
    int x = 81;
    for (auto _ : state) {
        const QPoint pos(x, 240);
        QMouseEvent event(QEvent::MouseMove, QPointF(pos),
                          QPointF(plot.view.viewport()->mapToGlobal(pos)), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(plot.view.viewport(), &event);
        plot.render();
        x = x >= 790 ? 81 : x + 3;
    }
    const double moves = double(state.iterations());
    state.counters["shared builds"] = double(shared->buildCount() - sharedBefore) / moves;
    state.counters["front builds"] = double(front->buildCount() - frontBefore) / moves;
}

// Mouse moves along one curve of the day's crowd with the picked-sample
// marker on: each names the next sample of the same curve, so only the
// ring's old and new places are painted again and nothing is built.
void BM_Ours_DayHoverAlongCurve(benchmark::State& state)
{
    DayPlot plot;
    plot.view.setHoverReadOutEnabled(true);
    plot.view.setPickedSampleMarkerShown(true);
    plot.render();
    // The path: from the curve found at row 240, follow that curve to the
    // right, looking a few rows about its last place.
    CurveGraphicsView::HoverSample sample;
    std::vector<QPoint> path;
    QString name;
    int y = 240;
    for (int x = 81; x < 790; x += 3) {
        for (int dy = 0; dy <= 12; ++dy) {
            const int tries[2] = {y - dy, y + dy};
            bool bFound = false;
            for (int ty : tries) {
                if (!plot.view.hoverSampleAt(QPoint(x, ty), sample))
                    continue;
                if (name.isEmpty())
                    name = sample.curveName;
                if (sample.curveName == name) {
                    path.emplace_back(x, ty);
                    y = ty;
                    bFound = true;
                    break;
                }
            }
            if (bFound)
                break;
        }
    }
    const auto* scene = qobject_cast<CurveGraphicsScene*>(plot.view.scene());
    const CurvePicture* shared = CurveGraphicsSceneAccess::picture(scene);
    const CurvePicture* front = CurveGraphicsSceneAccess::frontPicture(scene);
    size_t i = 0;
    const auto moveTo = [&plot](QPoint pos) {
        QMouseEvent event(QEvent::MouseMove, QPointF(pos),
                          QPointF(plot.view.viewport()->mapToGlobal(pos)), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(plot.view.viewport(), &event);
    };
    moveTo(path.at(0));
    plot.render();
    const quint64 sharedBefore = shared->buildCount();
    const quint64 frontBefore = front->buildCount();
    for (auto _ : state) {
        i = i + 1 < path.size() ? i + 1 : 1;
        moveTo(path.at(i));
        // The window system paints what the view asked for.
        QCoreApplication::processEvents();
    }
    const double moves = double(state.iterations());
    state.counters["path"] = double(path.size());
    state.counters["shared builds"] = double(shared->buildCount() - sharedBefore) / moves;
    state.counters["front builds"] = double(front->buildCount() - frontBefore) / moves;
}

void BM_Ours_DayResize(benchmark::State& state)
{
    DayPlot plot;
    bool larger = true;
    for (auto _ : state) {
        plot.view.resize(larger ? QSize(820, 560) : kImage);
        QCoreApplication::sendPostedEvents();
        plot.render();
        larger = !larger;
    }
}

#ifdef GNSSPLOT_BENCH_PEERS

// --- QCustomPlot ------------------------------------------------------------

struct QcpPlot
{
    // One blue curve of the host data, fitted and drawn once.
    void show(const HostData& d);

    QcpPlot()
    {
        plot.resize(kImage);
        plot.show();
        QCoreApplication::processEvents();
    }
    QCPGraph* addGraph(const QVector<double>& xs, const QVector<double>& ys, const QColor& c)
    {
        QCPGraph* graph = plot.addGraph();
        graph->setPen(QPen(c, 1.0));
        graph->setData(xs, ys, true);
        return graph;
    }
    void fit(double yLimit)
    {
        plot.xAxis->setRange(kDay0, kDay0 + double(count - 1) * kEpochMs);
        plot.yAxis->setRange(-yLimit, yLimit);
    }
    void replot() { plot.replot(QCustomPlot::rpImmediateRefresh); }
    QCustomPlot plot;
    qint64 count = 0;
};

QVector<double> toQVector(const std::vector<double>& v)
{
    return QVector<double>(v.begin(), v.end());
}

void QcpPlot::show(const HostData& d)
{
    count = qint64(d.xs.size());
    addGraph(toQVector(d.xs), toQVector(d.ys), Qt::blue);
    fit(1.2);
    replot();
}

void BM_Qcp_LoadPaint(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto plot = std::make_unique<QcpPlot>();
        plot->count = qint64(d.xs.size());
        state.ResumeTiming();
        // The host's work as for ours: its arrays into the plot's containers.
        plot->addGraph(toQVector(d.xs), toQVector(d.ys), Qt::blue);
        plot->fit(1.2);
        plot->replot();
        state.PauseTiming();
        plot.reset();
        state.ResumeTiming();
    }
}

void BM_Qcp_Repaint(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    QcpPlot plot;
    plot.show(d);
    for (auto _ : state)
        plot.replot();
}

void BM_Qcp_WheelPaint(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    QcpPlot plot;
    plot.show(d);
    bool wider = true;
    for (auto _ : state) {
        plot.plot.yAxis->scaleRange(wider ? 1.15 : 0.85);
        plot.replot();
        wider = !wider;
    }
}

void BM_Qcp_DayWheel(benchmark::State& state)
{
    QcpPlot plot;
    plot.count = kDayEpochs;
    std::vector<double> xs(kDayEpochs), y1(kDayEpochs), y2(kDayEpochs);
    for (int s = 0; s < kSatellites; ++s) {
        fillSamples(kDayEpochs, xs.data(), y1.data(), quint32(2 * s + 1));
        fillSamples(kDayEpochs, xs.data(), y2.data(), quint32(2 * s + 2));
        const QVector<double> qx = toQVector(xs);
        plot.addGraph(qx, toQVector(y1), QColor::fromHsv(s * 3 % 360, 200, 200));
        plot.addGraph(qx, toQVector(y2), QColor::fromHsv(s * 3 % 360, 200, 200));
    }
    plot.fit(1.2);
    plot.replot();
    bool wider = true;
    for (auto _ : state) {
        plot.plot.yAxis->scaleRange(wider ? 1.15 : 0.85);
        plot.replot();
        wider = !wider;
    }
}

// --- Qwt --------------------------------------------------------------------

struct QwtPlotHost
{
    QwtPlotHost()
    {
        plot.resize(kImage);
        plot.setAutoReplot(false);
    }
    void load(const HostData& d)
    {
        curve = new QwtPlotCurve;
        curve->setPen(QPen(Qt::blue, 1.0));
        curve->setSamples(d.xs.data(), d.ys.data(), int(d.xs.size()));
        curve->attach(&plot);
        plot.setAxisScale(QwtPlot::xBottom, d.xs.front(), d.xs.back());
        plot.setAxisScale(QwtPlot::yLeft, -1.2, 1.2);
    }
    void render()
    {
        image.fill(Qt::white);
        QwtPlotRenderer().renderTo(&plot, image);
    }
    QwtPlot plot;
    QwtPlotCurve* curve = nullptr;
    QImage image{kImage, QImage::Format_ARGB32_Premultiplied};
};

void BM_Qwt_LoadPaint(benchmark::State& state)
{
    const HostData& d = hostData(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto plot = std::make_unique<QwtPlotHost>();
        state.ResumeTiming();
        plot->load(d);
        plot->render();
        state.PauseTiming();
        plot.reset();
        state.ResumeTiming();
    }
}

void BM_Qwt_Repaint(benchmark::State& state)
{
    QwtPlotHost plot;
    plot.load(hostData(state.range(0)));
    plot.render();
    for (auto _ : state)
        plot.render();
}

#endif // GNSSPLOT_BENCH_PEERS

void curveSizes(benchmark::internal::Benchmark* b)
{
    b->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000)->Arg(10000000);
}

// Slow contenders get a fixed, small number of rounds at the largest size.
void slowSizes(benchmark::internal::Benchmark* b)
{
    b->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
}

BENCHMARK(BM_Ours_LoadPaint)->Apply(curveSizes);
BENCHMARK(BM_Ours_Repaint)->Apply(curveSizes);
BENCHMARK(BM_Ours_WheelPaint)->Apply(curveSizes);
BENCHMARK(BM_Ours_Pixmap)->Apply(curveSizes);
BENCHMARK(BM_Ours_Rebuild)->Apply(curveSizes);
BENCHMARK(BM_Map)->Apply(curveSizes);
BENCHMARK(BM_PlainRead)->Apply(curveSizes);
BENCHMARK(BM_AxisPublish)->Apply(curveSizes);
BENCHMARK(BM_Ours_DayWheel)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(1)->Arg(2);
BENCHMARK(BM_Ours_DayTimeZoom)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_DayTimePan)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_DayHover)->Arg(240)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_DayResize)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_DayWheelMarks)
    ->Unit(benchmark::kMillisecond)
    ->ArgName("threads")
    ->Arg(1)
    ->Arg(2);
BENCHMARK(BM_Ours_DayHoverAlongCurve)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_DayHoverMarker)->ArgName("marker")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#ifdef GNSSPLOT_BENCH_PEERS
BENCHMARK(BM_Qcp_LoadPaint)->Apply(curveSizes);
BENCHMARK(BM_Qcp_Repaint)->Apply(curveSizes);
BENCHMARK(BM_Qcp_WheelPaint)->Apply(curveSizes);
BENCHMARK(BM_Qcp_DayWheel)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Qwt_LoadPaint)->Apply(slowSizes);
BENCHMARK(BM_Qwt_LoadPaint)->Unit(benchmark::kMillisecond)->Arg(10000000)->Iterations(1);
BENCHMARK(BM_Qwt_Repaint)->Apply(slowSizes);
BENCHMARK(BM_Qwt_Repaint)->Unit(benchmark::kMillisecond)->Arg(10000000)->Iterations(1);
#endif

// --- Memory, one process per measurement -----------------------------------

qint64 statusKiB(const char* key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(int(std::strlen(key))).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Measures RSS now and restarts the kernel's peak RSS from here.
qint64 startMeasure()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
    return statusKiB("VmRSS:");
}

// The axis buffers (16 bytes per sample: X and Y) are written first; what
// the library then adds while loading and painting is reported.
int measureMemory(const QString& lib, qint64 n)
{
    std::vector<double> xs;
    std::vector<double> ys;
    qint64 before = 0;
    if (lib == QLatin1String("ours")) {
        OurPlot plot;
        // The host computes its values straight into the axis buffers.
        auto* set = new Curve_DataSet_XY(1, nullptr);
        for (int k = 0; k < 2; ++k) {
            set->getAxisData(k)->beginSetData();
            set->getAxisData(k)->allocData(n, nullptr);
        }
        set->getAxisData(1)->setInSettingBreaks(breaksOf(n));
        fillSamples(n, set->getAxisData(0)->getInSettingData(0, nullptr),
                    set->getAxisData(1)->getInSettingData(0, nullptr), 1);
        plot.render();
        before = startMeasure();
        publish(set);
        plot.view.getCurveScene()->addCurve(QStringLiteral("G01"), set, true, Qt::blue,
                                            ECurveShowCap_Line, true);
        plot.view.setCurvesPosToVerticalZero();
        plot.render();
        plot.wheel(120);
        plot.render();
        std::printf("%lld %lld %lld\n", before, statusKiB("VmHWM:"), statusKiB("VmRSS:"));
        return 0;
    }
#ifdef GNSSPLOT_BENCH_PEERS
    xs.resize(size_t(n));
    ys.resize(size_t(n));
    fillSamples(n, xs.data(), ys.data(), 1);
    if (lib == QLatin1String("qcp")) {
        QVector<double> qx = toQVector(xs), qy = toQVector(ys);
        std::vector<double>().swap(xs);
        std::vector<double>().swap(ys);
        QcpPlot plot;
        plot.count = n;
        plot.replot();
        before = startMeasure();
        plot.addGraph(qx, qy, Qt::blue);
        plot.fit(1.2);
        plot.replot();
        plot.plot.yAxis->scaleRange(1.15);
        plot.replot();
        std::printf("%lld %lld %lld\n", before, statusKiB("VmHWM:"), statusKiB("VmRSS:"));
        return 0;
    }
    if (lib == QLatin1String("qwt")) {
        QwtPlotHost plot;
        plot.render();
        before = startMeasure();
        HostData d;
        d.xs.swap(xs);
        d.ys.swap(ys);
        // The host arrays count as the axis buffers; they were touched above.
        plot.load(d);
        plot.render();
        std::printf("%lld %lld %lld\n", before, statusKiB("VmHWM:"), statusKiB("VmRSS:"));
        return 0;
    }
#endif
    return 2;
}

// --- Fidelity: the layer against Qt drawing every point ----------------------

// One curve of 1e6 samples as the live view draws it (alpha-128 pen, the
// view's fit scale), once through the item and once by Qt drawing every
// point of the same runs with the same pen. Prints the touched pixels, those
// that differ at all and those that differ by more than 8 levels, and writes
// both pictures side by side (a 360 x 200 cut at 100%) to \a png.
int measureFidelity(const QString& png)
{
    const HostData& d = hostData(1000000);
    std::unique_ptr<Curve_DataSet_XY> set(writtenDataSet(d));
    publish(set.get());
    Curve_Coord_XY coord;
    coord.setArea(d.xs.front(), d.xs.back(), -1.2, 1.2);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), set.get(), nullptr);
    QColor colour(31, 119, 180);
    colour.setAlpha(128);
    item.setPenColor(colour);
    item.setDataArea(720, 500);
    const QTransform fit(0.995, 0, 0, 0.995, 80.3, 502.6);
    QImage ours(kImage, QImage::Format_ARGB32_Premultiplied);
    QImage qt(kImage, QImage::Format_ARGB32_Premultiplied);
    ours.fill(Qt::white);
    qt.fill(Qt::white);
    {
        QPainter painter(&ours);
        painter.setTransform(fit);
        item.paint(&painter, nullptr, nullptr);
    }
    {
        QPainter painter(&qt);
        painter.setTransform(fit);
        for (const QPolygon& run : item.polylines().value(0)) {
            QPen pen(colour);
            pen.setWidthF(qBound(1.0, 2.0 / (run.size() / 1000.0), 2.0));
            painter.setPen(pen);
            painter.drawPolyline(run);
        }
    }
    qint64 touched = 0, differing = 0, far = 0;
    const QRgb white = qRgb(255, 255, 255);
    for (int y = 0; y < kImage.height(); ++y) {
        for (int x = 0; x < kImage.width(); ++x) {
            const QRgb a = ours.pixel(x, y);
            const QRgb b = qt.pixel(x, y);
            if (a == white && b == white)
                continue;
            ++touched;
            const int delta = std::max({std::abs(qRed(a) - qRed(b)),
                                        std::abs(qGreen(a) - qGreen(b)),
                                        std::abs(qBlue(a) - qBlue(b))});
            differing += delta > 0 ? 1 : 0;
            far += delta > 8 ? 1 : 0;
        }
    }
    const QRect cut(100, 150, 360, 200);
    QImage side(cut.width() * 2 + 10, cut.height(), QImage::Format_RGB32);
    side.fill(Qt::white);
    {
        QPainter painter(&side);
        painter.drawImage(0, 0, ours.copy(cut));
        painter.drawImage(cut.width() + 10, 0, qt.copy(cut));
    }
    side.save(png);
    std::printf("%lld %lld %lld\n", touched, differing, far);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    // Always offscreen, so that numbers compare between machines with and
    // without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--fidelity") == 0)
        return measureFidelity(QString::fromLocal8Bit(argv[2]));
    if (argc == 4 && std::strcmp(argv[1], "--memory") == 0)
        return measureMemory(QString::fromLatin1(argv[2]), QByteArray(argv[3]).toLongLong());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
