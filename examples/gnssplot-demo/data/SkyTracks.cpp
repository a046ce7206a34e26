// SPDX-License-Identifier: MIT
#include "SkyTracks.h"

#include "Orbits.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <system_error>
#include <thread>

namespace gnssdemo {

namespace {

// Fills the arrays that compute() sized, so that workers never allocate.
void computeTrack(SkyTrack& track, const std::vector<Ephemeris>* list,
                  const std::vector<qint64>& epochs, const LocalFrame& frame)
{
    track.positioned = 0;
    for (size_t i = 0; i < epochs.size(); ++i) {
        if (!list)
            continue;
        const int chosen = NavigationData::selectIndex(*list, epochs[i]);
        if (chosen < 0)
            continue;
        double xyz[3];
        if (!observedPosition((*list)[size_t(chosen)], epochs[i], frame.origin(), xyz))
            continue;
        frame.azimuthElevation(xyz, &track.azimuth[i], &track.elevation[i]);
        if (!std::isnan(track.elevation[i]))
            ++track.positioned;
    }
}

} // namespace

SkyTracks SkyTracks::compute(const NavigationData& nav, const std::vector<qint64>& epochs,
                             const QStringList& observed, const double receiver[3],
                             int threads)
{
    SkyTracks result;
    const LocalFrame frame(receiver);
    if (!frame.isValid())
        return result;
    result.m_valid = true;

    QStringList names = nav.satellites();
    for (const QString& name : observed) {
        if (!names.contains(name))
            names << name;
    }
    std::sort(names.begin(), names.end());
    result.m_tracks.resize(size_t(names.size()));
    for (int k = 0; k < names.size(); ++k) {
        SkyTrack& track = result.m_tracks[size_t(k)];
        track.name = names[k];
        track.system = names[k].isEmpty() ? char(0) : names[k].at(0).toLatin1();
        track.observed = observed.contains(names[k]);
        result.m_index[names[k]] = size_t(k);
        track.time.resize(epochs.size());
        for (size_t i = 0; i < epochs.size(); ++i)
            track.time[i] = double(epochs[i]);
        track.azimuth.assign(epochs.size(), std::nan(""));
        track.elevation.assign(epochs.size(), std::nan(""));
    }

    // Each satellite is computed whole by one worker, so the numbers do not
    // depend on how the satellites fall to the workers.
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    int workers = threads > 0 ? threads : int(std::min(8u, cores));
    workers = std::max(1, std::min(workers, int(result.m_tracks.size())));
    std::atomic<size_t> next(0);
    auto work = [&] {
        for (size_t k = next++; k < result.m_tracks.size(); k = next++) {
            SkyTrack& track = result.m_tracks[k];
            computeTrack(track, nav.ephemerides(track.name), epochs, frame);
        }
    };
    std::vector<std::thread> pool;
    pool.reserve(size_t(workers));
    try {
        for (int w = 1; w < workers; ++w)
            pool.emplace_back(work);
    } catch (const std::system_error&) {
        // No more threads to be had: the ones running and this one share
        // what is left.
    }
    work();
    for (std::thread& t : pool)
        t.join();
    return result;
}

const SkyTrack* SkyTracks::track(const QString& name) const
{
    const auto it = m_index.find(name);
    return it == m_index.end() ? nullptr : &m_tracks[it->second];
}

const double* SkyTracks::elevation(const QString& name) const
{
    const SkyTrack* t = track(name);
    return t ? t->elevation.data() : nullptr;
}

QStringList SkyTracks::withoutEphemeris() const
{
    QStringList names;
    for (const SkyTrack& t : m_tracks) {
        if (t.observed && t.positioned == 0)
            names << t.name;
    }
    return names;
}

} // namespace gnssdemo
