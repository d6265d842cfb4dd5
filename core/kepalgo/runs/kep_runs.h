#pragma once

// Private to the library: runs of voxels in a row.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
#include <emmintrin.h>
#endif

namespace kep::detail {

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
/// One bit a voxel, set where it is not 0, for 64 voxels.
template <typename V>
std::uint64_t FindForeground(const V* voxels) {
    static_assert(sizeof(V) <= 2);
    constexpr std::size_t vectors = 4 * sizeof(V);
    const auto* const from = reinterpret_cast<const __m128i*>(voxels);
    const __m128i zero = _mm_setzero_si128();
    __m128i all = zero;
    for (std::size_t i = 0; i < vectors; ++i)
        all = _mm_or_si128(all, _mm_loadu_si128(from + i));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(all, zero)) == 0xFFFF)
        return 0; // most of most images
    std::uint64_t background = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        __m128i isZero; // 0 or 255 for each of 16 voxels
        if constexpr (sizeof(V) == 1)
            isZero = _mm_cmpeq_epi8(_mm_loadu_si128(from + i), zero);
        else
            isZero = _mm_packs_epi16(_mm_cmpeq_epi16(_mm_loadu_si128(from + 2 * i), zero),
                                     _mm_cmpeq_epi16(_mm_loadu_si128(from + 2 * i + 1), zero));
        background |= static_cast<std::uint64_t>(_mm_movemask_epi8(isZero)) << (16 * i);
    }
    return ~background;
}
#else
/// One bit a voxel, set where it is not 0, for 64 voxels.
template <typename V>
std::uint64_t FindForeground(const V* voxels) {
    std::uint64_t foreground = 0;
    for (std::size_t i = 0; i < 64; ++i)
        foreground |= std::uint64_t{voxels[i] != 0} << i;
    return foreground;
}
#endif

/// Calls found(from, until) for each run of voxels that are not 0, from the left to the right.
template <typename V, typename Found>
void ForEachRun(const V* row, std::size_t count, Found found) {
    std::size_t from = 0;     // of the run that is open
    std::uint64_t before = 0; // 1 while a run is open
    const auto take = [&](std::uint64_t foreground, std::size_t at) {
        // A bit where a run starts, or where the first voxel behind one stands.
        for (std::uint64_t changes = foreground ^ (foreground << 1 | before); changes != 0; changes &= changes - 1) {
            const std::size_t x = at + static_cast<std::size_t>(std::countr_zero(changes));
            if (before == 0)
                from = x;
            else
                found(from, x);
            before ^= 1U;
        }
    };
    std::size_t at = 0;
    for (; at + 64 <= count; at += 64)
        take(FindForeground(row + at), at);
    if (at < count) {
        V rest[64] = {};
        std::memcpy(rest, row + at, (count - at) * sizeof(V));
        take(FindForeground(rest), at); // ends a run in the last voxel too
    }
    if (before != 0)
        found(from, count);
}

} // namespace kep::detail
