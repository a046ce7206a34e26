// SPDX-License-Identifier: MIT
#include "ObservationData.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace gnssdemo {

QString bandName(int band)
{
    switch (band) {
    case BandL1: return QStringLiteral("L1/G1/B1/E1/J1");
    case BandL2: return QStringLiteral("L2/G2/B2/J2");
    case BandL5: return QStringLiteral("L5/G3/B3/E5a/J5");
    case BandE5b: return QStringLiteral("E5b/B2a");
    default: return QString();
    }
}

bool SignalSeries::hasObservation(size_t i) const
{
    return i < pseudorange.size() && (!std::isnan(pseudorange[i]) || !std::isnan(phase[i]));
}

void SignalSeries::reset(size_t epochs)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    pseudorange.assign(epochs, nan);
    phase.assign(epochs, nan);
    lli.assign(epochs, 0);
    snr.assign(epochs, nan);
}

void SignalSeries::clear()
{
    codeType.clear();
    phaseType.clear();
    snrType.clear();
    frequencyHz = 0.0;
    pseudorange.clear();
    phase.clear();
    lli.clear();
    snr.clear();
}

qint64 SatelliteObservations::recordCount() const
{
    return std::count(record.begin(), record.end(), quint8(1));
}

int SatelliteObservations::observedBandCount() const
{
    int n = 0;
    for (const SignalSeries& s : bands)
        n += s.isEmpty() ? 0 : 1;
    return n;
}

void SatelliteObservations::clear()
{
    name.clear();
    system = 0;
    prn = 0;
    glonassChannel = 0;
    channelOrigin = ChannelOrigin::NotGlonass;
    record.clear();
    for (SignalSeries& s : bands)
        s.clear();
}

ObservationSource::~ObservationSource() = default;

ReadStop ObservationSource::readStop() const
{
    return ReadStop();
}

MemoryObservationSource::MemoryObservationSource(QString description,
                                                 std::vector<qint64> epochs, qint64 intervalMs,
                                                 std::vector<SatelliteObservations> satellites)
    : m_description(std::move(description)),
      m_epochs(std::move(epochs)),
      m_intervalMs(intervalMs > 0 ? intervalMs : 1000),
      m_satellites(std::move(satellites))
{
    std::sort(m_satellites.begin(), m_satellites.end(),
              [](const SatelliteObservations& a, const SatelliteObservations& b) {
                  return a.name < b.name;
              });
}

QString MemoryObservationSource::satelliteName(int index) const
{
    const SatelliteObservations* s = satelliteAt(index);
    return s ? s->name : QString();
}

bool MemoryObservationSource::satellite(int index, SatelliteObservations& out) const
{
    const SatelliteObservations* s = satelliteAt(index);
    if (!s) {
        out.clear();
        return false;
    }
    out = *s;
    return true;
}

const SatelliteObservations* MemoryObservationSource::satelliteAt(int index) const
{
    if (index < 0 || size_t(index) >= m_satellites.size())
        return nullptr;
    return &m_satellites[size_t(index)];
}

qint64 gpstMilliseconds(int year, int month, int day, int hour, int minute, double seconds)
{
    // Days from 1970-01-01 in the proleptic Gregorian calendar (H. Hinnant's
    // days_from_civil), exact for every year a receiver can produce.
    const qint64 y = qint64(year) - (month <= 2 ? 1 : 0);
    const qint64 era = (y >= 0 ? y : y - 399) / 400;
    const qint64 yoe = y - era * 400;
    const qint64 mp = (month + 9) % 12;
    const qint64 doy = (153 * mp + 2) / 5 + day - 1;
    const qint64 doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    const qint64 days = era * 146097 + doe - 719468;
    const qint64 wholeMinutes = (days * 24 + hour) * 60 + minute;
    return wholeMinutes * 60000 + qint64(std::llround(seconds * 1000.0));
}

qint64 typicalIntervalMs(const std::vector<qint64>& epochs, qint64 fallback)
{
    if (epochs.size() < 2)
        return fallback;
    std::map<qint64, qint64> histogram;
    for (size_t i = 1; i < epochs.size(); ++i) {
        const qint64 step = epochs[i] - epochs[i - 1];
        if (step > 0)
            ++histogram[step];
    }
    qint64 best = fallback;
    qint64 bestCount = 0;
    for (const auto& entry : histogram) {
        if (entry.second > bestCount) {
            best = entry.first;
            bestCount = entry.second;
        }
    }
    return best;
}

