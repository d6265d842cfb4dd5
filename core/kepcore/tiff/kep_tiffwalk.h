#pragma once

// Private to the library: a walk over the directories of a TIFF file that believes nothing. libtiff is called only
// with files that have passed it, as some small hostile files make libtiff take gigabytes before it complains.

#include "core/kepcore/file/kep_file.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace kep::detail {

/// Tags that say where the voxels lie and what they are.
enum TiffTag : std::uint16_t {
    tagSubfileType = 254,
    tagOldSubfileType = 255,
    tagWidth = 256,
    tagHeight = 257,
    tagBits = 258,
    tagCompression = 259,
    tagPhotometric = 262,
    tagFillOrder = 266,
    tagDescription = 270,
    tagMake = 271,
    tagModel = 272,
    tagStripOffsets = 273,
    tagOrientation = 274,
    tagSamples = 277,
    tagRowsPerStrip = 278,
    tagStripCounts = 279,
    tagXResolution = 282,
    tagYResolution = 283,
    tagPlanar = 284,
    tagXPosition = 286,
    tagYPosition = 287,
    tagT4Options = 292,
    tagResolutionUnit = 296,
    tagSoftware = 305,
    tagDateTime = 306,
    tagArtist = 315,
    tagPredictor = 317,
    tagColourMap = 320,
    tagTileWidth = 322,
    tagTileHeight = 323,
    tagTileOffsets = 324,
    tagTileCounts = 325,
    tagExtraSamples = 338,
    tagSampleFormat = 339,
};

/// A stretch of the file.
struct TiffStretch {
    std::uint64_t from = 0;
    std::uint64_t until = 0; ///< behind its last byte

    bool Overlaps(const TiffStretch& other) const { return from < other.until && other.from < until; }
};

/// The values of one tag: what they are and where they lie.
struct TiffEntry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;  ///< TIFF's number of it: 1 byte, 2 text, 3 short, 4 long, 5 rational, 16 long8, ...
    std::uint64_t count = 0; ///< of values; 0 for a tag that is not there
    std::uint64_t at = 0;    ///< position of the first value in the file
    bool isInline = false;   ///< the values are few enough to stand in the directory itself, and here
    std::array<unsigned char, 8> inlineBytes{};

    bool IsThere() const { return count != 0; }
    /// Where the values stand.
    TiffStretch GetStretch() const;
};

struct TiffDirectory {
    std::uint64_t at = 0;    ///< position in the file
    std::uint64_t bytes = 0; ///< with the position of the next one
    std::vector<TiffEntry> entries;

    /// The tag's first entry; one without values if the tag is not there.
    TiffEntry Find(TiffTag tag) const;
};

/// Reads the values of tags. Both byte orders, classic and BigTIFF.
class TiffValues {
public:
    /// Reads the file's header. The file must outlive this.
    /// @throws IOException damaged header
    explicit TiffValues(const InputFile& source);

    const InputFile& GetFile() const { return file; }
    bool IsBigEndian() const { return bigEndian; }
    bool IsBigTiff() const { return bigTiff; }
    std::size_t GetHeaderBytes() const { return bigTiff ? 16 : 8; }
    std::uint64_t GetFirstDirectory() const { return firstDirectory; }

    /// The first `limit` values, at most, of a tag that holds whole numbers.
    /// @throws IOException damaged, when they lie outside the file or are of another type
    std::vector<std::uint64_t> ReadNumbers(const TiffEntry& entry, std::uint64_t limit) const;
    /// The first value, or `absent` if the tag is not there.
    std::uint64_t ReadNumber(const TiffEntry& entry, std::uint64_t absent) const;
    /// The first value of a tag that holds fractions or floats; nothing if the tag is not there or divides by 0.
    std::optional<double> ReadFraction(const TiffEntry& entry) const;
    /// A text up to its first NUL, at most `limit` bytes.
    std::string ReadText(const TiffEntry& entry, std::size_t limit) const;

    /// A whole number of the file's byte order.
    std::uint64_t Decode(const unsigned char* bytes, std::size_t size) const;

private:
    void ReadValues(const TiffEntry& entry, void* to, std::size_t bytes) const;
    [[noreturn]] void Fail(const TiffEntry& entry, const std::string& what) const;

    const InputFile& file;
    bool bigEndian = false;
    bool bigTiff = false;
    std::uint64_t firstDirectory = 0;
};

/// Reads directories one after the other.
class TiffWalk {
public:
    /// The values must outlive the walk.
    explicit TiffWalk(const TiffValues& source);

    /// Steps to the next directory. Linear in the number of directories.
    /// @return false behind the last one
    /// @throws IOException for a directory that reaches beyond the file's end, was there before, overlaps others or
    ///         promises more values than the file has bytes
    bool Next(TiffDirectory& directory);

    /// Directories stepped over so far: the number of the present one, counted from 1.
    std::size_t GetCount() const { return count; }

private:
    void ReadEntries(const unsigned char* bytes, std::uint64_t at, std::uint64_t entryCount, TiffDirectory& directory);
    [[noreturn]] void Fail(const std::string& what) const;

    const TiffValues& values;
    const InputFile& file;
    std::uint64_t next = 0; ///< position of the next directory; 0 behind the last
    std::size_t count = 0;
    std::uint64_t directoryBytes = 0; ///< of all directories so far
    std::uint64_t valueBytes = 0;     ///< of all values so far
    std::unordered_set<std::uint64_t> seen;
    std::vector<unsigned char> buffer; ///< kept between pages
};

/// Bytes of one value of a type; 0 for a type that TIFF does not know.
std::size_t GetTiffTypeBytes(std::uint16_t type);

} // namespace kep::detail
