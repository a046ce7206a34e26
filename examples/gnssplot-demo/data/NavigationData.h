// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_NAVIGATIONDATA_H
#define GNSSDEMO_NAVIGATIONDATA_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <map>
#include <vector>

/*!
    \file NavigationData.h
    Broadcast ephemerides as the demo keeps them after reading navigation
    files, and the choice of the ephemeris that holds at a given time.

    Times are GPST milliseconds since 1970-01-01 00:00:00 without leap
    seconds, as everywhere in the demo; each system's own time (GST, BDT,
    GLONASS UTC) is converted to GPST when a record is read.
*/
namespace gnssdemo {

/*! The broadcast message an ephemeris was decoded from. */
enum class NavMessage : quint8 {
    GpsLnav,     //!< GPS legacy navigation message (also QZSS LNAV)
    GalileoInav, //!< Galileo I/NAV (E1-B, E5b-I)
    GalileoFnav, //!< Galileo F/NAV (E5a-I)
    BeidouD1,    //!< BeiDou D1 (MEO and IGSO satellites)
    BeidouD2,    //!< BeiDou D2 (GEO satellites)
    Glonass,     //!< GLONASS FDMA state vector
    Sbas,        //!< SBAS geostationary state vector
};

/*! The short name of \a message ("LNAV", "INAV", "FNAV", "D1", "D2", "FDMA", "SBAS"). */
QString navMessageName(NavMessage message);

/*!
    One broadcast ephemeris of one satellite. Orbital elements for GPS,
    QZSS, Galileo and BeiDou; a state vector for GLONASS and SBAS. The
    satellite clock is not kept: the demo only needs where satellites are.
*/
struct Ephemeris
{
    char system = 0;  //!< 'G', 'R', 'E', 'C', 'J' or 'S'
    int prn = 0;
    NavMessage message = NavMessage::GpsLnav;
    qint64 referenceMs = 0;  //!< toe (tb for GLONASS, t0 for SBAS), GPST ms since 1970
    double fitHalfSeconds = 0; //!< used up to this far from the reference time, seconds
    bool healthy = true;
    bool geostationary = false; //!< BeiDou GEO: the orbit's own rotation applies
    qint64 line = 0;            //!< first line of the record in its file

    // Orbital elements (IS-GPS-200 names); angles in radians, times in seconds.
    double toeSeconds = 0; //!< toe in seconds of the system's week (GPST, GST or BDT)
    double sqrtA = 0;      //!< square root of the semi-major axis, sqrt(m)
    double e = 0;
    double m0 = 0, deltaN = 0;
    double omega0 = 0, omegaDot = 0;
    double i0 = 0, idot = 0;
    double omega = 0;
    double cuc = 0, cus = 0, crc = 0, crs = 0, cic = 0, cis = 0;

    // State vector in the system's Earth-fixed frame at the reference time:
    // metres, m/s and m/s^2 (for GLONASS the luni-solar accelerations).
    double position[3] = {0, 0, 0};
    double velocity[3] = {0, 0, 0};
    double acceleration[3] = {0, 0, 0};

    /*! GLONASS only: the state integrated from the reference time to the
        ends of the fit interval, every GlonassNodeStep seconds (x, y, z,
        vx, vy, vz per node, the middle node at the reference time); filled
        by NavigationData::add(). */
    std::vector<double> glonassNodes;

    /*! The satellite's name, "G05". */
    QString satelliteName() const;
};

/*! What reading one navigation file found. */
struct NavigationFileReport
{
    QString file;           //!< file name without folder
    double version = 0;     //!< RINEX version of the file
    std::map<char, int> records; //!< records read, per system letter
    int duplicates = 0;          //!< of these, equal to one read before and dropped
    int skippedUnsupported = 0;  //!< records of systems or messages not used (listed below)
    QStringList unsupportedKinds; //!< what was skipped unread: "NavIC", "G CNAV", "STO" ...
    int damaged = 0;             //!< records that could not be read, skipped
    QStringList damagedMessages; //!< "line N: why", the first few of them
    bool cutShort = false;       //!< the file ends inside a record (that record is dropped)

    /*! Records read from this file. */
    int recordCount() const;
    /*! One line: "NAME: RINEX 3.05, 215 ephemerides (G 215)[, skipped ...]". */
    QString summary() const;
};

/*!
    The ephemerides of every satellite read from one or more navigation
    files, and the choice among them.

    Choice at a time t: among the healthy ephemerides of the satellite whose
    reference time lies within their fit interval of t, the nearest; at an
    equal distance Galileo I/NAV before F/NAV (the message of the E1 open
    service), then the later reference time, then the record read later.
    The fit intervals, each side of the reference time: GPS half the fit
    interval of the record (2 hours when it gives none), QZSS 1 hour
    (2 hours with the fit flag set), Galileo and BeiDou 2 hours (fresh data
    every 10 minutes and every hour), GLONASS 15 minutes (a new state every
    30 minutes) and SBAS 10 minutes.
*/
class NavigationData
{
public:
    /*! Adds \a eph, keeping each satellite's list ordered by reference time;
        an ephemeris equal to one already held (same message and elements)
        is dropped. Returns false for a duplicate. GLONASS states are
        integrated over their fit interval here. */
    bool add(Ephemeris eph);
    /*! Adds every ephemeris and the file reports of \a other; returns the
        number of ephemerides dropped as equal to one held already. */
    int merge(const NavigationData& other);

    /*! Satellite names with at least one ephemeris, in name order. */
    QStringList satellites() const;
    /*! The ephemerides of \a name ordered by reference time; null when none. */
    const std::vector<Ephemeris>* ephemerides(const QString& name) const;
    /*! Number of ephemerides held. */
    qint64 count() const;
    bool isEmpty() const { return m_satellites.empty(); }

    /*! The ephemeris of \a name that holds at \a timeMs (GPST ms), as the
        class describes; null when none does. */
    const Ephemeris* select(const QString& name, qint64 timeMs) const;
    /*! The same choice within one satellite's list; -1 when none. */
    static int selectIndex(const std::vector<Ephemeris>& list, qint64 timeMs);

    /*! What reading each file found, in the order read. */
    const std::vector<NavigationFileReport>& reports() const { return m_reports; }
    void addReport(const NavigationFileReport& report) { m_reports.push_back(report); }

private:
    std::map<QString, std::vector<Ephemeris>> m_satellites;
    std::vector<NavigationFileReport> m_reports;
};

/*! Spacing of the integrated GLONASS states, seconds. */
constexpr double GlonassNodeStep = 60.0;

} // namespace gnssdemo

#endif // GNSSDEMO_NAVIGATIONDATA_H
