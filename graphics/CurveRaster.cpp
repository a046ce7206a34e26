// SPDX-License-Identifier: MIT
#include "CurveRaster_p.h"

#include <algorithm>
#include <cmath>

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

void ColumnSteps::build(const CoordMapping& mapping, double m11, double dx, const double* xs,
                        qint64 first, qint64 last)
{
    m_starts.clear();
    m_columns.clear();
    m_end = std::max(first, last + 1);
    const auto column = [&](qint64 j) {
        qint32 c = 0;
        mapColumns(mapping, m11, dx, xs + j, 1, &c);
        return c;
    };
    // Each step ends where the column first changes. The last step's length
    // is the guess for the next: a search about it, widening in both
    // directions, finds the end of evenly spaced samples in two mappings.
    qint64 guess = 1;
    for (qint64 j = first; j <= last;) {
        const qint32 c = column(j);
        m_starts.push_back(j);
        m_columns.push_back(c);
        // same(k) holds for a prefix of j .. last; find where it ends.
        const auto same = [&](qint64 k) { return column(k) == c; };
        qint64 lo = j;         // same(lo)
        qint64 hi = last + 1;  // !same(hi), or past the end
        const qint64 probe = std::min(j + guess, last + 1);
        if (probe <= last && same(probe)) {
            lo = probe;
            qint64 step = 1;
            while (step <= last - lo && same(lo + step)) {
                lo += step;
                step *= 2;
            }
            hi = std::min(hi, lo + step);
        } else {
            hi = probe;
            qint64 step = 1;
            while (step < hi - j && !same(hi - step)) {
                hi -= step;
                step *= 2;
            }
            lo = std::max(lo, hi - step);
        }
        while (hi - lo > 1) {
            const qint64 mid = lo + (hi - lo) / 2;
            (same(mid) ? lo : hi) = mid;
        }
        guess = hi - j;
        j = hi;
    }
}

size_t ColumnSteps::stepOf(qint64 j) const
{
    return size_t(std::upper_bound(m_starts.begin(), m_starts.end(), j) - m_starts.begin()) - 1;
}

void ColumnSteps::fill(qint64 j, qint64 n, qint32* columns) const
{
    const qint64 end = j + n;
    for (size_t s = stepOf(j); j < end; ++s) {
        const qint64 stop = std::min(end, s + 1 < m_starts.size() ? m_starts[s + 1] : m_end);
        std::fill(columns, columns + (stop - j), m_columns[s]);
        columns += stop - j;
        j = stop;
    }
}

qint32 ColumnSteps::at(qint64 j) const
{
    return m_columns[stepOf(j)];
}

void ColumnSteps::around(int lo, int hi, qint64& first, qint64& last) const
{
    // The columns of the steps run one way, so the samples in lo .. hi are
    // one stretch; with the neighbour on each side, every segment that
    // reaches those columns is in it, even when no sample is.
    const bool ascending = m_columns.back() >= m_columns.front();
    const auto before = [&](qint32 c) { return ascending ? c < lo : c > hi; };
    const auto within = [&](qint32 c) { return ascending ? c <= hi : c >= lo; };
    const auto a = std::partition_point(m_columns.begin(), m_columns.end(), before);
    const auto b = std::partition_point(a, m_columns.end(), within);
    const auto startOf = [&](std::vector<qint32>::const_iterator it) {
        return it == m_columns.end() ? m_end : m_starts[size_t(it - m_columns.begin())];
    };
    first = std::max(m_starts.front(), startOf(a) - 1);
    last = std::min(m_end - 1, startOf(b));
}

void Counter::polyline(const qint32* columns, const qint32* rows, qint64 n, Cursor& cursor)
{
    qint64 i = 0;
    if (cursor.first) {
        while (i < n && rows[i] == kNoPixel)
            ++i;
        if (i == n)
            return;
        point(columns[i], rows[i]);
        cursor = Cursor{false, columns[i], rows[i]};
        ++i;
    }
    int c0 = cursor.c;
    int r0 = cursor.r;
    const unsigned width = unsigned(m_width);
    const int top = m_top;
    const int last = m_top + m_height - 1;
    const size_t stride = size_t(m_height + 1);
    // The column being walked: its counts, and its touched rows kept in
    // registers until the walk leaves it (a store and reload per sample
    // would chain every sample to the one before).
    unsigned col = unsigned(c0 - m_left);
    qint32* d = col < width ? m_diff.data() + size_t(col) * stride : nullptr;
    int lo = m_height;
    int hi = -1;
    const auto leave = [&]() {
        if (d && lo <= hi) {
            m_lo[col] = std::min(m_lo[col], lo);
            m_hi[col] = std::max(m_hi[col], hi);
        }
    };
    for (; i < n; ++i) {
        const int r = rows[i];
        if (r == kNoPixel)
            continue;
        const int c = columns[i];
        if (c != c0) {
            leave();
            slanted(c0, r0, c, r);
            col = unsigned(c - m_left);
            d = col < width ? m_diff.data() + size_t(col) * stride : nullptr;
            lo = m_height;
            hi = -1;
        } else if (d) {
            // The common case of dense data: a span down one column, its
            // start row excluded; none when the row stays. Written without
            // a branch on the direction, which noise makes a coin toss.
            const int first = std::max(std::min(r, r0 + 1), top) - top;
            const int end = std::min(std::max(r - int(r == r0), r0 - 1), last) - top;
            if (first <= end) {
                ++d[first];
                --d[end + 1];
                lo = std::min(lo, first);
                hi = std::max(hi, end);
            }
        }
        c0 = c;
        r0 = r;
    }
    leave();
    cursor.c = c0;
    cursor.r = r0;
}

void Counter::begin(const QRect& target)
{
    m_left = target.left();
    m_top = target.top();
    m_width = std::max(0, target.width());
    m_height = std::max(0, target.height());
    const size_t cells = size_t(m_width) * size_t(m_height + 1);
    // Zeroed memory stays zeroed: resolveSum() clears what it read.
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
