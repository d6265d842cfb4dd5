#include "mapping/zel_palette.h"
#include "tests/mapping/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/log_catcher.h"
#include "tests/support/peak_memory.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>

using namespace zel;
using namespace zel::test;

namespace {

using Colour = kep::RGB_generic<unsigned char>;

/// Palettes of files with given contents.
class PaletteFile : public ::testing::Test {
protected:
    bool Load(const std::string& contents) {
        const std::string name = folder / "palette.pal";
        WriteBytes(name, contents);
        return LoadPalette(palette, wxString::FromUTF8(name));
    }

    void TearDown() override { EXPECT_TRUE(log.GetEntries().empty()); }

    ScratchFolder folder;
    LogCatcher log;
    Palette palette{{7, 7, 7}, {8, 8, 8}};
};

std::string Lines(const std::string& line, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += line + "\n";
    return text;
}

} // namespace

TEST_F(PaletteFile, ColoursMayBeSeparatedBySpacesColonsAndCommas) {
    ASSERT_TRUE(Load("10 20 30\n40:50:60\n70,80,90\n1 2:3\n"));
    const Palette expected{{10, 20, 30}, {40, 50, 60}, {70, 80, 90}, {1, 2, 3}};
    EXPECT_TRUE(palette == expected);
}

TEST_F(PaletteFile, WhatIsWrongWithItIsTold) {
    const std::string name = folder / "palette.pal";
    EXPECT_EQ(ReadPalette(palette, wxString::FromUTF8(name)), "The file can't be read.");
    WriteBytes(name, "1 2 3\n4 5 6\n7 8\n");
    EXPECT_EQ(ReadPalette(palette, wxString::FromUTF8(name)), "Line 3 has no three numbers for red, green and blue.");
    WriteBytes(name, "1 2 3\n");
    EXPECT_EQ(ReadPalette(palette, wxString::FromUTF8(name)), "");
    WriteBytes(name, "");
    EXPECT_EQ(ReadPalette(palette, wxString::FromUTF8(name)), "") << "without colours";
    EXPECT_TRUE(palette.empty());
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
