// Every way to store voxels that the reader knows, written by libtiff from numbers that the test keeps.

#include "tests/core/kepcore/tiff_support.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <ostream>
#include <random>
#include <sstream>
#include <tuple>

namespace {

using kep::detail::FrameHeader;
using kep::detail::NumberKind;
using kep::detail::SampleType;

constexpr std::uint32_t tileHeight = 16;

/// How a file is to be written.
struct Way {
    std::uint32_t width = 37;
    std::uint32_t height = 23;
    std::uint32_t pages = 3;
    int bits = 8;
    int samples = 1;
    int extra = 0; ///< of the samples
    int format = SAMPLEFORMAT_UINT;
    int compression = COMPRESSION_NONE;
    int predictor = 1;
    int planar = PLANARCONFIG_CONTIG;
    std::uint32_t rowsPerStrip = 5;
    std::uint32_t tile = 0; ///< width, with tileHeight; 0: strips
    std::string mode = "wl";
};

std::ostream& operator<<(std::ostream& out, const Way& way) {
    return out << way.width << 'x' << way.height << 'x' << way.pages << ", " << way.bits << " bits, " << way.samples
               << " samples, " << way.extra << " extra, format " << way.format << ", compression " << way.compression
               << ", predictor " << way.predictor << ", planar " << way.planar << ", tile " << way.tile << ", "
               << way.mode;
}

/// One sample: 64 bits, or the two halves of a complex number of 128.
struct Sample {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
};

/// All samples of a page, pixel by pixel.
using Page = std::vector<Sample>;

std::vector<Page> MakePages(const Way& way) {
    std::mt19937_64 random(static_cast<unsigned>(way.bits * 1000 + way.samples * 10 + way.compression));
    std::vector<Page> pages(way.pages);
    for (Page& page : pages) {
        page.resize(std::size_t{way.width} * way.height * static_cast<std::size_t>(way.samples));
        for (Sample& sample : page) {
            sample.low = way.bits >= 64 ? random() : random() & ((std::uint64_t{1} << way.bits) - 1);
            sample.high = random();
        }
    }
    return pages;
}

/// Writes the bits of a number into a row of bits, the highest first, or in the machine's order if it is whole bytes.
void Pack(std::vector<unsigned char>& row, std::size_t index, std::size_t bits, const Sample& sample) {
    if (bits % 8 == 0) {
        const std::size_t bytes = bits / 8;
        for (std::size_t i = 0; i < bytes; ++i)
            row[index * bytes + i] =
                static_cast<unsigned char>((i < 8 ? sample.low >> 8 * i : sample.high >> 8 * (i - 8)) & 0xFFU);
        return;
    }
    for (std::size_t i = 0; i < bits; ++i) {
        const std::size_t place = index * bits + i;
        if ((sample.low >> (bits - 1 - i) & 1U) != 0)
            row[place / 8] = static_cast<unsigned char>(row[place / 8] | 0x80U >> place % 8);
    }
}

/// A block of a page, packed: rows from y0 on, pixels from x0 on, of one plane or of all samples together.
std::vector<unsigned char> PackBlock(const Way& way, const Page& page, std::uint32_t x0, std::uint32_t y0,
                                     std::uint32_t width, std::uint32_t height, int plane) {
    const auto samples = static_cast<std::size_t>(way.samples);
    const auto bits = static_cast<std::size_t>(way.bits);
    const std::size_t together = plane >= 0 ? 1 : samples;
    std::vector<unsigned char> block;
    for (std::uint32_t y = y0; y < y0 + height; ++y) {
        std::vector<unsigned char> row((width * together * bits + 7) / 8);
        for (std::uint32_t x = x0; x < x0 + width && x < way.width && y < way.height; ++x) {
            for (std::size_t s = 0; s < together; ++s) {
                const std::size_t sample = plane >= 0 ? static_cast<std::size_t>(plane) : s;
                Pack(row, (x - x0) * together + s, bits, page[(std::size_t{y} * way.width + x) * samples + sample]);
            }
        }
        block.insert(block.end(), row.begin(), row.end());
    }
    return block;
}

void SetTags(TIFF* tiff, const Way& way) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, way.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, way.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, way.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, way.samples);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, way.format);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, way.planar);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, way.compression);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, way.samples - way.extra == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    if (way.predictor != 1)
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, way.predictor);
    if (way.extra > 0) {
        const std::vector<std::uint16_t> kinds(static_cast<std::size_t>(way.extra), EXTRASAMPLE_UNSPECIFIED);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, way.extra, kinds.data());
    }
    if (way.tile > 0) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, way.tile);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, tileHeight);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, way.rowsPerStrip);
    }
}

