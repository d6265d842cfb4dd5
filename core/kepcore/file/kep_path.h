#pragma once

// Private to the library: parts of file names.

#include <cstddef>
#include <string>

namespace kep::detail {

/// The folder with its slash, or nothing.
inline std::string GetFolder(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1); // without a slash, npos + 1 is 0
}

/// What stands behind the folder.
inline std::string GetBaseName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace kep::detail
