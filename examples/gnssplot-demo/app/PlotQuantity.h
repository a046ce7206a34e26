// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_PLOTQUANTITY_H
#define GNSSDEMO_PLOTQUANTITY_H

#include <QCoreApplication>
#include <QString>

namespace gnssdemo {

/*! What a curve view of the demo shows over time. */
enum class PlotQuantity {
    Multipath = 0,      //!< MP1 and MP2 per satellite, metres
    SignalStrength = 1, //!< signal strength of two bands per satellite, dB-Hz
    SatelliteCount = 2, //!< satellites with data per epoch, per system
};

/*! How many quantities there are: one curve view each. */
constexpr int PlotQuantityCount = 3;

/*!
    The words of each quantity. unit() is the one place where the unit of a
    view's values is chosen: the status read-out, the caption and the
    exports take it from here, and so will the views' own Y labels.
*/
class PlotQuantityTexts
{
    Q_DECLARE_TR_FUNCTIONS(PlotQuantityTexts)
public:
    /*! The unit of the values: "m", "dB-Hz", or "satellites". */
    static QString unit(PlotQuantity quantity);
    /*! The name in the plot's choice and caption, "Code multipath". */
    static QString title(PlotQuantity quantity);
    /*! What a curve's two Y indexes (the F 1 and F 2 boxes) are: "MP1" and
        "MP2"; "band 1" and "band 2" of signal strength. */
    static QString yName(PlotQuantity quantity, int yIndex);
    /*! One sentence on how the values are made, for the caption's tool tip. */
    static QString explanation(PlotQuantity quantity);
};

} // namespace gnssdemo

#endif // GNSSDEMO_PLOTQUANTITY_H
