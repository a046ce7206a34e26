// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_ORBITS_H
#define GNSSDEMO_ORBITS_H

#include "NavigationData.h"

/*!
    \file Orbits.h
    Satellite positions from broadcast ephemerides, and where a satellite
    stands in a receiver's sky.

    Positions are Earth-fixed Cartesian coordinates in metres: WGS 84 for
    GPS and SBAS, and each system's own realisation of the terrestrial frame
    for the others (GTRF, CGCS2000, PZ-90.11), which agree with WGS 84 to a
    few centimetres, far below what a sky view can show.
*/
namespace gnssdemo {

/*! The Earth's rotation rate of WGS 84 and of the GPS and Galileo
    documents, rad/s; the frame rotation during the signal's travel uses it. */
constexpr double EarthRotationRate = 7.2921151467e-5;

/*! The position of \a eph's satellite \a seconds after the ephemeris's
    reference time (negative before it), in the Earth-fixed frame of that
    instant. Returns false, leaving \a xyz untouched, for an ephemeris whose
    elements give no orbit (eccentricity outside [0, 1), no semi-major axis,
    a GLONASS state without integrated nodes or a time outside them) or a
    non-finite \a seconds. */
bool satellitePosition(const Ephemeris& eph, double seconds, double xyz[3]);

/*! Integrates a GLONASS state (\a state: x, y, z in metres, vx, vy, vz in
    m/s, Earth-fixed PZ-90) by \a seconds (either sign) with the equations of
    motion of the GLONASS interface document: central field with the J2
    term, the frame's rotation, and the constant luni-solar accelerations
    \a lunisolar (m/s^2) of the record. Fourth-order Runge-Kutta in equal
    steps of at most \a maxStep seconds. */
void integrateGlonass(const double state[6], const double lunisolar[3], double seconds,
                      double maxStep, double out[6]);

/*! Fills \a eph.glonassNodes: states every GlonassNodeStep seconds from
    the reference time out to the fit interval and one step beyond, each
    integrated from the reference time in steps of at most 30 s. Does
    nothing for other systems. */
void prepareGlonassNodes(Ephemeris& eph);

/*! A receiver's local east-north-up frame on the WGS 84 ellipsoid. */
class LocalFrame
{
public:
    /*! A frame at \a xyz (metres, Earth-fixed); invalid() when \a xyz is
        not finite or lies less than 6,000 km or more than 100,000 km from
        the Earth's centre (a missing approximate position is written as
        zeros). */
    explicit LocalFrame(const double xyz[3]);
    bool isValid() const { return m_valid; }
    /*! Geodetic latitude and longitude in degrees, height above the
        ellipsoid in metres. */
    double latitudeDeg() const { return m_latDeg; }
    double longitudeDeg() const { return m_lonDeg; }
    double height() const { return m_height; }
    const double* origin() const { return m_origin; }

    /*! Azimuth (degrees from north through east, 0 to below 360) and
        elevation (degrees above the horizon plane of the ellipsoid normal)
        of the point \a target; both NaN for an invalid frame or a target at
        the origin. */
    void azimuthElevation(const double target[3], double* azimuthDeg,
                          double* elevationDeg) const;

private:
    bool m_valid = false;
    double m_origin[3] = {0, 0, 0};
    double m_latDeg = 0, m_lonDeg = 0, m_height = 0;
    double m_east[3] = {0, 0, 0};
    double m_north[3] = {0, 0, 0};
    double m_up[3] = {0, 0, 0};
};

/*! Where a receiver at \a receiver (metres, Earth-fixed) sees \a eph's
    satellite at the receive time \a receiveMs (GPST ms): the position at
    the time of transmission, found by iterating the signal's travel time,
    turned by the Earth's rotation during the travel into the frame of the
    receive time. Returns false like satellitePosition(). */
bool observedPosition(const Ephemeris& eph, qint64 receiveMs, const double receiver[3],
                      double xyz[3]);

} // namespace gnssdemo

#endif // GNSSDEMO_ORBITS_H
