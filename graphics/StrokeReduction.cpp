#include "StrokeReduction_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>

// This file must be compiled without contracting multiplications and
// additions into fused operations (see CMake): the model repeats Qt's
// floating-point steps and has to round exactly as they do.

namespace {

// Larger devices make Qt's own fixed-point steps overflow; nothing is
// reduced for them.
constexpr int kMaxDeviceSide = 16384;
// Runs and columns too short to gain from the work.
constexpr int kMinRunPoints = 64;
constexpr int kMinColumnSegments = 6;

inline int toF26Dot6(double v)
{
    return int(v * 64.);
}

inline int fixedDiv(int x, int y)
{
    if (std::abs(x) > 0x7fff)
        return int(qint64(x) * (1 << 16) / y);
    return x * (1 << 16) / y;
}

inline int swapCaps(int caps)
{
    return ((caps & StrokeModel::CapBegin) << 1) | ((caps & StrokeModel::CapEnd) >> 1);
}

inline void capAdjust(int caps, int& x1, int& x2, int& y, int yinc)
{
    if (caps & StrokeModel::CapBegin) {
        x1 -= 32;
        y -= yinc >> 1;
    }
    if (caps & StrokeModel::CapEnd)
        x2 += 32;
}

// The pixel source-over of one 8-bit channel: s + d * (255 - a) / 255 with
// the rounding Qt's raster blending uses.
inline int blendChannel(int s, int d, int inverseAlpha)
{
    const int t = d * inverseAlpha;
    return s + ((t + (t >> 8) + 0x80) >> 8);
}

int settledCountForAlpha(int alpha)
{
    const int inverseAlpha = 255 - alpha;
    int most = 0;
    // Premultiplied channels never exceed the alpha.
    for (int s = 0; s <= alpha; ++s) {
        for (int d = 0; d < 256; ++d) {
            int v = d;
            int steps = 0;
            for (;;) {
                const int next = blendChannel(s, v, inverseAlpha);
                if (next == v)
                    break;
                v = next;
                ++steps;
            }
            most = std::max(most, steps);
        }
    }
    return most;
}

// Row of the pixel centre nearest to a device y, as the stroker rounds.
inline int rowOf(double y)
{
    return (toF26Dot6(y) + 32) >> 6;
}

} // namespace

int StrokeTarget::settledBlendCount(int alphaLow, int alphaHigh)
{
    // One entry per alpha, 0 while unknown, otherwise the count plus one.
    static std::atomic<int> known[256];
    int result = 0;
    for (int a = std::max(alphaLow, 1); a <= std::min(alphaHigh, 255); ++a) {
        int entry = known[a].load(std::memory_order_relaxed);
        if (entry == 0) {
            entry = settledCountForAlpha(a) + 1;
            known[a].store(entry, std::memory_order_relaxed);
        }
        result = std::max(result, entry - 1);
    }
    return result;
}

bool StrokeTarget::forPainter(const QPainter* painter, const QPen& pen, StrokeTarget* target)
{
    if (!painter || !painter->isActive())
        return false;
    QPaintEngine* engine = painter->paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return false;
    const QPaintDevice* device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image)
        return false;
    const QImage* image = static_cast<const QImage*>(device);
    if (image->format() != QImage::Format_RGB32
        && image->format() != QImage::Format_ARGB32_Premultiplied)
        return false;
    if (image->width() > kMaxDeviceSide || image->height() > kMaxDeviceSide)
        return false;
    if (painter->renderHints() & (QPainter::Antialiasing | QPainter::Qt4CompatiblePainting))
        return false;
    if (painter->compositionMode() != QPainter::CompositionMode_SourceOver
        || painter->opacity() != 1.0)
        return false;
    const QTransform& transform = painter->deviceTransform();
    if (transform.type() > QTransform::TxScale)
        return false;
    if (pen.style() != Qt::SolidLine || pen.brush().style() != Qt::SolidPattern)
        return false;
    // Qt strokes a pen with its one-pixel stroker when it is cosmetic and at
    // most one pixel wide, or when its width scaled by the transform is.
    const double txscale = transform.type() == QTransform::TxScale
                               ? std::max(std::abs(transform.m11()), std::abs(transform.m22()))
                               : 1.0;
    const double width = pen.widthF();
    const bool cosmetic = pen.isCosmetic();
    if (cosmetic ? width > 1.0 : width * txscale > 1.0)
        return false;
    // The stroker fades thin pens by their width; the blended colour's
    // alpha lies between that faded alpha (less a little rounding) and the
    // pen's own.
    int opacity = 256;
    if (width != 0)
        opacity = cosmetic ? int(256 * width) : int(256 * width * txscale);
    opacity = qBound(0, opacity, 256);
    const int alpha = pen.color().alpha();
    const int alphaLow = alpha * opacity / 256 - 3;
    if (alphaLow < 16)
        return false;
    target->transform = transform;
    target->deviceWidth = image->width();
    target->deviceHeight = image->height();
    target->drawCaps = pen.capStyle() != Qt::FlatCap;
    target->settledCount = settledBlendCount(alphaLow, alpha);
    return true;
}

