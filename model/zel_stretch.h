#pragma once

#include "core/kepalgo/kep_lut.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"
#include "model/zel_mappingparams.h"

namespace zel {

// What the stretches make of a histogram or a part of one, which has bins. T is unsigned char, unsigned short, int or
// float.

/// Levels from voxel values to 8 bits.
template <typename T>
using GrayLevels = TLevelsParams<T, unsigned char>;
/// The table of such levels.
template <typename T>
using GrayTable = kep::LUT<T, unsigned char>;

/// From the lowest value that occurs to the highest.
template <typename T>
GrayLevels<T> LinearLevels(const HistogramPart<T>& bins);

/// The same without a fraction of the voxels at either end.
template <typename T>
GrayLevels<T> PercentilLevels(const HistogramPart<T>& bins, double fraction);

/// As LinearLevels, but where fewer than two values occur they go from one end of the histogram to the other.
template <typename T>
GrayLevels<T> LinearLevelsOrWhole(const HistogramPart<T>& bins) {
    const GrayLevels<T> levels = LinearLevels(bins);
    return levels.inMin < levels.inMax ? levels : GrayLevels<T>{bins.GetLeftCenter(), bins.GetRightCenter()};
}

/// Fills a table with the curve of levels. The gamma is rounded to a float.
/// @throws kep::LibException for a gamma that is not a positive number
template <typename T>
void FillTable(const GrayLevels<T>& levels, GrayTable<T>& table) {
    table.CreateGamma(levels.inMin, levels.inMax, static_cast<float>(levels.gamma), levels.outMin, levels.outMax);
}

/// Fills a table with white between the thresholds, and black.
template <typename T>
void FillTable(const ThresParams<T>& thresholds, GrayTable<T>& table) {
    table.CreateThresholding(thresholds.lower, thresholds.upper, 0, 255);
}

/// Fills a table so that every level gets about the same number of voxels. Values outside the range are black.
/// @param bins       of the range
/// @param low, high  ends of the range
/// @param table      of the channel; covers the range
/// @return false, and nothing is changed, if the range has more bins than the table has entries
template <typename T>
bool EqualizeTable(const HistogramPart<T>& bins, T low, T high, GrayTable<T>& table);

} // namespace zel
