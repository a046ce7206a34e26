// SPDX-License-Identifier: MIT
// The host's views beside the multipath plot: signal strength, satellites
// per epoch and the sky plot, and the table rows they point at.
#include "DemoHost.h"

#include "CsvExport.h"
#include "DemoTexts.h"
#include "MultipathView.h"

#include <gnssplot.h>

#include <QCheckBox>
#include <QIODevice>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace gnssdemo {

namespace {

// The key of the curve of all systems together among the satellite counts.
const QString kAllSystems = QStringLiteral("all");

// Publishes \a count values into \a axis in one setting phase; an empty or
// refused block leaves the axis empty.
bool publishAxis(AxisData* axis, const double* values, qint64 count)
{
    axis->beginSetData();
    if (count > 0 && values) {
        if (!axis->allocData(count, nullptr)) {
            axis->endSetData(false);
            return false;
        }
        std::copy(values, values + count, axis->getInSettingData(0, nullptr));
    }
    axis->endSetData(true);
    return true;
}

bool writeText(QIODevice* device, const QByteArray& text)
{
    return device && device->write(text) == text.size();
}

} // namespace

bool DemoHost::setPlotView(PlotQuantity quantity, MultipathView* view)
{
    const int q = int(quantity);
    if (!view || q <= 0 || q >= PlotQuantityCount || m_views[q])
        return false;
    setUpView(quantity, view);
    return true;
}

void DemoHost::setUpView(PlotQuantity quantity, MultipathView* view)
{
    m_views[int(quantity)] = view;
    view->getCurveScene()->setCoord(new Curve_Coord_XY, true);
    view->setHoverReadOutEnabled(true);
    // The satellite the read-out names gets a ring and comes to the front.
    view->setPickedSampleMarkerShown(true);
    // Ticks on round times of day, as an analyst reads them.
    view->setRoundTimeTicks(true);
    // Multipath keeps the plot's own (translated) metres.
    if (quantity != PlotQuantity::Multipath)
        view->setValueUnit(PlotQuantityTexts::unit(quantity));
    linkTimeWindow(view);
}

void DemoHost::linkTimeWindow(MultipathView* view)
{
    // The table is the hub: every view follows it and it follows every
    // view, so a step in any of them reaches all. Each side signals only a
    // real change, so the echo stops at once.
    view->setTimeNavigationEnabled(true);
    connect(view, &CurveGraphicsView::sgTimeWindowChanged, m_table,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, view,
            &CurveGraphicsView::setTimeWindow);
}

MultipathView* DemoHost::plotView(PlotQuantity quantity) const
{
    const int q = int(quantity);
    return q >= 0 && q < PlotQuantityCount ? m_views[q] : nullptr;
}

void DemoHost::setCurrentQuantity(PlotQuantity quantity)
{
    const int q = int(quantity);
    if (q < 0 || q >= PlotQuantityCount || !m_views[q])
        return;
    m_current = quantity;
    publishQuantity(quantity);
}

Curve_DataSet_XY* DemoHost::curveOf(PlotQuantity quantity, const QString& name) const
{
    switch (quantity) {
    case PlotQuantity::Multipath: return m_curves.value(name);
    case PlotQuantity::SignalStrength: return m_strength.value(name);
    case PlotQuantity::SatelliteCount: return m_counts.value(name);
    }
    return nullptr;
}

QStringList DemoHost::curveNamesOf(PlotQuantity quantity) const
{
    switch (quantity) {
    case PlotQuantity::Multipath: return m_curves.keys();
    case PlotQuantity::SignalStrength: return m_strength.keys();
    case PlotQuantity::SatelliteCount: return m_counts.keys();
    }
    return {};
}

QString DemoHost::signalOf(PlotQuantity quantity, const QString& name, int yIndex) const
{
    if (!curveOf(quantity, name) || yIndex < 0 || yIndex > 1)
        return QString();
    if (quantity == PlotQuantity::Multipath)
        return QStringLiteral("MP%1").arg(yIndex + 1);
    if (quantity == PlotQuantity::SignalStrength) {
        const SignalStrengthInfo info = m_strengthInfo.value(name);
        return yIndex == 0 ? info.typeA : info.typeB;
    }
    return yIndex == 0 ? QStringLiteral("count") : QString();
}

QString DemoHost::emptyReasonOf(PlotQuantity quantity) const
{
    if (quantity == PlotQuantity::Multipath || !m_doc)
        return emptyReason();
    if (m_doc->epochs().empty())
        return DemoTexts::noEpochs();
    if (quantity == PlotQuantity::SignalStrength && m_published[int(quantity)]
        && m_strength.isEmpty())
        return DemoTexts::noSignalStrength();
    return QString();
}

