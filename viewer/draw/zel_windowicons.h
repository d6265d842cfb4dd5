#pragma once

#include <wx/defs.h>

class WXDLLIMPEXP_FWD_CORE wxIconBundle;
class WXDLLIMPEXP_FWD_CORE wxTopLevelWindow;

namespace zel {

/// Gives a window its icons. Those with a mask get an alpha channel in its place: GTK's port of the toolkit makes a
/// picture of a masked icon each time that it is set, 5 kB for both sizes, and never frees it.
void SetWindowIcons(wxTopLevelWindow& window, const wxIconBundle& icons);

} // namespace zel
