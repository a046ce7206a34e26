// SPDX-License-Identifier: MIT
#include "Curve_Coord.h"
#include "Curve_Coord_XY.h"
#include "CoordMapping_p.h"

#include <cmath>
#include <limits>

class Curve_Coord::PrivateData
{
};

Curve_Coord::Curve_Coord(QObject* parent)
    : QObject(parent)
    , m_data(new PrivateData)
{
}

Curve_Coord::~Curve_Coord() = default;

class Curve_Coord_XY::PrivateData
{
public:
    double xMin = -std::numeric_limits<double>::max();
    double xMax = std::numeric_limits<double>::max();
    double yMin = -std::numeric_limits<double>::max();
    double yMax = std::numeric_limits<double>::max();
    int setNumber = 0;
};

Curve_Coord_XY::Curve_Coord_XY(QObject* parent)
    : Curve_Coord(parent)
    , m_data(new PrivateData)
{
}

Curve_Coord_XY::~Curve_Coord_XY() = default;

bool Curve_Coord_XY::setArea(double xMin, double xMax, double yMin, double yMax)
{
    if (xMin >= xMax || yMin >= yMax)
        return false;
    ++m_data->setNumber;
    m_data->xMin = xMin;
    m_data->xMax = xMax;
    m_data->yMin = yMin;
    m_data->yMax = yMax;
    emit sgCoordAreaChanged();
    return true;
}

void Curve_Coord_XY::getArea(double& xMin, double& xMax, double& yMin, double& yMax) const
{
    xMin = m_data->xMin;
    xMax = m_data->xMax;
    yMin = m_data->yMin;
    yMax = m_data->yMax;
}

int Curve_Coord_XY::areaSettedNumber() const
{
    return m_data->setNumber;
}

void Curve_Coord_XY::map(const QRectF& rect, qint64 num, const double* xs, const double* ys,
                         double* pixelXs, double* pixelYs, bool bYDown) const
{
    const PrivateData& d = *m_data;
    const CoordMapping mapping(rect, d.xMin, d.xMax, d.yMin, d.yMax, bYDown);
    for (qint64 i = 0; i < num; ++i) {
        pixelXs[i] = mapping.mapX(xs[i]);
        const double y = ys[i];
        pixelYs[i] = std::isnan(y) ? y : mapping.mapY(y);
    }
}
