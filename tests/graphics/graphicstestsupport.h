#ifndef GNSSPLOT_GRAPHICSTESTSUPPORT_H
#define GNSSPLOT_GRAPHICSTESTSUPPORT_H

// Helpers shared by the graphics tests: filling data sets, finding items,
// probing rendered pixels and keeping images of failures.

#include "AxisData.h"
#include "Curve_DataSet_XY.h"

#include <QGraphicsScene>
#include <QImage>
#include <QVector>
#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>
#include <set>

namespace gt {

const double NaN = std::numeric_limits<double>::quiet_NaN();

inline void fillAxis(AxisData* axis, const QVector<double>& values,
                     const std::set<qint64>& breaks = {})
{
    axis->beginSetData();
    if (!values.isEmpty()) {
        QVERIFY(axis->allocData(values.size(), nullptr));
        double* samples = axis->getInSettingData(0, nullptr);
        for (int i = 0; i < values.size(); ++i)
            samples[i] = values.at(i);
        QVERIFY(axis->setInSettingBreaks(breaks));
    }
    axis->endSetData(true);
}

// X samples 0, 1, 2, ... and one Y axis per entry of ys.
inline Curve_DataSet_XY* makeDataSet(const QVector<QVector<double>>& ys,
                                     const std::set<qint64>& breaks = {})
{
    auto* dataSet = new Curve_DataSet_XY(ys.size());
    QVector<double> xs;
    for (int i = 0; i < (ys.isEmpty() ? 0 : ys.first().size()); ++i)
        xs.append(i);
    fillAxis(dataSet->getAxisData(0), xs);
    for (int k = 0; k < ys.size(); ++k)
        fillAxis(dataSet->getAxisData(k + 1), ys.at(k), breaks);
    return dataSet;
}

inline QVector<double> constant(int n, double value)
{
    return QVector<double>(n, value);
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

// True when some pixel within \a radius of \a p satisfies \a test.
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

inline bool isBluish(QRgb c)
{
    return qAlpha(c) > 0 && qBlue(c) - qRed(c) > 80 && qBlue(c) - qGreen(c) > 80;
}

inline bool isRed(QRgb c)
{
    return qAlpha(c) == 255 && qRed(c) > 200 && qGreen(c) < 60 && qBlue(c) < 60;
}

inline bool isDark(QRgb c)
{
    return qAlpha(c) > 100 && qRed(c) < 160 && qGreen(c) < 160 && qBlue(c) < 160;
}

// Keeps the image for a person to look at when a probe failed, or always
// with GNSSPLOT_KEEP_IMAGES set.
inline void keepImage(const QImage& image, const QString& name, bool failed)
{
    if (failed || qEnvironmentVariableIsSet("GNSSPLOT_KEEP_IMAGES"))
        image.save(QStringLiteral("/tmp/gnssplot_%1.png").arg(name));
}

} // namespace gt

#define PIXEL_VERIFY(cond, image, name)                                                    \
    do {                                                                                   \
        const bool ok_ = (cond);                                                           \
        gt::keepImage((image), (name), !ok_);                                              \
        QVERIFY2(ok_, qPrintable(QStringLiteral("%1 (image /tmp/gnssplot_%2.png)")         \
                                     .arg(QLatin1String(#cond), QString(name))));           \
    } while (false)

#endif // GNSSPLOT_GRAPHICSTESTSUPPORT_H
