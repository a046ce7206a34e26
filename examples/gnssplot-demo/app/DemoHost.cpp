// SPDX-License-Identifier: MIT
#include "DemoHost.h"

#include "CsvExport.h"
#include "DemoTexts.h"
#include "MultipathView.h"

#include <gnssplot.h>

#include <QElapsedTimer>
#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace gnssdemo {

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

bool yRangeInWindow(const QList<const Curve_DataSet_XY*>& curves, const QList<int>& axes,
                    double tMin, double tMax, double* yMin, double* yMax)
{
    double lo = std::numeric_limits<double>::infinity();
    double hi = -lo;
    for (const Curve_DataSet_XY* dataSet : curves) {
        const AxisData* xAxis = dataSet ? dataSet->getAxisData(0) : nullptr;
        qint64 count = 0;
        const double* xs = xAxis ? xAxis->getData(0, &count) : nullptr;
        if (!xs)
            continue;
        // X holds epoch times in order: the window is one index range.
        const double* first = std::lower_bound(xs, xs + count, tMin);
        const double* last = std::upper_bound(first, xs + count, tMax);
        for (int axis : axes) {
            const AxisData* data = axis > 0 ? dataSet->getAxisData(axis) : nullptr;
            qint64 n = 0;
            const double* ys = data ? data->getData(0, &n) : nullptr;
            if (!ys || n != count)
                continue;
            for (const double* x = first; x != last; ++x) {
                const double y = ys[x - xs];
                if (std::isfinite(y)) {
                    lo = std::min(lo, y);
                    hi = std::max(hi, y);
                }
            }
        }
    }
    if (!(lo <= hi))
        return false;
    *yMin = lo;
    *yMax = hi;
    return true;
}

double quantileHalfRange(const QList<const Curve_DataSet_XY*>& curves, const QList<int>& axes,
                         double quantile, double margin)
{
    // A day at 1 Hz holds millions of samples; an even subsample of about a
    // million gives the same quantile to well under a centimetre.
    qint64 total = 0;
    for (const Curve_DataSet_XY* dataSet : curves) {
        for (int axis : axes) {
            const AxisData* data = dataSet ? dataSet->getAxisData(axis) : nullptr;
            total += data ? data->getArea(nullptr, nullptr) : 0;
        }
    }
    const qint64 stride = std::max<qint64>(1, total / 1000000);
    std::vector<double> magnitudes;
    magnitudes.reserve(size_t(total / stride + 1));
    for (const Curve_DataSet_XY* dataSet : curves) {
        for (int axis : axes) {
            const AxisData* data = dataSet ? dataSet->getAxisData(axis) : nullptr;
            qint64 count = 0;
            const double* ys = data ? data->getData(0, &count) : nullptr;
            for (qint64 i = 0; ys && i < count; i += stride) {
                if (std::isfinite(ys[i]))
                    magnitudes.push_back(std::abs(ys[i]));
            }
        }
    }
    if (magnitudes.empty())
        return 0.0;
    const double q = std::min(1.0, std::max(0.0, quantile));
    const auto nth = magnitudes.begin()
                     + std::ptrdiff_t(std::llround(q * double(magnitudes.size() - 1)));
    std::nth_element(magnitudes.begin(), nth, magnitudes.end());
    return *nth * margin;
}

DemoHost::DemoHost(MultipathView* view, CurveGraphicsTableWidget_Epoch* table, QObject* parent)
    : QObject(parent)
    , m_view(view)
    , m_table(table)
{
    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgStateliteSelection, this,
            &DemoHost::onTableSelection);
    connect(m_table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged, this,
            &DemoHost::onTableEraseMarks);
    // Zooming and panning time in any view moves the table and, through
    // it, every other view (linkTimeWindow()); the table's epochs are GPST
    // milliseconds like the curves' X values, so the windows link as they
    // are. The table reads in time even for a file with nothing to plot.
    m_table->setTimeNavigationEnabled(true);
    setUpView(PlotQuantity::Multipath, view);
    m_table->setRoundTimeTicks(true);
    m_table->setTimeAxisVisible(true);
}

DemoHost::~DemoHost() = default;

CurveScene* DemoHost::registry() const
{
    return m_view->getCurveScene();
}

QString DemoHost::emptyReason() const
{
    if (!m_doc)
        return QString();
    if (m_doc->epochs().empty())
        return DemoTexts::noEpochs();
    if (!m_curves.isEmpty())
        return QString();
    // Two bands with code and phase are not yet a curve: the arcs they make
    // may all be too short to average, or the phases may never meet.
    int pairs = 0;
    bool shortArcs = false;
    for (const SatelliteFindings& f : m_findings) {
        if (f.multipath.bandB < 0)
            continue;
        ++pairs;
        shortArcs = shortArcs || f.multipath.droppedArcs > 0;
    }
    if (pairs == 0)
        return DemoTexts::noMultipath();
    return shortArcs ? DemoTexts::shortArcs(pairs, MultipathOptions().minArcSamples)
                     : DemoTexts::noCommonEpochs(pairs);
}

