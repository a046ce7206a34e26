// The curve item counts long translucent runs and blends them straight into
// the image, or draws them from a reduced copy of each run. These tests
// render random data with and without those shortcuts and demand the very
// same pixels.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsView.h"
#include "Curve_Coord_XY.h"
#include "StrokeReduction_p.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QWheelEvent>

#include <cmath>

namespace {

enum class Shape { Noise, SmoothNoise, RandomWalk, Steps, BackwardX, Sparse };

// X over 0 .. 1000, Y over -1 .. 1 (some samples beyond), a few NaN samples
// and breaks.
void fillData(Curve_DataSet_XY& dataSet, Shape shape, int n, quint32 seed)
{
    QRandomGenerator rng(seed);
    QVector<double> xs, ys;
    std::set<qint64> breaks;
    double walk = 0.0;
    for (int i = 0; i < n; ++i) {
        double x = 1000.0 * i / n;
        double y = 0.0;
        switch (shape) {
        case Shape::Noise: y = rng.bounded(2.4) - 1.2; break;
        case Shape::SmoothNoise: y = 0.7 * std::sin(i * 0.002) + rng.bounded(0.05); break;
        case Shape::RandomWalk: y = walk = qBound(-1.3, walk + rng.bounded(0.02) - 0.01, 1.3);
            break;
        case Shape::Steps: y = double(int(rng.bounded(5)) - 2) * 0.3 * ((i / 97) % 2 ? 1 : -1);
            break;
        case Shape::BackwardX: x = 500.0 + 450.0 * std::sin(i * 0.01) + rng.bounded(3.0);
            y = rng.bounded(2.0) - 1.0; break;
        case Shape::Sparse: x = rng.bounded(1000.0); y = rng.bounded(2.0) - 1.0; break;
        }
        if (rng.bounded(200) == 0)
            y = gt::NaN;
        xs.append(x);
        ys.append(y);
    }
    for (int b = 0; b < 3; ++b)
        breaks.insert(rng.bounded(n - 1));
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
}

// What a view's fitInView of an 800 x 540 frame sets: a little smaller.
QTransform viewTransform()
{
    return QTransform(796.0 / 800, 0, 0, 536.0 / 540, 2, 2);
}

struct Drawing
{
    QImage image;
    bool columns = false;  // the per-column copy applies to 1-pixel runs
    int points = 0;        // points drawn
    int full = 0;          // points of the runs
};

Drawing render(CurveGraphicsItem_Curve_XY& item, const QSize& size, const QTransform& transform,
               QImage::Format format, bool bReduced)
{
    Drawing drawing;
    drawing.image = QImage(size, format);
    drawing.image.fill(QColor(255, 245, 239));
    QPainter painter(&drawing.image);
    painter.setTransform(transform);
    painter.translate(0, item.boundingRect().height());
    item.setReducedDrawingEnabled(bReduced);
    item.paint(&painter, nullptr, nullptr);
    QPen pen = item.pen();
    pen.setWidthF(1.0);
    drawing.columns = item.canDrawReduced(&painter, pen);
    const QList<QPolygon>& runs = item.polylines().at(0);
    for (int r = 0; r < runs.size(); ++r) {
        pen.setWidthF(qBound(1.0, 2.0 / (runs.at(r).size() / 1000.0), 2.0));
        drawing.full += runs.at(r).size();
        drawing.points += item.pointsToDraw(0, r, &painter, pen).size();
    }
    return drawing;
}

} // namespace

Q_DECLARE_METATYPE(Shape)

class tst_CurveReduction : public QObject
{
    Q_OBJECT
private slots:
    void samePixels_data();
    void samePixels();
    void viewPixels_data();
    void viewPixels();
    void columnShortcut();
};

