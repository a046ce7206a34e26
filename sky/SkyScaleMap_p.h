// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYSCALEMAP_P_H
#define GNSSPLOT_SKYSCALEMAP_P_H

#include <QRectF>
#include <QSizeF>
#include <QtGlobal>

#include <algorithm>
#include <cmath>

/*
    The sky plot's two scale maps and its layout, in one place: the tracks,
    the grid, the cursor marks, the hover search and the sky map all place a
    direction through them, so a pixel worked out by any of them is the same
    to the last bit.

    Scene coordinates are the view's logical pixels, x to the right and y
    downward. North is up, east to the right, azimuth runs clockwise.
*/

#ifdef __clang__
// The pixel of a direction must not depend on whether the compiler fuses a
// multiply and an add; the test's reference drawer and every platform
// compute the same roundings.
#pragma clang fp contract(off)
#endif

// Elevation (degrees, 90 at the centre, 0 at the rim) to a distance from the
// centre, proportional to 90 - elevation.
class SkyRadiusMap
{
public:
    SkyRadiusMap() = default;
    explicit SkyRadiusMap(double rim)
        : m_rim(rim)
    {
    }

    // The distance of the horizon from the centre, scene pixels.
    double rim() const { return m_rim; }
    // Whether an elevation lies in the drawn sky, 0 .. 90 degrees; false for
    // NaN. Samples below the horizon are not drawn.
    static bool isInSky(double elevation) { return elevation >= 0.0 && elevation <= 90.0; }
    // The radius of \a elevation; divided before it is scaled, so the zenith
    // maps to exactly 0 and the horizon to exactly the rim.
    double radiusOf(double elevation) const { return (90.0 - elevation) / 90.0 * m_rim; }
    // The elevation at \a radius, the inverse of radiusOf().
    double elevationOf(double radius) const { return 90.0 - radius / m_rim * 90.0; }

private:
    double m_rim = 0.0;
};

// Azimuth (degrees from north, clockwise) to a direction.
class SkyAzimuthMap
{
public:
    // Whether an azimuth lies in 0 .. 360 degrees; false for NaN.
    static bool isOnCircle(double azimuth) { return azimuth >= 0.0 && azimuth <= 360.0; }

    // The unit vector toward \a azimuth, which must lie in 0 .. 360 degrees
    // (isOnCircle()): its east part
    // (the sine) and its north part (the cosine). The angle is reduced to
    // within 45 degrees of a multiple of 90 without rounding, and both parts
    // come from short series there, so the result is the same on every
    // platform and exact at the four cardinal directions.
    static void directionOf(double azimuth, double& east, double& north)
    {
        const int quadrant = int(azimuth * (1.0 / 90.0) + 0.5);
        const double x = (azimuth - 90.0 * double(quadrant)) * (kPi / 180.0);
        const double x2 = x * x;
        const double s =
            x * (1.0 + x2 * (kS3 + x2 * (kS5 + x2 * (kS7 + x2 * (kS9 + x2 * kS11)))));
        const double c =
            1.0 + x2 * (kC2 + x2 * (kC4 + x2 * (kC6 + x2 * (kC8 + x2 * (kC10 + x2 * kC12)))));
        // Quadrant q turns the reduced direction by q * 90 degrees.
        const bool odd = (quadrant & 1) != 0;
        const double e = odd ? c : s;
        const double n = odd ? s : c;
        east = (quadrant & 2) != 0 ? -e : e;
        north = ((quadrant + 1) & 2) != 0 ? -n : n;
    }
    // The azimuth of the scene offset (\a dx, \a dy) from the centre, 0 .. 360
    // degrees; 0 for no offset.
    static double azimuthOf(double dx, double dy)
    {
        const double a = std::atan2(dx, -dy) * (180.0 / kPi);
        return a < 0.0 ? a + 360.0 : a;
    }

private:
    static constexpr double kPi = 3.14159265358979323846;
    // Taylor coefficients of sine and cosine; within 45 degrees the series
    // end below 1e-11 of error.
    static constexpr double kS3 = -1.0 / 6.0;
    static constexpr double kS5 = 1.0 / 120.0;
    static constexpr double kS7 = -1.0 / 5040.0;
    static constexpr double kS9 = 1.0 / 362880.0;
    static constexpr double kS11 = -1.0 / 39916800.0;
    static constexpr double kC2 = -1.0 / 2.0;
    static constexpr double kC4 = 1.0 / 24.0;
    static constexpr double kC6 = -1.0 / 720.0;
    static constexpr double kC8 = 1.0 / 40320.0;
    static constexpr double kC10 = -1.0 / 3628800.0;
    static constexpr double kC12 = 1.0 / 479001600.0;
};

