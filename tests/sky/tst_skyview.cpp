// SPDX-License-Identifier: MIT
// The sky plot as a host meets it: signals, linking, the hover read-out,
// the time cursor's marks, the colour bar and who deletes what.

#include "sky/skytestsupport.h"

#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"
#include "SkyGraphicsItem_ColorBar_p.h"
#include "SkyGraphicsItem_Marks_p.h"
#include "SkyGraphicsItem_Tracks_p.h"

#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_SkyView : public QObject
{
    Q_OBJECT
private slots:
    void timeWindowSignals();
    void linkedWithCurveViewAndTable();
    void timeCursor_data();
    void timeCursor();
    void hover_data();
    void hover();
    void hoverSignals();
    void colourBar();
    void ownership();
    void layersKeptAcrossChanges();
};

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// Two passes, the second an hour after the first ends.
void addDay(SkyGraphicsView& view)
{
    st::addTrack(view, QStringLiteral("G01"), st::arc(3600, 200, 340, 5, 70, 1), Qt::blue);
    st::Track later = st::arc(3600, 20, 160, 5, 50, 2);
    for (double& t : later.times)
        t += 7200e3;
    st::addTrack(view, QStringLiteral("R05"), later, Qt::red);
}

void moveMouse(SkyGraphicsView& view, const QPointF& at)
{
    QMouseEvent event(QEvent::MouseMove, at, view.viewport()->mapToGlobal(at.toPoint()),
                      Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view.viewport(), &event);
}

} // namespace

void tst_SkyView::timeWindowSignals()
{
    SkyGraphicsView view;
    st::prepare(view, QSize(300, 300));
    addDay(view);
    QSignalSpy spy(&view, &SkyGraphicsView::sgTimeWindowChanged);
    double tMin = 0.0;
    double tMax = 0.0;
    view.getTimeWindow(tMin, tMax);
    QCOMPARE(tMin, st::kDay0);
    QCOMPARE(tMax, st::kDay0 + 7200e3 + 3599e3);

    const double a = st::kDay0 + 600e3;
    const double b = st::kDay0 + 1800e3;
    view.setTimeWindow(a, b);
    view.setTimeWindow(a, b);
    // A linked widget's echo, off by a rounding step: the same window.
    view.setTimeWindow(std::nextafter(a, 0.0), std::nextafter(b, 2 * b));
    // Refused: not finite, empty, reversed.
    view.setTimeWindow(kNaN, b);
    view.setTimeWindow(b, b);
    view.setTimeWindow(b, a);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), a);
    QCOMPARE(spy.at(0).at(1).toDouble(), b);
    view.getTimeWindow(tMin, tMax);
    QCOMPARE(tMin, a);
    QCOMPARE(tMax, b);
    // Shown as given, even beyond the data.
    view.setTimeWindow(st::kDay0 - 1e9, st::kDay0 + 1e9);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toDouble(), st::kDay0 - 1e9);

    view.resetTimeWindow();
    view.resetTimeWindow();
    QCOMPARE(spy.count(), 3);
    QCOMPARE(spy.at(2).at(0).toDouble(), st::kDay0);
    QCOMPARE(spy.at(2).at(1).toDouble(), st::kDay0 + 7200e3 + 3599e3);
}

