// SPDX-License-Identifier: MIT
#include "CurveSnapshot_p.h"

#include "Curve_Coord_XY.h"
#include "Curve_DataSet_XY.h"

#include <algorithm>
#include <cmath>

namespace {

bool samePin(const AxisSamples& a, const AxisSamples& b)
{
    return a.first == b.first && a.count == b.count && a.block == b.block
           && a.breaks == b.breaks;
}

} // namespace

void CurveSnapshot::take(const Curve_DataSet_XY* dataSet, const Curve_Coord_XY* coord,
                         int yIndexes)
{
    AxisSamples x;
    std::vector<AxisSamples> ys;
    std::vector<qint64> counts;
    const AxisData* xAxis = (dataSet && coord) ? dataSet->getAxisData(0) : nullptr;
    if (xAxis)
        x = AxisSamples::pin(xAxis);
    if (x.first && yIndexes > 0) {
        coord->getArea(xMin, xMax, yMin, yMax);
        const int available = dataSet->getAxisNum() - 1;
        for (int k = 0; k < std::min(yIndexes, available); ++k) {
            AxisSamples y = AxisSamples::pin(dataSet->getAxisData(k + 1));
            const qint64 count = std::min({x.count, y.count, kMaxSamples});
            if (!y.first || count < 1)
                break;
            ys.push_back(std::move(y));
            counts.push_back(count);
        }
    }
    m_yIndexes = x.first ? std::max(0, yIndexes) : 0;
    bool same = samePin(x, m_x) && ys.size() == m_ys.size();
    for (size_t k = 0; same && k < ys.size(); ++k)
        same = samePin(ys[k], m_ys[k]) && counts[k] == m_counts[k];
    if (same)
        return;
    m_x = std::move(x);
    m_ys = std::move(ys);
    m_counts = std::move(counts);
    m_maxCount = 0;
    for (const qint64 c : m_counts)
        m_maxCount = std::max(m_maxCount, c);
    ++m_dataVersion;
    rebuildRuns();
}

void CurveSnapshot::clear()
{
    if (!m_x.first && m_ys.empty())
        return;
    m_x = AxisSamples();
    m_ys.clear();
    m_counts.clear();
    m_runs.clear();
    m_maxCount = 0;
    m_yIndexes = 0;
    m_xSorted = false;
    ++m_dataVersion;
}

qint64 CurveSnapshot::totalCount() const
{
    qint64 total = 0;
    for (const qint64 c : m_counts)
        total += c;
    return total;
}

void CurveSnapshot::rebuildRuns()
{
    const double* xs = m_x.first;
    m_runs.assign(m_ys.size(), {});
    for (size_t k = 0; k < m_ys.size(); ++k) {
        const qint64 count = m_counts[k];
        const double* ys = m_ys[k].first;
        // Only the Y axis's breaks cut the curve. The Y axis may be longer
        // than the X axis and carry breaks past the last common sample;
        // count - 1 always ends the last run.
        std::set<qint64> breaks = m_ys[k].breaks;
        breaks.insert(count - 1);
        qint64 start = 0;
        for (const qint64 b : breaks) {
            if (b >= count)
                break;
            qint64 points = 0;
            for (qint64 j = start; j <= b; ++j)
                points += (std::isnan(xs[j]) || std::isnan(ys[j])) ? 0 : 1;
            m_runs[k].push_back(CurveRun{start, b, points});
            start = b + 1;
        }
    }
    // Written so that a NaN anywhere counts as unsorted.
    m_xSorted = m_maxCount > 0;
    for (qint64 j = 0; j < m_maxCount; ++j) {
        if (!(xs[j] == xs[j]) || (j > 0 && !(xs[j] >= xs[j - 1]))) {
            m_xSorted = false;
            break;
        }
    }
}
