#pragma once

#include "host/frame/hostmenus.h"

namespace zelviewer {

/// Inserts the menu File as the frame's first, and takes files and folders that are dropped on its picture. The
/// library's commands that save are in it as well, and what was opened before, as far as the actions tell.
void AddFileMenu(zel::zel_Viewer3dFrame& frame, const HostActions& actions);

} // namespace zelviewer
