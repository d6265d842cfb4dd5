#pragma once

#include "viewer/zel_frame.h"

#include <wx/slider.h>
#include <wx/stattext.h>

namespace zelviewer {

/// A bar below the picture with a slider for the slice of the XY window and, for sequences, one for the time; none for
/// a flat image. It is a tool bar, which the toolkit keeps out of the area that the picture has to itself.
///
/// It belongs to the frame and goes with it.
void AddPositionBar(zel::zel_Viewer3dFrame& frame);

} // namespace zelviewer
