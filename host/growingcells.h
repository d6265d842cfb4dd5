#pragma once

#include "host/imageframe.h"

namespace zelviewer {

/// Makes the window of the synthetic cells with their first frame, and paints the others while it stands: until they
/// are there, those are dark. Histograms and levels are those of the first frame until they all are.
/// @return the window, not shown, which has all that it needs
zel::zel_Viewer3dFrame* MakeGrowingCells(const FirstLook& look);

} // namespace zelviewer
