// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H
#define GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H

// Small builders shared by the epoch table tests.

#include "stEpochDataSet.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QMap>

#include <limits>

using EpochPair = QPair<qint64, qint64>;
using EpochMarks = QMap<int, EpochPair>;
using EpochData = QMap<QString, QList<stEpochDataSet>>;
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

// Satellites "G01".."Gnn", each with `bands` data sets without pairs.
inline EpochData epochSatellites(int count, int bands = 1)
{
    EpochData data;
    for (int i = 1; i <= count; ++i)
        data.insert(QStringLiteral("G%1").arg(i, 2, 10, QLatin1Char('0')),
                    QVector<stEpochDataSet>(bands).toList());
    return data;
}

inline QMap<QString, bool> allEnabled(const EpochData& data)
{
    QMap<QString, bool> map;
    for (const QString& name : data.keys())
        map.insert(name, true);
    return map;
}

// Rendered images go to /tmp so that a person can look at them.
inline void saveImage(const QImage& image, QString name)
{
    name.replace(QLatin1Char(' '), QLatin1Char('-')).remove(QLatin1Char(':'));
    image.save(QDir::tempPath() + QStringLiteral("/gnssplot-epoch-%1.png").arg(name));
}

inline QColor pixelAt(const QImage& image, int x, int y)
{
    return QColor::fromRgba(image.pixel(x, y));
}

#endif // GNSSPLOT_TESTS_EPOCHTESTSUPPORT_H
