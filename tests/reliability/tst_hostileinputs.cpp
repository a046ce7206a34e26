// SPDX-License-Identifier: MIT
#include "graphics/graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QPainter>
#include <QtTest>

#include <limits>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
const double kBig = std::numeric_limits<double>::max();
const qint64 kMinEpoch = std::numeric_limits<qint64>::min();
const qint64 kMaxEpoch = std::numeric_limits<qint64>::max();

Curve_DataSet_XY* curve(const QVector<double>& xs, const QVector<double>& ys)
{
    return gt::makeDataSet(xs, {ys});
}

QImage render(QWidget* widget)
{
    QImage image(widget->size().expandedTo(QSize(1, 1)), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    widget->render(&painter);
    return image;
}

} // namespace

// Inputs a careless or hostile host may hand over. None may crash or reach
// undefined behaviour (the sanitizer build runs these too); where the
// outcome is defined, it is checked.
class tst_HostileInputs : public QObject
{
    Q_OBJECT
private slots:
    void nonFiniteSamples_data();
    void nonFiniteSamples();
    void overflowingArea();
    void pixelConversion_data();
    void pixelConversion();
    void pixelSizes();
    void epochExtremes();
    void nullPointersAndNames();
};

void tst_HostileInputs::nonFiniteSamples_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<QVector<double>>("ys");
    QTest::newRow("NaN and infinite Y") << QVector<double>{0, 1, 2, 3}
                                        << QVector<double>{kNaN, kInf, -kInf, 1};
    QTest::newRow("NaN and infinite X") << QVector<double>{kNaN, kInf, -kInf, 3}
                                        << QVector<double>{1, 2, 3, 4};
    QTest::newRow("values far beyond any pixel") << QVector<double>{0, 1e300, -1e300, kBig}
                                                 << QVector<double>{-kBig, 1e300, 0, kBig};
}

void tst_HostileInputs::nonFiniteSamples()
{
    QFETCH(QVector<double>, xs);
    QFETCH(QVector<double>, ys);
    CurveGraphicsView view;
    view.resize(400, 300);
    view.show();
    CurveScene* registry = view.getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);
    QVERIFY(registry->addCurve(QStringLiteral("c"), curve(xs, ys), true, Qt::red,
                               ECurveShowCap_Line, true));
    // A sane curve beside the hostile one still shows.
    QVERIFY(registry->addCurve(QStringLiteral("d"), curve({0, 1, 2, 3}, {0.5, 0.5, 0.5, 0.5}),
                               true, Qt::blue, ECurveShowCap_Point, true));
    view.setCurvesPosToVerticalZero();
    render(&view);
    auto* coord = qobject_cast<Curve_Coord_XY*>(registry->getCoord_Local());
    QVERIFY(coord->setArea(kNaN, 3, -1, kNaN)); // NaN bounds are taken
    render(&view);
    QVERIFY(coord->setArea(0, 3, -1, 1));
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QImage image = view.grab().toImage();
    QCOMPARE(image.size(), view.size());
    // Its blue dots sit at 0.5 m, a quarter down the data area; nothing else
    // inside the data area is blue.
    const QRectF area = view.dataAreaInViewport().translated(view.viewport()->pos());
    const double row = area.top() + 0.25 * area.height();
    int left = 0;
    int right = 0;
    // A dot on an end of the axis is centred on it: half of it lies beside.
    for (int y = int(area.top()); y < int(area.bottom()); ++y) {
        for (int x = int(area.left()) - 3; x < int(area.right()) + 3; ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.blue() < c.red() + 60 || c.blue() < c.green() + 60)
                continue;
            QVERIFY2(std::abs(y - row) <= 4.0, qPrintable(QStringLiteral("blue at %1,%2")
                                                              .arg(x)
                                                              .arg(y)));
            (x < area.center().x() ? left : right) += 1;
        }
    }
    // The dots inside the area show on both halves, whatever a dot on an
    // edge does.
    if (left == 0 || right == 0)
        image.save(QDir::tempPath() + QStringLiteral("/gnssplot-sane-curve.png"));
    QVERIFY(left > 0);
    QVERIFY(right > 0);

    QPixmap pixmap(300, 200);
    QScopedPointer<Curve_DataSet_XY> alone(curve(xs, ys));
    CurveGraphicsScene::DrawXYCurveToPixmap(coord, alone.data(), Qt::red, &pixmap);
}

void tst_HostileInputs::overflowingArea()
{
    // Every tick of an area whose extent overflows is infinite or NaN: such
    // ticks carry no text rather than a made-up time.
    CurveGraphicsView view;
    auto* coord = new Curve_Coord_XY;
    view.getCurveScene()->setCoord(coord, true);
    QVERIFY(coord->setArea(-kBig, kBig, -kBig, kBig));
    auto* frame = gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
    QVERIFY(frame);
    QCOMPARE(frame->xLabels().size(), 11);
    for (const QString& text : frame->xLabels())
        QVERIFY(text.isEmpty());
    QVERIFY(frame->dateText().isEmpty());
    for (const QString& text : frame->yLabels())
        QVERIFY(text.isEmpty()); // inf * f - DBL_MAX is infinite, and NaN at f = 0

    // Times beyond +-100 million days are not times either.
    QVERIFY(coord->setArea(-1e17, 1e17, -1, 1));
    QVERIFY(frame->xLabels().value(0.0).isEmpty());
    QCOMPARE(frame->xLabels().value(0.5), QStringLiteral("00:00:00"));
}

