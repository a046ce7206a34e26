// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TIMETICKS_P_H
#define GNSSPLOT_TIMETICKS_P_H

// Tick positions on round times of day for a time axis in milliseconds since
// 1970-01-01 00:00:00 on the UTC calendar (no leap seconds, as plot time is
// read). Pure arithmetic: no fonts, no painting, so it can be checked alone.

#include <QString>
#include <QVector>
#include <QtGlobal>

/*! One tick of a time axis. */
struct TimeTick
{
    /*! Position along the window, (msecs - tMin) / (tMax - tMin), 0 to 1. */
    double fraction = 0.0;
    /*! The tick's time, milliseconds since 1970 (UTC calendar). */
    qint64 msecs = 0;
    /*! "HH:mm:ss" for steps below one minute, "HH:mm" for steps of whole
        minutes and hours; a tick at midnight reads the date "yyyy/MM/dd"
        instead, so a window that crosses midnight names the new day there. */
    QString text;
    /*! True when text is a date (the tick lies at 00:00:00). */
    bool bDate = false;
};

/*! The most ticks roundTimeTicks() ever returns. */
constexpr int kMaxTimeTicks = 64;

/*! Returns the ticks of the window [\a tMin, \a tMax] (milliseconds since
    1970) drawn \a pixelWidth pixels wide, in ascending time, on round times
    of day: the finest step of 1, 2, 5, 10, 15, 30 s, 1, 2, 5, 10, 15, 30 min,
    1, 2, 3, 6, 12 h or 1 day whose ticks lie at least \a labelWidth + 8 pixels
    apart, so that labels of that width centred on their ticks never touch.
    Windows too long for daily ticks step by 2, 5, 10, 20, 50, ... days.
    \a labelWidth should be the width of the widest text ("yyyy/MM/dd").

    Every step divides a day, so the ticks fall on the same times every day
    and midnight is a tick whenever the window contains it.

    Returns no ticks when either bound is not finite, tMin is not below tMax,
    a bound lies outside the years 1 to 9999, or \a pixelWidth is not a
    positive finite number; never more than kMaxTimeTicks. A \a labelWidth
    below 1 (or NaN) counts as 1. */
QVector<TimeTick> roundTimeTicks(double tMin, double tMax, double pixelWidth, double labelWidth);

#endif // GNSSPLOT_TIMETICKS_P_H
