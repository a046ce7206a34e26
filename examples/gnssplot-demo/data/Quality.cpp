// SPDX-License-Identifier: MIT
#include "Quality.h"

#include <algorithm>
#include <cmath>

namespace gnssdemo {

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

double ratio(qint64 part, qint64 whole)
{
    return whole > 0 ? double(part) / double(whole) : NaN;
}

double rms(double sumSquares, qint64 count)
{
    return count > 0 ? std::sqrt(sumSquares / double(count)) : NaN;
}

} // namespace

BandEvents bandEvents(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                      qint64 intervalMs, double gapFactor)
{
    BandEvents out;
    const size_t n = epochs.size();
    const qint64 maxStep = qint64(double(intervalMs) * gapFactor);
    for (int b = 0; b < BandCount; ++b) {
        const SignalSeries& s = sat.bands[b];
        if (s.isEmpty() || s.pseudorange.size() != n)
            continue;
        std::vector<EpochEvent>& events = out[size_t(b)];
        // A whole day at 1 Hz on every band of every satellite: raw reads.
        const double* code = s.pseudorange.data();
        const double* phase = s.phase.data();
        const quint8* lli = s.lli.data();
        size_t prev = n;
        for (size_t i = 0; i < n; ++i) {
            const bool hasPhase = !std::isnan(phase[i]);
            const qint64 t = epochs[i];
            if (hasPhase || !std::isnan(code[i])) {
                if (prev != n && (i != prev + 1 || t - epochs[prev] > maxStep))
                    events.push_back({qint64(i), t, EventKind::Gap});
                prev = i;
            }
            if (hasPhase && (lli[i] & 1) != 0)
                events.push_back({qint64(i), t, EventKind::LossOfLock});
        }
    }
    return out;
}

void addPhaseJumps(BandEvents& events, const MultipathInfo& info)
{
    // A jump never shares an epoch with a gap or a loss of lock on the
    // pair's bands: either ends the arc before its phases are compared.
    const auto before = [](const EpochEvent& a, const EpochEvent& b) {
        return a.epoch < b.epoch;
    };
    for (const EpochEvent& e : info.breaks) {
        if (e.kind != EventKind::PhaseJump)
            continue;
        for (int band : {info.bandA, info.bandB}) {
            if (band < 0 || band >= BandCount)
                continue;
            std::vector<EpochEvent>& list = events[size_t(band)];
            list.insert(std::upper_bound(list.begin(), list.end(), e, before), e);
        }
    }
}

double SatelliteQuality::completeness() const
{
    return ratio(epochsWithDataAboveMask, epochsAboveMask);
}

double SystemQuality::completeness() const
{
    return ratio(epochsWithDataAboveMask, epochsAboveMask);
}

SatelliteQuality satelliteQuality(const SatelliteObservations& sat,
                                  const std::vector<qint64>& epochs, qint64 intervalMs,
                                  double gapFactor)
{
    SatelliteQuality q;
    q.name = sat.name;
    q.system = sat.system;
    const size_t n = epochs.size();
    const qint64 maxStep = qint64(double(intervalMs) * gapFactor);
    // Band by band into flags per epoch: loops without branches that a
    // compiler can widen, over a day at 1 Hz.
    std::vector<quint8> has(n, 0);
    std::vector<quint8> lost(n, 0);
    for (const SignalSeries& s : sat.bands) {
        if (s.pseudorange.size() != n)
            continue;
        const double* code = s.pseudorange.data();
        const double* phase = s.phase.data();
        const quint8* lli = s.lli.data();
        for (size_t i = 0; i < n; ++i) {
            const bool hasPhase = !std::isnan(phase[i]);
            has[i] |= quint8(hasPhase || !std::isnan(code[i]));
            lost[i] |= quint8(hasPhase && (lli[i] & 1) != 0);
        }
    }
    size_t prev = n;
    for (size_t i = 0; i < n; ++i) {
        q.lossOfLock += lost[i];
        if (!has[i])
            continue;
        ++q.epochsWithData;
        if (prev != n && i == prev + 1 && epochs[i] - epochs[prev] <= maxStep)
            q.dataRuns.back().second = qint64(i);
        else
            q.dataRuns.emplace_back(qint64(i), qint64(i));
        prev = i;
    }
    q.gaps = q.dataRuns.empty() ? 0 : int(q.dataRuns.size()) - 1;
    return q;
}

