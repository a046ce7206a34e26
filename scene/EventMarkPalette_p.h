// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EVENTMARKPALETTE_P_H
#define GNSSPLOT_EVENTMARKPALETTE_P_H

#include <QColor>
#include <QMap>

/*
    The colour of each kind of event mark: the library's defaults, and the
    ones a host set in their place. The curve plot and the epoch table each
    keep one, so that a kind reads the same in both unless a host says
    otherwise.
*/
class EventMarkPalette
{
public:
    // What a kind is drawn in when nobody chose: red cycle slips, orange
    // losses of lock, dark grey gaps, and one violet for every host kind.
    static QColor defaultColor(int kind);

    // The colour of \a kind: the one set, else the default.
    QColor color(int kind) const;
    // Sets the colour of \a kind; an invalid colour gives the default back.
    // False when the colour the kind is drawn in stays the same.
    bool setColor(int kind, const QColor& color);
    // The colours set, by kind.
    const QMap<int, QColor>& chosen() const { return m_chosen; }

private:
    QMap<int, QColor> m_chosen;
};

#endif // GNSSPLOT_EVENTMARKPALETTE_P_H
