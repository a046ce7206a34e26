// SPDX-License-Identifier: MIT
#include "AxisData.h"
#include "AxisSamples_p.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {

// Sample blocks come from malloc and go back to free. A published block is
// shared: a reader that pinned it (AxisSamples) keeps it alive after the
// next publish hands the axis a new one.
struct FreeSamples
{
    void operator()(double* block) const { std::free(block); }
};
using SampleBlock = std::shared_ptr<double>;

// A block of \a num samples, or null. A host fills a fresh block on every
// publish, so the first touch of every page is part of its cost: on Linux
// large blocks are aligned to and advised for huge pages, which takes one
// page fault per 2 MiB instead of one per 4 KiB.
double* allocateSamples(std::size_t num)
{
    const std::size_t bytes = num * sizeof(double);
#ifdef __linux__
    constexpr std::size_t kHugePage = std::size_t(2) << 20;
    // Smaller blocks come from the heap, whose memory is reused without
    // faults; blocks of 32 MiB and more are mapped afresh every time.
    if (bytes >= (std::size_t(32) << 20)) {
        void* block = nullptr;
        if (posix_memalign(&block, kHugePage, bytes) != 0)
            return nullptr;
        madvise(block, bytes, MADV_HUGEPAGE);
        return static_cast<double*>(block);
    }
#endif
    return static_cast<double*>(std::malloc(bytes));
}

// One side of the axis: the published samples that readers see, or the
// block being filled during a setting phase.
struct AxisBuffer
{
    SampleBlock samples;
    qint64 count = 0;
    qint64 areaBegin = -1;
    qint64 areaEnd = -1;
    std::set<qint64> breaks;

    void clear()
    {
        samples.reset();
        count = 0;
        areaBegin = -1;
        areaEnd = -1;
        breaks.clear();
    }

    // Sample areaBegin + index and the count from there to the area's end;
    // null without samples or outside the area. Readers and the writer of a
    // phase share it.
    double* at(qint64 index, qint64* num) const
    {
        if (!samples)
            return nullptr;
        const qint64 span = areaEnd - areaBegin;
        if (index < 0 || index > span)
            return nullptr;
        if (num)
            *num = span - index + 1;
        return samples.get() + areaBegin + index;
    }

    bool setArea(qint64 begin, qint64 end)
    {
        if (!samples || begin < 0 || end >= count || end < begin)
            return false;
        areaBegin = begin;
        areaEnd = end;
        return true;
    }
};

// Limits of the published area, worked out on first request: a view asks
// for them on every zoom step, the samples change far more rarely.
struct Limits
{
    bool known = false;
    bool found = false;
    double minValue = 0.0;
    double maxValue = 0.0;
};

} // namespace

class AxisData::PrivateData
{
public:
    AxisBuffer published;
    Limits limits;
    bool inSetting = false;
    AxisBuffer setting;
};

AxisData::AxisData(QObject* parent)
    : QObject(parent)
    , m_data(new PrivateData)
{
}

AxisData::~AxisData() = default;

void AxisData::beginSetData()
{
    m_data->setting.clear();
    m_data->inSetting = true;
}

bool AxisData::allocData(qint64 num, QString* errorString)
{
    AxisBuffer& setting = m_data->setting;
    if (!m_data->inSetting || setting.samples || num < 1)
        return false;

    // A count whose byte size does not fit the address space can never be
    // had; treat it like any other exhausted allocation instead of letting
    // the size computation wrap. Failure is a plain null result.
    constexpr qint64 maxCount = std::numeric_limits<std::ptrdiff_t>::max() / qint64(sizeof(double));
    double* block = num <= maxCount ? allocateSamples(static_cast<std::size_t>(num)) : nullptr;
    if (!block) {
        if (errorString)
            *errorString = tr("Alloc memory failed.");
        return false;
    }

    setting.samples.reset(block, FreeSamples());
    setting.count = num;
    setting.areaBegin = 0;
    setting.areaEnd = num - 1;
    setting.breaks.clear();
    return true;
}

double* AxisData::getInSettingData(qint64 index, qint64* num)
{
    return m_data->inSetting ? m_data->setting.at(index, num) : nullptr;
}

bool AxisData::setInSettingDataArea(qint64 begin, qint64 end)
{
    return m_data->inSetting && m_data->setting.setArea(begin, end);
}

