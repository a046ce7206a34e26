// SPDX-License-Identifier: MIT
// The smallest useful host: one curve in a CurveGraphicsView above one
// satellite in the epoch table, and the user's erase marks read back.
#include <gnssplot.h>

#include <QApplication>
#include <QSplitter>

#include <cmath>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);

    // One hour at 1 Hz. X: GPST milliseconds since 1970-01-01; Y: metres.
    const qint64 count = 3600;
    const qint64 start = 1722038400000; // 2024-07-27 00:00:00 GPST
    auto* dataSet = new Curve_DataSet_XY(1);
    for (int key = 0; key < 2; ++key) {
        AxisData* axis = dataSet->getAxisData(key);
        axis->beginSetData();
        if (!axis->allocData(count, nullptr)) {
            axis->endSetData(false);
            return 1;
        }
        double* values = axis->getInSettingData(0, nullptr);
        for (qint64 i = 0; i < count; ++i)
            values[i] = key == 0 ? double(start + 1000 * i) : 0.3 * std::sin(i / 120.0);
        axis->endSetData(true); // published in place, no copy
    }

    auto* view = new CurveGraphicsView;
    CurveScene* registry = view->getCurveScene();
    registry->setCoord(new Curve_Coord_XY, true);        // the registry owns it
    registry->addCurve(QStringLiteral("G01"), dataSet, true, // and the data set
                       QColor(31, 119, 180), ECurveShowCap_Line, true);

    // The table's pairs are the gaps: (start, 0) means data from the start,
    // a later pair is a stretch without data.
    stEpochDataSet l1;
    l1.ranges = {{start, 0}};
    stEpochDataSet l2;
    l2.ranges = {{start, 0}, {start + 1200000, 600000}};
    auto* table = new CurveGraphicsTableWidget_Epoch;
    table->setResources(start, start + count * 1000, {{QStringLiteral("G01"), {l1, l2}}},
                        {{QStringLiteral("G01"), true}}, {}, {});
    QObject::connect(table, &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged, [table] {
        QMap<QString, QList<stEpochDataSet>> marks;
        table->getStateliteEraseMarks(marks);
        for (const stEpochDataSet& set : marks.value(QStringLiteral("G01")))
            for (const auto& mark : set.ranges)
                qInfo("G01: erase %lld ms from %lld", mark.second, mark.first);
    });

    QSplitter window(Qt::Vertical);
    window.addWidget(view);
    window.addWidget(table);
    window.resize(900, 600);
    window.show();
    view->setCurvesPosToVerticalZero(); // full X range, Y symmetric about 0
    return app.exec();
}
