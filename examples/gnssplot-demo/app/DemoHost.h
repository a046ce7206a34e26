// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOHOST_H
#define GNSSDEMO_DEMOHOST_H

#include "DemoDocument.h"
#include "Quality.h"

#include <stEpochDataSet.h>

#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class CurveGraphicsTableWidget_Epoch;
class CurveScene;
class Curve_DataSet_XY;
class QIODevice;

namespace gnssdemo {

class MultipathView;

/*! What one load found and how long it took. */
struct LoadStats
{
    QString description;
    qint64 epochs = 0;
    qint64 intervalMs = 0;
    QMap<char, int> satellitesPerSystem;
    qint64 bandObservations[BandCount] = {};
    qint64 multipathSamples = 0;
    int arcs = 0;
    int curves = 0;
    qint64 readMs = 0;  //!< reading a file before loadMs, milliseconds
    qint64 loadMs = 0;  //!< generating, computing and publishing, milliseconds
    qint64 paintMs = -1; //!< first paint of the curve view, -1 when not shown
};

/*! What the host found out about one satellite at the last load or Apply
    (its observations with the erased epochs left out). */
struct SatelliteFindings
{
    /*! Epochs with data, completeness, multipath RMS, slips and gaps. */
    SatelliteQuality quality;
    /*! The multipath computation: its bands and codes, its arc breaks and
        the events on its curve (CurveEvent::sample indexes the curve's
        axes). */
    MultipathInfo multipath;
    /*! Loss of lock, phase jumps and gaps per band. */
    BandEvents events;
    /*! Per band, the observation code of its phase, or of its code when it
        has no phase ("L1C", "C1C"); empty for a band without observations. */
    std::array<QString, BandCount> bandSignals;
    /*! Per band, the observation code of its signal strength ("S1C"); empty
        when the band has none. */
    std::array<QString, BandCount> snrSignals;
};

/*! What the last Apply did, per satellite whose observations changed. */
struct ApplyResult
{
    struct Satellite
    {
        qint64 samplesBefore = 0;
        qint64 samplesAfter = 0;
        qint64 samplesInsideMarks = 0; //!< curve samples left inside the marks: 0
    };
    QMap<QString, Satellite> republished;
    QStringList errors; //!< "NAME: why" for each curve that could not be recomputed
    int hiddenCurves = 0;
    qint64 elapsedMs = 0;
};

/*!
    Everything a host does with the library, without any layout: it gives
    the view's registry a Curve_Coord_XY, publishes one Curve_DataSet_XY per
    satellite (MP1 and MP2 of its first two bands with code and phase) in its
    constellation's colour, fills the epoch table with setResources(), reads
    the user's choices back on the table's two signals with
    getStateliteEnabled() and getStateliteEraseMarks(), and applies them:
    marked epochs leave the observations and their curves are recomputed in
    place, curves of unchecked satellites are hidden.

    The view and the table belong to the caller (usually a window); the host
    only drives them.
*/
class DemoHost : public QObject
{
    Q_OBJECT
public:
    DemoHost(MultipathView* view, CurveGraphicsTableWidget_Epoch* table,
             QObject* parent = nullptr);
    ~DemoHost() override;

    /*! Replaces the shown data by \a source. Returns false with \a error set
        when a curve could not be filled; the view and the table are empty
        then. A source without epochs or without multipath loads (true) and
        emptyReason() tells why nothing is drawn. */
    bool load(std::unique_ptr<ObservationSource> source, QString* error);

    /*! Makes the observations match the table: removes the epochs marked
        for each satellite (and restores those whose marks were taken back),
        recomputes and republishes the changed curves, and hides the curves
        of unchecked satellites. */
    void applyMarks();

    /*! Shows only \a name's curve, highlighted, or every enabled curve for an
        empty name. Refused (false, nothing changes) for a satellite without
        a curve or one that the last Apply hid. */
    bool setSingleCurve(const QString& name);
    QString singleCurve() const { return m_single; }
    /*! True when the last Apply hid \a name's curve (unchecked in the table). */
    bool isHidden(const QString& name) const { return m_hidden.contains(name); }

