#pragma once

#include "host/settings.h"
#include "viewer/zel_frame.h"

#include <functional>
#include <string>
#include <vector>

namespace zelviewer {

/// What the menus of the program do outside of their own window.
struct HostActions {
    /// Opens files, and all images of folders, in a window of their own; names in the file system's encoding.
    std::function<void(std::vector<std::string> files)> open;
    /// Ends the program.
    std::function<void()> quit;
    /// What was opened before, the last one first.
    std::function<std::vector<OpenedFiles>()> recent = [] { return std::vector<OpenedFiles>(); };
};

/// Gives a viewer what every program has: the menus File, Edit and Help, their keys, and files and folders that are
/// dropped on it.
/// Entries of the library's menus that can do nothing are gray, and the last window of the three stays.
void AddHostMenus(zel::zel_Viewer3dFrame& frame, const HostActions& actions);

} // namespace zelviewer
