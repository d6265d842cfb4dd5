// Blocks that hold what their page promises, less, or more.

#include "tests/core/kepcore/tiff_streams.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::HasSubstr;
using tifftest::Block;
using tifftest::GetPackings;
using tifftest::MakeBlockFile;
using tifftest::MakeRows;
using tifftest::Packing;
using Tags = std::vector<tifftest::TiffBuilder::Tag>;
using tifftest::PackRows;

constexpr unsigned width = 32;
constexpr unsigned height = 16;

/// The samples of rows, as the reader unpacks them.
std::vector<std::uint8_t> GetSamples(const Packing& packing, const std::string& rows) {
    std::vector<std::uint8_t> samples;
    for (const char byte : rows) {
        const auto value = static_cast<std::uint8_t>(byte);
        if (packing.bits == 8)
            samples.push_back(value);
        for (unsigned i = 0; packing.bits == 1 && i < 8; ++i)
            samples.push_back(static_cast<std::uint8_t>(value >> (7 - i) & 1U));
    }
    return samples;
}

class TiffStreams : public ::testing::Test {
protected:
    std::string FailureOf(const std::string& bytes) const {
        WriteBytes(name, bytes);
        return tifftest::GetFailure(name);
    }
    /// Expects that a stream is read as the usual rows.
    void ExpectRead(const Packing& packing, Block block, const std::string& stream) const {
        SCOPED_TRACE(packing.name);
        EXPECT_EQ(FailureOf(MakeBlockFile(packing, block, width, height, stream)), "");
        if (packing.IsExact() && !HasFailure()) {
            EXPECT_EQ(tifftest::Read(name).GetNumbers<std::uint8_t>(),
                      GetSamples(packing, MakeRows(packing, width, height)));
        }
    }

    std::string Damaged(const std::string& what) const {
        return "ReadImage(): The file '" + name + "' is damaged: " + what;
    }

    ScratchFolder folder;
    std::string name = folder / "image.tif";
};

TEST_F(TiffStreams, SoundOnesAreRead) {
    for (const Packing& packing : GetPackings())
        for (const Block block : {Block::Strip, Block::Tile})
            ExpectRead(packing, block, PackRows(packing, width, MakeRows(packing, width, height)));
}

TEST_F(TiffStreams, BytesOfPaddingBehindThemAreNoDamage) {
    for (const Packing& packing : GetPackings())
        for (const Block block : {Block::Strip, Block::Tile})
            for (const std::size_t padding : {1U, 2U, 3U, 16U})
                ExpectRead(packing, block,
                           PackRows(packing, width, MakeRows(packing, width, height)) + std::string(padding, '\0'));
}

TEST_F(TiffStreams, BytesBehindAPlainBlockAreNotItsVoxels) {
    // 4 x 4 pixels in three planes of 16 bytes. With counts of 15 the next plane's bytes would stand in for the last.
    const auto planes = [](const std::vector<std::uint64_t>& counts) {
        tifftest::TiffBuilder builder;
        auto tags = tifftest::PlainTags(4, 4, 8, 0);
        tags[2].values = {8, 8, 8};
        tags[4].values = {2};
        const std::size_t at = builder.AddBytes(std::string(16, 'r') + std::string(16, 'g') + std::string(16, 'b'));
        tags[5].values = {at, at + 16, at + 32};
        tags[6].values = {3};
        tags[8].values = counts;
        builder.AddDirectory(tags + Tags{{284, 3, {2}}});
        return builder.GetFile();
    };
    EXPECT_EQ(FailureOf(planes({16, 16, 16})), "");
    EXPECT_EQ(FailureOf(planes({16, 17, 20})), "") << "what is too much is padding";
    const std::string text = "its voxels end before they should";
    EXPECT_EQ(FailureOf(planes({16, 15, 15})), Damaged("page 1, row 0, component 2: " + text));
    EXPECT_EQ(FailureOf(planes({16, 16, 15})), Damaged("page 1, row 0, component 3: " + text));
    EXPECT_EQ(FailureOf(planes({16, 16})), Damaged("page 1, row 0, component 3: its size is not given"));

    // Two strips of 4 x 2 samples of 12 bits, 12 bytes each, and the same as one; a tile of 16 x 16 samples.
    const auto strips = [](const std::vector<std::uint64_t>& counts) {
        tifftest::TiffBuilder builder;
        auto tags = tifftest::PlainTags(4, 4, 12, 0);
        const std::size_t at = builder.AddBytes(std::string(24, 'x'));
        tags[5].values = counts.size() == 1 ? std::vector<std::uint64_t>{at} : std::vector<std::uint64_t>{at, at + 12};
        tags[7].values = {counts.size() == 1 ? 4U : 2U};
        tags[8].values = counts;
        builder.AddDirectory(tags);
        return builder.GetFile();
    };
    EXPECT_EQ(FailureOf(strips({12, 12})), "");
    EXPECT_EQ(FailureOf(strips({24})), "");
    EXPECT_EQ(FailureOf(strips({11, 12})), Damaged("page 1, row 0: " + text));
    EXPECT_EQ(FailureOf(strips({12, 11})), Damaged("page 1, row 2: " + text));
    EXPECT_EQ(FailureOf(strips({23})), Damaged("page 1, row 0: " + text));
    const auto tile = [](std::uint64_t bytes) {
        tifftest::TiffBuilder builder;
        auto tags = tifftest::PlainTags(20, 4, 8, 0);
        const std::size_t at = builder.AddBytes(std::string(600, 'x'));
        tags[5] = {322, 4, {16}};
        tags[7] = {323, 4, {16}};
        tags[8] = {324, 4, {at, at + 256}};
        builder.AddDirectory(tags + Tags{{325, 4, {256, bytes}}});
        return builder.GetFile();
    };
    EXPECT_EQ(FailureOf(tile(256)), "");
    EXPECT_EQ(FailureOf(tile(255)), Damaged("page 1, row 0, column 16: " + text));
}

