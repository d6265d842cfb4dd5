#pragma once

// Private to the library: what a TIFF file holds, found out before any voxel is read.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/tiff/kep_tifflayout.h"
#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kep::detail {

/// Where a page lies. Small, as files may have a million of them.
struct TiffPage {
    std::uint64_t at = 0;   ///< position of its directory
    std::size_t number = 0; ///< of its directory among all of the file, counted from 0
    std::size_t layout = 0; ///< index into TiffPages::layouts
    TiffEntry blocks;       ///< positions of its strips or tiles
    TiffEntry blockBytes;   ///< and their sizes
};

/// The pages of a file that are slices, or channels of slices.
struct TiffPages {
    std::vector<TiffPage> pages;
    std::vector<TiffLayout> layouts; ///< all with the same picture; mostly one
    TiffDirectory first;             ///< with the words of the file
};

/// Walks through the file. Pages that are smaller copies are left out, unless there are no others.
/// @throws IOException damaged; pages that differ; kinds that are not read
TiffPages FindTiffPages(const TiffValues& values);

/// A strip or tile in the file.
struct TiffBlock {
    std::uint64_t at = 0;
    std::uint64_t bytes = 0; ///< packed; of one that is not: as many as it must have
};

/// The blocks of a page that hold something of its picture, in order.
/// @throws IOException damaged, when there are too few, or they lie outside the file or hold too little. One that is
///         packed can still turn out to hold other than it must.
std::vector<TiffBlock> FindBlocks(const TiffValues& values, const TiffPages& pages, std::size_t page);

/// For the user: "page 1, row 16", and what more it takes to tell one block from the others.
std::string NameTiffBlock(const TiffPage& page, const TiffLayout& layout, std::size_t block);

} // namespace kep::detail
