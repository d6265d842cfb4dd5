#pragma once

// Where the surfaces of labels stand in the volume view, and in which colours.

#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_vector.h"
#include "model/zel_export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel {

/// The longest side, in voxels, of a frame whose surfaces can be shown.
inline constexpr std::size_t isosurfaceSideLimit = 32766;

/// No side is longer than the limit.
constexpr bool FitsIsosurface(const kep::Vector3d<std::size_t>& size) {
    return size.x <= isosurfaceSideLimit && size.y <= isosurfaceSideLimit && size.z <= isosurfaceSideLimit;
}

/// Distance of neighbouring voxels in the space of the volume view, where the longest side of the image goes from -1
/// to 1.
/// @param size        of the image, voxels; no side is 0
/// @param resolution  of the labels; its usable form counts
/// @throws kep::InternalException if FitsIsosurface is false
ZEL_EXPORT kep::Vector3d<float> ComputeIsosurfaceCells(const kep::Vector3d<std::size_t>& size,
                                                       const kep::Resolution& resolution);

/// Moves the surfaces, which begin at the origin, to the centre of the volume.
/// @param size  voxels
/// @param cell  as ComputeIsosurfaceCells gives it
ZEL_EXPORT kep::Vector3d<float> ComputeIsosurfaceTranslation(const kep::Vector3d<std::size_t>& size,
                                                             const kep::Vector3d<float>& cell);

/// Red, green, blue and alpha from 0 to 1.
using SurfaceColour = std::array<float, 4>;

/// The colour of a surface, if there are no colours and no surface before it.
inline constexpr SurfaceColour firstSurfaceColour{1.0F, 1.0F, 1.0F, 1.0F};

/// The colour of a label's surface, opaque: labels take the colours in turn.
/// @param label    from 1 on
/// @param colours  that labels take in turn
/// @param before   colour of the surface before this one, which stands where there are no colours
ZEL_EXPORT SurfaceColour SurfaceColourOf(std::uint64_t label,
                                         const std::vector<kep::RGB_generic<unsigned char>>& colours,
                                         const SurfaceColour& before);

} // namespace zel
