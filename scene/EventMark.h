// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EVENTMARK_H
#define GNSSPLOT_EVENTMARK_H

#include "gnssplot_global.h"

#include <QMetaType>
#include <QtGlobal>

/*! Kinds of event marks that the library knows by name and colour. A host
    may use any other int for kinds of its own; EEventMarkKind_User is where
    such kinds are best begun, clear of any the library may name later. */
enum EEventMarkKind : qint32 {
    EEventMarkKind_CycleSlip = 1,  //!< A cycle slip of the carrier phase.
    EEventMarkKind_LossOfLock = 2, //!< The receiver reported a loss of lock.
    EEventMarkKind_Gap = 3,        //!< Data were missing before this point.
    EEventMarkKind_User = 256,     //!< The first of the host's own kinds.
};

/*!
    \brief An event at one point of a curve or of an epoch table's bar: where
    it happened and of which kind.

    On a curve (CurveScene::setCurveEventMarks()) \a position is the index of
    a sample, counted from 0 at the first sample the curve's axes show, as
    the hover read-out reports it. On the epoch table
    (CurveGraphicsTableWidget_Epoch::setEventMarks()) it is an epoch, in the
    host's epoch unit. \a kind is one of EEventMarkKind or the host's own.
*/
struct EventMark
{
    qint64 position = 0;                   //!< Sample index (curve) or epoch (table).
    qint32 kind = EEventMarkKind_CycleSlip; //!< What happened there.

    /*! Whether both fields are equal. */
    bool operator==(const EventMark& other) const
    {
        return position == other.position && kind == other.kind;
    }
    /*! Whether a field differs. */
    bool operator!=(const EventMark& other) const { return !(*this == other); }
};

// Marks travel in QVariant and queued signals, and Qt 5 builds the meta types
// of their containers only from this one.
Q_DECLARE_METATYPE(EventMark)

#endif // GNSSPLOT_EVENTMARK_H
