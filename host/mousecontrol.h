#pragma once

#include "viewer/zel_viewer3dcanvas.h"

namespace zelviewer {

/// Gives the mouse its use in a canvas, for as long as the canvas lives: a click sets the cut, the wheel steps it along
/// the window's third axis, Ctrl and the wheel zooms at the pointer, the middle button pans, a double click centres.
void UseMouse(zel::zel_Viewer3dCanvas& canvas);

} // namespace zelviewer
