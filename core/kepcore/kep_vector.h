#pragma once

#include "core/kepcore/kep_export.h"

#include <algorithm>
#include <cstddef>

namespace kep {

/// Three components of a position, size or scale. Used with float (microns, pixels per micron), int and
/// std::size_t (voxels). A new one is (0, 0, 0).
template <typename T>
struct KEP_EXPORT Vector3d {
    T x{}; ///< along a row
    T y{}; ///< from row to row
    T z{}; ///< from slice to slice

    constexpr Vector3d() = default;
    constexpr Vector3d(T ax, T ay, T az) : x(ax), y(ay), z(az) {} ///< in the order of the axes

    /// @{
    /// By component.
    constexpr Vector3d& operator+=(const Vector3d& other) {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }
    constexpr Vector3d& operator-=(const Vector3d& other) {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }
    /// @}
    /// By component.
    constexpr Vector3d& operator*=(const Vector3d& other) {
        x *= other.x;
        y *= other.y;
        z *= other.z;
        return *this;
    }
    /// Exact comparison; a NaN equals nothing.
    friend constexpr bool operator==(const Vector3d& a, const Vector3d& b) = default;
};

/// Carries the types of offset and size into a VOI.
template <typename A, typename B>
struct KEP_EXPORT T_pair {};

template <typename Pair>
struct VOI;

/// A box: the volume of interest. T_pair<int, size_t> is a part of a frame in voxels, T_pair<float, float> a part of
/// space in microns, T_pair<size_t, size_t> the bounding box of a component in voxels.
template <typename A, typename B>
struct KEP_EXPORT VOI<T_pair<A, B>> {
    Vector3d<A> offset; ///< corner with the lowest coordinates
    Vector3d<B> size;   ///< extent from there

    constexpr VOI() = default;
    /// A box with this corner and this size.
    constexpr VOI(const Vector3d<A>& origin, const Vector3d<B>& extent) : offset(origin), size(extent) {}
    constexpr VOI(A x, A y, A z, B sx, B sy, B sz) : offset(x, y, z), size(sx, sy, sz) {} ///< offset, then size

    /// A box with a size of 0 on any axis holds nothing.
    constexpr bool IsEmpty() const { return size.x == B{} || size.y == B{} || size.z == B{}; }

    /// Grows this box to the smallest one that holds both. A box that holds nothing leaves the other as it is.
    constexpr VOI& operator+=(const VOI& other) {
        if (other.IsEmpty())
            return *this;
        if (IsEmpty())
            return *this = other;
        Unite(offset.x, size.x, other.offset.x, other.size.x);
        Unite(offset.y, size.y, other.offset.y, other.size.y);
        Unite(offset.z, size.z, other.offset.z, other.size.z);
        return *this;
    }
    friend constexpr bool operator==(const VOI& a, const VOI& b) = default; ///< of offset and size, exactly

private:
    static constexpr void Unite(A& from, B& extent, A otherFrom, B otherExtent) {
        const A low = std::min(from, otherFrom);
        const A high = std::max(static_cast<A>(from + static_cast<A>(extent)),
                                static_cast<A>(otherFrom + static_cast<A>(otherExtent)));
        from = low;
        extent = static_cast<B>(high - low);
    }
};

} // namespace kep
