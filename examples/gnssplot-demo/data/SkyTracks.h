// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SKYTRACKS_H
#define GNSSDEMO_SKYTRACKS_H

#include "NavigationData.h"

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace gnssdemo {

/*! Where one satellite stood in the receiver's sky at each observation
    epoch: three arrays of the epoch count, ready to be an X and two Y axes
    of a plot. */
struct SkyTrack
{
    QString name;          //!< "G05"
    char system = 0;       //!< 'G', 'R', 'E', 'C', 'J', 'S', ...
    bool observed = false; //!< the observation file has the satellite
    std::vector<double> time;      //!< GPST ms since 1970 of each observation epoch
    std::vector<double> azimuth;   //!< degrees from north through east, NaN without a position
    std::vector<double> elevation; //!< degrees, NaN without a position
    qint64 positioned = 0;         //!< epochs with a position
};

/*!
    Azimuth and elevation of every satellite at every observation epoch, seen
    from the observation header's approximate position, from broadcast
    ephemerides: the ephemeris chosen by NavigationData::select() at the
    epoch, the satellite at the time of transmission and the Earth's rotation
    during the signal's travel.

    A track exists for each satellite that is observed or has an ephemeris.
    Epochs without a usable ephemeris are NaN: nothing is extrapolated.
*/
class SkyTracks
{
public:
    /*! Computes the tracks of the satellites \a observed (names as "G05")
        and of those in \a nav, at \a epochs (GPST ms, ascending), from
        \a receiver (metres, Earth-fixed). \a threads workers share the
        satellites (0: one per core, at most 8); the result does not depend
        on their number. Without a usable receiver position (see
        LocalFrame) the result holds no track and isValid() is false. */
    static SkyTracks compute(const NavigationData& nav, const std::vector<qint64>& epochs,
                             const QStringList& observed, const double receiver[3],
                             int threads = 0);

    /*! True when a receiver position was given. */
    bool isValid() const { return m_valid; }
    /*! Every track, in satellite name order. */
    const std::vector<SkyTrack>& tracks() const { return m_tracks; }
    /*! The track of \a name, null when there is none. */
    const SkyTrack* track(const QString& name) const;
    /*! \a name's elevation in degrees at each observation epoch (the index
        of the source's epochs), NaN where unknown; null when \a name has no
        track. */
    const double* elevation(const QString& name) const;
    /*! Observed satellites that have no position at any epoch, in name
        order: no ephemeris for them, or none that holds at any epoch. */
    QStringList withoutEphemeris() const;

private:
    bool m_valid = false;
    std::vector<SkyTrack> m_tracks;
    std::map<QString, size_t> m_index;
};

} // namespace gnssdemo

#endif // GNSSDEMO_SKYTRACKS_H
