// SPDX-License-Identifier: MIT
#include "DemoWindow.h"

#include "DemoTexts.h"
#include "ElidedLabel.h"
#include "MultipathView.h"
#include "Pictures.h"
#include "QualityPane.h"
#include "ReadbackPanel.h"
#include "RinexReader.h"
#include "SkyPane.h"
#include "SyntheticSource.h"

#include <gnssplot.h>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace gnssdemo {

namespace {

// The tint the curve items give a curve's second Y axis (F 2): its red and
// green brightened by 1.3, no blue, so the legend can show it.
QColor secondAxisTint(const QColor& c)
{
    auto shade = [](int component) { return std::min(int(std::trunc(component * 1.3)), 255); };
    return QColor(shade(c.red()), shade(c.green()), 0);
}

QString swatch(const QColor& c)
{
    return QStringLiteral("<span style=\"color:%1\">&#9632;</span>").arg(c.name());
}

} // namespace

DemoWindow::DemoWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("gnssplot demo"));

    // One curve view per quantity; they keep their frame filling the
    // viewport: there is nothing to scroll to.
    m_plots = new QStackedWidget;
    for (int q = 0; q < PlotQuantityCount; ++q) {
        auto* view = new MultipathView;
        // Below about 300 pixels the frame's lowest Y label meets its date
        // caption in the lower left corner, below 335 the label under the
        // top one meets the F 2 box. The window has room for that even at
        // 800 x 500: its actions live in the menus alone.
        view->setMinimumSize(240, 340);
        view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view->setFrameShape(QFrame::NoFrame);
        m_views[q] = view;
        m_plots->addWidget(view);
    }

    auto* curvePane = new QWidget;
    auto* curveLayout = new QVBoxLayout(curvePane);
    curveLayout->setContentsMargins(0, 0, 0, 0);
    curveLayout->setSpacing(2);
    // What the plot shows and how, in the menu bar's corner: the plot keeps
    // the height it needs for its labels even in a small window.
    m_controls = new QWidget;
    auto* curveBar = new QHBoxLayout(m_controls);
    curveBar->setContentsMargins(6, 1, 4, 1);
    curveBar->setSpacing(6);
    m_quantityChoice = new QComboBox;
    for (int q = 0; q < PlotQuantityCount; ++q) {
        const auto quantity = PlotQuantity(q);
        m_quantityChoice->addItem(tr("%1 (%2)").arg(PlotQuantityTexts::title(quantity),
                                                    PlotQuantityTexts::unit(quantity)));
        m_quantityChoice->setItemData(q, PlotQuantityTexts::explanation(quantity),
                                      Qt::ToolTipRole);
    }
    m_quantityChoice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_quantityChoice->setMinimumContentsLength(10);
    curveBar->addWidget(m_quantityChoice, 2);
    auto* fit = new QPushButton(tr("Fit Y"));
    fit->setToolTip(tr("Fit Y to the data in the time window shown (F)"));
    curveBar->addWidget(fit);
    auto* showLabel = new QLabel(tr("Show:"));
    curveBar->addWidget(showLabel);
    m_singleChoice = new QComboBox;
    m_singleChoice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_singleChoice->setMinimumContentsLength(8);
    m_singleChoice->setToolTip(tr("Show one satellite's curve alone, highlighted; satellites "
                                  "unchecked at the last Apply are not offered"));
    curveBar->addWidget(m_singleChoice);
    // The legend wraps instead of widening the window.
    m_legend = new QLabel;
    m_legend->setWordWrap(true);
    m_legend->setContentsMargins(6, 0, 6, 0);
    curveLayout->addWidget(m_legend);
    // What the last file could not give: where a file cut short stopped, or
    // why a file could not be read. Wrapped, so that it is read in full.
    m_messageLine = new QLabel;
    m_messageLine->setWordWrap(true);
    m_messageLine->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_messageLine->setStyleSheet(QStringLiteral(
        "background: #fff4d6; color: #5a4500; padding: 3px 6px;"));
    m_messageLine->hide();
    curveLayout->addWidget(m_messageLine);
    curveLayout->addWidget(m_plots, 1);

    // The table: bars start at the left edge of its second column, like the
    // view's data area, once the headers are hidden.
    m_table = new CurveGraphicsTableWidget_Epoch;
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->hide();
    m_table->setMinimumHeight(64);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Cells are not for selecting: the mouse marks epochs.
    m_table->setSelectionMode(QAbstractItemView::NoSelection);

    m_host = new DemoHost(m_views[0], m_table, this);
    for (int q = 1; q < PlotQuantityCount; ++q)
        m_host->setPlotView(PlotQuantity(q), m_views[q]);

    auto* left = new QSplitter(Qt::Vertical);
    left->addWidget(curvePane);
    left->addWidget(m_table);
    left->setStretchFactor(0, 3);
    left->setStretchFactor(1, 2);
    left->setChildrenCollapsible(false);
    left->setSizes({440, 260});
    setCentralWidget(left);

    // The side: sky, numbers and the read-back panel share one dock area,
    // tabbed, so that a small window keeps the plot wide.
    m_skyPane = new SkyPane;
    m_host->setSkyView(m_skyPane->sky());
    m_quality = new QualityPane;
    m_panel = new ReadbackPanel;
    auto dock = [this](QWidget* content, const QString& title, const QString& name) {
        auto* d = new QDockWidget(title, this);
        d->setObjectName(name);
        d->setWidget(content);
        d->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
        addDockWidget(Qt::RightDockWidgetArea, d);
        return d;
    };
    m_skyDock = dock(m_skyPane, tr("Sky"), QStringLiteral("sky"));
    m_qualityDock = dock(m_quality, tr("Quality"), QStringLiteral("quality"));
    // The panel is taller than a small window: it scrolls in its dock.
    auto* panelScroll = new QScrollArea;
    panelScroll->setWidget(m_panel);
    panelScroll->setWidgetResizable(true);
    panelScroll->setFrameShape(QFrame::NoFrame);
    panelScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_panelDock = dock(panelScroll, tr("Marks"), QStringLiteral("marks"));
    tabifyDockWidget(m_skyDock, m_qualityDock);
    tabifyDockWidget(m_qualityDock, m_panelDock);
    m_skyDock->raise();

    // Both status lines take the width they are given and cut their text
    // with "...": they never keep the window from shrinking. The hint is an
    // ordinary widget, so a message shown in the status bar hides it and
    // gets the whole line.
    m_statusLabel = new ElidedLabel;
    statusBar()->addWidget(m_statusLabel, 3);
    m_hint = new ElidedLabel;
    m_hint->setText(DemoTexts::gestures(86400000));
    QPalette grey = m_hint->palette();
    grey.setColor(QPalette::WindowText, QColor(96, 96, 96));
    m_hint->setPalette(grey);
    statusBar()->addWidget(m_hint, 2);
    buildMenus();
    menuBar()->setCornerWidget(m_controls, Qt::TopRightCorner);

    for (int q = 0; q < PlotQuantityCount; ++q) {
        const auto quantity = PlotQuantity(q);
        connect(m_views[q], &CurveGraphicsView::sgHover, this,
                [this, quantity](const QString& curve, int yIndex, double timeMs,
                                 double value) {
                    onPlotHover(quantity, curve, yIndex, timeMs, value);
                });
        connect(m_views[q], &CurveGraphicsView::sgHoverNone, this, &DemoWindow::onHoverNone);
        // Follows sgHover for a sample that begins an arc after a slip, a
        // loss of lock or a gap: the status line names what happened.
        connect(m_views[q], &CurveGraphicsView::sgHoverEventMarks, this,
                [this, q](const QString&, int, double, double, const QList<int>& kinds) {
                    QStringList names;
                    for (const int kind : kinds)
                        names.append(m_views[q]->getEventKindName(kind));
                    names.removeDuplicates();
                    m_statusLabel->setText(tr("%1 (%2)").arg(m_statusLabel->text(),
                                                             names.join(tr(", "))));
                });
    }
    connect(m_skyPane->sky(), &SkyGraphicsView::sgHover, this, &DemoWindow::onSkyHover);
    connect(m_skyPane->sky(), &SkyGraphicsView::sgHoverNone, this, &DemoWindow::onHoverNone);
    connect(m_skyPane, &SkyPane::valueChosen, m_host, &DemoHost::setSkyValue);
    connect(m_quantityChoice, QOverload<int>::of(&QComboBox::activated), this,
            [this](int index) { showQuantity(PlotQuantity(index)); });
    connect(fit, &QPushButton::clicked, m_host, &DemoHost::fitCurrentY);

    connect(m_host, &DemoHost::selectionRead, this,
            [this] { m_panel->showSelection(m_host->readSelection()); });
    connect(m_host, &DemoHost::marksRead, this, [this] {
        m_panel->showMarks(m_host->readMarks(), m_table->eraseMarkActionNum());
    });
    connect(m_host, &DemoHost::applied, this, &DemoWindow::onApplied);
    connect(m_host, &DemoHost::navigationChanged, this, &DemoWindow::onNavigation);
    connect(m_panel, &ReadbackPanel::undoRequested, m_table,
            &CurveGraphicsTableWidget_Epoch::undoEraseMarkAction);
    connect(m_panel, &ReadbackPanel::clearRequested, m_table,
            &CurveGraphicsTableWidget_Epoch::clearEraseMarkActions);
    connect(m_panel, &ReadbackPanel::applyRequested, m_host, &DemoHost::applyMarks);
    connect(m_panel, &ReadbackPanel::saveCurvePictureRequested, this,
            &DemoWindow::saveCurvePicture);
    connect(m_panel, &ReadbackPanel::saveBarsPictureRequested, this,
            &DemoWindow::saveBarsPicture);
    connect(m_singleChoice, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        chooseSingleCurve(index <= 0 ? QString() : m_singleChoice->itemText(index));
    });
    m_panel->showMarks({}, 0);
    // Plot and table show the same time window; an epoch also sits at the
    // same x in both, so that a mark lines up with the samples it erases.
    m_table->alignBarsWith(m_views[0]);
    buildLegend();
    m_skyPane->setNote(DemoTexts::noNavigation());

    // A window that fits the screen it opens on, whatever its scale.
    QSize size(1280, 800);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableSize() * 0.92);
    resize(size);
}

