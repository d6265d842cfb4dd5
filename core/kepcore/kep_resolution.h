#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_vector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace kep {

/// Pixels per micron on each axis. (0, 0, 0), the value of a new one, says that the voxel size is not known.
class KEP_EXPORT Resolution {
public:
    constexpr Resolution() = default;
    constexpr Resolution(float x, float y, float z) : res(x, y, z) {} ///< pixels per micron, of any value
    /// Pixels per micron, of any value.
    constexpr explicit Resolution(const Vector3d<float>& pixelsPerMicron) : res(pixelsPerMicron) {}

    /// The stored numbers, as they are in files, comparisons and texts.
    constexpr Vector3d<float> GetRes() const { return res; }

    /// All three components are finite and above 0.
    bool IsDefined() const { return IsGood(res.x) && IsGood(res.y) && IsGood(res.z); }

    /// A resolution that geometry can divide by: each component that is not finite or not above 0 is replaced by the
    /// first good one in the order x, y, z, or by 1 if there is none. A defined resolution stays as it is.
    Resolution GetUsable() const {
        const float good = IsGood(res.x) ? res.x : IsGood(res.y) ? res.y : IsGood(res.z) ? res.z : 1.0F;
        return {IsGood(res.x) ? res.x : good, IsGood(res.y) ? res.y : good, IsGood(res.z) ? res.z : good};
    }

    /// Compares the stored numbers exactly.
    friend constexpr bool operator==(const Resolution& a, const Resolution& b) = default;

private:
    static bool IsGood(float component) { return std::isfinite(component) && component > 0.0F; }

    Vector3d<float> res;
};

/// Size of a number of pixels in microns: each component divided by that of the usable resolution. T is int or
/// std::size_t. Containers and frames add this to an offset in float and must get the same bits, so both use it.
template <typename T>
inline Vector3d<float> PixelsToMicrons(const Vector3d<T>& pixels, const Resolution& resolution) {
    const Vector3d<float> res = resolution.GetUsable().GetRes();
    return {static_cast<float>(pixels.x) / res.x, static_cast<float>(pixels.y) / res.y,
            static_cast<float>(pixels.z) / res.z};
}

/// How far, in voxels, a position counts as still on the next voxel's lower face. Offsets in microns are floats, and
/// voxel faces therefore come out a few roundings beside their place: without this, one pixel in five shows its
/// neighbour's voxel at 1:1.
/// @param a, b        the two offsets in microns whose difference was taken
/// @param resolution  pixels per micron of the voxels
inline double VoxelTolerance(float a, float b, float resolution) {
    const double largest = std::max(std::fabs(static_cast<double>(a)), std::fabs(static_cast<double>(b)));
    const double unit = largest * static_cast<double>(std::numeric_limits<float>::epsilon());
    return 1.0 / 128.0 + 2.0 * unit * static_cast<double>(resolution);
}

/// Index of the voxel that holds a place, given in voxels from the frame's first one. Not held to the frame: the
/// result is below 0 or beyond the size for places outside, at most the limits of int; NaN gives -1.
inline int VoxelIndexAt(double place, double tolerance) {
    const double index = std::floor(place + tolerance);
    if (std::isnan(index))
        return -1;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(index, low, high));
}

/// Index of the voxel that a picture shows. Where the picture has a single place on the axis, a place on the far face
/// of the last voxel shows that voxel: the cut may lie there.
/// @param place      in voxels from the frame's first one
/// @param tolerance  of VoxelTolerance
/// @param extent     voxels of the frame on the axis
/// @param places     of the picture on the axis
inline int VoxelIndexShownAt(double place, double tolerance, std::size_t extent, std::size_t places) {
    const int index = VoxelIndexAt(place, tolerance);
    const bool onFarFace =
        index >= 0 && static_cast<std::size_t>(index) == extent && place <= static_cast<double>(extent) + tolerance;
    return places == 1 && onFarFace ? index - 1 : index;
}

/// The voxel at a position. Resampling chooses voxels by the same rule, so a window never shows the value of one
/// voxel under the number of another.
/// @param position    microns
/// @param offset      microns, position of the frame's first voxel
/// @param resolution  pixels per micron of the frame; its usable form counts
/// @return the voxel's numbers, which lie outside the frame for positions outside
inline Vector3d<int> MicronsToVoxel(const Vector3d<float>& position, const Vector3d<float>& offset,
                                    const Resolution& resolution) {
    const Vector3d<float> res = resolution.GetUsable().GetRes();
    const auto along = [](float at, float from, float r) {
        const double place = (static_cast<double>(at) - static_cast<double>(from)) * static_cast<double>(r);
        return VoxelIndexAt(place, VoxelTolerance(at, from, r));
    };
    return {along(position.x, offset.x, res.x), along(position.y, offset.y, res.y), along(position.z, offset.z, res.z)};
}

} // namespace kep
