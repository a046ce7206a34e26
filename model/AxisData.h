// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_AXISDATA_H
#define GNSSPLOT_AXISDATA_H

#include "gnssplot_global.h"

#include <QObject>
#include <QString>

#include <memory>
#include <set>

/*!
    \class AxisData
    \brief The samples of one axis of a curve: one contiguous block of
    doubles, the index area every reader sees, and the breaks of the curve.

    Writing and reading are separated. A writer opens a setting phase with
    beginSetData(), allocates the in-setting block with allocData(), fills it
    in place through getInSettingData(), optionally narrows its area and sets
    breaks, and closes the phase with endSetData(). Closing with \c true hands
    the block over to the published side without copying it; readers only ever
    see the published block.

    Sample indices are signed 64-bit. A NaN sample is a missing value. A break
    at index k ends a connected run at sample k: no line is drawn from k to
    k + 1.

    Refusals return \c false (or null, or do nothing) and leave the object
    unchanged. No exception leaves the class.
*/
class GNSSPLOT_EXPORT AxisData : public QObject
{
    Q_OBJECT
public:
    /*! Creates an empty axis: no samples, area (-1, -1), no setting phase. */
    explicit AxisData(QObject* parent = nullptr);
    /*! Frees both sample blocks. Emits nothing. */
    ~AxisData() override;

    /*! Opens a setting phase. A phase already open is restarted: its
        in-setting block is freed first. */
    void beginSetData();
    /*! Allocates \a num uninitialised samples for the open phase and sets the
        in-setting area to (0, num - 1). Refused (\c false, nothing written)
        without an open phase, when the phase already holds samples, or when
        \a num < 1. When the memory cannot be had (including a byte size that
        overflows) returns \c false, writes the translated text
        "Alloc memory failed." into \a errorString when it is not null, and
        keeps the phase open. */
    bool allocData(qint64 num, QString* errorString);
    /*! Returns a writable pointer to in-setting sample areaBegin + \a index,
        or null without an open phase with samples or when the index lies
        outside the in-setting area. \a num, when not null, receives the number
        of samples from there to the end of the area. Valid until the phase
        ends or restarts. */
    double* getInSettingData(qint64 index, qint64* num);
    /*! Sets the in-setting area to the inclusive sample range [\a begin,
        \a end]. Refused unless a phase with samples is open and
        0 <= begin <= end < count. Emits nothing. */
    bool setInSettingDataArea(qint64 begin, qint64 end);
    /*! Replaces the in-setting breaks by \a breaks: absolute sample indices
        into the whole block. Refused, keeping the previous breaks, unless a
        phase with samples is open and every index lies in 0 .. count - 1. A
        break at the last sample carries nothing and is dropped. */
    bool setInSettingBreaks(const std::set<qint64>& breaks);
    /*! Closes the setting phase. With \a apply \c true the in-setting block,
        area and breaks replace the published ones (the block is handed over,
        not copied), then sgAreaChanged() is emitted if the area changed and
        sgDataChanged() if the data changed. With \c false the pending block is
        discarded and nothing is emitted. Does nothing without an open phase. */
    void endSetData(bool apply);

    /*! Returns the published sample areaBegin + \a index, or null when
        nothing is published or the index lies outside the area. \a num, when
        not null, receives the number of samples from there to the end of the
        area. Valid until the next publish or destruction. */
    const double* getData(qint64 index, qint64* num) const;
    /*! Writes the published area bounds to the non-null pointers ((-1, -1)
        when empty) and returns the number of samples in the area (0 when
        empty). */
    qint64 getArea(qint64* begin, qint64* end) const;
    /*! Sets the published area to [\a begin, \a end] and emits
        sgAreaChanged(), also when the area is unchanged. Refused unless
        samples are published and 0 <= begin <= end < count. */
    bool setArea(qint64 begin, qint64 end);
    /*! Widens the published area to the whole block and emits
        sgAreaChanged(), unless it already spans the block or the axis is
        empty. */
    void clearArea();
    /*! Scans the published area for the smallest and largest value, skipping
        NaN (infinities count). Returns \c false without writing the outputs
        when nothing is published; returns \c false with the outputs at
        (DBL_MAX, -DBL_MAX) when every value in the area is NaN. */
    bool getDataLimits(double& minValue, double& maxValue) const;
    /*! Adds the published breaks that lie inside the area, relative to the
        area's first sample, to \a breaks (which is not cleared). A break at
        the area's last sample is not reported. */
    void getBreakInfo(std::set<qint64>& breaks) const;

signals:
    /*! The published area changed. Always emitted before sgDataChanged(). */
    void sgAreaChanged();
    /*! The published samples or breaks changed. */
    void sgDataChanged();

private:
    // Lets a reader keep the published samples it showed alive after a new
    // publish (model/AxisSamples_p.h).
    friend struct AxisSamples;
    class PrivateData;
    // All state lives here, so that a later release can add to it without
    // changing the size of the class.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(AxisData)
};

#endif // GNSSPLOT_AXISDATA_H
