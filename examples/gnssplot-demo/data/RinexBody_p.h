// SPDX-License-Identifier: MIT
// The observation records after the header: epoch lines, events and the
// satellites' observation records, version 2 and version 3 layouts.
#ifndef GNSSDEMO_RINEXBODY_P_H
#define GNSSDEMO_RINEXBODY_P_H

#include "ObservationData.h"
#include "RinexHeader_p.h"

namespace gnssdemo {
namespace rinex {

// What one satellite recorded, per kept observation type of its system.
struct SatStore
{
    char system = 0;
    int prn = 0;
    std::vector<std::vector<double>> values; // per stored type, grown lazily
    std::vector<std::vector<quint8>> lli;
    std::vector<quint8> record;   // 1 where the satellite has a record, per epoch
    std::vector<int> forcedSlips; // epoch indices
};

// Epoch flags: 0 and 1 carry observations (a flag 1 power failure marks a
// cycle slip on every satellite of that epoch); 2 to 5 are followed by
// special records that are skipped; 6 lists cycle-slip records, which mark a
// slip for their satellites.
class RinexBody
{
public:
    RinexBody(LineSource& lines, const RinexHeader& header);

    // Reads every remaining line. Throws ParseError on damage; a file that
    // ends early keeps its complete epochs and says where in `stop`.
    void read();

    // GPST milliseconds, increasing.
    std::vector<qint64> epochs;
    std::vector<SatStore> sats;
    // Where the file ended early (line, endsInside); not cut otherwise.
    ReadStop stop;

private:
    void readV3();
    void readV2();
    bool readEpochTime(const Line& l, bool v3, qint64* ms) const;
    void skipLines(int count, const char* what);
    // Refuses an unknown epoch flag and skips the special records of an
    // event (flags 2 to 5); true when the epoch was such an event.
    bool skipEvent(qint64 line, int flag, int count);
    // The next line, refusing the unterminated last line of a cut file.
    bool nextLine(Line& l);
    Line needLine(const char* what);
    // An epoch's lines are being read from the epoch line on: what it adds
    // is taken back when the file ends before its last record.
    void beginEpoch();
    void endEpoch() { m_open = false; }
    void dropOpenEpoch();
    SatStore& satellite(const Line& l, int col, qint64 line);
    int epochIndexFor(qint64 ms, qint64 line);
    int slipEpochFor(qint64 ms) const;
    void storeFields(SatStore& sat, const SystemTable& table, int first, int count,
                     const Line& l, int col, int epoch);

    LineSource& m_lines;
    const RinexHeader& m_header;
    std::array<std::array<int, 100>, 26> m_satIndex;
    bool m_open = false;
    size_t m_openEpochs = 0; // epochs and satellites before the open epoch
    size_t m_openSats = 0;
};

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_RINEXBODY_P_H
