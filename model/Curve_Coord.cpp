#include "Curve_Coord.h"
#include "Curve_Coord_XY.h"
#include "CoordMapping_p.h"

#include <cmath>
#include <limits>

Curve_Coord::Curve_Coord(QObject* parent)
    : QObject(parent)
{
}

Curve_Coord_XY::Curve_Coord_XY(QObject* parent)
    : Curve_Coord(parent)
    , m_xMin(-std::numeric_limits<double>::max())
    , m_xMax(std::numeric_limits<double>::max())
    , m_yMin(-std::numeric_limits<double>::max())
    , m_yMax(std::numeric_limits<double>::max())
{
}

bool Curve_Coord_XY::setArea(double xMin, double xMax, double yMin, double yMax)
{
    if (xMin >= xMax || yMin >= yMax)
        return false;
    ++m_setNumber;
    m_xMin = xMin;
    m_xMax = xMax;
    m_yMin = yMin;
    m_yMax = yMax;
    emit sgCoordAreaChanged();
    return true;
}

void Curve_Coord_XY::getArea(double& xMin, double& xMax, double& yMin, double& yMax) const
{
    xMin = m_xMin;
    xMax = m_xMax;
    yMin = m_yMin;
    yMax = m_yMax;
}

int Curve_Coord_XY::areaSettedNumber() const
{
    return m_setNumber;
}

void Curve_Coord_XY::map(const QRectF& rect, qint64 num, const double* xs, const double* ys,
                         double* pixelXs, double* pixelYs, bool bYDown) const
{
    const CoordMapping mapping(rect, m_xMin, m_xMax, m_yMin, m_yMax, bYDown);
    for (qint64 i = 0; i < num; ++i) {
        pixelXs[i] = mapping.mapX(xs[i]);
        const double y = ys[i];
        pixelYs[i] = std::isnan(y) ? y : mapping.mapY(y);
    }
}
