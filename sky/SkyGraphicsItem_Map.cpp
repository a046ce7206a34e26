// SPDX-License-Identifier: MIT
#include "SkyGraphicsItem_Map_p.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>

SkyMapGrid::SkyMapGrid(double cellDegrees)
    : m_cell(isValidCellSize(cellDegrees) ? cellDegrees : 5.0)
    , m_elevationCells(int(std::ceil(90.0 / m_cell)))
    , m_azimuthCells(int(std::ceil(360.0 / m_cell)))
{
}

int SkyMapGrid::cellOf(double azimuth, double elevation) const
{
    if (!SkyProjection::isDrawable(azimuth, elevation))
        return -1;
    // Divided, not multiplied by the inverse, so that a direction on a cell
    // boundary lands in the cell above it however the size is written.
    const int band = std::min(int(elevation / m_cell), m_elevationCells - 1);
    const double around = azimuth >= 360.0 ? 0.0 : azimuth;
    const int sector = std::min(int(around / m_cell), m_azimuthCells - 1);
    return band * m_azimuthCells + sector;
}

void SkyMapGrid::boundsOf(int cell, double& azimuth0, double& azimuth1, double& elevation0,
                          double& elevation1) const
{
    const int band = cell / m_azimuthCells;
    const int sector = cell % m_azimuthCells;
    azimuth0 = sector * m_cell;
    azimuth1 = std::min(360.0, (sector + 1) * m_cell);
    elevation0 = band * m_cell;
    elevation1 = std::min(90.0, (band + 1) * m_cell);
}

double SkyMapCell::statistic(int which) const
{
    if (count == 0)
        return std::numeric_limits<double>::quiet_NaN();
    switch (which) {
    case 1:
        return std::sqrt(sumSquares / double(count));
    case 2:
        return maximum;
    default:
        return sum / double(count);
    }
}

const std::vector<SkyMapCell>& SkyGraphicsItem_Map::cells()
{
    const std::vector<SkyTrackSet::Track*>& tracks = m_tracks->refresh();
    if (m_setVersion == m_tracks->version() && m_settingsVersion == m_settings->mapVersion)
        return m_cells;
    m_setVersion = m_tracks->version();
    m_settingsVersion = m_settings->mapVersion;
    const SkyMapGrid grid(m_settings->cellDegrees);
    m_cells.assign(size_t(grid.cellCount()), SkyMapCell());
    if (m_settings->valueIndex < 0)
        return m_cells;
    for (SkyTrackSet::Track* track : tracks) {
        if (!track->bVisible)
            continue;
        SkyTrackSource& source = track->source;
        qint64 first = 0;
        qint64 last = std::min(source.count, source.valueCount) - 1;
        bool bEachTime = false;
        if (m_settings->bWindowActive) {
            source.checkTimeOrder();
            if (source.bTimeSorted) {
                qint64 from = 0;
                qint64 to = -1;
                if (!source.windowRange(m_settings->window, from, to))
                    continue;
                first = from;
                last = std::min(last, to);
            } else {
                bEachTime = true;
            }
        }
        for (qint64 j = first; j <= last; ++j) {
            const double t = source.times[j];
            const double value = source.values[j];
            if (!std::isfinite(t) || !std::isfinite(value)
                || (bEachTime && !m_settings->window.contains(t))) {
                continue;
            }
            const int cell = grid.cellOf(source.azimuths[j], source.elevations[j]);
            if (cell >= 0)
                m_cells[size_t(cell)].add(value);
        }
    }
    return m_cells;
}

QPainterPath SkyGraphicsItem_Map::cellPath(const SkyMapGrid& grid, int cell) const
{
    double az0 = 0.0;
    double az1 = 0.0;
    double el0 = 0.0;
    double el1 = 0.0;
    grid.boundsOf(cell, az0, az1, el0, el1);
    const SkyProjection projection = m_layout.projection();
    const QPointF centre(projection.cx, projection.cy);
    const double outer = projection.radius.radiusOf(el0);
    const double inner = projection.radius.radiusOf(el1);
    // Qt's arcs start at three o'clock and run counter-clockwise; azimuths
    // start at north and run clockwise.
    const double start = 90.0 - az0;
    const double sweep = -(az1 - az0);
    QPainterPath path;
    path.arcMoveTo(QRectF(centre.x() - outer, centre.y() - outer, 2 * outer, 2 * outer), start);
    path.arcTo(QRectF(centre.x() - outer, centre.y() - outer, 2 * outer, 2 * outer), start, sweep);
    path.arcTo(QRectF(centre.x() - inner, centre.y() - inner, 2 * inner, 2 * inner),
               start + sweep, -sweep);
    path.closeSubpath();
    return path;
}

void SkyGraphicsItem_Map::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!m_settings->mapShown() || !m_layout.isDrawable())
        return;
    const std::vector<SkyMapCell>& all = cells();
    const SkyMapGrid grid(m_settings->cellDegrees);
    const SkyColorScale scale = m_settings->scaleFor(*m_tracks);
    painter->save();
    // Cells meet edge to edge. Their arcs are approximated one by one, so a
    // one-pixel outline in the cell's colour closes the odd pixel between
    // two of them; without antialiasing no seam of blended edges shows.
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (int cell = 0; cell < int(all.size()); ++cell) {
        const double value = all[size_t(cell)].statistic(m_settings->mapStatistic);
        if (std::isnan(value))
            continue;
        const QColor colour = QColor::fromRgba(scale.colourOf(scale.levelOf(value)));
        painter->setPen(QPen(colour, 0.0));
        painter->setBrush(colour);
        painter->drawPath(cellPath(grid, cell));
    }
    painter->restore();
}
