// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_AVAILABILITY_H
#define GNSSDEMO_AVAILABILITY_H

#include "ObservationData.h"

#include <stEpochDataSet.h>

#include <QList>

#include <vector>

namespace gnssdemo {

/*! The epoch range the table shows for \a epochs: from the first epoch to
    one interval after the last, so that the last epoch gets its width too.
    Both 0 when there are no epochs. */
void tableTimeRange(const std::vector<qint64>& epochs, qint64 intervalMs, qint64* startTime,
                    qint64* endTime);

/*!
    Converts where satellite \a sat has a pseudorange or phase, per band, into
    the epoch table's stEpochDataSet for the table range of tableTimeRange().
    The table draws its bar between consecutive (start, length) pairs and
    from the end of the last pair to the end of the range, never before the
    end of the first pair; so the pairs here are the stretches WITHOUT data,
    and the first pair is (startTime, 0) when data starts right at the
    range's start. Epoch i covers [t(i), t(i+1)) when the next epoch is at
    most 1.5 intervals away, else [t(i), t(i) + interval); the pairs are the
    stretches no covered epoch reaches. The list ends at the last band with data (earlier empty bands get
    a single pair over the whole range, so no bar), keeping band i at
    index i: the table colours and places data sets by index.
*/
QList<stEpochDataSet> bandAvailability(const SatelliteObservations& sat,
                                       const std::vector<qint64>& epochs, qint64 intervalMs);

/*! The same for one presence flag per epoch (\a present has one element per
    epoch, non-zero meaning data). */
stEpochDataSet availabilityRanges(const std::vector<qint64>& epochs, qint64 intervalMs,
                                  const std::vector<quint8>& present);

} // namespace gnssdemo

#endif // GNSSDEMO_AVAILABILITY_H
