// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYRASTER_P_H
#define GNSSPLOT_SKYRASTER_P_H

#include "SkyColorScale_p.h"
#include "SkyTrackSteps_p.h"

#include <QImage>
#include <QPoint>

#include <array>
#include <memory>
#include <vector>

/*
    Draws tracks into a layer with the curve plot's density raster: its line
    rule on device pixels, its crossing counter and its n-fold blends
    (graphics/CurveRaster_p.h). This file is the sky plot's only user of
    that interface.

    A track in one colour is counted and blended exactly as a dense curve
    is: a pixel crossed n times by the track takes the colour blended n
    times over transparent, and is then composed over the tracks before it.

    A track coloured by value follows the same rule with a colour per
    crossing: each pixel the rule sets for the segment into a sample, and
    the first pixel of a run, carries that sample's level (SkyColorScale).
    A pixel crossed n times by the track takes the mean of their levels,
    rounded half up, blended n times. The counter only counts, so the sum
    of the levels is counted bit by bit: one pass counts every crossing and
    one pass per bit of the level counts the crossings whose level has that
    bit set; the pixels of a bit's pass are a subset of the first pass's and
    come in the same order.
*/
class SkyRaster
{
public:
    SkyRaster();
    ~SkyRaster();

    // Starts drawing into \a layer, whose pixel (0, 0) is the device pixel
    // \a origin. The layer is not cleared.
    void begin(QImage* layer, const QPoint& origin);
    // One track in \a colour (straight ARGB).
    void drawTrack(const SkyTrackSteps& steps, const SkyStepSpan& span, QRgb colour);
    // One track coloured by the level of each sample's value under \a scale.
    void drawTrackByLevel(const SkyTrackSteps& steps, const SkyStepSpan& span,
                          const SkyTrackSource& source, const SkyColorScale& scale);

private:
    struct Counted
    {
        qint32 col;
        qint32 row;
        quint32 n;
        quint32 levelSum;
    };
    class Counters;
    QRect clipped(const SkyTrackSteps& steps) const;
    void updateLevelTables(const SkyColorScale& scale);

    QImage* m_layer = nullptr;
    QPoint m_origin;
    std::unique_ptr<Counters> m_counters;
    std::vector<Counted> m_counted;
    std::vector<quint8> m_levels;
    std::array<QRgb, SkyColorScale::kLevels> m_tableColours{};
    bool m_tablesMade = false;
};

#endif // GNSSPLOT_SKYRASTER_P_H
