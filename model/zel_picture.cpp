#include "model/zel_picture.h"

#include <algorithm>

namespace zel {

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
    constexpr int tile = 16;
    const auto w = static_cast<std::ptrdiff_t>(width);
    const auto h = static_cast<std::ptrdiff_t>(height);
    for (int top = 0; top < width; top += tile) {
        const int bottom = std::min(top + tile, width);
        for (int left = 0; left < height; left += tile) {
            const int right = std::min(left + tile, height);
            for (int y = top; y < bottom; ++y) {
                const Colour* source = from + (vertically ? width - 1 - y : y);
                Colour* target = to + h * y;
                for (int x = left; x < right; ++x)
                    target[x] = source[w * (horizontally ? height - 1 - x : x)];
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
