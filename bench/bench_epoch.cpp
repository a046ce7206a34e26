// SPDX-License-Identifier: MIT
// Speed of the epoch table with a dense data set: 150 satellites, 4 bands
// each, 2,000 gaps per band.
//   bench_epoch --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include "CurveGraphicsTableWidget_Epoch.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>

#include <benchmark/benchmark.h>

namespace {

constexpr int kSatellites = 150;
constexpr int kBands = 4;
constexpr int kGaps = 2000;
constexpr qint64 kStep = 1000; // epochs from one pair to the next

// Pair k of a band covers [k * step + shift, + 600): the table paints the 400
// epochs after each pair, 2,000 stretches per band (1,999 between pairs and
// the tail to the end of the range).
const QMap<QString, QList<stEpochDataSet>>& epochData()
{
    static const QMap<QString, QList<stEpochDataSet>> data = [] {
        QMap<QString, QList<stEpochDataSet>> map;
        for (int s = 0; s < kSatellites; ++s) {
            QList<stEpochDataSet> bands;
            for (int b = 0; b < kBands; ++b) {
                stEpochDataSet set;
                set.ranges.reserve(kGaps);
                for (int k = 0; k < kGaps; ++k)
                    set.ranges.append(qMakePair(k * kStep + 10 * b, qint64(600)));
                bands.append(set);
            }
            map.insert(QStringLiteral("S%1").arg(s, 3, 10, QLatin1Char('0')), bands);
        }
        return map;
    }();
    return data;
}

constexpr qint64 kEnd = kGaps * kStep + 500;

QMap<QString, bool> allEnabled()
{
    QMap<QString, bool> map;
    for (const QString& name : epochData().keys())
        map.insert(name, true);
    return map;
}

void fill(CurveGraphicsTableWidget_Epoch& table)
{
    table.setResources(0, kEnd, epochData(), allEnabled(), {}, {});
    // The rows of the previous call go through deleteLater(); count their
    // deletion as part of the rebuild instead of letting them pile up.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void shownTable(CurveGraphicsTableWidget_Epoch& table)
{
    fill(table);
    table.resize(800, 600);
    table.show();
    QCoreApplication::processEvents();
}

void BM_SetResources(benchmark::State& state)
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    for (auto _ : state)
        fill(table);
}
BENCHMARK(BM_SetResources)->Unit(benchmark::kMillisecond);

// Everything the shown table paints: header, check boxes, the legend and
// the bars of every visible row.
void BM_FullRepaint(benchmark::State& state)
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    shownTable(table);
    QImage image(table.size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        table.render(&image);
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_FullRepaint)->Unit(benchmark::kMillisecond);

// The bars of all 150 satellites at once, into 280 x 30 pixmaps.
void BM_PaintAllLabelsToDevice(benchmark::State& state)
{
    QList<QPixmap> store;
    QMap<QString, QPixmap*> pixmaps;
    for (int s = 0; s < kSatellites; ++s)
        store.append(QPixmap(280, 30));
    int s = 0;
    for (const QString& name : epochData().keys())
        pixmaps.insert(name, &store[s++]);
    const QMap<QString, bool> enabled = allEnabled();
    for (auto _ : state) {
        CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(0, kEnd, epochData(), enabled,
                                                               pixmaps);
    }
}
BENCHMARK(BM_PaintAllLabelsToDevice)->Unit(benchmark::kMillisecond);

void send(QWidget* viewport, QEvent::Type type, const QPoint& pos, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, pos, viewport->mapToGlobal(pos), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

// Press, one move, release over five rows, then the repaint that follows.
void BM_DragToMark(benchmark::State& state)
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    shownTable(table);
    QWidget* viewport = table.viewport();
    const QRect head = table.cellWidget(0, 1)->geometry();
    const QPoint from(head.left() + 100, table.cellWidget(2, 1)->geometry().center().y());
    const QPoint to(head.left() + 300, table.cellWidget(6, 1)->geometry().center().y());
    for (auto _ : state) {
        send(viewport, QEvent::MouseButtonPress, from, Qt::LeftButton);
        send(viewport, QEvent::MouseMove, to, Qt::LeftButton);
        send(viewport, QEvent::MouseButtonRelease, to, Qt::NoButton);
        QCoreApplication::processEvents();
        state.PauseTiming();
        if (table.eraseMarkActionNum() != 1)
            state.SkipWithError("the drag made no erase mark");
        table.clearEraseMarkActions();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DragToMark)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    // Always offscreen, so that numbers compare between machines with and
    // without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
