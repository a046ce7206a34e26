// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSVIEW_P_H
#define GNSSPLOT_CURVEGRAPHICSVIEW_P_H

// The curve view's state, shared by its files: the view and its time
// navigation (CurveGraphicsView.cpp) and the hover read-out with what it
// names (CurveGraphicsView_Hover.cpp).

#include "CurveGraphicsView.h"

#include "CurveGraphicsScene.h"
#include "TimeNavigator_p.h"
#include "TimeWindow.h"

#include <QMap>
#include <QPointer>
#include <QString>

class CurveGraphicsView::PrivateData : public TimeNavigator::Target
{
public:
    explicit PrivateData(CurveGraphicsView* view)
        : q(view)
    {
    }

    bool navigationEnabled() const override { return m_nav.bEnabled; }
    TimeWindow navigationWindow() const override
    {
        double tMin = 0.0;
        double tMax = 0.0;
        q->getTimeWindow(tMin, tMax);
        return TimeWindow(tMin, tMax);
    }
    QRectF navigationArea() const override { return q->dataAreaInViewport(); }
    double navigationMinimumSpan() const override;
    void navigateTo(const TimeWindow& window) override { showWindow(window); }
    void navigateHome() override { q->resetTimeWindow(); }

    // The X range of all data; invalid without data.
    TimeWindow dataRange() const;
    // `window` fitted into the data; invalid when either is. `bActive` says
    // whether the fitted window leaves out part of the data.
    TimeWindow fitted(const TimeWindow& window, bool& bActive) const;
    // Shows `window`, fitted; emits when what is shown changes.
    bool showWindow(const TimeWindow& window);

    CurveGraphicsView* const q;
    QPointer<CurveGraphicsScene> m_scene;
    double m_maxZoom = 20.0;
    double m_minZoom = 5e-5;
    double m_zoomStep = 0.15;
    double m_zoom = 1.0;

    // Time navigation: the window is only in force while bActive.
    struct TimeNavigation
    {
        bool bEnabled = false;
        bool bActive = false;
        TimeWindow window;
    } m_nav;
    TimeNavigator* m_navigator = nullptr;
    int m_marginLeft = 0;
    int m_marginRight = 0;
    // Hover read-out and the sample it last reported.
    struct HoverState
    {
        bool bEnabled = false;
        bool bToolTip = false;
        bool bReported = false;
        HoverSample last;
    } m_hover;
    // Names of event kinds the host chose in place of the defaults.
    QMap<int, QString> m_kindNames;
};

#endif // GNSSPLOT_CURVEGRAPHICSVIEW_P_H
