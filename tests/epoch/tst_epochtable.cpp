// Rows, palettes, preloaded marks and satellite selection of the epoch
// table, and the interval arithmetic behind new marks.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochGeometry_p.h"
#include "EpochLabel_p.h"
#include "EpochPalette_p.h"
#include "HeadLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QtTest>

namespace {

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
    void layoutAndOwnership();
    void rowsFollowNames_data();
    void rowsFollowNames();
    void preloadedMarksAreActions();
    void selection();
    void eraseInterval_data();
    void eraseInterval();
};

void tst_EpochTable::palettesGrowReproducibly()
{
    QVERIFY(epochColourPalette().isEmpty());
    ensureEpochPalettes(0);
    QCOMPARE(epochColourPalette().size(), 6);
    QCOMPARE(epochGreyPalette().at(5), QColor(80, 80, 80));

    // Seven bands grow both palettes by one, from fixed seeds.
    EpochLabel label;
    label.setEpochData(0, 10, QVector<stEpochDataSet>(7).toList(), true, {});
    QCOMPARE(epochColourPalette().size(), 7);
    QCOMPARE(epochColourPalette().at(6), seededColour(1, 0));
    QCOMPARE(epochGreyPalette().at(6), QColor(80, 80, seeded(3)));
    QCOMPARE(label.getBrushes().at(6).color(), epochColourPalette().at(6));

    ensureEpochPalettes(9);
    QCOMPARE(epochColourPalette().at(8), seededColour(2, 1));
    QCOMPARE(epochGreyPalette().at(8), QColor(80, 80, seeded(7)));
    ensureEpochPalettes(3); // never shrinks
    QCOMPARE(epochColourPalette().size(), 9);
}

void tst_EpochTable::layoutAndOwnership()
{
    auto* table = new CurveGraphicsTableWidget_Epoch(nullptr);
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->columnWidth(0), 80);
    QVERIFY(table->horizontalHeader()->stretchLastSection());
    QPointer<QCheckBox> title = boxAt(*table, 0);
    QPointer<QWidget> head = qobject_cast<HeadLabel*>(table->cellWidget(0, 1));
    QVERIFY(title && head && table->item(0, 0) && table->item(0, 1));
    QCOMPARE(title->text(), QStringLiteral("Satellite"));
    QVERIFY(title->isChecked());
    const EpochData data = epochSatellites(2);
    table->setResources(0, 10, data, allEnabled(data), {}, {});
    QPointer<QWidget> row = labelAt(*table, 1);
    delete table;
    QVERIFY(title.isNull() && head.isNull() && row.isNull());
}

void tst_EpochTable::rowsFollowNames_data()
{
    QTest::addColumn<bool>("bTitleChecked");
    QTest::addColumn<QList<bool>>("checked");
    // Satellites C05 (enabled), E11 (enabled, unchecked), G02 (absent from
    // enabledMap), R07 (disabled); only the first two are coloured.
    QTest::newRow("title checked") << true << QList<bool>{true, false, false, false};
    QTest::newRow("title cleared") << false << QList<bool>{false, false, false, false};
}

void tst_EpochTable::rowsFollowNames()
{
    QFETCH(bool, bTitleChecked);
    QFETCH(QList<bool>, checked);

    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy selection(&table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection);
    QSignalSpy marks(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    boxAt(table, 0)->setChecked(bTitleChecked);
    const QStringList names{QStringLiteral("C05"), QStringLiteral("E11"), QStringLiteral("G02"),
                            QStringLiteral("R07")};
    EpochData data;
    for (const QString& name : names)
        data.insert(name, {epochSet({{0, 5}})});
    const QMap<QString, bool> enabledMap{
        {names[0], true}, {names[1], true}, {names[3], false}, {QStringLiteral("X99"), true}};
    table.setResources(10, 20, data, enabledMap, {names[1], QStringLiteral("e11")},
                       {{QStringLiteral("X99"), {{1, 2}}}});

    QCOMPARE(table.rowCount(), 5);
    QVERIFY(qobject_cast<HeadLabel*>(table.cellWidget(0, 1)));
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(boxAt(table, i + 1)->text(), names[i]);
        QCOMPARE(boxAt(table, i + 1)->isChecked(), checked[i]);
        QCOMPARE(table.item(i + 1, 1)->data(Qt::UserRole).toString(), names[i]);
        const EpochLabel* label = labelAt(table, i + 1);
        QCOMPARE(label->getEndTime(), qint64(20));
        const QList<QColor>& palette = i < 2 ? epochColourPalette() : epochGreyPalette();
        QCOMPARE(label->getBrushes().at(0).color(), palette.at(0));
    }
    QCOMPARE(table.eraseMarkActionNum(), 0); // X99 is not a row

    QPointer<QWidget> oldLabel(labelAt(table, 1));
    table.clearAll();
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(boxAt(table, 0)->isChecked(), bTitleChecked);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(oldLabel.isNull());
    table.setResources(1, 2, {}, enabledMap, {}, {});
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(selection.count() + marks.count(), 0);
}

