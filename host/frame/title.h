#pragma once

#include "viewer/zel_frame.h"

#include "image/kep.h"

#include <string>

namespace zelviewer {

/// "stack.tif - 512 x 512 x 40 - 150%".
/// @param name   in UTF-8
/// @param pixels on the screen for the shortest side of a voxel, above 0
std::string DescribeTitle(const std::string& name, const kep::Vector3d<std::size_t>& voxels, float pixels);

/// Has the title of a viewer name its file, size and zoom, and follow them.
void AddTitle(zel::zel_Viewer3dFrame& frame);

} // namespace zelviewer
