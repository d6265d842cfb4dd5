#pragma once

#include "core/kepcore/kep_image3d.h"

namespace kep {

/// @{
/// Maximum intensity projections of src along the axis that the name leaves out. dst, another object than src, gets
/// one voxel on that axis, src's resolution, and src's offset with 0 on that axis. Colours are compared by component.
/// A NaN loses against any number; a line of NaNs alone gives NaN. An empty src empties dst. One pass over src.
/// @throws std::bad_alloc
template <typename T>
void Get_AF_XY(const Image3d<T>& src, Image3d<T>& dst);
template <typename T>
void Get_AF_XZ(const Image3d<T>& src, Image3d<T>& dst);
template <typename T>
void Get_AF_YZ(const Image3d<T>& src, Image3d<T>& dst);
/// @}

#define KEP_DECLARE(T)                                                                                                 \
    extern template KEP_EXPORT void Get_AF_XY<T>(const Image3d<T>&, Image3d<T>&);                                      \
    extern template KEP_EXPORT void Get_AF_XZ<T>(const Image3d<T>&, Image3d<T>&);                                      \
    extern template KEP_EXPORT void Get_AF_YZ<T>(const Image3d<T>&, Image3d<T>&);
KEP_GRAY_TYPES(KEP_DECLARE)
KEP_COLOUR_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
