// SPDX-License-Identifier: MIT
#include "RinexHeader_p.h"

#include <QList>

#include <cmath>

namespace gnssdemo {
namespace rinex {

namespace {

void addTypes(SystemTable& table, double version, const QByteArray& codes, qint64 line)
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
        if (k == 'C' || (k == 'P' && version < 3))
            t.kind = 'C';
        else if (k == 'L' || k == 'S')
            t.kind = k;
        if (t.kind)
            t.store = table.stored++;
        table.types.push_back(t);
    }
}

void readVersionLine(const Line& l, qint64 n, RinexHeader* h)
{
    if (l.label() != "RINEX VERSION / TYPE")
        fail(n, QStringLiteral("not a RINEX file (no RINEX VERSION / TYPE line)"));
    if (!parseFixed(l.p, std::min(l.len, 9), &h->version) || std::isnan(h->version))
        fail(n, QStringLiteral("bad RINEX version"));
    if (h->version < 2.0 || h->version >= 5.0)
        fail(n, QStringLiteral("unsupported RINEX version %1").arg(h->version));
    if (l.at(20) != 'O')
        fail(n, QStringLiteral("not an observation file (type '%1')").arg(QLatin1Char(l.at(20))));
    h->fileSystem = l.at(40) == ' ' ? 'G' : l.at(40);
    // Compact version 1 holds version 2 records, compact version 3 those of
    // versions 3 and 4.
    if (h->compactVersion != 0 && (h->compactVersion == 3) != (h->version >= 3))
        fail(n, QStringLiteral("compact RINEX %1.0 cannot hold RINEX %2 observations")
                    .arg(h->compactVersion)
                    .arg(h->version, 0, 'f', 2));
}

// The two lines in front of a compact file's RINEX header.
void readCompactLines(LineCursor& lines, Line& l, RinexHeader* h)
{
    const QByteArray version = l.field(0, 20).trimmed();
    if (version == "1.0")
        h->compactVersion = 1;
    else if (version == "3.0")
        h->compactVersion = 3;
    else
        fail(1, QStringLiteral("unsupported compact RINEX version \"%1\"")
                    .arg(QString::fromLatin1(version)));
    if (l.field(20, 20).trimmed() != "COMPACT RINEX FORMAT")
        fail(1, QStringLiteral("not a compact RINEX file (no COMPACT RINEX FORMAT)"));
    if (!lines.next(l) || l.label() != "CRINEX PROG / DATE")
        fail(2, QStringLiteral("expected the CRINEX PROG / DATE line"));
    if (!lines.next(l))
        fail(3, QStringLiteral("file ends before the RINEX header"));
}

} // namespace

const SystemTable* RinexHeader::table(char system) const
{
    if (version < 3)
        return &v2Table;
    const int slot = systemSlot(system);
    return slot < 0 ? nullptr : &tables[size_t(slot)];
}

void readHeader(LineCursor& lines, RinexHeader* h)
{
    Line l;
    if (!lines.next(l))
        fail(1, QStringLiteral("empty file"));
    if (l.label().startsWith("CRINEX VERS"))
        readCompactLines(lines, l, h);
    readVersionLine(l, lines.number(), h);

    int leapSeconds = 18;
    QByteArray timeSystem;
    SystemTable* continuing = nullptr; // open SYS / # / OBS TYPES or # / TYPES OF OBSERV
    int expected = 0;
    std::vector<QByteArray> scaleLines;
    std::vector<qint64> scaleLineNumbers;
    int glonassEntries = 0;
    while (true) {
        if (!lines.next(l))
            fail(lines.number() + 1, QStringLiteral("file ends inside the header "
                                                    "(no END OF HEADER)"));
        const qint64 n = lines.number();
        const QByteArray label = l.label();
        if (label == "END OF HEADER")
            break;
        if (label == "SYS / # / OBS TYPES" && h->version >= 3) {
            if (l.at(0) != ' ') {
                const int slot = systemSlot(l.at(0));
                if (slot < 0 || !parseInt(l, 3, 3, &expected) || expected < 0)
                    fail(n, QStringLiteral("bad SYS / # / OBS TYPES line"));
                continuing = &h->tables[size_t(slot)];
                *continuing = SystemTable();
                continuing->declared = true;
            } else if (!continuing) {
                fail(n, QStringLiteral("continuation of SYS / # / OBS TYPES without a system"));
            }
            addTypes(*continuing, h->version, l.field(7, 53), n);
            if (int(continuing->types.size()) > expected)
                fail(n, QStringLiteral("more observation types than announced"));
        } else if (label == "# / TYPES OF OBSERV" && h->version < 3) {
            if (!l.field(0, 6).trimmed().isEmpty()) {
                if (!parseInt(l, 0, 6, &expected) || expected < 0)
                    fail(n, QStringLiteral("bad # / TYPES OF OBSERV line"));
                h->v2Table = SystemTable();
                h->v2Table.declared = true;
            }
            addTypes(h->v2Table, h->version, l.field(6, 54), n);
            if (int(h->v2Table.types.size()) > expected)
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
                h->glonassChannels[slot] = channel;
            }
        } else if (label == "INTERVAL") {
            double v = NaN;
            if (parseFixed(l.p, std::min(l.len, 10), &v) && v > 0)
                h->interval = v;
        } else if (label == "TIME OF FIRST OBS") {
            timeSystem = l.field(48, 3).trimmed();
        } else if (label == "MARKER NAME") {
            h->markerName = l.field(0, 60).trimmed();
        } else if (label == "APPROX POSITION XYZ") {
            double xyz[3];
            bool ok = true;
            for (int c = 0; c < 3; ++c)
                ok = ok && parseFixed(l.p + std::min(l.len, 14 * c),
                                      std::max(0, std::min(14, l.len - 14 * c)), &xyz[c])
                     && !std::isnan(xyz[c]);
            // A bad position is no reason to refuse the observations.
            for (int c = 0; c < 3 && ok; ++c)
                h->approxPosition[c] = xyz[c];
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
        for (ObsType& t : h->tables[size_t(slot)].types) {
            bool listed = count == 0;
            for (int k = 0; k < count && !listed; ++k)
                listed = s.field(10 + 4 * k, 4).trimmed() == t.code;
            if (listed)
                t.scale = factor;
        }
    }

    if (timeSystem == "BDT")
        h->timeOffsetMs = 14000;
    else if (timeSystem == "GLO" || (timeSystem.isEmpty() && h->fileSystem == 'R'))
        h->timeOffsetMs = -3 * 3600000 + qint64(leapSeconds) * 1000;

    if (h->version < 3 && (!h->v2Table.declared || h->v2Table.types.empty()))
        fail(lines.number(), QStringLiteral("header has no # / TYPES OF OBSERV"));
}

} // namespace rinex
} // namespace gnssdemo
