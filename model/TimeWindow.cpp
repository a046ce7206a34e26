// SPDX-License-Identifier: MIT
#include "TimeWindow.h"

#include <algorithm>
#include <cmath>

bool TimeWindow::isValid() const
{
    return std::isfinite(m_min) && std::isfinite(m_max) && m_min < m_max;
}

bool TimeWindow::contains(double t) const
{
    return t >= m_min && t <= m_max;
}

double TimeWindow::fractionOf(double t) const
{
    if (!isValid())
        return std::nan("");
    return (t - m_min) / getSpan();
}

double TimeWindow::timeAt(double fraction) const
{
    return m_min + fraction * getSpan();
}

TimeWindow TimeWindow::zoomedAbout(double pivot, double factor, double minSpan) const
{
    const double span = getSpan();
    if (!isValid() || !std::isfinite(span) || !std::isfinite(pivot) || !std::isfinite(factor)
        || !(factor > 0.0)) {
        return *this;
    }
    // A pivot beside the window zooms about the nearer end.
    const double share = std::min(std::max((pivot - m_min) / span, 0.0), 1.0);
    const double anchor = m_min + share * span;
    // Stop at the narrowest window instead of letting a later fit grow it
    // about its centre, which would move the time under the cursor.
    if (span * factor < minSpan)
        factor = std::min(1.0, minSpan / span);
    if (factor == 1.0)
        return *this;
    const double newSpan = span * factor;
    const double first = anchor - share * newSpan;
    return TimeWindow(first, first + newSpan);
}

TimeWindow TimeWindow::panned(double shift) const
{
    if (!isValid() || !std::isfinite(shift))
        return *this;
    return TimeWindow(m_min + shift, m_max + shift);
}

TimeWindow TimeWindow::fittedInto(const TimeWindow& range, double minSpan) const
{
    if (!isValid() || !range.isValid())
        return *this;
    const double whole = range.getSpan();
    double span = getSpan();  // may overflow to infinity, which counts as too wide
    if (!(span < whole))
        return range;
    double first = m_min;
    const double narrowest = std::min(std::isfinite(minSpan) ? minSpan : whole, whole);
    if (span < narrowest) {
        first = m_min * 0.5 + m_max * 0.5 - narrowest * 0.5;
        span = narrowest;
    }
    first = std::min(std::max(first, range.m_min), range.m_max - span);
    return TimeWindow(first, std::min(first + span, range.m_max));
}

bool TimeWindow::covers(const TimeWindow& range) const
{
    return m_min <= range.m_min && m_max >= range.m_max;
}

bool TimeWindow::fuzzyEquals(const TimeWindow& other, double tolerance) const
{
    if (*this == other)
        return true;
    // Far from zero a rounding step of the bounds can be larger than the
    // share of a narrow span, so a few steps of the magnitude count too.
    const double magnitude = std::fabs(m_min) + std::fabs(m_max);
    const double slack = std::max(std::fabs(getSpan()) * tolerance, magnitude * 0x1p-48);
    return std::fabs(m_min - other.m_min) <= slack && std::fabs(m_max - other.m_max) <= slack;
}

double TimeWindow::minimumSpan(const TimeWindow& range, double interval)
{
    if (!range.isValid())
        return 0.0;
    const double whole = range.getSpan();
    // 2^-40 of the magnitude is 4096 steps of a double there: far from the
    // resolution limit, and below a millisecond for times of our era.
    const double floor = (std::fabs(range.m_min) + std::fabs(range.m_max)) * 0x1p-40;
    const double byInterval =
        interval > 0.0 && std::isfinite(interval) ? kMinimumIntervals * interval : 0.0;
    return std::min(whole, std::max(byInterval, floor));
}
