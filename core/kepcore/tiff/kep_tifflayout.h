#pragma once

// Private to the library: how the voxels of a TIFF page are stored, and what voxels they make.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/tiff/kep_tiffpredictor.h"
#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kep::detail {

/// TIFF's numbers for ways to pack, and for what samples mean.
enum TiffCompression : std::uint16_t {
    packedPlain = 1,
    packedFaxRuns = 2,
    packedFaxGroup3 = 3,
    packedFaxGroup4 = 4,
    packedLzw = 5,
    packedJpeg = 7,
    packedDeflate = 8,
    packedPackBits = 32773,
    packedOldDeflate = 32946,
    packedLzma = 34925,
    packedZstd = 50000,
};
enum TiffPhotometric : std::uint16_t {
    meansMinIsWhite = 0,
    meansMinIsBlack = 1,
    meansRgb = 2,
    meansPalette = 3,
    meansMask = 4,
    meansYCbCr = 6,
};

/// How the voxels of a page are stored. They come in blocks: strips as wide as the page, or tiles; a plane's blocks
/// from left to right, then downwards; plane after plane where the components lie apart.
struct TiffLayout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    unsigned bits = 1;         ///< of a sample
    unsigned samples = 1;      ///< of a pixel
    unsigned extraSamples = 0; ///< those of them that are no part of the picture: alpha and the like
    /// Samples that channels are: the picture's, and of a gray picture the extra ones without a meaning too. A colour
    /// counts as one.
    unsigned channels = 1;
    unsigned format = 1; ///< 1 unsigned, 2 signed, 3 float, 4 unknown, 5 complex of integers, 6 complex of floats
    unsigned compression = packedPlain;
    unsigned predictor = predictsNothing; ///< where the compression knows one
    bool faxIsMixed = false;              ///< group 3: rows are runs or differences
    unsigned photometric = meansMinIsBlack;
    bool planesApart = false;
    bool isTiled = false;
    bool bitsReversed = false; ///< the lowest bit of a byte comes first
    std::uint32_t blockWidth = 0;
    std::uint32_t blockHeight = 0; ///< of all strips but the last, which ends with the page; of all tiles

    friend bool operator==(const TiffLayout&, const TiffLayout&) = default;

    /// The same page with all its channels as parts of the picture.
    TiffLayout WithAllChannels() const;

    /// Pages with the same kind of picture can be slices of one frame, however they are packed.
    bool HasSamePicture(const TiffLayout& other) const;

    unsigned GetSamplesTogether() const { return planesApart ? 1 : samples; }
    std::uint32_t GetBlocksAcross() const { return (width - 1) / blockWidth + 1; }
    std::uint32_t GetBlocksDown() const { return (height - 1) / blockHeight + 1; }
    /// Of all planes. Numbers that 64 bits can't hold are the largest one.
    std::uint64_t GetBlockCount() const;
    /// Bytes of a row of a block; rows begin with a whole byte.
    std::uint64_t GetRowBytes() const;
    /// Rows that a block holds: in tiles also those below the page.
    std::uint32_t GetBlockRows(std::uint32_t blockDown) const;
    /// Bytes of a block of the page, before samples are unpacked.
    std::uint64_t GetBlockBytes(std::size_t block) const;
    /// Blocks that hold something of the picture: planes of extra samples, which come last, do not.
    std::uint64_t GetPictureBlockCount() const;
    /// Bytes of a number, or of a part of a complex one, whose order in a block is the file's; 1 where numbers are no
    /// whole bytes.
    std::size_t GetNumberBytes() const;
    /// Bytes of all blocks, before samples are unpacked.
    std::uint64_t GetPageBytes() const;

    /// Unpacking changes nothing but the order of bytes: whole bytes, all samples kept and together, not packed.
    bool IsPlain() const;
};

/// Reads how a page is stored.
/// @throws IOException damaged, where the numbers can't be; not supported, where the library does not read them
TiffLayout ReadTiffLayout(const TiffValues& values, const TiffDirectory& directory);

/// The page is a smaller copy of another one.
bool IsReducedPage(const TiffValues& values, const TiffDirectory& directory);

/// What voxels a layout makes.
struct TiffVoxels {
    SampleType sample;
    int components = 1;       ///< 3 for a colour; else as many as the picture has samples
    bool areChannels = false; ///< several components, which are samples without a meaning of their own
};

/// @throws IOException for kinds of voxels that are not read
TiffVoxels GetTiffVoxels(const TiffLayout& layout, const std::string& fileName);

/// Some ways to pack are for some samples only.
/// @throws IOException for samples that the layout's can't hold
void CheckTiffPacking(const TiffLayout& layout, const std::string& fileName);

/// For the user: "none", "LZW", ...
std::string GetCompressionName(unsigned compression);

/// The most bytes that a byte of a packed page can stand for.
std::uint64_t GetExpansion(const TiffLayout& layout);

} // namespace kep::detail
