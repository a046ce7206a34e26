// SPDX-License-Identifier: MIT
// Timings of the demo host on its real workloads: loading and showing a whole
// day (the synthetic 1 Hz day and the 30 s AJAC file), and one wheel step
// with every curve shown, and the sky tracks of a day from broadcast
// navigation. Run offscreen; wall-clock milliseconds.
#include "DemoHost.h"
#include "DemoWindow.h"
#include "MultipathView.h"
#include "NavigationReader.h"
#include "RinexReader.h"
#include "SkyTracks.h"
#include "SyntheticSource.h"

#include <gnssplot.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace gnssdemo;

namespace {

const QString kAjac = QStringLiteral(GNSSPLOT_TEST_DATA_DIR)
                      + QStringLiteral("/AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz");

// The window's logical size and the display's device pixel ratio; one per
// process ("--window 1920x1080@2"), the ratio being QT_SCALE_FACTOR.
QSize gWindow(1280, 800);
double gRatio = 1.0;

// Paints the view's viewport the way the window system would ask for it.
void paintView(CurveGraphicsView* view, QImage* target)
{
    QPainter painter(target);
    view->viewport()->render(&painter);
}

// An image the size of the view's viewport, with the view painted into it
// once, so that a benchmark's first iteration starts from a shown picture.
QImage paintedFrame(CurveGraphicsView* view)
{
    QImage frame(view->viewport()->size() * gRatio, QImage::Format_ARGB32_Premultiplied);
    frame.setDevicePixelRatio(gRatio);
    paintView(view, &frame);
    return frame;
}

std::unique_ptr<ObservationSource> makeSource(bool rinex, benchmark::State& state)
{
    if (!rinex)
        return std::make_unique<SyntheticSource>();
    QString error;
    std::unique_ptr<ObservationSource> source = RinexReader::readFile(kAjac, &error);
    if (!source)
        state.SkipWithError(error.toUtf8().constData());
    return source;
}

// Shows the window with the day of range(0) loaded (0 synthetic, 1 AJAC);
// false, with the benchmark skipped, when the data cannot be had.
bool showLoaded(DemoWindow& window, benchmark::State& state)
{
    const bool rinex = state.range(0) == 1;
    if (rinex && !QFileInfo::exists(kAjac)) {
        state.SkipWithError("AJAC file not found");
        return false;
    }
    window.resize(gWindow);
    window.show();
    QApplication::processEvents();
    QString error;
    std::unique_ptr<ObservationSource> source = makeSource(rinex, state);
    return source && window.load(std::move(source), &error);
}

// From nothing to every curve and table row painted once: read (or
// generate) the data, compute and publish the curves, fill the table,
// paint the window. range(0): 0 synthetic day, 1 AJAC file.
void BM_LoadAndShow(benchmark::State& state)
{
    const bool rinex = state.range(0) == 1;
    if (rinex && !QFileInfo::exists(kAjac)) {
        state.SkipWithError("AJAC file not found");
        return;
    }
    DemoWindow window;
    window.resize(gWindow);
    window.show();
    QApplication::processEvents();
    QImage frame(window.size(), QImage::Format_ARGB32_Premultiplied);
    qint64 loadMs = 0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        std::unique_ptr<ObservationSource> source = makeSource(rinex, state);
        if (!source)
            return;
        QString error;
        if (!window.load(std::move(source), &error)) {
            state.SkipWithError(error.toUtf8().constData());
            return;
        }
        QPainter painter(&frame);
        window.render(&painter);
        painter.end();
        state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
        loadMs = window.loadStats().loadMs;
    }
    state.counters["curves"] = window.loadStats().curves;
    state.counters["samples"] = double(window.loadStats().multipathSamples);
    state.counters["load_ms"] = double(loadMs);
}
BENCHMARK(BM_LoadAndShow)
    ->ArgName("ajac")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

// One wheel step over the loaded view, then the repaint it asks for:
// the Y range changes, every curve item rebuilds its polylines, and the view
// is painted. Steps alternate in direction so the zoom stays in range.
void BM_WheelStep(benchmark::State& state)
{
    DemoWindow window;
    if (!showLoaded(window, state))
        return;
    CurveGraphicsView* view = window.view();
    QImage frame = paintedFrame(view);
    const QPointF at(view->viewport()->width() / 2.0, view->viewport()->height() / 2.0);
    int step = 0;
    for (auto _ : state) {
        const int delta = (step++ % 2 == 0) ? 120 : -120;
        QWheelEvent wheel(at, view->viewport()->mapToGlobal(at.toPoint()), QPoint(),
                          QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(view->viewport(), &wheel);
        paintView(view, &frame);
    }
    state.counters["curves"] = window.loadStats().curves;
}
BENCHMARK(BM_WheelStep)->ArgName("ajac")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The paint alone, without a wheel step: what the wheel step costs beyond
// it is the area change and the items' rebuild.
void BM_ViewPaint(benchmark::State& state)
{
    DemoWindow window;
    if (!showLoaded(window, state))
        return;
    QImage frame = paintedFrame(window.view());
    for (auto _ : state)
        paintView(window.view(), &frame);
}
BENCHMARK(BM_ViewPaint)->ArgName("ajac")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Switching the F 2 box on (and off again in the next iteration) with a
// click, then the repaint: every curve item changes which Y axes it draws.
void BM_SecondBandBox(benchmark::State& state)
{
    DemoWindow window;
    if (!showLoaded(window, state))
        return;
    CurveGraphicsView* view = window.view();
    QImage frame = paintedFrame(view);
    // The F 2 box sits 70 pixels left of the data area's left edge and 65
    // below its top, in the frame's (and so the scene's) coordinates.
    const double dataHeight = std::trunc(view->viewport()->height() * 25.0 / 27.0);
    const QPoint box = view->mapFromScene(QPointF(-60.0, -dataHeight + 65.0));
    for (auto _ : state) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent click(type, box, view->viewport()->mapToGlobal(box), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QApplication::sendEvent(view->viewport(), &click);
        }
        paintView(view, &frame);
    }
}
BENCHMARK(BM_SecondBandBox)->ArgName("ajac")->Arg(0)->Unit(benchmark::kMillisecond);

