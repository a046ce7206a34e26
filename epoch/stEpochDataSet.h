// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_STEPOCHDATASET_H
#define GNSSPLOT_STEPOCHDATASET_H

#include "gnssplot_global.h"

#include <QList>
#include <QPair>

/*!
    \struct stEpochDataSet
    \brief The epochs of one frequency band of one satellite, as
    (start epoch, length) pairs.

    Epochs are signed 64-bit values in whatever unit the host uses; the epoch
    table never converts them. A satellite's data is a QList of these, one per
    band, in the band order of the legend ("L1/G1/B1/E1/J1", "L2/G2/B2/J2",
    "L5/G3/B3/E5a/J5", "E5b/B2a"). The table paints the stretches between
    consecutive pairs and from the end of the last pair to the end of the range.

    The same struct carries erase marks back to the host
    (CurveGraphicsTableWidget_Epoch::getStateliteEraseMarks()): there each
    pair is one marked interval, in the order the marks were made.

    A plain copyable value; QList shares the pair list implicitly, so copies
    are cheap.
*/
struct GNSSPLOT_EXPORT stEpochDataSet
{
    /*! (start epoch, length) pairs, in the host's epoch unit, kept in the
        order the host stored them. */
    QList<QPair<qint64, qint64>> ranges;

    /*! Two data sets are equal when their pair lists are equal, in order. */
    friend bool operator==(const stEpochDataSet& a, const stEpochDataSet& b)
    {
        return a.ranges == b.ranges;
    }
    /*! The negation of operator==(). */
    friend bool operator!=(const stEpochDataSet& a, const stEpochDataSet& b)
    {
        return !(a == b);
    }
};

#endif // GNSSPLOT_STEPOCHDATASET_H