void WritePage(TIFF* tiff, const Way& way, const Page& page) {
    SetTags(tiff, way);
    const std::uint32_t blockWidth = way.tile > 0 ? way.tile : way.width;
    const std::uint32_t blockHeight = way.tile > 0 ? tileHeight : way.rowsPerStrip;
    std::uint32_t number = 0;
    for (int plane = 0; plane < (way.planar == PLANARCONFIG_SEPARATE ? way.samples : 1); ++plane) {
        for (std::uint32_t y = 0; y < way.height; y += blockHeight) {
            for (std::uint32_t x = 0; x < way.width; x += blockWidth) {
                const std::uint32_t rows = way.tile > 0 ? blockHeight : std::min(blockHeight, way.height - y);
                auto block =
                    PackBlock(way, page, x, y, blockWidth, rows, way.planar == PLANARCONFIG_SEPARATE ? plane : -1);
                const auto bytes = static_cast<tmsize_t>(block.size());
                const tmsize_t written = way.tile > 0 ? TIFFWriteEncodedTile(tiff, number, block.data(), bytes)
                                                      : TIFFWriteEncodedStrip(tiff, number, block.data(), bytes);
                ASSERT_EQ(written, bytes);
                ++number;
            }
        }
    }
    ASSERT_EQ(TIFFWriteDirectory(tiff), 1);
}

void WriteFile(const std::string& name, const Way& way, const std::vector<Page>& pages) {
    TIFFSetWarningHandler(nullptr); // it would speak of the older number of deflate
    TIFF* const tiff = TIFFOpen(name.c_str(), way.mode.c_str());
    ASSERT_NE(tiff, nullptr);
    for (const Page& page : pages)
        WritePage(tiff, way, page);
    TIFFClose(tiff);
}

/// The bytes of a kept sample as the reader must give them.
void AppendUnpacked(std::vector<std::byte>& to, const Sample& sample, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i)
        to.push_back(static_cast<std::byte>((i < 8 ? sample.low >> 8 * i : sample.high >> 8 * (i - 8)) & 0xFFU));
}

std::vector<std::byte> GetExpected(const Way& way, const std::vector<Page>& pages, std::size_t sampleBytes) {
    std::vector<std::byte> voxels;
    for (const Page& page : pages) {
        for (std::size_t i = 0; i < page.size(); ++i) {
            if (i % static_cast<std::size_t>(way.samples) < static_cast<std::size_t>(way.samples - way.extra))
                AppendUnpacked(voxels, page[i], sampleBytes);
        }
    }
    return voxels;
}

void ExpectRead(const Way& way, SampleType type) {
    static_assert(std::endian::native == std::endian::little, "the expected bytes are put together lowest first");
    std::ostringstream trace;
    trace << way;
    SCOPED_TRACE(trace.str());
    const ScratchFolder folder;
    const std::string name = folder / "image.tif";
    const std::vector<Page> pages = MakePages(way);
    WriteFile(name, way, pages);
    ASSERT_EQ(tifftest::GetFailure(name), "");
    const tifftest::Frame frame = tifftest::Read(name);
    EXPECT_TRUE(frame.header.size == kep::Vector3d<std::size_t>(way.width, way.height, way.pages));
    EXPECT_TRUE(frame.header.sample == type);
    EXPECT_EQ(frame.header.components, way.samples - way.extra);
    EXPECT_FALSE(frame.header.componentsAreChannels);
    EXPECT_EQ(frame.header.storedBits, way.bits);
    EXPECT_TRUE(frame.voxels == GetExpected(way, pages, type.GetSampleBytes()));
    EXPECT_TRUE(tifftest::Read(name, 1).voxels == frame.voxels);
}

TEST(TiffLayouts, UnsignedNumbersOfAllSizes) {
    for (const int bits : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 24, 32, 64}) {
        const int bytes = bits <= 8 ? 1 : bits <= 16 ? 2 : bits <= 32 ? 4 : 8;
        for (const char* mode : {"wl", "wb", "w8b"}) {
            Way way;
            way.bits = bits;
            way.mode = mode;
            ExpectRead(way, {NumberKind::Unsigned, bytes});
            way.compression = COMPRESSION_LZW;
            ExpectRead(way, {NumberKind::Unsigned, bytes});
        }
    }
}

