#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace zel {

/// Truncation towards zero for every number: NaN gives 0, and what is too large is held at the limits of int. High
/// zooms and odd geometry produce such numbers.
inline int TruncToInt(double value) {
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    if (std::isnan(value))
        return 0;
    if (value <= low)
        return std::numeric_limits<int>::min();
    if (value >= high)
        return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}

/// Whole pixels of an extent in microns at a scale in pixels per micron, truncated; none if either is below 0. The
/// extent of n voxels at their own scale is n pixels, although the float product comes out below n for one resolution
/// in fifteen: a product within two roundings of a whole number is that number. Without this the last row of such
/// images is never seen.
inline int PixelsAlong(float microns, float pixelsPerMicron) {
    const double product = static_cast<double>(microns * pixelsPerMicron);
    const double roundings = product * 2.0 * static_cast<double>(std::numeric_limits<float>::epsilon());
    return std::max(0, TruncToInt(product + roundings));
}

} // namespace zel
