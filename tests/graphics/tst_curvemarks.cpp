// SPDX-License-Identifier: MIT
// What a host can add to a curve plot without changing its defaults: a unit
// other than metres, event marks on the curves and a marker on the sample
// the hover read-out names.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsScene_p.h"
#include "CurveGraphicsView.h"
#include "CurvePicture_p.h"
#include "Curve_Coord_XY.h"
#include "EventMark.h"

#include <QPicture>
#include <QToolTip>

#include <limits>

namespace {

// The view is 880 x 540 pixels: a data area of 800 x 500 with its
// bottom-left corner at the scene's origin.
constexpr int kWidth = 800;
constexpr int kHeight = 500;
const QColor kSlip(220, 20, 20);
const QColor kLossOfLock(245, 140, 0);
const QColor kGap(60, 60, 60);
const QColor kHostKind(150, 40, 190);

// "a": X 0..100, Y1 at 0.2 everywhere, Y2 at -0.4 (hidden until F 2 is
// clicked), NaN on both at sample 60.
struct MarkPlot
{
    MarkPlot()
    {
        gt::makeBare(view);
        coord = new Curve_Coord_XY;
        coord->setArea(0, 100, -1, 1);
        registry()->setCoord(coord, true);
        QVector<double> y1(101, 0.2);
        QVector<double> y2(101, -0.4);
        y1[60] = y2[60] = gt::NaN;
        registry()->addCurve("a", gt::makeDataSet({y1, y2}), true, Qt::blue,
                             ECurveShowCap_Line, true);
        resize();
    }
    // A hidden view hears of its size only when shown: the frame is given
    // it here.
    void resize()
    {
        view.resize(kWidth + 80, 540);
        scene()->setCoordPixelSize(kWidth + 80, 540);
    }
    CurveScene* registry() { return view.getCurveScene(); }
    CurveGraphicsScene* scene() { return qobject_cast<CurveGraphicsScene*>(view.scene()); }
    CurveGraphicsItem_Coord_PXPY* frame()
    {
        return gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
    }
    // The data area drawn one to one: image pixel (x, y) is item pixel
    // (x, y - kHeight), at \a ratio device pixels per pixel.
    QImage render(qreal ratio = 1.0)
    {
        QImage image(QSize(kWidth, kHeight) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        QPainter painter(&image);
        view.scene()->render(&painter, QRectF(0, 0, kWidth, kHeight),
                             QRectF(0, -kHeight, kWidth, kHeight));
        return image;
    }
    // The same through a QPicture, the vector path, replayed onto an image.
    QImage renderVector()
    {
        QPicture picture;
        {
            QPainter painter(&picture);
            view.scene()->render(&painter, QRectF(0, 0, kWidth, kHeight),
                                 QRectF(0, -kHeight, kWidth, kHeight));
        }
        QImage image(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        picture.play(&painter);
        return image;
    }
    // Viewport position of item pixel (x, y) of the data area.
    QPoint viewportAt(double x, double y)
    {
        return view.mapFromScene(frame()->mapToScene(QPointF(x, y)));
    }
    void move(QPoint pos)
    {
        QMouseEvent event(QEvent::MouseMove, QPointF(pos),
                          QPointF(view.viewport()->mapToGlobal(pos)), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }

    CurveGraphicsView view;
    Curve_Coord_XY* coord = nullptr;
};

// The item pixel a sample is drawn in over the coordinate's area, worked out
// by hand: the fraction of the area times its extent, truncated toward zero.
QPoint samplePixel(const Curve_Coord_XY* coord, double x, double y)
{
    double xMin, xMax, yMin, yMax;
    coord->getArea(xMin, xMax, yMin, yMax);
    return QPoint(int((x - xMin) / (xMax - xMin) * kWidth),
                  int(-((y - yMin) / (yMax - yMin)) * kHeight));
}

// Whether the tick of \a color stands at item pixel \a pixel: its eleven
// rows of three columns are that colour, the pixels just beyond are not.
bool tickAt(const QImage& image, QPoint pixel, const QColor& color, qreal ratio = 1.0)
{
    const QRgb want = color.rgba();
    const auto at = [&](int x, int y) {
        // The centre of the device pixel block of item pixel (x, y).
        const QPoint p(int((x + 0.5) * ratio), int((y + kHeight + 0.5) * ratio));
        return image.valid(p) ? image.pixel(p) : 0u;
    };
    for (int dy = -5; dy <= 5; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (at(pixel.x() + dx, pixel.y() + dy) != want)
                return false;
        }
    }
    return at(pixel.x() - 2, pixel.y()) != want && at(pixel.x() + 2, pixel.y()) != want
           && at(pixel.x(), pixel.y() - 6) != want && at(pixel.x(), pixel.y() + 6) != want;
}

// Gathers the regions the viewport is asked to paint.
class PaintRegions : public QObject
{
public:
    QRegion region;
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

int countColour(const QImage& image, const QColor& color)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            n += image.pixel(x, y) == color.rgba();
    }
    return n;
}

} // namespace

Q_DECLARE_METATYPE(QVector<EventMark>)

class tst_CurveMarks : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<QList<int>>(); }
    void valueUnit_data();
    void valueUnit();
    void ticksAtSamples_data();
    void ticksAtSamples();
    void ticksFollowViewNavigation();
    void hostileMarks_data();
    void hostileMarks();
    void marksInRegistry();
    void kindColours();
    void hoverNamesKind();
    void pickedSampleMarker();
    void markerMoveRepaintsRingOnly();
};

