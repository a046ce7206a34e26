// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHGEOMETRY_P_H
#define GNSSPLOT_EPOCHGEOMETRY_P_H

// Epoch-to-pixel arithmetic of the epoch table, kept apart from painting and
// from the widgets so that marks, hit boxes and bar stretches can be checked
// without drawing anything.
//
// Epochs come from the host unchecked and may sit anywhere in the qint64
// range: every difference and sum goes through the helpers below, which never
// overflow. A difference that fits in 64 bits is exact; one that does not falls
// back to the difference of the two values as doubles.

#include <QList>
#include <QPair>
#include <QRect>
#include <QRectF>
#include <QtGlobal>

#include <limits>

/*! Returns \a a - \a b as a double: the exact integer difference when it fits
    in 64 bits, else the difference of the two values converted to double. */
inline double epochDifference(qint64 a, qint64 b)
{
    qint64 d = 0;
    if (!__builtin_sub_overflow(a, b, &d))
        return double(d);
    return double(a) - double(b);
}

/*! Returns \a a + \a b, saturated to the qint64 range. */
inline qint64 epochSaturatedAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

/*! Returns \a a - \a b, saturated to the qint64 range. */
inline qint64 epochSaturatedSub(qint64 a, qint64 b)
{
    qint64 d = 0;
    if (!__builtin_sub_overflow(a, b, &d))
        return d;
    return b < 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

/*! Truncates \a value toward zero into a qint64, saturating values beyond the
    range (infinities included). NaN gives 0; callers that can see NaN check
    for it first. */
qint64 epochTruncate(double value);

/*! Pixels per epoch unit for \a pixels spread over [\a startTime, \a endTime];
    0 when the range is empty or inverted. */
inline double epochScale(double pixels, qint64 startTime, qint64 endTime)
{
    if (endTime <= startTime)
        return 0.0;
    return pixels / epochDifference(endTime, startTime);
}

/*! The x of epoch \a t for a range starting at \a startTime. */
inline double epochToX(qint64 t, qint64 startTime, double scale)
{
    return epochDifference(t, startTime) * scale;
}

/*! Bars: data set i is drawn kEpochBarHeight pixels high from
    y = kEpochBarTop + kEpochBarPitch * i. */
constexpr int kEpochBarTop = 4;
constexpr int kEpochBarPitch = 6;
constexpr int kEpochBarHeight = 4;

/*! The part of the epoch range a bar cell shows. Inactive: the whole range
    [startTime, endTime], mapped with exact integer differences. Active: the
    window [start, end] (epochs, fractional allowed) inside it. */
struct EpochWindow
{
    bool bActive = false;
    double start = 0.0;
    double end = 0.0;
};

/*! Epoch to x over a bar cell: for the whole range, x = (t - startTime) *
    scale with the difference taken in integers; for a window, x = (t -
    window start) * scale in doubles. */
struct EpochMapping
{
    qint64 origin = 0;
    double windowStart = 0.0;
    double scale = 0.0;
    bool bWindow = false;

    double toX(qint64 t) const
    {
        return bWindow ? (double(t) - windowStart) * scale : epochToX(t, origin, scale);
    }
};

/*! The mapping of \a window over \a pixels for the range [\a startTime,
    \a endTime]; its scale is 0 when the range or window is empty. */
inline EpochMapping epochMapping(double pixels, qint64 startTime, qint64 endTime,
                                 const EpochWindow& window)
{
    EpochMapping mapping;
    mapping.origin = startTime;
    if (window.bActive && endTime > startTime) {
        mapping.bWindow = true;
        mapping.windowStart = window.start;
        const double span = window.end - window.start;
        mapping.scale = span > 0.0 ? pixels / span : 0.0;
    } else {
        mapping.scale = epochScale(pixels, startTime, endTime);
    }
    return mapping;
}

/*! The hit box of the erase mark \a mark, (start epoch, length), on a label
    \a height pixels high: x from the mark's start to its end, y from 2 to
    height - 4, as the context menu and the removal test it. */
QRectF epochMarkBox(const QPair<qint64, qint64>& mark, const EpochMapping& mapping, int height);

/*! Turns the drag rectangle \a rect (viewport pixels) into the epoch interval
    of one erase-mark action. \a headGeometry is the legend cell; its
    right() - left() spans [\a startTime, \a endTime]. The start and length are
    truncated toward zero (saturated), then clipped to the range. Returns false,
    leaving \a t0 and \a len untouched, when the range is empty or inverted, the
    cell has no width, or nothing of the interval lies inside the range. */
bool epochEraseInterval(const QRect& rect, const QRect& headGeometry, qint64 startTime,
                        qint64 endTime, qint64& t0, qint64& len);

/*! The same for a legend cell that shows the active \a window of the range:
    right() - left() spans the window, and the interval is clipped to the
    whole epochs inside both the window and the range. An inactive window
    gives exactly epochEraseInterval(). */
bool epochEraseInterval(const QRect& rect, const QRect& headGeometry, qint64 startTime,
                        qint64 endTime, const EpochWindow& window, qint64& t0, qint64& len);

/*! Walks the bar of one data set over [\a startTime, \a endTime] and calls
    \a fill(x1, x2) for every stretch to paint, in order, with x from
    \a mapping: the stretches between consecutive pairs of
    \a ranges (a zero-length stretch widened to one pixel) and the stretch from
    the end of the last pair to \a endTime. A pair that starts before the end
    of the previous one adds no stretch. The walk allocates nothing. */
template <typename Fill>
void forEachEpochBar(const QList<QPair<qint64, qint64>>& ranges, qint64 startTime,
                     qint64 endTime, const EpochMapping& mapping, Fill&& fill)
{
    qint64 t = startTime;
    bool first = true;
    for (const QPair<qint64, qint64>& range : ranges) {
        const qint64 a = range.first;
        if (!first && a >= t) {
            const double x1 = mapping.toX(t);
            double x2 = mapping.toX(a);
            if (x1 >= x2)
                x2 = x1 + 1.0;
            fill(x1, x2);
        }
        first = false;
        t = epochSaturatedAdd(a, range.second);
    }
    if (endTime > t)
        fill(mapping.toX(t), mapping.toX(endTime));
}

#endif // GNSSPLOT_EPOCHGEOMETRY_P_H
