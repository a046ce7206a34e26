#include "StrokeRaster_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>
#include <QPolygon>
#include <QRgba64>

#include <algorithm>
#include <cstring>

// Compiled without fused multiply-adds, as the stroke model requires (see
// CMake).

namespace {

// Clips larger than this many pixels are left to Qt: the counts would take
// more memory than they save time.
constexpr qint64 kMaxClipPixels = qint64(1) << 24;

// Crossing counts per pixel of the clip as difference arrays down each
// column, and the tables that blend a pixel n times. Kept per thread and
// left zeroed after every flush, so that the next paint starts at once.
struct Scratch
{
    std::vector<int> diff;   // column-major, (height + 1) per column
    std::vector<int> lo;     // per column, first touched index, or INT_MAX
    std::vector<int> hi;     // per column, last touched index, or -1
    int minColumn = INT_MAX;
    int maxColumn = -1;
    // (settled + 1) blocks of 4 x 256 entries: channel c of a pixel blended
    // n times is blends[(n * 4 + c) * 256 + v], already shifted in place.
    std::vector<quint32> blends;
    QRgb blendsColor = 0;
    int blendsSettled = -1;  // -1 while blends holds no table
    // The raster drawing with these counts; a second one on the same
    // thread (a paint inside a paint) leaves its drawing to Qt.
    const StrokeRaster* owner = nullptr;
};

thread_local Scratch t_scratch;

// Where the stroke model's pixels go: counted into the clip's columns.
struct PixelCounter
{
    int left, top, width, height, stride;
    int* diff;
    int* lo;
    int* hi;
    int minColumn, maxColumn;

    void span(int column, int first, int past)
    {
        int* d = diff + qint64(column) * stride;
        ++d[first];
        --d[past];
        lo[column] = std::min(lo[column], first);
        hi[column] = std::max(hi[column], past);
        minColumn = std::min(minColumn, column);
        maxColumn = std::max(maxColumn, column);
    }
    void rows(int x, int from, int to)
    {
        const int column = x - left;
        if (unsigned(column) >= unsigned(width))
            return;
        const int first = std::max(from - top, 0);
        const int past = std::min(std::max(from + 1, to) - top, height);
        if (first < past)
            span(column, first, past);
    }
    void pixel(int x, int y)
    {
        const int column = x - left;
        const int row = y - top;
        if (unsigned(column) < unsigned(width) && unsigned(row) < unsigned(height))
            span(column, row, row + 1);
    }
    void steep(int x, int xinc, int y, int ys)
    {
        do {
            pixel(x >> 16, y);
            x += xinc;
        } while (++y < ys);
    }
    void flat(int x, int xs, int y, int yinc)
    {
        do {
            pixel(x, y >> 16);
            y += yinc;
        } while (++x < xs);
    }
};

// The same for the rows of one column, which the caller found inside the
// clip (diff points at its counts) or outside it (diff is null). The caller
// bounds the touched rows itself, from the points.
struct ColumnSink
{
    int* diff;
    int top, height;

    void rows(int, int from, int to)
    {
        const int a = std::max(from - top, 0);
        const int b = std::min(std::max(from + 1, to) - top, height);
        if (a < b && diff) {
            ++diff[a];
            --diff[b];
        }
    }
};

// One 8-bit channel scaled by a / 255, rounded as Qt's raster blending
// rounds.
inline quint32 byteMul(quint32 v, quint32 a)
{
    const quint32 t = v * a;
    return (t + (t >> 8) + 0x80) >> 8;
}

// One channel of Qt's source-over of a premultiplied colour.
inline quint32 blendChannel(quint32 color, quint32 pixel, quint32 inverseAlpha)
{
    return color + byteMul(pixel, inverseAlpha);
}

} // namespace

StrokeRaster::~StrokeRaster()
{
    flush();
    if (t_scratch.owner == this)
        t_scratch.owner = nullptr;
}

