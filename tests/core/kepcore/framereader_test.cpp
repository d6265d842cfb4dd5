// Frames of files with several channels and time points, by the public operations: real files against libtiff page by
// page, and how much is read of a large file.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_framereader.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <complex>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <tiffio.h>
#include <vector>

namespace {

using kep::Image3d;
using nlohmann::json;
using testing::HasSubstr;
using testing::Optional;

const std::string data = ZEL_TEST_DATA;

/// The numbers of a page of gray voxels in strips, by libtiff.
std::vector<double> ReadPage(const std::string& name, std::size_t page) {
    TIFFSetWarningHandler(nullptr); // tags that it does not know are none of ours
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(name.c_str(), "r"), &TIFFClose);
    std::vector<double> numbers;
    EXPECT_TRUE(TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page)));
    std::uint16_t bits = 0, format = SAMPLEFORMAT_UINT;
    TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_SAMPLEFORMAT, &format);
    for (tstrip_t strip = 0; strip < TIFFNumberOfStrips(tiff.get()); ++strip) {
        std::vector<unsigned char> bytes(static_cast<std::size_t>(TIFFStripSize(tiff.get())));
        const tmsize_t got = TIFFReadEncodedStrip(tiff.get(), strip, bytes.data(), -1);
        EXPECT_GT(got, 0);
        const std::size_t size = bits / 8U;
        for (std::size_t at = 0; at + size <= static_cast<std::size_t>(std::max<tmsize_t>(got, 0)); at += size) {
            std::uint16_t two = 0;
            std::memcpy(&two, bytes.data() + at, size);
            if (bits == 16)
                numbers.push_back(format == SAMPLEFORMAT_INT ? static_cast<std::int16_t>(two) : two);
            else
                numbers.push_back(format == SAMPLEFORMAT_INT ? static_cast<std::int8_t>(bytes[at]) : bytes[at]);
        }
    }
    return numbers;
}

std::vector<double> NumbersOf(const Image3d<double>& frame) {
    return {frame.begin(), frame.begin() + frame.GetNumVoxels()};
}

class RealFrames : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(data + "/expected.json"))
            GTEST_SKIP() << "no " << data;
    }
};

TEST_F(RealFrames, AreThePagesOfTheirChannel) {
    struct Case {
        const char* name;
        std::size_t fromSlice, fromChannel; ///< pages from one to the next
    };
    // ImageJ's files run over channels first; the one of OME-XML has the order XYZCT.
    for (const Case& file :
         {Case{"5channel.tif", 5, 1}, Case{"test_still_stack.tif", 3, 1}, Case{"xyzc_16bit__dna_conf_wf.tif", 2, 1},
          Case{"xyzc_16bit__spots.tif", 2, 1}, Case{"multi-channel-z-series.ome.tif", 1, 5}}) {
        const std::string name = data + "/tiff/stack-channels-times/" + file.name;
        std::ifstream in(data + "/expected.json");
        const json facts = json::parse(in)["files"]["tiff/stack-channels-times/" + std::string(file.name)];
        kep::FrameReader reader(name.c_str());
        const kep::FileAxes& axes = reader.GetAxes();
        EXPECT_EQ(axes.channels, facts["c"]) << file.name;
        EXPECT_EQ(axes.times, facts["t"]) << file.name;
        EXPECT_EQ(axes.frame.size.z, facts["z"]) << file.name;
        EXPECT_EQ(axes.frame.size.x, facts["nx"]) << file.name;
        EXPECT_EQ(axes.frame.voxelType, facts["dtype"] == "uint8"    ? kep::VoxelType::Gray8
                                        : facts["dtype"] == "uint16" ? kep::VoxelType::Gray16
                                                                     : kep::VoxelType::Int)
            << file.name;
        EXPECT_EQ(axes.series, std::nullopt);
        for (std::size_t c = 0; c < axes.channels; ++c) {
            std::vector<double> expected;
            for (std::size_t z = 0; z < axes.frame.size.z; ++z) {
                const std::vector<double> page = ReadPage(name, z * file.fromSlice + c * file.fromChannel);
                expected.insert(expected.end(), page.begin(), page.end());
            }
            Image3d<double> frame;
            reader.ReadFrame(c, 0, frame);
            EXPECT_EQ(NumbersOf(frame), expected) << file.name << ", channel " << c;
            Image3d<double> alone;
            alone.ReadFrame(name.c_str(), c, 0);
            EXPECT_EQ(NumbersOf(alone), expected) << file.name << ", channel " << c;
        }
    }
}

