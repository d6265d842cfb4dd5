#pragma once

#include "image/kep.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zelviewer {

/// A voxel of the sequence and what is there.
struct Whereabouts {
    kep::Vector3d<std::size_t> voxel; ///< counted from 0
    int frame = 0;                    ///< counted from 0
    int frames = 1;
    std::string value;             ///< UTF-8; empty if it is not known
    std::optional<unsigned> label; ///< none for an image without labels; 0 for no label
};

/// How much of it is told: without microns it takes half the room.
enum class Detail { Voxels, VoxelsAndMicrons };

/// "x 13 (1.30 um)  y 4 (0.40 um)  z 7 (2.10 um)  t 3 of 20  value 1234  label 5": counted from 1, at the middle of the
/// voxel. Without microns where the voxel size is not known, without the time if there is one frame only.
std::string DescribeWhereabouts(const Whereabouts& place, const kep::Vector3d<float>& offset,
                                const kep::Resolution& resolution, Detail detail = Detail::VoxelsAndMicrons);

/// How wide the field of messages beside it is, in pixels: no wider than needed.
/// @param bar  width of both fields together
int WidthOfMessages(int bar, bool hasMessage);

} // namespace zelviewer
