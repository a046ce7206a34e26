// SPDX-License-Identifier: MIT
// Preloaded marks and satellite selection of the epoch table. Action
// counts, silence of setResources and one signal per check-box click are
// checked call by call in tests/fuzz.
#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QCheckBox>
#include <QtTest>

namespace {

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
    void preloadedMarksAreActions();
    void selection();
};

void tst_EpochTable::preloadedMarksAreActions()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
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
    QCOMPARE(readBack.value(QStringLiteral("G02")).value(0).ranges,
             QList<EpochPair>({{30, 3}, {10, 1}}));
}

void tst_EpochTable::selection()
{
    CurveGraphicsTableWidget_Epoch table(nullptr);
    QCheckBox* title = boxAt(table, 0);

    QMap<QString, bool> selection{{QStringLiteral("keep"), true}};
    const EpochData data = epochSatellites(3);
    table.setResources(0, 10, data, allEnabled(data), {QStringLiteral("G02")}, {});
    table.getStateliteEnabled(selection);
    QCOMPARE(selection, (QMap<QString, bool>{{QStringLiteral("keep"), true},
                                             {QStringLiteral("G01"), true},
                                             {QStringLiteral("G02"), false},
                                             {QStringLiteral("G03"), true}}));
    // The title clears every row.
    title->click();
    table.getStateliteEnabled(selection);
    for (const QString& name : data.keys())
        QVERIFY(!selection.value(name));

    // A row click leaves the title alone, whichever way it goes: checked
    // while a row is cleared, and cleared while every row is checked again.
    title->click();
    QVERIFY(title->isChecked());
    QSignalSpy spy(&table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection);
    boxAt(table, 2)->click();
    QVERIFY(title->isChecked());
    QCOMPARE(spy.count(), 1);
    table.getStateliteEnabled(selection);
    QCOMPARE(selection.value(QStringLiteral("G02")), false);
    title->click();
    QVERIFY(!title->isChecked());
    for (int row = 1; row <= 3; ++row)
        boxAt(table, row)->click();
    QVERIFY(!title->isChecked());
    QCOMPARE(spy.count(), 5);
    table.getStateliteEnabled(selection);
    for (const QString& name : data.keys())
        QVERIFY(selection.value(name));
}

QTEST_MAIN(tst_EpochTable)
#include "tst_epochtable.moc"