void tst_CurveMarks::valueUnit_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("valueLine");
    QTest::newRow("default metres") << QString() << "0.500m" << "Value 0.200 m";
    QTest::newRow("dB-Hz") << "dB-Hz" << "0.500 dB-Hz" << "Value 0.200 dB-Hz";
    QTest::newRow("TECU") << "TECU" << "0.500 TECU" << "Value 0.200 TECU";
}

void tst_CurveMarks::valueUnit()
{
    QFETCH(QString, unit);
    QFETCH(QString, label);
    QFETCH(QString, valueLine);
    MarkPlot plot;
    QCOMPARE(plot.view.getValueUnit(), QString());
    QCOMPARE(plot.frame()->yLabels().value(0.75), QString("0.500m"));
    plot.view.setValueUnit(unit);
    QCOMPARE(plot.view.getValueUnit(), unit);
    QCOMPARE(plot.view.property("valueUnit").toString(), unit);
    // Relabelled at once, and kept through a new area.
    QCOMPARE(plot.frame()->yLabels().value(0.75), label);
    plot.coord->setArea(0, 100, -2, 2);
    QCOMPARE(plot.frame()->yLabels().value(1.0), QString(label).replace("0.500", "2.000"));

    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    plot.coord->setArea(0, 100, -1, 1);
    plot.view.setHoverReadOutEnabled(true);
    plot.view.setHoverToolTip(true);
    const QPoint p = samplePixel(plot.coord, 50, 0.2);
    plot.move(plot.viewportAt(p.x() + 0.5, p.y() + 0.5));
    QTRY_VERIFY(QToolTip::isVisible());
    const QStringList lines = QToolTip::text().split('\n');
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0), QString("Curve a, F 1"));
    QCOMPARE(lines.at(2), valueLine);
    // Back to metres: the labels are those of a plot never given a unit.
    plot.view.setValueUnit(QString());
    QCOMPARE(plot.frame()->yLabels().value(0.75), QString("0.500m"));
}

