// Directories and descriptions, sound and hostile, made byte by byte.

#include "core/kepcore/tiff/kep_tiffwalk.h"
#include "tests/core/kepcore/tiff_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace {

using ::testing::HasSubstr;
using tifftest::Description;
using tifftest::GetFailure;
using tifftest::Kind;
using tifftest::MakeStack;
using tifftest::Order;
using tifftest::PlainTags;
using tifftest::TiffBuilder;
using Tag = TiffBuilder::Tag;
using Tags = std::vector<Tag>;
using Bytes = std::vector<std::uint8_t>;

class TiffPagesTest : public ::testing::Test {
protected:
    /// Writes the file and reads it, or takes its failure.
    std::string FailureOf(const TiffBuilder& builder) {
        WriteBytes(name, builder.GetFile());
        return GetFailure(name);
    }
    tifftest::Frame ReadBack(const TiffBuilder& builder) {
        WriteBytes(name, builder.GetFile());
        return tifftest::Read(name);
    }
    std::string Damaged(const std::string& what) const {
        return "ReadImage(): The file '" + name + "' is damaged: " + what;
    }

    ScratchFolder folder;
    std::string name = folder / "image.tif";
};

TEST_F(TiffPagesTest, SlicesComeInTheOrderOfPages) {
    for (const Order order : {Order::Little, Order::Big}) {
        for (const Kind kind : {Kind::Classic, Kind::Big}) {
            const auto frame = ReadBack(MakeStack(3, {}, order, kind));
            EXPECT_TRUE(frame.header.size == kep::Vector3d<std::size_t>(3, 2, 3));
            EXPECT_EQ(frame.GetNumbers<std::uint8_t>(),
                      (Bytes{0, 1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15, 20, 21, 22, 23, 24, 25}));
            EXPECT_EQ(frame.header.compression, "none");
            EXPECT_EQ(frame.header.format, kep::FF_TIFF);
        }
    }
}

TEST_F(TiffPagesTest, ReducedPagesAreLeftOut) {
    TiffBuilder builder = MakeStack(1);
    const std::size_t at = builder.AddNumbers({9}, 1);
    builder.AddDirectory(PlainTags(1, 1, 8, at) + Tags{{254, 4, {1}}});
    builder.AddDirectory(PlainTags(1, 1, 8, at) + Tags{{255, 3, {2}}}); // an older way to say the same
    EXPECT_EQ(ReadBack(builder).GetNumbers<std::uint8_t>(), (Bytes{0, 1, 2, 3, 4, 5}));

    TiffBuilder alone;
    alone.AddDirectory(PlainTags(1, 1, 8, alone.AddNumbers({9}, 1)) + Tags{{254, 4, {1}}});
    EXPECT_EQ(ReadBack(alone).GetNumbers<std::uint8_t>(), (Bytes{9})) << "a reduced page is better than none";
}

TEST_F(TiffPagesTest, PagesMustAgree) {
    const std::string differ = "ReadImage(): The pages of '" + name + "' differ in size or type.";
    struct Change {
        std::size_t tag;
        std::uint64_t value;
    };
    // Of the second page: width, height, bits, meaning of 0 and 1.
    for (const Change& change : {Change{0, 2}, Change{1, 1}, Change{2, 4}, Change{4, 0}}) {
        TiffBuilder builder = MakeStack(1);
        Tags tags = PlainTags(3, 2, 8, 8);
        tags[change.tag].values = {change.value};
        builder.AddDirectory(tags);
        EXPECT_EQ(FailureOf(builder), differ) << change.tag;
    }
    TiffBuilder builder = MakeStack(1);
    builder.AddDirectory(PlainTags(3, 2, 8, 8) + Tags{{339, 3, {2}}});
    EXPECT_EQ(FailureOf(builder), differ);
}

