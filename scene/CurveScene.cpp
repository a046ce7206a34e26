// SPDX-License-Identifier: MIT
#include "CurveScene.h"

#include "AxisData.h"
#include "Curve_Coord.h"
#include "Curve_DataSet_XY.h"

#include <limits>
#include <set>
#include <utility>

namespace {

// Folds the limits of one axis into a running pair, as the area fitting
// expects: a bound moves only when the axis reaches beyond it.
bool foldAxisLimits(const AxisData* axis, double& lo, double& hi)
{
    double axisMin = 0.0;
    double axisMax = 0.0;
    if (!axis || !axis->getDataLimits(axisMin, axisMax))
        return false;
    if (!(axisMin > lo))
        lo = axisMin;
    if (axisMax > hi)
        hi = axisMax;
    return true;
}

} // namespace

class CurveScene::PrivateData
{
public:
    Curve_Coord* coord = nullptr;
    bool coordAutoDelete = true;
    QMap<QString, CurveEntry> curves;
    std::set<QString> callerOwnedNames;
    // Event marks by curve name; only curves that have some are here.
    QMap<QString, QVector<EventMark>> eventMarks;
};

CurveScene::CurveScene(QObject* parent)
    : QObject(parent)
    , m_data(new PrivateData)
{
}

CurveScene::~CurveScene()
{
    if (m_data->coord && m_data->coordAutoDelete)
        delete std::exchange(m_data->coord, nullptr);
    const QMap<QString, CurveEntry> curves = std::exchange(m_data->curves, {});
    for (auto it = curves.cbegin(); it != curves.cend(); ++it) {
        if (m_data->callerOwnedNames.count(it.key()) == 0)
            delete it.value().dataSet;
    }
    m_data->callerOwnedNames.clear();
}

bool CurveScene::addCurve(const QString& curveName, Curve_DataSet* dataSet, bool bAutoDelete,
                          const QColor& color, ECurveShowCap cap, bool bVisible)
{
    if (!dataSet || m_data->curves.contains(curveName))
        return false;
    for (const CurveEntry& entry : std::as_const(m_data->curves)) {
        if (entry.dataSet == dataSet)
            return false;
    }
    m_data->curves.insert(curveName, CurveEntry{dataSet, color, cap, bVisible});
    if (!bAutoDelete)
        m_data->callerOwnedNames.insert(curveName);
    emit sgCurveAdded(curveName);
    return true;
}

void CurveScene::releaseDataSet(const QString& curveName, Curve_DataSet* dataSet)
{
    if (m_data->callerOwnedNames.erase(curveName) == 0)
        delete dataSet;
}

void CurveScene::removeCurve(const QString& curveName)
{
    const auto it = m_data->curves.find(curveName);
    if (it == m_data->curves.end())
        return;
    Curve_DataSet* dataSet = it.value().dataSet;
    // The name is copied: the caller's reference may point into the entry
    // that is being dropped.
    const QString name = curveName;
    m_data->curves.erase(it);
    m_data->eventMarks.remove(name);
    releaseDataSet(name, dataSet);
    emit sgCurveRemoved(name);
}

void CurveScene::removeAllCurves()
{
    // Each entry leaves the map before its data set is released and its
    // signal sent, so a receiver that looks the name up finds nothing rather
    // than a destroyed data set.
    while (!m_data->curves.isEmpty()) {
        const auto it = m_data->curves.begin();
        const QString name = it.key();
        Curve_DataSet* dataSet = it.value().dataSet;
        m_data->curves.erase(it);
        m_data->eventMarks.remove(name);
        releaseDataSet(name, dataSet);
        emit sgCurveRemoved(name);
    }
}

const Curve_DataSet* CurveScene::getCurve(const QString& curveName) const
{
    const auto it = m_data->curves.constFind(curveName);
    return it == m_data->curves.cend() ? nullptr : it.value().dataSet;
}

