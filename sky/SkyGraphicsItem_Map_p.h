// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_SKYGRAPHICSITEM_MAP_P_H
#define GNSSPLOT_SKYGRAPHICSITEM_MAP_P_H

#include "SkyGraphicsItem_p.h"

#include <algorithm>
#include <vector>

class QPainterPath;

// The cells of the sky map: elevation bands of one cell size from the
// horizon up, each cut into azimuth sectors of the same size from north
// clockwise; the last band and the last sector may be narrower.
class SkyMapGrid
{
public:
    static constexpr double kMinCell = 0.5;
    static constexpr double kMaxCell = 90.0;
    static bool isValidCellSize(double degrees)
    {
        return degrees >= kMinCell && degrees <= kMaxCell;
    }

    // \a cellDegrees must pass isValidCellSize().
    explicit SkyMapGrid(double cellDegrees);
    int elevationCells() const { return m_elevationCells; }
    int azimuthCells() const { return m_azimuthCells; }
    int cellCount() const { return m_elevationCells * m_azimuthCells; }
    // The cell of a direction, band by band from the horizon; -1 when the
    // direction is not drawn. Azimuth 360 is north's cell, elevation 90 the
    // top band's.
    int cellOf(double azimuth, double elevation) const;
    // The bounds of a cell, degrees.
    void boundsOf(int cell, double& azimuth0, double& azimuth1, double& elevation0,
                  double& elevation1) const;

private:
    double m_cell;
    int m_elevationCells;
    int m_azimuthCells;
};

// What a cell gathers of the values that fall into it.
struct SkyMapCell
{
    qint64 count = 0;
    double sum = 0.0;
    double sumSquares = 0.0;
    double maximum = 0.0;

    void add(double value)
    {
        maximum = count == 0 ? value : std::max(maximum, value);
        ++count;
        sum += value;
        sumSquares += value * value;
    }
    // The mean (0), root mean square (1) or maximum (2); NaN for an empty
    // cell.
    double statistic(int which) const;
};

/*
    The opt-in map of a value over the sky: per cell, the mean, RMS or
    maximum of the value axis over the drawn samples of the visible tracks
    in the time window, coloured through the colour scale. Cells without a
    sample are left empty. Kept until the tracks or the map's settings
    change.
*/
class SkyGraphicsItem_Map : public SkyGraphicsItem
{
public:
    using SkyGraphicsItem::SkyGraphicsItem;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
               QWidget* widget) override;

    // The cells as of the current tracks and settings, by cellOf() index.
    const std::vector<SkyMapCell>& cells();
    // The outline of a cell in scene pixels.
    QPainterPath cellPath(const SkyMapGrid& grid, int cell) const;

private:
    std::vector<SkyMapCell> m_cells;
    quint64 m_setVersion = 0;
    quint64 m_settingsVersion = 0;
};

#endif // GNSSPLOT_SKYGRAPHICSITEM_MAP_P_H
