// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSITEM_COORD_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_COORD_P_H

#include <QBrush>
#include <QFont>
#include <QGraphicsObject>
#include <QMap>
#include <QPen>
#include <QPointer>
#include <QRectF>
#include <QString>

class Curve_Coord;
class CurveGraphicsItem_ShowWhichY;

/*
    Base of the coordinate frame items: ties a frame to a Curve_Coord and
    repaints it whenever the coordinate's area changes.

    Frame coordinates: the origin is the bottom-left corner of the data area,
    X grows to the right and Y downward, so the data area spans x 0 .. width and
    y -height .. 0 (pixels). The curve items are children of the frame and share
    this system.
*/
class CurveGraphicsItem_Coord : public QGraphicsObject
{
    Q_OBJECT
public:
    // \a coord may be null; the frame does not own it.
    CurveGraphicsItem_Coord(Curve_Coord* coord, QGraphicsItem* parent);

    // Pixel size (\a w x \a h) of the whole frame, label strips included.
    virtual void setPixelSize(int w, int h);

signals:
    // Width and height of the data area in pixels.
    void sgDataAreaChanged(double w, double h);

private slots:
    void onCoordAreaChanged();
};

/*
    The rectangular X/Y frame: an 80-pixel left label strip, a data area of 25
    of every 27 pixel rows and a bottom strip of the remaining 2, axes, two grid
    lines, a tinted lower half, tick labels and the date and time-system
    captions. Carries the Y-selection item in its upper left corner.
*/
class CurveGraphicsItem_Coord_PXPY : public CurveGraphicsItem_Coord
{
    Q_OBJECT
public:
    CurveGraphicsItem_Coord_PXPY(Curve_Coord* coord, QGraphicsItem* parent);

    // Splits the frame of \a w x \a h pixels into strips and data area, lays
    // the labels out again, repaints and emits sgDataAreaChanged().
    void setPixelSize(int w, int h) override;
    // Replaces every label and caption (keys are tick fractions 0..1) and lays
    // them out. Does not repaint.
    void setLabels(const QMap<double, QString>& xLabels, const QMap<double, QString>& yLabels,
                   const QString& dateText, const QString& timeSystemText);
    // Centres every X label on its tick and leaves out those that would not
    // fit (true), or pulls the outer two flush with the data area's edges
    // (false, the default). Takes effect at the next layout.
    void setXLabelsCentred(bool bCentred) { m_xLabelsCentred = bCentred; }
    bool xLabelsCentred() const { return m_xLabelsCentred; }
    // Computes the label and caption rectangles from the font metrics.
    void layoutLabels();
    CurveGraphicsItem_ShowWhichY* getShowWhichY() const;
    // The data area in frame coordinates: (0, -height, width, height).
    QRectF getDataRect() const;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Read access for the scene and for tests.
    const QMap<double, QString>& xLabels() const { return m_xLabels; }
    const QMap<double, QString>& yLabels() const { return m_yLabels; }
    const QMap<double, QRectF>& xLabelRects() const { return m_xLabelRects; }
    const QMap<double, QRectF>& yLabelRects() const { return m_yLabelRects; }
    QString dateText() const { return m_dateText; }
    QRectF dateRect() const { return m_dateRect; }
    QString timeSystemText() const { return m_timeSystemText; }
    QRectF timeSystemRect() const { return m_timeSystemRect; }
    double bottomHeight() const { return m_bottomHeight; }
    QFont font() const { return m_font; }

private:
    void placeShowWhichY();

    double m_dataWidth;
    double m_dataHeight;
    int m_leftMargin;
    double m_bottomHeight;
    QMap<double, QString> m_xLabels;
    QMap<double, QString> m_yLabels;
    QMap<double, QRectF> m_xLabelRects;
    QMap<double, QRectF> m_yLabelRects;
    QString m_dateText;
    QRectF m_dateRect;
    QString m_timeSystemText;
    QRectF m_timeSystemRect;
    QPen m_axisPen;
    QPen m_gridPen;
    QPen m_textPen;
    QBrush m_bandBrush;
    QFont m_font;
    CurveGraphicsItem_ShowWhichY* m_showWhichY;
    bool m_xLabelsCentred = false;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_COORD_P_H
