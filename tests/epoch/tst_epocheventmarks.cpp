// SPDX-License-Identifier: MIT
// Event marks on the epoch table's bars: ticks at the marks' epochs in the
// colour of their kind, in the table's labels and in the pixmaps of
// PaintAllLabelsToDevice, following the time window; nothing for marks
// without a place; the marks kept in the table's model.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "EpochTableModel_p.h"
#include "EventMark.h"
#include "epoch/EpochTestSupport.h"

#include <QPixmap>
#include <QtTest>

#include <cmath>

using EventMarksBySatellite = QMap<QString, QList<QVector<EventMark>>>;
using KindColours = QMap<int, QColor>;

namespace {

const QColor kSlip(220, 20, 20);
const QColor kLossOfLock(245, 140, 0);
const QColor kGap(60, 60, 60);
const QColor kHostKind(150, 40, 190);
const QColor kBlue(0, 34, 255);

// A tick expected on band `band` at epoch `epoch`, in `color`.
struct Tick
{
    int band;
    qint64 epoch;
    QColor color;
};

// Renders without the window background, so unpainted pixels stay white.
QImage render(QWidget& widget, const QString& name)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    saveImage(image, name);
    return image;
}

// The pixels a tick covers, worked out by hand from where the epoch falls on
// a bar `width` pixels wide showing [start, end]: the column x falls in and
// the one left of it, from one row above the band's bar to one row below.
bool tickAt(const QImage& image, int width, qint64 start, qint64 end, const Tick& tick)
{
    const double x = double(tick.epoch - start) * width / double(end - start);
    const int column = int(std::floor(x));
    const int top = 4 + 6 * tick.band - 1;
    const QRgb want = tick.color.rgba();
    for (int y = top; y < top + 6; ++y) {
        for (int c = column - 1; c <= column; ++c) {
            if (c >= 0 && c < image.width() && image.pixel(c, y) != want)
                return false;
        }
    }
    // Not wider, not taller.
    const auto other = [&](int c, int y) {
        return c < 0 || c >= image.width() || y < 0 || image.pixel(c, y) != want;
    };
    return other(column - 2, top + 2) && other(column + 1, top + 2) && other(column, top - 1)
           && other(column, top + 6);
}

int countColour(const QImage& image, const QColor& color)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            n += image.pixel(x, y) == color.rgba();
    }
    return n;
}

// An epoch of [start, end] whose column on a bar `width` wide is well clear
// of a pixel edge, near `fraction` of the way along.
qint64 clearEpoch(int width, qint64 start, qint64 end, double fraction)
{
    for (qint64 t = start + qint64(fraction * double(end - start)); t < end; ++t) {
        const double x = double(t - start) * width / double(end - start);
        const double part = x - std::floor(x);
        if (part > 0.2 && part < 0.8)
            return t;
    }
    return start;
}

} // namespace

Q_DECLARE_METATYPE(Tick)

class tst_EpochEventMarks : public QObject
{
    Q_OBJECT
private slots:
    void pixmapTicks_data();
    void pixmapTicks();
    void withoutMarksPixmapsUnchanged();
    void tableTicksFollowWindow_data();
    void tableTicksFollowWindow();
    void hostileMarks_data();
    void hostileMarks();
    void marksKeptByModel();
};

// A pixmap 200 x 30 over epochs 0..1000: five epochs a pixel.
void tst_EpochEventMarks::pixmapTicks_data()
{
    QTest::addColumn<QList<QVector<EventMark>>>("marks");
    QTest::addColumn<KindColours>("colours");
    QTest::addColumn<QList<Tick>>("ticks");
    QTest::addColumn<int>("tickPixels");

    QTest::newRow("one slip mid-bar")
        << QList<QVector<EventMark>>{{{500, EEventMarkKind_CycleSlip}}} << KindColours{}
        << QList<Tick>{{0, 500, kSlip}} << 12;
    QTest::newRow("kinds on two bands")
        << QList<QVector<EventMark>>{{{252, EEventMarkKind_LossOfLock}},
                                     {{751, EEventMarkKind_Gap}, {503, 300}}}
        << KindColours{} << QList<Tick>{{0, 252, kLossOfLock}, {1, 751, kGap},
                                             {1, 503, kHostKind}}
        << 36;
    QTest::newRow("colour of a kind chosen")
        << QList<QVector<EventMark>>{{{500, EEventMarkKind_CycleSlip}, {100, 300}}}
        << KindColours{{300, QColor(0, 160, 0)}}
        << QList<Tick>{{0, 500, kSlip}, {0, 100, QColor(0, 160, 0)}} << 24;
    // The last epoch falls on the column just past the right edge: its left
    // half shows.
    QTest::newRow("first and last epoch")
        << QList<QVector<EventMark>>{{{0, EEventMarkKind_CycleSlip},
                                      {1000, EEventMarkKind_CycleSlip}}}
        << KindColours{} << QList<Tick>{{0, 0, kSlip}, {0, 1000, kSlip}} << 12;
    QTest::newRow("outside the range")
        << QList<QVector<EventMark>>{{{-1, EEventMarkKind_CycleSlip},
                                      {1001, EEventMarkKind_CycleSlip}}}
        << KindColours{} << QList<Tick>{} << 0;
}

