// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H

#include "CurveRaster_p.h"
#include "CurveScene.h"

#include <QGraphicsObject>
#include <QImage>
#include <QList>
#include <QMap>
#include <QPen>
#include <QPointer>
#include <QPolygon>
#include <QString>
#include <QVector>

#include <memory>
#include <set>
#include <vector>

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

protected:
    // What a change of data or area means for the item's pixels; the base
    // rebuilds at once, an item that caches lazily only takes note.
    enum class Change { Data, Area };
    virtual void invalidate(Change change);

public slots:
    // Connected by the scene to the frame's data-area size.
    void onDataAreaChanged(double w, double h);

private slots:
    void onScene_coordChanged();
    void onScene_curveShowParamChanged(QString curveName);
    void onCoord_areaChanged();
    void onAxis_areaChanged(int userType);
    void onAxis_dataChanged(int userType);

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
    Curve_Coord_XY. Item coordinates are the frame's: the data area spans
    x 0 .. width and y -height .. 0.

    Nothing is worked out when a signal arrives: data, area and size changes
    only mark the item dirty and ask for a repaint, so a burst of them costs
    one rebuild. Before the view paints, the dirty items of a scene are
    rebuilt together, one per worker thread (prepareLayers()).

    On a raster device without antialiasing the item paints one image, its
    layer, at device-pixel resolution: long runs (drawn with the one-pixel
    pen) are counted per pixel with the plot's own line rule (CurveRaster)
    and turned into colour through a table of n-fold blends; short runs and
    points are drawn into the same image with QPainter. Re-painting an
    unchanged plot draws that image again and no segment. Vector devices get
    real polylines, long runs reduced to the first, lowest, highest and last
    point of each device-pixel column; antialiased painting gets every point.
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
    // Maps the samples into the data area and cuts them into integer runs
    // now; polylines() does it on demand.
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

    // Where a layer is painted: the item-to-device transform (a scale and an
    // offset) and the device pixels the layer covers.
    struct LayerTarget
    {
        double m11 = 1.0;
        double m22 = 1.0;
        double dx = 0.0;
        double dy = 0.0;
        QRect bounds;
        bool matches(const LayerTarget& other) const;
    };
    // The target for painting through \a deviceTransform onto a device of
    // \a devicePixels; false when no layer can serve it (shear, rotation).
    bool layerTargetFor(const QTransform& deviceTransform, const QRect& devicePixels,
                        LayerTarget* target) const;
    // Builds the layers of \a items that are out of date for their targets,
    // concurrently on the global thread pool; returns when all are done.
    // The images do not depend on the number of threads.
    static void prepareLayers(const QVector<CurveGraphicsItem_Curve_XY*>& items,
                              const QVector<LayerTarget>& targets);
    // How many layers the item has built so far.
    quint64 layerBuildCount() const { return m_layerBuilds; }
    // The layer as last built, and its top-left device pixel.
    const QImage& layer() const { return m_layer; }
    QPoint layerOrigin() const { return m_layerTarget.bounds.topLeft(); }
    // Runs of this many points or more are drawn with the one-pixel pen.
    static constexpr int kThinRun = 2000;

    // Pixel coordinates are kept within +-kPixelLimit so that every int
    // computed from them, also inside Qt, stays far from overflow.
    static constexpr int kPixelLimit = 1 << 28;
    // Samples of one area beyond this count are not drawn: a run of them
    // would not fit into one Qt container.
    static constexpr qint64 kMaxSamples = qint64(1) << 27;
    // The sample nearest to a point, as nearestSample() finds it.
    struct Nearest
    {
        int yIndex = -1;
        qint64 index = -1;
        double x = 0.0;
        double y = 0.0;
        double distance2 = 0.0;  // squared distance in item pixels
    };
    // Finds the drawn sample nearest to \a pos (item pixels) within
    // \a radius pixels and closer than \a limit2 (a squared distance): of the
    // Y indexes the selection shows, with numbers on both axes, inside the
    // data area. False, leaving \a nearest alone, when there is none or the
    // item is hidden. Sorted X samples are searched outward from the
    // cursor's time, others one by one.
    bool nearestSample(const QPointF& pos, double radius, double limit2, Nearest* nearest);

    // Truncates toward zero for |v| < kPixelLimit, saturates beyond it, and
    // maps NaN to 0.
    static int toPixel(double v);

protected:
    void invalidate(Change change) override;

