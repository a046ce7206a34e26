#include "AxisData.h"

#include <cmath>
#include <limits>
#include <new>

void AxisData::AxisBuffer::clear()
{
    samples.reset();
    count = 0;
    areaBegin = -1;
    areaEnd = -1;
    breaks.clear();
}

AxisData::AxisData(QObject* parent)
    : QObject(parent)
{
}

AxisData::~AxisData() = default;

void AxisData::beginSetData()
{
    m_setting.clear();
    m_inSetting = true;
}

bool AxisData::allocData(qint64 num, QString* errorString)
{
    if (!m_inSetting || m_setting.samples || num < 1)
        return false;

    // A count whose byte size does not fit the address space can never be
    // had; treat it like any other exhausted allocation instead of letting
    // the size computation wrap. The non-throwing form keeps the failure a
    // plain null result (a throwing operator new aborts under AddressSanitizer
    // instead of throwing).
    constexpr qint64 maxCount = std::numeric_limits<std::ptrdiff_t>::max() / qint64(sizeof(double));
    double* block = nullptr;
    if (num <= maxCount) {
        try {
            block = new (std::nothrow) double[static_cast<std::size_t>(num)];
        } catch (const std::bad_alloc&) {
            block = nullptr;
        }
    }
    if (!block) {
        if (errorString)
            *errorString = tr("Alloc memory failed.");
        return false;
    }

    m_setting.samples.reset(block);
    m_setting.count = num;
    m_setting.areaBegin = 0;
    m_setting.areaEnd = num - 1;
    m_setting.breaks.clear();
    return true;
}

double* AxisData::getInSettingData(qint64 index, qint64* num)
{
    if (!m_inSetting || !m_setting.samples)
        return nullptr;
    const qint64 span = m_setting.areaEnd - m_setting.areaBegin;
    if (index < 0 || index > span)
        return nullptr;
    if (num)
        *num = span - index + 1;
    return m_setting.samples.get() + m_setting.areaBegin + index;
}

bool AxisData::setInSettingDataArea(qint64 begin, qint64 end)
{
    if (!m_inSetting || !m_setting.samples)
        return false;
    if (begin < 0 || end >= m_setting.count || end < begin)
        return false;
    m_setting.areaBegin = begin;
    m_setting.areaEnd = end;
    return true;
}

bool AxisData::setInSettingBreaks(const std::set<qint64>& breaks)
{
    if (!m_inSetting || !m_setting.samples)
        return false;
    // The set is ordered, so its ends bound every element.
    if (!breaks.empty() && (*breaks.begin() < 0 || *breaks.rbegin() > m_setting.count - 1))
        return false;
    m_setting.breaks = breaks;
    m_setting.breaks.erase(m_setting.count - 1);
    return true;
}

void AxisData::endSetData(bool apply)
{
    if (!m_inSetting)
        return;
    m_inSetting = false;

    if (!apply) {
        m_setting.clear();
        return;
    }

    const bool areaChanged = m_published.areaBegin != m_setting.areaBegin
                             || m_published.areaEnd != m_setting.areaEnd;
    // Identity, not contents: a freshly allocated block always differs.
    const bool dataChanged = m_published.samples.get() != m_setting.samples.get()
                             || m_published.breaks != m_setting.breaks;

    m_published.samples = std::move(m_setting.samples);
    m_published.count = m_setting.count;
    m_published.areaBegin = m_setting.areaBegin;
    m_published.areaEnd = m_setting.areaEnd;
    m_published.breaks.swap(m_setting.breaks);
    m_setting.clear();
    m_limits.known = false;

    if (areaChanged)
        emit sgAreaChanged();
    if (dataChanged)
        emit sgDataChanged();
}

const double* AxisData::getData(qint64 index, qint64* num) const
{
    if (!m_published.samples)
        return nullptr;
    const qint64 span = m_published.areaEnd - m_published.areaBegin;
    if (index < 0 || index > span)
        return nullptr;
    if (num)
        *num = span - index + 1;
    return m_published.samples.get() + m_published.areaBegin + index;
}

qint64 AxisData::getArea(qint64* begin, qint64* end) const
{
    if (begin)
        *begin = m_published.areaBegin;
    if (end)
        *end = m_published.areaEnd;
    if (!m_published.samples)
        return 0;
    return m_published.areaEnd - m_published.areaBegin + 1;
}

bool AxisData::setArea(qint64 begin, qint64 end)
{
    if (!m_published.samples)
        return false;
    if (begin < 0 || end >= m_published.count || end < begin)
        return false;
    m_published.areaBegin = begin;
    m_published.areaEnd = end;
    m_limits.known = false;
    emit sgAreaChanged();
    return true;
}

void AxisData::clearArea()
{
    if (m_published.count == 0)
        return;
    if (m_published.areaBegin == 0 && m_published.areaEnd == m_published.count - 1)
        return;
    m_published.areaBegin = 0;
    m_published.areaEnd = m_published.count - 1;
    m_limits.known = false;
    emit sgAreaChanged();
}

bool AxisData::getDataLimits(double& minValue, double& maxValue) const
{
    if (!m_published.samples)
        return false;
    if (!m_limits.known) {
        double lo = std::numeric_limits<double>::max();
        double hi = -std::numeric_limits<double>::max();
        bool found = false;
        const double* p = m_published.samples.get() + m_published.areaBegin;
        const double* const last = m_published.samples.get() + m_published.areaEnd;
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
        m_limits = Limits{true, found, lo, hi};
    }
    minValue = m_limits.minValue;
    maxValue = m_limits.maxValue;
    return m_limits.found;
}

void AxisData::getBreakInfo(std::set<qint64>& breaks) const
{
    if (!m_published.samples)
        return;
    const qint64 span = m_published.areaEnd - m_published.areaBegin;
    // Breaks before the area are skipped by seeking, not walked one by one.
    for (auto it = m_published.breaks.lower_bound(m_published.areaBegin);
         it != m_published.breaks.end(); ++it) {
        const qint64 r = *it - m_published.areaBegin;
        if (r >= span)
            break;
        breaks.insert(breaks.end(), r);
    }
}
