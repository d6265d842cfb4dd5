#pragma once

#include "core/kepcore/kep_rgb.h"
#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_planes.h"
#include "model/zel_viewoptions.h"

#include <cstddef>
#include <vector>

namespace zel {

using Colour = kep::RGB_generic<unsigned char>; ///< of a pixel on the screen

/// Columns and rows of a plane's picture as it is made, before it is turned for the screen.
/// @param plane   of the window
/// @param window  size of the window, pixels
constexpr Size RowsOfPicture(const Plane& plane, const Size& window) {
    return plane.isTurned ? Size(window.y, window.x) : window;
}

/// Voxels of the slice under a window's pixels, one for each: XY (w, h, 1), XZ (w, 1, h), YZ (1, h, w).
constexpr kep::Vector3d<std::size_t> VoxelsOfSlice(const Plane& plane, const Size& window) {
    return ToImage<std::size_t>(plane, {static_cast<std::size_t>(window.x), static_cast<std::size_t>(window.y), 1});
}

/// Copies a picture of width * height pixels, mirrored as asked.
ZEL_EXPORT void MirrorPicture(const Colour* from, int width, int height, bool horizontally, bool vertically,
                              Colour* to);

/// Exchanges rows and columns: pixel (x, y) of the result, which is `height` wide and `width` high, comes from
/// column y of row x; mirrored as asked in the result. It goes tile by tile, since either side alone jumps through
/// memory.
ZEL_EXPORT void TransposePicture(const Colour* from, int width, int height, bool horizontally, bool vertically,
                                 Colour* to);

/// A picture as it is seen in a window. Who made it owns the pixels.
struct SeenPicture {
    Colour* pixels; ///< rows from top to bottom, without gaps
    Size size;      ///< columns and rows
};

/// Turns and mirrors a plane's picture as the window shows it.
/// @param plane    of the window
/// @param options  which axes are mirrored
/// @param pixels   the picture as it was made, `rows.y` rows of `rows.x` pixels
/// @param rows     columns and rows of the picture as it was made
/// @param turned   room for the result, used if it differs from the picture; keep it between calls
/// @return in `pixels` or in `turned`
ZEL_EXPORT SeenPicture TurnPicture(const Plane& plane, const ViewOptions& options, Colour* pixels, const Size& rows,
                                   std::vector<Colour>& turned);

} // namespace zel
