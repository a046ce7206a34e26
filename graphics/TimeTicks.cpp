// SPDX-License-Identifier: MIT
#include "TimeTicks_p.h"

#include "TimeLabeller_p.h"

#include <cmath>

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kMinute = 60 * kSecond;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

// Each step divides a day, so the ticks, counted from 1970-01-01 00:00, are
// the same times on every day.
constexpr qint64 kSteps[] = {
    kSecond,     2 * kSecond,  5 * kSecond,  10 * kSecond, 15 * kSecond, 30 * kSecond,
    kMinute,     2 * kMinute,  5 * kMinute,  10 * kMinute, 15 * kMinute, 30 * kMinute,
    kHour,       2 * kHour,    3 * kHour,    6 * kHour,    12 * kHour,   kDay,
};

// 0001-01-01 00:00:00 and 9999-12-31 23:59:59.999: four-digit years keep the
// date texts one width, and every value in between is exact as a double.
constexpr double kFirstMs = -62135596800000.0;
constexpr double kLastMs = 253402300799999.0;

// Room between two neighbouring labels, pixels.
constexpr double kLabelGap = 8.0;

qint64 ceilDiv(qint64 a, qint64 b)
{
    // b > 0. Division truncates toward zero, which already rounds negative
    // quotients up.
    const qint64 q = a / b;
    return (a % b != 0 && a > 0) ? q + 1 : q;
}

// The finest step whose ticks lie at least `spacing` pixels apart and that
// gives no more than kMaxTimeTicks ticks; 0 when none does.
qint64 chooseStep(double span, double pixelWidth, double spacing)
{
    const double pixelsPerMs = pixelWidth / span;
    const auto fits = [&](double step) {
        return step * pixelsPerMs >= spacing && span / step < double(kMaxTimeTicks - 1);
    };
    for (qint64 step : kSteps) {
        if (fits(double(step)))
            return step;
    }
    // Beyond one day: 2, 5, 10, 20, 50, ... days. The longest window spans
    // under four million days, so the walk ends long before the cap.
    for (qint64 days = 2; days <= 1000000000; days *= 10) {
        const qint64 candidates[3] = {days, days * 5 / 2, days * 5};
        for (qint64 d : candidates) {
            if (fits(double(d) * double(kDay)))
                return d * kDay;
        }
    }
    return 0;
}

} // namespace

QVector<TimeTick> roundTimeTicks(double tMin, double tMax, double pixelWidth, double labelWidth)
{
    QVector<TimeTick> ticks;
    // Written so that NaN fails every test.
    if (!(tMin >= kFirstMs && tMax <= kLastMs && tMin < tMax))
        return ticks;
    if (!(pixelWidth > 0.0 && pixelWidth <= 1e9))
        return ticks;
    if (!(labelWidth >= 1.0))
        labelWidth = 1.0;
    labelWidth = qMin(labelWidth, 1e9);

    const double span = tMax - tMin;
    const qint64 step = chooseStep(span, pixelWidth, labelWidth + kLabelGap);
    if (step <= 0)
        return ticks;

    // Ticks are whole milliseconds: the first at or after tMin, the last at
    // or before tMax. Both bounds are exact integers as doubles.
    const qint64 lo = qint64(std::ceil(tMin));
    const qint64 hi = qint64(std::floor(tMax));
    const bool bSeconds = step < kMinute;
    for (qint64 t = ceilDiv(lo, step) * step; t <= hi && ticks.size() < kMaxTimeTicks;
         t += step) {
        TimeTick tick;
        tick.msecs = t;
        tick.fraction = qBound(0.0, (double(t) - tMin) / span, 1.0);
        tick.text = TimeLabeller::roundTickText(t, bSeconds, tick.bDate);
        ticks.append(tick);
    }
    return ticks;
}
