#pragma once

#include "model/zel_export.h"

#include <string>
#include <string_view>
#include <vector>

namespace zel {

/// The order in which people expect file names: as text, but with numbers compared as numbers, so t2 comes before t10.
/// Numbers of one value follow by their leading zeros, fewer first. No two names are equal unless they are the same.
ZEL_EXPORT bool ComesBefore(std::string_view a, std::string_view b);

/// Sorts by ComesBefore.
ZEL_EXPORT void SortFileNames(std::vector<std::string>& names);

/// The sequence that a file belongs to: it and those that differ from it by one number only, in the order of this
/// number.
///
/// - The number is not in the ending, and written like the others: with zeros to the same width, or without any.
/// - Of several numbers in the name, the one counts that gives the longest sequence; of equals, the last one.
///
/// @param fileName  without folders
/// @param names     all names in its folder, with or without its own
/// @return the names in order; only its own if there is no other
ZEL_EXPORT std::vector<std::string> FindSequence(const std::string& fileName, const std::vector<std::string>& names);

} // namespace zel
