#pragma once

#include "model/zel_export.h"

#include <wx/string.h>

#include <istream>
#include <ostream>

namespace zel {

/// Reads one string of a text file in which blanks separate strings, after any white space. A string in double quotes
/// ends at the next quote, any other at a blank or a tab, and both at the end of the line, which stays in the stream;
/// the quote, blank or tab is taken off. The text is UTF-8, or ISO 8859-1 if it is no UTF-8. At the end of the stream
/// the string is empty.
ZEL_EXPORT void LoadwxString(wxString& s, std::istream& in);

/// Writes one string in UTF-8, in double quotes if it holds a blank; quotes, tabs and line ends in it get no care, and
/// an empty one leaves no trace.
/// @param s         is not changed
/// @param out       gets the text; its state tells of failures
/// @param addBlank  a blank follows
ZEL_EXPORT void SavewxString(wxString& s, std::ostream& out, bool addBlank);

} // namespace zel
