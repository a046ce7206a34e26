// Rows, palettes, preloaded marks and satellite selection of the epoch
// table, and the epoch arithmetic behind the marks.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochGeometry_p.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "HeadLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QtTest>

#include <limits>

namespace {

constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

int seeded(uint seed)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qsrand(seed);
    const int value = qrand() % 256;
    QT_WARNING_POP
    return value;
}

QColor seededColour(uint d, uint k)
{
    return QColor(seeded(d + k), seeded(2 * d + k), seeded(3 * d + k));
}

QCheckBox* boxAt(const CurveGraphicsTableWidget_Epoch& table, int row)
{
    return qobject_cast<QCheckBox*>(table.cellWidget(row, 0));
}

EpochLabel* labelAt(const CurveGraphicsTableWidget_Epoch& table, int row)
{
    return qobject_cast<EpochLabel*>(table.cellWidget(row, 1));
}

} // namespace

class tst_EpochTable : public QObject
{
    Q_OBJECT
private slots:
    void palettesGrowReproducibly(); // first: the palettes are process-wide
    void layout();
    void rowsFollowNames_data();
    void rowsFollowNames();
    void preloadedMarksAreActions();
    void selection();
    void eraseInterval_data();
    void eraseInterval();
    void epochArithmetic();
};

void tst_EpochTable::palettesGrowReproducibly()
{
    QVERIFY(epochColourPalette().isEmpty());
    ensureEpochPalettes(0);
    QCOMPARE(epochColourPalette().size(), 6);
    QCOMPARE(epochGreyPalette().size(), 6);
    QCOMPARE(epochColourPalette().at(5), QColor(255, 165, 0));
    QCOMPARE(epochGreyPalette().at(5), QColor(80, 80, 80));

    // A satellite with seven bands grows both palettes by one.
    EpochLabel label;
    label.setEpochData(0, 10, QVector<stEpochDataSet>(7).toList(), true, {});
    QCOMPARE(epochColourPalette().size(), 7);
    QCOMPARE(epochGreyPalette().size(), 7);
    QCOMPARE(epochColourPalette().at(6), seededColour(1, 0));
    QCOMPARE(epochGreyPalette().at(6), QColor(80, 80, seeded(3)));
    QCOMPARE(label.getBrushes().at(6).color(), epochColourPalette().at(6));

    ensureEpochPalettes(9);
    QCOMPARE(epochColourPalette().at(7), seededColour(2, 0));
    QCOMPARE(epochColourPalette().at(8), seededColour(2, 1));
    QCOMPARE(epochGreyPalette().at(8), QColor(80, 80, seeded(7)));
    ensureEpochPalettes(3); // never shrinks
    QCOMPARE(epochColourPalette().size(), 9);
}

void tst_EpochTable::layout()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QCOMPARE(table.columnCount(), 2);
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(table.columnWidth(0), 80);
    QVERIFY(table.horizontalHeader()->stretchLastSection());
    QCheckBox* title = boxAt(table, 0);
    QVERIFY(title);
    QCOMPARE(title->text(), QStringLiteral("Satellite"));
    QVERIFY(title->isChecked());
    QVERIFY(qobject_cast<HeadLabel*>(table.cellWidget(0, 1)));
    QVERIFY(table.item(0, 0) && table.item(0, 1));
    QCOMPARE(table.eraseMarkActionNum(), 0);

    // The table owns its cell widgets.
    QPointer<QCheckBox> titleGuard(title);
    QPointer<QWidget> headGuard(table.cellWidget(0, 1));
    {
        auto* owned = new CurveGraphicsTableWidget_Epoch(nullptr);
        titleGuard = boxAt(*owned, 0);
        headGuard = owned->cellWidget(0, 1);
        delete owned;
    }
    QVERIFY(titleGuard.isNull());
    QVERIFY(headGuard.isNull());
}

