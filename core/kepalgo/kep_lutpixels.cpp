#include "core/kepalgo/kep_lutpixels.h"

#include "core/kepalgo/pixels/kep_ramplevels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <type_traits>
#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
#include <immintrin.h>
#endif

namespace kep {

namespace {

using Pixel = RGB_generic<unsigned char>;
using Palette = LUT<unsigned char, Pixel>;

/// The colour of every level, red in the lowest byte.
using Colours = std::array<std::uint32_t, 256>;

Colours PackColours(const Palette* palette) {
    Colours colours{};
    for (std::size_t level = 0; level < colours.size(); ++level) {
        const auto gray = static_cast<unsigned char>(level);
        const Pixel pixel = palette != nullptr ? palette->Get(gray) : Pixel(gray, gray, gray);
        colours[level] =
            pixel.red | static_cast<std::uint32_t>(pixel.green) << 8 | static_cast<std::uint32_t>(pixel.blue) << 16;
    }
    return colours;
}

/// Writes the pixels of voxels. `find` gives the packed colour of a voxel.
template <typename T, typename Find>
void WritePixels(const T* voxels, std::size_t count, const Find& find, Pixel* pixels) {
    static_assert(std::endian::native == std::endian::little);
    if (count == 0)
        return;
    auto* to = reinterpret_cast<unsigned char*>(pixels);
    // A whole word a pixel costs less than putting pixels together: the next pixel overwrites what is too much.
    const auto write = [&to, &find](T voxel) {
        const std::uint32_t colour = find(voxel);
        std::memcpy(to, &colour, sizeof colour);
        to += sizeof(Pixel);
    };
    std::size_t i = 0;
    if constexpr (sizeof(T) <= 2) {
        // Small voxels come several at once, as there are loads enough.
        constexpr std::size_t perWord = sizeof(std::uint64_t) / sizeof(T);
        for (; i + perWord < count; i += perWord) {
            std::uint64_t word;
            std::memcpy(&word, voxels + i, sizeof word);
#pragma GCC unroll 8
            for (std::size_t k = 0; k < perWord; ++k)
                write(static_cast<T>(word >> (8 * sizeof(T) * k)));
        }
    }
    for (; i + 1 < count; ++i)
        write(voxels[i]);
    const std::uint32_t last = find(voxels[i]);
    std::memcpy(to, &last, sizeof(Pixel));
}

template <typename T>
void WriteColours(const T* voxels, std::size_t count, const std::uint32_t* colours, Pixel* pixels) {
    WritePixels(
        voxels, count, [colours](T voxel) { return colours[voxel]; }, pixels);
}

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
/// Four pixels a store: a store each is what the plain form waits for.
template <typename T>
[[gnu::target("sse4.1")]] void WriteColoursBySse41(const T* voxels, std::size_t count, const std::uint32_t* colours,
                                                   Pixel* pixels) {
    const __m128i joined = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    using Word = std::conditional_t<sizeof(T) == 1, std::uint32_t, std::uint64_t>; // four voxels come at once
    static_assert(sizeof(Word) == 4 * sizeof(T));
    std::size_t i = 0;
    // A store is 16 bytes, of which the last 4 are the next pixels' and overwritten by them.
    for (; i + 6 <= count; i += 4) {
        Word word;
        std::memcpy(&word, voxels + i, sizeof word);
        const auto find = [=](unsigned place) {
            return static_cast<int>(colours[static_cast<T>(word >> (8 * sizeof(T) * place))]);
        };
        __m128i four = _mm_cvtsi32_si128(find(0));
        four = _mm_insert_epi32(four, find(1), 1);
        four = _mm_insert_epi32(four, find(2), 2);
        four = _mm_insert_epi32(four, find(3), 3);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), _mm_shuffle_epi8(four, joined));
    }
    WriteColours(voxels + i, count - i, colours, pixels + i);
}
template <typename T>
void WriteColoursByProcessor(const T* voxels, std::size_t count, const std::uint32_t* colours, Pixel* pixels) {
    static const bool newer = __builtin_cpu_supports("sse4.1") != 0;
    if (newer)
        WriteColoursBySse41(voxels, count, colours, pixels);
    else
        WriteColours(voxels, count, colours, pixels);
}
#else
template <typename T>
void WriteColoursByProcessor(const T* voxels, std::size_t count, const std::uint32_t* colours, Pixel* pixels) {
    WriteColours(voxels, count, colours, pixels);
}
#endif

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
/// Each level as the three components of a pixel.
[[gnu::target("ssse3")]] void WriteGray(const unsigned char* levels, std::size_t count, Pixel* pixels) {
    const __m128i first = _mm_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
    const __m128i second = _mm_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
    const __m128i third = _mm_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15);
    std::size_t i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(levels + i));
        auto* const to = reinterpret_cast<__m128i*>(pixels + i);
        _mm_storeu_si128(to, _mm_shuffle_epi8(sixteen, first));
        _mm_storeu_si128(to + 1, _mm_shuffle_epi8(sixteen, second));
        _mm_storeu_si128(to + 2, _mm_shuffle_epi8(sixteen, third));
    }
    for (; i < count; ++i)
        pixels[i] = Pixel(levels[i], levels[i], levels[i]);
}
#else
void WriteGray(const unsigned char* levels, std::size_t count, Pixel* pixels) {
    for (std::size_t i = 0; i < count; ++i)
        pixels[i] = Pixel(levels[i], levels[i], levels[i]);
}
#endif

