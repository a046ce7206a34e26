// SPDX-License-Identifier: MIT
#include "DemoTexts.h"

#include "ObservationData.h"

#include <QtGlobal>

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

} // namespace gnssdemo
