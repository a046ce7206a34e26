// SPDX-License-Identifier: MIT
#include "DemoTexts.h"

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

} // namespace gnssdemo
