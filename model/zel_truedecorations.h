#pragma once

#include "model/zel_axislook.h"
#include "model/zel_export.h"
#include "model/zel_geometry.h"

#include <string>

namespace zel {

// Decorations that show what is there. Those of zel_decorations.h follow rules of old, which hosts may rely on: the
// scale bar knows zoom but not the picture's scale, and the cut pointer knows no mirrored axes.

/// The number nearest to the wished one among 1, 2 and 5 times all powers of ten, by their ratio.
/// @param wished  finite and above 0
ZEL_EXPORT float RoundLength(float wished);

/// A scale bar at the scale of the picture.
struct TrueScaleBar {
    float length = 0; ///< microns, or pixels of an image whose voxel size is not known
    Size legs;        ///< the same in the picture, pixels along the window's horizontal and vertical axis
};

/// A bar at the scale that the picture has. Its length is the user's, if that is another than the 1 micron of every
/// viewer at first; otherwise a round one that takes about a sixth of the window's width.
/// @param horizontal, vertical  pixels per micron along the window's axes, above 0
/// @param width                 of the window, pixels
/// @param chosen                microns; counts if it is above 0 and finite
ZEL_EXPORT TrueScaleBar MakeTrueScaleBar(float horizontal, float vertical, int width, float chosen = 1.0F);

/// As ScaleBarText: "50 µm: ", or "50 pixels: " where microns are not known, in UTF-8.
ZEL_EXPORT std::string TrueScaleBarText(float length, bool inMicrons);

/// The pixel of a window's axis at which the cut is seen, mirrored or not.
/// @param axis  as the window shows it
/// @param cut   microns
ZEL_EXPORT int TrueCutPointerPlace(const AxisLook& axis, float cut);

} // namespace zel