void tst_EpochTable::rowsFollowNames_data()
{
    QTest::addColumn<bool>("bTitleChecked");
    QTest::addColumn<QList<bool>>("checked");
    QTest::addColumn<QList<bool>>("coloured");

    // Satellites C05 (enabled), E11 (enabled, unchecked), G02 (absent from
    // enabledMap), R07 (disabled).
    QTest::newRow("title checked") << true << QList<bool>{true, false, false, false}
                                   << QList<bool>{true, true, false, false};
    QTest::newRow("title cleared") << false << QList<bool>{false, false, false, false}
                                   << QList<bool>{true, true, false, false};
}

void tst_EpochTable::rowsFollowNames()
{
    QFETCH(bool, bTitleChecked);
    QFETCH(QList<bool>, checked);
    QFETCH(QList<bool>, coloured);

    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy selection(&table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection);
    QSignalSpy marks(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    boxAt(table, 0)->setChecked(bTitleChecked);
    const QStringList names{QStringLiteral("C05"), QStringLiteral("E11"), QStringLiteral("G02"),
                            QStringLiteral("R07")};
    EpochData data;
    for (const QString& name : names)
        data.insert(name, {epochSet({{0, 5}})});
    const QMap<QString, bool> enabledMap{{names[0], true},
                                         {names[1], true},
                                         {names[3], false},
                                         {QStringLiteral("X99"), true}};
    table.setResources(10, 20, data, enabledMap, {names[1], QStringLiteral("e11")},
                       {{QStringLiteral("X99"), {{1, 2}}}});

    QCOMPARE(table.rowCount(), 5);
    QCOMPARE(boxAt(table, 0)->isChecked(), bTitleChecked);
    QVERIFY(qobject_cast<HeadLabel*>(table.cellWidget(0, 1)));
    for (int i = 0; i < names.size(); ++i) {
        const int row = i + 1;
        QCOMPARE(boxAt(table, row)->text(), names[i]);
        QCOMPARE(boxAt(table, row)->isChecked(), checked[i]);
        QCOMPARE(table.item(row, 1)->data(Qt::UserRole).toString(), names[i]);
        EpochLabel* label = labelAt(table, row);
        QCOMPARE(label->getStartTime(), qint64(10));
        QCOMPARE(label->getEndTime(), qint64(20));
        QCOMPARE(label->getSatelliteEnabled(), coloured[i]);
        QCOMPARE(label->getBrushes().at(0).color(),
                 (coloured[i] ? epochColourPalette() : epochGreyPalette()).at(0));
    }
    // The name only in eraseMarks took no action number.
    QCOMPARE(table.eraseMarkActionNum(), 0);

    // Cells of removed rows go with them; the header row stays.
    QPointer<QWidget> oldLabel(labelAt(table, 1));
    table.clearAll();
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(boxAt(table, 0)->isChecked(), bTitleChecked);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(oldLabel.isNull());
    table.setResources(1, 2, {}, enabledMap, {}, {});
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(selection.count(), 0);
    QCOMPARE(marks.count(), 0);
}

void tst_EpochTable::preloadedMarksAreActions()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy marks(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    const EpochData data = epochSatellites(3);
    const QMap<QString, QList<EpochPair>> preload{
        {QStringLiteral("G02"), {{30, 3}, {10, 1}, {20, 2}}},
        {QStringLiteral("G01"), {{5, 5}, {1, 1}}},
        {QStringLiteral("X99"), {{7, 7}}}};
    table.setResources(0, 100, data, allEnabled(data), {}, preload);

    QCOMPARE(table.eraseMarkActionNum(), 5);
    using Marks = QMap<int, EpochPair>;
    QCOMPARE(labelAt(table, 1)->getEraseMarks(), (Marks{{0, {5, 5}}, {1, {1, 1}}}));
    QCOMPARE(labelAt(table, 2)->getEraseMarks(),
             (Marks{{2, {30, 3}}, {3, {10, 1}}, {4, {20, 2}}}));

    // Read back in action order, unsorted; the caller's other entries stay.
    QMap<QString, QList<stEpochDataSet>> readBack{{QStringLiteral("keep"), {}}};
    table.getStateliteEraseMarks(readBack);
    QCOMPARE(readBack.size(), 4);
    QCOMPARE(readBack.value(QStringLiteral("G02")),
             QList<stEpochDataSet>{epochSet({{30, 3}, {10, 1}, {20, 2}})});
    QVERIFY(readBack.value(QStringLiteral("G03")).isEmpty());
    QVERIFY(readBack.contains(QStringLiteral("keep")));

    // Undo takes the last mark of the last satellite with marks.
    table.undoEraseMarkAction();
    QCOMPARE(labelAt(table, 2)->getEraseMarks().size(), 2);
    QVERIFY(!labelAt(table, 2)->getEraseMarks().contains(4));
    QCOMPARE(marks.count(), 1);

    // A new setResources numbers the marks from 0 again, silently.
    table.setResources(0, 100, data, allEnabled(data), {}, preload);
    QCOMPARE(table.eraseMarkActionNum(), 5);
    QCOMPARE(labelAt(table, 1)->getEraseMarks().firstKey(), 0);
    table.setResources(0, 100, data, allEnabled(data), {}, {{QStringLiteral("G03"), {{9, 9}}}});
    QCOMPARE(labelAt(table, 3)->getEraseMarks(), (Marks{{0, {9, 9}}}));
    QCOMPARE(table.eraseMarkActionNum(), 1);
    table.clearAll();
    QCOMPARE(table.eraseMarkActionNum(), 0);
    QCOMPARE(marks.count(), 1);

    // Undo and clear without actions do nothing.
    table.undoEraseMarkAction();
    table.clearEraseMarkActions();
    QCOMPARE(marks.count(), 1);
}

void tst_EpochTable::selection()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy spy(&table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection);
    QCheckBox* title = boxAt(table, 0);

    // Header row only: the caller's map stays as it was, the title still
    // signals.
    QMap<QString, bool> selection{{QStringLiteral("keep"), true}};
    table.getStateliteEnabled(selection);
    QCOMPARE(selection, (QMap<QString, bool>{{QStringLiteral("keep"), true}}));
    title->click();
    QCOMPARE(spy.count(), 1);
    title->click();
    QCOMPARE(spy.count(), 2);

    const EpochData data = epochSatellites(3);
    table.setResources(0, 10, data, allEnabled(data), {QStringLiteral("G02")}, {});
    table.getStateliteEnabled(selection);
    QCOMPARE(selection, (QMap<QString, bool>{{QStringLiteral("keep"), true},
                                             {QStringLiteral("G01"), true},
                                             {QStringLiteral("G02"), false},
                                             {QStringLiteral("G03"), true}}));

    for (bool bChecked : {false, true}) {
        spy.clear();
        title->click();
        QCOMPARE(title->isChecked(), bChecked);
        QCOMPARE(spy.count(), 1);
        table.getStateliteEnabled(selection);
        for (const QString& name : data.keys())
            QCOMPARE(selection.value(name), bChecked);
    }

    // A row click signals once and leaves the title box alone, even when it
    // clears the last checked box.
    title->click();
    boxAt(table, 2)->setChecked(true);
    spy.clear();
    boxAt(table, 2)->click();
    QCOMPARE(spy.count(), 1);
    QVERIFY(!title->isChecked());
    table.getStateliteEnabled(selection);
    QVERIFY(!selection.value(QStringLiteral("G02")));
    title->click();
    spy.clear();
    for (int row = 1; row <= 3; ++row)
        boxAt(table, row)->click();
    QCOMPARE(spy.count(), 3);
    QVERIFY(title->isChecked());
}

