// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_OBSERVATIONEVENTS_H
#define GNSSDEMO_OBSERVATIONEVENTS_H

#include <QString>
#include <QtGlobal>

namespace gnssdemo {

/*! Why tracking of a signal was interrupted at an epoch. */
enum class EventKind {
    LossOfLock, //!< the receiver's loss-of-lock indicator (bit 0) on the phase
    PhaseJump,  //!< a jump of the geometry-free phase combination: a cycle slip
    Gap,        //!< observations missing for one or more epochs before this one
};

/*! The word for \a kind in exported files: "loss_of_lock", "phase_jump",
    "gap". */
QString eventKindName(EventKind kind);

/*! An event at an epoch of the source: the first epoch after the
    interruption. */
struct EpochEvent
{
    qint64 epoch = 0;  //!< index into the source's epochs
    qint64 timeMs = 0; //!< that epoch's time, GPST milliseconds since 1970-01-01
    EventKind kind = EventKind::Gap;
};

/*! An event on a satellite's multipath curve: the sample that starts an arc
    after an interruption. */
struct CurveEvent
{
    qint64 sample = 0; //!< index of the sample in the curve's axes
    qint64 epoch = 0;  //!< index of its epoch in the source
    EventKind kind = EventKind::Gap;
};

} // namespace gnssdemo

#endif // GNSSDEMO_OBSERVATIONEVENTS_H
