#pragma once

#include "core/kepalgo/kep_lut.h"
#include "model/zel_export.h"

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

/// An 8-bit level to its colour.
using PaletteTable = kep::LUT<unsigned char, kep::RGB_generic<unsigned char>>;

/// Spreads a palette over the levels from 1 on, again and again if it is short; level 0 is always black. An empty
/// palette changes nothing.
/// @throws kep::LibException for a table that lacks a level up to its last one; those below are then set
ZEL_EXPORT void SpreadPalette(const Palette& palette, PaletteTable& table);

} // namespace zel
