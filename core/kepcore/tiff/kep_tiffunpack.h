#pragma once

// Private to the library: samples as TIFF packs them, turned into whole numbers. Pure functions on rows of bytes.

#include <cstddef>
#include <cstdint>

namespace kep::detail {

/// How samples are packed in a row, which begins with a whole byte.
struct PackedSamples {
    /// 1 to 16, 24, 32, 64, 128. Those of less than 16 bits, but for 8, run on from byte to byte, highest bit first.
    unsigned bits = 8;
    bool half = false; ///< 16-bit floats

    /// Of a sample after unpacking: the next whole size; 4 for 24 bits and for half floats.
    std::size_t GetUnpackedBytes() const;
};

/// Unpacks `count` samples of a row: the first-th one and every `stride`-th behind it. They go to `to` and every
/// `toStride`-th place of unpacked samples behind it.
void UnpackSamples(const std::byte* row, std::size_t first, std::size_t stride, std::size_t count,
                   const PackedSamples& packed, std::byte* to, std::size_t toStride);

/// The float of the same value; a NaN keeps its bits.
float HalfToFloat(std::uint16_t half);

} // namespace kep::detail
