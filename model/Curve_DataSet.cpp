// SPDX-License-Identifier: MIT
#include "Curve_DataSet.h"
#include "Curve_DataSet_XY.h"

#include "AxisData.h"

#include <utility>

class Curve_DataSet::PrivateData
{
public:
    QMap<int, AxisData*> axisMap;
};

Curve_DataSet::Curve_DataSet(QObject* parent)
    : QObject(parent)
    , m_data(new PrivateData)
{
}

Curve_DataSet::~Curve_DataSet()
{
    // Take the map first so that nothing reached from an axis's destruction
    // can see a half-deleted set of axes.
    const QMap<int, AxisData*> axes = std::exchange(m_data->axisMap, {});
    for (AxisData* axis : axes)
        delete axis;
}

QMap<int, AxisData*>& Curve_DataSet::axisMap()
{
    return m_data->axisMap;
}

const QMap<int, AxisData*>& Curve_DataSet::axisMap() const
{
    return m_data->axisMap;
}

AxisData* Curve_DataSet::getAxisData(int userType)
{
    return m_data->axisMap.value(userType, nullptr);
}

const AxisData* Curve_DataSet::getAxisData(int userType) const
{
    return m_data->axisMap.value(userType, nullptr);
}

int Curve_DataSet::getAxisNum() const
{
    return m_data->axisMap.size();
}

void Curve_DataSet::getAxisBreakInfo(int userType, std::set<qint64>& breaks) const
{
    if (const AxisData* axis = m_data->axisMap.value(userType, nullptr))
        axis->getBreakInfo(breaks);
}

void Curve_DataSet::getFirstAxisBreakInfo(std::set<qint64>& breaks) const
{
    if (!m_data->axisMap.isEmpty())
        m_data->axisMap.first()->getBreakInfo(breaks);
}

void Curve_DataSet::bindAxises()
{
    for (AxisData* axis : std::as_const(m_data->axisMap)) {
        connect(axis, &AxisData::sgAreaChanged, this, &Curve_DataSet::onAxisAreaChanged,
                Qt::UniqueConnection);
        connect(axis, &AxisData::sgDataChanged, this, &Curve_DataSet::onAxisDataChanged,
                Qt::UniqueConnection);
    }
}

int Curve_DataSet::keyOf(const AxisData* axis) const
{
    for (auto it = m_data->axisMap.cbegin(); it != m_data->axisMap.cend(); ++it) {
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

class Curve_DataSet_XY::PrivateData
{
};

Curve_DataSet_XY::Curve_DataSet_XY(int yAxisNum, QObject* parent)
    : Curve_DataSet(parent)
    , m_data(new PrivateData)
{
    for (int key = 0; key <= qMax(0, yAxisNum); ++key)
        axisMap().insert(key, new AxisData);
    bindAxises();
}

Curve_DataSet_XY::~Curve_DataSet_XY() = default;
