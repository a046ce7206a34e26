// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSITEM_SHOWWHICHY_P_H
#define GNSSPLOT_CURVEGRAPHICSITEM_SHOWWHICHY_P_H

#include <QBrush>
#include <QFont>
#include <QGraphicsObject>
#include <QMap>
#include <QPen>
#include <QRectF>
#include <QString>

/*
    The clickable legend in the frame's left strip that chooses which Y axes of
    the curves are drawn: one box per entry ("F 1", "F 2"), toggled by a click.
    Entry k, in key order, stands for Y index k of every curve. The item only
    keeps and shows the choice; CurveGraphicsScene reads it on
    selectionChanged() and hands it to the curve items.
*/
class CurveGraphicsItem_ShowWhichY : public QGraphicsObject
{
    Q_OBJECT
public:
    explicit CurveGraphicsItem_ShowWhichY(QGraphicsItem* parent);

    // Replaces \a selection with a copy of the current choice.
    void getSelection(QMap<QString, bool>& selection) const;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // Item-coordinate rectangles of entry \a k's box and label, in pixels.
    static QRectF boxRect(int k);
    static QRectF labelRect(int k);

signals:
    // A click toggled at least one entry.
    void selectionChanged();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;

private:
    QRectF m_rect;
    QPen m_boxPen;
    QBrush m_firstBrush;
    QBrush m_otherBrush;
    QPen m_textPen;
    QFont m_font;
    QMap<QString, bool> m_selection;
};

#endif // GNSSPLOT_CURVEGRAPHICSITEM_SHOWWHICHY_P_H