/// Gray pixels of voxels whose levels are computed, in parts that the nearest cache holds.
void WriteRamp(const RampLevels& ramp, const unsigned short* voxels, std::size_t count, Pixel* pixels) {
    std::array<unsigned char, 4096> levels;
    for (std::size_t i = 0; i < count; i += levels.size()) {
        const std::size_t now = std::min(levels.size(), count - i);
        ramp.Find(voxels + i, now, levels.data());
        WriteGray(levels.data(), now, pixels + i);
    }
}

/// Places of float keys in a table, as LUT::GetIndex finds them, for many keys at once. The last key lies above the
/// first, and both are finite.
struct PlaceRule {
    double first;
    double span; ///< from the first to the last key
    double top;  ///< place of the last
};

template <typename Place>
[[gnu::always_inline]] inline void FindPlaces(const float* keys, std::size_t count, const PlaceRule& rule,
                                              Place* places) {
    const auto [first, span, top] = rule;
    for (std::size_t i = 0; i < count; ++i) {
        // Divided and not multiplied by a reciprocal, which may round to the neighbouring place.
        const double place = (static_cast<double>(keys[i]) - first) / span * top + 0.5;
        const double held = place > 0.0 ? place : 0.0; // not-a-number is at 0
        places[i] = static_cast<Place>(static_cast<std::int32_t>(held < top ? held : top));
    }
}

template <typename Place>
void FindPlacesPlainly(const float* keys, std::size_t count, const PlaceRule& rule, Place* places) {
    FindPlaces(keys, count, rule, places);
}
#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
template <typename Place>
[[gnu::target("avx2")]] void FindPlacesByAvx2(const float* keys, std::size_t count, const PlaceRule& rule,
                                              Place* places) {
    FindPlaces(keys, count, rule, places);
}
template <typename Place>
void FindPlacesByProcessor(const float* keys, std::size_t count, const PlaceRule& rule, Place* places) {
    static const bool newer = __builtin_cpu_supports("avx2") != 0;
    if (newer)
        FindPlacesByAvx2(keys, count, rule, places);
    else
        FindPlacesPlainly(keys, count, rule, places);
}
#else
template <typename Place>
void FindPlacesByProcessor(const float* keys, std::size_t count, const PlaceRule& rule, Place* places) {
    FindPlacesPlainly(keys, count, rule, places);
}
#endif

/// Calls `write` with the places of some voxels after the other, and with the pixels that they become.
template <typename Place, typename Write>
void WriteByPlaces(const float* voxels, std::size_t count, const PlaceRule& rule, Pixel* pixels, const Write& write) {
    std::array<Place, 2048> places;
    for (std::size_t i = 0; i < count; i += places.size()) {
        const std::size_t now = std::min(places.size(), count - i);
        FindPlacesByProcessor(voxels + i, now, rule, places.data());
        write(places.data(), now, pixels + i);
    }
}

/// Pixels of floats through a table with more than one key.
/// @param colours  of the levels
void WriteFloats(const LUT<float, unsigned char>& levels, const Colours& colours, const float* voxels,
                 std::size_t count, Pixel* pixels) {
    const unsigned char* const table = levels.GetData();
    const std::size_t size = levels.GetSize();
    const auto first = static_cast<double>(levels.GetFirst());
    const PlaceRule rule{first, static_cast<double>(levels.GetLast()) - first, static_cast<double>(size - 1)};
    Colours direct{}; // of the entries
    if (size <= direct.size()) {
        std::transform(table, table + size, direct.begin(), [&colours](unsigned char l) { return colours[l]; });
        WriteByPlaces<unsigned char>(voxels, count, rule, pixels,
                                     [&direct](const unsigned char* places, std::size_t n, Pixel* to) {
                                         WriteColoursByProcessor(places, n, direct.data(), to);
                                     });
        return;
    }
    const auto find = [table, &colours](std::int32_t place) { return colours[table[place]]; };
    WriteByPlaces<std::int32_t>(
        voxels, count, rule, pixels,
        [&find](const std::int32_t* places, std::size_t n, Pixel* to) { WritePixels(places, n, find, to); });
}

