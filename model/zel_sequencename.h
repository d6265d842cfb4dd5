#pragma once

#include "model/zel_export.h"

#include <string>

namespace zel {

/// The name of a frame's file in an exported sequence: the first run of "X" becomes the frame's number, in as many
/// digits, with leading zeros. Of a number with more digits the lower ones are taken. Any other "X" stays.
/// @param nameTemplate  UTF-8; at least one upper-case "X"
/// @param index         0 or greater
/// @throws kep::InternalException "Missing suffix in the template name." if the run ends the template
ZEL_EXPORT std::string MakeSequenceName(const std::string& nameTemplate, int index);

} // namespace zel
