#pragma once

// Private to the library: OME-XML, as far as it bears on one frame.

#include "core/kepcore/tiff/kep_tiffmeta.h"

#include <string>

namespace kep::detail {

/// The text begins as OME-XML does.
bool LooksLikeOme(const std::string& text);

/// Takes numbers of pages and the pixel size from OME-XML into a description. What is damaged or missing stays as it
/// was; the style is Ome only if there is a "Pixels" element.
void ParseOme(const std::string& text, const std::string& fileName, TiffDescription& description);

} // namespace kep::detail
