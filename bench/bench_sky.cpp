// SPDX-License-Identifier: MIT
// Speed of the sky plot on a 1 Hz day: 145 satellites of five systems seen
// from one site, 86,400 epochs each, NaN while a satellite is below the
// horizon, with a signal-strength value axis.
// - first paint (registering the tracks and painting), re-paint unchanged,
//   a time-window step, a hover query, at 800 x 800 and at 1600 x 1600
//   device pixels (800 x 800 at a device pixel ratio of 2);
// - the same tracks drawn by a general plotting library (QCustomPlot, one
//   QCPCurve per satellite over the mapped points) when it is available.
// bench_sky --memory <800|1600> measures memory in a process of its own;
// bench_sky --pictures <folder> draws the README's pictures.
#include "AxisData.h"
#include "CurveScene.h"
#include "Curve_DataSet_XY.h"
#include "SkyGraphicsItem_Tracks_p.h"
#include "SkyGraphicsView.h"
#include "SkyScaleMap_p.h"
#include "SkyTrackSteps_p.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmap>

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

constexpr qint64 kEpochs = 86400;
const double kDay0 = 1.7220384e12;  // 2024-07-27 00:00:00, milliseconds since 1970
const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.14159265358979323846;

// One satellite: a circular orbit and its colour.
struct Orbit
{
    QString name;
    double radiusKm;
    double inclinationDeg;
    double nodeDeg;   // right ascension of the ascending node
    double phaseDeg;  // argument of latitude at the start of the day
    QColor colour;
};

// GPS 32, GLONASS 24, Galileo 36, BeiDou 27 medium, 10 inclined and 9
// geostationary, QZSS 7: 145 satellites.
std::vector<Orbit> constellations()
{
    std::vector<Orbit> out;
    const auto add = [&](QChar system, int count, int planes, double radius, double inclination,
                         const QColor& colour, int firstPrn, double nodeOffset) {
        for (int i = 0; i < count; ++i) {
            const int plane = i % planes;
            const int slot = i / planes;
            const int perPlane = (count + planes - 1) / planes;
            out.push_back(Orbit{QStringLiteral("%1%2").arg(system).arg(firstPrn + i, 2, 10,
                                                                         QLatin1Char('0')),
                                radius, inclination, nodeOffset + 360.0 * plane / planes,
                                360.0 * slot / perPlane + 15.0 * plane, colour});
        }
    };
    add(QLatin1Char('G'), 32, 6, 26560.0, 55.0, QColor(30, 90, 200), 1, 0.0);
    add(QLatin1Char('R'), 24, 3, 25510.0, 64.8, QColor(200, 40, 40), 1, 20.0);
    add(QLatin1Char('E'), 36, 3, 29600.0, 56.0, QColor(30, 150, 60), 1, 40.0);
    add(QLatin1Char('C'), 27, 3, 27900.0, 55.0, QColor(220, 130, 20), 20, 60.0);
    add(QLatin1Char('C'), 10, 3, 42164.0, 55.0, QColor(180, 100, 10), 6, 100.0);
    add(QLatin1Char('C'), 9, 9, 42164.0, 0.5, QColor(140, 80, 0), 1, 80.0);
    add(QLatin1Char('J'), 7, 4, 42164.0, 41.0, QColor(140, 40, 160), 1, 140.0);
    return out;
}

// A satellite's day seen from 43.9 N, 8.8 E: azimuth and elevation in
// degrees (NaN below the horizon) and a signal strength in dB-Hz.
void fillDay(const Orbit& orbit, double* times, double* azimuths, double* elevations,
             double* strengths)
{
    const double deg = kPi / 180.0;
    const double lat = 43.9 * deg;
    const double lon = 8.8 * deg;
    const double earth = 6371.0;
    const double ox = earth * std::cos(lat) * std::cos(lon);
    const double oy = earth * std::cos(lat) * std::sin(lon);
    const double oz = earth * std::sin(lat);
    const double mu = 398600.4418;
    const double rate = std::sqrt(mu / std::pow(orbit.radiusKm, 3.0));  // rad/s
    const double spin = 7.2921159e-5;
    const double inc = orbit.inclinationDeg * deg;
    const double node = orbit.nodeDeg * deg;
    quint32 noise = quint32(qHash(orbit.name)) * 2654435761u + 1u;
    for (qint64 i = 0; i < kEpochs; ++i) {
        const double t = double(i);
        const double u = orbit.phaseDeg * deg + rate * t;
        const double xi = orbit.radiusKm * (std::cos(u) * std::cos(node)
                                            - std::sin(u) * std::cos(inc) * std::sin(node));
        const double yi = orbit.radiusKm * (std::cos(u) * std::sin(node)
                                            + std::sin(u) * std::cos(inc) * std::cos(node));
        const double zi = orbit.radiusKm * std::sin(u) * std::sin(inc);
        // Into the rotating Earth's frame.
        const double theta = spin * t;
        const double x = std::cos(theta) * xi + std::sin(theta) * yi - ox;
        const double y = -std::sin(theta) * xi + std::cos(theta) * yi - oy;
        const double z = zi - oz;
        const double e = -std::sin(lon) * x + std::cos(lon) * y;
        const double n = -std::sin(lat) * std::cos(lon) * x - std::sin(lat) * std::sin(lon) * y
                         + std::cos(lat) * z;
        const double up = std::cos(lat) * std::cos(lon) * x + std::cos(lat) * std::sin(lon) * y
                          + std::sin(lat) * z;
        const double elevation = std::atan2(up, std::hypot(e, n)) / deg;
        double azimuth = std::atan2(e, n) / deg;
        if (azimuth < 0.0)
            azimuth += 360.0;
        noise = noise * 1664525u + 1013904223u;
        times[i] = kDay0 + t * 1000.0;
        azimuths[i] = elevation >= 0.0 ? azimuth : kNaN;
        elevations[i] = elevation >= 0.0 ? elevation : kNaN;
        strengths[i] = elevation >= 0.0
                           ? 32.0 + 18.0 * std::sin(elevation * deg)
                                 + 3.0 * (double(noise >> 8) / double(1u << 24) - 0.5)
                           : kNaN;
    }
}

