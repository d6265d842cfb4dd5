// What stood in memory before a file was read must not show up as its voxels. The allocator is told to fill memory that
// it hands out, in two runs with different bytes; both must read the same.

#include "tests/core/kepcore/tiff_streams.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

const std::string data = ZEL_TEST_DATA;

/// The lines that reading the files prints, with fresh memory full of some byte.
std::vector<std::string> ReadWithMemoryOf(int byte, const std::string& arguments) {
    const ScratchFolder folder;
    const std::string output = folder / "output";
    const std::string fill = std::to_string(byte);
    const std::string variables =
        "GLIBC_TUNABLES=glibc.malloc.perturb=" + fill +
        " ASAN_OPTIONS=\"$ASAN_OPTIONS:max_malloc_fill_size=1073741824:malloc_fill_byte=" + fill + "\"";
    const std::string command = variables + " '" VOXEL_CHECKSUMS "' " + arguments + " > '" + output + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::istringstream text(ReadBytes(output));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

/// Reads files in two runs, and returns the lines of the second, all the same as in the first but that on fresh memory.
std::vector<std::string> ReadTwice(unsigned changes, const std::string& files) {
    const ScratchFolder scratch;
    const std::string arguments = "'" + scratch.GetPath() + "' " + std::to_string(changes) + " " + files;
    const std::vector<std::string> first = ReadWithMemoryOf(85, arguments);
    const std::vector<std::string> second = ReadWithMemoryOf(190, arguments);
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(first.size(), second.size());
    if (first.empty() || first.size() != second.size())
        return {};
    EXPECT_NE(first[0], second[0]) << "the allocator does not fill memory here: nothing would be found";
    for (std::size_t i = 1; i < first.size(); ++i)
        EXPECT_EQ(first[i], second[i]);
    return second;
}

TEST(OldMemory, IsNotInBlocksThatHoldOtherThanTheyPromise) {
    const ScratchFolder folder;
    const auto files = tifftest::MakeDamagedFiles();
    for (std::size_t i = 0; i < files.size(); ++i)
        WriteBytes(folder / (files[i].what + ".tif"), files[i].bytes);
    EXPECT_EQ(ReadTwice(20, "'" + folder.GetPath() + "'").size(), 1 + files.size() * 21);
}

TEST(OldMemory, IsNotInRealFilesSoundOrDamaged) {
    if (!std::filesystem::exists(data + "/expected.json"))
        GTEST_SKIP() << "no real images under " << data;
    const std::size_t lines =
        ReadTwice(40, "'" + data + "/tiff' '" + data + "/corrupt' '" + data + "/ics' '" + data + "/sequence'").size();
    EXPECT_GT(lines, 1000U);
}

} // namespace
