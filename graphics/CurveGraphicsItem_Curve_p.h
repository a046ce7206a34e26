#ifndef GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H

#include "CurveScene.h"
#include "StrokeReduction_p.h"

#include <QGraphicsObject>
#include <QList>
#include <QMap>
#include <QPen>
#include <QPointer>
#include <QPolygon>
#include <QString>
#include <QVector>

#include <set>

class Curve_Coord;
class Curve_Coord_XY;
class Curve_DataSet;
class Curve_DataSet_XY;
class QPainter;

/*
    What every curve item needs: the registry, the coordinate, the curve's name
    and data set, and a listening switch. Makes the signal connections; the
    slots do nothing while the item is not listening.

    The registry, coordinate and data set are held through QPointer. The
    registry deletes an auto-deleted coordinate before it announces its
    replacement, and an owned data set before it announces the curve's removal;
    in between, and afterwards, the item must never reach them. When the
    registry's local coordinate is replaced the item re-binds to the new one
    (see onScene_coordChanged()).
*/
class CurveGraphicsItem_Curve : public QGraphicsObject
{
    Q_OBJECT
public:
    // Stores the four values (none is owned) and connects the registry, the
    // coordinate and the data set, each when it is not null.
    CurveGraphicsItem_Curve(CurveScene* curveScene, Curve_Coord* coord, const QString& curveName,
                            Curve_DataSet* dataSet, QGraphicsItem* parent);

    void switchOnListen() { m_listen = true; }
    void switchOffListen() { m_listen = false; }
    bool isListening() const { return m_listen; }
    const QString& curveName() const { return m_curveName; }
    Curve_Coord* coord() const { return m_coord.data(); }

    // Which Y indexes are drawn, read by position in key order.
    virtual void setVisibleSelection(const QMap<QString, bool>& selection);
    // Draws the Y axes in the single-show colours (or back in the normal ones).
    virtual void setSingleShow(bool bSingle);
    // Size of the data area in pixels; a negative height flips the Y mapping.
    virtual void setDataArea(double w, double h);
    // Maps the samples into the data area and cuts them into runs.
    virtual void rebuildPolylines() = 0;
    // Reads colour, drawing style and visibility from the registry.
    virtual void applyShowParam() = 0;

private slots:
    void onScene_coordChanged();
    void onScene_curveShowParamChanged(QString curveName);
    void onCoord_areaChanged();
    void onAxis_areaChanged(int userType);
    void onAxis_dataChanged(int userType);
    void onDataAreaChanged(double w, double h);

private:
    void rebindCoord();

protected:
    QPointer<CurveScene> m_curveScene;
    QPointer<Curve_Coord> m_coord;
    QString m_curveName;
    QPointer<Curve_DataSet> m_dataSet;
    bool m_listen;
};

/*
    Draws the Y axes of a Curve_DataSet_XY against its X axis through a
    Curve_Coord_XY. Keeps a cache of integer polylines in item pixels, rebuilt
    on a change of data, area or size; paint() only draws the cache. Item
    coordinates are the frame's: the data area spans x 0 .. width and
    y -height .. 0.
*/
class CurveGraphicsItem_Curve_XY : public CurveGraphicsItem_Curve
{
    Q_OBJECT
public:
    CurveGraphicsItem_Curve_XY(CurveScene* curveScene, Curve_Coord* coord,
                               const QString& curveName, Curve_DataSet* dataSet,
                               QGraphicsItem* parent);

    void setVisibleSelection(const QMap<QString, bool>& selection) override;
    void setSingleShow(bool bSingle) override;
    void setDataArea(double w, double h) override;
    void rebuildPolylines() override;
    void applyShowParam() override;
    // Pen colour for an item without registry, alpha kept as given.
    void setPenColor(const QColor& color);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Read access for the scene and for tests: every point of every run.
    const QVector<QList<QPolygon>>& polylines() const { return m_polylines; }
    // Lets tests have Qt draw every point, neither counted nor reduced.
    void setReducedDrawingEnabled(bool bEnabled) { m_reducedDrawing = bEnabled; }
    // Whether a polyline in \a pen may be drawn from its per-column copy
    // (first, extremes, last) on this painter: only where that gives the
    // very same pixels.
    bool canDrawReduced(const QPainter* painter, const QPen& pen) const;
    // The points of run \a r of Y index \a k that \a painter must draw with
    // \a pen to give the pixels of the whole run; worked out on first use for
    // a painter setup and kept until the next rebuild.
    const QPolygon& pointsToDraw(int k, int r, const QPainter* painter, const QPen& pen);
    const QVector<QPen>& yPens() const { return m_yPens; }
    const QPen& pen() const { return m_pen; }
    ECurveShowCap showCap() const { return m_showCap; }
    const QMap<QString, bool>& visibleSelection() const { return m_visibleSelection; }
    int dataAreaWidth() const { return m_dataAreaWidth; }
    int dataAreaHeight() const { return m_dataAreaHeight; }
    bool isYDown() const { return m_yDown; }

    // Pixel coordinates are kept within +-kPixelLimit so that every int
    // computed from them, also inside Qt, stays far from overflow.
    static constexpr int kPixelLimit = 1 << 28;
    // Samples of one area beyond this count are not drawn: a run of them
    // would not fit into one Qt container.
    static constexpr qint64 kMaxSamples = qint64(1) << 27;
    // Truncates toward zero for |v| < kPixelLimit, saturates beyond it, and
    // maps NaN to 0.
    static int toPixel(double v);

private:
    void recolourYPens(bool bSingle);
    void mapAndCut(qint64 count, const double* xs, const double* ys,
                   const std::set<qint64>& breaks, QList<QPolygon>& runs) const;

    QPointer<Curve_Coord_XY> m_coordXY;
    QPointer<Curve_DataSet_XY> m_dataSetXY;
    QVector<QList<QPolygon>> m_polylines;
    bool m_reducedDrawing = true;
    // Per run, the points drawn in its place on the painter setup they were
    // last worked out for (see pointsToDraw()). The full run's point count
    // still sets the line width.
    struct DrawnRun
    {
        enum Mode { Unknown, Every, Columns, Stroke };
        Mode mode = Unknown;
        StrokeTarget target;  // for Stroke
        QPolygon points;
        bool reduced = false;  // points holds fewer points than the run
    };
    QVector<QVector<DrawnRun>> m_drawn;
    int m_dataAreaWidth;
    int m_dataAreaHeight;
    QPen m_pen;
    QVector<QPen> m_yPens;
    ECurveShowCap m_showCap;
    QMap<QString, bool> m_visibleSelection;
    bool m_yDown;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