DemoWindow::~DemoWindow() = default;

void DemoWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (m_docksSized)
        return;
    m_docksSized = true;
    // The side takes a quarter of the window, from 240 to 400 pixels, so
    // that the plot keeps most of the width.
    resizeDocks({m_skyDock}, {std::max(240, std::min(400, width() / 4))}, Qt::Horizontal);
}

void DemoWindow::showDock(Dock dock)
{
    QDockWidget* d = dock == Dock::Sky       ? m_skyDock
                     : dock == Dock::Quality ? m_qualityDock
                                             : m_panelDock;
    d->show();
    d->raise();
}

SkyGraphicsView* DemoWindow::sky() const
{
    return m_skyPane->sky();
}

void DemoWindow::buildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    // Each action is made, then connected: the one addAction() overload that
    // connects as well has its arguments in a different order in Qt 6.
    QAction* open = file->addAction(tr("&Open RINEX file..."));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &DemoWindow::openRinexDialog);
    QAction* openNav = file->addAction(tr("Open &navigation..."));
    openNav->setToolTip(tr("Broadcast navigation for the satellites' azimuth and elevation"));
    connect(openNav, &QAction::triggered, this, &DemoWindow::openNavigationDialog);
    QAction* synthetic = file->addAction(tr("&Synthetic day"));
    connect(synthetic, &QAction::triggered, this, &DemoWindow::loadSynthetic);
    file->addSeparator();
    QMenu* exports = file->addMenu(tr("&Export"));
    QAction* exportCurves = exports->addAction(tr("&Curves as CSV..."));
    connect(exportCurves, &QAction::triggered, this, [this] { exportDialog(ExportKind::Curves); });
    QAction* exportSky = exports->addAction(tr("&Sky tracks as CSV..."));
    connect(exportSky, &QAction::triggered, this, [this] { exportDialog(ExportKind::SkyTracks); });
    QAction* exportMarks = exports->addAction(tr("&Marks as CSV..."));
    connect(exportMarks, &QAction::triggered, this, [this] { exportDialog(ExportKind::Marks); });
    QAction* saveCurve = file->addAction(tr("Save &curve picture..."));
    connect(saveCurve, &QAction::triggered, this, &DemoWindow::saveCurvePicture);
    QAction* saveBars = file->addAction(tr("Save table &bars picture..."));
    connect(saveBars, &QAction::triggered, this, &DemoWindow::saveBarsPicture);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &QWidget::close);

    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    m_quantityActions = new QActionGroup(this);
    for (int q = 0; q < PlotQuantityCount; ++q) {
        QAction* a = viewMenu->addAction(PlotQuantityTexts::title(PlotQuantity(q)));
        a->setCheckable(true);
        a->setChecked(q == 0);
        a->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + q)));
        m_quantityActions->addAction(a);
        connect(a, &QAction::triggered, this, [this, q] { showQuantity(PlotQuantity(q)); });
    }
    viewMenu->addSeparator();
    QAction* fitY = viewMenu->addAction(tr("&Fit Y to data"));
    fitY->setShortcut(QKeySequence(Qt::Key_F));
    connect(fitY, &QAction::triggered, m_host, &DemoHost::fitCurrentY);
    QAction* whole = viewMenu->addAction(tr("&Whole file"));
    whole->setShortcut(QKeySequence(Qt::Key_Home));
    connect(whole, &QAction::triggered, this,
            [this] { m_views[int(quantity())]->resetTimeWindow(); });
    viewMenu->addSeparator();
    viewMenu->addAction(m_skyDock->toggleViewAction());
    viewMenu->addAction(m_qualityDock->toggleViewAction());
    viewMenu->addAction(m_panelDock->toggleViewAction());

}

