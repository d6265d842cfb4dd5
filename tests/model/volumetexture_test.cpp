#include "model/zel_volumetexture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <vector>

using namespace zel;

namespace {

using Colour = kep::RGB_generic<unsigned char>;
using Voxels = kep::Vector3d<std::size_t>;

void ExpectScale(const Voxels& size, const kep::Resolution& resolution, const kep::Vector3d<float>& expected) {
    const kep::Vector3d<float> scale = ComputeVolumeScale(size, resolution);
    EXPECT_FLOAT_EQ(scale.x, expected.x);
    EXPECT_FLOAT_EQ(scale.y, expected.y);
    EXPECT_FLOAT_EQ(scale.z, expected.z);
}

/// The rule as it is told.
int AlphaLiterally(int red, int green, int blue) {
    const double g = 0.587 * green + 0.2989 * red + 0.1141 * blue;
    return static_cast<int>(255 * std::sin(g / 255 * 3.14159265358979323846 * 0.5));
}

std::vector<int> BytesOf(const VolumeTexture& volume) {
    return {volume.rgba.get(), volume.rgba.get() + 4 * volume.size.x * volume.size.y * volume.size.z};
}

} // namespace

TEST(VolumeScale, OfACubeIsThatOfItsLongestSide) {
    // Padded to 8: aspects 1, and 6 / 8 = 0.75 along each axis.
    ExpectScale({6, 6, 6}, {1, 1, 1}, {0.75F, 0.75F, 0.375F});
}

TEST(VolumeScale, TakesTheAspectFromSizesAndResolution) {
    // Padded to 8, 16, 4. Aspects 8 * 1 / 16 = 0.5 and 8 * 1 / 4 = 2. The longest side is y:
    // 6 / 8 / 2 = 0.375, 14 / 16 / 0.5 = 1.75, 2 / 4 / 2 = 0.25.
    ExpectScale({6, 14, 2}, {2, 1, 1}, {1.75F * 2, 1.75F * 0.5F, 1.75F * 2 * 0.5F});
}

TEST(VolumeScale, TakesZIfThatIsTheLongestSide) {
    // Padded to 4, 8, 32. Aspects 0.5 and 0.125: 0.5, 0.75 / 0.5 = 1.5, 0.9375 / 0.125 = 7.5.
    ExpectScale({2, 6, 30}, {1, 1, 1}, {7.5F, 3.75F, 0.46875F});
}

TEST(VolumeScale, OfAnUnknownVoxelSizeIsThatOfCubicVoxels) {
    ExpectScale({6, 6, 6}, {0, 0, 0}, {0.75F, 0.75F, 0.375F});
    ExpectScale({6, 14, 2}, {0, 2, 0}, ComputeVolumeScale({6, 14, 2}, {2, 2, 2}));
}

TEST(VolumeAlpha, FollowsASineOfTheBrightness) {
    EXPECT_EQ(VoxelAlpha({0, 0, 0}), 0);
    EXPECT_EQ(VoxelAlpha({85, 85, 85}), 127);    // 255 * sin(30 degrees) = 127.5
    EXPECT_EQ(VoxelAlpha({170, 170, 170}), 220); // 255 * sin(60 degrees) = 220.84
    EXPECT_EQ(VoxelAlpha({255, 255, 255}), 255);
}

TEST(VolumeAlpha, WeighsTheColours) {
    EXPECT_EQ(VoxelAlpha({255, 0, 0}), 115); // 255 * sin(0.2989 * 90 degrees) = 115.37
    EXPECT_EQ(VoxelAlpha({0, 255, 0}), 203); // 255 * sin(0.587 * 90 degrees) = 203.20
    EXPECT_EQ(VoxelAlpha({0, 0, 255}), 45);  // 255 * sin(0.1141 * 90 degrees) = 45.46
}

TEST(VolumeTexture, HasABorderOfOneTransparentVoxel) {
    const Colour pixel(10, 20, 30);
    const VolumeTexture volume = MakeVolume(&pixel, {1, 1, 1});
    EXPECT_EQ(volume.size, Voxels(3, 3, 3));
    std::vector<int> expected(4 * 27, 0);
    const std::vector<int> voxel{10, 20, 30, VoxelAlpha(pixel)};
    std::copy(voxel.begin(), voxel.end(), expected.begin() + 4 * 13); // the middle one
    EXPECT_EQ(BytesOf(volume), expected);
}

