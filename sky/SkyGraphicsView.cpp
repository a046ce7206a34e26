// SPDX-License-Identifier: MIT
#include "SkyGraphicsView.h"

#include "CurveScene.h"
#include "SkyGraphicsItem_ColorBar_p.h"
#include "SkyGraphicsItem_Grid_p.h"
#include "SkyGraphicsItem_Map_p.h"
#include "SkyGraphicsItem_Marks_p.h"
#include "SkyGraphicsItem_Tracks_p.h"
#include "SkySettings_p.h"
#include "SkyTrackSet_p.h"
#include "TimeLabeller_p.h"

#include <QGraphicsScene>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QResizeEvent>
#include <QToolTip>

#include <cmath>
#include <limits>

namespace {

// The parts of one picture of the plot, bottom to top.
struct SkyItems
{
    SkyGraphicsItem_Map* map = nullptr;
    SkyGraphicsItem_Grid* grid = nullptr;
    SkyGraphicsItem_Tracks* tracks = nullptr;
    SkyGraphicsItem_Marks* marks = nullptr;
    SkyGraphicsItem_ColorBar* bar = nullptr;

    // Makes the items in \a scene, which owns them.
    static SkyItems makeIn(QGraphicsScene* scene, const SkySettings* settings, SkyTrackSet* set)
    {
        SkyItems items;
        items.map = new SkyGraphicsItem_Map(settings, set);
        items.grid = new SkyGraphicsItem_Grid(settings, set);
        items.tracks = new SkyGraphicsItem_Tracks(settings, set);
        items.marks = new SkyGraphicsItem_Marks(settings, set);
        items.bar = new SkyGraphicsItem_ColorBar(settings, set);
        double z = 0.0;
        for (SkyGraphicsItem* item : items.all()) {
            item->setZValue(z++);
            scene->addItem(item);
        }
        return items;
    }
    std::vector<SkyGraphicsItem*> all() const { return {map, grid, tracks, marks, bar}; }
    void setLayout(const SkyLayout& layout) const
    {
        for (SkyGraphicsItem* item : all())
            item->setLayout(layout);
    }
};

// The time of the hover read-out, as the curve plot's tool tip writes it.
// Kept in this one place so that it can follow the plot's time labels.
QString degreesText(double degrees)
{
    return QString::number(degrees, 'f', 1) + QChar(0x00B0);
}

} // namespace

class SkyGraphicsView::PrivateData
{
public:
    QGraphicsScene* scene = nullptr;
    CurveScene* registry = nullptr;
    SkyTrackSet* tracks = nullptr;
    SkySettings settings;
    SkyItems items;
    struct HoverState
    {
        bool bEnabled = false;
        bool bToolTip = false;
        bool bReported = false;
        HoverSample last;
    } hover;

    // The settings changed what the tracks and the sky map show.
    void pixelsChanged()
    {
        ++settings.tracksVersion;
        ++settings.mapVersion;
    }
};

SkyGraphicsView::SkyGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , m_data(new PrivateData)
{
    // Scene coordinates are the viewport's pixels: no scroll bars, no
    // centring, no scale.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_data->registry = new CurveScene(this);
    m_data->tracks = new SkyTrackSet(m_data->registry, this);
    m_data->scene = new QGraphicsScene(this);
    m_data->scene->setBackgroundBrush(Qt::white);
    m_data->scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    setScene(m_data->scene);
    m_data->items = SkyItems::makeIn(m_data->scene, &m_data->settings, m_data->tracks);
    connect(m_data->tracks, &SkyTrackSet::sgChanged, this, &SkyGraphicsView::tracksChanged);
    relayout();
}

SkyGraphicsView::~SkyGraphicsView()
{
    // The items read the settings and the tracks: they go first, then the
    // tracks' listener, then the registry with the data sets it owns.
    setScene(nullptr);
    delete m_data->scene;
    delete m_data->tracks;
    delete m_data->registry;
}

CurveScene* SkyGraphicsView::getTrackScene()
{
    return m_data->registry;
}

void SkyGraphicsView::relayout()
{
    const QSize size = viewport()->size();
    m_data->scene->setSceneRect(0, 0, size.width(), size.height());
    m_data->items.setLayout(
        SkyLayout::forSize(QSizeF(size), m_data->settings.colourBarShown()));
}

void SkyGraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    relayout();
}

void SkyGraphicsView::tracksChanged()
{
    viewport()->update();
}

// --- Values -----------------------------------------------------------------

void SkyGraphicsView::setTracksShown(bool bShown)
{
    if (bShown == m_data->settings.bTracksShown)
        return;
    m_data->settings.bTracksShown = bShown;
    if (!bShown)
        clearHover();
    viewport()->update();
}

bool SkyGraphicsView::areTracksShown() const
{
    return m_data->settings.bTracksShown;
}

void SkyGraphicsView::setValueAxis(int valueIndex)
{
    const int index = std::max(-1, valueIndex);
    if (index == m_data->settings.valueIndex)
        return;
    m_data->settings.valueIndex = index;
    m_data->tracks->setValueIndex(index);
    m_data->pixelsChanged();
    relayout();
}

int SkyGraphicsView::getValueAxis() const
{
    return m_data->settings.valueIndex;
}

void SkyGraphicsView::setValueUnit(const QString& unit)
{
    if (unit == m_data->settings.unit)
        return;
    m_data->settings.unit = unit;
    viewport()->update();
}

QString SkyGraphicsView::getValueUnit() const
{
    return m_data->settings.unit;
}

void SkyGraphicsView::setTracksColoredByValue(bool bByValue)
{
    if (bByValue == m_data->settings.bTracksByValue)
        return;
    m_data->settings.bTracksByValue = bByValue;
    m_data->pixelsChanged();
    relayout();
}

bool SkyGraphicsView::areTracksColoredByValue() const
{
    return m_data->settings.bTracksByValue;
}

bool SkyGraphicsView::setColorRange(double vMin, double vMax)
{
    SkyColorScale scale = m_data->settings.scale;
    if (!scale.setRange(vMin, vMax))
        return false;
    if (!m_data->settings.bAutoRange && scale == m_data->settings.scale)
        return true;
    m_data->settings.scale = scale;
    m_data->settings.bAutoRange = false;
    m_data->pixelsChanged();
    viewport()->update();
    return true;
}

void SkyGraphicsView::resetColorRange()
{
    if (m_data->settings.bAutoRange)
        return;
    m_data->settings.bAutoRange = true;
    m_data->pixelsChanged();
    viewport()->update();
}

void SkyGraphicsView::getColorRange(double& vMin, double& vMax) const
{
    const SkyColorScale scale = m_data->settings.scaleFor(*m_data->tracks);
    vMin = scale.getMin();
    vMax = scale.getMax();
}

bool SkyGraphicsView::setColorStops(const QGradientStops& stops)
{
    SkyColorScale scale = m_data->settings.scale;
    if (!scale.setStops(stops))
        return false;
    if (scale == m_data->settings.scale)
        return true;
    m_data->settings.scale = scale;
    m_data->pixelsChanged();
    viewport()->update();
    return true;
}

// --- Sky map ----------------------------------------------------------------

void SkyGraphicsView::setSkyMapShown(bool bShown)
{
    if (bShown == m_data->settings.bMapShown)
        return;
    m_data->settings.bMapShown = bShown;
    relayout();
}

bool SkyGraphicsView::isSkyMapShown() const
{
    return m_data->settings.bMapShown;
}

void SkyGraphicsView::setSkyMapStatistic(SkyMapStatistic statistic)
{
    if (statistic < SkyMapStatistic_Mean || statistic > SkyMapStatistic_Maximum
        || int(statistic) == m_data->settings.mapStatistic) {
        return;
    }
    m_data->settings.mapStatistic = int(statistic);
    viewport()->update();
}

SkyGraphicsView::SkyMapStatistic SkyGraphicsView::getSkyMapStatistic() const
{
    return SkyMapStatistic(m_data->settings.mapStatistic);
}

bool SkyGraphicsView::setSkyMapCellSize(double degrees)
{
    if (!SkyMapGrid::isValidCellSize(degrees))
        return false;
    if (degrees != m_data->settings.cellDegrees) {
        m_data->settings.cellDegrees = degrees;
        ++m_data->settings.mapVersion;
        viewport()->update();
    }
    return true;
}

double SkyGraphicsView::getSkyMapCellSize() const
{
    return m_data->settings.cellDegrees;
}

