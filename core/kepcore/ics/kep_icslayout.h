#pragma once

// Private to the library: which axis of an ICS file is which, and what voxels they make.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsheader.h"

#include <cstdint>
#include <string>
#include <vector>

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

/// Which axis is which, and how the voxels lie.
struct IcsLayout {
    IcsStrides strides; ///< its colour is that of the last axis of channels
    std::uint64_t channels = 1;
    std::uint64_t times = 1;
    std::uint64_t samples = 1; ///< of all frames

    /// The first sample of a frame.
    std::uint64_t FindFrame(std::uint64_t channel, std::uint64_t time) const;

    struct Axis {
        std::uint64_t size = 1;
        std::uint64_t stride = 0;
    };
    std::vector<Axis> channelAxes; ///< the fastest first; those of one channel left out
    std::uint64_t timeStride = 0;
};

/// @param fileName  for messages
/// @param frame     has its sample; gets its size
/// @throws IOException too many voxels
IcsLayout FindIcsLayout(const IcsHeader& header, const std::string& fileName, FrameHeader& frame);

/// The voxels of a file that is one frame.
/// @param frame  has its sample and size; gets the number of its components
/// @throws IOException several time points, other numbers of channels than 1 and 3
IcsStrides TakeIcsLayout(const IcsLayout& layout, const std::string& fileName, FrameHeader& frame);

} // namespace kep::detail
