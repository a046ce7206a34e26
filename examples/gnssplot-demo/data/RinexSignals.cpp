// SPDX-License-Identifier: MIT
#include "RinexSignals_p.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace gnssdemo {
namespace rinex {

namespace {

// Estimates a GLONASS channel from G1: over a slip-free arc the code changes
// by the range change and the phase by the range change over the wavelength,
// so their ratio gives the frequency. The median over long arcs resists the
// odd undetected slip.
bool estimateGlonassChannel(const SignalSeries& g1, const std::vector<qint64>& epochs,
                            qint64 intervalMs, int* channel)
{
    std::vector<double> estimates;
    const size_t n = g1.pseudorange.size();
    size_t arcStart = n;
    auto closeArc = [&](size_t last) {
        if (arcStart >= n || last <= arcStart)
            return;
        const double dp = g1.pseudorange[last] - g1.pseudorange[arcStart];
        const double dl = g1.phase[last] - g1.phase[arcStart];
        if (std::fabs(dp) > 50000.0 && dl != 0.0)
            estimates.push_back((SpeedOfLight * dl / dp - 1602e6) / 0.5625e6);
    };
    size_t prev = n;
    for (size_t i = 0; i < n; ++i) {
        if (std::isnan(g1.pseudorange[i]) || std::isnan(g1.phase[i]))
            continue;
        const bool broken = prev == n || (g1.lli[i] & 1)
                            || epochs[i] - epochs[prev] > intervalMs * 3 / 2;
        if (broken) {
            closeArc(prev);
            arcStart = i;
        }
        prev = i;
    }
    closeArc(prev);
    if (estimates.empty())
        return false;
    std::nth_element(estimates.begin(), estimates.begin() + estimates.size() / 2, estimates.end());
    const double k = estimates[estimates.size() / 2];
    const double rounded = std::round(k);
    if (std::fabs(k - rounded) > 0.25 || rounded < -7 || rounded > 13)
        return false;
    *channel = int(rounded);
    return true;
}

} // namespace

qint64 sourceIntervalMs(const RinexHeader& header, const std::vector<qint64>& epochs)
{
    return header.interval > 0 ? qint64(std::llround(header.interval * 1000))
                               : typicalIntervalMs(epochs, 1000);
}

SatelliteObservations selectSignals(SatStore& store, const RinexHeader& header,
                                    const std::vector<qint64>& epochs)
{
    const size_t epochCount = epochs.size();
    SatelliteObservations out;
    out.system = store.system;
    out.prn = store.prn;
    out.name = QStringLiteral("%1%2").arg(QLatin1Char(store.system))
                   .arg(store.prn, 2, 10, QLatin1Char('0'));
    store.record.resize(epochCount, 0);
    out.record = std::move(store.record);

    const SystemTable& table = *header.table(store.system);
    std::vector<qint64> counts(size_t(table.stored), 0);
    for (const ObsType& t : table.types)
        if (t.store >= 0)
            counts[size_t(t.store)] = std::count_if(
                store.values[size_t(t.store)].begin(), store.values[size_t(t.store)].end(),
                [](double v) { return !std::isnan(v); });

    // Picks the type of one kind on one band with the most values, then the
    // better-ranked signal, then header order; `attribute` prefers a phase
    // tracked like the chosen code.
    auto pick = [&](char kind, int band, char attribute) -> const ObsType* {
        const ObsType* best = nullptr;
        std::tuple<int, qint64, int> bestKey;
        for (const ObsType& t : table.types) {
            if (t.kind != kind || counts[size_t(t.store)] == 0)
                continue;
            const BandSlot slot = bandOfSignal(store.system, t.digit, header.version);
            if (slot.band != band)
                continue;
            const std::tuple<int, qint64, int> key(attribute != 0 && t.attribute == attribute,
                                                   counts[size_t(t.store)], -slot.rank);
            if (!best || key > bestKey) {
                best = &t;
                bestKey = key;
            }
        }
        return best;
    };

    char digits[BandCount] = {};
    for (int band = 0; band < BandCount; ++band) {
        const ObsType* code = pick('C', band, 0);
        const ObsType* phase = pick('L', band, code ? code->attribute : 0);
        if (!code && !phase)
            continue;
        SignalSeries& s = out.bands[band];
        s.reset(epochCount);
        if (code) {
            s.codeType = QString::fromLatin1(code->code);
            std::vector<double>& v = store.values[size_t(code->store)];
            std::copy(v.begin(), v.end(), s.pseudorange.begin());
            std::vector<double>().swap(v);
        }
        if (phase) {
            s.phaseType = QString::fromLatin1(phase->code);
            std::vector<double>& v = store.values[size_t(phase->store)];
            std::copy(v.begin(), v.end(), s.phase.begin());
            const std::vector<quint8>& f = store.lli[size_t(phase->store)];
            std::copy(f.begin(), f.end(), s.lli.begin());
            std::vector<double>().swap(v);
        }
        // Signal strength of the signal the code (or else the phase) comes
        // from where the file has it.
        const ObsType* strength = pick('S', band, code ? code->attribute : phase->attribute);
        if (strength) {
            s.snrType = QString::fromLatin1(strength->code);
            std::vector<double>& v = store.values[size_t(strength->store)];
            std::copy(v.begin(), v.end(), s.snr.begin());
            std::vector<double>().swap(v);
        }
        for (int e : store.forcedSlips)
            if (e >= 0 && size_t(e) < epochCount)
                s.lli[size_t(e)] |= 1;
        digits[band] = phase ? phase->digit : code->digit;
    }

    if (out.system == 'R') {
        const auto it = header.glonassChannels.find(out.prn);
        if (it != header.glonassChannels.end()) {
            out.glonassChannel = it->second;
            out.channelOrigin = ChannelOrigin::Header;
        } else if (digits[BandL1] == '1'
                   && estimateGlonassChannel(out.bands[BandL1], epochs,
                                             sourceIntervalMs(header, epochs),
                                             &out.glonassChannel)) {
            out.channelOrigin = ChannelOrigin::Estimated;
        } else {
            out.channelOrigin = ChannelOrigin::Default;
            if (!defaultGlonassChannel(out.prn, &out.glonassChannel))
                out.glonassChannel = 0;
        }
    }
    for (int band = 0; band < BandCount; ++band)
        if (digits[band])
            out.bands[band].frequencyHz = carrierFrequency(out.system, digits[band],
                                                           out.glonassChannel, header.version);
    return out;
}

} // namespace rinex
} // namespace gnssdemo
