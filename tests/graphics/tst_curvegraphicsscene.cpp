// The scene following its registry, the tick labels, and drawing into a
// pixmap.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsScene.h"
#include "Curve_Coord_XY.h"

#include <QDateTime>
#include <QPixmap>
#include <QPointer>
#include <QTimeZone>

namespace {

CurveGraphicsItem_Coord_PXPY* frameOf(CurveGraphicsScene& scene)
{
    return gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(&scene).value(0);
}

} // namespace

class tst_CurveGraphicsScene : public QObject
{
    Q_OBJECT
private slots:
    void tickLabels_data();
    void tickLabels();
    void followsRegistry();
    void coordinateReplaced_data();
    void coordinateReplaced();
    void curvesRemovedWhileItemsExist();
    void pixmap();
    void pixmapRefusals();
};

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
        << QStringList{"-1.000m", "-0.500m", "0.000m", "0.500m", "1.000m"} << "1970/01/02";
    // A coordinate that never got an area spans every double: no finite tick.
    QTest::newRow("fresh coordinate") << false << QStringList(QVector<QString>(11).toList())
                                      << QStringList(QVector<QString>(5).toList()) << QString();
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
    if (setArea) // else an empty X axis gives no limits and the fresh area stays
        QVERIFY(coord->setArea(0.0, 86400000.0, -1.0, 1.0));
    else
        scene.getCurveScene()->addCurve("a", new Curve_DataSet_XY(1), true, Qt::red,
                                        ECurveShowCap_Line, true);
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(scene);
    QVERIFY(frame);
    QCOMPARE(frame->xLabels().keys(),
             (QList<double>{0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}));
    QCOMPARE(QStringList(frame->xLabels().values()), xTexts);
    QCOMPARE(frame->yLabels().keys(), (QList<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
    QCOMPARE(QStringList(frame->yLabels().values()), yTexts);
    QCOMPARE(frame->dateText(), date);
    QCOMPARE(frame->timeSystemText(), QStringLiteral("GPST"));
    QVERIFY(!coord->setArea(0.0, 10.0, 1.0, 1.0)); // refused: the labels stay
    QCOMPARE(QStringList(frame->yLabels().values()), yTexts);
}

void tst_CurveGraphicsScene::followsRegistry()
{
    CurveGraphicsScene scene(nullptr);
    QCOMPARE(scene.backgroundBrush().color(), QColor(255, 255, 255, 255));
    QCOMPARE(scene.sceneRect(), QRectF(-5000, -5000, 10000, 10000));
    QVERIFY(scene.items().isEmpty());
    QVERIFY(scene.getCoordRect().isNull());
    CurveScene* registry = scene.getCurveScene();
    QCOMPARE(registry->parent(), &scene);

    // A curve registered before any coordinate never gets an item, but the
    // coordinate's first area is fitted to it, once.
    registry->addCurve("early", gt::makeDataSet({{0, 1}}), true, Qt::red, ECurveShowCap_Line,
                       true);
    auto* coord = new Curve_Coord_XY;
    QSignalSpy areaSpy(coord, SIGNAL(sgCoordAreaChanged()));
    registry->setCoord(coord, true);
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(scene);
    QVERIFY(frame);
    QVERIFY(gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene).isEmpty());
    registry->addCurve("b", gt::makeDataSet({{-3, 5, 1}}), true, Qt::red, ECurveShowCap_Line,
                       true);
    registry->addCurve("a", gt::makeDataSet({{1, 2}}), true, Qt::blue, ECurveShowCap_Line,
                       true);
    QCOMPARE(areaSpy.count(), 1);
    QCOMPARE(coord->areaSettedNumber(), 1);
    const auto items = gt::itemsOf<CurveGraphicsItem_Curve_XY>(&scene);
    QCOMPARE(items.size(), 2);
    QCOMPARE(items.at(0)->curveName(), QStringLiteral("b")); // stacked in creation order
    for (CurveGraphicsItem_Curve_XY* item : items)
        QVERIFY(item->parentItem() == frame && item->pos() == QPointF(0, 0));

    scene.setCoordPixelSize(800, 540);
    QCOMPARE(scene.getCoordRect(), QRectF(-80, -500, 800, 540));
    for (CurveGraphicsItem_Curve_XY* item : items)
        QCOMPARE(item->boundingRect(), QRectF(0, -500, 720, 500));

    QPointer<CurveGraphicsItem_Curve_XY> b = items.at(0);
    registry->removeCurve("b");
    QVERIFY(b.isNull());
    registry->removeCurve("b"); // harmless
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
    Curve_Coord_XY borrowed;
    CurveGraphicsScene scene(nullptr);
    CurveScene* registry = scene.getCurveScene();
    QPointer<Curve_Coord_XY> oldCoord = autoDelete ? new Curve_Coord_XY : &borrowed;
    registry->setCoord(oldCoord, autoDelete);
    Curve_DataSet_XY* dataSet = gt::makeDataSet({{0, 1, 2, 3}});
    registry->addCurve("a", dataSet, true, Qt::red, ECurveShowCap_Line, true);
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
    QCOMPARE(item->parentItem(), frameOf(scene)); // null without an X/Y frame
    QCOMPARE(item->scene(), &scene);

    // The kept item follows the new coordinate and the new frame's size; the
    // old coordinate, if alive, no longer moves it.
    if (oldCoord)
        QVERIFY(oldCoord->setArea(0, 1, 0, 1));
    gt::fillAxis(dataSet->getAxisData(1), {3, 2, 1, 0});
    scene.setCoordPixelSize(400, 270);
    if (nextIsXY) {
        QCOMPARE(item->dataAreaWidth(), 320);
        QCOMPARE(item->polylines().value(0).value(0).value(0), QPoint(0, -250));
    } else {
        QVERIFY(item->polylines().isEmpty());
        registry->setCoord(new Curve_Coord_XY, true);
        QCOMPARE(item->parentItem(), frameOf(scene));
    }
    registry->setCoord(nullptr, true);
    QVERIFY(item);
    QVERIFY(!frameOf(scene));
}

