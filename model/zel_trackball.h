#pragma once

#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_matrix.h"

namespace zel {

/// Where a pointer touches a ball that fills the window: a unit vector, x to the right, y upwards, z to the viewer.
/// Beyond the ball, in the window's corners and outside, it is on the ball's rim.
/// @param pointer  pixels from the top left corner
/// @param window   pixels; a window without a width or height gives (0, 0, 1)
ZEL_EXPORT Vector3f ProjectToSphere(const Point& pointer, const Size& window);

/// The turn for a drag from one place on the ball to another: 90 degrees for each unit of the straight way between
/// them, about the axis at right angles to both.
ZEL_EXPORT Rotation RotationBetween(const Vector3f& from, const Vector3f& to);

} // namespace zel