void tst_HostileInputs::pixelConversion_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("pixel");
    const int limit = CurveGraphicsItem_Curve_XY::kPixelLimit;
    QTest::newRow("truncated toward zero") << 3.9 << 3;
    QTest::newRow("negative truncated toward zero") << -3.9 << -3;
    QTest::newRow("just inside the limit") << double(limit) - 0.5 << limit - 1;
    QTest::newRow("far right") << 1e300 << limit;
    QTest::newRow("far left") << -1e300 << -limit;
    QTest::newRow("beyond int") << 5e9 << limit;
    QTest::newRow("infinite") << kInf << limit;
    QTest::newRow("minus infinite") << -kInf << -limit;
    QTest::newRow("NaN") << kNaN << 0;
}

void tst_HostileInputs::pixelConversion()
{
    QFETCH(double, value);
    QFETCH(int, pixel);
    QCOMPARE(CurveGraphicsItem_Curve_XY::toPixel(value), pixel);
}

void tst_HostileInputs::pixelSizes()
{
    CurveGraphicsView view;
    auto* scene = qobject_cast<CurveGraphicsScene*>(view.scene());
    QVERIFY(scene);
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    view.getCurveScene()->addCurve(QStringLiteral("c"), curve({0, 1, 2}, {1, -1, 1}), true,
                                   Qt::red, ECurveShowCap_Line, true);
    const QSize sizes[] = {{0, 0}, {-300, -200}, {80, 1}, {1, -1}, {std::numeric_limits<int>::max(), 3}};
    for (const QSize& size : sizes) {
        scene->setCoordPixelSize(size.width(), size.height());
        QVERIFY(!scene->getCoordRect().isNull());
        QImage image(50, 50, QImage::Format_ARGB32);
        QPainter painter(&image);
        scene->render(&painter);
    }
    view.resize(0, 0);
    view.show();
    render(&view);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 2, -1, 1));
    QScopedPointer<Curve_DataSet_XY> dataSet(curve({0, 1, 2}, {1, -1, 1}));
    for (const QSize& size : {QSize(1, 1), QSize(79, 2), QSize(80, 540)}) {
        QPixmap pixmap(size);
        CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet.data(), Qt::red, &pixmap);
        QCOMPARE(pixmap.size(), size); // never resized
    }
}

void tst_HostileInputs::epochExtremes()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    table.resize(400, 200);
    table.show();
    QSignalSpy marks(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    const QMap<QString, QList<stEpochDataSet>> data{
        {QStringLiteral("G01"), {stEpochDataSet{{{kMinEpoch, kMaxEpoch}, {kMaxEpoch, kMaxEpoch}}},
                                 stEpochDataSet{{{0, -5}, {-7, kMinEpoch}}}}},
        {QString(), {stEpochDataSet()}}};
    table.setResources(kMinEpoch, kMaxEpoch, data, {{QStringLiteral("G01"), true}}, {},
                       {{QStringLiteral("G01"), {{kMaxEpoch, kMaxEpoch}, {kMinEpoch, -1}}}});
    QCOMPARE(table.rowCount(), 3); // the unnamed satellite has a row of its own
    QCOMPARE(table.eraseMarkActionNum(), 2);
    render(&table);

    // A drag over the whole range stays inside it.
    QWidget* viewport = table.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(1, 1));
    QTest::mouseMove(viewport, QPoint(390, 150));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(395, 190));
    QCOMPARE(table.eraseMarkActionNum(), 3);
    QCOMPARE(marks.count(), 1);
    QMap<QString, QList<stEpochDataSet>> read;
    table.getStateliteEraseMarks(read);
    const auto dragged = read.value(QStringLiteral("G01")).value(0).ranges.value(2);
    QVERIFY(dragged.first >= kMinEpoch && dragged.second > 0);
    QVERIFY(__int128(dragged.first) + dragged.second <= __int128(kMaxEpoch));

    QPixmap a(200, 20);
    QPixmap nullPixmap;
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        kMaxEpoch, kMinEpoch, data, {}, {{QStringLiteral("G01"), &a}, {QString(), nullptr}});
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        kMinEpoch, kMaxEpoch, data, {}, {{QStringLiteral("G01"), &nullPixmap}});
}

void tst_HostileInputs::nullPointersAndNames()
{
    QPixmap untouched(10, 10);
    untouched.fill(Qt::green);
    Curve_Coord_XY coord;
    Curve_DataSet_XY dataSet(1);
    CurveGraphicsScene::DrawXYCurveToPixmap(nullptr, &dataSet, Qt::red, &untouched);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, nullptr, Qt::red, &untouched);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, &dataSet, Qt::red, nullptr);
    QCOMPARE(untouched.toImage().pixel(5, 5), qRgb(0, 255, 0));
    QPixmap empty;
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, &dataSet, Qt::red, &empty);

    CurveGraphicsScene orphan(nullptr); // a scene without a view
    CurveScene* registry = orphan.getCurveScene();
    QVERIFY(registry);
    QVERIFY(!registry->addCurve(QString(), nullptr, true, Qt::red, ECurveShowCap_Line, true));
    registry->setCoord(nullptr, true);
    auto* unnamed = new Curve_DataSet_XY(1);
    QVERIFY(registry->addCurve(QString(), unnamed, true, Qt::red, ECurveShowCap_Line, true));
    Curve_DataSet_XY duplicate(1);
    QVERIFY(!registry->addCurve(QString(), &duplicate, true, Qt::red, ECurveShowCap_Line, true));
    registry->setCurveSingleShow(QString(), true);
    registry->removeCurve(QString());
    QVERIFY(!registry->getCurve(QString()));
    QVERIFY(orphan.getCoordRect().isNull());
    orphan.setCoordPixelSize(100, 100);
}

QTEST_MAIN(tst_HostileInputs)
#include "tst_hostileinputs.moc"
