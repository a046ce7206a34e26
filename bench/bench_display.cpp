// SPDX-License-Identifier: MIT
// A full GNSS day on a real display size, measured as a host application
// meets it: only the installed library's public API, the host's sample
// buffers filled before the view exists (145 satellites x 86,400 epochs x
// 2 Y axes), and QCustomPlot drawing the same samples in the same process.
//
//     bench_display --display 1920x1080@2 [Google Benchmark flags]
//
// The display's logical size and device pixel ratio are one per process
// (the ratio is the process's QT_SCALE_FACTOR). Memory beyond the host's
// buffers is the peak resident size during load, first paint and a wheel
// step, over the resident size before the view was made.
#include <gnssplot.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QThread>
#include <QThreadPool>
#include <QWheelEvent>

#include <benchmark/benchmark.h>

#ifdef GNSSPLOT_BENCH_PEERS
#include <qcustomplot.h>
#endif

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace {

QSize gDisplay(800, 540);
double gRatio = 1.0;

constexpr qint64 kEpochs = 86400;
constexpr qint64 kEpochMs = 1000;
const double kDay0 = 1.6e12;

// Five constellations in name order, one colour each, as the demo has them.
struct Constellation
{
    char letter;
    int satellites;
    QColor colour;
};
const Constellation kConstellations[] = {{'C', 46, QColor(230, 140, 20)},
                                         {'E', 36, QColor(30, 150, 60)},
                                         {'G', 32, QColor(30, 90, 220)},
                                         {'J', 7, QColor(150, 60, 200)},
                                         {'R', 24, QColor(220, 30, 30)}};

void fillSamples(double* xs, double* ys, quint32 seed)
{
    quint32 state = seed * 2654435761u + 1u;
    for (qint64 i = 0; i < kEpochs; ++i) {
        state = state * 1664525u + 1013904223u;
        const double noise = double(state >> 8) / double(1u << 24) - 0.5;
        if (xs)
            xs[i] = kDay0 + double(i * kEpochMs);
        ys[i] = (i % 1000 == 999) ? std::numeric_limits<double>::quiet_NaN()
                                  : 0.8 * std::sin(double(i) * 1.7e-3 + seed) + 0.3 * noise;
    }
}

// The host's buffers: one data set per satellite, written and published
// before any view exists.
struct Host
{
    Host()
    {
        quint32 seed = 1;
        for (const Constellation& c : kConstellations) {
            for (int s = 1; s <= c.satellites; ++s) {
                auto* set = new Curve_DataSet_XY(2, nullptr);
                for (int k = 0; k < 3; ++k) {
                    AxisData* axis = set->getAxisData(k);
                    axis->beginSetData();
                    axis->allocData(kEpochs, nullptr);
                    double* values = axis->getInSettingData(0, nullptr);
                    if (k == 0) {
                        for (qint64 i = 0; i < kEpochs; ++i)
                            values[i] = kDay0 + double(i * kEpochMs);
                    } else {
                        fillSamples(nullptr, values, seed++);
                        axis->setInSettingBreaks({kEpochs / 3, 2 * kEpochs / 3});
                    }
                    axis->endSetData(true);
                }
                sets.push_back(set);
                names.push_back(QStringLiteral("%1%2").arg(QLatin1Char(c.letter))
                                    .arg(s, 2, 10, QLatin1Char('0')));
                colours.push_back(c.colour);
            }
        }
    }
    std::vector<Curve_DataSet_XY*> sets;
    std::vector<QString> names;
    std::vector<QColor> colours;
};

Host& host()
{
    static Host h;
    return h;
}

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

// Resident size now, restarting the kernel's peak from here.
qint64 startMeasure()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
    return statusKiB("VmRSS:");
}

