#pragma once

#include "image/kep.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zelviewer {

/// A summary of the labels of a file.
struct LabelSummary {
    bool connected = false;   ///< connected components, not labels as stored
    std::size_t count = 0;    ///< labels in use
    std::size_t smallest = 0; ///< voxels of one label; 0 without labels
    std::size_t largest = 0;
    std::size_t onBorder = 0; ///< labels that touch the frame's border
};

/// A file and what it says of itself.
struct FileInfo {
    std::string name;
    kep::ImageInfo info;
    std::optional<LabelSummary> labels = std::nullopt; ///< of a label file, whose voxels were read
};

/// For people. Long descriptions are cut, and nothing in them can move the terminal's cursor.
std::string InfoAsText(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels = {});

/// For programs: {"files": [...], "sequence": {...}}, and "labels": [...] if there are any. Nothing is cut; what is no
/// UTF-8 is replaced. Numbers that are not known are null.
std::string InfoAsJson(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels = {});

} // namespace zelviewer
