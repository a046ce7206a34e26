// SPDX-License-Identifier: MIT
// Time navigation of the epoch table: wheel zoom about the cursor, panning,
// reset, fitting into the range, linking without echo, marks made in a
// zoomed window, and the bars drawn for it.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QtTest>

using Window = QPair<double, double>;

namespace {

const QColor kBlue(0, 34, 255);
const QColor kWhite(255, 255, 255);

Window windowOf(const CurveGraphicsTableWidget_Epoch& table)
{
    Window w;
    table.getTimeWindow(w.first, w.second);
    return w;
}

bool near(const Window& a, const Window& b)
{
    const auto close = [](double x, double y) {
        return qAbs(x - y) <= 1e-9 * qMax(1.0, qAbs(y));
    };
    return close(a.first, b.first) && close(a.second, b.second);
}

QByteArray text(const Window& w)
{
    return QByteArray::number(w.first, 'g', 17) + ", " + QByteArray::number(w.second, 'g', 17);
}

// Windows come out of floating-point steps: equal to a billionth.
#define COMPARE_WINDOW(actual, expected)                                                   \
    QVERIFY2(near((actual), (expected)),                                                   \
             (text(actual) + " instead of " + text(expected)).constData())

Window lastSignal(const QSignalSpy& spy)
{
    const QList<QVariant> args = spy.last();
    return {args.at(0).toDouble(), args.at(1).toDouble()};
}

} // namespace

class tst_EpochTimeWindow : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void offByDefault();
    void wheel_data();
    void wheel();
    void zoomKeepsEpochUnderCursor();
    void setTimeWindow_data();
    void setTimeWindow();
    void resetMiddleDragAndSwitchOff();
    void linkedBothWaysWithoutEcho();
    void newResourcesKeepWindow();
    void zoomedMarksEqualWholeRange_data();
    void zoomedMarksEqualWholeRange();
    void barsAndMarksDrawnForWindow();
    void bandAccessorsMatchPainting();

private:
    QRect head() const { return table->cellWidget(0, 1)->geometry(); }
    EpochLabel* label(int row) const
    {
        return qobject_cast<EpochLabel*>(table->cellWidget(row, 1));
    }
    // Viewport point `dx` right of the legend's left edge, on satellite `row`.
    QPoint at(int row, int dx, int dy = 0) const
    {
        return QPoint(head().left() + dx, label(row)->geometry().center().y() + dy);
    }
    void wheelAt(const QPoint& pos, const QPoint& angle, Qt::KeyboardModifiers modifiers)
    {
        QWheelEvent event(QPointF(pos), QPointF(table->viewport()->mapToGlobal(pos)), QPoint(),
                          angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(table->viewport(), &event);
    }
    void mouse(QEvent::Type type, const QPoint& pos, Qt::MouseButton button,
               Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, QPointF(pos), QPointF(table->viewport()->mapToGlobal(pos)),
                          button, buttons, Qt::NoModifier);
        QApplication::sendEvent(table->viewport(), &event);
    }
    void drag(const QPoint& from, const QPoint& to)
    {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }

    CurveGraphicsTableWidget_Epoch* table = nullptr;
};

void tst_EpochTimeWindow::init()
{
    table = new CurveGraphicsTableWidget_Epoch(nullptr);
    const EpochData data = epochSatellites(30, 1);
    table->setResources(0, 1000, data, allEnabled(data), {}, {});
    // Thirty rows scroll; a scroll bar that comes and goes would change the
    // width of the bars.
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    table->resize(400, 260);
    table->show();
    QVERIFY(QTest::qWaitForWindowExposed(table));
    // A legend cell 201 pixels wide: right() - left() = 200 spans the window.
    table->horizontalHeader()->resizeSection(1, 100);
    for (int i = 0; i < 20 && head().width() != 201; ++i) {
        table->resize(table->width() + 201 - head().width(), table->height());
        QTest::qWait(10);
    }
    QCOMPARE(head().width(), 201);
}

void tst_EpochTimeWindow::cleanup()
{
    delete table;
}

