// SPDX-License-Identifier: MIT
// The table's marks, undo stack and selection, without a widget.
#include "EpochTableModel_p.h"
#include "epoch/EpochTestSupport.h"

#include <QtTest>

namespace {

using Mark = EpochTableModel::Mark;
using Marks = EpochTableModel::Marks;

// G01 with the preloaded marks (1, 1) and (2, 2), G02 with (3, 3): three
// actions, numbered 0, 1, 2.
void preload(EpochTableModel& model)
{
    model.addSatellite(QStringLiteral("G01"), true, {{1, 1}, {2, 2}});
    model.addSatellite(QStringLiteral("G02"), false, {{3, 3}});
    model.addSatellite(QStringLiteral("G03"), true, {});
}

} // namespace

class tst_EpochTableModel : public QObject
{
    Q_OBJECT
private slots:
    void editing_data();
    void editing();
    void readBack();
    void selection();
};

// Each row runs one list of steps on the preloaded model; a step is a word
// and the result every satellite's marks must have afterwards.
void tst_EpochTableModel::editing_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QList<bool>>("results");
    QTest::addColumn<int>("actions");
    QTest::addColumn<Marks>("g01");
    QTest::addColumn<Marks>("g02");
    QTest::addColumn<Marks>("g03");

    const Mark m(50, 10);
    QTest::newRow("preloaded marks are actions") << QStringList{} << QList<bool>{} << 3
                                                 << Marks{{0, {1, 1}}, {1, {2, 2}}}
                                                 << Marks{{2, {3, 3}}} << Marks{};
    QTest::newRow("a drag over two rows is one action")
        << QStringList{"add G01 G03"} << QList<bool>{true} << 4
        << Marks{{0, {1, 1}}, {1, {2, 2}}, {3, m}} << Marks{{2, {3, 3}}} << Marks{{3, m}};
    QTest::newRow("a drag over unknown rows is none")
        << QStringList{"add X Y"} << QList<bool>{false} << 3
        << Marks{{0, {1, 1}}, {1, {2, 2}}} << Marks{{2, {3, 3}}} << Marks{};
    QTest::newRow("undo takes the newest action from every row")
        << QStringList{"add G01 G03", "undo"} << QList<bool>{true, true} << 3
        << Marks{{0, {1, 1}}, {1, {2, 2}}} << Marks{{2, {3, 3}}} << Marks{};
    QTest::newRow("undo of a preloaded mark")
        << QStringList{"undo", "undo"} << QList<bool>{true, true} << 1
        << Marks{{0, {1, 1}}} << Marks{} << Marks{};
    QTest::newRow("removing one mark keeps the count; undo still pops")
        << QStringList{"add G01 G03", "remove G03 3", "undo"} << QList<bool>{true, true, true}
        << 3 << Marks{{0, {1, 1}}, {1, {2, 2}}} << Marks{{2, {3, 3}}} << Marks{};
    QTest::newRow("remove of a mark that is not there")
        << QStringList{"remove G02 0"} << QList<bool>{false} << 3
        << Marks{{0, {1, 1}}, {1, {2, 2}}} << Marks{{2, {3, 3}}} << Marks{};
    QTest::newRow("clear drops everything, once")
        << QStringList{"clear", "clear", "undo"} << QList<bool>{true, false, false} << 0
        << Marks{} << Marks{} << Marks{};
    QTest::newRow("numbers go on after a clear from 0")
        << QStringList{"clear", "add G02"} << QList<bool>{true, true} << 1 << Marks{}
        << Marks{{0, m}} << Marks{};
}

void tst_EpochTableModel::editing()
{
    QFETCH(QStringList, steps);
    QFETCH(QList<bool>, results);
    QFETCH(int, actions);
    EpochTableModel model;
    preload(model);
    for (int i = 0; i < steps.size(); ++i) {
        QStringList words = steps.at(i).split(QLatin1Char(' '));
        const QString verb = words.takeFirst();
        bool result = false;
        if (verb == QLatin1String("add"))
            result = model.addAction(words, Mark(50, 10));
        else if (verb == QLatin1String("undo"))
            result = model.undo();
        else if (verb == QLatin1String("clear"))
            result = model.clear();
        else if (verb == QLatin1String("remove"))
            result = model.removeMarks(words.at(0), {words.at(1).toInt()}) == 1;
        QCOMPARE(result, results.at(i));
    }
    QCOMPARE(model.actionCount(), actions);
    QTEST(model.marksOf(QStringLiteral("G01")), "g01");
    QTEST(model.marksOf(QStringLiteral("G02")), "g02");
    QTEST(model.marksOf(QStringLiteral("G03")), "g03");
    QVERIFY(model.marksOf(QStringLiteral("unknown")).isEmpty());
}

void tst_EpochTableModel::readBack()
{
    EpochTableModel model;
    QMap<QString, QList<stEpochDataSet>> marks{{QStringLiteral("keep"), {}}};
    model.readMarks(marks); // nothing to say: untouched
    QCOMPARE(marks.keys(), QStringList{QStringLiteral("keep")});

    preload(model);
    // Two overlapping marks on G03 come back as they are, in action order.
    QVERIFY(model.addAction({QStringLiteral("G03")}, Mark(40, 5)));
    QVERIFY(model.addAction({QStringLiteral("G03")}, Mark(30, 20)));
    model.readMarks(marks);
    QCOMPARE(marks.keys(), (QStringList{QStringLiteral("G01"), QStringLiteral("G02"),
                                        QStringLiteral("G03"), QStringLiteral("keep")}));
    QCOMPARE(marks.value(QStringLiteral("G01")).size(), 1);
    QCOMPARE(marks.value(QStringLiteral("G01")).at(0).ranges,
             (QList<EpochPair>{{1, 1}, {2, 2}}));
    QCOMPARE(marks.value(QStringLiteral("G03")).at(0).ranges,
             (QList<EpochPair>{{40, 5}, {30, 20}}));
    // A satellite whose marks are all gone reads as an empty list.
    QCOMPARE(model.removeMarks(QStringLiteral("G02"), {2, 7}), 1);
    model.readMarks(marks);
    QVERIFY(marks.value(QStringLiteral("G02")).isEmpty());
    QVERIFY(marks.contains(QStringLiteral("G02")));
}

void tst_EpochTableModel::selection()
{
    EpochTableModel model;
    QMap<QString, bool> selection{{QStringLiteral("keep"), true}};
    model.readSelection(selection);
    QCOMPARE(selection.size(), 1);

    preload(model);
    model.readSelection(selection);
    QCOMPARE(selection, (QMap<QString, bool>{{QStringLiteral("G01"), true},
                                             {QStringLiteral("G02"), false},
                                             {QStringLiteral("G03"), true},
                                             {QStringLiteral("keep"), true}}));
    QVERIFY(model.setChecked(QStringLiteral("G02"), true));
    QVERIFY(!model.setChecked(QStringLiteral("G09"), true));
    QVERIFY(!model.isChecked(QStringLiteral("G09")));
    QVERIFY(model.isChecked(QStringLiteral("G02")));
    model.setAllChecked(false);
    model.readSelection(selection);
    for (const QString& name : model.satellites())
        QVERIFY(!selection.value(name));
    // A reset forgets the satellites and their actions.
    model.reset();
    QVERIFY(model.satellites().isEmpty());
    QCOMPARE(model.actionCount(), 0);
}

QTEST_MAIN(tst_EpochTableModel)
#include "tst_epochtablemodel.moc"