    /*! Reads the check boxes and the marks back from the table now, as the
        table's signals do (setResources() emits none). */
    void readBack();

    /*! Why the plot is empty after the load, or an empty string when it has
        curves: no epochs; no satellite with code and phase on two bands; or
        such satellites whose arcs are all too short, or whose two phases
        never meet at one epoch. */
    QString emptyReason() const;

    /*! Where and why the loaded file stopped when it was cut short (see
        ReadStop), translated; empty for a whole file. */
    QString readWarning() const;
    /*! Why there is no signal strength to show (the file records none), or
        an empty string when some satellite has some. */
    QString signalStrengthReason() const;

    /*! What the last load or Apply found out about \a name; null for a
        satellite the source does not have. */
    const SatelliteFindings* findings(const QString& name) const;
    /*! The quality numbers of every satellite, in name order. */
    std::vector<SatelliteQuality> qualities() const;
    /*! The quality numbers of system \a system ('G', ...), or of every
        satellite for 0. */
    SystemQuality qualityOfSystem(char system) const;
    /*! The number of satellites with data per epoch, per system and in
        total, ready to publish as curves. */
    SatelliteCounts satelliteCounts() const;
    /*! Which observations make Y index \a yIndex (0: MP1, 1: MP2) of
        \a name's curve: "MP1 = C1C/L1C with L2W"; empty when \a name has no
        curve or the index is not 0 or 1. */
    QString multipathSignals(const QString& name, int yIndex) const;

    /*! Gives the host the satellites' elevations, for completeness against
        the 10 degree mask; an empty function forgets them. The lookup is
        asked for every satellite now and at every later load and Apply; a
        satellite it has no vector for, or one of another length than the
        epochs, counts as without elevations. */
    void setElevationLookup(const ElevationLookup& lookup);
    bool hasElevationLookup() const { return bool(m_elevations); }

    /*! Half of a Y range symmetric about zero that holds every finite value
        of Y indexes \a yIndexes (0: MP1, 1: MP2) of the shown curves between
        \a tMin and \a tMax (milliseconds), with 5 % to spare; 0 when there
        is none. */
    double fitHalfRange(double tMin, double tMax, const QList<int>& yIndexes) const;
    /*! Shows Y fitted to the data in the view's time window (see
        fitHalfRange()), the wheel's zoom reset. Returns false, changing
        nothing, when the window holds no value. */
    bool fitYToData(const QList<int>& yIndexes = {0, 1});

    /*! Writes the samples of \a names' curves between \a tMin and \a tMax
        (milliseconds) as CSV, "satellite,time_gpst,signal,value", for Y
        indexes \a yIndexes (signal "MP1" or "MP2", metres with four
        decimals), satellites in the order given. Names without a curve are
        skipped. Returns false when the device refuses the text. */
    bool writeCurvesCsv(QIODevice* device, const QStringList& names, const QList<int>& yIndexes,
                        double tMin, double tMax) const;
    /*! Writes the events of \a names between \a tMin and \a tMax as CSV,
        "satellite,time_gpst,signal,kind", per band in legend order, the
        signal being the band's phase (or code) type. Returns false when the
        device refuses the text. */
    bool writeEventsCsv(QIODevice* device, const QStringList& names, double tMin,
                        double tMax) const;

