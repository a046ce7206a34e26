// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_NAVIGATIONREADER_H
#define GNSSDEMO_NAVIGATIONREADER_H

#include "NavigationData.h"

#include <QByteArray>
#include <QString>

namespace gnssdemo {

/*!
    Reads RINEX broadcast navigation files, plain, gzip- or Unix-compressed:
    versions 3.0x (one record after the other) and 4.0x (each record behind
    a "> EPH" line), and the older 2.xx GPS, GLONASS and SBAS files.

    Kept: GPS and QZSS LNAV, Galileo I/NAV and F/NAV, BeiDou D1 and D2
    (MEO, IGSO and GEO satellites), GLONASS FDMA state vectors and SBAS
    state vectors. Not used, counted in the report: NavIC records, the
    modernised messages of RINEX 4 (CNAV, CNV1 to CNV3, GLONASS CDMA); the
    system time, Earth orientation and ionosphere records of RINEX 4 are
    passed over.

    A record that cannot be read (a number that is none, a line too few
    before the next record, a date that does not exist) is skipped; the
    report counts it and keeps the first messages, "line N: why", N being
    the record's first line. A file that ends inside a record keeps every
    record before it.
*/
class NavigationReader
{
public:
    /*! Reads \a path into \a data, adding a report for the file. Returns
        false, \a data unchanged and a message naming the file in \a error
        (when not null) when the file cannot be read or is no navigation
        file (then nothing is added). */
    static bool readFile(const QString& path, NavigationData* data, QString* error);
    /*! Parses the uncompressed content \a text as the file \a name. Errors
        as readFile(), "line N: ..." without the file name. */
    static bool readText(const QByteArray& text, const QString& name, NavigationData* data,
                         QString* error);
};

/*! GPS minus UTC in seconds at \a gpstMs (GPST ms since 1970) from the
    table of leap seconds since 1980; 18 from 2017 on. */
int gpsLeapSeconds(qint64 gpstMs);

} // namespace gnssdemo

#endif // GNSSDEMO_NAVIGATIONREADER_H
