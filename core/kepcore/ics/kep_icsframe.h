#pragma once

// Private to the library: the voxels of an ICS file slice by slice, in whichever order its axes run.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsdata.h"
#include "core/kepcore/ics/kep_icslayout.h"

#include <cstddef>
#include <memory>

namespace kep::detail {

/// Copies one slice so that x is fastest and the components of a voxel lie together.
/// @param from  the slice's first sample
void GatherSlice(const std::byte* from, const IcsStrides& strides, const FrameHeader& frame, std::byte* to);

/// @param header   complete
/// @param strides  of the samples in the data
std::unique_ptr<FrameSource> MakeIcsFrame(FrameHeader&& header, const IcsStrides& strides, const IcsByteOrder& order,
                                          std::unique_ptr<IcsData> data);

} // namespace kep::detail
