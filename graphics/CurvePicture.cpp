// SPDX-License-Identifier: MIT
#include "CurvePicture_p.h"

#include "CurvePen_p.h"
#include "CurveVectorPainter_p.h"

#include <QPainter>
#include <QThreadPool>
#include <QVector>
#include <QtConcurrent>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace {

bool near(double a, double b)
{
    return std::abs(a - b) <= 1e-9 * (1.0 + std::abs(a) + std::abs(b));
}

// Pixel columns per block: a block's counters (four bytes per pixel of
// its columns) stay in the first levels of cache however tall the picture.
constexpr int kBlockColumns = 16;
// Below this many samples a picture is counted on the calling thread:
// starting the pool's threads would cost more.
constexpr qint64 kParallelSamples = 250000;
// Samples mapped at a time, on the stack.
constexpr qint64 kChunk = 512;

// Runs \a work(first, last) over the blocks first .. last - 1 of \a blocks,
// on the pool's threads in contiguous stripes (each thread owns whole
// columns) or here when the work is small.
template <class Work>
void forBlocks(int blocks, qint64 samples, Work work)
{
    const int threads = std::max(1, QThreadPool::globalInstance()->maxThreadCount());
    if (threads == 1 || samples < kParallelSamples || blocks < 2) {
        work(0, blocks);
        return;
    }
    // A few stripes per thread even out columns of uneven density.
    const int stripes = std::min(blocks, threads * 4);
    QVector<int> order(stripes);
    std::iota(order.begin(), order.end(), 0);
    QtConcurrent::blockingMap(order, [&](int s) {
        work(int(qint64(blocks) * s / stripes), int(qint64(blocks) * (s + 1) / stripes));
    });
}

// Walks the samples from .. to of \a run (clipped to it) into \a counter:
// the segment that enters from before \a from and the one that leaves
// after \a to, across samples without a pixel, are counted too.
void walkRun(const CurvePass& pass, const CurveRun& run, qint64 from, qint64 to,
             const PictureTarget& target, CurveRaster::Counter& counter)
{
    from = std::max(from, run.begin);
    to = std::min(to, run.end);
    if (from > to)
        return;
    const double* ys = pass.snapshot->ys(pass.yIndex);
    const CurveColumns& columns = *pass.columns;
    const auto pixelOf = [&](qint64 j, qint32& column, qint32& row) {
        column = columns.at(j);
        CurveRaster::mapRows(pass.mapping, target.m22, target.dy, ys + j, &column, 1, &row);
        return row != CurveRaster::kNoPixel;
    };
    CurveRaster::Cursor cursor;
    qint32 column = 0;
    qint32 row = 0;
    for (qint64 j = from - 1; j >= run.begin; --j) {
        if (pixelOf(j, column, row)) {
            cursor = CurveRaster::Cursor{false, column, row};
            break;
        }
    }
    qint32 columnBlock[kChunk];
    qint32 rowBlock[kChunk];
    bool bLastPlaced = true;
    for (qint64 j = from; j <= to; j += kChunk) {
        const qint64 n = std::min(kChunk, to - j + 1);
        columns.fill(j, n, columnBlock);
        CurveRaster::mapRows(pass.mapping, target.m22, target.dy, ys + j, columnBlock, n,
                             rowBlock);
        counter.polyline(columnBlock, rowBlock, n, cursor);
        bLastPlaced = rowBlock[n - 1] != CurveRaster::kNoPixel;
    }
    for (qint64 j = to + 1; !bLastPlaced && j <= run.end; ++j) {
        if (pixelOf(j, column, row)) {
            counter.polyline(&column, &row, 1, cursor);
            bLastPlaced = true;
        }
    }
}

bool hasThinRuns(const CurvePass& pass)
{
    for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
        if (CurvePen::isThin(run.points))
            return true;
    }
    return false;
}

bool hasShortRuns(const CurvePass& pass)
{
    for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
        if (run.points >= 1 && !CurvePen::isThin(run.points))
            return true;
    }
    return false;
}

qint64 visibleSamples(const std::vector<CurvePass>& passes, const std::vector<int>& batch)
{
    qint64 samples = 0;
    for (const int i : batch)
        samples += passes[size_t(i)].columns->last - passes[size_t(i)].columns->first + 1;
    return samples;
}

