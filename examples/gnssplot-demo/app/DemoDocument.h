// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMODOCUMENT_H
#define GNSSDEMO_DEMODOCUMENT_H

#include "Multipath.h"
#include "NavigationData.h"
#include "ObservationData.h"
#include "Quality.h"
#include "SkyTracks.h"

#include <stEpochDataSet.h>

#include <QColor>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace gnssdemo {

/*! An interval of epochs: (start, length) in GPST milliseconds, the shape in
    which the epoch table hands erase marks back. */
using EpochInterval = QPair<qint64, qint64>;

/*! The colour of a constellation's curves ('G' GPS, 'R' GLONASS, ...); grey
    for an unknown system. Opaque: the live view draws curves at half
    transparency itself, pictures use the colour as it is. */
QColor systemColor(char system);

/*! The constellation's name ("GPS", "GLONASS", ...), or the letter itself. */
QString systemName(char system);

/*! One satellite read and prepared for showing: its observations (erased
    epochs blanked), its table bars, its observation counts, and what its
    observations alone say about its quality. */
struct PreparedSatellite
{
    int index = -1;
    SatelliteObservations observations;
    QList<stEpochDataSet> bands;          //!< bandAvailability() for the table
    qint64 bandObservations[BandCount] = {}; //!< epochs with code or phase, per band
    SatelliteQuality quality; //!< satelliteQuality(): no multipath, no elevations
    BandEvents events;        //!< bandEvents(): gaps and loss of lock
};

/*!
    The host's data: an observation source plus the epochs the user had
    erased from each satellite. The source is never changed; a satellite is
    read from it and the erased epochs are blanked on the way out, so that
    taking marks back restores the original observations.
*/
class DemoDocument
{
public:
    explicit DemoDocument(std::unique_ptr<ObservationSource> source);

    const ObservationSource& source() const { return *m_source; }
    const std::vector<qint64>& epochs() const { return m_source->epochs(); }
    qint64 intervalMs() const { return m_source->intervalMs(); }
    int satelliteCount() const { return m_source->satelliteCount(); }
    /*! The epoch range of the table and of the pictures, GPST milliseconds:
        first epoch to one interval after the last. */
    qint64 startTime() const { return m_startTime; }
    qint64 endTime() const { return m_endTime; }

    /*! Satellite \a index with its erased epochs blanked (no code, no
        phase, no record). Returns false for an index out of range. */
    bool observations(int index, SatelliteObservations& out) const;

    /*! Prepares every satellite in index order and hands each to \a consume
        on the calling thread. Reading, generating and the table bars run on
        a worker thread a few satellites ahead, so that a second core does
        them while the caller publishes; the library's objects are touched
        only by \a consume, on the caller's (GUI) thread. Stops early when
        \a consume returns false. Returns false when the worker ran out of
        memory. */
    bool forEachSatellite(const std::function<bool(PreparedSatellite&)>& consume) const;

    /*! The intervals erased from satellite \a name, in the order given. */
    QList<EpochInterval> erased(const QString& name) const { return m_erased.value(name); }
    /*! Replaces the intervals erased from \a name; returns true when they
        differ from the previous ones. */
    bool setErased(const QString& name, const QList<EpochInterval>& intervals);

    /*! Blanks every epoch of \a sat that lies inside one of \a intervals;
        returns how many epochs held a record before. */
    static qint64 blank(SatelliteObservations& sat, const std::vector<qint64>& epochs,
                        const QList<EpochInterval>& intervals);

    /*! Keeps \a navigation for this day and computes every satellite's sky
        track at the source's epochs from the source's approximate position
        (SkyTracks::compute()); without a position, or when memory runs out
        (three doubles per satellite and epoch), the tracks stay empty. */
    void setNavigation(std::unique_ptr<NavigationData> navigation);
    /*! The navigation given, null when none. */
    const NavigationData* navigation() const { return m_navigation.get(); }
    /*! Azimuth and elevation of each satellite at each epoch; empty (not
        valid) without navigation or position. skyTracks().elevation(name)
        is the elevation at each epoch of epochs(). */
    const SkyTracks& skyTracks() const { return m_sky; }

private:
    std::unique_ptr<ObservationSource> m_source;
    std::unique_ptr<NavigationData> m_navigation;
    SkyTracks m_sky;
    QMap<QString, QList<EpochInterval>> m_erased;
    qint64 m_startTime = 0;
    qint64 m_endTime = 0;
};

} // namespace gnssdemo

#endif // GNSSDEMO_DEMODOCUMENT_H
