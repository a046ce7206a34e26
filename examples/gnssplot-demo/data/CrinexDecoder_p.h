// SPDX-License-Identifier: MIT
// Compact RINEX: epochs written as changes against the epoch before. The
// decoder sits between the file's lines and the body parser and hands out the
// plain RINEX records that the compact lines stand for.
#ifndef GNSSDEMO_CRINEXDECODER_P_H
#define GNSSDEMO_CRINEXDECODER_P_H

#include "RinexHeader_p.h"

namespace gnssdemo {
namespace rinex {

/*
    Each epoch of a compact file is
    - the epoch line, either complete (starting with '&' in compact version 1,
      '>' in version 3) or as the characters that changed against the epoch
      line before: a blank keeps the old character, '&' puts a blank, and a
      shorter line keeps the old rest. The whole satellite list is on it.
    - a line with the receiver clock offset, blank when there is none;
    - one line per listed satellite: the observation fields in header order,
      separated by single blanks, then the loss-of-lock and signal-strength
      characters, changed against that satellite's previous ones like the
      epoch line. A field "k&N" restarts the value at N (in thousandths) with
      differences of up to order k to follow; a plain integer is the next
      difference. An empty field is a missing observation.
    Events (flags 2 to 6) carry their epoch line and their records as plain
    text; the epoch line after them is complete again.

    Lines handed out carry the number of the compact line they were rebuilt
    from, so the body's errors name a line of the file.
*/
class CrinexDecoder : public LineSource
{
public:
    // \a input is positioned after the header's END OF HEADER line.
    CrinexDecoder(LineCursor& input, const RinexHeader& header);

    bool next(Line& line) override;
    qint64 number() const override { return m_number; }

private:
    static constexpr int MaxOrder = 9;
    struct Field
    {
        int order = -1; // differences held; -1 while there is no value
        int maxOrder = 0;
        qint64 d[MaxOrder + 1] = {};
    };
    struct SatState
    {
        qint64 lastEpoch = -2; // index of the last data epoch that listed it
        std::vector<Field> fields;
        QByteArray flags; // two characters per observation type
    };

    bool decodeEpoch();
    // The next compact line, refusing the unterminated last line of a cut
    // file; needInput() also refuses the end of the file.
    bool nextInput(Line& l);
    Line needInput(const char* what);
    void rebuildEpochLine(const Line& l);
    enum FieldResult { Missing, Value, BadText, NoStart, OutOfRange };
    // Decodes one field of \a len characters against its state.
    static FieldResult decodeField(const char* p, int len, Field& f, qint64* value);
    // Throws the error of a failed decodeField(); \a what names the field.
    static void failField(FieldResult result, const char* p, int len,
                          qint64 line, const QString& what);
    SatState& satState(char system, int prn, int typeCount);
    void writeEpochLines(const QByteArray& ids, int count, const qint64* clock, qint64 line);
    void writeRecord(const char* id, SatState& sat, const std::vector<qint64>& values,
                     const std::vector<char>& present, qint64 line);
    void beginLine(qint64 line);
    void endLine();

    LineCursor& m_in;
    const RinexHeader& m_header;
    const bool m_v3;
    QByteArray m_epochLine; // the previous epoch line, rebuilt
    Field m_clock;
    std::vector<SatState> m_sats; // by systemSlot * 100 + prn
    qint64 m_dataEpochs = 0;

    // The plain lines of the current epoch.
    struct OutLine
    {
        int offset;
        int length;
        qint64 number;
    };
    QByteArray m_out;
    std::vector<OutLine> m_lines;
    size_t m_nextLine = 0;
    qint64 m_number = 0;
};

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_CRINEXDECODER_P_H
