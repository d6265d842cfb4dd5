#pragma once

#include "histogram/zel_histogramset.h"
#include "host/displaytype.h"
#include "host/labels.h"
#include "host/message.h"
#include "host/openingplan.h"
#include "host/options.h"
#include "host/readingprogress.h"
#include "image/zel_image4d.h"

#include <complex>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zelviewer {

/// What must be asked before a file can be opened.
struct ChannelQuestion {
    std::string file;
    std::vector<std::string> channels; ///< their names
    std::size_t most = 1;              ///< how many may be chosen: 1, or 3 that become colours
};

/// Where nobody is there to answer.
/// @throws Failure that tells how the command line answers
[[noreturn]] void Refuse(const ChannelQuestion& question);

/// What the files on the command line will become.
struct OpeningPlan {
    DisplayType type = DisplayType::Gray16;
    std::uint64_t bytes = 0;                 ///< of all voxels in memory
    std::vector<ShownFile> files;            ///< one for each
    std::size_t frames = 0;                  ///< of all files together
    std::optional<ChannelQuestion> question; ///< which channels? Nothing is read before there is an answer
};

/// Reads the headers of all files, so that a missing one is found before the others are read.
/// @throws Failure
OpeningPlan PlanOpening(const Options& options);

/// The user has cancelled.
class Cancelled : public Failure {
public:
    using Failure::Failure;
};

/// A sequence from files.
template <typename T>
struct ReadSequence {
    std::unique_ptr<mor::Image4d<T>> image;
    std::optional<zel::HistogramSet<T>> histograms; ///< of the whole image, if it was counted while it was read
};

/// Reads the files as one sequence: their time points one behind the other, and of each the channels of the plan.
/// Exists for the types of KEP_DISPLAY_TYPES.
/// @param plan  with no question open
/// @throws Failure; Cancelled
template <typename T>
ReadSequence<T> ReadFiles(const Options& options, const OpeningPlan& plan, ReadingProgress& progress);

/// The same with a progress of its own.
template <typename T>
ReadSequence<T> ReadFiles(const Options& options, const OpeningPlan& plan);

/// Reads the label files as one sequence, as stored or as connected components. A voxel size that they lack is the
/// image's. Exists for the types of KEP_DISPLAY_TYPES.
/// @throws Failure, also if the labels differ from the image in position, size or number; Cancelled
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
