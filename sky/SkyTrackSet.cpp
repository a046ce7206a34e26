// SPDX-License-Identifier: MIT
#include "SkyTrackSet_p.h"

#include "AxisData.h"
#include "CurveScene.h"
#include "Curve_DataSet.h"
#include "SkyScaleMap_p.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

SkyTrackSource SkyTrackSource::take(const Curve_DataSet* dataSet, int valueKey)
{
    SkyTrackSource s;
    if (!dataSet)
        return s;
    const AxisData* time = dataSet->getAxisData(0);
    const AxisData* azimuth = dataSet->getAxisData(1);
    const AxisData* elevation = dataSet->getAxisData(2);
    if (!time || !azimuth || !elevation)
        return s;
    const qint64 count = std::min({time->getArea(nullptr, nullptr),
                                   azimuth->getArea(nullptr, nullptr),
                                   elevation->getArea(nullptr, nullptr)});
    if (count < 1)
        return s;
    s.times = time->getData(0, nullptr);
    s.azimuths = azimuth->getData(0, nullptr);
    s.elevations = elevation->getData(0, nullptr);
    s.count = count;
    if (valueKey >= 3) {
        if (const AxisData* value = dataSet->getAxisData(valueKey)) {
            s.valueCount = value->getArea(nullptr, nullptr);
            s.values = s.valueCount > 0 ? value->getData(0, nullptr) : nullptr;
            if (!s.values)
                s.valueCount = 0;
        }
    }
    // A break on any positional axis cuts the track; one at the last common
    // sample cuts nothing.
    std::set<qint64> breaks;
    for (int key = 0; key < 3; ++key)
        dataSet->getAxisBreakInfo(key, breaks);
    for (const qint64 b : breaks) {
        if (b >= 0 && b < count - 1)
            s.breaks.push_back(b);
    }
    return s;
}

void SkyTrackSource::checkTimeOrder()
{
    if (bTimeChecked)
        return;
    bTimeChecked = true;
    bTimeSorted = true;
    // Written so that a NaN anywhere counts as out of order.
    for (qint64 j = 0; j < count; ++j) {
        if (!(times[j] == times[j]) || (j > 0 && !(times[j] >= times[j - 1]))) {
            bTimeSorted = false;
            return;
        }
    }
}

double SkyTrackSource::valueAt(qint64 j) const
{
    return hasValue(j) ? values[j] : std::numeric_limits<double>::quiet_NaN();
}

bool SkyTrackSource::windowRange(const TimeWindow& window, qint64& first, qint64& last) const
{
    if (count < 1)
        return false;
    first = std::lower_bound(times, times + count, window.getMin()) - times;
    last = (std::upper_bound(times, times + count, window.getMax()) - times) - 1;
    return first <= last;
}

qint64 SkyTrackSource::nearestInTime(double t) const
{
    if (count < 1 || !std::isfinite(t))
        return -1;
    qint64 best = -1;
    double bestGap = 0.0;
    double earliest = 0.0;
    double latest = 0.0;
    bool any = false;
    const auto consider = [&](qint64 j) {
        const double gap = std::abs(times[j] - t);
        if (std::isfinite(times[j]) && (best < 0 || gap < bestGap)) {
            best = j;
            bestGap = gap;
        }
    };
    if (bTimeChecked && bTimeSorted) {
        const qint64 j = std::lower_bound(times, times + count, t) - times;
        if (j > 0)
            consider(j - 1);
        if (j < count)
            consider(j);
        for (qint64 k = 0; k < count && !any; ++k) {
            if (std::isfinite(times[k])) {
                earliest = times[k];
                any = true;
            }
        }
        for (qint64 k = count - 1; k >= 0; --k) {
            if (std::isfinite(times[k])) {
                latest = times[k];
                break;
            }
        }
    } else {
        for (qint64 j = 0; j < count; ++j) {
            consider(j);
            if (std::isfinite(times[j])) {
                earliest = any ? std::min(earliest, times[j]) : times[j];
                latest = any ? std::max(latest, times[j]) : times[j];
                any = true;
            }
        }
    }
    if (best < 0)
        return -1;
    // Within one mean sample interval: a cursor in a gap of the track, or
    // beyond its ends, marks nothing.
    const double interval = count > 1 ? (latest - earliest) / double(count - 1) : 0.0;
    return bestGap <= interval ? best : -1;
}

