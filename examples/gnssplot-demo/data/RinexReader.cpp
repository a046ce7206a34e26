#include "RinexReader.h"

#include <QFileInfo>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <new>

namespace gnssdemo {

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

// Thrown inside the parser only; readText turns it into the error text.
struct ParseError
{
    qint64 line;
    QString message;
};

struct Line
{
    const char* p = nullptr;
    int len = 0;

    char at(int i) const { return i >= 0 && i < len ? p[i] : ' '; }
    bool isBlank() const
    {
        for (int i = 0; i < len; ++i)
            if (p[i] != ' ' && p[i] != '\t')
                return false;
        return true;
    }
    QByteArray label() const
    {
        return len > 60 ? QByteArray(p + 60, len - 60).trimmed() : QByteArray();
    }
    QByteArray field(int col, int width) const
    {
        if (col >= len)
            return QByteArray();
        return QByteArray(p + col, std::min(width, len - col));
    }
};

class LineCursor
{
public:
    LineCursor(const char* begin, const char* end) : m_cur(begin), m_end(end) {}

    bool next(Line& line)
    {
        if (m_cur >= m_end)
            return false;
        const char* nl = static_cast<const char*>(std::memchr(m_cur, '\n', size_t(m_end - m_cur)));
        const char* stop = nl ? nl : m_end;
        line.p = m_cur;
        line.len = int(std::min<qint64>(stop - m_cur, std::numeric_limits<int>::max()));
        if (line.len > 0 && line.p[line.len - 1] == '\r')
            --line.len;
        m_cur = nl ? nl + 1 : m_end;
        ++m_number;
        return true;
    }
    // Number of the line last returned by next(), 1-based.
    qint64 number() const { return m_number; }

private:
    const char* m_cur;
    const char* m_end;
    qint64 m_number = 0;
};

[[noreturn]] void fail(qint64 line, const QString& message)
{
    throw ParseError{line, message};
}

// Parses a right-aligned integer field; a blank field is refused unless
// blankValue is given.
bool parseInt(const Line& l, int col, int width, int* out, const int* blankValue = nullptr)
{
    int i = col;
    const int end = col + width;
    while (i < end && l.at(i) == ' ')
        ++i;
    if (i == end) {
        if (!blankValue)
            return false;
        *out = *blankValue;
        return true;
    }
    bool negative = false;
    if (l.at(i) == '-' || l.at(i) == '+') {
        negative = l.at(i) == '-';
        ++i;
    }
    qint64 value = 0;
    int digits = 0;
    while (i < end && l.at(i) >= '0' && l.at(i) <= '9') {
        value = value * 10 + (l.at(i) - '0');
        ++i;
        if (++digits > 9)
            return false;
    }
    if (digits == 0)
        return false;
    while (i < end && l.at(i) == ' ')
        ++i;
    if (i != end)
        return false;
    *out = int(negative ? -value : value);
    return true;
}

// Parses a fixed-point field such as F14.3 of n characters. A blank field
// gives NaN. Exact for the up to 17 significant digits RINEX writes: the
// digits form one integer that is divided by a power of ten once.
bool parseFixed(const char* p, int n, double* out)
{
    static const double pow10[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};
    int i = 0;
    while (i < n && p[i] == ' ')
        ++i;
    if (i == n) {
        *out = NaN;
        return true;
    }
    bool negative = false;
    if (p[i] == '-' || p[i] == '+') {
        negative = p[i] == '-';
        ++i;
    }
    qint64 mantissa = 0;
    int digits = 0;
    int fraction = 0;
    bool point = false;
    for (; i < n; ++i) {
        const char c = p[i];
        if (c >= '0' && c <= '9') {
            if (++digits > 17)
                return false;
            mantissa = mantissa * 10 + (c - '0');
            if (point)
                ++fraction;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (digits == 0)
        return false;
    for (; i < n; ++i)
        if (p[i] != ' ')
            return false;
    const double v = double(mantissa) / pow10[fraction];
    *out = negative ? -v : v;
    return true;
}

struct ObsType
{
    QByteArray code; // "C1C" or "P1"
    char kind = 0;   // 'C' (pseudorange, also version 2 'P'), 'L', or 0 for unused types
    char digit = 0;
    char attribute = ' ';
    int store = -1;  // index into SatStore::values, -1 when not kept
    double scale = 1.0;
};

struct SystemTable
{
    bool declared = false;
    std::vector<ObsType> types;
    int stored = 0;
};

struct SatStore
{
    char system = 0;
    int prn = 0;
    std::vector<std::vector<double>> values; // per stored type, grown lazily
    std::vector<std::vector<quint8>> lli;
    std::vector<quint8> record;
    std::vector<int> forcedSlips; // epoch indices
};

int systemSlot(char system)
{
    return system >= 'A' && system <= 'Z' ? system - 'A' : -1;
}

class Parser
{
public:
    Parser(const QByteArray& text) : m_lines(text.constData(), text.constData() + text.size()) {}

    std::unique_ptr<MemoryObservationSource> run(const QString& name);

private:
    void readHeader();
    void addTypes(SystemTable& table, const QByteArray& codes, qint64 line);
    void readBodyV3();
    void readBodyV2();
    bool readEpochTime(const Line& l, bool v3, qint64* ms);
    void skipLines(int count, const char* what);
    // Refuses an unknown epoch flag and skips the special records of an
    // event (flags 2 to 5); true when the epoch was such an event.
    bool skipEvent(qint64 line, int flag, int count);
    Line needLine(const char* what);
    SatStore& satellite(const Line& l, int col, qint64 line);
    int epochIndexFor(qint64 ms, qint64 line);
    void storeFields(SatStore& sat, const SystemTable& table, int first, int count,
                     const Line& l, int col, int epoch);
    void markSlip(SatStore& sat, int epoch) { sat.forcedSlips.push_back(epoch); }
    SatelliteObservations finish(SatStore& store, size_t epochCount);

    LineCursor m_lines;
    double m_version = 0;
    char m_fileSystem = 'G';
    std::array<SystemTable, 26> m_tables;
    SystemTable m_v2Table;
    std::map<int, int> m_glonassChannels;
    double m_headerInterval = 0;
    qint64 m_timeOffsetMs = 0;
    std::vector<qint64> m_epochs;
    std::vector<SatStore> m_sats;
    std::array<std::array<int, 100>, 26> m_satIndex;
};

void Parser::addTypes(SystemTable& table, const QByteArray& codes, qint64 line)
{
    for (const QByteArray& raw : codes.split(' ')) {
        if (raw.isEmpty())
            continue;
        ObsType t;
        t.code = raw;
        if (raw.size() < 2 || raw.size() > 3 || raw[1] < '1' || raw[1] > '9')
            fail(line, QStringLiteral("bad observation type \"%1\"").arg(QString::fromLatin1(raw)));
        t.digit = raw[1];
        t.attribute = raw.size() == 3 ? raw[2] : ' ';
        const char k = raw[0];
        if (k == 'C' || (k == 'P' && m_version < 3))
            t.kind = 'C';
        else if (k == 'L')
            t.kind = 'L';
        if (t.kind)
            t.store = table.stored++;
        table.types.push_back(t);
    }
}

Line Parser::needLine(const char* what)
{
    Line l;
    if (!m_lines.next(l))
        fail(m_lines.number() + 1, QStringLiteral("file ends inside %1").arg(QLatin1String(what)));
    return l;
}

bool Parser::skipEvent(qint64 line, int flag, int count)
{
    if (flag > 6)
        fail(line, QStringLiteral("unknown epoch flag %1").arg(flag));
    if (flag < 2 || flag > 5)
        return false;
    skipLines(count, "an event record");
    return true;
}

void Parser::skipLines(int count, const char* what)
{
    for (int i = 0; i < count; ++i)
        needLine(what);
}

void Parser::readHeader()
{
    Line l;
    if (!m_lines.next(l))
        fail(1, QStringLiteral("empty file"));
    if (l.label().startsWith("CRINEX"))
        fail(1, QStringLiteral("Hatanaka-compressed RINEX is not supported; decompress it first"));
    if (l.label() != "RINEX VERSION / TYPE")
        fail(1, QStringLiteral("not a RINEX file (no RINEX VERSION / TYPE line)"));
    if (!parseFixed(l.p, std::min(l.len, 9), &m_version) || std::isnan(m_version))
        fail(1, QStringLiteral("bad RINEX version"));
    if (m_version < 2.0 || m_version >= 5.0)
        fail(1, QStringLiteral("unsupported RINEX version %1").arg(m_version));
    if (l.at(20) != 'O')
        fail(1, QStringLiteral("not an observation file (type '%1')").arg(QLatin1Char(l.at(20))));
    m_fileSystem = l.at(40) == ' ' ? 'G' : l.at(40);

    int leapSeconds = 18;
    QByteArray timeSystem;
    SystemTable* continuing = nullptr; // open SYS / # / OBS TYPES or # / TYPES OF OBSERV
    int expected = 0;
    std::vector<QByteArray> scaleLines;
    std::vector<qint64> scaleLineNumbers;
    int glonassEntries = 0;
    while (true) {
        if (!m_lines.next(l))
            fail(m_lines.number() + 1, QStringLiteral("file ends inside the header "
                                                      "(no END OF HEADER)"));
        const qint64 n = m_lines.number();
        const QByteArray label = l.label();
        if (label == "END OF HEADER")
            break;
        if (label == "SYS / # / OBS TYPES" && m_version >= 3) {
            if (l.at(0) != ' ') {
                const int slot = systemSlot(l.at(0));
                if (slot < 0 || !parseInt(l, 3, 3, &expected) || expected < 0)
                    fail(n, QStringLiteral("bad SYS / # / OBS TYPES line"));
                continuing = &m_tables[size_t(slot)];
                *continuing = SystemTable();
                continuing->declared = true;
            } else if (!continuing) {
                fail(n, QStringLiteral("continuation of SYS / # / OBS TYPES without a system"));
            }
            addTypes(*continuing, l.field(7, 53), n);
            if (int(continuing->types.size()) > expected)
                fail(n, QStringLiteral("more observation types than announced"));
        } else if (label == "# / TYPES OF OBSERV" && m_version < 3) {
            if (!l.field(0, 6).trimmed().isEmpty()) {
                if (!parseInt(l, 0, 6, &expected) || expected < 0)
                    fail(n, QStringLiteral("bad # / TYPES OF OBSERV line"));
                m_v2Table = SystemTable();
                m_v2Table.declared = true;
            }
            addTypes(m_v2Table, l.field(6, 54), n);
            if (int(m_v2Table.types.size()) > expected)
                fail(n, QStringLiteral("more observation types than announced"));
        } else if (label == "SYS / SCALE FACTOR") {
            scaleLines.push_back(QByteArray(l.p, l.len));
            scaleLineNumbers.push_back(n);
        } else if (label == "GLONASS SLOT / FRQ #") {
            if (l.field(0, 3).trimmed().size() > 0 && !parseInt(l, 0, 3, &glonassEntries))
                fail(n, QStringLiteral("bad GLONASS SLOT / FRQ # line"));
            for (int k = 0; k < 8; ++k) {
                const int col = 4 + 7 * k;
                if (l.field(col, 6).trimmed().isEmpty())
                    continue;
                int slot = 0;
                int channel = 0;
                if (l.at(col) != 'R' || !parseInt(l, col + 1, 2, &slot)
                    || !parseInt(l, col + 3, 3, &channel) || channel < -7 || channel > 13)
                    fail(n, QStringLiteral("bad GLONASS SLOT / FRQ # entry"));
                m_glonassChannels[slot] = channel;
            }
        } else if (label == "INTERVAL") {
            double v = NaN;
            if (parseFixed(l.p, std::min(l.len, 10), &v) && v > 0)
                m_headerInterval = v;
        } else if (label == "TIME OF FIRST OBS") {
            timeSystem = l.field(48, 3).trimmed();
        } else if (label == "LEAP SECONDS") {
            int v = 0;
            if (parseInt(l, 0, 6, &v))
                leapSeconds = v;
        }
        if (label != "SYS / # / OBS TYPES")
            continuing = nullptr;
    }

    // Scale factors name types that must be known, so apply them last.
    for (size_t i = 0; i < scaleLines.size(); ++i) {
        Line s{scaleLines[i].constData(), int(scaleLines[i].size())};
        int factor = 0;
        int count = 0;
        const int zero = 0;
        const int slot = systemSlot(s.at(0));
        if (slot < 0 || !parseInt(s, 2, 4, &factor) || factor <= 0
            || !parseInt(s, 8, 2, &count, &zero))
            fail(scaleLineNumbers[i], QStringLiteral("bad SYS / SCALE FACTOR line"));
        for (ObsType& t : m_tables[size_t(slot)].types) {
            bool listed = count == 0;
            for (int k = 0; k < count && !listed; ++k)
                listed = s.field(10 + 4 * k, 4).trimmed() == t.code;
            if (listed)
                t.scale = factor;
        }
    }

    if (timeSystem == "BDT")
        m_timeOffsetMs = 14000;
    else if (timeSystem == "GLO" || (timeSystem.isEmpty() && m_fileSystem == 'R'))
        m_timeOffsetMs = -3 * 3600000 + qint64(leapSeconds) * 1000;

    if (m_version < 3 && (!m_v2Table.declared || m_v2Table.types.empty()))
        fail(m_lines.number(), QStringLiteral("header has no # / TYPES OF OBSERV"));
}

bool Parser::readEpochTime(const Line& l, bool v3, qint64* ms)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    double seconds = NaN;
    const int base = v3 ? 2 : 1;
    const int yearWidth = v3 ? 4 : 2;
    const int c = v3 ? base + 5 : base + 3; // month column
    if (!parseInt(l, base, yearWidth, &year) || !parseInt(l, c, 2, &month)
        || !parseInt(l, c + 3, 2, &day) || !parseInt(l, c + 6, 2, &hour)
        || !parseInt(l, c + 9, 2, &minute) || l.len < c + 11
        || !parseFixed(l.p + c + 11, std::min(11, l.len - (c + 11)), &seconds))
        return false;
    if (!v3)
        year += year < 80 ? 2000 : 1900;
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23 || minute < 0
        || minute > 59 || !(seconds >= 0.0 && seconds < 61.0))
        return false;
    *ms = gpstMilliseconds(year, month, day, hour, minute, seconds) + m_timeOffsetMs;
    return true;
}

SatStore& Parser::satellite(const Line& l, int col, qint64 line)
{
    char system = l.at(col);
    if (system == ' ' && m_version < 3)
        system = 'G';
    int prn = 0;
    const int slot = systemSlot(system);
    const char d1 = l.at(col + 1) == ' ' ? '0' : l.at(col + 1);
    const char d2 = l.at(col + 2);
    if (slot < 0 || d1 < '0' || d1 > '9' || d2 < '0' || d2 > '9')
        fail(line, QStringLiteral("bad satellite \"%1\"")
                       .arg(QString::fromLatin1(l.field(col, 3))));
    prn = (d1 - '0') * 10 + (d2 - '0');
    if (prn == 0)
        fail(line, QStringLiteral("bad satellite number 0"));
    int& index = m_satIndex[size_t(slot)][size_t(prn)];
    if (index < 0) {
        const SystemTable& table = m_version >= 3 ? m_tables[size_t(slot)] : m_v2Table;
        if (!table.declared)
            fail(line, QStringLiteral("no observation types declared for system %1")
                           .arg(QLatin1Char(system)));
        SatStore s;
        s.system = system;
        s.prn = prn;
        s.values.resize(size_t(table.stored));
        s.lli.resize(size_t(table.stored));
        index = int(m_sats.size());
        m_sats.push_back(std::move(s));
    }
    return m_sats[size_t(index)];
}

int Parser::epochIndexFor(qint64 ms, qint64 line)
{
    if (!m_epochs.empty()) {
        if (ms == m_epochs.back())
            return int(m_epochs.size()) - 1;
        if (ms < m_epochs.back())
            fail(line, QStringLiteral("epoch is earlier than the one before"));
    }
    if (m_epochs.size() >= size_t(std::numeric_limits<int>::max() - 1))
        fail(line, QStringLiteral("too many epochs"));
    m_epochs.push_back(ms);
    return int(m_epochs.size()) - 1;
}

void Parser::storeFields(SatStore& sat, const SystemTable& table, int first, int count,
                         const Line& l, int col, int epoch)
{
    for (int k = 0; k < count; ++k) {
        const ObsType& t = table.types[size_t(first + k)];
        const int at = col + 16 * k;
        if (t.store < 0 || at >= l.len)
            continue;
        double v = NaN;
        if (!parseFixed(l.p + at, std::min(14, l.len - at), &v))
            fail(m_lines.number(), QStringLiteral("bad number \"%1\" for %2%3 %4")
                                       .arg(QString::fromLatin1(l.field(at, 14).trimmed()))
                                       .arg(QLatin1Char(sat.system))
                                       .arg(sat.prn, 2, 10, QLatin1Char('0'))
                                       .arg(QString::fromLatin1(t.code)));
        if (std::isnan(v))
            continue;
        const char lli = l.at(at + 14);
        if (lli != ' ' && (lli < '0' || lli > '9'))
            fail(m_lines.number(), QStringLiteral("bad loss-of-lock indicator '%1'")
                                       .arg(QLatin1Char(lli)));
        std::vector<double>& values = sat.values[size_t(t.store)];
        std::vector<quint8>& flags = sat.lli[size_t(t.store)];
        if (values.size() <= size_t(epoch)) {
            values.resize(size_t(epoch) + 1, NaN);
            flags.resize(size_t(epoch) + 1, 0);
        }
        values[size_t(epoch)] = v / t.scale;
        flags[size_t(epoch)] = quint8(lli == ' ' ? 0 : lli - '0');
    }
}

void Parser::readBodyV3()
{
    Line l;
    while (m_lines.next(l)) {
        const qint64 n = m_lines.number();
        if (l.isBlank())
            continue;
        if (l.at(0) != '>')
            fail(n, QStringLiteral("expected an epoch line starting with '>'"));
        int flag = 0;
        int count = 0;
        if (!parseInt(l, 31, 1, &flag) || !parseInt(l, 32, 3, &count) || count < 0)
            fail(n, QStringLiteral("bad epoch line (flag or satellite count)"));
        if (skipEvent(n, flag, count))
            continue;
        qint64 ms = 0;
        if (!readEpochTime(l, true, &ms))
            fail(n, QStringLiteral("bad epoch time"));
        if (flag == 6) {
            const int epoch = !m_epochs.empty() && m_epochs.back() == ms
                                  ? int(m_epochs.size()) - 1 : int(m_epochs.size());
            for (int i = 0; i < count; ++i) {
                const Line r = needLine("a cycle-slip record");
                markSlip(satellite(r, 0, m_lines.number()), epoch);
            }
            continue;
        }
        const int epoch = epochIndexFor(ms, n);
        for (int i = 0; i < count; ++i) {
            const Line r = needLine("an epoch's satellite records");
            if (r.at(0) == '>')
                fail(m_lines.number(), QStringLiteral("epoch announces %1 satellites but has "
                                                      "%2").arg(count).arg(i));
            SatStore& sat = satellite(r, 0, m_lines.number());
            const SystemTable& table = m_tables[size_t(systemSlot(sat.system))];
            if (sat.record.size() <= size_t(epoch))
                sat.record.resize(size_t(epoch) + 1, 0);
            sat.record[size_t(epoch)] = 1;
            storeFields(sat, table, 0, int(table.types.size()), r, 3, epoch);
            if (flag == 1)
                markSlip(sat, epoch);
        }
    }
}

void Parser::readBodyV2()
{
    const int typeCount = int(m_v2Table.types.size());
    const int linesPerSat = (typeCount + 4) / 5;
    Line l;
    std::vector<int> ids;
    while (m_lines.next(l)) {
        const qint64 n = m_lines.number();
        if (l.isBlank())
            continue;
        int flag = 0;
        int count = 0;
        const int zero = 0;
        if (!parseInt(l, 28, 1, &flag, &zero) || !parseInt(l, 29, 3, &count) || count < 0)
            fail(n, QStringLiteral("bad epoch line (flag or satellite count)"));
        if (skipEvent(n, flag, count))
            continue;
        qint64 ms = 0;
        if (!readEpochTime(l, false, &ms))
            fail(n, QStringLiteral("bad epoch time"));
        // Satellite list: 12 per line, continued on following lines. Resolved
        // at once so that a bad entry is reported on its own line.
        ids.clear();
        Line listLine = l;
        for (int i = 0; i < count; ++i) {
            if (i > 0 && i % 12 == 0)
                listLine = needLine("an epoch's satellite list");
            const int col = 32 + 3 * (i % 12);
            if (listLine.field(col, 3).trimmed().isEmpty())
                fail(m_lines.number(), QStringLiteral("satellite list shorter than the "
                                                      "announced %1").arg(count));
            const SatStore& sat = satellite(listLine, col, m_lines.number());
            ids.push_back(int(&sat - m_sats.data()));
        }
        if (flag == 6) {
            const int epoch = !m_epochs.empty() && m_epochs.back() == ms
                                  ? int(m_epochs.size()) - 1 : int(m_epochs.size());
            for (int id : ids)
                markSlip(m_sats[size_t(id)], epoch);
            skipLines(count * linesPerSat, "a cycle-slip record");
            continue;
        }
        const int epoch = epochIndexFor(ms, n);
        for (int id : ids) {
            SatStore& sat = m_sats[size_t(id)];
            if (sat.record.size() <= size_t(epoch))
                sat.record.resize(size_t(epoch) + 1, 0);
            sat.record[size_t(epoch)] = 1;
            for (int j = 0; j < linesPerSat; ++j) {
                const Line r = needLine("an epoch's observation records");
                storeFields(sat, m_v2Table, 5 * j, std::min(5, typeCount - 5 * j), r, 0, epoch);
            }
            if (flag == 1)
                markSlip(sat, epoch);
        }
    }
}

// Estimates a GLONASS channel from G1: over a slip-free arc the code changes
// by the range change and the phase by the range change over the wavelength,
// so their ratio gives the frequency. The median over long arcs resists the
// odd undetected slip.
bool estimateGlonassChannel(const SignalSeries& g1, const std::vector<qint64>& epochs,
                            qint64 intervalMs, int* channel)
{
    std::vector<double> estimates;
    const size_t n = g1.pseudorange.size();
    size_t arcStart = n;
    auto closeArc = [&](size_t last) {
        if (arcStart >= n || last <= arcStart)
            return;
        const double dp = g1.pseudorange[last] - g1.pseudorange[arcStart];
        const double dl = g1.phase[last] - g1.phase[arcStart];
        if (std::fabs(dp) > 50000.0 && dl != 0.0)
            estimates.push_back((SpeedOfLight * dl / dp - 1602e6) / 0.5625e6);
    };
    size_t prev = n;
    for (size_t i = 0; i < n; ++i) {
        if (std::isnan(g1.pseudorange[i]) || std::isnan(g1.phase[i]))
            continue;
        const bool broken = prev == n || (g1.lli[i] & 1)
                            || epochs[i] - epochs[prev] > intervalMs * 3 / 2;
        if (broken) {
            closeArc(prev);
            arcStart = i;
        }
        prev = i;
    }
    closeArc(prev);
    if (estimates.empty())
        return false;
    std::nth_element(estimates.begin(), estimates.begin() + estimates.size() / 2, estimates.end());
    const double k = estimates[estimates.size() / 2];
    const double rounded = std::round(k);
    if (std::fabs(k - rounded) > 0.25 || rounded < -7 || rounded > 13)
        return false;
    *channel = int(rounded);
    return true;
}

SatelliteObservations Parser::finish(SatStore& store, size_t epochCount)
{
    SatelliteObservations out;
    out.system = store.system;
    out.prn = store.prn;
    out.name = QStringLiteral("%1%2").arg(QLatin1Char(store.system))
                   .arg(store.prn, 2, 10, QLatin1Char('0'));
    store.record.resize(epochCount, 0);
    out.record = std::move(store.record);

    const SystemTable& table = m_version >= 3 ? m_tables[size_t(systemSlot(store.system))]
                                              : m_v2Table;
    std::vector<qint64> counts(size_t(table.stored), 0);
    for (const ObsType& t : table.types)
        if (t.store >= 0)
            counts[size_t(t.store)] = std::count_if(
                store.values[size_t(t.store)].begin(), store.values[size_t(t.store)].end(),
                [](double v) { return !std::isnan(v); });

    // Picks the type of one kind on one band with the most values, then the
    // better-ranked signal, then header order; `attribute` prefers a phase
    // tracked like the chosen code.
    auto pick = [&](char kind, int band, char attribute) -> const ObsType* {
        const ObsType* best = nullptr;
        std::tuple<int, qint64, int> bestKey;
        for (const ObsType& t : table.types) {
            if (t.kind != kind || counts[size_t(t.store)] == 0)
                continue;
            const BandSlot slot = bandOfSignal(store.system, t.digit, m_version);
            if (slot.band != band)
                continue;
            const std::tuple<int, qint64, int> key(attribute != 0 && t.attribute == attribute,
                                                   counts[size_t(t.store)], -slot.rank);
            if (!best || key > bestKey) {
                best = &t;
                bestKey = key;
            }
        }
        return best;
    };

    char digits[BandCount] = {};
    for (int band = 0; band < BandCount; ++band) {
        const ObsType* code = pick('C', band, 0);
        const ObsType* phase = pick('L', band, code ? code->attribute : 0);
        if (!code && !phase)
            continue;
        SignalSeries& s = out.bands[band];
        s.reset(epochCount);
        if (code) {
            s.codeType = QString::fromLatin1(code->code);
            std::vector<double>& v = store.values[size_t(code->store)];
            std::copy(v.begin(), v.end(), s.pseudorange.begin());
            std::vector<double>().swap(v);
        }
        if (phase) {
            s.phaseType = QString::fromLatin1(phase->code);
            std::vector<double>& v = store.values[size_t(phase->store)];
            std::copy(v.begin(), v.end(), s.phase.begin());
            const std::vector<quint8>& f = store.lli[size_t(phase->store)];
            std::copy(f.begin(), f.end(), s.lli.begin());
            std::vector<double>().swap(v);
        }
        for (int e : store.forcedSlips)
            if (e >= 0 && size_t(e) < epochCount)
                s.lli[size_t(e)] |= 1;
        digits[band] = phase ? phase->digit : code->digit;
    }

    if (out.system == 'R') {
        const auto it = m_glonassChannels.find(out.prn);
        if (it != m_glonassChannels.end()) {
            out.glonassChannel = it->second;
            out.channelOrigin = ChannelOrigin::Header;
        } else if (digits[BandL1] == '1'
                   && estimateGlonassChannel(out.bands[BandL1], m_epochs,
                                             m_headerInterval > 0
                                                 ? qint64(std::llround(m_headerInterval * 1000))
                                                 : typicalIntervalMs(m_epochs, 1000),
                                             &out.glonassChannel)) {
            out.channelOrigin = ChannelOrigin::Estimated;
        } else {
            out.channelOrigin = ChannelOrigin::Default;
            if (!defaultGlonassChannel(out.prn, &out.glonassChannel))
                out.glonassChannel = 0;
        }
    }
    for (int band = 0; band < BandCount; ++band)
        if (digits[band])
            out.bands[band].frequencyHz = carrierFrequency(out.system, digits[band],
                                                           out.glonassChannel, m_version);
    return out;
}

std::unique_ptr<MemoryObservationSource> Parser::run(const QString& name)
{
    for (auto& row : m_satIndex)
        row.fill(-1);
    readHeader();
    if (m_version >= 3)
        readBodyV3();
    else
        readBodyV2();

    std::vector<SatelliteObservations> sats;
    sats.reserve(m_sats.size());
    for (SatStore& s : m_sats)
        sats.push_back(finish(s, m_epochs.size()));
    m_sats.clear();
    const qint64 interval = m_headerInterval > 0 ? qint64(std::llround(m_headerInterval * 1000))
                                                 : typicalIntervalMs(m_epochs, 1000);
    const QString description = QStringLiteral("RINEX %1 observations %2")
                                    .arg(m_version, 0, 'f', 2).arg(name);
    return std::make_unique<MemoryObservationSource>(description, std::move(m_epochs),
                                                     interval > 0 ? interval : 1000,
                                                     std::move(sats));
}

} // namespace

