// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_MULTIPATHVIEW_H
#define GNSSDEMO_MULTIPATHVIEW_H

#include <CurveGraphicsView.h>

class QLabel;

namespace gnssdemo {

/*!
    The demo's curve view: a CurveGraphicsView whose Y range the host
    chooses. The library's view zooms about the largest |Y| of every curve,
    hidden ones and hidden axes included, so one wild sample flattens the
    day. This view starts from a half-range the host sets (from the curves
    that are shown) and lets the wheel scale that by the library's steps;
    with no half-range set it behaves like its base class.

    It also says why it is empty, in words over the plot.
*/
class MultipathView : public CurveGraphicsView
{
    Q_OBJECT
public:
    explicit MultipathView(QWidget* parent = nullptr);

    /*! Shows Y from -\a halfRange to +\a halfRange times the wheel's zoom
        factor, X over all data. 0 (or anything not positive and finite)
        hands the range back to the library's fit. */
    void setBaseHalfRange(double halfRange);
    double baseHalfRange() const { return m_base; }
    /*! The wheel's factor on the base half-range; 1 until the wheel turns. */
    double zoomFactor() const { return m_zoom; }
    /*! Back to a zoom factor of 1. */
    void resetZoom();

    /*! A sentence shown over the plot, e.g. why it has no curve; empty for
        none. */
    void setEmptyText(const QString& text);
    QString emptyText() const;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyRange();

    QLabel* m_emptyLabel;
    double m_base = 0.0;
    double m_zoom = 1.0;
};

} // namespace gnssdemo

#endif // GNSSDEMO_MULTIPATHVIEW_H
