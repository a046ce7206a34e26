// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_TRACKS_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_TRACKS_P_H

#include "SkyGraphicsItem_p.h"
#include "SkyRaster_p.h"
#include "SkyTrackSteps_p.h"

#include <QImage>
#include <QRect>

#include <map>

class QPainter;

/*
    The tracks of all visible satellites, in name order, later names on top.

    On a raster device without antialiasing the item paints one image, its
    layer, at device-pixel resolution (HiDPI included): every track's steps
    drawn with the density raster (SkyRaster). Re-painting an unchanged plot
    draws that image again; a new time window walks the kept steps again
    and maps nothing; only a new picture size or new data maps samples.
    Mapping runs on the global thread pool, one track per job.

    Vector devices and antialiased painting get real polylines through the
    painter, reduced to one point per device pixel the track passes, and
    never finer than half a scene pixel: a 1200 dpi PDF would otherwise
    carry far more points than any printer resolves.
*/
class SkyGraphicsItem_Tracks : public SkyGraphicsItem
{
public:
    SkyGraphicsItem_Tracks(const SkySettings* settings, SkyTrackSet* tracks,
                           QGraphicsItem* parent = nullptr);
    ~SkyGraphicsItem_Tracks() override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Where a layer is made: the scene-to-device scale and offset and the
    // device pixels it covers.
    struct Target
    {
        double m11 = 1.0;
        double m22 = 1.0;
        double dx = 0.0;
        double dy = 0.0;
        QRect bounds;
        bool matches(const Target& other) const;
    };
    // The target for painting through \a deviceTransform onto a device of
    // \a device pixels; false when no layer serves it (rotation, shear, a
    // layer too large).
    bool targetFor(const QTransform& deviceTransform, const QRect& device,
                   Target* target) const;
    // Brings the steps of every visible track up to date for \a target.
    void prepareSteps(const Target& target);
    // Brings the steps and the layer up to date for \a target.
    void prepareLayer(const Target& target);
    // The target the layer was last made for; false before the first.
    bool lastTarget(Target* target) const
    {
        *target = m_layerTarget;
        return m_layerValid;
    }
    const QImage& layer() const { return m_layer; }
    QPoint layerOrigin() const { return m_layerTarget.bounds.topLeft(); }
    quint64 layerBuildCount() const { return m_layerBuilds; }
    // Tracks mapped so far, over all builds.
    quint64 stepBuildCount() const { return m_stepBuilds; }
    // Bytes of steps and layer held.
    size_t memory() const;

    // The drawn sample nearest to a scene point, as nearestSample() finds
    // it.
    struct Found
    {
        QString track;
        qint64 index = -1;
        double distance2 = 0.0;  // squared, scene pixels
    };
    // Finds the drawn sample nearest to \a scenePos within \a radius scene
    // pixels, among the visible tracks' samples in the time window, using
    // the steps for \a target. False, leaving \a found alone, when none is
    // or the tracks are not shown.
    bool nearestSample(const QPointF& scenePos, double radius, const Target& target,
                       Found* found);

    // The visible part of \a track in \a steps: the time window's samples.
    bool spanOf(SkyTrackSet::Track& track, const SkyTrackSteps& steps, SkyStepSpan* span) const;
    // What the steps of \a track for \a target depend on.
    SkyTrackSteps::Key keyFor(SkyTrackSet::Track& track, const SkyDeviceMap& map) const;
    // Scene pixels to device pixels of \a target, through the layout.
    SkyDeviceMap deviceMap(const Target& target) const;

private:
    bool layerIsCurrent(const Target& target) const;
    void buildLayer(const Target& target);
    void drawPolylines(QPainter* painter);

    std::map<QString, SkyTrackSteps> m_steps;
    SkyRaster m_raster;
    QImage m_layer;
    Target m_layerTarget;
    bool m_layerValid = false;
    quint64 m_layerSetVersion = 0;
    quint64 m_layerSettingsVersion = 0;
    quint64 m_layerLayoutVersion = 0;
    quint64 m_layerBuilds = 0;
    quint64 m_stepBuilds = 0;
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_TRACKS_P_H