void DemoHost::resetViews()
{
    const double start = m_doc ? double(m_doc->startTime()) : 0.0;
    const double end = m_doc ? double(m_doc->endTime()) : 0.0;
    for (MultipathView* view : m_views) {
        if (!view)
            continue;
        view->setTimeSpan(start, end);
        view->resetTimeWindow();
    }
    if (m_sky) {
        m_sky->resetTimeWindow();
        m_sky->clearTimeCursor();
    }
    // The table's range runs to the end of the last epoch (midnight for a
    // daily file), the plot's to the last sample: start the table on the
    // plot's window, so that its bars line up with the curves and its axis
    // names the plot's day.
    double tMin = 0.0;
    double tMax = 0.0;
    if (m_view && m_doc) {
        m_view->getTimeWindow(tMin, tMax);
        if (tMin < tMax)
            m_table->setTimeWindow(tMin, tMax);
    }
}

void DemoHost::publishQuantity(PlotQuantity quantity)
{
    const int q = int(quantity);
    if (!m_doc || !m_views[q] || m_published[q])
        return;
    m_published[q] = true;
    if (quantity == PlotQuantity::SignalStrength)
        publishSignalStrength();
    else if (quantity == PlotQuantity::SatelliteCount)
        publishSatelliteCounts();
    // A view filled while another was shown takes up the window they share.
    double tMin = 0.0;
    double tMax = 0.0;
    m_view->getTimeWindow(tMin, tMax);
    m_views[q]->resetZoom();
    fitQuantityRange(quantity, false);
    if (tMin < tMax)
        m_views[q]->setTimeWindow(tMin, tMax);
    m_views[q]->setEmptyText(emptyReasonOf(quantity));
}

void DemoHost::publishSignalStrength()
{
    MultipathView* view = m_views[int(PlotQuantity::SignalStrength)];
    CurveScene* curves = view->getCurveScene();
    auto* scene = qobject_cast<CurveGraphicsScene*>(view->scene());
    // Data sets already registered are filled in place; the items rebuild
    // once at the end instead of on each axis.
    if (scene)
        scene->switchOffCurvesListen();
    SatelliteObservations sat;
    for (auto it = m_satelliteIndex.cbegin(); it != m_satelliteIndex.cend(); ++it) {
        const QString& name = it.key();
        if (!m_doc->observations(it.value(), sat))
            continue;
        Curve_DataSet_XY* dataSet = m_strength.value(name);
        const bool fresh = !dataSet;
        if (fresh)
            dataSet = new Curve_DataSet_XY(2);
        SignalStrengthInfo info;
        const bool ok = computeSignalStrength(sat, m_doc->epochs(), m_doc->intervalMs(),
                                              dataSet, &info, nullptr);
        if (!ok || info.samples == 0) {
            if (fresh) {
                delete dataSet;
            } else {
                curves->removeCurve(name);
                m_strength.remove(name);
                m_strengthInfo.remove(name);
            }
            continue;
        }
        m_strengthInfo.insert(name, info);
        if (fresh) {
            const bool visible = m_single.isEmpty() ? !m_hidden.contains(name)
                                                    : name == m_single;
            curves->addCurve(name, dataSet, true, systemColor(sat.system), ECurveShowCap_Line,
                             visible);
            m_strength.insert(name, dataSet);
        }
    }
    if (scene)
        scene->switchOnCurvesListen();
    if (!m_single.isEmpty() && m_strength.contains(m_single))
        curves->setCurveSingleShow(m_single, true);
}

void DemoHost::publishSatelliteCounts()
{
    MultipathView* view = m_views[int(PlotQuantity::SatelliteCount)];
    CurveScene* curves = view->getCurveScene();
    curves->removeAllCurves();
    m_counts.clear();
    const SatelliteCounts counts = satelliteCounts();
    const qint64 n = qint64(counts.x.size());
    if (n == 0)
        return;
    auto add = [&](const QString& name, const std::vector<double>& values, const QColor& c) {
        if (qint64(values.size()) != n)
            return;
        auto* dataSet = new Curve_DataSet_XY(1);
        if (!publishAxis(dataSet->getAxisData(0), counts.x.data(), n)
            || !publishAxis(dataSet->getAxisData(1), values.data(), n)) {
            delete dataSet;
            return;
        }
        curves->addCurve(name, dataSet, true, c, ECurveShowCap_Line, true);
        m_counts.insert(name, dataSet);
    };
    for (const auto& entry : counts.perSystem)
        add(systemName(entry.first), entry.second, systemColor(entry.first));
    add(kAllSystems, counts.total, QColor(40, 40, 40));
}

