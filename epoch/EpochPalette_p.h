// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHPALETTE_P_H
#define GNSSPLOT_EPOCHPALETTE_P_H

// The two process-wide bar palettes of the epoch table, shared by every table
// and by the pixmap painter. They start empty, are filled on first use and
// only ever grow; they are touched on the GUI thread only.

#include <QBrush>
#include <QColor>
#include <QList>

/*! Makes both palettes at least \a count entries long. The first six entries
    of each are fixed; extra entries are the first values of a minimal
    standard generator after fixed seeds, so they are the same on every run
    and with either Qt. */
void ensureEpochPalettes(quint16 count);

/*! The colour palette, used for enabled satellites: band i in entry i. */
const QList<QColor>& epochColourPalette();

/*! The grey palette, used for satellites that are not enabled. */
const QList<QColor>& epochGreyPalette();

/*! Fills \a brushes with one solid brush per data set, \a count of them, from
    the colour palette when \a bEnabled, else from the grey palette, growing
    the palettes first (also for a count of 0). Entries of \a brushes are
    overwritten in place, extra ones dropped. */
void makeEpochBrushes(int count, bool bEnabled, QList<QBrush>& brushes);

#endif // GNSSPLOT_EPOCHPALETTE_P_H
