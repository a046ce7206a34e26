// SPDX-License-Identifier: MIT
// The tick labels of the scene's frame, and drawing into a pixmap.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsScene.h"
#include "Curve_Coord_XY.h"

#include <QPixmap>

class tst_CurveGraphicsScene : public QObject
{
    Q_OBJECT
private slots:
    void tickLabels();
    void pixmap();
};

void tst_CurveGraphicsScene::tickLabels()
{
    CurveGraphicsScene scene(nullptr);
    auto* coord = new Curve_Coord_XY;
    scene.getCurveScene()->setCoord(coord, true);
    QVERIFY(coord->setArea(0.0, 86400000.0, -1.0, 1.0)); // one day, -1..1 m
    auto* frame = gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(&scene).value(0);
    QVERIFY(frame);
    QCOMPARE(frame->xLabels().keys(),
             (QList<double>{0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}));
    QCOMPARE(QStringList(frame->xLabels().values()),
             (QStringList{"00:00:00", "02:24:00", "04:48:00", "07:12:00", "09:36:00",
                          "12:00:00", "14:24:00", "16:47:59", "19:12:00", "21:36:00",
                          "00:00:00"}));
    QCOMPARE(frame->yLabels().keys(), (QList<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
    QCOMPARE(QStringList(frame->yLabels().values()),
             (QStringList{"-1.000m", "-0.500m", "0.000m", "0.500m", "1.000m"}));
    QCOMPARE(frame->dateText(), QStringLiteral("1970/01/02"));
    QCOMPARE(frame->timeSystemText(), QStringLiteral("GPST"));
}

void tst_CurveGraphicsScene::pixmap()
{
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0.0, 99.0, 0.0, 10.0));
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::brokenCurve(8.0, 6.0, 3.0));
    QPixmap pixmap(800, 540);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.get(), QColor(255, 0, 0), &pixmap);
    const QImage image = pixmap.toImage();
    const auto at = [](double sample, int row) { return QPoint(80 + sample * 720 / 99, row); };
    const QString name = QStringLiteral("pixmap");
    PIXEL_VERIFY(qAlpha(image.pixel(400, 60)) == 0, image, name);
    PIXEL_VERIFY(image.pixel(400, 450) == qRgb(255, 245, 239), image, name);
    // Opaque curve at row 100 (Y 8); nothing across the break, the NaN
    // stretch, or for the second Y axis (row 350).
    PIXEL_VERIFY(gt::anyNear(image, at(10, 100), 2, gt::isRed), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(45, 100), 2, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(29.5, 125), 2, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(64.5, 100), 3, gt::isRed), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(50, 350), 3, gt::isRed), image, name);
}

QTEST_MAIN(tst_CurveGraphicsScene)
#include "tst_curvegraphicsscene.moc"
