// Files go both ways between this system and the format's reference library.

#include "tests/core/kepcore/ics_support.h"

#include <gtest/gtest.h>
#include <libics.h>

#include <array>

namespace ics_test {
namespace {

struct Case {
    const char* name;
    SampleType sample;
    Ics_DataType type;
    int components = 1;
};

const std::vector<Case>& Cases() {
    static const std::vector<Case> cases = {
        {"uint8", {NumberKind::Unsigned, 1}, Ics_uint8},
        {"uint16", {NumberKind::Unsigned, 2}, Ics_uint16},
        {"uint32", {NumberKind::Unsigned, 4}, Ics_uint32},
        {"uint64", {NumberKind::Unsigned, 8}, Ics_uint64},
        {"sint8", {NumberKind::Signed, 1}, Ics_sint8},
        {"sint16", {NumberKind::Signed, 2}, Ics_sint16},
        {"sint32", {NumberKind::Signed, 4}, Ics_sint32},
        {"sint64", {NumberKind::Signed, 8}, Ics_sint64},
        {"real32", {NumberKind::Float, 4}, Ics_real32},
        {"real64", {NumberKind::Float, 8}, Ics_real64},
        {"complex32", {NumberKind::ComplexFloat, 4}, Ics_complex32},
        {"complex64", {NumberKind::ComplexFloat, 8}, Ics_complex64},
        {"rgb8", {NumberKind::Unsigned, 1}, Ics_uint8, 3},
        {"rgb16", {NumberKind::Unsigned, 2}, Ics_uint16, 3},
    };
    return cases;
}

constexpr std::array<std::size_t, 4> size = {7, 5, 3, 3}; // the last one is colour

/// The components behind each other, as the library wants them, where the frame has them together.
std::string MakePlanar(const std::string& voxels, std::size_t sampleBytes, std::size_t components) {
    std::string planar(voxels.size(), '\0');
    const std::size_t count = voxels.size() / sampleBytes / components;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t c = 0; c < components; ++c)
            planar.replace((c * count + i) * sampleBytes, sampleBytes, voxels, (i * components + c) * sampleBytes,
                           sampleBytes);
    return planar;
}

Ics_Error WriteByLibrary(const std::string& fileName, const Case& type, const std::string& planar, int version,
                         bool compress) {
    ICS* file = nullptr;
    if (const Ics_Error error = IcsOpen(&file, fileName.c_str(), version == 1 ? "w1" : "w2"); error != IcsErr_Ok)
        return error;
    IcsSetLayout(file, type.type, type.components == 3 ? 4 : 3, size.data());
    if (type.components == 3)
        IcsSetOrder(file, 3, "probe", "probe");
    IcsSetData(file, planar.data(), planar.size()); // read when the file is closed
    if (compress)
        IcsSetCompression(file, IcsCompr_gzip, 6);
    for (int axis = 0; axis < 3; ++axis)
        IcsSetPosition(file, axis, 1.5 * axis, 0.125, "micrometers");
    IcsAddHistoryString(file, "author", "me");
    IcsAddHistoryString(file, "", "a plain line");
    return IcsClose(file);
}

TEST(IcsExchange, WhatTheLibraryWritesIsRead) {
    const ScratchFolder folder;
    unsigned seed = 100;
    int number = 0;
    for (const Case& type : Cases()) {
        for (const int version : {1, 2}) {
            for (const bool compress : {false, true}) {
                SCOPED_TRACE(std::string(type.name) + " version " + std::to_string(version) +
                             (compress ? " gzip" : " plain"));
                const std::string name = folder / (std::to_string(number++) + ".ics");
                const Frame wanted = MakeFrame(type.sample, type.components, {size[0], size[1], size[2]}, seed++);
                const std::string planar =
                    MakePlanar(wanted.voxels, type.sample.GetSampleBytes(), static_cast<std::size_t>(type.components));
                ASSERT_EQ(IcsErr_Ok, WriteByLibrary(name, type, planar, version, compress));
                const Frame read = Read(name);
                EXPECT_EQ(wanted.header.size, read.header.size);
                EXPECT_EQ(type.sample, read.header.sample);
                EXPECT_EQ(type.components, read.header.components);
                EXPECT_EQ(kep::Resolution(8, 8, 8), read.header.resolution); // 1 / 0.125
                EXPECT_EQ(kep::Vector3d<float>(0, 1.5F, 3), read.header.offset);
                EXPECT_EQ(compress ? "gzip" : "none", read.header.compression);
                EXPECT_EQ((std::map<std::string, std::string>{{"author", "me"}, {"history", "a plain line"}}),
                          read.header.description);
                EXPECT_TRUE(wanted.voxels == read.voxels);
            }
        }
    }
}

TEST(IcsExchange, WhatIsWrittenTheLibraryReads) {
    const ScratchFolder folder;
    unsigned seed = 200;
    for (const Case& type : Cases()) {
        for (const bool compress : {false, true}) {
            SCOPED_TRACE(std::string(type.name) + (compress ? " gzip" : " plain"));
            Frame frame = MakeFrame(type.sample, type.components, {size[0], size[1], size[2]}, seed++);
            frame.header.description = {
                {"author", "me"}, {"history", "a plain line"}, {"long", std::string(3000, 'x')}};
            Write(folder / "a.ics", frame, compress);

            ICS* file = nullptr;
            ASSERT_EQ(IcsErr_Ok, IcsOpen(&file, (folder / "a.ics").c_str(), "r"));
            Ics_DataType dataType = Ics_unknown;
            int dimensions = 0;
            std::array<std::size_t, ICS_MAXDIM> sizes{};
            EXPECT_EQ(IcsErr_Ok, IcsGetLayout(file, &dataType, &dimensions, sizes.data()));
            EXPECT_EQ(type.type, dataType);
            ASSERT_EQ(type.components == 3 ? 4 : 3, dimensions);
            for (std::size_t i = 0; i < static_cast<std::size_t>(dimensions); ++i)
                EXPECT_EQ(size[i], sizes[i]);
            const kep::Vector3d<float> res = frame.header.resolution.GetRes();
            const std::array<float, 3> resolution = {res.x, res.y, res.z};
            const std::array<float, 3> offset = {frame.header.offset.x, frame.header.offset.y, frame.header.offset.z};
            for (int axis = 0; axis < 3; ++axis) {
                double origin = 0.0;
                double scale = 0.0;
                std::array<char, ICS_STRLEN_TOKEN> unit{};
                EXPECT_EQ(IcsErr_Ok, IcsGetPosition(file, axis, &origin, &scale, unit.data()));
                const auto i = static_cast<std::size_t>(axis);
                EXPECT_EQ(offset[i], static_cast<float>(origin));
                EXPECT_EQ(resolution[i], static_cast<float>(1.0 / scale));
                EXPECT_STREQ("micrometers", unit.data());
            }
            int lines = 0;
            EXPECT_EQ(IcsErr_Ok, IcsGetNumHistoryStrings(file, &lines));
            EXPECT_EQ(3, lines);
            std::array<char, ICS_LINE_LENGTH> line{};
            EXPECT_EQ(IcsErr_Ok, IcsGetHistoryString(file, line.data(), IcsWhich_First));
            EXPECT_STREQ("author\tme", line.data());
            EXPECT_EQ(IcsErr_Ok, IcsGetHistoryString(file, line.data(), IcsWhich_Next));
            EXPECT_STREQ("a plain line", line.data());

            const std::string planar =
                MakePlanar(frame.voxels, type.sample.GetSampleBytes(), static_cast<std::size_t>(type.components));
            std::string voxels(planar.size(), '\0');
            EXPECT_EQ(planar.size(), IcsGetDataSize(file));
            EXPECT_EQ(IcsErr_Ok, IcsGetData(file, voxels.data(), voxels.size()));
            EXPECT_TRUE(planar == voxels);
            IcsClose(file);
        }
    }
}

TEST(IcsExchange, DataInASourceFileAreRead) {
    const ScratchFolder folder;
    const Case type = {"complex32", {NumberKind::ComplexFloat, 4}, Ics_complex32};
    const std::string voxels = RandomBytes(7 * 5 * 3 * 8, 300);
    std::string turned = voxels; // each part's four bytes the other way round
    for (std::size_t i = 0; i < turned.size(); i += 4)
        std::reverse(turned.begin() + static_cast<std::ptrdiff_t>(i),
                     turned.begin() + static_cast<std::ptrdiff_t>(i) + 4);
    WriteBytes(folder / "raw.bin", "HEADER" + turned + "and more");
    ICS* file = nullptr;
    ASSERT_EQ(IcsErr_Ok, IcsOpen(&file, (folder / "a.ics").c_str(), "w2"));
    IcsSetLayout(file, type.type, 3, size.data());
    IcsSetSource(file, "raw.bin", 6);
    IcsSetByteOrder(file, IcsByteOrder_bigEndian);
    ASSERT_EQ(IcsErr_Ok, IcsClose(file)); // writes a header without an end
    const Frame read = Read(folder / "a.ics");
    EXPECT_TRUE(voxels == read.voxels);
    EXPECT_EQ(std::filesystem::file_size(folder / "a.ics") + 6 + 840 + 8, read.header.fileSize);
}

} // namespace
} // namespace ics_test
