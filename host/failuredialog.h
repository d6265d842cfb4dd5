#pragma once

#include <string>
#include <vector>

namespace zelviewer {

/// Whether nobody reads what goes to standard error, as in a program that a desktop has started: it is no terminal, no
/// pipe, and no file but one to which everything goes, as to the log of a session.
/// @param output, error  file descriptors
bool IsReadByNobody(int output, int error);

/// Whether the arguments ask for a result in files or as text, which scripts do.
bool IsForScripts(const std::vector<std::string>& arguments);

/// Shows why the program ends in a dialog, if a desktop has started it and there is a display. For failures before the
/// toolkit was started.
void ShowFailureOnDesktop(const std::string& text, char* programName);

} // namespace zelviewer
