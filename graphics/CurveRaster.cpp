// SPDX-License-Identifier: MIT
#include "CurveRaster_p.h"

#include <algorithm>

namespace CurveRaster {

namespace {

// a / b rounded half away from zero, for b > 0; the remainder keeps every
// intermediate within 64 bits.
qint64 roundDiv(qint64 a, qint64 b)
{
    qint64 q = a / b;
    const qint64 r = a % b;
    if (2 * (r < 0 ? -r : r) >= b)
        q += a < 0 ? -1 : 1;
    return q;
}

// The steps k in 1 .. steps for which start + sign * k lies in lo .. hi.
bool stepRange(qint64 start, int sign, qint64 steps, qint64 lo, qint64 hi, qint64& first,
               qint64& last)
{
    if (sign > 0) {
        first = std::max<qint64>(1, lo - start);
        last = std::min<qint64>(steps, hi - start);
    } else {
        first = std::max<qint64>(1, start - hi);
        last = std::min<qint64>(steps, start - lo);
    }
    return first <= last;
}

quint32 mul255(quint32 x, quint32 a)
{
    return (x * a + 127) / 255;
}

} // namespace

void Counter::begin(const QRect& target)
{
    m_target = target;
    m_left = target.left();
    m_top = target.top();
    m_width = std::max(0, target.width());
    m_height = std::max(0, target.height());
    const size_t cells = size_t(m_width) * size_t(m_height + 1);
    // Zeroed memory stays zeroed: resolve() clears what it read.
    if (m_diff.size() < cells)
        m_diff.resize(cells, 0);
    m_lo.assign(size_t(m_width), m_height);
    m_hi.assign(size_t(m_width), -1);
}

void Counter::slanted(int c0, int r0, int c1, int r1)
{
    const qint64 dx = qint64(c1) - c0;
    const qint64 dy = qint64(r1) - r0;
    const qint64 adx = dx < 0 ? -dx : dx;
    const qint64 ady = dy < 0 ? -dy : dy;
    const qint64 right = qint64(m_left) + m_width - 1;
    const qint64 bottom = qint64(m_top) + m_height - 1;
    qint64 first = 0;
    qint64 last = 0;
    if (adx >= ady) {
        const int sign = dx > 0 ? 1 : -1;
        if (!stepRange(c0, sign, adx, m_left, right, first, last))
            return;
        for (qint64 k = first; k <= last; ++k) {
            const qint64 r = r0 + roundDiv(dy * k, adx);
            if (r >= m_top && r <= bottom) {
                const int col = int(c0 + sign * k - m_left);
                addSpan(col, int(r - m_top), int(r - m_top));
            }
        }
    } else {
        const int sign = dy > 0 ? 1 : -1;
        if (!stepRange(r0, sign, ady, m_top, bottom, first, last))
            return;
        for (qint64 k = first; k <= last; ++k) {
            const qint64 c = c0 + roundDiv(dx * k, ady);
            if (c >= m_left && c <= right) {
                const int row = int(r0 + sign * k - m_top);
                addSpan(int(c - m_left), row, row);
            }
        }
    }
}

quint32 over(quint32 src, quint32 dst)
{
    const quint32 keep = 255 - (src >> 24);
    quint32 out = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const quint32 s = (src >> shift) & 0xff;
        const quint32 d = (dst >> shift) & 0xff;
        out |= (s + mul255(d, keep)) << shift;
    }
    return out;
}

quint32 premultiply(quint32 argb)
{
    const quint32 a = argb >> 24;
    return (a << 24) | (mul255((argb >> 16) & 0xff, a) << 16)
           | (mul255((argb >> 8) & 0xff, a) << 8) | mul255(argb & 0xff, a);
}

BlendTable::BlendTable(quint32 premultipliedColour)
{
    // Each blend moves every channel toward the colour by a rounded step, so
    // the sequence settles within a few hundred entries; the bound is only a
    // guard.
    m_table.push_back(0);
    while (m_table.size() < 65536) {
        const quint32 next = over(premultipliedColour, m_table.back());
        if (next == m_table.back())
            break;
        m_table.push_back(next);
    }
}

} // namespace CurveRaster