void DemoWindow::buildLegend()
{
    // Each system's colour is its F 1 curve (MP1, or the first band's
    // signal strength); the curve items draw F 2 in a brighter tint of it,
    // shown next to it.
    const PlotQuantity q = quantity();
    const QMap<char, int>& systems = m_host->loadStats().satellitesPerSystem;
    QStringList chips;
    for (auto it = systems.cbegin(); it != systems.cend(); ++it) {
        const QColor c = systemColor(it.key());
        const QString marks = q == PlotQuantity::SatelliteCount
                                  ? swatch(c)
                                  : swatch(c) + swatch(secondAxisTint(c));
        chips.append(QStringLiteral("<span style=\"white-space:nowrap\">%1&nbsp;%2</span>")
                         .arg(marks, systemName(it.key()).toHtmlEscaped()));
    }
    QString text = chips.join(QStringLiteral(" &nbsp; "));
    if (q == PlotQuantity::SatelliteCount) {
        text += QStringLiteral(" &nbsp; %1&nbsp;%2").arg(swatch(QColor(40, 40, 40)), tr("all"));
    } else if (!chips.isEmpty()) {
        text += QStringLiteral(" &nbsp; <span style=\"color:#505050\">%1</span>")
                    .arg(tr("(left: F 1 = %1, right: F 2 = %2)")
                             .arg(PlotQuantityTexts::yName(q, 0), PlotQuantityTexts::yName(q, 1))
                             .toHtmlEscaped());
    }
    m_legend->setText(text);
    m_legend->setToolTip(PlotQuantityTexts::explanation(q));
}

