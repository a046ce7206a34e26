#include "StrokeReduction_p.h"

#include <algorithm>
#include <cmath>

// Compiled without fused multiply-adds, as the stroke model requires (see
// CMake).

namespace {

// Runs and columns too short to gain from the work.
constexpr int kMinRunPoints = 64;
constexpr int kMinColumnSegments = 6;

class Reducer
{
public:
    Reducer(const QPolygon& run, const StrokeTarget& target, QPolygon& out)
        : m_points(run.constData()), m_n(run.size()), m_target(target), m_map(target.transform),
          m_model(target.deviceWidth, target.deviceHeight), m_out(out)
    {
    }
    bool run();

private:
    // Strokes segment i (from the current start to point i) as Qt's
    // polyline loop does, with its caps and start-point rule.
    void plainSegment(int i)
    {
        const double x2 = m_map.x(m_points[i].x());
        const double y2 = m_map.y(m_points[i].y());
        const int caps = StrokeModel::polylineCaps(m_target.drawCaps, i, m_n);
        StrokeModel::NoPixels none;
        const bool moved = m_model.stroke(m_state, m_px, m_py, x2, y2, caps, none);
        if (moved || i == 1 || i == m_n - 1) {
            m_px = x2;
            m_py = y2;
        }
    }
    // Points first .. last (inclusive) share one x; the segments into
    // first + 1 .. last are stroked, and the column's points are appended,
    // reduced where that provably keeps the pixels.
    void column(int first, int last);
    // Strokes the segments to the points of \a indexes from the state
    // given, counting rows in \a counter; the state and start point after
    // them are left in the arguments.
    void strokeColumn(const int* indexes, int count, StrokeModel::State& state, double& px,
                      double& py, StrokeModel::ColumnCounter& counter) const;
    bool proposeColumn(int first, int last, int firstRow);

    const QPoint* m_points;
    int m_n;
    const StrokeTarget& m_target;
    DeviceMap m_map;
    StrokeModel m_model;
    QPolygon& m_out;

    StrokeModel::State m_state;
    double m_px = 0.0;
    double m_py = 0.0;

