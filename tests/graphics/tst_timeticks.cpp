// SPDX-License-Identifier: MIT
// Round time-of-day ticks: step choice, texts, the date at midnight, and
// refusal of windows that cannot be labelled.
#include "TimeTicks_p.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTimeZone>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

// Milliseconds of a UTC date and time, through Qt's own calendar.
double utc(int year, int month, int day, int h = 0, int m = 0, int s = 0, int ms = 0)
{
    return double(QDateTime(QDate(year, month, day), QTime(h, m, s, ms), QTimeZone::utc())
                      .toMSecsSinceEpoch());
}

constexpr double kLabel = 50.0; // spacing needed: 58 pixels
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

} // namespace

class tst_TimeTicks : public QObject
{
    Q_OBJECT
private slots:
    void windows_data();
    void windows();
    void refused_data();
    void refused();
    void neverCrowded();
};

void tst_TimeTicks::windows_data()
{
    QTest::addColumn<double>("tMin");
    QTest::addColumn<double>("tMax");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("label");
    QTest::addColumn<qint64>("step"); // ms; unchecked with fewer than two ticks
    QTest::addColumn<QStringList>("texts");

    const auto row = [](const char* name, double tMin, double tMax, double width, double label,
                        qint64 step, const QStringList& texts) {
        QTest::newRow(name) << tMin << tMax << width << label << step << texts;
    };
    const QStringList seconds{"12:00:04", "12:00:05", "12:00:06", "12:00:07", "12:00:08",
                              "12:00:09", "12:00:10", "12:00:11", "12:00:12", "12:00:13"};
    row("10 s from a half second, 1 s steps", utc(2024, 3, 10, 12, 0, 3, 500),
        utc(2024, 3, 10, 12, 0, 13, 500), 800, kLabel, 1000, seconds);
    row("1 min, 10 s steps", utc(2024, 3, 10, 12), utc(2024, 3, 10, 12, 1), 400, kLabel, 10000,
        {"12:00:00", "12:00:10", "12:00:20", "12:00:30", "12:00:40", "12:00:50", "12:01:00"});
    row("1 h, 5 min steps without seconds", utc(2024, 3, 10, 11, 50), utc(2024, 3, 10, 12, 50),
        800, kLabel, 300000,
        {"11:50", "11:55", "12:00", "12:05", "12:10", "12:15", "12:20", "12:25", "12:30",
         "12:35", "12:40", "12:45", "12:50"});
    row("1 h, wider labels: 10 min steps", utc(2024, 3, 10, 11, 50), utc(2024, 3, 10, 12, 50),
        800, 100, 600000, {"11:50", "12:00", "12:10", "12:20", "12:30", "12:40", "12:50"});
    row("1 h across midnight", utc(2024, 3, 10, 23, 30), utc(2024, 3, 11, 0, 30), 800, kLabel,
        300000,
        {"23:30", "23:35", "23:40", "23:45", "23:50", "23:55", "2024/03/11", "00:05", "00:10",
         "00:15", "00:20", "00:25", "00:30"});
    row("1 day, 2 h steps, dates at both ends", utc(2024, 3, 10), utc(2024, 3, 11), 1000, kLabel,
        7200000,
        {"2024/03/10", "02:00", "04:00", "06:00", "08:00", "10:00", "12:00", "14:00", "16:00",
         "18:00", "20:00", "22:00", "2024/03/11"});
    row("3 days, 6 h steps", utc(2024, 3, 10, 6), utc(2024, 3, 13, 6), 800, kLabel, 21600000,
        {"06:00", "12:00", "18:00", "2024/03/11", "06:00", "12:00", "18:00", "2024/03/12",
         "06:00", "12:00", "18:00", "2024/03/13", "06:00"});
    row("3 days, daily steps", utc(2024, 3, 10, 6), utc(2024, 3, 13, 6), 200, kLabel, 86400000,
        {"2024/03/11", "2024/03/12", "2024/03/13"});
    row("10 days, 5-day steps from 1970", utc(2024, 3, 10), utc(2024, 3, 20), 200, kLabel,
        432000000, {"2024/03/13", "2024/03/18"});
    row("20 s before 1970 across midnight", utc(1969, 12, 31, 23, 59, 50),
        utc(1970, 1, 1, 0, 0, 10), 800, kLabel, 2000,
        {"23:59:50", "23:59:52", "23:59:54", "23:59:56", "23:59:58", "1970/01/01", "00:00:02",
         "00:00:04", "00:00:06", "00:00:08", "00:00:10"});
    row("within one second: no tick", utc(2024, 3, 10, 12, 0, 0, 200),
        utc(2024, 3, 10, 12, 0, 0, 900), 800, kLabel, 0, {});
    row("first day of year 1", utc(1, 1, 1), utc(1, 1, 1, 0, 0, 2), 100, kLabel, 2000,
        {"0001/01/01", "00:00:02"});
}

