// SPDX-License-Identifier: MIT
// Starts the demo in a real window on a virtual X server, drags an erase
// mark over several satellite rows with real mouse events (xdotool), clicks
// Apply, and checks from the demo's --report lines that the host read the
// marks back and that those satellites' curves lost the marked epochs.
#include <QtTest>

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace {

constexpr qint64 kDayStart = 1722038400000; // 2024-07-27 00:00:00 GPST, ms
constexpr qint64 kDayLength = 86400000;

// Lines printed by a process, read as they come with a deadline each.
class LineReader
{
public:
    explicit LineReader(QProcess* process) : m_process(process) {}

    // Returns the next line starting with \a prefix (collecting the ones
    // before it into seen()), or an empty string after \a timeoutMs.
    QString waitFor(const QString& prefix, int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        for (;;) {
            while (m_process->canReadLine()) {
                const QString line =
                    QString::fromUtf8(m_process->readLine()).trimmed();
                m_seen.append(line);
                if (line.startsWith(prefix))
                    return line;
            }
            const int left = timeoutMs - int(timer.elapsed());
            if (left <= 0 || m_process->state() == QProcess::NotRunning)
                return QString();
            m_process->waitForReadyRead(std::min(left, 500));
        }
    }
    const QStringList& seen() const { return m_seen; }

private:
    QProcess* m_process;
    QStringList m_seen;
};

} // namespace

class tst_DemoWindow : public QObject
{
    Q_OBJECT
private slots:
    void cleanup();
    void dragMarkApplyAndReadBack();

private:
    bool xdotool(const QString& commands);

    QProcess m_server;
    QProcess m_demo;
    QProcessEnvironment m_env;
};

void tst_DemoWindow::cleanup()
{
    for (QProcess* p : {&m_demo, &m_server}) {
        if (p->state() == QProcess::NotRunning)
            continue;
        p->terminate();
        if (!p->waitForFinished(5000)) {
            p->kill();
            p->waitForFinished(5000);
        }
    }
}

