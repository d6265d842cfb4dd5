#include "tests/mapping/gray_module.h"
#include "tests/support/log_catcher.h"

#include <gtest/gtest.h>

#include <random>

using namespace zel;
using namespace zel::test;

namespace {

Colour Gray(int level) {
    const auto value = static_cast<unsigned char>(level);
    return {value, value, value};
}

} // namespace

TEST(GrayPalettes, PalettesColourTheLevelsAndLeaveTheStretch) {
    Module<unsigned char> module(Bytes({0, 255}));
    EXPECT_EQ(module.ColourOf(100), Gray(100));

    module.Choose(9);
    EXPECT_EQ(module.GetPaletteMode(), 9);
    EXPECT_EQ(module.ColourOf(255), Colour(255, 0, 0));
    EXPECT_EQ(module.ColourOf(0), Gray(0)) << "and not blue";
    for (int v = 1; v < 255; ++v)
        EXPECT_EQ(module.ColourOf(static_cast<unsigned char>(v)), Gray(v));

    module.Choose(10);
    EXPECT_EQ(module.GetPaletteMode(), 10);
    EXPECT_EQ(module.ColourOf(0), Gray(0));
    EXPECT_EQ(module.ColourOf(1), Colour(0, 255, 0));
    EXPECT_EQ(module.ColourOf(11), Colour(128, 0, 128));
    EXPECT_EQ(module.ColourOf(12), Colour(255, 0, 0)) << "the first colour first comes after all others";
    EXPECT_EQ(module.ColourOf(13), Colour(0, 255, 0));
    EXPECT_EQ(module.ColourOf(255), Colour(255, 255, 0)) << "255 = 21 * 12 + 3";

    module.Choose(11);
    EXPECT_EQ(module.GetPaletteMode(), 11);
    EXPECT_EQ(module.ColourOf(0), Gray(0));
    EXPECT_EQ(module.ColourOf(43), Colour(0, 255, 255));
    EXPECT_EQ(module.ColourOf(255), Colour(0, 0, 255));

    module.Choose(8);
    EXPECT_EQ(module.GetPaletteMode(), 8);
    EXPECT_EQ(module.ColourOf(43), Gray(43));
    EXPECT_EQ(module.GetStretchMode(), 0);
}

TEST(GrayPalettes, PalettesColourWhatTheStretchGives) {
    Module<unsigned char> module(Bytes({10, 200}));
    const LogCatcher log;
    module.Choose(3);
    module.Choose(9);
    EXPECT_EQ(module.ColourOf(200), Colour(255, 0, 0));
    EXPECT_EQ(module.ColourOf(199), Gray(254));
    EXPECT_EQ(module.ColourOf(10), Gray(0));
    EXPECT_EQ(module.GetStretchMode(), 1);
}

TEST(GrayPalettes, ShortPalettesRepeatAndLongOnesAreCut) {
    Module<unsigned char> module(Bytes({}));
    module.Choose(10);
    const Colour a(1, 0, 0), b(2, 0, 0), c(3, 0, 0);
    module.SetPal({a, b, c});
    EXPECT_EQ(module.ColourOf(0), Gray(0));
    EXPECT_EQ(module.ColourOf(1), b);
    EXPECT_EQ(module.ColourOf(2), c);
    EXPECT_EQ(module.ColourOf(3), a);
    EXPECT_EQ(module.ColourOf(255), a) << "255 = 85 * 3";
    module.SetPal({});
    EXPECT_EQ(module.ColourOf(1), b) << "a palette without colours changes nothing";
    module.SetPal({c});
    EXPECT_EQ(module.ColourOf(0), Gray(0));
    EXPECT_EQ(module.ColourOf(1), c);
    Palette longOne;
    for (int i = 0; i < 300; ++i)
        longOne.emplace_back(static_cast<unsigned char>(i), static_cast<unsigned char>(i >> 8), 9);
    module.SetPal(longOne);
    EXPECT_EQ(module.ColourOf(0), Gray(0));
    EXPECT_EQ(module.ColourOf(1), Colour(1, 0, 9));
    EXPECT_EQ(module.ColourOf(255), Colour(255, 0, 9));
    EXPECT_EQ(module.GetPaletteMode(), 10);
}

TEST(GrayPalettes, MapsAPictureAsItMapsItsVoxels) {
    std::mt19937 random(20);
    const auto compare = [](auto& module, auto voxel) {
        using T = decltype(voxel());
        for (const int palette : {8, 11}) {
            module.Choose(palette);
            for (const auto& [width, height] :
                 std::vector<std::pair<int, int>>{{0, 0}, {5, 0}, {1, 1}, {1, 17}, {33, 1}, {13, 7}, {640, 431}}) {
                const auto count = static_cast<std::size_t>(width * height);
                std::vector<T> voxels(count);
                for (T& v : voxels)
                    v = voxel();
                ColourBuffer buffer(width, height);
                module.Map(voxels.data(), buffer);
                std::size_t wrong = 0;
                for (std::size_t i = 0; i < count; ++i)
                    if (!(buffer.data[i] == module.ColourOf(voxels[i])))
                        ++wrong;
                EXPECT_EQ(wrong, 0U) << width << " by " << height;
            }
        }
    };
    Module<unsigned char> bytes(Bytes({3, 250}));
    compare(bytes, [&] { return static_cast<unsigned char>(random()); });
    Module<unsigned short> words(OfVoxels<unsigned short>({}));
    compare(words, [&] { return static_cast<unsigned short>(random()); });
    Module<int> numbers(OfVoxels<int>({}, -400, 400));
    compare(numbers, [&] { return static_cast<int>(random() % 1000) - 500; });
    Module<float> reals(Counted<float>(-1, 1, std::vector<std::size_t>(256)));
    compare(reals, [&] { return static_cast<float>(random() % 1000) * 0.003F - 1.5F; });
}
