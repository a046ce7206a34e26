// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_DEMOTEXTS_H
#define GNSSDEMO_DEMOTEXTS_H

#include <QCoreApplication>
#include <QString>

namespace gnssdemo {

struct ReadStop;

/*!
    The demo's sentences that carry counts, in one place so that every
    language gets its plural forms from the demo's catalogues
    (gnssplot_demo_LANG.qm) and the tests can check them.
*/
class DemoTexts
{
    Q_DECLARE_TR_FUNCTIONS(DemoTexts)
public:
    /*! "3 marks on 2 satellites, 1 action" */
    static QString marks(int marks, int satellites, int actions);
    /*! "No marks (1 action). Drag over the bars to mark epochs." */
    static QString noMarks(int actions);
    /*! "Applied: 3 satellites recomputed (120 curve samples fewer), 1 curve
        hidden, 12 ms." */
    static QString applied(int recomputed, qint64 removed, int hidden, qint64 ms);
    /*! "5 of 31 satellites enabled" */
    static QString enabled(int enabled, int total);
    /*! "12 satellites" */
    static QString satellites(int count);
    /*! "No satellite has code and phase on two bands: no multipath to show." */
    static QString noMultipath();
    /*! "The file holds no epochs: nothing to show." */
    static QString noEpochs();
    /*! "2 satellites with code and phase on two bands, but every arc is
        shorter than 5 epochs: no multipath to show." */
    static QString shortArcs(int satellites, int minEpochs);
    /*! "2 satellites with code and phase on two bands, but never both phases
        at one epoch: no multipath to show." */
    static QString noCommonEpochs(int satellites);
    /*! "The file records no signal strength (no S observations): nothing to
        show in dB-Hz." */
    static QString noSignalStrength();
    /*! Where and why a file cut short stopped: "NAME: line 88623: file ends
        inside an epoch's satellite records; 2130 complete epochs kept"; empty
        when \a stop is not cut. */
    static QString readStopped(const ReadStop& stop);
    /*! Which observations make a multipath curve: "MP1 = C1C/L1C with L2W"
        for \a which 1, code \a code, phase \a phase and the other band's
        phase \a otherPhase. */
    static QString multipathSignals(int which, const QString& code, const QString& phase,
                                    const QString& otherPhase);
    /*! "The file could not be read: WHY" */
    static QString cannotRead(const QString& why);
    /*! Why the sky plot is empty without navigation. */
    static QString noNavigation();
    /*! "The observations give no approximate position: no azimuth or
        elevation." */
    static QString noPosition();
    /*! Why the sky plot is empty when no observed satellite has an
        ephemeris; \a satellites observed. */
    static QString noEphemeris(int satellites);
    /*! "No ephemeris for 2 satellites: C01, C02." */
    static QString withoutEphemeris(const QStringList& names);
    /*! A span of time for the user, rounded: "24 h", "15 min", "45 s",
        "2 h 30 min"; \a ms milliseconds. */
    static QString span(qint64 ms);
    /*! The status bar's hint of gestures, with the file's span. */
    static QString gestures(qint64 spanMs);
    /*! "Navigation: 3 files read" */
    static QString navigationFiles(int files);
};

} // namespace gnssdemo

#endif // GNSSDEMO_DEMOTEXTS_H