void DemoHost::fitQuantityRange(PlotQuantity quantity, bool bWindowOnly)
{
    MultipathView* view = m_views[int(quantity)];
    if (!view)
        return;
    if (quantity == PlotQuantity::Multipath) {
        if (bWindowOnly)
            fitYToData();
        else
            fitYRange();
        return;
    }
    QList<const Curve_DataSet_XY*> shown;
    const QMap<QString, Curve_DataSet_XY*>& sets =
        quantity == PlotQuantity::SignalStrength ? m_strength : m_counts;
    for (auto it = sets.cbegin(); it != sets.cend(); ++it) {
        if (view->getCurveScene()->getCurveShowParam_visible(it.key()))
            shown.append(it.value());
    }
    double tMin = -std::numeric_limits<double>::infinity();
    double tMax = std::numeric_limits<double>::infinity();
    if (bWindowOnly)
        view->getTimeWindow(tMin, tMax);
    double lo = 0.0;
    double hi = 0.0;
    if (!yRangeInWindow(shown, {1, 2}, tMin, tMax, &lo, &hi))
        return;
    if (bWindowOnly)
        view->resetZoom();
    if (quantity == PlotQuantity::SatelliteCount)
        view->setBaseRange(0.0, hi + std::max(1.0, hi * 0.08));
    else
        view->setBaseRange(lo - 2.0, hi + 2.0);
}

bool DemoHost::fitCurrentY()
{
    MultipathView* view = m_views[int(m_current)];
    if (!view)
        return false;
    if (m_current == PlotQuantity::Multipath)
        return fitYToData();
    const double before = view->baseHalfRange();
    const double centre = view->baseCentre();
    const double zoom = view->zoomFactor();
    fitQuantityRange(m_current, true);
    return view->baseHalfRange() != before || view->baseCentre() != centre
           || view->zoomFactor() != zoom;
}

bool DemoHost::setSkyView(SkyGraphicsView* sky)
{
    if (!sky || m_sky)
        return false;
    m_sky = sky;
    // The sky plot has no gestures of its own: it follows the table's
    // window and tells it when a host sets its own.
    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgTimeWindowChanged, m_sky,
            &SkyGraphicsView::setTimeWindow);
    connect(m_sky, &SkyGraphicsView::sgTimeWindowChanged, m_table,
            &CurveGraphicsTableWidget_Epoch::setTimeWindow);
    m_sky->setHoverReadOutEnabled(true);
    m_sky->setElevationMask(DefaultElevationMask);
    publishSky();
    return true;
}

NavigationLoadResult DemoHost::attachNavigation(const QString& observationPath,
                                                const QStringList& files)
{
    if (!m_doc)
        return NavigationLoadResult();
    const NavigationLoadResult result =
        gnssdemo::attachNavigation(*m_doc, observationPath, files);
    // Completeness counts the epochs above the mask from the sky tracks;
    // the document outlives every call of the lookup, and a document
    // loaded later has no tracks until it gets navigation of its own.
    setElevationLookup([this](const QString& satellite) -> const std::vector<double>* {
        const SkyTrack* track = m_doc ? m_doc->skyTracks().track(satellite) : nullptr;
        return track ? &track->elevation : nullptr;
    });
    publishSky();
    emit navigationChanged();
    return result;
}

QStringList DemoHost::withoutEphemeris() const
{
    return m_doc && m_doc->navigation() ? m_doc->skyTracks().withoutEphemeris() : QStringList();
}

QString DemoHost::skyReason() const
{
    if (!m_doc)
        return QString();
    if (!m_doc->navigation())
        return DemoTexts::noNavigation();
    if (!m_doc->skyTracks().isValid())
        return DemoTexts::noPosition();
    if (m_tracks.isEmpty())
        return DemoTexts::noEphemeris(int(m_satelliteIndex.size()));
    return QString();
}