void tst_EpochEventMarks::pixmapTicks()
{
    QFETCH(QList<QVector<EventMark>>, marks);
    QFETCH(KindColours, colours);
    QFETCH(QList<Tick>, ticks);
    QFETCH(int, tickPixels);

    const EpochData data = epochSatellites(1, 2);
    QPixmap pixmap(200, 30);
    pixmap.fill(Qt::white);
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        0, 1000, data, allEnabled(data), {{QStringLiteral("G01"), &pixmap}},
        {{QStringLiteral("G01"), marks}}, colours);
    const QImage image = pixmap.toImage();
    saveImage(image, QStringLiteral("events-") + QLatin1String(QTest::currentDataTag()));
    for (const Tick& tick : ticks)
        QVERIFY2(tickAt(image, 200, 0, 1000, tick), qPrintable(QString::number(tick.epoch)));
    int drawn = 0;
    for (const QColor& c : {kSlip, kLossOfLock, kGap, kHostKind, QColor(0, 160, 0)})
        drawn += countColour(image, c);
    QCOMPARE(drawn, tickPixels);
    // The bars go on around the ticks.
    QCOMPARE(pixelAt(image, 150, 5), kBlue);
}

void tst_EpochEventMarks::withoutMarksPixmapsUnchanged()
{
    // Opt-in: with no marks, or marks only for satellites not painted, the
    // pixmaps are those of the call without marks, to the bit.
    const EpochData data = epochSatellites(2, 3);
    QPixmap before(300, 30);
    QPixmap after(300, 30);
    before.fill(Qt::white);
    after.fill(Qt::white);
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        10, 990, data, allEnabled(data), {{QStringLiteral("G02"), &before}});
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        10, 990, data, allEnabled(data), {{QStringLiteral("G02"), &after}},
        {{QStringLiteral("G01"), {{{500, EEventMarkKind_CycleSlip}}}}});
    QCOMPARE(after.toImage(), before.toImage());
}

void tst_EpochEventMarks::tableTicksFollowWindow_data()
{
    QTest::addColumn<bool>("bWindow");
    QTest::addColumn<bool>("bReplaceResources");
    QTest::newRow("whole range") << false << false;
    QTest::newRow("time window 400..600") << true << false;
    QTest::newRow("after new resources") << false << true;
}

void tst_EpochEventMarks::tableTicksFollowWindow()
{
    QFETCH(bool, bWindow);
    QFETCH(bool, bReplaceResources);

    CurveGraphicsTableWidget_Epoch table;
    const EpochData data = epochSatellites(3, 2);
    table.setResources(0, 1000, data, allEnabled(data), {}, {});
    table.resize(500, 200);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    auto* label = qobject_cast<EpochLabel*>(table.cellWidget(2, 1));
    QVERIFY(label);
    const int width = label->width();
    QVERIFY(width > 50);

    // Epochs clear of pixel edges, in the window and out of it.
    const qint64 inWindow = clearEpoch(width, 400, 600, 0.5);
    const qint64 outside = clearEpoch(width, 0, 1000, 0.2);
    table.setEventMarks({{QStringLiteral("G02"),
                          {{{inWindow, EEventMarkKind_CycleSlip}},
                           {{outside, EEventMarkKind_LossOfLock}}}},
                         {QStringLiteral("G99"), {{{500, EEventMarkKind_Gap}}}}});
    if (bReplaceResources)
        table.setResources(0, 1000, data, allEnabled(data), {}, {});
    if (bWindow) {
        table.setTimeNavigationEnabled(true);
        table.setTimeWindow(400, 600);
    }
    label = qobject_cast<EpochLabel*>(table.cellWidget(2, 1));
    QVERIFY(label && label->width() == width);
    const QImage image = render(*label, QStringLiteral("events-table-")
                                            + QLatin1String(QTest::currentDataTag()));
    const qint64 start = bWindow ? 400 : 0;
    const qint64 end = bWindow ? 600 : 1000;
    QVERIFY(tickAt(image, width, start, end, {0, inWindow, kSlip}));
    QCOMPARE(countColour(image, kSlip), 12);
    if (bWindow)
        QCOMPARE(countColour(image, kLossOfLock), 0);
    else
        QVERIFY(tickAt(image, width, start, end, {1, outside, kLossOfLock}));
    // Row 0 is the legend; the other satellites have no marks, and the
    // unknown satellite shows nowhere.
    for (int row : {1, 3}) {
        const QImage other = render(*table.cellWidget(row, 1), QStringLiteral("events-row"));
        for (const QColor& c : {kSlip, kLossOfLock, kGap})
            QCOMPARE(countColour(other, c), 0);
    }

    // A colour chosen on the table repaints its labels in it.
    table.setEventKindColor(EEventMarkKind_CycleSlip, QColor(0, 160, 0));
    QCOMPARE(table.getEventKindColor(EEventMarkKind_CycleSlip), QColor(0, 160, 0));
    const QImage green = render(*label, QStringLiteral("events-table-green"));
    QVERIFY(tickAt(green, width, start, end, {0, inWindow, QColor(0, 160, 0)}));
    QCOMPARE(countColour(green, kSlip), 0);
    table.setEventKindColor(EEventMarkKind_CycleSlip, QColor());
    QCOMPARE(table.getEventKindColor(EEventMarkKind_CycleSlip), kSlip);

    // Taken away, the bars are as they were.
    table.setEventMarks({});
    const QImage cleared = render(*label, QStringLiteral("events-table-cleared"));
    QCOMPARE(countColour(cleared, kSlip) + countColour(cleared, kLossOfLock), 0);
}