// What the window system hands a widget to paint into, at the display's
// device pixel ratio.
QImage frameImage()
{
    QImage image(gDisplay * gRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(gRatio);
    image.fill(Qt::white);
    return image;
}

struct OurDay
{
    OurDay()
    {
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(gDisplay);
        view.show();
        CurveScene* registry = view.getCurveScene();
        registry->setCoord(new Curve_Coord_XY, true);
        Host& h = host();
        for (size_t i = 0; i < h.sets.size(); ++i) {
            registry->addCurve(h.names[i], h.sets[i], false, h.colours[i], ECurveShowCap_Line,
                               true);
        }
        view.setCurvesPosToVerticalZero();
        render();
    }
    void render()
    {
        QPainter painter(&image);
        view.viewport()->render(&painter);
    }
    void wheel(int delta, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QPointF at(gDisplay.width() / 2.0, gDisplay.height() / 2.0);
        QWheelEvent event(at, at, QPoint(), QPoint(0, delta), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }
    CurveGraphicsView view;
    QImage image = frameImage();
};

std::unique_ptr<OurDay>& ourDaySlot()
{
    static std::unique_ptr<OurDay> day;
    return day;
}

OurDay& ourDay()
{
    std::unique_ptr<OurDay>& day = ourDaySlot();
    if (!day)
        day = std::make_unique<OurDay>();
    return *day;
}

void BM_Ours_LoadPaint(benchmark::State& state)
{
    host();
    ourDaySlot().reset();
    double peakMB = 0.0;
    for (auto _ : state) {
        const qint64 before = startMeasure();
        auto day = std::make_unique<OurDay>();
        state.PauseTiming();
        day->wheel(120);
        day->render();
        peakMB = double(statusKiB("VmHWM:") - before) / 1024.0;
        day.reset();
        state.ResumeTiming();
    }
    state.counters["memory_MB"] = peakMB;
}

void BM_Ours_Repaint(benchmark::State& state)
{
    OurDay& day = ourDay();
    for (auto _ : state)
        day.render();
}

// Argument: worker threads.
void BM_Ours_Wheel(benchmark::State& state)
{
    QThreadPool::globalInstance()->setMaxThreadCount(int(state.range(0)));
    OurDay& day = ourDay();
    int delta = 120;
    for (auto _ : state) {
        day.wheel(delta);
        day.render();
        delta = -delta;
    }
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
}

// A Ctrl+wheel time-zoom step about the middle, in and out in turn.
void BM_Ours_TimeZoom(benchmark::State& state)
{
    OurDay& day = ourDay();
    day.view.setTimeNavigationEnabled(true);
    int delta = 120;
    for (auto _ : state) {
        day.wheel(delta, Qt::ControlModifier);
        day.render();
        delta = -delta;
    }
    day.view.setTimeNavigationEnabled(false);
}

// A quarter of the day panned by a tenth of its width, to and fro.
void BM_Ours_TimePan(benchmark::State& state)
{
    OurDay& day = ourDay();
    day.view.setTimeNavigationEnabled(true);
    double tMin = 0.0;
    double tMax = 0.0;
    day.view.getTimeWindow(tMin, tMax);
    const double quarter = (tMax - tMin) / 4.0;
    tMin += 1.5 * quarter;
    day.view.setTimeWindow(tMin, tMin + quarter);
    day.render();
    double shift = quarter / 10.0;
    for (auto _ : state) {
        tMin += shift;
        day.view.setTimeWindow(tMin, tMin + quarter);
        day.render();
        shift = -shift;
    }
    day.view.setTimeNavigationEnabled(false);
}

#ifdef GNSSPLOT_BENCH_PEERS

struct QcpDay
{
    QcpDay()
    {
        plot.resize(gDisplay);
        plot.show();
        Host& h = host();
        for (size_t i = 0; i < h.sets.size(); ++i) {
            const double* xs = h.sets[i]->getAxisData(0)->getData(0, nullptr);
            const QVector<double> keys(xs, xs + kEpochs);
            for (int k = 1; k <= 2; ++k) {
                const double* ys = h.sets[i]->getAxisData(k)->getData(0, nullptr);
                QCPGraph* graph = plot.addGraph();
                QColor colour = h.colours[i];
                colour.setAlpha(128);
                graph->setPen(QPen(colour, 1.0));
                graph->setData(keys, QVector<double>(ys, ys + kEpochs), true);
            }
        }
        plot.xAxis->setRange(kDay0, kDay0 + double(kEpochs - 1) * kEpochMs);
        plot.yAxis->setRange(-1.2, 1.2);
        plot.replot(QCustomPlot::rpImmediateRefresh);
    }
    QCustomPlot plot;
    QImage image = frameImage();
};

std::unique_ptr<QcpDay>& qcpDaySlot()
{
    static std::unique_ptr<QcpDay> day;
    return day;
}

QcpDay& qcpDay()
{
    std::unique_ptr<QcpDay>& day = qcpDaySlot();
    if (!day)
        day = std::make_unique<QcpDay>();
    return *day;
}

void BM_Qcp_LoadPaint(benchmark::State& state)
{
    host();
    ourDaySlot().reset();
    qcpDaySlot().reset();
    for (auto _ : state) {
        auto day = std::make_unique<QcpDay>();
        state.PauseTiming();
        day.reset();
        state.ResumeTiming();
    }
}

void BM_Qcp_Repaint(benchmark::State& state)
{
    // Its paint event draws the buffer of the last replot, as ours draws
    // its picture.
    QcpDay& day = qcpDay();
    for (auto _ : state) {
        QPainter painter(&day.image);
        day.plot.render(&painter);
    }
}

void BM_Qcp_Wheel(benchmark::State& state)
{
    QcpDay& day = qcpDay();
    bool wider = true;
    for (auto _ : state) {
        day.plot.yAxis->scaleRange(wider ? 1.15 : 0.85);
        day.plot.replot(QCustomPlot::rpImmediateRefresh);
        wider = !wider;
    }
}

#endif

// Ours first, then the peer, whose memory stays in the process afterwards.
BENCHMARK(BM_Ours_LoadPaint)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_Ours_Repaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_Wheel)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(2)->Arg(1);
BENCHMARK(BM_Ours_TimeZoom)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_TimePan)->Unit(benchmark::kMillisecond);
#ifdef GNSSPLOT_BENCH_PEERS
BENCHMARK(BM_Qcp_LoadPaint)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_Qcp_Repaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Qcp_Wheel)->Unit(benchmark::kMillisecond);
#endif

