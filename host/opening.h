#pragma once

#include "host/displaytype.h"
#include "host/options.h"
#include "image/zel_image4d.h"
#include "image/zel_labeledimage4d.h"

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

/// Labels of any whole numbers up to 65535.
using Labels = mor::LabeledImage4d<unsigned short, unsigned short>;

/// Reads the label files as one sequence, as stored or as connected components. A voxel size that they lack is the
/// image's. Exists for the types of KEP_DISPLAY_TYPES.
/// @throws Failure, also if the labels differ from the image in position or size, and if the user cancels
template <typename T>
std::unique_ptr<Labels> ReadLabels(const Options& options, const mor::Image4d<T>& image);

/// The cells that are shown when there are no files.
std::unique_ptr<mor::Image4d<unsigned short>> OpenSyntheticCells();

/// The wave that is shown instead when a complex image is asked for.
std::unique_ptr<mor::Image4d<std::complex<float>>> OpenVortex();

} // namespace zelviewer
