// Pixels of the epoch bars, erase marks, drag outline and legend.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "HeadLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QPixmap>
#include <QtTest>

#include <limits>

namespace {

const QColor kBlue(0, 34, 255);
const QColor kWhite(255, 255, 255);
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

QImage renderLabel(EpochLabel& label, const QString& name)
{
    // Without the window background, so that unpainted pixels stay white.
    QImage image = whiteImage(label.width(), label.height());
    label.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    saveImage(image, name);
    return image;
}

} // namespace

class tst_EpochPaint : public QObject
{
    Q_OBJECT
private slots:
    void bars_data();
    void bars();
    void bandRowsAndGrey();
    void crossedMarkBox();
    void dragOutlineOnEmptyRange();
    void legendSwatches();
    void pixmaps();
};

// Each row: ranges, range, then x positions on the bar line (y 6) that must
// be filled and that must stay white. The label is 200 x 30.
void tst_EpochPaint::bars_data()
{
    QTest::addColumn<QList<EpochPair>>("ranges");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QList<int>>("filled");
    QTest::addColumn<QList<int>>("empty");

    QTest::newRow("stretches between and after pairs")
        << QList<EpochPair>{{0, 100}, {300, 50}} << qint64(0) << qint64(1000)
        << QList<int>{21, 40, 58, 71, 150, 199} << QList<int>{0, 10, 18, 61, 65, 68};
    QTest::newRow("touching pairs give a 1-pixel sliver")
        << QList<EpochPair>{{0, 100}, {100, 50}} << qint64(0) << qint64(1000)
        << QList<int>{20, 31, 199} << QList<int>{19, 21, 25, 28};
    QTest::newRow("no pairs: whole range") << QList<EpochPair>{} << qint64(0) << qint64(1000)
                                           << QList<int>{0, 100, 199} << QList<int>{};
    QTest::newRow("overlapping pair adds no stretch")
        << QList<EpochPair>{{0, 500}, {200, 100}} << qint64(0) << qint64(1000)
        << QList<int>{61, 150, 199} << QList<int>{10, 50, 58};
    QTest::newRow("empty range paints nothing") << QList<EpochPair>{} << qint64(7) << qint64(7)
                                                << QList<int>{} << QList<int>{0, 100, 199};
    QTest::newRow("inverted range paints nothing")
        << QList<EpochPair>{} << qint64(1000) << qint64(0) << QList<int>{}
        << QList<int>{0, 100, 199};
    // The span of the full qint64 range does not fit in 64 bits; the pair
    // ends at epoch -1, the middle of the range.
    QTest::newRow("full qint64 range") << QList<EpochPair>{{kMin, kMax}} << kMin << kMax
                                       << QList<int>{102, 150, 199} << QList<int>{0, 50, 98};
    QTest::newRow("pair end past qint64 saturates: no tail")
        << QList<EpochPair>{{5, kMax}} << qint64(0) << kMax << QList<int>{}
        << QList<int>{0, 100, 199};
    QTest::newRow("stretch up to the last qint64")
        << QList<EpochPair>{{0, 10}, {kMax, kMax}} << qint64(0) << kMax
        << QList<int>{1, 100, 199} << QList<int>{};
    QTest::newRow("pairs far outside the range")
        << QList<EpochPair>{{kMin, 1}, {kMax - 5, 1}} << qint64(-1000) << qint64(1000)
        << QList<int>{0, 100, 199} << QList<int>{};
}

void tst_EpochPaint::bars()
{
    QFETCH(QList<EpochPair>, ranges);
    QFETCH(qint64, start);
    QFETCH(qint64, end);
    QFETCH(QList<int>, filled);
    QFETCH(QList<int>, empty);

    stEpochDataSet set;
    set.ranges = ranges;
    EpochLabel label;
    label.resize(200, 30);
    label.setEpochData(start, end, {set}, true, {});
    const QImage image = renderLabel(label, QStringLiteral("bars-%1").arg(QTest::currentDataTag())
                                                .replace(QLatin1Char(' '), QLatin1Char('-')));
    for (int x : filled)
        QCOMPARE(pixelAt(image, x, 6), kBlue);
    for (int x : empty)
        QCOMPARE(pixelAt(image, x, 6), kWhite);
    // The bar is 4 pixels high at y 4: rows 3 and 8 stay white everywhere.
    for (int x = 0; x < 200; x += 7) {
        QCOMPARE(pixelAt(image, x, 3), kWhite);
        QCOMPARE(pixelAt(image, x, 8), kWhite);
    }
}

