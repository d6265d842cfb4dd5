#pragma once

#include "model/zel_export.h"

namespace zel {

class zel_Viewer3dCanvas;

/// Gives the mouse its use in a canvas, for as long as the canvas lives: a click sets the cut and a drag with the left
/// button takes it along, the wheel steps it along the window's third axis, Shift and the wheel steps in time, Ctrl and
/// the wheel zooms at the pointer, the middle button pans, a double click centres.
///
/// Without it a canvas leaves the mouse to its host, which binds zel_EVT_MOUSE3D. A host that wants both binds its own
/// handler afterwards and skips the events that it leaves to this one. To be called once.
ZEL_EXPORT void UseMouse(zel_Viewer3dCanvas& canvas);

} // namespace zel
