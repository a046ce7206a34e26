// The frame and curve items on their own: geometry, label layout, run
// cutting, pens and listening.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "Curve_Coord_XY.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSignalSpy>

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
    void pensAndShowParams();
    void listenSwitch();
};

void tst_CurveGraphicsItems::frameGeometry_data()
{
    QTest::addColumn<QSize>("size"); // invalid: never set
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QPointF>("selectionPos");
    QTest::newRow("new frame") << QSize() << QRectF(-80, -100, 180, 108) << QPointF(-70, -80);
    QTest::newRow("800x540") << QSize(800, 540) << QRectF(-80, -500, 800, 540)
                             << QPointF(-70, -480);
    QTest::newRow("80x0 raised to 1x1") << QSize(80, 0) << QRectF(-80, -25.0 / 27, 81, 1)
                                        << QPointF(-70, 20 - 25.0 / 27);
    QTest::newRow("50x540 keeps a negative width") << QSize(50, 540)
                                                   << QRectF(-80, -500, 50, 540)
                                                   << QPointF(-70, -480);
}

void tst_CurveGraphicsItems::frameGeometry()
{
    QFETCH(QSize, size);
    QFETCH(QRectF, bounds);
    QFETCH(QPointF, selectionPos);
    Curve_Coord_XY coord;
    CurveGraphicsItem_Coord_PXPY frame(&coord, nullptr);
    QSignalSpy spy(&frame, SIGNAL(sgDataAreaChanged(double,double)));
    if (size.isValid())
        frame.setPixelSize(size.width(), size.height());
    QCOMPARE(frame.boundingRect(), bounds);
    QCOMPARE(frame.getShowWhichY()->pos(), selectionPos);
    QCOMPARE(frame.getDataRect(), QRectF(0, bounds.top(), bounds.width() - 80, -bounds.top()));
    QCOMPARE(spy.count(), size.isValid() ? 1 : 0);
    if (size == QSize(800, 540))
        QCOMPARE(spy.at(0), (QVariantList{720.0, 500.0}));
}

void tst_CurveGraphicsItems::labelRects()
{
    Curve_Coord_XY coord;
    CurveGraphicsItem_Coord_PXPY frame(&coord, nullptr);
    frame.setPixelSize(800, 540);
    QMap<double, QString> xs, ys;
    for (int i = 0; i <= 10; ++i)
        xs.insert(i / 10.0, QStringLiteral("12:00:%1").arg(i, 2, 10, QLatin1Char('0')));
    for (const double f : {0.0, 0.25, 0.5, 0.75, 1.0})
        ys.insert(f, QString::number(f, 'f', 3) + QStringLiteral("m"));
    frame.setLabels(xs, ys, QStringLiteral("2020/01/01"), QStringLiteral("GPST"));

    const QFontMetrics fm(frame.font());
    const int fh = fm.height();
    const auto w = [&fm](const QString& text) { return fm.horizontalAdvance(text); };
    // X: first flush left, last flush right, others centred; all grown by 1.
    QCOMPARE(frame.xLabelRects().value(0.0), QRectF(-1, 2, w(xs[0.0]) + 2, fh + 2));
    QCOMPARE(frame.xLabelRects().value(0.5),
             QRectF(360 - w(xs[0.5]) * 0.5 - 1, 2, w(xs[0.5]) + 2, fh + 2));
    QCOMPARE(frame.xLabelRects().value(1.0).right(), 721.0);
    // Y: right-aligned 5 pixels left of the area; the outer ones pulled inside.
    QCOMPARE(frame.yLabelRects().value(0.5),
             QRectF(-6 - w(ys[0.5]), -250 - fh * 0.5 - 1, w(ys[0.5]) + 2, fh + 2));
    QCOMPARE(frame.yLabelRects().value(0.0).top(), -double(fh) - 1);
    QCOMPARE(frame.yLabelRects().value(1.0).top(), -501.0);
    const double left = -23 - qMax(w(QStringLiteral("2020/01/01")), w(QStringLiteral("GPST")));
    QCOMPARE(frame.dateRect().topLeft(), QPointF(left, 40 - 1.7 * fh - 1));
    QCOMPARE(frame.timeSystemRect().topLeft(), QPointF(left, 40 - 2.5 * fh - 1));

    frame.setLabels({{0.0, xs[0.0]}}, ys, QString(), QString()); // a lone label stays centred
    QCOMPARE(frame.xLabelRects().keys(), QList<double>{0.0});
    QCOMPARE(frame.xLabelRects().value(0.0).left(), -w(xs[0.0]) * 0.5 - 1);
}