TEST(TiffLayouts, SignedFloatAndComplexNumbers) {
    struct Case {
        int format, bits;
        SampleType type;
    };
    for (const Case& each :
         {Case{SAMPLEFORMAT_INT, 8, {NumberKind::Signed, 1}}, Case{SAMPLEFORMAT_INT, 16, {NumberKind::Signed, 2}},
          Case{SAMPLEFORMAT_INT, 32, {NumberKind::Signed, 4}}, Case{SAMPLEFORMAT_INT, 64, {NumberKind::Signed, 8}},
          Case{SAMPLEFORMAT_IEEEFP, 32, {NumberKind::Float, 4}}, Case{SAMPLEFORMAT_IEEEFP, 64, {NumberKind::Float, 8}},
          Case{SAMPLEFORMAT_COMPLEXINT, 32, {NumberKind::ComplexSigned, 2}},
          Case{SAMPLEFORMAT_COMPLEXINT, 64, {NumberKind::ComplexSigned, 4}},
          Case{SAMPLEFORMAT_COMPLEXIEEEFP, 64, {NumberKind::ComplexFloat, 4}},
          Case{SAMPLEFORMAT_COMPLEXIEEEFP, 128, {NumberKind::ComplexFloat, 8}}}) {
        for (const char* mode : {"wl", "wb"}) {
            for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
                Way way;
                way.format = each.format;
                way.bits = each.bits;
                way.mode = mode;
                way.compression = compression;
                ExpectRead(way, each.type);
            }
        }
    }
}

TEST(TiffLayouts, ColourTogetherAndApartWithAndWithoutExtraSamples) {
    for (const int bits : {1, 4, 8, 12, 16, 24, 32, 64}) {
        const int bytes = bits <= 8 ? 1 : bits <= 16 ? 2 : bits <= 32 ? 4 : 8;
        for (const int planar : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
            for (const std::uint32_t tile : {0U, 32U}) {
                for (const auto& [samples, extra] :
                     {std::pair(1, 0), std::pair(2, 1), std::pair(3, 0), std::pair(4, 1)}) {
                    Way way;
                    way.bits = bits;
                    way.planar = planar;
                    way.tile = tile;
                    way.samples = samples;
                    way.extra = extra;
                    way.mode = bits % 3 == 0 ? "wb" : "wl";
                    ExpectRead(way, {NumberKind::Unsigned, bytes});
                    way.compression = COMPRESSION_PACKBITS;
                    ExpectRead(way, {NumberKind::Unsigned, bytes});
                }
            }
        }
    }
}

TEST(TiffLayouts, EveryPackingThatLosesNothing) {
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_DEFLATE, COMPRESSION_ADOBE_DEFLATE,
                                  COMPRESSION_LZMA, COMPRESSION_ZSTD}) {
        for (const std::uint32_t tile : {0U, 16U}) {
            Way way;
            way.bits = 16;
            way.compression = compression;
            way.tile = tile;
            ExpectRead(way, {NumberKind::Unsigned, 2});
            way.mode = "wb";
            ExpectRead(way, {NumberKind::Unsigned, 2});
        }
    }
    for (const int compression : {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
        Way way;
        way.bits = 1;
        way.compression = compression;
        ExpectRead(way, {NumberKind::Unsigned, 1});
    }
}

TEST(TiffLayouts, Predictors) {
    for (const int bits : {8, 16, 32, 64}) {
        for (const char* mode : {"wl", "wb"}) {
            Way way;
            way.bits = bits;
            way.mode = mode;
            way.compression = COMPRESSION_LZW;
            way.predictor = PREDICTOR_HORIZONTAL;
            ExpectRead(way, {NumberKind::Unsigned, bits / 8});
            way.samples = 3;
            way.tile = 32;
            ExpectRead(way, {NumberKind::Unsigned, bits / 8});
        }
    }
    for (const int bits : {32, 64}) {
        Way way;
        way.bits = bits;
        way.format = SAMPLEFORMAT_IEEEFP;
        way.compression = COMPRESSION_ADOBE_DEFLATE;
        way.predictor = PREDICTOR_FLOATINGPOINT;
        ExpectRead(way, {NumberKind::Float, bits / 8});
    }
}

