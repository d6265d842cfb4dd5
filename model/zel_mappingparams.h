#pragma once

#include "model/zel_export.h"

#include <limits>

namespace zel {

/// One set of levels: voxel values between the input ends become levels between the output ends, along a gamma curve.
template <typename T, typename U>
struct ZEL_EXPORT TLevelsParams {
    T inMin = std::numeric_limits<T>::min(); ///< for float the smallest positive normal number
    T inMax = std::numeric_limits<T>::max();
    double gamma = 1.0; ///< 1 is a straight line
    U outMin = 0;
    U outMax = 255;

    friend bool operator==(const TLevelsParams&, const TLevelsParams&) = default;
};

/// Two thresholds, in voxel values.
template <typename T>
struct ZEL_EXPORT ThresParams {
    T lower = std::numeric_limits<T>::min();
    T upper = std::numeric_limits<T>::max();

    friend bool operator==(const ThresParams&, const ThresParams&) = default;
};

} // namespace zel