    const DemoDocument* document() const { return m_doc.get(); }
    DemoDocument* document() { return m_doc.get(); }
    const LoadStats& loadStats() const { return m_stats; }
    LoadStats& loadStats() { return m_stats; }
    const ApplyResult& lastApply() const { return m_lastApply; }
    /*! The check-box state and the marks as last read back from the table. */
    const QMap<QString, bool>& readSelection() const { return m_selection; }
    const QMap<QString, QList<stEpochDataSet>>& readMarks() const { return m_marks; }
    /*! The per-satellite band data the table was last given. */
    const QMap<QString, QList<stEpochDataSet>>& epochData() const { return m_epochData; }
    /*! Every satellite of the source, in name order. */
    QStringList satelliteNames() const { return m_satelliteIndex.keys(); }
    /*! The satellites that have a curve, in name order. */
    QStringList curveNames() const { return m_curves.keys(); }
    /*! The curves that are not hidden by the last Apply, in name order. */
    QStringList showableCurveNames() const;
    /*! The satellite's curve, or null. */
    Curve_DataSet_XY* curve(const QString& name) const { return m_curves.value(name); }
    /*! The bands of the satellite's MP1 and MP2, -1 when it has no curve. */
    int bandA(const QString& name) const { return m_bands.value(name).first; }
    int bandB(const QString& name) const { return m_bands.value(name).second; }
    /*! The constellation letter of \a name ('G', 'R', ...). */
    char system(const QString& name) const { return m_systems.value(name); }

    CurveScene* registry() const;
    MultipathView* view() const { return m_view; }
    CurveGraphicsTableWidget_Epoch* table() const { return m_table; }

signals:
    void loaded();
    void marksRead();
    void selectionRead();
    void applied();
    /*! The curves shown changed (Apply, single curve). */
    void visibilityChanged();

private:
    void onTableSelection();
    void onTableEraseMarks();
    // Computes and publishes the satellite's curve and finds its numbers and
    // events; \a prepared, when given, holds those its observations give.
    bool publishSatellite(const QString& name, const SatelliteObservations& sat,
                          MultipathInfo* info, QString* error,
                          const PreparedSatellite* prepared = nullptr);
    void applyElevationsTo(SatelliteFindings& findings) const;
    void updateVisibility();
    void fitYRange();

    MultipathView* m_view;
    CurveGraphicsTableWidget_Epoch* m_table;
    std::unique_ptr<DemoDocument> m_doc;
    /*! The curves' data sets, owned by the registry (added with bAutoDelete
        true); the host keeps the pointers to republish into them. */
    QMap<QString, Curve_DataSet_XY*> m_curves;
    QMap<QString, int> m_satelliteIndex;
    QMap<QString, QPair<int, int>> m_bands;
    QMap<QString, QList<stEpochDataSet>> m_epochData; //!< what the table was given
    QMap<QString, char> m_systems;
    QSet<QString> m_hidden;  //!< unchecked at the last Apply
    QString m_single;
    QMap<QString, bool> m_selection;
    QMap<QString, QList<stEpochDataSet>> m_marks;
    LoadStats m_stats;
    ApplyResult m_lastApply;
    QMap<QString, SatelliteFindings> m_findings;
    ElevationLookup m_elevations;
    bool m_hasSignalStrength = false;
};

/*! The number of X samples of \a dataSet inside any of \a intervals. */
qint64 samplesInside(const Curve_DataSet_XY* dataSet, const QList<EpochInterval>& intervals);

/*! The (start, length) pairs of a satellite's read-back marks, in order. */
QList<EpochInterval> flattenMarks(const QList<stEpochDataSet>& marks);

/*! The smallest and largest finite value of the Y axes \a axes (keys, 1 for
    the first Y axis) of \a curves at samples whose X lies in [\a tMin,
    \a tMax]. Returns false, leaving \a yMin and \a yMax untouched, when
    there is none. */
bool yRangeInWindow(const QList<const Curve_DataSet_XY*>& curves, const QList<int>& axes,
                    double tMin, double tMax, double* yMin, double* yMax);

/*! Half of a Y range, symmetric about zero, that holds \a quantile (0..1) of
    the absolute values of the given Y axes of \a curves, widened by
    \a margin; 0 when they hold no finite value. */
double quantileHalfRange(const QList<const Curve_DataSet_XY*>& curves, const QList<int>& axes,
                         double quantile, double margin);

} // namespace gnssdemo

#endif // GNSSDEMO_DEMOHOST_H