void tst_CurveGraphicsItems::runs_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<QVector<double>>("ys");
    QTest::addColumn<std::set<qint64>>("breaks");
    QTest::addColumn<int>("height");
    QTest::addColumn<Runs>("runs");
    QTest::addColumn<QPoint>("firstPoint");

    QVector<double> v10;
    for (int i = 0; i < 10; ++i)
        v10.append(i);
    const auto with = [&v10](int from, int to, double value) {
        QVector<double> v = v10;
        std::fill(v.begin() + from, v.begin() + to + 1, value);
        return v;
    };
    const int limit = CurveGraphicsItem_Curve_XY::kPixelLimit;
    const double inf = std::numeric_limits<double>::infinity();
    // Area x 0..10, y 0..10 in a 100 x 100 data area: (x, y) lands on (10x, -10y).
    QTest::newRow("no breaks") << v10 << v10 << std::set<qint64>{} << 100 << Runs{10}
                               << QPoint(0, 0);
    QTest::newRow("break at 4") << v10 << v10 << std::set<qint64>{4} << 100 << Runs{5, 5}
                                << QPoint(0, 0);
    QTest::newRow("NaN joins its neighbours") << v10 << with(4, 4, gt::NaN)
                                              << std::set<qint64>{} << 100 << Runs{9}
                                              << QPoint(0, 0);
    QTest::newRow("all-NaN stretch between breaks") << v10 << with(3, 5, gt::NaN)
                                                    << std::set<qint64>{2, 5} << 100
                                                    << Runs{3, 4} << QPoint(0, 0);
    QTest::newRow("single sample between breaks") << v10 << v10 << std::set<qint64>{2, 3}
                                                  << 100 << Runs{3, 1, 6} << QPoint(0, 0);
    QTest::newRow("NaN X dropped") << with(0, 0, gt::NaN) << v10 << std::set<qint64>{} << 100
                                   << Runs{9} << QPoint(10, -10);
    QTest::newRow("huge Y saturates") << v10 << with(0, 0, 1e300) << std::set<qint64>{} << 100
                                      << Runs{10} << QPoint(0, -limit);
    QTest::newRow("infinite X saturates") << with(0, 0, -inf) << v10 << std::set<qint64>{}
                                          << 100 << Runs{10} << QPoint(-limit, 0);
    QTest::newRow("Y longer than X, break past the end") << v10.mid(0, 5) << v10
                                                         << std::set<qint64>{6} << 100
                                                         << Runs{5} << QPoint(0, 0);
    QTest::newRow("negative height flips") << v10 << with(0, 0, 3) << std::set<qint64>{}
                                           << -100 << Runs{10} << QPoint(0, 70);
    QTest::newRow("empty Y axis") << v10 << QVector<double>{} << std::set<qint64>{} << 100
                                  << Runs{} << QPoint();
}

void tst_CurveGraphicsItems::runs()
{
    QFETCH(QVector<double>, xs);
    QFETCH(QVector<double>, ys);
    QFETCH(std::set<qint64>, breaks);
    QFETCH(int, height);
    QFETCH(Runs, runs);
    QFETCH(QPoint, firstPoint);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, 0, 10));
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    QVERIFY(item.polylines().isEmpty());
    item.setDataArea(100.9, height);
    QCOMPARE(item.isYDown(), height < 0);
    QCOMPARE(item.boundingRect(), QRectF(0, -height, 100, height));
    Runs sizes;
    for (const QPolygon& run : item.polylines().value(0))
        sizes.append(run.size());
    QCOMPARE(sizes, runs);
    if (!runs.isEmpty())
        QCOMPARE(item.polylines().at(0).at(0).at(0), firstPoint);

    // Saturated coordinates paint without trouble (the sanitizers watch).
    QImage image(120, 220, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    painter.end();
    // The cache follows the coordinate's area.
    QVERIFY(coord.setArea(0, 20, 0, 10));
    if (!runs.isEmpty() && firstPoint.x() > 0)
        QCOMPARE(item.polylines().at(0).at(0).at(0).x(), firstPoint.x() / 2);
}