void tst_EpochPaint::bandRowsAndGrey()
{
    const QList<stEpochDataSet> sets{stEpochDataSet(), stEpochDataSet(), stEpochDataSet()};
    EpochLabel label;
    label.resize(200, 30);
    for (bool bEnabled : {true, false}) {
        label.setEpochData(0, 1000, sets, bEnabled, {});
        const QImage image =
            renderLabel(label, bEnabled ? QStringLiteral("bands") : QStringLiteral("bands-grey"));
        const QList<QColor>& palette = bEnabled ? epochColourPalette() : epochGreyPalette();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(pixelAt(image, 100, 4 + 6 * i + 2), palette.at(i));
            QCOMPARE(pixelAt(image, 100, 4 + 6 * i + 5), kWhite);
        }
    }
    QCOMPARE(epochColourPalette().at(2), QColor(128, 0, 128));
    QCOMPARE(epochGreyPalette().at(0), QColor(205, 205, 205));

    // Hundreds of bands: every one gets a brush, rows past the bottom are cut.
    QList<stEpochDataSet> many;
    for (int i = 0; i < 400; ++i)
        many.append(epochSet({{0, 10}, {kMax - 1, kMax}}));
    label.setEpochData(kMin, kMax, many, true, {{0, {kMin, kMax}}, {1, {kMax, kMax}}});
    QCOMPARE(label.getBrushes().size(), 400);
    QVERIFY(epochColourPalette().size() >= 400);
    QVERIFY(epochGreyPalette().size() >= 400);
    renderLabel(label, QStringLiteral("bands-400"));
}

void tst_EpochPaint::crossedMarkBox()
{
    EpochLabel label;
    label.resize(200, 30);
    label.setEpochData(0, 1000, {}, true, {{3, {250, 100}}});
    const QImage image = renderLabel(label, QStringLiteral("mark"));

    // Box x 50 to 70, y 2 to 26 in a 2-pixel pen of (240, 135, 132, 100)
    // over white, with both diagonals crossing at (60, 14).
    const auto isMark = [&image](int x, int y) {
        const QColor c = pixelAt(image, x, y);
        return c.red() > 240 && c.green() < 225 && c.blue() < 225 && c.green() > 180;
    };
    QVERIFY(isMark(60, 1));  // top edge
    QVERIFY(isMark(60, 26)); // bottom edge
    QVERIFY(isMark(49, 14)); // left edge
    QVERIFY(isMark(70, 14)); // right edge
    QVERIFY(isMark(59, 13)); // the crossing
    QCOMPARE(pixelAt(image, 53, 14), kWhite); // inside, off the diagonals
    QCOMPARE(pixelAt(image, 45, 14), kWhite);
    QCOMPARE(pixelAt(image, 75, 14), kWhite);
    QCOMPARE(pixelAt(image, 60, 29), kWhite);
}

void tst_EpochPaint::dragOutlineOnEmptyRange()
{
    QWidget parent;
    parent.resize(400, 200);
    EpochLabel label;
    label.setParent(&parent);
    label.setGeometry(10, 50, 200, 30);
    label.setEpochData(5, 5, {stEpochDataSet()}, true, {{0, {0, 10}}});
    label.setDragRect(QRect(30, 55, 100, 20)); // parent coordinates
    const QImage image = renderLabel(label, QStringLiteral("drag-outline"));
    // The outline lands at (20, 5) in the label; nothing else is painted.
    QVERIFY(qGray(image.pixel(70, 5)) < 160);
    QVERIFY(qGray(image.pixel(20, 15)) < 160);
    QCOMPARE(pixelAt(image, 70, 15), kWhite);
    QCOMPARE(pixelAt(image, 5, 6), kWhite);
    QCOMPARE(pixelAt(image, 150, 6), kWhite);
}