void publishAxis(AxisData* axis, const double* values)
{
    axis->beginSetData();
    axis->allocData(kEpochs, nullptr);
    std::memcpy(axis->getInSettingData(0, nullptr), values, size_t(kEpochs) * sizeof(double));
    axis->endSetData(true);
}

// The host's data: one data set per satellite, filled and published once,
// kept by the host (registered with bAutoDelete false) so that each first
// paint starts from the same buffers.
struct HostDay
{
    HostDay()
    {
        std::vector<double> t(kEpochs), az(kEpochs), el(kEpochs), cn0(kEpochs);
        for (const Orbit& orbit : constellations()) {
            fillDay(orbit, t.data(), az.data(), el.data(), cn0.data());
            auto set = std::make_unique<Curve_DataSet_XY>(3);
            publishAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Time), t.data());
            publishAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Azimuth), az.data());
            publishAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Elevation), el.data());
            publishAxis(set->getAxisData(SkyGraphicsView::TrackAxis_FirstValue), cn0.data());
            orbits.push_back(orbit);
            sets.push_back(std::move(set));
        }
    }
    static const HostDay& instance()
    {
        static HostDay day;
        return day;
    }
    void registerIn(CurveScene* registry) const
    {
        for (size_t i = 0; i < sets.size(); ++i) {
            registry->addCurve(orbits[i].name, sets[i].get(), false, orbits[i].colour,
                               ECurveShowCap_Line, true);
        }
    }
    std::vector<Orbit> orbits;
    std::vector<std::unique_ptr<Curve_DataSet_XY>> sets;
};

// A shown 800 x 800 view, painted into an image as the window system asks
// for it; \a ratio 2 paints into an image of twice the pixels.
struct SkyPlot
{
    explicit SkyPlot(double ratio = 1.0)
        : image(int(800 * ratio), int(800 * ratio), QImage::Format_ARGB32_Premultiplied)
    {
        image.setDevicePixelRatio(ratio);
        view.setFrameShape(QFrame::NoFrame);
        view.resize(800, 800);
        view.show();
        QCoreApplication::processEvents();
        image.fill(Qt::white);
    }
    void render()
    {
        QPainter painter(&image);
        view.viewport()->render(&painter);
    }
    SkyGraphicsView view;
    QImage image;
};

// Registering the day and the first paint after it.
void BM_Sky_FirstPaint(benchmark::State& state)
{
    const HostDay& day = HostDay::instance();
    const double ratio = double(state.range(0));
    const bool bByValue = state.range(1) != 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto plot = std::make_unique<SkyPlot>(ratio);
        plot->view.setValueAxis(0);
        plot->view.setTracksColoredByValue(bByValue);
        state.ResumeTiming();
        day.registerIn(plot->view.getTrackScene());
        plot->render();
        benchmark::DoNotOptimize(plot->image.constBits());
        state.PauseTiming();
        plot.reset();
        state.ResumeTiming();
    }
}

struct LoadedSky : SkyPlot
{
    explicit LoadedSky(double ratio = 1.0, bool bByValue = false)
        : SkyPlot(ratio)
    {
        view.setValueAxis(0);
        view.setTracksColoredByValue(bByValue);
        HostDay::instance().registerIn(view.getTrackScene());
        render();
    }
};

