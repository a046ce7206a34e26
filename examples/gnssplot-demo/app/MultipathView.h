// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_MULTIPATHVIEW_H
#define GNSSDEMO_MULTIPATHVIEW_H

#include <CurveGraphicsView.h>

class QLabel;

namespace gnssdemo {

/*!
    The demo's curve view, one per quantity (multipath, signal strength,
    satellites per epoch): a CurveGraphicsView whose Y range the host
    chooses. The library's view zooms about the largest |Y| of every curve,
    hidden ones and hidden axes included, so one wild sample flattens the
    day. This view starts from a range the host sets (from the curves that
    are shown) and lets the wheel scale it about its middle by the library's
    steps; with no range set it behaves like its base class.

    It also says why it is empty, in words over the plot, and keeps the time
    axis of the file shown when there is no curve to give it one.
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
    /*! Half of the base range's height; 0 when no range is set. */
    double baseHalfRange() const { return m_base; }
    /*! Shows Y from \a yMin to \a yMax, scaled about their middle by the
        wheel's zoom factor. A range that is not finite or not ascending
        hands the range back to the library's fit. */
    void setBaseRange(double yMin, double yMax);
    /*! The middle of the base range (0 for a half-range). */
    double baseCentre() const { return m_centre; }

    /*! The span of the file shown, GPST milliseconds: the time axis covers
        it when no curve has data, so that an empty plot still reads the
        file's date and hours rather than those of the file before. An empty
        or reversed span forgets it. */
    void setTimeSpan(double tMin, double tMax);
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
    double m_centre = 0.0;
    double m_spanMin = 0.0;
    double m_spanMax = 0.0;
    double m_zoom = 1.0;
};

} // namespace gnssdemo

#endif // GNSSDEMO_MULTIPATHVIEW_H
