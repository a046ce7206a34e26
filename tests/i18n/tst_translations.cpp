// SPDX-License-Identifier: MIT
#include "graphics/graphicstestsupport.h"

#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "SkyGraphicsItem_Grid_p.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QCheckBox>
#include <QTranslator>
#include <QtTest>

#ifndef GNSSPLOT_QM_DIR
#define GNSSPLOT_QM_DIR ""
#endif

// Loads every compiled catalogue the way a host does, with one QTranslator,
// and checks that the widgets show the translated texts while the time
// system and band names stay as they are.
class tst_Translations : public QObject
{
    Q_OBJECT
private slots:
    void catalogue_data();
    void catalogue();
};

void tst_Translations::catalogue_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("satellite");
    QTest::addColumn<QString>("metre");
    QTest::addColumn<QString>("allocFailed");
    QTest::addColumn<QString>("removeMark");
    QTest::addColumn<QString>("hoverTip");
    QTest::addColumn<QString>("east");
    QTest::addColumn<QString>("skyTip");
    QTest::addColumn<QString>("slip");
    QTest::newRow("zh_CN") << "zh_CN" << QString::fromUtf8("卫星") << QString::fromUtf8("米")
                           << QString::fromUtf8("内存分配失败。")
                           << QString::fromUtf8("删除此擦除框。")
                           << QString::fromUtf8("曲线 %1，F %2\n时间 %3 GPST\n数值 %4 米")
                           << QString::fromUtf8("东")
                           << QString::fromUtf8("卫星 %1\n时间 %2 GPST\n方位角 %3\n高度角 %4")
                           << QString::fromUtf8("周跳");
    QTest::newRow("de") << "de" << "Satellit" << "m"
                        << "Speicher konnte nicht reserviert werden."
                        << QString::fromUtf8("Löschrechteck entfernen.")
                        << "Kurve %1, F %2\nZeit %3 GPST\nWert %4 m" << "O"
                        << "Satellit %1\nZeit %2 GPST\nAzimut %3\nElevation %4"
                        << "Phasensprung";
}

void tst_Translations::catalogue()
{
    QFETCH(QString, locale);
    QFETCH(QString, satellite);
    QFETCH(QString, metre);
    QFETCH(QString, allocFailed);
    QFETCH(QString, removeMark);
    QFETCH(QString, hoverTip);
    QFETCH(QString, east);
    QFETCH(QString, skyTip);
    QFETCH(QString, slip);

    QTranslator translator;
    QVERIFY2(translator.load(QLocale(locale), QStringLiteral("gnssplot"), QStringLiteral("_"),
                             QStringLiteral(GNSSPLOT_QM_DIR)),
             qPrintable(locale));
    QVERIFY(QCoreApplication::installTranslator(&translator));

    CurveGraphicsTableWidget_Epoch table(nullptr);
    auto* title = qobject_cast<QCheckBox*>(table.cellWidget(0, 0));
    QVERIFY(title);
    QCOMPARE(title->text(), satellite);
    QCOMPARE(QCoreApplication::translate("CurveGraphicsTableWidget_Epoch",
                                         "Remove the rect for erase."),
             removeMark);
    QCOMPARE(QCoreApplication::translate("CurveGraphicsView",
                                         "Curve %1, F %2\nTime %3 GPST\nValue %4 m"),
             hoverTip);

    // The sky plot's east label, as its grid draws it, and its tool tip.
    QCOMPARE(SkyGraphicsItem_Grid::azimuthLabel(90), east);
    QCOMPARE(SkyGraphicsItem_Grid::azimuthLabel(30), QStringLiteral("30") + QChar(0x00B0));
    QCOMPARE(QCoreApplication::translate("SkyGraphicsView",
                                         "Satellite %1\nTime %2 GPST\nAzimuth %3\nElevation %4"),
             skyTip);

    AxisData axis;
    axis.beginSetData();
    QString error;
    QVERIFY(!axis.allocData(std::numeric_limits<qint64>::max(), &error));
    QCOMPARE(error, allocFailed);

    CurveGraphicsView view;
    auto* coord = new Curve_Coord_XY;
    view.getCurveScene()->setCoord(coord, true);
    QVERIFY(coord->setArea(0, 86400000.0, -1, 1));
    auto* frame = gt::itemsOf<CurveGraphicsItem_Coord_PXPY>(view.scene()).value(0);
    QVERIFY(frame);
    QCOMPARE(frame->yLabels().value(0.5), QStringLiteral("0.000") + metre);
    QCOMPARE(frame->timeSystemText(), QStringLiteral("GPST"));
    // The read-out names an event kind in the user's language.
    QCOMPARE(view.getEventKindName(EEventMarkKind_CycleSlip), slip);

    QVERIFY(QCoreApplication::removeTranslator(&translator));
}

QTEST_MAIN(tst_Translations)
#include "tst_translations.moc"
