// SPDX-License-Identifier: MIT
// Satellite positions, written from the published interface documents: the
// ephemeris algorithm of IS-GPS-200 (also used by QZSS), the Galileo OS SIS
// ICD, the BeiDou B1I ICD with its own rotation for GEO satellites, and the
// GLONASS ICD's integration of the broadcast state vector.
#include "Orbits.h"

#include "ObservationData.h"

#include <algorithm>
#include <cmath>

namespace gnssdemo {

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double DegPerRad = 180.0 / Pi;

struct KeplerConstants
{
    double mu;        // gravitational constant times the Earth's mass, m^3/s^2
    double earthRate; // rotation rate the system's elements refer to, rad/s
};

KeplerConstants keplerConstants(char system)
{
    switch (system) {
    case 'E': return {3.986004418e14, 7.2921151467e-5};
    case 'C': return {3.986004418e14, 7.2921150e-5};
    default: return {3.986005e14, 7.2921151467e-5}; // GPS and QZSS
    }
}

bool keplerPosition(const Ephemeris& eph, double tk, double xyz[3])
{
    const KeplerConstants k = keplerConstants(eph.system);
    const double a = eph.sqrtA * eph.sqrtA;
    const double e = eph.e;
    if (!(a > 1.0e6 && a < 1.0e9) || !(e >= 0.0 && e < 1.0))
        return false;
    const double n = std::sqrt(k.mu / (a * a * a)) + eph.deltaN;
    const double meanAnomaly = eph.m0 + n * tk;
    // Kepler's equation by Newton's method; a broadcast orbit is nearly
    // circular, so a handful of steps reach the last bit.
    double ea = meanAnomaly;
    for (int i = 0; i < 20; ++i) {
        const double step = (ea - e * std::sin(ea) - meanAnomaly) / (1.0 - e * std::cos(ea));
        ea -= step;
        if (std::fabs(step) < 1.0e-14)
            break;
    }
    const double trueAnomaly =
        std::atan2(std::sqrt(1.0 - e * e) * std::sin(ea), std::cos(ea) - e);
    const double phi = trueAnomaly + eph.omega;
    const double s2 = std::sin(2.0 * phi);
    const double c2 = std::cos(2.0 * phi);
    const double u = phi + eph.cus * s2 + eph.cuc * c2;
    const double r = a * (1.0 - e * std::cos(ea)) + eph.crs * s2 + eph.crc * c2;
    const double inc = eph.i0 + eph.cis * s2 + eph.cic * c2 + eph.idot * tk;
    const double xp = r * std::cos(u);
    const double yp = r * std::sin(u);
    // The node in the Earth-fixed frame. A BeiDou GEO's elements describe
    // its orbit in a frame that does not turn with the Earth; the rotation
    // follows below.
    const double node = eph.geostationary
                            ? eph.omega0 + eph.omegaDot * tk - k.earthRate * eph.toeSeconds
                            : eph.omega0 + (eph.omegaDot - k.earthRate) * tk
                                  - k.earthRate * eph.toeSeconds;
    const double cn = std::cos(node);
    const double sn = std::sin(node);
    const double ci = std::cos(inc);
    const double si = std::sin(inc);
    double x = xp * cn - yp * ci * sn;
    double y = xp * sn + yp * ci * cn;
    double z = yp * si;
    if (eph.geostationary) {
        // Tilt by -5 degrees about X, then turn by the Earth's rotation since
        // toe about Z (BeiDou ICD, GEO satellites).
        const double f = -5.0 * Pi / 180.0;
        const double y1 = std::cos(f) * y + std::sin(f) * z;
        const double z1 = -std::sin(f) * y + std::cos(f) * z;
        const double p = k.earthRate * tk;
        const double x2 = std::cos(p) * x + std::sin(p) * y1;
        const double y2 = -std::sin(p) * x + std::cos(p) * y1;
        x = x2;
        y = y2;
        z = z1;
    }
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
        return false;
    xyz[0] = x;
    xyz[1] = y;
    xyz[2] = z;
    return true;
}

// The GLONASS equations of motion in the Earth-fixed PZ-90 frame:
// derivative of (x, y, z, vx, vy, vz).
void glonassDerivative(const double s[6], const double lunisolar[3], double d[6])
{
    constexpr double mu = 398600.4418e9; // m^3/s^2
    constexpr double ae = 6378136.0;     // m
    constexpr double j2 = 1082625.75e-9;
    constexpr double w = 7.2921151467e-5; // rad/s
    const double x = s[0], y = s[1], z = s[2];
    const double r2 = x * x + y * y + z * z;
    const double r = std::sqrt(r2);
    const double muR3 = mu / (r2 * r);
    const double j2Term = 1.5 * j2 * mu * ae * ae / (r2 * r2 * r);
    const double z2 = 5.0 * z * z / r2;
    d[0] = s[3];
    d[1] = s[4];
    d[2] = s[5];
    d[3] = -muR3 * x - j2Term * x * (1.0 - z2) + w * w * x + 2.0 * w * s[4] + lunisolar[0];
    d[4] = -muR3 * y - j2Term * y * (1.0 - z2) + w * w * y - 2.0 * w * s[3] + lunisolar[1];
    d[5] = -muR3 * z - j2Term * z * (3.0 - z2) + lunisolar[2];
}

void rungeKuttaStep(double s[6], const double lunisolar[3], double h)
{
    double k1[6], k2[6], k3[6], k4[6], t[6];
    glonassDerivative(s, lunisolar, k1);
    for (int i = 0; i < 6; ++i)
        t[i] = s[i] + 0.5 * h * k1[i];
    glonassDerivative(t, lunisolar, k2);
    for (int i = 0; i < 6; ++i)
        t[i] = s[i] + 0.5 * h * k2[i];
    glonassDerivative(t, lunisolar, k3);
    for (int i = 0; i < 6; ++i)
        t[i] = s[i] + h * k3[i];
    glonassDerivative(t, lunisolar, k4);
    for (int i = 0; i < 6; ++i)
        s[i] += h / 6.0 * (k1[i] + 2.0 * k2[i] + 2.0 * k3[i] + k4[i]);
}

// Cubic Hermite interpolation between the integrated nodes, which carry
// positions and velocities: far below a millimetre at one-minute spacing.
bool glonassPosition(const Ephemeris& eph, double seconds, double xyz[3])
{
    const size_t nodes = eph.glonassNodes.size() / 6;
    if (nodes < 2)
        return false;
    const double half = double(nodes / 2) * GlonassNodeStep;
    if (!(seconds >= -half && seconds <= half))
        return false;
    const double at = (seconds + half) / GlonassNodeStep;
    size_t i = size_t(std::floor(at));
    if (i >= nodes - 1)
        i = nodes - 2;
    const double s = at - double(i);
    const double h = GlonassNodeStep;
    const double* p0 = &eph.glonassNodes[i * 6];
    const double* p1 = p0 + 6;
    const double s2 = s * s;
    const double s3 = s2 * s;
    const double h00 = 2 * s3 - 3 * s2 + 1;
    const double h10 = s3 - 2 * s2 + s;
    const double h01 = -2 * s3 + 3 * s2;
    const double h11 = s3 - s2;
    for (int c = 0; c < 3; ++c)
        xyz[c] = h00 * p0[c] + h10 * h * p0[c + 3] + h01 * p1[c] + h11 * h * p1[c + 3];
    return true;
}

} // namespace