TEST(TiffLayouts, OddSizes) {
    for (const auto& [width, height, pages] :
         {std::tuple(1U, 1U, 1U), std::tuple(1U, 61U, 2U), std::tuple(61U, 1U, 2U), std::tuple(17U, 33U, 1U)}) {
        for (const int bits : {1, 8, 12, 16}) {
            for (const std::uint32_t tile : {0U, 16U}) {
                for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW}) {
                    Way way;
                    way.width = width;
                    way.height = height;
                    way.pages = pages;
                    way.bits = bits;
                    way.tile = tile;
                    way.compression = compression;
                    ExpectRead(way, {NumberKind::Unsigned, bits <= 8 ? 1 : 2});
                }
            }
        }
    }
}

TEST(TiffLayouts, LargePackedStacksAreSharedByTwoThreads) {
    // 6 pages of 300 x 500 x 2 = 300,000 bytes: above the size from which a second thread helps.
    for (const std::uint32_t rows : {500U, 7U}) {
        for (const int planar : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
            Way way;
            way.width = 300;
            way.height = 500;
            way.pages = 6;
            way.bits = 16;
            way.samples = planar == PLANARCONFIG_SEPARATE ? 3 : 1;
            way.planar = planar;
            way.rowsPerStrip = rows;
            way.compression = COMPRESSION_LZW;
            ExpectRead(way, {NumberKind::Unsigned, 2});
        }
    }
}

TEST(TiffLayouts, HalfFloatsBecomeFloats) {
    const ScratchFolder folder;
    const std::string name = folder / "half.tif";
    // 1, -2, 65504 (the largest), 2^-24 (the smallest), 1 + 2^-10, infinity.
    const std::vector<std::uint64_t> halves = {0x3C00, 0xC000, 0x7BFF, 0x0001, 0x3C01, 0x7C00};
    for (const tifftest::Order order : {tifftest::Order::Little, tifftest::Order::Big}) {
        tifftest::TiffBuilder builder(order);
        const std::size_t at = builder.AddNumbers(halves, 2);
        builder.AddDirectory(tifftest::PlainTags(3, 2, 16, at) +
                             std::vector<tifftest::TiffBuilder::Tag>{{339, 3, {3}}});
        WriteBytes(name, builder.GetFile());
        const tifftest::Frame frame = tifftest::Read(name);
        EXPECT_TRUE(frame.header.sample == (SampleType{NumberKind::Float, 4}));
        EXPECT_TRUE(frame.header.halfFloat);
        EXPECT_EQ(frame.header.storedBits, 16);
        EXPECT_EQ(frame.GetNumbers<float>(), (std::vector<float>{1.0F, -2.0F, 65504.0F, 0x1p-24F, 1.0009765625F,
                                                                 std::numeric_limits<float>::infinity()}));
    }
}

TEST(TiffLayouts, BitsReversedInTheirBytes) {
    const ScratchFolder folder;
    const std::string name = folder / "reversed.tif";
    tifftest::TiffBuilder builder;
    // 4 x 1 pixels of 2 bits: 1, 2, 3, 0 = 01 10 11 00; the lowest bit of the byte comes first: 0011 0110.
    const std::size_t at = builder.Add(0x36, 1);
    builder.AddDirectory(tifftest::PlainTags(4, 1, 2, at) + std::vector<tifftest::TiffBuilder::Tag>{{266, 3, {2}}});
    WriteBytes(name, builder.GetFile());
    EXPECT_EQ(tifftest::Read(name).GetNumbers<std::uint8_t>(), (std::vector<std::uint8_t>{1, 2, 3, 0}));
}

TEST(TiffLayouts, PaletteComesWithItsIndexes) {
    const ScratchFolder folder;
    const std::string name = folder / "palette.tif";
    tifftest::TiffBuilder builder(tifftest::Order::Big);
    const std::size_t at = builder.Add(0x1B, 1); // 00 01 10 11
    auto tags = tifftest::PlainTags(4, 1, 2, at);
    tags[4].values = {3};
    tags.push_back({320, 3, {0, 10, 20, 0xFFFF, 1, 11, 21, 31, 2, 12, 22, 0x8001}});
    builder.AddDirectory(tags);
    WriteBytes(name, builder.GetFile());
    const tifftest::Frame frame = tifftest::Read(name);
    EXPECT_EQ(frame.GetNumbers<std::uint8_t>(), (std::vector<std::uint8_t>{0, 1, 2, 3}));
    using Colour = kep::RGB_generic<unsigned short>;
    EXPECT_TRUE(frame.header.palette == (std::vector<Colour>{Colour(0, 1, 2), Colour(10, 11, 12), Colour(20, 21, 22),
                                                             Colour(0xFFFF, 31, 0x8001)}));
}

} // namespace