bool DemoWindow::loadRinex(const QString& path, QString* error,
                           const QStringList& navigationFiles)
{
    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<MemoryObservationSource> source = RinexReader::readFile(path, error);
    if (!source)
        return false;
    const qint64 readMs = timer.elapsed();
    if (!load(std::move(source), error))
        return false;
    m_host->loadStats().readMs = readMs;
    m_observationPath = path;
    m_navigationFiles = navigationFiles;
    m_navigationLoad = m_host->attachNavigation(path, navigationFiles);
    updateStatus();
    return true;
}

bool DemoWindow::openNavigation(const QStringList& files)
{
    if (!m_host->document())
        return false;
    for (const QString& f : files) {
        if (!m_navigationFiles.contains(f))
            m_navigationFiles.append(f);
    }
    m_navigationLoad = m_host->attachNavigation(m_observationPath, m_navigationFiles);
    updateStatus();
    return true;
}

bool DemoWindow::load(std::unique_ptr<ObservationSource> source, QString* error)
{
    // Painted at once: loading keeps the event loop busy for a moment.
    if (source) {
        statusBar()->showMessage(tr("Loading %1...").arg(source->description()));
        statusBar()->repaint();
    }
    m_navigationLoad = NavigationLoadResult();
    m_observationPath.clear();
    m_navigationFiles.clear();
    const bool ok = m_host->load(std::move(source), error);
    statusBar()->clearMessage();
    if (ok) {
        m_readMessage.clear();
        onLoaded();
    }
    return ok;
}

