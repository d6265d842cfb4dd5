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
    /// Channels and time points, where the file has several frames. `info` is then that of each, or of all channels
    /// together where they make a colour.
    std::optional<kep::FileAxes> axes = std::nullopt;
    std::string notShown = {}; ///< why the voxels can't be shown; empty: they can
    std::string error = {};    ///< why the file can't be read; not empty: nothing else but the name is known
};

/// What tells that two files are no frames of one sequence, as a sentence about the second one; empty if they may be.
std::string DifferenceOf(const std::string& firstName, const kep::ImageInfo& first, const kep::ImageInfo& second);

/// For people, of the files that can be read. Long descriptions are cut, and nothing in them can move the terminal's
/// cursor.
std::string InfoAsText(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels = {});

/// For programs: {"files": [...], "sequence": {...}}, and "labels": [...] if there are any. A file that can't be read
/// has its name and the reason under "error". Nothing is cut; what is no UTF-8 is replaced. Numbers that are not known
/// are null.
std::string InfoAsJson(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels = {});

} // namespace zelviewer