// Counts the thin runs of \a pass that can reach columns c0 .. c1.
void countBlock(const CurvePass& pass, int c0, int c1, const PictureTarget& target,
                CurveRaster::Counter& counter)
{
    qint64 first = 0;
    qint64 last = 0;
    pass.columns->steps.around(c0, c1, first, last);
    for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
        if (run.end < first)
            continue;
        if (run.begin > last)
            break;
        if (CurvePen::isThin(run.points))
            walkRun(pass, run, first, last, target, counter);
    }
}

} // namespace

bool PictureTarget::matches(const PictureTarget& other) const
{
    return bounds == other.bounds && near(m11, other.m11) && near(m22, other.m22)
           && near(dx, other.dx) && near(dy, other.dy);
}

void CurvePicture::release()
{
    m_image = QImage();
    m_target = PictureTarget();
}

void CurvePicture::build(const PictureTarget& target, const std::vector<CurvePass>& passes,
                         Mix mix)
{
    m_target = target;
    ++m_builds;
    const QRect bounds = target.bounds;
    if (bounds.isEmpty()) {
        m_image = QImage();
        return;
    }
    if (m_image.size() != bounds.size())
        m_image = QImage(bounds.size(), QImage::Format_ARGB32_Premultiplied);
    // Transparent is all zero bytes; memset clears faster than a fill by
    // pixel value.
    std::memset(m_image.bits(), 0, size_t(m_image.sizeInBytes()));

    if (buildInStripes(passes, mix))
        return;
    std::vector<int> batch;
    const auto flush = [&]() {
        if (!batch.empty())
            countInOrder(passes, batch);
        batch.clear();
    };
    if (mix == Mix::ByCount) {
        for (size_t i = 0; i < passes.size(); ++i) {
            const CurvePass& pass = passes[i];
            if (pass.cap != ECurveShowCap_Point && pass.columns->bSteps && hasThinRuns(pass))
                batch.push_back(int(i));
        }
        if (!batch.empty())
            countByCount(passes, batch);
        batch.clear();
    }
    for (size_t i = 0; i < passes.size(); ++i) {
        const CurvePass& pass = passes[i];
        if (pass.cap == ECurveShowCap_Point) {
            flush();
            paintRuns(pass, true);
            continue;
        }
        // Thin runs first, counted; then the short runs and single points
        // of the same Y index on top of them.
        if (hasThinRuns(pass)) {
            if (!pass.columns->bSteps) {
                flush();
                countAlone(pass);
            } else if (mix == Mix::InOrder) {
                batch.push_back(int(i));
            }
        }
        if (hasShortRuns(pass)) {
            flush();
            paintRuns(pass, false);
        }
    }
    flush();
}

