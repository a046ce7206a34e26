// SPDX-License-Identifier: MIT
#include "DemoDocument.h"

#include "Availability.h"

#include <algorithm>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <new>
#include <thread>

namespace gnssdemo {

QColor systemColor(char system)
{
    switch (system) {
    case 'G': return QColor(31, 119, 180);
    case 'R': return QColor(214, 39, 40);
    case 'E': return QColor(44, 160, 44);
    case 'C': return QColor(255, 127, 14);
    case 'J': return QColor(148, 103, 189);
    case 'S': return QColor(140, 86, 75);
    case 'I': return QColor(23, 190, 207);
    default: return QColor(128, 128, 128);
    }
}

QString systemName(char system)
{
    switch (system) {
    case 'G': return QStringLiteral("GPS");
    case 'R': return QStringLiteral("GLONASS");
    case 'E': return QStringLiteral("Galileo");
    case 'C': return QStringLiteral("BeiDou");
    case 'J': return QStringLiteral("QZSS");
    case 'S': return QStringLiteral("SBAS");
    case 'I': return QStringLiteral("NavIC");
    default: return QString(QLatin1Char(system));
    }
}

DemoDocument::DemoDocument(std::unique_ptr<ObservationSource> source)
    : m_source(std::move(source))
{
    Q_ASSERT(m_source);
    tableTimeRange(m_source->epochs(), m_source->intervalMs(), &m_startTime, &m_endTime);
}

bool DemoDocument::observations(int index, SatelliteObservations& out) const
{
    if (!m_source->satellite(index, out))
        return false;
    const auto it = m_erased.constFind(out.name);
    if (it != m_erased.constEnd())
        blank(out, m_source->epochs(), it.value());
    return true;
}

bool DemoDocument::forEachSatellite(
    const std::function<bool(PreparedSatellite&)>& consume) const
{
    // A few slots in a ring: enough to keep both threads busy, while a day of
    // 1 Hz observations per satellite (several megabytes) is never held for
    // more than a handful of satellites at once.
    constexpr int kSlots = 4;
    const int count = satelliteCount();
    std::vector<PreparedSatellite> ring(kSlots); // "slots" is a Qt keyword
    std::mutex mutex;
    std::condition_variable changed;
    int produced = 0;  // satellites prepared so far
    int consumed = 0;  // satellites handed over so far
    bool stop = false;
    bool failed = false;

    std::thread worker([&] {
        for (int i = 0; i < count; ++i) {
            {
                std::unique_lock<std::mutex> lock(mutex);
                changed.wait(lock, [&] { return stop || i - consumed < kSlots; });
                if (stop)
                    return;
            }
            PreparedSatellite& slot = ring[size_t(i % kSlots)];
            bool ok = true;
            try {
                slot.index = i;
                ok = observations(i, slot.observations);
                slot.bands = bandAvailability(slot.observations, epochs(), intervalMs());
                // A day of a satellite's observations is megabytes: read it
                // once more here, while it is fresh, not on the caller's
                // thread.
                slot.quality = satelliteQuality(slot.observations, epochs(), intervalMs());
                slot.events = bandEvents(slot.observations, epochs(), intervalMs());
                for (int b = 0; b < BandCount; ++b) {
                    const SignalSeries& s = slot.observations.bands[b];
                    qint64 n = 0;
                    for (size_t e = 0; e < s.pseudorange.size(); ++e)
                        n += s.hasObservation(e) ? 1 : 0;
                    slot.bandObservations[b] = n;
                }
            } catch (const std::bad_alloc&) {
                ok = false;
            }
            std::lock_guard<std::mutex> lock(mutex);
            if (!ok) {
                failed = true;
                stop = true;
            } else {
                produced = i + 1;
            }
            changed.notify_all();
            if (!ok)
                return;
        }
    });

    for (int i = 0; i < count; ++i) {
        {
            std::unique_lock<std::mutex> lock(mutex);
            changed.wait(lock, [&] { return stop || produced > i; });
            if (produced <= i)
                break;
        }
        const bool goOn = consume(ring[size_t(i % kSlots)]);
        std::lock_guard<std::mutex> lock(mutex);
        consumed = i + 1;
        if (!goOn)
            stop = true;
        changed.notify_all();
        if (!goOn)
            break;
    }
    worker.join();
    return !failed;
}

void DemoDocument::setNavigation(std::unique_ptr<NavigationData> navigation)
{
    m_navigation = std::move(navigation);
    m_sky = SkyTracks();
    const StationInfo station = m_source->station();
    if (!m_navigation || !station.hasPosition)
        return;
    QStringList names;
    for (int i = 0; i < m_source->satelliteCount(); ++i)
        names << m_source->satelliteName(i);
    try {
        m_sky = SkyTracks::compute(*m_navigation, m_source->epochs(), names, station.position);
    } catch (const std::bad_alloc&) {
        m_sky = SkyTracks(); // a sky without tracks rather than no window
    }
}

bool DemoDocument::setErased(const QString& name, const QList<EpochInterval>& intervals)
{
    if (m_erased.value(name) == intervals)
        return false;
    if (intervals.isEmpty())
        m_erased.remove(name);
    else
        m_erased.insert(name, intervals);
    return true;
}

qint64 DemoDocument::blank(SatelliteObservations& sat, const std::vector<qint64>& epochs,
                           const QList<EpochInterval>& intervals)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    qint64 blanked = 0;
    for (const EpochInterval& interval : intervals) {
        if (interval.second <= 0)
            continue;
        // Epochs are ascending, so each interval is one contiguous index range.
        const auto first = std::lower_bound(epochs.begin(), epochs.end(), interval.first);
        const auto last = std::lower_bound(first, epochs.end(), interval.first + interval.second);
        for (size_t i = size_t(first - epochs.begin()); i < size_t(last - epochs.begin()); ++i) {
            if (i < sat.record.size() && sat.record[i]) {
                sat.record[i] = 0;
                ++blanked;
            }
            for (SignalSeries& s : sat.bands) {
                if (i >= s.pseudorange.size())
                    continue;
                s.pseudorange[i] = nan;
                s.phase[i] = nan;
                s.lli[i] = 0;
                if (i < s.snr.size())
                    s.snr[i] = nan;
            }
        }
    }
    return blanked;
}

} // namespace gnssdemo
