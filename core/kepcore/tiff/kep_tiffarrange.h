#pragma once

// Private to the library: which pages of a TIFF file make which slices of which frame.

#include "core/kepcore/tiff/kep_tifflayout.h"
#include "core/kepcore/tiff/kep_tiffmeta.h"
#include "core/kepcore/tiff/kep_tiffpages.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace kep::detail {

/// The slices of one frame.
struct TiffArrangement {
    std::size_t slices = 0;
    std::size_t pagesOfSlice = 1;   ///< 1, or 3 that are its channels
    std::vector<std::size_t> pages; ///< by numbers among TiffPages, slice after slice; empty: all of them as they come
    bool isOneBlock = false;        ///< the voxels of all pages follow the first page's, whatever other pages there are
    std::uint64_t blockAt = 0;      ///< where, in that case
    unsigned firstSample = 0;       ///< of a page's pixels, the first one that is read
    unsigned samples = 1;           ///< and how many are

    std::size_t GetPage(std::size_t i) const { return pages.empty() ? i : pages[i]; }
};

/// A file as one frame.
/// @throws IOException several frames or channels; more slices promised than there are
TiffArrangement ArrangeTiffPages(const TiffValues& values, const TiffPages& pages, const TiffVoxels& voxels,
                                 const TiffDescription& description);

/// A file as frames.
struct TiffFrames {
    std::size_t channels = 1;
    std::size_t times = 1;
    TiffArrangement each;         ///< what the frames have in common; its pages are those of all frames
    unsigned channelsInPixel = 1; ///< of those channels, as many lie together in the pixels of a page

    /// @throws IOException some of the frame's slices lie in other files
    TiffArrangement Take(std::size_t channel, std::size_t time, const std::string& fileName) const;
};

/// In TiffFrames: the slice is in no page of the file.
constexpr std::size_t noTiffPage = std::numeric_limits<std::size_t>::max();

/// @throws IOException pages that don't make whole frames; more promised than there are
TiffFrames ArrangeTiffFrames(const TiffValues& values, const TiffPages& pages, const TiffVoxels& voxels,
                             const TiffDescription& description);

} // namespace kep::detail
