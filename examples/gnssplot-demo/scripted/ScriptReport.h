// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SCRIPTREPORT_H
#define GNSSDEMO_SCRIPTREPORT_H

#include <QObject>
#include <QString>

class QWidget;

namespace gnssdemo {

class DemoWindow;

/*!
    Prints, one line per fact on standard output, where the window's parts
    are on screen and what the host read back, so that a script can drive
    the demo with real mouse events and check the outcome:

        row NAME X Y W H        a satellite's bar cell, global pixels
        button apply|undo|clear X Y W H
        ready                   the window is shown and laid out
        selection ENABLED TOTAL after sgStateliteSelection
        mark NAME START LENGTH  after sgEraseMarksChanged, one per mark
        marks SATELLITES ACTIONS
        applied NAME BEFORE AFTER INSIDE   per recomputed satellite
        applied-done HIDDEN
        screenshot FILE         after each apply, when a file was given
*/
class ScriptReport : public QObject
{
    Q_OBJECT
public:
    ScriptReport(DemoWindow* window, const QString& screenshotPath);

private:
    void reportLayout();
    void reportSelection();
    void reportMarks();
    void reportApplied();
    void line(const QString& text);
    void geometry(const QString& what, const QWidget* widget);

    DemoWindow* m_window;
    QString m_screenshotPath;
};

} // namespace gnssdemo

#endif // GNSSDEMO_SCRIPTREPORT_H
