// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_GRAPHICSTESTSUPPORT_H
#define GNSSPLOT_GRAPHICSTESTSUPPORT_H

// Helpers of the graphics tests: filling data sets, finding items, probing
// rendered pixels and keeping images of failures in /tmp.

#include "AxisData.h"
#include "Curve_DataSet_XY.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QtTest>

#include <functional>
#include <limits>
#include <set>

namespace gt {

const double NaN = std::numeric_limits<double>::quiet_NaN();

// A view whose viewport is the whole widget: no frame, no scroll bars, so
// viewport and widget pixels are the same.
inline void makeBare(QGraphicsView& view)
{
    view.setFrameShape(QFrame::NoFrame);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

inline void fillAxis(AxisData* axis, const QVector<double>& values,
                     const std::set<qint64>& breaks = {})
{
    axis->beginSetData();
    if (!values.isEmpty()) {
        QVERIFY(axis->allocData(values.size(), nullptr));
        std::copy(values.cbegin(), values.cend(), axis->getInSettingData(0, nullptr));
        QVERIFY(axis->setInSettingBreaks(breaks));
    }
    axis->endSetData(true);
}

// One Y axis per entry of ys over the X samples xs.
inline Curve_DataSet_XY* makeDataSet(const QVector<double>& xs,
                                     const QVector<QVector<double>>& ys)
{
    auto* dataSet = new Curve_DataSet_XY(ys.size());
    fillAxis(dataSet->getAxisData(0), xs);
    for (int k = 0; k < ys.size(); ++k)
        fillAxis(dataSet->getAxisData(k + 1), ys.at(k));
    return dataSet;
}

// The same over X samples 0, 1, 2, ...
inline Curve_DataSet_XY* makeDataSet(const QVector<QVector<double>>& ys)
{
    QVector<double> xs;
    for (int i = 0; i < ys.value(0).size(); ++i)
        xs.append(i);
    return makeDataSet(xs, ys);
}

// X 0..99; Y1 at \a high drops to \a low after a break at 29 and has an
// all-NaN stretch 60..69 fenced by breaks; Y2 runs at \a second.
inline Curve_DataSet_XY* brokenCurve(double high, double low, double second)
{
    QVector<double> y1(100, high);
    y1[30] = low;
    std::fill(y1.begin() + 60, y1.begin() + 70, NaN);
    Curve_DataSet_XY* dataSet = makeDataSet({y1, QVector<double>(100, second)});
    fillAxis(dataSet->getAxisData(1), y1, {29, 59, 69});
    return dataSet;
}

template <class T>
QList<T*> itemsOf(QGraphicsScene* scene)
{
    QList<T*> found;
    for (QGraphicsItem* item : scene->items(Qt::AscendingOrder)) {
        if (T* t = dynamic_cast<T*>(item))
            found.append(t);
    }
    return found;
}

// True when some pixel within \a radius of \a p passes \a test.
inline bool anyNear(const QImage& image, QPoint p, int radius,
                    const std::function<bool(QRgb)>& test)
{
    for (int y = p.y() - radius; y <= p.y() + radius; ++y) {
        for (int x = p.x() - radius; x <= p.x() + radius; ++x) {
            if (image.valid(x, y) && test(image.pixel(x, y)))
                return true;
        }
    }
    return false;
}

inline bool isBluish(QRgb c) { return qBlue(c) - qRed(c) > 80 && qBlue(c) - qGreen(c) > 80; }
inline bool isRed(QRgb c) { return qAlpha(c) == 255 && qRed(c) > 200 && qGreen(c) < 60; }

// Saves the image on failure, or always with GNSSPLOT_KEEP_IMAGES set.
inline bool keep(bool ok, const QImage& image, const QString& name)
{
    if (!ok || qEnvironmentVariableIsSet("GNSSPLOT_KEEP_IMAGES"))
        image.save(QStringLiteral("/tmp/gnssplot_%1.png").arg(name));
    return ok;
}

} // namespace gt

#define PIXEL_VERIFY(cond, image, name) QVERIFY2(gt::keep((cond), (image), (name)), #cond)

#endif // GNSSPLOT_GRAPHICSTESTSUPPORT_H
