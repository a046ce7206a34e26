// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_CURVE_COORD_H
#define GNSSPLOT_CURVE_COORD_H

#include "gnssplot_global.h"

#include <QObject>

#include <memory>

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
    /*! Destroys the coordinate object. Emits nothing. */
    ~Curve_Coord() override;

signals:
    /*! Emitted on every accepted area, also when it equals the previous one. */
    void sgCoordAreaChanged();

private:
    class PrivateData;
    // Empty for now: it keeps the class's size when a release adds state.
    const std::unique_ptr<PrivateData> m_data;

    Q_DISABLE_COPY(Curve_Coord)
};

#endif // GNSSPLOT_CURVE_COORD_H
