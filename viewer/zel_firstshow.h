#pragma once

#include "model/zel_export.h"

#include <wx/defs.h>

class WXDLLIMPEXP_FWD_CORE wxTopLevelWindow;

namespace zel {

/// Tells the system the size of a window that it has not made yet: to be called right before the first Show. Without
/// this the toolkit has it made with 2 by 1 pixels, to ask the window manager what it will put around it; it appears
/// and is laid out in this size first, and GTK complains of widgets without room. Later, or on another system, it
/// does nothing.
ZEL_EXPORT void PrepareFirstShow(wxTopLevelWindow& window);

} // namespace zel
