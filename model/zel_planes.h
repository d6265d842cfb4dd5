#pragma once

#include "core/kepcore/kep_vector.h"
#include "model/zel_projection.h"

#include <array>
#include <cstddef>

namespace zel {

/// The axes of an image.
enum class Axis : int { X, Y, Z };

/// All three, for loops.
inline constexpr std::array<Axis, 3> axes{Axis::X, Axis::Y, Axis::Z};

/// The component of a vector along an axis.
template <typename T>
constexpr T& At(kep::Vector3d<T>& vector, Axis axis) {
    return axis == Axis::X ? vector.x : axis == Axis::Y ? vector.y : vector.z;
}
/// The same, to read.
template <typename T>
constexpr const T& At(const kep::Vector3d<T>& vector, Axis axis) {
    return axis == Axis::X ? vector.x : axis == Axis::Y ? vector.y : vector.z;
}

/// One of the three planes in which an image is cut: which axis runs where. Everything that depends on the axes of a
/// drawing window asks its plane.
struct Plane {
    zel_ProjectionType type; ///< zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    Axis horizontal;         ///< runs to the right
    Axis vertical;           ///< runs downwards
    Axis third;              ///< runs through the plane
    /// The voxels lie in memory with the vertical axis along the rows: a picture is made turned, and transposed for the
    /// screen.
    bool isTurned;

    friend constexpr bool operator==(const Plane&, const Plane&) = default; ///< of all fields
};

/// XY, XZ and YZ, in the order in which they are made and looked at everywhere.
inline constexpr std::array<Plane, 3> planes{{
    {zel_PT_XY, Axis::X, Axis::Y, Axis::Z, false},
    {zel_PT_XZ, Axis::X, Axis::Z, Axis::Y, false},
    {zel_PT_YZ, Axis::Z, Axis::Y, Axis::X, true},
}};

/// Place of a plane in `planes`.
/// @param type  zel_PT_XY, zel_PT_XZ or zel_PT_YZ
constexpr std::size_t IndexOf(zel_ProjectionType type) {
    return type == zel_PT_XY ? 0 : type == zel_PT_XZ ? 1 : 2;
}

/// The plane of zel_PT_XY, zel_PT_XZ or zel_PT_YZ; null for any other value.
constexpr const Plane* FindPlane(zel_ProjectionType type) {
    for (const Plane& plane : planes)
        if (plane.type == type)
            return &plane;
    return nullptr;
}

/// The planes in which an axis runs, as a mask.
constexpr zel_ProjectionType PlanesAlong(Axis axis) {
    int mask = 0;
    for (const Plane& plane : planes)
        if (plane.third != axis)
            mask |= plane.type;
    return static_cast<zel_ProjectionType>(mask);
}

/// The two other planes, in which this one shows as a line, as a mask.
constexpr zel_ProjectionType PlanesBeside(const Plane& plane) {
    return static_cast<zel_ProjectionType>(zel_PT_ALL & ~plane.type);
}

/// From (horizontal, vertical, third) to (x, y, z).
template <typename T>
constexpr kep::Vector3d<T> ToImage(const Plane& plane, const kep::Vector3d<T>& point) {
    kep::Vector3d<T> image = point;
    At(image, plane.horizontal) = point.x;
    At(image, plane.vertical) = point.y;
    At(image, plane.third) = point.z;
    return image;
}

/// One value for each plane.
template <typename T>
struct PerPlane {
    std::array<T, planes.size()> values{}; ///< in the order of `planes`

    /// @param type  zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    constexpr T& operator[](zel_ProjectionType type) { return values[IndexOf(type)]; }
    constexpr const T& operator[](zel_ProjectionType type) const { return values[IndexOf(type)]; } ///< to read
    /// @{
    /// The values in the order of `planes`.
    constexpr auto begin() { return values.begin(); }
    constexpr auto begin() const { return values.begin(); }
    constexpr auto end() { return values.end(); }
    constexpr auto end() const { return values.end(); }
    /// @}
};

} // namespace zel
