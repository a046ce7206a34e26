// The frame, curve and Y-selection items on their own: geometry, label
// layout, run cutting, pens and listening.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using Runs = QVector<int>;
Q_DECLARE_METATYPE(std::set<qint64>)

class tst_CurveGraphicsItems : public QObject
{
    Q_OBJECT
private slots:
    void frameGeometry_data();
    void frameGeometry();
    void labelRects();
    void runs_data();
    void runs();
    void showParamsAndPens();
    void listenSwitch();
};

void tst_CurveGraphicsItems::frameGeometry_data()
{
    QTest::addColumn<bool>("resize");
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QPointF>("selectionPos");

    QTest::newRow("new frame") << false << 0 << 0 << QRectF(-80, -100, 180, 108)
                               << QPointF(-70, -80);
    QTest::newRow("800x540") << true << 800 << 540 << QRectF(-80, -500, 800, 540)
                             << QPointF(-70, -480);
    QTest::newRow("80x0 raised to 1x1") << true << 80 << 0
                                        << QRectF(-80, -25.0 / 27, 81, 1.0)
                                        << QPointF(-70, 20.0 - 25.0 / 27);
    QTest::newRow("50x540 keeps negative width") << true << 50 << 540
                                                 << QRectF(-80, -500, 50, 540)
                                                 << QPointF(-70, -480);
}

void tst_CurveGraphicsItems::frameGeometry()
{
    QFETCH(bool, resize);
    QFETCH(int, w);
    QFETCH(int, h);
    QFETCH(QRectF, bounds);
    QFETCH(QPointF, selectionPos);

    Curve_Coord_XY coord;
    CurveGraphicsItem_Coord_PXPY frame(&coord, nullptr);
    QSignalSpy spy(&frame, SIGNAL(sgDataAreaChanged(double,double)));
    if (resize)
        frame.setPixelSize(w, h);

    QCOMPARE(frame.boundingRect(), bounds);
    QCOMPARE(frame.getShowWhichY()->pos(), selectionPos);
    QCOMPARE(frame.getShowWhichY()->parentItem(), &frame);
    const QRectF data = frame.getDataRect();
    QCOMPARE(data.bottom(), 0.0);
    QCOMPARE(spy.count(), resize ? 1 : 0);
    if (resize) {
        QCOMPARE(spy.at(0).at(0).toDouble(), data.width());
        QCOMPARE(spy.at(0).at(1).toDouble(), data.height());
        if (w == 800)
            QCOMPARE(data.size(), QSizeF(720, 500));
    }
}

void tst_CurveGraphicsItems::labelRects()
{
    Curve_Coord_XY coord;
    CurveGraphicsItem_Coord_PXPY frame(&coord, nullptr);
    frame.setPixelSize(800, 540);
    QMap<double, QString> xs;
    for (int i = 0; i <= 10; ++i)
        xs.insert(i / 10.0, QStringLiteral("12:00:%1").arg(i, 2, 10, QLatin1Char('0')));
    QMap<double, QString> ys;
    for (const double f : {0.0, 0.25, 0.5, 0.75, 1.0})
        ys.insert(f, QString::number(f, 'f', 3) + QStringLiteral("m"));
    frame.setLabels(xs, ys, QStringLiteral("2020/01/01"), QStringLiteral("GPST"));

    const QFontMetrics fm(frame.font());
    const int fh = fm.height();
    const auto width = [&fm](const QString& text) { return fm.horizontalAdvance(text); };

    // X: first flush with the data area's left edge, last with its right edge,
    // the others centred; 3 pixels below the axis; all grown by 1.
    const int w0 = width(xs.value(0.0));
    QCOMPARE(frame.xLabelRects().value(0.0), QRectF(-1, 2, w0 + 2, fh + 2));
    const int w5 = width(xs.value(0.5));
    QCOMPARE(frame.xLabelRects().value(0.5), QRectF(360 - w5 * 0.5 - 1, 2, w5 + 2, fh + 2));
    const int w10 = width(xs.value(1.0));
    QCOMPARE(frame.xLabelRects().value(1.0), QRectF(720 - w10 - 1, 2, w10 + 2, fh + 2));

    // Y: right-aligned 5 pixels left of the area; lowest wholly above its tick,
    // highest wholly below its tick.
    const int wy = width(ys.value(0.5));
    QCOMPARE(frame.yLabelRects().value(0.5),
             QRectF(-5 - wy - 1, -250 - fh * 0.5 - 1, wy + 2, fh + 2));
    QCOMPARE(frame.yLabelRects().value(0.0).top(), -double(fh) - 1);
    QCOMPARE(frame.yLabelRects().value(1.0).top(), -500.0 - 1);

    const int wDate = width(frame.dateText());
    const int wSys = width(frame.timeSystemText());
    const double left = -22 - qMax(wDate, wSys) - 1;
    QCOMPARE(frame.dateRect(), QRectF(left, 40 - 1.7 * fh - 1, wDate + 2, fh + 2));
    QCOMPARE(frame.timeSystemRect(), QRectF(left, 40 - 2.5 * fh - 1, wSys + 2, fh + 2));

    // A single label stays centred on its tick.
    QMap<double, QString> one;
    one.insert(0.0, xs.value(0.0));
    frame.setLabels(one, ys, QString(), QString());
    QCOMPARE(frame.xLabelRects().value(0.0).left(), -w0 * 0.5 - 1);
    QCOMPARE(frame.xLabelRects().size(), 1);
}

