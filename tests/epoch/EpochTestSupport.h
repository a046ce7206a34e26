#ifndef GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H
#define GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H

// Small builders shared by the epoch table tests.

#include "stEpochDataSet.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

#include <initializer_list>

using EpochPair = QPair<qint64, qint64>;
using EpochData = QMap<QString, QList<stEpochDataSet>>;

inline stEpochDataSet epochSet(std::initializer_list<EpochPair> ranges)
{
    stEpochDataSet set;
    for (const EpochPair& range : ranges)
        set.ranges.append(range);
    return set;
}

// Satellites "G01".."Gnn", each with `bands` data sets without pairs: one
// bar over the whole range per band.
inline EpochData epochSatellites(int count, int bands = 1)
{
    EpochData data;
    for (int i = 1; i <= count; ++i) {
        QList<stEpochDataSet> sets;
        for (int b = 0; b < bands; ++b)
            sets.append(stEpochDataSet());
        data.insert(QStringLiteral("G%1").arg(i, 2, 10, QLatin1Char('0')), sets);
    }
    return data;
}

inline QMap<QString, bool> allEnabled(const EpochData& data, bool bEnabled = true)
{
    QMap<QString, bool> map;
    for (auto it = data.cbegin(); it != data.cend(); ++it)
        map.insert(it.key(), bEnabled);
    return map;
}

inline QImage whiteImage(int w, int h)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

// Rendered images go to /tmp so that a person can look at them.
inline void saveImage(const QImage& image, const QString& name)
{
    image.save(QDir::tempPath() + QStringLiteral("/gnssplot-epoch-%1.png").arg(name));
}

inline QColor pixelAt(const QImage& image, int x, int y)
{
    return QColor::fromRgba(image.pixel(x, y));
}

#endif // GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H