void CurveScene::getCurves(QMap<QString, const Curve_DataSet*>& curves) const
{
    curves.clear();
    for (auto it = m_data->curves.cbegin(); it != m_data->curves.cend(); ++it)
        curves.insert(it.key(), it.value().dataSet);
}

ECurveShowCap CurveScene::getCurveShowParam_cap(const QString& curveName) const
{
    return m_data->curves.value(curveName).cap;
}

QColor CurveScene::getCurveShowParam_color(const QString& curveName) const
{
    return m_data->curves.value(curveName).color;
}

bool CurveScene::getCurveShowParam_visible(const QString& curveName) const
{
    return m_data->curves.value(curveName).visible;
}

void CurveScene::setCurveShowParam_cap(const QString& curveName, ECurveShowCap cap)
{
    const auto it = m_data->curves.find(curveName);
    if (it == m_data->curves.end() || it.value().cap == cap)
        return;
    it.value().cap = cap;
    emit sgCurveShowParamChanged(curveName);
}

void CurveScene::setCurveShowParam_color(const QString& curveName, const QColor& color)
{
    const auto it = m_data->curves.find(curveName);
    if (it == m_data->curves.end() || it.value().color == color)
        return;
    it.value().color = color;
    emit sgCurveShowParamChanged(curveName);
}

void CurveScene::setCurveShowParam_visible(const QString& curveName, bool bVisible)
{
    const auto it = m_data->curves.find(curveName);
    if (it == m_data->curves.end() || it.value().visible == bVisible)
        return;
    it.value().visible = bVisible;
    emit sgCurveShowParamChanged(curveName);
}

void CurveScene::setCurveSingleShow(const QString& curveName, bool bSingle)
{
    if (m_data->curves.contains(curveName))
        emit sgCurveSingleShow(curveName, bSingle);
}

bool CurveScene::setCurveEventMarks(const QString& curveName, const QVector<EventMark>& marks)
{
    if (!m_data->curves.contains(curveName))
        return false;
    if (m_data->eventMarks.value(curveName) == marks)
        return true;
    if (marks.isEmpty())
        m_data->eventMarks.remove(curveName);
    else
        m_data->eventMarks.insert(curveName, marks);
    emit sgCurveEventMarksChanged(curveName);
    return true;
}

QVector<EventMark> CurveScene::getCurveEventMarks(const QString& curveName) const
{
    return m_data->eventMarks.value(curveName);
}

void CurveScene::setCoord(Curve_Coord* coord, bool bAutoDelete)
{
    if (coord == m_data->coord)
        return;
    if (m_data->coord && m_data->coordAutoDelete)
        delete m_data->coord;
    m_data->coord = coord;
    m_data->coordAutoDelete = bAutoDelete;
    emit sgLocalCoordChanged();
}

Curve_Coord* CurveScene::getCoord_Local()
{
    return m_data->coord;
}

const Curve_Coord* CurveScene::getCoord_Local() const
{
    return m_data->coord;
}

bool CurveScene::getAreaLimits(double& xMin, double& xMax, double& yMin, double& yMax) const
{
    if (m_data->curves.isEmpty())
        return false;
    for (const CurveEntry& entry : std::as_const(m_data->curves)) {
        if (!qobject_cast<const Curve_DataSet_XY*>(entry.dataSet))
            return false;
    }

    xMin = yMin = std::numeric_limits<double>::max();
    xMax = yMax = -std::numeric_limits<double>::max();
    for (const CurveEntry& entry : std::as_const(m_data->curves)) {
        const Curve_DataSet* dataSet = entry.dataSet;
        if (!foldAxisLimits(dataSet->getAxisData(0), xMin, xMax))
            return false;
        const int axisNum = dataSet->getAxisNum();
        for (int key = 1; key < axisNum; ++key)
            foldAxisLimits(dataSet->getAxisData(key), yMin, yMax);
    }
    return true;
}
