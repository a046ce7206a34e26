// SPDX-License-Identifier: MIT
#include "TimeLabeller_p.h"

#include "TimeTicks_p.h"
#include "gnssplot_qtcompat_p.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QLatin1Char>
#include <QTimeZone>

#include <cmath>

namespace {

constexpr qint64 kDayMs = 24 * 3600 * 1000;

QString twoDigits(int value)
{
    return QString::number(value).rightJustified(2, QLatin1Char('0'));
}

bool labelled(double msecs)
{
    // Written so that NaN is not labelled.
    return std::abs(msecs) <= TimeLabeller::kMaxLabelledMSecs;
}

} // namespace

const QVector<double>& TimeLabeller::plotFractions()
{
    // The same doubles as the literals 0.0, 0.1, ..., 1.0: the labels' keys
    // are compared exactly by the frame's layout.
    static const QVector<double> fractions{0.0, 0.1, 0.2, 0.3, 0.4, 0.5,
                                           0.6, 0.7, 0.8, 0.9, 1.0};
    return fractions;
}

const QVector<double>& TimeLabeller::pictureFractions()
{
    static const QVector<double> fractions{0.0, 0.2, 0.4, 0.6, 0.8, 1.0};
    return fractions;
}

TimeLabeller::Labels TimeLabeller::evenLabels(double tMin, double tMax,
                                              const QVector<double>& fractions)
{
    Labels labels;
    const QString timeFormat = QStringLiteral("HH:mm:ss");
    QDate captionDate;
    for (const double f : fractions) {
        const double value = (tMax - tMin) * f + tMin;
        if (!labelled(value)) {
            labels.ticks.insert(f, QString());
            captionDate = QDate();
            continue;
        }
        // Truncation toward zero, as the conversion does: the 0.7 tick of a
        // whole day lands a hair before 16:48:00 and reads 16:47:59.
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(value),
                                                              QTimeZone::utc());
        labels.ticks.insert(f, time.toString(timeFormat));
        captionDate = time.date();
    }
    // The caption names the day of the right end of the axis.
    if (captionDate.isValid())
        labels.date = captionDate.toString(QStringLiteral("yyyy/MM/dd"));
    return labels;
}

TimeLabeller::Labels TimeLabeller::axisLabels(double tMin, double tMax, double pixelWidth,
                                              const QFont& font, bool bRound)
{
    Labels labels = evenLabels(tMin, tMax, plotFractions());
    if (!bRound)
        return labels;
    // A date is the widest text a round tick carries.
    const double labelWidth = QFontMetrics(font).horizontalAdvance(QStringLiteral("0000/00/00"));
    labels.ticks.clear();
    labels.bCentred = true;
    for (const TimeTick& tick : roundTimeTicks(tMin, tMax, pixelWidth, labelWidth))
        labels.ticks.insert(tick.fraction, tick.text);
    return labels;
}

QString TimeLabeller::roundTickText(qint64 msecs, bool bSeconds, bool& bDate)
{
    qint64 msOfDay = msecs % kDayMs;
    if (msOfDay < 0)
        msOfDay += kDayMs;
    bDate = msOfDay == 0;
    if (bDate) {
        const QDate date = QDate(1970, 1, 1).addDays((msecs - msOfDay) / kDayMs);
        return QString::number(date.year()).rightJustified(4, QLatin1Char('0'))
               + QLatin1Char('/') + twoDigits(date.month()) + QLatin1Char('/')
               + twoDigits(date.day());
    }
    const int seconds = int(msOfDay / 1000);
    QString text = twoDigits(seconds / 3600) + QLatin1Char(':') + twoDigits(seconds / 60 % 60);
    if (bSeconds)
        text += QLatin1Char(':') + twoDigits(seconds % 60);
    return text;
}

QString TimeLabeller::toolTipTime(double msecs)
{
    if (!labelled(msecs))
        return QString();
    return QDateTime::fromMSecsSinceEpoch(qint64(msecs), QTimeZone::utc())
        .toString(QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
}

QFont TimeLabeller::axisFont()
{
    QFont font(QStringLiteral("Arial"), -1, -1, false);
    font.setPointSizeF(8.0);
    GnssPlotCompat::setLegacyFontWeight(font, 2);
    return font;
}

QString TimeLabeller::timeSystemCaption()
{
    return QStringLiteral("GPST");
}