void BM_Sky_Repaint(benchmark::State& state)
{
    LoadedSky plot(double(state.range(0)));
    for (auto _ : state) {
        plot.render();
        benchmark::DoNotOptimize(plot.image.constBits());
    }
}

// A quarter of the day, moved by a tenth of it to and fro, as a linked plot
// panning it sends; each step repaints.
void BM_Sky_WindowStep(benchmark::State& state)
{
    LoadedSky plot(double(state.range(0)), state.range(1) != 0);
    const double quarter = 6.0 * 3600e3;
    double tMin = kDay0 + 1.5 * quarter;
    plot.view.setTimeWindow(tMin, tMin + quarter);
    plot.render();
    double shift = quarter / 10.0;
    for (auto _ : state) {
        tMin += shift;
        plot.view.setTimeWindow(tMin, tMin + quarter);
        plot.render();
        shift = -shift;
        benchmark::DoNotOptimize(plot.image.constBits());
    }
}

// The hover read-out's query at points swept around the sky at 30 degrees
// of elevation, where tracks cross.
void BM_Sky_Hover(benchmark::State& state)
{
    LoadedSky plot(double(state.range(0)));
    SkyGraphicsView::HoverSample sample;
    double azimuth = 0.0;
    qint64 hits = 0;
    for (auto _ : state) {
        const QPointF at = plot.view.skyToViewport(azimuth, 30.0);
        hits += plot.view.hoverSampleAt(at.toPoint(), sample) ? 1 : 0;
        azimuth = std::fmod(azimuth + 7.3, 360.0);
    }
    state.counters["hit share"] = double(hits) / double(state.iterations());
}

// Mapping every track of the day into device-pixel steps on one thread,
// against a plain read of the same 24 bytes per sample.
void BM_Sky_MapSteps(benchmark::State& state)
{
    const HostDay& day = HostDay::instance();
    SkyDeviceMap map;
    map.projection = SkyLayout::forSize(QSizeF(800, 800), false).projection();
    std::vector<SkyTrackSource> sources;
    for (const auto& set : day.sets)
        sources.push_back(SkyTrackSource::take(set.get(), -1));
    SkyTrackSteps steps;
    qint64 total = 0;
    for (auto _ : state) {
        total = 0;
        for (const SkyTrackSource& source : sources) {
            SkyTrackSteps::Key key;
            key.map = map;
            steps.build(source, key);
            total += qint64(steps.steps().size());
        }
    }
    state.counters["steps"] = double(total);

}

void BM_Sky_PlainRead(benchmark::State& state)
{
    const HostDay& day = HostDay::instance();
    for (auto _ : state) {
        double sum = 0.0;
        for (const auto& set : day.sets) {
            const double* t = set->getAxisData(0)->getData(0, nullptr);
            const double* az = set->getAxisData(1)->getData(0, nullptr);
            const double* el = set->getAxisData(2)->getData(0, nullptr);
            for (qint64 j = 0; j < kEpochs; ++j)
                sum += t[j] + az[j] + el[j];
        }
        benchmark::DoNotOptimize(sum);
    }
}

BENCHMARK(BM_Sky_MapSteps)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sky_PlainRead)->Unit(benchmark::kMillisecond);
// CPU time of every thread, so that the share of the pool shows.
BENCHMARK(BM_Sky_FirstPaint)->Unit(benchmark::kMillisecond)->ArgNames({"ratio", "byValue"})
    ->Args({1, 0})->Args({2, 0})->Args({1, 1})->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(BM_Sky_Repaint)->Unit(benchmark::kMillisecond)->ArgName("ratio")->Arg(1)->Arg(2);
BENCHMARK(BM_Sky_WindowStep)->Unit(benchmark::kMillisecond)->ArgNames({"ratio", "byValue"})
    ->Args({1, 0})->Args({2, 0})->Args({1, 1});
BENCHMARK(BM_Sky_Hover)->Unit(benchmark::kMillisecond)->ArgName("ratio")->Arg(1)->Arg(2);

#ifdef GNSSPLOT_BENCH_PEERS

// --- QCustomPlot: one QCPCurve per satellite over the mapped points --------