bool CurvePicture::buildInStripes(const std::vector<CurvePass>& passes, Mix mix)
{
    // With X in order every pass knows which samples reach which columns,
    // so the picture can be split into stripes of whole blocks that go
    // through all passes, counted and painted, on their own: each thread
    // owns its columns, and the order of the passes holds in every pixel.
    qint64 samples = 0;
    for (const CurvePass& pass : passes) {
        if (!pass.columns->bSteps)
            return false;
        samples += pass.columns->last - pass.columns->first + 1;
    }
    const QRect bounds = m_target.bounds;
    const int blocks = (bounds.width() + kBlockColumns - 1) / kBlockColumns;
    const int threads = std::max(1, QThreadPool::globalInstance()->maxThreadCount());
    if (threads == 1 || samples < kParallelSamples || blocks < 2)
        return false;

    // What each pass does, in order, and for the painted ones the number of
    // points of each run drawn, which its pen width depends on.
    struct Op
    {
        int pass;
        bool bCounted;
        bool bThinToo;
        std::vector<int> points;  // per run, painted ops only
    };
    std::vector<Op> ops;
    std::vector<CurveRaster::BlendTable> tables;
    // Mixed by count, the counted passes go into one mix first.
    std::vector<int> mixed;
    QPolygon mapped;
    for (size_t i = 0; i < passes.size(); ++i) {
        const CurvePass& pass = passes[i];
        const bool bPoints = pass.cap == ECurveShowCap_Point;
        if (!bPoints && hasThinRuns(pass) && mix == Mix::ByCount) {
            mixed.push_back(int(i));
        } else if (!bPoints && hasThinRuns(pass)) {
            ops.push_back(Op{int(i), true, false, {}});
            tables.emplace_back(CurveRaster::premultiply(pass.pen.color().rgba()));
        }
        if (bPoints || hasShortRuns(pass)) {
            Op op{int(i), false, bPoints, {}};
            for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
                int n = 0;
                if (run.points >= 1 && (bPoints || !CurvePen::isThin(run.points))) {
                    CurveVectorPainter::mapRun(*pass.snapshot, pass.mapping, pass.yIndex, run,
                                               mapped);
                    n = mapped.size();
                }
                op.points.push_back(n);
            }
            ops.push_back(std::move(op));
            tables.emplace_back(0u);
        }
    }
    // Without anything to paint, counting block by block over the whole
    // picture shares the work out more evenly.
    if (std::all_of(ops.begin(), ops.end(), [](const Op& op) { return op.bCounted; }))
        return false;
    // A pen reaches at most this far (device pixels) beyond its points: a
    // 4.0-wide point, scaled, and a pixel for rounding.
    const int margin =
        3 + int(std::ceil(4.0 * std::max(std::abs(m_target.m11), std::abs(m_target.m22))));
    uchar* const bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    const int stripes = std::min(blocks, threads * 2);
    QVector<int> order(stripes);
    std::iota(order.begin(), order.end(), 0);
    QtConcurrent::blockingMap(order, [&](int s) {
        const int firstBlock = int(qint64(blocks) * s / stripes);
        const int endBlock = int(qint64(blocks) * (s + 1) / stripes);
        const int x0 = bounds.left() + firstBlock * kBlockColumns;
        const int x1 = std::min(bounds.left() + endBlock * kBlockColumns - 1, bounds.right());
        // The stripe's columns as an image of their own, on the same pixels.
        QImage stripe(bits + size_t(x0 - bounds.left()) * 4, x1 - x0 + 1, bounds.height(),
                      stride, QImage::Format_ARGB32_Premultiplied);
        thread_local CurveRaster::Counter counter;
        if (!mixed.empty())
            countByCount(passes, mixed, firstBlock, endBlock);
        QPolygon points;
        for (size_t o = 0; o < ops.size();) {
            // Passes counted one after the other go block by block, all of
            // them over one block while it is in cache.
            size_t end = o;
            while (end < ops.size() && ops[end].bCounted)
                ++end;
            for (int b = firstBlock; b < endBlock && end > o; ++b) {
                const int c0 = bounds.left() + b * kBlockColumns;
                const int c1 = std::min(c0 + kBlockColumns - 1, bounds.right());
                const int x = c0 - bounds.left();
                for (size_t k = o; k < end; ++k) {
                    counter.begin(QRect(c0, bounds.top(), c1 - c0 + 1, bounds.height()));
                    countBlock(passes[size_t(ops[k].pass)], c0, c1, m_target, counter);
                    const CurveRaster::BlendTable& table = tables[k];
                    counter.resolve([&](int col, int row, quint32 n) {
                        auto* pixel = reinterpret_cast<quint32*>(bits + row * stride) + x + col;
                        *pixel = CurveRaster::over(table(n), *pixel);
                    });
                }
            }
            if (end > o) {
                o = end;
                continue;
            }
            const Op& op = ops[o++];
            const CurvePass& pass = passes[size_t(op.pass)];
            QPainter painter(&stripe);
            painter.setTransform(QTransform(m_target.m11, 0.0, 0.0, m_target.m22,
                                            m_target.dx - x0, m_target.dy - bounds.top()));
            paintRunsNear(pass, op.bThinToo, op.points, x0 - margin, x1 + margin, painter,
                          points);
        }
    });
    return true;
}

