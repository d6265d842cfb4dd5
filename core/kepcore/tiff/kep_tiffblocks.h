#pragma once

// Private to the library: one block of a page at a time, from the file to the samples that are stored in it.

#include "core/kepcore/tiff/kep_tiffcodec.h"
#include "core/kepcore/tiff/kep_tiffpages.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kep::detail {

/// Reads and decodes blocks. Readers of the same file work beside each other, each in its own thread.
class TiffBlockReader {
public:
    /// @param values, pages  must outlive the reader
    TiffBlockReader(const TiffValues& values, const TiffPages& pages);

    /// Reads a block of a page: unpacked, in the machine's byte order, samples as they are stored. Blocks are best
    /// asked for page by page.
    /// @param block  of those of the picture: extra samples apart are none
    /// @param to     takes all of the block's rows; what it holds before does not matter
    /// @throws IOException damaged, when the block's data are not those of exactly so many rows
    void Read(std::size_t page, std::uint32_t block, std::byte* to);

private:
    void GoTo(std::size_t page);
    const TiffLayout& GetLayout() const { return pages.layouts[pages.pages[current].layout]; }
    PackedBytes ReadPacked(std::uint32_t block);
    void Unpack(std::uint32_t block, PackedBytes stream, BlockBytes to);
    StreamEnd Decode(PackedBytes stream, BlockBytes to) const;
    void DecodeJpeg(std::uint32_t block, PackedBytes stream, BlockBytes to);
    /// Bytes of the block before it was cut to the page. Some writers pack the last strip as high as all others; the
    /// one strip of a page has no others, and its rows are what the page says.
    std::size_t GetFullBytes(std::uint32_t block) const;
    void PutInOrder(BlockBytes samples) const;
    [[noreturn]] void Fail(std::uint32_t block, const std::string& what) const;

    const TiffValues& values;
    const TiffPages& pages;
    TiffCodec codec;
    std::size_t current; ///< page; beyond the last one, before the first
    std::vector<TiffBlock> blocks;
    std::vector<std::byte> packed; ///< kept between blocks
};

} // namespace kep::detail