void DemoHost::publishSky()
{
    if (!m_sky)
        return;
    CurveScene* tracks = m_sky->getTrackScene();
    tracks->removeAllCurves();
    m_tracks.clear();
    if (!m_doc || !m_doc->skyTracks().isValid())
        return;
    // The satellites of the file, where their ephemerides put them: the sky
    // of what was observed.
    for (const SkyTrack& track : m_doc->skyTracks().tracks()) {
        if (!track.observed || track.positioned == 0 || !m_satelliteIndex.contains(track.name))
            continue;
        const qint64 n = qint64(track.time.size());
        if (qint64(track.azimuth.size()) != n || qint64(track.elevation.size()) != n)
            continue;
        auto* dataSet = new Curve_DataSet_XY(3);
        if (!publishAxis(dataSet->getAxisData(SkyGraphicsView::TrackAxis_Time),
                         track.time.data(), n)
            || !publishAxis(dataSet->getAxisData(SkyGraphicsView::TrackAxis_Azimuth),
                            track.azimuth.data(), n)
            || !publishAxis(dataSet->getAxisData(SkyGraphicsView::TrackAxis_Elevation),
                            track.elevation.data(), n)) {
            delete dataSet;
            continue;
        }
        tracks->addCurve(track.name, dataSet, true, systemColor(track.system),
                         ECurveShowCap_Line, !m_hidden.contains(track.name));
        m_tracks.insert(track.name, dataSet);
    }
    fillSkyValues();
}

void DemoHost::setSkyValue(SkyValue value)
{
    if (value == m_skyValue)
        return;
    m_skyValue = value;
    fillSkyValues();
}

void DemoHost::fillSkyValues()
{
    if (!m_sky || !m_doc)
        return;
    const std::vector<qint64>& epochs = m_doc->epochs();
    const qint64 n = qint64(epochs.size());
    const bool strength = m_skyValue == SkyValue::SignalStrengthA
                          || m_skyValue == SkyValue::SignalStrengthB;
    const bool multipath = m_skyValue == SkyValue::Multipath1
                           || m_skyValue == SkyValue::Multipath2;
    SatelliteObservations sat;
    std::vector<double> values;
    for (auto it = m_tracks.cbegin(); it != m_tracks.cend(); ++it) {
        values.assign(size_t(n), std::numeric_limits<double>::quiet_NaN());
        if (strength && m_doc->observations(m_satelliteIndex.value(it.key()), sat)) {
            int bandA = -1;
            int bandB = -1;
            signalStrengthBands(sat, &bandA, &bandB);
            const int band = m_skyValue == SkyValue::SignalStrengthA ? bandA : bandB;
            if (band >= 0 && qint64(sat.bands[band].snr.size()) == n)
                values = sat.bands[band].snr;
        } else if (multipath) {
            if (const Curve_DataSet_XY* curve = m_curves.value(it.key())) {
                qint64 count = 0;
                qint64 m = 0;
                const double* x = curve->getAxisData(0)->getData(0, &count);
                const int key = m_skyValue == SkyValue::Multipath1 ? 1 : 2;
                const double* y = curve->getAxisData(key)->getData(0, &m);
                if (m == count)
                    values = valuesAtEpochs(epochs, x, y, count, true);
            }
        }
        // The value axis (key 3) follows the time axis sample for sample.
        AxisData* axis = it.value()->getAxisData(SkyGraphicsView::TrackAxis_FirstValue);
        if (m_skyValue == SkyValue::SystemColour)
            publishAxis(axis, nullptr, 0);
        else
            publishAxis(axis, values.data(), n);
    }
    const bool byValue = m_skyValue != SkyValue::SystemColour;
    m_sky->setValueAxis(byValue ? 0 : -1);
    m_sky->setTracksColoredByValue(byValue);
    m_sky->setValueUnit(strength    ? PlotQuantityTexts::unit(PlotQuantity::SignalStrength)
                        : multipath ? PlotQuantityTexts::unit(PlotQuantity::Multipath)
                                    : QString());
    // Signal strength reads best on a fixed scale an analyst knows; the
    // multipath scale ends where the plot's fitted range does.
    if (strength) {
        m_sky->setColorRange(25.0, 55.0);
    } else if (multipath) {
        const double h = m_view->baseHalfRange();
        if (!(h > 0.0) || !m_sky->setColorRange(0.0, h))
            m_sky->resetColorRange();
    }
}

int DemoHost::tableRow(const QString& name) const
{
    if (name.isEmpty())
        return -1;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QTableWidgetItem* bar = m_table->item(row, 1);
        if (bar && bar->data(Qt::UserRole).toString() == name)
            return row;
    }
    return -1;
}

