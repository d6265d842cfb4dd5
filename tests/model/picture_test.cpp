#include "model/zel_buffer2d.h"
#include "model/zel_picture.h"

#include <gtest/gtest.h>

#include <vector>

using namespace zel;

namespace {

/// Pixels that name their own place.
std::vector<Colour> Numbered(int width, int height) {
    std::vector<Colour> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.emplace_back(static_cast<unsigned char>(x), static_cast<unsigned char>(y), 7);
    return pixels;
}

} // namespace

TEST(Picture, MirrorsAsAsked) {
    for (const auto& [w, h] : {std::pair{5, 3}, {1, 4}, {4, 1}, {33, 17}})
        for (const bool horizontally : {false, true})
            for (const bool vertically : {false, true}) {
                const auto from = Numbered(w, h);
                std::vector<Colour> to(from.size());
                MirrorPicture(from.data(), w, h, horizontally, vertically, to.data());
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const Colour& pixel = to[static_cast<std::size_t>(y * w + x)];
                        ASSERT_EQ(pixel.red, horizontally ? w - 1 - x : x);
                        ASSERT_EQ(pixel.green, vertically ? h - 1 - y : y);
                    }
            }
}

TEST(Picture, TransposesAndMirrorsInOnePass) {
    // From 65 on there are several tiles along a side.
    for (const auto& [w, h] : {std::pair{5, 3}, {1, 4}, {4, 1}, {33, 17}, {16, 48}, {70, 130}, {129, 65}, {1, 193}})
        for (const bool horizontally : {false, true})
            for (const bool vertically : {false, true}) {
                const auto from = Numbered(w, h);
                std::vector<Colour> to(from.size());
                TransposePicture(from.data(), w, h, horizontally, vertically, to.data());
                for (int y = 0; y < w; ++y)
                    for (int x = 0; x < h; ++x) {
                        const Colour& pixel = to[static_cast<std::size_t>(y * h + x)];
                        ASSERT_EQ(pixel.red, vertically ? w - 1 - y : y);
                        ASSERT_EQ(pixel.green, horizontally ? h - 1 - x : x);
                        ASSERT_EQ(pixel.blue, 7);
                    }
            }
}

TEST(Picture, TransposesEverySmallSizeWithoutTouchingMore) {
    for (int w = 1; w <= 20; ++w)
        for (int h = 1; h <= 20; ++h)
            for (const bool horizontally : {false, true})
                for (const bool vertically : {false, true}) {
                    const auto from = Numbered(w, h);
                    std::vector<Colour> to(from.size() + 2, Colour(1, 2, 3));
                    TransposePicture(from.data(), w, h, horizontally, vertically, to.data() + 1);
                    ASSERT_EQ(to.front(), Colour(1, 2, 3));
                    ASSERT_EQ(to.back(), Colour(1, 2, 3));
                    for (int y = 0; y < w; ++y)
                        for (int x = 0; x < h; ++x) {
                            const int column = vertically ? w - 1 - y : y;
                            const int row = horizontally ? h - 1 - x : x;
                            ASSERT_EQ(to[static_cast<std::size_t>(1 + y * h + x)],
                                      from[static_cast<std::size_t>(row * w + column)])
                                << w << " " << h;
                        }
                }
}

TEST(Buffer, ResizeGivesANewBlock) {
    Buffer2d<Colour> buffer(3, 2);
    EXPECT_EQ(buffer.width, 3);
    EXPECT_EQ(buffer.height, 2);
    buffer.data[0] = Colour(1, 2, 3);
    buffer.Resize(3, 2);
    EXPECT_EQ(buffer.data[0], Colour()) << "what was in it is gone";
    buffer.Resize(0, 0);
    EXPECT_EQ(buffer.width, 0);
}
