// The scene following its registry, the tick labels, and drawing into a
// pixmap.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QDateTime>
#include <QGraphicsSceneMouseEvent>
#include <QPixmap>
#include <QPointer>
#include <QSignalSpy>
#include <QTimeZone>
#include <QtTest>

class tst_CurveGraphicsScene : public QObject
{
    Q_OBJECT
private slots:
    void freshScene();
    void tickLabels_data();
    void tickLabels();
    void followsRegistry();
    void coordinateReplaced_data();
    void coordinateReplaced();
    void curvesRemovedWhileItemsExist();
    void pixmap();
    void pixmapRefusals_data();
    void pixmapRefusals();

private:
    static CurveGraphicsItem_Coord_PXPY* frameOf(CurveGraphicsScene& scene)
    {
        return gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(&scene).value(0);
    }
};

void tst_CurveGraphicsScene::freshScene()
{
    CurveGraphicsScene scene(nullptr);
    QCOMPARE(scene.backgroundBrush().color(), QColor(255, 255, 255, 255));
    QCOMPARE(scene.sceneRect(), QRectF(-5000, -5000, 10000, 10000));
    QVERIFY(scene.items().isEmpty());
    QVERIFY(scene.getCoordRect().isNull());
    QVERIFY(scene.getCurveScene());
    QCOMPARE(scene.getCurveScene()->parent(), &scene);
}

void tst_CurveGraphicsScene::tickLabels_data()
{
    QTest::addColumn<bool>("setArea");
    QTest::addColumn<QStringList>("xTexts");
    QTest::addColumn<QStringList>("yTexts");
    QTest::addColumn<QString>("date");

    QTest::newRow("one day, -1..1 m")
        << true
        << QStringList{"00:00:00", "02:24:00", "04:48:00", "07:12:00", "09:36:00", "12:00:00",
                       "14:24:00", "16:47:59", "19:12:00", "21:36:00", "00:00:00"}
        << QStringList{"-1.000m", "-0.500m", "0.000m", "0.500m", "1.000m"}
        << QStringLiteral("1970/01/02");
    // A coordinate that never got an area spans every double; its ticks are
    // not finite and get no text.
    const auto blanks = [](int n) { return QVector<QString>(n).toList(); };
    QTest::newRow("fresh coordinate") << false << QStringList(blanks(11))
                                      << QStringList(blanks(5)) << QString();
}