void tst_TimeTicks::windows()
{
    QFETCH(double, tMin);
    QFETCH(double, tMax);
    QFETCH(double, width);
    QFETCH(double, label);
    QFETCH(qint64, step);
    QFETCH(QStringList, texts);

    const QVector<TimeTick> ticks = roundTimeTicks(tMin, tMax, width, label);
    QStringList seen;
    for (const TimeTick& tick : ticks)
        seen << tick.text;
    QCOMPARE(seen, texts);
    for (int i = 0; i < ticks.size(); ++i) {
        const TimeTick& tick = ticks.at(i);
        QVERIFY(double(tick.msecs) >= tMin && double(tick.msecs) <= tMax);
        QCOMPARE(tick.fraction, (double(tick.msecs) - tMin) / (tMax - tMin));
        QCOMPARE(tick.bDate, tick.text.contains(QLatin1Char('/')));
        // The text names the tick's own time.
        const QDateTime at = QDateTime::fromMSecsSinceEpoch(tick.msecs, QTimeZone::utc());
        QCOMPARE(tick.text, at.toString(tick.bDate ? QStringLiteral("yyyy/MM/dd")
                                                   : step < 60000 ? QStringLiteral("HH:mm:ss")
                                                                  : QStringLiteral("HH:mm")));
        if (i > 0)
            QCOMPARE(tick.msecs - ticks.at(i - 1).msecs, step);
    }
}

void tst_TimeTicks::refused_data()
{
    QTest::addColumn<double>("tMin");
    QTest::addColumn<double>("tMax");
    QTest::addColumn<double>("width");

    const double a = utc(2024, 3, 10);
    const double b = utc(2024, 3, 11);
    QTest::newRow("NaN start") << kNaN << b << 800.0;
    QTest::newRow("NaN end") << a << kNaN << 800.0;
    QTest::newRow("infinite end") << a << kInf << 800.0;
    QTest::newRow("infinite start") << -kInf << b << 800.0;
    QTest::newRow("reversed") << b << a << 800.0;
    QTest::newRow("empty") << a << a << 800.0;
    QTest::newRow("huge") << -1e300 << 1e300 << 800.0;
    QTest::newRow("largest doubles") << -std::numeric_limits<double>::max()
                                     << std::numeric_limits<double>::max() << 800.0;
    QTest::newRow("before year 1") << utc(1, 1, 1) - 1.0 << utc(1, 1, 2) << 800.0;
    QTest::newRow("after year 9999") << utc(9999, 12, 31) << utc(9999, 12, 31) + 86400000.0
                                     << 800.0;
    QTest::newRow("no width") << a << b << 0.0;
    QTest::newRow("negative width") << a << b << -800.0;
    QTest::newRow("NaN width") << a << b << kNaN;
    QTest::newRow("infinite width") << a << b << kInf;
}

void tst_TimeTicks::refused()
{
    QFETCH(double, tMin);
    QFETCH(double, tMax);
    QFETCH(double, width);
    QVERIFY(roundTimeTicks(tMin, tMax, width, kLabel).isEmpty());
}

// Random windows from a tenth of a second to 30 years: neighbouring labels
// never come closer than the label width plus the gap, the count stays
// bounded, and ticks sit on whole multiples of their step.
void tst_TimeTicks::neverCrowded()
{
    QRandomGenerator random(42);
    for (int n = 0; n < 2000; ++n) {
        const double span = std::pow(10.0, 2.0 + random.generateDouble() * 10.0);
        const double tMin = (random.generateDouble() - 0.3) * 4e12;
        const double width = 1.0 + random.generateDouble() * 3000.0;
        const double label = n % 10 == 0 ? 0.0 : random.generateDouble() * 120.0;
        const QVector<TimeTick> ticks = roundTimeTicks(tMin, tMin + span, width, label);
        QVERIFY(ticks.size() <= kMaxTimeTicks);
        if (ticks.size() < 2)
            continue;
        const qint64 step = ticks.at(1).msecs - ticks.at(0).msecs;
        const double pixels = double(step) / span * width;
        QVERIFY2(pixels >= qMax(label, 1.0) + 8.0,
                 qPrintable(QStringLiteral("%1 px for span %2").arg(pixels).arg(span)));
        for (const TimeTick& tick : ticks) {
            QVERIFY(tick.fraction >= 0.0 && tick.fraction <= 1.0);
            QCOMPARE(tick.msecs % step, qint64(0));
        }
    }
    // No label width at all on a billion pixels: the count is still bounded.
    const int many = roundTimeTicks(0.0, 1e9, 1e9, kNaN).size();
    QVERIFY(many > kMaxTimeTicks / 2 && many <= kMaxTimeTicks);
}

QTEST_MAIN(tst_TimeTicks)
#include "tst_timeticks.moc"