void tst_EpochTable::eraseInterval_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QRect>("head");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<bool>("bMarked");
    QTest::addColumn<qint64>("t0");
    QTest::addColumn<qint64>("len");

    // A legend cell 201 pixels wide: right() - left() = 200.
    const QRect head(90, 0, 201, 30);
    QTest::newRow("example") << QRect(140, 40, 40, 10) << head << qint64(0) << qint64(1000)
                             << true << qint64(250) << qint64(200);
    QTest::newRow("clipped at start") << QRect(70, 40, 40, 10) << head << qint64(0)
                                      << qint64(1000) << true << qint64(0) << qint64(100);
    QTest::newRow("clipped at end") << QRect(270, 40, 40, 10) << head << qint64(0)
                                    << qint64(1000) << true << qint64(900) << qint64(100);
    QTest::newRow("wholly before") << QRect(10, 40, 40, 10) << head << qint64(0)
                                   << qint64(1000) << false << qint64(0) << qint64(0);
    QTest::newRow("wholly after") << QRect(300, 40, 40, 10) << head << qint64(0)
                                  << qint64(1000) << false << qint64(0) << qint64(0);
    QTest::newRow("empty range") << QRect(140, 40, 40, 10) << head << qint64(5) << qint64(5)
                                 << false << qint64(0) << qint64(0);
    QTest::newRow("inverted range") << QRect(140, 40, 40, 10) << head << qint64(9) << qint64(5)
                                    << false << qint64(0) << qint64(0);
    QTest::newRow("legend without span") << QRect(140, 40, 40, 10) << QRect(90, 0, 1, 30)
                                         << qint64(0) << qint64(1000) << false << qint64(0)
                                         << qint64(0);
    // Over the full qint64 range the length exceeds qint64 and saturates.
    QTest::newRow("full qint64 range") << QRect(90, 40, 200, 10) << head << kMin << kMax
                                       << true << kMin << kMax;
    // The start lands below -2^63 and saturates; clipping then works in
    // saturated integers.
    QTest::newRow("start below qint64") << QRect(-910, 40, 6000, 10) << head << kMin + 10
                                        << kMin + 1010 << true << kMin + 10 << qint64(1000);
    QTest::newRow("start above qint64")
        << QRect(2000000000, 40, 40, 10) << head << kMax - 1000 << kMax << false << qint64(0)
        << qint64(0);
}

