#ifndef GNSSPLOT_STROKERASTER_P_H
#define GNSSPLOT_STROKERASTER_P_H

// Drawing translucent one-pixel polylines without Qt's per-segment cost.
//
// Qt's raster engine blends the pen colour into a pixel once for every
// segment that crosses it, so a dense curve costs a blend per pixel of every
// segment, hundreds of millions for a day of 1 Hz data. Blending one colour
// n times in a row gives a result that depends only on n and the pixel
// before. StrokeRaster therefore follows each segment with the stroke model
// (the very pixels Qt would set) but only counts crossings per pixel, and
// at flush() turns each touched pixel into its n-fold blend with one table
// look-up per channel. The image comes out bit for bit as Qt would draw it.

#include "StrokeModel_p.h"

#include <QRect>
#include <QRgb>

class QPainter;
class QPen;
class QPolygon;
class QRectF;

class StrokeRaster
{
public:
    StrokeRaster() = default;
    ~StrokeRaster();
    StrokeRaster(const StrokeRaster&) = delete;
    StrokeRaster& operator=(const StrokeRaster&) = delete;

    // Starts drawing on \a painter. With \a itemClip null the painter must
    // have no clipping; otherwise its clipping must be exactly
    // setClipRect(*itemClip) (logical coordinates) set on a painter without
    // any, which the caller vouches for. Returns false, and draws nothing
    // later, when the painter's output is not handled here: it must paint
    // into a 32-bit image through the raster engine, with a system clip of
    // one rectangle at most and a plain scale and offset.
    bool begin(QPainter* painter, const QRectF* itemClip);
    // Counts the pixels of \a run drawn with \a pen. Returns false, and
    // counts nothing, when the pen is not drawn by Qt's one-pixel stroker
    // with plain blending, or the run is shorter than two points or closed;
    // the caller flush()es and draws such a run with the painter.
    bool add(const QPolygon& run, const QPen& pen);
    // Blends what was counted into the image.
    void flush();

private:
    bool setColor(QRgb color);

    QPainter* m_painter = nullptr;
    uchar* m_bits = nullptr;
    int m_bytesPerLine = 0;
    QRect m_clip;         // device pixels that may change
    bool m_rectClipped = false;  // Qt's stroker blends directly, not in spans
    QRgb m_color = 0;     // colour of the counts pending
    int m_settled = 0;    // blends after which m_color changes no pixel
    bool m_pending = false;
};

#endif // GNSSPLOT_STROKERASTER_P_H
