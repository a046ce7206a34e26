#ifndef GNSSPLOT_CURVE_COORD_H
#define GNSSPLOT_CURVE_COORD_H

#include "gnssplot_global.h"

#include <QObject>

/*!
    \class Curve_Coord
    \brief Base of the coordinate objects that say which rectangle of data
    space a plot shows. Its only business is sgCoordAreaChanged().
*/
class GNSSPLOT_EXPORT Curve_Coord : public QObject
{
    Q_OBJECT
public:
    /*! Creates a coordinate object. */
    explicit Curve_Coord(QObject* parent = nullptr);

signals:
    /*! Emitted on every accepted area, also when it equals the previous one. */
    void sgCoordAreaChanged();

private:
    Q_DISABLE_COPY(Curve_Coord)
};

#endif // GNSSPLOT_CURVE_COORD_H
