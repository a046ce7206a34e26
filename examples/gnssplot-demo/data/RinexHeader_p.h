// SPDX-License-Identifier: MIT
// The observation header of a RINEX file: version, observation types per
// system, scale factors, GLONASS channels, interval and time system.
#ifndef GNSSDEMO_RINEXHEADER_P_H
#define GNSSDEMO_RINEXHEADER_P_H

#include "RinexFields_p.h"

#include <array>
#include <map>
#include <vector>

namespace gnssdemo {
namespace rinex {

struct ObsType
{
    QByteArray code; // "C1C" or "P1"
    char kind = 0;   // 'C' (pseudorange, also version 2 'P'), 'L', 'S', or 0 for unused types
    char digit = 0;
    char attribute = ' ';
    int store = -1;  // index into SatStore::values, -1 when not kept
    double scale = 1.0;
};

struct SystemTable
{
    bool declared = false;
    std::vector<ObsType> types;
    int stored = 0; // number of types with a store index
};

// 0 to 25 for the system letters 'A' to 'Z', -1 otherwise.
inline int systemSlot(char system)
{
    return system >= 'A' && system <= 'Z' ? system - 'A' : -1;
}

struct RinexHeader
{
    double version = 0;
    int compactVersion = 0; // 1 or 3 for compact (Hatanaka) files, else 0
    char fileSystem = 'G';
    std::array<SystemTable, 26> tables; // version 3 and later, by systemSlot()
    SystemTable v2Table;                // version 2: one list for every system
    std::map<int, int> glonassChannels; // slot to frequency channel
    double interval = 0;                // seconds, 0 when not given
    qint64 timeOffsetMs = 0;            // added to epoch times to get GPST
    QByteArray markerName;
    double approxPosition[3] = {0, 0, 0}; // metres; zeros when not given

    // The observation types of \a system's records; null for a letter that
    // is not a system.
    const SystemTable* table(char system) const;
};

// Reads the header from the first line of \a lines up to and including
// END OF HEADER, with the two lines that open a compact file. Throws
// ParseError.
void readHeader(LineCursor& lines, RinexHeader* header);

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_RINEXHEADER_P_H