bool StrokeRaster::begin(QPainter* painter, const QRectF* itemClip)
{
    flush();
    m_painter = nullptr;
    Scratch& scratch = t_scratch;
    if (scratch.owner && scratch.owner != this)
        return false;
    scratch.owner = nullptr;
    if (!painter || !painter->isActive() || (!itemClip && painter->hasClipping()))
        return false;
    QPaintEngine* engine = painter->paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return false;
    QPaintDevice* device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image)
        return false;
    QImage* image = static_cast<QImage*>(device);
    if (image->format() != QImage::Format_RGB32
        && image->format() != QImage::Format_ARGB32_Premultiplied)
        return false;
    const QTransform& transform = painter->deviceTransform();
    if (transform.type() > QTransform::TxScale)
        return false;
    const QRegion system = engine->systemClip();
    if (system.rectCount() > 1)
        return false;
    // Under a scale Qt's raster engine turns a rectangular clip into the
    // mapped rectangle grown to whole pixels.
    QRect rect = image->rect();
    if (itemClip)
        rect &= transform.mapRect(*itemClip).toAlignedRect();
    if (!system.isEmpty())
        rect &= system.boundingRect();
    if (qint64(rect.width()) * (rect.height() + 1) > kMaxClipPixels)
        return false;

    const size_t cells = size_t(std::max(rect.width(), 0)) * size_t(std::max(rect.height(), 0) + 1);
    if (scratch.diff.size() < cells)
        scratch.diff.resize(cells, 0);
    if (scratch.lo.size() < size_t(std::max(rect.width(), 0))) {
        scratch.lo.resize(size_t(rect.width()), INT_MAX);
        scratch.hi.resize(size_t(rect.width()), -1);
    }
    // Writing through constBits() keeps the image from detaching: the
    // engine holds on to the same pixels.
    m_bits = const_cast<uchar*>(image->constBits());
    m_bytesPerLine = image->bytesPerLine();
    m_clip = rect;
    m_rectClipped = itemClip != nullptr;
    m_painter = painter;
    m_pending = false;
    scratch.owner = this;
    return true;
}

bool StrokeRaster::setColor(QRgb color)
{
    if (m_pending && color == m_color)
        return true;
    flush();
    m_color = color;
    Scratch& scratch = t_scratch;
    if (scratch.blendsSettled >= 0 && scratch.blendsColor == color) {
        m_settled = scratch.blendsSettled;
        return true;
    }
    // Blend every channel value again and again until nothing changes any
    // more; the tables keep each step. Source-over moves a value steadily
    // towards a fixed point, so 255 steps always suffice.
    const quint32 inverseAlpha = 255 - qAlpha(color);
    std::vector<quint32>& blends = scratch.blends;
    blends.resize(1024);
    for (int c = 0; c < 4; ++c) {
        for (quint32 v = 0; v < 256; ++v)
            blends[size_t(c * 256 + int(v))] = v << (8 * c);
    }
    int settled = 0;
    for (;;) {
        const size_t base = size_t(settled) * 1024;
        blends.resize(base + 2048);
        bool changed = false;
        for (int c = 0; c < 4; ++c) {
            const int shift = 8 * c;
            const quint32 channel = (color >> shift) & 0xff;
            for (int v = 0; v < 256; ++v) {
                const size_t at = base + size_t(c * 256 + v);
                const quint32 before = blends[at] >> shift;
                const quint32 after = blendChannel(channel, before, inverseAlpha);
                changed = changed || after != before;
                blends[at + 1024] = after << shift;
            }
        }
        if (!changed)
            break;
        ++settled;
    }
    blends.resize(size_t(settled + 1) * 1024);
    scratch.blendsColor = color;
    scratch.blendsSettled = settled;
    m_settled = settled;
    return true;
}