void integrateGlonass(const double state[6], const double lunisolar[3], double seconds,
                      double maxStep, double out[6])
{
    for (int i = 0; i < 6; ++i)
        out[i] = state[i];
    if (!std::isfinite(seconds) || seconds == 0.0 || !(maxStep > 0.0))
        return;
    const double steps = std::ceil(std::fabs(seconds) / maxStep);
    if (steps > 1.0e6)
        return;
    const int n = int(steps);
    const double h = seconds / n;
    for (int i = 0; i < n; ++i)
        rungeKuttaStep(out, lunisolar, h);
}

void prepareGlonassNodes(Ephemeris& eph)
{
    eph.glonassNodes.clear();
    if (eph.system != 'R')
        return;
    const double* p = eph.position;
    const double r = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    // A state that is no orbit (zeros of a damaged record) gets no nodes.
    if (!(r > 1.0e7 && r < 1.0e8) || !std::isfinite(eph.fitHalfSeconds))
        return;
    const int side = int(std::ceil(std::max(0.0, eph.fitHalfSeconds) / GlonassNodeStep)) + 1;
    if (side > 1000)
        return;
    eph.glonassNodes.assign(size_t(2 * side + 1) * 6, 0.0);
    double* middle = &eph.glonassNodes[size_t(side) * 6];
    for (int c = 0; c < 3; ++c) {
        middle[c] = eph.position[c];
        middle[c + 3] = eph.velocity[c];
    }
    for (int dir = -1; dir <= 1; dir += 2) {
        for (int k = 1; k <= side; ++k) {
            const double* from = middle + (k - 1) * dir * 6;
            double* to = middle + k * dir * 6;
            integrateGlonass(from, eph.acceleration, dir * GlonassNodeStep, 30.0, to);
        }
    }
}

