// SPDX-License-Identifier: MIT
// Orbits from the broadcast ephemerides of the shared navigation files and
// the sky tracks they give at the paired observation files' epochs, checked
// against what must hold physically: consecutive ephemerides agree where
// one takes over from the other, each constellation flies at its altitude,
// geostationary satellites stay put, and a receiver tracks what is above
// its horizon and nothing below it.
#include "NavigationReader.h"
#include "Orbits.h"
#include "RinexReader.h"
#include "SkyTracks.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <map>
#include <memory>

using namespace gnssdemo;

namespace {

const QString kDataDir = QStringLiteral(GNSSPLOT_TEST_DATA_DIR);

// A navigation pair, parsed once and shared by every test function.
struct Pair
{
    std::unique_ptr<MemoryObservationSource> observations;
    NavigationData navigation;
    SkyTracks sky;
    QString error;
};

QStringList navigationFiles(const QString& pair)
{
    if (pair == QLatin1String("NYA1"))
        return {QStringLiteral("NYA100NOR_S_20241240000_01D_GN.rnx.gz"),
                QStringLiteral("NYA100NOR_S_20241240000_01D_EN.rnx.gz"),
                QStringLiteral("NYA100NOR_S_20241240000_01D_CN.rnx.gz")};
    if (pair == QLatin1String("ESBC"))
        return {QStringLiteral("ESBC00DNK_R_20201770000_01D_MN.rnx.gz")};
    return {QStringLiteral("GRAS00FRA_R_20242090000_01D_EN.rnx.gz")};
}

QString observationFile(const QString& pair)
{
    if (pair == QLatin1String("NYA1"))
        return QStringLiteral("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz");
    if (pair == QLatin1String("ESBC"))
        return QStringLiteral("ESBC00DNK_R_20201770000_01D_30S_MO.crx.gz");
    return QStringLiteral("AJAC00FRA_R_20242090000_01D_30S_MO.rnx.gz");
}

// Parsed on first use; null (with a reason) when the shared files are not
// there.
const Pair* pairOf(const QString& name, bool withObservations = true)
{
    static std::map<QString, std::unique_ptr<Pair>> cache;
    std::unique_ptr<Pair>& slot = cache[name];
    if (!slot) {
        slot = std::make_unique<Pair>();
        for (const QString& file : navigationFiles(name)) {
            if (!NavigationReader::readFile(kDataDir + QLatin1Char('/') + file,
                                            &slot->navigation, &slot->error))
                return slot.get();
        }
    }
    if (withObservations && !slot->observations && slot->error.isEmpty()) {
        slot->observations =
            RinexReader::readFile(kDataDir + QLatin1Char('/') + observationFile(name),
                                  &slot->error);
        if (slot->observations) {
            QStringList names;
            for (int i = 0; i < slot->observations->satelliteCount(); ++i)
                names << slot->observations->satelliteName(i);
            const StationInfo station = slot->observations->station();
            slot->sky = SkyTracks::compute(slot->navigation, slot->observations->epochs(), names,
                                           station.position);
        }
    }
    return slot.get();
}

double distance(const double a[3], const double b[3])
{
    return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1])
                     + (a[2] - b[2]) * (a[2] - b[2]));
}

enum class Kind { Any, BeidouMeo, BeidouIgso, BeidouGeo };

bool ofKind(const Ephemeris& eph, Kind kind)
{
    if (kind == Kind::Any)
        return true;
    if (eph.system != 'C')
        return false;
    const double a = eph.sqrtA * eph.sqrtA;
    if (kind == Kind::BeidouGeo)
        return eph.geostationary;
    if (eph.geostationary)
        return false;
    return (kind == Kind::BeidouIgso) == (a > 35.0e6);
}

} // namespace

Q_DECLARE_METATYPE(Kind)

class tst_SatelliteSky : public QObject
{
    Q_OBJECT
private slots:
    void changeOver_data();
    void changeOver();
    void orbitRadius_data();
    void orbitRadius();
    void glonassIntegration();
    void geostationaryStill();
    void horizon_data();
    void horizon();
    void sameWithAnyThreadCount();
    void onlyGalileoFromGras();
    void refusals();
};

