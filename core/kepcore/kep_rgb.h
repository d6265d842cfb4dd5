#pragma once

#include "core/kepcore/kep_export.h"

namespace kep {

/// A colour voxel or pixel: three components without padding, black at first.
template <typename T>
struct KEP_EXPORT RGB_generic {
    /// @{
    /// From 0 to the greatest T for voxels of whole numbers.
    T red{};
    T green{};
    T blue{};
    /// @}

    constexpr RGB_generic() = default;
    constexpr RGB_generic(T r, T g, T b) : red(r), green(g), blue(b) {} ///< in this order, which is also that in memory

    /// @param i  0 red, 1 green, 2 blue; not tested, anything else is blue
    constexpr T GetComponent(int i) const { return i == 0 ? red : i == 1 ? green : blue; }
    constexpr T& GetComponent(int i) { return i == 0 ? red : i == 1 ? green : blue; } ///< to change it

    friend constexpr bool operator==(const RGB_generic& a, const RGB_generic& b) = default; ///< of all three, exactly
};

static_assert(sizeof(RGB_generic<unsigned char>) == 3);
static_assert(sizeof(RGB_generic<unsigned short>) == 6);

} // namespace kep
