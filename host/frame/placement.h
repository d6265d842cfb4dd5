#pragma once

#include "viewer/zel_frame.h"

#include <optional>

namespace zelviewer {

/// The state of a window that is kept from run to run.
struct WindowPlace {
    wxRect rect; ///< on the screen, with what the window manager puts around the window
    bool isMaximized = false;

    bool operator==(const WindowPlace&) const = default;
};

/// Shows a viewer's frame for the first time, at once with its final size and place.
/// @param remembered  of an earlier run: used if it lies on a display as a whole, and the picture then fills it;
///                    otherwise the window is as large as its picture and stands in the middle of the display. Other
///                    viewers at the same place are not covered whole.
void ShowInPlace(zel::zel_Viewer3dFrame& frame, const std::optional<WindowPlace>& remembered);

} // namespace zelviewer
