#pragma once

// Private to the library: what the reader and the writer of TIFF must agree on, so that what was written can be read.

#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kep::detail {

constexpr std::size_t mostTiffPages = 1'000'000;
/// Voxels along x or y.
constexpr std::uint64_t longestTiffSide = 0x7FFFFFFF;
/// Bytes of a text that goes into the frame's description.
constexpr std::size_t longestTiffText = std::size_t{1} << 20U;
/// Bytes of the first page's description: OME-XML of a long series says in each file where every plane is.
constexpr std::size_t longestTiffDescription = std::size_t{16} << 20U;

/// A tag that holds a word of the frame's description.
struct TiffTextTag {
    const char* key; ///< of the description
    TiffTag tag;
};
constexpr std::array<TiffTextTag, 5> tiffTextTags{{{"Artist", tagArtist},
                                                   {"DateTime", tagDateTime},
                                                   {"Make", tagMake},
                                                   {"Model", tagModel},
                                                   {"Software", tagSoftware}}};

} // namespace kep::detail
