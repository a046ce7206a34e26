// SPDX-License-Identifier: MIT
#include "SkyGraphicsItem_Tracks_p.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QtConcurrent>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Layers larger than this many pixels are not made; such targets get
// polylines instead.
constexpr qint64 kMaxLayerPixels = qint64(1) << 26;

bool near(double a, double b)
{
    return std::abs(a - b) <= 1e-9 * (1.0 + std::abs(a) + std::abs(b));
}

// How a painter's device is laid over the surface it ends up on. A widget
// is painted into its window's buffer at an offset that the painter's
// device transform carries; the layer is made without that offset and drawn
// shifted by it, so that moving the widget within its window maps nothing
// again. Only whole-pixel offsets are taken out.
struct Placement
{
    QTransform transform;
    QRect device;
    QPoint shift;
};

Placement placementOf(const QPainter* painter)
{
    Placement p;
    p.transform = painter->deviceTransform();
    const QPaintDevice* device = painter->device();
    if (!device)
        return p;
    const int type = device->devType();
    if (type == QInternal::Image || type == QInternal::Pixmap) {
        p.device = QRect(0, 0, device->width(), device->height());
        return p;
    }
    // What the device transform adds to the world transform: the scale to
    // device pixels and the widget's offset.
    bool bInvertible = false;
    const QTransform extra = painter->worldTransform().inverted(&bInvertible) * p.transform;
    QRectF area(0, 0, device->width(), device->height());
    if (bInvertible && extra.type() <= QTransform::TxScale) {
        const QPoint whole(int(std::lround(extra.dx())), int(std::lround(extra.dy())));
        if (std::abs(whole.x() - extra.dx()) < 1e-6 && std::abs(whole.y() - extra.dy()) < 1e-6) {
            p.shift = whole;
            p.transform *= QTransform::fromTranslate(-whole.x(), -whole.y());
            area = QTransform::fromScale(extra.m11(), extra.m22()).mapRect(area);
        } else {
            area = extra.mapRect(area);
        }
    } else {
        const double ratio = device->devicePixelRatioF();
        area = QRectF(0, 0, device->width() * ratio, device->height() * ratio);
    }
    const double left = std::floor(area.left());
    const double top = std::floor(area.top());
    p.device = QRect(int(left), int(top), int(std::ceil(area.right()) - left),
                     int(std::ceil(area.bottom()) - top));
    return p;
}

struct StepJob
{
    SkyTrackSteps* steps;
    SkyTrackSource* source;
    SkyTrackSteps::Key key;
};

} // namespace

SkyGraphicsItem_Tracks::SkyGraphicsItem_Tracks(const SkySettings* settings, SkyTrackSet* tracks,
                                               QGraphicsItem* parent)
    : SkyGraphicsItem(settings, tracks, parent)
{
}

SkyGraphicsItem_Tracks::~SkyGraphicsItem_Tracks() = default;

bool SkyGraphicsItem_Tracks::Target::matches(const Target& other) const
{
    return bounds == other.bounds && near(m11, other.m11) && near(m22, other.m22)
           && near(dx, other.dx) && near(dy, other.dy);
}

bool SkyGraphicsItem_Tracks::targetFor(const QTransform& deviceTransform, const QRect& device,
                                       Target* target) const
{
    if (deviceTransform.type() > QTransform::TxScale)
        return false;
    Target t;
    t.m11 = deviceTransform.m11();
    t.m22 = deviceTransform.m22();
    t.dx = deviceTransform.dx();
    t.dy = deviceTransform.dy();
    if (!(std::isfinite(t.m11) && std::isfinite(t.m22) && std::isfinite(t.dx)
          && std::isfinite(t.dy) && t.m11 != 0.0 && t.m22 != 0.0)) {
        return false;
    }
    // Every drawn sample lies in the disk, rim included: the layer covers
    // the disk's device pixels on the device.
    const QRectF disk = deviceTransform.mapRect(m_layout.diskRect());
    const QRectF covered = QRectF(device).intersected(
        disk.adjusted(-1.0, -1.0, 1.0, 1.0));
    if (covered.isEmpty() || !m_layout.isDrawable()) {
        t.bounds = QRect();
    } else {
        const double left = std::floor(covered.left());
        const double top = std::floor(covered.top());
        const double right = std::ceil(covered.right());
        const double bottom = std::ceil(covered.bottom());
        if ((right - left) * (bottom - top) > double(kMaxLayerPixels))
            return false;
        t.bounds = QRect(int(left), int(top), int(right - left), int(bottom - top));
    }
    *target = t;
    return true;
}