/// A colour voxel as one word, the red component in the lowest bits. Reads up to two bytes behind the voxel.
template <typename T>
auto LoadWord(const RGB_generic<T>* voxel) {
    static_assert(std::endian::native == std::endian::little);
    std::conditional_t<sizeof(T) == 1, std::uint32_t, std::uint64_t> word;
    std::memcpy(&word, voxel, sizeof word);
    return word;
}

/// Writes the pixels of colour voxels by a table with all values of T for each component.
template <typename T>
void WriteComponents(const RGB_generic<T>* voxels, std::size_t count, const unsigned char* red,
                     const unsigned char* green, const unsigned char* blue, Pixel* pixels) {
    if (count == 0)
        return;
    constexpr unsigned bits = 8 * sizeof(T);
    std::size_t i = 0;
    for (; i + 1 < count; ++i) {
        const auto word = LoadWord(voxels + i);
        const std::uint32_t pixel = red[static_cast<T>(word)] |
                                    static_cast<std::uint32_t>(green[static_cast<T>(word >> bits)]) << 8 |
                                    static_cast<std::uint32_t>(blue[static_cast<T>(word >> (2 * bits))]) << 16;
        std::memcpy(reinterpret_cast<unsigned char*>(pixels + i), &pixel, sizeof pixel); // the next overwrites a byte
    }
    pixels[i] = Pixel(red[voxels[i].red], green[voxels[i].green], blue[voxels[i].blue]);
}

} // namespace

template <typename T>
void MapToPixels(const LUT<T, unsigned char>& levels, const Palette* palette, const T* voxels, std::size_t count,
                 Pixel* pixels) {
    const Colours colours = PackColours(palette);
    if constexpr (std::unsigned_integral<T>) {
        const unsigned char* const table = levels.GetWholeType();
        constexpr std::size_t values = std::size_t{std::numeric_limits<T>::max()} + 1;
        if constexpr (std::is_same_v<T, unsigned short>) {
            // Computing levels costs a comparison of the whole table first. With a palette, looking up levels and
            // colours at once is sooner done.
            if (const auto ramp = palette == nullptr && count >= values ? RampLevels::Of(levels) : std::nullopt) {
                WriteRamp(*ramp, voxels, count, pixels);
                return;
            }
        }
        if (table != nullptr && count >= 4 * values) {
            // Of so many voxels each saves a look-up, which is worth a table of the colours of all values.
            const auto direct = std::make_unique_for_overwrite<std::uint32_t[]>(values);
            std::transform(table, table + values, direct.get(), [&colours](unsigned char l) { return colours[l]; });
            WriteColoursByProcessor(voxels, count, direct.get(), pixels);
            return;
        }
        if (table != nullptr) {
            WritePixels(
                voxels, count, [table, &colours](T voxel) { return colours[table[voxel]]; }, pixels);
            return;
        }
    }
    if constexpr (std::is_same_v<T, float>) {
        // Between infinite ends places are no numbers, which each look-up settles for itself.
        const bool hasRange =
            levels.GetFirst() < levels.GetLast() && std::isfinite(levels.GetFirst()) && std::isfinite(levels.GetLast());
        if (!levels.IsEmpty() && hasRange) {
            WriteFloats(levels, colours, voxels, count, pixels);
            return;
        }
    }
    WritePixels(
        voxels, count, [&levels, &colours](T voxel) { return colours[levels.Get(voxel)]; }, pixels);
}

template <typename T>
void MapToPixels(const LUT<T, unsigned char>& red, const LUT<T, unsigned char>& green,
                 const LUT<T, unsigned char>& blue, const RGB_generic<T>* voxels, std::size_t count, Pixel* pixels) {
    const unsigned char* const r = red.GetWholeType();
    const unsigned char* const g = green.GetWholeType();
    const unsigned char* const b = blue.GetWholeType();
    if (r != nullptr && g != nullptr && b != nullptr)
        WriteComponents(voxels, count, r, g, b, pixels);
    else
        std::transform(voxels, voxels + count, pixels, [&](const RGB_generic<T>& v) {
            return Pixel(red.Get(v.red), green.Get(v.green), blue.Get(v.blue));
        });
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template void MapToPixels<T>(const LUT<T, unsigned char>&, const Palette*, const T*, std::size_t, Pixel*);
KEP_GRAY_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE
#define KEP_INSTANTIATE(T)                                                                                             \
    template void MapToPixels<T>(const LUT<T, unsigned char>&, const LUT<T, unsigned char>&,                           \
                                 const LUT<T, unsigned char>&, const RGB_generic<T>*, std::size_t, Pixel*);
KEP_INSTANTIATE(unsigned char)
KEP_INSTANTIATE(unsigned short)
#undef KEP_INSTANTIATE

} // namespace kep
