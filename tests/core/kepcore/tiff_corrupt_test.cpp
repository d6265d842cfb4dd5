// Damaged and hostile files: read in a process of its own, with little memory, whose words are listened to.

#include "tests/core/kepcore/tiff_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const std::string data = ZEL_TEST_DATA;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool canLimitMemory = false; // the checker itself maps terabytes
#else
constexpr bool canLimitMemory = true;
#endif

/// Bytes that the process has mapped.
rlim_t GetMappedBytes() {
    std::ifstream statm("/proc/self/statm");
    rlim_t pages = 0;
    statm >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

struct Outcome {
    int status = 0;      ///< as of waitpid
    std::string result;  ///< what the work returned
    std::string printed; ///< on standard error and standard output
};

/// Runs some work in a child with so much more memory than this process has, and not for ever.
Outcome RunApart(const std::function<std::string()>& work, rlim_t moreMemory) {
    const ScratchFolder folder;
    const std::string resultName = folder / "result";
    const std::string printedName = folder / "printed";
    const pid_t child = ::fork();
    if (child == 0) {
        if (std::freopen(printedName.c_str(), "w", stderr) == nullptr || ::dup2(::fileno(stderr), STDOUT_FILENO) < 0)
            ::_exit(100);
        constexpr unsigned longest = 120; // seconds: a guard against loops without end
        ::alarm(longest);
        const rlim_t memory = GetMappedBytes() + moreMemory;
        const rlimit limit{memory, memory};
        if (canLimitMemory && ::setrlimit(RLIMIT_AS, &limit) != 0)
            ::_exit(101);
        const std::string result = work();
        std::ofstream(resultName, std::ios::binary) << result;
        std::fflush(stderr);
        ::_exit(0);
    }
    Outcome outcome;
    EXPECT_EQ(::waitpid(child, &outcome.status, 0), child);
    outcome.result = ReadBytes(resultName);
    outcome.printed = ReadBytes(printedName);
    return outcome;
}

/// A page as libtiff reads it row by row, taken apart bit by bit: the kept samples of the first page.
std::vector<std::uint8_t> ReadRows(const std::string& name, std::size_t pageNumber, unsigned bits, unsigned samples,
                                   unsigned kept) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    std::vector<std::uint8_t> numbers;
    TIFF* const tiff = TIFFOpen(name.c_str(), "r");
    if (tiff == nullptr || TIFFSetDirectory(tiff, static_cast<tdir_t>(pageNumber)) == 0)
        return numbers;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    std::vector<std::uint8_t> row(std::size_t{width} * samples + 16);
    for (std::uint32_t y = 0; y < height && TIFFReadScanline(tiff, row.data(), y, 0) == 1; ++y) {
        for (std::size_t i = 0; i < std::size_t{width} * samples; ++i) {
            if (i % samples < kept)
                numbers.push_back(bits == 8 ? row[i] : static_cast<std::uint8_t>(row[i / 8] >> (7 - i % 8) & 1));
        }
    }
    TIFFClose(tiff);
    return numbers;
}

TEST(TiffCorrupt, EveryDamagedFileIsRefusedOrReadForWhatItHolds) {
    if (!std::filesystem::exists(data + "/corrupt"))
        GTEST_SKIP() << "no test images under " << data;
    std::set<std::string> read;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(data + "/corrupt")) {
        const std::string name = entry.path().string();
        SCOPED_TRACE(name);
        ++files;
        // The largest picture among them has 11 MB.
        const Outcome outcome = RunApart([&] { return tifftest::GetFailure(name); }, rlim_t{48} << 20U);
        ASSERT_TRUE(WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0) << outcome.status;
        EXPECT_THAT(outcome.printed, IsEmpty());
        if (outcome.result.empty())
            read.insert(entry.path().filename().string());
        else
            EXPECT_THAT(outcome.result, AllOf(StartsWith("ReadImage(): "), HasSubstr("'" + name + "'")));
    }
    EXPECT_EQ(files, 39U);
    EXPECT_EQ(read, (std::set<std::string>{"huge-implied-number-strips.tif", "lzw-buffer-overflow.tif",
                                           "separate_planar_extra_samples.tiff", "testfax3_bug_513.tiff",
                                           "tiff_wrong_bits_per_sample.tiff", "total-pages-zero.tif"}));
}

TEST(TiffCorrupt, WhatIsReadIsWhatLibtiffSeesInTheSoundPart) {
    if (!std::filesystem::exists(data + "/corrupt"))
        GTEST_SKIP() << "no test images under " << data;
    struct Case {
        const char* name;
        kep::Vector3d<std::size_t> size;
        unsigned bits, samples, kept;
    };
    // The second page of the first file is a reduced one that makes no sense; the second plane of the third is none of
    // the picture and has no bytes. testfax3_bug_513.tiff is not among them, as this libtiff refuses rows of so many
    // runs.
    for (const Case& each : {Case{"huge-implied-number-strips.tif", {20, 20, 1}, 1, 1, 1},
                             Case{"lzw-buffer-overflow.tif", {5, 49, 1}, 8, 4, 3},
                             Case{"separate_planar_extra_samples.tiff", {50, 50, 1}, 8, 1, 1},
                             Case{"tiff_wrong_bits_per_sample.tiff", {52, 53, 1}, 8, 4, 3},
                             Case{"total-pages-zero.tif", {1728, 2156, 3}, 1, 1, 1}}) {
        SCOPED_TRACE(each.name);
        const std::string name = data + "/corrupt/" + each.name;
        const tifftest::Frame frame = tifftest::Read(name);
        EXPECT_TRUE(frame.header.size == each.size);
        std::vector<std::uint8_t> expected;
        for (std::size_t page = 0; page < each.size.z; ++page) {
            const auto numbers = ReadRows(name, page, each.bits, each.samples, each.kept);
            expected.insert(expected.end(), numbers.begin(), numbers.end());
        }
        EXPECT_EQ(expected.size(), frame.voxels.size());
        EXPECT_TRUE(frame.GetNumbers<std::uint8_t>() == expected);
    }
}

