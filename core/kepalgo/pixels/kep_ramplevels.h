#pragma once

#include "core/kepalgo/kep_lut.h"

#include <cstddef>
#include <optional>

namespace kep {

/// The levels of a table that rises or falls in a straight line, computed several at a time: many voxels get their
/// levels sooner so than by looking each up.
class RampLevels {
public:
    /// Takes a few microseconds, as all values are compared with the table.
    /// @return nothing if a level of the table is not the one that would be computed, or if this processor lacks what
    /// it takes
    static std::optional<RampLevels> Of(const LUT<unsigned short, unsigned char>& table);

    /// Writes the table's levels of `count` voxels.
    void Find(const unsigned short* voxels, std::size_t count, unsigned char* levels) const;

private:
    RampLevels() = default;

    unsigned short m_from = 0; ///< the last key with the first level
    unsigned short m_span = 0; ///< from there to the first key with the last level
    float m_slope = 0;         ///< levels a key
    float m_start = 0;         ///< first level, and what makes cutting off the rest a rounding
};

} // namespace kep
