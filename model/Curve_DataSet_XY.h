// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVE_DATASET_XY_H
#define GNSSPLOT_CURVE_DATASET_XY_H

#include "Curve_DataSet.h"

/*!
    \class Curve_DataSet_XY
    \brief A data set of one X axis (key 0) and \c yAxisNum Y axes (keys 1 to
    yAxisNum). Each Y axis paired with the X axis is one drawn series.

    The X axis of a time curve holds milliseconds since 1970-01-01 00:00:00;
    Y axes hold metres.
*/
class GNSSPLOT_EXPORT Curve_DataSet_XY : public Curve_DataSet
{
    Q_OBJECT
public:
    /*! Creates the X axis and \a yAxisNum Y axes, all empty. With
        \a yAxisNum <= 0 only the X axis exists. */
    explicit Curve_DataSet_XY(int yAxisNum, QObject* parent = nullptr);
    /*! Deletes the axes (see Curve_DataSet). */
    ~Curve_DataSet_XY() override;

private:
    class PrivateData;
    // Empty for now: it keeps the class's size when a release adds state.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(Curve_DataSet_XY)
};

#endif // GNSSPLOT_CURVE_DATASET_XY_H
