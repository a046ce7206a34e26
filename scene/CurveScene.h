// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVESCENE_H
#define GNSSPLOT_CURVESCENE_H

#include "gnssplot_global.h"

#include "EventMark.h"

#include <QColor>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

class Curve_Coord;
class Curve_DataSet;

/*! How a curve is drawn. The registry stores any value; the curve items act
    on these two. */
enum ECurveShowCap : qint32 {
    ECurveShowCap_Line = 0,  //!< Connected runs as polylines (a run of one sample as a dot).
    ECurveShowCap_Point = 1, //!< Every sample as a dot.
};

/*! One registered curve: its data and how it is shown. */
struct CurveEntry
{
    Curve_DataSet* dataSet = nullptr;        //!< Never null for a registered curve.
    QColor color = QColor(128, 128, 128, 255); //!< Curve colour.
    ECurveShowCap cap = ECurveShowCap_Line;  //!< Drawing style.
    bool visible = false;                    //!< Whether the curve is shown.
};

/*!
    \class CurveScene
    \brief The registry behind one plot: named curves with colour, drawing
    style and visibility, the local coordinate in which all of them are
    shown, and their common data limits.

    Curves are kept by name in ascending order (case-sensitive). The registry
    draws nothing; CurveGraphicsScene listens to its signals.
*/
class GNSSPLOT_EXPORT CurveScene : public QObject
{
    Q_OBJECT
public:
    /*! Creates an empty registry with no local coordinate. */
    explicit CurveScene(QObject* parent = nullptr);
    /*! Deletes the local coordinate when it was given with bAutoDelete
        \c true, then the data set of every curve registered with bAutoDelete
        \c true. Emits nothing. */
    ~CurveScene() override;

    /*! Registers \a dataSet under \a curveName and emits
        sgCurveAdded(curveName). With \a bAutoDelete \c true the registry takes
        ownership of the data set and deletes it when the curve is removed or
        the registry is destroyed; with \c false the caller keeps it and must
        keep it alive while it is registered.

        Refused (\c false; the data set is not touched, not even deleted) when
        the name is taken, \a dataSet is null, or the same data set is already
        registered under any name. */
    bool addCurve(const QString& curveName, Curve_DataSet* dataSet, bool bAutoDelete,
                  const QColor& color, ECurveShowCap cap, bool bVisible);
    /*! Releases the curve's data set (deletes it if owned), drops the curve and
        emits sgCurveRemoved(curveName). Does nothing for an unknown name. */
    void removeCurve(const QString& curveName);
    /*! Removes every curve in ascending name order, one sgCurveRemoved() each.
        Each curve is already gone from the registry when its signal arrives. */
    void removeAllCurves();

    /*! Returns the data set of the curve, or null for an unknown name. */
    const Curve_DataSet* getCurve(const QString& curveName) const;
    /*! Replaces \a curves by name -> data set for every registered curve. */
    void getCurves(QMap<QString, const Curve_DataSet*>& curves) const;

    /*! The curve's drawing style; ECurveShowCap_Line for an unknown name. */
    ECurveShowCap getCurveShowParam_cap(const QString& curveName) const;
    /*! The curve's colour; grey (128, 128, 128) for an unknown name. */
    QColor getCurveShowParam_color(const QString& curveName) const;
    /*! The curve's visibility; \c false for an unknown name. */
    bool getCurveShowParam_visible(const QString& curveName) const;
    /*! Stores a new drawing style and emits sgCurveShowParamChanged(); does
        nothing when the name is unknown or the style is unchanged. */
    void setCurveShowParam_cap(const QString& curveName, ECurveShowCap cap);
    /*! Stores a new colour and emits sgCurveShowParamChanged(); does nothing
        when the name is unknown or the colour is unchanged. */
    void setCurveShowParam_color(const QString& curveName, const QColor& color);
    /*! Stores a new visibility and emits sgCurveShowParamChanged(); does
        nothing when the name is unknown or the visibility is unchanged. */
    void setCurveShowParam_visible(const QString& curveName, bool bVisible);
    /*! Asks the views to show only this curve (\a bSingle \c true) or all of
        them again: emits sgCurveSingleShow() for a registered name, every
        time. Nothing is stored. */
    void setCurveSingleShow(const QString& curveName, bool bSingle);

    /*! Gives the curve \a curveName the event marks \a marks (cycle slips,
        losses of lock, gaps or the host's own kinds at sample indexes; see
        EventMark), replacing those it had, and emits
        sgCurveEventMarksChanged() when they differ. A curve view draws them
        as short ticks on the curve and names their kinds in its hover
        read-out. Marks at indexes the curve has no sample for, or where a
        value is NaN, are kept but draw nothing. An empty list takes the
        marks away. Returns \c false, storing nothing, for an unknown name.
        Removing the curve drops its marks. */
    bool setCurveEventMarks(const QString& curveName, const QVector<EventMark>& marks);
    /*! The event marks of the curve as they were given; empty for an
        unknown name or a curve without marks. */
    QVector<EventMark> getCurveEventMarks(const QString& curveName) const;

    /*! Replaces the local coordinate and emits sgLocalCoordChanged(). The
        previous coordinate is deleted when it was given with bAutoDelete
        \c true. With \a bAutoDelete \c true the registry takes ownership of
        \a coord (which may be null). Setting the current coordinate again
        does nothing, and does not change its ownership flag. */
    void setCoord(Curve_Coord* coord, bool bAutoDelete);
    /*! The local coordinate, or null. */
    Curve_Coord* getCoord_Local();
    /*! The local coordinate, or null. */
    const Curve_Coord* getCoord_Local() const;

    /*! Computes the limits of all curves' X axes and of all their Y axes
        (NaN skipped; hidden curves count), in the order
        Curve_Coord_XY::setArea() takes them. Returns \c false without writing
        when no curve is registered or a curve is not a Curve_DataSet_XY, and
        \c false when an X axis has no value. */
    bool getAreaLimits(double& xMin, double& xMax, double& yMin, double& yMax) const;

signals:
    /*! The local coordinate was replaced. */
    void sgLocalCoordChanged();
    /*! A curve was registered. */
    void sgCurveAdded(QString curveName);
    /*! A curve was removed; its data set may already be destroyed. Receivers
        must not add or remove curves from this signal. */
    void sgCurveRemoved(QString curveName);
    /*! A curve's colour, style or visibility changed. */
    void sgCurveShowParamChanged(QString curveName);
    /*! A request to show only \a curveName (or to stop doing so). */
    void sgCurveSingleShow(QString curveName, bool bSingle);
    /*! The event marks of \a curveName changed (setCurveEventMarks()). */
    void sgCurveEventMarksChanged(QString curveName);

private:
    void releaseDataSet(const QString& curveName, Curve_DataSet* dataSet);

    class PrivateData;
    // All state lives here, so that a later release can add to it without
    // changing the size of the class.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(CurveScene)
};

#endif // GNSSPLOT_CURVESCENE_H
