#pragma once

#include "host/options.h"

#include <string>

namespace zelviewer {

/// Why one of the files that the options ask for must not be written, as "NAME: reason"; empty if all may be.
std::string RefusalOfOutputs(const Options& options);

/// Refuses outputs that must not be written. Starts the toolkit, reads the files, and shows them until the window is
/// closed, or writes the picture of the window. Says on standard error what goes wrong before there is a window. Meshes
/// are exported without toolkit and window, views, galleries and films are saved without a window.
/// @return the program's exit code
/// @throws Failure  a file that is read or written without a window
int RunViewer(const Options& options, char* programName);

} // namespace zelviewer
