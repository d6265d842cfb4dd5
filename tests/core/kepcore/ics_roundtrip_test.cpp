// What is written comes back bit for bit.

#include "core/kepcore/ics/kep_icsgeometry.h"
#include "tests/core/kepcore/ics_support.h"
#include "tests/support/comma_locale.h"
#include "tests/support/file_size_limit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace ics_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Case {
    const char* name;
    SampleType sample;
    int components;
};

const std::vector<Case>& Cases() {
    static const std::vector<Case> cases = {
        {"uint8", {NumberKind::Unsigned, 1}, 1},         {"uint16", {NumberKind::Unsigned, 2}, 1},
        {"uint32", {NumberKind::Unsigned, 4}, 1},        {"uint64", {NumberKind::Unsigned, 8}, 1},
        {"sint8", {NumberKind::Signed, 1}, 1},           {"sint16", {NumberKind::Signed, 2}, 1},
        {"sint32", {NumberKind::Signed, 4}, 1},          {"sint64", {NumberKind::Signed, 8}, 1},
        {"real32", {NumberKind::Float, 4}, 1},           {"real64", {NumberKind::Float, 8}, 1},
        {"complex32", {NumberKind::ComplexFloat, 4}, 1}, {"complex64", {NumberKind::ComplexFloat, 8}, 1},
        {"rgb8", {NumberKind::Unsigned, 1}, 3},          {"rgb16", {NumberKind::Unsigned, 2}, 3},
        {"rgb float", {NumberKind::Float, 4}, 3},        {"rgb double", {NumberKind::Float, 8}, 3},
    };
    return cases;
}

TEST(IcsRoundTrip, EveryTypeWithOddSizes) {
    const ScratchFolder folder;
    const std::vector<kep::Vector3d<std::size_t>> sizes = {{7, 5, 3}, {1, 1, 1}, {1, 9, 1}, {31, 1, 4}, {257, 131, 5}};
    unsigned seed = 1;
    for (const Case& type : Cases()) {
        for (const auto& size : sizes) {
            for (const bool compress : {false, true}) {
                const Frame frame = MakeFrame(type.sample, type.components, size, seed++);
                SCOPED_TRACE(std::string(type.name) + (compress ? " gzip" : " plain") + " " + std::to_string(size.x));
                Write(folder / "a.ics", frame, compress);
                const Frame read = Read(folder / "a.ics");
                EXPECT_EQ(kep::FF_ICS, read.header.format);
                EXPECT_EQ(size, read.header.size);
                EXPECT_EQ(type.sample, read.header.sample);
                EXPECT_EQ(type.components, read.header.components);
                EXPECT_EQ(frame.header.resolution, read.header.resolution);
                EXPECT_EQ(frame.header.offset, read.header.offset);
                EXPECT_EQ(frame.header.description, read.header.description);
                EXPECT_EQ(compress ? "gzip" : "none", read.header.compression);
                EXPECT_EQ(std::filesystem::file_size(folder / "a.ics"), read.header.fileSize);
                EXPECT_EQ(static_cast<int>(8 * type.sample.GetSampleBytes()), read.header.storedBits);
                EXPECT_TRUE(frame.voxels == read.voxels);
            }
        }
    }
}

TEST(IcsRoundTrip, MoreThanOneBlockOfEachComponentIsPacked) {
    const ScratchFolder folder;
    for (const bool compress : {false, true}) {
        const Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 3, {1501, 997, 3}, 77);
        Write(folder / "a.ics", frame, compress);
        EXPECT_TRUE(frame.voxels == Read(folder / "a.ics").voxels);
    }
}

TEST(IcsRoundTrip, WhatRepeatsFromBlockToBlockIsPackedOnce) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1000, 1000, 3}, 78);
    const std::size_t period = 30000;
    for (std::size_t i = period; i < frame.voxels.size(); ++i)
        frame.voxels[i] = frame.voxels[i - period];
    Write(folder / "a.ics", frame, true);
    EXPECT_TRUE(frame.voxels == Read(folder / "a.ics").voxels);
    // 30,000 bytes of noise, and 3,000,000 / 258 repetitions of some three bytes; blocks that knew nothing of the
    // one before would cost 30,000 more each.
    EXPECT_LT(std::filesystem::file_size(folder / "a.ics"), 90000U);
}

