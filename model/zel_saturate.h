#pragma once

#include <limits>
#include <type_traits>

namespace zel {

/// A number as a voxel value: truncated for integers, held at the type's limits; not a number becomes the lower limit.
/// Floats stay as they are.
template <typename T>
T SaturateTo(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else {
        constexpr T lowest = std::numeric_limits<T>::lowest();
        constexpr T highest = std::numeric_limits<T>::max();
        if (!(value > static_cast<double>(lowest)))
            return lowest;
        return value >= static_cast<double>(highest) ? highest : static_cast<T>(value);
    }
}

/// Bits that it takes to write a number; 1 for all below 2.
inline int CountBits(long long value) {
    int bits = 1;
    for (; value > 1; value >>= 1)
        ++bits;
    return bits;
}

} // namespace zel
