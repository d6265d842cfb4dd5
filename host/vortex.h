#pragma once

#include "image/kep.h"

#include <complex>
#include <memory>
#include <vector>

namespace zelviewer {

/// A wave for trying out complex images: a beam along z with two vortices in it, which turn in opposite senses. Its
/// amplitude is 0 in the core of each, round which the phase runs once through all angles.
struct VortexSettings {
    kep::Vector3d<std::size_t> size{240, 240, 40};    ///< voxels
    kep::Vector3d<float> voxelSize{0.2F, 0.2F, 0.4F}; ///< microns
    int frames = 5;                                   ///< of one period
};

/// The frames of a period, in their order.
std::vector<std::unique_ptr<kep::Image3d<std::complex<float>>>> MakeVortex(const VortexSettings& settings = {});

} // namespace zelviewer