void tst_CurveGraphicsItems::runs_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<QVector<double>>("ys");
    QTest::addColumn<std::set<qint64>>("breaks");
    QTest::addColumn<int>("height");
    QTest::addColumn<Runs>("runs");
    QTest::addColumn<QPoint>("firstPoint");
    QTest::addColumn<bool>("centreDrawn"); // sample (5, 5) on the painted curve

    QVector<double> x10;
    for (int i = 0; i < 10; ++i)
        x10.append(i);
    const QVector<double> y10 = x10;
    auto with = [](QVector<double> v, int from, int to, double value) {
        for (int i = from; i <= to; ++i)
            v[i] = value;
        return v;
    };
    // Area x 0..10, y 0..10 into a 100 x 100 data area: sample (x, y) lands on
    // (10x, -10y), truncated toward zero.
    QTest::newRow("no breaks") << x10 << y10 << std::set<qint64>{} << 100 << Runs{10}
                               << QPoint(0, 0) << true;
    QTest::newRow("break at 4") << x10 << y10 << std::set<qint64>{4} << 100 << Runs{5, 5}
                                << QPoint(0, 0) << true;
    QTest::newRow("NaN inside a run joins its neighbours")
        << x10 << with(y10, 4, 4, gt::NaN) << std::set<qint64>{} << 100 << Runs{9}
        << QPoint(0, 0) << true;
    QTest::newRow("all-NaN stretch between breaks gives no run")
        << x10 << with(y10, 3, 5, gt::NaN) << std::set<qint64>{2, 5} << 100 << Runs{3, 4}
        << QPoint(0, 0) << false;
    QTest::newRow("single sample between breaks")
        << x10 << y10 << std::set<qint64>{2, 3} << 100 << Runs{3, 1, 6} << QPoint(0, 0) << true;
    QTest::newRow("NaN X is dropped") << with(x10, 0, 0, gt::NaN) << y10 << std::set<qint64>{}
                                      << 100 << Runs{9} << QPoint(10, -10) << true;
    QTest::newRow("huge Y saturates") << x10 << with(y10, 0, 0, 1e300) << std::set<qint64>{}
                                      << 100 << Runs{10}
                                      << QPoint(0, -CurveGraphicsItem_Curve_XY::kPixelLimit)
                                      << true;
    QTest::newRow("infinite X saturates")
        << with(x10, 0, 0, -std::numeric_limits<double>::infinity()) << y10
        << std::set<qint64>{} << 100 << Runs{10}
        << QPoint(-CurveGraphicsItem_Curve_XY::kPixelLimit, 0) << true;
    QTest::newRow("Y longer than X, break past the common end")
        << x10.mid(0, 5) << y10 << std::set<qint64>{6} << 100 << Runs{5} << QPoint(0, 0) << false;
    QTest::newRow("negative height flips into y 0..100")
        << x10 << with(y10, 0, 0, 3.0) << std::set<qint64>{} << -100 << Runs{10}
        << QPoint(0, 70) << false;
    QTest::newRow("empty Y axis") << x10 << QVector<double>{} << std::set<qint64>{} << 100
                                  << Runs{} << QPoint() << false;
}

void tst_CurveGraphicsItems::runs()
{
    QFETCH(QVector<double>, xs);
    QFETCH(QVector<double>, ys);
    QFETCH(std::set<qint64>, breaks);
    QFETCH(int, height);
    QFETCH(Runs, runs);
    QFETCH(QPoint, firstPoint);
    QFETCH(bool, centreDrawn);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, 0, 10));
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    QVERIFY(item.polylines().isEmpty());
    item.setDataArea(100.9, height);

    QCOMPARE(item.dataAreaWidth(), 100);
    QCOMPARE(item.isYDown(), height < 0);
    QCOMPARE(item.boundingRect(), QRectF(0, -height, 100, height));
    QCOMPARE(item.polylines().size(), 1);
    Runs sizes;
    for (const QPolygon& run : item.polylines().at(0))
        sizes.append(run.size());
    QCOMPARE(sizes, runs);
    if (!runs.isEmpty())
        QCOMPARE(item.polylines().at(0).at(0).at(0), firstPoint);

    // Painting the cache, saturated coordinates included, stays within the
    // image and the sanitizers' view.
    QImage image(120, 220, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.translate(10, 110);
        item.paint(&painter, nullptr, nullptr);
    }
    const bool drawn = gt::anyNear(image, {60, 60}, 3, gt::isDark);
    gt::keepImage(image, QString::fromLatin1(QTest::currentDataTag()), false);
    QCOMPARE(drawn, centreDrawn);

    // The cache follows a change of the coordinate's area.
    QVERIFY(coord.setArea(0, 20, 0, 10));
    if (!runs.isEmpty() && firstPoint.x() > 0 && firstPoint.x() < 1000)
        QCOMPARE(item.polylines().at(0).at(0).at(0).x(), firstPoint.x() / 2);
}

