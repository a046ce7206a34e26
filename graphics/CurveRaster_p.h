// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVERASTER_P_H
#define GNSSPLOT_CURVERASTER_P_H

#include "CoordMapping_p.h"

#include <QRect>
#include <QtGlobal>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <vector>

/*
    The curve plot's own line rule and the per-pixel crossing counter built
    on it.

    A dense curve drawn with a translucent one-pixel pen looks the way it
    does only because of how many times each pixel is crossed: blending one
    colour n times over a pixel gives a result that depends on n alone. So
    instead of blending segment by segment, the counter adds up crossings per
    pixel and turns the counts into colour once, through a table of n-fold
    blends.

    The rule, on device pixels (a point at device coordinates (x, y) lies in
    the pixel (floor(x), floor(y)), as aliased painting places it):
    - The first point of a run sets its pixel once.
    - Each following segment from pixel P0 to pixel P1 sets the pixels of a
      symmetric DDA between them without P0 (that pixel belongs to the
      segment before, so a joint between two segments counts once) and with
      P1. Along the major axis (the longer of |dx| and |dy|; x on a tie) it
      steps one pixel at a time; the other coordinate is the exact line's
      value rounded half away from zero.
    - A segment that stays in its pixel (P0 == P1) sets nothing.
    - A segment within one column therefore sets the rows between its ends,
      start row excluded; these spans go into difference arrays down the
      column, which dense data (many samples per column) hits almost always.
    - Pixels outside the target rectangle are not counted; nothing outside it
      is walked, so any coordinate, however large, costs at most the
      target's extent.

    Coordinates are 32-bit device pixels; callers saturate them beyond
    +-kCoordLimit, which keeps every product below 2^62.

    Nothing here knows about curve items. To draw any polylines this way:
    begin() a Counter on the target's device-pixel rectangle (or on a block
    of its columns, one counter per thread), feed each polyline's pixels
    to polyline() with a fresh Cursor, then resolve() the counts and blend
    BlendTable(premultiply(colour))(n) over each pixel with over().
*/
namespace CurveRaster {

constexpr int kCoordLimit = 1 << 30;
// Marks a sample that has no pixel (a NaN on either axis).
constexpr qint32 kNoPixel = INT_MIN;
// Item pixel coordinates saturate here (the item's integer polylines).
constexpr int kItemLimit = 1 << 28;

// Where a walk along a run stands: the pixel of the last point counted.
struct Cursor
{
    bool first = true;
    int c = 0;
    int r = 0;
};

// How mapRows() and mapColumns() run: one sample at a time, two (SSE2, the
// x86-64 baseline) or four (AVX2, where the processor has it). Every path
// gives the same pixels to the bit; the best one available is used unless
// setMapPath() chose another.
enum class MapPath { Scalar, Sse2, Avx2 };
bool isMapPathAvailable(MapPath path);
// False, changing nothing, when \a path is not available here.
bool setMapPath(MapPath path);
MapPath mapPath();

// The device row of every sample in \a n: the item pixel of
// CoordMapping::mapY truncated toward zero (saturated at +-kItemLimit), then
// scaled by \a m22, offset by \a dy and floored. kNoPixel where the value or
// its column (\a columns) has no pixel.
void mapRows(const CoordMapping& mapping, double m22, double dy, const double* ys,
             const qint32* columns, qint64 n, qint32* rows);
// The device column of every X sample, as mapRows does for rows.
void mapColumns(const CoordMapping& mapping, double m11, double dx, const double* xs, qint64 n,
                qint32* columns);

// The device columns of X samples in order, kept as steps. The mapping is
// monotone, so the samples of one column are consecutive: a day of samples
// across a few hundred columns takes a few hundred entries instead of one
// per sample, and finding them maps a few samples per column, not all.
class ColumnSteps
{
public:
    // The columns of xs[first .. last], as mapColumns() gives them; the
    // samples must ascend (equal neighbours allowed) with no NaN.
    void build(const CoordMapping& mapping, double m11, double dx, const double* xs, qint64 first,
               qint64 last);
    // The columns of samples j .. j + n - 1, all within the built range.
    void fill(qint64 j, qint64 n, qint32* columns) const;
    // The column of sample j, within the built range.
    qint32 at(qint64 j) const;
    // The samples whose columns lie in lo .. hi and the nearest one outside
    // on each side, within the built range; needs at least one step.
    void around(int lo, int hi, qint64& first, qint64& last) const;
    // The first sample of the built range, and one past its last.
    qint64 begin() const { return m_starts.empty() ? m_end : m_starts.front(); }
    qint64 end() const { return m_end; }
    // How many steps the columns took.
    size_t size() const { return m_starts.size(); }
    // Whether every sample has a column (none is kNoPixel).
    bool allPlaced() const
    {
        return std::find(m_columns.begin(), m_columns.end(), kNoPixel) == m_columns.end();
    }

private:
    size_t stepOf(qint64 j) const;

    std::vector<qint64> m_starts;   // first sample of each step
    std::vector<qint32> m_columns;  // the column of each step
    qint64 m_end = 0;               // one past the last sample
};

// Crossing counts of one target rectangle, column by column (a column of
// dense data stays in the first levels of cache). Every point and span goes
// into a difference array; resolveSum() sums them down each column and
// leaves the counter zeroed for the next use.
class Counter
{
public:
    // Starts counting into \a target (device pixels). Memory is kept between
    // uses and grows to the largest target seen.
    void begin(const QRect& target);

