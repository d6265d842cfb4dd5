#pragma once

#include "host/displaytype.h"
#include "host/labels.h"
#include "host/options.h"
#include "image/zel_image4d.h"

#include <complex>
#include <cstdint>
#include <memory>

namespace zelviewer {

/// What the files on the command line will become.
struct OpeningPlan {
    DisplayType type = DisplayType::Gray16;
    std::uint64_t bytes = 0; ///< of all voxels in memory
};

/// Reads the headers of all files, so that a missing one is found before the others are read.
/// @throws Failure
OpeningPlan PlanOpening(const Options& options);

/// Reads the files as one sequence. Exists for the types of KEP_DISPLAY_TYPES.
/// @throws Failure, also when the user cancels
template <typename T>
std::unique_ptr<mor::Image4d<T>> ReadFiles(const Options& options, const OpeningPlan& plan);

/// Reads the label files as one sequence, as stored or as connected components. A voxel size that they lack is the
/// image's. Exists for the types of KEP_DISPLAY_TYPES.
/// @throws Failure, also if the labels differ from the image in position or size, and if the user cancels
template <typename T>
std::unique_ptr<Labels> ReadLabels(const Options& options, const mor::Image4d<T>& image);

/// A sequence and which cell each voxel belongs to.
struct LabeledCells {
    std::unique_ptr<mor::Image4d<unsigned short>> image;
    std::unique_ptr<Labels> labels;
};

/// The cells that are shown when there are no files.
LabeledCells OpenSyntheticCells();

/// The wave that is shown instead when a complex image is asked for.
std::unique_ptr<mor::Image4d<std::complex<float>>> OpenVortex();

} // namespace zelviewer
