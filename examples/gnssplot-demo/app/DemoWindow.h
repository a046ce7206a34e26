// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOWINDOW_H
#define GNSSDEMO_DEMOWINDOW_H

#include "DemoDocument.h"

#include <stEpochDataSet.h>

#include <QImage>
#include <QMainWindow>
#include <QMap>
#include <QPixmap>
#include <QSet>
#include <QString>

#include <memory>

class CurveGraphicsScene;
class CurveGraphicsTableWidget_Epoch;
class CurveGraphicsView;
class CurveScene;
class Curve_DataSet_XY;
class QComboBox;
class QHBoxLayout;
class QLabel;

namespace gnssdemo {

class ReadbackPanel;

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
    int hiddenCurves = 0;
    qint64 elapsedMs = 0;
};

/*!
    The demo host's main window: the curve view (multipath of every
    satellite) above the epoch table, the read-back panel at the side, and a
    status bar with the load time.

    This is the reference for how a host drives the library: it creates a
    CurveGraphicsView, gives its registry a Curve_Coord_XY, registers one
    Curve_DataSet_XY per satellite in the constellation's colour, fills the
    epoch table with setResources(), listens to the table's two signals and
    reads the user's choices back with getStateliteEnabled() and
    getStateliteEraseMarks().
*/
class DemoWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit DemoWindow(QWidget* parent = nullptr);
    ~DemoWindow() override;

    /*! Replaces the shown data by \a source: one curve per satellite that has
        two bands with code and phase, one table row per satellite. Returns
        false with \a error set when a curve could not be filled. */
    bool load(std::unique_ptr<ObservationSource> source, QString* error);
    /*! Reads a RINEX observation file (2.xx or 3.xx, plain or gzip) and
        loads it. */
    bool loadRinex(const QString& path, QString* error);

    /*! Makes the observations match the table: removes the epochs marked
        for each satellite (and restores those whose marks were taken back),
        recomputes and republishes the changed curves, and hides the curves
        of unchecked satellites. */
    void applyMarks();

    /*! Shows only \a name's curve, highlighted, or every enabled curve again
        for an empty name. */
    void setSingleCurve(const QString& name);

    /*! One satellite's multipath curve with its frame, drawn off-screen at
        \a size pixels; null when the satellite has no curve. */
    QPixmap curvePicture(const QString& name, const QSize& size) const;
    /*! Every satellite's bars drawn off-screen, in columns of at most
        \a rowsPerColumn satellites, each bar \a barWidth pixels wide. */
    QImage barsPicture(int barWidth, int rowsPerColumn) const;

    const LoadStats& loadStats() const { return m_stats; }
    const ApplyResult& lastApply() const { return m_lastApply; }
    /*! The check-box state and the marks as last read back from the table. */
    const QMap<QString, bool>& readSelection() const { return m_selection; }
    const QMap<QString, QList<stEpochDataSet>>& readMarks() const { return m_marks; }
    const DemoDocument* document() const { return m_doc.get(); }
    /*! The per-satellite band data the table was last given. */
    const QMap<QString, QList<stEpochDataSet>>& epochData() const { return m_epochData; }
    /*! Reads the check boxes and the marks back from the table now, as the
        table's signals do (setResources() emits none). */
    void readBack();
    /*! The satellites that have a curve, in name order. */
    QStringList curveNames() const { return m_curves.keys(); }

    CurveGraphicsView* view() const { return m_view; }
    CurveGraphicsTableWidget_Epoch* table() const { return m_table; }
    ReadbackPanel* panel() const { return m_panel; }
    CurveScene* registry() const;

signals:
    void loaded();
    void marksRead();
    void selectionRead();
    void applied();

private slots:
    void onTableSelection();
    void onTableEraseMarks();
    void openRinexDialog();
    void loadSynthetic();
    void saveCurvePicture(const QString& satellite);
    void saveBarsPicture();

private:
    void buildMenus();
    void buildLegend();
    bool publishSatellite(const QString& name, const SatelliteObservations& sat,
                          MultipathInfo* info, QString* error);
    void updateVisibility();
    void updateStatus();
    CurveGraphicsScene* graphicsScene() const;

    std::unique_ptr<DemoDocument> m_doc;
    CurveGraphicsView* m_view;
    CurveGraphicsTableWidget_Epoch* m_table;
    ReadbackPanel* m_panel;
    QComboBox* m_singleChoice;
    QHBoxLayout* m_legend;
    QLabel* m_statusLabel;
    /*! The curves' data sets, owned by the registry (added with bAutoDelete
        true); the host keeps the pointers to republish into them. */
    QMap<QString, Curve_DataSet_XY*> m_curves;
    QMap<QString, int> m_satelliteIndex;
    QMap<QString, QList<stEpochDataSet>> m_epochData; //!< what the table was given
    QMap<QString, char> m_systems;
    QSet<QString> m_hidden;  //!< unchecked at the last Apply
    QString m_single;
    QMap<QString, bool> m_selection;
    QMap<QString, QList<stEpochDataSet>> m_marks;
    LoadStats m_stats;
    ApplyResult m_lastApply;
};

/*! The number of X samples of \a dataSet inside any of \a intervals. */
qint64 samplesInside(const Curve_DataSet_XY* dataSet, const QList<EpochInterval>& intervals);

/*! The (start, length) pairs of a satellite's read-back marks, in order. */
QList<EpochInterval> flattenMarks(const QList<stEpochDataSet>& marks);

} // namespace gnssdemo

#endif // GNSSDEMO_DEMOWINDOW_H
