#pragma once

#include "model/zel_export.h"
#include "model/zel_matrix.h"

#include <array>
#include <cstddef>

namespace zel {

/// The plane that cuts a part of the volume away, in the object's coordinates.
struct ClippingPlane {
    std::array<double, 4> equation;  ///< for glClipPlane: what lies where a * x + b * y + c * z + d >= 0 stays
    std::array<Vector3f, 4> corners; ///< of the square that shows it
};

/// The plane lies across the matrix's first column, at `offset` along it, and spans its second and third: its square
/// reaches 0.8 to either side, with corners at (-, -), (-, +), (+, -), (+, +) of these two.
ZEL_EXPORT ClippingPlane MakeClippingPlane(const Matrix4& planeMatrix, double offset);

/// Whether a place, in the object's coordinates, is on the side that stays. Seen from there, the plane is behind the
/// volume; seen from the other side, it is in front.
ZEL_EXPORT bool Keeps(const ClippingPlane& plane, const Vector3f& place);

/// Corners in their order round the square.
inline constexpr std::array<std::size_t, 4> planeQuad{0, 1, 3, 2};
/// Corners of the four lines round the square, two for each.
inline constexpr std::array<std::size_t, 8> planeOutline{0, 1, 1, 3, 3, 2, 2, 0};

/// The twelve edges of the box round the volume, a cube with its corners at +-1: two points for each.
constexpr std::array<Vector3f, 24> MakeBoxLines() {
    std::array<Vector3f, 24> lines;
    std::size_t next = 0;
    for (const float u : {-1.0F, 1.0F})
        for (const float v : {-1.0F, 1.0F}) {
            for (const float x : {-1.0F, 1.0F})
                lines[next++] = {x, u, v};
            for (const float y : {-1.0F, 1.0F})
                lines[next++] = {u, y, v};
            for (const float z : {-1.0F, 1.0F})
                lines[next++] = {u, v, z};
        }
    return lines;
}

} // namespace zel
