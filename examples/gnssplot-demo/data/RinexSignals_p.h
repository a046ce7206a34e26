// SPDX-License-Identifier: MIT
// Which of a satellite's recorded types become its code and phase per band,
// and the carrier frequencies, GLONASS channels included.
#ifndef GNSSDEMO_RINEXSIGNALS_P_H
#define GNSSDEMO_RINEXSIGNALS_P_H

#include "ObservationData.h"
#include "RinexBody_p.h"

namespace gnssdemo {
namespace rinex {

// Moves \a store's values into the observations of the chosen signals: for
// each band the code and phase types with the most values (ties go to the
// preferred signal, then to header order), the phase tracked like the chosen
// code winning over other phases, and the signal strength chosen like the
// phase. \a epochs are the file's epochs.
SatelliteObservations selectSignals(SatStore& store, const RinexHeader& header,
                                    const std::vector<qint64>& epochs);

// The sampling interval in milliseconds: the header's, else the typical
// step between \a epochs (which may round to 0 for a tiny header interval).
qint64 sourceIntervalMs(const RinexHeader& header, const std::vector<qint64>& epochs);

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_RINEXSIGNALS_P_H
