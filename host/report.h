#pragma once

#include "host/options.h"

#include <string>
#include <vector>

namespace zelviewer {

/// What --info prints: the files that could be asked, and a message for each that could not.
struct Report {
    std::string text;
    std::vector<std::string> messages;
};

/// Asks every file what it is, without reading voxels; those of label files are read, to count the labels.
Report MakeReport(const Options& options);

/// What --version prints: program, toolkit, and the libraries that read files, as they are loaded.
std::string VersionText();

} // namespace zelviewer