void tst_EpochPaint::legendSwatches()
{
    HeadLabel head;
    head.resize(600, 30);
    QImage image = whiteImage(600, 30);
    head.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    saveImage(image, QStringLiteral("legend"));

    // Runs of the four palette colours along y 6: 40 pixels each, the first
    // at x 5, in palette order, with text between them.
    const QList<QColor> colours{kBlue, QColor(0, 128, 0), QColor(128, 0, 128),
                                QColor(154, 205, 50)};
    QList<QPair<int, int>> runs; // (first x, length)
    QList<QColor> runColours;
    for (int x = 0; x < image.width(); ++x) {
        const QColor c = pixelAt(image, x, 6);
        if (!colours.contains(c))
            continue;
        if (!runs.isEmpty() && runColours.last() == c && runs.last().first + runs.last().second == x)
            ++runs.last().second;
        else {
            runs.append({x, 1});
            runColours.append(c);
        }
    }
    QCOMPARE(runColours, colours);
    QCOMPARE(runs.first().first, 5);
    for (int k = 0; k < 4; ++k) {
        QCOMPARE(runs.at(k).second, 40);
        const int x = runs.at(k).first + 20;
        QCOMPARE(pixelAt(image, x, 5), colours.at(k));
        QCOMPARE(pixelAt(image, x, 7), colours.at(k));
        QCOMPARE(pixelAt(image, x, 4), kWhite);
        QCOMPARE(pixelAt(image, x, 8), kWhite);
        // The band name follows its swatch in dark text.
        const int textEnd = k < 3 ? runs.at(k + 1).first - 10 : image.width();
        bool bText = false;
        for (int tx = runs.at(k).first + 40; tx < textEnd && !bText; ++tx) {
            for (int ty = 2; ty < 20 && !bText; ++ty)
                bText = qGray(image.pixel(tx, ty)) < 100;
        }
        QVERIFY2(bText, qPrintable(QStringLiteral("no text after swatch %1").arg(k)));
    }
}

void tst_EpochPaint::pixmaps()
{
    QPixmap enabled(200, 30);
    QPixmap absent(200, 30);
    QPixmap untouched(200, 30);
    QPixmap nullPixmap;
    for (QPixmap* p : {&enabled, &absent, &untouched})
        p->fill(Qt::white);
    const EpochData data{{QStringLiteral("G01"), {epochSet({{0, 100}, {300, 50}})}},
                         {QStringLiteral("G02"), {stEpochDataSet(), stEpochDataSet()}},
                         {QStringLiteral("G03"), {stEpochDataSet()}},
                         {QStringLiteral("G04"), {stEpochDataSet()}},
                         {QStringLiteral("G05"), {stEpochDataSet()}}};
    const QMap<QString, bool> enabledMap{{QStringLiteral("G01"), true},
                                         {QStringLiteral("G02"), false}};
    const QMap<QString, QPixmap*> pixmaps{{QStringLiteral("G01"), &enabled},
                                          {QStringLiteral("G03"), &absent},
                                          {QStringLiteral("G04"), nullptr},
                                          {QStringLiteral("G05"), &nullPixmap},
                                          {QStringLiteral("G99"), &untouched}};
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(0, 1000, data, enabledMap, pixmaps);

    const QImage on = enabled.toImage();
    const QImage grey = absent.toImage();
    saveImage(on, QStringLiteral("pixmap-enabled"));
    saveImage(grey, QStringLiteral("pixmap-missing-from-enabled-map"));
    QCOMPARE(pixelAt(on, 40, 6), kBlue);
    QCOMPARE(pixelAt(on, 10, 6), kWhite);
    QCOMPARE(pixelAt(grey, 100, 6), QColor(205, 205, 205));
    QCOMPARE(pixelAt(untouched.toImage(), 100, 6), kWhite);
    QVERIFY(nullPixmap.isNull());

    // An inverted range leaves even a valid pixmap as it was.
    QPixmap blank(200, 30);
    blank.fill(Qt::white);
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        1000, 0, data, enabledMap, {{QStringLiteral("G01"), &blank}});
    QCOMPARE(pixelAt(blank.toImage(), 100, 6), kWhite);
}

QTEST_MAIN(tst_EpochPaint)
#include "tst_epochpaint.moc"
