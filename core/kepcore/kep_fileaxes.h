#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_imageinfo.h"
#include "core/kepcore/kep_rgb.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kep {

/// A channel, as far as a file tells of it.
struct ChannelInfo {
    std::string name;                                 ///< in UTF-8; empty if the file has none
    std::optional<RGB_generic<unsigned char>> colour; ///< in which programs should show it; none if the file names none

    friend bool operator==(const ChannelInfo&, const ChannelInfo&) = default; ///< of both fields
};

/// How many slices, channels and time points there are.
struct AxisCounts {
    std::size_t slices = 1;   ///< of one frame
    std::size_t channels = 1; ///< counted as in FileAxes
    std::size_t times = 1;    ///< time points

    friend bool operator==(const AxisCounts&, const AxisCounts&) = default; ///< of all three
};

/// The frames that a file holds: one for each channel at each time point, all alike.
struct KEP_EXPORT FileAxes {
    ImageInfo frame;          ///< what each frame is: size.z are its slices, voxelType is that of one channel
    std::size_t channels = 1; ///< at least one; three that make a colour voxel count as one
    std::size_t times = 1;    ///< time points, at least one
    std::vector<ChannelInfo> channelInfos; ///< of the first channels; nothing is known of those that it lacks
    std::optional<double> frameInterval;   ///< seconds from one time point to the next
    std::optional<AxisCounts> series;      ///< of the whole series, where the file is one of several that make it
};

/// Tells how many frames a file holds, and what they are, without reading voxels.
///
/// - TIFF: an ImageJ description tells channels, slices and time points; OME-XML also which page is which of them,
///   and which planes lie in other files. Without either, pages are slices. Several samples of a pixel without a colour
///   are channels. A colour voxel counts as one channel.
/// - ICS: the axes x, y, z and t in any order; all others are channels.
///
/// The numbers of a description are held against the pages that are there. A file of one frame has its slices in the
/// order of its pages, as ReadImage reads them.
///
/// @param fileName  in the file system's encoding
/// @throws IOException with the texts of Image3d::ReadImage
KEP_EXPORT FileAxes ReadFileAxes(const char* fileName);

} // namespace kep
