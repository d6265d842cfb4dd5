#pragma once

#include "host/labels.h"
#include "viewer/zel_frame.h"

namespace zelviewer {

/// Tells in the frame's status bar, field 0, where the pointer is and what is there; without a pointer over the image,
/// the same of the cut. Exists for the types of KEP_DISPLAY_TYPES.
/// @param frame   with a canvas of this type
/// @param labels  of the image, with its size; null for none; live as long as the frame
template <typename T>
void AddStatusLine(zel::zel_Viewer3dFrame& frame, const Labels* labels);

} // namespace zelviewer
