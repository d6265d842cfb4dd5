#pragma once

#include "host/options.h"

namespace zelviewer {

/// Starts the toolkit, reads the files, and shows them until the window is closed, or writes the picture of the
/// window. Says on standard error what goes wrong before there is a window.
/// @return the program's exit code
int RunViewer(const Options& options, char* programName);

} // namespace zelviewer