void tst_EpochTimeWindow::offByDefault()
{
    QVERIFY(!table->isTimeNavigationEnabled());
    QCOMPARE(table->property("timeNavigationEnabled"), QVariant(false));
    // The state lives behind one pointer: adding to it keeps the class size.
    QCOMPARE(sizeof(CurveGraphicsTableWidget_Epoch), sizeof(QTableWidget) + sizeof(void*));

    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    wheelAt(at(1, 50), {0, 120}, Qt::ControlModifier);
    table->setTimeWindow(100, 200);
    QTest::keyClick(table, Qt::Key_Home);
    QCOMPARE(spy.count(), 0);
    COMPARE_WINDOW(windowOf(*table), Window(0, 1000));
    QVERIFY(!label(1)->getTimeWindow().bActive);
    const QImage before = table->grab().toImage();

    // Switching on changes nothing that is shown, and reports nothing.
    QVERIFY(table->setProperty("timeNavigationEnabled", true));
    QVERIFY(table->isTimeNavigationEnabled());
    QCOMPARE(table->grab().toImage(), before);
    QCOMPARE(spy.count(), 0);
}

// Start from the window [200, 600]; one wheel event at `dx` on row 1.
void tst_EpochTimeWindow::wheel_data()
{
    QTest::addColumn<int>("dx");
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<Window>("expected");

    const int ctrl = Qt::ControlModifier;
    const int shift = Qt::ShiftModifier;
    QTest::newRow("ctrl in at the left edge") << 0 << QPoint(0, 120) << ctrl << Window(200, 520);
    QTest::newRow("ctrl in at the right edge") << 201 << QPoint(0, 120) << ctrl
                                               << Window(280, 600);
    QTest::newRow("ctrl in beside the bars") << -60 << QPoint(0, 120) << ctrl
                                             << Window(200, 520);
    QTest::newRow("ctrl out, two notches") << 0 << QPoint(0, -240) << ctrl << Window(200, 825);
    QTest::newRow("ctrl out to the whole range") << 0 << QPoint(0, -1200) << ctrl
                                                 << Window(0, 1000);
    QTest::newRow("ctrl in far: smallest span") << 0 << QPoint(0, 12000) << ctrl
                                                << Window(200, 204);
    QTest::newRow("shift wheel towards you: later") << 50 << QPoint(0, -120) << shift
                                                    << Window(240, 640);
    QTest::newRow("shift wheel away: earlier") << 50 << QPoint(0, 240) << shift
                                               << Window(120, 520);
    QTest::newRow("horizontal wheel") << 50 << QPoint(-120, 0) << 0 << Window(240, 640);
    QTest::newRow("pan stops at the end") << 50 << QPoint(0, -1200) << shift
                                          << Window(600, 1000);
    QTest::newRow("plain wheel scrolls rows") << 50 << QPoint(0, -120) << 0 << Window(200, 600);
}

void tst_EpochTimeWindow::wheel()
{
    QFETCH(int, dx);
    QFETCH(QPoint, angle);
    QFETCH(int, modifiers);
    QFETCH(Window, expected);

    table->setTimeNavigationEnabled(true);
    table->setTimeWindow(200, 600);
    COMPARE_WINDOW(windowOf(*table), Window(200, 600));
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    const int scroll = table->verticalScrollBar()->value();

    wheelAt(at(1, dx), angle, Qt::KeyboardModifiers(modifiers));
    const Window shown = windowOf(*table);
    COMPARE_WINDOW(shown, expected);
    QCOMPARE(spy.count(), expected == Window(200, 600) ? 0 : 1);
    if (spy.count())
        COMPARE_WINDOW(lastSignal(spy), expected);
    // Only the plain wheel scrolls the rows.
    QCOMPARE(table->verticalScrollBar()->value() != scroll, modifiers == 0 && angle.x() == 0);
    for (int row : {1, 30}) {
        const EpochWindow w = label(row)->getTimeWindow();
        QCOMPARE(w.bActive, expected != Window(0, 1000));
        if (w.bActive)
            COMPARE_WINDOW(Window(w.start, w.end), expected);
    }
}

void tst_EpochTimeWindow::zoomKeepsEpochUnderCursor()
{
    table->setTimeNavigationEnabled(true);
    const QPoint cursor = at(2, 67);
    const double ratio = 67.0 / 201.0;
    const auto underCursor = [&] {
        const Window w = windowOf(*table);
        return w.first + ratio * (w.second - w.first);
    };
    const double pinned = underCursor();
    for (int notch : {120, 120, 60, 120, -120, 360})
        wheelAt(cursor, {0, notch}, Qt::ControlModifier);
    QVERIFY(windowOf(*table).second - windowOf(*table).first < 300);
    QVERIFY(qAbs(underCursor() - pinned) < 1e-9);
}