void CurvePicture::paintRunsNear(const CurvePass& pass, bool bThinToo,
                                 const std::vector<int>& points, int c0, int c1,
                                 QPainter& painter, QPolygon& out) const
{
    // Only the stretch of each run that can reach columns c0 .. c1, carried
    // on to the nearest drawn point beyond each end, so that every segment
    // crossing the columns is whole; what differs at the cut ends lies
    // farther away than any pen reaches.
    qint64 first = 0;
    qint64 last = 0;
    pass.columns->steps.around(c0, c1, first, last);
    const double* xs = pass.snapshot->xs();
    const double* ys = pass.snapshot->ys(pass.yIndex);
    const auto drawn = [&](qint64 j) {
        return !std::isnan(pass.mapping.mapX(xs[j])) && !std::isnan(pass.mapping.mapY(ys[j]));
    };
    const std::vector<CurveRun>& runs = pass.snapshot->runs(pass.yIndex);
    for (size_t r = 0; r < runs.size(); ++r) {
        const CurveRun& run = runs[r];
        const int n = points[r];
        if (n < 1 || run.end < first || run.begin > last
            || (!bThinToo && CurvePen::isThin(run.points))) {
            continue;
        }
        qint64 a = std::max(run.begin, first);
        qint64 b = std::min(run.end, last);
        while (a > run.begin && !drawn(a))
            --a;
        while (b < run.end && !drawn(b))
            ++b;
        CurveVectorPainter::mapRun(*pass.snapshot, pass.mapping, pass.yIndex,
                                   CurveRun{a, b, run.points}, out);
        if (out.isEmpty())
            continue;
        painter.setPen(CurvePen::forRun(pass.pen, pass.cap, n));
        if (pass.cap == ECurveShowCap_Point || n == 1)
            painter.drawPoints(out);
        else
            painter.drawPolyline(out);
    }
}

void CurvePicture::countInOrder(const std::vector<CurvePass>& passes,
                                const std::vector<int>& batch)
{
    std::vector<CurveRaster::BlendTable> tables;
    tables.reserve(batch.size());
    for (const int i : batch) {
        tables.emplace_back(
            CurveRaster::premultiply(passes[size_t(i)].pen.color().rgba()));
    }
    const QRect bounds = m_target.bounds;
    uchar* const bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    const int blocks = (bounds.width() + kBlockColumns - 1) / kBlockColumns;
    forBlocks(blocks, visibleSamples(passes, batch), [&](int firstBlock, int endBlock) {
        thread_local CurveRaster::Counter counter;
        for (int b = firstBlock; b < endBlock; ++b) {
            const int c0 = bounds.left() + b * kBlockColumns;
            const int c1 = std::min(c0 + kBlockColumns - 1, bounds.right());
            const int x0 = c0 - bounds.left();
            for (size_t t = 0; t < batch.size(); ++t) {
                counter.begin(QRect(c0, bounds.top(), c1 - c0 + 1, bounds.height()));
                countBlock(passes[size_t(batch[t])], c0, c1, m_target, counter);
                const CurveRaster::BlendTable& table = tables[t];
                counter.resolve([&](int col, int row, quint32 n) {
                    auto* pixel = reinterpret_cast<quint32*>(bits + row * stride) + x0 + col;
                    *pixel = CurveRaster::over(table(n), *pixel);
                });
            }
        }
    });
}

void CurvePicture::countAlone(const CurvePass& pass)
{
    // X out of order: any sample may land in any column, so the whole
    // picture is counted at once, here.
    const CurveRaster::BlendTable table(CurveRaster::premultiply(pass.pen.color().rgba()));
    CurveRaster::Counter counter;
    counter.begin(m_target.bounds);
    for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
        if (CurvePen::isThin(run.points))
            walkRun(pass, run, run.begin, run.end, m_target, counter);
    }
    uchar* const bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    counter.resolve([&](int col, int row, quint32 n) {
        auto* pixel = reinterpret_cast<quint32*>(bits + row * stride) + col;
        *pixel = CurveRaster::over(table(n), *pixel);
    });
}

