#pragma once

#include <string>

/// A name in a folder of the program's own under the system's folder for temporary files (TMPDIR chooses another
/// disk). The folder goes with the program.
std::string GetScratchName(const std::string& fileName);