void tst_CurveMarks::ticksAtSamples_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<qreal>("ratio");
    // Item pixels of ticks that must be there, and of samples with marks
    // that must show none.
    QTest::addColumn<QList<QPoint>>("ticks");
    QTest::addColumn<QList<QPoint>>("none");
    // Marks: a slip at 25, a loss of lock at 75 (both on Y1 at 0.2, so at
    // row -300, and on Y2 at -0.4, row -150, when F 2 shows), a mark at the
    // NaN at 60.
    const QPoint slip(200, -300);
    const QPoint lli(600, -300);
    QTest::newRow("as registered") << "" << 1.0 << QList<QPoint>{slip, lli}
                                   << QList<QPoint>{{480, -300}, {200, -150}};
    QTest::newRow("device pixel ratio 2") << "" << 2.0 << QList<QPoint>{slip, lli}
                                          << QList<QPoint>{{480, -300}};
    // Y from -2 to 2: 0.2 lies at 0.55 of the height.
    QTest::newRow("Y zoomed") << "zoom" << 1.0 << QList<QPoint>{{200, -275}, {600, -275}}
                              << QList<QPoint>{slip, lli};
    // X from 20 to 70: 25 at 80 pixels, 75 beyond the area.
    QTest::newRow("time window") << "window" << 1.0 << QList<QPoint>{{80, -300}}
                                 << QList<QPoint>{slip};
    QTest::newRow("F 2 shown too") << "F2" << 1.0
                                   << QList<QPoint>{slip, lli, {200, -150}, {600, -150}}
                                   << QList<QPoint>{};
    QTest::newRow("F 1 hidden, F 2 shown") << "F2 only" << 1.0
                                           << QList<QPoint>{{200, -150}, {600, -150}}
                                           << QList<QPoint>{slip, lli};
    QTest::newRow("single show") << "single" << 1.0 << QList<QPoint>{slip, lli}
                                 << QList<QPoint>{};
    QTest::newRow("curve hidden") << "hidden" << 1.0 << QList<QPoint>{}
                                  << QList<QPoint>{slip, lli};
    QTest::newRow("vector device") << "vector" << 1.0 << QList<QPoint>{slip, lli}
                                   << QList<QPoint>{{480, -300}};
}

void tst_CurveMarks::ticksAtSamples()
{
    QFETCH(QString, step);
    QFETCH(qreal, ratio);
    QFETCH(QList<QPoint>, ticks);
    QFETCH(QList<QPoint>, none);
    MarkPlot plot;
    QVERIFY(plot.registry()->setCurveEventMarks(
        "a", {{25, EEventMarkKind_CycleSlip}, {75, EEventMarkKind_LossOfLock},
              {60, EEventMarkKind_Gap}}));
    // The hand-worked pixel agrees with the formula the rows use.
    QCOMPARE(samplePixel(plot.coord, 25, 0.2), QPoint(200, -300));
    CurveGraphicsItem_ShowWhichY* selection = plot.frame()->getShowWhichY();
    if (step == "zoom") {
        plot.coord->setArea(0, 100, -2, 2);
    } else if (step == "window") {
        plot.coord->setArea(20, 70, -1, 1);
    } else if (step.startsWith("F2")) {
        plot.view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
        const auto box = [&](int k) {
            return plot.view.mapFromScene(selection->mapToScene(QPointF(10, 30 * k + 15)));
        };
        QTest::mouseClick(plot.view.viewport(), Qt::LeftButton, {}, box(1));
        if (step == "F2 only")
            QTest::mouseClick(plot.view.viewport(), Qt::LeftButton, {}, box(0));
    } else if (step == "single") {
        plot.registry()->setCurveSingleShow("a", true);
    } else if (step == "hidden") {
        plot.registry()->setCurveShowParam_visible("a", false);
    }
    const QImage image = step == "vector" ? plot.renderVector() : plot.render(ratio);
    const QString name = QStringLiteral("marks_") + QTest::currentDataTag();
    for (const QPoint& p : ticks) {
        const QColor color = p.x() == 600 ? kLossOfLock : kSlip;
        PIXEL_VERIFY(tickAt(image, p, color, ratio), image, name);
    }
    for (const QPoint& p : none) {
        PIXEL_VERIFY(!tickAt(image, p, kSlip, ratio) && !tickAt(image, p, kGap, ratio), image,
                     name);
    }
    // Nothing but the ticks is drawn in the marks' colours: the gap's mark
    // sits on a NaN and draws nothing.
    const int tickPixels = 33 * int(ratio * ratio);
    PIXEL_VERIFY(countColour(image, kSlip) + countColour(image, kLossOfLock)
                     == tickPixels * ticks.size(),
                 image, name);
    PIXEL_VERIFY(countColour(image, kGap) == 0, image, name);
}

