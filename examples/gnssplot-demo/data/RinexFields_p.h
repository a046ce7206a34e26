// SPDX-License-Identifier: MIT
// Fixed-column text of RINEX files: lines, the line sources the body reads
// from, the parse error that carries a line number, and the number fields.
#ifndef GNSSDEMO_RINEXFIELDS_P_H
#define GNSSDEMO_RINEXFIELDS_P_H

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <limits>

namespace gnssdemo {
namespace rinex {

const double NaN = std::numeric_limits<double>::quiet_NaN();

// Thrown inside the reader only; RinexReader::readText turns it into the
// "line N: ..." error text, or, when the file merely ended early
// (endsInside set), keeps the complete epochs read before.
struct ParseError
{
    qint64 line;
    QString message;
    const char* endsInside = nullptr; // a static text, as ReadStop::endsInside
};

[[noreturn]] void fail(qint64 line, const QString& message);
// The file ends inside \a what ("file ends inside an event record").
[[noreturn]] void failEnd(qint64 line, const char* what);

// A view of one line without its end-of-line characters. Columns past the
// end read as blanks, as RINEX writers drop trailing blanks.
struct Line
{
    const char* p = nullptr;
    int len = 0;

    char at(int i) const { return i >= 0 && i < len ? p[i] : ' '; }
    bool isBlank() const;
    // The header label in columns 61 and on, trimmed.
    QByteArray label() const;
    QByteArray field(int col, int width) const;
};

// Where the body reads its lines from: the file text itself, or a decoder
// that rebuilds plain records from a compressed form. A line handed out stays
// valid until next() is called again, and every line of one epoch stays valid
// until the first line of the next epoch has been handed out.
class LineSource
{
public:
    virtual ~LineSource() = default;
    virtual bool next(Line& line) = 0;
    // 1-based number of the file line that the line last returned by next()
    // comes from; error messages name it.
    virtual qint64 number() const = 0;
    // True when the line last returned is the end of a text that stops
    // without a line end: a file cut inside that line.
    virtual bool lastLineCut() const { return false; }
};

// The lines of a text in memory, split at '\n' with a trailing '\r' dropped.
class LineCursor : public LineSource
{
public:
    LineCursor(const char* begin, const char* end) : m_cur(begin), m_end(end) {}

    bool next(Line& line) override;
    qint64 number() const override { return m_number; }
    bool lastLineCut() const override { return m_cut; }
    bool atEnd() const { return m_cur >= m_end; }

private:
    const char* m_cur;
    const char* m_end;
    qint64 m_number = 0;
    bool m_cut = false;
};

// Parses a right-aligned integer field of columns [col, col + width); a blank
// field is refused unless blankValue is given.
bool parseInt(const Line& l, int col, int width, int* out, const int* blankValue = nullptr);

// Parses a fixed-point field such as F14.3 of n characters. A blank field
// gives NaN.
bool parseFixed(const char* p, int n, double* out);

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_RINEXFIELDS_P_H
