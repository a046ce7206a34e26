// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSSCENE_H
#define GNSSPLOT_CURVEGRAPHICSSCENE_H

#include "gnssplot_global.h"

#include "CurveScene.h"

#include <QColor>
#include <QGraphicsScene>

#include <memory>
#include <QMap>
#include <QPointer>
#include <QRectF>
#include <QString>

class Curve_Coord;
class Curve_Coord_XY;
class Curve_DataSet_XY;
class CurveGraphicsItem_Coord;
class CurveGraphicsItem_Curve;
class QGraphicsView;
class QPixmap;

/*!
    \class CurveGraphicsScene
    \brief The graphics scene that makes a CurveScene registry visible.

    The scene creates and owns its registry (getCurveScene()). For an X/Y local
    coordinate (Curve_Coord_XY) it keeps one coordinate frame item, and for
    every curve registered while that frame exists one curve item, drawn as a
    child of the frame. Whenever the coordinate's area changes it labels the
    time axis ("HH:mm:ss" ticks in UTC, the date "yyyy/MM/dd" and "GPST") and
    the Y axis (metres), and it relays the frame's Y-axis choice and the
    registry's single-show requests to the curve items.

    The scene's background is opaque white; its scene rectangle is
    (-5000, -5000, 10000, 10000) pixels. The frame sits at the scene origin,
    with the bottom-left corner of its data area there.

    When the registry's coordinate is replaced, the frame is rebuilt and every
    curve item is kept: it moves under the new frame, follows the new
    coordinate and is told the new frame's data-area size on its next change.
*/
class GNSSPLOT_EXPORT CurveGraphicsScene : public QGraphicsScene
{
    Q_OBJECT
public:
    /*! Creates the scene with \a view as its Qt parent (the view need not show
        it; it may be null) and an empty registry. Creates no items. */
    explicit CurveGraphicsScene(QGraphicsView* view);
    /*! Deletes the registry (and with it whatever it owns), then the items. */
    ~CurveGraphicsScene() override;

    /*! The registry of this scene; never null. The host sets the coordinate
        and registers curves through it. */
    CurveScene* getCurveScene();
    /*! The frame item's rectangle in scene coordinates (pixels), or a null
        rectangle while there is no frame (no X/Y local coordinate). */
    QRectF getCoordRect() const;
    /*! Gives the whole frame \a w x \a h pixels: an 80-pixel left label strip,
        a data area of 25/27 of the height and a bottom strip of 2/27. Does
        nothing without a frame. */
    void setCoordPixelSize(int w, int h);
    /*! Makes every curve item ignore data, area and size changes until
        switchOnCurvesListen(); use around bulk updates. Repaints nothing. */
    void switchOffCurvesListen();
    /*! Lets the curve items react again. Changes made in between stay unseen
        until the next change arrives. Repaints nothing. */
    void switchOnCurvesListen();

    /*! Puts the X ticks on round times of day (true): as many as fit the
        data area's width without overlapping labels, "HH:mm" or "HH:mm:ss",
        the date at midnight, each label centred on its tick and left out
        where it would not fit. false (the default) keeps the eleven evenly
        spaced "HH:mm:ss" ticks. Relabels at once when the setting changes. */
    void setRoundTimeTicks(bool bRound);
    /*! Whether the X ticks lie on round times of day. */
    bool hasRoundTimeTicks() const;

    /*! Draws one X/Y curve with its frame, axes and tick labels into
        \a pixmap, at the pixmap's current size, without any view or registry.
        The pixmap is first cleared to transparent; the frame takes an 80-pixel
        left strip and a bottom strip of 2/27 of the height; the curve (first Y
        axis only) is drawn in \a color as given, alpha included, and is not
        clipped to the data area. Y labels are the bare numbers at 0, 0.5 and 1
        of the area, X labels the UTC times of day at sixths of it. Does
        nothing when \a coord, \a dataSet or \a pixmap is null; a null (empty)
        pixmap gets nothing drawn. \a coord and \a dataSet are not changed.
        A pixmap with a device pixel ratio other than 1 is laid out at its
        size in device-independent pixels and drawn at full resolution. */
    static void DrawXYCurveToPixmap(Curve_Coord_XY* coord, Curve_DataSet_XY* dataSet,
                                    const QColor& color, QPixmap* pixmap);

private slots:
    void onSgCoordChanged();
    void onSgCurveAdded(QString curveName);
    void onSgCurveRemoved(QString curveName);
    void onSgCurveShowParamChanged(QString curveName);
    void onSgCoordAreaChanged();
    void onSgSingleShow(QString curveName, bool bSingle);
    void onSgCoordVisibleSelectionChanged();

private:
    void adjustCoordArea();
    friend struct CurveGraphicsSceneAccess;

    // The scene's state lives behind this pointer, so that later releases
    // can add to it without changing the class's size.
    class PrivateData;
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(CurveGraphicsScene)
};

#endif // GNSSPLOT_CURVEGRAPHICSSCENE_H
