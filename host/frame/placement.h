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
/// @param remembered  of an earlier run: used if it lies on a display as a whole, and the picture then fills the
/// window;
///                    otherwise the window is as large as its picture and stands in the middle of the display. Other
///                    viewers at the same place are not covered whole.
void ShowInPlace(zel::zel_Viewer3dFrame& frame, const std::optional<WindowPlace>& remembered);

/// Tells the system the size of a window that it has not made yet. Without this the toolkit has it made with 2 by 1
/// pixels, to ask the window manager what it will put around it; it appears and is laid out in this size first, and
/// GTK complains of widgets without room.
void PrepareFirstShow(wxTopLevelWindow& window);

} // namespace zelviewer