    // Pixel (c, r) of the first point of a run.
    void point(int c, int r)
    {
        if (inside(c, r))
            addSpan(c - m_left, r - m_top, r - m_top);
    }
    // The polyline through the pixels (columns[i], rows[i]), i < n, carrying
    // on from \a cursor; pixels marked kNoPixel are left out and their
    // neighbours joined.
    void polyline(const qint32* columns, const qint32* rows, qint64 n, Cursor& cursor);

    // The rows counted so far in target-relative column \a col: lo > hi when
    // none.
    int touchedLo(int col) const { return m_lo[size_t(col)]; }
    int touchedHi(int col) const { return m_hi[size_t(col)]; }
    // Calls \a sink(column, row, count) for every pixel counted, column by
    // column, rows ascending, in target-relative pixels, and leaves the
    // counter zeroed for the next use.
    template <class Sink>
    void resolve(Sink&& sink);

private:
    template <class Sink>
    friend void resolveSum(std::vector<Counter>& counters, size_t used, Sink&& sink);
    bool inside(int c, int r) const
    {
        return unsigned(c - m_left) < unsigned(m_width) && unsigned(r - m_top) < unsigned(m_height);
    }
    void addSpan(int col, int lo, int hi)
    {
        qint32* d = m_diff.data() + size_t(col) * size_t(m_height + 1);
        ++d[lo];
        --d[hi + 1];
        m_lo[size_t(col)] = std::min(m_lo[size_t(col)], lo);
        m_hi[size_t(col)] = std::max(m_hi[size_t(col)], hi);
    }
    void slanted(int c0, int r0, int c1, int r1);

    int m_left = 0;
    int m_top = 0;
    int m_width = 0;
    int m_height = 0;
    std::vector<qint32> m_diff;  // (height + 1) per column
    std::vector<int> m_lo;       // first touched row per column
    std::vector<int> m_hi;       // last touched row per column
};

// Calls \a sink(column, row, count) for every pixel whose count, summed over
// the first \a used counters (all of one target), is above zero, column by
// column, rows ascending, in target-relative pixels; zeroes the counters.
template <class Sink>
void resolveSum(std::vector<Counter>& counters, size_t used, Sink&& sink)
{
    // Difference arrays add up: the sum's running total down a column is
    // the total of the counts.
    if (used == 0)
        return;
    const Counter& head = counters[0];
    const int width = head.m_width;
    const int height = head.m_height;
    const size_t stride = size_t(height + 1);
    for (int col = 0; col < width; ++col) {
        int lo = height;
        int hi = -1;
        for (size_t t = 0; t < used; ++t) {
            lo = std::min(lo, counters[t].m_lo[size_t(col)]);
            hi = std::max(hi, counters[t].m_hi[size_t(col)]);
        }
        if (lo > hi)
            continue;
        qint32 acc = 0;
        for (int row = lo; row <= hi + 1; ++row) {
            qint32 sum = 0;
            for (size_t t = 0; t < used; ++t) {
                qint32& d = counters[t].m_diff[size_t(col) * stride + size_t(row)];
                sum += d;
                d = 0;
            }
            acc += sum;
            if (acc > 0 && row <= hi)
                sink(col, row, quint32(acc));
        }
        for (size_t t = 0; t < used; ++t) {
            counters[t].m_lo[size_t(col)] = height;
            counters[t].m_hi[size_t(col)] = -1;
        }
    }
}

template <class Sink>
void Counter::resolve(Sink&& sink)
{
    const size_t stride = size_t(m_height + 1);
    for (int col = 0; col < m_width; ++col) {
        const int lo = m_lo[size_t(col)];
        const int hi = m_hi[size_t(col)];
        if (lo > hi)
            continue;
        qint32* d = m_diff.data() + size_t(col) * stride;
        qint32 acc = 0;
        for (int row = lo; row <= hi; ++row) {
            acc += d[row];
            d[row] = 0;
            if (acc > 0)
                sink(col, row, quint32(acc));
        }
        d[hi + 1] = 0;
        m_lo[size_t(col)] = m_height;
        m_hi[size_t(col)] = -1;
    }
}

// Premultiplied 8-bit ARGB source-over, the arithmetic of the pictures:
// each channel is src + dst * (255 - srcAlpha) / 255, rounded to nearest.
inline quint32 over(quint32 src, quint32 dst)
{
    const quint32 keep = 255 - (src >> 24);
    // Two channels at a time: (x * keep + 127) / 255 per channel, exactly.
    const auto half = [keep](quint32 v) {
        quint32 t = (v & 0x00ff00ffu) * keep + 0x007f007fu;
        // t / 255 per 16-bit lane, exact for t < 65535.
        t = ((t + ((t >> 8) & 0x00ff00ffu) + 0x00010001u) >> 8) & 0x00ff00ffu;
        return t;
    };
    return src + (half(dst) | (half(dst >> 8) << 8));
}
// A straight colour (0xAARRGGBB) as premultiplied ARGB.
quint32 premultiply(quint32 argb);

// The colour of a pixel crossed n times by a translucent colour, starting
// from transparent: table[n] = over(colour, table[n - 1]). The table ends
// where blending once more changes nothing; counts beyond it take its last
// entry.
class BlendTable
{
public:
    explicit BlendTable(quint32 premultipliedColour);
    quint32 operator()(quint32 n) const { return m_table[index(n)]; }
    // Where count \a n reads the table, and how many entries it has.
    size_t index(quint32 n) const { return n < m_table.size() ? n : m_table.size() - 1; }
    size_t size() const { return m_table.size(); }

private:
    std::vector<quint32> m_table;
};

} // namespace CurveRaster

#endif // GNSSPLOT_CURVERASTER_P_H
