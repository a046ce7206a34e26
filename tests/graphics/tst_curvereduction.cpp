// The curve item draws long runs from a reduced copy of each run. These tests
// render random data both ways and demand the very same pixels, and check the
// one-pass mapping against Curve_Coord_XY::map.

#include "graphicstestsupport.h"

#include "CurveGraphicsItem_Curve_p.h"
#include "Curve_Coord_XY.h"

#include <QPainter>
#include <QRandomGenerator>

#include <cmath>

namespace {

enum class Shape { Noise, SmoothNoise, RandomWalk, Steps, BackwardX, Sparse };

struct Data
{
    QVector<double> xs;
    QVector<double> ys;
    std::set<qint64> breaks;
};

// X over 0 .. 1000, Y over -1 .. 1 (some samples beyond), a few NaN samples
// and breaks.
Data makeData(Shape shape, int n, quint32 seed)
{
    QRandomGenerator rng(seed);
    Data d;
    double walk = 0.0;
    for (int i = 0; i < n; ++i) {
        double x = 1000.0 * i / n;
        double y = 0.0;
        switch (shape) {
        case Shape::Noise:
            y = rng.bounded(2.4) - 1.2;
            break;
        case Shape::SmoothNoise:
            y = 0.7 * std::sin(i * 0.002) + rng.bounded(0.05);
            break;
        case Shape::RandomWalk:
            walk = qBound(-1.3, walk + rng.bounded(0.02) - 0.01, 1.3);
            y = walk;
            break;
        case Shape::Steps:
            y = double(int(rng.bounded(5)) - 2) * 0.3 * ((i / 97) % 2 ? 1 : -1);
            break;
        case Shape::BackwardX:
            x = 500.0 + 450.0 * std::sin(i * 0.01) + rng.bounded(3.0);
            y = rng.bounded(2.0) - 1.0;
            break;
        case Shape::Sparse:
            x = rng.bounded(1000.0);
            y = rng.bounded(2.0) - 1.0;
            break;
        }
        if (rng.bounded(200) == 0)
            y = gt::NaN;
        d.xs.append(x);
        d.ys.append(y);
    }
    for (int b = 0; b < 3; ++b)
        d.breaks.insert(rng.bounded(n - 1));
    return d;
}

QImage render(CurveGraphicsItem_Curve_XY& item, const QSize& size, const QTransform& transform,
              bool bReduced, bool* usedReduced)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(255, 245, 239));
    QPainter painter(&image);
    painter.setTransform(transform);
    painter.translate(0, item.boundingRect().height());
    item.setReducedDrawingEnabled(bReduced);
    if (usedReduced) {
        QPen pen = item.pen();
        pen.setWidthF(1.0);
        *usedReduced = item.canDrawReduced(&painter, pen);
    }
    item.paint(&painter, nullptr, nullptr);
    return image;
}

} // namespace

Q_DECLARE_METATYPE(Shape)

class tst_CurveReduction : public QObject
{
    Q_OBJECT
private slots:
    void samePixels_data();
    void samePixels();
    void mappingMatchesMap();
};

