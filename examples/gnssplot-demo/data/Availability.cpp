// SPDX-License-Identifier: MIT
#include "Availability.h"

namespace gnssdemo {

void tableTimeRange(const std::vector<qint64>& epochs, qint64 intervalMs, qint64* startTime,
                    qint64* endTime)
{
    *startTime = epochs.empty() ? 0 : epochs.front();
    *endTime = epochs.empty() ? 0 : epochs.back() + std::max<qint64>(intervalMs, 1);
}

namespace {

// Walks the epochs with a presence test and emits the uncovered stretches.
template <typename Present>
stEpochDataSet rangesOf(const std::vector<qint64>& epochs, qint64 intervalMs, Present present)
{
    stEpochDataSet out;
    qint64 start = 0;
    qint64 end = 0;
    tableTimeRange(epochs, intervalMs, &start, &end);
    const qint64 interval = std::max<qint64>(intervalMs, 1);
    const qint64 maxStep = interval * 3 / 2;
    bool any = false;
    qint64 coveredEnd = start; // end of the covered run being extended
    const size_t n = epochs.size();
    for (size_t i = 0; i < n; ++i) {
        if (!present(i))
            continue;
        const qint64 t = epochs[i];
        const bool joined = i + 1 < n && epochs[i + 1] - t <= maxStep;
        const qint64 next = joined ? epochs[i + 1] : t + interval;
        if (!any) {
            out.ranges.append(qMakePair(start, t - start));
            any = true;
        } else if (t > coveredEnd) {
            out.ranges.append(qMakePair(coveredEnd, t - coveredEnd));
        }
        coveredEnd = next;
    }
    if (!any)
        out.ranges.append(qMakePair(start, end - start));
    else if (coveredEnd < end)
        out.ranges.append(qMakePair(coveredEnd, end - coveredEnd));
    return out;
}

} // namespace

stEpochDataSet availabilityRanges(const std::vector<qint64>& epochs, qint64 intervalMs,
                                  const std::vector<quint8>& present)
{
    return rangesOf(epochs, intervalMs,
                    [&](size_t i) { return i < present.size() && present[i] != 0; });
}

QList<stEpochDataSet> bandAvailability(const SatelliteObservations& sat,
                                       const std::vector<qint64>& epochs, qint64 intervalMs)
{
    int last = -1;
    for (int b = 0; b < BandCount; ++b)
        if (!sat.bands[b].isEmpty())
            last = b;
    QList<stEpochDataSet> out;
    for (int b = 0; b <= last; ++b) {
        const SignalSeries& s = sat.bands[b];
        out.append(rangesOf(epochs, intervalMs,
                            [&](size_t i) { return s.hasObservation(i); }));
    }
    return out;
}

} // namespace gnssdemo
