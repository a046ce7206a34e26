// SPDX-License-Identifier: MIT
#include "DemoWindow.h"

#include "Availability.h"
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
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace gnssdemo {

namespace {

// The epoch table's legend colours of the first four bands, for the legend
// of the bars picture, which the host draws itself.
const QColor kBandColors[BandCount] = {QColor(0, 34, 255), QColor(0, 128, 0),
                                       QColor(128, 0, 128), QColor(154, 205, 50)};

// Height of one satellite's bar pixmap: the table draws band i at
// y = 4 + 6 i, 4 pixels high.
constexpr int kBarPixmapHeight = 4 + 6 * BandCount + 2;

} // namespace

qint64 samplesInside(const Curve_DataSet_XY* dataSet, const QList<EpochInterval>& intervals)
{
    const AxisData* x = dataSet ? dataSet->getAxisData(0) : nullptr;
    qint64 count = 0;
    const double* xs = x ? x->getData(0, &count) : nullptr;
    if (!xs)
        return 0;
    qint64 inside = 0;
    for (qint64 i = 0; i < count; ++i) {
        const qint64 t = qint64(xs[i]);
        for (const EpochInterval& interval : intervals) {
            if (t >= interval.first && t < interval.first + interval.second) {
                ++inside;
                break;
            }
        }
    }
    return inside;
}

QList<EpochInterval> flattenMarks(const QList<stEpochDataSet>& marks)
{
    QList<EpochInterval> out;
    for (const stEpochDataSet& set : marks)
        out.append(set.ranges);
    return out;
}

DemoWindow::DemoWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("gnssplot demo"));

    // The curve view: a coordinate owned by the registry, curves added on
    // load. The view keeps the frame filling its viewport.
    m_view = new CurveGraphicsView;
    m_view->setMinimumSize(480, 260);
    // The frame always fills the viewport: there is nothing to scroll to.
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->getCurveScene()->setCoord(new Curve_Coord_XY, true);

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
    m_singleChoice->setToolTip(tr("Show one satellite's curve alone, highlighted"));
    curveBar->addWidget(m_singleChoice);
    curveLayout->addLayout(curveBar);
    curveLayout->addWidget(m_view, 1);

    // The table: bars start 80 pixels from its left edge, like the view's
    // data area, once the headers are hidden.
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

    auto* left = new QSplitter(Qt::Vertical);
    left->addWidget(curvePane);
    left->addWidget(m_table);
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
    auto* hint = new QLabel(tr("Wheel: zoom.  Drag over the bars: mark epochs."));
    hint->setToolTip(tr("F 1 / F 2 in the plot choose MP1 / MP2; right-click a mark to "
                        "remove it"));
    hint->setStyleSheet(QStringLiteral("color: #606060"));
    statusBar()->addPermanentWidget(hint);
    buildMenus();

    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection, this,
            &DemoWindow::onTableSelection);
    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged, this,
            &DemoWindow::onTableEraseMarks);
    connect(m_panel, &ReadbackPanel::undoRequested, m_table,
            &CurveGraphicsTableWidget_Epoch::undoEraseMarkAction);
    connect(m_panel, &ReadbackPanel::clearRequested, m_table,
            &CurveGraphicsTableWidget_Epoch::clearEraseMarkActions);
    connect(m_panel, &ReadbackPanel::applyRequested, this, &DemoWindow::applyMarks);
    connect(m_panel, &ReadbackPanel::saveCurvePictureRequested, this,
            &DemoWindow::saveCurvePicture);
    connect(m_panel, &ReadbackPanel::saveBarsPictureRequested, this,
            &DemoWindow::saveBarsPicture);
    connect(m_singleChoice, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        setSingleCurve(index <= 0 ? QString() : m_singleChoice->itemText(index));
    });
    m_panel->showMarks({}, 0);
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
    for (auto it = m_stats.satellitesPerSystem.cbegin(); it != m_stats.satellitesPerSystem.cend();
         ++it) {
        const QColor c = systemColor(it.key());
        auto* chip = new QLabel(QStringLiteral("<span style=\"color:%1\">&#9632;</span> %2")
                                    .arg(c.name(), systemName(it.key())));
        chip->setToolTip(tr("%1 satellites").arg(it.value()));
        m_legend->addWidget(chip);
    }
}

