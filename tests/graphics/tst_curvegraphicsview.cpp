// SPDX-License-Identifier: MIT
// The view on screen: what a person sees, clicking the Y-selection and
// zooming with the wheel.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"

#include <QScrollBar>
#include <QWheelEvent>

class tst_CurveGraphicsView : public QObject
{
    Q_OBJECT
private slots:
    void shownPixels();
    void wheelZoom_data();
    void wheelZoom();
};

void tst_CurveGraphicsView::shownPixels()
{
    CurveGraphicsView view;
    gt::makeBare(view);
    auto* coord = new Curve_Coord_XY;
    QVERIFY(coord->setArea(0, 99, -1, 1));
    view.getCurveScene()->setCoord(coord, true);
    // Y2, in the tinted half, starts hidden.
    view.getCurveScene()->addCurve("a", gt::brokenCurve(0.6, 0.2, -0.5), true, Qt::blue,
                                   ECurveShowCap_Line, true);
    view.resize(800, 540);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    CurveGraphicsItem_ShowWhichY* selection =
        gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0)->getShowWhichY();

    const auto at = [&view](double sample, double y) {
        return view.mapFromScene(QPointF(sample * 720.0 / 99.0, -(y + 1.0) * 250.0));
    };
    const auto box = [&view, selection](int k) {
        return view.mapFromScene(selection->mapToScene(QPointF(10, 30 * k + 15)));
    };
    const auto grab = [&view] {
        QTest::qWait(20);
        return view.viewport()->grab().toImage();
    };
    QImage image = grab();
    QString name = QStringLiteral("view");
    PIXEL_VERIFY(image.pixel(at(50, -0.85)) == qRgb(255, 245, 239), image, name);
    PIXEL_VERIFY(image.pixel(at(50, 0.9)) == qRgb(255, 255, 255), image, name);
    PIXEL_VERIFY(image.pixel(box(0)) == qRgb(0, 34, 255), image, name);
    PIXEL_VERIFY(image.pixel(box(1)) == qRgb(255, 255, 255), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(10, 0.6), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(45, 0.6), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(29.5, 0.4), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(64.5, 0.6), 3, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(50, -0.5), 3, gt::isBluish), image, name);

    // "F 2" shows the second Y axis; a second click hides it again.
    QSignalSpy spy(selection, &CurveGraphicsItem_ShowWhichY::selectionChanged);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(1));
    image = grab();
    name = QStringLiteral("view_f2");
    PIXEL_VERIFY(image.pixel(box(1)) == qRgb(0, 128, 0), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(50, -0.5), 2, gt::isBluish), image, name);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      view.mapFromScene(selection->mapToScene(QPointF(10, 28)))); // a gap
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(1));
    QCOMPARE(spy.count(), 2);
    image = grab();
    PIXEL_VERIFY(!gt::anyNear(image, at(50, -0.5), 3, gt::isBluish), image, name);
    PIXEL_VERIFY(image.pixel(box(1)) == qRgb(255, 255, 255), image, name);
}

void tst_CurveGraphicsView::wheelZoom_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("accepted");
    QTest::newRow("forward") << QPoint(0, 120) << 1.15 << 21;
    QTest::newRow("backward") << QPoint(0, -120) << 0.85 << 60;
    QTest::newRow("zero delta counts backward") << QPoint(0, 0) << 0.85 << 60;
    QTest::newRow("horizontal wheel only") << QPoint(120, 0) << 1.15 << 21;
    // Mixed deltas: the component of larger magnitude decides, the vertical
    // one on a tie.
    QTest::newRow("horizontal dominates backward") << QPoint(-200, 120) << 0.85 << 60;
    QTest::newRow("horizontal dominates forward") << QPoint(121, -120) << 1.15 << 21;
    QTest::newRow("vertical dominates backward") << QPoint(60, -120) << 0.85 << 60;
    QTest::newRow("vertical dominates forward") << QPoint(-119, 120) << 1.15 << 21;
    QTest::newRow("tie goes to vertical backward") << QPoint(120, -120) << 0.85 << 60;
    QTest::newRow("tie goes to vertical forward") << QPoint(-120, 120) << 1.15 << 21;
}

void tst_CurveGraphicsView::wheelZoom()
{
    QFETCH(QPoint, angle);
    QFETCH(double, factor);
    QFETCH(int, accepted);
    CurveGraphicsView view;
    view.resize(400, 300);
    auto* coord = new Curve_Coord_XY;
    view.getCurveScene()->setCoord(coord, true);
    view.getCurveScene()->addCurve("a", gt::makeDataSet({{-3, 5, 1}}), true, Qt::red,
                                   ECurveShowCap_Line, true);
    double zoom = 1.0;
    int hScroll = 0;
    int vScroll = 0;
    for (int step = 1; step <= accepted + 1; ++step) {
        QWheelEvent event(QPointF(50, 50), QPointF(50, 50), QPoint(), angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
        QVERIFY(!event.isAccepted()); // left for the parent widget
        zoom *= step <= accepted ? factor : 1.0;
        double xMin, xMax, yMin, yMax;
        coord->getArea(xMin, xMax, yMin, yMax);
        QCOMPARE(coord->areaSettedNumber(), 1 + qMin(step, accepted));
        QCOMPARE(QVector<double>({xMin, xMax, yMin, yMax}),
                 QVector<double>({0.0, 2.0, -5.0 * zoom, 5.0 * zoom}));
        // The wheel zooms and never scrolls: once the first step has fitted
        // the frame, the scroll bars stay where they are.
        if (step == 1) {
            hScroll = view.horizontalScrollBar()->value();
            vScroll = view.verticalScrollBar()->value();
        }
        QCOMPARE(view.horizontalScrollBar()->value(), hScroll);
        QCOMPARE(view.verticalScrollBar()->value(), vScroll);
    }
}

QTEST_MAIN(tst_CurveGraphicsView)
#include "tst_curvegraphicsview.moc"
