// SPDX-License-Identifier: MIT
#include "PlotQuantity.h"

namespace gnssdemo {

QString PlotQuantityTexts::unit(PlotQuantity quantity)
{
    switch (quantity) {
    case PlotQuantity::Multipath: return tr("m");
    case PlotQuantity::SignalStrength: return tr("dB-Hz");
    case PlotQuantity::SatelliteCount: return tr("satellites");
    }
    return QString();
}

QString PlotQuantityTexts::title(PlotQuantity quantity)
{
    switch (quantity) {
    case PlotQuantity::Multipath: return tr("Code multipath");
    case PlotQuantity::SignalStrength: return tr("Signal strength");
    case PlotQuantity::SatelliteCount: return tr("Satellites per epoch");
    }
    return QString();
}

QString PlotQuantityTexts::yName(PlotQuantity quantity, int yIndex)
{
    if (quantity == PlotQuantity::Multipath)
        return QStringLiteral("MP%1").arg(yIndex + 1);
    if (quantity == PlotQuantity::SignalStrength)
        return tr("band %1").arg(yIndex + 1);
    return QString();
}

QString PlotQuantityTexts::explanation(PlotQuantity quantity)
{
    switch (quantity) {
    case PlotQuantity::Multipath:
        return tr("Metres, each arc's mean removed; arcs end at cycle slips and gaps. "
                  "F 1 shows MP1, F 2 MP2.");
    case PlotQuantity::SignalStrength:
        return tr("Carrier-to-noise density of each satellite's first two bands that record "
                  "it. F 1 shows the first band, F 2 the second.");
    case PlotQuantity::SatelliteCount:
        return tr("Satellites with a code or phase at each epoch, per system and in all.");
    }
    return QString();
}

} // namespace gnssdemo
