// SPDX-License-Identifier: MIT
#include "SkyColorScale_p.h"

#include <algorithm>
#include <cmath>

SkyColorScale::SkyColorScale()
    : m_stops(defaultStops())
{
    updateColours();
}

QGradientStops SkyColorScale::defaultStops()
{
    // Dark to light and back to dark again toward the top, so that both ends
    // stay apart from the white ground and from each other in grey print.
    return QGradientStops{{0.00, QColor(40, 40, 160)},
                          {0.25, QColor(30, 140, 200)},
                          {0.50, QColor(60, 180, 90)},
                          {0.75, QColor(240, 200, 40)},
                          {1.00, QColor(210, 40, 30)}};
}

bool SkyColorScale::setRange(double min, double max)
{
    if (!(std::isfinite(min) && std::isfinite(max) && min < max))
        return false;
    // The level arithmetic divides by the span; one too wide for a double
    // would make every level NaN.
    if (!std::isfinite(max - min))
        return false;
    m_min = min;
    m_max = max;
    return true;
}

bool SkyColorScale::setStops(const QGradientStops& stops)
{
    if (stops.size() < 2)
        return false;
    for (int i = 0; i < stops.size(); ++i) {
        const double at = stops.at(i).first;
        if (!(at >= 0.0 && at <= 1.0) || !stops.at(i).second.isValid())
            return false;
        if (i > 0 && !(at >= stops.at(i - 1).first))
            return false;
    }
    m_stops = stops;
    updateColours();
    return true;
}

int SkyColorScale::levelOf(double value) const
{
    if (std::isnan(value))
        return -1;
    const double f = (value - m_min) / (m_max - m_min);
    // Compared before any conversion: values far beyond the range (and the
    // infinities) take the end levels.
    if (!(f > 0.0))
        return 0;
    if (f >= 1.0)
        return kLevels - 1;
    return std::min(kLevels - 1, int(f * kLevels));
}

QColor SkyColorScale::colourAt(double fraction) const
{
    const QGradientStops& s = m_stops;
    if (!(fraction > s.first().first))
        return s.first().second;
    if (fraction >= s.last().first)
        return s.last().second;
    int i = 1;
    while (i < s.size() - 1 && s.at(i).first < fraction)
        ++i;
    const double a = s.at(i - 1).first;
    const double b = s.at(i).first;
    const double t = b > a ? (fraction - a) / (b - a) : 1.0;
    const QColor& from = s.at(i - 1).second;
    const QColor& to = s.at(i).second;
    const auto mix = [t](int x, int y) { return int(std::lround(x + (y - x) * t)); };
    return QColor(mix(from.red(), to.red()), mix(from.green(), to.green()),
                  mix(from.blue(), to.blue()), mix(from.alpha(), to.alpha()));
}

void SkyColorScale::updateColours()
{
    for (int level = 0; level < kLevels; ++level)
        m_colours[size_t(level)] = colourAt((level + 0.5) / kLevels).rgba();
}

double SkyColorScale::tickStep(int count) const
{
    const double raw = (m_max - m_min) / std::max(1, count);
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double normal = raw / magnitude;
    const double factor = normal < 1.5 ? 1.0 : (normal < 3.0 ? 2.0 : (normal < 7.0 ? 5.0 : 10.0));
    return factor * magnitude;
}

int SkyColorScale::decimalsFor(double step)
{
    // A step of 0.2 needs one decimal, 0.05 two; whole steps none. The small
    // allowance keeps 0.1, which lies just below a tenth, at one decimal.
    return std::max(0, int(-std::floor(std::log10(step) + 1e-9)));
}

QString SkyColorScale::format(double value) const
{
    const double step = tickStep(4);
    // Zero without its sign: -0.0 reads "-0".
    return QString::number(value == 0.0 ? 0.0 : value, 'f', decimalsFor(step));
}

QVector<SkyColorScale::Label> SkyColorScale::ticks(int count) const
{
    QVector<Label> out;
    const double step = tickStep(count);
    if (!(step > 0.0) || !std::isfinite(step))
        return out;
    const int decimals = decimalsFor(step);
    // Whole multiples of the step, so that a tick at zero is exactly zero.
    const double first = std::ceil(m_min / step - 1e-9);
    const double last = std::floor(m_max / step + 1e-9);
    for (double k = first; k <= last && out.size() < 100; k += 1.0) {
        const double value = k * step;
        out.append(Label{value, QString::number(value == 0.0 ? 0.0 : value, 'f', decimals)});
    }
    return out;
}

QVector<SkyColorScale::Label> SkyColorScale::barLabels(double length, double minGap) const
{
    QVector<Label> out;
    out.append(Label{m_min, format(m_min)});
    out.append(Label{m_max, format(m_max)});
    if (!(length > 0.0))
        return out;
    const double perValue = length / (m_max - m_min);
    for (const Label& tick : ticks()) {
        const double fromMin = (tick.value - m_min) * perValue;
        const double fromMax = (m_max - tick.value) * perValue;
        if (fromMin >= minGap && fromMax >= minGap)
            out.append(tick);
    }
    return out;
}

bool SkyColorScale::operator==(const SkyColorScale& other) const
{
    return m_min == other.m_min && m_max == other.m_max && m_stops == other.m_stops;
}
