#pragma once

#include "host/options.h"
#include "image/zel_image4d.h"
#include "mapping/zel_mappingmodule.h"

#include <memory>
#include <optional>

namespace zelviewer {

// How voxels are mapped to colours at the start. All exist for the types of KEP_DISPLAY_TYPES.

/// The grays of int, float and complex images are spread between their extremes, which must not be one.
/// @throws kep::InternalException in words for the user
template <typename T>
void RefuseConstant(const mor::Image4d<T>& image);

/// The values that occur, one bin for each whole number between the ends. Between ends that lie further apart than any
/// picture can tell, neighbouring numbers share a bin.
zel::HistogramSet<int> CountInts(const mor::Image4d<int>& image);

/// @throws kep::InternalException in words for the user, if --part can't be shown
void CheckPart(bool isEnabled);

/// The mapping that a window opens with, without the window.
/// @throws kep::InternalException in words for the user: for an int, float or complex image whose voxels are all equal,
///         and for a part that does not vary; std::bad_alloc
template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping(const mor::Image4d<T>& image, Stretch stretch,
                                                       std::optional<zel::ComplexMode> part);

} // namespace zelviewer
