// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_P_H
#define GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_P_H

#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochGeometry_p.h"
#include "EpochTableModel_p.h"
#include "EventMarkPalette_p.h"
#include "TimeNavigator_p.h"

#include <QMap>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QString>

class CurveGraphicsView;
class EpochBarAlignment;
class EpochLabel;
class EpochTimeHeader;
class QCheckBox;

// The table's state, kept out of the exported class so that adding to it
// does not change the class's size. What the user chose lives in `model`;
// the widgets in the cells only show it.
class CurveGraphicsTableWidget_EpochPrivate : public TimeNavigator::Target
{
public:
    explicit CurveGraphicsTableWidget_EpochPrivate(CurveGraphicsTableWidget_Epoch* table)
        : q(table)
    {
    }

    bool hasRange() const { return endTime > startTime; }
    // The window shown, in epochs; the whole range when none is active.
    TimeWindow shownWindow() const;
    TimeWindow wholeRange() const { return TimeWindow(double(startTime), double(endTime)); }
    double toLinked(double epoch) const { return msAtEpochZero + epoch * msPerEpoch; }
    double fromLinked(double t) const { return (t - msAtEpochZero) / msPerEpoch; }
    // `asked` (epochs) fitted into the range, an inactive window when it
    // covers the range; false, leaving `result` alone, when either is invalid.
    bool fitted(const TimeWindow& asked, EpochWindow& result) const;
    // Shows `window` (epochs), fitted; emits when what is shown changes.
    void showWindow(const TimeWindow& window);
    // Shows the whole range; emits when a zoomed window goes.
    void showWholeRange();
    // Hands the window to the labels and the axis strip and repaints them.
    void pushWindow();
    void emitWindow();
    // The legend cell's geometry in viewport pixels, which every bar cell
    // shares horizontally; false without a legend cell of positive width.
    bool barCell(QRect& geometry) const;
    // Shows the model's marks in every label.
    void showMarks();
    // Shows the model's event marks and their colours in every label.
    void showEventMarks();

    bool navigationEnabled() const override { return bNavigation; }
    TimeWindow navigationWindow() const override;
    QRectF navigationArea() const override;
    double navigationMinimumSpan() const override;
    void navigateTo(const TimeWindow& window) override { showWindow(window); }
    void navigateHome() override { showWholeRange(); }

    CurveGraphicsTableWidget_Epoch* const q;
    EpochTableModel model;
    QMap<QString, EpochLabel*> labels;
    QMap<QString, QCheckBox*> checkBoxes;
    qint64 startTime = 0;
    qint64 endTime = 0;
    bool dragging = false;
    QPoint pressPos;
    QPoint currentPos;
    QString menuSatellite;
    QPoint menuGlobalPos;
    QCheckBox* titleCheckBox = nullptr;

    bool bNavigation = false;
    EpochWindow window;
    double msPerEpoch = 1.0;
    double msAtEpochZero = 0.0;
    TimeNavigator* navigator = nullptr;

    EpochTimeHeader* header = nullptr;
    bool bHeaderWasHidden = false;
    QPointer<EpochBarAlignment> alignment;
    EventMarkPalette eventColors;
};

#endif // GNSSPLOT_CURVEGRAPHICSTABLEWIDGET_EPOCH_P_H
