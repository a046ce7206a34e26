// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_PICTURES_H
#define GNSSDEMO_PICTURES_H

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

class QPainter;
class QWidget;

namespace gnssdemo {

class DemoDocument;
class DemoHost;

/*! The station of \a doc for titles: its marker name, else the source's
    description. */
QString stationName(const DemoDocument& doc);

/*! \a view as it is shown, at its size and device pixel ratio, under a
    line of \a title on a white ground: what "Save curve picture" saves.
    Null for a null view. */
QImage viewPicture(QWidget* view, const QString& title);

/*! Draws a time axis for [\a tMin, \a tMax] (GPST milliseconds) along the
    top of \a rect: a line, ticks at round times (a date where a tick falls
    on midnight) and their labels below, as many as fit without touching. */
void drawTimeAxis(QPainter* painter, const QRect& rect, qint64 tMin, qint64 tMax);

/*! Satellite \a name's MP1 curve over the whole day, \a size pixels on an
    opaque white ground: a title line with the satellite, its bands and the
    unit above the library's off-screen drawing (DrawXYCurveToPixmap). Null
    when the satellite has no curve. */
QImage curvePicture(const DemoHost& host, const QString& name, const QSize& size);

/*! Every satellite's bars, drawn off-screen by the library
    (PaintAllLabelsToDevice), in columns of at most \a rowsPerColumn
    satellites, each bar \a barWidth pixels wide, under a title with the
    station and the band legend, with a time axis under each column; the
    picture is as wide as the widest of the three. Satellites unchecked in
    the table are grey. */
QImage barsPicture(const DemoHost& host, int barWidth, int rowsPerColumn);

} // namespace gnssdemo

#endif // GNSSDEMO_PICTURES_H