void CurvePicture::countByCount(const std::vector<CurvePass>& passes,
                                const std::vector<int>& batch, int firstBlock, int endBlock)
{
    struct Colour
    {
        CurveRaster::BlendTable table;
        float r, g, b;
        std::vector<float> coverage;  // per table entry: its alpha, 0 .. 1
    };
    std::vector<Colour> colours;
    colours.reserve(batch.size());
    for (const int i : batch) {
        const QColor c = passes[size_t(i)].pen.color();
        Colour colour{CurveRaster::BlendTable(CurveRaster::premultiply(c.rgba())),
                      float(c.red()), float(c.green()), float(c.blue()), {}};
        for (size_t n = 0; n < colour.table.size(); ++n)
            colour.coverage.push_back(float(colour.table(quint32(n)) >> 24) / 255.0f);
        colours.push_back(std::move(colour));
    }
    const QRect bounds = m_target.bounds;
    const int height = bounds.height();
    uchar* const bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    const int blocks = (bounds.width() + kBlockColumns - 1) / kBlockColumns;
    const auto work = [&](int firstBlock, int endBlock) {
        thread_local CurveRaster::Counter counter;
        // Per pixel of a block: what lets light through (the product of
        // 1 - coverage), the summed coverage and the coverage-weighted
        // colour; sums and products do not depend on the order.
        thread_local std::vector<float> sums;
        thread_local std::vector<int> lo;
        thread_local std::vector<int> hi;
        sums.assign(size_t(kBlockColumns) * size_t(height) * 5, 0.0f);
        for (size_t p = 0; p < sums.size(); p += 5)
            sums[p] = 1.0f;
        lo.assign(kBlockColumns, height);
        hi.assign(kBlockColumns, -1);
        for (int b = firstBlock; b < endBlock; ++b) {
            const int c0 = bounds.left() + b * kBlockColumns;
            const int c1 = std::min(c0 + kBlockColumns - 1, bounds.right());
            for (size_t t = 0; t < batch.size(); ++t) {
                counter.begin(QRect(c0, bounds.top(), c1 - c0 + 1, height));
                countBlock(passes[size_t(batch[t])], c0, c1, m_target, counter);
                // The rows this pass reaches, read before resolving empties
                // the counter, so that the pixels need no bookkeeping.
                for (int col = 0; col <= c1 - c0; ++col) {
                    lo[size_t(col)] = std::min(lo[size_t(col)], counter.touchedLo(col));
                    hi[size_t(col)] = std::max(hi[size_t(col)], counter.touchedHi(col));
                }
                const Colour& colour = colours[t];
                counter.resolve([&](int col, int row, quint32 n) {
                    const float w = colour.coverage[colour.table.index(n)];
                    float* s = sums.data() + (size_t(col) * size_t(height) + size_t(row)) * 5;
                    s[0] *= 1.0f - w;
                    s[1] += w;
                    s[2] += w * colour.r;
                    s[3] += w * colour.g;
                    s[4] += w * colour.b;
                });
            }
            for (int col = 0; col <= c1 - c0; ++col) {
                for (int row = lo[size_t(col)]; row <= hi[size_t(col)]; ++row) {
                    float* s = sums.data() + (size_t(col) * size_t(height) + size_t(row)) * 5;
                    if (s[1] > 0.0f) {
                        const float alpha = 1.0f - s[0];
                        const auto channel = [&](float sum) {
                            return quint32(std::lround(sum / s[1] * alpha));
                        };
                        const quint32 a = quint32(std::lround(alpha * 255.0f));
                        const quint32 mixed = (a << 24) | (channel(s[2]) << 16)
                                              | (channel(s[3]) << 8) | channel(s[4]);
                        auto* pixel = reinterpret_cast<quint32*>(bits + row * stride)
                                      + (c0 - bounds.left() + col);
                        *pixel = CurveRaster::over(mixed, *pixel);
                    }
                    s[0] = 1.0f;
                    s[1] = s[2] = s[3] = s[4] = 0.0f;
                }
                lo[size_t(col)] = height;
                hi[size_t(col)] = -1;
            }
        }
    };
    if (firstBlock >= 0)
        work(firstBlock, endBlock);
    else
        forBlocks(blocks, visibleSamples(passes, batch), work);
}

void CurvePicture::paintRuns(const CurvePass& pass, bool bThinToo)
{
    QPainter painter(&m_image);
    const QRect bounds = m_target.bounds;
    painter.setTransform(QTransform(m_target.m11, 0.0, 0.0, m_target.m22,
                                    m_target.dx - bounds.left(), m_target.dy - bounds.top()));
    QPolygon points;
    for (const CurveRun& run : pass.snapshot->runs(pass.yIndex)) {
        if (run.points < 1 || (!bThinToo && CurvePen::isThin(run.points)))
            continue;
        CurveVectorPainter::mapRun(*pass.snapshot, pass.mapping, pass.yIndex, run, points);
        const int n = points.size();
        if (n == 0)
            continue;
        painter.setPen(CurvePen::forRun(pass.pen, pass.cap, n));
        if (pass.cap == ECurveShowCap_Point || n == 1)
            painter.drawPoints(points);
        else
            painter.drawPolyline(points);
    }
}
