#pragma once

// Private to the library: the text in front of the voxels of an ICS file.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kep::detail {

/// A longer header is refused, and none longer is written.
constexpr std::size_t largestIcsHeader = std::size_t{1} << 20;

enum class IcsFormat { Integer, Real, Complex };
enum class IcsCompression { None, Gzip, Compress };

struct IcsAxis {
    std::string name;       ///< in small letters
    std::uint64_t size = 1; ///< 1 to 2^31 - 1
    std::string origin;     ///< these three as they stand in the file, empty where it says nothing
    std::string scale;
    std::string unit;
};

/// What a header says, with everything checked that voxels depend on.
struct IcsHeader {
    int version = 0;           ///< 1: the voxels lie in a file beside it, 2: behind it or in `sourceFile`
    std::vector<IcsAxis> axes; ///< 1 to 10, fastest first; the bits of a voxel are no axis here
    int bits = 0;              ///< of a sample: 8, 16, 32, 64 or 128
    IcsFormat format = IcsFormat::Integer;
    bool isSigned = false;
    IcsCompression compression = IcsCompression::None;
    std::vector<int> byteOrder; ///< significance of each byte of a sample, 1 is the least; empty: the machine's order
    std::optional<std::string> sourceFile;
    std::uint64_t sourceOffset = 0;
    std::vector<std::pair<std::string, std::string>> history; ///< key and value; lines without a key under "history"
    std::size_t bytes = 0;                                    ///< of the header, where version 2's voxels begin
};

/// Tells an ICS header by its separators and its first word.
bool StartsLikeIcsHeader(std::string_view text);

/// Reads a header. Numbers are read in the classic locale; lines of categories that say nothing of the voxels are
/// stepped over, whatever they hold.
/// @param text       the file's beginning
/// @param wholeFile  nothing follows the text
/// @param fileName   for messages
/// @throws IOException damaged header
IcsHeader ParseIcsHeader(std::string_view text, bool wholeFile, const std::string& fileName);

} // namespace kep::detail