bool SkyTrackSource::isDrawable(qint64 j, bool bNeedValue) const
{
    if (j < 0 || j >= count || !std::isfinite(times[j]))
        return false;
    if (!SkyProjection::isDrawable(azimuths[j], elevations[j]))
        return false;
    return !bNeedValue || std::isfinite(valueAt(j));
}

bool SkyTrackSource::sameAs(const SkyTrackSource& other) const
{
    return times == other.times && azimuths == other.azimuths
           && elevations == other.elevations && values == other.values && count == other.count
           && valueCount == other.valueCount && breaks == other.breaks;
}

// ---------------------------------------------------------------------------

SkyTrackSet::SkyTrackSet(CurveScene* registry, QObject* parent)
    : QObject(parent)
    , m_registry(registry)
{
    if (!registry)
        return;
    connect(registry, &CurveScene::sgCurveAdded, this, &SkyTrackSet::onScene_curveAdded);
    connect(registry, &CurveScene::sgCurveRemoved, this, &SkyTrackSet::onScene_curveRemoved);
    connect(registry, &CurveScene::sgCurveShowParamChanged, this,
            &SkyTrackSet::onScene_curveShowParamChanged);
    QMap<QString, const Curve_DataSet*> present;
    registry->getCurves(present);
    for (auto it = present.cbegin(); it != present.cend(); ++it)
        addTrack(it.key());
    reorder();
}

SkyTrackSet::~SkyTrackSet() = default;

void SkyTrackSet::changed()
{
    ++m_version;
    emit sgChanged();
}

void SkyTrackSet::reorder()
{
    m_ordered.clear();
    for (auto& entry : m_tracks)
        m_ordered.push_back(entry.second.get());
}

void SkyTrackSet::addTrack(const QString& name)
{
    if (!m_registry)
        return;
    // The registry hands out its data sets read-only; the set only listens
    // to them and reads their published samples.
    auto* dataSet = const_cast<Curve_DataSet*>(m_registry->getCurve(name));
    if (!dataSet)
        return;
    auto track = std::make_unique<Track>();
    track->name = name;
    track->dataSet = dataSet;
    track->colour = m_registry->getCurveShowParam_color(name);
    track->bVisible = m_registry->getCurveShowParam_visible(name);
    Track* raw = track.get();
    m_tracks[name] = std::move(track);
    const auto bump = [this, raw](int) {
        ++raw->dataVersion;
        changed();
    };
    // The track outlives these connections: they end when the track goes
    // (onScene_curveRemoved) or the data set is destroyed.
    connect(dataSet, &Curve_DataSet::sgAxisAreaChanged, this, bump);
    connect(dataSet, &Curve_DataSet::sgAxisDataChanged, this, bump);
    // A data set the host keeps must be removed before the host deletes it;
    // should it go first, its samples go with it and must never be read.
    connect(dataSet, &QObject::destroyed, this, [this, raw]() {
        raw->source = SkyTrackSource();
        raw->sourceVersion = ++raw->dataVersion;
        raw->sourceValueIndex = m_valueIndex;
        changed();
    });
}

void SkyTrackSet::onScene_curveAdded(QString name)
{
    addTrack(name);
    reorder();
    changed();
}

void SkyTrackSet::onScene_curveRemoved(QString name)
{
    const auto it = m_tracks.find(name);
    if (it == m_tracks.end())
        return;
    // An owned data set is already gone; one the host keeps is only let go.
    if (Curve_DataSet* dataSet = it->second->dataSet.data())
        disconnect(dataSet, nullptr, this, nullptr);
    m_tracks.erase(it);
    reorder();
    changed();
}