StrokeModel::StrokeModel(int deviceWidth, int deviceHeight)
    // The stroker clips lines to the device, widened by a pixel on each side.
    : m_xmin(-1), m_xmax(deviceWidth + 1), m_ymin(-1), m_ymax(deviceHeight + 1)
{
}

void StrokeModel::ColumnCounter::rows(int x, int from, int to)
{
    // Qt's pixel loop sets the first row even when its end is not past it.
    const int end = std::max(from + 1, to);
    const int first = from - firstRow;
    const int past = end - firstRow;
    if (x != column || first < 0 || past >= int(diff->size())) {
        stray = true;
        return;
    }
    ++(*diff)[first];
    --(*diff)[past];
}

bool StrokeModel::clipLine(State& s, double& x1, double& y1, double& x2, double& y2) const
{
    if (!std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2))
        return true;
    const double xmin = m_xmin, xmax = m_xmax, ymin = m_ymin, ymax = m_ymax;
    if (x1 < xmin) {
        if (x2 <= xmin)
            goto clipped;
        y1 += (y2 - y1) / (x2 - x1) * (xmin - x1);
        x1 = xmin;
    } else if (x1 > xmax) {
        if (x2 >= xmax)
            goto clipped;
        y1 += (y2 - y1) / (x2 - x1) * (xmax - x1);
        x1 = xmax;
    }
    if (x2 < xmin) {
        s.lastX = INT_MIN;
        y2 += (y2 - y1) / (x2 - x1) * (xmin - x2);
        x2 = xmin;
    } else if (x2 > xmax) {
        s.lastX = INT_MIN;
        y2 += (y2 - y1) / (x2 - x1) * (xmax - x2);
        x2 = xmax;
    }
    if (y1 < ymin) {
        if (y2 <= ymin)
            goto clipped;
        x1 += (x2 - x1) / (y2 - y1) * (ymin - y1);
        y1 = ymin;
    } else if (y1 > ymax) {
        if (y2 >= ymax)
            goto clipped;
        x1 += (x2 - x1) / (y2 - y1) * (ymax - y1);
        y1 = ymax;
    }
    if (y2 < ymin) {
        s.lastX = INT_MIN;
        x2 += (x2 - x1) / (y2 - y1) * (ymin - y2);
        y2 = ymin;
    } else if (y2 > ymax) {
        s.lastX = INT_MIN;
        x2 += (x2 - x1) / (y2 - y1) * (ymax - y2);
        y2 = ymax;
    }
    return false;

clipped:
    s.lastX = INT_MIN;
    return true;
}