void tst_EpochTable::preloadedMarksAreActions()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy spy(&table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged);
    const EpochData data = epochSatellites(3);
    const QMap<QString, QList<EpochPair>> preload{{QStringLiteral("G02"), {{30, 3}, {10, 1}}},
                                                  {QStringLiteral("G01"), {{5, 5}, {1, 1}}},
                                                  {QStringLiteral("X99"), {{7, 7}}}};
    table.setResources(0, 100, data, allEnabled(data), {}, preload);
    QCOMPARE(table.eraseMarkActionNum(), 4);
    QCOMPARE(labelAt(table, 1)->getEraseMarks(), (EpochMarks{{0, {5, 5}}, {1, {1, 1}}}));
    QCOMPARE(labelAt(table, 2)->getEraseMarks(), (EpochMarks{{2, {30, 3}}, {3, {10, 1}}}));

    // Read back in action order, unsorted; the caller's other entries stay.
    QMap<QString, QList<stEpochDataSet>> readBack{{QStringLiteral("keep"), {}}};
    table.getStateliteEraseMarks(readBack);
    QCOMPARE(readBack.keys(), (QStringList{QStringLiteral("G01"), QStringLiteral("G02"),
                                           QStringLiteral("G03"), QStringLiteral("keep")}));
    QCOMPARE(readBack.value(QStringLiteral("G02")),
             (QList<stEpochDataSet>{epochSet({{30, 3}, {10, 1}})}));
    QVERIFY(readBack.value(QStringLiteral("G03")).isEmpty());

    // Undo takes the last mark of the last satellite with marks.
    table.undoEraseMarkAction();
    QCOMPARE(labelAt(table, 2)->getEraseMarks(), (EpochMarks{{2, {30, 3}}}));
    QCOMPARE(spy.count(), 1);

    // The next setResources numbers from 0 again, silently.
    table.setResources(0, 100, data, allEnabled(data), {}, {{QStringLiteral("G03"), {{9, 9}}}});
    QCOMPARE(labelAt(table, 3)->getEraseMarks(), (EpochMarks{{0, {9, 9}}}));
    QCOMPARE(table.eraseMarkActionNum(), 1);
    table.clearAll();
    QCOMPARE(table.eraseMarkActionNum(), 0);
    table.undoEraseMarkAction(); // no actions: nothing
    table.clearEraseMarkActions();
    QCOMPARE(spy.count(), 1);
}

void tst_EpochTable::selection()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QSignalSpy spy(&table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection);
    QCheckBox* title = boxAt(table, 0);

    // Header row only: the caller's map is untouched, the title signals.
    const QMap<QString, bool> keep{{QStringLiteral("keep"), true}};
    QMap<QString, bool> selection = keep;
    table.getStateliteEnabled(selection);
    QCOMPARE(selection, keep);
    title->click();
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
        QCOMPARE(spy.count(), 1);
        table.getStateliteEnabled(selection);
        for (const QString& name : data.keys())
            QCOMPARE(selection.value(name), bChecked);
    }

    // A row click signals once and leaves the title alone, even when no row
    // stays checked.
    title->click();
    boxAt(table, 2)->setChecked(true);
    spy.clear();
    boxAt(table, 2)->click();
    QCOMPARE(spy.count(), 1);
    QVERIFY(!title->isChecked());
    table.getStateliteEnabled(selection);
    QVERIFY(!selection.value(QStringLiteral("G02")));
}

void tst_EpochTable::eraseInterval_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<bool>("bMarked");
    QTest::addColumn<EpochPair>("mark");

    // The legend cell spans x 90 to 290: right() - left() = 200.
    const auto row = [](const char* name, int left, int width, qint64 start, qint64 end,
                        bool bMarked, EpochPair mark = {}) {
        QTest::newRow(name) << QRect(left, 40, width, 10) << start << end << bMarked << mark;
    };
    row("example", 140, 40, 0, 1000, true, {250, 200});
    row("clipped at start", 70, 40, 0, 1000, true, {0, 100});
    row("clipped at end", 270, 40, 0, 1000, true, {900, 100});
    row("wholly before", 10, 40, 0, 1000, false);
    row("wholly after", 300, 40, 0, 1000, false);
    row("empty range", 140, 40, 5, 5, false);
    row("inverted range", 140, 40, 9, 5, false);
    // Beyond 64 bits: the length saturates, the start saturates below -2^63
    // and is clipped back, or lands past the end.
    row("full qint64 range", 90, 200, kMin, kMax, true, {kMin, kMax});
    row("start below qint64", -910, 6000, kMin + 10, kMin + 1010, true, {kMin + 10, 1000});
    row("start above qint64", 2000000000, 40, kMax - 1000, kMax, false);
}

void tst_EpochTable::eraseInterval()
{
    QFETCH(QRect, rect);
    QFETCH(qint64, start);
    QFETCH(qint64, end);
    QFETCH(bool, bMarked);
    QFETCH(EpochPair, mark);

    // A refusal leaves the outputs as they were.
    EpochPair out(-7, -7);
    const QRect head(90, 0, 201, 30);
    QCOMPARE(epochEraseInterval(rect, head, start, end, out.first, out.second), bMarked);
    QCOMPARE(out, bMarked ? mark : EpochPair(-7, -7));
}

QTEST_MAIN(tst_EpochTable)
#include "tst_epochtable.moc"