TEST_F(RealFrames, TellTheirIntervalAndSeries) {
    const kep::FileAxes still = kep::ReadFileAxes((data + "/tiff/stack-channels-times/test_still_stack.tif").c_str());
    EXPECT_THAT(still.frameInterval, Optional(testing::DoubleNear(1800.0028, 1e-4)));
    for (const char* name : {"mitosis_T00.ome.tif", "mitosis_T09.ome.tif"}) {
        const kep::FileAxes axes = kep::ReadFileAxes((data + "/sequence/mitosis/" + name).c_str());
        EXPECT_EQ(axes.times, 1U) << name;
        EXPECT_EQ(axes.channels, 1U) << name;
        EXPECT_EQ(axes.frame.size.z, 5U) << name;
        EXPECT_EQ(axes.series, (kep::AxisCounts{5, 1, 51})) << name;
    }
}

template <typename T>
void ExpectSameAsImage(const std::string& name) {
    Image3d<T> whole, frame;
    std::string refusal, frameRefusal;
    try {
        whole.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    } catch (const kep::IOException& failure) {
        refusal = failure.GetText();
    }
    try {
        frame.ReadFrame(name.c_str(), 0, 0);
    } catch (const kep::IOException& failure) {
        frameRefusal = failure.GetText();
    }
    EXPECT_EQ(frameRefusal, refusal);
    ASSERT_EQ(frame.GetSize(), whole.GetSize()) << name;
    EXPECT_EQ(frame.GetOffset(), whole.GetOffset()) << name;
    EXPECT_EQ(frame.GetResolution(), whole.GetResolution()) << name;
    EXPECT_EQ(frame.GetDescription(), whole.GetDescription()) << name;
    EXPECT_TRUE(frame.GetNumVoxels() == 0 ||
                std::memcmp(frame.begin(), whole.begin(), frame.GetNumVoxels() * sizeof(T)) == 0)
        << name;
}

TEST_F(RealFrames, OfFilesWithOneAreTheImage) {
    std::ifstream in(data + "/expected.json");
    int compared = 0;
    const json files = json::parse(in)["files"];
    for (const auto& [name, facts] : files.items()) {
        if (facts["kind"] == "corrupt" || !facts.value("pages_alike", true) || facts.value("c", 1) != 1)
            continue;
        const std::string path = data + "/" + name;
        const kep::FileAxes axes = kep::ReadFileAxes(path.c_str());
        EXPECT_EQ(axes.channels, 1U) << name;
        EXPECT_EQ(axes.times, 1U) << name;
        EXPECT_EQ(axes.frame.size.z, facts.contains("nz") ? facts["nz"] : facts["z"]) << name;
        const kep::ImageInfo info = kep::ReadImageInfo(path.c_str());
        EXPECT_EQ(axes.frame.voxelType, info.voxelType) << name;
        EXPECT_EQ(axes.frame.storedType, info.storedType) << name;
        EXPECT_EQ(axes.frame.fileSize, info.fileSize) << name;
        EXPECT_EQ(axes.frame.dataFile, info.dataFile) << name;
        ExpectSameAsImage<double>(path);
        ExpectSameAsImage<kep::RGB_generic<unsigned short>>(path);
        ExpectSameAsImage<std::complex<double>>(path);
        ++compared;
    }
    EXPECT_GT(compared, 90);
}