void tst_SatelliteSky::changeOver_data()
{
    QTest::addColumn<QString>("pair");
    QTest::addColumn<QChar>("system");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<double>("bound"); // metres
    QTest::newRow("GPS") << QStringLiteral("NYA1") << QChar('G') << Kind::Any << 5.0;
    QTest::newRow("Galileo") << QStringLiteral("NYA1") << QChar('E') << Kind::Any << 5.0;
    QTest::newRow("BeiDou MEO") << QStringLiteral("NYA1") << QChar('C') << Kind::BeidouMeo << 5.0;
    QTest::newRow("BeiDou IGSO") << QStringLiteral("NYA1") << QChar('C') << Kind::BeidouIgso
                                 << 5.0;
    QTest::newRow("BeiDou GEO") << QStringLiteral("ESBC") << QChar('C') << Kind::BeidouGeo << 5.0;
    QTest::newRow("QZSS") << QStringLiteral("ESBC") << QChar('J') << Kind::Any << 5.0;
    QTest::newRow("GLONASS") << QStringLiteral("ESBC") << QChar('R') << Kind::Any << 10.0;
}

// Where one ephemeris hands over to the next (the middle of their reference
// times), both give the satellite's position; a wrong term in the orbit
// shows as a jump there.
void tst_SatelliteSky::changeOver()
{
    QFETCH(QString, pair);
    QFETCH(QChar, system);
    QFETCH(Kind, kind);
    QFETCH(double, bound);
    const Pair* p = pairOf(pair, false);
    if (!p->error.isEmpty())
        QSKIP(qPrintable(p->error));
    int pairs = 0;
    double worst = 0;
    QString worstAt;
    for (const QString& name : p->navigation.satellites()) {
        if (name.at(0) != system)
            continue;
        const std::vector<Ephemeris>& list = *p->navigation.ephemerides(name);
        for (size_t i = 0; i + 1 < list.size(); ++i) {
            const Ephemeris& a = list[i];
            // The next ephemeris of the same message with another reference time.
            size_t j = i + 1;
            while (j < list.size()
                   && (list[j].referenceMs == a.referenceMs || list[j].message != a.message))
                ++j;
            if (j == list.size())
                continue;
            const Ephemeris& b = list[j];
            if (!a.healthy || !b.healthy || !ofKind(a, kind) || !ofKind(b, kind))
                continue;
            const double gap = double(b.referenceMs - a.referenceMs) / 1000.0;
            if (gap > a.fitHalfSeconds + b.fitHalfSeconds || gap > 2 * 3600.0)
                continue;
            double pa[3], pb[3];
            QVERIFY(satellitePosition(a, gap / 2, pa));
            QVERIFY(satellitePosition(b, -gap / 2, pb));
            const double d = distance(pa, pb);
            ++pairs;
            if (d > worst) {
                worst = d;
                worstAt = QStringLiteral("%1 at line %2").arg(name).arg(a.line);
            }
        }
    }
    QVERIFY2(pairs >= 5, qPrintable(QStringLiteral("%1 pairs").arg(pairs)));
    qInfo("%s: %d change-overs, largest jump %.2f m (%s)", qPrintable(QString(system)), pairs,
          worst, qPrintable(worstAt));
    QVERIFY2(worst < bound, qPrintable(QStringLiteral("%1 m at %2").arg(worst).arg(worstAt)));
}

void tst_SatelliteSky::orbitRadius_data()
{
    QTest::addColumn<QString>("pair");
    QTest::addColumn<QChar>("system");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<double>("low");  // km
    QTest::addColumn<double>("high"); // km
    QTest::newRow("GPS") << QStringLiteral("NYA1") << QChar('G') << Kind::Any << 25800.0 << 27400.0;
    QTest::newRow("Galileo") << QStringLiteral("NYA1") << QChar('E') << Kind::Any << 29400.0
                             << 29800.0;
    QTest::newRow("BeiDou MEO") << QStringLiteral("NYA1") << QChar('C') << Kind::BeidouMeo
                                << 27700.0 << 28100.0;
    QTest::newRow("BeiDou IGSO") << QStringLiteral("NYA1") << QChar('C') << Kind::BeidouIgso
                                 << 41900.0 << 42500.0;
    QTest::newRow("BeiDou GEO") << QStringLiteral("ESBC") << QChar('C') << Kind::BeidouGeo
                                << 42000.0 << 42300.0;
    QTest::newRow("GLONASS") << QStringLiteral("ESBC") << QChar('R') << Kind::Any << 25300.0
                             << 25700.0;
    QTest::newRow("SBAS") << QStringLiteral("ESBC") << QChar('S') << Kind::Any << 42000.0
                          << 42300.0;
}