bool SkyGraphicsView::setElevationMask(double degrees)
{
    if (!(degrees >= 0.0 && degrees < 90.0))
        return false;
    if (degrees != m_data->settings.maskDegrees) {
        m_data->settings.maskDegrees = degrees;
        viewport()->update();
    }
    return true;
}

double SkyGraphicsView::getElevationMask() const
{
    return m_data->settings.maskDegrees;
}

// --- Time -------------------------------------------------------------------

void SkyGraphicsView::getTimeWindow(double& tMin, double& tMax) const
{
    if (m_data->settings.bWindowActive) {
        tMin = m_data->settings.window.getMin();
        tMax = m_data->settings.window.getMax();
        return;
    }
    if (!m_data->tracks->timeLimits(tMin, tMax)) {
        tMin = 0.0;
        tMax = 0.0;
    }
}

void SkyGraphicsView::setTimeWindow(double tMin, double tMax)
{
    const TimeWindow window(tMin, tMax);
    if (!window.isValid())
        return;
    SkySettings& settings = m_data->settings;
    // A linked widget's echo may come back off by a rounding step; that is
    // the same window, and answering it would never end.
    if (settings.bWindowActive && settings.window.fuzzyEquals(window))
        return;
    settings.bWindowActive = true;
    settings.window = window;
    m_data->pixelsChanged();
    viewport()->update();
    emit sgTimeWindowChanged(tMin, tMax);
}

void SkyGraphicsView::resetTimeWindow()
{
    if (!m_data->settings.bWindowActive)
        return;
    m_data->settings.bWindowActive = false;
    m_data->pixelsChanged();
    viewport()->update();
    double tMin = 0.0;
    double tMax = 0.0;
    getTimeWindow(tMin, tMax);
    emit sgTimeWindowChanged(tMin, tMax);
}

void SkyGraphicsView::setTimeCursor(double timeMs)
{
    if (!std::isfinite(timeMs)
        || (m_data->settings.bCursor && m_data->settings.cursorMs == timeMs)) {
        return;
    }
    m_data->settings.bCursor = true;
    m_data->settings.cursorMs = timeMs;
    viewport()->update();
    emit sgTimeCursorChanged(true, timeMs);
}

void SkyGraphicsView::clearTimeCursor()
{
    if (!m_data->settings.bCursor)
        return;
    m_data->settings.bCursor = false;
    m_data->settings.cursorMs = 0.0;
    viewport()->update();
    emit sgTimeCursorChanged(false, 0.0);
}

bool SkyGraphicsView::hasTimeCursor() const
{
    return m_data->settings.bCursor;
}

double SkyGraphicsView::getTimeCursor() const
{
    return m_data->settings.cursorMs;
}

// --- Geometry and pictures --------------------------------------------------

QPointF SkyGraphicsView::skyToViewport(double azimuth, double elevation) const
{
    const SkyLayout& layout = m_data->items.tracks->layout();
    if (!layout.isDrawable() || !SkyProjection::isDrawable(azimuth, elevation))
        return QPointF();
    double x = 0.0;
    double y = 0.0;
    layout.projection().toScene(azimuth, elevation, x, y);
    return viewportTransform().map(QPointF(x, y));
}

void SkyGraphicsView::drawToPixmap(QPixmap* pixmap)
{
    if (!pixmap || pixmap->isNull())
        return;
    const double ratio = pixmap->devicePixelRatioF();
    const QSizeF logical(pixmap->width() / ratio, pixmap->height() / ratio);
    // Items of their own, so that the view's layers and steps stay as they
    // are; they read the same settings and tracks.
    QGraphicsScene scene;
    scene.setSceneRect(QRectF(QPointF(0, 0), logical));
    scene.setBackgroundBrush(Qt::white);
    const SkyItems items = SkyItems::makeIn(&scene, &m_data->settings, m_data->tracks);
    items.setLayout(SkyLayout::forSize(logical, m_data->settings.colourBarShown()));
    pixmap->fill(Qt::white);
    QPainter painter(pixmap);
    scene.render(&painter, QRectF(QPointF(0, 0), logical), QRectF(QPointF(0, 0), logical));
}

// --- Hover read-out ---------------------------------------------------------

