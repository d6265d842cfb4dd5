// What stood in memory before a file was read must not show up as its voxels. The allocator is told to fill memory that
// it hands out, in two runs with different bytes; both must read, and write, the same.

#include "tests/core/kepcore/tiff_streams.h"
#include "tests/support/old_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

const std::string data = ZEL_TEST_DATA;

/// A line on a file that was read, and saved in four ways.
bool IsSavedWhole(const std::string& line) {
    const std::size_t at = line.find(" saved: ");
    return at != std::string::npos && line.size() == at + 8 + 4 * 17;
}

/// Reads files in two runs, and returns the lines of the second, all the same as in the first but that on fresh memory.
std::vector<std::string> ReadTwice(unsigned changes, const std::string& files) {
    const ScratchFolder scratch;
    return RunWithOldMemory("'" VOXEL_CHECKSUMS "' '" + scratch.GetPath() + "' " + std::to_string(changes) + " " +
                            files);
}

TEST(OldMemory, IsNotInBlocksThatHoldOtherThanTheyPromise) {
    const ScratchFolder folder;
    const auto files = tifftest::MakeDamagedFiles();
    for (std::size_t i = 0; i < files.size(); ++i)
        WriteBytes(folder / (files[i].what + ".tif"), files[i].bytes);
    EXPECT_EQ(ReadTwice(20, "'" + folder.GetPath() + "'").size(), 1 + files.size() * 22);
}

TEST(OldMemory, IsNotInFilesOfAnyTypeThatWeSave) {
    constexpr std::size_t files = 11 * 2 * 2; // types, formats, packed or plain
    const std::vector<std::string> lines = ReadTwice(20, "own");
    EXPECT_EQ(lines.size(), 1 + files * 22);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const std::string& line) { return IsSavedWhole(line); }),
              static_cast<std::ptrdiff_t>(files));
}

TEST(OldMemory, IsNotInRealFilesSoundOrDamaged) {
    if (!std::filesystem::exists(data + "/expected.json"))
        GTEST_SKIP() << "no real images under " << data;
    const std::size_t lines =
        ReadTwice(40, "'" + data + "/tiff' '" + data + "/corrupt' '" + data + "/ics' '" + data + "/sequence'").size();
    EXPECT_GT(lines, 1000U);
}

} // namespace
