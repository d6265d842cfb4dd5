#pragma once

namespace zel {

/// Bit mask of the drawing windows. Masks of two windows (3, 5, 6) are values of the type too.
enum zel_ProjectionType : int {
    zel_PT_XY = 1, ///< X runs to the right, Y downwards
    zel_PT_XZ = 2, ///< X runs to the right, Z downwards
    zel_PT_YZ = 4, ///< Z runs to the right, Y downwards
    zel_PT_ALL = 7
};

/// What a drawing window shows.
enum zel_ProjectionContent : int {
    zel_PC_CUT = 0,      ///< the plane through the cut position
    zel_PC_AUTOFOCUS = 1 ///< the maximum of the whole volume along the window's third axis
};

} // namespace zel