// Both maps about a centre: a direction to its scene point.
struct SkyProjection
{
    double cx = 0.0;
    double cy = 0.0;
    SkyRadiusMap radius;

    // Whether a direction is drawn at all: in the sky and on the circle.
    static bool isDrawable(double azimuth, double elevation)
    {
        return SkyAzimuthMap::isOnCircle(azimuth) && SkyRadiusMap::isInSky(elevation);
    }
    // The scene point of a drawable direction.
    void toScene(double azimuth, double elevation, double& x, double& y) const
    {
        double east = 0.0;
        double north = 0.0;
        toScene(azimuth, elevation, x, y, east, north);
    }
    // The same, handing out the azimuth's direction too.
    void toScene(double azimuth, double elevation, double& x, double& y, double& east,
                 double& north) const
    {
        SkyAzimuthMap::directionOf(azimuth, east, north);
        const double r = radius.radiusOf(elevation);
        x = cx + r * east;
        y = cy - r * north;
    }
};

// Scene to device pixels through a scale and an offset, as a painter's
// device transform without rotation does it: the pixel (floor) of
// scale * v + offset. Saturated far beyond any picture, so that a hostile
// transform cannot overflow the conversion.
constexpr double kSkyDeviceLimit = double(1 << 30);
inline double skyDeviceCoordinate(double scale, double offset, double v)
{
    return scale * v + offset;
}
inline qint32 skyPixelOf(double d)
{
    d = d < -kSkyDeviceLimit ? -kSkyDeviceLimit : (d > kSkyDeviceLimit ? kSkyDeviceLimit : d);
    d = d == d ? d : 0.0;
    const double t = double(qint32(d));
    return qint32(t) - (d < t ? 1 : 0);
}
inline qint32 skyDevicePixel(double scale, double offset, double v)
{
    return skyPixelOf(skyDeviceCoordinate(scale, offset, v));
}

// Where the parts of a sky plot lie in a picture of a given size, scene
// pixels: the sky's disk (centre and rim, whole pixels) with room around it
// for the azimuth labels, and the colour bar at the right when one is shown.
struct SkyLayout
{
    // Room outside the rim for the azimuth labels.
    static constexpr double kLabelMargin = 28.0;
    // The strip at the right that holds the colour bar, its labels and unit.
    static constexpr double kBarStrip = 96.0;
    static constexpr double kBarWidth = 16.0;
    static constexpr double kBarGap = 12.0;

    QSizeF size;
    double cx = 0.0;
    double cy = 0.0;
    double rim = 0.0;
    QRectF bar;  // empty without a colour bar

    static SkyLayout forSize(const QSizeF& size, bool bColorBar)
    {
        SkyLayout layout;
        const double w = std::isfinite(size.width()) ? std::max(0.0, size.width()) : 0.0;
        const double h = std::isfinite(size.height()) ? std::max(0.0, size.height()) : 0.0;
        layout.size = QSizeF(w, h);
        const double barStrip = bColorBar ? kBarStrip : 0.0;
        const double plotWidth = std::max(0.0, w - barStrip);
        const double side = std::min(plotWidth, h);
        layout.cx = std::floor(plotWidth / 2.0);
        layout.cy = std::floor(h / 2.0);
        layout.rim = std::max(0.0, std::floor(side / 2.0) - kLabelMargin);
        if (bColorBar && layout.rim > 0.0) {
            layout.bar = QRectF(plotWidth + kBarGap, layout.cy - layout.rim, kBarWidth,
                                2.0 * layout.rim);
        }
        return layout;
    }
    bool isDrawable() const { return rim >= 1.0; }
    SkyProjection projection() const { return SkyProjection{cx, cy, SkyRadiusMap(rim)}; }
    bool operator==(const SkyLayout& o) const
    {
        return size == o.size && cx == o.cx && cy == o.cy && rim == o.rim && bar == o.bar;
    }
    // The square that holds the disk, rim included.
    QRectF diskRect() const { return QRectF(cx - rim, cy - rim, 2.0 * rim, 2.0 * rim); }
};

#endif // GNSSPLOT_SKYSCALEMAP_P_H
