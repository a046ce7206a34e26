// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYTRACKSET_P_H
#define GNSSPLOT_SKYTRACKSET_P_H

#include "TimeWindow.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class CurveScene;
class Curve_DataSet;

/*
    The tracks of a sky plot as its painters read them.

    A track is a data set registered in a CurveScene: time (key 0,
    milliseconds), azimuth (key 1, degrees), elevation (key 2, degrees) and
    any number of value axes (keys 3, 4, ...). Sample j of the track pairs
    the j-th sample of each axis's area; the track has as many samples as
    its shortest positional axis.
*/

// What a painter reads of one track: raw pointers into the axis buffers and
// the cuts, taken on the GUI thread so that mapping can run on any thread.
struct SkyTrackSource
{
    const double* times = nullptr;
    const double* azimuths = nullptr;
    const double* elevations = nullptr;
    const double* values = nullptr;  // the chosen value axis, or null
    qint64 count = 0;                // samples of the positional axes
    qint64 valueCount = 0;           // samples of the value axis
    // Area-relative breaks of the time, azimuth and elevation axes, merged
    // and ascending: a break at k means no line from sample k to k + 1.
    std::vector<qint64> breaks;
    // Whether the times ascend with no NaN, so that a time window is an
    // index range; worked out once per data change (checkTimeOrder()).
    bool bTimeChecked = false;
    bool bTimeSorted = false;

    // Reads the axes of \a dataSet, with value axis key \a valueKey (none
    // when below 3). Missing or empty positional axes give no samples.
    static SkyTrackSource take(const Curve_DataSet* dataSet, int valueKey);
    // Sets bTimeSorted by one pass over the times, unless already known.
    void checkTimeOrder();
    // Whether sample \a j may have a value: the value axis reaches it.
    bool hasValue(qint64 j) const { return values && j < valueCount; }
    // The value of sample \a j, NaN where the value axis ends.
    double valueAt(qint64 j) const;
    // The samples first .. last (inclusive) whose times lie in \a window,
    // for ascending times; false when none does.
    bool windowRange(const TimeWindow& window, qint64& first, qint64& last) const;
    // The sample nearest in time to \a t, within the track's mean sample
    // interval; -1 when there is none. Whether it is drawn is left to the
    // caller.
    qint64 nearestInTime(double t) const;
    // Whether sample \a j is drawn at all (not yet asking the time window):
    // a finite time, a direction in the sky, and a finite value when
    // \a bNeedValue.
    bool isDrawable(qint64 j, bool bNeedValue) const;
    // Same samples and cuts (the order flags aside).
    bool sameAs(const SkyTrackSource& other) const;
};

/*
    Listens to a registry and its data sets and keeps, per registered name
    in name order, what the painters need: colour, visibility and the source.
    Every change bumps version() and emits sgChanged(); sources are re-read
    lazily, on the next refresh().
*/
class SkyTrackSet : public QObject
{
    Q_OBJECT
public:
    struct Track
    {
        QString name;
        QPointer<Curve_DataSet> dataSet;
        QColor colour;
        bool bVisible = false;
        quint64 dataVersion = 1;    // bumped by the data set's signals
        quint64 sourceVersion = 0;  // the data version the source was read at
        int sourceValueIndex = -1;  // the value axis the source was read with
        SkyTrackSource source;
    };

    explicit SkyTrackSet(CurveScene* registry, QObject* parent = nullptr);
    ~SkyTrackSet() override;

    // The value axis whose samples the sources carry: index 0 is key 3; -1
    // for none.
    void setValueIndex(int valueIndex);
    int valueIndex() const { return m_valueIndex; }
    // Brings every source up to date; returns the tracks in name order.
    const std::vector<Track*>& refresh();
    // The tracks as of the last refresh().
    const std::vector<Track*>& tracks() const { return m_ordered; }
    // Bumped by every change of a track, its data, colour or visibility.
    quint64 version() const { return m_version; }
    // The earliest and latest finite time of all tracks, hidden ones too;
    // false, leaving the outputs alone, when no track has one. Kept until
    // the next change.
    bool timeLimits(double& tMin, double& tMax);
    // The smallest and largest finite value of the value axis over all
    // tracks, hidden ones too, so that hiding a track does not recolour the
    // others; false, leaving the outputs alone, without values.
    bool valueLimits(double& vMin, double& vMax);

signals:
    void sgChanged();

private slots:
    void onScene_curveAdded(QString name);
    void onScene_curveRemoved(QString name);
    void onScene_curveShowParamChanged(QString name);

private:
    void addTrack(const QString& name);
    void changed();
    void reorder();

    QPointer<CurveScene> m_registry;
    std::map<QString, std::unique_ptr<Track>> m_tracks;
    std::vector<Track*> m_ordered;
    int m_valueIndex = -1;
    quint64 m_version = 1;
    struct Limits
    {
        quint64 version = 0;
        bool bFound = false;
        double min = 0.0;
        double max = 0.0;
    };
    Limits m_timeLimits;
    Limits m_valueLimits;
};

#endif // GNSSPLOT_SKYTRACKSET_P_H
