// SPDX-License-Identifier: MIT
#include "CrinexDecoder_p.h"

#include <cstring>

namespace gnssdemo {
namespace rinex {

namespace {

// Integers of up to 18 digits: the sum of two stays far from overflowing.
const qint64 ValueLimit = 1000000000000000000LL;

bool parseInteger(const char* p, int len, qint64* out)
{
    int i = 0;
    const bool negative = len > 0 && p[0] == '-';
    if (negative)
        ++i;
    if (i == len || len - i > 18)
        return false;
    qint64 v = 0;
    for (; i < len; ++i) {
        if (p[i] < '0' || p[i] > '9')
            return false;
        v = v * 10 + (p[i] - '0');
    }
    *out = negative ? -v : v;
    return true;
}

// Appends \a v / 10^decimals right-aligned in \a width columns, as a Fortran
// F format prints it; false when it does not fit.
bool appendFixed(QByteArray& out, qint64 v, int decimals, int width)
{
    char digits[24];
    int n = 0;
    quint64 a = v < 0 ? quint64(-v) : quint64(v);
    for (int i = 0; i < decimals; ++i) {
        digits[n++] = char('0' + a % 10);
        a /= 10;
    }
    digits[n++] = '.';
    do {
        digits[n++] = char('0' + a % 10);
        a /= 10;
    } while (a != 0);
    if (v < 0)
        digits[n++] = '-';
    if (n > width)
        return false;
    out.append(width - n, ' ');
    while (n > 0)
        out.append(digits[--n]);
    return true;
}

void rightTrim(QByteArray& text, int from)
{
    int end = int(text.size());
    while (end > from && text[end - 1] == ' ')
        --end;
    text.truncate(end);
}

} // namespace

CrinexDecoder::CrinexDecoder(LineCursor& input, const RinexHeader& header)
    : m_in(input), m_header(header), m_v3(header.version >= 3)
{
}

bool CrinexDecoder::next(Line& line)
{
    if (m_nextLine == m_lines.size() && !decodeEpoch())
        return false;
    const OutLine& o = m_lines[m_nextLine++];
    line.p = m_out.constData() + o.offset;
    line.len = o.length;
    m_number = o.number;
    return true;
}

bool CrinexDecoder::nextInput(Line& l)
{
    if (!m_in.next(l))
        return false;
    // A difference cut short is a different number: the epoch cannot be
    // rebuilt.
    if (m_in.lastLineCut() && !l.isBlank())
        failEnd(m_in.number(), QT_TRANSLATE_NOOP("RinexReader", "a line"));
    return true;
}

Line CrinexDecoder::needInput(const char* what)
{
    Line l;
    if (!nextInput(l))
        failEnd(m_in.number() + 1, what);
    return l;
}

void CrinexDecoder::beginLine(qint64 line)
{
    m_lines.push_back(OutLine{int(m_out.size()), 0, line});
}

void CrinexDecoder::endLine()
{
    OutLine& o = m_lines.back();
    rightTrim(m_out, o.offset);
    o.length = int(m_out.size()) - o.offset;
}

void CrinexDecoder::rebuildEpochLine(const Line& l)
{
    const char fresh = m_v3 ? '>' : '&';
    if (l.len > 0 && l.p[0] == fresh) {
        m_epochLine = QByteArray(l.p, l.len);
        if (!m_v3)
            m_epochLine[0] = ' ';
        return;
    }
    if (m_epochLine.size() < l.len)
        m_epochLine.append(l.len - m_epochLine.size(), ' ');
    char* e = m_epochLine.data();
    for (int i = 0; i < l.len; ++i) {
        if (l.p[i] == '&')
            e[i] = ' ';
        else if (l.p[i] != ' ')
            e[i] = l.p[i];
    }
}

CrinexDecoder::FieldResult CrinexDecoder::decodeField(const char* p, int len, Field& f,
                                                       qint64* value)
{
    if (len == 0) {
        f.order = -1;
        return Missing;
    }
    if (len >= 2 && p[1] == '&') {
        qint64 start = 0;
        if (p[0] < '1' || p[0] > '0' + MaxOrder || !parseInteger(p + 2, len - 2, &start))
            return BadText;
        f.maxOrder = p[0] - '0';
        f.order = 0;
        f.d[0] = start;
        *value = start;
        return Value;
    }
    qint64 diff = 0;
    if (!parseInteger(p, len, &diff))
        return BadText;
    if (f.order < 0)
        return NoStart;
    if (f.order < f.maxOrder)
        ++f.order;
    f.d[f.order] = diff;
    for (int j = f.order - 1; j >= 0; --j) {
        f.d[j] += f.d[j + 1];
        if (f.d[j] >= ValueLimit || f.d[j] <= -ValueLimit)
            return OutOfRange;
    }
    *value = f.d[0];
    return Value;
}

void CrinexDecoder::failField(FieldResult result, const char* p, int len, qint64 line,
                              const QString& what)
{
    switch (result) {
    case BadText:
        fail(line, QStringLiteral("bad compressed value \"%1\" for %2")
                       .arg(QString::fromLatin1(p, len), what));
    case NoStart:
        fail(line, QStringLiteral("difference \"%1\" for %2 without a starting value")
                       .arg(QString::fromLatin1(p, len), what));
    case OutOfRange:
        fail(line, QStringLiteral("value out of range for %1").arg(what));
    case Missing:
    case Value:
        break;
    }
}

CrinexDecoder::SatState& CrinexDecoder::satState(char system, int prn, int typeCount)
{
    if (m_sats.empty())
        m_sats.resize(26 * 100);
    SatState& s = m_sats[size_t(systemSlot(system) * 100 + prn)];
    if (s.lastEpoch != m_dataEpochs - 1) {
        // Not listed in the epoch before: every field starts afresh.
        s.fields.assign(size_t(typeCount), Field());
        s.flags.clear();
    }
    s.lastEpoch = m_dataEpochs;
    return s;
}

void CrinexDecoder::writeEpochLines(const QByteArray& ids, int count, const qint64* clock,
                                    qint64 line)
{
    const int listColumn = m_v3 ? 41 : 32;
    const int fixedPart = m_v3 ? 35 : 32;
    beginLine(line);
    m_out.append(m_epochLine.constData(), std::min(fixedPart, int(m_epochLine.size())));
    m_out.append(fixedPart - std::min(fixedPart, int(m_epochLine.size())), ' ');
    if (m_v3) {
        if (clock) {
            m_out.append(listColumn - fixedPart, ' ');
            if (!appendFixed(m_out, *clock, 12, 15))
                fail(line, QStringLiteral("receiver clock offset out of range"));
        }
        endLine();
        return;
    }
    // Version 2 lists 12 satellites per line and continues on further lines;
    // the clock offset closes the first line.
    for (int i = 0; i < count || i == 0; i += 12) {
        if (i > 0) {
            endLine();
            beginLine(line);
            m_out.append(listColumn, ' ');
        }
        m_out.append(ids.constData() + 3 * i, 3 * std::min(12, count - i));
        if (i == 0 && clock) {
            m_out.append(68 - 32 - 3 * std::min(12, count), ' ');
            if (!appendFixed(m_out, *clock, 9, 12))
                fail(line, QStringLiteral("receiver clock offset out of range"));
        }
    }
    endLine();
}

void CrinexDecoder::writeRecord(const char* id, SatState& sat, const std::vector<qint64>& values,
                                const std::vector<char>& present, qint64 line)
{
    const int typeCount = int(values.size());
    beginLine(line);
    if (m_v3)
        m_out.append(id, 3);
    for (int j = 0; j < typeCount; ++j) {
        if (!m_v3 && j > 0 && j % 5 == 0) {
            endLine();
            beginLine(line);
        }
        if (!present[size_t(j)]) {
            // A missing observation has no flags in the plain record, whatever
            // its flag characters still hold for the next value.
            m_out.append(16, ' ');
            continue;
        }
        if (!appendFixed(m_out, values[size_t(j)], 3, 14)) {
            fail(line, QStringLiteral("value out of range for %1 %2")
                           .arg(QString::fromLatin1(id, 3))
                           .arg(QString::fromLatin1(m_header.table(id[0])->types[size_t(j)]
                                                        .code)));
        }
        m_out.append(sat.flags.constData() + 2 * j, 2);
    }
    endLine();
}

bool CrinexDecoder::decodeEpoch()
{
    m_out.clear();
    m_lines.clear();
    m_nextLine = 0;

    Line l;
    do {
        if (!nextInput(l))
            return false;
    } while (l.isBlank());
    const qint64 n = m_in.number();
    rebuildEpochLine(l);
    const Line epoch{m_epochLine.constData(), int(m_epochLine.size())};
    int flag = 0;
    int count = 0;
    const int zero = 0;
    const bool counted = m_v3 ? parseInt(epoch, 31, 1, &flag) && parseInt(epoch, 32, 3, &count)
                              : parseInt(epoch, 28, 1, &flag, &zero)
                                    && parseInt(epoch, 29, 3, &count);
    if (!counted || count < 0)
        fail(n, QStringLiteral("bad epoch line (flag or satellite count)"));
    if (flag > 6)
        fail(n, QStringLiteral("unknown epoch flag %1").arg(flag));

    if (flag >= 2 && flag <= 5) {
        // An event: the epoch line and its records as they stand.
        beginLine(n);
        m_out.append(m_epochLine);
        endLine();
        for (int i = 0; i < count; ++i) {
            const Line r = needInput(QT_TRANSLATE_NOOP("RinexReader", "an event record"));
            beginLine(m_in.number());
            m_out.append(r.p, r.len);
            endLine();
        }
        m_epochLine.clear();
        return true;
    }

    // The satellite list, resolved at once so that a bad entry is reported
    // on the epoch line.
    const int listColumn = m_v3 ? 41 : 32;
    QByteArray ids;
    ids.reserve(3 * count);
    for (int i = 0; i < count; ++i) {
        const int col = listColumn + 3 * i;
        char system = epoch.at(col);
        if (system == ' ' && !m_v3)
            system = 'G';
        const char d1 = epoch.at(col + 1) == ' ' ? '0' : epoch.at(col + 1);
        const char d2 = epoch.at(col + 2);
        if (epoch.field(col, 3).trimmed().isEmpty())
            fail(n, QStringLiteral("satellite list shorter than the announced %1").arg(count));
        if (systemSlot(system) < 0 || d1 < '0' || d1 > '9' || d2 < '0' || d2 > '9'
            || (d1 == '0' && d2 == '0'))
            fail(n, QStringLiteral("bad satellite \"%1\"")
                        .arg(QString::fromLatin1(epoch.field(col, 3))));
        if (!m_header.table(system)->declared)
            fail(n, QStringLiteral("no observation types declared for system %1")
                        .arg(QLatin1Char(system)));
        ids.append(system);
        ids.append(d1);
        ids.append(d2);
    }

    if (flag == 6) {
        // Cycle-slip records, as they stand.
        writeEpochLines(ids, count, nullptr, n);
        const int typeCount = int(m_header.v2Table.types.size());
        const int records = m_v3 ? count : count * ((typeCount + 4) / 5);
        for (int i = 0; i < records; ++i) {
            const Line r = needInput(QT_TRANSLATE_NOOP("RinexReader", "a cycle-slip record"));
            beginLine(m_in.number());
            m_out.append(r.p, r.len);
            endLine();
        }
        m_epochLine.clear();
        return true;
    }

    const Line clockLine =
        needInput(QT_TRANSLATE_NOOP("RinexReader", "an epoch (no receiver clock line)"));
    qint64 clock = 0;
    const int clockLength = clockLine.isBlank() ? 0 : clockLine.len;
    const FieldResult clockResult = decodeField(clockLine.p, clockLength, m_clock, &clock);
    failField(clockResult, clockLine.p, clockLength, m_in.number(),
              QStringLiteral("the receiver clock offset"));
    const bool hasClock = clockResult == Value;
    writeEpochLines(ids, count, hasClock ? &clock : nullptr, n);

    std::vector<qint64> values;
    std::vector<char> present;
    for (int i = 0; i < count; ++i) {
        const char* id = ids.constData() + 3 * i;
        const Line d = needInput(QT_TRANSLATE_NOOP("RinexReader", "an epoch's satellite records"));
        const qint64 dn = m_in.number();
        const SystemTable& table = *m_header.table(id[0]);
        const int typeCount = int(table.types.size());
        SatState& sat = satState(id[0], (id[1] - '0') * 10 + (id[2] - '0'), typeCount);
        values.assign(size_t(typeCount), 0);
        present.assign(size_t(typeCount), 0);
        int pos = 0;
        for (int j = 0; j < typeCount; ++j) {
            if (pos > d.len) {
                sat.fields[size_t(j)].order = -1;
                continue;
            }
            const char* space =
                static_cast<const char*>(std::memchr(d.p + pos, ' ', size_t(d.len - pos)));
            const int end = space ? int(space - d.p) : d.len;
            const FieldResult r = decodeField(d.p + pos, end - pos, sat.fields[size_t(j)],
                                              &values[size_t(j)]);
            if (r != Value && r != Missing)
                failField(r, d.p + pos, end - pos, dn,
                          QStringLiteral("%1 %2").arg(QString::fromLatin1(id, 3),
                                                      QString::fromLatin1(table.types[size_t(j)]
                                                                              .code)));
            present[size_t(j)] = r == Value;
            pos = end + 1;
        }
        if (sat.flags.size() < 2 * typeCount)
            sat.flags.append(2 * typeCount - sat.flags.size(), ' ');
        if (pos < d.len) {
            const int length = d.len - pos;
            if (length > 2 * typeCount)
                fail(dn, QStringLiteral("more flags than observations for %1")
                             .arg(QString::fromLatin1(id, 3)));
            char* flags = sat.flags.data();
            for (int k = 0; k < length; ++k) {
                const char c = d.p[pos + k];
                if (c == '&')
                    flags[k] = ' ';
                else if (c >= '0' && c <= '9')
                    flags[k] = c;
                else if (c != ' ')
                    fail(dn, QStringLiteral("bad flag '%1' for %2")
                                 .arg(QLatin1Char(c))
                                 .arg(QString::fromLatin1(id, 3)));
            }
        }
        writeRecord(id, sat, values, present, dn);
    }
    ++m_dataEpochs;
    return true;
}

} // namespace rinex
} // namespace gnssdemo
