#pragma once

// A mapped frame as a 3D texture for the volume view.

#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_vector.h"
#include "model/zel_export.h"

#include <cstddef>
#include <memory>

namespace zel {

/// The greatest side that a texture may have; the driver may take less. It is the number of the enumerant
/// GL_MAX_3D_TEXTURE_SIZE and no size, but has always been the limit.
inline constexpr std::size_t textureSideLimit = 32883;

/// No side is longer than the limit.
constexpr bool FitsTexture(const kep::Vector3d<std::size_t>& size) {
    return size.x <= textureSideLimit && size.y <= textureSideLimit && size.z <= textureSideLimit;
}

/// Voxels of a frame that is mapped as one row of a picture, whose width is an int.
/// @throws std::bad_alloc if there are more than an int can count
ZEL_EXPORT int CountMappedVoxels(const kep::Vector3d<std::size_t>& size);

/// Scale from the space of the volume view, where the longest side of the image goes from -1 to 1, to the texture
/// with its border. z is halved: x and y are halved elsewhere (TextureMatrix).
/// @param size        of the image in voxels, without the border; no side is 0
/// @param resolution  its usable form counts
ZEL_EXPORT kep::Vector3d<float> ComputeVolumeScale(const kep::Vector3d<std::size_t>& size,
                                                   const kep::Resolution& resolution);

/// How opaque a mapped voxel is: 255 * sin(g / 255 * pi / 2), truncated, where its brightness g is
/// 0.587 * green + 0.2989 * red + 0.1141 * blue. So dark voxels are transparent.
ZEL_EXPORT unsigned char VoxelAlpha(const kep::RGB_generic<unsigned char>& colour);

/// Voxels of four bytes, R, G, B, A, without padding; row after row and slice after slice.
struct VolumeTexture {
    kep::Vector3d<std::size_t> size;       ///< voxels, with the border
    std::unique_ptr<unsigned char[]> rgba; ///< of size.x * size.y * size.z voxels
};

/// Makes the texture of a mapped frame: its colours with VoxelAlpha, and on all six sides a border of one voxel that is
/// 0 in all four bytes. One pass.
/// @param pixels  size.x * size.y * size.z of them, x fastest
/// @param size    of the frame, voxels
/// @throws std::bad_alloc
ZEL_EXPORT VolumeTexture MakeVolume(const kep::RGB_generic<unsigned char>* pixels,
                                    const kep::Vector3d<std::size_t>& size);

} // namespace zel
