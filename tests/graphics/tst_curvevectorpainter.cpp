// SPDX-License-Identifier: MIT
// Curves as polylines, for devices no picture serves: the runs in item
// pixels, the pen rule as QPainter draws it, and thin runs reduced for
// vector output.

#include "graphicstestsupport.h"

#include "CurveVectorPainter_p.h"
#include "Curve_Coord_XY.h"

#include <QPicture>

#include <memory>

class tst_CurveVectorPainter : public QObject
{
    Q_OBJECT
private slots:
    void mapRun_data();
    void mapRun();
    void penRule();
    void reducedForVectors();
};

void tst_CurveVectorPainter::mapRun_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<QVector<double>>("ys");
    QTest::addColumn<QPolygon>("points");

    // Area x 0 .. 10, y 0 .. 10 over a 100 x 100 data area: (x, y) lands on
    // (10x, -10y), truncated toward zero.
    const int limit = CurveVectorPainter::kPixelLimit;
    using Points = QVector<QPoint>;
    QTest::newRow("plain") << QVector<double>{0, 1.05, 2} << QVector<double>{0, 2.55, 10}
                           << QPolygon(Points{QPoint(0, 0), QPoint(10, -25), QPoint(20, -100)});
    QTest::newRow("NaN Y joins its neighbours")
        << QVector<double>{0, 1, 2} << QVector<double>{1, gt::NaN, 3}
        << QPolygon(Points{QPoint(0, -10), QPoint(20, -30)});
    QTest::newRow("NaN X is left out") << QVector<double>{0, gt::NaN, 2}
                                       << QVector<double>{1, 2, 3}
                                       << QPolygon(Points{QPoint(0, -10), QPoint(20, -30)});
    QTest::newRow("toward zero") << QVector<double>{-0.05} << QVector<double>{0.099}
                                 << QPolygon(Points{QPoint(0, 0)});
    QTest::newRow("huge saturates") << QVector<double>{1e300} << QVector<double>{-1e300}
                                    << QPolygon(Points{QPoint(limit, limit)});
}

void tst_CurveVectorPainter::mapRun()
{
    QFETCH(QVector<double>, xs);
    QFETCH(QVector<double>, ys);
    QFETCH(QPolygon, points);

    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet(xs, {ys}));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 10, 0, 10));
    CurveSnapshot snapshot;
    snapshot.take(dataSet.get(), &coord, 1);
    const CoordMapping mapping(QRectF(0, -100, 100, 100), 0, 10, 0, 10, false);
    QPolygon out;
    CurveVectorPainter::mapRun(snapshot, mapping, 0, snapshot.runs(0).front(), out);
    QCOMPARE(out, points);
}

void tst_CurveVectorPainter::penRule()
{
    // Runs of 1, 600, 1500 and 2500 points, drawn as a plain QPainter
    // drawing with the widths the behaviour states: a 4.0 point, 2.0,
    // 2000 / 1500 and 1.0.
    QVector<double> xs;
    QVector<double> ys;
    std::set<qint64> breaks;
    const int lengths[] = {1, 600, 1500, 2500};
    QVector<QPolygon> runs;
    int start = 0;
    for (const int length : lengths) {
        QPolygon run;
        for (int i = 0; i < length; ++i) {
            const double x = (start + i) * 0.01;
            const double y = 5.0 + 4.0 * std::sin((start + i) * 0.05);
            xs.append(x);
            ys.append(y);
            run.append(QPoint(int(x / 50.0 * 400.0), -int(y / 10.0 * 200.0)));
        }
        runs.append(run);
        start += length;
        breaks.insert(start - 1);
    }
    breaks.erase(start - 1);
    Curve_DataSet_XY dataSet(1);
    gt::fillAxis(dataSet.getAxisData(0), xs);
    gt::fillAxis(dataSet.getAxisData(1), ys, breaks);
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, 50, 0, 10));
    CurveSnapshot snapshot;
    snapshot.take(&dataSet, &coord, 1);
    QCOMPARE(snapshot.runs(0).size(), size_t(4));
    const CoordMapping mapping(QRectF(0, -200, 400, 200), 0, 50, 0, 10, false);
    const QColor colour(20, 60, 200, 128);

    QImage drawn(420, 220, QImage::Format_ARGB32_Premultiplied);
    QImage plain = drawn;
    drawn.fill(0);
    plain.fill(0);
    {
        QPainter painter(&drawn);
        painter.translate(10, 210);
        CurveVectorPainter::draw(&painter, snapshot, mapping, {{0, QPen(colour)}},
                                 ECurveShowCap_Line, false);
    }
    {
        QPainter painter(&plain);
        painter.translate(10, 210);
        const qreal widths[] = {4.0, 2.0, 2000.0 / 1500.0, 1.0};
        for (int r = 0; r < runs.size(); ++r) {
            QPen pen(colour);
            pen.setWidthF(widths[r]);
            painter.setPen(pen);
            if (runs.at(r).size() == 1)
                painter.drawPoints(runs.at(r));
            else
                painter.drawPolyline(runs.at(r));
        }
    }
    QVERIFY(drawn == plain);
}

void tst_CurveVectorPainter::reducedForVectors()
{
    // A thin run of 200,000 samples recorded as vector output: four points
    // per device column at most, and every column the full run reaches is
    // still reached.
    const int n = 200000;
    QVector<double> xs(n), ys(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = i;
        ys[i] = std::sin(i * 0.013) * 0.8 + ((i * 7919) % 101) * 0.002;
    }
    std::unique_ptr<Curve_DataSet_XY> dataSet(gt::makeDataSet(xs, {ys}));
    Curve_Coord_XY coord;
    QVERIFY(coord.setArea(0, n - 1, -1, 1));
    CurveSnapshot snapshot;
    snapshot.take(dataSet.get(), &coord, 1);
    const CoordMapping mapping(QRectF(0, -300, 600, 300), 0, n - 1, -1, 1, false);
    const std::vector<CurveVectorPainter::Pass> passes{{0, QPen(Qt::black)}};
    QPicture reduced;
    {
        QPainter painter(&reduced);
        painter.translate(0, 300);
        CurveVectorPainter::draw(&painter, snapshot, mapping, passes, ECurveShowCap_Line, true);
    }
    QVERIFY2(reduced.size() < 100000, qPrintable(QString::number(reduced.size())));
    QImage full(600, 301, QImage::Format_ARGB32_Premultiplied);
    QImage replayed = full;
    full.fill(0);
    replayed.fill(0);
    {
        QPainter painter(&full);
        painter.translate(0, 300);
        CurveVectorPainter::draw(&painter, snapshot, mapping, passes, ECurveShowCap_Line, false);
    }
    {
        QPainter painter(&replayed);
        painter.drawPicture(0, 0, reduced);
    }
    for (int x = 0; x < 600; ++x) {
        int top = -1;
        int bottom = -1;
        int replayedTop = -1;
        int replayedBottom = -1;
        for (int y = 0; y < 301; ++y) {
            if (qAlpha(full.pixel(x, y))) {
                top = top < 0 ? y : top;
                bottom = y;
            }
            if (qAlpha(replayed.pixel(x, y))) {
                replayedTop = replayedTop < 0 ? y : replayedTop;
                replayedBottom = y;
            }
        }
        // The column's extent is kept: the lowest and highest point.
        QCOMPARE(replayedTop, top);
        QCOMPARE(replayedBottom, bottom);
    }
}

QTEST_MAIN(tst_CurveVectorPainter)
#include "tst_curvevectorpainter.moc"