void tst_CurveGraphicsScene::tickLabels()
{
    QFETCH(bool, setArea);
    QFETCH(QStringList, xTexts);
    QFETCH(QStringList, yTexts);
    QFETCH(QString, date);

    CurveGraphicsScene scene(nullptr);
    auto* coord = new Curve_Coord_XY;
    scene.getCurveScene()->setCoord(coord, true);
    if (setArea) {
        QVERIFY(coord->setArea(0.0, 86400000.0, -1.0, 1.0));
    } else {
        // An empty X axis gives no limits, so the fresh area stays.
        auto* dataSet = new Curve_DataSet_XY(1);
        scene.getCurveScene()->addCurve(QStringLiteral("a"), dataSet, true, Qt::red,
                                        ECurveShowCap_Line, true);
        QCOMPARE(coord->areaSettedNumber(), 0);
    }
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(scene);
    QVERIFY(frame);
    QCOMPARE(frame->xLabels().keys(),
             (QList<double>{0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}));
    QCOMPARE(QStringList(frame->xLabels().values()), xTexts);
    QCOMPARE(frame->yLabels().keys(), (QList<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
    QCOMPARE(QStringList(frame->yLabels().values()), yTexts);
    QCOMPARE(frame->dateText(), date);
    QCOMPARE(frame->timeSystemText(), QStringLiteral("GPST"));

    // An empty range is refused by the coordinate and the labels stay.
    QVERIFY(!coord->setArea(0.0, 10.0, 1.0, 1.0));
    QCOMPARE(QStringList(frame->yLabels().values()), yTexts);
}

void tst_CurveGraphicsScene::followsRegistry()
{
    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();

    // A curve registered before any coordinate never gets an item.
    registry->addCurve(QStringLiteral("early"), gt::makeDataSet({{0, 1}}), true, Qt::red,
                       ECurveShowCap_Line, true);
    auto* coord = new Curve_Coord_XY;
    QSignalSpy areaSpy(coord, SIGNAL(sgCoordAreaChanged()));
    registry->setCoord(coord, true);
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(scene);
    QVERIFY(frame);
    QCOMPARE(frame->pos(), QPointF(0, 0));
    QVERIFY(gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).isEmpty());
    // setCoord fitted the area to the early curve's data once.
    QCOMPARE(coord->areaSettedNumber(), 1);

    registry->addCurve(QStringLiteral("b"), gt::makeDataSet({{-3, 5, 1}}), true, Qt::red,
                       ECurveShowCap_Line, true);
    registry->addCurve(QStringLiteral("a"), gt::makeDataSet({{1, 2}}), true, Qt::blue,
                       ECurveShowCap_Line, true);
    QCOMPARE(coord->areaSettedNumber(), 1);
    QCOMPARE(areaSpy.count(), 1);
    const auto items = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene);
    QCOMPARE(items.size(), 2);
    for (CurveGraphicsItem_Curve_XY* item : items) {
        QCOMPARE(item->parentItem(), frame);
        QCOMPARE(item->pos(), QPointF(0, 0));
    }
    // Stacked in the order they were made: b below a.
    QCOMPARE(items.at(0)->curveName(), QStringLiteral("b"));

    // The frame's size reaches both items.
    scene.setCoordPixelSize(800, 540);
    QCOMPARE(scene.getCoordRect(), QRectF(-80, -500, 800, 540));
    for (CurveGraphicsItem_Curve_XY* item : items)
        QCOMPARE(item->boundingRect(), QRectF(0, -500, 720, 500));

    // The Y-selection reaches every item.
    QCOMPARE(items.at(0)->visibleSelection().keys(),
             (QList<QString>{QStringLiteral("a"), QStringLiteral("b")}));
    CurveGraphicsItem_ShowWhichY* selection = frame->getShowWhichY();
    QGraphicsSceneMouseEvent press(QEvent::GraphicsSceneMousePress);
    press.setPos(QPointF(10, 40));
    press.setButton(Qt::LeftButton);
    QSignalSpy selectionSpy(selection, SIGNAL(selectionChanged()));
    scene.sendEvent(selection, &press);
    QCOMPARE(selectionSpy.count(), 1);
    for (CurveGraphicsItem_Curve_XY* item : items)
        QCOMPARE(item->visibleSelection().value(QStringLiteral("F 2")), true);
    press.setPos(QPointF(10, 28)); // between the boxes
    scene.sendEvent(selection, &press);
    press.setPos(QPointF(40, 10)); // on a label
    scene.sendEvent(selection, &press);
    QCOMPARE(selectionSpy.count(), 1);

    // Removing deletes the item; a second removal is harmless.
    QPointer<CurveGraphicsItem_Curve_XY> b = items.at(0);
    registry->removeCurve(QStringLiteral("b"));
    QVERIFY(b.isNull());
    registry->removeCurve(QStringLiteral("b"));
    QCOMPARE(gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).size(), 1);
}

void tst_CurveGraphicsScene::coordinateReplaced_data()
{
    QTest::addColumn<bool>("autoDelete");
    QTest::addColumn<bool>("nextIsXY");
    QTest::newRow("owned, replaced by X/Y") << true << true;
    QTest::newRow("borrowed, replaced by X/Y") << false << true;
    QTest::newRow("owned, replaced by a plain coordinate") << true << false;
}

