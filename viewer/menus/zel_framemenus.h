#pragma once

class WXDLLIMPEXP_FWD_CORE wxMenuBar;

namespace zel {

/// The menu bar of a viewer frame, with the marks that it has at the start. The caller owns it.
wxMenuBar* MakeFrameMenuBar();

} // namespace zel
