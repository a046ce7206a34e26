// SPDX-License-Identifier: MIT
#include "ScriptReport.h"

#include "DemoHost.h"
#include "DemoWindow.h"
#include "MultipathView.h"
#include "ReadbackPanel.h"

#include <gnssplot.h>

#include <QApplication>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <cstdio>

namespace gnssdemo {

ScriptReport::ScriptReport(DemoWindow* window, const QString& screenshotPath)
    : QObject(window)
    , m_window(window)
    , m_screenshotPath(screenshotPath)
{
    // The layout is final only once the event loop has run and the window
    // system has placed the window.
    DemoHost* host = window->host();
    connect(host, &DemoHost::loaded, this,
            [this] { QTimer::singleShot(500, this, &ScriptReport::reportLayout); });
    connect(host, &DemoHost::selectionRead, this, &ScriptReport::reportSelection);
    connect(host, &DemoHost::marksRead, this, &ScriptReport::reportMarks);
    connect(host, &DemoHost::applied, this, &ScriptReport::reportApplied);
}

void ScriptReport::line(const QString& text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void ScriptReport::geometry(const QString& what, const QWidget* widget)
{
    const QPoint topLeft = widget->mapToGlobal(QPoint(0, 0));
    line(QStringLiteral("%1 %2 %3 %4 %5")
             .arg(what)
             .arg(topLeft.x())
             .arg(topLeft.y())
             .arg(widget->width())
             .arg(widget->height()));
}

void ScriptReport::reportLayout()
{
    // The buttons a script clicks are on the Marks tab of the side docks.
    m_window->showDock(DemoWindow::Dock::Marks);
    QApplication::processEvents();
    CurveGraphicsTableWidget_Epoch* table = m_window->table();
    const QRect viewport = table->viewport()->rect();
    for (int row = 1; row < table->rowCount(); ++row) {
        QWidget* bars = table->cellWidget(row, 1);
        QTableWidgetItem* item = table->item(row, 1);
        if (!bars || !item)
            continue;
        // Only rows wholly inside the viewport can be reached by the mouse.
        if (!viewport.contains(bars->geometry()))
            continue;
        geometry(QStringLiteral("row ") + item->data(Qt::UserRole).toString(), bars);
    }
    // The plot's data area, to hold the bars against.
    const QRect area = m_window->view()->dataAreaInViewport().toRect();
    const QPoint areaTopLeft = m_window->view()->viewport()->mapToGlobal(area.topLeft());
    line(QStringLiteral("plot %1 %2 %3 %4")
             .arg(areaTopLeft.x())
             .arg(areaTopLeft.y())
             .arg(area.width())
             .arg(area.height()));
    geometry(QStringLiteral("button apply"), m_window->panel()->applyButton());
    geometry(QStringLiteral("button undo"), m_window->panel()->undoButton());
    geometry(QStringLiteral("button clear"), m_window->panel()->clearButton());
    line(QStringLiteral("ready"));
}

void ScriptReport::reportSelection()
{
    int enabled = 0;
    const QMap<QString, bool>& selection = m_window->host()->readSelection();
    for (bool on : selection)
        enabled += on ? 1 : 0;
    line(QStringLiteral("selection %1 %2").arg(enabled).arg(selection.size()));
}

void ScriptReport::reportMarks()
{
    const QMap<QString, QList<stEpochDataSet>>& marks = m_window->host()->readMarks();
    int satellites = 0;
    for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
        const QList<EpochInterval> flat = flattenMarks(it.value());
        satellites += flat.isEmpty() ? 0 : 1;
        for (const EpochInterval& m : flat)
            line(QStringLiteral("mark %1 %2 %3").arg(it.key()).arg(m.first).arg(m.second));
    }
    line(QStringLiteral("marks %1 %2")
             .arg(satellites)
             .arg(m_window->table()->eraseMarkActionNum()));
}

void ScriptReport::reportApplied()
{
    const ApplyResult& result = m_window->host()->lastApply();
    for (auto it = result.republished.cbegin(); it != result.republished.cend(); ++it) {
        line(QStringLiteral("applied %1 %2 %3 %4")
                 .arg(it.key())
                 .arg(it->samplesBefore)
                 .arg(it->samplesAfter)
                 .arg(it->samplesInsideMarks));
    }
    line(QStringLiteral("applied-done %1").arg(result.hiddenCurves));
    if (m_screenshotPath.isEmpty())
        return;
    // What the X server shows, after the repaint that the apply scheduled.
    QTimer::singleShot(300, this, [this] {
        QScreen* screen = QGuiApplication::primaryScreen();
        if (screen && screen->grabWindow(0).save(m_screenshotPath, "PNG"))
            line(QStringLiteral("screenshot ") + m_screenshotPath);
        else
            line(QStringLiteral("screenshot-failed"));
    });
}

} // namespace gnssdemo
