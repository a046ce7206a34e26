// SPDX-License-Identifier: MIT
#include "RinexBody_p.h"

#include "ObservationData.h"

#include <cmath>

namespace gnssdemo {
namespace rinex {

RinexBody::RinexBody(LineSource& lines, const RinexHeader& header)
    : m_lines(lines), m_header(header)
{
    for (auto& row : m_satIndex)
        row.fill(-1);
}

void RinexBody::read()
{
    try {
        if (m_header.version >= 3)
            readV3();
        else
            readV2();
    } catch (const ParseError& e) {
        // A download or a copy cut short: keep what is whole. Damage before
        // the end still refuses the file.
        if (!e.endsInside)
            throw;
        dropOpenEpoch();
        stop.line = e.line;
        stop.endsInside = e.endsInside;
    }
    stop.epochsKept = qint64(epochs.size());
}

bool RinexBody::nextLine(Line& l)
{
    if (!m_lines.next(l))
        return false;
    // Its last fields may be missing or hold fewer digits than written.
    if (m_lines.lastLineCut() && !l.isBlank())
        failEnd(m_lines.number(), QT_TRANSLATE_NOOP("RinexReader", "a line"));
    return true;
}

Line RinexBody::needLine(const char* what)
{
    Line l;
    if (!nextLine(l))
        failEnd(m_lines.number() + 1, what);
    return l;
}

void RinexBody::beginEpoch()
{
    m_open = true;
    m_openEpochs = epochs.size();
    m_openSats = sats.size();
}

void RinexBody::dropOpenEpoch()
{
    if (!m_open)
        return;
    m_open = false;
    while (sats.size() > m_openSats) {
        const SatStore& s = sats.back();
        m_satIndex[size_t(systemSlot(s.system))][size_t(s.prn)] = -1;
        sats.pop_back();
    }
    // An epoch that repeated the time of the one before was merged into it
    // and stays.
    const size_t kept = m_openEpochs;
    if (epochs.size() <= kept)
        return;
    epochs.resize(kept);
    for (SatStore& s : sats) {
        if (s.record.size() > kept)
            s.record.resize(kept);
        for (std::vector<double>& v : s.values)
            if (v.size() > kept)
                v.resize(kept);
        for (std::vector<quint8>& f : s.lli)
            if (f.size() > kept)
                f.resize(kept);
    }
}

bool RinexBody::skipEvent(qint64 line, int flag, int count)
{
    if (flag > 6)
        fail(line, QStringLiteral("unknown epoch flag %1").arg(flag));
    if (flag < 2 || flag > 5)
        return false;
    skipLines(count, QT_TRANSLATE_NOOP("RinexReader", "an event record"));
    return true;
}

void RinexBody::skipLines(int count, const char* what)
{
    for (int i = 0; i < count; ++i)
        needLine(what);
}

bool RinexBody::readEpochTime(const Line& l, bool v3, qint64* ms) const
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
    *ms = gpstMilliseconds(year, month, day, hour, minute, seconds) + m_header.timeOffsetMs;
    return true;
}

SatStore& RinexBody::satellite(const Line& l, int col, qint64 line)
{
    char system = l.at(col);
    if (system == ' ' && m_header.version < 3)
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
        const SystemTable& table = *m_header.table(system);
        if (!table.declared)
            fail(line, QStringLiteral("no observation types declared for system %1")
                           .arg(QLatin1Char(system)));
        SatStore s;
        s.system = system;
        s.prn = prn;
        s.values.resize(size_t(table.stored));
        s.lli.resize(size_t(table.stored));
        index = int(sats.size());
        sats.push_back(std::move(s));
    }
    return sats[size_t(index)];
}

int RinexBody::epochIndexFor(qint64 ms, qint64 line)
{
    if (!epochs.empty()) {
        if (ms == epochs.back())
            return int(epochs.size()) - 1;
        if (ms < epochs.back())
            fail(line, QStringLiteral("epoch is earlier than the one before"));
    }
    if (epochs.size() >= size_t(std::numeric_limits<int>::max() - 1))
        fail(line, QStringLiteral("too many epochs"));
    epochs.push_back(ms);
    return int(epochs.size()) - 1;
}

