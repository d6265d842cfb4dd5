#pragma once

// Private to the library: blocks of voxels taken out of the streams that they were packed into. Each decoder writes
// every byte of the block or says that it did not, and tells where its stream ended; what it believes of the stream, it
// has seen in it. The target may hold anything before, and holds nothing of use after an end that is not Exact.

#include <cstddef>
#include <cstdint>
#include <span>

namespace kep::detail {

/// Where a stream ends, seen from the block that it must fill.
enum class StreamEnd {
    Exact,    ///< behind the last byte of the block; padding may follow
    TooEarly, ///< before it
    TooLate,  ///< not yet: it holds more
    Broken,   ///< nobody knows: it makes no sense
};

using PackedBytes = std::span<const std::byte>;
using BlockBytes = std::span<std::byte>;

/// Runs of equal bytes. The stream has no mark at its end: all that is there counts, but zeros only are padding.
StreamEnd DecodePackBits(PackedBytes stream, BlockBytes block);

/// Strings that came before, in codes of 9 to 12 bits; also as the first writers had it, with the bits of a byte from
/// its low end. @see kep_tifflzw.cpp
StreamEnd DecodeLzw(PackedBytes stream, BlockBytes block);

/// A zlib, xz or zstd stream. @throws std::bad_alloc
StreamEnd DecodeDeflate(PackedBytes stream, BlockBytes block);
StreamEnd DecodeLzma(PackedBytes stream, BlockBytes block);
StreamEnd DecodeZstd(PackedBytes stream, BlockBytes block);

/// Nothing but zeros, as some writers put behind a stream to fill a word or a page.
bool IsPadding(PackedBytes rest);

} // namespace kep::detail