void tst_EpochTimeWindow::setTimeWindow_data()
{
    QTest::addColumn<Window>("request");
    QTest::addColumn<Window>("expected"); // (0, 1000): unzoomed, nothing emitted

    QTest::newRow("inside") << Window(100.5, 300) << Window(100.5, 300);
    QTest::newRow("past the end: shifted in") << Window(900, 1300) << Window(600, 1000);
    QTest::newRow("before the start: shifted in") << Window(-50, 50) << Window(0, 100);
    QTest::newRow("outside altogether") << Window(5000, 5100) << Window(900, 1000);
    QTest::newRow("too narrow: grows about its centre") << Window(500, 501)
                                                        << Window(498.5, 502.5);
    QTest::newRow("wider than the range") << Window(-1e300, 1e300) << Window(0, 1000);
    QTest::newRow("reversed: refused") << Window(600, 200) << Window(0, 1000);
    QTest::newRow("empty: refused") << Window(600, 600) << Window(0, 1000);
    QTest::newRow("NaN: refused") << Window(qQNaN(), 200) << Window(0, 1000);
    QTest::newRow("infinite: refused") << Window(100, qInf()) << Window(0, 1000);
}

void tst_EpochTimeWindow::setTimeWindow()
{
    QFETCH(Window, request);
    QFETCH(Window, expected);
    table->setTimeNavigationEnabled(true);
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    table->setTimeWindow(request.first, request.second);
    COMPARE_WINDOW(windowOf(*table), expected);
    const int emitted = expected == Window(0, 1000) ? 0 : 1;
    QCOMPARE(spy.count(), emitted);
    // Asking again for the same window, or for the fitted one, is silent.
    table->setTimeWindow(request.first, request.second);
    table->setTimeWindow(expected.first, expected.second);
    QCOMPARE(spy.count(), emitted);
}

void tst_EpochTimeWindow::resetMiddleDragAndSwitchOff()
{
    table->setTimeNavigationEnabled(true);
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    QSignalSpy marks(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);

    table->setTimeWindow(400, 600);
    QTest::keyClick(table, Qt::Key_Home);
    COMPARE_WINDOW(windowOf(*table), Window(0, 1000));
    QTest::keyClick(table, Qt::Key_Home); // already whole: silent
    QCOMPARE(spy.count(), 2);

    // A middle drag 40 pixels to the right goes 40 of 201 pixels back in
    // time, marks nothing and outlines nothing.
    table->setTimeWindow(400, 600);
    mouse(QEvent::MouseButtonPress, at(3, 100), Qt::MiddleButton, Qt::MiddleButton);
    mouse(QEvent::MouseMove, at(3, 120, 20), Qt::NoButton, Qt::MiddleButton);
    QVERIFY(label(3)->getDragRect().isNull());
    mouse(QEvent::MouseMove, at(3, 140, 20), Qt::NoButton, Qt::MiddleButton);
    mouse(QEvent::MouseButtonRelease, at(3, 140, 20), Qt::MiddleButton, Qt::NoButton);
    const Window panned = windowOf(*table);
    QCOMPARE(panned.second - panned.first, 200.0);
    QCOMPARE(panned.first, 400.0 - 40.0 * 200.0 / 201.0);
    QCOMPARE(spy.count(), 5);
    QCOMPARE(marks.count(), 0);

    // A double-click on the bars resets.
    mouse(QEvent::MouseButtonDblClick, at(2, 30), Qt::LeftButton, Qt::LeftButton);
    COMPARE_WINDOW(windowOf(*table), Window(0, 1000));
    QCOMPARE(spy.count(), 6);

    // Switching off while zoomed shows the whole range and says so.
    table->setTimeWindow(100, 200);
    table->setTimeNavigationEnabled(false);
    QCOMPARE(spy.count(), 8);
    COMPARE_WINDOW(lastSignal(spy), Window(0, 1000));
    QVERIFY(!label(1)->getTimeWindow().bActive);
}