private:
    // A stretch of samples between breaks, and how many of them have a
    // number on both axes.
    struct Run
    {
        qint64 begin;
        qint64 end;  // inclusive
        qint64 points;
    };
    // What a rebuild reads, taken on the GUI thread so that the rebuild
    // itself can run on any thread.
    struct Source
    {
        const double* xs = nullptr;
        std::vector<const double*> ys;  // Y indexes up to the first missing one
        std::vector<qint64> counts;     // samples shared with the X axis
        double xMin = 0.0;
        double xMax = 0.0;
        double yMin = 0.0;
        double yMax = 0.0;
        int yIndexes = 0;               // axis count - 1
    };

    // What counting the thin runs of one Y index reads: its values and,
    // while X is in order, its row cache and the two sample ranges of the
    // cache that this build fills before reading them.
    struct RowSource
    {
        const double* ys = nullptr;
        qint32* cached = nullptr;
        qint64 fill[2][2] = {{0, -1}, {0, -1}};
    };

    bool takeSource();
    void updateRuns();
    void countPoints();
    void updateColumns(const LayerTarget& target);
    bool layerIsCurrent(const LayerTarget& target) const;
    // The Y indexes below \a count that the visible selection draws.
    std::vector<int> shownYIndexes(int count) const;
    // Samples drawn over all Y indexes, as of the last source taken.
    qint64 sampleCount() const;
    void buildLayer(const LayerTarget& target, int ways);
    RowSource rowSource(int yIndex, const LayerTarget& target);
    void countRun(const Run& run, qint64 begin, qint64 end, const RowSource& source,
                  const LayerTarget& target, CurveRaster::Counter& counter) const;
    bool countThinRuns(const std::vector<Run>& runs, const RowSource& source,
                       const LayerTarget& target, int ways,
                       std::vector<CurveRaster::Counter>& counters) const;
    void mapRun(const Run& run, const double* ys, QPolygon& out) const;
    void drawRuns(QPainter* painter, bool reduceThin) const;
    void recolourYPens(bool bSingle);
    void pixelsChanged();
    bool xSorted(qint64 count);

    QPointer<Curve_Coord_XY> m_coordXY;
    QPointer<Curve_DataSet_XY> m_dataSetXY;
    mutable QVector<QList<QPolygon>> m_polylines;
    mutable bool m_polylinesValid = false;
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

    Source m_source;
    std::vector<std::vector<Run>> m_runs;  // per Y index
    bool m_runsValid = false;
    // Device columns of the X samples for the columns key below: as steps
    // when X is in order, else one per sample (kNoPixel where a sample has
    // no place on the axis).
    bool m_columnsAsSteps = false;
    CurveRaster::ColumnSteps m_steps;
    std::vector<qint32> m_columns;
    struct ColumnsKey
    {
        double xMin = 0.0, xMax = 0.0, m11 = 0.0, dx = 0.0;
        int left = 0, right = -1;
        int width = -1;
        qint64 count = -1;
        quint64 dataVersion = 0;
        bool operator==(const ColumnsKey& o) const;
    } m_columnsKey;
    // The samples whose columns were worked out: those that can reach the
    // layer (all of them unless X is in order).
    qint64 m_visibleFirst = 0;
    qint64 m_visibleLast = -1;
    // Device rows per Y index, kept while X is in order so that moving or
    // zooming the time window maps no Y value again. Filled for the samples
    // of thin runs from first to last; memory is taken as it is filled.
    struct RowsKey
    {
        double yMin = 0.0, yMax = 0.0, top = 0.0, height = 0.0, m22 = 0.0, dy = 0.0;
        bool bYDown = false;
        const double* ys = nullptr;
        qint64 count = -1;
        quint64 dataVersion = 0;
        bool operator==(const RowsKey& o) const;
    };
    struct RowCache
    {
        RowsKey key;
        std::unique_ptr<qint32[]> rows;
        qint64 first = 0;
        qint64 last = -1;
    };
    std::vector<RowCache> m_rowCaches;
    quint64 m_dataVersion = 1;
    // Bumped by every change that can alter a pixel of the item.
    quint64 m_version = 1;
    QImage m_layer;
    LayerTarget m_layerTarget;
    quint64 m_layerVersion = 0;
    quint64 m_layerBuilds = 0;
    // Whether the X samples ascend, as last checked for the data version,
    // samples and count below.
    struct SortedKey
    {
        quint64 dataVersion = 0;
        const double* xs = nullptr;
        qint64 count = -1;
        bool bSorted = false;
    } m_sortedKey;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_CURVE_P_H
