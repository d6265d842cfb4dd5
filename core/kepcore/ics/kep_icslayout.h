#pragma once

// Private to the library: which axis of an ICS file is which, and what voxels they make.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsheader.h"

#include <cstdint>
#include <string>

namespace kep::detail {

/// How far apart, in samples, neighbours along each axis lie; 0 along an axis that the file does not have.
struct IcsStrides {
    std::uint64_t x = 0;
    std::uint64_t y = 0;
    std::uint64_t z = 0;
    std::uint64_t colour = 0;
};

/// @param fileName  for messages
/// @throws IOException samples that are not read
SampleType GetIcsSampleType(const IcsHeader& header, const std::string& fileName);

/// Tells which axis is which, and how the voxels lie.
/// @param fileName  for messages
/// @param frame     has its sample; gets its size and the number of its components
/// @throws IOException several time points, other numbers of channels than 1 and 3, too many voxels
IcsStrides TakeIcsLayout(const IcsHeader& header, const std::string& fileName, FrameHeader& frame);

} // namespace kep::detail
