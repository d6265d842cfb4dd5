#pragma once

#include "core/kepcore/kep_imageinfo.h"

#include <string>
#include <vector>

namespace zelviewer {

/// A file and what it says of itself.
struct FileInfo {
    std::string name;
    kep::ImageInfo info;
};

/// For people. Long descriptions are cut, and nothing in them can move the terminal's cursor.
std::string InfoAsText(const std::vector<FileInfo>& files);

/// For programs: {"files": [...], "sequence": {...}}. Nothing is cut; what is no UTF-8 is replaced. Numbers that are
/// not known are null.
std::string InfoAsJson(const std::vector<FileInfo>& files);

} // namespace zelviewer