void DemoWindow::onLoaded()
{
    LoadStats& stats = m_host->loadStats();
    MultipathView* shown = m_views[int(quantity())];
    if (shown->isVisible()) {
        QElapsedTimer paint;
        paint.start();
        shown->viewport()->repaint();
        stats.paintMs = paint.elapsed();
    }
    // The header's "Satellite" box is wider than the library's first column
    // in some fonts and languages; the bars stay lined up with the plot.
    if (QWidget* header = m_table->cellWidget(0, 0)) {
        m_table->setColumnWidth(
            0, std::max(m_table->columnWidth(0), header->sizeHint().width() + 4));
    }
    fillSingleChoice();
    QString preferred;
    qint64 most = -1;
    for (const QString& name : m_host->curveNames()) {
        const qint64 n = m_host->curve(name)->getAxisData(0)->getArea(nullptr, nullptr);
        if (n > most) {
            most = n;
            preferred = name;
        }
    }
    m_panel->setSatellites(m_host->curveNames(), preferred);
    setWindowTitle(tr("gnssplot demo - %1").arg(stats.description));
    buildLegend();
    m_panel->showApplyResult(QString());
    const DemoDocument* doc = m_host->document();
    m_hint->setText(DemoTexts::gestures(doc ? doc->endTime() - doc->startTime() : 0));
    onNavigation();
}

void DemoWindow::onNavigation()
{
    const QStringList without = m_host->withoutEphemeris();
    QString note = m_host->skyReason();
    if (note.isEmpty() && !without.isEmpty())
        note = DemoTexts::withoutEphemeris(without);
    m_skyPane->setNote(note);
    m_skyPane->markSatellite(QString(), 0.0, 0.0);
    m_quality->showQualities(*m_host);
    updateStatus();
}

void DemoWindow::showQuantity(PlotQuantity quantity)
{
    const int q = int(quantity);
    if (q < 0 || q >= PlotQuantityCount)
        return;
    m_host->setCurrentQuantity(quantity);
    m_plots->setCurrentIndex(q);
    m_quantityChoice->setCurrentIndex(q);
    m_quantityActions->actions().at(q)->setChecked(true);
    // The bars line up with the plot the user sees.
    m_table->alignBarsWith(m_views[q]);
    buildLegend();
    updateStatus();
}

void DemoWindow::fillSingleChoice()
{
    const QString current = m_host->singleCurve();
    m_singleChoice->clear();
    m_singleChoice->addItem(tr("All satellites"));
    m_singleChoice->addItems(m_host->showableCurveNames());
    m_singleChoice->setCurrentIndex(std::max(0, m_singleChoice->findText(current)));
}

void DemoWindow::chooseSingleCurve(const QString& name)
{
    if (!m_host->setSingleCurve(name) && m_host->isHidden(name)) {
        statusBar()->showMessage(tr("%1 is unchecked in the table: check it and Apply to "
                                    "show its curve.").arg(name),
                                 10000);
    }
    // The satellite's bars come into view with its curve.
    if (!name.isEmpty())
        m_host->showTableRow(name, false);
    fillSingleChoice();
}

void DemoWindow::onApplied()
{
    const ApplyResult& result = m_host->lastApply();
    fillSingleChoice();
    m_panel->setSatellites(m_host->curveNames(), m_panel->pictureSatellite());
    qint64 removed = 0;
    for (const ApplyResult::Satellite& s : result.republished)
        removed += s.samplesBefore - s.samplesAfter;
    m_panel->showApplyResult(DemoTexts::applied(int(result.republished.size()), removed,
                                                result.hiddenCurves, result.elapsedMs));
    m_quality->showQualities(*m_host);
    if (!result.errors.isEmpty())
        statusBar()->showMessage(result.errors.join(QStringLiteral("; ")), 10000);
}

void DemoWindow::updateStatus()
{
    const LoadStats& stats = m_host->loadStats();
    QStringList systems;
    for (auto it = stats.satellitesPerSystem.cbegin(); it != stats.satellitesPerSystem.cend();
         ++it)
        systems.append(QStringLiteral("%1 %2").arg(QLatin1Char(it.key())).arg(it.value()));
    QString text = tr("%1 (%2), %3 epochs; loaded in %4 ms")
                       .arg(DemoTexts::satellites(int(m_host->satelliteNames().size())),
                            systems.join(QStringLiteral(", ")))
                       .arg(stats.epochs)
                       .arg(stats.readMs + stats.loadMs);
    if (stats.paintMs >= 0)
        text += tr(" + first paint %1 ms").arg(stats.paintMs);
    if (!m_navigationLoad.files.isEmpty())
        text += QStringLiteral("; ") + DemoTexts::navigationFiles(int(m_navigationLoad.files.size()));
    m_statusLabel->setText(text);
    for (int q = 0; q < PlotQuantityCount; ++q)
        m_views[q]->setEmptyText(m_host->emptyReasonOf(PlotQuantity(q)));
    // A file cut short: what was kept is shown, and where it stopped is
    // said; so are the navigation's problems.
    QStringList lines;
    if (!m_readMessage.isEmpty())
        lines << m_readMessage;
    if (!m_host->readWarning().isEmpty())
        lines << m_host->readWarning();
    for (const QString& problem : m_navigationLoad.problems)
        lines << tr("Navigation: %1").arg(problem);
    showMessage(lines.join(QLatin1Char('\n')));
}

