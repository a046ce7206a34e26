// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVECOMPOSITION_P_H
#define GNSSPLOT_CURVECOMPOSITION_P_H

#include "CurvePicture_p.h"

#include <QPoint>
#include <QVector>

#include <functional>
#include <utility>
#include <vector>

class CurveGraphicsItem_Curve_XY;
class QPainter;

/*
    The curves that share one picture, in drawing order, and that picture:
    the scene has one for the curve items under its frame, and an item
    painted on its own has one for itself. The picture is built again only
    when the target, the members, their order or one of their versions
    changed, so re-painting an unchanged plot is one drawImage.

    The first member paints the whole picture when the scene paints it; the
    others paint nothing. Something drawn on top of one curve (a marker, a
    curve shown in front while named) belongs after the picture, in the
    last member's paint or an item above the curves.
*/
class CurveComposition
{
public:
    using Members = std::function<QVector<CurveGraphicsItem_Curve_XY*>()>;
    explicit CurveComposition(Members members);

    // How the passes are mixed; a change rebuilds at the next paint.
    void setMix(CurvePicture::Mix mix) { m_mix = mix; }
    CurvePicture::Mix mix() const { return m_mix; }

    // Builds the picture of the members for \a target unless it is current.
    void prepare(const PictureTarget& target);
    // Paints for \a item: the first member draws the picture, shifted by
    // \a shift device pixels; others draw nothing.
    void paint(const CurveGraphicsItem_Curve_XY* item, QPainter* painter,
               const PictureTarget& target, const QPoint& shift);

    const CurvePicture& picture() const { return m_picture; }
    // Lets go of the picture's memory; the next paint builds it again.
    void release();

private:
    Members m_members;
    CurvePicture m_picture;
    CurvePicture::Mix m_mix = CurvePicture::Mix::InOrder;
    CurvePicture::Mix m_builtMix = CurvePicture::Mix::InOrder;
    std::vector<std::pair<const void*, quint64>> m_built;
    const void* m_first = nullptr;
};

#endif // GNSSPLOT_CURVECOMPOSITION_P_H