SkyDeviceMap SkyGraphicsItem_Tracks::deviceMap(const Target& target) const
{
    return SkyDeviceMap{m_layout.projection(), target.m11, target.m22, target.dx, target.dy};
}

SkyTrackSteps::Key SkyGraphicsItem_Tracks::keyFor(SkyTrackSet::Track& track,
                                                  const SkyDeviceMap& map) const
{
    SkyTrackSteps::Key key;
    key.map = map;
    key.sourceVersion = track.sourceVersion;
    key.values = m_settings->tracksByValue() ? track.source.values : nullptr;
    // Times out of order cannot be cut by index: the window is then part
    // of the mapping. Their order is looked at only when a window is set.
    if (m_settings->bWindowActive) {
        track.source.checkTimeOrder();
        key.bWindowed = !track.source.bTimeSorted;
        key.window = m_settings->window;
    }
    return key;
}

bool SkyGraphicsItem_Tracks::spanOf(SkyTrackSet::Track& track, const SkyTrackSteps& steps,
                                    SkyStepSpan* span) const
{
    SkyTrackSource& source = track.source;
    qint64 first = 0;
    qint64 last = source.count - 1;
    if (m_settings->bWindowActive) {
        source.checkTimeOrder();
        if (source.bTimeSorted && !source.windowRange(m_settings->window, first, last))
            return false;
    }
    return steps.spanOf(first, last, span);
}

void SkyGraphicsItem_Tracks::prepareSteps(const Target& target)
{
    const std::vector<SkyTrackSet::Track*>& tracks = m_tracks->refresh();
    // Steps of tracks that are gone are dropped; hidden ones keep theirs for
    // when they are shown again.
    for (auto it = m_steps.begin(); it != m_steps.end();) {
        const bool bKnown = std::any_of(tracks.begin(), tracks.end(),
                                        [&](const SkyTrackSet::Track* t) {
                                            return t->name == it->first;
                                        });
        it = bKnown ? std::next(it) : m_steps.erase(it);
    }
    const SkyDeviceMap map = deviceMap(target);
    QVector<StepJob> jobs;
    for (SkyTrackSet::Track* track : tracks) {
        if (!track->bVisible)
            continue;
        const SkyTrackSteps::Key key = keyFor(*track, map);
        SkyTrackSteps& steps = m_steps[track->name];
        if (!steps.isBuiltFor(key))
            jobs.append(StepJob{&steps, &track->source, key});
    }
    m_stepBuilds += quint64(jobs.size());
    // Each job touches only its own track's steps and source.
    const auto build = [](StepJob& job) {
        job.source->checkTimeOrder();
        job.steps->build(*job.source, job.key);
    };
    if (jobs.size() == 1)
        build(jobs.front());
    else if (!jobs.isEmpty())
        QtConcurrent::blockingMap(jobs, build);
}

bool SkyGraphicsItem_Tracks::layerIsCurrent(const Target& target) const
{
    return m_layerValid && m_layerTarget.matches(target)
           && m_layerSetVersion == m_tracks->version()
           && m_layerSettingsVersion == m_settings->tracksVersion
           && m_layerLayoutVersion == m_layoutVersion;
}

void SkyGraphicsItem_Tracks::prepareLayer(const Target& target)
{
    if (!layerIsCurrent(target))
        buildLayer(target);
}

