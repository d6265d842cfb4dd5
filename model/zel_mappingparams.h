#pragma once

#include "model/zel_export.h"

#include <limits>

namespace zel {

/// One set of levels: voxel values between the input ends become levels between the output ends, along a gamma curve.
template <typename T, typename U>
struct ZEL_EXPORT TLevelsParams {
    T inMin = std::numeric_limits<T>::min(); ///< for float the smallest positive normal number
    T inMax = std::numeric_limits<T>::max(); ///< may lie below inMin: the curve then falls
    double gamma = 1.0;                      ///< 1 is a straight line
    U outMin = 0;                            ///< level of inMin and of what lies below
    U outMax = 255;                          ///< level of inMax and of what lies above

    friend bool operator==(const TLevelsParams&, const TLevelsParams&) = default; ///< exact
};

/// Two thresholds, in voxel values.
template <typename T>
struct ZEL_EXPORT ThresParams {
    T lower = std::numeric_limits<T>::min(); ///< the lowest value that is white
    T upper = std::numeric_limits<T>::max(); ///< the highest value that is white

    friend bool operator==(const ThresParams&, const ThresParams&) = default; ///< exact
};

} // namespace zel