// The distance from the Earth's centre over each ephemeris's fit interval.
void tst_SatelliteSky::orbitRadius()
{
    QFETCH(QString, pair);
    QFETCH(QChar, system);
    QFETCH(Kind, kind);
    QFETCH(double, low);
    QFETCH(double, high);
    const Pair* p = pairOf(pair, false);
    if (!p->error.isEmpty())
        QSKIP(qPrintable(p->error));
    int checked = 0;
    double smallest = 1e300, largest = 0;
    for (const QString& name : p->navigation.satellites()) {
        if (name.at(0) != system)
            continue;
        for (const Ephemeris& eph : *p->navigation.ephemerides(name)) {
            if (!ofKind(eph, kind))
                continue;
            for (double t = -eph.fitHalfSeconds; t <= eph.fitHalfSeconds;
                 t += eph.fitHalfSeconds / 4) {
                double xyz[3];
                QVERIFY(satellitePosition(eph, t, xyz));
                const double zero[3] = {0, 0, 0};
                const double r = distance(xyz, zero) / 1000.0;
                smallest = std::min(smallest, r);
                largest = std::max(largest, r);
                ++checked;
            }
        }
    }
    QVERIFY(checked > 20);
    QVERIFY2(smallest > low && largest < high,
             qPrintable(QStringLiteral("%1 to %2 km").arg(smallest).arg(largest)));
}

// The nodes the positions are interpolated from against a fresh
// integration in small steps, and the integration against itself with
// half the step.
void tst_SatelliteSky::glonassIntegration()
{
    const Pair* p = pairOf(QStringLiteral("ESBC"), false);
    if (!p->error.isEmpty())
        QSKIP(qPrintable(p->error));
    const Ephemeris& eph = p->navigation.ephemerides(QStringLiteral("R01"))->front();
    const double state[6] = {eph.position[0], eph.position[1], eph.position[2],
                             eph.velocity[0], eph.velocity[1], eph.velocity[2]};
    double worstInterpolation = 0, worstStep = 0;
    for (double t = -eph.fitHalfSeconds; t <= eph.fitHalfSeconds; t += 37.0) {
        double fine[6], coarse[6], xyz[3];
        integrateGlonass(state, eph.acceleration, t, 5.0, fine);
        integrateGlonass(state, eph.acceleration, t, 10.0, coarse);
        QVERIFY(satellitePosition(eph, t, xyz));
        worstInterpolation = std::max(worstInterpolation, distance(xyz, fine));
        worstStep = std::max(worstStep, distance(coarse, fine));
    }
    QVERIFY2(worstInterpolation < 0.01, qPrintable(QString::number(worstInterpolation)));
    QVERIFY2(worstStep < 0.001, qPrintable(QString::number(worstStep)));
    // A jump of 15 minutes moves the satellite some 3,000 km, and the state
    // integrated there and back returns to where it started.
    double there[6], back[6];
    integrateGlonass(state, eph.acceleration, 900.0, 30.0, there);
    integrateGlonass(there, eph.acceleration, -900.0, 30.0, back);
    QVERIFY(distance(there, state) > 2.0e6);
    QVERIFY2(distance(back, state) < 0.01, qPrintable(QString::number(distance(back, state))));
}