void tst_CurveMarks::ticksFollowViewNavigation()
{
    // The view's own wheel and time window move the ticks with the samples.
    MarkPlot plot;
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    plot.view.setTimeNavigationEnabled(true);
    QVERIFY(plot.registry()->setCurveEventMarks("a", {{25, EEventMarkKind_CycleSlip}}));
    plot.view.setCurvesPosToVerticalZero();
    QWheelEvent wheel(QPointF(400, 200), QPointF(400, 200), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(plot.view.viewport(), &wheel);
    plot.view.setTimeWindow(10, 60);
    double xMin, xMax, yMin, yMax;
    plot.coord->getArea(xMin, xMax, yMin, yMax);
    QCOMPARE(xMin, 10.0);
    QCOMPARE(yMax, 0.4 * 1.15);
    const QImage image = plot.render();
    PIXEL_VERIFY(tickAt(image, samplePixel(plot.coord, 25, 0.2), kSlip), image,
                 QStringLiteral("marks_navigation"));
    // Panned past it, the tick is gone with its sample.
    plot.view.setTimeWindow(40, 90);
    const QImage panned = plot.render();
    PIXEL_VERIFY(countColour(panned, kSlip) == 0, panned, QStringLiteral("marks_panned"));
}

void tst_CurveMarks::hostileMarks_data()
{
    QTest::addColumn<QVector<EventMark>>("marks");
    QTest::addColumn<int>("ticks");
    const qint64 big = std::numeric_limits<qint64>::max();
    const qint64 small = std::numeric_limits<qint64>::min();
    QTest::newRow("negative index") << QVector<EventMark>{{-1, 1}} << 0;
    QTest::newRow("one past the last sample") << QVector<EventMark>{{101, 1}} << 0;
    QTest::newRow("huge and most negative")
        << QVector<EventMark>{{big, 1}, {small, 2}, {big - 1, 3}} << 0;
    QTest::newRow("NaN under the mark") << QVector<EventMark>{{60, 1}} << 0;
    QTest::newRow("unknown kinds, duplicates, unsorted")
        << QVector<EventMark>{{50, -7}, {10, 1}, {50, -7}, {10, 1 << 30}} << 2;
    QTest::newRow("first and last sample") << QVector<EventMark>{{0, 1}, {100, 1}} << 2;
}

void tst_CurveMarks::hostileMarks()
{
    QFETCH(QVector<EventMark>, marks);
    QFETCH(int, ticks);
    MarkPlot plot;
    QVERIFY(plot.registry()->setCurveEventMarks("a", marks));
    QCOMPARE(plot.registry()->getCurveEventMarks("a"), marks);
    const QImage image = plot.render();
    // Ticks at the area's edges are cut by it; count the columns that hold
    // any tick colour on the curve's row.
    int found = 0;
    for (int x = 0; x < kWidth; ++x) {
        const QRgb c = image.pixel(x, kHeight - 300);
        const bool bTick = c == kSlip.rgba() || c == kHostKind.rgba();
        const bool bBefore = x > 0 && (image.pixel(x - 1, kHeight - 300) == kSlip.rgba()
                                       || image.pixel(x - 1, kHeight - 300) == kHostKind.rgba());
        found += bTick && !bBefore;
    }
    PIXEL_VERIFY(found == ticks, image, QStringLiteral("marks_hostile_") + QTest::currentDataTag());
    // The read-out finds the sample under every mark as if there were none.
    plot.view.setHoverReadOutEnabled(true);
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    plot.move(plot.viewportAt(400.5, -299.5));
    plot.view.viewport()->repaint();
}

void tst_CurveMarks::marksInRegistry()
{
    MarkPlot plot;
    QSignalSpy spy(plot.registry(), &CurveScene::sgCurveEventMarksChanged);
    const QVector<EventMark> marks{{3, EEventMarkKind_Gap}, {1, EEventMarkKind_CycleSlip}};
    QVERIFY(!plot.registry()->setCurveEventMarks("unknown", marks));
    QCOMPARE(spy.count(), 0);
    QVERIFY(plot.registry()->getCurveEventMarks("unknown").isEmpty());
    QVERIFY(plot.registry()->setCurveEventMarks("a", marks));
    QVERIFY(plot.registry()->setCurveEventMarks("a", marks));
    QCOMPARE(spy.count(), 1);  // the same marks twice: one signal
    QCOMPARE(spy.at(0).at(0).toString(), QString("a"));
    QCOMPARE(plot.registry()->getCurveEventMarks("a"), marks);  // as given, unsorted
    QVERIFY(plot.registry()->setCurveEventMarks("a", {}));
    QVERIFY(plot.registry()->setCurveEventMarks("a", {}));
    QCOMPARE(spy.count(), 2);
    // Removing the curve drops its marks; a curve of the same name starts
    // without.
    QVERIFY(plot.registry()->setCurveEventMarks("a", marks));
    plot.registry()->removeCurve("a");
    QVERIFY(plot.registry()->getCurveEventMarks("a").isEmpty());
    plot.registry()->addCurve("a", gt::makeDataSet({{0.2, 0.2}}), true, Qt::blue,
                              ECurveShowCap_Line, true);
    QVERIFY(plot.registry()->getCurveEventMarks("a").isEmpty());
    QCOMPARE(spy.count(), 3);
    // A new coordinate rebuilds the frame; the marks stay drawn.
    QVERIFY(plot.registry()->setCurveEventMarks("a", {{1, EEventMarkKind_CycleSlip}}));
    auto* coord = new Curve_Coord_XY;
    coord->setArea(0, 2, -1, 1);
    plot.registry()->setCoord(coord, true);
    plot.coord = coord;
    plot.resize();
    const QImage image = plot.render();
    PIXEL_VERIFY(tickAt(image, QPoint(400, -300), kSlip), image, QStringLiteral("marks_coord"));
}

void tst_CurveMarks::kindColours()
{
    MarkPlot plot;
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_CycleSlip), kSlip);
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_LossOfLock), kLossOfLock);
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_Gap), kGap);
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_User + 4), kHostKind);
    QVERIFY(plot.registry()->setCurveEventMarks("a", {{25, EEventMarkKind_User + 4}}));
    QImage image = plot.render();
    PIXEL_VERIFY(tickAt(image, QPoint(200, -300), kHostKind), image, QStringLiteral("kind_host"));
    plot.view.setEventKindColor(EEventMarkKind_User + 4, QColor(0, 160, 0));
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_User + 4), QColor(0, 160, 0));
    image = plot.render();
    PIXEL_VERIFY(tickAt(image, QPoint(200, -300), QColor(0, 160, 0)), image,
                 QStringLiteral("kind_green"));
    plot.view.setEventKindColor(EEventMarkKind_User + 4, QColor());
    QCOMPARE(plot.view.getEventKindColor(EEventMarkKind_User + 4), kHostKind);

    QCOMPARE(plot.view.getEventKindName(EEventMarkKind_CycleSlip), QString("cycle slip"));
    QCOMPARE(plot.view.getEventKindName(EEventMarkKind_LossOfLock), QString("loss of lock"));
    QCOMPARE(plot.view.getEventKindName(EEventMarkKind_Gap), QString("gap"));
    QCOMPARE(plot.view.getEventKindName(300), QString("event 300"));
    plot.view.setEventKindName(300, "half-cycle slip");
    QCOMPARE(plot.view.getEventKindName(300), QString("half-cycle slip"));
    plot.view.setEventKindName(300, QString());
    QCOMPARE(plot.view.getEventKindName(300), QString("event 300"));
}

