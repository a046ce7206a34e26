// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H

#include "CurveNearest_p.h"
#include "CurvePen_p.h"
#include "CurvePicture_p.h"
#include "CurveScene.h"
#include "CurveSnapshot_p.h"
#include "Curve_Coord.h"
#include "CurveVectorPainter_p.h"
#include "EventMark.h"

#include <QGraphicsObject>
#include <QList>
#include <QMap>
#include <QPen>
#include <QPointer>
#include <QPolygon>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

class Curve_Coord;
class Curve_Coord_XY;
class Curve_DataSet;
class Curve_DataSet_XY;
class CurveComposition;
class EventMarkPalette;
class QPainter;

/*
    What every curve item needs: the registry, the coordinate, the curve's name
    and data set, and a listening switch. Connects the coordinate's and the
    data set's signals; the graphics scene routes the registry's changes of
    this curve and of the coordinate to it. The reactions do nothing while
    the item is not listening.

    The registry, coordinate and data set are held through QPointer. The
    registry deletes an auto-deleted coordinate before it announces its
    replacement, and an owned data set before it announces the curve's removal;
    in between, and afterwards, the item must never reach them.
*/
class CurveGraphicsItem_Curve : public QGraphicsObject
{
    Q_OBJECT
public:
    // Stores the four values (none is owned) and connects the coordinate and
    // the data set, each when it is not null.
    CurveGraphicsItem_Curve(CurveScene* curveScene, Curve_Coord* coord, const QString& curveName,
                            Curve_DataSet* dataSet, QGraphicsItem* parent);

    void switchOnListen() { m_listen = true; }
    // Stops reacting; what the item shows stays that of the changes it heard.
    void switchOffListen();
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

    // Follows \a coord from now on, also while not listening: which object
    // the item follows is not a reaction to data, and a stale binding would
    // outlast the switch being turned on again. Then, when listening, takes
    // the area of the new coordinate.
    void rebindCoord(Curve_Coord* coord);
    // The registry changed this curve's colour, style or visibility.
    void showParamChanged();

protected:
    // What a change of data or area means for the item's pixels; the base
    // rebuilds at once, an item that draws lazily only takes note.
    enum class Change { Data, Area };
    virtual void invalidate(Change change);
    // Listening is about to stop: fix what the item shows now.
    virtual void freeze() {}

public slots:
    // Connected by the scene to the frame's data-area size.
    void onDataAreaChanged(double w, double h);

private slots:
    void onCoord_areaChanged();
    void onAxis_areaChanged(int userType);
    void onAxis_dataChanged(int userType);

protected:
    QPointer<CurveScene> m_curveScene;
    QPointer<Curve_Coord> m_coord;
    QString m_curveName;
    QPointer<Curve_DataSet> m_dataSet;
    bool m_listen;
};

/*
    Draws the Y axes of a Curve_DataSet_XY against its X axis through a
    Curve_Coord_XY. Item coordinates are the frame's: the data area spans
    x 0 .. width and y -height .. 0.

    The item keeps signals, geometry and the choice of how to paint. What it
    shows is a snapshot of the samples (CurveSnapshot) taken at the first
    paint after a change it listened to, or when listening stops; a burst
    of signals costs one snapshot. On a raster device without antialiasing
    the curves of a scene are composed into one picture (CurveComposition,
    CurvePicture), which the first of them paints; an item on its own has a
    picture of its own. Vector devices and antialiased painting get
    polylines (CurveVectorPainter).
*/
class CurveGraphicsItem_Curve_XY : public CurveGraphicsItem_Curve
{
    Q_OBJECT
public:
    CurveGraphicsItem_Curve_XY(CurveScene* curveScene, Curve_Coord* coord,
                               const QString& curveName, Curve_DataSet* dataSet,
                               QGraphicsItem* parent);
    ~CurveGraphicsItem_Curve_XY() override;

    void setVisibleSelection(const QMap<QString, bool>& selection) override;
    void setSingleShow(bool bSingle) override;
    void setDataArea(double w, double h) override;
    // Takes the samples and maps them into integer runs now; polylines()
    // does it on demand.
    void rebuildPolylines() override;
    void applyShowParam() override;
    // Pen colour for an item without registry, alpha kept as given.
    void setPenColor(const QColor& color);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Every point of every run, in item pixels: entry k holds the runs of Y
    // index k. Built on first use after a change.
    const QVector<QList<QPolygon>>& polylines() const;
    const QVector<QPen>& yPens() const { return m_yPens; }
    const QPen& pen() const { return m_pen; }
    ECurveShowCap showCap() const { return m_showCap; }
    const QMap<QString, bool>& visibleSelection() const { return m_visibleSelection; }
    int dataAreaWidth() const { return m_dataAreaWidth; }
    int dataAreaHeight() const { return m_dataAreaHeight; }
    bool isYDown() const { return m_yDown; }