void tst_SkyView::linkedWithCurveViewAndTable()
{
    // The three widgets linked in a ring with plain connects: a window set
    // on any of them reaches the others, and the echoes end.
    CurveGraphicsView plot;
    plot.setTimeNavigationEnabled(true);
    plot.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    QVector<double> xs;
    for (int i = 0; i < 10801; ++i)
        xs.append(st::kDay0 + i * 1000.0);
    plot.getCurveScene()->addCurve(QStringLiteral("G01"),
                                   gt::makeDataSet(xs, {QVector<double>(xs.size(), 0.5)}), true,
                                   Qt::blue, ECurveShowCap_Line, true);
    plot.resize(600, 300);
    plot.setCurvesPosToVerticalZero();
    SkyGraphicsView sky;
    st::prepare(sky, QSize(300, 300));
    addDay(sky);
    CurveGraphicsTableWidget_Epoch table(nullptr);
    table.setTimeNavigationEnabled(true);
    QMap<QString, QList<stEpochDataSet>> epochs;
    epochs.insert(QStringLiteral("G01"), {stEpochDataSet()});
    table.setResources(qint64(st::kDay0), qint64(st::kDay0 + 10800e3), epochs,
                       {{QStringLiteral("G01"), true}}, {}, {});
    connect(&plot, &CurveGraphicsView::sgTimeWindowChanged, &sky, &SkyGraphicsView::setTimeWindow);
    connect(&sky, &SkyGraphicsView::sgTimeWindowChanged, &table,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(&table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, &plot,
            &CurveGraphicsView::setTimeWindow);
    QSignalSpy skySpy(&sky, &SkyGraphicsView::sgTimeWindowChanged);
    QSignalSpy plotSpy(&plot, &CurveGraphicsView::sgTimeWindowChanged);

    plot.setTimeWindow(st::kDay0 + 1200e3, st::kDay0 + 4800e3);
    QCOMPARE(plotSpy.count(), 1);
    QCOMPARE(skySpy.count(), 1);
    double tMin = 0.0;
    double tMax = 0.0;
    sky.getTimeWindow(tMin, tMax);
    QCOMPARE(tMin, st::kDay0 + 1200e3);
    QCOMPARE(tMax, st::kDay0 + 4800e3);

    sky.setTimeWindow(st::kDay0 + 2400e3, st::kDay0 + 6000e3);
    QCOMPARE(skySpy.count(), 2);
    plot.getTimeWindow(tMin, tMax);
    QCOMPARE(tMin, st::kDay0 + 2400e3);
    QCOMPARE(tMax, st::kDay0 + 6000e3);
    table.getTimeWindow(tMin, tMax);
    QCOMPARE(tMin, st::kDay0 + 2400e3);
    QCOMPARE(plotSpy.count(), 2);
    QCOMPARE(skySpy.count(), 2);
}

void tst_SkyView::timeCursor_data()
{
    QTest::addColumn<double>("offset");  // seconds after the day's start
    QTest::addColumn<QStringList>("marked");
    QTest::addColumn<qint64>("g01Sample");
    QTest::newRow("G01's first sample") << 0.0 << QStringList{"G01"} << qint64(0);
    QTest::newRow("between two samples") << 100.4 << QStringList{"G01"} << qint64(100);
    QTest::newRow("nearer the later sample") << 100.6 << QStringList{"G01"} << qint64(101);
    QTest::newRow("in the gap between the passes") << 5000.0 << QStringList{} << qint64(-1);
    QTest::newRow("in R05's pass") << 9000.0 << QStringList{"R05"} << qint64(-1);
    QTest::newRow("after the day") << 99999.0 << QStringList{} << qint64(-1);
}

void tst_SkyView::timeCursor()
{
    QFETCH(double, offset);
    QFETCH(QStringList, marked);
    QFETCH(qint64, g01Sample);
    SkyGraphicsView view;
    st::prepare(view, QSize(300, 300));
    addDay(view);
    QSignalSpy spy(&view, &SkyGraphicsView::sgTimeCursorChanged);
    const double t = st::kDay0 + offset * 1000.0;
    view.setTimeCursor(t);
    view.setTimeCursor(t);
    view.setTimeCursor(kNaN);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(0).at(1).toDouble(), t);
    QVERIFY(view.hasTimeCursor());
    QCOMPARE(view.getTimeCursor(), t);

    auto* marks = st::itemOf<SkyGraphicsItem_Marks>(view);
    QStringList names;
    for (const SkyGraphicsItem_Marks::Mark& mark : marks->marks()) {
        names << mark.track;
        if (mark.track == QLatin1String("G01")) {
            QCOMPARE(mark.index, g01Sample);
            const st::Track g01 = st::arc(3600, 200, 340, 5, 70, 1);
            const QPointF expected = view.skyToViewport(g01.azimuths[int(g01Sample)],
                                                        g01.elevations[int(g01Sample)]);
            QCOMPARE(mark.at, expected);
        }
    }
    QCOMPARE(names, marked);
    // Hidden satellites are not marked.
    view.getTrackScene()->setCurveShowParam_visible(QStringLiteral("G01"), false);
    QVERIFY(!marks->marks().size() || marks->marks().front().track != QLatin1String("G01"));

    view.clearTimeCursor();
    view.clearTimeCursor();
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
    QVERIFY(marks->marks().isEmpty());
}

