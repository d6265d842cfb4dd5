#pragma once

// Small histograms.

#include "model/zel_histogram.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace zel::test {

/// A histogram from min to max with these counters.
template <typename T>
Histogram<T> Counted(T min, T max, const std::vector<std::size_t>& counts) {
    Histogram<T> histogram;
    histogram.Init(min, max, counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i)
        histogram[i] = counts[i];
    return histogram;
}

/// The histogram of an image with these voxels, which is as long as one of a whole sequence: a bin for each value of
/// an unsigned type, or for each number from the least to the greatest.
template <typename T>
Histogram<T> OfVoxels(const std::vector<T>& voxels, T min = std::numeric_limits<T>::min(),
                      T max = std::numeric_limits<T>::max()) {
    Histogram<T> histogram;
    histogram.Init(min, max, static_cast<std::size_t>(static_cast<long long>(max) - static_cast<long long>(min)) + 1);
    for (const T voxel : voxels)
        ++histogram.GetBin(voxel);
    return histogram;
}

} // namespace zel::test
