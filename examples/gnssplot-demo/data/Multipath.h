// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_MULTIPATH_H
#define GNSSDEMO_MULTIPATH_H

#include "ObservationData.h"
#include "ObservationEvents.h"

#include <limits>
#include <vector>

class AxisData;
class Curve_DataSet_XY;

namespace gnssdemo {

/*! Tuning of the code multipath computation. */
struct MultipathOptions
{
    /*! Largest epoch step, as a multiple of the source's interval, that does
        not end an arc. */
    double gapFactor = 1.5;
    /*! Geometry-free phase jump, in metres, against the linear prediction
        from the two samples before, that counts as a cycle slip when epochs
        are one second apart; grows by slipThresholdPerSecond for longer
        steps, up to slipThresholdMax. */
    double slipThreshold = 0.05;
    double slipThresholdPerSecond = 0.003;
    double slipThresholdMax = 0.2;
    /*! The same for an arc's second sample, which has no slope to predict
        with, so the ionosphere's own change must fit under it. */
    double firstStepThreshold = 0.06;
    double firstStepThresholdPerSecond = 0.015;
    /*! Arcs with fewer samples are left out: their mean says nothing. */
    int minArcSamples = 5;
};

/*! What computeMultipath() did for one satellite. */
struct MultipathInfo
{
    int bandA = -1;         //!< band of MP1 (first band with code and phase), -1 when none
    int bandB = -1;         //!< band of MP2
    qint64 samples = 0;     //!< samples written
    int arcs = 0;           //!< arcs written
    int lliBreaks = 0;      //!< arcs ended by a loss-of-lock indicator
    int phaseJumpBreaks = 0;//!< arcs ended by a geometry-free phase jump
    int gapBreaks = 0;      //!< arcs ended by missing epochs or observations
    int droppedArcs = 0;    //!< arcs shorter than minArcSamples, left out
    /*! Observation codes of the two bands' code and phase ("C1C", "L1C",
        "C2W", "L2W"): MP1 is made of codeA and phaseA with phaseB, MP2 of
        codeB and phaseB with phaseA. Empty without a second band. */
    QString codeA, phaseA, codeB, phaseB;
    /*! Every arc break, kept arcs or not: the epoch that starts the new arc
        and why the arc before it ended. */
    std::vector<EpochEvent> breaks;
    /*! The first sample of every written arc after the first, with why the
        written arc before it ended (arcs left out in between do not count). */
    std::vector<CurveEvent> events;
    /*! Sums of squares (m^2) and counts of the written MP1 and MP2 values that
        are not NaN, for root mean squares over several satellites. */
    double mp1SumSquares = 0.0;
    double mp2SumSquares = 0.0;
    qint64 mp1Samples = 0;
    qint64 mp2Samples = 0;

    /*! Root mean square of the written MP1 values in metres; NaN without any. */
    double mp1Rms() const;
    /*! Root mean square of the written MP2 values in metres; NaN without any. */
    double mp2Rms() const;
};

/*! Looks up the time axis and the two Y axes of \a target into \a axes.
    Returns \c false, with a translated reason in \a error when given, when
    \a target is null or lacks one of them. */
bool curveAxes(Curve_DataSet_XY* target, AxisData* axes[3], QString* error);

/*!
    Computes the code multipath combinations of satellite \a sat's first two
    bands that carry both pseudorange and phase, in metres:

        MP1 = P1 - (1 + 2/(a-1)) * lambda1*L1 + (2/(a-1)) * lambda2*L2
        MP2 = P2 - (2a/(a-1)) * lambda1*L1 + (2a/(a-1) - 1) * lambda2*L2

    with a = (f1/f2)^2, and removes each arc's mean. An arc is a run of epochs
    with both phases, at least one pseudorange, and no break: a gap (a missing
    epoch or observation), LLI bit 0 on either phase, or a jump of the
    geometry-free phase lambda1*L1 - lambda2*L2 against its linear
    prediction.

    The phase-jump test: the geometry-free phase GF = lambda1*L1 - lambda2*L2
    (metres) removes geometry and clocks and leaves the slowly changing
    ionosphere. At each epoch after an arc's first two it is predicted
    linearly from the two epochs before; a difference above slipThreshold
    plus slipThresholdPerSecond for each second the step exceeds one second,
    at most slipThresholdMax, is a jump. At an arc's second epoch, with no
    slope yet, GF may change by at most firstStepThreshold plus
    firstStepThresholdPerSecond per second beyond one.

    The result is published into \a target (a Curve_DataSet_XY with at least
    two Y axes): X (key 0) the epoch times in milliseconds, key 1 MP1 and key
    2 MP2 (NaN where that pseudorange is missing), written in place into the
    axes' in-setting buffers, with a break at the last sample of every arc.
    A satellite without two such bands publishes empty axes. Returns false,
    with \a error set, only when the target is unusable or memory runs out.
    \a epochs are the source's epochs; \a intervalMs its nominal interval.
*/
bool computeMultipath(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                      qint64 intervalMs, Curve_DataSet_XY* target, MultipathInfo* info,
                      QString* error, const MultipathOptions& options = MultipathOptions());

} // namespace gnssdemo

#endif // GNSSDEMO_MULTIPATH_H
