#ifndef GNSSPLOT_STROKEMODEL_P_H
#define GNSSPLOT_STROKEMODEL_P_H

// What Qt's raster engine does with an aliased polyline whose pen is at most
// one device pixel wide, repeated without drawing.
//
// Qt walks each segment pixel by pixel and blends the pen colour into every
// pixel it meets, once per meeting; which pixels a segment meets depends on
// the state the previous segment left (its last pixel and direction). The
// model follows Qt 5.15's stroker step by step: clipping to the device, the
// first and last pixel, the duplicate pixel at joints, the pixel added where
// the direction turns, and the state handed on. A sink receives the pixels:
// whole vertical runs where a segment stays in one column, and single pixels
// otherwise.
//
// Every file that instantiates stroke() must be compiled without fused
// multiply-adds (see CMake): the model has to round as Qt does.

#include <QTransform>
#include <QtGlobal>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <utility>
#include <vector>

class QPainter;
class QPen;

// What of the painter decides the drawing of a polyline.
struct StrokeTarget
{
    QTransform transform;   // device transform, a plain scale and offset at most
    int deviceWidth = 0;    // pixels of the device the engine draws into
    int deviceHeight = 0;
    bool drawCaps = true;   // the pen's cap is not flat
    int opacity = 256;      // Qt's fading of pens thinner than a pixel, of 256
    int settledCount = 0;   // blends after which a pixel stops changing

    bool operator==(const StrokeTarget& other) const
    {
        return transform == other.transform && deviceWidth == other.deviceWidth
               && deviceHeight == other.deviceHeight && drawCaps == other.drawCaps
               && opacity == other.opacity && settledCount == other.settledCount;
    }
    bool operator!=(const StrokeTarget& other) const { return !(*this == other); }

    // Fills \a target for drawing with \a pen on \a painter and returns true
    // when Qt will draw that pen with its one-pixel stroker into a 32-bit
    // image with plain source-over blending: the case the model is exact for.
    static bool forPainter(const QPainter* painter, const QPen& pen, StrokeTarget* target);
    // Number of source-over blends of one colour with this alpha (or any
    // alpha down to \a alphaLow) after which further blends change no
    // channel of any pixel; 0 for alphas below 1.
    static int settledBlendCount(int alphaLow, int alphaHigh);
};

class StrokeModel
{
public:
    enum Direction { NoDirection = 0, TopToBottom = 1, BottomToTop = 2, LeftToRight = 4,
                     RightToLeft = 8, VerticalMask = 3, HorizontalMask = 12 };
    enum Caps { NoCaps = 0, CapBegin = 1, CapEnd = 2 };

    // The state one segment hands on to the next.
    struct State
    {
        int lastX = INT_MIN;
        int lastY = INT_MIN;
        int lastDir = NoDirection;
        bool lastAxisAligned = false;
        bool operator==(const State& o) const
        {
            return lastX == o.lastX && lastY == o.lastY && lastDir == o.lastDir
                   && lastAxisAligned == o.lastAxisAligned;
        }
    };

    // A sink that counts the rows a segment sets in one pixel column, or
    // notes that it set pixels elsewhere.
    struct ColumnCounter
    {
        int column = 0;
        int firstRow = 0;        // row of (*diff)[0]
        std::vector<int>* diff;  // difference array over rows
        bool stray = false;      // a pixel outside the column or the rows
        // Qt sets rows from .. to - 1 of column x, and row from even when
        // to is not past it.
        void rows(int x, int from, int to);
        void steep(int, int, int, int) { stray = true; }
        void flat(int, int, int, int) { stray = true; }
    };

    // A sink that takes no pixels, for following the state alone.
    struct NoPixels
    {
        void rows(int, int, int) {}
        void steep(int, int, int, int) {}
        void flat(int, int, int, int) {}
    };

    StrokeModel(int deviceWidth, int deviceHeight);

    // One segment in device coordinates, as Qt strokes it from the state in
    // \a s; returns whether the polyline moves its start point on to the
    // segment's end. The pixels go to \a sink: rows() for a run down one
    // column, steep() for a walk of rows y .. ys - 1 from x (16.16 fixed
    // point) by xinc, flat() for a walk of columns x .. xs - 1 from y by
    // yinc; each sets at least its first pixel.
    template <class Sink>
    bool stroke(State& s, double x1, double y1, double x2, double y2, int caps, Sink& sink) const;