void tst_CurveGraphicsScene::curvesRemovedWhileItemsExist()
{
    std::unique_ptr<Curve_DataSet_XY> borrowed(gt::makeDataSet({{3, 2, 1}, {1, 1, 1}}));
    auto scene = std::make_unique<CurveGraphicsScene>(nullptr);
    CurveScene* registry = scene->getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    QPointer<Curve_DataSet_XY> owned = gt::makeDataSet({{1, 2, 3}});
    registry->addCurve("owned", owned, true, Qt::red, ECurveShowCap_Line, true);
    registry->addCurve("borrowed", borrowed.get(), false, Qt::red, ECurveShowCap_Point, true);
    QCOMPARE(gt::itemsOf<CurveGraphicsItem_Curve_XY>(scene.get()).size(), 2);
    registry->removeAllCurves();
    QVERIFY(owned.isNull());
    QVERIFY(gt::itemsOf<CurveGraphicsItem_Curve_XY>(scene.get()).isEmpty());
    // The caller's data set outlives a registration that ends with the scene.
    registry->addCurve("again", borrowed.get(), false, Qt::red, ECurveShowCap_Line, true);
    scene.reset();
    gt::fillAxis(borrowed->getAxisData(1), {0, 0});
}

void tst_CurveGraphicsScene::pixmap()
{
    const double start = QDateTime(QDate(2020, 1, 1), QTime(0, 0), QTimeZone::utc())
                             .toMSecsSinceEpoch();
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(start, start + 600000.0, 0.0, 10.0));
    // 100 samples over 10 minutes. Y1 runs at 8, drops to 6 after a break at
    // 29, and has an all-NaN stretch 60..69 fenced by breaks; Y2 runs at 3.
    QVector<double> xs, y1(100, 8.0);
    for (int i = 0; i < 100; ++i)
        xs.append(start + i * 6000.0);
    y1[30] = 6.0;
    std::fill(y1.begin() + 60, y1.begin() + 70, gt::NaN);
    Curve_DataSet_XY dataSet(2);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), y1, {29, 59, 69});
    gt::fillAxis(dataSet.getAxisData(2), QVector<double>(100, 3.0));

    QPixmap pixmap(800, 540);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, &dataSet, QColor(255, 0, 0, 255), &pixmap);
    const QImage image = pixmap.toImage();
    const auto at = [](double sample, int row) { return QPoint(80 + sample * 7.2, row); };
    const QString name = QStringLiteral("pixmap");
    PIXEL_VERIFY(qAlpha(image.pixel(5, 5)) == 0, image, name);
    PIXEL_VERIFY(qAlpha(image.pixel(400, 60)) == 0, image, name);
    PIXEL_VERIFY(image.pixel(400, 450) == qRgb(255, 245, 239), image, name);
    PIXEL_VERIFY(gt::anyNear(image, {600, 500}, 1, gt::isDark), image, name); // X axis
    PIXEL_VERIFY(gt::anyNear(image, {79, 300}, 1, gt::isDark), image, name);  // Y axis
    PIXEL_VERIFY(gt::anyNear(image, {20, 510}, 12, gt::isDark), image, name); // X label
    PIXEL_VERIFY(gt::anyNear(image, {60, 250}, 12, gt::isDark), image, name); // Y label
    // Opaque curve at row 100 (Y 8); nothing across the break, the NaN
    // stretch, or for the second Y axis (row 350).
    PIXEL_VERIFY(gt::anyNear(image, at(10, 100), 2, gt::isRed), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(45, 100), 2, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(29.5, 125), 2, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(64.5, 100), 3, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(50, 350), 3, gt::isRed), image, name);
}

void tst_CurveGraphicsScene::pixmapRefusals()
{
    Curve_Coord_XY coord;
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet({{1e300, -1e300, 0}}));
    QPixmap pixmap(100, 100);
    pixmap.fill(Qt::green);
    CurveGraphicsScene::DrawXYCurveToPixmap(nullptr, dataSet.get(), Qt::red, &pixmap);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, nullptr, Qt::red, &pixmap);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.get(), Qt::red, nullptr);
    QCOMPARE(pixmap.toImage().pixel(50, 50), qRgb(0, 255, 0));
    QPixmap empty, narrow(50, 30);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.get(), Qt::red, &empty);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.get(), Qt::red, &narrow);
    QCOMPARE(coord.areaSettedNumber(), 0);
}

QTEST_MAIN(tst_CurveGraphicsScene)
#include "tst_curvegraphicsscene.moc"
