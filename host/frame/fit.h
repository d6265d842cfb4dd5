#pragma once

#include "viewer/zel_viewer3dcanvas.h"

namespace zelviewer {

/// Scales the picture so that its three windows fill a room, in the proportions that they have. Zoom is normal then,
/// and the cut stays.
/// @param room  pixels
void FillRoom(zel::zel_Viewer3dCanvas& canvas, const wxSize& room);

} // namespace zelviewer
