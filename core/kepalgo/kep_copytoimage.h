#pragma once

#include "core/kepcore/kep_image3d.h"

namespace kep {

/// Fills dst, whose size, offset and resolution the caller has set, with what src shows at that place: resampling by
/// nearest voxel. Per axis, the position of dst's voxel i is dst.offset + i / dst.resolution, its lower corner, and
/// the voxel of src that holds this position (the rule of MicronsToVoxel) gives the value. Places outside src give
/// T(). On an axis where dst has one voxel, a place on the far face of src takes the last voxel, since a cut may lie
/// on that face. Both resolutions count in their usable form.
///
/// dst must have its voxels (MakeRoom) and be another object than src. Costs about a copy of dst.
/// @throws std::bad_alloc before any voxel is written
template <typename T>
void CopyToImage(const Image3d<T>& src, Image3d<T>& dst);

#define KEP_DECLARE(T) extern template KEP_EXPORT void CopyToImage<T>(const Image3d<T>&, Image3d<T>&);
KEP_DISPLAY_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
