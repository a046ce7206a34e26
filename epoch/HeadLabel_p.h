// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_HEADLABEL_P_H
#define GNSSPLOT_HEADLABEL_P_H

#include <QLabel>

/*
    Row 0, column 1 of CurveGraphicsTableWidget_Epoch: the legend that ties
    the first four palette colours to the band names. Its geometry is also
    the reference span of new erase marks.
*/
class HeadLabel : public QLabel
{
    Q_OBJECT
public:
    explicit HeadLabel(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

#endif // GNSSPLOT_HEADLABEL_P_H