void tst_SkyView::hover_data()
{
    QTest::addColumn<QString>("track");
    QTest::addColumn<int>("sample");
    QTest::addColumn<double>("aside");   // pixels across the track from the sample
    QTest::addColumn<bool>("bWindow");   // the first hour only
    QTest::addColumn<bool>("bFound");
    QTest::newRow("on a sample of G01") << "G01" << 1200 << 0.0 << false << true;
    QTest::newRow("4 pixels beside it") << "G01" << 1200 << 4.0 << false << true;
    QTest::newRow("6 pixels beside it") << "G01" << 1200 << 6.0 << false << false;
    QTest::newRow("on R05") << "R05" << 2000 << 0.0 << false << true;
    QTest::newRow("R05 outside the window") << "R05" << 2000 << 0.0 << true << false;
    QTest::newRow("G01 inside the window") << "G01" << 1200 << 1.0 << true << true;
}

void tst_SkyView::hover()
{
    QFETCH(QString, track);
    QFETCH(int, sample);
    QFETCH(double, aside);
    QFETCH(bool, bWindow);
    QFETCH(bool, bFound);
    SkyGraphicsView view;
    st::prepare(view, QSize(400, 400));
    addDay(view);
    view.setValueAxis(0);
    if (bWindow)
        view.setTimeWindow(st::kDay0, st::kDay0 + 3600e3);
    const st::Track t = track == QLatin1String("G01") ? st::arc(3600, 200, 340, 5, 70, 1)
                                                      : st::arc(3600, 20, 160, 5, 50, 2);
    const auto pointOf = [&](int j) { return view.skyToViewport(t.azimuths[j], t.elevations[j]); };
    // Across the track: perpendicular to its way through the sample.
    const QPointF along = pointOf(sample + 100) - pointOf(sample - 100);
    const double length = std::hypot(along.x(), along.y());
    const QPointF across(-along.y() / length, along.x() / length);
    // Whole viewport pixels; the rounding stays within half a pixel each way.
    const QPoint cursor = (pointOf(sample) + across * aside).toPoint();
    SkyGraphicsView::HoverSample found;
    QCOMPARE(view.hoverSampleAt(cursor, found), bFound);
    if (!bFound)
        return;
    QCOMPARE(found.trackName, track);
    // The nearest sample; neighbours a second apart lie a fraction of a
    // pixel away.
    QVERIFY2(std::abs(found.sampleIndex - sample) <= 60,
             qPrintable(QString::number(found.sampleIndex)));
    const int j = int(found.sampleIndex);
    QCOMPARE(found.azimuth, t.azimuths[j]);
    QCOMPARE(found.elevation, t.elevations[j]);
    QCOMPARE(found.value, t.values[j]);
    QCOMPARE(found.timeMs, t.times[j] + (track == QLatin1String("R05") ? 7200e3 : 0.0));
    // Hidden, it is found no more.
    view.getTrackScene()->setCurveShowParam_visible(track, false);
    QVERIFY(!view.hoverSampleAt(cursor, found));
}

