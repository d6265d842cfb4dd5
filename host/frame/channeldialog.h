#pragma once

#include "host/opening.h"

#include <wx/window.h>

#include <cstddef>
#include <vector>

namespace zelviewer {

/// Asks which channels of a file are shown: one, or up to three that become red, green and blue in the file's order.
/// @param parent  may be null, and may go meanwhile
/// @return from 0, in their order; none if the user has cancelled
std::vector<std::size_t> AskForChannels(wxWindow* parent, const ChannelQuestion& question);

} // namespace zelviewer
