// SPDX-License-Identifier: MIT
#include "graphics/graphicstestsupport.h"

#include "CurveGraphicsScene.h"
#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QApplication>
#include <QPixmap>
#include <QtTest>

// Everything is drawn with the application scaled by 2, as on a HiDPI
// screen, and the pictures must carry twice the pixels, not a blown-up copy.
class tst_HiDpi : public QObject
{
    Q_OBJECT
private slots:
    void pixmapWithRatio_data();
    void pixmapWithRatio();
    void viewAndTableAreSharp();
};

namespace {

const QRgb kBand = qRgb(255, 245, 239);

// Ten minutes at a steady 0.5.
Curve_DataSet_XY* rampCurve()
{
    QVector<double> xs;
    for (int i = 0; i <= 10; ++i)
        xs.append(i * 60000.0);
    return gt::makeDataSet(xs, {QVector<double>(11, 0.5)});
}

// Rows of one colour run across the given column: a line drawn sharp at
// ratio 2 is exactly 2 device pixels thick.
int runLength(const QImage& image, int x, int y, QRgb colour)
{
    int n = 0;
    while (y + n < image.height() && image.pixel(x, y + n) == colour)
        ++n;
    return n;
}

} // namespace

void tst_HiDpi::pixmapWithRatio_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("ratio 1 keeps the device size") << 1.0;
    QTest::newRow("ratio 2 lays out in logical pixels") << 2.0;
}

void tst_HiDpi::pixmapWithRatio()
{
    QFETCH(qreal, ratio);
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 600000, -1, 1));
    QScopedPointer<Curve_DataSet_XY> dataSet(rampCurve());

    QPixmap pixmap(int(800 * ratio), int(540 * ratio));
    pixmap.setDevicePixelRatio(ratio);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.data(), QColor(200, 0, 0), &pixmap);
    const QImage image = pixmap.toImage();
    QCOMPARE(image.size(), QSize(int(800 * ratio), int(540 * ratio)));

    // The data area spans logical x 80..800 and y 0..500 whatever the ratio:
    // the tinted lower half reaches the bottom-right corner of it.
    QCOMPARE(image.pixel(int(790 * ratio), int(490 * ratio)), kBand);
    QCOMPARE(image.pixel(int(100 * ratio), int(260 * ratio)), kBand);
    QVERIFY(image.pixel(int(100 * ratio), int(240 * ratio)) != kBand);
    // The curve at 0.5 sits at logical y 125, drawn 2 logical pixels wide.
    int red = 0;
    for (int y = int(115 * ratio); y < int(135 * ratio); ++y)
        red += qRed(image.pixel(int(400 * ratio), y)) > 150 && qGreen(image.pixel(int(400 * ratio), y)) < 80;
    QCOMPARE(red, int(2 * ratio));
}

void tst_HiDpi::viewAndTableAreSharp()
{
    CurveGraphicsView view;
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    view.getCurveScene()->addCurve(QStringLiteral("G01"), rampCurve(), true, Qt::blue,
                                   ECurveShowCap_Line, true);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QPixmap grabbed = view.viewport()->grab();
    QCOMPARE(grabbed.devicePixelRatio(), 2.0);
    const QImage image = grabbed.toImage();
    QCOMPARE(image.size(), view.viewport()->size() * 2);
    // The band's upper edge is the grey middle grid line, one logical pixel
    // wide: two device rows of it, not one row smeared over three.
    const int x = image.width() * 3 / 4;
    int top = image.height() / 2 - 20;
    while (top < image.height() && qGray(image.pixel(x, top)) > 200)
        ++top;
    const QRgb grid = image.pixel(x, top);
    QVERIFY(qGray(grid) < 200);
    QCOMPARE(runLength(image, x, top, grid), 2);

    CurveGraphicsTableWidget_Epoch table(nullptr);
    table.setResources(0, 1000, {{QStringLiteral("G01"), {stEpochDataSet()}}},
                       {{QStringLiteral("G01"), true}}, {}, {});
    table.resize(500, 200);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    QWidget* label = table.cellWidget(1, 1);
    QVERIFY(label);
    const QImage bars = label->grab().toImage();
    QCOMPARE(bars.size(), label->size() * 2);
    // The first band's bar is 4 logical pixels tall at y 4: 8 device rows.
    QCOMPARE(runLength(bars, bars.width() / 2, 8, qRgb(0, 34, 255)), 8);
}

int main(int argc, char** argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    tst_HiDpi test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hidpi.moc"
