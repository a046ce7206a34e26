// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_PICTURES_H
#define GNSSDEMO_PICTURES_H

#include <QImage>
#include <QSize>
#include <QString>

namespace gnssdemo {

class DemoHost;

/*! Satellite \a name's MP1 curve over the whole day, \a size pixels on an
    opaque white ground: a title line with the satellite, its bands and the
    unit above the library's off-screen drawing (DrawXYCurveToPixmap). Null
    when the satellite has no curve. */
QImage curvePicture(const DemoHost& host, const QString& name, const QSize& size);

/*! Every satellite's bars, drawn off-screen by the library
    (PaintAllLabelsToDevice), in columns of at most \a rowsPerColumn
    satellites, each bar \a barWidth pixels wide, under a title and the band
    legend; the picture is as wide as the widest of the three. Satellites
    unchecked in the table are grey. */
QImage barsPicture(const DemoHost& host, int barWidth, int rowsPerColumn);

} // namespace gnssdemo

#endif // GNSSDEMO_PICTURES_H
