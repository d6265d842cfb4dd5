#include "core/kepcore/kep_version.h"

#include <archive.h>
#include <tiffio.h>
#include <zlib.h>

namespace kep {

namespace {

/// The version from a line such as "LIBTIFF, Version 4.5.0\nCopyright ...": what stands between the last space of
/// the first line and its end.
std::string LastWordOfFirstLine(const std::string& text) {
    const std::string line = text.substr(0, text.find('\n'));
    return line.substr(line.find_last_of(' ') + 1);
}

} // namespace

CodecVersions GetCodecVersions() {
    return {LastWordOfFirstLine(TIFFGetVersion()), zlibVersion(), LastWordOfFirstLine(archive_version_string())};
}

} // namespace kep
