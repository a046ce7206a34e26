// SPDX-License-Identifier: MIT
#include "DemoTexts.h"

#include "ObservationData.h"

#include <QStringList>
#include <QtGlobal>

#include <algorithm>
#include <climits>

namespace gnssdemo {

QString DemoTexts::marks(int marks, int satellites, int actions)
{
    //: The three parts are "%n mark(s)", "%n satellite(s)" and "%n action(s)".
    return tr("%1 on %2, %3")
        .arg(tr("%n mark(s)", "", marks), tr("%n satellite(s)", "", satellites),
             tr("%n action(s)", "", actions));
}

QString DemoTexts::noMarks(int actions)
{
    return tr("No marks (%n action(s)). Drag over the bars to mark epochs.", "", actions);
}

QString DemoTexts::applied(int recomputed, qint64 removed, int hidden, qint64 ms)
{
    // Taking marks back restores samples: the change is then "more".
    const int changed = int(qMin<qint64>(removed < 0 ? -removed : removed, INT_MAX));
    return tr("Applied: %1 (%2), %3, %4 ms.")
        .arg(tr("%n satellite(s) recomputed", "", recomputed),
             removed < 0 ? tr("%n curve sample(s) more", "", changed)
                         : tr("%n curve sample(s) fewer", "", changed),
             tr("%n curve(s) hidden", "", hidden))
        .arg(ms);
}

QString DemoTexts::enabled(int enabled, int total)
{
    return tr("%1 of %n satellite(s) enabled", "", total).arg(enabled);
}

QString DemoTexts::satellites(int count)
{
    return tr("%n satellite(s)", "", count);
}

QString DemoTexts::noMultipath()
{
    return tr("No satellite has code and phase on two bands: no multipath to show.");
}

QString DemoTexts::noEpochs()
{
    return tr("The file holds no epochs: nothing to show.");
}

QString DemoTexts::shortArcs(int satellites, int minEpochs)
{
    return tr("%n satellite(s) with code and phase on two bands, but every arc is shorter "
              "than %1 epochs: no multipath to show.", "", satellites)
        .arg(minEpochs);
}

QString DemoTexts::noCommonEpochs(int satellites)
{
    return tr("%n satellite(s) with code and phase on two bands, but never both phases at "
              "one epoch: no multipath to show.", "", satellites);
}

QString DemoTexts::noSignalStrength()
{
    return tr("The file records no signal strength (no S observations): nothing to show in "
              "dB-Hz.");
}

QString DemoTexts::readStopped(const ReadStop& stop)
{
    if (!stop.isCut())
        return QString();
    const int kept = int(qMin<qint64>(stop.epochsKept, INT_MAX));
    // What the file ends inside comes from the reader, in its own context.
    const QString inside = stop.endsInside
                               ? QCoreApplication::translate("RinexReader", stop.endsInside)
                               : QString();
    QString why;
    if (!stop.compressedCut)
        why = tr("line %1: file ends inside %2; %n complete epoch(s) kept", "", kept)
                  .arg(stop.line)
                  .arg(inside);
    else if (stop.endsInside)
        why = tr("line %1: the compressed data ends early, inside %2; %n complete epoch(s) "
                 "kept", "", kept)
                  .arg(stop.line)
                  .arg(inside);
    else
        why = tr("line %1: the compressed data ends early; %n complete epoch(s) kept", "", kept)
                  .arg(stop.line);
    return stop.file.isEmpty() ? why : QStringLiteral("%1: %2").arg(stop.file, why);
}

QString DemoTexts::multipathSignals(int which, const QString& code, const QString& phase,
                                    const QString& otherPhase)
{
    return tr("MP%1 = %2/%3 with %4").arg(which).arg(code, phase, otherPhase);
}

QString DemoTexts::cannotRead(const QString& why)
{
    return tr("The file could not be read: %1").arg(why);
}

QString DemoTexts::noNavigation()
{
    return tr("No navigation: open a broadcast navigation file (File > Open navigation) to "
              "see where the satellites are.");
}

QString DemoTexts::noPosition()
{
    return tr("The observations give no approximate position: no azimuth or elevation.");
}

QString DemoTexts::noEphemeris(int satellites)
{
    return tr("The navigation has no ephemeris for any of the %n observed satellite(s).", "",
              satellites);
}

QString DemoTexts::withoutEphemeris(const QStringList& names)
{
    return tr("No ephemeris for %n satellite(s): %1.", "", int(names.size()))
        .arg(names.join(QStringLiteral(", ")));
}

QString DemoTexts::span(qint64 ms)
{
    const qint64 seconds = std::max<qint64>(0, (ms + 500) / 1000);
    if (seconds >= 3600) {
        qint64 hours = seconds / 3600;
        qint64 minutes = (seconds % 3600 + 30) / 60;
        if (minutes == 60) {
            ++hours;
            minutes = 0;
        }
        // Half a day and more reads in whole hours.
        if (hours >= 12) {
            hours += minutes >= 30 ? 1 : 0;
            minutes = 0;
        }
        if (minutes == 0)
            return tr("%n h", "", int(hours));
        return tr("%1 h %2 min").arg(hours).arg(minutes);
    }
    if (seconds >= 60)
        return tr("%n min", "", int((seconds + 30) / 60));
    return tr("%n s", "", int(seconds));
}

QString DemoTexts::gestures(qint64 spanMs)
{
    return tr("Wheel: zoom Y.  Ctrl+wheel: zoom time.  Drag the plot: pan.  "
              "Double-click: whole file (%1).  Drag over the bars: mark epochs.  F: fit Y.")
        .arg(span(spanMs));
}

QString DemoTexts::navigationFiles(int files)
{
    return tr("Navigation: %n file(s) read", "", files);
}

} // namespace gnssdemo