void tst_CurveMarks::hoverNamesKind()
{
    MarkPlot plot;
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    QVERIFY(plot.registry()->setCurveEventMarks(
        "a", {{50, EEventMarkKind_Gap}, {40, EEventMarkKind_CycleSlip},
              {50, EEventMarkKind_User + 1}}));
    plot.view.setEventKindName(EEventMarkKind_User + 1, "phase jump");
    plot.view.setHoverReadOutEnabled(true);
    plot.view.setHoverToolTip(true);
    QSignalSpy hover(&plot.view, &CurveGraphicsView::sgHover);
    QSignalSpy marks(&plot.view, &CurveGraphicsView::sgHoverEventMarks);
    QSignalSpy none(&plot.view, &CurveGraphicsView::sgHoverNone);
    const auto at = [&](double sample) {
        const QPoint p = samplePixel(plot.coord, sample, 0.2);
        return plot.viewportAt(p.x() + 0.5, p.y() + 0.5);
    };
    // Sample 45 has no mark: sgHover alone.
    plot.move(at(45));
    QCOMPARE(hover.count(), 1);
    QCOMPARE(marks.count(), 0);
    QVERIFY(!QToolTip::text().contains("Event"));
    // Sample 50 has two, named in the order given; the same sample twice
    // reports once.
    plot.move(at(50));
    plot.move(at(50));
    QCOMPARE(hover.count(), 2);
    QCOMPARE(marks.count(), 1);
    QCOMPARE(marks.at(0).at(0).toString(), QString("a"));
    QCOMPARE(marks.at(0).at(1).toInt(), 0);
    QCOMPARE(marks.at(0).at(2).toDouble(), 50.0);
    QCOMPARE(marks.at(0).at(3).toDouble(), 0.2);
    QCOMPARE(marks.at(0).at(4).value<QList<int>>(),
             (QList<int>{EEventMarkKind_Gap, EEventMarkKind_User + 1}));
    QTRY_VERIFY(QToolTip::isVisible());
    QCOMPARE(QToolTip::text().split('\n').last(), QString("Event gap, phase jump"));
    plot.move(at(40));
    QCOMPARE(marks.count(), 2);
    QCOMPARE(marks.at(1).at(4).value<QList<int>>(), QList<int>{EEventMarkKind_CycleSlip});
    QCOMPARE(none.count(), 0);
}

