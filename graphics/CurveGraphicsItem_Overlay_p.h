// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSITEM_OVERLAY_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_OVERLAY_P_H

#include "CurveComposition_p.h"
#include "EventMarkPalette_p.h"

#include <QGraphicsObject>
#include <QPointer>
#include <QVector>

#include <functional>

class CurveGraphicsItem_Curve_XY;

/*
    What a curve scene draws over its curves, kept by the scene so that it
    outlives a frame rebuilt for a new coordinate: the colours of the event
    marks and the sample the hover read-out names, with the picture of that
    sample's curve drawn once more in front of the others.

    The front picture is one curve's and is built again only when another
    curve is named or that curve changes: moving the mouse from one sample
    to the next of the same curve, or anywhere over the shared picture of
    all curves, builds nothing.
*/
struct CurveOverlayState
{
    EventMarkPalette palette;
    // The picked-sample marker is switched on.
    bool bMarker = false;
    // The named sample; no curve while none is named.
    QPointer<CurveGraphicsItem_Curve_XY> picked;
    int pickedY = -1;
    qint64 pickedIndex = -1;
    CurveComposition front{[this]() {
        QVector<CurveGraphicsItem_Curve_XY*> members;
        if (picked)
            members.append(picked.data());
        return members;
    }};
};

/*
    The item over the curves of a frame (a child of the frame above the
    curve items, sharing its coordinates): the named curve in front, the
    event marks of every visible curve, then the ring around the named
    sample. Clipped to the data area. The scene makes it only once a mark
    or a marker is wanted, so a plot without either has no such item.
*/
class CurveGraphicsItem_Overlay : public QGraphicsObject
{
    Q_OBJECT
public:
    // The visible curve items in drawing order.
    using Curves = std::function<QVector<CurveGraphicsItem_Curve_XY*>()>;

    // The ring around the named sample: radius and pen width, item pixels.
    static constexpr double kRingRadius = 6.0;
    static constexpr double kRingWidth = 2.0;

    // \a state is the scene's and outlives the item.
    CurveGraphicsItem_Overlay(CurveOverlayState* state, Curves curves, QGraphicsItem* parent);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Repaints the ring about \a centre (item pixels) and what lies under
    // it, nothing else.
    void updateRing(const QPointF& centre);

public slots:
    // The frame's data area, \a w x \a h pixels, as the curve items take it.
    void onDataAreaChanged(double w, double h);

private:
    CurveOverlayState* m_state;
    Curves m_curves;
    int m_width = 0;
    int m_height = 0;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_OVERLAY_P_H
