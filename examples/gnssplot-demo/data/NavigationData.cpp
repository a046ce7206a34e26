// SPDX-License-Identifier: MIT
#include "NavigationData.h"

#include "Orbits.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace gnssdemo {

namespace {

// No fit interval is longer than this; selection searches this far.
constexpr qint64 LongestFitHalfMs = 4 * 3600 * 1000;

// At an equal distance in time the open service's message wins.
int messageRank(NavMessage message)
{
    return message == NavMessage::GalileoFnav ? 1 : 0;
}

bool sameElements(const Ephemeris& a, const Ephemeris& b)
{
    auto same = [](const double* x, const double* y, int n) {
        return std::memcmp(x, y, sizeof(double) * size_t(n)) == 0;
    };
    const double ka[] = {a.toeSeconds, a.sqrtA, a.e, a.m0, a.deltaN, a.omega0, a.omegaDot,
                         a.i0, a.idot, a.omega, a.cuc, a.cus, a.crc, a.crs, a.cic, a.cis};
    const double kb[] = {b.toeSeconds, b.sqrtA, b.e, b.m0, b.deltaN, b.omega0, b.omegaDot,
                         b.i0, b.idot, b.omega, b.cuc, b.cus, b.crc, b.crs, b.cic, b.cis};
    return a.message == b.message && a.referenceMs == b.referenceMs
           && a.healthy == b.healthy && same(ka, kb, 16) && same(a.position, b.position, 3)
           && same(a.velocity, b.velocity, 3) && same(a.acceleration, b.acceleration, 3);
}

} // namespace

QString navMessageName(NavMessage message)
{
    switch (message) {
    case NavMessage::GpsLnav: return QStringLiteral("LNAV");
    case NavMessage::GalileoInav: return QStringLiteral("INAV");
    case NavMessage::GalileoFnav: return QStringLiteral("FNAV");
    case NavMessage::BeidouD1: return QStringLiteral("D1");
    case NavMessage::BeidouD2: return QStringLiteral("D2");
    case NavMessage::Glonass: return QStringLiteral("FDMA");
    case NavMessage::Sbas: return QStringLiteral("SBAS");
    }
    return QString();
}

QString Ephemeris::satelliteName() const
{
    return QStringLiteral("%1%2").arg(QLatin1Char(system)).arg(prn, 2, 10, QLatin1Char('0'));
}

int NavigationFileReport::recordCount() const
{
    int n = 0;
    for (const auto& entry : records)
        n += entry.second;
    return n;
}

QString NavigationFileReport::summary() const
{
    QStringList perSystem;
    for (const auto& entry : records)
        perSystem << QStringLiteral("%1 %2").arg(QLatin1Char(entry.first)).arg(entry.second);
    QString text = QStringLiteral("%1: RINEX %2, %3 ephemerides")
                       .arg(file)
                       .arg(version, 0, 'f', 2)
                       .arg(recordCount());
    if (!perSystem.isEmpty())
        text += QStringLiteral(" (%1)").arg(perSystem.join(QStringLiteral(", ")));
    if (duplicates > 0)
        text += QStringLiteral(", %1 repeated").arg(duplicates);
    if (skippedUnsupported > 0)
        text += QStringLiteral(", %1 records not used (%2)")
                    .arg(skippedUnsupported)
                    .arg(unsupportedKinds.join(QStringLiteral(", ")));
    if (damaged > 0)
        text += QStringLiteral(", %1 damaged records skipped (%2)")
                    .arg(damaged)
                    .arg(damagedMessages.join(QStringLiteral("; ")));
    if (cutShort)
        text += QStringLiteral(", file ends inside a record");
    return text;
}

bool NavigationData::add(Ephemeris eph)
{
    std::vector<Ephemeris>& list = m_satellites[eph.satelliteName()];
    const auto first = std::lower_bound(
        list.begin(), list.end(), eph.referenceMs,
        [](const Ephemeris& e, qint64 t) { return e.referenceMs < t; });
    auto last = first;
    for (; last != list.end() && last->referenceMs == eph.referenceMs; ++last) {
        if (sameElements(*last, eph))
            return false;
    }
    if (eph.system == 'R' && eph.glonassNodes.empty())
        prepareGlonassNodes(eph);
    list.insert(last, std::move(eph));
    return true;
}

int NavigationData::merge(const NavigationData& other)
{
    int dropped = 0;
    for (const auto& entry : other.m_satellites) {
        for (const Ephemeris& eph : entry.second)
            dropped += add(eph) ? 0 : 1;
    }
    m_reports.insert(m_reports.end(), other.m_reports.begin(), other.m_reports.end());
    return dropped;
}

QStringList NavigationData::satellites() const
{
    QStringList names;
    for (const auto& entry : m_satellites)
        names << entry.first;
    return names;
}

const std::vector<Ephemeris>* NavigationData::ephemerides(const QString& name) const
{
    const auto it = m_satellites.find(name);
    return it == m_satellites.end() ? nullptr : &it->second;
}

qint64 NavigationData::count() const
{
    qint64 n = 0;
    for (const auto& entry : m_satellites)
        n += qint64(entry.second.size());
    return n;
}

const Ephemeris* NavigationData::select(const QString& name, qint64 timeMs) const
{
    const std::vector<Ephemeris>* list = ephemerides(name);
    if (!list)
        return nullptr;
    const int index = selectIndex(*list, timeMs);
    return index < 0 ? nullptr : &(*list)[size_t(index)];
}

int NavigationData::selectIndex(const std::vector<Ephemeris>& list, qint64 timeMs)
{
    const auto begin = std::lower_bound(
        list.begin(), list.end(), timeMs - LongestFitHalfMs,
        [](const Ephemeris& e, qint64 t) { return e.referenceMs < t; });
    int best = -1;
    qint64 bestDistance = 0;
    for (auto it = begin; it != list.end() && it->referenceMs <= timeMs + LongestFitHalfMs;
         ++it) {
        if (!it->healthy)
            continue;
        const qint64 distance = std::abs(timeMs - it->referenceMs);
        if (double(distance) > it->fitHalfSeconds * 1000.0)
            continue;
        bool better = best < 0 || distance < bestDistance;
        if (!better && distance == bestDistance) {
            const Ephemeris& b = list[size_t(best)];
            const int rank = messageRank(it->message);
            const int bestRank = messageRank(b.message);
            // The list is ordered by reference time and then by reading
            // order, so a later entry is the later or the newer record.
            better = rank < bestRank || (rank == bestRank && it->referenceMs >= b.referenceMs);
        }
        if (better) {
            best = int(it - list.begin());
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace gnssdemo
