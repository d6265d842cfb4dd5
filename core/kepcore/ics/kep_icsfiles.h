#pragma once

// Private to the library: where the voxels of an ICS header lie, in its own file or in one beside it.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsheader.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kep::detail {

struct IcsVoxelFile {
    std::unique_ptr<InputFile> file; ///< null: the header's own
    std::uint64_t at = 0;            ///< the first voxel's place
    IcsCompression compression = IcsCompression::None;
};

/// Finds the voxels of a header, and opens the file beside it if there is one.
/// @throws IOException damaged: the file is missing or can't be opened, lies in another folder, or is the header itself
IcsVoxelFile FindIcsVoxels(const InputFile& headerFile, const IcsHeader& header);

/// The name of an ICS file without ".ics".
std::string RemoveIcsSuffix(const std::string& name);

} // namespace kep::detail
