#include "StrokeModel_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <atomic>
#include <cmath>

// This file must be compiled without contracting multiplications and
// additions into fused operations (see CMake): the model repeats Qt's
// floating-point steps and has to round exactly as they do.

namespace {

// Larger devices make Qt's own fixed-point steps overflow; nothing is
// modelled for them.
constexpr int kMaxDeviceSide = 16384;

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
    target->opacity = opacity;
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

template bool StrokeModel::stroke(State&, double, double, double, double, int,
                                  ColumnCounter&) const;
template bool StrokeModel::stroke(State&, double, double, double, double, int, NoPixels&) const;
template bool StrokeModel::strokeInColumn(State&, int, double, double, ColumnCounter&) const;