/// What a reader makes of the texts that a writer makes of a geometry.
FrameHeader ReadBack(const kep::Resolution& resolution, const kep::Vector3d<float>& offset, std::size_t slices) {
    FrameHeader frame;
    frame.size = {1, 1, slices};
    frame.resolution = resolution;
    frame.offset = offset;
    frame.description = {{"note", "kept"}};
    kep::detail::IcsHeader header;
    const kep::Vector3d<float> res = resolution.GetRes();
    const std::array<std::pair<float, float>, 3> axes = {{{res.x, offset.x}, {res.y, offset.y}, {res.z, offset.z}}};
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const auto texts = kep::detail::MakeIcsAxisTexts(axes[i].first, axes[i].second);
        header.axes.push_back({std::string(1, "xyz"[i]), i == 2 ? slices : 1, texts.origin, texts.scale, texts.unit});
    }
    header.history = kep::detail::MakeIcsHistory(frame);
    FrameHeader read;
    read.size = frame.size;
    kep::detail::TakeIcsGeometry(header, read);
    EXPECT_EQ(frame.description, read.description); // lines of our own don't show
    return read;
}

TEST(IcsRoundTrip, EveryResolutionAndOffsetComesBackExactly) {
    std::mt19937 random(20240501);
    std::uniform_real_distribution<float> exponent(-37.0F, 37.0F);
    const auto any = [&] { return std::pow(10.0F, exponent(random)); };
    for (int i = 0; i < 20000; ++i) {
        const kep::Resolution resolution(any(), any(), any());
        const kep::Vector3d<float> offset(any(), -any(), any());
        const FrameHeader read = ReadBack(resolution, offset, 1 + static_cast<std::size_t>(i % 2));
        ASSERT_EQ(resolution, read.resolution) << resolution.GetRes().x;
        ASSERT_EQ(offset, read.offset) << offset.x;
    }
}

TEST(IcsRoundTrip, ExtremeAndMissingResolutionsComeBackExactly) {
    constexpr float least = std::numeric_limits<float>::denorm_min();
    constexpr float most = std::numeric_limits<float>::max();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<kep::Vector3d<float>> resolutions = {
        {0, 0, 0},        {2, 2, 0},        {2, 3, 0},
        {0, 2, 3},        {2, 0, 3},        {0, 0, 3},
        {-1, 2, 3},       {2, 2, -0.5F},    {least, most, least},
        {most, least, 1}, {infinity, 1, 1}, {1, 1, -infinity},
        {-1, -2, -3},
    };
    const std::vector<kep::Vector3d<float>> offsets = {
        {0, 0, 0}, {1.5F, -2.25F, 0.1F}, {least, most, -most}, {infinity, -infinity, 0}};
    for (const auto& resolution : resolutions) {
        for (const auto& offset : offsets) {
            for (const std::size_t slices : {1U, 2U}) {
                const kep::Resolution written(resolution.x, resolution.y, resolution.z);
                const FrameHeader read = ReadBack(written, offset, slices);
                EXPECT_EQ(written, read.resolution)
                    << resolution.x << " " << resolution.y << " " << resolution.z << ", slices " << slices;
                EXPECT_EQ(offset, read.offset) << offset.x << " " << offset.y << " " << offset.z;
            }
        }
    }
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const FrameHeader read = ReadBack(kep::Resolution(nan, 1, 1), {1, nan, 3}, 1);
    EXPECT_TRUE(std::isnan(read.resolution.GetRes().x));
    EXPECT_EQ(1.0F, read.offset.x);
    EXPECT_TRUE(std::isnan(read.offset.y));
}

