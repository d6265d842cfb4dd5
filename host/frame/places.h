#pragma once

#include <wx/gdicmn.h>

#include <optional>
#include <vector>

namespace zelviewer {

// Where windows go. All rectangles are in pixels of the screen, and of windows with what the window manager puts around
// them.

/// A rectangle of this size, made no larger than the area, in the middle of it.
wxRect CentredIn(const wxRect& area, wxSize size);

/// Moves a rectangle into an area by the shortest way. One that is larger than the area begins where the area does.
wxRect MovedInto(const wxRect& area, wxRect rect);

/// The place of a window of an earlier run, if it still lies on one of the displays as a whole.
/// @param areas  what each display leaves to windows
std::optional<wxRect> StillOnADisplay(const wxRect& remembered, const std::vector<wxRect>& areas);

/// Moves a window that would stand exactly over another one a little to the lower right, until it doesn't; where the
/// area ends, it stays.
/// @param others  the upper left corners of the windows that are there
wxRect BesideOthers(wxRect rect, const std::vector<wxPoint>& others, const wxRect& area);

/// Where a dialog hides least of a window: to the right of it, to the left, below or above, whichever has room first;
/// otherwise the corner of the area where the two overlap least.
wxPoint PlaceBeside(const wxRect& window, const wxSize& dialog, const wxRect& area);

} // namespace zelviewer
