// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_CSVEXPORT_H
#define GNSSDEMO_CSVEXPORT_H

#include "ObservationEvents.h"

#include <QByteArray>
#include <QString>

#include <vector>

/*!
    \file CsvExport.h
    Rows of comma-separated text for exporting what the demo shows: curve
    samples and event marks. Times are GPST as "YYYY-MM-DDTHH:MM:SS", with
    ".mmm" added when the time has milliseconds; numbers use a full stop as
    decimal sign whatever the locale.
*/
namespace gnssdemo {

/*! The first line of a curve export. */
constexpr const char* CurveCsvHeader = "satellite,time_gpst,signal,value\n";
/*! The first line of an event export. */
constexpr const char* EventCsvHeader = "satellite,time_gpst,signal,kind\n";
/*! The first line of a sky track export. */
constexpr const char* SkyCsvHeader = "satellite,time_gpst,azimuth_deg,elevation_deg\n";

/*! \a ms (GPST milliseconds since 1970-01-01) as "2024-07-27T10:15:30" or
    "2024-04-01T08:31:16.443". */
QByteArray csvTime(qint64 ms);

/*! Appends one row "satellite,time,signal,value" to \a out for each of the
    \a count samples (\a x in milliseconds, \a y in the curve's unit) whose
    time lies in [\a tMin, \a tMax] and whose value is finite, the value with
    \a decimals digits after the point. Null arrays or a count below 1 add
    nothing. */
void appendCurveRows(QByteArray& out, const QString& satellite, const QString& signal,
                     const double* x, const double* y, qint64 count, double tMin, double tMax,
                     int decimals);

/*! Appends one row "satellite,time,signal,kind" to \a out for each of
    \a events whose time lies in [\a tMin, \a tMax]; the kind as
    eventKindName(). */
void appendEventRows(QByteArray& out, const QString& satellite, const QString& signal,
                     const std::vector<EpochEvent>& events, double tMin, double tMax);

/*! Appends \a degrees to \a out with three decimals ("-0.789"), written
    from the digits themselves so that no locale puts a comma in. */
void appendAngle(QByteArray& out, double degrees);

/*! Appends one row "satellite,time,azimuth,elevation" to \a out for each of
    the \a count samples (\a time in milliseconds, angles in degrees) whose
    time lies in [\a tMin, \a tMax] and whose two angles are finite, angles
    with three decimals, times to the second. Null arrays add nothing. */
void appendSkyRows(QByteArray& out, const QString& satellite, const double* time,
                   const double* azimuth, const double* elevation, qint64 count, double tMin,
                   double tMax);

} // namespace gnssdemo

#endif // GNSSDEMO_CSVEXPORT_H