void SkyGraphicsView::setHoverReadOutEnabled(bool bEnabled)
{
    if (bEnabled == m_data->hover.bEnabled)
        return;
    m_data->hover.bEnabled = bEnabled;
    if (bEnabled)
        viewport()->setMouseTracking(true);
    else
        clearHover();
}

bool SkyGraphicsView::isHoverReadOutEnabled() const
{
    return m_data->hover.bEnabled;
}

void SkyGraphicsView::setHoverToolTip(bool bShow)
{
    if (!bShow && m_data->hover.bToolTip && m_data->hover.bReported)
        QToolTip::hideText();
    m_data->hover.bToolTip = bShow;
}

bool SkyGraphicsView::hasHoverToolTip() const
{
    return m_data->hover.bToolTip;
}

bool SkyGraphicsView::hoverSampleAt(const QPoint& viewportPos, HoverSample& sample)
{
    SkyGraphicsItem_Tracks* item = m_data->items.tracks;
    // The steps the last paint made, or those a paint of the viewport would.
    const double ratio = viewport()->devicePixelRatioF();
    const QRect device(0, 0, int(std::ceil(viewport()->width() * ratio)),
                       int(std::ceil(viewport()->height() * ratio)));
    SkyGraphicsItem_Tracks::Target target;
    if (!item->targetFor(viewportTransform() * QTransform::fromScale(ratio, ratio), device,
                         &target)) {
        return false;
    }
    // The painted target may differ by a rounding step of its transform;
    // its steps serve, and making others would map every sample again.
    SkyGraphicsItem_Tracks::Target painted;
    if (item->lastTarget(&painted) && painted.matches(target))
        target = painted;
    bool bInvertible = false;
    const QPointF scenePos = viewportTransform().inverted(&bInvertible).map(QPointF(viewportPos));
    SkyGraphicsItem_Tracks::Found found;
    if (!bInvertible || !item->nearestSample(scenePos, kHoverRadius, target, &found))
        return false;
    for (const SkyTrackSet::Track* track : m_data->tracks->tracks()) {
        if (track->name != found.track)
            continue;
        const SkyTrackSource& source = track->source;
        sample.trackName = found.track;
        sample.sampleIndex = found.index;
        sample.timeMs = source.times[found.index];
        sample.azimuth = source.azimuths[found.index];
        sample.elevation = source.elevations[found.index];
        sample.value = source.valueAt(found.index);
        return true;
    }
    return false;
}

void SkyGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    QGraphicsView::mouseMoveEvent(event);
    if (m_data->hover.bEnabled)
        updateHover(event->pos());
}

void SkyGraphicsView::leaveEvent(QEvent* event)
{
    QGraphicsView::leaveEvent(event);
    clearHover();
}

void SkyGraphicsView::updateHover(const QPoint& viewportPos)
{
    HoverSample sample;
    if (!hoverSampleAt(viewportPos, sample)) {
        clearHover();
        return;
    }
    const HoverSample& last = m_data->hover.last;
    if (m_data->hover.bReported && last.trackName == sample.trackName
        && last.sampleIndex == sample.sampleIndex) {
        return;
    }
    m_data->hover.last = sample;
    m_data->hover.bReported = true;
    if (m_data->hover.bToolTip) {
        QString text = tr("Satellite %1\nTime %2 GPST\nAzimuth %3\nElevation %4")
                           .arg(sample.trackName, TimeLabeller::toolTipTime(sample.timeMs),
                                degreesText(sample.azimuth), degreesText(sample.elevation));
        if (std::isfinite(sample.value)) {
            text += QLatin1Char('\n')
                    + tr("Value %1 %2")
                          .arg(m_data->settings.scaleFor(*m_data->tracks).format(sample.value),
                               m_data->settings.unit)
                          .trimmed();
        }
        QToolTip::showText(viewport()->mapToGlobal(viewportPos), text, viewport());
    }
    emit sgHover(sample.trackName, sample.timeMs, sample.azimuth, sample.elevation,
                 sample.value);
}

void SkyGraphicsView::clearHover()
{
    if (!m_data->hover.bReported)
        return;
    m_data->hover.bReported = false;
    if (m_data->hover.bToolTip)
        QToolTip::hideText();
    emit sgHoverNone();
}
