#include "core/kepcore/kep_exceptions.h"
#include "model/zel_palette.h"

#include <gtest/gtest.h>

using namespace zel;

namespace {

using Colour = kep::RGB_generic<unsigned char>;

Palette Make(long kind) {
    Palette palette(3, Colour(1, 2, 3));
    CreatePalette(kind, palette);
    return palette;
}

Colour Gray(std::size_t level) {
    const auto value = static_cast<unsigned char>(level);
    return {value, value, value};
}

PaletteTable MakeTable() {
    PaletteTable table;
    table.Init(256, 0, 255);
    return table;
}

} // namespace

TEST(CreatePalette, LabelsAreTwelveStrongColours) {
    const Palette expected{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}, {0, 255, 255}, {255, 0, 255},
                           {128, 0, 0}, {0, 128, 0}, {0, 0, 128}, {128, 128, 0}, {0, 128, 128}, {128, 0, 128}};
    EXPECT_TRUE(Make(0) == expected);
}

TEST(CreatePalette, WhiteFirstHasFourteen) {
    const Palette expected{{255, 255, 255}, {255, 0, 0},   {0, 255, 0},     {0, 0, 255},    {255, 0, 255},
                           {0, 255, 255},   {128, 0, 0},   {0, 128, 0},     {0, 0, 128},    {128, 128, 255},
                           {128, 128, 0},   {128, 0, 255}, {255, 128, 255}, {128, 128, 128}};
    EXPECT_TRUE(Make(3) == expected);
}

TEST(CreatePalette, SaturationIsGrayWithBlueAndRedEnds) {
    const Palette palette = Make(1);
    ASSERT_EQ(palette.size(), 256U);
    EXPECT_TRUE(palette[0] == Colour(0, 0, 255));
    EXPECT_TRUE(palette[255] == Colour(255, 0, 0));
    for (std::size_t i = 1; i < 255; ++i)
        EXPECT_TRUE(palette[i] == Gray(i)) << i;
}

TEST(CreatePalette, AnyOtherKindIsGray) {
    for (const long kind : {4L, 5L, -1L, 1000000L}) {
        const Palette palette = Make(kind);
        ASSERT_EQ(palette.size(), 256U);
        for (std::size_t i = 0; i < 256; ++i)
            EXPECT_TRUE(palette[i] == Gray(i)) << kind << " " << i;
    }
}

TEST(CreatePalette, PeriodicGoesOnceRoundTheColours) {
    const Palette palette = Make(2);
    ASSERT_EQ(palette.size(), 256U);
    // Ramps of 43, 43, 43, 42, 43 and 42 entries start at 0, 43, 86, 129, 171 and 214.
    const Colour blue(0, 0, 255), cyan(0, 255, 255), green(0, 255, 0), yellow(255, 255, 0), red(255, 0, 0),
        magenta(255, 0, 255);
    const struct {
        std::size_t first, last;
        Colour from, to;
    } ramps[] = {{0, 42, blue, cyan},     {43, 85, cyan, green},    {86, 128, green, yellow},
                 {129, 170, yellow, red}, {171, 213, red, magenta}, {214, 255, magenta, blue}};
    for (const auto& ramp : ramps) {
        EXPECT_TRUE(palette[ramp.first] == ramp.from) << ramp.first;
        EXPECT_TRUE(palette[ramp.last] == ramp.to) << ramp.last;
        for (int channel = 0; channel < 3; ++channel) {
            const int from = ramp.from.GetComponent(channel);
            const int to = ramp.to.GetComponent(channel);
            for (std::size_t i = ramp.first; i <= ramp.last; ++i) {
                // A component that rises or falls is within one of the straight line, below it by the truncation.
                const double line = from + (to - from) * static_cast<double>(i - ramp.first) /
                                               static_cast<double>(ramp.last - ramp.first);
                const double value = palette[i].GetComponent(channel);
                EXPECT_LE(value, line + 1e-3) << i;
                EXPECT_GT(value, line - 1.0 - 1e-3) << i;
            }
        }
    }
    // Green of entry 1: 255 / 42 = 6.07. Of entry 20: 255 * 20 / 42 = 121.4.
    EXPECT_TRUE(palette[1] == Colour(0, 6, 255));
    EXPECT_TRUE(palette[20] == Colour(0, 121, 255));
    // Blue of entry 44: 255 - 255 / 42 = 248.9. Red of entry 130: green falls to 255 - 255 / 41 = 248.8.
    EXPECT_TRUE(palette[44] == Colour(0, 255, 248));
    EXPECT_TRUE(palette[130] == Colour(255, 248, 0));
    EXPECT_TRUE(palette[42] == palette[43]);
}

TEST(SpreadPalette, RepeatsAShortPaletteAndKeepsLevelZeroBlack) {
    PaletteTable table = MakeTable();
    SpreadPalette({{10, 0, 0}, {20, 0, 0}, {30, 0, 0}}, table);
    EXPECT_TRUE(table.Get(0) == Colour(0, 0, 0));
    EXPECT_TRUE(table.Get(1) == Colour(20, 0, 0));
    EXPECT_TRUE(table.Get(2) == Colour(30, 0, 0));
    EXPECT_TRUE(table.Get(3) == Colour(10, 0, 0));
    EXPECT_TRUE(table.Get(255) == Colour(10, 0, 0)); // 255 = 3 * 85
}

TEST(SpreadPalette, AnEmptyPaletteChangesNothing) {
    PaletteTable table = MakeTable();
    SpreadPalette({{1, 2, 3}}, table);
    SpreadPalette({}, table);
    EXPECT_TRUE(table.Get(7) == Colour(1, 2, 3));
}

TEST(SpreadPalette, ATableWithoutLevelZeroIsRefused) {
    PaletteTable table;
    table.Init(10, 5, 14);
    const Palette palette{{1, 2, 3}};
    EXPECT_THROW(SpreadPalette(palette, table), kep::LibException);
}
