// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_EPOCHTIMEHEADER_P_H
#define GNSSPLOT_EPOCHTIMEHEADER_P_H

#include <QHeaderView>

class CurveGraphicsTableWidget_EpochPrivate;

/*
    The horizontal header of CurveGraphicsTableWidget_Epoch. Until the time
    axis is switched on it is the plain header the table would have had (it
    takes over that header's settings); with the axis on it is a strip of two
    text lines: over the check boxes the time system and the date, over the
    bars the tick labels of the window the bars show, with a short mark at
    each tick, as the curve view labels its time axis.
*/
class EpochTimeHeader : public QHeaderView
{
    Q_OBJECT
public:
    // \a like is the header it replaces, whose settings it copies.
    EpochTimeHeader(CurveGraphicsTableWidget_EpochPrivate* table, const QHeaderView* like);

    void setAxisShown(bool bShown);
    bool isAxisShown() const { return m_bAxis; }
    void setRoundTicks(bool bRound);
    bool hasRoundTicks() const { return m_bRound; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CurveGraphicsTableWidget_EpochPrivate* const m_table;
    bool m_bAxis = false;
    bool m_bRound = false;
};

#endif // GNSSPLOT_EPOCHTIMEHEADER_P_H
