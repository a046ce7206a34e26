// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SIGNALSTRENGTH_H
#define GNSSDEMO_SIGNALSTRENGTH_H

#include "ObservationData.h"

#include <QString>

#include <vector>

class Curve_DataSet_XY;

namespace gnssdemo {

/*! What computeSignalStrength() did for one satellite. */
struct SignalStrengthInfo
{
    int bandA = -1;   //!< band of the first Y axis, -1 when the satellite has no strength
    int bandB = -1;   //!< band of the second Y axis, -1 when only one band has some
    QString typeA;    //!< its observation code, "S1C"
    QString typeB;    //!< "S2W"; empty without a second band
    qint64 samples = 0; //!< samples written
};

/*! The first two bands of \a sat whose signal strength has a value at some
    epoch, in band order; -1 for a band not found. */
void signalStrengthBands(const SatelliteObservations& sat, int* bandA, int* bandB);

/*!
    Fills \a target (an X axis and two Y axes) with the signal strength of
    the satellite's first two bands that record one, in dB-Hz: one sample at
    each epoch where either has a value (the other NaN there), X the epoch's
    time in GPST milliseconds. A run ends where epochs are missing (a step
    longer than \a gapFactor intervals) and where either band starts or stops
    having a value, so that no line bridges a gap.

    A satellite without signal strength gets empty axes (true, no sample).
    Returns false with \a error set when \a target has fewer than two Y axes
    or memory runs out; the published data stays as it was then.
*/
bool computeSignalStrength(const SatelliteObservations& sat, const std::vector<qint64>& epochs,
                           qint64 intervalMs, Curve_DataSet_XY* target,
                           SignalStrengthInfo* info, QString* error, double gapFactor = 1.5);

/*! Spreads the values of a curve's Y axis over the source's epochs: for each
    of the \a count samples (\a x epoch times in milliseconds, \a y values),
    the value goes to the epoch of that time; epochs without a sample are
    NaN. With \a absolute the magnitudes are taken. Returns \a epochs.size()
    values; null arrays give all NaN. */
std::vector<double> valuesAtEpochs(const std::vector<qint64>& epochs, const double* x,
                                   const double* y, qint64 count, bool absolute);

} // namespace gnssdemo

#endif // GNSSDEMO_SIGNALSTRENGTH_H
