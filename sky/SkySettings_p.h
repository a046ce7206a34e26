// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYSETTINGS_P_H
#define GNSSPLOT_SKYSETTINGS_P_H

#include "SkyColorScale_p.h"
#include "SkyTrackSet_p.h"
#include "TimeWindow.h"

#include <QString>

/*
    What the host chose for a sky plot, read by all of its items. The view
    owns it; every change bumps the version of what it alters, so that an
    item rebuilds a cache only when its own pixels change: moving the time
    cursor repaints the marks and leaves the tracks' layer alone.
*/
struct SkySettings
{
    // The value axis (0 is key 3) that colours the tracks and fills the
    // sky map; -1 for none.
    int valueIndex = -1;
    bool bTracksShown = true;
    bool bTracksByValue = false;
    QString unit;
    // The colour scale; its range is the host's while bAutoRange is false,
    // else the value axis's limits (see scaleFor()).
    SkyColorScale scale;
    bool bAutoRange = true;

    bool bWindowActive = false;
    TimeWindow window;

    bool bCursor = false;
    double cursorMs = 0.0;

    double maskDegrees = 0.0;  // 0: no mask ring

    bool bMapShown = false;
    int mapStatistic = 0;      // SkyGraphicsView::SkyMapStatistic
    double cellDegrees = 5.0;

    quint64 tracksVersion = 1;  // the tracks' pixels
    quint64 mapVersion = 1;     // the sky map's cells

    // Whether the tracks are coloured by a value that exists.
    bool tracksByValue() const { return bTracksByValue && valueIndex >= 0; }
    // Whether the sky map is drawn.
    bool mapShown() const { return bMapShown && valueIndex >= 0; }
    // Whether the colour bar is drawn: something on the plot is coloured by
    // value.
    bool colourBarShown() const { return tracksByValue() || mapShown(); }
    // Whether a sample at time \a t lies in the window in force.
    bool inWindow(double t) const { return !bWindowActive || window.contains(t); }

    // The scale in force: the host's range, or the limits of the value axis
    // over all tracks (a single value widened by 0.5 each way, no values
    // 0 .. 1).
    SkyColorScale scaleFor(SkyTrackSet& tracks) const
    {
        if (!bAutoRange)
            return scale;
        SkyColorScale automatic = scale;
        double vMin = 0.0;
        double vMax = 1.0;
        if (valueIndex >= 0 && tracks.valueLimits(vMin, vMax) && !(vMin < vMax)) {
            vMin -= 0.5;
            vMax += 0.5;
        }
        if (!automatic.setRange(vMin, vMax))
            automatic.setRange(0.0, 1.0);
        return automatic;
    }
};

#endif // GNSSPLOT_SKYSETTINGS_P_H