// A BeiDou GEO satellite is seen at one spot all day, up to the small
// figure-eight its remaining inclination (1.5 deg for C05) draws; left in
// the frame that does not turn with the Earth it would wander by tens of
// degrees. (A missing tilt of that frame shows as jumps at the change-overs.)
void tst_SatelliteSky::geostationaryStill()
{
    const Pair* p = pairOf(QStringLiteral("ESBC"));
    if (!p->observations)
        QSKIP(qPrintable(p->error));
    int geos = 0;
    for (const SkyTrack& track : p->sky.tracks()) {
        const std::vector<Ephemeris>* list = p->navigation.ephemerides(track.name);
        if (!list || !list->front().geostationary || track.positioned < 100)
            continue;
        ++geos;
        double azMin = 360, azMax = 0, elMin = 90, elMax = -90;
        for (size_t i = 0; i < track.elevation.size(); ++i) {
            if (std::isnan(track.elevation[i]))
                continue;
            azMin = std::min(azMin, track.azimuth[i]);
            azMax = std::max(azMax, track.azimuth[i]);
            elMin = std::min(elMin, track.elevation[i]);
            elMax = std::max(elMax, track.elevation[i]);
        }
        qInfo("%s: azimuth %.3f to %.3f, elevation %.3f to %.3f deg", qPrintable(track.name),
              azMin, azMax, elMin, elMax);
        QVERIFY2(azMax - azMin < 4.0 && elMax - elMin < 4.0, qPrintable(track.name));
        // Azimuth's sense: a satellite over the equator east of a receiver
        // in the north stands between east and south.
        const qint64 t = p->observations->epochs()[track.elevation.size() / 2];
        const Ephemeris* eph = p->navigation.select(track.name, t);
        QVERIFY(eph);
        double xyz[3];
        QVERIFY(satellitePosition(*eph, double(t - eph->referenceMs) / 1000.0, xyz));
        const StationInfo station = p->observations->station();
        const double* rx = station.position;
        const double east = std::remainder(std::atan2(xyz[1], xyz[0]) - std::atan2(rx[1], rx[0]),
                                           2 * 3.14159265358979323846);
        const double equatorial = std::sqrt(xyz[0] * xyz[0] + xyz[1] * xyz[1]);
        QVERIFY(rx[2] > 0 && std::fabs(xyz[2]) < 0.1 * equatorial);
        QVERIFY2(east > 0 ? azMin > 90.0 && azMax < 180.0 : azMin > 180.0 && azMax < 270.0,
                 qPrintable(track.name));
    }
    QVERIFY(geos >= 1);
}

void tst_SatelliteSky::horizon_data()
{
    QTest::addColumn<QString>("pair");
    QTest::addColumn<QString>("marker");
    QTest::addColumn<double>("z"); // metres, the header's third coordinate
    QTest::newRow("NYA1, Svalbard") << QStringLiteral("NYA1") << QStringLiteral("NYA1")
                                    << 6237772.4351;
    QTest::newRow("ESBC, Denmark") << QStringLiteral("ESBC") << QStringLiteral("ESBC00DNK")
                                   << 5232754.8054;
}

// At every epoch: what the receiver recorded is above the horizon (-1 deg
// leaves room for the approximate position and refraction), and most of
// what stands above 15 deg was recorded.
void tst_SatelliteSky::horizon()
{
    QFETCH(QString, pair);
    QFETCH(QString, marker);
    QFETCH(double, z);
    const Pair* p = pairOf(pair);
    if (!p->observations)
        QSKIP(qPrintable(p->error));
    const StationInfo station = p->observations->station();
    QCOMPARE(station.markerName, marker);
    QVERIFY(station.hasPosition);
    QCOMPARE(station.position[2], z);
    QVERIFY(p->sky.isValid());
    SatelliteObservations sat;
    qint64 recordsWithPosition = 0, high = 0, highObserved = 0;
    int positionedSatellites = 0;
    for (int s = 0; s < p->observations->satelliteCount(); ++s) {
        QVERIFY(p->observations->satellite(s, sat));
        const double* elevation = p->sky.elevation(sat.name);
        QVERIFY(elevation);
        positionedSatellites += p->sky.track(sat.name)->positioned > 0 ? 1 : 0;
        for (size_t i = 0; i < sat.record.size(); ++i) {
            if (std::isnan(elevation[i]))
                continue;
            if (sat.record[i]) {
                ++recordsWithPosition;
                QVERIFY2(elevation[i] > -1.0,
                         qPrintable(QStringLiteral("%1 recorded at epoch %2, elevation %3")
                                        .arg(sat.name)
                                        .arg(i)
                                        .arg(elevation[i])));
            }
        }
    }
    for (const SkyTrack& track : p->sky.tracks()) {
        // Satellites whose signals the receiver does not track at all
        // (another system) do not count.
        const bool trackedSystem = std::any_of(
            p->sky.tracks().begin(), p->sky.tracks().end(),
            [&](const SkyTrack& t) { return t.observed && t.system == track.system; });
        if (!trackedSystem)
            continue;
        const SatelliteObservations* observed = nullptr;
        for (int s = 0; s < p->observations->satelliteCount(); ++s) {
            if (p->observations->satelliteName(s) == track.name)
                observed = p->observations->satelliteAt(s);
        }
        for (size_t i = 0; i < track.elevation.size(); ++i) {
            if (!(track.elevation[i] > 15.0))
                continue;
            ++high;
            highObserved += observed && observed->record[i] ? 1 : 0;
        }
    }
    qInfo("%s: %d satellites positioned, %lld records with a position, %lld of %lld "
          "satellite epochs above 15 deg observed",
          qPrintable(pair), positionedSatellites, recordsWithPosition, highObserved, high);
    QVERIFY(positionedSatellites >= 40);
    QVERIFY(recordsWithPosition > 50000);
    QVERIFY2(highObserved > 0.9 * double(high),
             qPrintable(QStringLiteral("%1 of %2").arg(highObserved).arg(high)));
}