bool StrokeModel::stroke(State& s, double rx1, double ry1, double rx2, double ry2, int caps,
                         ColumnCounter* counter) const
{
    bool didDraw = std::abs(rx2 - rx1) + std::abs(ry2 - ry1) >= 1.0;
    if (clipLine(s, rx1, ry1, rx2, ry2))
        return true;

    int x1 = toF26Dot6(rx1);
    int y1 = toF26Dot6(ry1);
    int x2 = toF26Dot6(rx2);
    int y2 = toF26Dot6(ry2);
    const int dx = std::abs(x2 - x1);
    const int dy = std::abs(y2 - y1);

    int lastX = s.lastX;
    int lastY = s.lastY;

    if (dx < dy) {
        // Steep: one pixel per row.
        int dir = TopToBottom;
        bool swapped = false;
        if (y1 > y2) {
            swapped = true;
            std::swap(y1, y2);
            std::swap(x1, x2);
            caps = swapCaps(caps);
            dir = BottomToTop;
        }
        const int xinc = fixedDiv(x2 - x1, y2 - y1);
        int x = x1 * (1 << 10);
        if ((s.lastDir ^ VerticalMask) == dir)
            caps |= swapped ? CapEnd : CapBegin;
        capAdjust(caps, y1, y2, x, xinc);

        int y = (y1 + 32) >> 6;
        int ys = (y2 + 32) >> 6;
        const int round = (xinc > 0) ? 32 : 0;
        if ((caps & CapBegin) && s.lastY == y + 1)
            y++;

        if (y != ys) {
            x += ((y * (1 << 6)) + round - y1) * xinc >> 6;
            int firstX = x >> 16;
            int firstY = y;
            lastX = (x + (ys - y - 1) * xinc) >> 16;
            lastY = ys - 1;
            if (swapped) {
                std::swap(firstX, lastX);
                std::swap(firstY, lastY);
            }
            const bool axisAligned = std::abs(xinc) < (1 << 14);
            if (s.lastX > INT_MIN) {
                if (firstX == s.lastX && firstY == s.lastY) {
                    // The joint pixel is not drawn twice.
                    if (swapped) {
                        --ys;
                    } else {
                        ++y;
                        x += xinc;
                    }
                } else if (s.lastDir != dir
                           && (((axisAligned && s.lastAxisAligned) && s.lastX != firstX
                                && s.lastY != firstY)
                               || (std::abs(s.lastX - firstX) > 1
                                   || std::abs(s.lastY - firstY) > 1))) {
                    // A pixel missing at a turn is added.
                    if (swapped) {
                        ++ys;
                    } else {
                        --y;
                        x -= xinc;
                    }
                } else if (s.lastDir == dir
                           && (std::abs(s.lastX - firstX) <= 1
                               && std::abs(s.lastY - firstY) > 1)) {
                    x += xinc >> 1;
                    if (swapped)
                        lastX = x >> 16;
                    else
                        lastX = (x + (ys - y - 1) * xinc) >> 16;
                }
            }
            s.lastDir = dir;
            s.lastAxisAligned = axisAligned;
            if (counter) {
                if (xinc == 0)
                    counter->rows(x >> 16, y, ys);
                else
                    counter->stray = true;
            }
            didDraw = true;
        }
    } else {
        // Flat: one pixel per column.
        if (!dx)
            return true;
        int dir = LeftToRight;
        bool swapped = false;
        if (x1 > x2) {
            swapped = true;
            std::swap(x1, x2);
            std::swap(y1, y2);
            caps = swapCaps(caps);
            dir = RightToLeft;
        }
        const int yinc = fixedDiv(y2 - y1, x2 - x1);
        int y = y1 * (1 << 10);
        if ((s.lastDir ^ HorizontalMask) == dir)
            caps |= swapped ? CapEnd : CapBegin;
        capAdjust(caps, x1, x2, y, yinc);

        int x = (x1 + 32) >> 6;
        int xs = (x2 + 32) >> 6;
        const int round = (yinc > 0) ? 32 : 0;
        if ((caps & CapBegin) && s.lastX == x + 1)
            x++;

        if (x != xs) {
            y += ((x * (1 << 6)) + round - x1) * yinc >> 6;
            int firstX = x;
            int firstY = y >> 16;
            lastX = xs - 1;
            lastY = (y + (xs - x - 1) * yinc) >> 16;
            if (swapped) {
                std::swap(firstX, lastX);
                std::swap(firstY, lastY);
            }
            const bool axisAligned = std::abs(yinc) < (1 << 14);
            if (s.lastX > INT_MIN) {
                if (firstX == s.lastX && firstY == s.lastY) {
                    if (swapped) {
                        --xs;
                    } else {
                        ++x;
                        y += yinc;
                    }
                } else if (s.lastDir != dir
                           && (((axisAligned && s.lastAxisAligned) && s.lastX != firstX
                                && s.lastY != firstY)
                               || (std::abs(s.lastX - firstX) > 1
                                   || std::abs(s.lastY - firstY) > 1))) {
                    if (swapped) {
                        ++xs;
                    } else {
                        --x;
                        y -= yinc;
                    }
                } else if (s.lastDir == dir
                           && (std::abs(s.lastX - firstX) <= 1
                               && std::abs(s.lastY - firstY) > 1)) {
                    y += yinc >> 1;
                    if (swapped)
                        lastY = y >> 16;
                    else
                        lastY = (y + (xs - x - 1) * yinc) >> 16;
                }
            }
            s.lastDir = dir;
            s.lastAxisAligned = axisAligned;
            if (counter)
                counter->stray = true;
            didDraw = true;
        }
    }
    s.lastX = lastX;
    s.lastY = lastY;
    return didDraw;
}

