// How much memory opening takes: little more than the voxels, which are in memory once.

#include "tests/host/program.h"

#include <filesystem>

namespace {

using zelviewer::test::Display;
using zelviewer::test::Outcome;
using zelviewer::test::ProgramTest;

class OpeningMemory : public ProgramTest {
protected:
    /// Writes an ICS file of nothing but zeros, which takes no room on the disk. @return its name
    std::string WriteHoles(int bits, std::size_t slices, int channels) {
        const std::string name = folder / "holes.ics";
        const std::string header =
            "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t5\nlayout\torder\tbits\tx\ty\tz\tch\n"
            "layout\tsizes\t" +
            std::to_string(bits) + "\t1024\t512\t" + std::to_string(slices) + "\t" + std::to_string(channels) +
            "\nrepresentation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
            "representation\tcompression\tuncompressed\nrepresentation\tbyte_order\t1" +
            (bits == 16 ? "\t2" : "") + "\nend\n";
        WriteBytes(name, header);
        const auto bytes =
            static_cast<std::size_t>(bits / 8) * 1024 * 512 * slices * static_cast<std::size_t>(channels);
        std::filesystem::resize_file(name, header.size() + bytes);
        return name;
    }
    void ExpectLittleMore(const Outcome& outcome, double voxelBytes) {
        ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_GT(outcome.peakBytes, voxelBytes);
        EXPECT_LT(outcome.peakBytes, 1.2 * voxelBytes);
    }
};

TEST_F(OpeningMemory, OfGrayVoxelsIsLittleMoreThanTheirs) {
    const std::string name = WriteHoles(16, 500, 1); // 524 MB
    ExpectLittleMore(Run({name, "--save-view", folder / "a.tif"}, Display::None), 524'288'000);
    ExpectLittleMore(Run({name, "--screenshot", folder / "a.png"}), 524'288'000);
}

TEST_F(OpeningMemory, OfChannelsIsLittleMoreThanThatOfTheirColours) {
    const std::string name = WriteHoles(8, 330, 2); // colours of three bytes: 519 MB
    ExpectLittleMore(Run({name, "--save-view", folder / "a.tif"}, Display::None), 519'045'120);
}

} // namespace