void tst_SkyView::hoverSignals()
{
    SkyGraphicsView view;
    st::prepare(view, QSize(400, 400));
    addDay(view);
    QSignalSpy hover(&view, &SkyGraphicsView::sgHover);
    QSignalSpy none(&view, &SkyGraphicsView::sgHoverNone);
    const st::Track g01 = st::arc(3600, 200, 340, 5, 70, 1);
    const QPointF on = view.skyToViewport(g01.azimuths[900], g01.elevations[900]);
    const QPointF away = view.skyToViewport(0.0, 89.0);

    moveMouse(view, on);
    QCOMPARE(hover.count(), 0);  // the read-out is off
    view.setHoverReadOutEnabled(true);
    view.setHoverReadOutEnabled(true);
    moveMouse(view, on);
    moveMouse(view, on);  // the same sample: reported once
    QCOMPARE(hover.count(), 1);
    QCOMPARE(hover.at(0).at(0).toString(), QStringLiteral("G01"));
    QVERIFY(std::isnan(hover.at(0).at(4).toDouble()));  // no value axis
    moveMouse(view, away);
    moveMouse(view, away);
    QCOMPARE(none.count(), 1);
    moveMouse(view, on);
    QCOMPARE(hover.count(), 2);
    // Tracks left out are not found; the report ends once.
    view.setTracksShown(false);
    view.setTracksShown(false);
    QCOMPARE(none.count(), 2);
    moveMouse(view, on);
    QCOMPARE(hover.count(), 2);
    view.setTracksShown(true);
    moveMouse(view, on);
    QCOMPARE(hover.count(), 3);
    // Switching off while a sample is reported ends the report once.
    view.setHoverReadOutEnabled(false);
    view.setHoverReadOutEnabled(false);
    QCOMPARE(none.count(), 3);
    moveMouse(view, away);
    QCOMPARE(none.count(), 3);
    QCOMPARE(hover.count(), 3);
}

void tst_SkyView::colourBar()
{
    SkyGraphicsView view;
    st::prepare(view, QSize(500, 400));
    addDay(view);
    auto* bar = st::itemOf<SkyGraphicsItem_ColorBar>(view);
    auto* tracks = st::itemOf<SkyGraphicsItem_Tracks>(view);
    // Without a value nothing is coloured by one: no bar, the whole width
    // for the sky.
    QVERIFY(bar->labels().isEmpty());
    QCOMPARE(tracks->layout().cx, 250.0);
    view.setTracksColoredByValue(true);
    QVERIFY(bar->labels().isEmpty());
    view.setValueAxis(0);
    // The strip at the right takes 96 pixels: the sky shrinks and moves.
    QCOMPARE(tracks->layout().cx, 202.0);
    QCOMPARE(tracks->layout().rim, 172.0);
    QCOMPARE(tracks->layout().bar, QRectF(416, 28, 16, 344));
    QVERIFY(view.setColorRange(20.0, 55.0));
    view.setValueUnit(QStringLiteral("dB-Hz"));
    QStringList texts;
    for (const SkyGraphicsItem_ColorBar::Placed& label : bar->labels())
        texts << label.text;
    QCOMPARE(texts, (QStringList{"20", "55", "30", "40", "50"}));
    // 30 lies 10 / 35 of the way up a bar of 344 pixels from y = 372.
    QCOMPARE(bar->labels().at(2).y, 372.0 - 10.0 / 35.0 * 344.0);
    // The automatic range is the value axis's over all tracks.
    view.resetColorRange();
    double vMin = 0.0;
    double vMax = 0.0;
    view.getColorRange(vMin, vMax);
    double lowest = 1e9;
    double highest = -1e9;
    for (const st::Track& t :
         {st::arc(3600, 200, 340, 5, 70, 1), st::arc(3600, 20, 160, 5, 50, 2)}) {
        lowest = std::min(lowest, *std::min_element(t.values.begin(), t.values.end()));
        highest = std::max(highest, *std::max_element(t.values.begin(), t.values.end()));
    }
    QCOMPARE(vMin, lowest);
    QCOMPARE(vMax, highest);
    // The sky map alone also shows the bar.
    view.setTracksColoredByValue(false);
    QCOMPARE(tracks->layout().cx, 250.0);
    view.setSkyMapShown(true);
    QCOMPARE(tracks->layout().cx, 202.0);
}

