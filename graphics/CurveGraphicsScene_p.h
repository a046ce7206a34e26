// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSSCENE_P_H
#define GNSSPLOT_CURVEGRAPHICSSCENE_P_H

#include "CurveNearest_p.h"

#include <QColor>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QTransform>

class CurveComposition;
class CurveGraphicsItem_Curve_XY;
class CurveGraphicsScene;
class CurvePicture;

/*
    What a CurveGraphicsScene offers the view and its own curve items beyond
    its public interface: the picture its curves share, the data area of its
    frame and the nearest drawn sample. The view asks the scene rather than
    looking through the scene's items.
*/
struct CurveGraphicsSceneAccess
{
    // The composition \a item is painted through: its scene's, when the
    // item is a curve under that scene's frame; null otherwise.
    static CurveComposition* compositionOf(const CurveGraphicsItem_Curve_XY* item);
    // Builds the picture of \a scene's curves for a viewport of \a size
    // logical pixels at \a ratio, seen through \a viewTransform, unless it is
    // current.
    static void preparePicture(CurveGraphicsScene* scene, const QTransform& viewTransform,
                               const QSize& size, qreal ratio);
    // The frame's data area in scene coordinates; null without a frame.
    static QRectF dataRectInScene(const CurveGraphicsScene* scene);

    struct Nearest
    {
        QString curveName;
        CurveNearest::Nearest sample;
    };
    // The drawn sample nearest to \a scenePos within \a radius pixels, over
    // the scene's visible curves; false when there is none or the point is
    // outside the data area.
    static bool nearestSample(CurveGraphicsScene* scene, const QPointF& scenePos, double radius,
                              Nearest* nearest);

    // Whether the curves mix by count instead of drawing order.
    static void setMixByCount(CurveGraphicsScene* scene, bool bByCount);
    static bool isMixByCount(const CurveGraphicsScene* scene);

    // The unit of the Y labels; empty gives the translated "m". Relabels
    // when it changes.
    static void setValueUnit(CurveGraphicsScene* scene, const QString& unit);
    static QString valueUnit(const CurveGraphicsScene* scene);

    // The colour event marks of \a kind are drawn in; an invalid colour
    // gives the default back. False when the colour drawn stays the same.
    static bool setEventKindColor(CurveGraphicsScene* scene, int kind, const QColor& color);
    static QColor eventKindColor(const CurveGraphicsScene* scene, int kind);
    // The kinds of the marks at sample \a index of \a curveName.
    static QList<int> eventKindsAt(const CurveGraphicsScene* scene, const QString& curveName,
                                   qint64 index);

    // The picked-sample marker: while on, setPicked() names the sample the
    // ring goes round and whose curve is drawn in front; clearPicked() takes
    // both away. Only the overlay repaints.
    static void setPickedMarker(CurveGraphicsScene* scene, bool bOn);
    static bool isPickedMarker(const CurveGraphicsScene* scene);
    static void setPicked(CurveGraphicsScene* scene, const QString& curveName, int yIndex,
                          qint64 index);
    static void clearPicked(CurveGraphicsScene* scene);

    // The shared picture of the curves and the front picture of the named
    // curve, for tests and benchmarks that count their builds.
    static const CurvePicture* picture(const CurveGraphicsScene* scene);
    static const CurvePicture* frontPicture(const CurveGraphicsScene* scene);
};

#endif // GNSSPLOT_CURVEGRAPHICSSCENE_P_H
