// SPDX-License-Identifier: MIT
// A minimal host: fills an axis in place, publishes it, registers the curve
// and reads the limits back, all through the installed package.
#include <gnssplot.h>

#include <QCoreApplication>
#include <QLocale>
#include <QObject>
#include <QTranslator>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);

    // The catalogues travel inside the library.
    QTranslator translator;
    if (!translator.load(QLocale(QStringLiteral("de")), QStringLiteral("gnssplot"),
                         QStringLiteral("_"), QStringLiteral(":/gnssplot/translations"))
        || !app.installTranslator(&translator))
        return 5;
    AxisData refused;
    refused.beginSetData();
    QString error;
    if (refused.allocData(-1, &error) || refused.allocData(qint64(1) << 62, &error)
        || error != QStringLiteral("Speicher konnte nicht reserviert werden."))
        return 6;

    int dataSignals = 0;
    Curve_DataSet_XY* dataSet = new Curve_DataSet_XY(1);
    QObject::connect(dataSet, &Curve_DataSet::sgAxisDataChanged,
                     [&dataSignals](int) { ++dataSignals; });

    for (int key = 0; key < 2; ++key) {
        AxisData* axis = dataSet->getAxisData(key);
        axis->beginSetData();
        if (!axis->allocData(3, nullptr))
            return 1;
        double* samples = axis->getInSettingData(0, nullptr);
        for (int i = 0; i < 3; ++i)
            samples[i] = key == 0 ? 1000.0 * i : i - 1.0;
        axis->endSetData(true);
    }

    CurveScene registry;
    registry.setCoord(new Curve_Coord_XY, true);
    if (!registry.addCurve(QStringLiteral("G01"), dataSet, true, Qt::blue,
                           ECurveShowCap_Line, true))
        return 2;

    double xMin, xMax, yMin, yMax;
    if (!registry.getAreaLimits(xMin, xMax, yMin, yMax))
        return 3;
    if (dataSignals != 2 || xMin != 0.0 || xMax != 2000.0 || yMin != -1.0 || yMax != 1.0)
        return 4;
    std::printf("host OK\n");
    return 0;
}