    // The same as stroke() for a segment that stays in pixel column
    // \a column, starts where the last drawn segment of that column ended
    // (s.lastX is the column, the direction vertical) and lies within the
    // clip band; the caller checks those conditions with inColumn().
    template <class Sink>
    bool strokeInColumn(State& s, int column, double y1, double y2, Sink& sink) const;
    // Whether a device x lies in the band the stroker clips lines to.
    bool inBand(double x) const { return x >= m_xmin && x <= m_xmax; }
    bool inBandY(double y) const { return y >= m_ymin && y <= m_ymax; }
    bool inColumn(const State& s, double x, double y1, double y2, int column) const
    {
        return s.lastX == column && s.lastAxisAligned && (s.lastDir & VerticalMask) != 0
               && x >= m_xmin && x <= m_xmax && y1 >= m_ymin && y1 <= m_ymax && y2 >= m_ymin
               && y2 <= m_ymax;
    }

    // Caps Qt gives segment i (ending at point i) of an open polyline of n
    // points: the first segment begins one, the last ends one.
    static int polylineCaps(bool drawCaps, int i, int n)
    {
        if (!drawCaps)
            return NoCaps;
        return (i == 1 ? CapBegin : NoCaps) | (i == n - 1 ? CapEnd : NoCaps);
    }

    static int toF26Dot6(double v) { return int(v * 64.); }
    // Pixel row or column of the pixel centre nearest to a device position,
    // as the stroker rounds; far-off positions are pulled in to stay clear
    // of overflow.
    static int pixelOf(double v)
    {
        return (toF26Dot6(std::min(std::max(v, -double(1 << 24)), double(1 << 24))) + 32) >> 6;
    }

private:
    bool clipLine(State& s, double& x1, double& y1, double& x2, double& y2) const;

    static int fixedDiv(int x, int y)
    {
        if (std::abs(x) > 0x7fff)
            return int(qint64(x) * (1 << 16) / y);
        return x * (1 << 16) / y;
    }
    static int swapCaps(int caps) { return ((caps & CapBegin) << 1) | ((caps & CapEnd) >> 1); }
    static void capAdjust(int caps, int& x1, int& x2, int& y, int yinc)
    {
        if (caps & CapBegin) {
            x1 -= 32;
            y -= yinc >> 1;
        }
        if (caps & CapEnd)
            x2 += 32;
    }

    double m_xmin, m_xmax, m_ymin, m_ymax;
};

// Device position of an item point, computed as QTransform::map does for
// the transform types the model accepts.
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

template <class Sink>
bool StrokeModel::stroke(State& s, double rx1, double ry1, double rx2, double ry2, int caps,
                         Sink& sink) const
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
            if (xinc == 0)
                sink.rows(x >> 16, y, ys);
            else
                sink.steep(x, xinc, y, ys);
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
            sink.flat(x, xs, y, yinc);
            didDraw = true;
        }
    }
    s.lastX = lastX;
    s.lastY = lastY;
    return didDraw;
}

template <class Sink>
bool StrokeModel::strokeInColumn(State& s, int column, double ry1, double ry2, Sink& sink) const
{
    // stroke() with x1 == x2, no clipping, no caps of the polyline's ends and
    // a vertical predecessor in this column, its branches folded into
    // selects: dense data turns up or down at random, and a mispredicted
    // branch costs more than the other side's few operations.
    const int y1 = toF26Dot6(ry1);
    const int y2 = toF26Dot6(ry2);
    if (y1 == y2)
        return true;
    const bool down = y1 < y2;
    const bool turn = s.lastDir == (down ? BottomToTop : TopToBottom);
    const int capShift = turn ? 32 : 0;
    int y = ((down ? y1 - capShift : y2) + 32) >> 6;
    int ys = ((down ? y2 : y1 + capShift) + 32) >> 6;
    y += (down && turn && s.lastY == y + 1) ? 1 : 0;
    if (y == ys)
        return std::abs(ry2 - ry1) >= 1.0;
    // The segment's pixel at its start: dropped where the last segment
    // ended on it, or a pixel added before it where a turn left a gap.
    const int start = down ? y : ys - 1;
    const int step = down ? 1 : -1;
    const int delta = start == s.lastY ? step
                      : (turn && std::abs(s.lastY - start) > 1) ? -step
                                                                : 0;
    y += down ? delta : 0;
    ys += down ? 0 : delta;
    sink.rows(column, y, ys);
    s.lastY = down ? ys - 1 : y;
    s.lastDir = down ? TopToBottom : BottomToTop;
    return true;
}

// Instantiated once, in a file built without fused multiply-adds.
extern template bool StrokeModel::stroke(State&, double, double, double, double, int,
                                         ColumnCounter&) const;
extern template bool StrokeModel::stroke(State&, double, double, double, double, int,
                                         NoPixels&) const;
extern template bool StrokeModel::strokeInColumn(State&, int, double, double,
                                                 ColumnCounter&) const;

#endif // GNSSPLOT_STROKEMODEL_P_H
