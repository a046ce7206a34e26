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

class tst_CurveScene : public QObject
{
    Q_OBJECT
private slots:
    void addRefusals();
    void ownership_data();
    void ownership();
    void removeAllInNameOrder();
    void showParams();
    void singleShow();
    void coordOwnership();
    void areaLimits();
    void areaLimitsRefusals();
};

void tst_CurveScene::addRefusals()
{
    CurveScene scene;
    QObject context;
    QStringList* log = recordSignals(scene, &context);
    Curve_DataSet_XY d(1, nullptr);
    QPointer<Curve_DataSet_XY> e = new Curve_DataSet_XY(1, nullptr);

    QVERIFY(scene.addCurve(QStringLiteral("a"), &d, false, Qt::red, ECurveShowCap_Point, true));
    QVERIFY(!scene.addCurve(QStringLiteral("a"), e, true, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(!scene.addCurve(QStringLiteral("b"), &d, true, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(!scene.addCurve(QStringLiteral("z"), nullptr, true, Qt::blue, ECurveShowCap_Line, true));
    QVERIFY(e); // refused with bAutoDelete true: still the caller's
    QCOMPARE(*log, QStringList{QStringLiteral("added a")});
    QCOMPARE(scene.getCurve(QStringLiteral("a")), &d);
    QCOMPARE(scene.getCurveShowParam_color(QStringLiteral("a")), QColor(Qt::red));
    QVERIFY(!scene.getCurve(QStringLiteral("b")));
    delete e;

    // Unknown names read the fixed defaults.
    QCOMPARE(scene.getCurveShowParam_cap(QStringLiteral("x")), ECurveShowCap_Line);
    QCOMPARE(scene.getCurveShowParam_color(QStringLiteral("x")), QColor(128, 128, 128, 255));
    QCOMPARE(scene.getCurveShowParam_visible(QStringLiteral("x")), false);

    log->clear();
    scene.removeCurve(QStringLiteral("x"));
    QVERIFY(log->isEmpty());
    scene.removeCurve(QStringLiteral("a"));
    QCOMPARE(*log, QStringList{QStringLiteral("removed a")});
}

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

void tst_CurveScene::removeAllInNameOrder()
{
    CurveScene scene;
    QObject context;
    scene.addCurve(QStringLiteral("b"), new Curve_DataSet_XY(1), true, Qt::red,
                   ECurveShowCap_Line, true);
    scene.addCurve(QStringLiteral("a"), new Curve_DataSet_XY(1), true, Qt::red,
                   ECurveShowCap_Line, true);
    QStringList* log = recordSignals(scene, &context);
    scene.removeAllCurves();
    QCOMPARE(*log, (QStringList{QStringLiteral("removed a"), QStringLiteral("removed b")}));
    QMap<QString, const Curve_DataSet*> curves{{QStringLiteral("stale"), nullptr}};
    scene.getCurves(curves);
    QVERIFY(curves.isEmpty());
    log->clear();
    scene.removeAllCurves();
    QVERIFY(log->isEmpty());
}

void tst_CurveScene::showParams()
{
    CurveScene scene;
    QObject context;
    scene.addCurve(QStringLiteral("a"), new Curve_DataSet_XY(1), true, QColor(1, 2, 3),
                   ECurveShowCap_Line, true);
    QStringList* log = recordSignals(scene, &context);

    scene.setCurveShowParam_visible(QStringLiteral("a"), true); // unchanged
    scene.setCurveShowParam_cap(QStringLiteral("a"), ECurveShowCap_Line);
    scene.setCurveShowParam_color(QStringLiteral("a"), QColor(1, 2, 3));
    scene.setCurveShowParam_visible(QStringLiteral("nobody"), false);
    QVERIFY(log->isEmpty());

    scene.setCurveShowParam_visible(QStringLiteral("a"), false);
    scene.setCurveShowParam_cap(QStringLiteral("a"), ECurveShowCap_Point);
    scene.setCurveShowParam_color(QStringLiteral("a"), QColor(1, 2, 3, 4)); // alpha differs
    scene.setCurveShowParam_color(QStringLiteral("a"), QColor(1, 2, 3, 4));
    QCOMPARE(*log, QVector<QString>(3, QStringLiteral("param a")).toList());
    QCOMPARE(scene.getCurveShowParam_visible(QStringLiteral("a")), false);
    QCOMPARE(scene.getCurveShowParam_cap(QStringLiteral("a")), ECurveShowCap_Point);
    QCOMPARE(scene.getCurveShowParam_color(QStringLiteral("a")), QColor(1, 2, 3, 4));
}

void tst_CurveScene::singleShow()
{
    CurveScene scene;
    QObject context;
    scene.addCurve(QStringLiteral("a"), new Curve_DataSet_XY(1), true, Qt::red,
                   ECurveShowCap_Line, true);
    QStringList* log = recordSignals(scene, &context);
    scene.setCurveSingleShow(QStringLiteral("a"), true);
    scene.setCurveSingleShow(QStringLiteral("a"), true);
    scene.setCurveSingleShow(QStringLiteral("b"), true);
    QCOMPARE(*log, QVector<QString>(2, QStringLiteral("single a 1")).toList());
    QCOMPARE(scene.getCurveShowParam_visible(QStringLiteral("a")), true);
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

void tst_CurveScene::areaLimitsRefusals()
{
    CurveScene scene;
    double x0 = 7, x1 = 7, y0 = 7, y1 = 7;
    QVERIFY(!scene.getAreaLimits(x0, x1, y0, y1)); // no curve
    QCOMPARE(QList<double>({x0, x1, y0, y1}), QVector<double>(4, 7.0).toList());

    scene.addCurve(QStringLiteral("a"), xyCurve({1, 2}, {3, 4}), true, Qt::red,
                   ECurveShowCap_Line, true);
    scene.addCurve(QStringLiteral("b"), xyCurve({}, {3, 4}), true, Qt::red,
                   ECurveShowCap_Line, true);
    QVERIFY(!scene.getAreaLimits(x0, x1, y0, y1)); // curve b has an empty X axis

    CurveScene mixed;
    mixed.addCurve(QStringLiteral("a"), xyCurve({1, 2}, {3, 4}), true, Qt::red,
                   ECurveShowCap_Line, true);
    mixed.addCurve(QStringLiteral("b"), new Curve_DataSet, true, Qt::red, ECurveShowCap_Line,
                   true);
    x0 = 7;
    QVERIFY(!mixed.getAreaLimits(x0, x1, y0, y1)); // not an X/Y data set: nothing written
    QCOMPARE(x0, 7.0);
}

QTEST_GUILESS_MAIN(tst_CurveScene)
#include "tst_curvescene.moc"
