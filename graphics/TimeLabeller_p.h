// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TIMELABELLER_P_H
#define GNSSPLOT_TIMELABELLER_P_H

// Every text that names a time of the plot's time axis is written here: the
// tick labels of the curve frame, of the off-screen picture and of the epoch
// table's axis strip, the date caption, the round ticks' texts and the time
// in the hover tool tip. Times are milliseconds since 1970-01-01 00:00:00 read
// on the UTC calendar (GPST, no leap seconds). No fonts are measured here
// except through the one QFont a caller hands in.

#include <QDate>
#include <QFont>
#include <QMap>
#include <QString>
#include <QVector>
#include <QtGlobal>

class TimeLabeller
{
public:
    /*! Times beyond +-100 million days from 1970 (and infinite or NaN ones)
        get no text: they mean nothing on a time axis, and the conversion to a
        whole number of milliseconds is not defined for all of them. */
    static constexpr double kMaxLabelledMSecs = 8.64e15;

    /*! The X labels of one axis: tick fraction (0 at the window's start, 1 at
        its end) to text, and the date caption. */
    struct Labels
    {
        QMap<double, QString> ticks;
        QString date;
        /*! True for round ticks, whose labels are centred on their ticks; the
            evenly spaced ones put the first and last against the ends. */
        bool bCentred = false;
    };

    /*! The eleven evenly spaced fractions 0, 0.1, ..., 1 of the plot. */
    static const QVector<double>& plotFractions();
    /*! The six evenly spaced fractions 0, 0.2, ..., 1 of the off-screen
        picture. */
    static const QVector<double>& pictureFractions();

    /*! "HH:mm:ss" labels at \a fractions of [\a tMin, \a tMax] (truncated to
        whole milliseconds toward zero) and the date "yyyy/MM/dd" of the last
        fraction. A time beyond kMaxLabelledMSecs gets an empty text and drops
        the date unless a later fraction brings one back. */
    static Labels evenLabels(double tMin, double tMax, const QVector<double>& fractions);
    /*! The labels of the time axis of the plot and the table's strip: the
        round ticks (roundTimeTicks()) that fit \a pixelWidth pixels in \a font
        when \a bRound, else the plot's eleven evenly spaced ticks; the date is
        that of evenLabels() in both cases. */
    static Labels axisLabels(double tMin, double tMax, double pixelWidth, const QFont& font,
                             bool bRound);

    /*! The text of a round tick at \a msecs: "HH:mm", or "HH:mm:ss" when
        \a bSeconds; the date "yyyy/MM/dd" at midnight, which sets \a bDate. */
    static QString roundTickText(qint64 msecs, bool bSeconds, bool& bDate);
    /*! "yyyy/MM/dd HH:mm:ss.zzz" for the hover tool tip; empty beyond
        kMaxLabelledMSecs or for NaN. */
    static QString toolTipTime(double msecs);
    /*! The font of every axis label and caption: "Arial" at 8 points and the
        light weight 2 of the 0 to 99 scale. */
    static QFont axisFont();
    /*! The time-system caption, "GPST". */
    static QString timeSystemCaption();
};

#endif // GNSSPLOT_TIMELABELLER_P_H
