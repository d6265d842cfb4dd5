#pragma once

// Packed blocks as libtiff makes them, in files whose directories promise what the blocks hold, or less, or more.

#include "tests/core/kepcore/tiff_support.h"

#include <random>
#include <stdexcept>
#include <string>
#include <tiffio.h>
#include <utility>
#include <vector>

namespace tifftest {

/// A way to pack, and what it is used for here.
struct Packing {
    std::string name;
    std::uint16_t number = 0;  ///< TIFF's
    unsigned bits = 8;         ///< of a sample
    std::uint32_t options = 0; ///< of CCITT group 3

    bool IsExact() const { return number != COMPRESSION_JPEG; }
};

inline const std::vector<Packing>& GetPackings() {
    static const std::vector<Packing> packings = {
        {"none", COMPRESSION_NONE},
        {"LZW", COMPRESSION_LZW},
        {"PackBits", COMPRESSION_PACKBITS},
        {"deflate", COMPRESSION_ADOBE_DEFLATE},
        {"old deflate", COMPRESSION_DEFLATE},
        {"LZMA", COMPRESSION_LZMA},
        {"zstd", COMPRESSION_ZSTD},
        {"JPEG", COMPRESSION_JPEG},
        {"CCITT RLE", COMPRESSION_CCITTRLE, 1},
        {"CCITT group 3", COMPRESSION_CCITTFAX3, 1},
        {"CCITT group 3 with filled EOLs", COMPRESSION_CCITTFAX3, 1, GROUP3OPT_FILLBITS},
        {"CCITT group 3 in two dimensions", COMPRESSION_CCITTFAX3, 1, GROUP3OPT_2DENCODING},
        {"CCITT group 4", COMPRESSION_CCITTFAX4, 1},
    };
    return packings;
}

/// Rows of some noise and some runs; those of a lower picture are the first ones of a higher one.
inline std::string MakeRows(const Packing& packing, unsigned width, unsigned rows) {
    std::mt19937 random(width * 8U + packing.bits);
    std::string bytes;
    unsigned char last = 0;
    for (unsigned i = 0; i < rows * (width * packing.bits / 8U); ++i) {
        if (random() % 3U == 0)
            last = static_cast<unsigned char>(random() >> 8U);
        bytes += static_cast<char>(last);
    }
    return bytes;
}

/// The bytes of one strip that libtiff makes of rows.
inline std::string PackRows(const Packing& packing, unsigned width, const std::string& rows) {
    TIFFSetWarningHandler(nullptr);
    const ScratchFolder folder;
    const std::string name = folder / "packed.tif";
    const auto height = static_cast<std::uint32_t>(rows.size() / (width * packing.bits / 8U));
    TIFF* tiff = TIFFOpen(name.c_str(), "w");
    if (tiff == nullptr)
        throw std::runtime_error("libtiff does not open " + name);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, packing.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, packing.number);
    if (packing.number == COMPRESSION_CCITTFAX3)
        TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, packing.options);
    if (packing.number == COMPRESSION_JPEG)
        TIFFSetField(tiff, TIFFTAG_JPEGTABLESMODE, 0); // the strip needs no tables of the directory
    std::string copy = rows;
    const auto bytes = static_cast<tmsize_t>(copy.size());
    const bool isWritten = TIFFWriteEncodedStrip(tiff, 0, copy.data(), bytes) == bytes;
    TIFFClose(tiff);
    tiff = TIFFOpen(name.c_str(), "r");
    if (!isWritten || tiff == nullptr)
        throw std::runtime_error("libtiff does not write " + packing.name);
    std::string packed(static_cast<std::size_t>(TIFFRawStripSize(tiff, 0)), '\0');
    TIFFReadRawStrip(tiff, 0, packed.data(), static_cast<tmsize_t>(packed.size()));
    TIFFClose(tiff);
    return packed;
}

enum class Block { Strip, Tile };

/// The tags of a page of one sample in one block, which is a tile as large as the page where it is no strip.
inline std::vector<TiffBuilder::Tag> BlockTags(const Packing& packing, Block block, unsigned width, unsigned height,
                                               std::uint64_t at, std::uint64_t bytes) {
    std::vector<TiffBuilder::Tag> tags = {
        {256, 4, {width}}, {257, 4, {height}}, {258, 3, {packing.bits}}, {259, 3, {packing.number}}, {262, 3, {1}}};
    if (block == Block::Strip) {
        tags.push_back({273, 4, {at}});
        tags.push_back({278, 4, {height}});
        tags.push_back({279, 4, {bytes}});
    }
    if (packing.options != 0)
        tags.push_back({292, 4, {packing.options}});
    if (block == Block::Tile) {
        tags.push_back({322, 4, {width}});
        tags.push_back({323, 4, {height}});
        tags.push_back({324, 4, {at}});
        tags.push_back({325, 4, {bytes}});
    }
    return tags;
}

/// A file of one page in one block, with bytes behind the block that are none of its.
inline std::string MakeBlockFile(const Packing& packing, Block block, unsigned width, unsigned height,
                                 const std::string& stream) {
    TiffBuilder builder;
    const std::size_t at = builder.AddBytes(stream);
    builder.AddBytes(std::string(1000, '\x55'));
    builder.AddDirectory(BlockTags(packing, block, width, height, at, stream.size()));
    return builder.GetFile();
}

struct DamagedFile {
    std::string what; ///< is wrong with it
    std::string bytes;
};

/// Files whose blocks hold other than they promise: a row less, a row more, half of what they should.
inline std::vector<DamagedFile> MakeDamagedFiles() {
    constexpr unsigned width = 32;
    constexpr unsigned height = 16;
    std::vector<DamagedFile> files;
    for (const Packing& packing : GetPackings()) {
        const auto pack = [&](unsigned rows) { return PackRows(packing, width, MakeRows(packing, width, rows)); };
        for (const Block block : {Block::Strip, Block::Tile}) {
            const auto add = [&](const std::string& what, const std::string& stream) {
                files.push_back({packing.name + (block == Block::Strip ? ", strip " : ", tile ") + what,
                                 MakeBlockFile(packing, block, width, height, stream)});
            };
            if (packing.number == COMPRESSION_NONE && block == Block::Strip)
                continue; // a page in one strip says its size twice, and the count of bytes may be wrong
            const std::string whole = pack(height);
            add("of a row less", pack(height - 1));
            add("cut in half", whole.substr(0, whole.size() / 2));
            if (packing.number != COMPRESSION_NONE) // where bytes behind the voxels are nothing to worry about
                add("of a row more", pack(height + 1));
        }
    }
    // A stored block of deflate that promises 5,000 bytes where 64 x 64 voxels are wanted, and holds 195.
    const Packing deflate{"deflate", COMPRESSION_ADOBE_DEFLATE};
    const std::string stored = std::string("\x78\x01\x01\x88\x13\x77\xEC", 7) + std::string(195, '\0');
    files.push_back(
        {"deflate, strip with a stored block beyond it", MakeBlockFile(deflate, Block::Strip, 64, 64, stored)});
    files.push_back(
        {"deflate, tile with a stored block beyond it", MakeBlockFile(deflate, Block::Tile, 64, 64, stored)});
    return files;
}

} // namespace tifftest
