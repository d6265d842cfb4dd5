#pragma once

#include "host/displaytype.h"
#include "host/options.h"
#include "image/zel_image4d.h"

#include <cstdint>
#include <memory>

namespace zelviewer {

/// What the files on the command line will become.
struct OpeningPlan {
    DisplayType type = DisplayType::Gray16;
    std::uint64_t bytes = 0; ///< of all voxels in memory
};

/// Asks all files what they are, so that a missing one is found before the others are read.
/// @throws Failure
OpeningPlan PlanOpening(const Options& options);

/// Reads the files as one sequence. Exists for the types of KEP_DISPLAY_TYPES.
/// @throws Failure, also when the user cancels
template <typename T>
std::unique_ptr<mor::Image4d<T>> ReadFiles(const Options& options, const OpeningPlan& plan);

/// The cells that are shown when there are no files.
std::unique_ptr<mor::Image4d<unsigned short>> OpenSyntheticCells();

} // namespace zelviewer
