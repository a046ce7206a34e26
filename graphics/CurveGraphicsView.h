// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSVIEW_H
#define GNSSPLOT_CURVEGRAPHICSVIEW_H

#include "gnssplot_global.h"

#include "CurveScene.h"

#include <QGraphicsView>
#include <QPointer>

class CurveGraphicsScene;

/*!
    \class CurveGraphicsView
    \brief The widget that shows a curve plot: it creates its own
    CurveGraphicsScene, keeps the coordinate frame filling its viewport, and
    zooms the Y range with the mouse wheel.

    The zoom keeps the Y range symmetric about zero: its half-range is the
    largest absolute Y value of all curves times a zoom factor, which each
    wheel step multiplies by 1.15 (forward) or 0.85 (backward or zero delta),
    within 5e-5 .. 20. The X range always spans all data. Wheel events are
    left unaccepted so that they reach the parent widget; the view never
    scrolls on them.

    The host registers curves through getCurveScene().
*/
class GNSSPLOT_EXPORT CurveGraphicsView : public QGraphicsView
{
    Q_OBJECT
public:
    /*! Creates the view and its scene (a Qt child of the view) with an empty
        registry and a zoom factor of 1. */
    explicit CurveGraphicsView(QWidget* parent = nullptr);
    /*! Destroys the view; the scene dies with it as its Qt child. */
    ~CurveGraphicsView() override;

    /*! The registry of the view's scene, or null if the scene is gone. */
    CurveScene* getCurveScene();
    /*! Sets the local coordinate's area to the full X range of all curves and
        a Y range of -h .. +h, h being the largest absolute Y value times the
        zoom factor (curve items do not react while it changes), then gives the
        frame the viewport's size, refits it and repaints. Without curves,
        without an X/Y coordinate or when the range would be empty, the area
        stays as it was. */
    void setCurvesPosToVerticalZero();

protected:
    /*! One zoom step per event (see the class description); the event is
        ignored so that it propagates. */
    void wheelEvent(QWheelEvent* event) override;
    /*! Gives the frame the new viewport size in pixels and fits it in. */
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void onScene_coordChanged();

private:
    void fitCoordRect();

    QPointer<CurveGraphicsScene> m_scene;
    double m_maxZoom;
    double m_minZoom;
    double m_zoomStep;
    double m_zoom;

    Q_DISABLE_COPY(CurveGraphicsView)
};

#endif // GNSSPLOT_CURVEGRAPHICSVIEW_H
