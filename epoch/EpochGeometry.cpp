// SPDX-License-Identifier: MIT
#include "EpochGeometry_p.h"

#include <cmath>

qint64 epochTruncate(double value)
{
    if (std::isnan(value))
        return 0;
    // 2^63 is exact as a double; anything at or beyond it cannot be converted
    // without undefined behaviour, and neither can anything below -2^63.
    constexpr double limit = 9223372036854775808.0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return qint64(value);
}

QRectF epochMarkBox(const QPair<qint64, qint64>& mark, const EpochMapping& mapping, int height)
{
    const double x1 = mapping.toX(mark.first);
    const double x2 = mapping.toX(epochSaturatedAdd(mark.first, mark.second));
    return QRectF(x1, 2.0, x2 - x1, double(height - 4) - 2.0);
}

namespace {

// Truncates the interval [start, start + length) to whole epochs and clips it
// to [lo, hi]; false when nothing is left.
bool clipEraseInterval(double start, double length, qint64 lo, qint64 hi, qint64& t0,
                       qint64& len)
{
    if (std::isnan(start) || std::isnan(length))
        return false;
    qint64 markStart = epochTruncate(start);
    qint64 markLength = epochTruncate(length);

    if (markStart < lo) {
        markLength = epochSaturatedAdd(markLength, epochSaturatedSub(markStart, lo));
        markStart = lo;
    }
    if (markLength <= 0 || markStart >= hi)
        return false;
    // Compare against the room left instead of forming markStart + markLength,
    // which may not fit; the room itself saturates for ranges wider than 2^63.
    const qint64 room = epochSaturatedSub(hi, markStart);
    if (markLength > room)
        markLength = room;
    t0 = markStart;
    len = markLength;
    return true;
}

} // namespace

bool epochEraseInterval(const QRect& rect, const QRect& headGeometry, qint64 startTime,
                        qint64 endTime, qint64& t0, qint64& len)
{
    if (endTime <= startTime)
        return false;
    // The legend cell's right() - left() is one pixel short of its width; the
    // marks follow that span, painting follows the full width.
    const double pixels = double(headGeometry.right()) - double(headGeometry.left());
    const double scale = epochScale(pixels, startTime, endTime);
    if (!(scale > 0.0))
        return false;
    const double offset = double(rect.left()) - double(headGeometry.left());
    const double start = double(startTime) + offset / scale;
    const double length = double(rect.width()) / scale;
    return clipEraseInterval(start, length, startTime, endTime, t0, len);
}

bool epochEraseInterval(const QRect& rect, const QRect& headGeometry, qint64 startTime,
                        qint64 endTime, const EpochWindow& window, qint64& t0, qint64& len)
{
    if (!window.bActive)
        return epochEraseInterval(rect, headGeometry, startTime, endTime, t0, len);
    if (endTime <= startTime || !(window.end > window.start))
        return false;
    // The same arithmetic with the window in place of the range, so that a
    // drag over a zoomed bar gives what the same epochs give unzoomed.
    const double pixels = double(headGeometry.right()) - double(headGeometry.left());
    const double scale = pixels / (window.end - window.start);
    if (!(scale > 0.0) || std::isinf(scale))
        return false;
    const double offset = double(rect.left()) - double(headGeometry.left());
    const double start = window.start + offset / scale;
    const double length = double(rect.width()) / scale;
    // Only what the window shows is marked: a drag that starts over the check
    // boxes must not reach epochs left of the window.
    const qint64 lo = qMax(startTime, epochTruncate(std::ceil(window.start)));
    const qint64 hi = qMin(endTime, epochTruncate(std::floor(window.end)));
    return clipEraseInterval(start, length, lo, hi, t0, len);
}
