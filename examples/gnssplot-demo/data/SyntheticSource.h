// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SYNTHETICSOURCE_H
#define GNSSDEMO_SYNTHETICSOURCE_H

#include "ObservationData.h"

#include <vector>

namespace gnssdemo {

/*!
    A deterministic, made-up GPST day of observations at 1 Hz (86,400 epochs
    from 2024-07-27 00:00:00): GPS G01..G32, GLONASS R01..R24, Galileo
    E01..E36, BeiDou C01..C46 and QZSS J01..J07.

    Medium-orbit satellites are seen in one to three passes of 2.5 to 6 hours,
    inclined-orbit ones (BeiDou C06..C10, C13, C16, C38..C40 and QZSS) in one
    long pass, geostationary ones (C01..C05, J07) all day. Each satellite has
    two or three signals: GPS L1/L2 (+L5 on two thirds of them), GLONASS G1/G2
    (+G3 on some), Galileo E1/E5a/E5b, BeiDou-2 B1I/B2I (+B3I on some),
    BeiDou-3 B1I/B3I/B2a, QZSS L1/L2/L5. Passes have short gaps, the third
    signal is lost below 12 degrees of elevation, some pseudoranges drop out
    for a while, and cycle slips occur, most with the loss-of-lock indicator
    set and some without it. Signal strength (dB-Hz, in steps of 0.25) rises
    with elevation and fades with the multipath.

    Nothing is stored but a few numbers per satellite: satellite() computes a
    satellite's day on each call, so the whole day never sits in memory. The
    same seed always gives the same values.
*/
class SyntheticSource : public ObservationSource
{
public:
    static constexpr quint64 DefaultSeed = 20240727;

    explicit SyntheticSource(quint64 seed = DefaultSeed);

    QString description() const override;
    const std::vector<qint64>& epochs() const override { return m_epochs; }
    qint64 intervalMs() const override { return 1000; }
    int satelliteCount() const override { return int(m_satellites.size()); }
    QString satelliteName(int index) const override;
    bool satellite(int index, SatelliteObservations& out) const override;

private:
    struct Satellite
    {
        char system;
        int prn;
        QString name;
    };

    quint64 m_seed;
    std::vector<qint64> m_epochs;
    std::vector<Satellite> m_satellites;
    std::vector<double> m_verticalIono; // metres on L1, per second of the day
};

} // namespace gnssdemo

#endif // GNSSDEMO_SYNTHETICSOURCE_H