/// The text of the failure.
std::string RefusalOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const kep::IOException& failure) {
        return failure.GetText();
    }
    return "";
}

/// Bytes that this process has asked the system for so far.
std::uint64_t CountReadBytes() {
    std::ifstream in("/proc/self/io");
    std::string word;
    std::uint64_t bytes = 0;
    in >> word >> bytes;
    EXPECT_EQ(word, "rchar:");
    return bytes;
}

class LargeFile : public testing::Test {
protected:
    /// 64 x 64 x 2 voxels of a byte at 20,000 time points, the voxels of time t all t % 251; only those of a few times
    /// are there, the others are holes.
    void WriteIcs() {
        const std::string header = "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t5\n"
                                   "layout\torder\tbits\tx\ty\tz\tt\nlayout\tsizes\t8\t64\t64\t2\t20000\n"
                                   "representation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
                                   "representation\tcompression\tuncompressed\nrepresentation\tbyte_order\t1\nend\n";
        WriteBytes(name, header);
        std::filesystem::resize_file(name, header.size() + frameBytes * 20000);
        std::fstream file(name, std::ios::binary | std::ios::in | std::ios::out);
        for (const std::size_t t : {0U, 7U, 19999U}) {
            file.seekp(static_cast<std::streamoff>(header.size() + t * frameBytes));
            file << std::string(frameBytes, static_cast<char>(t % 251));
        }
    }
    /// A hyperstack of 2000 time points, 2 channels and one slice of 256 x 256; page p is all p % 251.
    void WriteTiff() {
        const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(name.c_str(), "w"), &TIFFClose);
        for (unsigned page = 0; page < 4000; ++page) {
            TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, 256U);
            TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, 256U);
            TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
            TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
            TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, 256U);
            if (page == 0)
                TIFFSetField(tiff.get(), TIFFTAG_IMAGEDESCRIPTION,
                             "ImageJ=1.53c\nimages=4000\nchannels=2\nslices=1\nframes=2000\nhyperstack=true\n");
            std::vector<unsigned char> voxels(256 * 256, static_cast<unsigned char>(page % 251));
            ASSERT_GT(TIFFWriteEncodedStrip(tiff.get(), 0, voxels.data(), 256 * 256), 0);
            ASSERT_TRUE(TIFFWriteDirectory(tiff.get()));
        }
    }

    static constexpr std::size_t frameBytes = 64 * 64 * 2;
    ScratchFolder folder;
    std::string name = folder / "large";
};

TEST_F(LargeFile, OfIcsIsReadOneFrameOnly) {
    WriteIcs(); // 164 MB long
    const std::uint64_t before = CountReadBytes();
    kep::FrameReader reader(name.c_str());
    ASSERT_EQ(reader.GetAxes().times, 20000U);
    for (const std::size_t t : {19999U, 0U, 7U}) {
        Image3d<unsigned char> frame;
        reader.ReadFrame(0, t, frame);
        ASSERT_EQ(frame.GetNumVoxels(), frameBytes);
        EXPECT_EQ(*std::min_element(frame.begin(), frame.end()), t % 251);
        EXPECT_EQ(*std::max_element(frame.begin(), frame.end()), t % 251);
    }
    // The header is looked for in the first megabyte; then three frames.
    EXPECT_LT(CountReadBytes() - before, 1'200'000U);
}