void tst_SkyView::ownership()
{
    auto* view = new SkyGraphicsView;
    QPointer<CurveScene> registry = view->getTrackScene();
    QVERIFY(registry);
    QCOMPARE(registry->parent(), view);
    QPointer<Curve_DataSet_XY> owned = st::makeTrack(st::arc(100, 0, 90, 10, 20, 1));
    QPointer<Curve_DataSet_XY> removed = st::makeTrack(st::arc(100, 90, 180, 10, 20, 2));
    auto* kept = st::makeTrack(st::arc(100, 180, 270, 10, 20, 3));
    QVERIFY(registry->addCurve("owned", owned, true, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(registry->addCurve("removed", removed, true, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(registry->addCurve("kept", kept, false, Qt::blue, ECurveShowCap_Line, true));
    st::prepare(*view, QSize(200, 200));
    QVERIFY(!view->viewport()->grab().isNull());

    // Removing an owned track deletes its data set; the plot forgets it.
    registry->removeCurve("removed");
    QVERIFY(!removed);
    SkyGraphicsView::HoverSample sample;
    const st::Track gone = st::arc(100, 90, 180, 10, 20, 2);
    QVERIFY(!view->hoverSampleAt(view->skyToViewport(gone.azimuths[50], gone.elevations[50])
                                     .toPoint(),
                                 sample));
    // A kept data set is let go: republishing it no longer reaches the plot.
    registry->removeCurve("kept");
    gt::fillAxis(kept->getAxisData(2), QVector<double>(100, 45.0));
    QVERIFY(!view->viewport()->grab().isNull());

    // A kept data set deleted while still registered (a host's mistake)
    // takes its samples with it; the plot reads them no more.
    auto* early = st::makeTrack(st::arc(100, 0, 90, 30, 40, 4));
    QVERIFY(registry->addCurve("early", early, false, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(!view->viewport()->grab().isNull());
    delete early;
    QVERIFY(!view->viewport()->grab().isNull());
    QVERIFY(!view->hoverSampleAt(view->skyToViewport(45.0, 35.0).toPoint(), sample));
    registry->removeCurve("early");

    delete view;
    QVERIFY(!registry);
    QVERIFY(!owned);
    delete kept;
}

void tst_SkyView::layersKeptAcrossChanges()
{
    // What each change costs: the cursor and the unit repaint only; a new
    // window redraws the layer from the steps already mapped; a resize maps
    // again.
    SkyGraphicsView view;
    st::prepare(view, QSize(300, 300));
    addDay(view);
    auto* tracks = st::itemOf<SkyGraphicsItem_Tracks>(view);
    QVERIFY(!view.viewport()->grab().isNull());
    const quint64 layers = tracks->layerBuildCount();
    const quint64 mapped = tracks->stepBuildCount();
    QCOMPARE(mapped, quint64(2));
    view.setTimeCursor(st::kDay0);
    view.setValueUnit(QStringLiteral("m"));
    view.setElevationMask(10.0);
    view.grab();
    QCOMPARE(tracks->layerBuildCount(), layers);
    view.setTimeWindow(st::kDay0, st::kDay0 + 1800e3);
    view.grab();
    QCOMPARE(tracks->layerBuildCount(), layers + 1);
    QCOMPARE(tracks->stepBuildCount(), mapped);
    // Hiding a track redraws without mapping; showing it again as well.
    view.getTrackScene()->setCurveShowParam_visible(QStringLiteral("R05"), false);
    view.grab();
    view.getTrackScene()->setCurveShowParam_visible(QStringLiteral("R05"), true);
    view.grab();
    QCOMPARE(tracks->stepBuildCount(), mapped);
    view.resize(320, 320);
    QCoreApplication::processEvents();
    view.grab();
    QCOMPARE(tracks->stepBuildCount(), mapped + 2);
}

QTEST_MAIN(tst_SkyView)
#include "tst_skyview.moc"
