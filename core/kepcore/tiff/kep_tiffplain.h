#pragma once

// Private to the library: voxels that lie in the file as they do in memory.

#include "core/kepcore/file/kep_file.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kep::detail {

/// Reads stretches of a file into memory, one behind the other, with as few calls of the system as there are gaps.
class PlainReader {
public:
    /// @param swapBytes  size of the numbers whose bytes are to be turned round; 1: none
    PlainReader(const InputFile& source, std::byte* target, std::size_t swapBytes);

    /// The next bytes come from there. They are a whole number of numbers.
    void Add(std::uint64_t at, std::size_t bytes);
    /// Reads them all. @throws IOException the file ends before
    void Finish() const;

private:
    struct Stretch {
        std::uint64_t at;
        std::size_t bytes;
    };
    void ReadShare(std::size_t from, std::size_t until) const;
    void ReadStretch(std::uint64_t at, std::byte* target, std::size_t bytes) const;

    const InputFile& file;
    std::byte* to;
    std::size_t swap;
    std::vector<Stretch> stretches;
    std::size_t total = 0;
};

} // namespace kep::detail
