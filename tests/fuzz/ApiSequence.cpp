// SPDX-License-Identifier: MIT
#include "ApiSequence.h"

#include "ByteReader.h"
#include "ReferenceModel.h"
#include "TableSequence.h"

#include "AxisData.h"
#include "CurveGraphicsItem_Coord_p.h"
#include "CurveGraphicsItem_Curve_p.h"
#include "CurveGraphicsItem_ShowWhichY_p.h"
#include "CurveGraphicsScene.h"
#include "CurveGraphicsView.h"
#include "CurveScene.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"

#include <QApplication>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QWheelEvent>

#include <memory>
#include <vector>

namespace {

constexpr int kAxisSlots = 3;
constexpr int kDataSetSlots = 4;
constexpr int kCoordSlots = 3;
constexpr int kMaxCalls = 400;

const char* const kNames[] = {"a", "b", "G01", "", "a "};

struct DataSetSlot
{
    QPointer<Curve_DataSet> object;
    std::vector<RefAxis> axes; // one reference per key
    bool alive = false;        // what the test expects
    bool isXY = true;
};

struct CoordSlot
{
    QPointer<Curve_Coord> object;
    bool alive = false;
};

class Runner
{
public:
    Runner(const uint8_t* data, size_t size) : m_in(data, size) {}
    ~Runner();

    QString run(ApiSequenceStats* stats);

private:
    // One step each; a non-empty result ends the run.
    QString axisStep(AxisData* axis, RefAxis& ref);
    QString registryStep();
    QString graphicsStep();
    QString checkItems() const;
    QString checkAxis(const AxisData* axis, const RefAxis& ref, const QString& where) const;
    QString checkRegistry() const;
    QString checkSignals(QStringList& actual, const QStringList& expected, const QString& what);
    void watchAxis(AxisData* axis, QObject* context);
    void watchRegistry();

    ByteReader m_in;
    std::vector<std::unique_ptr<AxisData>> m_axes;
    std::vector<RefAxis> m_axisRefs;
    QStringList m_axisLog;

