// SPDX-License-Identifier: MIT
// The demo's sentences with counts, through its catalogues as the demo
// installs them: singular and plural in English, German and Chinese.
#include "DemoTexts.h"
#include "ObservationData.h"

#include <QtTest>

#include <QTranslator>

using namespace gnssdemo;

namespace {

// One of the demo's sentences for the counts \a n, in the language of the
// translators installed now.
QString sentence(const QString& which, const QList<int>& n)
{
    if (which == QLatin1String("marks"))
        return DemoTexts::marks(n[0], n[1], n[2]);
    if (which == QLatin1String("noMarks"))
        return DemoTexts::noMarks(n[0]);
    if (which == QLatin1String("applied"))
        return DemoTexts::applied(n[0], n[1], n[2], n[3]);
    if (which == QLatin1String("enabled"))
        return DemoTexts::enabled(n[0], n[1]);
    if (which == QLatin1String("shortArcs"))
        return DemoTexts::shortArcs(n[0], 5);
    if (which == QLatin1String("readStopped")) {
        // n[1]: the compressed stream ended early too.
        ReadStop stop;
        stop.line = 88623;
        stop.endsInside = "an epoch's satellite records";
        stop.epochsKept = n[0];
        stop.compressedCut = n[1] != 0;
        return DemoTexts::readStopped(stop);
    }
    return DemoTexts::satellites(n[0]);
}

} // namespace

class tst_DemoTexts : public QObject
{
    Q_OBJECT
private slots:
    void plurals_data();
    void plurals();
};

void tst_DemoTexts::plurals_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("which");
    QTest::addColumn<QList<int>>("counts");
    QTest::addColumn<QString>("expected");

    auto row = [](const char* language, const char* which, const QList<int>& counts,
                  const QString& expected) {
        QTest::addRow("%s %s %d", language, which, counts.first())
            << QString::fromLatin1(language) << QString::fromLatin1(which) << counts
            << expected;
    };
    row("en", "marks", {1, 1, 1}, QStringLiteral("1 mark on 1 satellite, 1 action"));
    row("en", "marks", {3, 2, 4}, QStringLiteral("3 marks on 2 satellites, 4 actions"));
    row("en", "noMarks", {1},
        QStringLiteral("No marks (1 action). Drag over the bars to mark epochs."));
    row("en", "noMarks", {0},
        QStringLiteral("No marks (0 actions). Drag over the bars to mark epochs."));
    row("en", "applied", {1, 1, 1, 7},
        QStringLiteral("Applied: 1 satellite recomputed (1 curve sample fewer), 1 curve "
                       "hidden, 7 ms."));
    row("en", "applied", {2, -30, 0, 7},
        QStringLiteral("Applied: 2 satellites recomputed (30 curve samples more), 0 curves "
                       "hidden, 7 ms."));
    row("en", "enabled", {0, 1}, QStringLiteral("0 of 1 satellite enabled"));
    row("en", "enabled", {30, 31}, QStringLiteral("30 of 31 satellites enabled"));
    row("de", "marks", {1, 1, 1}, QStringLiteral("1 Markierung auf 1 Satellit, 1 Aktion"));
    row("de", "marks", {3, 2, 4},
        QStringLiteral("3 Markierungen auf 2 Satelliten, 4 Aktionen"));
    row("de", "applied", {1, 1, 1, 7},
        QStringLiteral("Angewendet: 1 Satellit neu berechnet (1 Kurvenpunkt weniger), 1 Kurve "
                       "ausgeblendet, 7 ms."));
    row("de", "applied", {3, 2, 2, 7},
        QStringLiteral("Angewendet: 3 Satelliten neu berechnet (2 Kurvenpunkte weniger), 2 "
                       "Kurven ausgeblendet, 7 ms."));
    row("de", "enabled", {30, 31}, QStringLiteral("30 von 31 Satelliten aktiviert"));
    row("de", "satellites", {1}, QStringLiteral("1 Satellit"));
    row("zh_CN", "marks", {3, 2, 4},
        QString::fromUtf8("2 颗卫星上的3 个标记，4 次操作"));
    row("zh_CN", "applied", {3, 2, 1, 7},
        QString::fromUtf8("已应用：重新计算了 3 颗卫星（曲线点少了 2 个），隐藏了 1 条曲线，"
                          "7 毫秒。"));
    row("zh_CN", "enabled", {30, 31}, QString::fromUtf8("31 颗卫星中 30 颗已启用"));
    row("en", "readStopped", {1, 0},
        QStringLiteral("line 88623: file ends inside an epoch's satellite records; 1 complete "
                       "epoch kept"));
    row("en", "readStopped", {2130, 0},
        QStringLiteral("line 88623: file ends inside an epoch's satellite records; 2130 "
                       "complete epochs kept"));
    row("en", "readStopped", {5, 1},
        QStringLiteral("line 88623: the compressed data ends early, inside an epoch's "
                       "satellite records; 5 complete epochs kept"));
    row("de", "readStopped", {2130, 0},
        QString::fromUtf8("Zeile 88623: Die Datei endet innerhalb der Satellitendatensätze "
                          "einer Epoche; 2130 vollständige Epochen behalten"));
    row("de", "readStopped", {1, 1},
        QString::fromUtf8("Zeile 88623: Die komprimierten Daten enden vorzeitig, innerhalb "
                          "der Satellitendatensätze einer Epoche; 1 vollständige Epoche "
                          "behalten"));
    row("zh_CN", "readStopped", {2130, 0},
        QString::fromUtf8("第 88623 行：文件在历元的卫星记录中结束；保留了 2130 个完整历元"));
    row("en", "shortArcs", {1},
        QStringLiteral("1 satellite with code and phase on two bands, but every arc is shorter "
                       "than 5 epochs: no multipath to show."));
    row("de", "shortArcs", {2},
        QString::fromUtf8("2 Satelliten mit Code und Phase auf zwei Bändern, aber jeder Bogen "
                          "ist kürzer als 5 Epochen: kein Mehrweg darzustellen."));
    row("zh_CN", "shortArcs", {3},
        QString::fromUtf8("3 颗卫星在两个频段上有伪距和相位，但每段弧都短于 5 个历元：没有可显示"
                          "的多路径。"));
}

void tst_DemoTexts::plurals()
{
    QFETCH(QString, language);
    QFETCH(QString, which);
    QFETCH(QList<int>, counts);
    QFETCH(QString, expected);

    // Without a catalogue the source text shows through: "1 mark(s)".
    QVERIFY(sentence(which, counts).contains(QLatin1String("(s)")));
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral("gnssplot_demo_") + language,
                            QStringLiteral(GNSSDEMO_QM_DIR)));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString text = sentence(which, counts);
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(text, expected);
}

QTEST_MAIN(tst_DemoTexts)
#include "tst_demotexts.moc"