void DemoHost::showTableRow(const QString& name, bool bHighlight)
{
    const int row = tableRow(name);
    if (row >= 0)
        m_table->scrollToItem(m_table->item(row, 1), bHighlight
                                                         ? QAbstractItemView::EnsureVisible
                                                         : QAbstractItemView::PositionAtCenter);
    const QString previous = m_highlighted;
    m_highlighted = bHighlight && row >= 0 ? name : QString();
    if (previous == m_highlighted)
        return;
    // The name's check box is the table's own widget; only its background
    // is touched, and only while it is marked.
    if (auto* box = qobject_cast<QCheckBox*>(m_table->cellWidget(tableRow(previous), 0)))
        box->setStyleSheet(QString());
    if (auto* box = qobject_cast<QCheckBox*>(m_table->cellWidget(row, 0)))
        box->setStyleSheet(bHighlight ? QStringLiteral("background: #ffe08a;") : QString());
}

void DemoHost::greyUncheckedRows()
{
    if (!m_doc)
        return;
    QSet<QString> unchecked;
    for (auto it = m_selection.cbegin(); it != m_selection.cend(); ++it) {
        if (!it.value())
            unchecked.insert(it.key());
    }
    if (unchecked == m_greyed)
        return;
    // The table greys the bars of satellites it is given as not enabled.
    // Handing it the same bars and marks again with the new state greys the
    // unchecked rows at once; the marks come back as actions of their own.
    QMap<QString, QList<stEpochDataSet>> marks;
    m_table->getStateliteEraseMarks(marks);
    QMap<QString, QList<QPair<qint64, qint64>>> intervals;
    for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
        const QList<EpochInterval> flat = flattenMarks(it.value());
        if (!flat.isEmpty())
            intervals.insert(it.key(), flat);
    }
    QMap<QString, bool> enabled;
    for (auto it = m_epochData.cbegin(); it != m_epochData.cend(); ++it)
        enabled.insert(it.key(), !unchecked.contains(it.key()));
    const int scroll = m_table->verticalScrollBar()->value();
    const QString highlighted = m_highlighted;
    m_greyed = unchecked;
    m_table->setResources(m_doc->startTime(), m_doc->endTime(), m_epochData, enabled, {},
                          intervals);
    m_table->verticalScrollBar()->setValue(scroll);
    m_highlighted.clear();
    if (!highlighted.isEmpty())
        showTableRow(highlighted, true);
}

bool DemoHost::writeSkyTracksCsv(QIODevice* device, const QStringList& names, double tMin,
                                 double tMax) const
{
    if (!writeText(device, SkyCsvHeader))
        return false;
    if (!m_doc)
        return true;
    QByteArray rows;
    for (const QString& name : names) {
        const SkyTrack* track = m_doc->skyTracks().track(name);
        if (!track)
            continue;
        const qint64 count = qint64(std::min({track->time.size(), track->azimuth.size(),
                                              track->elevation.size()}));
        rows.clear();
        appendSkyRows(rows, name, track->time.data(), track->azimuth.data(),
                      track->elevation.data(), count, tMin, tMax);
        if (!writeText(device, rows))
            return false;
    }
    return true;
}

namespace {

int eventMarkKind(EventKind kind)
{
    switch (kind) {
    case EventKind::PhaseJump: return EEventMarkKind_CycleSlip;
    case EventKind::LossOfLock: return EEventMarkKind_LossOfLock;
    case EventKind::Gap: return EEventMarkKind_Gap;
    }
    return EEventMarkKind_Gap;
}

} // namespace

void DemoHost::publishEventMarks()
{
    // Slips, loss of lock and gaps as ticks: on each multipath curve at the
    // first sample of the arc they begin, and on the table's bars at their
    // epochs, per band.
    QMap<QString, QList<QVector<EventMark>>> bars;
    CurveScene* curves = registry();
    for (auto it = m_findings.cbegin(); it != m_findings.cend(); ++it) {
        const SatelliteFindings& f = it.value();
        QVector<EventMark> onCurve;
        onCurve.reserve(int(f.multipath.events.size()));
        for (const CurveEvent& e : f.multipath.events)
            onCurve.append({e.sample, eventMarkKind(e.kind)});
        if (m_curves.contains(it.key()))
            curves->setCurveEventMarks(it.key(), onCurve);
        QList<QVector<EventMark>> bands;
        bool any = false;
        for (const std::vector<EpochEvent>& band : f.events) {
            QVector<EventMark> marks;
            marks.reserve(int(band.size()));
            for (const EpochEvent& e : band)
                marks.append({e.timeMs, eventMarkKind(e.kind)});
            any = any || !marks.isEmpty();
            bands.append(marks);
        }
        if (any)
            bars.insert(it.key(), bands);
    }
    m_table->setEventMarks(bars);
}

} // namespace gnssdemo
