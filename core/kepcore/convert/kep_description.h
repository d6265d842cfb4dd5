#pragma once

// Private to the library: the lines that a TIFF description carries beside those that other programs know, and how a
// frame's description is made to fit into a file.

#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_vector.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kep::detail {

/// What the library's own lines of a TIFF description say. They stand behind the ImageJ-style ones, one a line:
///
///     kep resolution=15.5038757 15.5038757 5
///     kep offset=0.800000012 0 -3.20000005
///     kep entry=<key>=<value>
///
/// with three numbers of nine significant digits, which give every float back bit for bit, and one entry for each
/// pair of the frame's description that has no tag of its own. In key and value a backslash stands before a
/// backslash ("\\"), "n" (line break), "r" (carriage return), "e" (equals sign, in the key) and "0" (zero byte).
struct OwnLines {
    std::optional<Vector3d<float>> resolution;
    std::optional<Vector3d<float>> offset;
    std::map<std::string, std::string> entries;

    /// The text was written by this library: everything that it holds is in ImageJ-style lines and in these.
    bool IsOwn() const { return resolution.has_value() && offset.has_value(); }
};

/// The three lines and more, each ended by a line break.
/// @param entries  pairs that go into lines
std::string FormatOwnLines(const Vector3d<float>& resolution, const Vector3d<float>& offset,
                           const std::map<std::string, std::string>& entries);

/// Bytes of the line that an entry takes there.
std::size_t GetOwnLineBytes(std::string_view key, std::string_view value);

/// Picks the own lines out of a description. Lines that are damaged are left out.
OwnLines ParseOwnLines(std::string_view text);

/// The text itself if it is UTF-8, else taken for Latin-1 and turned into UTF-8.
std::string ToUtf8(const std::string& text);

/// As much of a description as a file holds.
struct FittedDescription {
    std::map<std::string, std::string> entries;
    std::string notice; ///< a sentence for the user, in ASCII, on what was cut or left out; empty if nothing was
};

/// How much room a file has for a description.
struct DescriptionRoom {
    std::string file;             ///< with its article, for the notice
    std::size_t bytes = 0;        ///< for all entries together
    std::size_t longestValue = 0; ///< bytes of one value
    /// Bytes that an entry takes; no fewer where the value is longer. More than there are of memory: it can't be held.
    std::function<std::size_t(const std::string& key, std::string_view value)> getBytes;
};

/// Makes a description fit. Entries that take less room come first, as they are; the first one that there is no room
/// for is cut, between two characters, and the others are left out.
FittedDescription FitDescription(const std::map<std::string, std::string>& entries, const DescriptionRoom& room);

} // namespace kep::detail
