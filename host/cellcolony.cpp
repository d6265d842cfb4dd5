#include "host/cellcolony.h"

#include <algorithm>
#include <cmath>

namespace zelviewer {

namespace {

constexpr double mitosisDuration = 1.6; // frames from the first sign to the division

Vec Scaled(const Vec& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}
Vec Sum(const Vec& a, const Vec& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vec Difference(const Vec& a, const Vec& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
double Length(const Vec& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

} // namespace

double Cell::HalfLength() const {
    return radius * (1.12 + 0.45 * mitosis);
}

double Cell::HalfWidth() const {
    return radius * std::sqrt(radius / HalfLength());
}

CellColony::CellColony(const Vec& extent, int cells, int frames, std::uint64_t seed)
    : m_extent(extent), m_random(seed) {
    Place(cells);
    PlanDivisions(frames);
    for (int settle = 0; settle < 40; ++settle)
        KeepApart();
}

/// Points of a cube are drawn until one lies in the ball: sines would differ from machine to machine.
Vec CellColony::RandomDirection() {
    for (;;) {
        const Vec v{m_random.Uniform(-1, 1), m_random.Uniform(-1, 1), m_random.Uniform(-1, 1)};
        if (const double length = Length(v); length > 0.1 && length <= 1.0)
            return Scaled(v, 1.0 / length);
    }
}

/// One cell in each field of a grid, somewhat off the middle.
void CellColony::Place(int cells) {
    const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(cells * m_extent.x / m_extent.y))));
    const int rows = (cells + columns - 1) / columns;
    for (int i = 0; i < cells; ++i) {
        Cell cell;
        cell.label = ++m_lastLabel;
        cell.radius = cell.grownRadius = m_random.Uniform(5.8, 7.2);
        cell.brightness = m_random.Uniform(0.7, 1.2);
        cell.axis = RandomDirection();
        const double stagger = (i / columns) % 2 == 0 ? 0.0 : 0.25;
        cell.centre = {(i % columns + stagger + m_random.Uniform(0.1, 0.7)) * m_extent.x / columns,
                       (i / columns + m_random.Uniform(0.2, 0.8)) * m_extent.y / rows,
                       m_random.Uniform(0.3, 0.7) * m_extent.z};
        m_cells.push_back(cell);
    }
}

void CellColony::PlanDivisions(int frames) {
    std::vector<std::size_t> dividing;
    for (std::size_t i = 0; i + 1 < m_cells.size(); i += 2)
        dividing.push_back(i);
    for (std::size_t left = dividing.size(); left > 1; --left) // shuffled, or they would divide row by row
        std::swap(dividing[left - 1], dividing[m_random.Next() % left]);
    for (std::size_t k = 0; k < dividing.size(); ++k) {
        const double part =
            (static_cast<double>(k) + m_random.Uniform(0.2, 0.8)) / static_cast<double>(dividing.size());
        m_cells[dividing[k]].divisionTime = 0.5 + part * (frames - 2.5);
    }
}

void CellColony::Advance() {
    constexpr int steps = 8;
    for (int i = 0; i < steps; ++i)
        Step(1.0 / steps);
}

void CellColony::Step(double duration) {
    m_time += duration;
    for (std::size_t i = m_cells.size(); i-- > 0;)
        if (m_cells[i].divisionTime <= m_time)
            Divide(i);
    for (Cell& cell : m_cells) {
        cell.mitosis = std::clamp(1.0 - (cell.divisionTime - m_time) / mitosisDuration, 0.0, 1.0);
        cell.radius += (cell.grownRadius - cell.radius) * 0.25 * duration;
        // Cells lie flat: they wander and turn less along Z.
        const Vec push = RandomDirection();
        const Vec turn = RandomDirection();
        cell.velocity = Sum(Scaled(cell.velocity, 1.0 - 0.6 * duration),
                            {push.x * 2.2 * duration, push.y * 2.2 * duration, push.z * 0.8 * duration});
        cell.centre = Sum(cell.centre, Scaled(cell.velocity, duration));
        if (cell.mitosis == 0.0) { // the axis of division stands still
            const Vec axis = Sum(cell.axis, {turn.x * 0.15, turn.y * 0.15, turn.z * 0.04});
            cell.axis = Scaled(axis, 1.0 / Length(axis));
        }
    }
    KeepApart();
}

/// The mother's place in the list goes to one daughter, the other comes last.
void CellColony::Divide(std::size_t mother) {
    Cell first = m_cells[mother];
    const double distance = 0.5 * first.HalfLength();
    first.divisionTime = std::numeric_limits<double>::infinity();
    first.mitosis = 0.0;
    first.radius *= 0.7937; // half the volume: the cube root of 0.5
    Cell second = first;
    first.label = ++m_lastLabel;
    second.label = ++m_lastLabel;
    first.centre = Sum(first.centre, Scaled(first.axis, distance));
    second.centre = Difference(second.centre, Scaled(second.axis, distance));
    first.velocity = Sum(first.velocity, Scaled(first.axis, 1.5));
    second.velocity = Difference(second.velocity, Scaled(second.axis, 1.5));
    m_cells[mother] = first;
    m_cells.push_back(second);
}

void CellColony::KeepApart() {
    for (std::size_t i = 0; i < m_cells.size(); ++i)
        for (std::size_t j = i + 1; j < m_cells.size(); ++j) {
            const Vec between = Difference(m_cells[j].centre, m_cells[i].centre);
            const double distance = std::max(Length(between), 0.01);
            const double wanted = 0.5 * (m_cells[i].HalfLength() + m_cells[i].HalfWidth() + m_cells[j].HalfLength() +
                                         m_cells[j].HalfWidth());
            if (distance >= wanted)
                continue;
            const Vec push = Scaled(between, 0.2 * (wanted - distance) / distance);
            m_cells[i].centre = Difference(m_cells[i].centre, push);
            m_cells[j].centre = Sum(m_cells[j].centre, push);
        }
    for (Cell& cell : m_cells)
        KeepInside(cell);
}

void CellColony::KeepInside(Cell& cell) const {
    const double margin = cell.radius * 1.05;
    const auto keep = [margin](double& at, double& velocity, double extent) {
        const double low = std::min(margin, extent / 2);
        const double kept = std::clamp(at, low, extent - low);
        if (kept != at)
            velocity = 0.0;
        at = kept;
    };
    keep(cell.centre.x, cell.velocity.x, m_extent.x);
    keep(cell.centre.y, cell.velocity.y, m_extent.y);
    keep(cell.centre.z, cell.velocity.z, m_extent.z);
}

} // namespace zelviewer
