#pragma once

#include "core/kepalgo/kep_lut.h"
#include "core/kepcore/kep_voxeltypes.h"

#include <cstddef>

namespace kep {

/// Makes pixels of voxels: each voxel's level in a table becomes the palette's colour of that level. Best called for
/// whole pictures, as it prepares the palette first.
/// @param levels   from voxels to the palette's entries
/// @param palette  256 entries; null for gray
/// @param voxels   `count` of them
/// @param count    of voxels and pixels
/// @param pixels   room for `count`
/// @throws std::bad_alloc before any pixel is written
template <typename T>
void MapToPixels(const LUT<T, unsigned char>& levels, const LUT<unsigned char, RGB_generic<unsigned char>>* palette,
                 const T* voxels, std::size_t count, RGB_generic<unsigned char>* pixels);

/// Makes pixels of colour voxels: each component's level in the table of its channel. Any of the tables may be the
/// same.
/// @param red, green, blue  levels of the three channels
/// @param voxels            `count` of them
/// @param count             of voxels and pixels
/// @param pixels            room for `count`
template <typename T>
void MapToPixels(const LUT<T, unsigned char>& red, const LUT<T, unsigned char>& green,
                 const LUT<T, unsigned char>& blue, const RGB_generic<T>* voxels, std::size_t count,
                 RGB_generic<unsigned char>* pixels);

#define KEP_DECLARE(T)                                                                                                 \
    extern template KEP_EXPORT void MapToPixels<T>(const LUT<T, unsigned char>&,                                       \
                                                   const LUT<unsigned char, RGB_generic<unsigned char>>*, const T*,    \
                                                   std::size_t, RGB_generic<unsigned char>*);
KEP_GRAY_TYPES(KEP_DECLARE)
#undef KEP_DECLARE
#define KEP_DECLARE(T)                                                                                                 \
    extern template KEP_EXPORT void MapToPixels<T>(const LUT<T, unsigned char>&, const LUT<T, unsigned char>&,         \
                                                   const LUT<T, unsigned char>&, const RGB_generic<T>*, std::size_t,   \
                                                   RGB_generic<unsigned char>*);
KEP_DECLARE(unsigned char)
KEP_DECLARE(unsigned short)
#undef KEP_DECLARE

} // namespace kep