// A cycle-slip record belongs to the epoch of the same time, or else to the
// next epoch to come.
int RinexBody::slipEpochFor(qint64 ms) const
{
    return !epochs.empty() && epochs.back() == ms ? int(epochs.size()) - 1
                                                  : int(epochs.size());
}

void RinexBody::storeFields(SatStore& sat, const SystemTable& table, int first, int count,
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

void RinexBody::readV3()
{
    Line l;
    while (nextLine(l)) {
        const qint64 n = m_lines.number();
        if (l.isBlank())
            continue;
        beginEpoch();
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
            const int epoch = slipEpochFor(ms);
            for (int i = 0; i < count; ++i) {
                const Line r = needLine(QT_TRANSLATE_NOOP("RinexReader", "a cycle-slip record"));
                satellite(r, 0, m_lines.number()).forcedSlips.push_back(epoch);
            }
            endEpoch();
            continue;
        }
        const int epoch = epochIndexFor(ms, n);
        for (int i = 0; i < count; ++i) {
            const Line r =
                needLine(QT_TRANSLATE_NOOP("RinexReader", "an epoch's satellite records"));
            if (r.at(0) == '>')
                fail(m_lines.number(), QStringLiteral("epoch announces %1 satellites but has "
                                                      "%2").arg(count).arg(i));
            SatStore& sat = satellite(r, 0, m_lines.number());
            const SystemTable& table = *m_header.table(sat.system);
            if (sat.record.size() <= size_t(epoch))
                sat.record.resize(size_t(epoch) + 1, 0);
            sat.record[size_t(epoch)] = 1;
            storeFields(sat, table, 0, int(table.types.size()), r, 3, epoch);
            if (flag == 1)
                sat.forcedSlips.push_back(epoch);
        }
        endEpoch();
    }
}

void RinexBody::readV2()
{
    const SystemTable& table = m_header.v2Table;
    const int typeCount = int(table.types.size());
    const int linesPerSat = (typeCount + 4) / 5;
    Line l;
    std::vector<int> ids;
    while (nextLine(l)) {
        const qint64 n = m_lines.number();
        if (l.isBlank())
            continue;
        beginEpoch();
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
                listLine =
                    needLine(QT_TRANSLATE_NOOP("RinexReader", "an epoch's satellite list"));
            const int col = 32 + 3 * (i % 12);
            if (listLine.field(col, 3).trimmed().isEmpty())
                fail(m_lines.number(), QStringLiteral("satellite list shorter than the "
                                                      "announced %1").arg(count));
            const SatStore& sat = satellite(listLine, col, m_lines.number());
            ids.push_back(int(&sat - sats.data()));
        }
        if (flag == 6) {
            const int epoch = slipEpochFor(ms);
            for (int id : ids)
                sats[size_t(id)].forcedSlips.push_back(epoch);
            skipLines(count * linesPerSat,
                      QT_TRANSLATE_NOOP("RinexReader", "a cycle-slip record"));
            endEpoch();
            continue;
        }
        const int epoch = epochIndexFor(ms, n);
        for (int id : ids) {
            SatStore& sat = sats[size_t(id)];
            if (sat.record.size() <= size_t(epoch))
                sat.record.resize(size_t(epoch) + 1, 0);
            sat.record[size_t(epoch)] = 1;
            for (int j = 0; j < linesPerSat; ++j) {
                const Line r = needLine(
                    QT_TRANSLATE_NOOP("RinexReader", "an epoch's observation records"));
                storeFields(sat, table, 5 * j, std::min(5, typeCount - 5 * j), r, 0, epoch);
            }
            if (flag == 1)
                sat.forcedSlips.push_back(epoch);
        }
        endEpoch();
    }
}

} // namespace rinex
} // namespace gnssdemo
