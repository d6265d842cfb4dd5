#pragma once

// Matrices and directions of the volume view, as OpenGL takes them.

#include "core/kepcore/kep_vector.h"
#include "model/zel_export.h"

#include <array>
#include <cstddef>

namespace zel {

using Vector3f = kep::Vector3d<float>; ///< a direction or a place

/// Four columns of four, one after the other: the element at (row, column) is [row + 4 * column].
using Matrix4 = std::array<float, 16>;

/// Changes nothing.
inline constexpr Matrix4 identityMatrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// The first three elements of a column.
constexpr Vector3f ColumnOf(const Matrix4& matrix, std::size_t column) {
    return {matrix[4 * column], matrix[4 * column + 1], matrix[4 * column + 2]};
}

/// The vector at right angles to both, by the right hand.
constexpr Vector3f Cross(const Vector3f& a, const Vector3f& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// The matrix that does `right` first and then `left`: what glMultMatrixf(right) makes of `left`.
ZEL_EXPORT Matrix4 Multiply(const Matrix4& left, const Matrix4& right);

/// Moves by a vector.
ZEL_EXPORT Matrix4 TranslationMatrix(const Vector3f& by);
/// Scales each axis by a component of a vector.
ZEL_EXPORT Matrix4 ScaleMatrix(const Vector3f& by);

/// A turn about an axis, counterclockwise when the axis points at the viewer.
struct Rotation {
    float angle = 0.0F;              ///< degrees
    Vector3f axis{1.0F, 0.0F, 0.0F}; ///< of any length
};

/// The matrix of glRotatef. An axis without a length, or one that is not finite, turns nothing: a mouse that stands
/// still gives the former.
ZEL_EXPORT Matrix4 RotationMatrix(const Rotation& rotation);

/// Whether right becomes left: the upper left block of 3 x 3 has a determinant below 0.
ZEL_EXPORT bool IsMirroring(const Matrix4& matrix);

/// Undoes the rotation of a matrix: its upper left block of 3 x 3 is transposed, and its translation left out.
ZEL_EXPORT Matrix4 InverseRotation(const Matrix4& matrix);

/// Turns a direction by the upper left block of 3 x 3.
ZEL_EXPORT Vector3f TurnDirection(const Matrix4& matrix, const Vector3f& direction);

/// The rotation that looks along `forward` with `up` upwards on the screen. Both are of length 1 and at right angles:
/// nothing is normalised.
ZEL_EXPORT Matrix4 LookAlongMatrix(const Vector3f& forward, const Vector3f& up);

/// The projection of the volume view, column by column: 40 degrees from bottom to top, from 0.1 to 50 in front of the
/// eye.
/// @param width, height  of the window, pixels, above 0
ZEL_EXPORT std::array<double, 16> PerspectiveMatrix(int width, int height);

/// From places before the eye to texture coordinates: turned back by the object's rotation, scaled, and with the
/// volume's centre at the texture's centre.
/// @param scale            as ComputeVolumeScale gives it: z is halved there, and so isn't halved here
/// @param inverseRotation  of the object
/// @param eyeDistance      z of the volume's centre
ZEL_EXPORT Matrix4 TextureMatrix(const Vector3f& scale, const Matrix4& inverseRotation, float eyeDistance);

} // namespace zel
