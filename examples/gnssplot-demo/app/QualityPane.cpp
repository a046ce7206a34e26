// SPDX-License-Identifier: MIT
#include "QualityPane.h"

#include "DemoHost.h"
#include "QualityText.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace gnssdemo {

QualityPane::QualityPane(QWidget* parent)
    : QWidget(parent)
    , m_table(new QTableWidget(0, ColumnCount))
    , m_counts(new QLabel)
{
    m_table->setHorizontalHeaderLabels({tr("Satellite"), tr("Epochs"), tr("Above mask"),
                                        tr("Complete %"), tr("MP1 RMS (m)"), tr("MP2 RMS (m)"),
                                        tr("Slips"), tr("LLI"), tr("Jumps"), tr("Gaps")});
    m_table->horizontalHeaderItem(Column_AboveMask)
        ->setToolTip(tr("Epochs with the satellite 10 degrees or more above the horizon; "
                        "- without navigation"));
    m_table->horizontalHeaderItem(Column_Complete)
        ->setToolTip(tr("Epochs with data among those above the mask"));
    m_table->horizontalHeaderItem(Column_Slips)
        ->setToolTip(tr("Loss of lock plus jumps of the geometry-free phase"));
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_counts->setWordWrap(true);
    m_counts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_counts);
}

void QualityPane::showQualities(const DemoHost& host)
{
    m_table->setRowCount(0);
    m_counts->clear();
    if (!host.document())
        return;
    QList<QStringList> rows;
    QList<bool> summaries;
    const std::vector<SatelliteQuality> all = host.qualities();
    QList<char> systems;
    for (const SatelliteQuality& q : all) {
        if (!systems.contains(q.system))
            systems.append(q.system);
        rows.append(qualityCells(q.name, q));
        summaries.append(false);
    }
    std::sort(systems.begin(), systems.end());
    for (char system : systems) {
        rows.append(qualityCells(systemName(system), host.qualityOfSystem(system)));
        summaries.append(true);
    }
    rows.append(qualityCells(tr("all"), host.qualityOfSystem(0)));
    summaries.append(true);

    m_table->setRowCount(int(rows.size()));
    QFont bold = m_table->font();
    bold.setBold(true);
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < ColumnCount; ++c) {
            auto* item = new QTableWidgetItem(rows[r].value(c));
            // Through the role: the setter's argument type differs in Qt 5 and 6.
            item->setData(Qt::TextAlignmentRole,
                          c == Column_Name ? int(Qt::AlignLeft | Qt::AlignVCenter)
                                           : int(Qt::AlignRight | Qt::AlignVCenter));
            if (summaries[r])
                item->setFont(bold);
            m_table->setItem(r, c, item);
        }
    }

    const SatelliteCounts counts = host.satelliteCounts();
    QStringList parts;
    for (const auto& entry : counts.perSystem)
        parts.append(QStringLiteral("%1 %2").arg(systemName(entry.first),
                                                 satellitesPerEpochCell(entry.second)));
    parts.append(tr("all %1").arg(satellitesPerEpochCell(counts.total)));
    m_counts->setText(tr("Satellites per epoch (min/mean/max): %1")
                          .arg(parts.join(QStringLiteral(", "))));
}

QString QualityPane::countsText() const
{
    return m_counts->text();
}

} // namespace gnssdemo
