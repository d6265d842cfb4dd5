#pragma once

// Programs that are run twice, with different bytes in the memory that the allocator hands out: what they print must
// not depend on it.

#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

/// A line on memory that nobody has written, with which a program begins: so one sees that it differs from run to run.
inline void PrintFreshMemory() {
    constexpr std::size_t bytes = 5000;
    auto* fresh = static_cast<unsigned char*>(std::malloc(bytes));
    asm volatile("" : "+r"(fresh)); // as far as the compiler knows, this writes it
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < bytes; ++i)
        sum = sum * 31U + fresh[i];
    std::free(fresh);
    std::printf("fresh memory: %08x\n", sum);
}

/// The lines that a command of the shell prints, with fresh memory full of some byte.
inline std::vector<std::string> LinesWithMemoryOf(int byte, const std::string& command) {
    const ScratchFolder folder;
    const std::string output = folder / "output";
    const std::string fill = std::to_string(byte);
    const std::string whole = "export GLIBC_TUNABLES=glibc.malloc.perturb=" + fill +
                              " ASAN_OPTIONS=\"$ASAN_OPTIONS:max_malloc_fill_size=1073741824:malloc_fill_byte=" + fill +
                              "\"; (" + command + ") > '" + output + "'";
    EXPECT_EQ(std::system(whole.c_str()), 0) << whole;
    std::istringstream text(ReadBytes(output));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

/// Runs a command twice, and returns the lines of the second run, all the same as in the first but that on fresh
/// memory.
inline std::vector<std::string> RunWithOldMemory(const std::string& command) {
    const std::vector<std::string> first = LinesWithMemoryOf(85, command);
    const std::vector<std::string> second = LinesWithMemoryOf(190, command);
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(first.size(), second.size());
    if (first.empty() || first.size() != second.size())
        return {};
    EXPECT_NE(first[0], second[0]) << "the allocator does not fill memory here: nothing would be found";
    for (std::size_t i = 1; i < first.size(); ++i)
        EXPECT_EQ(first[i], second[i]);
    return second;
}
