// SPDX-License-Identifier: MIT
#include "EpochPalette_p.h"

#include <QGlobalStatic>

#include <random>

namespace {

Q_GLOBAL_STATIC(QList<QColor>, colourPalette)
Q_GLOBAL_STATIC(QList<QColor>, greyPalette)

// The extra palette colours are defined as the first value of the minimal
// standard generator (multiplier 48271, modulus 2^31 - 1) after a fixed seed:
// Qt 5's qsrand()/qrand() give exactly that value, and std::minstd_rand
// gives it on every Qt, so the colours hosts already know stay the same.
int seededComponent(uint seed)
{
    std::minstd_rand generator(seed);
    return int(generator() % 256);
}

} // namespace

void ensureEpochPalettes(quint16 count)
{
    QList<QColor>& colours = *colourPalette();
    QList<QColor>& greys = *greyPalette();
    if (colours.isEmpty()) {
        colours << QColor(0, 34, 255, 255) << QColor(0, 128, 0, 255)
                << QColor(128, 0, 128, 255) << QColor(154, 205, 50, 255)
                << QColor(238, 210, 180, 255) << QColor(255, 165, 0, 255);
    }
    if (greys.isEmpty()) {
        greys << QColor(205, 205, 205, 255) << QColor(160, 160, 160, 255)
              << QColor(135, 135, 135, 255) << QColor(115, 115, 115, 255)
              << QColor(95, 95, 95, 255) << QColor(80, 80, 80, 255);
    }
    if (colours.size() < count) {
        const uint d = uint(count) - uint(colours.size());
        colours.reserve(count);
        for (uint k = 0; k < d; ++k) {
            const int red = seededComponent(d + k);
            const int green = seededComponent(2 * d + k);
            const int blue = seededComponent(3 * d + k);
            colours.append(QColor(red, green, blue, 255));
        }
    }
    if (greys.size() < count) {
        const uint d = uint(count) - uint(greys.size());
        greys.reserve(count);
        for (uint k = 0; k < d; ++k)
            greys.append(QColor(80, 80, seededComponent(3 * d + k), 255));
    }
}

const QList<QColor>& epochColourPalette()
{
    return *colourPalette();
}

const QList<QColor>& epochGreyPalette()
{
    return *greyPalette();
}

void makeEpochBrushes(int count, bool bEnabled, QList<QBrush>& brushes)
{
    // The palettes stop at 65535 entries; data sets beyond that reuse the
    // last entry, which keeps one brush per data set for any list size.
    ensureEpochPalettes(quint16(qBound(0, count, 0xffff)));
    const QList<QColor>& palette = bEnabled ? epochColourPalette() : epochGreyPalette();
    Q_ASSERT(!palette.isEmpty());
    count = qMax(count, 0);
    // Overwrite in place so that a caller painting many satellites keeps one
    // list's storage.
    while (brushes.size() > count)
        brushes.removeLast();
    brushes.reserve(count);
    const int last = palette.size() - 1;
    for (int i = 0; i < count; ++i) {
        const QBrush brush(palette.at(qMin(i, last)), Qt::SolidPattern);
        if (i < brushes.size())
            brushes[i] = brush;
        else
            brushes.append(brush);
    }
}
