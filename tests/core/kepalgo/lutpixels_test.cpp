#include "core/kepalgo/kep_lutpixels.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Pixel = kep::RGB_generic<unsigned char>;
using Palette = kep::LUT<unsigned char, Pixel>;

/// Maps random voxels, and looks each up by itself. One pixel more than asked for must stay as it is.
template <typename T>
void ExpectPixelsOfLevels(const kep::LUT<T, unsigned char>& levels, std::vector<T> values) {
    Palette palette;
    palette.Init(256, 0, 255);
    std::mt19937 random(3);
    for (int level = 0; level < 256; ++level)
        palette.Set(static_cast<unsigned char>(level),
                    {static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
                     static_cast<unsigned char>(random())});
    std::vector<std::size_t> counts(18);
    std::iota(counts.begin(), counts.end(), 0U);
    counts.push_back(4 * 65536 + 3); // many pixels may be made by another way
    for (const std::size_t count : counts) {
        std::vector<T> voxels;
        for (std::size_t i = 0; i < count; ++i)
            voxels.push_back(values[random() % values.size()]);
        for (const Palette* const chosen : {static_cast<const Palette*>(nullptr), &std::as_const(palette)}) {
            const Pixel untouched(1, 2, 3);
            std::vector<Pixel> pixels(count + 1, untouched);
            kep::MapToPixels(levels, chosen, voxels.data(), count, pixels.data());
            for (std::size_t i = 0; i < count; ++i) {
                const unsigned char level = levels.Get(voxels[i]);
                ASSERT_EQ(pixels[i], chosen != nullptr ? palette.Get(level) : Pixel(level, level, level))
                    << i << " of " << count;
            }
            EXPECT_EQ(pixels[count], untouched) << count;
        }
    }
}

template <typename T>
kep::LUT<T, unsigned char> MakeCurve(long size, T first, T last, float gamma = 2.2F) {
    kep::LUT<T, unsigned char> levels;
    levels.Init(size, first, last);
    levels.CreateGamma(first, last, gamma, 0, 255);
    return levels;
}

/// Floats inside the tables and outside, at the ends, and what is no number; and many at random, as some lie where two
/// entries meet.
std::vector<float> SomeFloats() {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float largest = std::numeric_limits<float>::max();
    std::vector<float> floats{-7.0F, -1.5F,    0.0F,    -0.0F,     0.3F,     2.4999F,
                              2.5F,  infinite, largest, -infinite, -largest, std::numeric_limits<float>::quiet_NaN()};
    std::mt19937 random(11);
    std::uniform_real_distribution<float> between(-1.6F, 2.6F);
    for (int i = 0; i < 20000; ++i)
        floats.push_back(between(random));
    for (int i = 0; i < 510; ++i) // half way between two of 256 entries
        floats.push_back(-1.5F + 4.0F * static_cast<float>(i) / 510.0F);
    return floats;
}

TEST(PixelsOfLevels, AreThoseOfEachVoxel) {
    ExpectPixelsOfLevels(MakeCurve<unsigned char>(256, 0, 255), {0, 1, 7, 100, 254, 255});
    ExpectPixelsOfLevels(MakeCurve<unsigned char>(100, 50, 149), {0, 49, 50, 51, 100, 149, 150, 255});
    ExpectPixelsOfLevels(MakeCurve<unsigned short>(65536, 0, 65535), {0, 1, 255, 256, 30000, 65535});
    ExpectPixelsOfLevels(MakeCurve<unsigned short>(65536, 0, 65535, 1.0F), {0, 1, 255, 256, 30000, 65535});
    ExpectPixelsOfLevels(MakeCurve<int>(1000, -500, 499), {-100000, -501, -500, -1, 0, 499, 500, 7000000});
    const std::vector<float> floats = SomeFloats();
    ExpectPixelsOfLevels(MakeCurve<float>(256, -1.5F, 2.5F), floats);
    ExpectPixelsOfLevels(MakeCurve<float>(257, -1.5F, 2.5F), floats);
    ExpectPixelsOfLevels(MakeCurve<float>(1, -1.5F, 2.5F), floats);
    ExpectPixelsOfLevels(MakeCurve<float>(2, -1.5F, 2.5F), floats);
    ExpectPixelsOfLevels(MakeCurve<float>(100000, -1.5F, 2.5F), floats);
    constexpr float largest = std::numeric_limits<float>::max();
    ExpectPixelsOfLevels(MakeCurve<float>(256, -largest, largest), floats);
    constexpr float infinite = std::numeric_limits<float>::infinity();
    for (const auto& [first, last] : {std::pair{-infinite, infinite}, {-infinite, 1.0F}, {1.0F, infinite}}) {
        kep::LUT<float, unsigned char> endless;
        endless.Init(256, first, last);
        std::iota(endless.GetData(), endless.GetData() + 256, static_cast<unsigned char>(0));
        ExpectPixelsOfLevels(endless, floats);
    }
    ExpectPixelsOfLevels(MakeCurve<float>(256, 1.0F, 1.0F), floats);
    ExpectPixelsOfLevels(MakeCurve<float>(256, 2.0F, 1.0F), floats);
}

