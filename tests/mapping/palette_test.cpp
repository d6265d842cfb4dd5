#include "mapping/zel_palette.h"
#include "tests/mapping/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/peak_memory.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>

using namespace zel;
using namespace zel::test;

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

/// Palettes of files with given contents.
class PaletteFile : public ::testing::Test {
protected:
    bool Load(const std::string& contents) {
        const std::string name = folder / "palette.pal";
        WriteBytes(name, contents);
        return LoadPalette(palette, wxString::FromUTF8(name));
    }

    void TearDown() override { EXPECT_TRUE(log.entries.empty()); }

    ScratchFolder folder;
    NotedLog log;
    Palette palette{{7, 7, 7}, {8, 8, 8}};
};

std::string Lines(const std::string& line, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += line + "\n";
    return text;
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

TEST_F(PaletteFile, ColoursMayBeSeparatedBySpacesColonsAndCommas) {
    ASSERT_TRUE(Load("10 20 30\n40:50:60\n70,80,90\n1 2:3\n"));
    const Palette expected{{10, 20, 30}, {40, 50, 60}, {70, 80, 90}, {1, 2, 3}};
    EXPECT_TRUE(palette == expected);
}

TEST_F(PaletteFile, ASpaceBehindACommaMakesABadLine) {
    for (const char* const line : {"10, 20, 30", "10  20  30", "10 ,20,30", ",10,20,30", "10::20:30"})
        EXPECT_FALSE(Load(line)) << line;
}

TEST_F(PaletteFile, WhiteSpaceAroundALineAndWhatFollowsTheThirdNumberAreIgnored) {
    ASSERT_TRUE(Load("  \t10 20 30 \t \n1 2 3 and more\n1,2,3,4,5\n"));
    const Palette expected{{10, 20, 30}, {1, 2, 3}, {1, 2, 3}};
    EXPECT_TRUE(palette == expected);
}

TEST_F(PaletteFile, NumbersAreTakenModulo256) {
    // 300 = 256 + 44, -1 = 255 - 256.
    ASSERT_TRUE(Load("300 -1 0\n256 511 -256\n"));
    const Palette expected{{44, 255, 0}, {0, 255, 0}};
    EXPECT_TRUE(palette == expected);
}

TEST_F(PaletteFile, LinesThatAreNoColourAreBad) {
    for (const char* const line : {"", "10 20", "10", "red green blue", "10 20 0x1e", "10 20 3.5", "10 20 30x", "1 2 ",
                                   "10\t20\t30", "10;20;30", "99999999999999999999 1 2"})
        EXPECT_FALSE(Load(std::string("1 2 3\n") + line + "\n4 5 6\n")) << line;
}

TEST_F(PaletteFile, ABlankLineIsBadButTheEndOfTheLastOneIsNoLine) {
    EXPECT_FALSE(Load("1 2 3\n\n4 5 6\n"));
    ASSERT_TRUE(Load("1 2 3\n4 5 6"));
    EXPECT_EQ(palette.size(), 2U);
    ASSERT_TRUE(Load("1 2 3\n4 5 6\n"));
    EXPECT_EQ(palette.size(), 2U);
}

TEST_F(PaletteFile, TheFirst256LinesCount) {
    ASSERT_TRUE(Load(Lines("1 2 3", 300)));
    EXPECT_EQ(palette.size(), 256U);
    ASSERT_TRUE(Load(Lines("1 2 3", 299) + "garbage\n"));
    EXPECT_EQ(palette.size(), 256U);
    ASSERT_TRUE(Load(Lines("1 2 3", 255) + "4 5 6\ngarbage\n"));
    EXPECT_TRUE(palette.back() == Colour(4, 5, 6));
    EXPECT_FALSE(Load(Lines("1 2 3", 255) + "garbage\n"));
}

TEST_F(PaletteFile, AnyLineEndAndAMarkOfUnicodeWillDo) {
    ASSERT_TRUE(Load("1 2 3\r\n4 5 6\r\n"));
    EXPECT_TRUE(palette == (Palette{{1, 2, 3}, {4, 5, 6}}));
    ASSERT_TRUE(Load("\xEF\xBB\xBF"
                     "1 2 3\n"));
    EXPECT_TRUE(palette == (Palette{{1, 2, 3}}));
    ASSERT_TRUE(Load(std::string("\xFF\xFE"
                                 "1\0 \0002\0 \0003\0\n\0",
                                 14)));
    EXPECT_TRUE(palette == (Palette{{1, 2, 3}}));
}

TEST_F(PaletteFile, AnEmptyFileIsAPaletteWithoutColours) {
    EXPECT_TRUE(Load(""));
    EXPECT_TRUE(palette.empty());
}

TEST_F(PaletteFile, ABadLineLeavesWhatWasReadBeforeIt) {
    EXPECT_FALSE(Load("1 2 3\n4 5 6\nbad\n"));
    ASSERT_EQ(palette.size(), 3U);
    EXPECT_TRUE(palette[0] == Colour(1, 2, 3));
    EXPECT_TRUE(palette[1] == Colour(4, 5, 6));
    EXPECT_TRUE(palette[2] == Colour());
}

TEST_F(PaletteFile, AFileThatCannotBeOpenedIsRefusedWithoutAWord) {
    EXPECT_FALSE(LoadPalette(palette, wxString::FromUTF8(folder / "there-is-none.pal")));
    EXPECT_FALSE(LoadPalette(palette, wxString::FromUTF8(folder.GetPath())));
    EXPECT_FALSE(LoadPalette(palette, ""));
    EXPECT_TRUE(palette == (Palette{{7, 7, 7}, {8, 8, 8}}));
}

TEST_F(PaletteFile, NoMoreIsTakenThanTheLinesThatCount) {
    const std::string name = folder / "palette.pal";
    const auto load = [&](const std::string& contents) {
        WriteBytes(name, contents);
        const std::size_t before = PeakMemory();
        const bool loaded = LoadPalette(palette, wxString::FromUTF8(name));
        EXPECT_LT(PeakMemory(), before + (std::size_t{8} << 20));
        return loaded;
    };
    EXPECT_TRUE(load(Lines("1 2 3", 4'000'000))); // 24 MB
    EXPECT_EQ(palette.size(), 256U);
    // Behind the third number anything may stand, of any length.
    EXPECT_TRUE(load("1 2 3 " + std::string(20'000'000, 'x') + "\n4 5 6\n"));
    EXPECT_TRUE(palette == (Palette{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_FALSE(load(std::string(20'000'000, '1')));
}

TEST_F(PaletteFile, LackOfMemoryIsToldByTheResult) {
    const std::string name = folder / "palette.pal";
    WriteBytes(name, Lines("1 2 3", 300));
    const wxString fileName = wxString::FromUTF8(name);
    bool failed = true;
    for (std::size_t number = 0; failed; ++number) {
        bool loaded = true;
        {
            const FailingMemory memory(number);
            EXPECT_NO_THROW(loaded = LoadPalette(palette, fileName)) << number;
            failed = memory.HasFailed();
        }
        ASSERT_EQ(loaded, !failed) << number;
    }
    EXPECT_EQ(palette.size(), 256U);
}

TEST_F(PaletteFile, APipeIsRefusedAtOnce) {
    const std::string name = folder / "pipe.pal";
    ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    EXPECT_FALSE(LoadPalette(palette, wxString::FromUTF8(name)));
    EXPECT_EQ(palette.size(), 2U);
}
