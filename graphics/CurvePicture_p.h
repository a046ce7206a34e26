// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEPICTURE_P_H
#define GNSSPLOT_CURVEPICTURE_P_H

#include "CoordMapping_p.h"
#include "CurveRaster_p.h"
#include "CurveScene.h"
#include "CurveSnapshot_p.h"

#include <QImage>
#include <QPolygon>
#include <QPen>
#include <QRect>

#include <vector>

class QPainter;

// Where a picture is painted: the item-to-device transform (a scale and an
// offset) and the device pixels the picture covers.
struct PictureTarget
{
    double m11 = 1.0;
    double m22 = 1.0;
    double dx = 0.0;
    double dy = 0.0;
    QRect bounds;
    bool matches(const PictureTarget& other) const;
};

/*
    The device columns of one curve's X samples for one target: what a
    curve keeps between pictures. With X in order (time, as a rule) they are
    kept as steps, a few entries per pixel column, for the samples that can
    reach the target and one neighbour on each side; otherwise one column
    per sample. Worked out again only when the X area, the target's columns
    or the samples change, so a Y wheel step maps no X value.
*/
class CurveColumns
{
public:
    void update(const CurveSnapshot& snapshot, const CoordMapping& mapping,
                const PictureTarget& target);
    // The column of sample j, mapped afresh outside the kept range.
    qint32 at(qint64 j) const;
    // The columns of samples j .. j + n - 1.
    void fill(qint64 j, qint64 n, qint32* columns) const;

    bool bSteps = false;
    CurveRaster::ColumnSteps steps;
    std::vector<qint32> perSample;
    // The samples that can set a pixel of the target.
    qint64 first = 0;
    qint64 last = -1;

private:
    qint32 mapOne(qint64 j) const;

    struct Key
    {
        double xMin = 0.0, xMax = 0.0, m11 = 0.0, dx = 0.0, left = 0.0, width = 0.0;
        int columnLeft = 0, columnRight = -1;
        qint64 count = -1;
        quint64 dataVersion = 0;
        bool operator==(const Key& o) const;
    } m_key;
    CoordMapping m_mapping{QRectF(), 0.0, 1.0, 0.0, 1.0, false};
    double m_m11 = 1.0;
    double m_dx = 0.0;
    const double* m_xs = nullptr;
};

// One Y index of one curve, as the picture draws it.
struct CurvePass
{
    const CurveSnapshot* snapshot = nullptr;
    const CurveColumns* columns = nullptr;
    CoordMapping mapping{QRectF(), 0.0, 1.0, 0.0, 1.0, false};
    int yIndex = 0;
    QPen pen;
    ECurveShowCap cap = ECurveShowCap_Line;
};

/*
    The curves of a view composed into one picture at device resolution,
    which the view paints with one drawImage. Long runs (drawn with the
    one-pixel pen) are counted per pixel with the plot's line rule and turned
    into colour through a table of n-fold blends; short runs and points are
    drawn with QPainter. By default each pass (one Y index of one curve) is
    composed over the passes before it, in drawing order. With the mix by
    count, a pixel's colour depends on how many crossings of each colour reach
    it and not on their order: the colours are averaged by their coverage
    (1 - (1 - alpha)^n each) and the coverages combined; short runs and
    points, and curves whose X is not in order, are then drawn on top.

    The counting runs over blocks of a few pixel columns, each owned by one
    worker thread, so the counters stay in the first levels of cache and no
    counts are merged; the picture is the same for any number of threads.
*/
class CurvePicture
{
public:
    enum class Mix { InOrder, ByCount };

    void build(const PictureTarget& target, const std::vector<CurvePass>& passes, Mix mix);
    // Lets go of the image and the counters' memory.
    void release();

    const QImage& image() const { return m_image; }
    const PictureTarget& target() const { return m_target; }
    quint64 buildCount() const { return m_builds; }

private:
    bool buildInStripes(const std::vector<CurvePass>& passes, Mix mix);
    void paintRunsNear(const CurvePass& pass, bool bThinToo, const std::vector<int>& points,
                       int c0, int c1, QPainter& painter, QPolygon& out) const;
    void countInOrder(const std::vector<CurvePass>& passes, const std::vector<int>& batch);
    void countAlone(const CurvePass& pass);
    // Over blocks firstBlock .. endBlock - 1, or all of them on the pool.
    void countByCount(const std::vector<CurvePass>& passes, const std::vector<int>& batch,
                      int firstBlock = -1, int endBlock = -1);
    void paintRuns(const CurvePass& pass, bool bThinToo);

    QImage m_image;
    PictureTarget m_target;
    quint64 m_builds = 0;
};

#endif // GNSSPLOT_CURVEPICTURE_P_H