bool satellitePosition(const Ephemeris& eph, double seconds, double xyz[3])
{
    if (!std::isfinite(seconds))
        return false;
    switch (eph.system) {
    case 'R':
        return glonassPosition(eph, seconds, xyz);
    case 'S': {
        double out[3];
        for (int c = 0; c < 3; ++c)
            out[c] = eph.position[c] + eph.velocity[c] * seconds
                     + 0.5 * eph.acceleration[c] * seconds * seconds;
        if (!std::isfinite(out[0]) || !std::isfinite(out[1]) || !std::isfinite(out[2]))
            return false;
        for (int c = 0; c < 3; ++c)
            xyz[c] = out[c];
        return true;
    }
    default:
        return keplerPosition(eph, seconds, xyz);
    }
}

LocalFrame::LocalFrame(const double xyz[3])
{
    const double x = xyz[0], y = xyz[1], z = xyz[2];
    const double r = std::sqrt(x * x + y * y + z * z);
    if (!std::isfinite(r) || r < 6.0e6 || r > 1.0e8)
        return;
    // WGS 84 ellipsoid; latitude by fixed-point iteration, which converges
    // to well below a millimetre in a few rounds at any latitude.
    constexpr double a = 6378137.0;
    constexpr double f = 1.0 / 298.257223563;
    constexpr double e2 = f * (2.0 - f);
    const double p = std::sqrt(x * x + y * y);
    const double lon = std::atan2(y, x);
    double lat = std::atan2(z, p * (1.0 - e2));
    double h = 0.0;
    for (int i = 0; i < 8; ++i) {
        const double sl = std::sin(lat);
        const double n = a / std::sqrt(1.0 - e2 * sl * sl);
        h = p * std::cos(lat) + z * sl - a * a / n;
        lat = std::atan2(z, p * (1.0 - e2 * n / (n + h)));
    }
    const double sl = std::sin(lat), cl = std::cos(lat);
    const double so = std::sin(lon), co = std::cos(lon);
    const double east[3] = {-so, co, 0.0};
    const double north[3] = {-sl * co, -sl * so, cl};
    const double up[3] = {cl * co, cl * so, sl};
    for (int c = 0; c < 3; ++c) {
        m_origin[c] = xyz[c];
        m_east[c] = east[c];
        m_north[c] = north[c];
        m_up[c] = up[c];
    }
    m_latDeg = lat * DegPerRad;
    m_lonDeg = lon * DegPerRad;
    m_height = h;
    m_valid = true;
}

void LocalFrame::azimuthElevation(const double target[3], double* azimuthDeg,
                                  double* elevationDeg) const
{
    const double nan = std::nan("");
    *azimuthDeg = nan;
    *elevationDeg = nan;
    if (!m_valid)
        return;
    const double d[3] = {target[0] - m_origin[0], target[1] - m_origin[1],
                         target[2] - m_origin[2]};
    const double e = d[0] * m_east[0] + d[1] * m_east[1] + d[2] * m_east[2];
    const double n = d[0] * m_north[0] + d[1] * m_north[1] + d[2] * m_north[2];
    const double u = d[0] * m_up[0] + d[1] * m_up[1] + d[2] * m_up[2];
    const double horizontal = std::sqrt(e * e + n * n);
    if (!(horizontal > 0.0 || u != 0.0) || !std::isfinite(horizontal) || !std::isfinite(u))
        return;
    double az = std::atan2(e, n) * DegPerRad;
    if (az < 0.0)
        az += 360.0;
    if (az >= 360.0)
        az = 0.0;
    *azimuthDeg = az;
    *elevationDeg = std::atan2(u, horizontal) * DegPerRad;
}

bool observedPosition(const Ephemeris& eph, qint64 receiveMs, const double receiver[3],
                      double xyz[3])
{
    const double sinceReference = double(receiveMs - eph.referenceMs) * 1.0e-3;
    // Travel time from a typical range; each round shrinks its error by the
    // ratio of the satellite's range rate to the speed of light (1e-5), so
    // two rounds are exact to far below a millimetre.
    double travel = 0.075;
    double p[3];
    for (int round = 0; round < 2; ++round) {
        if (!satellitePosition(eph, sinceReference - travel, p))
            return false;
        const double turn = EarthRotationRate * travel;
        const double x = std::cos(turn) * p[0] + std::sin(turn) * p[1];
        const double y = -std::sin(turn) * p[0] + std::cos(turn) * p[1];
        const double dx = x - receiver[0], dy = y - receiver[1], dz = p[2] - receiver[2];
        const double range = std::sqrt(dx * dx + dy * dy + dz * dz);
        if (!std::isfinite(range))
            return false;
        if (round == 1) {
            xyz[0] = x;
            xyz[1] = y;
            xyz[2] = p[2];
            break;
        }
        travel = range / SpeedOfLight;
    }
    return true;
}

} // namespace gnssdemo
