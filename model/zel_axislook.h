#pragma once

#include "model/zel_export.h"
#include "model/zel_view.h"

#include <cstddef>
#include <optional>

namespace zel {

/// One axis of the image, as a drawing window shows it.
struct AxisLook {
    std::size_t voxels = 1;     ///< of the image
    float boxOffset = 0.0F;     ///< microns, where the image begins
    float resolution = 1.0F;    ///< voxels per micron
    float visibleOffset = 0.0F; ///< microns, where the window begins
    float visibleSize = 1.0F;   ///< microns
    float scale = 1.0F;         ///< pixels per micron
    int pixels = 1;             ///< of the window
    bool reversed = false;      ///< the window shows it mirrored
};

/// How a view shows an axis of its image.
/// @param view, image  the view of this image
/// @param axis         of the image
/// @param pixels       of the window along this axis
ZEL_EXPORT AxisLook LookAlong(const View& view, const ImageGeometry& image, Axis axis, int pixels);

/// How a view shows the third axis of a plane: one pixel, at the cut.
ZEL_EXPORT AxisLook LookThrough(const View& view, const ImageGeometry& image, const Plane& plane);

/// Where the pixel that is seen at a place of the window begins, microns.
ZEL_EXPORT float MicronsAt(const AxisLook& axis, int pixel);

/// Number of the voxel that is seen at a place of the window, by the rule by which the picture was made; none for
/// places beside the image.
ZEL_EXPORT std::optional<std::size_t> VoxelAt(const AxisLook& axis, int pixel);

/// Middle of the voxel that is seen at a place of the window, microns; the nearest one for places beside the image.
ZEL_EXPORT float MiddleOfVoxelAt(const AxisLook& axis, int pixel);

/// Middle of the voxel that lies `steps` voxels from the one that holds a position, or of the image's first or last.
ZEL_EXPORT float MiddleOfVoxelBeside(const AxisLook& axis, float position, int steps);

/// What must be in the middle of the window so that a position, in microns as of MicronsAt, is seen at a pixel.
ZEL_EXPORT float CentreToShowAt(const AxisLook& axis, float position, int pixel);

} // namespace zel