bool StrokeModel::strokeInColumn(State& s, double ry1, double ry2, ColumnCounter& counter) const
{
    // stroke() with x1 == x2, no clipping, no caps of the polyline's ends and
    // a vertical predecessor in this column, its branches folded.
    int y1 = toF26Dot6(ry1);
    int y2 = toF26Dot6(ry2);
    if (y1 == y2)
        return true;
    const bool didDraw = std::abs(ry2 - ry1) >= 1.0;
    if (y1 < y2) {
        const bool turn = s.lastDir == BottomToTop;
        if (turn)
            y1 -= 32;
        int y = (y1 + 32) >> 6;
        const int ys = (y2 + 32) >> 6;
        if (turn && s.lastY == y + 1)
            y++;
        if (y == ys)
            return didDraw;
        if (y == s.lastY)
            ++y;
        else if (std::abs(s.lastY - y) > 1 && turn)
            --y;
        counter.rows(counter.column, y, ys);
        s.lastY = ys - 1;
        s.lastDir = TopToBottom;
        return true;
    }
    const bool turn = s.lastDir == TopToBottom;
    if (turn)
        y1 += 32;
    const int y = (y2 + 32) >> 6;
    int ys = (y1 + 32) >> 6;
    if (y == ys)
        return didDraw;
    if (ys - 1 == s.lastY)
        --ys;
    else if (std::abs(s.lastY - (ys - 1)) > 1 && turn)
        ++ys;
    counter.rows(counter.column, y, ys);
    s.lastY = y;
    s.lastDir = BottomToTop;
    return true;
}

namespace {

// Device position of an item point, computed as QTransform::map does for
// the transform types the reduction accepts.
struct DeviceMap
{
    explicit DeviceMap(const QTransform& t)
        : type(t.type()), m11(t.m11()), m22(t.m22()), dx(t.dx()), dy(t.dy())
    {
    }
    double x(int v) const
    {
        const double f = v;
        return type == QTransform::TxNone ? f
               : type == QTransform::TxTranslate ? f + dx
                                                  : m11 * f + dx;
    }
    double y(int v) const
    {
        const double f = v;
        return type == QTransform::TxNone ? f
               : type == QTransform::TxTranslate ? f + dy
                                                  : m22 * f + dy;
    }
    QTransform::TransformationType type;
    double m11, m22, dx, dy;
};

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
        int caps = StrokeModel::NoCaps;
        if (m_target.drawCaps && i == 1)
            caps |= StrokeModel::CapBegin;
        if (m_target.drawCaps && i == m_n - 1)
            caps |= StrokeModel::CapEnd;
        const bool moved = m_model.stroke(m_state, m_px, m_py, x2, y2, caps, nullptr);
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
                               ? m_model.strokeInColumn(state, py, y2, counter)
                               : m_model.stroke(state, px, py, x2, y2, StrokeModel::NoCaps,
                                                &counter);
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
    int lo = rowOf(m_py);
    int hi = lo;
    for (int j = first; j <= last; ++j) {
        const int row = rowOf(m_map.y(p[j].y()));
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
    StrokeModel::ColumnCounter original{toF26Dot6(deviceX) >> 6, lo, &m_original, false};
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
        return qBound(0, rowOf(m_map.y(m_points[j].y())) - firstRow, rows - 1);
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
