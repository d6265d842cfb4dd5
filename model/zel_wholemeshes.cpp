#include "model/zel_wholemeshes.h"

#include "model/zel_volumetexture.h"

#include <algorithm>
#include <limits>

namespace zel {

namespace {

/// Along one axis: voxels of the image and of the labels. Microns.
struct AxisGrids {
    std::size_t size; ///< of the image
    double scale;     ///< from the object to the texture, before it is halved
    float resolution; ///< of the image, and that of the labels
    float labelResolution;
    float offset;
    float labelOffset;
};

struct AxisPlacement {
    double cell;  ///< of the labels
    double first; ///< object coordinate of the middle of the labels' first voxel
};

/// The texture's coordinate goes from 0 to 1 over size + 2 voxels, and by scale / 2 over each unit of the object.
AxisPlacement PlaceAxis(const AxisGrids& axis) {
    const auto size = static_cast<double>(axis.size), resolution = static_cast<double>(axis.resolution);
    const double imageCell = 2.0 / ((size + 2.0) * axis.scale);
    const double cell = imageCell * resolution / static_cast<double>(axis.labelResolution);
    const double voxelsOff = (static_cast<double>(axis.labelOffset) - static_cast<double>(axis.offset)) * resolution;
    return {cell, (voxelsOff - size / 2.0) * imageCell + cell / 2.0};
}

} // namespace

MeshPlacement PlaceMeshes(const VoxelGrid& image, const VoxelGrid& labels) {
    const Vector3f scale = ComputeVolumeScale(image.size, image.resolution);
    const Vector3f r = image.resolution.GetUsable().GetRes(), l = labels.resolution.GetUsable().GetRes();
    const auto d = [](float value) { return static_cast<double>(value); };
    const AxisPlacement x = PlaceAxis({image.size.x, d(scale.x), r.x, l.x, image.offset.x, labels.offset.x});
    const AxisPlacement y = PlaceAxis({image.size.y, d(scale.y), r.y, l.y, image.offset.y, labels.offset.y});
    const AxisPlacement z = PlaceAxis({image.size.z, 2.0 * d(scale.z), r.z, l.z, image.offset.z, labels.offset.z});
    const auto f = [](double value) { return static_cast<float>(value); };
    // A mesh begins at the labels' last row and goes up to the first.
    const double lastRow = y.first + y.cell * static_cast<double>(labels.size.y - 1);
    return {{f(x.cell), f(y.cell), f(z.cell)},
            {1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, f(x.first), f(lastRow), f(z.first), 1}};
}

bool FitsOpenGL(std::uint64_t vertexCount, std::uint64_t triangleCount) {
    constexpr std::uint64_t vertexLimit = std::numeric_limits<std::uint32_t>::max();
    constexpr std::uint64_t bytes = 12; // three floats, or three indices of 32 bits
    constexpr std::uint64_t countLimit = static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()) / bytes;
    return vertexCount <= std::min(vertexLimit, countLimit) && triangleCount <= countLimit;
}

std::vector<TriangleRange> SplitTriangles(std::uint64_t triangleCount, std::uint64_t most) {
    std::vector<TriangleRange> ranges;
    for (std::uint64_t first = 0; first < triangleCount;) {
        ranges.push_back({first, std::min(most, triangleCount - first)});
        first += ranges.back().count;
    }
    return ranges;
}

void NarrowIndices(const std::uint64_t* from, std::size_t count, std::uint32_t* to) {
    std::transform(from, from + count, to, [](std::uint64_t index) { return static_cast<std::uint32_t>(index); });
}

} // namespace zel
