// SPDX-License-Identifier: MIT
#include "DemoWindow.h"

#include "DemoTexts.h"
#include "MultipathView.h"
#include "Pictures.h"
#include "ReadbackPanel.h"
#include "RinexReader.h"
#include "SyntheticSource.h"

#include <gnssplot.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QDateTime>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace gnssdemo {

DemoWindow::DemoWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("gnssplot demo"));

    // The curve view keeps its frame filling the viewport: there is nothing
    // to scroll to.
    m_view = new MultipathView;
    m_view->setMinimumSize(480, 260);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setFrameShape(QFrame::NoFrame);

    auto* curvePane = new QWidget;
    auto* curveLayout = new QVBoxLayout(curvePane);
    curveLayout->setContentsMargins(0, 0, 0, 0);
    curveLayout->setSpacing(2);
    auto* curveBar = new QHBoxLayout;
    curveBar->setContentsMargins(6, 2, 6, 0);
    auto* caption = new QLabel(tr("<b>Code multipath</b> (m)"));
    caption->setToolTip(tr("Metres, each arc's mean removed; arcs end at cycle slips and gaps"));
    curveBar->addWidget(caption);
    m_legend = new QHBoxLayout;
    m_legend->setSpacing(10);
    curveBar->addSpacing(12);
    curveBar->addLayout(m_legend);
    curveBar->addStretch(1);
    curveBar->addWidget(new QLabel(tr("Show:")));
    m_singleChoice = new QComboBox;
    m_singleChoice->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_singleChoice->setToolTip(tr("Show one satellite's curve alone, highlighted; satellites "
                                  "unchecked at the last Apply are not offered"));
    curveBar->addWidget(m_singleChoice);
    curveLayout->addLayout(curveBar);
    // What the last file could not give: where a file cut short stopped, or
    // why a file could not be read. Wrapped, so that it is read in full.
    m_messageLine = new QLabel;
    m_messageLine->setWordWrap(true);
    m_messageLine->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_messageLine->setStyleSheet(QStringLiteral(
        "background: #fff4d6; color: #5a4500; padding: 3px 6px;"));
    m_messageLine->hide();
    curveLayout->addWidget(m_messageLine);
    curveLayout->addWidget(m_view, 1);

    // The table: bars start at the left edge of its second column, like the
    // view's data area, once the headers are hidden.
    m_table = new CurveGraphicsTableWidget_Epoch;
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->hide();
    m_table->setMinimumHeight(160);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Cells are not for selecting: the mouse marks epochs.
    m_table->setSelectionMode(QAbstractItemView::NoSelection);

    m_panel = new ReadbackPanel;
    m_panel->setFixedWidth(320);
    m_host = new DemoHost(m_view, m_table, this);

    auto* left = new QSplitter(Qt::Vertical);
    left->addWidget(curvePane);
    auto* tablePane = new QWidget;
    auto* tableRow = new QHBoxLayout(tablePane);
    tableRow->setContentsMargins(0, 0, 0, 0);
    tableRow->addWidget(m_table);
    left->addWidget(tablePane);
    left->setStretchFactor(0, 3);
    left->setStretchFactor(1, 2);
    left->setSizes({440, 260});
    auto* central = new QWidget;
    auto* columns = new QHBoxLayout(central);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(left, 1);
    columns->addWidget(m_panel);
    setCentralWidget(central);

    m_statusLabel = new QLabel;
    statusBar()->addWidget(m_statusLabel, 1);
    auto* hint = new QLabel(tr("Wheel: zoom Y.  Ctrl+wheel: zoom time.  Drag the plot: pan.  "
                               "Double-click: whole day.  Drag over the bars: mark epochs."));
    hint->setToolTip(tr("F 1 / F 2 in the plot choose MP1 / MP2; right-click a mark to "
                        "remove it"));
    hint->setStyleSheet(QStringLiteral("color: #606060"));
    statusBar()->addPermanentWidget(hint);
    buildMenus();

    // The hover read-out names the sample under the cursor, as
    // "G05 MP1 2024/07/27 10:15:30 GPST 0.412 m".
    connect(m_view, &CurveGraphicsView::sgHover, this,
            [this](const QString& curve, int yIndex, double timeMs, double value) {
                const QString when = QDateTime::fromMSecsSinceEpoch(qint64(timeMs), Qt::UTC)
                                         .toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
                m_statusLabel->setText(QStringLiteral("%1 MP%2 %3 GPST %4 m")
                                           .arg(curve)
                                           .arg(yIndex + 1)
                                           .arg(when)
                                           .arg(value, 0, 'f', 3));
            });
    connect(m_view, &CurveGraphicsView::sgHoverNone, this, &DemoWindow::updateStatus);

    connect(m_host, &DemoHost::selectionRead, this,
            [this] { m_panel->showSelection(m_host->readSelection()); });
    connect(m_host, &DemoHost::marksRead, this, [this] {
        m_panel->showMarks(m_host->readMarks(), m_table->eraseMarkActionNum());
    });
    connect(m_host, &DemoHost::applied, this, &DemoWindow::onApplied);
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
    m_table->alignBarsWith(m_view);
    resize(1280, 800);
}

