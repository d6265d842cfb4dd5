#pragma once

#include "model/zel_export.h"
#include "model/zel_palette.h"

#include <wx/string.h>

namespace zel {

/// Reads a text file with a colour a line: red, green, blue in decimal, one of space, colon or comma between them, each
/// taken modulo 256. The first 256 lines count, and all of them must be good; no more is read. The numbers stand in the
/// first 4096 bytes of their line.
/// @return false for a file that cannot be opened or is no plain file, and nothing has changed; or for a bad line among
///         the 256, or lack of memory: the palette is then filled up to there, and not to be used. Nothing is logged.
ZEL_EXPORT bool LoadPalette(Palette& palette, const wxString& file_name);

/// The same, and says why it fails, in words for the user.
/// @return empty if the file was read; it may still have no line, and so no colour
/// @throws std::bad_alloc
ZEL_EXPORT wxString ReadPalette(Palette& palette, const wxString& file_name);

} // namespace zel
