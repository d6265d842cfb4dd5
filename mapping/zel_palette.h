#pragma once

#include "image/kep.h"
#include "model/zel_export.h"

#include <wx/string.h>

#include <vector>

namespace zel {

/// Colours by index.
using Palette = std::vector<kep::RGB_generic<unsigned char>>;

/// The kinds of built-in palettes.
constexpr long zel_labelsPalette = 0;     ///< 12 strong colours
constexpr long zel_saturationPalette = 1; ///< gray, but blue at the lower end and red at the upper
constexpr long zel_periodicPalette = 2;   ///< once round the colours
constexpr long zel_whiteFirstPalette = 3; ///< 14 strong colours, white first

/// Fills a palette; what it held goes. Any other kind gives 256 grays.
ZEL_EXPORT void CreatePalette(long kind, Palette& palette);

/// Reads a text file with a colour a line: red, green, blue in decimal, one of space, colon or comma between them, each
/// taken modulo 256. The first 256 lines count, and all of them must be good; no more is read. The numbers stand in the
/// first 4096 bytes of their line.
/// @return false for a file that cannot be opened or is no plain file, and nothing has changed; or for a bad line among
///         the 256, or lack of memory: the palette is then filled up to there, and not to be used. Nothing is logged.
ZEL_EXPORT bool LoadPalette(Palette& palette, const wxString& file_name);

} // namespace zel
