#pragma once

#include "image/kep.h"
#include "model/zel_export.h"

#include <wx/string.h>

#include <complex>

namespace zel {

/// A voxel as the user reads it: an integer plainly, a float in up to 6 digits, a colour as red, green and blue in
/// three columns. For gray and colour voxels.
template <typename T>
wxString VoxelToStr(const T& voxel);

/// A complex voxel on two lines: its parts, and below them what the display leaves out.
/// @param voxel  its parts are written as floats are
/// @param mode   how complex voxels are shown: 2 amplitudes, so the phase is added; 3 phases, so the amplitude is; for
///               all others the second line is blank
template <typename T>
wxString VoxelToStr(const std::complex<T>& voxel, int mode);

#define ZEL_DECLARE(T) extern template ZEL_EXPORT wxString VoxelToStr(const T& voxel);
KEP_GRAY_TYPES(ZEL_DECLARE)
KEP_COLOUR_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE
#define ZEL_DECLARE(T) extern template ZEL_EXPORT wxString VoxelToStr(const std::complex<T>& voxel, int mode);
ZEL_DECLARE(float)
ZEL_DECLARE(double)
#undef ZEL_DECLARE

} // namespace zel
