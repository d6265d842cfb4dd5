#include "model/zel_picture.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace zel {

namespace {

/// A pixel in the lower three bytes. Reads a byte behind it.
std::uint32_t LoadWord(const Colour* pixel) {
    std::uint32_t word;
    std::memcpy(&word, pixel, sizeof word);
    return word;
}

void StoreWord(unsigned char* to, std::uint32_t word) {
    std::memcpy(to, &word, sizeof word);
}

/// Copies pixels that lie `step` apart, none of them the last one of the picture: four at a time, as a store for each
/// costs more than to put them together.
void CopyColumn(const Colour* from, std::ptrdiff_t step, std::ptrdiff_t count, Colour* to) {
    static_assert(std::endian::native == std::endian::little && sizeof(Colour) == 3);
    std::ptrdiff_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const std::uint32_t a = LoadWord(from + i * step);
        const std::uint32_t b = LoadWord(from + (i + 1) * step);
        const std::uint32_t c = LoadWord(from + (i + 2) * step);
        const std::uint32_t d = LoadWord(from + (i + 3) * step);
        // Word by word: twelve bytes at once would go through memory.
        auto* const at = reinterpret_cast<unsigned char*>(to + i);
        StoreWord(at, (a & 0xFFFFFFU) | b << 24);
        StoreWord(at + 4, (b >> 8 & 0xFFFFU) | c << 16);
        StoreWord(at + 8, (c >> 16 & 0xFFU) | d << 8);
    }
    for (; i < count; ++i)
        to[i] = from[i * step];
}

} // namespace

void MirrorPicture(const Colour* from, int width, int height, bool horizontally, bool vertically, Colour* to) {
    const auto w = static_cast<std::size_t>(width);
    for (int y = 0; y < height; ++y) {
        const Colour* row = from + w * static_cast<std::size_t>(vertically ? height - 1 - y : y);
        if (horizontally)
            std::reverse_copy(row, row + width, to);
        else
            std::copy(row, row + width, to);
        to += width;
    }
}

void TransposePicture(const Colour* from, int width, int height, bool horizontally, bool vertically, Colour* to) {
    constexpr int tile = 64; // of each side, whose lines of the cache are used whole
    const auto w = static_cast<std::ptrdiff_t>(width);
    const auto h = static_cast<std::ptrdiff_t>(height);
    for (int top = 0; top < width; top += tile) {
        const int bottom = std::min(top + tile, width);
        for (int left = 0; left < height; left += tile) {
            const int right = std::min(left + tile, height);
            for (int y = top; y < bottom; ++y) {
                const int column = vertically ? width - 1 - y : y;
                const Colour* const source = from + column + w * (horizontally ? height - 1 - left : left);
                const std::ptrdiff_t step = horizontally ? -w : w;
                Colour* const target = to + h * y + left;
                if (column < width - 1)
                    CopyColumn(source, step, right - left, target);
                else
                    for (int x = 0; x < right - left; ++x)
                        target[x] = source[step * x];
            }
        }
    }
}

SeenPicture TurnPicture(const Plane& plane, const ViewOptions& options, Colour* pixels, const Size& rows,
                        std::vector<Colour>& turned) {
    const bool horizontally = options.Reversed(plane.horizontal);
    const bool vertically = options.Reversed(plane.vertical);
    if (!plane.isTurned && !horizontally && !vertically)
        return {pixels, rows};
    turned.resize(static_cast<std::size_t>(rows.x) * static_cast<std::size_t>(rows.y));
    if (plane.isTurned) {
        TransposePicture(pixels, rows.x, rows.y, horizontally, vertically, turned.data());
        return {turned.data(), {rows.y, rows.x}};
    }
    MirrorPicture(pixels, rows.x, rows.y, horizontally, vertically, turned.data());
    return {turned.data(), rows};
}

} // namespace zel
