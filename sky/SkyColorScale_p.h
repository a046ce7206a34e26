// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYCOLORSCALE_P_H
#define GNSSPLOT_SKYCOLORSCALE_P_H

#include <QColor>
#include <QGradientStops>
#include <QString>
#include <QVector>

#include <array>

/*
    The value-to-colour map of the sky plot, shared by the value-coloured
    tracks, the sky map and the colour bar that explains them.

    A range [min, max] is cut into kLevels equal levels; a value takes the
    level it falls into (values beyond the range take the end levels) and
    the level's colour, the gradient's colour at the level's middle. The
    levels are what the tracks average and what the bar shows, so a colour
    on the plot is always one of the bar's.
*/
class SkyColorScale
{
public:
    static constexpr int kLevels = 64;

    // The default gradient over 0 .. 1.
    SkyColorScale();

    // Refused (false, unchanged) unless both are finite and min < max.
    bool setRange(double min, double max);
    double getMin() const { return m_min; }
    double getMax() const { return m_max; }
    // Refused unless there are at least two stops, every position lies in
    // 0 .. 1, the positions ascend and every colour is valid.
    bool setStops(const QGradientStops& stops);
    const QGradientStops& getStops() const { return m_stops; }
    // The default gradient: deep blue, sky blue, green, yellow, red.
    static QGradientStops defaultStops();

    // The level of \a value: 0 at and below min, kLevels - 1 at and above
    // max; -1 for NaN.
    int levelOf(double value) const;
    // The colour of a level (0 .. kLevels - 1), straight (not premultiplied)
    // ARGB.
    QRgb colourOf(int level) const { return m_colours[size_t(level)]; }
    // The gradient's colour at \a fraction (0 .. 1) of the range, linear
    // between the stops.
    QColor colourAt(double fraction) const;

    // A label of the colour bar: a value and its text.
    struct Label
    {
        double value;
        QString text;
    };
    // Round values inside the range, about \a count of them, 1, 2 or 5 times
    // a power of ten apart, with as many decimals as that step needs.
    QVector<Label> ticks(int count = 4) const;
    // What a bar of \a length pixels shows: its two ends, then the ticks
    // that keep \a minGap pixels from both ends.
    QVector<Label> barLabels(double length, double minGap) const;
    // \a value with the decimals the ticks of this range use.
    QString format(double value) const;

    bool operator==(const SkyColorScale& other) const;
    bool operator!=(const SkyColorScale& other) const { return !(*this == other); }

private:
    double tickStep(int count) const;
    static int decimalsFor(double step);
    void updateColours();

    double m_min = 0.0;
    double m_max = 1.0;
    QGradientStops m_stops;
    std::array<QRgb, kLevels> m_colours{};
};

#endif // GNSSPLOT_SKYCOLORSCALE_P_H