    // The picture target for painting through \a deviceTransform onto a
    // device of \a devicePixels; false when no picture can serve it (shear,
    // rotation, a huge target).
    bool pictureTargetFor(const QTransform& deviceTransform, const QRect& devicePixels,
                          PictureTarget* target) const;
    // Takes the snapshot if a change came since; on the GUI thread.
    void syncSnapshot();
    // Brings the device columns of the X samples up to date for \a target;
    // reads only the snapshot, so it may run on any thread.
    void updateColumns(const PictureTarget& target);
    // Appends the passes the item draws into a picture for \a target, in
    // drawing order, after bringing its snapshot and columns up to date.
    void appendPasses(const PictureTarget& target, std::vector<CurvePass>& passes);
    // Changes whenever something that can alter a pixel of the item does.
    quint64 pictureVersion() const { return m_version; }
    // The picture the item painted on its own (not inside a curve scene).
    const CurvePicture* ownPicture() const;

    static constexpr qint64 kThinRun = CurvePen::kThinRun;
    static constexpr int kPixelLimit = CurveVectorPainter::kPixelLimit;
    static constexpr qint64 kMaxSamples = CurveSnapshot::kMaxSamples;
    static int toPixel(double v) { return CurveVectorPainter::toPixel(v); }

    using Nearest = CurveNearest::Nearest;
    // Finds the drawn sample nearest to \a pos (item pixels) within
    // \a radius pixels and closer than \a limit2 (a squared distance): of the
    // Y indexes the selection shows, with numbers on both axes, inside the
    // data area. False, leaving \a nearest alone, when there is none or the
    // item is hidden.
    bool nearestSample(const QPointF& pos, double radius, double limit2, Nearest* nearest);

    // Event marks: short ticks on the shown Y indexes at the marks' samples,
    // each in its kind's colour, drawn over every curve by the scene's
    // overlay. They are not part of the curves' picture, so setting them
    // builds no picture again.
    static constexpr int kTickHalfWidth = 1;
    static constexpr int kTickHalfHeight = 5;
    // Takes the curve's marks as the registry holds them.
    void setEventMarks(const QVector<EventMark>& marks);
    bool hasEventMarks() const { return !m_marks.empty(); }
    // The kinds of the marks at sample \a index, in the order given; empty
    // when there are none.
    QList<int> eventKindsAt(qint64 index) const;
    // Paints the ticks in item pixels: a (2 kTickHalfWidth + 1) x
    // (2 kTickHalfHeight + 1) block centred on the pixel the sample is drawn
    // in. Marks without a sample, a number or a place in the data area are
    // left out; nothing while the item is hidden.
    void paintEventMarks(QPainter* painter, const EventMarkPalette& palette);
    // The centre of the pixel that sample \a index of Y index \a yIndex is
    // drawn in, item pixels; false when it is not drawn (no such sample, a
    // NaN, outside the data area, a Y index the selection hides).
    bool samplePixelCentre(int yIndex, qint64 index, QPointF* centre);
    // Paints the curve as paint() does, but a picture through \a composition
    // (one the item is the first member of): the curve drawn once more in
    // front of the others.
    void paintThrough(QPainter* painter, CurveComposition* composition);

protected:
    void invalidate(Change change) override;
    void freeze() override;

private:
    void takeSnapshot();
    CoordMapping mapping() const;
    // The Y indexes below \a count that the visible selection draws.
    std::vector<int> shownYIndexes(int count) const;
    // The shown Y indexes that have samples, with the pen in force for each.
    std::vector<CurveVectorPainter::Pass> passes() const;
    void recolourYPens(bool bSingle);
    void pixelsChanged();
    CurveComposition* composition();

    QPointer<Curve_Coord_XY> m_coordXY;
    QPointer<Curve_DataSet_XY> m_dataSetXY;
    mutable QVector<QList<QPolygon>> m_polylines;
    mutable quint64 m_polylinesVersion = 0;
    int m_dataAreaWidth;
    int m_dataAreaHeight;
    QPen m_pen;
    QVector<QPen> m_yPens;
    ECurveShowCap m_showCap;
    QMap<QString, bool> m_visibleSelection;
    bool m_yDown;
    // Y indexes as of the last change heard: what an eager rebuild would
    // have made entries for.
    int m_yIndexes = 0;

    CurveSnapshot m_snapshot;
    // A change was heard that the snapshot does not hold yet.
    bool m_snapshotStale = false;
    CurveColumns m_columns;
    quint64 m_version = 0;
    std::unique_ptr<CurveComposition> m_ownComposition;
    // Sorted by sample index; marks of one index keep the order given.
    std::vector<EventMark> m_marks;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
