#pragma once

// Counting the voxels of frames into histograms, without a word to the user.

#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_rgb.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"

#include <array>
#include <complex>
#include <cstddef>

namespace zel {

/// Adds values to the counters of their bins: what ++histogram.GetBin(value) would do with each, in a fraction of the
/// time. The histogram must have bins. For as long as it works it takes up to 1 MiB of memory for each thread, of which
/// there is one for each quarter of a million values.
/// @param first      the first value; each next one lies `stride` elements further on
/// @param number     of values
/// @param stride     1 for values that lie in a row
/// @param histogram  gets the counts
/// @throws std::bad_alloc nothing has been counted then
template <typename T>
void CountValues(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram);

/// Adds all voxels of a gray frame.
template <typename T>
void CountFrame(const kep::Image3d<T>& frame, Histogram<T>& histogram) {
    CountValues(frame.begin(), frame.GetNumVoxels(), 1, histogram);
}

/// Adds colours, each component to the histogram of its channel: red, green, blue. One pass, and up to 1.5 MiB of
/// memory for each thread.
/// @param first       the first colour
/// @param number      of colours
/// @param histograms  not null, three different ones, with bins
/// @throws std::bad_alloc nothing has been counted then
template <typename C>
void CountValues(const kep::RGB_generic<C>* first, std::size_t number, const std::array<Histogram<C>*, 3>& histograms);

/// Adds all voxels of a colour frame, each component to the histogram of its channel: red, green, blue.
template <typename C>
void CountFrame(const kep::Image3d<kep::RGB_generic<C>>& frame, const std::array<Histogram<C>*, 3>& histograms) {
    CountValues(frame.begin(), frame.GetNumVoxels(), histograms);
}

/// Adds one component of all voxels of a colour frame.
/// @param frame      not changed
/// @param channel    0 red, 1 green, 2 blue
/// @param histogram  gets the counts
template <typename C>
void CountFrame(const kep::Image3d<kep::RGB_generic<C>>& frame, int channel, Histogram<C>& histogram) {
    if (!frame.IsEmpty())
        CountValues(&frame.begin()->red + channel, frame.GetNumVoxels(), 3, histogram);
}

/// Real part, imaginary part, phase and amplitude, in that order.
using ComplexHistograms = std::array<Histogram<float>, 4>;

/// Adds complex values: the two parts, the phase atan2(im, re) and the amplitude sqrt(re * re + im * im), computed in
/// float. One pass, for the most part spent on the phases, in several threads if there are many values.
ZEL_EXPORT void CountValues(const std::complex<float>* first, std::size_t number, ComplexHistograms& histograms);

/// Adds all voxels of a complex frame.
inline void CountFrame(const kep::Image3d<std::complex<float>>& frame, ComplexHistograms& histograms) {
    CountValues(frame.begin(), frame.GetNumVoxels(), histograms);
}

#define ZEL_DECLARE(T)                                                                                                 \
    extern template ZEL_EXPORT void CountValues<T>(const T*, std::size_t, std::size_t, Histogram<T>&);
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE
#define ZEL_DECLARE(C)                                                                                                 \
    extern template ZEL_EXPORT void CountValues<C>(const kep::RGB_generic<C>*, std::size_t,                            \
                                                   const std::array<Histogram<C>*, 3>&);
ZEL_DECLARE(unsigned char)
ZEL_DECLARE(unsigned short)
#undef ZEL_DECLARE

} // namespace zel