void tst_CurveGraphicsScene::coordinateReplaced()
{
    QFETCH(bool, autoDelete);
    QFETCH(bool, nextIsXY);

    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();
    std::unique_ptr<Curve_Coord_XY> borrowed(autoDelete ? nullptr : new Curve_Coord_XY);
    QPointer<Curve_Coord_XY> oldCoord = autoDelete ? new Curve_Coord_XY : borrowed.get();
    registry->setCoord(oldCoord, autoDelete);
    Curve_DataSet_XY* dataSet = gt::makeDataSet({{0, 1, 2, 3}});
    registry->addCurve(QStringLiteral("a"), dataSet, true, Qt::red, ECurveShowCap_Line, true);
    QPointer<CurveGraphicsItem_Coord_PXPY> oldFrame = frameOf(scene);
    QPointer<CurveGraphicsItem_Curve_XY> item =
        gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).value(0);
    QVERIFY(oldFrame && item);

    Curve_Coord* next = nextIsXY ? new Curve_Coord_XY : new Curve_Coord;
    registry->setCoord(next, true);
    QCOMPARE(oldCoord.isNull(), autoDelete);
    QVERIFY(oldFrame.isNull());
    QVERIFY(item);
    QCOMPARE(item->coord(), next);
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(scene);
    QCOMPARE(frame != nullptr, nextIsXY);
    QCOMPARE(item->parentItem(), frame);
    QCOMPARE(item->scene(), &scene);

    // The kept item maps through the new coordinate and learns the new
    // frame's size; the old coordinate, if still alive, no longer moves it.
    if (oldCoord)
        QVERIFY(oldCoord->setArea(0, 1, 0, 1));
    gt::fillAxis(dataSet->getAxisData(1), {3, 2, 1, 0});
    scene.setCoordPixelSize(400, 270);
    if (nextIsXY) {
        QCOMPARE(item->dataAreaWidth(), 320);
        QCOMPARE(item->polylines().value(0).value(0).size(), 4);
        QCOMPARE(item->polylines().at(0).at(0).first(), QPoint(0, -250));
    } else {
        QVERIFY(scene.getCoordRect().isNull());
        QVERIFY(item->polylines().isEmpty());
        registry->setCoord(new Curve_Coord_XY, true);
        QCOMPARE(item->parentItem(), frameOf(scene));
    }
    registry->setCoord(nullptr, true);
    QVERIFY(item);
    QVERIFY(gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(&scene).isEmpty());
}

void tst_CurveGraphicsScene::curvesRemovedWhileItemsExist()
{
    auto scene = std::make_unique<CurveGraphicsScene>(nullptr);
    CurveScene* registry = scene->getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    QPointer<Curve_DataSet_XY> owned = gt::makeDataSet({{1, 2, 3}});
    std::unique_ptr<Curve_DataSet_XY> borrowed(gt::makeDataSet({{3, 2, 1}, {1, 1, 1}}));
    registry->addCurve(QStringLiteral("owned"), owned, true, Qt::red, ECurveShowCap_Line, true);
    registry->addCurve(QStringLiteral("borrowed"), borrowed.get(), false, Qt::red,
                       ECurveShowCap_Point, true);
    QCOMPARE(gt::itemsOf<CurveGraphicsItem_Curve_XY>(scene.get()).size(), 2);
    registry->removeAllCurves();
    QVERIFY(owned.isNull());
    QVERIFY(gt::itemsOf<CurveGraphicsItem_Curve_XY>(scene.get()).isEmpty());
    // The caller's data set outlives both removal and the scene.
    registry->addCurve(QStringLiteral("again"), borrowed.get(), false, Qt::red,
                       ECurveShowCap_Line, true);
    scene.reset();
    gt::fillAxis(borrowed->getAxisData(1), {0, 0});
    QCOMPARE(borrowed->getAxisData(1)->getArea(nullptr, nullptr), 2);
}