// Reads "--display WxH@R" out of the arguments.
bool takeDisplay(int& argc, char** argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--display") != 0)
            continue;
        int w = 0;
        int h = 0;
        double r = 0.0;
        if (std::sscanf(argv[i + 1], "%dx%d@%lf", &w, &h, &r) != 3 || w < 1 || h < 1
            || !(r >= 1.0))
            return false;
        gDisplay = QSize(w, h);
        gRatio = r;
        for (int j = i; j + 2 <= argc; ++j)
            argv[j] = argv[j + 2];
        argc -= 2;
        return true;
    }
    return true;
}

// The day drawn both ways side by side, into \a png: curves composed in
// name order (the default) and mixed by count. Each satellite is in view
// for an arc of a few hours, its values spreading wider at the arc's ends
// (low elevation), as multipath does.
int mixPicture(const QString& png)
{
    CurveGraphicsView view;
    view.setFrameShape(QFrame::NoFrame);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.resize(gDisplay);
    view.show();
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    quint32 state = 7;
    const auto noise = [&state]() {
        state = state * 1664525u + 1013904223u;
        return double(state >> 8) / double(1u << 24) - 0.5;
    };
    int index = 0;
    for (const Constellation& c : kConstellations) {
        for (int s = 1; s <= c.satellites; ++s, ++index) {
            auto* set = new Curve_DataSet_XY(1, nullptr);
            const qint64 arc = 4 * 3600 + (index * 977) % (4 * 3600);
            const qint64 start = (index * 5261) % (kEpochs - arc);
            for (int k = 0; k < 2; ++k) {
                AxisData* axis = set->getAxisData(k);
                axis->beginSetData();
                axis->allocData(kEpochs, nullptr);
                double* values = axis->getInSettingData(0, nullptr);
                for (qint64 i = 0; i < kEpochs; ++i) {
                    if (k == 0) {
                        values[i] = kDay0 + double(i * kEpochMs);
                        continue;
                    }
                    const double t = double(i - start) / double(arc);
                    const double spread = 0.08 + 0.5 * std::pow(2.0 * t - 1.0, 6);
                    values[i] = (t < 0.0 || t > 1.0) ? std::numeric_limits<double>::quiet_NaN()
                                                     : spread * noise();
                }
                axis->endSetData(true);
            }
            view.getCurveScene()->addCurve(
                QStringLiteral("%1%2").arg(QLatin1Char(c.letter)).arg(s, 2, 10, QLatin1Char('0')),
                set, true, c.colour, ECurveShowCap_Line, true);
        }
    }
    view.setCurvesPosToVerticalZero();
    QImage pictures[2] = {frameImage(), frameImage()};
    for (int mix = 0; mix < 2; ++mix) {
        view.setOrderIndependentMix(mix == 1);
        QPainter painter(&pictures[mix]);
        view.viewport()->render(&painter);
    }
    QImage side(pictures[0].width() * 2 + 10, pictures[0].height(), QImage::Format_RGB32);
    side.fill(Qt::white);
    {
        QPainter painter(&side);
        painter.drawImage(0, 0, pictures[0]);
        painter.drawImage(pictures[0].width() + 10, 0, pictures[1]);
    }
    return side.save(png) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (!takeDisplay(argc, argv)) {
        std::fprintf(stderr, "--display WxH@R, for example 1920x1080@2\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(gRatio));
    QApplication app(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--mix-picture") == 0)
        return mixPicture(QString::fromLocal8Bit(argv[2]));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    // The views go before the application object.
    ourDaySlot().reset();
#ifdef GNSSPLOT_BENCH_PEERS
    qcpDaySlot().reset();
#endif
    return 0;
}
