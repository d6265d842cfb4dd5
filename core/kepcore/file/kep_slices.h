#pragma once

// Private to the library: a frame's slices one by one, as they are stored.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_watchstate.h"

#include <cstddef>
#include <memory>

namespace kep::detail {

/// Calls use(z, slice) for each slice, in order. The watch of this thread is told when `use` is done with one.
/// @throws IOException damaged file; ReadingStopped
template <typename Use>
void ForEachSlice(FrameSource& source, const Use& use) {
    const FrameHeader& header = source.GetHeader();
    const auto slice = std::make_unique<std::byte[]>(header.GetSliceBytes());
    for (std::size_t z = 0; z < header.size.z; ++z) {
        source.ReadSlices(1, slice.get());
        use(z, slice.get());
        if (const auto& watch = WatchOfThread())
            watch->AddSlices(1);
    }
}

} // namespace kep::detail