TEST_F(TiffStreams, ThoseThatEndElsewhereThanTheyMustAreDamage) {
    for (const tifftest::DamagedFile& file : tifftest::MakeDamagedFiles())
        EXPECT_THAT(FailureOf(file.bytes), HasSubstr("' is damaged: page 1, row 0")) << file.what;
}

/// A page of strips of 16 rows, the last one of which has fewer on the page.
std::string MakeStrips(const Packing& packing, unsigned rows, const std::vector<std::string>& streams) {
    tifftest::TiffBuilder builder;
    auto tags = tifftest::BlockTags(packing, Block::Strip, width, rows, 0, 0);
    tags[5].values.clear();
    tags[6].values = {height};
    tags[7].values.clear();
    for (const std::string& stream : streams) {
        tags[5].values.push_back(builder.AddBytes(stream));
        tags[7].values.push_back(stream.size());
    }
    builder.AddBytes(std::string(1000, '\x55'));
    builder.AddDirectory(tags);
    return builder.GetFile();
}

TEST_F(TiffStreams, ALastStripThatIsPackedAsHighAsTheOthersIsCutToThePage) {
    for (const Packing& packing : GetPackings()) {
        SCOPED_TRACE(packing.name);
        const std::string rows = MakeRows(packing, width, height);
        const std::string full = PackRows(packing, width, rows);
        EXPECT_EQ(FailureOf(MakeStrips(packing, 19, {full, full})), "");
        if (packing.IsExact()) {
            const std::string three = rows.substr(0, 3 * rows.size() / height);
            EXPECT_EQ(tifftest::Read(name).GetNumbers<std::uint8_t>(), GetSamples(packing, rows + three));
        }
        const std::string four = PackRows(packing, width, MakeRows(packing, width, 4));
        const std::string two = PackRows(packing, width, MakeRows(packing, width, 2));
        EXPECT_THAT(FailureOf(MakeStrips(packing, 19, {full, two})), HasSubstr("' is damaged: page 1, row 16: "));
        if (packing.number == COMPRESSION_NONE)
            continue; // bytes behind the voxels are nothing to worry about
        EXPECT_THAT(FailureOf(MakeStrips(packing, 19, {full, four})), HasSubstr("' is damaged: page 1, row 16: "))
            << "neither its rows on the page nor all";
        EXPECT_THAT(FailureOf(MakeStrips(packing, 3, {full})), HasSubstr("' is damaged: page 1, row 0: "))
            << "a strip without others: the page says how many rows there are";
    }
}

TEST_F(TiffStreams, TheFirstOfSeveralDamagedStripsIsNamedWhicheverThreadMeetsItsOwnFirst) {
    // 2000 strips of 16 rows of 32 bytes: twice the size from which a second thread comes from the back.
    const Packing lzw{"LZW", COMPRESSION_LZW};
    const std::string sound = PackRows(lzw, width, MakeRows(lzw, width, height));
    std::vector<std::string> streams(2000, sound);
    streams[1200] = streams[1990] = streams[1999] = "no LZW data";
    WriteBytes(name, MakeStrips(lzw, 2000 * height, streams));
    for (int i = 0; i < 20; ++i)
        EXPECT_THAT(tifftest::GetFailure(name), HasSubstr("' is damaged: page 1, row 19200: "));
}

TEST_F(TiffStreams, SamplesThatAPackingCannotHoldAreRefused) {
    const auto fail = [this](std::uint16_t packing, unsigned bits, const Tags& more) {
        return FailureOf([&] {
            tifftest::TiffBuilder builder;
            const std::size_t at = builder.AddBytes(std::string(500, '\x55'));
            builder.AddDirectory(tifftest::BlockTags({"", packing, bits}, Block::Strip, 8, 2, at, 500) + more);
            return builder.GetFile();
        }());
    };
    const std::string head = "ReadImage(): The voxel type of '" + name + "' is not supported: ";
    EXPECT_EQ(fail(COMPRESSION_CCITTFAX4, 8, {}), head + "1 samples of 8 bits as CCITT group 4.");
    EXPECT_EQ(fail(COMPRESSION_JPEG, 16, {}), head + "16-bit JPEG.");
    EXPECT_EQ(fail(COMPRESSION_LZW, 12, {{317, 3, {2}}}), head + "12-bit samples with predictor 2.");
    EXPECT_EQ(fail(COMPRESSION_LZW, 16, {{317, 3, {3}}}), head + "16-bit samples with predictor 3.");
    EXPECT_EQ(fail(COMPRESSION_LZW, 16, {{317, 3, {9}}}), head + "16-bit samples with predictor 9.");
    EXPECT_THAT(fail(COMPRESSION_PACKBITS, 16, {{317, 3, {9}}}), HasSubstr("is damaged: page 1, row 0"))
        << "where the compression knows no predictors, the tag means nothing";
}

} // namespace
