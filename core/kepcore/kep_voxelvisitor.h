#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_voxeltypes.h"

#include <cstddef>
#include <functional>

namespace kep {

/// Sees voxels while they are read and still in the processor's caches, so that what is asked of all of them takes no
/// second way through memory. While one lives, frames of type T that are read on its thread as a whole are shown to it,
/// whichever operation reads them: Image3d::ReadImage, FrameReader, sequences of the layers above. Boxes of a file and
/// frames that ColourReader puts together are not; count what was shown.
///
/// Several may live at once; each sees all voxels. Exists for the types of KEP_FRAME_TYPES.
template <typename T>
class KEP_EXPORT VoxelVisitor {
public:
    /// Called on the thread of the visitor, for some megabytes at a time: `number` voxels from `first` on, in their
    /// order. What it throws ends the reading. A frame whose reading fails may have been shown in part.
    using Visit = std::function<void(const T* first, std::size_t number)>;

    explicit VoxelVisitor(Visit visit); ///< sees voxels from here on, on this thread
    ~VoxelVisitor();
    VoxelVisitor(const VoxelVisitor&) = delete;
    VoxelVisitor& operator=(const VoxelVisitor&) = delete;

    /// Whether this thread has one.
    static bool IsThere();
    /// Shows voxels to all visitors of this thread.
    static void Show(const T* first, std::size_t number);

private:
    static VoxelVisitor*& Innermost();

    Visit visit;
    VoxelVisitor* outer; ///< the one that was made before; null: none
};

} // namespace kep
