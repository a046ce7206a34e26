// The view on screen: fitting the frame, what a person sees, clicking the
// Y-selection and zooming with the wheel.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsView.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

namespace {

CurveGraphicsItem_Coord_PXPY* frameOf(CurveGraphicsView& view)
{
    return gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
}

} // namespace

class tst_CurveGraphicsView : public QObject
{
    Q_OBJECT
private slots:
    void resizeFitsFrame_data();
    void resizeFitsFrame();
    void shownPixels();
    void wheelZoom_data();
    void wheelZoom();
};

void tst_CurveGraphicsView::resizeFitsFrame_data()
{
    QTest::addColumn<bool>("bare");
    QTest::newRow("viewport of exactly 800x540") << true;
    QTest::newRow("default frame and scroll bars") << false;
}

void tst_CurveGraphicsView::resizeFitsFrame()
{
    QFETCH(bool, bare);
    CurveGraphicsView view;
    QVERIFY(view.getCurveScene());
    view.resize(800, 540); // no coordinate yet: nothing to fit
    QVERIFY(qobject_cast<CurveGraphicsScene*>(view.scene())->getCoordRect().isNull());
    if (bare) {
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.resize(801, 540);
    view.resize(800, 540);
    QCoreApplication::processEvents();

    const QSize viewport = view.viewport()->size();
    if (bare)
        QCOMPARE(viewport, QSize(800, 540));
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(view);
    QVERIFY(frame);
    QCOMPARE(frame->boundingRect().size(), QSizeF(viewport));
    QCOMPARE(frame->getDataRect().width(), viewport.width() - 80.0);
    QCOMPARE(frame->getDataRect().height(), viewport.height() * 25.0 / 27.0);
    const QRect shown = view.mapFromScene(frame->sceneBoundingRect()).boundingRect();
    QVERIFY2(view.viewport()->rect().contains(shown), qPrintable(QStringLiteral("%1 %2 %3 %4")
             .arg(shown.x()).arg(shown.y()).arg(shown.width()).arg(shown.height())));
    QVERIFY(shown.width() >= viewport.width() - 6 && shown.height() >= viewport.height() - 6);
}

void tst_CurveGraphicsView::shownPixels()
{
    CurveGraphicsView view;
    view.setFrameShape(QFrame::NoFrame);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    CurveScene* registry = view.getCurveScene();
    auto* coord = new Curve_Coord_XY;
    QVERIFY(coord->setArea(0, 99, -1, 1));
    registry->setCoord(coord, true);
    // Y1 at 0.6 drops to 0.2 after a break at 29 and has an all-NaN stretch
    // 60..69 fenced by breaks; Y2 runs at -0.5 in the tinted half.
    QVector<double> y1(100, 0.6);
    y1[30] = 0.2;
    for (int i = 60; i < 70; ++i)
        y1[i] = gt::NaN;
    Curve_DataSet_XY* dataSet = gt::makeDataSet({y1, gt::constant(100, -0.5)});
    gt::fillAxis(dataSet->getAxisData(1), y1, {29, 59, 69});
    registry->addCurve(QStringLiteral("a"), dataSet, true, QColor(0, 0, 255),
                       ECurveShowCap_Line, true);
    view.resize(800, 540);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    CurveGraphicsItem_Coord_PXPY* frame = frameOf(view);
    CurveGraphicsItem_ShowWhichY* selection = frame->getShowWhichY();

    // Frame pixels for a sample index and a Y value.
    const auto at = [&view](double sample, double y) {
        return view.mapFromScene(QPointF(sample * 720.0 / 99.0, -(y + 1.0) * 250.0));
    };
    const auto box = [&view, selection](int k) {
        return view.mapFromScene(selection->mapToScene(QPointF(10, 30 * k + 15)));
    };
    const auto grab = [&view](const char* name) {
        QTest::qWait(20);
        QImage image = view.viewport()->grab().toImage();
        gt::keepImage(image, QLatin1String(name), false);
        return image;
    };

    QImage image = grab("view");
    const QString name = QStringLiteral("view");
    PIXEL_VERIFY(image.pixel(at(50, -0.85)) == qRgb(255, 245, 239), image, name);
    PIXEL_VERIFY(image.pixel(at(50, 0.9)) == qRgb(255, 255, 255), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(50, -1), 2, gt::isDark), image, name);
    PIXEL_VERIFY(gt::anyNear(image, view.mapFromScene(QPointF(-1, -250)), 2, gt::isDark),
                 image, name);
    PIXEL_VERIFY(image.pixel(box(0)) == qRgb(0, 34, 255), image, name);
    PIXEL_VERIFY(image.pixel(box(1)) == qRgb(255, 255, 255), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(10, 0.6), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(gt::anyNear(image, at(45, 0.6), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(29.5, 0.4), 2, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(64.5, 0.6), 3, gt::isBluish), image, name);
    PIXEL_VERIFY(!gt::anyNear(image, at(50, -0.5), 3, gt::isBluish), image, name);

    // "F 2" shows the second Y axis; a second click hides it again.
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(1));
    image = grab("view_f2");
    PIXEL_VERIFY(image.pixel(box(1)) == qRgb(0, 128, 0), image, name + QLatin1String("_f2"));
    PIXEL_VERIFY(gt::anyNear(image, at(50, -0.5), 2, gt::isBluish), image,
                 name + QLatin1String("_f2"));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(1));
    image = grab("view_f2_off");
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
}

