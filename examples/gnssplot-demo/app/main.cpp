// SPDX-License-Identifier: MIT
// The demo host application: multipath curves and the epoch table of the
// built-in synthetic day or of a RINEX observation file.
#include "DemoHost.h"
#include "DemoWindow.h"
#include "ScriptReport.h"
#include "Snapshot.h"
#include "SyntheticSource.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QTranslator>

#include <cstring>

using namespace gnssdemo;

namespace {

QtMessageHandler previousHandler = nullptr;

// The offscreen platform warns about every top-level window it cannot size
// hint; in snapshot mode that is expected and only hides the summary.
void quietOffscreen(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtWarningMsg && text.contains(QLatin1String("propagateSizeHints")))
        return;
    if (previousHandler)
        previousHandler(type, context, text);
}

} // namespace

int main(int argc, char** argv)
{
    bool snapshot = false;
    bool textOnly = false;
    for (int i = 1; i < argc; ++i) {
        snapshot = snapshot || std::strcmp(argv[i], "--snapshot") == 0;
        for (const char* option : {"--help", "-h", "-?", "--help-all"})
            textOnly = textOnly || std::strcmp(argv[i], option) == 0;
    }
    // Pictures and the help text need no screen: offscreen unless told
    // otherwise.
    const bool platformGiven = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    if ((snapshot || textOnly) && !platformGiven)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (snapshot || textOnly)
        previousHandler = qInstallMessageHandler(quietOffscreen);
    if (!snapshot && !textOnly && !platformGiven && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        std::fputs("gnssplot-demo: no display (neither DISPLAY nor WAYLAND_DISPLAY is set).\n"
                   "Run with --snapshot DIR to write the demo's pictures instead.\n",
                   stderr);
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("gnssplot-demo"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows code multipath curves and the epoch availability table of a GNSS day.\n"
        "Without --rinex the built-in synthetic 1 Hz day is shown."));
    parser.addHelpOption();
    const QCommandLineOption rinex(QStringLiteral("rinex"),
                                   QStringLiteral("RINEX observation file to show: 2.xx "
                                                  "or 3.xx, plain or compact (Hatanaka), "
                                                  "each plain, gzip or Unix-compressed "
                                                  "(.gz, .Z)."),
                                   QStringLiteral("FILE"));
    const QCommandLineOption snapshotDir(
        QStringLiteral("snapshot"),
        QStringLiteral("Render offscreen, write PNG pictures and summary.txt into DIR, exit."),
        QStringLiteral("DIR"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Window size in pixels (default 1280x800, or less to fit the screen)."),
                                  QStringLiteral("WxH"), QStringLiteral("1280x800"));
    const QCommandLineOption report(QStringLiteral("report"),
                                    QStringLiteral("Print widget positions and what the host "
                                                   "reads back on stdout, for scripted tests."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("With --report: save the screen to FILE "
                                                       "after each Apply."),
                                        QStringLiteral("FILE"));
    const QCommandLineOption lang(QStringLiteral("lang"),
                                  QStringLiteral("Language of the texts, e.g. zh_CN or "
                                                 "de (default: the system's)."),
                                  QStringLiteral("LOCALE"));
    const QCommandLineOption nav(QStringLiteral("nav"),
                                 QStringLiteral("RINEX 2, 3 or 4 broadcast navigation file "
                                                "(plain, .gz or .Z) for the satellites' "
                                                "azimuth and elevation; repeatable. Files "
                                                "of the same station and day beside the "
                                                "--rinex file are read without it."),
                                 QStringLiteral("FILE"));
    parser.addOptions({rinex, nav, snapshotDir, size, report, screenshot, lang});
    parser.process(app);

    // The library's catalogues travel inside it, the demo's inside the
    // demo. English has one too: it holds the plural forms of "%n".
    QTranslator translator;
    QTranslator demoTranslator;
    const QLocale locale = parser.isSet(lang) ? QLocale(parser.value(lang)) : QLocale();
    if (translator.load(locale, QStringLiteral("gnssplot"), QStringLiteral("_"),
                        QStringLiteral(":/gnssplot/translations")))
        app.installTranslator(&translator);
    else if (parser.isSet(lang) && locale.language() != QLocale::English)
        err << "gnssplot-demo: no translation for " << parser.value(lang)
            << "; the texts stay in English.\n";
    const QString demoCatalogues = QStringLiteral(":/gnssplot-demo/translations");
    if (demoTranslator.load(locale, QStringLiteral("gnssplot_demo"), QStringLiteral("_"),
                            demoCatalogues)
        || demoTranslator.load(QStringLiteral("gnssplot_demo_en"), demoCatalogues))
        app.installTranslator(&demoTranslator);
    if (!parser.positionalArguments().isEmpty()) {
        err << "gnssplot-demo: unexpected argument " << parser.positionalArguments().first()
            << " (see --help)\n";
        return 2;
    }
    const QStringList wh = parser.value(size).split(QLatin1Char('x'));
    const int width = wh.size() == 2 ? wh[0].toInt() : 0;
    const int height = wh.size() == 2 ? wh[1].toInt() : 0;
    if (width < 640 || height < 400 || width > 8000 || height > 8000) {
        err << "gnssplot-demo: --size wants WxH of at least 640x400\n";
        return 2;
    }

    DemoWindow window;
    // Without --size a shown window keeps the size it chose to fit its
    // screen (1280 x 800 where that fits, less on a small or scaled screen);
    // snapshots are always drawn at the size asked for.
    if (parser.isSet(size) || parser.isSet(snapshotDir))
        window.resize(width, height);
    if (parser.isSet(report))
        new ScriptReport(&window, parser.value(screenshot));
    // Shown first, so that the load time in the status bar includes the
    // first paint of every curve.
    window.show();
    QApplication::processEvents();
    QString error;
    const bool ok = parser.isSet(rinex)
                        ? window.loadRinex(parser.value(rinex), &error, parser.values(nav))
                        : window.load(std::make_unique<SyntheticSource>(), &error);
    if (!ok) {
        err << "gnssplot-demo: " << error << "\n";
        if (parser.isSet(snapshotDir))
            return 1;
        // The window stays and says why, so that another file can be opened.
        err.flush();
        window.showReadFailure(error);
        return app.exec();
    }
    if (parser.isSet(nav) && !parser.isSet(rinex))
        err << "gnssplot-demo: --nav needs --rinex: the synthetic day has no station "
               "position\n";
    for (const QString& problem : window.navigationLoad().problems)
        err << "gnssplot-demo: navigation: " << problem << "\n";
    const QString cut = window.host()->readWarning();
    if (!cut.isEmpty())
        err << "gnssplot-demo: warning: " << cut << "\n";
    const QString empty = window.host()->emptyReason();
    if (!empty.isEmpty())
        err << "gnssplot-demo: " << empty << "\n";
    if (parser.isSet(snapshotDir))
        return runSnapshot(window, parser.value(snapshotDir), out, err);
    return app.exec();
}
