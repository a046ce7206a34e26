// SPDX-License-Identifier: MIT
// RINEX navigation records: the header, the record boundaries of each
// version, and the fields of each system's record, converted to the units
// and the time scale (GPST) the orbit code works in.
#include "NavigationReader.h"

#include "ObservationData.h"
#include "RinexFields_p.h"
#include "RinexReader.h"

#include <QFileInfo>
#include <QList>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace gnssdemo {

namespace {

using rinex::Line;

constexpr qint64 WeekMs = 604800000;
constexpr int MaxMessages = 5;

// Milliseconds from 1970 to the start of GPS week 0 (1980-01-06 00:00).
qint64 gpsEpochMs()
{
    return gpstMilliseconds(1980, 1, 6, 0, 0, 0.0);
}

// A number of a navigation record: optional sign, digits with a point, an
// exponent with E, e, D or d ("-1.862645149231D-09", ".999e+09"). Blank gives
// NaN. Computed from the digits with one multiplication or division by an
// exact power of ten, so every platform reads the same double.
bool parseNumber(const Line& l, int col, int width, double* out)
{
    static const double pow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    int i = col;
    const int end = col + width;
    while (i < end && l.at(i) == ' ')
        ++i;
    if (i == end) {
        *out = rinex::NaN;
        return true;
    }
    bool negative = false;
    if (l.at(i) == '-' || l.at(i) == '+')
        negative = l.at(i++) == '-';
    qint64 mantissa = 0;
    int digits = 0;
    bool anyDigit = false;
    int scale = 0; // power of ten to apply to the mantissa
    bool point = false;
    for (; i < end; ++i) {
        const char c = l.at(i);
        if (c >= '0' && c <= '9') {
            anyDigit = true;
            if (digits < 18) {
                mantissa = mantissa * 10 + (c - '0');
                if (mantissa != 0)
                    ++digits;
                if (point)
                    --scale;
            } else if (!point) {
                ++scale;
            }
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (!anyDigit)
        return false;
    if (i < end && (l.at(i) == 'E' || l.at(i) == 'e' || l.at(i) == 'D' || l.at(i) == 'd')) {
        ++i;
        bool negativeExponent = false;
        if (l.at(i) == '-' || l.at(i) == '+')
            negativeExponent = l.at(i++) == '-';
        int exponent = 0;
        int exponentDigits = 0;
        while (i < end && l.at(i) >= '0' && l.at(i) <= '9') {
            if (exponent < 10000)
                exponent = exponent * 10 + (l.at(i) - '0');
            ++i;
            ++exponentDigits;
        }
        if (exponentDigits == 0)
            return false;
        scale += negativeExponent ? -exponent : exponent;
    }
    for (; i < end; ++i) {
        if (l.at(i) != ' ')
            return false;
    }
    double v = double(mantissa);
    if (mantissa != 0) {
        if (scale >= 0 && scale <= 22)
            v *= pow10[scale];
        else if (scale < 0 && scale >= -22)
            v /= pow10[-scale];
        else
            v *= std::pow(10.0, double(scale));
    }
    if (!std::isfinite(v))
        return false;
    *out = negative ? -v : v;
    return true;
}

struct Failure
{
    QString message;
};

// The record being read: its lines and where its numbers are.
struct Record
{
    const std::vector<Line>* lines = nullptr;
    size_t first = 0;   // index of the epoch line
    size_t count = 0;   // lines of the record
    int epochColumn = 23; // first number of the epoch line
    int orbitColumn = 4;  // first number of the other lines

    // Number \a f (0-based) of line \a r (0: the epoch line); blank gives
    // NaN, or a failure when \a required.
    double value(size_t r, int f, bool required = true) const
    {
        if (r >= count)
            throw Failure{QStringLiteral("record too short")};
        const Line& l = (*lines)[first + r];
        const int col = (r == 0 ? epochColumn : orbitColumn) + 19 * f;
        double v = rinex::NaN;
        if (!parseNumber(l, col, 19, &v))
            throw Failure{QStringLiteral("bad number \"%1\" in line %2 of the record")
                              .arg(QString::fromLatin1(l.field(col, 19).trimmed()))
                              .arg(r + 1)};
        if (required && std::isnan(v))
            throw Failure{QStringLiteral("missing number in line %1 of the record").arg(r + 1)};
        return v;
    }
};

int fieldInt(const Line& l, int col, int width)
{
    int v = 0;
    if (!rinex::parseInt(l, col, width, &v))
        throw Failure{QStringLiteral("bad date or time in the record's first line")};
    return v;
}

// The record's time in its system's own calendar, milliseconds.
qint64 epochOf(const Line& l, bool twoDigitYear)
{
    int year, month, day, hour, minute;
    double seconds = 0;
    if (twoDigitYear) {
        year = fieldInt(l, 2, 3);
        year += year < 80 ? 2000 : 1900;
        month = fieldInt(l, 5, 3);
        day = fieldInt(l, 8, 3);
        hour = fieldInt(l, 11, 3);
        minute = fieldInt(l, 14, 3);
        if (!rinex::parseFixed(l.p + std::min(17, l.len), std::max(0, std::min(5, l.len - 17)),
                               &seconds)
            || std::isnan(seconds))
            throw Failure{QStringLiteral("bad date or time in the record's first line")};
    } else {
        year = fieldInt(l, 3, 5);
        month = fieldInt(l, 8, 3);
        day = fieldInt(l, 11, 3);
        hour = fieldInt(l, 14, 3);
        minute = fieldInt(l, 17, 3);
        seconds = fieldInt(l, 20, 3);
    }
    if (year < 1980 || year > 2200 || month < 1 || month > 12 || day < 1 || day > 31
        || hour < 0 || hour > 24 || minute < 0 || minute > 59 || seconds < 0
        || seconds >= 61)
        throw Failure{QStringLiteral("bad date or time in the record's first line")};
    return gpstMilliseconds(year, month, day, hour, minute, seconds);
}

// The bits of a flag field written as a number; 0 for a value that is no
// flag word (negative, fractional garbage, out of range).
int flagBits(double value)
{
    return value >= 0.0 && value < 65536.0 ? int(value) : 0;
}

qint64 floorMod(qint64 a, qint64 m)
{
    const qint64 r = a % m;
    return r < 0 ? r + m : r;
}

struct FileState
{
    double version = 0;
    char fileSystem = 'G';
    int headerLeapSeconds = -1;
    NavigationFileReport report;
    NavigationData* data = nullptr;
};

// Orbital elements of GPS, QZSS, Galileo and BeiDou records.
void readKepler(const Record& rec, qint64 calendarMs, Ephemeris& eph)
{
    eph.crs = rec.value(1, 1);
    eph.deltaN = rec.value(1, 2);
    eph.m0 = rec.value(1, 3);
    eph.cuc = rec.value(2, 0);
    eph.e = rec.value(2, 1);
    eph.cus = rec.value(2, 2);
    eph.sqrtA = rec.value(2, 3);
    eph.toeSeconds = rec.value(3, 0);
    eph.cic = rec.value(3, 1);
    eph.omega0 = rec.value(3, 2);
    eph.cis = rec.value(3, 3);
    eph.i0 = rec.value(4, 0);
    eph.crc = rec.value(4, 1);
    eph.omega = rec.value(4, 2);
    eph.omegaDot = rec.value(4, 3);
    eph.idot = rec.value(5, 0);
    if (!(eph.toeSeconds >= 0 && eph.toeSeconds <= 604800))
        throw Failure{QStringLiteral("toe outside the week")};
    if (!(eph.sqrtA > 1000.0 && eph.sqrtA < 30000.0) || !(eph.e >= 0.0 && eph.e < 1.0))
        throw Failure{QStringLiteral("no orbit (semi-major axis or eccentricity)")};
    // toe in the week of the record's clock time (toc), which tells the week
    // without relying on the record's week number.
    const qint64 tocInWeek = floorMod(calendarMs - gpsEpochMs(), WeekMs);
    qint64 shift = qint64(std::llround(eph.toeSeconds * 1000.0)) - tocInWeek;
    shift = floorMod(shift + WeekMs / 2, WeekMs) - WeekMs / 2;
    eph.referenceMs = calendarMs + shift;
}

// GLONASS and SBAS: the state vector, km to metres.
void readState(const Record& rec, Ephemeris& eph)
{
    for (int c = 0; c < 3; ++c) {
        eph.position[c] = rec.value(size_t(c) + 1, 0) * 1000.0;
        eph.velocity[c] = rec.value(size_t(c) + 1, 1) * 1000.0;
        eph.acceleration[c] = rec.value(size_t(c) + 1, 2) * 1000.0;
    }
}

int gpsLeapSecondsAt(const FileState& state, qint64 utcMs)
{
    if (state.headerLeapSeconds >= 0)
        return state.headerLeapSeconds;
    return gpsLeapSeconds(utcMs);
}

// Parses the record; \a message is the RINEX 4 message type, or empty.
Ephemeris readRecord(const Record& rec, FileState& state, char system, int prn,
                     const QByteArray& message)
{
    const Line& head = (*rec.lines)[rec.first];
    const qint64 calendarMs = epochOf(head, state.version < 3);
    Ephemeris eph;
    eph.system = system;
    eph.prn = prn;
    eph.line = qint64(rec.first) + 1;
    switch (system) {
    case 'G':
    case 'J': {
        readKepler(rec, calendarMs, eph);
        eph.message = NavMessage::GpsLnav;
        eph.healthy = rec.value(6, 1) == 0.0;
        const double fit = rec.value(7, 1, false);
        if (system == 'G')
            eph.fitHalfSeconds = fit > 0 ? std::min(fit, 8.0) * 1800.0 : 7200.0;
        else
            eph.fitHalfSeconds = fit > 0 ? 7200.0 : 3600.0;
        break;
    }
    case 'E': {
        readKepler(rec, calendarMs, eph);
        const double sourceValue = rec.value(5, 1, false);
        const int source = flagBits(sourceValue) & 0x3ff;
        const bool fnav = message.isEmpty() ? (source & 0x2) && !(source & 0x5)
                                            : message == "FNAV";
        eph.message = fnav ? NavMessage::GalileoFnav : NavMessage::GalileoInav;
        const double healthValue = rec.value(6, 1);
        if (!(healthValue >= 0.0 && healthValue < 65536.0))
            throw Failure{QStringLiteral("bad health word")};
        const int health = int(healthValue) & 0x1ff;
        // Status bits of the message's own signals: E5a for F/NAV, E1-B and
        // E5b for I/NAV.
        eph.healthy = fnav ? (health & 0x038) == 0 : (health & 0x1c7) == 0;
        eph.fitHalfSeconds = 7200.0;
        break;
    }
    case 'C': {
        // toc and toe in BDT, whose weeks start with GPS weeks' Sundays;
        // BDT + 14 s = GPST.
        readKepler(rec, calendarMs, eph);
        eph.referenceMs += 14000;
        eph.geostationary = prn <= 5 || prn >= 59;
        eph.message = message == "D2" || (message.isEmpty() && eph.geostationary)
                          ? NavMessage::BeidouD2
                          : NavMessage::BeidouD1;
        eph.healthy = rec.value(6, 1) == 0.0;
        eph.fitHalfSeconds = 7200.0;
        break;
    }
    case 'R': {
        readState(rec, eph);
        eph.message = NavMessage::Glonass;
        eph.healthy = rec.value(1, 3) == 0.0;
        // RINEX gives GLONASS times in UTC (GLONASS time less 3 hours).
        eph.referenceMs = calendarMs + qint64(gpsLeapSecondsAt(state, calendarMs)) * 1000;
        eph.fitHalfSeconds = 900.0;
        break;
    }
    case 'S': {
        readState(rec, eph);
        eph.message = NavMessage::Sbas;
        eph.referenceMs = calendarMs;
        eph.fitHalfSeconds = 600.0;
        break;
    }
    default:
        throw Failure{QStringLiteral("no system")};
    }
    return eph;
}

// Lines of one record of each system in versions 2 and 3 (a RINEX 3.05
// GLONASS record may carry a fifth).
size_t recordLines(char system)
{
    return system == 'R' || system == 'S' ? 4 : 8;
}

bool usedSystem(char system)
{
    return system == 'G' || system == 'J' || system == 'E' || system == 'C' || system == 'R'
           || system == 'S';
}

QString kindName(char system, const QByteArray& message)
{
    if (system == 'I' && message.isEmpty())
        return QStringLiteral("NavIC");
    return message.isEmpty() ? QString(QLatin1Char(system))
                             : QStringLiteral("%1 %2").arg(QLatin1Char(system))
                                   .arg(QString::fromLatin1(message));
}

void noteUnsupported(FileState& state, const QString& kind)
{
    ++state.report.skippedUnsupported;
    if (!state.report.unsupportedKinds.contains(kind))
        state.report.unsupportedKinds << kind;
}

void noteDamaged(FileState& state, size_t lineIndex, const QString& why)
{
    ++state.report.damaged;
    if (state.report.damagedMessages.size() < MaxMessages)
        state.report.damagedMessages << QStringLiteral("line %1: %2").arg(lineIndex + 1).arg(why);
}

// Reads one record and adds it; the failure of a damaged record is noted.
void takeRecord(const Record& rec, FileState& state, char system, int prn,
                const QByteArray& message)
{
    try {
        Ephemeris eph = readRecord(rec, state, system, prn, message);
        ++state.report.records[system];
        if (!state.data->add(std::move(eph)))
            ++state.report.duplicates;
    } catch (const Failure& f) {
        noteDamaged(state, rec.first, f.message);
    }
}

// The satellite of a record's first line: "G05" (version 3), " 5" (version
// 2, the system is the file's). False for a line that names none.
bool satelliteOf(const Line& l, const FileState& state, char* system, int* prn)
{
    if (state.version < 3) {
        *system = state.fileSystem;
        return rinex::parseInt(l, 0, 2, prn) && *prn > 0;
    }
    *system = l.at(0);
    const int zero = 0;
    if (*system < 'A' || *system > 'Z' || !rinex::parseInt(l, 1, 2, prn, &zero))
        return false;
    return *prn > 0;
}

bool startsRecord(const Line& l, double version)
{
    if (l.isBlank())
        return false;
    return version < 3 ? (l.at(0) != ' ' || l.at(1) != ' ') : l.at(0) != ' ';
}

// Versions 2 and 3: a record is its first line and the indented lines after it.
void readPlainRecords(const std::vector<Line>& lines, size_t from, FileState& state)
{
    Record rec;
    rec.lines = &lines;
    rec.epochColumn = state.version < 3 ? 22 : 23;
    rec.orbitColumn = state.version < 3 ? 3 : 4;
    size_t i = from;
    while (i < lines.size()) {
        if (!startsRecord(lines[i], state.version)) {
            if (!lines[i].isBlank())
                noteDamaged(state, i, QStringLiteral("line outside a record"));
            ++i;
            continue;
        }
        size_t end = i + 1;
        while (end < lines.size() && !startsRecord(lines[end], state.version)
               && !lines[end].isBlank())
            ++end;
        rec.first = i;
        rec.count = end - i;
        char system = 0;
        int prn = 0;
        if (!satelliteOf(lines[i], state, &system, &prn)) {
            noteDamaged(state, i, QStringLiteral("no satellite at the start of the record"));
        } else if (rec.count < recordLines(system)) {
            if (end == lines.size())
                state.report.cutShort = true;
            else
                noteDamaged(state, i, QStringLiteral("record has %1 of its %2 lines")
                                          .arg(rec.count)
                                          .arg(recordLines(system)));
        } else if (!usedSystem(system)) {
            noteUnsupported(state, kindName(system, QByteArray()));
        } else {
            takeRecord(rec, state, system, prn, QByteArray());
        }
        i = end;
    }
}

// Version 4: every record behind a line "> EPH G05 LNAV", "> STO ...".
void readVersion4Records(const std::vector<Line>& lines, size_t from, FileState& state)
{
    Record rec;
    rec.lines = &lines;
    size_t i = from;
    while (i < lines.size()) {
        const Line& l = lines[i];
        if (l.at(0) != '>') {
            if (!l.isBlank())
                noteDamaged(state, i, QStringLiteral("line outside a record"));
            ++i;
            continue;
        }
        size_t end = i + 1;
        while (end < lines.size() && lines[end].at(0) != '>')
            ++end;
        const QList<QByteArray> words = QByteArray(l.p, l.len).simplified().split(' ');
        const QByteArray type = words.size() > 1 ? words[1] : QByteArray();
        if (type != "EPH") {
            if (type != "STO" && type != "EOP" && type != "ION")
                noteDamaged(state, i, QStringLiteral("unknown record type"));
            i = end;
            continue;
        }
        const QByteArray sat = words.size() > 2 ? words[2] : QByteArray();
        const QByteArray message = words.size() > 3 ? words[3] : QByteArray();
        const char system = sat.isEmpty() ? 0 : sat[0];
        const int satPrn = sat.mid(1).toInt();
        rec.first = i + 1;
        rec.count = end - (i + 1);
        static const char* const used[][2] = {{"G", "LNAV"}, {"J", "LNAV"}, {"E", "INAV"},
                                              {"E", "FNAV"}, {"C", "D1"},   {"C", "D2"},
                                              {"R", "FDMA"}, {"S", "SBAS"}};
        bool known = false;
        for (const auto& pair : used)
            known = known || (system == pair[0][0] && message == pair[1]);
        char recordSystem = 0;
        int prn = 0;
        if (!known) {
            noteUnsupported(state, kindName(system, message));
        } else if (rec.count == 0 || !satelliteOf(lines[rec.first], state, &recordSystem, &prn)
                   || recordSystem != system || prn != satPrn) {
            if (rec.count == 0 && end == lines.size())
                state.report.cutShort = true;
            else
                noteDamaged(state, i, QStringLiteral("record does not start with %1")
                                          .arg(QString::fromLatin1(sat)));
        } else if (rec.count < recordLines(system)) {
            if (end == lines.size())
                state.report.cutShort = true;
            else
                noteDamaged(state, i, QStringLiteral("record has %1 of its %2 lines")
                                          .arg(rec.count)
                                          .arg(recordLines(system)));
        } else {
            takeRecord(rec, state, system, prn, message);
        }
        i = end;
    }
}

// Reads the header; returns the index of the first line after it.
size_t readNavigationHeader(const std::vector<Line>& lines, FileState& state)
{
    if (lines.empty())
        rinex::fail(1, QStringLiteral("empty file"));
    const Line& first = lines[0];
    if (first.label() != "RINEX VERSION / TYPE")
        rinex::fail(1, QStringLiteral("not a RINEX file (no RINEX VERSION / TYPE line)"));
    double version = rinex::NaN;
    if (!rinex::parseFixed(first.p, std::min(first.len, 9), &version) || std::isnan(version))
        rinex::fail(1, QStringLiteral("bad RINEX version"));
    if (version < 2.0 || version >= 5.0)
        rinex::fail(1, QStringLiteral("unsupported RINEX version %1").arg(version));
    state.version = version;
    const char type = first.at(20);
    if (version >= 3) {
        if (type != 'N')
            rinex::fail(1, QStringLiteral("not a navigation file (type '%1')")
                               .arg(QLatin1Char(type)));
        state.fileSystem = first.at(40) == ' ' ? 'G' : first.at(40);
    } else if (type == 'N') {
        state.fileSystem = 'G';
    } else if (type == 'G') {
        state.fileSystem = 'R';
    } else if (type == 'H') {
        state.fileSystem = 'S';
    } else {
        rinex::fail(1, QStringLiteral("not a navigation file (type '%1')").arg(QLatin1Char(type)));
    }
    for (size_t i = 1; i < lines.size(); ++i) {
        const QByteArray label = lines[i].label();
        if (label == "END OF HEADER")
            return i + 1;
        if (label == "LEAP SECONDS") {
            int leap = 0;
            if (rinex::parseInt(lines[i], 0, 6, &leap) && leap >= 0 && leap < 100)
                state.headerLeapSeconds = leap;
        }
    }
    rinex::fail(qint64(lines.size()) + 1,
                QStringLiteral("file ends inside the header (no END OF HEADER)"));
}

} // namespace

int gpsLeapSeconds(qint64 gpstMs)
{
    // GPS - UTC steps, each from the first of the month given.
    static const int steps[][3] = {{1981, 7, 1},  {1982, 7, 1},  {1983, 7, 1},  {1985, 7, 1},
                                   {1988, 1, 1},  {1990, 1, 1},  {1991, 1, 1},  {1992, 7, 1},
                                   {1993, 7, 1},  {1994, 7, 1},  {1996, 1, 1},  {1997, 7, 1},
                                   {1999, 1, 1},  {2006, 1, 1},  {2009, 1, 1},  {2012, 7, 1},
                                   {2015, 7, 1},  {2017, 1, 1}};
    int leap = 0;
    for (const auto& s : steps) {
        if (gpstMs >= gpstMilliseconds(s[0], s[1], s[2], 0, 0, 0.0) + qint64(leap + 1) * 1000)
            ++leap;
    }
    return leap;
}

bool NavigationReader::readText(const QByteArray& text, const QString& name,
                                NavigationData* data, QString* error)
{
    if (!data)
        return false;
    try {
        std::vector<Line> lines;
        rinex::LineCursor cursor(text.constData(), text.constData() + text.size());
        Line l;
        while (cursor.next(l))
            lines.push_back(l);
        // A file's last line break leaves no line behind it.
        NavigationData added;
        FileState state;
        state.data = &added;
        state.report.file = name;
        const size_t body = readNavigationHeader(lines, state);
        state.report.version = state.version;
        if (state.version >= 4)
            readVersion4Records(lines, body, state);
        else
            readPlainRecords(lines, body, state);
        // Ephemerides repeated from files read before are dropped too.
        state.report.duplicates += data->merge(added);
        data->addReport(state.report);
        return true;
    } catch (const rinex::ParseError& e) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(e.line).arg(e.message);
    } catch (const std::bad_alloc&) {
        if (error)
            *error = QStringLiteral("out of memory");
    }
    return false;
}

bool NavigationReader::readFile(const QString& path, NavigationData* data, QString* error)
{
    QByteArray text;
    QString message;
    if (!readMaybeGzipped(path, &text, &message)) {
        if (error)
            *error = message;
        return false;
    }
    const QString name = QFileInfo(path).fileName();
    if (!readText(text, name, data, &message)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(name, message);
        return false;
    }
    return true;
}

} // namespace gnssdemo