QString DemoHost::readWarning() const
{
    return m_doc ? DemoTexts::readStopped(m_doc->source().readStop()) : QString();
}

QString DemoHost::signalStrengthReason() const
{
    if (!m_doc || m_hasSignalStrength || m_doc->epochs().empty())
        return QString();
    return DemoTexts::noSignalStrength();
}

const SatelliteFindings* DemoHost::findings(const QString& name) const
{
    const auto it = m_findings.constFind(name);
    return it == m_findings.constEnd() ? nullptr : &it.value();
}

std::vector<SatelliteQuality> DemoHost::qualities() const
{
    std::vector<SatelliteQuality> out;
    out.reserve(size_t(m_findings.size()));
    for (const SatelliteFindings& f : m_findings)
        out.push_back(f.quality);
    return out;
}

SystemQuality DemoHost::qualityOfSystem(char system) const
{
    return systemQuality(qualities(), system);
}

SatelliteCounts DemoHost::satelliteCounts() const
{
    return countSatellites(qualities(), m_doc ? m_doc->epochs() : std::vector<qint64>());
}

QString DemoHost::multipathSignals(const QString& name, int yIndex) const
{
    const SatelliteFindings* f = findings(name);
    if (!f || !m_curves.contains(name) || yIndex < 0 || yIndex > 1)
        return QString();
    const MultipathInfo& m = f->multipath;
    return yIndex == 0 ? DemoTexts::multipathSignals(1, m.codeA, m.phaseA, m.phaseB)
                       : DemoTexts::multipathSignals(2, m.codeB, m.phaseB, m.phaseA);
}

void DemoHost::setElevationLookup(const ElevationLookup& lookup)
{
    m_elevations = lookup;
    for (SatelliteFindings& f : m_findings)
        applyElevationsTo(f);
}

void DemoHost::applyElevationsTo(SatelliteFindings& findings) const
{
    const std::vector<double>* elevations =
        m_elevations ? m_elevations(findings.quality.name) : nullptr;
    applyElevations(findings.quality, elevations, m_doc ? m_doc->epochs().size() : 0);
}

double DemoHost::fitHalfRange(double tMin, double tMax, const QList<int>& yIndexes) const
{
    QList<const Curve_DataSet_XY*> shown;
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it) {
        if (registry()->getCurveShowParam_visible(it.key()))
            shown.append(it.value());
    }
    QList<int> keys;
    for (int index : yIndexes) {
        if (index >= 0 && index <= 1)
            keys.append(index + 1);
    }
    double lo = 0.0;
    double hi = 0.0;
    if (!yRangeInWindow(shown, keys, tMin, tMax, &lo, &hi))
        return 0.0;
    return std::max(std::abs(lo), std::abs(hi)) * 1.05;
}

bool DemoHost::fitYToData(const QList<int>& yIndexes)
{
    double tMin = 0.0;
    double tMax = 0.0;
    m_view->getTimeWindow(tMin, tMax);
    const double h = fitHalfRange(tMin, tMax, yIndexes);
    if (!(h > 0.0))
        return false;
    m_view->resetZoom();
    m_view->setBaseHalfRange(h);
    return true;
}

namespace {

bool writeAll(QIODevice* device, const QByteArray& text)
{
    return device && device->write(text) == text.size();
}

} // namespace

bool DemoHost::writeCurvesCsv(QIODevice* device, const QStringList& names,
                              const QList<int>& yIndexes, double tMin, double tMax) const
{
    return writeCurvesCsv(device, PlotQuantity::Multipath, names, yIndexes, tMin, tMax);
}

bool DemoHost::writeCurvesCsv(QIODevice* device, PlotQuantity quantity, const QStringList& names,
                              const QList<int>& yIndexes, double tMin, double tMax) const
{
    if (!writeAll(device, CurveCsvHeader))
        return false;
    const int decimals = quantity == PlotQuantity::Multipath        ? 4
                         : quantity == PlotQuantity::SignalStrength ? 1
                                                                    : 0;
    QByteArray rows;
    for (const QString& name : names) {
        const Curve_DataSet_XY* dataSet = curveOf(quantity, name);
        if (!dataSet)
            continue;
        qint64 count = 0;
        const double* xs = dataSet->getAxisData(0)->getData(0, &count);
        for (int index : yIndexes) {
            const AxisData* axis = index >= 0 && index <= 1 ? dataSet->getAxisData(index + 1)
                                                            : nullptr;
            qint64 n = 0;
            const double* ys = axis ? axis->getData(0, &n) : nullptr;
            if (n != count)
                continue;
            const QString signal = signalOf(quantity, name, index);
            if (signal.isEmpty())
                continue;
            rows.clear();
            appendCurveRows(rows, name, signal, xs, ys, count, tMin, tMax, decimals);
            if (!writeAll(device, rows))
                return false;
        }
    }
    return true;
}

