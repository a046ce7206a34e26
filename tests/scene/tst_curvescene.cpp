#include "AxisData.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

void fill(AxisData* axis, const QVector<double>& values)
{
    axis->beginSetData();
    if (!values.isEmpty()) {
        QVERIFY(axis->allocData(values.size(), nullptr));
        std::copy(values.cbegin(), values.cend(), axis->getInSettingData(0, nullptr));
    }
    axis->endSetData(true);
}

Curve_DataSet_XY* xyCurve(const QVector<double>& xs, const QVector<double>& ys)
{
    auto* dataSet = new Curve_DataSet_XY(1, nullptr);
    fill(dataSet->getAxisData(0), xs);
    fill(dataSet->getAxisData(1), ys);
    return dataSet;
}

// Records every registry signal as one line, in emission order.
QStringList* recordSignals(CurveScene& scene, QObject* context)
{
    auto* log = new QStringList;
    QObject::connect(context, &QObject::destroyed, [log] { delete log; });
    QObject::connect(&scene, &CurveScene::sgLocalCoordChanged, context,
                     [log] { *log << QStringLiteral("coord"); });
    QObject::connect(&scene, &CurveScene::sgCurveAdded, context,
                     [log](const QString& n) { *log << QStringLiteral("added ") + n; });
    QObject::connect(&scene, &CurveScene::sgCurveRemoved, context,
                     [log](const QString& n) { *log << QStringLiteral("removed ") + n; });
    QObject::connect(&scene, &CurveScene::sgCurveShowParamChanged, context,
                     [log](const QString& n) { *log << QStringLiteral("param ") + n; });
    QObject::connect(&scene, &CurveScene::sgCurveSingleShow, context,
                     [log](const QString& n, bool b) {
                         *log << QStringLiteral("single %1 %2").arg(n).arg(b);
                     });
    return log;
}

} // namespace

// Results, signals and ownership of random call sequences are compared with
// a reference model in tests/fuzz; these cases spell out ownership in both
// directions and what a receiver finds while a signal is delivered.
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
    QTest::newRow("owned, removeAllCurves") << true << true << false;
    QTest::newRow("owned, registry destroyed") << true << false << true;
    QTest::newRow("borrowed, removeCurve") << false << false << false;
    QTest::newRow("borrowed, removeAllCurves") << false << true << false;
    QTest::newRow("borrowed, registry destroyed") << false << false << true;
}

void tst_CurveScene::ownership()
{
    QFETCH(bool, autoDelete);
    QFETCH(bool, viaRemoveAll);
    QFETCH(bool, viaDestructor);

    auto* scene = new CurveScene;
    QPointer<Curve_DataSet_XY> dataSet = new Curve_DataSet_XY(1, nullptr);
    QSignalSpy destroyed(dataSet.data(), &QObject::destroyed);
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
    QCOMPARE(destroyed.count(), autoDelete ? 1 : 0);
    if (!viaDestructor) {
        QVERIFY(goneAtSignal);
        // The name can be registered again, with the opposite ownership.
        auto* again = new Curve_DataSet_XY(1, nullptr);
        QVERIFY(scene->addCurve(QStringLiteral("c"), again, true, Qt::green,
                                ECurveShowCap_Line, true));
        QPointer<Curve_DataSet_XY> watch = again;
        delete scene;
        QVERIFY(watch.isNull());
    }
    delete dataSet; // a borrowed data set is still the caller's
}

void tst_CurveScene::coordOwnership()
{
    auto* scene = new CurveScene;
    QObject context;
    QStringList* log = recordSignals(*scene, &context);
    QPointer<Curve_Coord_XY> a = new Curve_Coord_XY;
    QPointer<Curve_Coord_XY> b = new Curve_Coord_XY;
    QPointer<Curve_Coord_XY> c = new Curve_Coord_XY;

    scene->setCoord(a, true);
    scene->setCoord(a, false); // same coordinate: nothing, flag kept
    QCOMPARE(*log, QStringList{QStringLiteral("coord")});

    bool oldGoneAtSignal = false;
    connect(scene, &CurveScene::sgLocalCoordChanged, &context,
            [&] { oldGoneAtSignal = a.isNull(); });
    scene->setCoord(b, false);
    QVERIFY(a.isNull()); // owned: deleted on replacement, before the signal
    QVERIFY(oldGoneAtSignal);
    QCOMPARE(scene->getCoord_Local(), b.data());

    scene->setCoord(c, true);
    QVERIFY(b); // borrowed: survives replacement
    scene->setCoord(nullptr, true);
    QVERIFY(c.isNull());
    QVERIFY(!scene->getCoord_Local());
    QCOMPARE(log->count(QStringLiteral("coord")), 4);

    scene->setCoord(b, false);
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
    const double nan = std::numeric_limits<double>::quiet_NaN();
    CurveScene scene;
    scene.addCurve(QStringLiteral("b"), xyCurve({1, 2, 3}, {5, nan, -1}), true, Qt::red,
                   ECurveShowCap_Line, false); // hidden curves count
    double x0, x1, y0, y1;
    QVERIFY(scene.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(QList<double>({x0, x1, y0, y1}), QList<double>({1, 3, -1, 5}));

    // Y axes without values are skipped; X limits fold across curves.
    auto* twoY = new Curve_DataSet_XY(2, nullptr);
    fill(twoY->getAxisData(0), {-4, 0});
    fill(twoY->getAxisData(2), {nan, 9});
    scene.addCurve(QStringLiteral("a"), twoY, true, Qt::red, ECurveShowCap_Line, true);
    QVERIFY(scene.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(QList<double>({x0, x1, y0, y1}), QList<double>({-4, 3, -1, 9}));

    // No Y value anywhere: true with the untouched extremes.
    CurveScene noY;
    noY.addCurve(QStringLiteral("x"), xyCurve({1, 2}, {}), true, Qt::red, ECurveShowCap_Line,
                 true);
    QVERIFY(noY.getAreaLimits(x0, x1, y0, y1));
    QCOMPARE(y0, std::numeric_limits<double>::max());
    QCOMPARE(y1, -std::numeric_limits<double>::max());
}

QTEST_GUILESS_MAIN(tst_CurveScene)
#include "tst_curvescene.moc"
