#pragma once

#include "image/kep.h"
#include "image/zel_export.h"

namespace zel {

using Colour = kep::RGB_generic<unsigned char>;

/// Copies a picture of width * height pixels, mirrored as asked.
ZEL_EXPORT void MirrorPicture(const Colour* from, int width, int height, bool horizontally, bool vertically,
                              Colour* to);

/// Exchanges rows and columns: pixel (x, y) of the result, which is `height` wide and `width` high, comes from
/// column y of row x; mirrored as asked in the result. It goes tile by tile, since either side alone jumps through
/// memory.
ZEL_EXPORT void TransposePicture(const Colour* from, int width, int height, bool horizontally, bool vertically,
                                 Colour* to);

} // namespace zel