void tst_EpochEventMarks::hostileMarks_data()
{
    QTest::addColumn<EventMarksBySatellite>("marks");
    const QList<QVector<EventMark>> wild{
        {{kMin, EEventMarkKind_CycleSlip}, {kMax, EEventMarkKind_Gap}, {-5, -1}},
        {},
        {{500, EEventMarkKind_LossOfLock}},  // a band without a bar
        {{500, 1 << 30}}};
    QTest::newRow("extreme epochs, bands without bars") << EventMarksBySatellite{
        {QStringLiteral("G01"), wild}};
    QTest::newRow("unknown satellites") << EventMarksBySatellite{
        {QString(), wild}, {QStringLiteral("R99"), wild}};
    QTest::newRow("empty bands only") << EventMarksBySatellite{
        {QStringLiteral("G01"), {{}, {}}}};
}

void tst_EpochEventMarks::hostileMarks()
{
    // Nothing of these has a place on a bar: no tick, no crash (the
    // sanitizer build runs this too), the bars as without marks.
    QFETCH(EventMarksBySatellite, marks);
    const EpochData data = epochSatellites(1, 2);
    QPixmap plain(200, 30);
    QPixmap marked(200, 30);
    plain.fill(Qt::white);
    marked.fill(Qt::white);
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(0, 1000, data, allEnabled(data),
                                                           {{QStringLiteral("G01"), &plain}});
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(
        0, 1000, data, allEnabled(data), {{QStringLiteral("G01"), &marked}}, marks);
    QCOMPARE(marked.toImage(), plain.toImage());

    // The same marks in a table, over an empty and a full-width range.
    CurveGraphicsTableWidget_Epoch table;
    table.setEventMarks(marks);
    table.setResources(kMin, kMax, data, allEnabled(data), {}, {});
    table.resize(400, 100);
    const QImage image = render(table, QStringLiteral("events-hostile"));
    QCOMPARE(countColour(image, kLossOfLock), 0);
    table.setResources(5, 5, data, allEnabled(data), {}, {});
    render(table, QStringLiteral("events-hostile-empty"));
}

void tst_EpochEventMarks::marksKeptByModel()
{
    EpochTableModel model;
    const QList<QVector<EventMark>> bands{{}, {{7, EEventMarkKind_Gap}}};
    QVERIFY(model.setEventMarks({{QStringLiteral("G01"), bands}}));
    // The same marks again change nothing.
    QVERIFY(!model.setEventMarks({{QStringLiteral("G01"), bands}}));
    // A satellite with only empty bands is no marks at all.
    QVERIFY(!model.setEventMarks(
        {{QStringLiteral("G01"), bands}, {QStringLiteral("G02"), {{}, {}}}}));
    QCOMPARE(model.eventMarks().keys(), QStringList{QStringLiteral("G01")});
    QCOMPARE(model.eventMarksOf(QStringLiteral("G01")), bands);
    QVERIFY(model.eventMarksOf(QStringLiteral("G02")).isEmpty());
    // The user's choices are reset; the host's marks stay.
    model.reset();
    QCOMPARE(model.eventMarksOf(QStringLiteral("G01")), bands);
    QVERIFY(model.setEventMarks({}));
    QVERIFY(model.eventMarks().isEmpty());

    // The table keeps them through clearAll() and emits nothing for them.
    CurveGraphicsTableWidget_Epoch table;
    QVERIFY(table.getEventMarks().isEmpty());
    QSignalSpy marksChanged(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    table.setEventMarks({{QStringLiteral("G01"), bands}});
    table.clearAll();
    QCOMPARE(table.getEventMarks().value(QStringLiteral("G01")), bands);
    QCOMPARE(marksChanged.count(), 0);
}

QTEST_MAIN(tst_EpochEventMarks)
#include "tst_epocheventmarks.moc"