TEST(IcsRoundTrip, AnEditOfTheStandardFieldsCountsMoreThanOurLines) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 1}, 1);
    frame.header.resolution = kep::Resolution(2, 2, 0); // one slice without z: needs a line of our own
    frame.header.offset = {1, 2, 3};                    // likewise for z, whose unit is undefined
    Write(folder / "a.ics", frame, false);
    std::string text = ReadBytes(folder / "a.ics");
    ASSERT_THAT(text, HasSubstr("history\tkep resolution\t2 2 0\n"));
    ASSERT_THAT(text, HasSubstr("history\tkep offset\t1 2 3\n"));
    const auto edit = [&](const std::string& from, const std::string& to) {
        std::string edited = text;
        ASSERT_NE(std::string::npos, edited.find(from)) << from;
        edited.replace(edited.find(from), from.size(), to);
        WriteBytes(folder / "b.ics", edited);
    };
    edit("scale\t1\t0.5\t0.5\t1\n", "scale\t1\t0.25\t0.25\t1\n"); // 4 pixels per micron, z takes x
    EXPECT_EQ(kep::Resolution(4, 4, 4), Read(folder / "b.ics").header.resolution);
    edit("units\trelative\tmicrometers\tmicrometers\tundefined\n",
         "units\trelative\tmicrometers\tmicrometers\tmicrometers\n"); // z has scale 1
    EXPECT_EQ(kep::Resolution(2, 2, 1), Read(folder / "b.ics").header.resolution);
    edit("origin\t0\t1\t2\t3\n", "origin\t0\t1.001\t2\t3\n"); // z has no unit
    EXPECT_EQ(kep::Vector3d<float>(1.001F, 2, 0), Read(folder / "b.ics").header.offset);
    edit("kep resolution\t2 2 0", "kep resolution\t2 2");
    EXPECT_EQ(kep::Resolution(2, 2, 2), Read(folder / "b.ics").header.resolution);
    edit("kep resolution\t2 2 0", "kep resolution\t2.0000001 2 0"); // within a millionth: the line counts
    EXPECT_EQ(kep::Resolution(2.0000001F, 2, 0), Read(folder / "b.ics").header.resolution);
}

TEST(IcsRoundTrip, WritesNoLinesOfItsOwnWhereTheStandardFieldsSuffice) {
    const ScratchFolder folder;
    Write(folder / "a.ics", MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 2}, 1), false);
    EXPECT_THAT(ReadBytes(folder / "a.ics"), Not(HasSubstr("kep ")));
}

TEST(IcsRoundTrip, DescriptionsComeBack) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 2}, 1, {3, 2, 1}, 1);
    frame.header.description = {
        {"", "without a name"},
        {"history", "a plain line\none with\ta tab\n"},
        {"empty", ""},
        {"lines", "\n\nthird\n"},
        {"returns", "a\r\nb\r"},
        {"end", "end"},
        {"layout", "sizes\t1\t2"},
        {"  blanks  ", "  kept  "},
        {"micro \xC2\xB5", "\xC2\xB5m"},
        {"long", std::string(100000, 'x')},
    };
    Write(folder / "a.ics", frame, true);
    const Frame read = Read(folder / "a.ics");
    EXPECT_EQ(frame.header.description, read.header.description);
    EXPECT_EQ(frame.voxels, read.voxels);
}

TEST(IcsRoundTrip, KeysStayOnOneLineAndOurOwnAreNotForged) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 2}, 1);
    frame.header.description = {
        {"two\nlines\tand a tab", "value"}, {"kep resolution", "1 1 1"}, {"kep\toffset", "0 0 0"}};
    Write(folder / "a.ics", frame, false);
    const FrameHeader read = Read(folder / "a.ics").header;
    EXPECT_EQ((std::map<std::string, std::string>{{"two lines and a tab", "value"}}), read.description);
    EXPECT_EQ(frame.header.resolution, read.resolution);
}