TEST_F(TiffPagesTest, PagesMayDifferInHowTheyAreStored) {
    TiffBuilder builder = MakeStack(1);
    const std::size_t at =
        builder.AddBytes(std::string("\x05\x0A\x0B\x0C\x0D\x0E\x0F", 7)); // PackBits: 6 bytes as they are
    Tags tags = PlainTags(3, 2, 8, at);
    tags[3].values = {32773};
    tags[8].values = {7};
    builder.AddDirectory(tags);
    EXPECT_EQ(ReadBack(builder).GetNumbers<std::uint8_t>(), (Bytes{0, 1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15}));
}

TEST_F(TiffPagesTest, PalettesMustAgreeToo) {
    const auto add = [](TiffBuilder& builder, std::uint64_t last) {
        const std::size_t at = builder.Add(0x80, 1);
        Tags tags = PlainTags(2, 1, 1, at);
        tags[4].values = {3};
        tags[8].values = {1};
        builder.AddDirectory(tags + Tags{{320, 3, {0, 1, 0, 2, 0, last}}});
    };
    TiffBuilder same;
    add(same, 3);
    add(same, 3);
    EXPECT_EQ(ReadBack(same).GetNumbers<std::uint8_t>(), (Bytes{1, 0, 1, 0}));
    TiffBuilder other;
    add(other, 3);
    add(other, 4);
    EXPECT_EQ(FailureOf(other), "ReadImage(): The pages of '" + name + "' differ in size or type.");
}

TEST_F(TiffPagesTest, SeveralFramesOrChannelsAreRefused) {
    EXPECT_EQ(FailureOf(MakeStack(6, Description("ImageJ=1.53c\nimages=6\nslices=3\nframes=2\n"))),
              "ReadImage(): '" + name + "' holds 2 time points; one file must hold one frame.");
    EXPECT_EQ(FailureOf(MakeStack(6, Description("ImageJ=1.53c\nimages=6\nslices=3\nchannels=2\n"))),
              "ReadImage(): '" + name + "' holds 2 channels; one frame holds one.");
    EXPECT_EQ(FailureOf(MakeStack(6, Description("ImageJ=1.53c\nimages=6\nframes=3\nchannels=2\n"))),
              "ReadImage(): '" + name + "' holds 2 channels and 3 time points; one frame holds one of each.");
    EXPECT_EQ(FailureOf(MakeStack(2, Description("<OME><Image><Pixels/></Image><Image><Pixels/></Image></OME>"))),
              "ReadImage(): '" + name + "' holds 2 images; one file must hold one frame.");
}

TEST_F(TiffPagesTest, ThreeChannelsLieTogetherInAVoxel) {
    // Pages 0 to 5; ImageJ: channels of slice 0, then of slice 1. First pixel of page k: 10 k.
    const auto together = ReadBack(MakeStack(6, Description("ImageJ=1.53c\nimages=6\nchannels=3\nslices=2\n")));
    EXPECT_TRUE(together.header.componentsAreChannels);
    EXPECT_EQ(together.header.components, 3);
    EXPECT_TRUE(together.header.size == kep::Vector3d<std::size_t>(3, 2, 2));
    const Bytes voxels = together.GetNumbers<std::uint8_t>();
    ASSERT_EQ(voxels.size(), 36U);
    EXPECT_EQ(Bytes(voxels.begin(), voxels.begin() + 6), (Bytes{0, 10, 20, 1, 11, 21}));
    EXPECT_EQ(Bytes(voxels.begin() + 18, voxels.begin() + 24), (Bytes{30, 40, 50, 31, 41, 51}));

    // OME-XML with z before c: pages 0, 2 and 4 are the channels of slice 0.
    const auto apart = ReadBack(MakeStack(
        6, Description(
               "<OME><Image><Pixels DimensionOrder=\"XYZCT\" SizeZ=\"2\" SizeC=\"3\" SizeT=\"1\"/></Image></OME>")));
    const Bytes others = apart.GetNumbers<std::uint8_t>();
    ASSERT_EQ(others.size(), 36U);
    EXPECT_EQ(Bytes(others.begin(), others.begin() + 6), (Bytes{0, 20, 40, 1, 21, 41}));
    EXPECT_EQ(Bytes(others.begin() + 18, others.begin() + 24), (Bytes{10, 30, 50, 11, 31, 51}));

    EXPECT_EQ(FailureOf(MakeStack(4, Description("ImageJ=1.53c\nimages=4\nchannels=3\n"))),
              Damaged("its 4 pages are not whole slices of 3 channels"));
}