CurveScene* DemoWindow::registry() const
{
    return m_view->getCurveScene();
}

CurveGraphicsScene* DemoWindow::graphicsScene() const
{
    return qobject_cast<CurveGraphicsScene*>(m_view->scene());
}

bool DemoWindow::loadRinex(const QString& path, QString* error)
{
    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<MemoryObservationSource> source = RinexReader::readFile(path, error);
    if (!source)
        return false;
    const qint64 readMs = timer.elapsed();
    if (!load(std::move(source), error))
        return false;
    m_stats.readMs = readMs;
    updateStatus();
    return true;
}

bool DemoWindow::load(std::unique_ptr<ObservationSource> source, QString* error)
{
    if (!source) {
        if (error)
            *error = tr("No observations to load.");
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    // Painted at once: loading keeps the event loop busy for a moment.
    statusBar()->showMessage(tr("Loading %1...").arg(source->description()));
    statusBar()->repaint();
    CurveScene* curves = registry();
    if (!m_single.isEmpty())
        curves->setCurveSingleShow(m_single, false);
    m_single.clear();
    // The registry deletes the data sets it was given with bAutoDelete true.
    curves->removeAllCurves();
    m_curves.clear();
    m_satelliteIndex.clear();
    m_systems.clear();
    m_hidden.clear();
    m_selection.clear();
    m_marks.clear();
    m_lastApply = ApplyResult();
    m_table->clearAll();

    m_doc = std::make_unique<DemoDocument>(std::move(source));
    m_stats = LoadStats();
    m_stats.description = m_doc->source().description();
    m_stats.epochs = qint64(m_doc->epochs().size());
    m_stats.intervalMs = m_doc->intervalMs();

    QMap<QString, QList<stEpochDataSet>> epochData;
    QMap<QString, bool> enabled;
    QString publishError;
    const bool read = m_doc->forEachSatellite([&](PreparedSatellite& prepared) {
        const SatelliteObservations& sat = prepared.observations;
        m_satelliteIndex.insert(sat.name, prepared.index);
        m_systems.insert(sat.name, sat.system);
        ++m_stats.satellitesPerSystem[sat.system];
        for (int b = 0; b < BandCount; ++b)
            m_stats.bandObservations[b] += prepared.bandObservations[b];
        epochData.insert(sat.name, prepared.bands);
        enabled.insert(sat.name, true);
        MultipathInfo info;
        if (!publishSatellite(sat.name, sat, &info, &publishError))
            return false;
        m_stats.multipathSamples += info.samples;
        m_stats.arcs += info.arcs;
        return true;
    });
    if (!publishError.isEmpty() || !read) {
        statusBar()->clearMessage();
        if (error)
            *error = read ? publishError : tr("Out of memory while reading the observations.");
        return false;
    }
    statusBar()->clearMessage();
    m_stats.curves = m_curves.size();
    m_table->setResources(m_doc->startTime(), m_doc->endTime(), epochData, enabled, {}, {});
    m_epochData = epochData;

    // The items learn their size and the full data range here, once for all
    // curves.
    m_view->setCurvesPosToVerticalZero();
    m_stats.loadMs = timer.elapsed();
    if (m_view->isVisible()) {
        QElapsedTimer paint;
        paint.start();
        m_view->viewport()->repaint();
        m_stats.paintMs = paint.elapsed();
    }

    m_singleChoice->clear();
    m_singleChoice->addItem(tr("All satellites"));
    m_singleChoice->addItems(m_curves.keys());
    QString preferred;
    qint64 most = -1;
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it) {
        const qint64 n = it.value()->getAxisData(0)->getArea(nullptr, nullptr);
        if (n > most) {
            most = n;
            preferred = it.key();
        }
    }
    m_panel->setSatellites(m_curves.keys(), preferred);
    setWindowTitle(tr("gnssplot demo - %1").arg(m_stats.description));
    buildLegend();
    readBack();
    m_panel->showApplyResult(QString());
    updateStatus();
    emit loaded();
    return true;
}

