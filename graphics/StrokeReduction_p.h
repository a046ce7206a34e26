#ifndef GNSSPLOT_STROKEREDUCTION_P_H
#define GNSSPLOT_STROKEREDUCTION_P_H

// Cutting a translucent one-pixel polyline down to fewer points without
// changing a single pixel of Qt's raster drawing of it.
//
// Qt draws an aliased polyline whose pen is at most one device pixel wide by
// walking each segment pixel by pixel and blending the pen colour into every
// pixel it meets, once per meeting. A translucent pixel therefore darkens
// with every segment that crosses it, which is why simply dropping points
// (as an opaque pen would allow) changes the picture. But blending one colour
// again and again settles after a few rounds (eight for alpha 128): from then
// on the pixel no longer changes. Dense data crosses most pixels of a column
// far more often than that. So a column's inner points may go wherever every
// pixel keeps its crossing count, or a count at least that settling number
// where it already had one, and the line state handed on to the next column
// stays the same.
//
// StrokeModel repeats what Qt's stroker computes for each segment (first and
// last pixel, the duplicate pixel at joints, the pixel added where the
// direction turns, the state carried to the next segment) without drawing.
// reduceStroke() uses it to propose a shorter path through each column and
// keeps the proposal only where the model shows the same counts and the same
// state after it; everywhere else the original points stay.

#include <QPolygon>
#include <QTransform>

#include <climits>
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
    int settledCount = 0;   // blends after which a pixel stops changing

    bool operator==(const StrokeTarget& other) const
    {
        return transform == other.transform && deviceWidth == other.deviceWidth
               && deviceHeight == other.deviceHeight && drawCaps == other.drawCaps
               && settledCount == other.settledCount;
    }
    bool operator!=(const StrokeTarget& other) const { return !(*this == other); }

    // Fills \a target for drawing with \a pen on \a painter and returns true
    // when Qt will draw that pen with its one-pixel stroker into a 32-bit
    // image with plain source-over blending: the case reduceStroke() is
    // exact for.
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

    // Rows a segment sets in one pixel column, or a note that it set pixels
    // elsewhere. Used for segments expected to stay inside a column.
    struct ColumnCounter
    {
        int column = 0;
        int firstRow = 0;        // row of counts[0]
        std::vector<int>* diff;  // difference array over rows
        bool stray = false;      // a pixel outside the column or the rows
        void rows(int x, int from, int to);
    };

    StrokeModel(int deviceWidth, int deviceHeight);

    // One segment in device coordinates, as Qt strokes it from the state in
    // \a s; returns whether the polyline moves its start point on to the
    // segment's end. With \a counter null nothing is counted.
    bool stroke(State& s, double x1, double y1, double x2, double y2, int caps,
                ColumnCounter* counter) const;

    // The same as stroke() for a segment that stays in the pixel column of
    // \a counter, starts where the last drawn segment of that column ended
    // (s.lastX is the column, the direction vertical) and lies within the
    // clip band; the caller checks those conditions with inColumn().
    bool strokeInColumn(State& s, double y1, double y2, ColumnCounter& counter) const;
    bool inColumn(const State& s, double x, double y1, double y2, int column) const
    {
        return s.lastX == column && s.lastAxisAligned && (s.lastDir & VerticalMask) != 0
               && x >= m_xmin && x <= m_xmax && y1 >= m_ymin && y1 <= m_ymax && y2 >= m_ymin
               && y2 <= m_ymax;
    }

private:
    bool clipLine(State& s, double& x1, double& y1, double& x2, double& y2) const;

    double m_xmin, m_xmax, m_ymin, m_ymax;
};

// Writes to \a out a polyline that \a target's painter draws exactly as it
// draws \a run, with fewer points where the data allows; returns false (and
// leaves \a out empty) when it keeps every point.
bool reduceStroke(const QPolygon& run, const StrokeTarget& target, QPolygon& out);

#endif // GNSSPLOT_STROKEREDUCTION_P_H
