#pragma once

#include "core/kepalgo/kep_lut.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"
#include "model/zel_mappingparams.h"

namespace zel {

// What the stretches make of a histogram. T is unsigned char, unsigned short, int or float; the histograms hold at
// least one bin.

template <typename T>
using GrayLevels = TLevelsParams<T, unsigned char>;
template <typename T>
using GrayTable = kep::LUT<T, unsigned char>;

/// From the lowest value that occurs to the highest.
template <typename T>
GrayLevels<T> LinearLevels(const Histogram<T>& histogram);

/// The same without a fraction of the voxels at either end.
template <typename T>
GrayLevels<T> PercentilLevels(const Histogram<T>& histogram, double fraction);

/// Fills a table so that every level gets about the same number of voxels. Values outside the range are black.
/// @param histogram  of the range
/// @param low, high  ends of the range
/// @return false, and nothing is changed, if the range has more bins than the table has entries
template <typename T>
bool EqualizeTable(const Histogram<T>& histogram, T low, T high, GrayTable<T>& table);

} // namespace zel