void SkyTrackSet::onScene_curveShowParamChanged(QString name)
{
    const auto it = m_tracks.find(name);
    if (it == m_tracks.end() || !m_registry)
        return;
    Track& track = *it->second;
    const QColor colour = m_registry->getCurveShowParam_color(name);
    const bool bVisible = m_registry->getCurveShowParam_visible(name);
    if (colour == track.colour && bVisible == track.bVisible)
        return;
    track.colour = colour;
    track.bVisible = bVisible;
    changed();
}

void SkyTrackSet::setValueIndex(int valueIndex)
{
    const int index = std::max(-1, valueIndex);
    if (index == m_valueIndex)
        return;
    // Every source is read again with the other value axis on the next
    // refresh; the positional samples, and what was mapped of them, stay.
    m_valueIndex = index;
    changed();
}

const std::vector<SkyTrackSet::Track*>& SkyTrackSet::refresh()
{
    const int valueKey = m_valueIndex >= 0 ? m_valueIndex + 3 : -1;
    for (Track* track : m_ordered) {
        if (track->sourceVersion == track->dataVersion && track->sourceValueIndex == m_valueIndex)
            continue;
        SkyTrackSource source = SkyTrackSource::take(track->dataSet.data(), valueKey);
        // The order of the times is kept while the positional samples are
        // the same ones.
        if (track->sourceVersion == track->dataVersion) {
            source.bTimeChecked = track->source.bTimeChecked;
            source.bTimeSorted = track->source.bTimeSorted;
        }
        track->source = std::move(source);
        track->sourceVersion = track->dataVersion;
        track->sourceValueIndex = m_valueIndex;
    }
    return m_ordered;
}

bool SkyTrackSet::timeLimits(double& tMin, double& tMax)
{
    refresh();
    if (m_timeLimits.version != m_version) {
        Limits limits;
        limits.version = m_version;
        for (Track* track : m_ordered) {
            SkyTrackSource& s = track->source;
            s.checkTimeOrder();
            // Ascending times have their finite ends at the ends; others are
            // scanned whole.
            const auto fold = [&](qint64 j) {
                const double t = s.times[j];
                if (!std::isfinite(t))
                    return false;
                limits.min = limits.bFound ? std::min(limits.min, t) : t;
                limits.max = limits.bFound ? std::max(limits.max, t) : t;
                limits.bFound = true;
                return true;
            };
            if (s.bTimeSorted) {
                for (qint64 j = 0; j < s.count && !fold(j); ++j) {
                }
                for (qint64 j = s.count - 1; j >= 0 && !fold(j); --j) {
                }
            } else {
                for (qint64 j = 0; j < s.count; ++j)
                    fold(j);
            }
        }
        m_timeLimits = limits;
    }
    if (m_timeLimits.bFound) {
        tMin = m_timeLimits.min;
        tMax = m_timeLimits.max;
    }
    return m_timeLimits.bFound;
}

bool SkyTrackSet::valueLimits(double& vMin, double& vMax)
{
    refresh();
    if (m_valueLimits.version != m_version) {
        Limits limits;
        limits.version = m_version;
        for (Track* track : m_ordered) {
            const SkyTrackSource& s = track->source;
            const qint64 n = std::min(s.count, s.valueCount);
            for (qint64 j = 0; j < n; ++j) {
                const double v = s.values[j];
                if (!std::isfinite(v))
                    continue;
                limits.min = limits.bFound ? std::min(limits.min, v) : v;
                limits.max = limits.bFound ? std::max(limits.max, v) : v;
                limits.bFound = true;
            }
        }
        m_valueLimits = limits;
    }
    if (m_valueLimits.bFound) {
        vMin = m_valueLimits.min;
        vMax = m_valueLimits.max;
    }
    return m_valueLimits.bFound;
}