bool StrokeRaster::add(const QPolygon& run, const QPen& pen)
{
    const int n = run.size();
    // Qt starts a closed polyline (last point on the first) with other
    // rules.
    if (!m_painter || n < 2 || run.first() == run.last())
        return false;
    StrokeTarget target;
    if (!StrokeTarget::forPainter(m_painter, pen, &target))
        return false;
    // The colour the stroker blends: the pen's, premultiplied in 16 bits,
    // then faded by the opacity of thin pens. Under a rectangular clip the
    // stroker blends into the pixels itself and fades in 16 bits before
    // narrowing; otherwise it hands spans to the blender, which narrows
    // first and fades by the span's coverage.
    const QRgba64 premultiplied = qPremultiply(pen.color().rgba64());
    QRgb color = premultiplied.toArgb32();
    if (m_rectClipped) {
        const auto fade = [&target](quint16 v) { return quint16((v * uint(target.opacity)) >> 8); };
        color = QRgba64::fromRgba64(fade(premultiplied.red()), fade(premultiplied.green()),
                                    fade(premultiplied.blue()), fade(premultiplied.alpha()))
                    .toArgb32();
    } else {
        const quint32 coverage = (255u * quint32(target.opacity)) >> 8;
        if (coverage != 255) {
            quint32 faded = 0;
            for (int shift = 0; shift < 32; shift += 8)
                faded |= byteMul((color >> shift) & 0xff, coverage) << shift;
            color = faded;
        }
    }
    setColor(color);
    m_pending = true;
    if (m_clip.isEmpty())
        return true;

    Scratch& scratch = t_scratch;
    PixelCounter counter{m_clip.left(), m_clip.top(), m_clip.width(), m_clip.height(),
                         m_clip.height() + 1, scratch.diff.data(), scratch.lo.data(),
                         scratch.hi.data(), scratch.minColumn, scratch.maxColumn};
    const StrokeModel model(target.deviceWidth, target.deviceHeight);
    const DeviceMap map(target.transform);
    const QPoint* p = run.constData();
    StrokeModel::State state;
    int startX = p[0].x();
    double px = map.x(startX);
    double py = map.y(p[0].y());
    int i = 1;
    while (i < n) {
        const double x2 = map.x(p[i].x());
        const double y2 = map.y(p[i].y());
        const int caps = StrokeModel::polylineCaps(target.drawCaps, i, n);
        // Qt keeps the start of a segment it dropped as too short, except
        // at the polyline's ends.
        if (model.stroke(state, px, py, x2, y2, caps, counter) || i == 1 || i == n - 1) {
            startX = p[i].x();
            px = x2;
            py = y2;
        }
        ++i;
        // Dense data mostly goes up and down one pixel column: the points
        // that follow on the start's x take the short step, with the
        // column's place in the counts worked out once.
        if (i >= n - 1 || p[i].x() != startX || !model.inBand(px))
            continue;
        const int column = StrokeModel::toF26Dot6(px) >> 6;
        if (!model.inColumn(state, px, py, py, column))
            continue;
        ColumnSink sink{nullptr, m_clip.top(), m_clip.height()};
        const int clipColumn = column - m_clip.left();
        if (unsigned(clipColumn) < unsigned(m_clip.width()))
            sink.diff = scratch.diff.data() + qint64(clipColumn) * (m_clip.height() + 1);
        // A segment sets rows between its ends' rows, one more at a turn
        // and one more for rounding a cap's half pixel.
        double lowest = py;
        double highest = py;
        for (; i < n - 1 && p[i].x() == startX; ++i) {
            const double y = map.y(p[i].y());
            if (!model.inBandY(y))
                break;
            lowest = std::min(lowest, y);
            highest = std::max(highest, y);
            if (model.strokeInColumn(state, column, py, y, sink))
                py = y;
        }
        if (sink.diff) {
            const int first = std::max(StrokeModel::pixelOf(lowest) - 2 - m_clip.top(), 0);
            const int past = std::min(StrokeModel::pixelOf(highest) + 3 - m_clip.top(),
                                      m_clip.height());
            if (first <= past) {
                const size_t c = size_t(clipColumn);
                scratch.lo[c] = std::min(scratch.lo[c], first);
                scratch.hi[c] = std::max(scratch.hi[c], past);
                counter.minColumn = std::min(counter.minColumn, clipColumn);
                counter.maxColumn = std::max(counter.maxColumn, clipColumn);
            }
        }
    }
    scratch.minColumn = counter.minColumn;
    scratch.maxColumn = counter.maxColumn;
    return true;
}

void StrokeRaster::flush()
{
    if (!m_pending)
        return;
    m_pending = false;
    Scratch& scratch = t_scratch;
    const int stride = m_clip.height() + 1;
    const quint32* blends = scratch.blends.data();
    for (int column = scratch.minColumn; column <= scratch.maxColumn; ++column) {
        const int first = scratch.lo[size_t(column)];
        const int last = scratch.hi[size_t(column)];
        if (first > last)
            continue;
        scratch.lo[size_t(column)] = INT_MAX;
        scratch.hi[size_t(column)] = -1;
        int* d = scratch.diff.data() + qint64(column) * stride;
        uchar* const columnTop = m_bits + qint64(m_clip.top()) * m_bytesPerLine
                                 + qint64(m_clip.left() + column) * 4;
        int count = 0;
        // The last index only takes back what ended there: its count is 0.
        for (int r = first; r <= last; ++r) {
            count += d[r];
            d[r] = 0;
            if (count <= 0)
                continue;
            const quint32* table = blends + size_t(std::min(count, m_settled)) * 1024;
            quint32& pixel = *reinterpret_cast<quint32*>(columnTop + qint64(r) * m_bytesPerLine);
            const quint32 v = pixel;
            pixel = table[v & 0xff] | table[256 + ((v >> 8) & 0xff)]
                    | table[512 + ((v >> 16) & 0xff)] | table[768 + (v >> 24)];
        }
    }
    scratch.minColumn = INT_MAX;
    scratch.maxColumn = -1;
}