void tst_CurveReduction::samePixels_data()
{
    QTest::addColumn<Shape>("shape");
    QTest::addColumn<int>("count");
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("alpha");
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<bool>("columns"); // whether one-pixel runs use the per-column copy

    const QTransform view = viewTransform();
    const QImage::Format argb = QImage::Format_ARGB32_Premultiplied;
    const QImage::Format rgb = QImage::Format_RGB32;
    const struct
    {
        const char* name;
        int alpha;
        QTransform transform;
        QImage::Format format;
        bool columns;
    } setups[] = {
        {"opaque", 255, QTransform(), argb, true},
        {"opaque shifted", 255, QTransform::fromTranslate(2.5, 3.25), argb, true},
        {"opaque in a view", 255, view, rgb, false},
        {"translucent", 128, QTransform(), rgb, false},
        {"translucent in a view", 128, view, argb, false},
        {"translucent enlarged", 128, QTransform::fromScale(1.7, 1.3), argb, true},
        {"faint, halved", 40, QTransform(0.5, 0, 0, 0.5, 3.5, 1.25), rgb, false},
        {"strong, offset", 220, QTransform::fromTranslate(0.4, 2.75), argb, false},
        {"flipped", 128, QTransform(0.99, 0, 0, -0.97, 1, 130), rgb, false},
    };
    const char* shapes[] = {"noise", "smooth", "walk", "steps", "backward x", "sparse"};
    const QSize areas[] = {QSize(37, 23), QSize(200, 120), QSize(720, 500)};
    const int counts[] = {1500, 12000, 60000};
    // Every shape meets every setup once, sizes and counts taking turns.
    for (int s = 0; s < 6; ++s) {
        for (int k = 0; k < 9; ++k) {
            const QSize area = areas[(s + k) % 3];
            const int count = counts[(s + 2 * k) % 3];
            QTest::addRow("%s %d in %dx%d, %s", shapes[s], count, area.width(), area.height(),
                          setups[k].name)
                << Shape(s) << count << area << setups[k].alpha << setups[k].transform
                << setups[k].format << setups[k].columns;
        }
    }
}

void tst_CurveReduction::samePixels()
{
    QFETCH(Shape, shape);
    QFETCH(int, count);
    QFETCH(QSize, area);
    QFETCH(int, alpha);
    QFETCH(QTransform, transform);
    QFETCH(QImage::Format, format);
    QFETCH(bool, columns);

    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 1000, -1, 1));
    Curve_DataSet_XY dataSet(1);
    fillData(dataSet, shape, count, quint32(count) * 31u + quint32(shape));
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    item.setPenColor(QColor(200, 30, 60, alpha));
    item.setDataArea(area.width(), area.height());

    const QSize size = transform.mapRect(QRect(QPoint(), area)).size() + QSize(8, 8);
    const Drawing every = render(item, size, transform, format, false);
    const Drawing reduced = render(item, size, transform, format, true);
    QCOMPARE(reduced.columns, columns);
    QVERIFY(reduced.points <= reduced.full);
    // Dense noise must shrink, whether opaque or in the live view's setup.
    const bool dense = shape == Shape::Noise && count / area.width() >= 50;
    if (dense && (columns || transform == viewTransform()))
        QVERIFY2(reduced.points * 10 < reduced.full * 8,
                 qPrintable(QStringLiteral("%1 of %2").arg(reduced.points).arg(reduced.full)));
    if (reduced.image != every.image) {
        const QString name = QStringLiteral("/tmp/tst_curvereduction_%1")
                                 .arg(QString::fromLatin1(QTest::currentDataTag())
                                          .replace(QLatin1Char(' '), QLatin1Char('_')));
        reduced.image.save(name + QStringLiteral("_reduced.png"));
        every.image.save(name + QStringLiteral("_every.png"));
        QFAIL("the reduced runs draw other pixels");
    }
}

void tst_CurveReduction::viewPixels_data()
{
    QTest::addColumn<int>("wheelSteps");   // > 0 zooms in: curves leave the data area
    QTest::addColumn<QRegion>("exposed");  // empty: the whole viewport
    QTest::newRow("whole viewport") << 0 << QRegion();
    QTest::newRow("zoomed in") << 6 << QRegion();
    QTest::newRow("zoomed out, one exposed rectangle") << -3 << QRegion(90, 40, 300, 200);
    QTest::newRow("zoomed in, two exposed rectangles")
        << 4 << (QRegion(90, 40, 300, 200) + QRegion(500, 100, 200, 300));
}

