#pragma once

#include "model/zel_palette.h"

#include <wx/string.h>

class WXDLLIMPEXP_FWD_CORE wxWindow;

namespace zelviewer {

/// Asks for a palette file, and tells why one can't be used.
/// @param parent  may go meanwhile
/// @return false if there is no palette
bool AskForPalette(wxWindow* parent, zel::Palette& palette);

} // namespace zelviewer
