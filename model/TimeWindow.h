// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TIMEWINDOW_H
#define GNSSPLOT_TIMEWINDOW_H

#include "gnssplot_global.h"

/*!
    \class TimeWindow
    \brief A stretch of the time axis, [min, max], and the rules by which the
    user moves it: zoom about a time, pan, fit into the data, the smallest
    span, and equality within a rounding step.

    Times are plain doubles in whatever unit the widgets share; for the curve
    view, the epoch table and the sky plot that is milliseconds since 1970
    (GPST read on the UTC calendar). The class holds no widget and emits
    nothing: every widget that shows a part of the time axis asks it, so that
    they all move alike.

    A default-made window is empty (0 .. 0). A window is valid when both bounds
    are finite and min < max; every operation on an invalid window, or with a
    non-finite argument, returns the window unchanged.
*/
class GNSSPLOT_EXPORT TimeWindow
{
public:
    /*! How close two windows may lie and still be the same, as a share of the
        span: a linked widget's echo comes back off by a rounding step of its
        unit conversion, and answering it would never end. */
    static constexpr double kEchoTolerance = 1e-12;
    /*! The narrowest window, in sample intervals of the data. */
    static constexpr double kMinimumIntervals = 4.0;

    /*! The empty window 0 .. 0. */
    constexpr TimeWindow() = default;
    /*! The window [\a tMin, \a tMax], kept as given (see isValid()). */
    constexpr TimeWindow(double tMin, double tMax)
        : m_min(tMin)
        , m_max(tMax)
    {
    }

    /*! The earlier bound. */
    constexpr double getMin() const { return m_min; }
    /*! The later bound. */
    constexpr double getMax() const { return m_max; }
    /*! max - min; infinite when the bounds are too far apart for a double. */
    constexpr double getSpan() const { return m_max - m_min; }
    /*! Both bounds finite and min < max. */
    bool isValid() const;
    /*! Whether \a t lies in [min, max]. */
    bool contains(double t) const;
    /*! Where \a t lies as a share of the window: 0 at min, 1 at max, outside
        0 .. 1 beyond them. NaN for an invalid window. */
    double fractionOf(double t) const;
    /*! The time at share \a fraction of the window (0 is min, 1 is max). */
    double timeAt(double fraction) const;

    /*! The window \a factor times as wide (below 1 zooms in), in which the
        time \a pivot keeps its share of the window. A window already at or
        below \a minSpan is not narrowed further, and a zoom in stops at
        \a minSpan rather than going below it. Unchanged for an invalid window
        or a factor that is not positive and finite. */
    TimeWindow zoomedAbout(double pivot, double factor, double minSpan = 0.0) const;
    /*! The window moved by \a shift (positive: later). */
    TimeWindow panned(double shift) const;
    /*! The window fitted into \a range: a window at least as wide as the
        range becomes the range; one narrower than \a minSpan grows to it
        about its centre; then it is shifted inside the range. Unchanged when
        either window is invalid. */
    TimeWindow fittedInto(const TimeWindow& range, double minSpan) const;
    /*! Whether the window covers all of \a range (nothing is zoomed). */
    bool covers(const TimeWindow& range) const;
    /*! Whether both bounds lie within \a tolerance times the span of this
        window, or within a few rounding steps of their magnitude, from those
        of \a other. */
    bool fuzzyEquals(const TimeWindow& other, double tolerance = kEchoTolerance) const;

    /*! The narrowest window the user may zoom to inside \a range: kMinimumIntervals
        sample intervals of \a interval (ignored when not positive), never so
        narrow that the doubles around the times run out of steps, and never
        wider than the range. 0 for an invalid range. */
    static double minimumSpan(const TimeWindow& range, double interval);

    /*! Exact equality of both bounds. */
    constexpr bool operator==(const TimeWindow& other) const
    {
        return m_min == other.m_min && m_max == other.m_max;
    }
    /*! Whether either bound differs from that of \a other. */
    constexpr bool operator!=(const TimeWindow& other) const { return !(*this == other); }

private:
    double m_min = 0.0;
    double m_max = 0.0;
};

#endif // GNSSPLOT_TIMEWINDOW_H