void tst_CurveMarks::pickedSampleMarker()
{
    // "a" (blue) and "b" (red) lie on one another at 0.2; "b", later in
    // name order, is on top until "a" is named.
    MarkPlot plot;
    QVERIFY(plot.registry()->addCurve("b", gt::makeDataSet({QVector<double>(101, 0.2)}), true,
                                      Qt::red, ECurveShowCap_Line, true));
    QVERIFY(!plot.view.isPickedSampleMarkerShown());
    plot.view.setProperty("pickedSampleMarker", true);
    QVERIFY(plot.view.isPickedSampleMarkerShown());
    plot.view.setHoverReadOutEnabled(true);
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    QSignalSpy hover(&plot.view, &CurveGraphicsView::sgHover);
    const CurvePicture* picture = CurveGraphicsSceneAccess::picture(plot.scene());
    const CurvePicture* front = CurveGraphicsSceneAccess::frontPicture(plot.scene());
    const auto onTop = [&](const QImage& image, bool bBlue) {
        const QRgb c = image.pixel(700, kHeight - 300);
        return bBlue ? qBlue(c) > qRed(c) + 60 : qRed(c) > qBlue(c) + 60;
    };
    QImage image = plot.render();
    PIXEL_VERIFY(onTop(image, false), image, QStringLiteral("marker_none"));
    PIXEL_VERIFY(countColour(image, Qt::black) == 0, image, QStringLiteral("marker_none"));

    // Name sample 50 of "a" (the nearest is "a": "b" is only as near, and
    // the first found wins), through the mouse as a user would.
    plot.move(plot.viewportAt(400.5, -299.5));
    QCOMPARE(hover.count(), 1);
    QCOMPARE(hover.at(0).at(0).toString(), QString("a"));
    image = plot.render();
    const QString name = QStringLiteral("marker_a");
    PIXEL_VERIFY(onTop(image, true), image, name);
    // The ring: radius 6 about the centre of pixel (400, -300).
    for (const QPoint& p : {QPoint(406, 200), QPoint(394, 200), QPoint(400, 194),
                            QPoint(400, 206)}) {
        PIXEL_VERIFY(image.pixel(p) == QColor(Qt::black).rgba(), image, name);
    }
    PIXEL_VERIFY(image.pixel(400, 200) != QColor(Qt::black).rgba(), image, name);
    PIXEL_VERIFY(image.pixel(410, 200) != QColor(Qt::black).rgba(), image, name);

    // Moving along the curve moves the ring and builds no picture of all
    // curves, nor a new front picture. (A render into an image of another
    // size is another target, so only the viewport paints in between.)
    plot.view.viewport()->repaint();
    const quint64 builds = picture->buildCount();
    const quint64 frontBuilds = front->buildCount();
    QVERIFY(builds > 0 && frontBuilds > 0);
    for (int i = 1; i <= 5; ++i) {
        plot.move(plot.viewportAt(400.5 + 8 * i, -299.5));
        plot.view.viewport()->repaint();
    }
    QCOMPARE(hover.count(), 6);
    QCOMPARE(picture->buildCount(), builds);
    QCOMPARE(front->buildCount(), frontBuilds);
    image = plot.render();
    PIXEL_VERIFY(image.pixel(446, 200) == QColor(Qt::black).rgba(), image,
                 QStringLiteral("marker_moved"));
    PIXEL_VERIFY(image.pixel(406, 200) != QColor(Qt::black).rgba(), image,
                 QStringLiteral("marker_moved"));

    // Nothing named: ring and front go.
    plot.move(plot.viewportAt(400.5, -100.5));
    image = plot.render();
    PIXEL_VERIFY(onTop(image, false), image, QStringLiteral("marker_cleared"));
    PIXEL_VERIFY(countColour(image, Qt::black) == 0, image, QStringLiteral("marker_cleared"));

    // Switched off while a sample is named, the ring goes at once.
    plot.move(plot.viewportAt(400.5, -299.5));
    QVERIFY(countColour(plot.render(), Qt::black) > 0);
    plot.view.setPickedSampleMarkerShown(false);
    image = plot.render();
    PIXEL_VERIFY(countColour(image, Qt::black) == 0 && onTop(image, false), image,
                 QStringLiteral("marker_off"));
}

