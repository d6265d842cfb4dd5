#pragma once

// Private to the library: fresh memory for voxels.

#include <cstddef>
#include <valarray>

namespace kep::detail {

/// A block of voxels that the caller fills before anyone looks: what it holds is undefined.
///
/// The constructor of std::valarray writes zeros, which for a large block costs several times the reading of a file:
/// it takes the memory from the system page by page. This block comes in huge pages where the system has them.
/// @throws std::bad_alloc
template <typename T>
std::valarray<T> MakeUnsetBlock(std::size_t voxels);

/// The same with zeros in it.
template <typename T>
std::valarray<T> MakeZeroBlock(std::size_t voxels);

} // namespace kep::detail