void tst_CurveGraphicsView::wheelZoom()
{
    QFETCH(QPoint, angle);
    QFETCH(double, factor);
    QFETCH(int, accepted);

    QWidget parent;
    auto* view = new CurveGraphicsView(&parent);
    parent.resize(400, 300);
    view->resize(400, 300);
    auto* coord = new Curve_Coord_XY;
    view->getCurveScene()->setCoord(coord, true);
    view->getCurveScene()->addCurve(QStringLiteral("a"), gt::makeDataSet({{-3, 5, 1}}), true,
                                    Qt::red, ECurveShowCap_Line, true);
    QCOMPARE(coord->areaSettedNumber(), 1);
    double zoom = 1.0;
    int scrollX = 0;
    int scrollY = 0;
    for (int step = 1; step <= accepted + 1; ++step) {
        if (step > accepted) {
            // Accepted steps refit the frame; a refused one must leave a
            // hand-scrolled view exactly where it is.
            view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->value() + 7);
            view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() + 7);
            scrollX = view->horizontalScrollBar()->value();
            scrollY = view->verticalScrollBar()->value();
        }
        QWheelEvent event(QPointF(50, 50), QPointF(50, 50), QPoint(), angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view->viewport(), &event);
        // Left unaccepted, so that a spontaneous event goes on to the parent.
        QVERIFY(!event.isAccepted());
        if (step <= accepted)
            zoom *= factor;
        double xMin, xMax, yMin, yMax;
        coord->getArea(xMin, xMax, yMin, yMax);
        QCOMPARE(coord->areaSettedNumber(), 1 + qMin(step, accepted));
        QCOMPARE(xMin, 0.0);
        QCOMPARE(xMax, 2.0);
        QCOMPARE(yMax, 5.0 * zoom);
        QCOMPARE(yMin, -yMax);
        if (step == 1 && factor > 1.0)
            QCOMPARE(yMax, 5.75);
    }
    QCOMPARE(view->horizontalScrollBar()->value(), scrollX);
    QCOMPARE(view->verticalScrollBar()->value(), scrollY);
    // The frame was resized to the viewport and the item rebuilt once for it.
    QCOMPARE(frameOf(*view)->boundingRect().size(), QSizeF(view->viewport()->size()));
}

QTEST_MAIN(tst_CurveGraphicsView)
#include "tst_curvegraphicsview.moc"