bool DemoWindow::publishSatellite(const QString& name, const SatelliteObservations& sat,
                                  MultipathInfo* info, QString* error)
{
    Curve_DataSet_XY* dataSet = m_curves.value(name);
    const bool fresh = !dataSet;
    if (fresh)
        dataSet = new Curve_DataSet_XY(2);
    // Fills X, MP1 and MP2 in place through beginSetData / allocData /
    // getInSettingData / setInSettingBreaks / endSetData(true).
    if (!computeMultipath(sat, m_doc->epochs(), m_doc->intervalMs(), dataSet, info, error)) {
        if (fresh)
            delete dataSet;
        return false;
    }
    if (info->samples == 0) {
        // A curve without X values would keep the registry from forming its
        // data limits, so such a satellite has no curve at all.
        if (fresh) {
            delete dataSet;
        } else {
            m_curves.remove(name);
            registry()->removeCurve(name);
        }
        return true;
    }
    if (fresh) {
        const bool visible = m_single.isEmpty() ? !m_hidden.contains(name) : name == m_single;
        registry()->addCurve(name, dataSet, true, systemColor(sat.system), ECurveShowCap_Line,
                             visible);
        m_curves.insert(name, dataSet);
    }
    return true;
}

void DemoWindow::applyMarks()
{
    if (!m_doc)
        return;
    QElapsedTimer timer;
    timer.start();
    // Apply acts on what the table holds right now.
    QMap<QString, QList<stEpochDataSet>> marks;
    m_table->getStateliteEraseMarks(marks);
    QMap<QString, bool> selection;
    m_table->getStateliteEnabled(selection);

    ApplyResult result;
    CurveGraphicsScene* scene = graphicsScene();
    const QStringList before = m_curves.keys();
    // The items would rebuild on each of the three axes of every republished
    // curve; they rebuild once below instead.
    scene->switchOffCurvesListen();
    SatelliteObservations sat;
    for (auto it = m_satelliteIndex.cbegin(); it != m_satelliteIndex.cend(); ++it) {
        const QString& name = it.key();
        const QList<EpochInterval> wanted = flattenMarks(marks.value(name));
        if (!m_doc->setErased(name, wanted))
            continue;
        ApplyResult::Satellite entry;
        if (const Curve_DataSet_XY* old = m_curves.value(name))
            entry.samplesBefore = old->getAxisData(0)->getArea(nullptr, nullptr);
        m_doc->observations(it.value(), sat);
        MultipathInfo info;
        QString error;
        if (!publishSatellite(name, sat, &info, &error)) {
            statusBar()->showMessage(tr("%1: %2").arg(name, error), 10000);
            continue;
        }
        entry.samplesAfter = info.samples;
        entry.samplesInsideMarks = samplesInside(m_curves.value(name), wanted);
        result.republished.insert(name, entry);
    }
    scene->switchOnCurvesListen();

    // Visibility changes need listening items: they repaint on the registry's
    // signal.
    m_hidden.clear();
    for (auto it = selection.cbegin(); it != selection.cend(); ++it) {
        if (!it.value())
            m_hidden.insert(it.key());
    }
    updateVisibility();
    for (const QString& name : m_hidden)
        result.hiddenCurves += m_curves.contains(name) ? 1 : 0;
    // One rebuild of every item, with the new data and the new Y range.
    m_view->setCurvesPosToVerticalZero();
    result.elapsedMs = timer.elapsed();
    m_lastApply = result;

    if (m_curves.keys() != before) {
        const QString current = m_singleChoice->currentText();
        m_singleChoice->clear();
        m_singleChoice->addItem(tr("All satellites"));
        m_singleChoice->addItems(m_curves.keys());
        m_singleChoice->setCurrentIndex(std::max(0, m_singleChoice->findText(current)));
        m_panel->setSatellites(m_curves.keys(), m_panel->pictureSatellite());
    }
    qint64 removed = 0;
    for (const ApplyResult::Satellite& s : result.republished)
        removed += s.samplesBefore - s.samplesAfter;
    m_panel->showApplyResult(
        tr("Applied: %1 satellites recomputed (%2 curve samples fewer), %3 curves hidden, "
           "%4 ms.")
            .arg(result.republished.size())
            .arg(removed)
            .arg(result.hiddenCurves)
            .arg(result.elapsedMs));
    emit applied();
}

