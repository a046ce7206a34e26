// SPDX-License-Identifier: MIT
// The one pen rule of a curve (widths by run length, the points style) and
// the colours of its Y axes, normal and shown alone.

#include "CurvePen_p.h"

#include <QtTest>

class tst_CurvePen : public QObject
{
    Q_OBJECT
private slots:
    void runWidth_data();
    void runWidth();
    void yAxisColours_data();
    void yAxisColours();
};

void tst_CurvePen::runWidth_data()
{
    QTest::addColumn<qint64>("points");
    QTest::addColumn<int>("cap");
    QTest::addColumn<qreal>("width");
    QTest::addColumn<bool>("thin");

    const int line = ECurveShowCap_Line;
    const int point = ECurveShowCap_Point;
    QTest::newRow("single point") << qint64(1) << line << 4.0 << false;
    QTest::newRow("two points") << qint64(2) << line << 2.0 << false;
    QTest::newRow("1000 points") << qint64(1000) << line << 2.0 << false;
    QTest::newRow("1001 points") << qint64(1001) << line << 2000.0 / 1001 << false;
    QTest::newRow("1500 points") << qint64(1500) << line << 2000.0 / 1500 << false;
    QTest::newRow("1999 points") << qint64(1999) << line << 2000.0 / 1999 << false;
    QTest::newRow("2000 points") << qint64(2000) << line << 1.0 << true;
    QTest::newRow("5000 points") << qint64(5000) << line << 1.0 << true;
    QTest::newRow("points style, one") << qint64(1) << point << 2.0 << false;
    QTest::newRow("points style, many") << qint64(5000) << point << 2.0 << true;
}

void tst_CurvePen::runWidth()
{
    QFETCH(qint64, points);
    QFETCH(int, cap);
    QFETCH(qreal, width);
    QFETCH(bool, thin);

    QPen pen(QColor(10, 20, 30, 40));
    pen.setWidth(0);
    const QPen out = CurvePen::forRun(pen, ECurveShowCap(cap), points);
    QCOMPARE(out.widthF(), width);
    QCOMPARE(out.color(), pen.color());
    QCOMPARE(CurvePen::isThin(points), thin);
}

void tst_CurvePen::yAxisColours_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<int>("yIndex");
    QTest::addColumn<QColor>("normal");
    QTest::addColumn<QColor>("single");

    const QColor blue(0, 34, 255, 255);
    const QColor green(0, 128, 0, 255);
    const QColor base(200, 100, 50, 128);
    QTest::newRow("first keeps the pen") << base << 0 << base << blue;
    QTest::newRow("red 200 is cut at 255") << base << 1 << QColor(255, 130, 0, 128) << green;
    QTest::newRow("third axis") << base << 2 << QColor(255, 255, 0, 128) << green;
    QTest::newRow("red and green 0") << QColor(0, 0, 255, 128) << 3 << QColor(0, 0, 0, 128)
                                     << green;
    QTest::newRow("integer product first") << QColor(7, 3, 0, 128) << 3
                                           << QColor(27, 11, 0, 128) << green;
}

void tst_CurvePen::yAxisColours()
{
    QFETCH(QColor, base);
    QFETCH(int, yIndex);
    QFETCH(QColor, normal);
    QFETCH(QColor, single);

    QPen pen(base);
    pen.setWidth(0);
    QCOMPARE(CurvePen::normalPen(pen, yIndex).color(), normal);
    QCOMPARE(CurvePen::normalPen(pen, yIndex).widthF(), 0.0);
    QCOMPARE(CurvePen::singleShowColor(yIndex), single);
}

QTEST_MAIN(tst_CurvePen)
#include "tst_curvepen.moc"