std::unique_ptr<MemoryObservationSource> RinexReader::readText(const QByteArray& text,
                                                               const QString& name,
                                                               QString* error)
{
    try {
        Parser parser(text);
        return parser.run(name);
    } catch (const ParseError& e) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(e.line).arg(e.message);
    } catch (const std::bad_alloc&) {
        if (error)
            *error = QStringLiteral("out of memory");
    }
    return nullptr;
}

std::unique_ptr<MemoryObservationSource> RinexReader::readFile(const QString& path,
                                                               QString* error)
{
    QByteArray text;
    QString message;
    if (!readMaybeGzipped(path, &text, &message)) {
        if (error)
            *error = message;
        return nullptr;
    }
    const QString name = QFileInfo(path).fileName();
    auto source = readText(text, name, &message);
    if (!source && error)
        *error = QStringLiteral("%1: %2").arg(name, message);
    return source;
}

bool readMaybeGzipped(const QString& path, QByteArray* content, QString* error)
{
    const QString name = QFileInfo(path).fileName();
    // gzread passes files that are not gzip streams through unchanged.
    gzFile file = gzopen(QFile::encodeName(path).constData(), "rb");
    if (!file) {
        if (error)
            *error = QStringLiteral("%1: cannot open the file").arg(name);
        return false;
    }
    gzbuffer(file, 1 << 18);
    content->clear();
    const int chunk = 1 << 22;
    bool ok = true;
    try {
        while (true) {
            const int old = content->size();
            if (old > std::numeric_limits<int>::max() - chunk) {
                ok = false;
                if (error)
                    *error = QStringLiteral("%1: file too large").arg(name);
                break;
            }
            content->resize(old + chunk);
            const int got = gzread(file, content->data() + old, unsigned(chunk));
            if (got < 0) {
                int code = 0;
                ok = false;
                if (error)
                    *error = QStringLiteral("%1: cannot decompress (%2)")
                                 .arg(name, QString::fromLocal8Bit(gzerror(file, &code)));
                break;
            }
            content->resize(old + got);
            if (got < chunk)
                break;
        }
    } catch (const std::bad_alloc&) {
        ok = false;
        if (error)
            *error = QStringLiteral("%1: out of memory").arg(name);
    }
    int code = Z_OK;
    const char* message = gzerror(file, &code);
    if (ok && code != Z_OK && code != Z_STREAM_END) {
        ok = false;
        if (error)
            *error = QStringLiteral("%1: damaged compressed data (%2)")
                         .arg(name, QString::fromLocal8Bit(message));
    }
    gzclose(file);
    if (!ok)
        content->clear();
    return ok;
}

} // namespace gnssdemo