void DemoWindow::setSingleCurve(const QString& name)
{
    CurveScene* curves = registry();
    if (!m_single.isEmpty())
        curves->setCurveSingleShow(m_single, false);
    m_single = m_curves.contains(name) ? name : QString();
    updateVisibility();
    // The singled-out curve is drawn opaque in the colours of the F 1 / F 2
    // boxes.
    if (!m_single.isEmpty())
        curves->setCurveSingleShow(m_single, true);
    const int index = m_single.isEmpty() ? 0 : m_singleChoice->findText(m_single);
    m_singleChoice->setCurrentIndex(std::max(0, index));
}

void DemoWindow::updateVisibility()
{
    CurveScene* curves = registry();
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it) {
        const QString& name = it.key();
        const bool visible = m_single.isEmpty() ? !m_hidden.contains(name) : name == m_single;
        curves->setCurveShowParam_visible(name, visible);
    }
}

void DemoWindow::readBack()
{
    onTableSelection();
    onTableEraseMarks();
}

void DemoWindow::onTableSelection()
{
    m_selection.clear();
    m_table->getStateliteEnabled(m_selection);
    m_panel->showSelection(m_selection);
    emit selectionRead();
}

void DemoWindow::onTableEraseMarks()
{
    m_marks.clear();
    m_table->getStateliteEraseMarks(m_marks);
    m_panel->showMarks(m_marks, m_table->eraseMarkActionNum());
    emit marksRead();
}

void DemoWindow::updateStatus()
{
    QStringList systems;
    for (auto it = m_stats.satellitesPerSystem.cbegin();
         it != m_stats.satellitesPerSystem.cend(); ++it)
        systems.append(QStringLiteral("%1 %2").arg(QLatin1Char(it.key())).arg(it.value()));
    QString text = tr("%1 satellites (%2), %3 epochs; loaded in %4 ms")
                       .arg(m_satelliteIndex.size())
                       .arg(systems.join(QStringLiteral(", ")))
                       .arg(m_stats.epochs)
                       .arg(m_stats.readMs + m_stats.loadMs);
    if (m_stats.paintMs >= 0)
        text += tr(" + first paint %1 ms").arg(m_stats.paintMs);
    m_statusLabel->setText(text);
}