void tst_CurveMarks::markerMoveRepaintsRingOnly()
{
    // Moving from one sample to the next of the same curve repaints the
    // ring's old and new places only: no picture is built, and the rest of
    // the data area is left as it is.
    MarkPlot plot;
    plot.view.setPickedSampleMarkerShown(true);
    plot.view.setHoverReadOutEnabled(true);
    plot.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot.view));
    QSignalSpy hover(&plot.view, &CurveGraphicsView::sgHover);
    plot.move(plot.viewportAt(400.5, -299.5));
    QCOMPARE(hover.count(), 1);
    QCoreApplication::processEvents();
    const CurvePicture* picture = CurveGraphicsSceneAccess::picture(plot.scene());
    const CurvePicture* front = CurveGraphicsSceneAccess::frontPicture(plot.scene());
    const quint64 builds = picture->buildCount();
    const quint64 frontBuilds = front->buildCount();

    PaintRegions paints;
    plot.view.viewport()->installEventFilter(&paints);
    plot.move(plot.viewportAt(408.5, -299.5));
    QCOMPARE(hover.count(), 2);
    QTRY_VERIFY(!paints.region.isEmpty());
    QCoreApplication::processEvents();
    plot.view.viewport()->removeEventFilter(&paints);
    // Rings of radius 6 and pen 2 about pixels 400 and 408 of row -300,
    // with a pixel for antialiasing and one for rounding.
    const QRect allowed(plot.viewportAt(400 - 10, -300 - 10),
                        plot.viewportAt(408 + 11, -300 + 11));
    QVERIFY2(allowed.contains(paints.region.boundingRect()),
             qPrintable(QStringLiteral("%1,%2 %3x%4")
                            .arg(paints.region.boundingRect().x())
                            .arg(paints.region.boundingRect().y())
                            .arg(paints.region.boundingRect().width())
                            .arg(paints.region.boundingRect().height())));
    QCOMPARE(picture->buildCount(), builds);
    QCOMPARE(front->buildCount(), frontBuilds);
    const QImage image = plot.render();
    PIXEL_VERIFY(image.pixel(414, 200) == QColor(Qt::black).rgba()
                     && image.pixel(406, 200) != QColor(Qt::black).rgba(),
                 image, QStringLiteral("marker_step"));

    // The named curve removed: no ring is left, and nothing points at it.
    plot.registry()->removeCurve("a");
    const QImage gone = plot.render();
    PIXEL_VERIFY(countColour(gone, Qt::black) == 0, gone, QStringLiteral("marker_removed"));
    plot.move(plot.viewportAt(420.5, -299.5));
    plot.view.viewport()->repaint();
}

QTEST_MAIN(tst_CurveMarks)
#include "tst_curvemarks.moc"
