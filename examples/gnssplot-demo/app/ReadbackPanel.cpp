// SPDX-License-Identifier: MIT
#include "ReadbackPanel.h"

#include "DemoTexts.h"

#include <QComboBox>
#include <QDateTime>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimeZone>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace gnssdemo {

QString gpstText(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc())
        .toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
}

ReadbackPanel::ReadbackPanel(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);

    auto* title = new QLabel(tr("<b>What the host reads back</b>"));
    layout->addWidget(title);

    auto* enabledBox = new QGroupBox(tr("Enabled satellites"));
    enabledBox->setToolTip(tr("getStateliteEnabled(), read on sgStateliteSelection()"));
    auto* enabledLayout = new QVBoxLayout(enabledBox);
    m_enabledCount = new QLabel(tr("No satellites"));
    m_unchecked = new QPlainTextEdit;
    m_unchecked->setReadOnly(true);
    m_unchecked->setMaximumHeight(52);
    m_unchecked->setPlaceholderText(tr("Every satellite is checked."));
    enabledLayout->addWidget(m_enabledCount);
    enabledLayout->addWidget(m_unchecked);
    layout->addWidget(enabledBox);

    auto* marksBox = new QGroupBox(tr("Erase marks"));
    marksBox->setToolTip(tr("getStateliteEraseMarks(), read on sgEraseMarksChanged()"));
    auto* marksLayout = new QVBoxLayout(marksBox);
    m_marksCount = new QLabel(tr("Drag over the bars to mark epochs."));
    m_marksCount->setWordWrap(true);
    m_marks = new QTreeWidget;
    m_marks->setColumnCount(3);
    m_marks->setHeaderLabels({tr("Satellite"), tr("From"), tr("To (GPST)")});
    m_marks->setRootIsDecorated(false);
    m_marks->setUniformRowHeights(true);
    m_marks->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    marksLayout->addWidget(m_marksCount);
    marksLayout->addWidget(m_marks, 1);
    auto* buttons = new QHBoxLayout;
    m_undo = new QPushButton(tr("Undo"));
    m_clear = new QPushButton(tr("Clear"));
    m_clear->setToolTip(tr("clearEraseMarkActions()"));
    m_undo->setToolTip(tr("undoEraseMarkAction()"));
    m_apply = new QPushButton(tr("Apply"));
    m_apply->setToolTip(tr("Remove the marked epochs from the observations, recompute their "
                           "curves and hide the curves of unchecked satellites"));
    m_apply->setDefault(true);
    buttons->addWidget(m_undo);
    buttons->addWidget(m_clear);
    buttons->addWidget(m_apply);
    marksLayout->addLayout(buttons);
    m_applyResult = new QLabel;
    m_applyResult->setWordWrap(true);
    m_applyResult->setMinimumHeight(m_applyResult->fontMetrics().lineSpacing() * 3);
    m_applyResult->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    marksLayout->addWidget(m_applyResult);
    layout->addWidget(marksBox, 1);

    auto* picturesBox = new QGroupBox(tr("Pictures"));
    auto* picturesLayout = new QVBoxLayout(picturesBox);
    // The satellite of a scripted curve picture; the button saves the plot
    // as it is shown, so the choice is not offered here.
    m_pictureSatellite = new QComboBox(this);
    m_pictureSatellite->hide();
    auto* saveCurve = new QPushButton(tr("Save curve picture..."));
    saveCurve->setToolTip(tr("The plot as shown, at its size, with the station and its time "
                             "axis"));
    auto* saveBars = new QPushButton(tr("Save table bars picture..."));
    saveBars->setToolTip(tr("CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(), with "
                            "the station and a time axis"));
    picturesLayout->addWidget(saveCurve);
    picturesLayout->addWidget(saveBars);
    layout->addWidget(picturesBox);

    connect(m_undo, &QPushButton::clicked, this, &ReadbackPanel::undoRequested);
    connect(m_clear, &QPushButton::clicked, this, &ReadbackPanel::clearRequested);
    connect(m_apply, &QPushButton::clicked, this, &ReadbackPanel::applyRequested);
    connect(saveCurve, &QPushButton::clicked, this,
            [this] { emit saveCurvePictureRequested(pictureSatellite()); });
    connect(saveBars, &QPushButton::clicked, this, &ReadbackPanel::saveBarsPictureRequested);
}

void ReadbackPanel::showSelection(const QMap<QString, bool>& enabled)
{
    QStringList unchecked;
    for (auto it = enabled.cbegin(); it != enabled.cend(); ++it) {
        if (!it.value())
            unchecked.append(it.key());
    }
    const int total = enabled.size();
    m_enabledCount->setText(DemoTexts::enabled(total - int(unchecked.size()), total));
    m_unchecked->setPlainText(unchecked.isEmpty()
                                  ? QString()
                                  : tr("Unchecked: %1").arg(unchecked.join(QStringLiteral(", "))));
}

void ReadbackPanel::showMarks(const QMap<QString, QList<stEpochDataSet>>& marks,
                              int actionCount)
{
    m_marks->clear();
    int satellites = 0;
    QList<QTreeWidgetItem*> items;
    for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
        if (it.value().isEmpty())
            continue;
        ++satellites;
        for (const stEpochDataSet& set : it.value()) {
            for (const auto& range : set.ranges) {
                items.append(new QTreeWidgetItem(
                    QStringList{it.key(), gpstText(range.first).mid(11),
                                gpstText(range.first + range.second).mid(11)}));
            }
        }
    }
    m_marks->addTopLevelItems(items);
    m_marksCount->setText(satellites == 0
                              ? DemoTexts::noMarks(actionCount)
                              : DemoTexts::marks(int(items.size()), satellites, actionCount));
    m_undo->setEnabled(actionCount > 0);
    m_clear->setEnabled(actionCount > 0);
}

void ReadbackPanel::showApplyResult(const QString& text)
{
    m_applyResult->setText(text);
}

void ReadbackPanel::setSatellites(const QStringList& names, const QString& preferred)
{
    m_pictureSatellite->clear();
    m_pictureSatellite->addItems(names);
    const int index = names.indexOf(preferred);
    if (index >= 0)
        m_pictureSatellite->setCurrentIndex(index);
}

QString ReadbackPanel::pictureSatellite() const
{
    return m_pictureSatellite->currentText();
}

} // namespace gnssdemo
