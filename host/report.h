#pragma once

#include "host/options.h"

#include <string>
#include <vector>

namespace zelviewer {

/// What --info prints: the files whose headers could be read, and a message for each other one.
struct Report {
    std::string text;
    std::vector<std::string> messages;
};

/// Reads the header of every file, without voxels; those of label files are read, to count the labels.
Report MakeReport(const Options& options);

/// What --version prints: program, toolkit, and the libraries that read files, as they are loaded.
std::string VersionText();

} // namespace zelviewer
