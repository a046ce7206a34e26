// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVE_DATASET_H
#define GNSSPLOT_CURVE_DATASET_H

#include "gnssplot_global.h"

#include <QMap>
#include <QObject>

#include <memory>
#include <set>

class AxisData;

/*!
    \class Curve_DataSet
    \brief The axes of one curve, each an AxisData under an \c int key
    (\c userType).

    The data set creates and owns its axes: they have no QObject parent and
    are deleted by the data set's destructor, in ascending key order. The
    per-axis signals are re-emitted as sgAxisAreaChanged() and
    sgAxisDataChanged() carrying the key of the axis that sent them.

    The base class holds no axes of its own; Curve_DataSet_XY creates them.
*/
class GNSSPLOT_EXPORT Curve_DataSet : public QObject
{
    Q_OBJECT
public:
    /*! Creates a data set with no axes. */
    explicit Curve_DataSet(QObject* parent = nullptr);
    /*! Deletes every axis, in ascending key order. */
    ~Curve_DataSet() override;

    /*! Returns the axis under \a userType, or null when there is none. The
        host fills the axis through this pointer; it stays valid for the data
        set's lifetime. */
    AxisData* getAxisData(int userType);
    /*! Read-only overload of getAxisData(). */
    const AxisData* getAxisData(int userType) const;
    /*! Returns the number of axes. */
    int getAxisNum() const;
    /*! Adds the area-relative breaks of the axis \a userType to \a breaks
        (AxisData::getBreakInfo()); leaves \a breaks untouched when there is no
        such axis. */
    void getAxisBreakInfo(int userType, std::set<qint64>& breaks) const;
    /*! Adds the area-relative breaks of the axis with the smallest key to
        \a breaks; does nothing when the data set has no axes. */
    void getFirstAxisBreakInfo(std::set<qint64>& breaks) const;

signals:
    /*! The area of the axis \a userType changed; -1 when the sending axis
        does not belong to this data set. */
    void sgAxisAreaChanged(int userType);
    /*! The samples or breaks of the axis \a userType changed; -1 when the
        sending axis does not belong to this data set. */
    void sgAxisDataChanged(int userType);

protected:
    /*! Connects every axis's signals to the forwarding slots, once. */
    virtual void bindAxises();

protected slots:
    /*! Re-emits an axis's sgAreaChanged() as sgAxisAreaChanged(key). */
    void onAxisAreaChanged();
    /*! Re-emits an axis's sgDataChanged() as sgAxisDataChanged(key). */
    void onAxisDataChanged();

protected:
    /*! The axes by ascending key; derived classes fill it from their
        constructor and call bindAxises() afterwards. The data set owns every
        axis in it. */
    QMap<int, AxisData*>& axisMap();
    /*! Read-only overload of axisMap(). */
    const QMap<int, AxisData*>& axisMap() const;

private:
    int keyOf(const AxisData* axis) const;

    class PrivateData;
    // All state lives here, so that a later release can add to it without
    // changing the size of the class.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(Curve_DataSet)
};

#endif // GNSSPLOT_CURVE_DATASET_H