TEST(TiffCorrupt, RowsOfRunsOfOnePixelAreSound) {
    const std::string name = data + "/corrupt/testfax3_bug_513.tiff";
    if (!std::filesystem::exists(name))
        GTEST_SKIP() << "no test images under " << data;
    // The strip: a mark (000000000001), white 0 (00110101), black 1 (010), white 1 (000111) and so on until 32 pixels
    // are full; a mark, white 1, black 1 and so on.
    const tifftest::Frame frame = tifftest::Read(name);
    EXPECT_TRUE(frame.header.size == kep::Vector3d<std::size_t>(32, 2, 1));
    std::vector<std::uint8_t> expected;
    for (int i = 0; i < 64; ++i)
        expected.push_back((i % 2 == 0) == (i < 32) ? 1 : 0);
    EXPECT_EQ(frame.GetNumbers<std::uint8_t>(), expected);
}

/// Changes a few bytes at random, and cuts some off one file in four. Most hit the directories, which lie at either
/// end.
std::string Damage(std::string bytes, std::mt19937& random) {
    const auto below = [&random](std::size_t n) { return random() % n; };
    const std::size_t changes = 1 + below(6);
    for (std::size_t i = 0; i < changes; ++i) {
        const std::size_t near = std::min<std::size_t>(bytes.size(), 400);
        const std::size_t at = below(3) == 0   ? below(bytes.size())
                               : below(2) == 0 ? below(near)
                                               : bytes.size() - 1 - below(near);
        constexpr std::array<int, 5> favourites{0, 1, 0x7F, 0x80, 0xFF};
        bytes[at] = static_cast<char>(below(2) == 0 ? favourites[below(5)] : static_cast<int>(below(256)));
    }
    if (below(4) == 0)
        bytes.resize(below(bytes.size()));
    return bytes;
}

TEST(TiffCorrupt, DamageOfAnyKindEndsInAFrameOrARefusal) {
    if (!std::filesystem::exists(data + "/tiff"))
        GTEST_SKIP() << "no test images under " << data;
    std::mt19937 random(20);
    std::size_t refused = 0;
    std::size_t tried = 0;
    for (const char* file :
         {"bigtiff/BigTIFFLong8Tiles.tif", "bilevel/bw-gopher_ccittGroup4.tiff", "stack-u16-plain/ball.tif",
          "bits-10-12-14/shapes_lzw_planar_10bps.tif", "deflate/shapes_deflate.tif", "jpeg/quad-tile.jpg.tiff",
          "labels-3d/3d_geometric_features_testlabel.tif", "packbits/grains.tif", "palette/palette-1c-4b.tiff",
          "rgb-stack/multipage_rgb.tif", "rgba/tiff_16bit_RGBa.tiff", "stack-float32/kern3d1.tif",
          "stack-u8-plain/dotdotdot_lzw.tif", "zstd/rgbsmall_ZSTD_tiled_separate.tif",
          "float64-2d/test_float64_predictor2_be_lzw.tif"}) {
        const std::string bytes = ReadBytes(data + "/tiff/" + file);
        const std::mt19937::result_type seed = random();
        SCOPED_TRACE(file);
        constexpr int rounds = 100;
        const auto work = [&] {
            const ScratchFolder folder;
            const std::string name = folder / "damaged.tif";
            std::mt19937 own(seed);
            std::string failures;
            for (int i = 0; i < rounds; ++i) {
                std::ofstream(name, std::ios::binary) << Damage(bytes, own);
                const std::string text = tifftest::GetFailure(name);
                if (!text.empty() && !(text.starts_with("ReadImage(): ") && text.find(name) != std::string::npos))
                    return "unclear: " + text;
                failures += text.empty() ? '.' : 'F';
            }
            return failures;
        };
        const Outcome outcome = RunApart(work, rlim_t{64} << 20U);
        ASSERT_TRUE(WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0) << outcome.status;
        EXPECT_THAT(outcome.printed, IsEmpty());
        EXPECT_EQ(outcome.result.size(), std::size_t{rounds}) << outcome.result;
        tried += outcome.result.size();
        refused += static_cast<std::size_t>(std::count(outcome.result.begin(), outcome.result.end(), 'F'));
    }
    // Neither all nor none: changed voxels are read, changed directories mostly are not.
    EXPECT_GT(refused, tried / 10);
    EXPECT_LT(refused, tried);
}

TEST(TiffCorrupt, ReadingLeavesNoDescriptorOpen) {
    const auto countOpen = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const ScratchFolder folder;
    const std::string name = folder / "image.tif";
    tifftest::TiffBuilder builder;
    builder.AddDirectory(tifftest::PlainTags(1, 1, 8, builder.Add(7, 1)));
    const auto before = countOpen();
    WriteBytes(name, builder.GetFile());
    EXPECT_EQ(tifftest::GetFailure(name), "");
    builder.LinkTo(5000);
    WriteBytes(name, builder.GetFile());
    EXPECT_THAT(tifftest::GetFailure(name), HasSubstr("is damaged"));
    EXPECT_EQ(countOpen(), before);
}

} // namespace