// Show: one satellite alone, then all again (alternating iterations), with
// the repaint each asks for.
void BM_ShowOneAndBack(benchmark::State& state)
{
    DemoWindow window;
    if (!showLoaded(window, state))
        return;
    CurveGraphicsView* view = window.view();
    QImage frame = paintedFrame(view);
    const QString one = window.host()->curveNames().value(0);
    bool alone = false;
    for (auto _ : state) {
        alone = !alone;
        window.host()->setSingleCurve(alone ? one : QString());
        paintView(view, &frame);
    }
}
BENCHMARK(BM_ShowOneAndBack)->ArgName("ajac")->Arg(0)->Unit(benchmark::kMillisecond);

// A navigation pair read once: the observation epochs, the observed
// satellites and the broadcast ephemerides (0: NYA1 with GPS, Galileo and
// BeiDou; 1: ESBC with every system).
struct SkyInput
{
    std::unique_ptr<MemoryObservationSource> observations;
    NavigationData navigation;
    QStringList observed;
    QString error;
};

const SkyInput& skyInput(int which)
{
    static SkyInput inputs[2];
    SkyInput& in = inputs[which];
    if (in.observations || !in.error.isEmpty())
        return in;
    const QString dir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR) + QLatin1Char('/');
    const QStringList nav =
        which == 0 ? QStringList{QStringLiteral("NYA100NOR_S_20241240000_01D_GN.rnx.gz"),
                                 QStringLiteral("NYA100NOR_S_20241240000_01D_EN.rnx.gz"),
                                 QStringLiteral("NYA100NOR_S_20241240000_01D_CN.rnx.gz")}
                   : QStringList{QStringLiteral("ESBC00DNK_R_20201770000_01D_MN.rnx.gz")};
    for (const QString& file : nav) {
        if (!NavigationReader::readFile(dir + file, &in.navigation, &in.error))
            return in;
    }
    in.observations = RinexReader::readFile(
        dir + (which == 0 ? QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz")
                          : QStringLiteral("ESBC00DNK_R_20201770000_01D_30S_MO.crx.gz")),
        &in.error);
    if (in.observations) {
        for (int i = 0; i < in.observations->satelliteCount(); ++i)
            in.observed << in.observations->satelliteName(i);
    }
    return in;
}

// Azimuth and elevation of every satellite at every epoch of a day at 30 s
// (2,880 epochs), with range(1) worker threads.
void BM_SkyTracksDay(benchmark::State& state)
{
    const SkyInput& in = skyInput(int(state.range(0)));
    if (!in.observations) {
        state.SkipWithError(in.error.toUtf8().constData());
        return;
    }
    const StationInfo station = in.observations->station();
    const double* receiver = station.position;
    size_t tracks = 0;
    for (auto _ : state) {
        const SkyTracks sky = SkyTracks::compute(in.navigation, in.observations->epochs(),
                                                 in.observed, receiver, int(state.range(1)));
        tracks = sky.tracks().size();
        benchmark::DoNotOptimize(sky.tracks().data());
    }
    state.counters["satellites"] = double(tracks);
    state.counters["epochs"] = double(in.observations->epochs().size());
}
BENCHMARK(BM_SkyTracksDay)
    ->ArgNames({"esbc", "threads"})
    ->Args({0, 1})
    ->Args({0, 2})
    ->Args({1, 1})
    ->Args({1, 2})
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--window") != 0)
            continue;
        int w = 0;
        int h = 0;
        double r = 0.0;
        if (std::sscanf(argv[i + 1], "%dx%d@%lf", &w, &h, &r) != 3 || w < 1 || h < 1
            || !(r >= 1.0)) {
            std::fprintf(stderr, "--window WxH@R, for example 1920x1080@2\n");
            return 2;
        }
        gWindow = QSize(w, h);
        gRatio = r;
        for (int j = i; j + 2 <= argc; ++j)
            argv[j] = argv[j + 2];
        argc -= 2;
        qputenv("QT_SCALE_FACTOR", QByteArray::number(gRatio));
        break;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