// Runs one xdotool command chain, given as space-separated words.
bool tst_DemoWindow::xdotool(const QString& commands)
{
    QProcess tool;
    tool.setProcessEnvironment(m_env);
    tool.start(QStringLiteral("xdotool"), commands.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!tool.waitForFinished(20000)) {
        tool.kill();
        tool.waitForFinished(2000);
        return false;
    }
    return tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

void tst_DemoWindow::dragMarkApplyAndReadBack()
{
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty())
        QSKIP("Xvfb is not installed, so no X server can run here");
    QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty(),
             "xdotool is missing: scripts/test installs it");

    // -displayfd 1: the server picks a free display and prints its number on
    // its standard output once it accepts connections.
    m_server.start(xvfb, {QStringLiteral("-displayfd"), QStringLiteral("1"),
                          QStringLiteral("-screen"), QStringLiteral("0"),
                          QStringLiteral("1400x900x24"), QStringLiteral("-nolisten"),
                          QStringLiteral("tcp")});
    LineReader serverLines(&m_server);
    const QString display = serverLines.waitFor(QString(), 20000);
    if (display.isEmpty() || display.toInt() < 0) {
        const QByteArray why = m_server.readAllStandardError();
        QSKIP(qPrintable(QStringLiteral("Xvfb cannot run here: ") + QString::fromUtf8(why)));
    }

    m_env = QProcessEnvironment::systemEnvironment();
    m_env.insert(QStringLiteral("DISPLAY"), QLatin1Char(':') + display);
    m_env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    m_env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    m_demo.setProcessEnvironment(m_env);
    m_demo.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_demo.start(QStringLiteral(GNSSPLOT_DEMO_EXE), {QStringLiteral("--report")});
    LineReader demo(&m_demo);
    QVERIFY2(!demo.waitFor(QStringLiteral("ready"), 120000).isEmpty(),
             qPrintable(demo.seen().join(QLatin1Char('\n'))));

    // Rows and buttons in global pixels, as the demo reports them.
    QMap<int, QPair<QString, QRect>> rowsByTop;
    QRect apply;
    QRect plot;
    const QRegularExpression geometry(
        QStringLiteral("^(row|button|plot) ?(\\S*) (-?\\d+) (-?\\d+) (\\d+) (\\d+)$"));
    for (const QString& line : demo.seen()) {
        const QRegularExpressionMatch m = geometry.match(line);
        if (!m.hasMatch())
            continue;
        const QRect r(m.captured(3).toInt(), m.captured(4).toInt(), m.captured(5).toInt(),
                      m.captured(6).toInt());
        if (m.captured(1) == QLatin1String("row"))
            rowsByTop.insert(r.top(), qMakePair(m.captured(2), r));
        else if (m.captured(1) == QLatin1String("plot"))
            plot = r;
        else if (m.captured(2) == QLatin1String("apply"))
            apply = r;
    }
    QVERIFY2(rowsByTop.size() >= 4, qPrintable(demo.seen().join(QLatin1Char('\n'))));
    QVERIFY(apply.isValid());
    const QList<QPair<QString, QRect>> rows = rowsByTop.values();
    // Bars and curves share one time axis on screen: an epoch sits at the
    // same x in both, to a pixel.
    QVERIFY(plot.isValid());
    for (const auto& row : rows) {
        QVERIFY2(std::abs(row.second.left() - plot.left()) <= 1
                     && std::abs(row.second.right() - plot.right()) <= 1,
                 qPrintable(QStringLiteral("%1: bars %2..%3, plot %4..%5")
                                .arg(row.first)
                                .arg(row.second.left())
                                .arg(row.second.right())
                                .arg(plot.left())
                                .arg(plot.right())));
    }

    // Drag from 30 % to 45 % of the day, from the middle of the second row
    // to the middle of the fourth: rows two, three and four get the mark.
    const QRect first = rows[1].second;
    const QRect last = rows[3].second;
    const int x1 = first.left() + first.width() * 30 / 100;
    const int x2 = first.left() + first.width() * 45 / 100;
    const int y1 = first.center().y();
    const int y2 = last.center().y();
    auto at = [](int x, int y) { return QStringLiteral(" mousemove %1 %2 ").arg(x).arg(y); };
    QString drag = at(x1, y1) + QStringLiteral("sleep 0.3 mousedown 1 sleep 0.2");
    for (int k = 1; k <= 5; ++k)
        drag += at(x1 + (x2 - x1) * k / 5, y1 + (y2 - y1) * k / 5) + QStringLiteral("sleep 0.1");
    QVERIFY(xdotool(drag + QStringLiteral(" mouseup 1")));

    const QString marks = demo.waitFor(QStringLiteral("marks "), 30000);
    QCOMPARE(marks, QStringLiteral("marks 3 1"));
    QMap<QString, QPair<qint64, qint64>> read;
    for (const QString& line : demo.seen()) {
        const QStringList w = line.split(QLatin1Char(' '));
        if (w.size() == 4 && w[0] == QLatin1String("mark"))
            read.insert(w[1], qMakePair(w[2].toLongLong(), w[3].toLongLong()));
    }
    QCOMPARE(read.keys(), (QStringList{rows[1].first, rows[2].first, rows[3].first}));
    const QPair<qint64, qint64> mark = read.first();
    for (const auto& m : read)
        QCOMPARE(m, mark);
    // The interval follows the pixels: start and length within half a
    // percent of the day.
    const double tolerance = kDayLength * 0.005;
    QVERIFY2(std::abs(double(mark.first - kDayStart) - kDayLength * 0.30) < tolerance,
             qPrintable(QString::number(mark.first)));
    QVERIFY2(std::abs(double(mark.second) - kDayLength * 0.15) < tolerance,
             qPrintable(QString::number(mark.second)));

    QVERIFY(xdotool(at(apply.center().x(), apply.center().y())
                    + QStringLiteral("sleep 0.2 click 1")));
    QVERIFY2(!demo.waitFor(QStringLiteral("applied-done"), 60000).isEmpty(),
             qPrintable(demo.seen().join(QLatin1Char('\n'))));
    QMap<QString, QList<qint64>> applied;
    for (const QString& line : demo.seen()) {
        const QStringList w = line.split(QLatin1Char(' '));
        if (w.size() == 5 && w[0] == QLatin1String("applied"))
            applied.insert(w[1], {w[2].toLongLong(), w[3].toLongLong(), w[4].toLongLong()});
    }
    QCOMPARE(applied.keys(), read.keys());
    for (auto it = applied.cbegin(); it != applied.cend(); ++it) {
        const qint64 before = it.value()[0];
        const qint64 after = it.value()[1];
        QVERIFY2(after < before, qPrintable(it.key()));
        QCOMPARE(it.value()[2], qint64(0)); // no curve sample inside the mark
    }

    // Quit with the keyboard, through the window system as well.
    QVERIFY(xdotool(QStringLiteral("key ctrl+q")));
    // A sanitized build checks the whole heap for leaks on its way out.
    QVERIFY2(m_demo.waitForFinished(120000), "the demo did not quit");
    QCOMPARE(m_demo.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_demo.exitCode(), 0);
}

QTEST_MAIN(tst_DemoWindow)
#include "tst_demowindow.moc"
