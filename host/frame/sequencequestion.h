#pragma once

#include <wx/window.h>

#include <string>
#include <vector>

namespace zelviewer {

/// Asks, where a single file was named, whether the files whose names differ by one number only are wanted with it.
/// @param parent  may be null, and may go meanwhile
/// @return what to open: the files as they were, or the sequence
/// @throws Cancelled
std::vector<std::string> AskForSequence(wxWindow* parent, const std::vector<std::string>& files);

} // namespace zelviewer