void SkyGraphicsItem_Tracks::buildLayer(const Target& target)
{
    prepareSteps(target);
    m_layerTarget = target;
    m_layerValid = true;
    m_layerSetVersion = m_tracks->version();
    m_layerSettingsVersion = m_settings->tracksVersion;
    m_layerLayoutVersion = m_layoutVersion;
    ++m_layerBuilds;
    if (target.bounds.isEmpty()) {
        m_layer = QImage();
        return;
    }
    if (m_layer.size() != target.bounds.size())
        m_layer = QImage(target.bounds.size(), QImage::Format_ARGB32_Premultiplied);
    std::memset(m_layer.bits(), 0, size_t(m_layer.sizeInBytes()));
    m_raster.begin(&m_layer, target.bounds.topLeft());
    const bool bByValue = m_settings->tracksByValue();
    const SkyColorScale scale = bByValue ? m_settings->scaleFor(*m_tracks) : SkyColorScale();
    for (SkyTrackSet::Track* track : m_tracks->tracks()) {
        if (!track->bVisible)
            continue;
        const SkyTrackSteps& steps = m_steps[track->name];
        SkyStepSpan span;
        if (!spanOf(*track, steps, &span))
            continue;
        if (bByValue)
            m_raster.drawTrackByLevel(steps, span, track->source, scale);
        else
            m_raster.drawTrack(steps, span, track->colour.rgba());
    }
}

size_t SkyGraphicsItem_Tracks::memory() const
{
    size_t bytes = size_t(m_layer.sizeInBytes());
    for (const auto& entry : m_steps)
        bytes += entry.second.memory();
    return bytes;
}

void SkyGraphicsItem_Tracks::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QPaintEngine* engine = painter->paintEngine();
    if (!engine || !m_layout.isDrawable() || !m_settings->bTracksShown)
        return;
    const bool bRaster = engine->type() == QPaintEngine::Raster;
    Target target;
    const Placement placement = bRaster ? placementOf(painter) : Placement();
    if (bRaster && !painter->testRenderHint(QPainter::Antialiasing)
        && painter->compositionMode() == QPainter::CompositionMode_SourceOver
        && targetFor(placement.transform, placement.device, &target)) {
        prepareLayer(target);
        if (m_layer.isNull())
            return;
        painter->save();
        // Device pixels one to one: the layer was made at device resolution.
        painter->setWorldTransform(painter->deviceTransform().inverted()
                                   * painter->worldTransform());
        painter->drawImage(m_layerTarget.bounds.topLeft() + placement.shift, m_layer);
        painter->restore();
        return;
    }
    painter->save();
    drawPolylines(painter);
    painter->restore();
}

