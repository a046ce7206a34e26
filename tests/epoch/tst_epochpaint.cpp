// SPDX-License-Identifier: MIT
// Pixels of the epoch bars, erase marks, drag outline and legend.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "HeadLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QtTest>

namespace {

const QColor kBlue(0, 34, 255);
const QColor kWhite(255, 255, 255);

// Renders without the window background, so unpainted pixels stay white.
QImage render(QWidget& widget, const QString& name)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
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
    void extraPaletteEntries();
    void crossedMarkBox();
    void legendSwatches();
};

// On a 200 x 30 label: x positions of the bar line (y 6) that must be
// filled, and that must stay white.
void tst_EpochPaint::bars_data()
{
    QTest::addColumn<QList<EpochPair>>("ranges");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QList<int>>("filled");
    QTest::addColumn<QList<int>>("empty");

    const auto row = [](const char* name, QList<EpochPair> ranges, qint64 start, qint64 end,
                        QList<int> filled, QList<int> empty) {
        QTest::newRow(name) << ranges << start << end << filled << empty;
    };
    row("stretches between and after pairs", {{0, 100}, {300, 50}}, 0, 1000,
        {21, 40, 58, 71, 150, 199}, {0, 10, 18, 61, 65, 68});
    row("touching pairs: 1-pixel sliver", {{0, 100}, {100, 50}}, 0, 1000, {20, 31, 199},
        {19, 21, 25, 28});
    row("empty range", {}, 7, 7, {}, {0, 100, 199});
    // The span does not fit in 64 bits; the pair ends at epoch -1, mid-range.
    row("full qint64 range", {{kMin, kMax}}, kMin, kMax, {102, 150, 199}, {0, 50, 98});
    row("stretch up to the last qint64", {{0, 10}, {kMax, kMax}}, 0, kMax, {1, 100, 199}, {});
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
    const QImage image =
        render(label, QStringLiteral("bars-") + QLatin1String(QTest::currentDataTag()));
    for (int x : filled)
        QCOMPARE(pixelAt(image, x, 6), kBlue);
    for (int x : empty)
        QCOMPARE(pixelAt(image, x, 6), kWhite);
    QVERIFY(pixelAt(image, 100, 3) == kWhite && pixelAt(image, 100, 8) == kWhite);
}

void tst_EpochPaint::bandRowsAndGrey()
{
    EpochLabel label;
    label.resize(200, 30);
    for (bool bEnabled : {true, false}) {
        label.setEpochData(0, 1000, QVector<stEpochDataSet>(3).toList(), bEnabled, {});
        const QImage image = render(label, bEnabled ? QStringLiteral("bands")
                                                    : QStringLiteral("bands-grey"));
        const QList<QColor>& palette = bEnabled ? epochColourPalette() : epochGreyPalette();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(pixelAt(image, 100, 4 + 6 * i + 2), palette.at(i));
            QCOMPARE(pixelAt(image, 100, 4 + 6 * i + 5), kWhite);
        }
    }
    QCOMPARE(epochGreyPalette().at(0), QColor(205, 205, 205));
}

// Entries past the fixed six are the colours Qt 5's qsrand()/qrand() gave
// after the seeds d + k, 2d + k and 3d + k (d entries added, k-th of them);
// they must not change with the Qt version. The palettes are process-wide
// and only grow, so the steps run in order: 7 entries (d = 1), then 9 (d = 2).
void tst_EpochPaint::extraPaletteEntries()
{
    ensureEpochPalettes(6);
    QVERIFY(epochColourPalette().size() >= 6);
    if (epochColourPalette().size() != 6 || epochGreyPalette().size() != 6)
        QSKIP("the palettes grew earlier in this process");
    ensureEpochPalettes(7);
    QCOMPARE(epochColourPalette().at(6), QColor(143, 30, 173));
    QCOMPARE(epochGreyPalette().at(6), QColor(80, 80, 173));
    ensureEpochPalettes(9);
    QCOMPARE(epochColourPalette().size(), 9);
    QCOMPARE(epochColourPalette().at(7), QColor(30, 60, 90));
    QCOMPARE(epochColourPalette().at(8), QColor(173, 203, 233));
    QCOMPARE(epochGreyPalette().at(7), QColor(80, 80, 90));
    QCOMPARE(epochGreyPalette().at(8), QColor(80, 80, 233));
    ensureEpochPalettes(8);
    QCOMPARE(epochColourPalette().size(), 9);
}

void tst_EpochPaint::crossedMarkBox()
{
    EpochLabel label;
    label.resize(200, 30);
    label.setEpochData(0, 1000, {}, true, {{3, {250, 100}}});
    const QImage image = render(label, QStringLiteral("mark"));
    // Box x 50 to 70, y 2 to 26, 2-pixel pen (240, 135, 132, 100) on white,
    // diagonals crossing at (60, 14).
    const auto isMark = [&image](int x, int y) {
        const QColor c = pixelAt(image, x, y);
        return c.red() > 240 && c.green() > 180 && c.green() < 225 && c.blue() < 225;
    };
    QVERIFY(isMark(60, 1) && isMark(60, 26) && isMark(49, 14) && isMark(70, 14));
    QVERIFY(isMark(59, 13));
    for (const QPoint& p : {QPoint(53, 14), QPoint(45, 14), QPoint(75, 14), QPoint(60, 29)})
        QCOMPARE(pixelAt(image, p.x(), p.y()), kWhite);
}

void tst_EpochPaint::legendSwatches()
{
    HeadLabel head;
    head.resize(600, 30);
    const QImage image = render(head, QStringLiteral("legend"));
    // Along y 5 to 7: swatches of the first four palette colours, 40 pixels
    // each from x 5, each followed by its band's text.
    const QList<QColor> colours{kBlue, QColor(0, 128, 0), QColor(128, 0, 128),
                                QColor(154, 205, 50)};
    int x = 0;
    for (const QColor& colour : colours) {
        while (x < image.width() && pixelAt(image, x, 6) != colour)
            ++x;
        QVERIFY(colour != kBlue || x == 5);
        QVERIFY(pixelAt(image, x + 39, 5) == colour && pixelAt(image, x + 39, 7) == colour);
        QVERIFY(pixelAt(image, x + 20, 4) == kWhite && pixelAt(image, x + 20, 8) == kWhite);
        x += 40;
        QVERIFY(pixelAt(image, x, 6) != colour);
    }
}

QTEST_MAIN(tst_EpochPaint)
#include "tst_epochpaint.moc"