TEST(VolumeTexture, KeepsTheOrderOfTheVoxels) {
    for (const Voxels& size : {Voxels(2, 3, 4), Voxels(7, 1, 1), Voxels(1, 7, 1), Voxels(1, 1, 7), Voxels(33, 5, 3)}) {
        std::mt19937 random(17);
        std::vector<Colour> pixels(size.x * size.y * size.z);
        for (Colour& pixel : pixels)
            pixel = {static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
                     static_cast<unsigned char>(random())};
        const VolumeTexture volume = MakeVolume(pixels.data(), size);
        ASSERT_EQ(volume.size, Voxels(size.x + 2, size.y + 2, size.z + 2));

        std::vector<int> expected;
        for (std::size_t z = 0; z < size.z + 2; ++z)
            for (std::size_t y = 0; y < size.y + 2; ++y)
                for (std::size_t x = 0; x < size.x + 2; ++x) {
                    const bool isInside = x > 0 && y > 0 && z > 0 && x <= size.x && y <= size.y && z <= size.z;
                    const Colour pixel =
                        isInside ? pixels[x - 1 + size.x * (y - 1 + size.y * (z - 1))] : Colour(0, 0, 0);
                    for (const int byte : {int{pixel.red}, int{pixel.green}, int{pixel.blue},
                                           AlphaLiterally(pixel.red, pixel.green, pixel.blue)})
                        expected.push_back(byte);
                }
        EXPECT_EQ(BytesOf(volume), expected) << size.x << " x " << size.y << " x " << size.z;
    }
}

TEST(VolumeTexture, HasTheRightAlphaForEveryColour) {
    constexpr std::size_t side = 256;
    std::vector<Colour> pixels(side * side);
    std::size_t wrong = 0;
    for (int blue = 0; blue < 256; ++blue) {
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = {static_cast<unsigned char>(i % side), static_cast<unsigned char>(i / side),
                         static_cast<unsigned char>(blue)};
        const VolumeTexture volume = MakeVolume(pixels.data(), {side, side, 1});
        const unsigned char* const inside = volume.rgba.get() + 4 * volume.size.x * volume.size.y;
        for (std::size_t y = 0; y < side; ++y)
            for (std::size_t x = 0; x < side; ++x) {
                const Colour& pixel = pixels[x + side * y];
                const int alpha = inside[4 * (x + 1 + volume.size.x * (y + 1)) + 3];
                if (alpha != AlphaLiterally(pixel.red, pixel.green, pixel.blue) || alpha != VoxelAlpha(pixel))
                    ++wrong;
            }
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(VolumeTexture, ThatNoMemoryCanHoldIsRefused) {
    const Colour pixel;
    constexpr std::size_t huge = std::size_t{1} << 40;
    EXPECT_THROW(MakeVolume(&pixel, {huge, huge, 1}), std::bad_alloc);                 // 2^82 bytes
    EXPECT_THROW(MakeVolume(&pixel, {huge, std::size_t{1} << 21, 1}), std::bad_alloc); // more than 2^63
}

TEST(VolumeTexture, FitsUpToTheLimitOnEachSide) {
    EXPECT_TRUE(FitsTexture({32883, 32883, 32883}));
    EXPECT_FALSE(FitsTexture({32884, 1, 1}));
    EXPECT_FALSE(FitsTexture({1, 32884, 1}));
    EXPECT_FALSE(FitsTexture({1, 1, 32884}));
    EXPECT_FALSE(FitsTexture({(std::size_t{1} << 32) + 1, 1, 1})); // not cut to 32 bits
}

TEST(VolumeTexture, IsMadeOfAsManyVoxelsAsAnIntCanCount) {
    EXPECT_EQ(CountMappedVoxels({512, 512, 64}), 16777216);
    EXPECT_EQ(CountMappedVoxels({2147483647, 1, 1}), std::numeric_limits<int>::max());
    EXPECT_THROW(CountMappedVoxels({1024, 1024, 2048}), std::bad_alloc);                              // 2^31
    EXPECT_THROW(CountMappedVoxels({std::size_t{1} << 32, std::size_t{1} << 32, 1}), std::bad_alloc); // 2^64
}
