#pragma once

#include "image/zel_image4d.h"
#include "mapping/zel_graymapping.h"
#include "model/zel_export.h"

#include <complex>
#include <cstddef>
#include <functional>
#include <limits>
#include <type_traits>

namespace zel {

/// What a host may ask of zel_CreateMapperForType besides.
struct zel_MapperOptions {
    /// An int, float or complex image whose voxels are all equal is accepted: its grays go from 0 to that value, or
    /// from 0 to 1 where it is 0. Of a complex image all parts can then be shown.
    bool acceptsConstant = false;
    /// The histogram of an int image gets no more bins, which neighbouring numbers then share.
    std::size_t mostBins = std::numeric_limits<std::size_t>::max();
    /// Told now and then how much of the image is counted, between 0 and 1, in place of the notice. It returns false to
    /// stop: then kep::ReadingStopped is thrown.
    std::function<bool(double done)> progress;
};

/// Counts the histograms of a whole sequence, under a notice on the screen, and makes the mapping module for it. A
/// program without windows, whose application is a wxAppConsole, gets no notice and may pass no frame. Exists for the
/// types of KEP_DISPLAY_TYPES: gray images get a zel_GrayMappingModule, colour images a zel_RGBMappingModule,
/// complex ones a zel_ComplexMappingModule in which the parts that are constant over the image can't be shown; a
/// message in the log names each of those.
///
/// The bounds of int, float and complex histograms are the image's cached extremes: call UpdateMinMaxValues after
/// writing voxels by SetVoxel or by address. Only where none were ever measured, or where one of them is NaN or
/// infinite, are the voxels looked through here; the bounds are then those of the finite ones.
/// int takes 12 bytes for each number between its extremes, and several copies of that at a time.
/// @return the module, the caller's
/// @throws kep::InternalException "Consistency check failed. ..." for an image without voxels, for an int or float
///         image whose voxels are all equal, and for a complex image of which no part varies; std::bad_alloc. Nothing
///         is left behind.
template <typename T>
zel_MappingModule<T>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<T>& image);

/// The same with options.
/// @throws kep::ReadingStopped
template <typename T>
zel_MappingModule<T>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<T>& image,
                                              const zel_MapperOptions& options);

/// The same for complex images by the type of their parts, float.
template <typename T, typename = std::enable_if_t<std::is_same_v<T, float>>>
zel_MappingModule<std::complex<T>>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<std::complex<T>>& image);

/// Makes the gray module from histograms that are finished, for int and float. Nothing is checked.
/// @return the module, the caller's
template <typename T>
zel_GrayMappingModule<T>* zel_CreateGrayMapperForType(wxFrame* frame, const HistogramSet<T>& histograms);

} // namespace zel
