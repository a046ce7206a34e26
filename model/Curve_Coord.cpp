#include "Curve_Coord.h"
#include "Curve_Coord_XY.h"

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
    const double left = rect.left();
    const double top = rect.top();
    const double bottom = rect.top() + rect.height();
    const double width = rect.width();
    const double height = rect.height();
    const double rx = m_xMax - m_xMin;
    const double ry = m_yMax - m_yMin;

    // The order subtract, divide by the range, multiply by the extent, then
    // offset is part of the contract: it fixes every rounded pixel.
    for (qint64 i = 0; i < num; ++i) {
        pixelXs[i] = ((xs[i] - m_xMin) / rx) * width + left;
        const double y = ys[i];
        if (std::isnan(y)) {
            pixelYs[i] = y;
            continue;
        }
        const double t = ((y - m_yMin) / ry) * height;
        pixelYs[i] = bYDown ? top + t : bottom - t;
    }
}