void tst_CurveReduction::samePixels_data()
{
    QTest::addColumn<Shape>("shape");
    QTest::addColumn<int>("count");
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("alpha");
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<bool>("reduces"); // whether one-pixel lines use the reduced runs

    const QTransform identity;
    const QTransform shifted = QTransform::fromTranslate(2.5, 3.25);
    // What a view's fitInView of an 800 x 540 frame sets: a little smaller.
    const QTransform view = QTransform(796.0 / 800, 0, 0, 536.0 / 540, 2, 2);
    const QTransform larger = QTransform::fromScale(1.7, 1.3);
    const struct { const char* name; Shape shape; } shapes[] = {
        {"noise", Shape::Noise},          {"smooth", Shape::SmoothNoise},
        {"walk", Shape::RandomWalk},      {"steps", Shape::Steps},
        {"backward x", Shape::BackwardX}, {"sparse", Shape::Sparse},
    };
    const QSize areas[] = {QSize(37, 23), QSize(200, 120), QSize(720, 500)};
    for (const auto& s : shapes) {
        for (const QSize& area : areas) {
            for (const int count : {600, 1500, 12000}) {
                const QByteArray base = QByteArray(s.name) + ' ' + QByteArray::number(count)
                                        + " in " + QByteArray::number(area.width()) + 'x'
                                        + QByteArray::number(area.height());
                QTest::newRow(base + ", opaque") << s.shape << count << area << 255 << identity
                                                 << true;
                QTest::newRow(base + ", opaque shifted") << s.shape << count << area << 255
                                                         << shifted << true;
                QTest::newRow(base + ", translucent") << s.shape << count << area << 128
                                                      << identity << false;
                QTest::newRow(base + ", translucent in a view") << s.shape << count << area
                                                                << 128 << view << false;
                QTest::newRow(base + ", opaque in a view") << s.shape << count << area << 255
                                                           << view << false;
                QTest::newRow(base + ", translucent enlarged") << s.shape << count << area
                                                               << 128 << larger << true;
            }
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
    QFETCH(bool, reduces);

    const Data data = makeData(shape, count, quint32(count) * 31u + quint32(shape));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 1000, -1, 1));
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), data.xs);
    gt::fillAxis(dataSet.getAxisData(1), data.ys, data.breaks);
    CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
    item.setPenColor(QColor(200, 30, 60, alpha));
    item.setDataArea(area.width(), area.height());

    int full = 0;
    int kept = 0;
    const QList<QPolygon>& runs = item.polylines().at(0);
    QCOMPARE(item.reducedPolylines().at(0).size(), runs.size());
    for (int r = 0; r < runs.size(); ++r) {
        full += runs.at(r).size();
        kept += item.reducedPolylines().at(0).at(r).size();
        QCOMPARE(item.reducedPolylines().at(0).at(r).first(), runs.at(r).first());
        QCOMPARE(item.reducedPolylines().at(0).at(r).last(), runs.at(r).last());
    }
    QVERIFY(kept <= full);
    if (count >= 12000 && area.width() == 200 && shape == Shape::Noise)
        QVERIFY2(kept * 4 < full, "dense data should shrink");

    const QSize size = transform.mapRect(QRect(QPoint(), area)).size() + QSize(8, 8);
    bool usedReduced = false;
    const QImage reduced = render(item, size, transform, true, &usedReduced);
    QCOMPARE(usedReduced, reduces);
    const QImage every = render(item, size, transform, false, nullptr);
    if (reduced != every) {
        int differing = 0;
        QString where;
        for (int y = 0; y < every.height(); ++y) {
            for (int x = 0; x < every.width(); ++x) {
                if (reduced.pixel(x, y) == every.pixel(x, y))
                    continue;
                if (++differing <= 3)
                    where += QStringLiteral(" (%1, %2)").arg(x).arg(y);
            }
        }
        const QString name = QStringLiteral("/tmp/tst_curvereduction_%1")
                                 .arg(QString::fromLatin1(QTest::currentDataTag())
                                          .replace(QLatin1Char(' '), QLatin1Char('_')));
        reduced.save(name + QStringLiteral("_reduced.png"));
        every.save(name + QStringLiteral("_every.png"));
        QFAIL(qPrintable(QStringLiteral("%1 pixels differ, at%2").arg(differing).arg(where)));
    }
}

void tst_CurveReduction::mappingMatchesMap()
{
    // Odd extents and an odd area make the rounding of every step matter.
    for (const bool bDown : {false, true}) {
        const Data data = makeData(Shape::Noise, 5000, 7u);
        Curve_Coord_XY coord;
        QVERIFY(coord.setArea(0.37, 999.1, -0.93, 1.07));
        Curve_DataSet_XY dataSet(1);
        gt::fillAxis(dataSet.getAxisData(0), data.xs);
        gt::fillAxis(dataSet.getAxisData(1), data.ys);
        CurveGraphicsItem_Curve_XY item(nullptr, &coord, QString(), &dataSet, nullptr);
        const double h = bDown ? -333.7 : 333.7;
        item.setDataArea(611.3, h);
        QVector<double> px(data.xs.size()), py(data.xs.size());
        coord.map(item.boundingRect(), px.size(), data.xs.constData(), data.ys.constData(),
                  px.data(), py.data(), bDown);
        QPolygon expected;
        for (int i = 0; i < px.size(); ++i) {
            if (!std::isnan(py[i]))
                expected.append(QPoint(int(px[i]), int(py[i])));
        }
        QCOMPARE(item.polylines().at(0).size(), 1);
        QCOMPARE(item.polylines().at(0).at(0), expected);
    }
}

QTEST_MAIN(tst_CurveReduction)
#include "tst_curvereduction.moc"
