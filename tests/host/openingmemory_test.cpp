// How much memory opening takes: little more than the voxels, which are in memory once. What the program takes anyway,
// for the most part the toolkit's libraries, is measured with a small image.

#include "tests/host/program.h"

#include <filesystem>

namespace {

using zelviewer::test::Display;
using zelviewer::test::Outcome;
using zelviewer::test::ProgramTest;

class OpeningMemory : public ProgramTest {
protected:
    /// Writes an ICS file of nothing but zeros, which takes no room on the disk. @return its name
    std::string WriteHoles(const std::string& file, int bits, std::size_t slices, int channels) {
        const std::string name = folder / file;
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
    /// Opens both images, with the same options.
    void ExpectLittleMore(const std::string& small, const std::string& large, double voxelBytes,
                          const std::vector<std::string>& options, Display display) {
        std::vector<double> peaks;
        for (const std::string& name : {small, large}) {
            std::vector<std::string> arguments{name, "--force"};
            arguments.insert(arguments.end(), options.begin(), options.end());
            const Outcome outcome = Run(arguments, display);
            ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
            peaks.push_back(outcome.peakBytes);
        }
        EXPECT_GT(peaks[1] - peaks[0], 0.9 * voxelBytes);
        EXPECT_LT(peaks[1] - peaks[0], 1.1 * voxelBytes);
    }
};

TEST_F(OpeningMemory, OfGrayVoxelsIsLittleMoreThanTheirs) {
    const std::string small = WriteHoles("small.ics", 16, 1, 1), large = WriteHoles("large.ics", 16, 500, 1); // 524 MB
    ExpectLittleMore(small, large, 524'288'000, {"--save-view", folder / "a.tif"}, Display::None);
    ExpectLittleMore(small, large, 524'288'000, {"--screenshot", folder / "a.png"}, Display::Present);
}

TEST_F(OpeningMemory, OfChannelsIsLittleMoreThanThatOfTheirColours) {
    const std::string small = WriteHoles("small.ics", 8, 1, 2);
    const std::string large = WriteHoles("large.ics", 8, 330, 2); // colours of three bytes: 519 MB
    ExpectLittleMore(small, large, 519'045'120, {"--save-view", folder / "a.tif"}, Display::None);
}

} // namespace