void tst_SatelliteSky::sameWithAnyThreadCount()
{
    const Pair* p = pairOf(QStringLiteral("ESBC"));
    if (!p->observations)
        QSKIP(qPrintable(p->error));
    QStringList names;
    for (int i = 0; i < p->observations->satelliteCount(); ++i)
        names << p->observations->satelliteName(i);
    const StationInfo station = p->observations->station();
    const double* rx = station.position;
    const SkyTracks one = SkyTracks::compute(p->navigation, p->observations->epochs(), names, rx,
                                             1);
    const SkyTracks three = SkyTracks::compute(p->navigation, p->observations->epochs(), names,
                                               rx, 3);
    QCOMPARE(one.tracks().size(), p->sky.tracks().size());
    QCOMPARE(three.tracks().size(), p->sky.tracks().size());
    for (size_t k = 0; k < one.tracks().size(); ++k) {
        const SkyTrack& a = one.tracks()[k];
        const SkyTrack& b = three.tracks()[k];
        QCOMPARE(a.name, b.name);
        QCOMPARE(a.positioned, b.positioned);
        QVERIFY(std::memcmp(a.azimuth.data(), b.azimuth.data(),
                            a.azimuth.size() * sizeof(double)) == 0);
        QVERIFY(std::memcmp(a.elevation.data(), b.elevation.data(),
                            a.elevation.size() * sizeof(double)) == 0);
    }
}

// GRAS's Galileo navigation for AJAC's day: Galileo satellites get
// positions, every other observed satellite is listed without ephemeris.
void tst_SatelliteSky::onlyGalileoFromGras()
{
    const Pair* p = pairOf(QStringLiteral("AJAC"));
    if (!p->observations)
        QSKIP(qPrintable(p->error));
    const QStringList without = p->sky.withoutEphemeris();
    int galileo = 0;
    for (const SkyTrack& track : p->sky.tracks()) {
        if (track.system == 'E' && track.observed) {
            QVERIFY2(track.positioned > 0, qPrintable(track.name));
            ++galileo;
        } else if (track.observed) {
            QCOMPARE(track.positioned, qint64(0));
            QVERIFY(without.contains(track.name));
        }
    }
    QVERIFY(galileo >= 20);
    for (const QString& name : without)
        QVERIFY(name.at(0) != QLatin1Char('E'));
}

void tst_SatelliteSky::refusals()
{
    const Pair* p = pairOf(QStringLiteral("NYA1"), false);
    if (!p->error.isEmpty())
        QSKIP(qPrintable(p->error));
    const std::vector<qint64> epochs{0};
    const double nan = std::nan("");
    const double zero[3] = {0, 0, 0};
    const double notANumber[3] = {nan, 1, 1};
    QVERIFY(!SkyTracks::compute(p->navigation, epochs, {}, zero).isValid());
    QVERIFY(!SkyTracks::compute(p->navigation, epochs, {}, notANumber).isValid());
    QVERIFY(SkyTracks::compute(p->navigation, epochs, {}, zero).tracks().empty());

    Ephemeris eph = p->navigation.ephemerides(QStringLiteral("G18"))->front();
    double xyz[3] = {1, 2, 3};
    QVERIFY(!satellitePosition(eph, nan, xyz));
    QVERIFY(!satellitePosition(eph, std::numeric_limits<double>::infinity(), xyz));
    eph.e = 1.5;
    QVERIFY(!satellitePosition(eph, 0, xyz));
    QCOMPARE(xyz[0], 1.0);
    // Far from any ephemeris, and for an unknown satellite: nothing.
    QVERIFY(!p->navigation.select(QStringLiteral("G18"), 0));
    QVERIFY(!p->navigation.select(QStringLiteral("G99"), eph.referenceMs));
    QVERIFY(p->navigation.select(QStringLiteral("G18"), eph.referenceMs));
}

QTEST_MAIN(tst_SatelliteSky)
#include "tst_satellitesky.moc"
