// SPDX-License-Identifier: MIT
#include "Multipath.h"

#include <AxisData.h>
#include <Curve_DataSet_XY.h>

#include <QCoreApplication>

#include <cmath>
#include <limits>
#include <set>

namespace gnssdemo {

namespace {

enum class BreakReason { None, Gap, Lli, PhaseJump };

EventKind eventKind(BreakReason reason)
{
    return reason == BreakReason::Lli ? EventKind::LossOfLock
           : reason == BreakReason::PhaseJump ? EventKind::PhaseJump
                                              : EventKind::Gap;
}

struct Arc
{
    size_t first;
    size_t last;
    BreakReason start; // why the arc before ended; None for the first
};

// Opens the setting phase on all three axes and allocates them; on failure
// every phase is discarded again so the published data stays as it was.
bool allocateAxes(AxisData* axes[3], qint64 count, QString* error)
{
    for (int k = 0; k < 3; ++k)
        axes[k]->beginSetData();
    if (count == 0)
        return true;
    for (int k = 0; k < 3; ++k) {
        if (!axes[k]->allocData(count, error)) {
            for (int j = 0; j < 3; ++j)
                axes[j]->endSetData(false);
            return false;
        }
    }
    return true;
}

} // namespace

QString eventKindName(EventKind kind)
{
    switch (kind) {
    case EventKind::LossOfLock: return QStringLiteral("loss_of_lock");
    case EventKind::PhaseJump: return QStringLiteral("phase_jump");
    case EventKind::Gap: return QStringLiteral("gap");
    }
    return QString();
}

double MultipathInfo::mp1Rms() const
{
    return mp1Samples > 0 ? std::sqrt(mp1SumSquares / double(mp1Samples))
                          : std::numeric_limits<double>::quiet_NaN();
}

double MultipathInfo::mp2Rms() const
{
    return mp2Samples > 0 ? std::sqrt(mp2SumSquares / double(mp2Samples))
                          : std::numeric_limits<double>::quiet_NaN();
}

bool curveAxes(Curve_DataSet_XY* target, AxisData* axes[3], QString* error)
{
    for (int k = 0; k < 3; ++k)
        axes[k] = target ? target->getAxisData(k) : nullptr;
    if (axes[0] && axes[1] && axes[2])
        return true;
    if (error)
        *error = QCoreApplication::translate("Multipath", "The curve needs two Y axes.");
    return false;
}

bool computeMultipath(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                      qint64 intervalMs, Curve_DataSet_XY* target, MultipathInfo* info,
                      QString* error, const MultipathOptions& options)
{
    MultipathInfo local;
    MultipathInfo& out = info ? *info : local;
    out = MultipathInfo();
    AxisData* axes[3] = {nullptr, nullptr, nullptr};
    if (!curveAxes(target, axes, error))
        return false;

    // The first two bands with both pseudorange and phase somewhere.
    const size_t n = epochs.size();
    for (int b = 0; b < BandCount; ++b) {
        const SignalSeries& s = sat.bands[b];
        if (s.isEmpty() || s.pseudorange.size() != n || s.frequencyHz <= 0.0)
            continue;
        bool code = false;
        bool phase = false;
        for (size_t i = 0; i < n && !(code && phase); ++i) {
            code = code || !std::isnan(s.pseudorange[i]);
            phase = phase || !std::isnan(s.phase[i]);
        }
        if (!code || !phase)
            continue;
        if (out.bandA < 0) {
            out.bandA = b;
        } else {
            out.bandB = b;
            break;
        }
    }
    if (out.bandB < 0) {
        allocateAxes(axes, 0, error);
        for (AxisData* a : axes)
            a->endSetData(true);
        return true;
    }

    const SignalSeries& s1 = sat.bands[out.bandA];
    const SignalSeries& s2 = sat.bands[out.bandB];
    out.codeA = s1.codeType;
    out.phaseA = s1.phaseType;
    out.codeB = s2.codeType;
    out.phaseB = s2.phaseType;
    const double lambda1 = SpeedOfLight / s1.frequencyHz;
    const double lambda2 = SpeedOfLight / s2.frequencyHz;
    const double alpha = (s1.frequencyHz / s2.frequencyHz) * (s1.frequencyHz / s2.frequencyHz);
    const double c1 = 2.0 / (alpha - 1.0);
    const double c2 = 2.0 * alpha / (alpha - 1.0);
    const qint64 maxStep = qint64(double(intervalMs) * options.gapFactor);
    auto usable = [&](size_t i) {
        return !std::isnan(s1.phase[i]) && !std::isnan(s2.phase[i])
               && (!std::isnan(s1.pseudorange[i]) || !std::isnan(s2.pseudorange[i]));
    };

    // Pass 1: arcs. The geometry-free phase removes geometry and clocks and
    // leaves the slowly varying ionosphere, so a jump against its linear
    // prediction from the two samples before is a cycle slip.
    std::vector<Arc> arcs;
    size_t prev = n;
    double gfPrev = 0.0;
    double gfSlope = 0.0; // metres per millisecond, NaN until two samples
    for (size_t i = 0; i < n; ++i) {
        if (!usable(i))
            continue;
        const double gf = lambda1 * s1.phase[i] - lambda2 * s2.phase[i];
        BreakReason reason = BreakReason::None;
        if (prev == n) {
            reason = BreakReason::Gap;
        } else if (prev + 1 != i || epochs[i] - epochs[prev] > maxStep) {
            reason = BreakReason::Gap;
        } else if ((s1.lli[i] & 1) || (s2.lli[i] & 1)) {
            reason = BreakReason::Lli;
        } else {
            const double dt = double(epochs[i] - epochs[prev]);
            const double extra = std::max(0.0, dt / 1000.0 - 1.0);
            const bool sloped = !std::isnan(gfSlope);
            const double predicted = gfPrev + (sloped ? gfSlope * dt : 0.0);
            const double threshold =
                sloped ? std::min(options.slipThresholdMax,
                                  options.slipThreshold + options.slipThresholdPerSecond * extra)
                       : options.firstStepThreshold + options.firstStepThresholdPerSecond * extra;
            if (std::fabs(gf - predicted) > threshold)
                reason = BreakReason::PhaseJump;
        }
        if (reason != BreakReason::None) {
            if (prev != n) {
                if (reason == BreakReason::Gap)
                    ++out.gapBreaks;
                else if (reason == BreakReason::Lli)
                    ++out.lliBreaks;
                else
                    ++out.phaseJumpBreaks;
                out.breaks.push_back({qint64(i), epochs[i], eventKind(reason)});
            }
            arcs.push_back({i, i, prev == n ? BreakReason::None : reason});
            gfSlope = std::numeric_limits<double>::quiet_NaN();
        } else {
            gfSlope = (gf - gfPrev) / double(epochs[i] - epochs[prev]);
            arcs.back().last = i;
        }
        gfPrev = gf;
        prev = i;
    }

    qint64 total = 0;
    for (const Arc& a : arcs) {
        const qint64 len = qint64(a.last - a.first + 1);
        if (len >= options.minArcSamples)
            total += len;
        else
            ++out.droppedArcs;
    }
    if (!allocateAxes(axes, total, error))
        return false;

    // Pass 2: write straight into the in-setting buffers, then take each
    // arc's mean out in place.
    std::set<qint64> breaks;
    if (total > 0) {
        double* x = axes[0]->getInSettingData(0, nullptr);
        double* mp1 = axes[1]->getInSettingData(0, nullptr);
        double* mp2 = axes[2]->getInSettingData(0, nullptr);
        Q_ASSERT(x && mp1 && mp2);
        qint64 k = 0;
        // Why the last written arc ended, once the arc after it is known.
        BreakReason pending = BreakReason::None;
        for (size_t arc = 0; arc < arcs.size(); ++arc) {
            const Arc& a = arcs[arc];
            if (qint64(a.last - a.first + 1) < options.minArcSamples)
                continue;
            if (pending != BreakReason::None)
                out.events.push_back({k, qint64(a.first), eventKind(pending)});
            pending = arc + 1 < arcs.size() ? arcs[arc + 1].start : BreakReason::None;
            const qint64 begin = k;
            double sum1 = 0.0, sum2 = 0.0;
            qint64 n1 = 0, n2 = 0;
            for (size_t i = a.first; i <= a.last; ++i, ++k) {
                const double phi1 = lambda1 * s1.phase[i];
                const double phi2 = lambda2 * s2.phase[i];
                x[k] = double(epochs[i]);
                mp1[k] = s1.pseudorange[i] - (1.0 + c1) * phi1 + c1 * phi2;
                mp2[k] = s2.pseudorange[i] - c2 * phi1 + (c2 - 1.0) * phi2;
                if (!std::isnan(mp1[k])) {
                    sum1 += mp1[k];
                    ++n1;
                }
                if (!std::isnan(mp2[k])) {
                    sum2 += mp2[k];
                    ++n2;
                }
            }
            const double mean1 = n1 ? sum1 / double(n1) : 0.0;
            const double mean2 = n2 ? sum2 / double(n2) : 0.0;
            // A second pass takes out what rounding left of the mean of values
            // that can be tens of thousands of kilometres before removal.
            double rest1 = 0.0, rest2 = 0.0;
            for (qint64 j = begin; j < k; ++j) {
                mp1[j] -= mean1;
                mp2[j] -= mean2;
                rest1 += std::isnan(mp1[j]) ? 0.0 : mp1[j];
                rest2 += std::isnan(mp2[j]) ? 0.0 : mp2[j];
            }
            rest1 = n1 ? rest1 / double(n1) : 0.0;
            rest2 = n2 ? rest2 / double(n2) : 0.0;
            for (qint64 j = begin; j < k; ++j) {
                mp1[j] -= rest1;
                mp2[j] -= rest2;
                if (!std::isnan(mp1[j]))
                    out.mp1SumSquares += mp1[j] * mp1[j];
                if (!std::isnan(mp2[j]))
                    out.mp2SumSquares += mp2[j] * mp2[j];
            }
            out.mp1Samples += n1;
            out.mp2Samples += n2;
            breaks.insert(k - 1);
            ++out.arcs;
        }
        Q_ASSERT(k == total);
        breaks.erase(total - 1);
        for (AxisData* axis : axes)
            axis->setInSettingBreaks(breaks);
    }
    out.samples = total;
    for (AxisData* axis : axes)
        axis->endSetData(true);
    return true;
}

} // namespace gnssdemo
