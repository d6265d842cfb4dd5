#pragma once

#include "image/kep.h"

#include <cstddef>
#include <cstdint>

/// Index arithmetic and tests of position, the same for all sequences of frames. x runs fastest, then y, then z.
namespace mor::detail {

/// Coordinates of a voxel by its index in the frame. Nothing is tested, and z has no modulo: an index past the frame
/// gives a z past the frame. Divides by size.x and size.y.
inline kep::Vector3d<std::size_t> IndexToPosition(const kep::Vector3d<std::size_t>& size, std::size_t i) {
    return {i % size.x, (i / size.x) % size.y, (i / size.x) / size.y};
}

inline kep::Vector3d<int> IndexToCoordinates(const kep::Vector3d<std::size_t>& size, std::size_t i) {
    const kep::Vector3d<std::size_t> p = IndexToPosition(size, i);
    return {static_cast<int>(p.x), static_cast<int>(p.y), static_cast<int>(p.z)};
}

inline std::size_t PositionToIndex(const kep::Vector3d<std::size_t>& size, std::size_t x, std::size_t y,
                                   std::size_t z) {
    return (size.y * z + y) * size.x + x;
}

/// 0 <= at <= extent - 1, with the low 32 bits of the extent.
inline bool IncludesCoordinate(std::size_t extent, int at) {
    return at >= 0 && at <= static_cast<int>(static_cast<std::uint32_t>(extent) - 1U);
}

inline bool IncludesPosition(const kep::Vector3d<std::size_t>& size, int x, int y, int z) {
    return IncludesCoordinate(size.x, x) && IncludesCoordinate(size.y, y) && IncludesCoordinate(size.z, z);
}

/// 0 <= t < sizeT - 1. The last frame is outside on purpose: hosts rely on it.
inline bool IncludesTime(std::size_t sizeT, int t) {
    return t >= 0 && static_cast<long long>(t) < static_cast<long long>(sizeT) - 1;
}

/// The coordinate is the first or last of its axis. An axis of size 1 has no border.
inline bool OnAxisBorder(std::size_t extent, std::size_t at) {
    return extent != 1 && (at == 0 || at == extent - 1);
}

inline bool OnFrameBorder(const kep::Vector3d<std::size_t>& size, std::size_t x, std::size_t y, std::size_t z) {
    return OnAxisBorder(size.x, x) || OnAxisBorder(size.y, y) || OnAxisBorder(size.z, z);
}

/// The first or the last frame; a single frame is both.
inline bool OnSequenceBorder(std::size_t sizeT, std::size_t t) {
    return t == 0 || t + 1 == sizeT;
}

} // namespace mor::detail
