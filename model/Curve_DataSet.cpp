#include "Curve_DataSet.h"
#include "Curve_DataSet_XY.h"

#include "AxisData.h"

#include <utility>

Curve_DataSet::Curve_DataSet(QObject* parent)
    : QObject(parent)
{
}

Curve_DataSet::~Curve_DataSet()
{
    // Take the map first so that nothing reached from an axis's destruction
    // can see a half-deleted set of axes.
    const QMap<int, AxisData*> axes = std::exchange(m_axisMap, {});
    for (AxisData* axis : axes)
        delete axis;
}

AxisData* Curve_DataSet::getAxisData(int userType)
{
    return m_axisMap.value(userType, nullptr);
}

const AxisData* Curve_DataSet::getAxisData(int userType) const
{
    return m_axisMap.value(userType, nullptr);
}

int Curve_DataSet::getAxisNum() const
{
    return m_axisMap.size();
}

void Curve_DataSet::getAxisBreakInfo(int userType, std::set<qint64>& breaks) const
{
    if (const AxisData* axis = m_axisMap.value(userType, nullptr))
        axis->getBreakInfo(breaks);
}

void Curve_DataSet::getFirstAxisBreakInfo(std::set<qint64>& breaks) const
{
    if (!m_axisMap.isEmpty())
        m_axisMap.first()->getBreakInfo(breaks);
}

void Curve_DataSet::bindAxises()
{
    for (AxisData* axis : qAsConst(m_axisMap)) {
        connect(axis, SIGNAL(sgAreaChanged()), this, SLOT(onAxisAreaChanged()),
                Qt::UniqueConnection);
        connect(axis, SIGNAL(sgDataChanged()), this, SLOT(onAxisDataChanged()),
                Qt::UniqueConnection);
    }
}

int Curve_DataSet::keyOf(const AxisData* axis) const
{
    for (auto it = m_axisMap.cbegin(); it != m_axisMap.cend(); ++it) {
        if (it.value() == axis)
            return it.key();
    }
    return -1;
}

void Curve_DataSet::onAxisAreaChanged()
{
    if (const auto* axis = qobject_cast<const AxisData*>(sender()))
        emit sgAxisAreaChanged(keyOf(axis));
}

void Curve_DataSet::onAxisDataChanged()
{
    if (const auto* axis = qobject_cast<const AxisData*>(sender()))
        emit sgAxisDataChanged(keyOf(axis));
}

Curve_DataSet_XY::Curve_DataSet_XY(int yAxisNum, QObject* parent)
    : Curve_DataSet(parent)
{
    for (int key = 0; key <= qMax(0, yAxisNum); ++key)
        m_axisMap.insert(key, new AxisData);
    bindAxises();
}