    std::unique_ptr<CurveGraphicsView> m_view;
    CurveGraphicsScene* m_scene = nullptr;
    CurveScene* m_registry = nullptr;
    RefRegistry m_ref;
    QStringList m_registryLog;
    DataSetSlot m_dataSets[kDataSetSlots];
    CoordSlot m_coords[kCoordSlots];
    TableSequence m_table;
};

Runner::~Runner()
{
    m_view.reset(); // takes the scene and the registry with it
    // Whatever the registry did not own is still the test's to free.
    for (DataSetSlot& slot : m_dataSets)
        delete slot.object.data();
    for (CoordSlot& slot : m_coords)
        delete slot.object.data();
}

// Logs the axis's signals for as long as \a context lives.
void Runner::watchAxis(AxisData* axis, QObject* context)
{
    QObject::connect(axis, &AxisData::sgAreaChanged, context,
                     [this] { m_axisLog << QStringLiteral("area"); });
    QObject::connect(axis, &AxisData::sgDataChanged, context,
                     [this] { m_axisLog << QStringLiteral("data"); });
}

void Runner::watchRegistry()
{
    CurveScene* r = m_registry;
    QObject::connect(r, &CurveScene::sgLocalCoordChanged,
                     [this] { m_registryLog << QStringLiteral("coord"); });
    QObject::connect(r, &CurveScene::sgCurveAdded,
                     [this](const QString& n) { m_registryLog << QStringLiteral("added:") + n; });
    QObject::connect(r, &CurveScene::sgCurveRemoved,
                     [this](const QString& n) { m_registryLog << QStringLiteral("removed:") + n; });
    QObject::connect(r, &CurveScene::sgCurveShowParamChanged,
                     [this](const QString& n) { m_registryLog << QStringLiteral("param:") + n; });
    QObject::connect(r, &CurveScene::sgCurveSingleShow, [this](const QString& n, bool b) {
        m_registryLog << QStringLiteral("single:%1:%2").arg(n).arg(b);
    });
}

QString Runner::checkSignals(QStringList& actual, const QStringList& expected, const QString& what)
{
    QString failure;
    if (actual != expected) {
        failure = QStringLiteral("%1: signals [%2], expected [%3]")
                      .arg(what, actual.join(QLatin1Char(',')), expected.join(QLatin1Char(',')));
    }
    actual.clear();
    return failure;
}

QString Runner::checkAxis(const AxisData* axis, const RefAxis& ref, const QString& where) const
{
    qint64 b = 0, e = 0;
    const qint64 n = axis->getArea(&b, &e);
    if (n != ref.areaCount() || b != ref.published.begin || e != ref.published.end)
        return where + QStringLiteral(": area (%1, %2) n %3").arg(b).arg(e).arg(n);
    qint64 num = 0;
    const double* p = axis->getData(0, &num);
    if (bool(p) != ref.published.has || (p && num != n))
        return where + QStringLiteral(": getData");
    for (qint64 i = 0; p && i < n; ++i) {
        const double expected = ref.published.samples[size_t(ref.published.begin + i)];
        if (!(p[i] == expected || (std::isnan(p[i]) && std::isnan(expected))))
            return where + QStringLiteral(": sample %1").arg(i);
    }
    std::set<qint64> breaks;
    axis->getBreakInfo(breaks);
    if (breaks != ref.relativeBreaks())
        return where + QStringLiteral(": breaks");
    double lo = 1, hi = 2, rlo = 1, rhi = 2;
    const bool found = axis->getDataLimits(lo, hi);
    if (found != ref.limits(rlo, rhi) || !(lo == rlo && hi == rhi))
        return where + QStringLiteral(": limits");
    return {};
}

QString Runner::axisStep(AxisData* axis, RefAxis& ref)
{
    QStringList expected;
    QString what;
    switch (m_in.pick(9)) {
    case 0:
        what = QStringLiteral("beginSetData");
        axis->beginSetData();
        ref.begin();
        break;
    case 1: {
        const qint64 num = m_in.index();
        what = QStringLiteral("allocData(%1)").arg(num);
        QString error;
        bool oom = false;
        const bool expectedOk = ref.alloc(num, oom);
        if (axis->allocData(num, &error) != expectedOk)
            return what + QStringLiteral(": result");
        if (oom != !error.isEmpty())
            return what + QStringLiteral(": error text '%1'").arg(error);
        if (expectedOk) {
            // Fill the whole block so no reader ever sees uninitialised memory.
            qint64 n = 0;
            double* p = axis->getInSettingData(0, &n);
            if (!p || n != num)
                return what + QStringLiteral(": fresh block");
            for (qint64 i = 0; i < n; ++i)
                p[i] = ref.setting.samples[size_t(i)] = m_in.value();
        }
        break;
    }
    case 2: {
        const qint64 index = m_in.index();
        const double v = m_in.value();
        what = QStringLiteral("write(%1)").arg(index);
        qint64 n = -1;
        double* p = axis->getInSettingData(index, &n);
        const qint64 slot = ref.settingSlot(index);
        if (bool(p) != (slot >= 0) || (p && n != ref.setting.end - ref.setting.begin - index + 1))
            return what + QStringLiteral(": getInSettingData");
        if (p)
            *p = ref.setting.samples[size_t(slot)] = v;
        break;
    }
    case 3: {
        const qint64 first = m_in.index(), last = m_in.index();
        what = QStringLiteral("setInSettingDataArea(%1, %2)").arg(first).arg(last);
        if (axis->setInSettingDataArea(first, last) != ref.setSettingArea(first, last))
            return what;
        break;
    }
    case 4: {
        std::set<qint64> breaks;
        for (int i = m_in.pick(4); i > 0; --i)
            breaks.insert(m_in.index());
        what = QStringLiteral("setInSettingBreaks");
        if (axis->setInSettingBreaks(breaks) != ref.setSettingBreaks(breaks))
            return what;
        break;
    }
    case 5: {
        const bool apply = m_in.u8() % 4 != 0;
        what = QStringLiteral("endSetData(%1)").arg(apply);
        axis->endSetData(apply);
        ref.endSet(apply, expected);
        break;
    }
    case 6: {
        const qint64 first = m_in.index(), last = m_in.index();
        what = QStringLiteral("setArea(%1, %2)").arg(first).arg(last);
        if (axis->setArea(first, last) != ref.setArea(first, last, expected))
            return what;
        break;
    }
    case 7:
        what = QStringLiteral("clearArea");
        axis->clearArea();
        ref.clearArea(expected);
        break;
    default: {
        const qint64 index = m_in.index();
        what = QStringLiteral("getData(%1)").arg(index);
        qint64 n = -1;
        const double* p = axis->getData(index, &n);
        const bool valid = ref.published.has && index >= 0
                           && index <= ref.published.end - ref.published.begin;
        if (bool(p) != valid)
            return what;
        break;
    }
    }
    const QString failure = checkSignals(m_axisLog, expected, what);
    if (!failure.isEmpty())
        return failure;
    return checkAxis(axis, ref, what);
}

QString Runner::checkRegistry() const
{
    QMap<QString, const Curve_DataSet*> curves;
    m_registry->getCurves(curves);
    if (curves.keys() != m_ref.curves.keys())
        return QStringLiteral("curve names");
    for (auto it = m_ref.curves.cbegin(); it != m_ref.curves.cend(); ++it) {
        const DataSetSlot& slot = m_dataSets[it->dataSetSlot];
        if (m_registry->getCurve(it.key()) != slot.object.data() || !slot.object)
            return QStringLiteral("data set of ") + it.key();
        if (m_registry->getCurveShowParam_color(it.key()) != it->color
            || int(m_registry->getCurveShowParam_cap(it.key())) != it->cap
            || m_registry->getCurveShowParam_visible(it.key()) != it->visible)
            return QStringLiteral("show params of ") + it.key();
    }
    for (const DataSetSlot& slot : m_dataSets) {
        if (slot.object.isNull() == slot.alive)
            return QStringLiteral("data set ownership");
    }
    for (const CoordSlot& slot : m_coords) {
        if (slot.object.isNull() == slot.alive)
            return QStringLiteral("coordinate ownership");
    }
    const Curve_Coord* coord = m_ref.coordSlot < 0 ? nullptr : m_coords[m_ref.coordSlot].object.data();
    if (m_registry->getCoord_Local() != coord)
        return QStringLiteral("local coordinate");

    // Limits folded over every curve, predicted from the axis references.
    double x0 = 3, x1 = 4, y0 = 5, y1 = 6;
    const bool ok = m_registry->getAreaLimits(x0, x1, y0, y1);
    // Every curve must be XY with some X value; Y axes without values are
    // skipped.
    bool expectOk = !m_ref.curves.isEmpty();
    double ex0 = std::numeric_limits<double>::max(), ex1 = -ex0, ey0 = ex0, ey1 = -ex0;
    for (const RefCurve& c : m_ref.curves) {
        const DataSetSlot& slot = m_dataSets[c.dataSetSlot];
        double lo, hi;
        if (!slot.isXY || !slot.axes[0].limits(lo, hi)) {
            expectOk = false;
            break;
        }
        ex0 = std::min(ex0, lo);
        ex1 = std::max(ex1, hi);
        for (size_t k = 1; k < slot.axes.size(); ++k) {
            if (slot.axes[k].limits(lo, hi)) {
                ey0 = std::min(ey0, lo);
                ey1 = std::max(ey1, hi);
            }
        }
    }
    if (ok != expectOk || (ok && !(x0 == ex0 && x1 == ex1 && y0 == ey0 && y1 == ey1)))
        return QStringLiteral("area limits");
    return {};
}

QString Runner::registryStep()
{
    QStringList expected;
    QString what;
    const QString name = QString::fromLatin1(kNames[m_in.pick(5)]);
    switch (m_in.pick(10)) {
    case 0: { // make a data set in an empty slot
        DataSetSlot& slot = m_dataSets[m_in.pick(kDataSetSlots)];
        if (slot.alive)
            return {};
        const int yAxes = m_in.pick(4) - 1;
        slot.isXY = m_in.u8() % 8 != 0;
        slot.object = slot.isXY ? new Curve_DataSet_XY(yAxes) : new Curve_DataSet;
        slot.axes.assign(size_t(slot.object->getAxisNum()), RefAxis());
        slot.alive = true;
        return checkRegistry();
    }
    case 1: { // fill an axis of a data set through the axis steps
        DataSetSlot& slot = m_dataSets[m_in.pick(kDataSetSlots)];
        if (!slot.alive || slot.axes.empty())
            return {};
        const int key = m_in.pick(int(slot.axes.size()));
        AxisData* axis = slot.object->getAxisData(key);
        QObject guard; // the watching connections end with it
        watchAxis(axis, &guard);
        const QString failure = axisStep(axis, slot.axes[size_t(key)]);
        return failure.isEmpty() ? checkRegistry() : failure;
    }
    case 2: { // addCurve
        const int index = m_in.pick(kDataSetSlots + 1);
        const bool nullSet = index == kDataSetSlots;
        const bool autoDelete = m_in.flag();
        const QColor color(m_in.u8(), m_in.u8(), m_in.u8(), m_in.u8());
        const int cap = m_in.pick(3) == 2 ? 7 : m_in.pick(2);
        const bool visible = m_in.flag();
        Curve_DataSet* dataSet = nullSet ? nullptr : m_dataSets[index].object.data();
        what = QStringLiteral("addCurve(%1)").arg(name);
        const bool expectOk = dataSet && !m_ref.curves.contains(name) && !m_ref.holds(index);
        if (m_registry->addCurve(name, dataSet, autoDelete, color, ECurveShowCap(cap), visible)
            != expectOk)
            return what + QStringLiteral(": result");
        if (expectOk) {
            const bool xyCoord = m_ref.coordSlot >= 0
                && qobject_cast<Curve_Coord_XY*>(m_coords[m_ref.coordSlot].object.data());
            const bool item = xyCoord && m_dataSets[index].isXY;
            m_ref.curves.insert(name, RefCurve{index, color, cap, visible, autoDelete, item});
            expected << QStringLiteral("added:") + name;
        }
        break;
    }
    case 3:
        what = QStringLiteral("removeCurve(%1)").arg(name);
        if (m_ref.curves.contains(name)) {
            const RefCurve c = m_ref.curves.take(name);
            m_dataSets[c.dataSetSlot].alive = !c.owned;
            expected << QStringLiteral("removed:") + name;
        }
        m_registry->removeCurve(name);
        break;
    case 4:
        what = QStringLiteral("removeAllCurves");
        for (auto it = m_ref.curves.cbegin(); it != m_ref.curves.cend(); ++it) {
            m_dataSets[it->dataSetSlot].alive = !it->owned;
            expected << QStringLiteral("removed:") + it.key();
        }
        m_ref.curves.clear();
        m_registry->removeAllCurves();
        break;
    case 5: {
        what = QStringLiteral("setCurveShowParam(%1)").arg(name);
        auto it = m_ref.curves.find(name);
        // Only a registered curve whose value really changes signals.
        const auto change = [&](auto RefCurve::*member, auto value) {
            if (it != m_ref.curves.end() && (*it).*member != value) {
                (*it).*member = value;
                expected << QStringLiteral("param:") + name;
            }
        };
        switch (m_in.pick(3)) {
        case 0: {
            const QColor color(m_in.u8() & 3, 0, 0);
            change(&RefCurve::color, color);
            m_registry->setCurveShowParam_color(name, color);
            break;
        }
        case 1: {
            const int cap = m_in.pick(3);
            change(&RefCurve::cap, cap);
            m_registry->setCurveShowParam_cap(name, ECurveShowCap(cap));
            break;
        }
        default: {
            const bool visible = m_in.flag();
            change(&RefCurve::visible, visible);
            m_registry->setCurveShowParam_visible(name, visible);
            break;
        }
        }
        break;
    }
    case 6: {
        const bool single = m_in.flag();
        what = QStringLiteral("setCurveSingleShow(%1)").arg(name);
        if (m_ref.curves.contains(name))
            expected << QStringLiteral("single:%1:%2").arg(name).arg(single);
        m_registry->setCurveSingleShow(name, single);
        break;
    }
    case 7: { // setCoord
        const int index = m_in.pick(kCoordSlots + 1) - 1; // -1: null
        const bool autoDelete = m_in.flag();
        CoordSlot* slot = index < 0 ? nullptr : &m_coords[index];
        if (slot && !slot->alive) {
            slot->object = m_in.flag() ? new Curve_Coord_XY : new Curve_Coord;
            slot->alive = true;
        }
        what = QStringLiteral("setCoord(%1)").arg(index);
        if (index != m_ref.coordSlot) {
            if (m_ref.coordSlot >= 0 && m_ref.coordOwned)
                m_coords[m_ref.coordSlot].alive = false;
            m_ref.coordSlot = index;
            m_ref.coordOwned = autoDelete;
            expected << QStringLiteral("coord");
        }
        m_registry->setCoord(slot ? slot->object.data() : nullptr, autoDelete);
        break;
    }
    case 8: { // the caller frees a data set it still owns
        const int index = m_in.pick(kDataSetSlots);
        DataSetSlot& slot = m_dataSets[index];
        if (!slot.alive || m_ref.holds(index))
            return {};
        delete slot.object.data();
        slot.alive = false;
        return checkRegistry();
    }
    default: { // an area on a coordinate
        CoordSlot& slot = m_coords[m_in.pick(kCoordSlots)];
        if (auto* xy = qobject_cast<Curve_Coord_XY*>(slot.object.data())) {
            const double a = m_in.value(), b = m_in.value(), c = m_in.value(), d = m_in.value();
            const int before = xy->areaSettedNumber();
            const bool ok = xy->setArea(a, b, c, d);
            if (ok != !(a >= b || c >= d) || xy->areaSettedNumber() != before + (ok ? 1 : 0))
                return QStringLiteral("Curve_Coord_XY::setArea");
        }
        return checkRegistry();
    }
    }
    QString failure = checkSignals(m_registryLog, expected, what);
    if (failure.isEmpty())
        failure = checkItems();
    return failure.isEmpty() ? checkRegistry() : failure;
}

QString Runner::checkItems() const
{
    const Curve_Coord* local = m_registry->getCoord_Local();
    const bool expectFrame = qobject_cast<const Curve_Coord_XY*>(local) != nullptr;
    QList<CurveGraphicsItem_Coord_PXPY*> frames;
    QList<CurveGraphicsItem_Curve_XY*> curves;
    for (QGraphicsItem* item : m_scene->items()) {
        QGraphicsObject* object = item->toGraphicsObject();
        if (auto* frame = qobject_cast<CurveGraphicsItem_Coord_PXPY*>(object))
            frames << frame;
        else if (auto* curve = qobject_cast<CurveGraphicsItem_Curve_XY*>(object))
            curves << curve;
    }
    if (frames.size() != (expectFrame ? 1 : 0))
        return QStringLiteral("%1 frame items").arg(frames.size());
    int expectedItems = 0;
    for (const RefCurve& c : m_ref.curves)
        expectedItems += c.hasItem ? 1 : 0;
    if (curves.size() != expectedItems)
        return QStringLiteral("%1 curve items, expected %2").arg(curves.size()).arg(expectedItems);
    QGraphicsItem* frame = frames.value(0, nullptr);
    for (CurveGraphicsItem_Curve_XY* curve : curves) {
        if (curve->parentItem() != frame)
            return QStringLiteral("curve item not under the frame");
    }
    if (m_scene->getCoordRect().isNull() == expectFrame)
        return QStringLiteral("getCoordRect");
    return {};
}

QString Runner::graphicsStep()
{
    static const int kSizes[] = {-300, -1, 0, 1, 50, 79, 80, 81, 300, 800};
    switch (m_in.pick(8)) {
    case 0:
        m_view->resize(qMax(0, kSizes[m_in.pick(10)]), qMax(0, kSizes[m_in.pick(10)]));
        break;
    case 1:
        m_scene->setCoordPixelSize(kSizes[m_in.pick(10)], kSizes[m_in.pick(10)]);
        break;
    case 2: {
        const int delta = (m_in.pick(3) - 1) * 120;
        QWheelEvent wheel(QPointF(10, 10), QPointF(10, 10), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_view->viewport(), &wheel);
        break;
    }
    case 3: { // a click on or near the Y-selection boxes
        CurveGraphicsItem_ShowWhichY* legend = nullptr;
        for (QGraphicsItem* item : m_scene->items()) {
            if ((legend = qobject_cast<CurveGraphicsItem_ShowWhichY*>(item->toGraphicsObject())))
                break;
        }
        if (!legend)
            break;
        QGraphicsSceneMouseEvent press(QEvent::GraphicsSceneMousePress);
        press.setScenePos(legend->mapToScene(QPointF(m_in.pick(64), m_in.pick(64))));
        press.setButton(Qt::LeftButton);
        press.setButtons(Qt::LeftButton);
        QApplication::sendEvent(m_scene, &press);
        break;
    }
    case 4: { // paint everything the view shows
        QImage image(m_view->viewport()->size().expandedTo(QSize(1, 1)), QImage::Format_ARGB32);
        QPainter painter(&image);
        m_view->render(&painter);
        break;
    }
    case 5: {
        auto* coord = qobject_cast<Curve_Coord_XY*>(m_coords[m_in.pick(kCoordSlots)].object);
        auto* dataSet = qobject_cast<Curve_DataSet_XY*>(m_dataSets[m_in.pick(kDataSetSlots)].object);
        const int w = qMax(0, kSizes[m_in.pick(10)]);
        const int h = qMax(0, kSizes[m_in.pick(10)]);
        QPixmap pixmap(w, h);
        CurveGraphicsScene::DrawXYCurveToPixmap(coord, dataSet, QColor(200, 0, 0),
                                                m_in.flag() ? &pixmap : nullptr);
        break;
    }
    case 6:
        m_view->setCurvesPosToVerticalZero();
        break;
    default:
        if (m_in.flag())
            m_scene->switchOffCurvesListen();
        else
            m_scene->switchOnCurvesListen();
        break;
    }
    const QString failure = checkItems();
    return failure.isEmpty() ? checkRegistry() : failure;
}

QString Runner::run(ApiSequenceStats* stats)
{
    for (int i = 0; i < kAxisSlots; ++i) {
        m_axes.emplace_back(new AxisData);
        m_axisRefs.emplace_back();
        watchAxis(m_axes.back().get(), m_axes.back().get());
    }
    m_view.reset(new CurveGraphicsView);
    m_scene = qobject_cast<CurveGraphicsScene*>(m_view->scene());
    m_registry = m_view->getCurveScene();
    if (!m_scene || !m_registry)
        return QStringLiteral("view without scene or registry");
    watchRegistry();
    m_view->resize(300, 200);
    m_view->show();

    for (int call = 0; call < kMaxCalls && !m_in.atEnd(); ++call) {
        QString failure;
        switch (m_in.pick(6)) {
        case 0:
        case 1: {
            const int slot = m_in.pick(kAxisSlots);
            failure = axisStep(m_axes[size_t(slot)].get(), m_axisRefs[size_t(slot)]);
            break;
        }
        case 2:
            failure = graphicsStep();
            break;
        case 3:
            failure = m_table.step(m_in);
            break;
        default:
            failure = registryStep();
            break;
        }
        if (stats)
            ++stats->calls;
        if (!failure.isEmpty())
            return QStringLiteral("call %1: %2").arg(call).arg(failure);
    }
    return {};
}

} // namespace

QString runApiSequence(const uint8_t* data, size_t size, ApiSequenceStats* stats)
{
    Runner runner(data, size);
    return runner.run(stats);
}
