#pragma once

#include "viewer/zel_viewer3dcanvas.h"

namespace zelviewer {

/// Asks for a voxel and a frame, counted from 1, and brings the cut and the time there.
void AskWhereToGo(zel::zel_Viewer3dCanvas& canvas);

} // namespace zelviewer