void tst_EpochTimeWindow::linkedBothWaysWithoutEcho()
{
    // The second table counts epochs in seconds, the first in milliseconds
    // offset by one second; both speak milliseconds on the link.
    CurveGraphicsTableWidget_Epoch other(nullptr);
    const EpochData data = epochSatellites(2);
    other.setResources(0, 10, data, allEnabled(data), {}, {});
    QVERIFY(other.setEpochTimeScale(1000.0, 0.0));
    QVERIFY(table->setEpochTimeScale(1.0, 1000.0));
    QVERIFY(!other.setEpochTimeScale(0.0, 0.0));
    QVERIFY(!other.setEpochTimeScale(qInf(), 0.0));
    QVERIFY(!other.setEpochTimeScale(1.0, qQNaN()));
    double perEpoch = 0.0;
    double atZero = 0.0;
    other.getEpochTimeScale(perEpoch, atZero);
    QCOMPARE(perEpoch, 1000.0);
    QCOMPARE(atZero, 0.0);

    table->setResources(0, 9000, data, allEnabled(data), {}, {}); // 1 s to 10 s
    table->setTimeNavigationEnabled(true);
    other.setTimeNavigationEnabled(true);
    connect(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, &other,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(&other, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, table,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    QSignalSpy mine(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    QSignalSpy theirs(&other, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);

    // Epochs 1000 to 7000 here are 2 s to 8 s there; the echo ends the talk.
    table->setTimeWindow(2000, 8000);
    QCOMPARE(mine.count(), 1);
    QCOMPARE(theirs.count(), 1);
    COMPARE_WINDOW(windowOf(other), Window(2000, 8000));
    COMPARE_WINDOW(lastSignal(theirs), Window(2000, 8000));

    // One second is below the other side's smallest span of four epochs: it
    // widens the window about its centre and this table follows.
    table->setTimeWindow(5000, 6000);
    QCOMPARE(theirs.count(), 2);
    QCOMPARE(mine.count(), 3);
    COMPARE_WINDOW(windowOf(other), Window(3500, 7500));
    COMPARE_WINDOW(windowOf(*table), Window(3500, 7500));
}

void tst_EpochTimeWindow::newResourcesKeepWindow()
{
    table->setTimeNavigationEnabled(true);
    table->setTimeWindow(300, 500);
    QSignalSpy spy(table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged);
    const EpochData data = epochSatellites(3);

    // Same range: the zoom stays and nothing is reported.
    table->setResources(0, 1000, data, allEnabled(data), {}, {});
    COMPARE_WINDOW(windowOf(*table), Window(300, 500));
    QVERIFY(label(1)->getTimeWindow().bActive);
    QCOMPARE(spy.count(), 0);

    // A shorter range: the window is shifted into it.
    table->setResources(0, 400, data, allEnabled(data), {}, {});
    COMPARE_WINDOW(windowOf(*table), Window(200, 400));
    QCOMPARE(spy.count(), 1);

    // Emptied, the table shows and reports nothing; new data is whole.
    table->clearAll();
    COMPARE_WINDOW(windowOf(*table), Window(0, 0));
    table->setResources(50, 70, data, allEnabled(data), {}, {});
    COMPARE_WINDOW(windowOf(*table), Window(50, 70));
    QCOMPARE(spy.count(), 2);
    COMPARE_WINDOW(lastSignal(spy), Window(50, 70));
}

// A drag while zoomed to [400, 600] (one epoch per pixel) against the drag
// over the same epochs on the whole range (five epochs per pixel).
void tst_EpochTimeWindow::zoomedMarksEqualWholeRange_data()
{
    QTest::addColumn<int>("zoomedLeft");
    QTest::addColumn<int>("zoomedWidth");
    QTest::addColumn<int>("wholeLeft");
    QTest::addColumn<int>("wholeWidth");
    QTest::addColumn<EpochPair>("mark");

    QTest::newRow("inside") << 50 << 40 << 90 << 8 << EpochPair(450, 40);
    QTest::newRow("to the window's end") << 150 << 60 << 110 << 10 << EpochPair(550, 50);
    QTest::newRow("from beside the bars") << -20 << 50 << 80 << 6 << EpochPair(400, 30);
}

void tst_EpochTimeWindow::zoomedMarksEqualWholeRange()
{
    QFETCH(int, zoomedLeft);
    QFETCH(int, zoomedWidth);
    QFETCH(int, wholeLeft);
    QFETCH(int, wholeWidth);
    QFETCH(EpochPair, mark);

    table->setTimeNavigationEnabled(true);
    table->setTimeWindow(400, 600);
    drag(at(2, zoomedLeft, -8), at(3, zoomedLeft + zoomedWidth, 8));
    table->resetTimeWindow();
    drag(at(4, wholeLeft, -8), at(4, wholeLeft + wholeWidth, 8));

    QCOMPARE(label(2)->getEraseMarks(), (EpochMarks{{0, mark}}));
    QCOMPARE(label(3)->getEraseMarks(), (EpochMarks{{0, mark}}));
    QCOMPARE(label(4)->getEraseMarks(), (EpochMarks{{1, mark}}));
}

void tst_EpochTimeWindow::barsAndMarksDrawnForWindow()
{
    stEpochDataSet set;
    set.ranges = {{0, 100}, {300, 50}}; // bars over 100..300 and 350..1000
    EpochLabel bars;
    bars.resize(200, 30);
    bars.setEpochData(0, 1000, {set}, true, {{0, {320, 10}}});
    bars.setTimeWindow(EpochWindow{true, 250.0, 350.0}); // two pixels an epoch
    QImage image(bars.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    bars.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    saveImage(image, QStringLiteral("window-bars"));
    for (int x : {0, 50, 98})
        QCOMPARE(pixelAt(image, x, 6), kBlue);
    for (int x : {102, 120, 135, 150, 165, 199})
        QCOMPARE(pixelAt(image, x, 6), kWhite);
    // The mark's box runs from x 140 to 160.
    const QColor edge = pixelAt(image, 140, 20);
    QVERIFY(edge.red() > 240 && edge.green() < 225);
    QCOMPARE(pixelAt(image, 135, 20), kWhite);

    // A look at the whole table zoomed in, marked by a drag: each row has a
    // 20-epoch gap three epochs later than the row above.
    EpochData gaps = epochSatellites(8, 2);
    int i = 0;
    for (QList<stEpochDataSet>& sets : gaps) {
        sets[0].ranges = {{0, 0}, {450 + 3 * i, 20}};
        sets[1].ranges = {{0, 0}, {500 - 3 * i++, 10}};
    }
    table->setResources(0, 1000, gaps, allEnabled(gaps), {}, {});
    table->setTimeNavigationEnabled(true);
    table->setTimeWindow(400, 600);
    drag(at(1, 50, -8), at(2, 90, 8));
    saveImage(table->grab().toImage(), QStringLiteral("window-table"));
}

void tst_EpochTimeWindow::bandAccessorsMatchPainting()
{
    QCOMPARE(CurveGraphicsTableWidget_Epoch::bandColor(0), kBlue);
    QCOMPARE(CurveGraphicsTableWidget_Epoch::bandColor(3), QColor(154, 205, 50));
    QCOMPARE(CurveGraphicsTableWidget_Epoch::bandColor(1, false), QColor(160, 160, 160));
    QVERIFY(!CurveGraphicsTableWidget_Epoch::bandColor(-1).isValid());
    QVERIFY(!CurveGraphicsTableWidget_Epoch::bandColor(65535).isValid());
    QCOMPARE(CurveGraphicsTableWidget_Epoch::barTop(-1), -1);
    QCOMPARE(CurveGraphicsTableWidget_Epoch::barHeight(), 4);

    // Pixmaps painted by the table show each band where and as the
    // accessors say.
    const int bands = 8;
    QPixmap pixmap(100, CurveGraphicsTableWidget_Epoch::barTop(bands) + 2);
    QCOMPARE(pixmap.height(), 4 + 6 * 8 + 2);
    pixmap.fill(Qt::white);
    const EpochData data = epochSatellites(1, bands);
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(0, 10, data, allEnabled(data),
                                                           {{data.firstKey(), &pixmap}});
    const QImage image = pixmap.toImage();
    for (int band = 0; band < bands; ++band) {
        const int top = CurveGraphicsTableWidget_Epoch::barTop(band);
        const int bottom = top + CurveGraphicsTableWidget_Epoch::barHeight() - 1;
        const QColor colour = CurveGraphicsTableWidget_Epoch::bandColor(band);
        QCOMPARE(pixelAt(image, 50, top), colour);
        QCOMPARE(pixelAt(image, 50, bottom), colour);
        QCOMPARE(pixelAt(image, 50, bottom + 1), kWhite);
    }
}

QTEST_MAIN(tst_EpochTimeWindow)
#include "tst_epochtimewindow.moc"
