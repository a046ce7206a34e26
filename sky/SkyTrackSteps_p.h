// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYTRACKSTEPS_P_H
#define GNSSPLOT_SKYTRACKSTEPS_P_H

#include "SkyScaleMap_p.h"
#include "SkyTrackSet_p.h"
#include "TimeWindow.h"

#include <QRect>

#include <climits>
#include <vector>

// A direction to its device pixel: the scene point of the scale maps, then
// the painter's scale and offset, floored.
struct SkyDeviceMap
{
    SkyProjection projection;
    double m11 = 1.0;
    double m22 = 1.0;
    double dx = 0.0;
    double dy = 0.0;

    // The device coordinates of a drawable direction, before flooring, and
    // the azimuth's direction (its sine and cosine).
    void deviceOf(double azimuth, double elevation, double& x, double& y, double& east,
                  double& north) const
    {
        double sx = 0.0;
        double sy = 0.0;
        projection.toScene(azimuth, elevation, sx, sy, east, north);
        x = skyDeviceCoordinate(m11, dx, sx);
        y = skyDeviceCoordinate(m22, dy, sy);
    }
    void deviceOf(double azimuth, double elevation, double& x, double& y) const
    {
        double east = 0.0;
        double north = 0.0;
        deviceOf(azimuth, elevation, x, y, east, north);
    }
    void pixelOf(double azimuth, double elevation, qint32& c, qint32& r) const
    {
        double x = 0.0;
        double y = 0.0;
        deviceOf(azimuth, elevation, x, y);
        c = skyPixelOf(x);
        r = skyPixelOf(y);
    }
    bool operator==(const SkyDeviceMap& o) const
    {
        return projection.cx == o.projection.cx && projection.cy == o.projection.cy
               && projection.radius.rim() == o.projection.radius.rim() && m11 == o.m11
               && m22 == o.m22 && dx == o.dx && dy == o.dy;
    }
};

// Consecutive samples of a track that share a device pixel, as one entry:
// the first sample and the pixel (c == kGap for samples that are not drawn).
struct SkyStep
{
    static constexpr qint32 kGap = INT_MIN;
    qint64 first;
    qint32 c;
    qint32 r;
};

// The visible part of a track: samples firstSample .. lastSample, which lie
// in steps s0 .. s1.
struct SkyStepSpan
{
    size_t s0 = 0;
    size_t s1 = 0;
    qint64 firstSample = 0;
    qint64 lastSample = -1;
};

/*
    A track mapped to device pixels once and kept as steps.

    Drawing a track with the plot's line rule only ever looks at the pixels
    its samples pass through in turn: a sample in the pixel of the one
    before adds nothing. So a track is mapped once per picture size and
    kept as the sequence of pixels it visits, with the first sample of each,
    cut where samples are not drawn and at breaks; a day at 1 Hz visits a
    few thousand pixels. Showing another time window then walks the steps of
    its samples, mapping nothing, and the hover search looks at the steps
    near the cursor.
*/
class SkyTrackSteps
{
public:
    // What the steps depend on besides the samples.
    struct Key
    {
        SkyDeviceMap map;
        quint64 sourceVersion = 0;
        const double* values = nullptr;  // only while values must be finite
        // Only for times out of order: the window is then applied sample by
        // sample while mapping.
        bool bWindowed = false;
        TimeWindow window;
        bool operator==(const Key& o) const;
    };

    // Maps \a source for \a key. Runs on any thread; reads only the source.
    void build(const SkyTrackSource& source, const Key& key);
    bool isBuiltFor(const Key& key) const { return m_built && m_key == key; }
    void clear();
    const std::vector<SkyStep>& steps() const { return m_steps; }
    // The device pixels of every drawn step; empty when none is drawn.
    QRect bounds() const { return m_bounds; }
    // The step that sample \a j lies in.
    size_t stepOf(qint64 j) const;
    // The span of the samples first .. last; false when that is empty.
    bool spanOf(qint64 first, qint64 last, SkyStepSpan* span) const;

    // Calls runStart(c, r, sample) for the first pixel of every run in the
    // span and segment(c, r, sample) for each pixel after it, with the
    // sample that enters it.
    template <class RunStart, class Segment>
    void walk(const SkyStepSpan& span, RunStart&& runStart, Segment&& segment) const
    {
        bool bInRun = false;
        for (size_t s = span.s0; s <= span.s1 && s < m_steps.size(); ++s) {
            const SkyStep& step = m_steps[s];
            if (step.c == SkyStep::kGap) {
                bInRun = false;
                continue;
            }
            const qint64 sample = step.first < span.firstSample ? span.firstSample : step.first;
            if (bInRun) {
                segment(step.c, step.r, sample);
            } else {
                runStart(step.c, step.r, sample);
                bInRun = true;
            }
        }
    }

    // Bytes held.
    size_t memory() const { return m_steps.capacity() * sizeof(SkyStep); }

private:
    template <bool bWindowed, bool bValues>
    void buildAs(const SkyTrackSource& source, const Key& key);

    Key m_key;
    bool m_built = false;
    std::vector<SkyStep> m_steps;
    QRect m_bounds;
};

#endif // GNSSPLOT_SKYTRACKSTEPS_P_H