BandSlot bandOfSignal(char system, char digit, double rinexVersion)
{
    switch (system) {
    case 'G':
    case 'J':
        if (digit == '1') return {BandL1, 0};
        if (digit == '2') return {BandL2, 0};
        if (digit == '5') return {BandL5, 0};
        break;
    case 'R':
        // The CDMA signals G1a/G2a share the FDMA bands but rank behind them.
        if (digit == '1') return {BandL1, 0};
        if (digit == '4') return {BandL1, 1};
        if (digit == '2') return {BandL2, 0};
        if (digit == '6') return {BandL2, 1};
        if (digit == '3') return {BandL5, 0};
        break;
    case 'E':
        if (digit == '1') return {BandL1, 0};
        if (digit == '5') return {BandL5, 0};
        if (digit == '7') return {BandE5b, 0};
        break;
    case 'C':
        // B1I ('2', or '1' in files older than 3.02) before B1C; B2I/B2b,
        // B3I and B2a follow the legend's naming.
        if (rinexVersion < 3.02) {
            if (digit == '1') return {BandL1, 0};
        } else {
            if (digit == '2') return {BandL1, 0};
            if (digit == '1') return {BandL1, 1};
        }
        if (digit == '7') return {BandL2, 0};
        if (digit == '6') return {BandL5, 0};
        if (digit == '5') return {BandE5b, 0};
        break;
    case 'S':
        if (digit == '1') return {BandL1, 0};
        if (digit == '5') return {BandL5, 0};
        break;
    case 'I':
        if (digit == '5') return {BandL5, 0};
        break;
    default:
        break;
    }
    return {};
}

double carrierFrequency(char system, char digit, int glonassChannel, double rinexVersion)
{
    const double mhz = 1e6;
    switch (system) {
    case 'G':
    case 'J':
    case 'S':
        if (digit == '1') return 1575.42 * mhz;
        if (digit == '2') return 1227.60 * mhz;
        if (digit == '5') return 1176.45 * mhz;
        if (digit == '6' && system == 'J') return 1278.75 * mhz;
        break;
    case 'R':
        if (digit == '1') return 1602.0 * mhz + glonassChannel * 0.5625 * mhz;
        if (digit == '2') return 1246.0 * mhz + glonassChannel * 0.4375 * mhz;
        if (digit == '3') return 1202.025 * mhz;
        if (digit == '4') return 1600.995 * mhz;
        if (digit == '6') return 1248.06 * mhz;
        break;
    case 'E':
        if (digit == '1') return 1575.42 * mhz;
        if (digit == '5') return 1176.45 * mhz;
        if (digit == '6') return 1278.75 * mhz;
        if (digit == '7') return 1207.14 * mhz;
        if (digit == '8') return 1191.795 * mhz;
        break;
    case 'C':
        if (digit == '1') return (rinexVersion < 3.02 ? 1561.098 : 1575.42) * mhz;
        if (digit == '2') return 1561.098 * mhz;
        if (digit == '5') return 1176.45 * mhz;
        if (digit == '6') return 1268.52 * mhz;
        if (digit == '7') return 1207.14 * mhz;
        if (digit == '8') return 1191.795 * mhz;
        break;
    case 'I':
        if (digit == '5') return 1176.45 * mhz;
        if (digit == '9') return 2492.028 * mhz;
        break;
    default:
        break;
    }
    return 0.0;
}

bool defaultGlonassChannel(int slot, int* channel)
{
    // Slot assignments as broadcast in 2024; used only when a file neither
    // declares its channels nor lets them be estimated.
    static const int table[24] = {1, -4, 5, 6, 1, -4, 5, 6, -2, -7, 0, -1,
                                  -2, -7, 0, -1, 4, -3, 3, 2, 4, -3, 3, 2};
    if (slot < 1 || slot > 24)
        return false;
    *channel = table[slot - 1];
    return true;
}

} // namespace gnssdemo