DemoWindow::~DemoWindow() = default;

void DemoWindow::buildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    // Each action is made, then connected: the one addAction() overload that
    // connects as well has its arguments in a different order in Qt 6.
    QAction* open = file->addAction(tr("&Open RINEX file..."));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &DemoWindow::openRinexDialog);
    QAction* synthetic = file->addAction(tr("&Synthetic day"));
    connect(synthetic, &QAction::triggered, this, &DemoWindow::loadSynthetic);
    file->addSeparator();
    QAction* saveCurve = file->addAction(tr("Save &curve picture..."));
    connect(saveCurve, &QAction::triggered, this,
            [this] { saveCurvePicture(m_panel->pictureSatellite()); });
    QAction* saveBars = file->addAction(tr("Save table &bars picture..."));
    connect(saveBars, &QAction::triggered, this, &DemoWindow::saveBarsPicture);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &QWidget::close);

    QToolBar* tools = addToolBar(tr("Main"));
    tools->setMovable(false);
    tools->addAction(open);
    tools->addAction(synthetic);
    tools->addSeparator();
    tools->addAction(saveCurve);
    tools->addAction(saveBars);
}

void DemoWindow::buildLegend()
{
    while (QLayoutItem* item = m_legend->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const QMap<char, int>& systems = m_host->loadStats().satellitesPerSystem;
    for (auto it = systems.cbegin(); it != systems.cend(); ++it) {
        const QColor c = systemColor(it.key());
        auto* chip = new QLabel(QStringLiteral("<span style=\"color:%1\">&#9632;</span> %2")
                                    .arg(c.name(), systemName(it.key())));
        chip->setToolTip(DemoTexts::satellites(it.value()));
        m_legend->addWidget(chip);
    }
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
    m_navigationLoad = attachNavigation(*m_host->document(), path, navigationFiles);
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
    const bool ok = m_host->load(std::move(source), error);
    statusBar()->clearMessage();
    if (ok)
        onLoaded();
    return ok;
}

void DemoWindow::onLoaded()
{
    LoadStats& stats = m_host->loadStats();
    if (m_view->isVisible()) {
        QElapsedTimer paint;
        paint.start();
        m_view->viewport()->repaint();
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
    const QString empty = m_host->emptyReason();
    if (!empty.isEmpty())
        text += QStringLiteral(". ") + empty;
    m_statusLabel->setText(text);
    m_statusLabel->setToolTip(text);
    // A file cut short: what was kept is shown, and where it stopped is said.
    showMessage(m_host->readWarning());
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
    if (!m_host->document())
        m_view->setEmptyText(text);
    showMessage(text);
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
    if (!ok)
        QMessageBox::warning(this, tr("Cannot open the file"), error);
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

void DemoWindow::saveCurvePicture(const QString& satellite)
{
    if (!m_host->curve(satellite)) {
        const QString reason = m_host->emptyReason();
        if (!reason.isEmpty())
            QMessageBox::information(this, tr("No curve picture"), reason);
        return;
    }
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save curve picture"), satellite + QStringLiteral(".png"), tr("PNG (*.png)"));
    if (path.isEmpty())
        return;
    if (!curvePicture(*m_host, satellite, QSize(800, 540)).save(path, "PNG"))
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