    std::vector<int> m_original;  // row differences, then counts
    std::vector<int> m_proposed;
    std::vector<int> m_indexes;
    std::vector<int> m_stack;
};

bool Reducer::run()
{
    const QPoint* p = m_points;
    m_px = m_map.x(p[0].x());
    m_py = m_map.y(p[0].y());
    m_out.reserve(m_n);
    m_out.append(p[0]);
    int i = 1;
    while (i < m_n) {
        const int first = i - 1;
        int last = first;
        while (last + 1 < m_n && p[last + 1].x() == p[first].x())
            ++last;
        // The first and the last segment of the polyline carry caps and
        // always move the start point: they stay outside any reduction.
        if (first >= 1 && last <= m_n - 2 && last - first >= kMinColumnSegments) {
            column(first, last);
            i = last + 1;
            continue;
        }
        for (const int end = std::max(last, i); i <= end; ++i) {
            plainSegment(i);
            m_out.append(p[i]);
        }
    }
    return m_out.size() < m_n;
}

void Reducer::strokeColumn(const int* indexes, int count, StrokeModel::State& state,
                           double& px, double& py, StrokeModel::ColumnCounter& counter) const
{
    for (int k = 0; k < count; ++k) {
        const QPoint& q = m_points[indexes[k]];
        const double x2 = m_map.x(q.x());
        const double y2 = m_map.y(q.y());
        const bool moved = x2 == px && m_model.inColumn(state, px, py, y2, counter.column)
                               ? m_model.strokeInColumn(state, counter.column, py, y2, counter)
                               : m_model.stroke(state, px, py, x2, y2, StrokeModel::NoCaps,
                                                counter);
        if (moved) {
            px = x2;
            py = y2;
        }
    }
}

void Reducer::column(int first, int last)
{
    const QPoint* p = m_points;
    const double deviceX = m_map.x(p[first].x());
    // Rows the column's segments can reach: those of its points, one more
    // for caps and turns, within the clip band the stroker keeps.
    int lo = StrokeModel::pixelOf(m_py);
    int hi = lo;
    for (int j = first; j <= last; ++j) {
        const int row = StrokeModel::pixelOf(m_map.y(p[j].y()));
        lo = std::min(lo, row);
        hi = std::max(hi, row);
    }
    lo = qBound(-8, lo, m_target.deviceHeight + 8) - 4;
    hi = qBound(-8, hi, m_target.deviceHeight + 8) + 4;
    const int rows = hi - lo + 1;

    const StrokeModel::State entryState = m_state;
    const double entryX = m_px;
    const double entryY = m_py;

    m_indexes.clear();
    for (int j = first + 1; j <= last; ++j)
        m_indexes.push_back(j);
    m_original.assign(size_t(rows) + 1, 0);
    // A column off the device draws nothing that could be counted.
    const int pixelColumn = m_model.inBand(deviceX) ? StrokeModel::toF26Dot6(deviceX) >> 6 : INT_MIN;
    StrokeModel::ColumnCounter original{pixelColumn, lo, &m_original, false};
    strokeColumn(m_indexes.data(), int(m_indexes.size()), m_state, m_px, m_py, original);

    bool reduced = false;
    if (!original.stray && deviceX == entryX) {
        for (int r = 1; r < rows; ++r)
            m_original[size_t(r)] += m_original[size_t(r - 1)];
        if (proposeColumn(first, last, lo)) {
            StrokeModel::State state = entryState;
            double px = entryX;
            double py = entryY;
            m_proposed.assign(size_t(rows) + 1, 0);
            StrokeModel::ColumnCounter proposed{original.column, lo, &m_proposed, false};
            strokeColumn(m_stack.data() + 1, int(m_stack.size()) - 1, state, px, py, proposed);
            reduced = !proposed.stray && state == m_state && px == m_px && py == m_py;
            const int settled = m_target.settledCount;
            for (int r = 0; reduced && r < rows; ++r) {
                if (r > 0)
                    m_proposed[size_t(r)] += m_proposed[size_t(r - 1)];
                reduced = std::min(m_proposed[size_t(r)], settled)
                          == std::min(m_original[size_t(r)], settled);
            }
        }
    }
    if (reduced) {
        for (size_t k = 1; k < m_stack.size(); ++k)
            m_out.append(p[m_stack[k]]);
    } else {
        for (int j = first + 1; j <= last; ++j)
            m_out.append(p[j]);
    }
}

bool Reducer::proposeColumn(int first, int last, int firstRow)
{
    // The column's turning points, then, rainflow fashion, every small
    // excursion inside a larger swing dropped where the rows it crosses are
    // crossed often enough for two crossings less to leave them settled.
    const QPoint* p = m_points;
    m_indexes.clear();
    m_indexes.push_back(first);
    for (int j = first + 1; j < last; ++j) {
        const int prev = p[m_indexes.back()].y();
        const int here = p[j].y();
        const int next = p[j + 1].y();
        if (here == prev)
            continue;
        if (next != here && (here > prev) == (next > here))
            continue;
        m_indexes.push_back(j);
    }
    m_indexes.push_back(last);

    const int settled = m_target.settledCount;
    const int rows = int(m_original.size()) - 1;
    std::vector<int>& counts = m_proposed;  // scratch: remaining crossings
    counts.assign(m_original.begin(), m_original.end() - 1);
    const auto rowIndex = [this, firstRow, rows](int j) {
        return qBound(0, StrokeModel::pixelOf(m_map.y(m_points[j].y())) - firstRow, rows - 1);
    };
    m_stack.clear();
    for (const int j : m_indexes) {
        m_stack.push_back(j);
        while (m_stack.size() >= 4) {
            const size_t top = m_stack.size();
            const int a = p[m_stack[top - 4]].y();
            const int b = p[m_stack[top - 3]].y();
            const int c = p[m_stack[top - 2]].y();
            const int d = p[m_stack[top - 1]].y();
            const int swing = std::abs(b - c);
            if (swing > std::abs(a - b) || swing > std::abs(c - d))
                break;
            const int rb = rowIndex(m_stack[top - 3]);
            const int rc = rowIndex(m_stack[top - 2]);
            const int from = std::max(std::min(rb, rc) - 2, 0);
            const int to = std::min(std::max(rb, rc) + 2, rows - 1);
            // Branch-free scans: these ranges are short and the loops run
            // for nearly every turning point.
            int* range = counts.data() + from;
            const int length = to - from + 1;
            int least = INT_MAX;
            for (int r = 0; r < length; ++r)
                least = std::min(least, range[r]);
            if (least < settled + 2)
                break;
            for (int r = 0; r < length; ++r)
                range[r] -= 2;
            m_stack.erase(m_stack.end() - 3, m_stack.end() - 1);
        }
    }
    return int(m_stack.size()) - 1 < last - first;
}

} // namespace

bool reduceStroke(const QPolygon& run, const StrokeTarget& target, QPolygon& out)
{
    out.clear();
    const int n = run.size();
    // A closed outline (last point on the first) starts with other rules.
    if (n < kMinRunPoints || run.first() == run.last() || target.settledCount < 1)
        return false;
    Reducer reducer(run, target, out);
    if (!reducer.run()) {
        out.clear();
        return false;
    }
    return true;
}
