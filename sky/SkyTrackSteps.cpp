// SPDX-License-Identifier: MIT
#include "SkyTrackSteps_p.h"

#include <algorithm>
#include <cmath>

bool SkyTrackSteps::Key::operator==(const Key& o) const
{
    return map == o.map && sourceVersion == o.sourceVersion && values == o.values
           && bWindowed == o.bWindowed && (!bWindowed || window == o.window);
}

void SkyTrackSteps::clear()
{
    m_built = false;
    m_steps.clear();
    m_bounds = QRect();
}

namespace {

/*
    The last sample mapped exactly, and how far it lies inside its pixel.

    A sample of a track at 1 Hz mostly lands in the pixel of the one before
    it, and whether it does can be told without mapping it. From the anchor
    (radius r0, azimuth t0) to a sample dr and dt away (radians), x = r sin t
    moves at most |dr| (|sin t0| + |dt|) + r0 (|cos t0| |dt| + dt^2 / 2), and
    y = r cos t likewise with sine and cosine swapped (Taylor's bound on the
    sine's and cosine's change). Scaled to device pixels, if both stay short
    of the anchor's distance to the edges of its pixel across each axis, the
    sample's pixel is the anchor's. Cheaper, and enough for most samples:
    the point moves at most |dr| + r0 |dt| in all (the chord is never longer
    than the arc) against the nearest edge. Each distance keeps a margin far above
    every rounding of the mapping (the series behind the directions err
    below 1e-11 of the radius), so the pixels are those of mapping every
    sample, to the last one.
*/
struct Anchor
{
    bool bSet = false;
    double azimuth = 0.0;
    double elevation = 0.0;
    double radius = 0.0;   // scene pixels
    double east = 0.0;     // |sine| of the azimuth
    double north = 0.0;    // |cosine| of the azimuth
    double insideX = 0.0;  // device pixels to the nearer left or right edge
    double insideY = 0.0;  // device pixels to the nearer top or bottom edge
    double inside = 0.0;   // the nearer of the two
    qint32 c = 0;
    qint32 r = 0;
};

// How far the device coordinate \a d lies inside its pixel \a p (its
// floor), from the nearer edge; 0 where the coordinate saturated.
double insideOf(double d, qint32 p)
{
    if (!(std::abs(d) < kSkyDeviceLimit))
        return 0.0;
    const double f = d - double(p);
    return std::min(f, 1.0 - f);
}

} // namespace

void SkyTrackSteps::build(const SkyTrackSource& source, const Key& key)
{
    // The loop is made once per kind of key, so that the tests a key does
    // not need cost nothing per sample.
    if (key.bWindowed)
        key.values ? buildAs<true, true>(source, key) : buildAs<true, false>(source, key);
    else
        key.values ? buildAs<false, true>(source, key) : buildAs<false, false>(source, key);
}