QString DemoWindow::message() const
{
    return m_messageLine->text();
}

void DemoWindow::showMessage(const QString& text)
{
    m_messageLine->setText(text);
    m_messageLine->setVisible(!text.isEmpty());
}

void DemoWindow::showReadFailure(const QString& error)
{
    const QString text = DemoTexts::cannotRead(error);
    m_readMessage = text;
    if (!m_host->document())
        m_views[0]->setEmptyText(text);
    showMessage(text);
}

void DemoWindow::onPlotHover(PlotQuantity quantity, const QString& curve, int yIndex,
                             double timeMs, double value)
{
    const QString unit = PlotQuantityTexts::unit(quantity);
    const QString when = gpstText(qint64(std::floor(timeMs)));
    QString what;
    if (quantity == PlotQuantity::Multipath) {
        // The box's name, and which observations make it.
        what = tr("F %1: %2").arg(yIndex + 1).arg(m_host->multipathSignals(curve, yIndex));
    } else if (quantity == PlotQuantity::SignalStrength) {
        what = tr("F %1: %2").arg(yIndex + 1).arg(m_host->signalOf(quantity, curve, yIndex));
    }
    const int decimals = quantity == PlotQuantity::Multipath        ? 3
                         : quantity == PlotQuantity::SignalStrength ? 1
                                                                    : 0;
    const QString name = curve == QLatin1String("all") ? tr("all") : curve;
    m_statusLabel->setText(tr("%1 %2 %3 GPST: %4 %5")
                               .arg(name, what, when)
                               .arg(value, 0, 'f', decimals)
                               .arg(unit)
                               .simplified());
    if (quantity == PlotQuantity::SatelliteCount)
        return;
    // The same satellite at the same time in the sky and in the table.
    sky()->setTimeCursor(timeMs);
    double azimuth = std::numeric_limits<double>::quiet_NaN();
    double elevation = azimuth;
    const DemoDocument* doc = m_host->document();
    if (const SkyTrack* track = doc ? doc->skyTracks().track(curve) : nullptr) {
        const auto at = std::lower_bound(track->time.begin(), track->time.end(), timeMs);
        if (at != track->time.end() && *at == timeMs) {
            const size_t i = size_t(at - track->time.begin());
            azimuth = track->azimuth[i];
            elevation = track->elevation[i];
        }
    }
    m_skyPane->markSatellite(curve, azimuth, elevation);
    m_host->showTableRow(curve, true);
}

void DemoWindow::onSkyHover(const QString& track, double timeMs, double azimuth,
                            double elevation, double value)
{
    QString text = tr("%1 %2 GPST: azimuth %3 deg, elevation %4 deg")
                       .arg(track, gpstText(qint64(std::floor(timeMs))))
                       .arg(azimuth, 0, 'f', 1)
                       .arg(elevation, 0, 'f', 1);
    if (std::isfinite(value)) {
        const bool strength = m_host->skyValue() == SkyValue::SignalStrengthA
                              || m_host->skyValue() == SkyValue::SignalStrengthB;
        text += QStringLiteral(", %1 %2")
                    .arg(value, 0, 'f', strength ? 1 : 3)
                    .arg(sky()->getValueUnit());
    }
    m_statusLabel->setText(text);
    m_host->showTableRow(track, true);
}

void DemoWindow::onHoverNone()
{
    sky()->clearTimeCursor();
    m_skyPane->markSatellite(QString(), 0.0, 0.0);
    m_host->showTableRow(QString(), false);
    updateStatus();
}

void DemoWindow::openRinexDialog()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open RINEX observation file"), QString(),
        tr("RINEX observations (*.rnx *.crx *.??o *.??O *.??d *.??D *.obs *.gz *.Z);;"
           "All files (*)"));
    if (path.isEmpty())
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QString error;
    const bool ok = loadRinex(path, &error);
    QApplication::restoreOverrideCursor();
    if (!ok) {
        showReadFailure(error);
        QMessageBox::warning(this, tr("Cannot open the file"), error);
    }
}

