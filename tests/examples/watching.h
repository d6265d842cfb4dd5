#pragma once

// Linked with an example, a watcher makes the files that it is called with, looks at the windows that open, and closes
// them once it has seen what should be there. The program then ends by itself.

#include "factory/zel_viewer.h"

#include <vector>

namespace watching {

/// Each watcher's own: writes the files into the working directory, before the program begins.
void MakeFiles();

/// Each watcher's own: called again and again with the viewers that are on the screen, in the order they were made.
/// @return true when all has been seen
bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers);

/// Ends the program as failed.
[[noreturn]] void Fail(const char* what);

/// 128 x 96 x 5 voxels, a micron each, of value 514 x: shown as gray 0, 2, 4 ... from left to right.
mor::Image4d<unsigned short> MakeRamp();
/// Writes a file of one frame.
template <typename Image>
void Save(const Image& image, const char* prefix) {
    image.SaveSequence(prefix, 3, ".tif", 0, 0);
}

/// Presses the left button in a drawing window, at a pixel.
void Press(zel::zel_Viewer3dFrame& viewer, zel::zel_ProjectionType type, const wxPoint& at, bool control = false);

} // namespace watching