void tst_EpochTable::eraseInterval()
{
    QFETCH(QRect, rect);
    QFETCH(QRect, head);
    QFETCH(qint64, start);
    QFETCH(qint64, end);
    QFETCH(bool, bMarked);

    qint64 t0 = -7;
    qint64 len = -7;
    QCOMPARE(epochEraseInterval(rect, head, start, end, t0, len), bMarked);
    if (bMarked) {
        QTEST(t0, "t0");
        QTEST(len, "len");
    } else {
        QCOMPARE(t0, qint64(-7));
        QCOMPARE(len, qint64(-7));
    }
}

void tst_EpochTable::epochArithmetic()
{
    QCOMPARE(epochDifference(5, 3), 2.0);
    QCOMPARE(epochDifference(kMax, kMin), 18446744073709551615.0);
    QCOMPARE(epochDifference(kMin, kMax), -18446744073709551615.0);
    QCOMPARE(epochSaturatedAdd(kMax, 1), kMax);
    QCOMPARE(epochSaturatedAdd(kMin, -1), kMin);
    QCOMPARE(epochSaturatedSub(kMin, 1), kMin);
    QCOMPARE(epochSaturatedSub(kMax, -1), kMax);
    QCOMPARE(epochTruncate(-2.9), qint64(-2));
    QCOMPARE(epochTruncate(1e300), kMax);
    QCOMPARE(epochTruncate(-1e300), kMin);
    QCOMPARE(epochTruncate(std::numeric_limits<double>::quiet_NaN()), qint64(0));
    QCOMPARE(epochScale(200.0, 0, 0), 0.0);
    const QRectF box = epochMarkBox({250, 100}, 0, 0.2, 30);
    QCOMPARE(box, QRectF(50.0, 2.0, 20.0, 24.0));
}

QTEST_MAIN(tst_EpochTable)
#include "tst_epochtable.moc"
