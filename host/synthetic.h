#pragma once

#include "image/kep.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace zelviewer {

/// What kind of time-lapse is made when no file is given.
struct SyntheticSettings {
    kep::Vector3d<std::size_t> size{320, 280, 32};    ///< voxels
    kep::Vector3d<float> voxelSize{0.2F, 0.2F, 0.6F}; ///< microns
    int frames = 10;
    int cells = 12; ///< in the first frame; half of them divide later
    std::uint64_t seed = 23;
};

/// One frame of it.
struct SyntheticFrame {
    std::unique_ptr<kep::Image3d<unsigned short>> intensity; ///< what a camera with 12 bits would have seen
    std::unique_ptr<kep::Image3d<unsigned short>> labels;    ///< the number of the cell that a voxel is in, 0 outside
};

/// Makes a fluorescence time-lapse of wandering, dividing cells. The same settings give the same voxels everywhere.
/// Takes about 30 ns a voxel, on up to four threads; a little more memory than the frames.
std::vector<SyntheticFrame> MakeSyntheticCells(const SyntheticSettings& settings = {});

} // namespace zelviewer
