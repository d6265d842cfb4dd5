#pragma once

// Private: the beginning of a text file of any length.

#include "model/zel_export.h"

#include <wx/string.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace zel {

/// Reads no more than the first lines of a plain text file, in the encoding that wxConvAuto finds in them. A line ends
/// with LF, CR and LF, or CR; the last one may lack it. A text that can't be decoded has no lines, as elsewhere in the
/// toolkit. Memory is taken for `count` lines of `longest` each.
/// @param count    lines at most
/// @param longest  what is kept of a line: bytes, or the words of a file that begins with a mark of UTF-16 or UTF-32
/// @return nothing if the file can't be opened or read
/// @throws std::bad_alloc
ZEL_EXPORT std::optional<std::vector<wxString>> ReadFirstLines(const wxString& fileName, std::size_t count,
                                                               std::size_t longest);

} // namespace zel
