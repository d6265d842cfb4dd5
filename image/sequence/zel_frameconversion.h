#pragma once

#include "image/kep.h"
#include "model/zel_export.h"

#include <complex>
#include <cstddef>

namespace mor {

/// Fills a frame from a two-valued one, with its size, offset, resolution and description. Voxels that are set become
/// 255 whatever the type, in all components of a colour and in the real part of a complex number; the others T().
template <typename T>
void BinaryFrameToVoxels(const kep::Image3d<bool>& binary, kep::Image3d<T>& frame);

/// @{
/// Whether none of these voxels is infinite or NaN, or has such a part.
ZEL_EXPORT bool AreFinite(const float* first, std::size_t number);
ZEL_EXPORT bool AreFinite(const std::complex<float>* first, std::size_t number);
ZEL_EXPORT bool AreFinite(const std::complex<double>* first, std::size_t number);
/// @}

/// Replaces infinite and NaN voxels by 0; of a complex voxel with one such part, both. If there was any, logs a warning
/// and shows a message box, once, and blocks in it: that needs a running user interface, sound frames don't.
ZEL_EXPORT void ReplaceInvalidFloats(kep::Image3d<float>& frame);
ZEL_EXPORT void ReplaceInvalidFloats(kep::Image3d<std::complex<float>>& frame);
ZEL_EXPORT void ReplaceInvalidFloats(kep::Image3d<std::complex<double>>& frame);

/// The part of ReplaceInvalidFloats that shows nothing.
/// @return whether anything was replaced
ZEL_EXPORT bool ZeroInvalidFloats(kep::Image3d<float>& frame);
ZEL_EXPORT bool ZeroInvalidFloats(kep::Image3d<std::complex<float>>& frame);
ZEL_EXPORT bool ZeroInvalidFloats(kep::Image3d<std::complex<double>>& frame);

#define ZEL_DECLARE(T)                                                                                                 \
    extern template ZEL_EXPORT void BinaryFrameToVoxels<T>(const kep::Image3d<bool>&, kep::Image3d<T>&);
KEP_CONTAINER_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace mor