void tst_CurveGraphicsScene::pixmap()
{
    const qint64 start = QDateTime(QDate(2020, 1, 1), QTime(0, 0), QTimeZone::utc())
                             .toMSecsSinceEpoch();
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(start, start + 600000.0, 0.0, 10.0));
    // 100 samples over the 10 minutes: the first Y axis runs at 8 with a
    // break after sample 29 and an all-NaN stretch 60..69 fenced by breaks;
    // the second axis (not drawn by default) runs at 3.
    QVector<double> xs;
    QVector<double> y1(100, 8.0);
    for (int i = 0; i < 100; ++i)
        xs.append(start + i * 6000.0);
    y1[30] = 6.0;
    for (int i = 60; i < 70; ++i)
        y1[i] = gt::NaN;
    Curve_DataSet_XY dataSet(2);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), y1, {29, 59, 69});
    gt::fillAxis(dataSet.getAxisData(2), gt::constant(100, 3.0));

    QPixmap pixmap(800, 540);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, &dataSet, QColor(255, 0, 0, 255), &pixmap);
    const QImage image = pixmap.toImage();
    const auto at = [](double sample) { return int(80 + sample * 7.2); };

    // Frame: transparent outside what it paints, tinted lower half, axes.
    PIXEL_VERIFY(qAlpha(image.pixel(5, 5)) == 0, image, "pixmap");
    PIXEL_VERIFY(qAlpha(image.pixel(400, 60)) == 0, image, "pixmap");
    PIXEL_VERIFY(image.pixel(400, 450) == qRgb(255, 245, 239), image, "pixmap");
    PIXEL_VERIFY(gt::anyNear(image, {600, 500}, 1, gt::isDark), image, "pixmap");
    PIXEL_VERIFY(gt::anyNear(image, {79, 300}, 1, gt::isDark), image, "pixmap");
    // Labels in the bottom strip and in the left strip.
    PIXEL_VERIFY(gt::anyNear(image, {20, 510}, 12, gt::isDark), image, "pixmap");
    PIXEL_VERIFY(gt::anyNear(image, {60, 250}, 12, gt::isDark), image, "pixmap");

    // The curve, opaque, at Y 8 (pixel row 100); none across the break's
    // drop to 6, none across the NaN stretch, none for the hidden second axis.
    PIXEL_VERIFY(gt::anyNear(image, {at(10), 100}, 2, gt::isRed), image, "pixmap");
    PIXEL_VERIFY(gt::anyNear(image, {at(45), 100}, 2, gt::isRed), image, "pixmap");
    PIXEL_VERIFY(!gt::anyNear(image, {at(29.5), 125}, 2, gt::isRed), image, "pixmap");
    PIXEL_VERIFY(!gt::anyNear(image, {at(64.5), 100}, 3, gt::isRed), image, "pixmap");
    PIXEL_VERIFY(!gt::anyNear(image, {at(50), 350}, 3, gt::isRed), image, "pixmap");
    gt::keepImage(image, QStringLiteral("pixmap"), false);
}

void tst_CurveGraphicsScene::pixmapRefusals_data()
{
    QTest::addColumn<bool>("withCoord");
    QTest::addColumn<bool>("withDataSet");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("untouched");
    QTest::newRow("no coordinate") << false << true << QSize(100, 100) << true;
    QTest::newRow("no data set") << true << false << QSize(100, 100) << true;
    QTest::newRow("null pixmap") << true << true << QSize() << false;
    QTest::newRow("narrower than the label strip") << true << true << QSize(50, 30) << false;
}

void tst_CurveGraphicsScene::pixmapRefusals()
{
    QFETCH(bool, withCoord);
    QFETCH(bool, withDataSet);
    QFETCH(QSize, size);
    QFETCH(bool, untouched);

    Curve_Coord_XY coord;
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet({{1e300, -1e300, 0}}));
    QPixmap pixmap = size.isValid() ? QPixmap(size) : QPixmap();
    pixmap.fill(Qt::green);
    CurveGraphicsScene::DrawXYCurveToPixmap(withCoord ? &coord : nullptr,
                                            withDataSet ? dataSet.get() : nullptr, Qt::red,
                                            &pixmap);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.get(), Qt::red, nullptr);
    if (untouched)
        QCOMPARE(pixmap.toImage().pixel(0, 0), qRgb(0, 255, 0));
    QCOMPARE(coord.areaSettedNumber(), 0);
}

QTEST_MAIN(tst_CurveGraphicsScene)
#include "tst_curvegraphicsscene.moc"