void addMultipath(SatelliteQuality& quality, const MultipathInfo& info)
{
    quality.phaseJumps = info.phaseJumpBreaks;
    quality.mp1SumSquares = info.mp1SumSquares;
    quality.mp2SumSquares = info.mp2SumSquares;
    quality.mp1Samples = info.mp1Samples;
    quality.mp2Samples = info.mp2Samples;
    quality.mp1Rms = info.mp1Rms();
    quality.mp2Rms = info.mp2Rms();
}

void applyElevations(SatelliteQuality& quality, const std::vector<double>* elevations,
                     size_t epochCount, double maskDegrees)
{
    quality.epochsAboveMask = -1;
    quality.epochsWithDataAboveMask = 0;
    if (!elevations || elevations->size() != epochCount)
        return;
    const std::vector<double>& e = *elevations;
    qint64 above = 0;
    for (double degrees : e)
        above += degrees >= maskDegrees ? 1 : 0; // false for NaN
    qint64 withData = 0;
    for (const auto& run : quality.dataRuns) {
        for (qint64 i = run.first; i <= run.second && size_t(i) < e.size(); ++i)
            withData += e[size_t(i)] >= maskDegrees ? 1 : 0;
    }
    quality.epochsAboveMask = above;
    quality.epochsWithDataAboveMask = withData;
}

SystemQuality systemQuality(const std::vector<SatelliteQuality>& satellites, char system)
{
    SystemQuality out;
    out.system = system;
    double sum1 = 0.0;
    double sum2 = 0.0;
    qint64 count1 = 0;
    qint64 count2 = 0;
    for (const SatelliteQuality& q : satellites) {
        if (system != 0 && q.system != system)
            continue;
        ++out.satellites;
        out.epochsWithData += q.epochsWithData;
        if (q.epochsAboveMask >= 0) {
            out.epochsAboveMask = std::max<qint64>(out.epochsAboveMask, 0) + q.epochsAboveMask;
            out.epochsWithDataAboveMask += q.epochsWithDataAboveMask;
        }
        sum1 += q.mp1SumSquares;
        sum2 += q.mp2SumSquares;
        count1 += q.mp1Samples;
        count2 += q.mp2Samples;
        out.lossOfLock += q.lossOfLock;
        out.phaseJumps += q.phaseJumps;
        out.gaps += q.gaps;
    }
    out.mp1Rms = rms(sum1, count1);
    out.mp2Rms = rms(sum2, count2);
    return out;
}

SatelliteCounts countSatellites(const std::vector<SatelliteQuality>& satellites,
                                const std::vector<qint64>& epochs)
{
    SatelliteCounts out;
    const size_t n = epochs.size();
    out.x.assign(epochs.begin(), epochs.end());
    // A run adds one from its first epoch on and takes it back after its
    // last: running sums of these steps are the counts.
    std::map<char, std::vector<qint64>> steps;
    for (const SatelliteQuality& q : satellites) {
        std::vector<qint64>& s = steps[q.system];
        s.resize(n + 1, 0);
        for (const auto& run : q.dataRuns) {
            if (run.first < 0 || run.second < run.first || size_t(run.second) >= n)
                continue;
            ++s[size_t(run.first)];
            --s[size_t(run.second) + 1];
        }
    }
    out.total.assign(n, 0.0);
    for (auto& entry : steps) {
        std::vector<double>& counts = out.perSystem[entry.first];
        counts.resize(n);
        qint64 running = 0;
        for (size_t i = 0; i < n; ++i) {
            running += entry.second[i];
            counts[i] = double(running);
            out.total[i] += double(running);
        }
    }
    return out;
}

} // namespace gnssdemo