void DemoWindow::openNavigationDialog()
{
    if (!m_host->document() || m_observationPath.isEmpty()) {
        QMessageBox::information(this, tr("Open navigation"),
                                 tr("Open a RINEX observation file first: the satellites' "
                                    "positions are seen from its station."));
        return;
    }
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Open navigation files"), QFileInfo(m_observationPath).absolutePath(),
        tr("RINEX navigation (*.rnx *.??n *.??N *.??g *.??l *.??p *.nav *.gz *.Z);;"
           "All files (*)"));
    if (files.isEmpty())
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    openNavigation(files);
    QApplication::restoreOverrideCursor();
}

bool DemoWindow::exportCsv(ExportKind kind, const QString& path, QString* error)
{
    auto fail = [error](const QString& why) {
        if (error)
            *error = why;
        return false;
    };
    if (!m_host->document())
        return fail(tr("Nothing is loaded."));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return fail(tr("Cannot write %1.").arg(path));
    // What is plotted: the time window shown and, for curves, the curves
    // shown.
    const PlotQuantity q = quantity();
    double tMin = 0.0;
    double tMax = 0.0;
    m_views[int(q)]->getTimeWindow(tMin, tMax);
    bool ok = false;
    if (kind == ExportKind::Curves) {
        QStringList shown;
        CurveScene* curves = m_views[int(q)]->getCurveScene();
        for (const QString& name : m_host->curveNamesOf(q)) {
            if (curves->getCurveShowParam_visible(name))
                shown.append(name);
        }
        ok = m_host->writeCurvesCsv(&file, q, shown, {0, 1}, tMin, tMax);
    } else if (kind == ExportKind::SkyTracks) {
        ok = m_host->writeSkyTracksCsv(&file, m_host->satelliteNames(), tMin, tMax);
    } else {
        ok = m_host->writeEventsCsv(&file, m_host->satelliteNames(), tMin, tMax);
    }
    if (!ok)
        return fail(tr("Cannot write %1.").arg(path));
    return true;
}

void DemoWindow::exportDialog(ExportKind kind)
{
    if (!m_host->document())
        return;
    const QString suggested = kind == ExportKind::Curves      ? QStringLiteral("curves.csv")
                              : kind == ExportKind::SkyTracks ? QStringLiteral("sky.csv")
                                                              : QStringLiteral("marks.csv");
    const QString path = QFileDialog::getSaveFileName(this, tr("Export as CSV"), suggested,
                                                      tr("CSV (*.csv)"));
    if (path.isEmpty())
        return;
    QString error;
    if (!exportCsv(kind, path, &error))
        QMessageBox::warning(this, tr("Cannot save"), error);
}

void DemoWindow::loadSynthetic()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QString error;
    const bool ok = load(std::make_unique<SyntheticSource>(), &error);
    QApplication::restoreOverrideCursor();
    if (!ok)
        QMessageBox::warning(this, tr("Cannot load the synthetic day"), error);
}

QImage DemoWindow::curveViewPicture() const
{
    const DemoDocument* doc = m_host->document();
    if (!doc)
        return QImage();
    const PlotQuantity q = quantity();
    const QString title = tr("%1: %2 (%3), %4 GPST")
                              .arg(stationName(*doc), PlotQuantityTexts::title(q),
                                   PlotQuantityTexts::unit(q),
                                   gpstText(doc->startTime()).left(10));
    return viewPicture(m_views[int(q)], title);
}

void DemoWindow::saveCurvePicture()
{
    if (!m_host->document())
        return;
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save curve picture"), QStringLiteral("plot.png"), tr("PNG (*.png)"));
    if (path.isEmpty())
        return;
    if (!curveViewPicture().save(path, "PNG"))
        QMessageBox::warning(this, tr("Cannot save"), tr("Cannot write %1.").arg(path));
}

void DemoWindow::saveBarsPicture()
{
    if (!m_host->document())
        return;
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save table bars picture"), QStringLiteral("bars.png"), tr("PNG (*.png)"));
    if (path.isEmpty())
        return;
    if (!barsPicture(*m_host, 600, 50).save(path, "PNG"))
        QMessageBox::warning(this, tr("Cannot save"), tr("Cannot write %1.").arg(path));
}

} // namespace gnssdemo