bool AxisData::setInSettingBreaks(const std::set<qint64>& breaks)
{
    AxisBuffer& setting = m_data->setting;
    if (!m_data->inSetting || !setting.samples)
        return false;
    // The set is ordered, so its ends bound every element.
    if (!breaks.empty() && (*breaks.begin() < 0 || *breaks.rbegin() > setting.count - 1))
        return false;
    setting.breaks = breaks;
    setting.breaks.erase(setting.count - 1);
    return true;
}

void AxisData::endSetData(bool apply)
{
    if (!m_data->inSetting)
        return;
    m_data->inSetting = false;
    AxisBuffer& setting = m_data->setting;
    AxisBuffer& published = m_data->published;

    if (!apply) {
        setting.clear();
        return;
    }

    const bool areaChanged = published.areaBegin != setting.areaBegin
                             || published.areaEnd != setting.areaEnd;
    // Identity, not contents: a freshly allocated block always differs.
    const bool dataChanged = published.samples.get() != setting.samples.get()
                             || published.breaks != setting.breaks;

    published.samples = std::move(setting.samples);
    published.count = setting.count;
    published.areaBegin = setting.areaBegin;
    published.areaEnd = setting.areaEnd;
    published.breaks.swap(setting.breaks);
    setting.clear();
    m_data->limits.known = false;

    if (areaChanged)
        emit sgAreaChanged();
    if (dataChanged)
        emit sgDataChanged();
}

const double* AxisData::getData(qint64 index, qint64* num) const
{
    return m_data->published.at(index, num);
}

qint64 AxisData::getArea(qint64* begin, qint64* end) const
{
    const AxisBuffer& published = m_data->published;
    if (begin)
        *begin = published.areaBegin;
    if (end)
        *end = published.areaEnd;
    if (!published.samples)
        return 0;
    return published.areaEnd - published.areaBegin + 1;
}

bool AxisData::setArea(qint64 begin, qint64 end)
{
    if (!m_data->published.setArea(begin, end))
        return false;
    m_data->limits.known = false;
    emit sgAreaChanged();
    return true;
}

void AxisData::clearArea()
{
    AxisBuffer& published = m_data->published;
    if (published.count == 0)
        return;
    if (published.areaBegin == 0 && published.areaEnd == published.count - 1)
        return;
    published.areaBegin = 0;
    published.areaEnd = published.count - 1;
    m_data->limits.known = false;
    emit sgAreaChanged();
}

bool AxisData::getDataLimits(double& minValue, double& maxValue) const
{
    const AxisBuffer& published = m_data->published;
    Limits& limits = m_data->limits;
    if (!published.samples)
        return false;
    if (!limits.known) {
        double lo = std::numeric_limits<double>::max();
        double hi = -std::numeric_limits<double>::max();
        bool found = false;
        const double* p = published.samples.get() + published.areaBegin;
        const double* const last = published.samples.get() + published.areaEnd;
        for (; p <= last; ++p) {
            const double v = *p;
            if (std::isnan(v))
                continue;
            if (!(v > lo))
                lo = v;
            if (v > hi)
                hi = v;
            found = true;
        }
        limits = Limits{true, found, lo, hi};
    }
    minValue = limits.minValue;
    maxValue = limits.maxValue;
    return limits.found;
}

void AxisData::getBreakInfo(std::set<qint64>& breaks) const
{
    const AxisBuffer& published = m_data->published;
    if (!published.samples)
        return;
    const qint64 span = published.areaEnd - published.areaBegin;
    // Breaks before the area are skipped by seeking, not walked one by one.
    for (auto it = published.breaks.lower_bound(published.areaBegin);
         it != published.breaks.end(); ++it) {
        const qint64 r = *it - published.areaBegin;
        if (r >= span)
            break;
        breaks.insert(breaks.end(), r);
    }
}

AxisSamples AxisSamples::pin(const AxisData* axis)
{
    AxisSamples pinned;
    if (!axis)
        return pinned;
    const AxisBuffer& published = axis->m_data->published;
    qint64 count = 0;
    pinned.first = published.at(0, &count);
    if (!pinned.first)
        return pinned;
    pinned.block = published.samples;
    pinned.count = count;
    axis->getBreakInfo(pinned.breaks);
    return pinned;
}
