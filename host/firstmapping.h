#pragma once

#include "histogram/zel_histogramset.h"
#include "host/options.h"
#include "image/zel_image4d.h"
#include "mapping/zel_graymapping.h"
#include "mapping/zel_mappingmodule.h"
#include "mapping/zel_rgbmapping.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zelviewer {

// How voxels are mapped to colours at the start. All templates exist for the types of KEP_DISPLAY_TYPES.

/// How an image of a type opens unless the user says otherwise: with more than 8 bits it would mostly be next to black,
/// so it is stretched without its darkest and brightest voxels. 8 bits show as they are, and the parts of complex
/// numbers between their extremes.
Stretch FirstStretch(DisplayType type);

/// "All voxels have the value 5."; none if they differ.
template <typename T>
std::optional<std::string> DescribeConstant(const mor::Image4d<T>& image);

/// Ends the range of 16-bit images with the bits that occur, and makes the tables anew. Others stay as they are.
void FitRange(zel::zel_GrayMappingModule<unsigned short>& module);
void FitRange(zel::zel_RGBMappingModule<unsigned short>& module);
template <typename Module>
void FitRange(Module&) {} // there the ends are the extremes, or there are no more than 8 bits

/// What a mapping begins with.
struct FirstMapping {
    std::optional<Stretch> stretch;         ///< none: as suits the image
    std::optional<zel::ComplexMode> part;   ///< of complex images; none: the first that varies
    std::function<bool(double)> progress{}; ///< as in zel::zel_MapperOptions
};

/// Makes the mapping that an image opens with, for a window or without. An image of equal voxels has one too.
///
/// Without a stretch by the user, one of FirstStretch that would show two levels only, as of a few bright dots in the
/// dark, gives way to the linear one. Unless the user wants none, the range of 16-bit images ends with the bits that
/// occur, so that the dialogs show what there is.
/// @param image    not changed
/// @param first    what the user wants
/// @param counted  the histograms of the whole image; null: they are counted here
/// @throws kep::InternalException in words for the user, for a part that does not vary; kep::ReadingStopped;
///         std::bad_alloc
template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping(const mor::Image4d<T>& image, const FirstMapping& first,
                                                       const zel::HistogramSet<T>* counted = nullptr);

} // namespace zelviewer
