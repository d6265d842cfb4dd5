#pragma once

// Private to the library: how many voxels there are, and which of them a box covers.

#include "core/kepcore/kep_vector.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>

namespace kep::detail {

/// A file that promises more bytes of voxels is refused, whatever its format.
constexpr std::uint64_t mostVoxelBytes = std::uint64_t{1} << 40U;

/// The product, or nothing where 64 bits can't hold it.
std::optional<std::uint64_t> Multiply(std::initializer_list<std::uint64_t> factors);

/// The voxels of a frame, or nothing where a block of so many can't be addressed.
std::optional<std::size_t> CountVoxels(const Vector3d<std::size_t>& size, std::size_t voxelBytes);

/// The part of a frame that a box covers, in voxels.
struct Overlap {
    Vector3d<std::size_t> inFrame; ///< its first voxel in the frame
    Vector3d<std::size_t> inBox;   ///< the same voxel in the box
    Vector3d<std::size_t> size;    ///< (0, 0, 0) if the box lies beside the frame
};

Overlap FindOverlap(const VOI<T_pair<int, std::size_t>>& box, const Vector3d<std::size_t>& frameSize);

} // namespace kep::detail