// A view's paint, where the scene clips each curve to its data area, must
// give the pixels of Qt's own drawing of every point.
void tst_CurveReduction::viewPixels()
{
    QFETCH(int, wheelSteps);
    QFETCH(QRegion, exposed);

    CurveGraphicsView view;
    view.resize(800, 540);
    view.getCurveScene()->setCoord(new Curve_Coord_XY, true);
    const QColor colors[] = {QColor(31, 119, 180), QColor(214, 39, 40), QColor(44, 160, 44)};
    for (int c = 0; c < 3; ++c) {
        auto* dataSet = new Curve_DataSet_XY(1);
        fillData(*dataSet, c == 2 ? Shape::RandomWalk : Shape::Noise, 40000 + 9000 * c,
                 quint32(7 + c));
        view.getCurveScene()->addCurve(QStringLiteral("C%1").arg(c), dataSet, true, colors[c],
                                       ECurveShowCap_Line, true);
    }
    view.show();
    QCoreApplication::processEvents();
    view.setCurvesPosToVerticalZero();
    const QPointF at(400, 270);
    for (int i = 0; i < std::abs(wheelSteps); ++i) {
        QWheelEvent wheel(at, view.viewport()->mapToGlobal(at.toPoint()), QPoint(),
                          QPoint(0, wheelSteps > 0 ? 120 : -120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.viewport(), &wheel);
    }

    const auto paint = [&view, &exposed](bool counted) {
        for (QGraphicsItem* item : view.scene()->items()) {
            if (auto* curve = qobject_cast<CurveGraphicsItem_Curve_XY*>(item->toGraphicsObject()))
                curve->setReducedDrawingEnabled(counted);
        }
        QImage image(view.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        QPainter painter(&image);
        view.viewport()->render(&painter, QPoint(), exposed);
        return image;
    };
    const QImage every = paint(false);
    const QImage counted = paint(true);
    if (counted != every) {
        const QString name = QStringLiteral("/tmp/tst_curvereduction_view_%1")
                                 .arg(QString::fromLatin1(QTest::currentDataTag())
                                          .replace(QLatin1Char(' '), QLatin1Char('_')));
        counted.save(name + QStringLiteral("_counted.png"));
        every.save(name + QStringLiteral("_every.png"));
        QFAIL("the view's counted drawing differs from Qt's");
    }
}

// The in-column shortcut of the stroke model must agree with the general
// segment step wherever its preconditions hold.
void tst_CurveReduction::columnShortcut()
{
    QRandomGenerator rng(2026);
    const StrokeModel model(64, 64);
    int compared = 0;
    for (int i = 0; i < 20000; ++i) {
        const double x = 10.0 + rng.bounded(640) / 64.0;
        StrokeModel::State state;
        state.lastX = int(x * 64.) >> 6;
        state.lastY = int(rng.bounded(70)) - 3;
        state.lastDir = rng.bounded(2) ? StrokeModel::TopToBottom : StrokeModel::BottomToTop;
        state.lastAxisAligned = true;
        const double y1 = rng.bounded(66.0) - 1.0;
        const double y2 = rng.bounded(8) == 0 ? y1 + rng.bounded(0.05) : rng.bounded(66.0) - 1.0;
        if (!model.inColumn(state, x, y1, y2, state.lastX))
            continue;
        std::vector<int> generalRows(80, 0), shortcutRows(80, 0);
        StrokeModel::ColumnCounter general{state.lastX, -8, &generalRows, false};
        StrokeModel::ColumnCounter shortcut{state.lastX, -8, &shortcutRows, false};
        StrokeModel::State a = state;
        StrokeModel::State b = state;
        const bool movedA = model.stroke(a, x, y1, x, y2, StrokeModel::NoCaps, general);
        const bool movedB = model.strokeInColumn(b, state.lastX, y1, y2, shortcut);
        QCOMPARE(movedB, movedA);
        QVERIFY(a == b);
        QCOMPARE(shortcut.stray, general.stray);
        QCOMPARE(shortcutRows, generalRows);
        ++compared;
    }
    QVERIFY(compared > 15000);
}

QTEST_MAIN(tst_CurveReduction)
#include "tst_curvereduction.moc"
