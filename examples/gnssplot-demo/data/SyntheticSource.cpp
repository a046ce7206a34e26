// SPDX-License-Identifier: MIT
#include "SyntheticSource.h"

#include <algorithm>
#include <cmath>

namespace gnssdemo {

namespace {

constexpr int DaySeconds = 86400;
constexpr double Pi = 3.14159265358979323846;
constexpr double EarthRadius = 6371e3;

// splitmix64: tiny, fast and identical on every platform, unlike the
// standard distributions.
struct Random
{
    quint64 state;

    quint64 next()
    {
        quint64 z = (state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    double uniform() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }
    int range(int lo, int hi) { return lo + int(next() % quint64(hi - lo + 1)); }
    double between(double lo, double hi) { return lo + (hi - lo) * uniform(); }
    // Sum of four uniforms, scaled to unit variance: close enough to a
    // normal distribution for noise, and much cheaper.
    double gauss()
    {
        return (uniform() + uniform() + uniform() + uniform() - 2.0) * 1.7320508075688772;
    }
};

struct SignalPlan
{
    int band;
    char digit;
    const char* code;
    const char* phase;
};

enum class Orbit { Medium, Inclined, Geostationary };

Orbit orbitOf(char system, int prn)
{
    if (system == 'C') {
        if (prn <= 5)
            return Orbit::Geostationary;
        if ((prn >= 6 && prn <= 10) || prn == 13 || prn == 16 || (prn >= 38 && prn <= 40))
            return Orbit::Inclined;
    }
    if (system == 'J')
        return prn == 7 ? Orbit::Geostationary : Orbit::Inclined;
    return Orbit::Medium;
}

int signalsOf(char system, int prn, SignalPlan plan[3])
{
    switch (system) {
    case 'G':
        plan[0] = {BandL1, '1', "C1C", "L1C"};
        plan[1] = {BandL2, '2', "C2W", "L2W"};
        plan[2] = {BandL5, '5', "C5Q", "L5Q"};
        return prn % 3 == 1 ? 2 : 3;
    case 'R':
        plan[0] = {BandL1, '1', "C1C", "L1C"};
        plan[1] = {BandL2, '2', "C2P", "L2P"};
        plan[2] = {BandL5, '3', "C3Q", "L3Q"};
        return prn % 6 == 0 ? 3 : 2;
    case 'E':
        plan[0] = {BandL1, '1', "C1C", "L1C"};
        plan[1] = {BandL5, '5', "C5Q", "L5Q"};
        plan[2] = {BandE5b, '7', "C7Q", "L7Q"};
        return 3;
    case 'C':
        plan[0] = {BandL1, '2', "C2I", "L2I"};
        if (prn <= 18) {
            plan[1] = {BandL2, '7', "C7I", "L7I"};
            plan[2] = {BandL5, '6', "C6I", "L6I"};
            return prn % 2 == 0 ? 3 : 2;
        }
        plan[1] = {BandL5, '6', "C6I", "L6I"};
        plan[2] = {BandE5b, '5', "C5P", "L5P"};
        return 3;
    default: // QZSS
        plan[0] = {BandL1, '1', "C1C", "L1C"};
        plan[1] = {BandL2, '2', "C2L", "L2L"};
        plan[2] = {BandL5, '5', "C5Q", "L5Q"};
        return 3;
    }
}

struct Pass
{
    int start;
    int length;
    double maxElevation; // degrees
};

std::vector<Pass> passesOf(Orbit orbit, Random& rng)
{
    std::vector<Pass> passes;
    if (orbit == Orbit::Geostationary) {
        passes.push_back({0, DaySeconds, rng.between(25.0, 50.0)});
    } else if (orbit == Orbit::Inclined) {
        const int length = rng.range(10 * 3600, 18 * 3600);
        passes.push_back({rng.range(0, DaySeconds - length), length, rng.between(40.0, 85.0)});
    } else {
        // Passes land in separate slots of the day so they never overlap.
        const int count = rng.range(1, 2) + (rng.range(0, 3) == 0 ? 1 : 0);
        const int slot = DaySeconds / count;
        for (int k = 0; k < count; ++k) {
            const int length = std::min(rng.range(9000, 21600), slot - 60);
            const int start = k * slot + rng.range(0, slot - length);
            passes.push_back({start, length, rng.between(20.0, 88.0)});
        }
    }
    return passes;
}

} // namespace

SyntheticSource::SyntheticSource(quint64 seed) : m_seed(seed)
{
    const qint64 dayStart = gpstMilliseconds(2024, 7, 27, 0, 0, 0.0);
    m_epochs.resize(DaySeconds);
    for (int i = 0; i < DaySeconds; ++i)
        m_epochs[size_t(i)] = dayStart + qint64(i) * 1000;

    const struct { char system; int count; } systems[] = {
        {'C', 46}, {'E', 36}, {'G', 32}, {'J', 7}, {'R', 24}}; // ascending names
    for (const auto& s : systems)
        for (int prn = 1; prn <= s.count; ++prn)
            m_satellites.push_back({s.system, prn, QStringLiteral("%1%2").arg(QLatin1Char(s.system))
                                                     .arg(prn, 2, 10, QLatin1Char('0'))});

    // Vertical ionospheric delay on L1: a night floor and a daytime bump.
    m_verticalIono.resize(DaySeconds);
    for (int t = 0; t < DaySeconds; ++t) {
        const double day = std::sin(2.0 * Pi * (t - 6 * 3600) / DaySeconds);
        m_verticalIono[size_t(t)] = 1.5 + 4.0 * std::max(0.0, day) * std::max(0.0, day);
    }
}

QString SyntheticSource::description() const
{
    return QStringLiteral("Synthetic GPST day 2024-07-27, 1 Hz, seed %1").arg(m_seed);
}

QString SyntheticSource::satelliteName(int index) const
{
    if (index < 0 || size_t(index) >= m_satellites.size())
        return QString();
    return m_satellites[size_t(index)].name;
}

bool SyntheticSource::satellite(int index, SatelliteObservations& out) const
{
    if (index < 0 || size_t(index) >= m_satellites.size()) {
        out.clear();
        return false;
    }
    const Satellite& sat = m_satellites[size_t(index)];
    Random rng{m_seed * 0x100000001B3ULL ^ (quint64(quint8(sat.system)) << 8) ^ quint64(sat.prn)};
    rng.next();

    out.name = sat.name;
    out.system = sat.system;
    out.prn = sat.prn;
    out.channelOrigin = ChannelOrigin::NotGlonass;
    out.glonassChannel = 0;
    if (sat.system == 'R') {
        out.channelOrigin = ChannelOrigin::Default;
        defaultGlonassChannel(sat.prn, &out.glonassChannel);
    }
    out.record.assign(DaySeconds, 0);
    for (SignalSeries& s : out.bands)
        s.clear();

    SignalPlan plan[3];
    const int signalCount = signalsOf(sat.system, sat.prn, plan);
    double lambda[3];
    double ionoScale[3];
    for (int k = 0; k < signalCount; ++k) {
        SignalSeries& s = out.bands[plan[k].band];
        s.codeType = QLatin1String(plan[k].code);
        s.phaseType = QLatin1String(plan[k].phase);
        s.snrType = QLatin1Char('S') + s.codeType.mid(1);
        s.frequencyHz = carrierFrequency(sat.system, plan[k].digit, out.glonassChannel, 3.04);
        s.reset(DaySeconds);
        lambda[k] = SpeedOfLight / s.frequencyHz;
        ionoScale[k] = (1575.42e6 / s.frequencyHz) * (1575.42e6 / s.frequencyHz);
    }

    const Orbit orbit = orbitOf(sat.system, sat.prn);
    const double orbitRadius = orbit == Orbit::Medium ? 26560e3 : 42164e3;
    for (const Pass& pass : passesOf(orbit, rng)) {
        // Per pass: ambiguities, multipath oscillators and the events.
        double ambiguity[3];
        double mpSin[3], mpCos[3], mpStepSin[3], mpStepCos[3];
        for (int k = 0; k < signalCount; ++k) {
            ambiguity[k] = double(rng.range(-200000, 200000));
            const double period = rng.between(180.0, 900.0);
            const double start = rng.between(0.0, 2.0 * Pi);
            mpSin[k] = std::sin(start);
            mpCos[k] = std::cos(start);
            mpStepSin[k] = std::sin(2.0 * Pi / period);
            mpStepCos[k] = std::cos(2.0 * Pi / period);
        }
        struct Event { int at; int length; int kind; int signal; double cycles; };
        std::vector<Event> events; // kind 0 gap, 1 code dropout, 2 slip with LLI, 3 silent slip
        const int gaps = rng.range(0, 2);
        for (int g = 0; g < gaps; ++g)
            events.push_back({rng.range(600, std::max(601, pass.length - 600)),
                              rng.range(3, 120), 0, 0, 0.0});
        if (rng.range(0, 9) < 3)
            events.push_back({rng.range(300, std::max(301, pass.length - 900)),
                              rng.range(30, 300), 1, 1, 0.0});
        const int slips = rng.range(0, 3);
        for (int j = 0; j < slips; ++j) {
            const int magnitude = rng.range(1, 30);
            events.push_back({rng.range(60, std::max(61, pass.length - 60)), 1,
                              rng.range(0, 3) == 0 ? 3 : 2, rng.range(0, signalCount - 1),
                              double(rng.range(0, 1) ? magnitude : -magnitude)});
        }

        const double span = pass.maxElevation - 5.0;
        const double wobblePeriod = rng.between(20000.0, 80000.0);
        // sin(pi * j / length) by rotation, one multiply-add pair per epoch
        // instead of a sine; drift over a day is far below a microdegree.
        double arcSin = 0.0;
        double arcCos = 1.0;
        const double arcStepSin = std::sin(Pi / pass.length);
        const double arcStepCos = std::cos(Pi / pass.length);
        for (int j = 0; j < pass.length; ++j) {
            const double arcNow = arcSin;
            const double nextSin = arcSin * arcStepCos + arcCos * arcStepSin;
            arcCos = arcCos * arcStepCos - arcSin * arcStepSin;
            arcSin = nextSin;
            const int t = pass.start + j;
            bool inGap = false;
            bool codeOut = false;
            for (Event& e : events) {
                if (j >= e.at && j < e.at + e.length) {
                    inGap = inGap || e.kind == 0;
                    codeOut = codeOut || e.kind == 1;
                }
                if ((e.kind == 2 || e.kind == 3) && j == e.at) {
                    ambiguity[e.signal] += e.cycles;
                    if (e.kind == 2)
                        out.bands[plan[e.signal].band].lli[size_t(t)] |= 1;
                }
            }
            // Advance the multipath oscillators also across gaps.
            for (int k = 0; k < signalCount; ++k) {
                const double s = mpSin[k] * mpStepCos[k] + mpCos[k] * mpStepSin[k];
                mpCos[k] = mpCos[k] * mpStepCos[k] - mpSin[k] * mpStepSin[k];
                mpSin[k] = s;
            }
            if (inGap)
                continue;
            const double elevation = orbit == Orbit::Geostationary
                ? (pass.maxElevation + std::sin(2.0 * Pi * t / wobblePeriod)) * Pi / 180.0
                : (5.0 + span * arcNow) * Pi / 180.0;
            const double sinE = std::sin(elevation);
            const double cosE = std::cos(elevation);
            const double range = std::sqrt(orbitRadius * orbitRadius
                                           - EarthRadius * EarthRadius * cosE * cosE)
                                 - EarthRadius * sinE;
            const double slant = m_verticalIono[size_t(t)]
                                 / std::sqrt(1.0 - 0.81 * cosE * cosE);
            const double low = 1.0 - sinE;
            const double mpAmplitude = 0.1 + 1.4 * low * low * low;
            const double codeNoise = 0.05 + 0.35 * low * low;
            out.record[size_t(t)] = 1;
            for (int k = 0; k < signalCount; ++k) {
                if (k == 2 && elevation < 12.0 * Pi / 180.0)
                    continue;
                SignalSeries& s = out.bands[plan[k].band];
                const double iono = slant * ionoScale[k];
                if (!(codeOut && k == 1))
                    s.pseudorange[size_t(t)] = range + iono + mpAmplitude * mpSin[k]
                                               + codeNoise * rng.gauss();
                s.phase[size_t(t)] = (range - iono) / lambda[k] + ambiguity[k]
                                     + 0.003 * rng.gauss();
                // Stronger high in the sky, weaker on the later signals, and
                // fading with the multipath; no random draw, so that the
                // other values stay those of earlier versions.
                const double snr = 30.0 + 20.0 * sinE - 2.0 * k + 1.5 * mpSin[k];
                s.snr[size_t(t)] = std::round(snr * 4.0) / 4.0;
            }
        }
    }
    return true;
}

} // namespace gnssdemo