TEST(IcsRoundTrip, ADescriptionThatIsTooLongIsCutToALargestHeader) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 1}, 1);
    frame.header.description = {{"long", std::string(1 << 20, 'x')}, {"short", "kept"}};
    const std::string notice = Write(folder / "a.ics", frame, false);
    EXPECT_EQ(ReadBytes(folder / "a.ics").size(), (std::size_t{1} << 20) + 1); // and the voxel
    const Frame read = Read(folder / "a.ics");
    EXPECT_EQ(read.voxels, frame.voxels);
    EXPECT_EQ(read.header.description.at("short"), "kept");
    const std::string kept = read.header.description.at("long");
    EXPECT_EQ(kept, std::string(kept.size(), 'x'));
    EXPECT_EQ(notice, "The description does not fit into an ICS file: cut off: 'long' (" + std::to_string(kept.size()) +
                          " of 1048576 bytes).");
}

TEST(IcsRoundTrip, WhatFitsExactlyIsNotCut) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 1}, 1);
    frame.header.description = {{"long", std::string(1 << 20, 'x')}};
    Write(folder / "a.ics", frame, false);
    std::string& value = frame.header.description["long"];
    value.resize(Read(folder / "a.ics").header.description.at("long").size());
    EXPECT_EQ(Write(folder / "a.ics", frame, false), "");
    value += 'x';
    EXPECT_NE(Write(folder / "a.ics", frame, false), "");
}

TEST(IcsRoundTrip, EntriesWithTheKeysOfOurOwnLinesAreToldToBeMissing) {
    const ScratchFolder folder;
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {1, 1, 1}, 1);
    frame.header.description = {{"kep resolution", "1 1 1"}, {"note", "kept"}};
    EXPECT_EQ(Write(folder / "a.ics", frame, false),
              "The description does not fit into an ICS file: left out: 'kep resolution'.");
    EXPECT_EQ(Read(folder / "a.ics").header.description, (std::map<std::string, std::string>{{"note", "kept"}}));
}

TEST(IcsRoundTrip, WhatTheFormatCannotHoldIsRefused) {
    const ScratchFolder folder;
    EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "a.ics" +
                  "': the format knows no complex numbers of integers",
              FailureOf([&] {
                  Write(folder / "a.ics", MakeFrame({NumberKind::ComplexSigned, 2}, 1, {1, 1, 1}, 1), false);
              }));
    EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "a.ics" +
                  "': the format knows no colour of complex numbers",
              FailureOf([&] {
                  Write(folder / "a.ics", MakeFrame({NumberKind::ComplexFloat, 4}, 3, {1, 1, 1}, 1), false);
              }));
    EXPECT_TRUE(folder.List().empty());
}

TEST(IcsRoundTrip, AFullDiskLeavesTheOldFile) {
    const ScratchFolder folder;
    const Frame frame = MakeFrame({NumberKind::Unsigned, 2}, 1, {300, 300, 3}, 1); // 540,000 bytes of noise
    for (const bool compress : {false, true}) {
        WriteBytes(folder / "a.ics", "old");
        std::string failure;
        {
            const FileSizeLimit full(400000);
            failure = FailureOf([&] { Write(folder / "a.ics", frame, compress); });
        }
        EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "a.ics" + "': File too large", failure);
        EXPECT_EQ("old", ReadBytes(folder / "a.ics"));
        EXPECT_EQ(std::vector<std::string>{"a.ics"}, folder.List());
    }
}

TEST(IcsRoundTrip, TheLocaleStaysAndDoesNotMatter) {
    const ScratchFolder folder;
    const Frame frame = MakeFrame({NumberKind::Float, 4}, 1, {5, 4, 3}, 1);
    Write(folder / "classic.ics", frame, true);
    std::optional<CommaLocale> comma(std::in_place);
    Write(folder / "comma.ics", frame, true);
    const Frame read = Read(folder / "comma.ics");
    FailureOf([&] { Read(folder / "none.ics"); });
    EXPECT_TRUE(comma->IsStillSet());
    comma.reset();
    EXPECT_EQ(frame.header.resolution, read.header.resolution);
    EXPECT_EQ(frame.header.offset, read.header.offset);
    std::string classic = ReadBytes(folder / "classic.ics");
    classic.replace(classic.find("classic"), 7, "comma"); // the name stands in the file
    EXPECT_EQ(classic, ReadBytes(folder / "comma.ics"));
}

} // namespace
} // namespace ics_test
