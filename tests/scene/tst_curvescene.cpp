// SPDX-License-Identifier: MIT
#include "graphics/graphicstestsupport.h"

#include "CurveScene.h"
#include "Curve_Coord_XY.h"

#include <QPointer>
#include <QtTest>

// Results, signals and ownership of random call sequences are compared with
// a reference model in tests/fuzz; these cases add what that model cannot
// see: what a receiver finds while a signal is delivered, what the registry
// frees when it goes itself, and area limits over curves with data, which
// random sequences hardly ever build.
class tst_CurveScene : public QObject
{
    Q_OBJECT
private slots:
    void ownership_data();
    void ownership();
    void coordOwnership();
    void areaLimits();
};

void tst_CurveScene::ownership_data()
{
    QTest::addColumn<bool>("autoDelete");
    QTest::addColumn<bool>("viaRemoveAll");
    QTest::addColumn<bool>("viaDestructor");
    QTest::newRow("owned, removeCurve") << true << false << false;
    QTest::newRow("borrowed, removeAllCurves") << false << true << false;
    QTest::newRow("owned, registry destroyed") << true << false << true;
    QTest::newRow("borrowed, registry destroyed") << false << false << true;
}

void tst_CurveScene::ownership()
{
    QFETCH(bool, autoDelete);
    QFETCH(bool, viaRemoveAll);
    QFETCH(bool, viaDestructor);

    auto* scene = new CurveScene;
    QPointer<Curve_DataSet_XY> dataSet = new Curve_DataSet_XY(1, nullptr);
    QVERIFY(scene->addCurve(QStringLiteral("c"), dataSet, autoDelete, Qt::green,
                            ECurveShowCap_Line, true));
    QVERIFY(dataSet);

    bool goneAtSignal = false;
    connect(scene, &CurveScene::sgCurveRemoved, [&] {
        // The curve is dropped before its signal: nothing dangling to find.
        goneAtSignal = !scene->getCurve(QStringLiteral("c"));
    });

    if (viaDestructor)
        delete scene;
    else if (viaRemoveAll)
        scene->removeAllCurves();
    else
        scene->removeCurve(QStringLiteral("c"));

    QCOMPARE(dataSet.isNull(), autoDelete);
    if (!viaDestructor) {
        QVERIFY(goneAtSignal);
        delete scene;
    }
    delete dataSet; // a borrowed data set is still the caller's
}

void tst_CurveScene::coordOwnership()
{
    auto* scene = new CurveScene;
    QPointer<Curve_Coord_XY> a = new Curve_Coord_XY;
    QPointer<Curve_Coord_XY> b = new Curve_Coord_XY;
    scene->setCoord(a, true);

    bool oldGoneAtSignal = false;
    connect(scene, &CurveScene::sgLocalCoordChanged, [&] { oldGoneAtSignal = a.isNull(); });
    scene->setCoord(b, false);
    QVERIFY(oldGoneAtSignal); // owned: deleted on replacement, before the signal

    delete scene;
    QVERIFY(b); // borrowed: survives the registry
    delete b;

    auto* owning = new CurveScene;
    QPointer<Curve_Coord_XY> d = new Curve_Coord_XY;
    owning->setCoord(d, true);
    delete owning;
    QVERIFY(d.isNull());
}

void tst_CurveScene::areaLimits()
{
    CurveScene scene;
    scene.addCurve(QStringLiteral("b"), gt::makeDataSet({1, 2, 3}, {{5, gt::NaN, -1}}), true,
                   Qt::red, ECurveShowCap_Line, false); // hidden curves count
    double x0, x1, y0, y1;
    QVERIFY(scene.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(QList<double>({x0, x1, y0, y1}), QList<double>({1, 3, -1, 5}));

    // Y axes without values are skipped; X limits fold across curves.
    scene.addCurve(QStringLiteral("a"), gt::makeDataSet({-4, 0}, {{}, {gt::NaN, 9}}), true,
                   Qt::red, ECurveShowCap_Line, true);
    QVERIFY(scene.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(QList<double>({x0, x1, y0, y1}), QList<double>({-4, 3, -1, 9}));

    // No Y value anywhere: true with the untouched extremes.
    CurveScene noY;
    noY.addCurve(QStringLiteral("x"), gt::makeDataSet({1, 2}, {{}}), true, Qt::red,
                 ECurveShowCap_Line, true);
    QVERIFY(noY.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(y0, std::numeric_limits<double>::max());
    QCOMPARE(y1, -std::numeric_limits<double>::max());
}

QTEST_GUILESS_MAIN(tst_CurveScene)
#include "tst_curvescene.moc"
