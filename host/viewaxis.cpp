#include "host/viewaxis.h"

#include "core/kepcore/kep_resolution.h"

#include <algorithm>

namespace zelviewer {

namespace {

double Unmirrored(const ViewAxis& axis, int pixel) {
    return axis.reversed ? axis.pixels - 1 - pixel : pixel;
}

/// The image's voxel nearest to an index.
long long Held(const ViewAxis& axis, long long index) {
    return std::clamp(index, 0LL, static_cast<long long>(axis.voxels) - 1);
}

float MiddleOfVoxel(const ViewAxis& axis, long long index) {
    const double place = (static_cast<double>(index) + 0.5) / static_cast<double>(axis.resolution);
    return static_cast<float>(static_cast<double>(axis.boxOffset) + place);
}

/// Voxels from the image's first one to a position.
double PlaceOf(const ViewAxis& axis, float position) {
    return (static_cast<double>(position) - static_cast<double>(axis.boxOffset)) * static_cast<double>(axis.resolution);
}

} // namespace

float MicronsAt(const ViewAxis& axis, int pixel) {
    return static_cast<float>(Unmirrored(axis, pixel) / static_cast<double>(axis.scale) +
                              static_cast<double>(axis.visibleOffset));
}

float MiddleOfVoxelAt(const ViewAxis& axis, int pixel) {
    // As the picture was made, or a click beside a voxel's edge would hit its neighbour.
    const double pixelInVoxels = static_cast<double>(axis.resolution) / static_cast<double>(axis.scale);
    const double place = PlaceOf(axis, axis.visibleOffset) + Unmirrored(axis, pixel) * pixelInVoxels;
    const double tolerance = kep::VoxelTolerance(axis.visibleOffset, axis.boxOffset, axis.resolution);
    return MiddleOfVoxel(axis, Held(axis, kep::VoxelIndexAt(place, tolerance)));
}

float MiddleOfVoxelBeside(const ViewAxis& axis, float position, int steps) {
    const double tolerance = kep::VoxelTolerance(position, axis.boxOffset, axis.resolution);
    const long long here = Held(axis, kep::VoxelIndexAt(PlaceOf(axis, position), tolerance)); // a face shows the last
    return MiddleOfVoxel(axis, Held(axis, here + steps));
}

float CentreToShowAt(const ViewAxis& axis, float position, int pixel) {
    const double offset = static_cast<double>(position) - Unmirrored(axis, pixel) / static_cast<double>(axis.scale);
    return static_cast<float>(offset + static_cast<double>(axis.visibleSize) / 2.0);
}

int WheelNotches::Turn(int rotation, int delta) {
    if (delta <= 0)
        return 0;
    m_rest += rotation;
    const int notches = m_rest / delta;
    m_rest %= delta;
    return notches;
}

} // namespace zelviewer
