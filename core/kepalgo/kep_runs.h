#pragma once

// Private to the library: runs of voxels in a row.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kep::detail {

/// One bit a voxel, set where it is not 0, for the first `count` of up to 64 voxels.
template <typename V>
std::uint64_t FindForeground(const V* voxels, std::size_t count) {
    static_assert(std::endian::native == std::endian::little);
    unsigned char flags[64];
    if (count == 64) {
        for (std::size_t i = 0; i < 64; ++i)
            flags[i] = voxels[i] != V{};
    } else {
        std::memset(flags, 0, sizeof flags);
        for (std::size_t i = 0; i < count; ++i)
            flags[i] = voxels[i] != V{};
    }
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        std::uint64_t eight;
        std::memcpy(&eight, flags + 8 * i, sizeof eight);
        bits |= ((eight * 0x0102040810204080U) >> 56) << (8 * i); // byte k, 0 or 1, becomes bit k
    }
    return bits;
}

/// Calls found(from, until) for each run of voxels that are not 0, from the left to the right.
template <typename V, typename Found>
void ForEachRun(const V* row, std::size_t count, Found found) {
    std::size_t from = 0;     // of the run that is open
    std::uint64_t before = 0; // 1 while a run is open
    for (std::size_t at = 0; at < count; at += 64) {
        const std::uint64_t foreground = FindForeground(row + at, std::min<std::size_t>(64, count - at));
        // A bit where a run starts, or where the first voxel behind one stands.
        for (std::uint64_t changes = foreground ^ (foreground << 1 | before); changes != 0; changes &= changes - 1) {
            const std::size_t x = at + static_cast<std::size_t>(std::countr_zero(changes));
            if (before == 0)
                from = x;
            else
                found(from, x);
            before ^= 1U;
        }
    }
    if (before != 0)
        found(from, count);
}

} // namespace kep::detail
