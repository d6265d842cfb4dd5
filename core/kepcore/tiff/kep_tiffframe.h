#pragma once

// Private to the library: the voxels of one frame of a TIFF file, slice by slice.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/tiff/kep_tiffarrange.h"
#include "core/kepcore/tiff/kep_tiffpages.h"
#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <memory>
#include <utility>

namespace kep::detail {

/// A TIFF file that was walked through.
struct TiffContents {
    /// @throws IOException as FindTiffPages
    explicit TiffContents(std::unique_ptr<InputFile> input)
        : file(std::move(input)), values(*file), found(FindTiffPages(values)) {}

    std::unique_ptr<InputFile> file;
    TiffValues values; ///< of the file
    TiffPages found;
};

/// @param header  complete
std::unique_ptr<FrameSource> MakeTiffFrame(std::shared_ptr<const TiffContents> contents, FrameHeader&& header,
                                           TiffArrangement&& arrangement);

} // namespace kep::detail
