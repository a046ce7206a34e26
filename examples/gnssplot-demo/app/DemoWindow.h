// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOWINDOW_H
#define GNSSDEMO_DEMOWINDOW_H

#include "DemoHost.h"
#include "NavigationLoad.h"

#include <QMainWindow>
#include <QString>

#include <memory>

class CurveGraphicsTableWidget_Epoch;
class QComboBox;
class QHBoxLayout;
class QLabel;

namespace gnssdemo {

class MultipathView;
class ReadbackPanel;

/*!
    The demo's main window: the curve view (multipath of every satellite)
    above the epoch table, the read-back panel at the side, and a status bar
    with the load time. It lays these out and turns menu and button clicks
    into calls of its DemoHost, which is where the library is driven.
*/
class DemoWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit DemoWindow(QWidget* parent = nullptr);
    ~DemoWindow() override;

    /*! Replaces the shown data by \a source (see DemoHost::load()). */
    bool load(std::unique_ptr<ObservationSource> source, QString* error);
    /*! Reads a RINEX observation file (2.xx or 3.xx, plain or compact, each
        plain, gzip or Unix-compressed) and loads it, with the navigation
        files \a navigationFiles and those of the same station and day
        beside it (see attachNavigation()). A file cut short loads its
        complete epochs; the message line says where it stopped. */
    bool loadRinex(const QString& path, QString* error,
                   const QStringList& navigationFiles = QStringList());
    /*! What reading navigation for the file last loaded did. */
    const NavigationLoadResult& navigationLoad() const { return m_navigationLoad; }
    /*! Says in the message line above the plot, and over the plot when
        nothing is loaded, that a file could not be read, and why (\a error
        as loadRinex() gives it). What was loaded before stays. */
    void showReadFailure(const QString& error);
    /*! The message line's text: where a file cut short stopped, or why a
        file could not be read; empty when there is nothing to say. */
    QString message() const;

    DemoHost* host() const { return m_host; }
    const LoadStats& loadStats() const { return m_host->loadStats(); }
    MultipathView* view() const { return m_view; }
    CurveGraphicsTableWidget_Epoch* table() const { return m_table; }
    ReadbackPanel* panel() const { return m_panel; }

private:
    void buildMenus();
    void buildLegend();
    void fillSingleChoice();
    void chooseSingleCurve(const QString& name);
    void onLoaded();
    void onApplied();
    void updateStatus();
    void showMessage(const QString& text);
    void openRinexDialog();
    void loadSynthetic();
    void saveCurvePicture(const QString& satellite);
    void saveBarsPicture();

    MultipathView* m_view;
    CurveGraphicsTableWidget_Epoch* m_table;
    ReadbackPanel* m_panel;
    DemoHost* m_host;
    QComboBox* m_singleChoice;
    QHBoxLayout* m_legend;
    QLabel* m_statusLabel;
    NavigationLoadResult m_navigationLoad;
    QLabel* m_messageLine;
};

} // namespace gnssdemo

#endif // GNSSDEMO_DEMOWINDOW_H
