#pragma once

#include "core/kepcore/kep_image3d.h"

#include <cstddef>
#include <memory>

/// The frame that the benchmarks work on: cells on a noisy background, as a 12-bit camera sees them, in 512 x 512 x 64
/// voxels of 0.1 x 0.1 x 0.625 microns. Made once a type and kept, since making it takes longer than most of what is
/// measured. The numbers fit every type: 8-bit ones are a sixteenth.
template <typename T>
std::shared_ptr<const kep::Image3d<T>> GetSampleFrame();