TEST_F(TiffPagesTest, SamplesWithoutAMeaningAreChannels) {
    const auto make = [](unsigned samples, const Tags& more) {
        TiffBuilder builder;
        std::vector<std::uint64_t> numbers(samples * 2);
        std::iota(numbers.begin(), numbers.end(), 1);
        Tags tags = PlainTags(2, 1, 8, builder.AddNumbers(numbers, 1));
        tags[2].values.assign(samples, 8);
        tags[6].values = {samples};
        tags[8].values = {samples * 2};
        builder.AddDirectory(tags + more);
        return builder;
    };
    const auto three = ReadBack(make(3, {}));
    EXPECT_TRUE(three.header.componentsAreChannels);
    EXPECT_EQ(three.GetNumbers<std::uint8_t>(), (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(FailureOf(make(2, {})), "ReadImage(): '" + name + "' holds 2 channels; one frame holds one.");
    // Called extra, they are dropped.
    EXPECT_EQ(ReadBack(make(3, {{338, 3, {0, 0}}})).GetNumbers<std::uint8_t>(), (Bytes{1, 4}));
    EXPECT_EQ(FailureOf(make(5, {})), "ReadImage(): '" + name + "' holds 5 channels; one frame holds one.");
    EXPECT_EQ(FailureOf(make(5, {{338, 3, {0, 0, 0, 0}}})),
              "ReadImage(): '" + name + "' holds 5 channels; one frame holds one.");
    EXPECT_EQ(FailureOf(make(5, {{338, 3, {1, 0, 0, 0}}})),
              "ReadImage(): The voxel type of '" + name + "' is not supported: 5 samples a pixel.");
}

TEST_F(TiffPagesTest, ColourIsNotThreeChannelsMore) {
    TiffBuilder builder;
    Tags tags = PlainTags(1, 1, 8, builder.AddNumbers({7, 8, 9}, 1));
    tags[2].values = {8, 8, 8};
    tags[4].values = {2};
    tags[6].values = {3};
    builder.AddDirectory(tags + Description("ImageJ=1.54f\nchannels=3\nmode=composite\n"));
    const auto frame = ReadBack(builder);
    EXPECT_FALSE(frame.header.componentsAreChannels);
    EXPECT_EQ(frame.GetNumbers<std::uint8_t>(), (Bytes{7, 8, 9}));
}

/// One directory for a block of 2 x 1 pixels of 16 bits a slice, numbers counting from 1.
TiffBuilder MakeBlock(unsigned slices, unsigned promised, Order order) {
    TiffBuilder builder(order);
    std::vector<std::uint64_t> numbers(slices * 2);
    std::iota(numbers.begin(), numbers.end(), 1);
    const std::size_t at = builder.AddNumbers(numbers, 2);
    const std::string count = std::to_string(promised);
    builder.AddDirectory(PlainTags(2, 1, 16, at) +
                         Description("ImageJ=1.53c\nimages=" + count + "\nslices=" + count + "\n"));
    return builder;
}

TEST_F(TiffPagesTest, MorePromisedSlicesThanPagesAreOneBlock) {
    for (const Order order : {Order::Little, Order::Big}) {
        const auto frame = ReadBack(MakeBlock(4, 4, order));
        EXPECT_TRUE(frame.header.size == kep::Vector3d<std::size_t>(2, 1, 4));
        EXPECT_EQ(frame.GetNumbers<std::uint16_t>(), (std::vector<std::uint16_t>{1, 2, 3, 4, 5, 6, 7, 8}));
        EXPECT_EQ(tifftest::Read(name, 1).GetNumbers<std::uint16_t>(), frame.GetNumbers<std::uint16_t>());
    }
    // Longer than what is there, by slices that the rest of the file could not hold.
    const std::string text = FailureOf(MakeBlock(4, 400, Order::Little));
    EXPECT_EQ(text, Damaged("its description promises 400 pages, and it holds 1"));
    EXPECT_EQ(FailureOf(MakeBlock(4, 4000000000U, Order::Little)),
              Damaged("its description promises 4000000000 pages, and it holds 1"));
}

TEST_F(TiffPagesTest, WhatTheFileNeedsItselfIsNoSlice) {
    // 4 x 3 voxels, 12 bytes, and a description of three slices: 24 bytes more, in which there is something else.
    const Tags threeSlices = Description("ImageJ=1.53c\nimages=3\nslices=3\n");
    const std::string text = Damaged("its description promises 3 pages, and it holds 1; where the others should be, it "
                                     "has something else");
    TiffBuilder directory;
    directory.AddDirectory(PlainTags(4, 3, 8, directory.AddBytes("abcdefghijkl")) + threeSlices);
    directory.AddBytes(std::string(36, 'x')); // behind the directory there would be room
    EXPECT_EQ(FailureOf(directory), text) << "the description itself, then the directory";

    TiffBuilder header;
    header.AddBytes(std::string(36, 'x'));
    header.AddDirectory(PlainTags(4, 3, 8, 4) + threeSlices);
    EXPECT_EQ(FailureOf(header), text) << "the first slice begins in the header";

    // A second directory: a smaller copy, of which nothing is read.
    TiffBuilder reduced;
    const std::size_t at = reduced.AddBytes("abcdefghijkl");
    const std::size_t link = reduced.AddDirectory({{254, 4, {1}}, {256, 4, {1}}, {257, 4, {1}}, {273, 4, {8}}});
    EXPECT_EQ(link, at + 12);
    reduced.AddDirectory(PlainTags(4, 3, 8, at) + threeSlices);
    EXPECT_EQ(FailureOf(reduced), text);

    // A directory that a tag names, and values of a tag that nobody here knows.
    for (const Tag& tag : {Tag{330, 4, {28}}, Tag{65000, 1, {28, 0, 0, 0}, 8}}) {
        TiffBuilder named;
        named.AddBytes("abcdefghijkl" + std::string(24, 'x'));
        named.AddDirectory(PlainTags(4, 3, 8, 8) + threeSlices + Tags{tag});
        EXPECT_EQ(FailureOf(named), text) << tag.number;
    }

    TiffBuilder sound;
    sound.AddBytes("abcdefghijkl" + std::string(24, 'x'));
    sound.AddDirectory(PlainTags(4, 3, 8, 8) + threeSlices + Tags{{330, 4, {44}}, {65000, 1, {44, 0, 0, 0}, 8}});
    EXPECT_EQ(ReadBack(sound).header.size.z, 3U);
}

TEST_F(TiffPagesTest, PagesWithOthersBetweenAreNoBlock) {
    EXPECT_EQ(FailureOf(MakeStack(2, Description("ImageJ=1.53c\nimages=3\n"))),
              Damaged("its description promises 3 pages, and it holds 2"));
    EXPECT_EQ(ReadBack(MakeStack(3, Description("ImageJ=1.53c\nimages=2\n"))).header.size.z, 3U)
        << "pages that are there count, whatever the description forgot";
}

TEST_F(TiffPagesTest, ThePageOfAnEndlessChainIsNamed) {
    TiffBuilder builder = MakeStack(3);
    builder.LinkTo(14); // the first directory: 8 bytes of head, 6 of voxels
    EXPECT_EQ(FailureOf(builder), Damaged("page 4: its directory was there before, so the pages never end"));
}

TEST_F(TiffPagesTest, DirectoriesBeyondTheEndAreDamage) {
    TiffBuilder beyond = MakeStack(2);
    beyond.LinkTo(5000);
    EXPECT_EQ(FailureOf(beyond), Damaged("page 3: its directory lies beyond the end of the file"));
    TiffBuilder huge = MakeStack(1, {}, Order::Little, Kind::Big);
    huge.LinkTo(0xFFFFFFFFFFFFFFF0U);
    EXPECT_EQ(FailureOf(huge), Damaged("page 2: its directory lies beyond the end of the file"));
    // Cut off within the last directory, at every byte.
    const std::string whole = MakeStack(2).GetFile();
    for (std::size_t cut = 1; cut <= 9 * 12 + 4; ++cut) {
        WriteBytes(name, whole.substr(0, whole.size() - cut));
        EXPECT_THAT(GetFailure(name), HasSubstr("is damaged: page 2")) << cut;
    }
}

TEST_F(TiffPagesTest, HeadersCutOffAreDamage) {
    for (const Kind kind : {Kind::Classic, Kind::Big}) {
        const std::string whole = MakeStack(1, {}, Order::Big, kind).GetFile();
        for (std::size_t cut = 0; cut < (kind == Kind::Big ? 16U : 8U); ++cut) {
            WriteBytes(name, whole.substr(0, cut));
            EXPECT_THAT(GetFailure(name), HasSubstr("' is damaged: it ")) << cut;
        }
    }
}

TEST_F(TiffPagesTest, DirectoriesOfNoOrTooManyEntriesAreDamage) {
    for (const std::uint64_t entries : {0U, 513U, 65535U}) {
        TiffBuilder builder;
        builder.Put(4, 8, 4);
        builder.Add(entries, 2);
        builder.AddBytes(std::string(513 * 12 + 4, '\0'));
        EXPECT_EQ(FailureOf(builder), Damaged("page 1: its directory claims " + std::to_string(entries) + " entries"));
    }
}

TEST_F(TiffPagesTest, TagsThatPromiseMoreThanTheFileAreDamage) {
    const std::string text = Damaged("page 1: its tags promise more bytes than the file has");
    EXPECT_EQ(FailureOf(MakeStack(1, {{65000, 4, {8}, 0x40000000}})), text);
    EXPECT_EQ(FailureOf(MakeStack(1, {{65000, 12, {8}, 0x2000000000000001}}, Order::Little, Kind::Big)), text);
    // Many tags that name the same bytes.
    Tags many;
    for (unsigned i = 0; i < 400; ++i)
        many.push_back({65000 + i, 1, {8}, 1000});
    EXPECT_EQ(FailureOf(MakeStack(1, many)), text);
}

TEST_F(TiffPagesTest, StacksThatShareLargeValuesWithoutEndAreDamage) {
    // 200 pages of some 120 bytes that all name the same 20,000 bytes: 4 MB of tags in a file of 44 KB.
    TiffBuilder builder;
    const std::size_t shared = builder.AddBytes(std::string(20000, 'x'));
    const std::size_t at = builder.AddNumbers({0}, 1);
    for (int page = 0; page < 200; ++page)
        builder.AddDirectory(PlainTags(1, 1, 8, at) + Tags{{270, 2, {shared & 0xFF, shared >> 8U, 0, 0}, 20000}});
    EXPECT_THAT(FailureOf(builder), HasSubstr("its tags and those before promise more bytes than the file has"));
}

TEST_F(TiffPagesTest, OverlappingDirectoriesAreDamage) {
    // Directories of one entry, 18 bytes each, that begin 6 bytes apart: a cell holds the count of its own directory
    // and the link of the one two cells before, which leads to the next. After 134 of them 2,412 bytes are promised by
    // a file of 8 + 400 * 6 = 2,408.
    TiffBuilder builder;
    builder.Put(4, 8, 4);
    for (unsigned cell = 0; cell < 400; ++cell) {
        builder.Add(1, 2);
        builder.Add(cell < 2 ? 0 : 8 + (cell - 1) * 6, 4);
    }
    WriteBytes(name, builder.GetFile());
    const kep::detail::InputFile file(name);
    const kep::detail::TiffValues values(file);
    kep::detail::TiffWalk walk(values);
    kep::detail::TiffDirectory directory;
    try {
        while (walk.Next(directory))
            ASSERT_LT(walk.GetCount(), 134U);
        ADD_FAILURE() << "walked to the end";
    } catch (const kep::IOException& failure) {
        EXPECT_EQ(failure.GetText(), Damaged("page 134: its directory overlaps others"));
    }
}

TEST_F(TiffPagesTest, ImpossibleSizesAreDamage) {
    const auto fail = [this](std::size_t tag, std::uint64_t value) {
        TiffBuilder builder;
        Tags tags = PlainTags(3, 2, 8, builder.AddBytes("abcdef"));
        tags[tag].values = {value};
        builder.AddDirectory(tags);
        return FailureOf(builder);
    };
    EXPECT_EQ(fail(0, 0), Damaged("its width is 0"));
    EXPECT_EQ(fail(1, 0x80000000), Damaged("its height is 2147483648"));
    EXPECT_EQ(fail(0, 0x7FFFFFFF), Damaged("its pages promise more voxels than the file can hold"));
    EXPECT_EQ(fail(7, 0), Damaged("its strips have no rows"));
    EXPECT_EQ(fail(5, 0xFFFFFFF0), Damaged("page 1, row 0: its voxels lie outside the file"));
    EXPECT_EQ(fail(5, 0), Damaged("page 1, row 0: its voxels lie outside the file"));
    EXPECT_EQ(fail(7, 1), Damaged("page 1, row 1: its position is not given"));
    EXPECT_EQ(fail(8, 1), "") << "the size of a page in one strip is known";
    EXPECT_EQ(fail(7, 4000), "") << "rows beyond the page";
}

TEST_F(TiffPagesTest, SmallFilesThatPromiseMuchAreDamageBeforeMemoryIsTaken) {
    for (const std::uint64_t compression : {1U, 4U, 5U, 8U, 32773U, 34925U, 50000U}) {
        TiffBuilder builder;
        Tags tags = PlainTags(0x7FFFFFF, 30000, 16, builder.AddBytes("abcdef"));
        tags[3].values = {compression};
        builder.AddDirectory(tags);
        WriteBytes(name, builder.GetFile());
        try {
            tifftest::Open(name);
            ADD_FAILURE() << compression;
        } catch (const kep::IOException& failure) {
            EXPECT_EQ(failure.GetText(), Damaged("its pages promise more voxels than the file can hold"))
                << compression;
        }
    }
}

TEST_F(TiffPagesTest, FaxRunsPromiseNoMoreThanTheirCodesCanSay) {
    const auto fail = [this](std::uint64_t compression, std::uint64_t options) {
        TiffBuilder builder;
        Tags tags = PlainTags(400'000, 16, 1, builder.AddBytes("abcdef")); // 800 KB unpacked
        tags[3].values = {compression};
        tags.push_back({292, 4, {options}});
        builder.AddDirectory(tags);
        return FailureOf(builder);
    };
    const std::string promise = Damaged("its pages promise more voxels than the file can hold");
    EXPECT_EQ(fail(2, 0), promise);
    EXPECT_EQ(fail(3, 0), promise);
    EXPECT_EQ(fail(3, 4), promise) << "filled up to whole bytes";
    const std::string later = Damaged("page 1, row 0: its voxels lie outside the file");
    EXPECT_EQ(fail(3, 1), later) << "rows that are equal may take a bit each";
    EXPECT_EQ(fail(4, 0), later);
}

TEST_F(TiffPagesTest, TooManyOrTooLargeTilesAreDamage) {
    const auto fail = [this](std::uint64_t width, std::uint64_t height, std::uint64_t tile) {
        TiffBuilder builder;
        Tags tags = PlainTags(3, 2, 8, builder.AddBytes("abcdef"));
        tags[0].values = {width};
        tags[1].values = {height};
        tags[5].number = 324;
        tags[7] = {322, 4, {tile}};
        tags[8] = {323, 4, {tile}};
        builder.AddDirectory(tags);
        return FailureOf(builder);
    };
    EXPECT_EQ(fail(5000, 5000, 1), Damaged("it claims 25000000 strips or tiles a page"));
    EXPECT_EQ(fail(3, 2, 1025), Damaged("its tiles are larger than its pages"));
    EXPECT_EQ(fail(3, 2, 0), Damaged("its tiles' width is 0"));
    EXPECT_EQ(fail(3, 2, 1024), Damaged("its pages promise more voxels than the file can hold"));
}

TEST_F(TiffPagesTest, KindsThatAreNotReadAreNamed) {
    const auto fail = [this](std::size_t tag, std::uint64_t value, std::uint64_t samples = 1,
                             std::uint64_t format = 1) {
        TiffBuilder builder;
        Tags tags = PlainTags(3, 2, 8, builder.AddBytes(std::string(4000, 'x')));
        tags[6].values = {samples};
        tags[tag].values = {value};
        builder.AddDirectory(tags + Tags{{339, 3, {format}}});
        const std::string text = FailureOf(builder);
        const std::string head = "ReadImage(): The voxel type of '" + name + "' is not supported: ";
        EXPECT_TRUE(text.starts_with(head)) << text;
        return text.substr(std::min(head.size(), text.size()));
    };
    EXPECT_EQ(fail(4, 5, 4), "CMYK.");
    EXPECT_EQ(fail(4, 8, 3), "Lab.");
    EXPECT_EQ(fail(4, 6, 3), "YCbCr that is not JPEG.");
    EXPECT_EQ(fail(4, 32803), "colour filter array.");
    EXPECT_EQ(fail(4, 1000), "photometric interpretation 1000.");
    EXPECT_EQ(fail(3, 6), "compression old JPEG.");
    EXPECT_EQ(fail(3, 34712), "compression JPEG 2000.");
    EXPECT_EQ(fail(3, 50001), "compression WebP.");
    EXPECT_EQ(fail(3, 777), "compression 777.");
    EXPECT_EQ(fail(2, 17), "17-bit unsigned.");
    EXPECT_EQ(fail(2, 12, 1, 2), "12-bit signed.");
    EXPECT_EQ(fail(2, 24, 1, 3), "24-bit float.");
    EXPECT_EQ(fail(2, 32, 1, 6), "32-bit complex float.");
    EXPECT_EQ(fail(2, 8, 1, 9), "8-bit sample format 9.");
    EXPECT_EQ(fail(2, 0), "0-bit unsigned.");
}

TEST_F(TiffPagesTest, SamplesOfDifferentSizesAreRefused) {
    TiffBuilder builder;
    Tags tags = PlainTags(1, 1, 8, builder.AddBytes("abc"));
    tags[2].values = {5, 6, 5};
    tags[4].values = {2};
    tags[6].values = {3};
    builder.AddDirectory(tags);
    EXPECT_EQ(FailureOf(builder),
              "ReadImage(): The voxel type of '" + name + "' is not supported: samples of different sizes.");
}

TEST_F(TiffPagesTest, PackedVoxelsThatEndTooSoonNamePageAndRow) {
    TiffBuilder builder;
    // PackBits: the first strip of two rows gives six bytes, the second three of its three.
    const std::size_t first = builder.AddBytes(std::string("\xFB\x07", 2));
    const std::size_t second = builder.AddBytes(std::string("\xFF\x08", 2)); // two bytes only
    Tags tags = PlainTags(3, 3, 8, 0);
    tags[3].values = {32773};
    tags[5].values = {first, second};
    tags[7].values = {2};
    tags[8].values = {2, 2};
    builder.AddDirectory(tags);
    EXPECT_THAT(FailureOf(builder), HasSubstr(Damaged("page 1, row 2: ")));
}

TEST_F(TiffPagesTest, TagsAreReadInAllTheirWidths) {
    // Width as a byte, height as 64 bits, offset as 64 bits, a repeated tag that does not count.
    TiffBuilder builder(Order::Big, Kind::Big);
    const std::size_t at = builder.AddNumbers({1, 2, 3, 4, 5, 6}, 1);
    builder.AddDirectory({{256, 1, {3}}, {256, 1, {9}}, {257, 16, {2}}, {258, 3, {8}}, {273, 16, {at}}});
    const auto frame = ReadBack(builder);
    EXPECT_EQ(frame.GetNumbers<std::uint8_t>(), (Bytes{1, 2, 3, 4, 5, 6}));
    // As a text it means nothing.
    TiffBuilder text;
    text.AddDirectory({{256, 2, {'3'}}, {257, 3, {2}}});
    EXPECT_EQ(FailureOf(text), Damaged("the values of tag 256 are not whole numbers"));
}

TEST_F(TiffPagesTest, ResolutionAndWordsComeFromTheFirstPage) {
    const Tags more = {{282, 5, {15500, 1000}},
                       {283, 5, {31, 2}},
                       {296, 3, {1}},
                       TiffBuilder::Text(305, "maker 2"),
                       TiffBuilder::Text(270, "ImageJ=1.53c\nunit=\\u00B5m\nspacing=0.5\nxorigin=31\n")};
    for (const Order order : {Order::Little, Order::Big}) {
        const auto header = ReadBack(MakeStack(2, more, order)).header;
        EXPECT_TRUE(header.resolution == kep::Resolution(15.5F, 15.5F, 2.0F));
        EXPECT_TRUE(header.offset == kep::Vector3d<float>(-2, 0, 0)); // -31 / 15.5
        EXPECT_EQ(header.description.at("Software"), "maker 2");
    }
    const auto none = ReadBack(MakeStack(2, {{282, 5, {1, 0}}, {283, 5, {1, 0}}, {296, 3, {3}}})).header;
    EXPECT_TRUE(none.resolution == kep::Resolution()) << "divided by 0";
}

TEST_F(TiffPagesTest, LongWordsAreLookedThroughButNotCarriedAlongWhole) {
    // The number of times stands behind two million bytes. Of another text 2^20 bytes are kept, less one where the last
    // one would be half a micro sign.
    EXPECT_THAT(FailureOf(MakeStack(1, Description("<OME><!--" + std::string(2000000, 'x') +
                                                   "--><Image><Pixels SizeT=\"7\"/></Image></OME>"))),
                HasSubstr("holds 7 time points"));
    std::string micros(3, 'x');
    while (micros.size() < 1500000)
        micros += "\xC2\xB5";
    const auto frame = ReadBack(MakeStack(1, Description(micros)));
    EXPECT_EQ(frame.header.description.at("ImageDescription"), micros.substr(0, (1U << 20U) - 1));
}

TEST_F(TiffPagesTest, TenThousandPagesAreReadInOneGo) {
    // Linear: a second walk through all pages for each page would be 10^8 steps and show as the slowest test by far.
    TiffBuilder builder;
    for (unsigned k = 0; k < 10000; ++k)
        builder.AddDirectory(PlainTags(1, 1, 8, builder.AddNumbers({k % 251}, 1)));
    const Bytes voxels = ReadBack(builder).GetNumbers<std::uint8_t>();
    ASSERT_EQ(voxels.size(), 10000U);
    for (unsigned k = 0; k < 10000; ++k)
        ASSERT_EQ(voxels[k], k % 251);
}

} // namespace