bool DemoHost::writeEventsCsv(QIODevice* device, const QStringList& names, double tMin,
                              double tMax) const
{
    if (!writeAll(device, EventCsvHeader))
        return false;
    QByteArray rows;
    for (const QString& name : names) {
        const SatelliteFindings* f = findings(name);
        if (!f)
            continue;
        rows.clear();
        for (int b = 0; b < BandCount; ++b)
            appendEventRows(rows, name, f->bandSignals[size_t(b)], f->events[size_t(b)], tMin,
                            tMax);
        if (!writeAll(device, rows))
            return false;
    }
    return true;
}

QStringList DemoHost::showableCurveNames() const
{
    QStringList names;
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it) {
        if (!m_hidden.contains(it.key()))
            names.append(it.key());
    }
    return names;
}

bool DemoHost::load(std::unique_ptr<ObservationSource> source, QString* error)
{
    if (!source) {
        if (error)
            *error = tr("No observations to load.");
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    CurveScene* curves = registry();
    // The registry deletes the old data sets: they were added with
    // bAutoDelete true.
    curves->removeAllCurves();
    m_curves.clear();
    m_satelliteIndex.clear();
    m_bands.clear();
    m_systems.clear();
    m_hidden.clear();
    m_single.clear();
    m_selection.clear();
    m_marks.clear();
    m_epochData.clear();
    m_findings.clear();
    m_hasSignalStrength = false;
    m_lastApply = ApplyResult();
    m_greyed.clear();
    m_highlighted.clear();
    for (int q = 1; q < PlotQuantityCount; ++q) {
        m_published[q] = false;
        if (m_views[q])
            m_views[q]->getCurveScene()->removeAllCurves();
    }
    m_strength.clear();
    m_strengthInfo.clear();
    m_counts.clear();
    if (m_sky)
        m_sky->getTrackScene()->removeAllCurves();
    m_tracks.clear();
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
        for (const SignalSeries& band : sat.bands) {
            m_hasSignalStrength = m_hasSignalStrength
                                  || std::any_of(band.snr.begin(), band.snr.end(),
                                                 [](double v) { return !std::isnan(v); });
        }
        MultipathInfo info;
        if (!publishSatellite(sat.name, sat, &info, &publishError, &prepared))
            return false;
        m_stats.multipathSamples += info.samples;
        m_stats.arcs += info.arcs;
        return true;
    });
    if (!publishError.isEmpty() || !read) {
        if (error)
            *error = read ? publishError : tr("Out of memory while reading the observations.");
        curves->removeAllCurves();
        m_curves.clear();
        m_findings.clear();
        m_doc.reset();
        return false;
    }
    m_stats.curves = m_curves.size();
    m_table->setResources(m_doc->startTime(), m_doc->endTime(), epochData, enabled, {}, {});
    m_epochData = epochData;

    // The items learn their size and the full data range once for all
    // curves; then the host narrows Y to what the shown curves hold.
    m_view->resetZoom();
    fitYRange();
    m_view->setEmptyText(emptyReason());
    m_published[int(PlotQuantity::Multipath)] = true;
    // Every view starts on the new file's whole span, with an axis even
    // when it has nothing to draw.
    resetViews();
    publishQuantity(m_current);
    publishSky();
    publishEventMarks();
    m_stats.loadMs = timer.elapsed();
    readBack();
    emit loaded();
    return true;
}

bool DemoHost::publishSatellite(const QString& name, const SatelliteObservations& sat,
                                MultipathInfo* info, QString* error,
                                const PreparedSatellite* prepared)
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
    SatelliteFindings& found = m_findings[name];
    found.multipath = *info;
    if (prepared) {
        found.quality = prepared->quality;
        found.events = prepared->events;
    } else {
        found.quality = satelliteQuality(sat, m_doc->epochs(), m_doc->intervalMs());
        found.events = bandEvents(sat, m_doc->epochs(), m_doc->intervalMs());
    }
    addMultipath(found.quality, *info);
    addPhaseJumps(found.events, *info);
    applyElevationsTo(found);
    for (int b = 0; b < BandCount; ++b) {
        const SignalSeries& band = sat.bands[b];
        found.bandSignals[size_t(b)] = band.phaseType.isEmpty() ? band.codeType
                                                                : band.phaseType;
        found.snrSignals[size_t(b)] = band.snrType;
    }
    if (info->samples == 0) {
        // A curve without X values would keep the registry from forming its
        // data limits, so such a satellite has no curve at all.
        if (fresh) {
            delete dataSet;
        } else {
            m_curves.remove(name);
            m_bands.remove(name);
            registry()->removeCurve(name);
        }
        return true;
    }
    m_bands.insert(name, qMakePair(info->bandA, info->bandB));
    if (fresh) {
        const bool visible = m_single.isEmpty() ? !m_hidden.contains(name) : name == m_single;
        registry()->addCurve(name, dataSet, true, systemColor(sat.system), ECurveShowCap_Line,
                             visible);
        m_curves.insert(name, dataSet);
    }
    return true;
}

