// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOHOST_H
#define GNSSDEMO_DEMOHOST_H

#include "DemoDocument.h"
#include "NavigationLoad.h"
#include "PlotQuantity.h"
#include "Quality.h"
#include "SignalStrength.h"

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
class SkyGraphicsView;

namespace gnssdemo {

class MultipathView;

/*! What colours the sky plot's tracks and fills its sky map. */
enum class SkyValue {
    SystemColour = 0,    //!< each satellite in its system's colour, no value
    SignalStrengthA = 1, //!< signal strength of the first band (as F 1 of the plot), dB-Hz
    SignalStrengthB = 2, //!< of the second band, dB-Hz
    Multipath1 = 3,      //!< |MP1|, metres
    Multipath2 = 4,      //!< |MP2|, metres
};

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

    Beside the multipath view it fills, when given them, a view of signal
    strength and one of the satellites per epoch (setPlotView()), each when
    it is first shown, and a sky plot of the satellites' tracks coloured by
    a value (setSkyView(), attachNavigation()). Every view shows the same
    time window as the table.

    The views and the table belong to the caller (usually a window); the
    host only drives them.
*/
class DemoHost : public QObject
{
    Q_OBJECT
public:
    DemoHost(MultipathView* view, CurveGraphicsTableWidget_Epoch* table,
             QObject* parent = nullptr);
    ~DemoHost() override;

    /*! Gives the host the view of \a quantity (the multipath view is the
        constructor's and cannot be replaced): its registry gets a coordinate
        and its time window is linked with the table's. Null or a second call
        for one quantity is refused (false). */
    bool setPlotView(PlotQuantity quantity, MultipathView* view);
    /*! The view of \a quantity; null when none was given. */
    MultipathView* plotView(PlotQuantity quantity) const;
    /*! Makes \a quantity the one the user looks at: its curves are
        published now if they are not yet. */
    void setCurrentQuantity(PlotQuantity quantity);
    PlotQuantity currentQuantity() const { return m_current; }
    /*! The curve \a name of \a quantity's view (a satellite's name; a
        system's name, or "all", for the satellite counts); null when none. */
    Curve_DataSet_XY* curveOf(PlotQuantity quantity, const QString& name) const;
    /*! The names of \a quantity's curves, in name order. */
    QStringList curveNamesOf(PlotQuantity quantity) const;
    /*! The observation behind Y index \a yIndex of curve \a name of
        \a quantity: "MP1", the signal strength's code ("S1C"), or empty. */
    QString signalOf(PlotQuantity quantity, const QString& name, int yIndex) const;
    /*! Why \a quantity's view is empty, or an empty string when it has
        curves (emptyReason() for multipath). */
    QString emptyReasonOf(PlotQuantity quantity) const;
    /*! Fits Y of the current view to the data in its time window: symmetric
        about zero for multipath (fitYToData()), from the smallest to the
        largest value otherwise. False, changing nothing, when the window
        holds no value. */
    bool fitCurrentY();

    /*! Gives the host the sky plot it fills with the tracks of the
        satellites, linked in time with the table and coloured as
        setSkyValue() says. Null or a second call is refused (false). */
    bool setSkyView(SkyGraphicsView* sky);
    SkyGraphicsView* skyView() const { return m_sky; }
    /*! Reads navigation for the document loaded (see the free function
        attachNavigation()), then uses the satellites' elevations for
        completeness and shows their tracks in the sky plot. Emits
        navigationChanged(). Nothing happens without a document. */
    NavigationLoadResult attachNavigation(const QString& observationPath,
                                          const QStringList& files);
    /*! Colours the sky plot's tracks and its sky map by \a value. */
    void setSkyValue(SkyValue value);
    SkyValue skyValue() const { return m_skyValue; }
    /*! Why the sky plot shows no track: no navigation, no position, no
        ephemeris for any observed satellite; empty when it shows some. */
    QString skyReason() const;
    /*! Observed satellites without a position at any epoch (no ephemeris),
        in name order; empty without navigation. */
    QStringList withoutEphemeris() const;

    /*! Shows \a name's row in the table: scrolled into view, and, with
        \a bHighlight, marked until another row is. An unknown name removes
        the mark. */
    void showTableRow(const QString& name, bool bHighlight);
    /*! The row of \a name in the table, -1 when it has none. */
    int tableRow(const QString& name) const;

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
    /*! The same for the curves of \a quantity; the signal is signalOf()
        (one decimal for signal strength, none for counts). */
    bool writeCurvesCsv(QIODevice* device, PlotQuantity quantity, const QStringList& names,
                        const QList<int>& yIndexes, double tMin, double tMax) const;
    /*! Writes the sky tracks of \a names between \a tMin and \a tMax
        (milliseconds) as CSV, "satellite,time_gpst,azimuth_deg,elevation_deg",
        one row per epoch with a position, angles with three decimals.
        Names without a track are skipped. Returns false when the device
        refuses the text. */
    bool writeSkyTracksCsv(QIODevice* device, const QStringList& names, double tMin,
                           double tMax) const;
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
    /*! Navigation was attached: the sky plot and the numbers changed. */
    void navigationChanged();

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
    void setUpView(PlotQuantity quantity, MultipathView* view);
    void linkTimeWindow(MultipathView* view);
    void resetViews();
    void publishQuantity(PlotQuantity quantity);
    void publishSignalStrength();
    void publishSatelliteCounts();
    void fitQuantityRange(PlotQuantity quantity, bool bWindowOnly);
    void publishSky();
    void fillSkyValues();
    void greyUncheckedRows();
    void publishEventMarks();

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

    MultipathView* m_views[PlotQuantityCount] = {};
    bool m_published[PlotQuantityCount] = {};
    PlotQuantity m_current = PlotQuantity::Multipath;
    QMap<QString, Curve_DataSet_XY*> m_strength; //!< owned by the strength view's registry
    QMap<QString, SignalStrengthInfo> m_strengthInfo;
    QMap<QString, Curve_DataSet_XY*> m_counts;   //!< owned by the count view's registry
    SkyGraphicsView* m_sky = nullptr;
    QMap<QString, Curve_DataSet_XY*> m_tracks;   //!< owned by the sky plot's registry
    SkyValue m_skyValue = SkyValue::SignalStrengthA;
    QSet<QString> m_greyed; //!< given to the table as not enabled: unchecked
    QString m_highlighted;  //!< the row marked by showTableRow()
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
