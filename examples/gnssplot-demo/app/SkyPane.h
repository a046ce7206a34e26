// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_SKYPANE_H
#define GNSSDEMO_SKYPANE_H

#include "DemoHost.h"

#include <QWidget>

class QComboBox;
class QLabel;
class SkyGraphicsView;

namespace gnssdemo {

class SkyMarker;

/*!
    The sky: the library's sky plot of the satellites' tracks, the choice of
    what colours them (signal strength, multipath, or the system) and of the
    sky map's figure, a line that says why tracks are missing, and a ring
    that marks the satellite named by a hover elsewhere. It shows what the
    host puts into the plot; the choices go to the host by signals.
*/
class SkyPane : public QWidget
{
    Q_OBJECT
public:
    explicit SkyPane(QWidget* parent = nullptr);

    SkyGraphicsView* sky() const { return m_sky; }
    /*! What colours the tracks, as chosen. */
    SkyValue skyValue() const;
    /*! Chooses \a value in the box (emits valueChosen() when it changes). */
    void setSkyValue(SkyValue value);
    /*! Chooses the sky map: -1 none, else a SkyGraphicsView::SkyMapStatistic. */
    void setSkyMap(int statistic);
    int skyMap() const;

    /*! Says \a text under the plot (why tracks are missing); empty hides it. */
    void setNote(const QString& text);
    QString note() const;

    /*! Marks satellite \a name at (\a azimuth, \a elevation), degrees, with a
        ring and its name; NaN or an empty name removes the mark. */
    void markSatellite(const QString& name, double azimuth, double elevation);
    /*! The satellite marked, empty when none. */
    QString markedSatellite() const;

    QComboBox* valueBox() const { return m_value; }
    QComboBox* mapBox() const { return m_map; }

signals:
    void valueChosen(gnssdemo::SkyValue value);

private:
    SkyGraphicsView* m_sky;
    QComboBox* m_value;
    QComboBox* m_map;
    QLabel* m_note;
    SkyMarker* m_marker;
};

} // namespace gnssdemo

#endif // GNSSDEMO_SKYPANE_H
