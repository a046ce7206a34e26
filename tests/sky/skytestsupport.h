// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYTESTSUPPORT_H
#define GNSSPLOT_SKYTESTSUPPORT_H

// Helpers of the sky plot's tests: tracks from plain vectors, the view's
// items, and a view laid out at a known size.

#include "graphics/graphicstestsupport.h"

#include "CurveScene.h"
#include "Curve_DataSet_XY.h"
#include "SkyGraphicsView.h"

#include <QRandomGenerator>

#include <cmath>

namespace st {

const double kDay0 = 1.7220384e12;  // 2024-07-27 00:00:00 GPST, ms since 1970

// One track's samples as a host holds them.
struct Track
{
    QVector<double> times;
    QVector<double> azimuths;
    QVector<double> elevations;
    QVector<double> values;  // empty: no value axis
    std::set<qint64> breaks; // on the elevation axis
};

inline Curve_DataSet_XY* makeTrack(const Track& t)
{
    auto* set = new Curve_DataSet_XY(t.values.isEmpty() ? 2 : 3);
    gt::fillAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Time), t.times);
    gt::fillAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Azimuth), t.azimuths);
    gt::fillAxis(set->getAxisData(SkyGraphicsView::TrackAxis_Elevation), t.elevations,
                 t.breaks);
    if (!t.values.isEmpty())
        gt::fillAxis(set->getAxisData(SkyGraphicsView::TrackAxis_FirstValue), t.values);
    return set;
}

// An arc over the sky: \a n samples at 1 s from azimuth \a az0 to \a az1
// (unwrapped, taken modulo 360) and elevation \a el0 up to \a elTop and
// back down, with a value that follows the elevation plus noise.
inline Track arc(int n, double az0, double az1, double el0, double elTop, quint32 seed,
                 double noise = 0.0)
{
    QRandomGenerator rng(seed);
    Track t;
    for (int i = 0; i < n; ++i) {
        const double f = n > 1 ? double(i) / (n - 1) : 0.0;
        const double az = std::fmod(az0 + (az1 - az0) * f + 720.0, 360.0);
        const double el = el0 + (elTop - el0) * std::sin(f * 3.14159265358979);
        t.times.append(kDay0 + i * 1000.0);
        t.azimuths.append(az + noise * (rng.generateDouble() - 0.5));
        t.elevations.append(el + noise * (rng.generateDouble() - 0.5));
        t.values.append(30.0 + 20.0 * el / 90.0 + 4.0 * (rng.generateDouble() - 0.5));
    }
    return t;
}

inline void addTrack(SkyGraphicsView& view, const QString& name, const Track& t,
                     const QColor& colour = Qt::blue, bool bVisible = true)
{
    view.getTrackScene()->addCurve(name, makeTrack(t), true, colour, ECurveShowCap_Line,
                                   bVisible);
}

// A bare view whose viewport is \a size, shown (offscreen in the tests).
inline void prepare(SkyGraphicsView& view, const QSize& size)
{
    gt::makeBare(view);
    view.resize(size);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(view.viewport()->size(), size);
}

template <class T>
T* itemOf(SkyGraphicsView& view)
{
    return gt::itemsOf<T>(view.scene()).value(0);
}

} // namespace st

#endif // GNSSPLOT_SKYTESTSUPPORT_H