void SkyGraphicsItem_Tracks::drawPolylines(QPainter* painter)
{
    // Steps on a grid of device pixels along the scene's axes, at most two
    // per scene pixel; their own, so that the layer's stay as they are.
    const QTransform device = painter->deviceTransform();
    const double perPixel = std::sqrt(std::abs(device.determinant()));
    const double grid = std::isfinite(perPixel) ? std::max(1.0, std::min(2.0, perPixel)) : 1.0;
    Target target;
    target.m11 = grid;
    target.m22 = grid;
    const SkyDeviceMap map = deviceMap(target);
    const SkyProjection projection = m_layout.projection();
    const bool bByValue = m_settings->tracksByValue();
    const SkyColorScale scale = bByValue ? m_settings->scaleFor(*m_tracks) : SkyColorScale();

    std::vector<SkyTrackSet::Track*> shown;
    for (SkyTrackSet::Track* track : m_tracks->refresh()) {
        if (track->bVisible)
            shown.push_back(track);
    }
    std::vector<SkyTrackSteps> steps(shown.size());
    QVector<StepJob> jobs;
    for (size_t i = 0; i < shown.size(); ++i)
        jobs.append(StepJob{&steps[i], &shown[i]->source, keyFor(*shown[i], map)});
    QtConcurrent::blockingMap(jobs, [](StepJob& job) {
        job.source->checkTimeOrder();
        job.steps->build(*job.source, job.key);
    });

    QPolygonF line;
    QRgb lineColour = 0;
    const auto flush = [&]() {
        if (line.size() == 1)
            painter->drawPoint(line.front());
        else if (line.size() > 1)
            painter->drawPolyline(line);
        line.clear();
    };
    const auto pointOf = [&](const SkyTrackSource& source, qint64 j) {
        double x = 0.0;
        double y = 0.0;
        projection.toScene(source.azimuths[j], source.elevations[j], x, y);
        return QPointF(x, y);
    };
    for (size_t i = 0; i < shown.size(); ++i) {
        SkyStepSpan span;
        if (!spanOf(*shown[i], steps[i], &span))
            continue;
        const SkyTrackSource& source = shown[i]->source;
        const auto colourOf = [&](qint64 j) {
            return bByValue ? scale.colourOf(std::max(0, scale.levelOf(source.valueAt(j))))
                            : shown[i]->colour.rgba();
        };
        const auto setColour = [&](QRgb colour) {
            lineColour = colour;
            painter->setPen(QPen(QColor::fromRgba(colour), 0.0));
        };
        steps[i].walk(
            span,
            [&](qint32, qint32, qint64 j) {
                flush();
                setColour(colourOf(j));
                line.append(pointOf(source, j));
            },
            [&](qint32, qint32, qint64 j) {
                const QRgb colour = colourOf(j);
                // A segment takes the colour of the sample it enters; a new
                // colour starts a new line at the last point.
                if (colour != lineColour) {
                    const QPointF last = line.back();
                    flush();
                    setColour(colour);
                    line.append(last);
                }
                line.append(pointOf(source, j));
            });
        flush();
    }
}

bool SkyGraphicsItem_Tracks::nearestSample(const QPointF& scenePos, double radius,
                                           const Target& target, Found* found)
{
    if (!found || !(radius >= 0.0) || !std::isfinite(scenePos.x())
        || !std::isfinite(scenePos.y()) || !m_layout.isDrawable() || !m_settings->bTracksShown) {
        return false;
    }
    prepareSteps(target);
    const SkyProjection projection = m_layout.projection();
    // The cursor's device pixel and how far from it a step may lie: its
    // samples lie within one device pixel of the step's corner.
    const double pc = target.m11 * scenePos.x() + target.dx;
    const double pr = target.m22 * scenePos.y() + target.dy;
    const double reach = radius * std::max(std::abs(target.m11), std::abs(target.m22)) + 2.0;
    double best = radius * radius;
    bool bFound = false;
    for (SkyTrackSet::Track* track : m_tracks->tracks()) {
        if (!track->bVisible)
            continue;
        const SkyTrackSteps& steps = m_steps[track->name];
        SkyStepSpan span;
        if (!spanOf(*track, steps, &span))
            continue;
        const std::vector<SkyStep>& all = steps.steps();
        const SkyTrackSource& source = track->source;
        for (size_t s = span.s0; s <= span.s1; ++s) {
            const SkyStep& step = all[s];
            if (step.c == SkyStep::kGap || std::abs(step.c - pc) > reach
                || std::abs(step.r - pr) > reach) {
                continue;
            }
            const qint64 from = std::max(step.first, span.firstSample);
            const qint64 to = std::min(s + 1 < all.size() ? all[s + 1].first - 1 : source.count - 1,
                                       span.lastSample);
            for (qint64 j = from; j <= to; ++j) {
                double x = 0.0;
                double y = 0.0;
                projection.toScene(source.azimuths[j], source.elevations[j], x, y);
                const double d2 = (x - scenePos.x()) * (x - scenePos.x())
                                  + (y - scenePos.y()) * (y - scenePos.y());
                if (d2 < best || (!bFound && d2 == best)) {
                    best = d2;
                    bFound = true;
                    *found = Found{track->name, j, d2};
                }
            }
        }
    }
    return bFound;
}
