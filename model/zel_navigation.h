#pragma once

#include "model/zel_export.h"

#include <optional>

namespace zel {

// What the keys of a drawing window do along one axis. All in microns; nothing where there is no way to go.

/// The visible range one step nearer to the lower end of the box.
ZEL_EXPORT std::optional<float> ScrollBack(float visibleOffset, float boxOffset, float step);
/// The visible range one step nearer to the upper end of the box.
ZEL_EXPORT std::optional<float> ScrollForward(float visibleOffset, float visibleSize, float boxOffset, float boxSize,
                                              float step);
/// The cut one step lower. It stays half a step inside the box, so that the plane lies in a layer of voxels.
ZEL_EXPORT std::optional<float> StepCutBack(float cut, float boxOffset, float step);
/// The cut one step higher, half a step inside the box.
ZEL_EXPORT std::optional<float> StepCutForward(float cut, float boxOffset, float boxSize, float step);
/// A place brought into the box, its faces included. NaN, which a scale of 0 gives, becomes the lower face.
ZEL_EXPORT float HoldInBox(float at, float boxOffset, float boxSize);

} // namespace zel
