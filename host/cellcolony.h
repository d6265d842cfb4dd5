#pragma once

#include "host/randomnumbers.h"
#include "image/kep.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace zelviewer {

/// A place or direction, microns.
using Vec = kep::Vector3d<double>;

/// One cell at one moment.
struct Cell {
    int label = 0;            ///< from 1; never given twice, so daughters have other ones than their mother
    Vec centre;               ///< microns
    Vec velocity;             ///< microns per frame
    Vec axis{1, 0, 0};        ///< of unit length: the long axis, along which the cell divides
    double radius = 5.0;      ///< microns, of a ball of the cell's volume
    double grownRadius = 5.0; ///< microns, what the radius grows to
    double mitosis = 0.0;     ///< 0 at rest, to 1 when it divides
    double brightness = 1.0;  ///< of all that glows in it
    double divisionTime = std::numeric_limits<double>::infinity(); ///< frames

    /// Half length along the axis and half width across it, microns; the volume stays while the cell stretches.
    double HalfLength() const;
    double HalfWidth() const;
};

/// Cells that wander in a box, keep off each other and its walls, and divide.
class CellColony {
public:
    /// @param extent  of the box, microns
    /// @param frames  over which the divisions are spread: every second cell divides once
    CellColony(const Vec& extent, int cells, int frames, std::uint64_t seed);

    const std::vector<Cell>& GetCells() const { return m_cells; }
    /// Goes on by one frame.
    void Advance();

private:
    void Place(int cells);
    void PlanDivisions(int frames);
    void Step(double duration);
    void Divide(std::size_t mother);
    void KeepApart();
    void KeepInside(Cell& cell) const;
    Vec RandomDirection();

    Vec m_extent;
    RandomNumbers m_random;
    std::vector<Cell> m_cells;
    double m_time = 0.0; // frames
    int m_lastLabel = 0;
};

} // namespace zelviewer
