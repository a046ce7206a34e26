// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_READBACKPANEL_H
#define GNSSDEMO_READBACKPANEL_H

#include <stEpochDataSet.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QWidget>

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace gnssdemo {

/*!
    The side panel: shows what the host has read back from the epoch table
    (the enabled satellites and the erase marks per satellite) and offers the
    host's actions on them: undo, clear, apply, and saving pictures. It only
    displays what it is given and forwards button clicks; the window talks to
    the library.
*/
class ReadbackPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ReadbackPanel(QWidget* parent = nullptr);

    /*! Shows the check-box state of every satellite. */
    void showSelection(const QMap<QString, bool>& enabled);
    /*! Shows the marks per satellite (one stEpochDataSet of (start, length)
        pairs in GPST milliseconds, or an empty list) and the action count. */
    void showMarks(const QMap<QString, QList<stEpochDataSet>>& marks, int actionCount);
    /*! Shows what the last Apply did. */
    void showApplyResult(const QString& text);
    /*! Fills the picture satellite choice; \a preferred is selected. */
    void setSatellites(const QStringList& names, const QString& preferred);
    QString pictureSatellite() const;

    QPushButton* undoButton() const { return m_undo; }
    QPushButton* clearButton() const { return m_clear; }
    QPushButton* applyButton() const { return m_apply; }

signals:
    void undoRequested();
    void clearRequested();
    void applyRequested();
    void saveCurvePictureRequested(const QString& satellite);
    void saveBarsPictureRequested();

private:
    QLabel* m_enabledCount;
    QPlainTextEdit* m_unchecked;
    QLabel* m_marksCount;
    QTreeWidget* m_marks;
    QPushButton* m_undo;
    QPushButton* m_clear;
    QPushButton* m_apply;
    QLabel* m_applyResult;
    QComboBox* m_pictureSatellite;
};

/*! "2024/07/27 09:36:00" for GPST milliseconds since 1970-01-01. */
QString gpstText(qint64 ms);

} // namespace gnssdemo

#endif // GNSSDEMO_READBACKPANEL_H
