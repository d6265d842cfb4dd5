#include "model/zel_axislook.h"

#include "core/kepcore/kep_resolution.h"

#include <algorithm>

namespace zel {

namespace {

double Unmirrored(const AxisLook& axis, int pixel) {
    return axis.reversed ? axis.pixels - 1 - pixel : pixel;
}

/// The image's voxel nearest to an index; the first one of an image without voxels.
long long Held(const AxisLook& axis, long long index) {
    return std::clamp(index, 0LL, std::max(static_cast<long long>(axis.voxels) - 1, 0LL));
}

float MiddleOfVoxel(const AxisLook& axis, long long index) {
    const double place = (static_cast<double>(index) + 0.5) / static_cast<double>(axis.resolution);
    return static_cast<float>(static_cast<double>(axis.boxOffset) + place);
}

/// Voxels from the image's first one to a position.
double PlaceOf(const AxisLook& axis, float position) {
    return (static_cast<double>(position) - static_cast<double>(axis.boxOffset)) * static_cast<double>(axis.resolution);
}

/// As the picture was made, or a click beside a voxel's edge would hit its neighbour.
long long IndexAt(const AxisLook& axis, int pixel) {
    const double pixelInVoxels = static_cast<double>(axis.resolution) / static_cast<double>(axis.scale);
    const double place = PlaceOf(axis, axis.visibleOffset) + Unmirrored(axis, pixel) * pixelInVoxels;
    const double tolerance = kep::VoxelTolerance(axis.visibleOffset, axis.boxOffset, axis.resolution);
    return kep::VoxelIndexShownAt(place, tolerance, axis.voxels, static_cast<std::size_t>(axis.pixels));
}

} // namespace

AxisLook LookAlong(const View& view, const ImageGeometry& image, Axis axis, int pixels) {
    AxisLook look;
    look.voxels = At(image.voxels, axis);
    look.boxOffset = At(image.offset, axis);
    const kep::Vector3d<float> resolution = image.resolution.GetUsable().GetRes();
    look.resolution = At(resolution, axis);
    look.visibleOffset = At(view.visibleBox.offset, axis);
    look.visibleSize = At(view.visibleBox.size, axis);
    look.scale = At(view.scale, axis);
    look.pixels = pixels;
    look.reversed = view.options.Reversed(axis);
    return look;
}

AxisLook LookThrough(const View& view, const ImageGeometry& image, const Plane& plane) {
    AxisLook look = LookAlong(view, image, plane.third, 1);
    look.visibleOffset = At(view.options.cut, plane.third);
    look.visibleSize = At(view.cutStep, plane.third);
    look.reversed = false;
    return look;
}

float MicronsAt(const AxisLook& axis, int pixel) {
    return static_cast<float>(Unmirrored(axis, pixel) / static_cast<double>(axis.scale) +
                              static_cast<double>(axis.visibleOffset));
}

std::optional<std::size_t> VoxelAt(const AxisLook& axis, int pixel) {
    const long long index = IndexAt(axis, pixel);
    if (index < 0 || index >= static_cast<long long>(axis.voxels))
        return std::nullopt;
    return static_cast<std::size_t>(index);
}

float MiddleOfVoxelAt(const AxisLook& axis, int pixel) {
    return MiddleOfVoxel(axis, Held(axis, IndexAt(axis, pixel)));
}

float MiddleOfVoxelBeside(const AxisLook& axis, float position, int steps) {
    const double tolerance = kep::VoxelTolerance(position, axis.boxOffset, axis.resolution);
    const long long here = Held(axis, kep::VoxelIndexAt(PlaceOf(axis, position), tolerance)); // a face shows the last
    return MiddleOfVoxel(axis, Held(axis, here + steps));
}

float CentreToShowAt(const AxisLook& axis, float position, int pixel) {
    const double offset = static_cast<double>(position) - Unmirrored(axis, pixel) / static_cast<double>(axis.scale);
    return static_cast<float>(offset + static_cast<double>(axis.visibleSize) / 2.0);
}

} // namespace zel