template <bool bWindowed, bool bValues>
void SkyTrackSteps::buildAs(const SkyTrackSource& source, const Key& key)
{
    const size_t previous = m_steps.size();
    m_steps.clear();
    m_steps.reserve(previous);
    m_key = key;
    m_built = true;
    qint32 left = INT_MAX;
    qint32 top = INT_MAX;
    qint32 right = INT_MIN;
    qint32 bottom = INT_MIN;

    const double* times = source.times;
    const double* azimuths = source.azimuths;
    const double* elevations = source.elevations;
    const double* values = key.values;
    const qint64 valueCount = source.valueCount;
    const double tMin = key.window.getMin();
    const double tMax = key.window.getMax();
    const auto drawn = [&](qint64 j) {
        // The elevation first: it fails for every sample below the horizon.
        bool bDrawn = SkyRadiusMap::isInSky(elevations[j])
                      && SkyAzimuthMap::isOnCircle(azimuths[j]) && std::isfinite(times[j]);
        if (bWindowed)
            bDrawn = bDrawn && times[j] >= tMin && times[j] <= tMax;
        if (bValues)
            bDrawn = bDrawn && j < valueCount && std::isfinite(values[j]);
        return bDrawn;
    };

    const SkyDeviceMap& map = key.map;
    const double rim = map.projection.radius.rim();
    const double scale = std::max(std::abs(map.m11), std::abs(map.m22)) * (1.0 + 1e-9);
    // A little more than the scale, for the roundings of the bound itself.
    const double scaleX = std::abs(map.m11) * (1.0 + 1e-9);
    const double scaleY = std::abs(map.m22) * (1.0 + 1e-9);
    const double perDegree = rim / 90.0;
    const double perRadian = 3.14159265358979323846 / 180.0;
    // Far above the mapping's error at this size, far below a pixel.
    const double margin = 1e-6 + 1e-9 * rim * scale;
    const std::vector<qint64>& breaks = source.breaks;
    size_t nextBreak = 0;
    bool bLastDrawn = false;  // the last step holds a pixel
    Anchor anchor;
    qint64 j = 0;
    while (j < source.count) {
        if (!drawn(j)) {
            if (bLastDrawn || m_steps.empty())
                m_steps.push_back(SkyStep{j, SkyStep::kGap, 0});
            bLastDrawn = false;
            // Below the horizon a track is a long run of such samples.
            for (++j; j < source.count && !drawn(j); ++j) {
            }
            continue;
        }
        // A break at j - 1 ends the run there.
        while (nextBreak < breaks.size() && breaks[nextBreak] < j - 1)
            ++nextBreak;
        const bool bCut = nextBreak < breaks.size() && breaks[nextBreak] == j - 1;
        const double azimuth = azimuths[j];
        const double elevation = elevations[j];
        bool bSame = false;
        if (anchor.bSet) {
            const double dr = std::abs(elevation - anchor.elevation) * perDegree;
            const double dt = std::abs(azimuth - anchor.azimuth) * perRadian;
            // First the plain distance, which settles most samples; then
            // each axis on its own, which settles a track running along an
            // edge of its pixel.
            bSame = (dr + anchor.radius * dt) * scale + margin < anchor.inside;
            if (!bSame) {
                const double bend = anchor.radius * dt * dt * 0.5;
                const double movedX =
                    (dr * (anchor.east + dt) + anchor.radius * anchor.north * dt + bend) * scaleX;
                const double movedY =
                    (dr * (anchor.north + dt) + anchor.radius * anchor.east * dt + bend) * scaleY;
                bSame = movedX + margin < anchor.insideX && movedY + margin < anchor.insideY;
            }
        }
        if (!bSame) {
            double east = 0.0;
            double north = 0.0;
            double x = 0.0;
            double y = 0.0;
            map.deviceOf(azimuth, elevation, x, y, east, north);
            const qint32 c = skyPixelOf(x);
            const qint32 r = skyPixelOf(y);
            bSame = anchor.bSet && c == anchor.c && r == anchor.r;
            anchor.bSet = true;
            anchor.azimuth = azimuth;
            anchor.elevation = elevation;
            anchor.radius = map.projection.radius.radiusOf(elevation);
            anchor.east = std::abs(east);
            anchor.north = std::abs(north);
            anchor.insideX = insideOf(x, c);
            anchor.insideY = insideOf(y, r);
            anchor.inside = std::min(anchor.insideX, anchor.insideY);
            anchor.c = c;
            anchor.r = r;
        }
        ++j;
        // The anchor holds the pixel of the last drawn sample.
        if (bLastDrawn && !bCut && bSame)
            continue;
        // A break between two drawn samples: an empty gap keeps the runs
        // apart even when both lie in one pixel.
        if (bLastDrawn && bCut)
            m_steps.push_back(SkyStep{j - 1, SkyStep::kGap, 0});
        m_steps.push_back(SkyStep{j - 1, anchor.c, anchor.r});
        bLastDrawn = true;
        left = std::min(left, anchor.c);
        right = std::max(right, anchor.c);
        top = std::min(top, anchor.r);
        bottom = std::max(bottom, anchor.r);
    }
    m_bounds = left <= right ? QRect(QPoint(left, top), QPoint(right, bottom)) : QRect();
}

size_t SkyTrackSteps::stepOf(qint64 j) const
{
    const auto after = std::upper_bound(m_steps.begin(), m_steps.end(), j,
                                        [](qint64 v, const SkyStep& s) { return v < s.first; });
    return after == m_steps.begin() ? 0 : size_t(after - m_steps.begin()) - 1;
}

bool SkyTrackSteps::spanOf(qint64 first, qint64 last, SkyStepSpan* span) const
{
    if (m_steps.empty() || first > last)
        return false;
    span->s0 = stepOf(first);
    span->s1 = stepOf(last);
    span->firstSample = first;
    span->lastSample = last;
    return true;
}
