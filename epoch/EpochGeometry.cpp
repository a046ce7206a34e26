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

QRectF epochMarkBox(const QPair<qint64, qint64>& mark, qint64 startTime, double scale,
                    int height)
{
    const double x1 = epochToX(mark.first, startTime, scale);
    const double x2 = epochToX(epochSaturatedAdd(mark.first, mark.second), startTime, scale);
    return QRectF(x1, 2.0, x2 - x1, double(height - 4) - 2.0);
}

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
    if (std::isnan(start) || std::isnan(length))
        return false;
    qint64 markStart = epochTruncate(start);
    qint64 markLength = epochTruncate(length);

    if (markStart < startTime) {
        markLength = epochSaturatedAdd(markLength, epochSaturatedSub(markStart, startTime));
        markStart = startTime;
    }
    if (markLength <= 0 || markStart >= endTime)
        return false;
    // Compare against the room left instead of forming markStart + markLength,
    // which may not fit; the room itself saturates for ranges wider than 2^63.
    const qint64 room = epochSaturatedSub(endTime, markStart);
    if (markLength > room)
        markLength = room;
    t0 = markStart;
    len = markLength;
    return true;
}