void DemoWindow::openRinexDialog()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open RINEX observation file"), QString(),
        tr("RINEX observations (*.rnx *.rnx.gz *.??o *.??O *.??o.gz *.??O.gz *.obs *.gz);;"
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

QPixmap DemoWindow::curvePicture(const QString& name, const QSize& size) const
{
    Curve_DataSet_XY* dataSet = m_curves.value(name);
    if (!dataSet || !m_doc || m_doc->epochs().empty())
        return QPixmap();
    // The picture gets a coordinate of its own: the whole day, and a Y range
    // symmetric about zero that holds this satellite's MP1.
    double yMin = 0.0;
    double yMax = 0.0;
    double h = 1.0;
    if (dataSet->getAxisData(1)->getDataLimits(yMin, yMax) && yMin <= yMax)
        h = std::max(std::abs(yMin), std::abs(yMax)) * 1.1;
    if (!(h > 0.0) || !std::isfinite(h))
        h = 1.0;
    // From the first to the last epoch, so that the date caption (the date
    // of the right end) is the day shown.
    Curve_Coord_XY coord;
    const std::vector<qint64>& epochs = m_doc->epochs();
    if (!coord.setArea(double(epochs.front()), double(epochs.back()), -h, h))
        coord.setArea(double(m_doc->startTime()), double(m_doc->endTime()), -h, h);
    QPixmap picture(size);
    CurveGraphicsScene::DrawXYCurveToPixmap(&coord, dataSet,
                                            systemColor(m_systems.value(name)), &picture);
    return picture;
}

QImage DemoWindow::barsPicture(int barWidth, int rowsPerColumn) const
{
    const QStringList names = m_epochData.keys();
    const int perColumn = std::max(1, rowsPerColumn);
    const int columns = std::max(1, (int(names.size()) + perColumn - 1) / perColumn);
    const int rows = std::min(int(names.size()), perColumn);
    const int nameWidth = 40;
    const int columnWidth = nameWidth + barWidth + 20;
    const int header = 44;
    QImage image(12 + columns * columnWidth, header + rows * kBarPixmapHeight + 8,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    if (!m_doc)
        return image;

    // One pixmap per satellite, painted by the library in one call.
    std::vector<QPixmap> storage(size_t(names.size()), QPixmap(barWidth, kBarPixmapHeight));
    QMap<QString, QPixmap*> pixmaps;
    for (int k = 0; k < names.size(); ++k) {
        storage[size_t(k)].fill(Qt::white);
        pixmaps.insert(names[k], &storage[size_t(k)]);
    }
    // Satellites unchecked in the table are painted grey.
    QMap<QString, bool> enabled;
    for (const QString& name : names)
        enabled.insert(name, m_selection.value(name, true));
    CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(m_doc->startTime(), m_doc->endTime(),
                                                           m_epochData, enabled, pixmaps);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont bold = painter.font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(Qt::black);
    painter.drawText(QRect(12, 4, image.width() - 24, 18), Qt::AlignLeft | Qt::AlignVCenter,
                     tr("Epoch availability per band, %1 to %2 GPST")
                         .arg(gpstText(m_doc->startTime()), gpstText(m_doc->endTime())));
    painter.setFont(QFont());
    int x = 12;
    for (int b = 0; b < BandCount; ++b) {
        painter.fillRect(QRect(x, 29, 30, 4), kBandColors[b]);
        const QString text = bandName(b);
        const int w = painter.fontMetrics().horizontalAdvance(text);
        painter.drawText(QRect(x + 36, 22, w + 2, 18), Qt::AlignLeft | Qt::AlignVCenter, text);
        x += 36 + w + 18;
    }
    for (int k = 0; k < names.size(); ++k) {
        const int left = 12 + (k / perColumn) * columnWidth;
        const int top = header + (k % perColumn) * kBarPixmapHeight;
        painter.setPen(Qt::black);
        painter.drawText(QRect(left, top, nameWidth - 4, kBarPixmapHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, names[k]);
        painter.drawPixmap(left + nameWidth, top, storage[size_t(k)]);
        painter.setPen(QColor(225, 225, 225));
        painter.drawLine(left + nameWidth, top + kBarPixmapHeight - 1,
                         left + nameWidth + barWidth, top + kBarPixmapHeight - 1);
    }
    return image;
}

void DemoWindow::saveCurvePicture(const QString& satellite)
{
    if (!m_curves.contains(satellite))
        return;
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save curve picture"), satellite + QStringLiteral(".png"), tr("PNG (*.png)"));
    if (path.isEmpty())
        return;
    if (!curvePicture(satellite, QSize(800, 540)).save(path, "PNG"))
        QMessageBox::warning(this, tr("Cannot save"), tr("Cannot write %1.").arg(path));
}

void DemoWindow::saveBarsPicture()
{
    if (!m_doc)
        return;
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save table bars picture"), QStringLiteral("bars.png"), tr("PNG (*.png)"));
    if (path.isEmpty())
        return;
    if (!barsPicture(600, 50).save(path, "PNG"))
        QMessageBox::warning(this, tr("Cannot save"), tr("Cannot write %1.").arg(path));
}

} // namespace gnssdemo