TEST_F(LargeFile, OfTiffIsReadOneFrameOnly) {
    WriteTiff(); // 262 MB
    const std::uint64_t before = CountReadBytes();
    kep::FrameReader reader(name.c_str());
    ASSERT_EQ(reader.GetAxes().channels, 2U);
    ASSERT_EQ(reader.GetAxes().times, 2000U);
    const std::uint64_t opened = CountReadBytes();
    EXPECT_LT(opened - before, 4'000'000U); // 4000 directories of less than a kilobyte
    Image3d<unsigned char> frame;
    reader.ReadFrame(1, 1500, frame);
    EXPECT_EQ(*std::min_element(frame.begin(), frame.end()), 3001 % 251);
    EXPECT_EQ(*std::max_element(frame.begin(), frame.end()), 3001 % 251);
    EXPECT_LT(CountReadBytes() - opened, 66'000U + 4096U); // 256 x 256 voxels, and the count itself
}

class Frames : public testing::Test {
protected:
    ScratchFolder folder;
    std::string name = folder / "a.ics";

    void SetUp() override {
        WriteBytes(name, "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t4\nlayout\torder\tbits\tx\tch\tt\n"
                         "layout\tsizes\t8\t2\t2\t3\nrepresentation\tformat\tinteger\n"
                         "representation\tsign\tunsigned\nrepresentation\tcompression\tuncompressed\n"
                         "representation\tbyte_order\t1\nend\nabcdefghijkl");
    }
};

TEST_F(Frames, ThatAreNotThereAreRefusedAndNothingChanges) {
    Image3d<unsigned char> frame;
    frame.ReadFrame(name.c_str(), 1, 2);
    EXPECT_EQ(std::string(frame.begin(), frame.begin() + 2), "kl");
    EXPECT_EQ(RefusalOf([&] { frame.ReadFrame(name.c_str(), 2, 0); }),
              "ReadImage(): '" + name + "' has no channel 3 at time point 1; it holds 2 channels and 3 time points.");
    EXPECT_EQ(RefusalOf([&] { frame.ReadFrame(name.c_str(), 0, 3); }),
              "ReadImage(): '" + name + "' has no channel 1 at time point 4; it holds 2 channels and 3 time points.");
    EXPECT_EQ(RefusalOf([&] { frame.ReadFrame((folder / "b").c_str(), 0, 0); }),
              "ReadImage(): There is no such file as '" + folder / "b" + "'.");
    EXPECT_THROW(kep::ReadFileAxes(nullptr), kep::IOException);
    EXPECT_EQ(std::string(frame.begin(), frame.begin() + 2), "kl");
}

TEST_F(Frames, ValuesThatTheTypeCannotHoldAreRefused) {
    std::string wide = ReadBytes(name);
    wide.replace(wide.find("8\t2\t2\t3"), 7, "16\t1\t2\t3");
    wide.replace(wide.find("byte_order\t1"), 12, "byte_order\t1\t2");
    WriteBytes(name, wide);
    Image3d<unsigned char> frame;
    frame.MakeRoom(1, 1, 1);
    // The last two letters, "kl": 0x6B + 256 * 0x6C.
    EXPECT_THAT(RefusalOf([&] { frame.ReadFrame(name.c_str(), 1, 2); }), HasSubstr("The value 27755 at (0, 0, 0)"));
    EXPECT_EQ(frame.GetNumVoxels(), 1U);
}

TEST_F(Frames, AReaderMayBeMoved) {
    kep::FrameReader first(name.c_str());
    kep::FrameReader second(std::move(first));
    Image3d<int> frame;
    second.ReadFrame(0, 1, frame);
    EXPECT_EQ(frame.GetVoxel(0), 'e');
    EXPECT_EQ(second.GetAxes().frame.size, kep::Vector3d<std::size_t>(2, 1, 1));
}

TEST_F(Frames, AShortenedFileIsRefusedWhenItIsRead) {
    kep::FrameReader reader(name.c_str());
    std::filesystem::resize_file(name, std::filesystem::file_size(name) - 4); // the last time point
    Image3d<unsigned char> frame;
    reader.ReadFrame(1, 1, frame);
    EXPECT_EQ(std::string(frame.begin(), frame.begin() + 2), "gh");
    EXPECT_THAT(RefusalOf([&] { reader.ReadFrame(0, 2, frame); }), HasSubstr("is damaged: it ends at byte"));
    EXPECT_EQ(std::string(frame.begin(), frame.begin() + 2), "gh");
}

} // namespace