void tst_CurveGraphicsItems::showParamsAndPens()
{
    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    registry->addCurve(QStringLiteral("a"), gt::makeDataSet({{1, 2, 3}, {3, 2, 1}}), true,
                       QColor(200, 100, 0), ECurveShowCap_Line, true);
    registry->addCurve(QStringLiteral("b"), gt::makeDataSet({{1, 2, 3}}), true, Qt::black,
                       ECurveShowCap_Point, false);
    const auto items = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene);
    QCOMPARE(items.size(), 2);
    CurveGraphicsItem_Curve_XY* a = items.at(0)->curveName() == QLatin1String("a")
                                        ? items.at(0) : items.at(1);
    CurveGraphicsItem_Curve_XY* b = a == items.at(0) ? items.at(1) : items.at(0);

    QCOMPARE(a->pen().color(), QColor(200, 100, 0, 128));
    QCOMPARE(a->pen().widthF(), 0.0);
    QVERIFY(a->yPens().isEmpty()); // sized only when recoloured after a rebuild
    QCOMPARE(b->showCap(), ECurveShowCap_Point);
    QVERIFY(!b->isVisible());
    QVERIFY(a->isVisible());

    registry->setCurveShowParam_color(QStringLiteral("a"), QColor(200, 100, 1));
    QCOMPARE(a->yPens().size(), 2);
    QCOMPARE(a->yPens().at(0).color(), QColor(200, 100, 1, 128));
    QCOMPARE(a->yPens().at(1).color(), QColor(255, 130, 0, 128)); // 260 cut to 255

    registry->setCurveSingleShow(QStringLiteral("a"), true);
    QCOMPARE(a->yPens().at(0).color(), QColor(0, 34, 255, 255));
    QCOMPARE(a->yPens().at(1).color(), QColor(0, 128, 0, 255));
    QVERIFY(b->yPens().isEmpty());
    registry->setCurveSingleShow(QStringLiteral("a"), false);
    QCOMPARE(a->yPens().at(1).color(), QColor(255, 130, 0, 128));

    // Unknown style values leave the style alone; other names change nothing.
    registry->setCurveShowParam_cap(QStringLiteral("a"), ECurveShowCap(7));
    QCOMPARE(a->showCap(), ECurveShowCap_Line);
    registry->setCurveShowParam_color(QStringLiteral("b"), QColor(0, 0, 0, 255).lighter());
    QCOMPARE(a->yPens().at(0).color(), QColor(200, 100, 1, 128));
    registry->setCurveShowParam_visible(QStringLiteral("b"), true);
    QVERIFY(b->isVisible());
    // A curve added after the area was fitted waits for the next change.
    QVERIFY(b->polylines().isEmpty());
    scene.setCoordPixelSize(400, 270);
    QCOMPARE(b->polylines().value(0).value(0).size(), 3);
}

void tst_CurveGraphicsItems::listenSwitch()
{
    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    Curve_DataSet_XY* dataSet = gt::makeDataSet({{1, 2, 3, 4}});
    registry->addCurve(QStringLiteral("a"), dataSet, true, Qt::red, ECurveShowCap_Line, true);
    auto* item = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).value(0);
    QVERIFY(item);
    QCOMPARE(item->polylines().at(0).at(0).size(), 4);

    scene.switchOffCurvesListen();
    QVERIFY(!item->isListening());
    gt::fillAxis(dataSet->getAxisData(1), {1, 2});
    scene.setCoordPixelSize(300, 300);
    QCOMPARE(item->polylines().at(0).at(0).size(), 4);
    QCOMPARE(item->dataAreaWidth(), 100);
    scene.switchOnCurvesListen();
    QCOMPARE(item->polylines().at(0).at(0).size(), 4); // unseen until the next change
    scene.setCoordPixelSize(300, 270);
    QCOMPARE(item->polylines().at(0).at(0).size(), 2);
    QCOMPARE(item->dataAreaHeight(), 250);

    // Emptied and refilled: the cache empties and comes back.
    gt::fillAxis(dataSet->getAxisData(1), {});
    QVERIFY(item->polylines().at(0).isEmpty());
    gt::fillAxis(dataSet->getAxisData(1), {4, 3, 2, 1});
    QCOMPARE(item->polylines().at(0).at(0).size(), 4);
}

QTEST_MAIN(tst_CurveGraphicsItems)
#include "tst_curvegraphicsitems.moc"
