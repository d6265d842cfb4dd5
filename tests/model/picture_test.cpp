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
    for (const auto& [w, h] : {std::pair{5, 3}, {1, 4}, {4, 1}, {33, 17}, {16, 48}})
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
