// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SNAPSHOT_H
#define GNSSDEMO_SNAPSHOT_H

#include <QString>

class QTextStream;

namespace gnssdemo {

class DemoWindow;

/*!
    Runs the round trip on a loaded, shown window and writes its pictures
    into \a dir: the host hands the table erase marks on three satellites and
    one unchecked satellite, reads them back, applies them, then saves
    window.png, view.png, table.png, curve.png (DrawXYCurveToPixmap of a
    marked satellite; left out when no satellite has a curve),
    bars.png (PaintAllLabelsToDevice) and summary.txt, which ends with the
    quality table (qualityTableText()) and says where a file cut short
    stopped; with navigation also sky.csv (see writeSkySnapshot()) and
    sky.png, the sky plot at 800 x 800 coloured by signal strength.
    Prints where they are on \a out; returns the process exit code.
*/
int runSnapshot(DemoWindow& window, const QString& dir, QTextStream& out, QTextStream& err);

} // namespace gnssdemo

#endif // GNSSDEMO_SNAPSHOT_H
