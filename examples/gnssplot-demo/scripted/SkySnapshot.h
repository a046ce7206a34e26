// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SKYSNAPSHOT_H
#define GNSSDEMO_SKYSNAPSHOT_H

#include <QByteArray>
#include <QString>

class QDir;

namespace gnssdemo {

class DemoDocument;
class SkyTracks;

/*! The text of sky.csv: the line "satellite,time_gpst,azimuth_deg,elevation_deg",
    then one line per satellite (in name order) and epoch (in time order)
    with a position: "G05,2024-05-03T00:00:30,123.456,-0.789" (GPST,
    angles in degrees with three decimals). Counts the rows in \a rows. */
QByteArray skyCsv(const SkyTracks& sky, qint64* rows);

/*!
    With navigation in \a doc: writes \a dir/sky.csv and returns the
    summary's lines about it (the files read, the satellites with positions,
    those observed without an ephemeris). Without navigation returns an
    empty text and writes nothing. Sets \a failed when sky.csv cannot be
    written.
*/
QString writeSkySnapshot(const DemoDocument& doc, const QDir& dir, bool* failed);

} // namespace gnssdemo

#endif // GNSSDEMO_SKYSNAPSHOT_H