void DemoHost::applyMarks()
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
    auto* scene = qobject_cast<CurveGraphicsScene*>(m_view->scene());
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
            result.errors.append(QStringLiteral("%1: %2").arg(name, error));
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
    // A satellite shown alone and now unchecked is hidden like the others.
    if (m_hidden.contains(m_single) || !m_curves.contains(m_single))
        setSingleCurve(QString());
    updateVisibility();
    for (const QString& name : m_hidden)
        result.hiddenCurves += m_curves.contains(name) ? 1 : 0;
    // One rebuild of every item, with the new data and the new Y range.
    fitYRange();
    m_view->setEmptyText(emptyReason());
    // The other quantities follow the erased epochs when next shown.
    for (int q = 1; q < PlotQuantityCount; ++q)
        m_published[q] = false;
    publishQuantity(m_current);
    fillSkyValues();
    publishEventMarks();
    greyUncheckedRows();
    result.elapsedMs = timer.elapsed();
    m_lastApply = result;
    emit applied();
    emit visibilityChanged();
}

bool DemoHost::setSingleCurve(const QString& name)
{
    if (!name.isEmpty() && (!m_curves.contains(name) || m_hidden.contains(name)))
        return false;
    CurveScene* curves = registry();
    CurveScene* strength = m_views[int(PlotQuantity::SignalStrength)]
                               ? m_views[int(PlotQuantity::SignalStrength)]->getCurveScene()
                               : nullptr;
    if (!m_single.isEmpty() && m_curves.contains(m_single))
        curves->setCurveSingleShow(m_single, false);
    if (strength && !m_single.isEmpty() && m_strength.contains(m_single))
        strength->setCurveSingleShow(m_single, false);
    m_single = name;
    updateVisibility();
    // The singled-out curve is drawn opaque in the colours of the F 1 / F 2
    // boxes.
    if (!m_single.isEmpty())
        curves->setCurveSingleShow(m_single, true);
    if (strength && !m_single.isEmpty() && m_strength.contains(m_single))
        strength->setCurveSingleShow(m_single, true);
    fitYRange();
    if (m_published[int(PlotQuantity::SignalStrength)])
        fitQuantityRange(PlotQuantity::SignalStrength, false);
    emit visibilityChanged();
    return true;
}

void DemoHost::updateVisibility()
{
    auto shown = [this](const QString& name) {
        return m_single.isEmpty() ? !m_hidden.contains(name) : name == m_single;
    };
    CurveScene* curves = registry();
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it)
        curves->setCurveShowParam_visible(it.key(), shown(it.key()));
    if (MultipathView* strength = m_views[int(PlotQuantity::SignalStrength)]) {
        for (auto it = m_strength.cbegin(); it != m_strength.cend(); ++it)
            strength->getCurveScene()->setCurveShowParam_visible(it.key(), shown(it.key()));
    }
    // The sky keeps every satellite that is checked: one shown alone in the
    // plot is still found among the others there by its marker.
    if (m_sky) {
        for (auto it = m_tracks.cbegin(); it != m_tracks.cend(); ++it)
            m_sky->getTrackScene()->setCurveShowParam_visible(it.key(),
                                                               !m_hidden.contains(it.key()));
    }
}

void DemoHost::fitYRange()
{
    // Symmetric about zero, holding 99.5 % of the shown curves' MP1 and MP2
    // magnitudes with a fifth to spare: a few outliers at the ends of arcs
    // no longer flatten the day. They stay reachable with the wheel.
    QList<const Curve_DataSet_XY*> shown;
    for (auto it = m_curves.cbegin(); it != m_curves.cend(); ++it) {
        if (registry()->getCurveShowParam_visible(it.key()))
            shown.append(it.value());
    }
    m_view->setBaseHalfRange(quantileHalfRange(shown, {1, 2}, 0.995, 1.2));
}

void DemoHost::readBack()
{
    onTableSelection();
    onTableEraseMarks();
}

void DemoHost::onTableSelection()
{
    m_selection.clear();
    m_table->getStateliteEnabled(m_selection);
    greyUncheckedRows();
    emit selectionRead();
}

void DemoHost::onTableEraseMarks()
{
    m_marks.clear();
    m_table->getStateliteEraseMarks(m_marks);
    emit marksRead();
}

} // namespace gnssdemo
