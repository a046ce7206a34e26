// SPDX-License-Identifier: MIT
#include "CurveVectorPainter_p.h"

#include "CurvePen_p.h"

#include <QPainter>

#include <cmath>

namespace CurveVectorPainter {

int toPixel(double v)
{
    if (std::isnan(v))
        return 0;
    if (v >= kPixelLimit)
        return kPixelLimit;
    if (v <= -kPixelLimit)
        return -kPixelLimit;
    return static_cast<int>(v);
}

void mapRun(const CurveSnapshot& snapshot, const CoordMapping& mapping, int yIndex,
            const CurveRun& run, QPolygon& out)
{
    const double* xs = snapshot.xs();
    const double* ys = snapshot.ys(yIndex);
    out.resize(int(run.end - run.begin + 1));
    QPoint* points = out.data();
    int m = 0;
    for (qint64 j = run.begin; j <= run.end; ++j) {
        const double px = mapping.mapX(xs[j]);
        const double py = mapping.mapY(ys[j]);
        // A missing value leaves a gap in the samples but not in the run:
        // its neighbours are joined directly. A NaN X has no place on the
        // axis, nor has a value whose mapping overflowed; both are dropped
        // the same way.
        if (std::isnan(px) || std::isnan(py))
            continue;
        points[m++] = QPoint(toPixel(px), toPixel(py));
    }
    out.resize(m);
}

namespace {

// The points of a thin run that a vector device needs: per device-pixel
// column the first, lowest, highest and last point, in the run's order.
void reduceToColumns(const QPolygon& run, const QTransform& transform, QPolygon& out)
{
    out.clear();
    const int n = run.size();
    int begin = 0;
    const auto column = [&](int i) {
        return std::floor(transform.map(QPointF(run.at(i))).x());
    };
    while (begin < n) {
        const double c = column(begin);
        int end = begin + 1;
        int lo = begin;
        int hi = begin;
        while (end < n && column(end) == c) {
            if (run.at(end).y() < run.at(lo).y())
                lo = end;
            if (run.at(end).y() > run.at(hi).y())
                hi = end;
            ++end;
        }
        int keep[4] = {begin, std::min(lo, hi), std::max(lo, hi), end - 1};
        for (int i = 0; i < 4; ++i) {
            if (i == 0 || keep[i] != keep[i - 1])
                out.append(run.at(keep[i]));
        }
        begin = end;
    }
}

} // namespace

void draw(QPainter* painter, const CurveSnapshot& snapshot, const CoordMapping& mapping,
          const std::vector<Pass>& passes, ECurveShowCap cap, bool bReduceThin)
{
    const QTransform transform = painter->deviceTransform();
    QPolygon points;
    QPolygon reduced;
    for (const Pass& pass : passes) {
        if (pass.yIndex >= snapshot.yCount())
            continue;
        for (const CurveRun& run : snapshot.runs(pass.yIndex)) {
            if (run.points < 1)
                continue;
            mapRun(snapshot, mapping, pass.yIndex, run, points);
            const qint64 n = points.size();
            painter->setPen(CurvePen::forRun(pass.pen, cap, n));
            if (cap == ECurveShowCap_Point || n == 1) {
                painter->drawPoints(points);
            } else if (bReduceThin && CurvePen::isThin(n)) {
                reduceToColumns(points, transform, reduced);
                painter->drawPolyline(reduced);
            } else {
                painter->drawPolyline(points);
            }
        }
    }
}

} // namespace CurveVectorPainter
