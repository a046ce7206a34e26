// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOWINDOW_H
#define GNSSDEMO_DEMOWINDOW_H

#include "DemoHost.h"
#include "NavigationLoad.h"
#include "PlotQuantity.h"

#include <QMainWindow>
#include <QString>

#include <memory>

class CurveGraphicsTableWidget_Epoch;
class QActionGroup;
class QComboBox;
class QDockWidget;
class QLabel;
class QStackedWidget;
class SkyGraphicsView;

namespace gnssdemo {

class ElidedLabel;
class MultipathView;
class QualityPane;
class ReadbackPanel;
class SkyPane;

/*!
    The demo's main window, a daily quality-check station: the curve plot
    (multipath, signal strength or satellites per epoch, one view each)
    above the epoch table, and at the side the sky plot, the quality numbers
    and the read-back panel, each in a dock. Plot, table and sky plot show
    one time window; hovering a satellite in the plot moves the sky plot's
    time cursor, rings the satellite there and shows its table row. The
    window lays these out and turns menu and button clicks into calls of its
    DemoHost, which is where the library is driven.
*/
class DemoWindow : public QMainWindow
{
    Q_OBJECT
public:
    /*! What File > Export writes. */
    enum class ExportKind {
        Curves,    //!< the shown curves of the plot in its time window
        SkyTracks, //!< azimuth and elevation of the satellites in the window
        Marks,     //!< loss of lock, phase jumps and gaps in the window
    };

    /*! The docks at the side, tabbed. */
    enum class Dock { Sky, Quality, Marks };

    explicit DemoWindow(QWidget* parent = nullptr);
    ~DemoWindow() override;

    /*! Brings \a dock to the front of its tabs (and shows it if closed). */
    void showDock(Dock dock);

    /*! Replaces the shown data by \a source (see DemoHost::load()). */
    bool load(std::unique_ptr<ObservationSource> source, QString* error);
    /*! Reads a RINEX observation file (2.xx or 3.xx, plain or compact, each
        plain, gzip or Unix-compressed) and loads it, with the navigation
        files \a navigationFiles and those of the same station and day
        beside it (see attachNavigation()). A file cut short loads its
        complete epochs; the message line says where it stopped. */
    bool loadRinex(const QString& path, QString* error,
                   const QStringList& navigationFiles = QStringList());
    /*! Reads navigation files \a files for the file loaded, with those of
        its station and day beside it, as --nav does, and shows the sky.
        Returns false when no file was loaded. */
    bool openNavigation(const QStringList& files);
    /*! What reading navigation for the file last loaded did. */
    const NavigationLoadResult& navigationLoad() const { return m_navigationLoad; }
    /*! Says in the message line above the plot, and over the plot when
        nothing is loaded, that a file could not be read, and why (\a error
        as loadRinex() gives it). What was loaded before stays. */
    void showReadFailure(const QString& error);
    /*! The message line's text: where a file cut short stopped, why a file
        could not be read, what went wrong with navigation; empty when there
        is nothing to say. */
    QString message() const;

    /*! Shows \a quantity's view in the plot. */
    void showQuantity(PlotQuantity quantity);
    PlotQuantity quantity() const { return m_host->currentQuantity(); }
    /*! Writes \a kind as CSV to \a path. Returns false with \a error set when
        nothing is loaded or the file cannot be written. */
    bool exportCsv(ExportKind kind, const QString& path, QString* error);
    /*! The picture "Save curve picture" saves: the plot as shown, at the
        view's size, under a line naming the station, the quantity and the
        day. Null when nothing is loaded. */
    QImage curveViewPicture() const;

    DemoHost* host() const { return m_host; }
    const LoadStats& loadStats() const { return m_host->loadStats(); }
    /*! The multipath view. */
    MultipathView* view() const { return m_views[0]; }
    /*! The view of \a quantity. */
    MultipathView* view(PlotQuantity quantity) const { return m_views[int(quantity)]; }
    CurveGraphicsTableWidget_Epoch* table() const { return m_table; }
    ReadbackPanel* panel() const { return m_panel; }
    SkyPane* skyPane() const { return m_skyPane; }
    SkyGraphicsView* sky() const;
    QualityPane* qualityPane() const { return m_quality; }
    /*! The status line and the gesture hint. */
    ElidedLabel* statusLine() const { return m_statusLabel; }
    ElidedLabel* hintLine() const { return m_hint; }
    /*! The legend of the plot, above it. */
    QLabel* legend() const { return m_legend; }
    /*! The plot's choices in the menu bar's corner: the quantity, Fit Y and
        Show. */
    QWidget* controls() const { return m_controls; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildMenus();
    void buildLegend();
    void fillSingleChoice();
    void chooseSingleCurve(const QString& name);
    void onLoaded();
    void onApplied();
    void onNavigation();
    void updateStatus();
    void showMessage(const QString& text);
    void openRinexDialog();
    void openNavigationDialog();
    void exportDialog(ExportKind kind);
    void loadSynthetic();
    void saveCurvePicture();
    void saveBarsPicture();
    void onPlotHover(PlotQuantity quantity, const QString& curve, int yIndex, double timeMs,
                     double value);
    void onSkyHover(const QString& track, double timeMs, double azimuth, double elevation,
                    double value);
    void onHoverNone();

    MultipathView* m_views[PlotQuantityCount] = {};
    QStackedWidget* m_plots;
    QComboBox* m_quantityChoice;
    QWidget* m_controls;
    CurveGraphicsTableWidget_Epoch* m_table;
    ReadbackPanel* m_panel;
    SkyPane* m_skyPane;
    QualityPane* m_quality;
    QDockWidget* m_skyDock;
    QDockWidget* m_qualityDock;
    QDockWidget* m_panelDock;
    QActionGroup* m_quantityActions;
    DemoHost* m_host;
    QComboBox* m_singleChoice;
    QLabel* m_legend;
    ElidedLabel* m_statusLabel;
    ElidedLabel* m_hint;
    NavigationLoadResult m_navigationLoad;
    QString m_observationPath;
    QStringList m_navigationFiles;
    QLabel* m_messageLine;
    QString m_readMessage;
    bool m_docksSized = false;
};

} // namespace gnssdemo

#endif // GNSSDEMO_DEMOWINDOW_H
