#pragma once

#include "model/zel_export.h"

#include <wx/gdicmn.h>

namespace zel {

class zel_Viewer3dCanvas;

/// Shows the image in the proportions that its voxels have (ChooseScale); a canvas opens with one pixel a voxel. Zoom
/// and cut stay.
/// @return false if they differ more than a hundredfold: then it is one pixel a voxel
ZEL_EXPORT bool ShowInTrueProportions(zel_Viewer3dCanvas& canvas);

/// Scales the picture so that its three windows fill a room, in the proportions that they have. Zoom is normal then,
/// and the cut stays. Without an image it does nothing.
/// @param canvas  with its image
/// @param room    pixels
ZEL_EXPORT void FillRoom(zel_Viewer3dCanvas& canvas, const wxSize& room);

} // namespace zel
