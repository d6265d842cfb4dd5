#pragma once

#include "model/zel_export.h"

namespace zel {

class zel_Viewer3dFrame;

/// Has the title of a frame name the image, its size and the zoom in a few words (DescribeTitle), and follow them. The
/// canvas sets a longer title of its own when another time point is shown; it is replaced when the toolkit is idle.
/// To be called once.
ZEL_EXPORT void AddTitle(zel_Viewer3dFrame& frame);

} // namespace zel