/// Maps all 16-bit values at once, and looks each up by itself.
void ExpectPixelsOfAllValues(const kep::LUT<unsigned short, unsigned char>& levels, const std::string& what) {
    std::vector<unsigned short> voxels(65536 + 21);
    std::iota(voxels.begin(), voxels.end(), static_cast<unsigned short>(65530));
    std::vector<Pixel> pixels(voxels.size() + 1, Pixel(1, 2, 3));
    kep::MapToPixels<unsigned short>(levels, nullptr, voxels.data(), voxels.size(), pixels.data());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < voxels.size(); ++i) {
        const unsigned char level = levels.Get(voxels[i]);
        wrong += pixels[i] != Pixel(level, level, level);
    }
    EXPECT_EQ(wrong, 0U) << what;
    EXPECT_EQ(pixels.back(), Pixel(1, 2, 3)) << what;
}

TEST(PixelsOfLevels, OfStraightLinesAreThoseOfTheTable) {
    std::mt19937 random(7);
    struct Line {
        int from, to, low, high;
    };
    std::vector<Line> lines = {{0, 65535, 0, 255},     {0, 65535, 255, 0},     {0, 4095, 0, 255}, {100, 100, 0, 255},
                               {0, 1, 0, 255},         {65534, 65535, 0, 255}, {0, 510, 0, 255},  {0, 510, 255, 0},
                               {7, 65534, 0, 255},     {1000, 1255, 0, 255},   {0, 65535, 9, 9},  {0, 0, 0, 255},
                               {65535, 65535, 0, 255}, {300, 20, 0, 255}};
    for (int i = 0; i < 300; ++i)
        lines.push_back({static_cast<int>(random() % 65536), static_cast<int>(random() % 65536),
                         static_cast<int>(random() % 256), static_cast<int>(random() % 256)});
    for (int i = 0; i < 300; ++i) { // narrow ones, where halves meet keys
        const int from = static_cast<int>(random() % 60000);
        lines.push_back({from, from + 2 * static_cast<int>(random() % 2000), 0, 255});
    }
    kep::LUT<unsigned short, unsigned char> levels;
    levels.Init(65536, 0, 65535);
    for (const Line& line : lines) {
        levels.CreateGamma(static_cast<unsigned short>(line.from), static_cast<unsigned short>(line.to), 1.0F,
                           static_cast<unsigned char>(line.low), static_cast<unsigned char>(line.high));
        ExpectPixelsOfAllValues(levels, std::to_string(line.from) + " to " + std::to_string(line.to) + ": " +
                                            std::to_string(line.low) + " to " + std::to_string(line.high));
    }
}

TEST(PixelsOfLevels, FollowEntriesThatLeaveTheLine) {
    kep::LUT<unsigned short, unsigned char> levels;
    levels.Init(65536, 0, 65535);
    for (const int key : {0, 1, 40000, 65534, 65535}) {
        levels.CreateGamma(0, 65535, 1.0F, 0, 255);
        levels.Set(static_cast<unsigned short>(key), 77);
        ExpectPixelsOfAllValues(levels, "set at " + std::to_string(key));
    }
    levels.CreateGamma(0, 65535, 1.0F, 0, 255);
    levels.GetData()[12345] = 200;
    ExpectPixelsOfAllValues(levels, "written");
    levels.CreateGamma(0, 65535, 0.5F, 0, 255);
    ExpectPixelsOfAllValues(levels, "curved");
}

TEST(PixelsOfLevels, OfAnEmptyTableAreThePalettesFirst) {
    const kep::LUT<int, unsigned char> none;
    ExpectPixelsOfLevels(none, {-1, 0, 5});
}

/// Maps random colours with a table for each channel, and looks each component up by itself.
template <typename T>
void ExpectPixelsOfComponents(const kep::LUT<T, unsigned char>& red, const kep::LUT<T, unsigned char>& green,
                              const kep::LUT<T, unsigned char>& blue) {
    std::mt19937 random(5);
    for (const std::size_t count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 15U, 16U, 17U, 1003U}) {
        std::vector<kep::RGB_generic<T>> voxels;
        for (std::size_t i = 0; i < count; ++i)
            voxels.emplace_back(static_cast<T>(random()), static_cast<T>(random()), static_cast<T>(random()));
        const Pixel untouched(1, 2, 3);
        std::vector<Pixel> pixels(count + 1, untouched);
        kep::MapToPixels(red, green, blue, voxels.data(), count, pixels.data());
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(pixels[i], Pixel(red.Get(voxels[i].red), green.Get(voxels[i].green), blue.Get(voxels[i].blue)))
                << i << " of " << count;
        EXPECT_EQ(pixels[count], untouched) << count;
    }
}

template <typename T>
void ExpectPixelsOfWholeTypes() {
    constexpr T last = std::numeric_limits<T>::max();
    const auto rising = MakeCurve<T>(long{last} + 1, 0, last);
    kep::LUT<T, unsigned char> falling = rising;
    falling.CreateGamma(0, last, 1.0F, 255, 0);
    kep::LUT<T, unsigned char> halves = rising;
    halves.CreateThresholding(static_cast<T>(last / 2), last, 0, 255);
    ExpectPixelsOfComponents(rising, falling, halves);
    ExpectPixelsOfComponents(halves, halves, halves);
    // One that does not cover the type, and one without entries.
    ExpectPixelsOfComponents(rising, MakeCurve<T>(100, 50, 149), kep::LUT<T, unsigned char>());
}

TEST(PixelsOfColours, HaveATableForEachComponent) {
    ExpectPixelsOfWholeTypes<unsigned char>();
    ExpectPixelsOfWholeTypes<unsigned short>();
}

} // namespace
