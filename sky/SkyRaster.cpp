// SPDX-License-Identifier: MIT
#include "SkyRaster_p.h"

#include "CurveRaster_p.h"

#include <algorithm>

// Everything of the curve plot's raster interface the sky plot holds.
class SkyRaster::Counters
{
public:
    // resolveSum() takes a set of counters whose counts add up; the sky
    // plot uses one at a time.
    std::vector<CurveRaster::Counter> one{1};
    std::vector<CurveRaster::BlendTable> levelTables;
};

SkyRaster::SkyRaster()
    : m_counters(new Counters)
{
}

SkyRaster::~SkyRaster() = default;

void SkyRaster::begin(QImage* layer, const QPoint& origin)
{
    m_layer = layer;
    m_origin = origin;
}

QRect SkyRaster::clipped(const SkyTrackSteps& steps) const
{
    if (!m_layer || m_layer->isNull())
        return QRect();
    return steps.bounds().intersected(QRect(m_origin, m_layer->size()));
}

namespace {

// Feeds the pixels of a span to \a counter: every run from its first pixel,
// every following pixel as the segment into it. \a counts(sample) says
// which pixels count; the others only move the walk on.
template <class Counts>
void countSpan(const SkyTrackSteps& steps, const SkyStepSpan& span, CurveRaster::Counter& counter,
               Counts&& counts)
{
    CurveRaster::Cursor cursor;
    steps.walk(
        span,
        [&](qint32 c, qint32 r, qint64 sample) {
            if (counts(sample)) {
                cursor = CurveRaster::Cursor{};
                counter.polyline(&c, &r, 1, cursor);
            } else {
                cursor = CurveRaster::Cursor{false, c, r};
            }
        },
        [&](qint32 c, qint32 r, qint64 sample) {
            if (counts(sample))
                counter.polyline(&c, &r, 1, cursor);
            else
                cursor = CurveRaster::Cursor{false, c, r};
        });
}

} // namespace

void SkyRaster::drawTrack(const SkyTrackSteps& steps, const SkyStepSpan& span, QRgb colour)
{
    const QRect target = clipped(steps);
    if (target.isEmpty() || qAlpha(colour) == 0)
        return;
    CurveRaster::Counter& counter = m_counters->one.front();
    counter.begin(target);
    countSpan(steps, span, counter, [](qint64) { return true; });
    const CurveRaster::BlendTable table(CurveRaster::premultiply(colour));
    uchar* bits = m_layer->bits();
    const qsizetype stride = m_layer->bytesPerLine();
    const QPoint at = target.topLeft() - m_origin;
    CurveRaster::resolveSum(m_counters->one, 1, [&](int col, int row, quint32 n) {
        auto* pixel = reinterpret_cast<quint32*>(bits + (at.y() + row) * stride) + at.x() + col;
        *pixel = CurveRaster::over(table(n), *pixel);
    });
}

void SkyRaster::updateLevelTables(const SkyColorScale& scale)
{
    std::array<QRgb, SkyColorScale::kLevels> colours{};
    for (int level = 0; level < SkyColorScale::kLevels; ++level)
        colours[size_t(level)] = scale.colourOf(level);
    if (m_tablesMade && colours == m_tableColours)
        return;
    m_counters->levelTables.clear();
    m_counters->levelTables.reserve(colours.size());
    for (const QRgb colour : colours)
        m_counters->levelTables.emplace_back(CurveRaster::premultiply(colour));
    m_tableColours = colours;
    m_tablesMade = true;
}

void SkyRaster::drawTrackByLevel(const SkyTrackSteps& steps, const SkyStepSpan& span,
                                 const SkyTrackSource& source, const SkyColorScale& scale)
{
    const QRect target = clipped(steps);
    if (target.isEmpty())
        return;
    updateLevelTables(scale);
    // The level of each sample that enters a pixel, by its place in the
    // span; samples without a value are not among the steps.
    m_levels.assign(span.s1 - span.s0 + 1, 0);
    size_t index = 0;
    const auto levelAt = [&](qint64 sample) {
        return quint8(std::max(0, scale.levelOf(source.valueAt(sample))));
    };
    steps.walk(
        span, [&](qint32, qint32, qint64 sample) { m_levels[index++] = levelAt(sample); },
        [&](qint32, qint32, qint64 sample) { m_levels[index++] = levelAt(sample); });

    CurveRaster::Counter& counter = m_counters->one.front();
    // Every crossing, with the pixels in the order the later passes meet
    // them.
    counter.begin(target);
    countSpan(steps, span, counter, [](qint64) { return true; });
    m_counted.clear();
    CurveRaster::resolveSum(m_counters->one, 1, [&](int col, int row, quint32 n) {
        m_counted.push_back(Counted{col, row, n, 0});
    });
    // One pass per bit of the level: its crossings add that bit's weight.
    for (int bit = 0; (1 << bit) < SkyColorScale::kLevels; ++bit) {
        counter.begin(target);
        size_t at = 0;
        countSpan(steps, span, counter, [&](qint64) { return (m_levels[at++] >> bit) & 1; });
        size_t next = 0;
        CurveRaster::resolveSum(m_counters->one, 1, [&](int col, int row, quint32 n) {
            while (next < m_counted.size()
                   && (m_counted[next].col != col || m_counted[next].row != row)) {
                ++next;
            }
            Q_ASSERT(next < m_counted.size());
            if (next < m_counted.size())
                m_counted[next].levelSum += n << bit;
        });
    }
    uchar* bits = m_layer->bits();
    const qsizetype stride = m_layer->bytesPerLine();
    const QPoint offset = target.topLeft() - m_origin;
    for (const Counted& p : m_counted) {
        const quint32 level = (p.levelSum + p.n / 2) / p.n;
        const CurveRaster::BlendTable& table = m_counters->levelTables[level];
        auto* pixel = reinterpret_cast<quint32*>(bits + (offset.y() + p.row) * stride)
                      + offset.x() + p.col;
        *pixel = CurveRaster::over(table(p.n), *pixel);
    }
}