struct QcpSky
{
    QcpSky()
    {
        plot.resize(800, 800);
        plot.xAxis->setRange(-1.0, 1.0);
        plot.yAxis->setRange(-1.0, 1.0);
        plot.show();
        QCoreApplication::processEvents();
    }
    // The host's work as for ours: its samples into the plot's containers,
    // here mapped to the disk as ours maps them.
    void load()
    {
        const HostDay& day = HostDay::instance();
        for (size_t i = 0; i < day.sets.size(); ++i) {
            const double* az = day.sets[i]->getAxisData(1)->getData(0, nullptr);
            const double* el = day.sets[i]->getAxisData(2)->getData(0, nullptr);
            QVector<double> keys(kEpochs), xs(kEpochs), ys(kEpochs);
            for (qint64 j = 0; j < kEpochs; ++j) {
                keys[j] = double(j);
                if (std::isnan(az[j]) || std::isnan(el[j])) {
                    xs[j] = ys[j] = kNaN;
                    continue;
                }
                const double r = (90.0 - el[j]) / 90.0;
                xs[j] = r * std::sin(az[j] * kPi / 180.0);
                ys[j] = r * std::cos(az[j] * kPi / 180.0);
            }
            QCPCurve* curve = new QCPCurve(plot.xAxis, plot.yAxis);
            curve->setPen(QPen(day.orbits[i].colour, 1.0));
            curve->setData(keys, xs, ys, true);
        }
    }
    void replot() { plot.replot(QCustomPlot::rpImmediateRefresh); }
    QCustomPlot plot;
};

void BM_Qcp_SkyFirstPaint(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto plot = std::make_unique<QcpSky>();
        state.ResumeTiming();
        plot->load();
        plot->replot();
        state.PauseTiming();
        plot.reset();
        state.ResumeTiming();
    }
}

void BM_Qcp_SkyRepaint(benchmark::State& state)
{
    QcpSky plot;
    plot.load();
    plot.replot();
    for (auto _ : state)
        plot.replot();
}

BENCHMARK(BM_Qcp_SkyFirstPaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Qcp_SkyRepaint)->Unit(benchmark::kMillisecond);

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

// The host's buffers are filled first; what the plot then adds while
// registering, painting, stepping the window and answering hovers is
// reported: RSS before, peak and after, KiB.
int measureMemory(int devicePixels)
{
    const HostDay& day = HostDay::instance();
    SkyPlot plot(devicePixels / 800.0);
    plot.render();
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
    clear.close();
    const qint64 before = statusKiB("VmRSS:");
    day.registerIn(plot.view.getTrackScene());
    plot.render();
    plot.view.setTimeWindow(kDay0 + 3600e3, kDay0 + 7 * 3600e3);
    plot.render();
    SkyGraphicsView::HoverSample sample;
    plot.view.hoverSampleAt(plot.view.skyToViewport(100.0, 30.0).toPoint(), sample);
    std::printf("%lld %lld %lld\n", before, statusKiB("VmHWM:"), statusKiB("VmRSS:"));
    return 0;
}

// The README's pictures: the day's GPS tracks in their colours with the
// cursor at 06:00 beside the first twelve hours of every track coloured by
// signal strength (sky-plot.png), and the day's mean signal strength per
// 5 degree cell (sky-map.png).
int drawPictures(const QString& folder)
{
    const HostDay& day = HostDay::instance();
    SkyGraphicsView view;
    day.registerIn(view.getTrackScene());
    // GPS alone, so that the cursor's names stay readable.
    CurveScene* registry = view.getTrackScene();
    for (const Orbit& orbit : day.orbits) {
        if (!orbit.name.startsWith(QLatin1Char('G')))
            registry->setCurveShowParam_visible(orbit.name, false);
    }
    view.setTimeCursor(kDay0 + 6 * 3600e3);
    view.setElevationMask(10.0);
    QPixmap left(520, 520);
    view.drawToPixmap(&left);
    for (const Orbit& orbit : day.orbits)
        registry->setCurveShowParam_visible(orbit.name, true);
    view.setValueAxis(0);
    view.setValueUnit(QStringLiteral("dB-Hz"));
    view.setTracksColoredByValue(true);
    view.setColorRange(30.0, 52.0);
    view.clearTimeCursor();
    view.setTimeWindow(kDay0, kDay0 + 12 * 3600e3);
    QPixmap right(616, 520);
    view.drawToPixmap(&right);
    QImage both(left.width() + right.width(), 520, QImage::Format_RGB32);
    both.fill(Qt::white);
    QPainter painter(&both);
    painter.drawPixmap(0, 0, left);
    painter.drawPixmap(left.width(), 0, right);
    painter.end();

    view.resetTimeWindow();
    view.setTracksColoredByValue(false);
    view.setTracksShown(false);
    view.setSkyMapShown(true);
    view.setSkyMapCellSize(5.0);
    view.setElevationMask(0.0);
    QPixmap map(616, 520);
    view.drawToPixmap(&map);
    const bool bSaved = both.save(folder + QStringLiteral("/sky-plot.png"))
                        && map.save(folder + QStringLiteral("/sky-map.png"));
    return bSaved ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    // Always offscreen, so that numbers compare between machines with and
    // without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--memory") == 0)
        return measureMemory(QByteArray(argv[2]).toInt());
    if (argc == 3 && std::strcmp(argv[1], "--pictures") == 0)
        return drawPictures(QString::fromLocal8Bit(argv[2]));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
