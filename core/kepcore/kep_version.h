#pragma once

#include "core/kepcore/kep_export.h"

#include <string>

namespace kep {

/// Versions of the libraries that read and write files, as they are loaded now: "4.5.0", "1.2.13".
struct KEP_EXPORT CodecVersions {
    std::string libtiff;    ///< for TIFF files
    std::string zlib;       ///< for packed ICS data and TIFF files
    std::string libarchive; ///< for ICS data packed by "compress"
};

/// Asks the libraries themselves.
KEP_EXPORT CodecVersions GetCodecVersions();

} // namespace kep
