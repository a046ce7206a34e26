// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_QUALITY_H
#define GNSSDEMO_QUALITY_H

#include "Multipath.h"
#include "ObservationData.h"
#include "ObservationEvents.h"

#include <array>
#include <functional>
#include <limits>
#include <map>
#include <utility>
#include <vector>

/*!
    \file Quality.h
    The numbers of a daily quality check, per satellite and per system, the
    events where tracking was interrupted, and the number of satellites per
    epoch. Everything here is computed from one satellite's observations and
    its multipath result (computeMultipath()), so a host recomputes a
    satellite's numbers whenever it republishes its curve.
*/
namespace gnssdemo {

/*! The events of one satellite, per band (indexed by Band). */
using BandEvents = std::array<std::vector<EpochEvent>, BandCount>;

/*!
    The events of satellite \a sat per band that its observations show, in
    epoch order:
    - Gap where the band's code or phase comes back after one or more epochs
      without, or after a step longer than \a gapFactor intervals;
    - LossOfLock where the band has a phase with bit 0 of its loss-of-lock
      indicator set (also set for the satellites of a power-failure epoch and
      of cycle-slip records).
    One epoch may carry both, the gap first. Needs no multipath result, so
    it can be found while another thread computes curves.
*/
BandEvents bandEvents(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                      qint64 intervalMs, double gapFactor = 1.5);

/*! Adds PhaseJump events at the phase jumps of \a info (its breaks) to
    both bands of the multipath pair, in epoch order: the geometry-free
    combination cannot tell which carrier slipped. */
void addPhaseJumps(BandEvents& events, const MultipathInfo& info);

/*! One satellite's elevation in degrees at every epoch of the source (NaN
    where unknown), or null when the satellite has no position. The pointer
    must stay valid until the call that asked for it returns. */
using ElevationLookup = std::function<const std::vector<double>*(const QString& satellite)>;

/*! The elevation mask in degrees against which completeness is counted. */
constexpr double DefaultElevationMask = 10.0;

/*! The quality numbers of one satellite. */
struct SatelliteQuality
{
    QString name;
    char system = 0;
    /*! Epochs with a code or phase on some band. */
    qint64 epochsWithData = 0;
    /*! Epochs whose elevation is known and at or above the mask; -1 when the
        satellite's elevations are not known. */
    qint64 epochsAboveMask = -1;
    /*! Epochs above the mask that have data. */
    qint64 epochsWithDataAboveMask = 0;
    /*! Root mean squares of the MP1 and MP2 curves in metres, NaN without a
        curve; with the sums they come from, to pool satellites. */
    double mp1Rms = std::numeric_limits<double>::quiet_NaN();
    double mp2Rms = std::numeric_limits<double>::quiet_NaN();
    double mp1SumSquares = 0.0;
    double mp2SumSquares = 0.0;
    qint64 mp1Samples = 0;
    qint64 mp2Samples = 0;
    /*! Epochs where some band's phase reports loss of lock. */
    int lossOfLock = 0;
    /*! Jumps of the geometry-free phase (cycle slips without a flag). */
    int phaseJumps = 0;
    /*! Interruptions of the satellite's data: a missing epoch or a step
        longer than the gap factor, between passes too. */
    int gaps = 0;
    /*! The runs of epochs with data: first and last epoch index of each. */
    std::vector<std::pair<qint64, qint64>> dataRuns;

    /*! Slips: loss of lock plus phase jumps. */
    int slips() const { return lossOfLock + phaseJumps; }
    /*! Epochs above the mask with data over epochs above the mask (0 to 1);
        NaN when elevations are unknown or the satellite never rises above
        the mask. */
    double completeness() const;
};

/*!
    The numbers of satellite \a sat that its observations give: epochs with
    data, their runs, gaps and loss of lock; no multipath (see
    addMultipath()) and no elevations yet (see applyElevations()).
*/
SatelliteQuality satelliteQuality(const SatelliteObservations& sat,
                                  const std::vector<qint64>& epochs, qint64 intervalMs,
                                  double gapFactor = 1.5);

/*! Takes the phase jumps and the MP1 and MP2 root mean squares of the
    satellite's multipath result \a info into \a quality. */
void addMultipath(SatelliteQuality& quality, const MultipathInfo& info);

/*! Counts the epochs of \a quality above \a maskDegrees from \a elevations
    (one per epoch, degrees, NaN where unknown; \a epochCount of them). Null,
    or a vector of another size, makes the elevations unknown again. */
void applyElevations(SatelliteQuality& quality, const std::vector<double>* elevations,
                     size_t epochCount, double maskDegrees = DefaultElevationMask);

/*! The numbers of one system (or of all): sums and pooled root mean
    squares of its satellites. */
struct SystemQuality
{
    char system = 0;     //!< the system letter; 0 for all systems together
    int satellites = 0;
    qint64 epochsWithData = 0;
    /*! Sums over the satellites whose elevations are known; -1 when none
        is. */
    qint64 epochsAboveMask = -1;
    qint64 epochsWithDataAboveMask = 0;
    double mp1Rms = std::numeric_limits<double>::quiet_NaN(); //!< metres
    double mp2Rms = std::numeric_limits<double>::quiet_NaN(); //!< metres
    int lossOfLock = 0;
    int phaseJumps = 0;
    int gaps = 0;

    int slips() const { return lossOfLock + phaseJumps; }
    /*! As SatelliteQuality::completeness(), over the system's satellites. */
    double completeness() const;
};

/*! The numbers of \a system (0: every satellite) over \a satellites. */
SystemQuality systemQuality(const std::vector<SatelliteQuality>& satellites, char system);

/*! The number of satellites with data at every epoch, as curves: X the
    epoch times in milliseconds, Y per system and in total. */
struct SatelliteCounts
{
    std::vector<double> x;                        //!< GPST milliseconds
    std::map<char, std::vector<double>> perSystem; //!< by system letter
    std::vector<double> total;
};

/*! Counts, from the data runs of \a satellites, how many satellites of
    each system have data at each of \a epochs. */
SatelliteCounts countSatellites(const std::vector<SatelliteQuality>& satellites,
                                const std::vector<qint64>& epochs);

} // namespace gnssdemo

#endif // GNSSDEMO_QUALITY_H
