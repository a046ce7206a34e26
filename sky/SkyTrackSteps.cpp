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
    it, and whether it does can be told without mapping it. Between two
    directions the scene point moves at most |dr| + r0 * |dtheta| (the chord
    is never longer than the arc): the change of radius, plus the anchor's
    radius times the change of azimuth in radians. Scaled to device pixels,
    if that is shorter than the anchor's distance to every edge of its
    pixel, the sample's pixel is the anchor's. The distance keeps a margin
    far above every rounding of the mapping (the series behind the
    directions err below 1e-11 of the radius), so the pixels are those of
    mapping every sample, to the last one.
*/
struct Anchor
{
    bool bSet = false;
    double azimuth = 0.0;
    double elevation = 0.0;
    double radius = 0.0;  // scene pixels
    double inside = 0.0;  // device pixels to the nearest pixel edge
    qint32 c = 0;
    qint32 r = 0;
};

double insideOf(double d)
{
    if (!(std::abs(d) < kSkyDeviceLimit))
        return 0.0;
    const double f = d - std::floor(d);
    return std::min(f, 1.0 - f);
}

} // namespace

void SkyTrackSteps::build(const SkyTrackSource& source, const Key& key)
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
    const double tMin = key.window.getMin();
    const double tMax = key.window.getMax();
    const SkyDeviceMap& map = key.map;
    const double rim = map.projection.radius.rim();
    const double scale = std::max(std::abs(map.m11), std::abs(map.m22));
    const double perDegree = rim / 90.0;
    const double perRadian = 3.14159265358979323846 / 180.0;
    // Far above the mapping's error at this size, far below a pixel.
    const double margin = 1e-6 + 1e-9 * rim * scale;
    const std::vector<qint64>& breaks = source.breaks;
    // The next break, or none; a break at b cuts before sample b + 1.
    size_t nextBreak = 0;
    qint64 cutAt = breaks.empty() ? -1 : breaks.front() + 1;
    bool bLastDrawn = false;  // the last step holds a pixel
    Anchor anchor;
    // One pass: most samples are either not drawn, in a run of such, or
    // in the pixel of the step before, and cost a few comparisons.
    for (qint64 j = 0; j < source.count; ++j) {
        bool bCut = false;
        if (j == cutAt) {
            bCut = true;
            ++nextBreak;
            cutAt = nextBreak < breaks.size() ? breaks[nextBreak] + 1 : -1;
        }
        const double t = times[j];
        const double azimuth = azimuths[j];
        const double elevation = elevations[j];
        bool bDrawn = SkyProjection::isDrawable(azimuth, elevation) && std::isfinite(t);
        if (key.bWindowed)
            bDrawn = bDrawn && t >= tMin && t <= tMax;
        if (key.values)
            bDrawn = bDrawn && j < source.valueCount && std::isfinite(key.values[j]);
        if (!bDrawn) {
            if (bLastDrawn || m_steps.empty())
                m_steps.push_back(SkyStep{j, SkyStep::kGap, 0});
            bLastDrawn = false;
            continue;
        }
        bool bSame = false;
        if (anchor.bSet) {
            const double dr = std::abs(elevation - anchor.elevation) * perDegree;
            const double dtheta = std::abs(azimuth - anchor.azimuth) * perRadian;
            const double moved = (dr + anchor.radius * dtheta) * scale * (1.0 + 1e-9);
            bSame = moved + margin < anchor.inside;
        }
        if (!bSame) {
            double x = 0.0;
            double y = 0.0;
            map.deviceOf(azimuth, elevation, x, y);
            const qint32 c = skyPixelOf(x);
            const qint32 r = skyPixelOf(y);
            bSame = anchor.bSet && c == anchor.c && r == anchor.r;
            anchor = Anchor{true, azimuth, elevation, map.projection.radius.radiusOf(elevation),
                            std::min(insideOf(x), insideOf(y)), c, r};
        }
        // The anchor is the pixel of the last drawn sample.
        if (bLastDrawn && !bCut && bSame)
            continue;
        // A break between two drawn samples: an empty gap keeps the runs
        // apart even when both lie in one pixel.
        if (bLastDrawn && bCut)
            m_steps.push_back(SkyStep{j, SkyStep::kGap, 0});
        m_steps.push_back(SkyStep{j, anchor.c, anchor.r});
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
