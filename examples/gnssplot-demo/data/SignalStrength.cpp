// SPDX-License-Identifier: MIT
#include "SignalStrength.h"

#include "Multipath.h"

#include <gnssplot.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace gnssdemo {

void signalStrengthBands(const SatelliteObservations& sat, int* bandA, int* bandB)
{
    *bandA = -1;
    *bandB = -1;
    for (int b = 0; b < BandCount; ++b) {
        const std::vector<double>& snr = sat.bands[b].snr;
        if (!std::any_of(snr.begin(), snr.end(), [](double v) { return !std::isnan(v); }))
            continue;
        if (*bandA < 0) {
            *bandA = b;
        } else {
            *bandB = b;
            return;
        }
    }
}

bool computeSignalStrength(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                           qint64 intervalMs, Curve_DataSet_XY* target,
                           SignalStrengthInfo* info, QString* error, double gapFactor)
{
    SignalStrengthInfo local;
    SignalStrengthInfo& out = info ? *info : local;
    out = SignalStrengthInfo();
    AxisData* axes[3] = {nullptr, nullptr, nullptr};
    if (!curveAxes(target, axes, error))
        return false;
    signalStrengthBands(sat, &out.bandA, &out.bandB);
    const size_t n = epochs.size();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // A band's values, or none when it is not there or not of the epochs' length.
    auto values = [&](int band) -> const double* {
        if (band < 0 || sat.bands[band].snr.size() != n)
            return nullptr;
        return sat.bands[band].snr.data();
    };
    const double* a = values(out.bandA);
    const double* b = values(out.bandB);
    if (a)
        out.typeA = sat.bands[out.bandA].snrType;
    if (b)
        out.typeB = sat.bands[out.bandB].snrType;
    auto has = [](const double* v, size_t i) { return v && !std::isnan(v[i]); };
    qint64 total = 0;
    for (size_t i = 0; a && i < n; ++i)
        total += has(a, i) || has(b, i) ? 1 : 0;

    for (AxisData* axis : axes)
        axis->beginSetData();
    if (total > 0) {
        for (AxisData* axis : axes) {
            if (!axis->allocData(total, error)) {
                for (AxisData* opened : axes)
                    opened->endSetData(false);
                return false;
            }
        }
        double* x = axes[0]->getInSettingData(0, nullptr);
        double* ya = axes[1]->getInSettingData(0, nullptr);
        double* yb = axes[2]->getInSettingData(0, nullptr);
        const double longest = gapFactor * double(std::max<qint64>(1, intervalMs));
        std::set<qint64> breaks;
        qint64 k = 0;
        size_t previous = 0;
        for (size_t i = 0; i < n; ++i) {
            if (!has(a, i) && !has(b, i))
                continue;
            if (k > 0) {
                const bool gap = i != previous + 1
                                 || double(epochs[i] - epochs[previous]) > longest;
                const bool changed = has(a, i) != has(a, previous)
                                     || has(b, i) != has(b, previous);
                if (gap || changed)
                    breaks.insert(k - 1);
            }
            x[k] = double(epochs[i]);
            ya[k] = has(a, i) ? a[i] : nan;
            yb[k] = has(b, i) ? b[i] : nan;
            previous = i;
            ++k;
        }
        for (AxisData* axis : axes)
            axis->setInSettingBreaks(breaks);
    }
    out.samples = total;
    for (AxisData* axis : axes)
        axis->endSetData(true);
    return true;
}

std::vector<double> valuesAtEpochs(const std::vector<qint64>& epochs, const double* x,
                                   const double* y, qint64 count, bool absolute)
{
    std::vector<double> out(epochs.size(), std::numeric_limits<double>::quiet_NaN());
    if (!x || !y)
        return out;
    auto epoch = epochs.begin();
    for (qint64 j = 0; j < count; ++j) {
        if (!std::isfinite(x[j]) || std::fabs(x[j]) > 9e15)
            continue;
        // Samples come in time order: the search goes on from the last hit.
        const qint64 t = qint64(std::llround(x[j]));
        if (epoch != epochs.end() && *epoch > t)
            epoch = epochs.begin();
        epoch = std::lower_bound(epoch, epochs.end(), t);
        if (epoch == epochs.end() || *epoch != t)
            continue;
        out[size_t(epoch - epochs.begin())] = absolute ? std::fabs(y[j]) : y[j];
    }
    return out;
}

} // namespace gnssdemo