void tst_CurveGraphicsItems::pensAndShowParams()
{
    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    registry->addCurve("a", gt::makeDataSet({{1, 2, 3}, {3, 2, 1}}), true, QColor(200, 100, 0),
                       ECurveShowCap_Line, true);
    registry->addCurve("b", gt::makeDataSet({{1, 2}}), true, Qt::black, ECurveShowCap_Point,
                       false);
    const auto items = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene);
    QCOMPARE(items.size(), 2);
    CurveGraphicsItem_Curve_XY* a = items.at(0);
    CurveGraphicsItem_Curve_XY* b = items.at(1);
    QCOMPARE(a->pen(), [] { QPen p(QColor(200, 100, 0, 128)); p.setWidth(0); return p; }());
    QVERIFY(a->yPens().isEmpty()); // sized only when recoloured after a rebuild
    QCOMPARE(b->showCap(), ECurveShowCap_Point);
    QVERIFY(!b->isVisible());

    registry->setCurveShowParam_color("a", QColor(200, 100, 1));
    QCOMPARE(a->yPens().size(), 2);
    QCOMPARE(a->yPens().at(0).color(), QColor(200, 100, 1, 128));
    QCOMPARE(a->yPens().at(1).color(), QColor(255, 130, 0, 128)); // 260 cut to 255
    registry->setCurveSingleShow("a", true);
    QCOMPARE(a->yPens().at(0).color(), QColor(0, 34, 255, 255));
    QCOMPARE(a->yPens().at(1).color(), QColor(0, 128, 0, 255));
    registry->setCurveSingleShow("a", false);
    QCOMPARE(a->yPens().at(1).color(), QColor(255, 130, 0, 128));
    registry->setCurveShowParam_cap("a", ECurveShowCap(7)); // unknown style: kept
    QCOMPARE(a->showCap(), ECurveShowCap_Line);
    registry->setCurveShowParam_visible("b", true); // another name: a untouched
    QVERIFY(b->isVisible());
    QCOMPARE(a->yPens().at(0).color(), QColor(200, 100, 1, 128));
    // b came after the area was fitted: it waits for the next change.
    QVERIFY(b->polylines().isEmpty());
    scene.setCoordPixelSize(400, 270);
    QCOMPARE(b->polylines().value(0).value(0).size(), 2);
}

void tst_CurveGraphicsItems::listenSwitch()
{
    CurveGraphicsScene scene(nullptr);
    scene.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    Curve_DataSet_XY* dataSet = gt::makeDataSet({{1, 2, 3, 4}});
    scene.getCurveScene()->addCurve("a", dataSet, true, Qt::red, ECurveShowCap_Line, true);
    auto* item = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).value(0);
    QVERIFY(item);
    const auto points = [item] { return item->polylines().value(0).value(0).size(); };
    QCOMPARE(points(), 4);

    scene.switchOffCurvesListen();
    gt::fillAxis(dataSet->getAxisData(1), {1, 2});
    scene.setCoordPixelSize(300, 300);
    QCOMPARE(points(), 4);
    QCOMPARE(item->dataAreaWidth(), 100);
    scene.switchOnCurvesListen();
    QCOMPARE(points(), 4); // unseen until the next change
    scene.setCoordPixelSize(300, 270);
    QCOMPARE(points(), 2);
    QCOMPARE(item->dataAreaHeight(), 250);
    // Emptied and refilled.
    gt::fillAxis(dataSet->getAxisData(1), {});
    QCOMPARE(points(), 0);
    gt::fillAxis(dataSet->getAxisData(1), {4, 3, 2, 1});
    QCOMPARE(points(), 4);
}

QTEST_MAIN(tst_CurveGraphicsItems)
#include "tst_curvegraphicsitems.moc"
