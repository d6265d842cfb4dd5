#include "core/kepalgo/kep_lutpixels.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

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

/// Four pixels make three words. `find` gives the level of a voxel.
template <typename T, typename Find>
void WritePixels(const T* voxels, std::size_t count, const Colours& colours, const Find& find, Pixel* pixels) {
    static_assert(std::endian::native == std::endian::little);
    auto* to = reinterpret_cast<unsigned char*>(pixels);
    const auto store = [&to](std::uint32_t word) {
        std::memcpy(to, &word, sizeof word);
        to += sizeof word;
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const std::uint32_t a = colours[find(voxels[i])];
        const std::uint32_t b = colours[find(voxels[i + 1])];
        const std::uint32_t c = colours[find(voxels[i + 2])];
        const std::uint32_t d = colours[find(voxels[i + 3])];
        store(a | b << 24);
        store(b >> 8 | c << 16);
        store(c >> 16 | d << 8);
    }
    for (; i < count; ++i) {
        const std::uint32_t colour = colours[find(voxels[i])];
        std::memcpy(to, &colour, sizeof(Pixel));
        to += sizeof(Pixel);
    }
}

} // namespace

template <typename T>
void MapToPixels(const LUT<T, unsigned char>& levels, const Palette* palette, const T* voxels, std::size_t count,
                 Pixel* pixels) {
    const Colours colours = PackColours(palette);
    if (const unsigned char* const table = levels.GetWholeType())
        WritePixels(
            voxels, count, colours, [table](T voxel) { return table[static_cast<std::size_t>(voxel)]; }, pixels);
    else
        WritePixels(
            voxels, count, colours, [&levels](T voxel) { return levels.Get(voxel); }, pixels);
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template void MapToPixels<T>(const LUT<T, unsigned char>&, const Palette*, const T*, std::size_t, Pixel*);
KEP_GRAY_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
