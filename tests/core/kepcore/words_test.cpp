// Numbers, units and words as files hold them.

#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/file/kep_path.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace kep::detail {
namespace {

TEST(Words, ANumberIsWhatTheWholeTextSays) {
    EXPECT_EQ(ParseWhole<int>("-12"), -12);
    EXPECT_EQ(ParseWhole<double>("1e3"), 1000.0);
    EXPECT_EQ(ParseNumber<double>("+2.5"), 2.5);
    for (const char* const text : {"", "+1", " 1", "1 ", "1x", "x1", "--1", "0x1"})
        EXPECT_FALSE(ParseWhole<int>(text)) << text;
    EXPECT_FALSE(ParseNumber<int>("++1"));
    EXPECT_FALSE(ParseWhole<unsigned char>("256"));
}

TEST(Words, NineDigitsGiveEveryFloatBack) {
    std::mt19937 random(3);
    for (int i = 0; i < 100000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(value))
            continue;
        const auto read = ParseNumber<double>(FormatNineDigits(static_cast<double>(value)));
        ASSERT_TRUE(read);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(ToNearestFloat(*read)), std::bit_cast<std::uint32_t>(value));
    }
}

TEST(Words, NumbersBeyondTheLargestFloatBecomeTheNearest) {
    constexpr float most = std::numeric_limits<float>::max();
    constexpr float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(ToNearestFloat(3.40282347e38), most); // above it, by less than half a step
    EXPECT_EQ(ToNearestFloat(-3.40282347e38), -most);
    EXPECT_EQ(ToNearestFloat(3.5e38), inf);
    EXPECT_EQ(ToNearestFloat(-3.5e38), -inf);
    EXPECT_EQ(ToNearestFloat(1e-60), 0.0F);
    EXPECT_TRUE(std::isnan(ToNearestFloat(std::nan(""))));
}

TEST(Words, TriplesHaveSingleBlanksBetweenThem) {
    const auto parse = [](std::string_view text) { return ParseTriple(text, &ParseWhole<float>); };
    EXPECT_EQ(parse("1 -2.5 3e2"), (Triple{1.0F, -2.5F, 300.0F}));
    EXPECT_EQ(parse(FormatTriple({0.1F, 0.0F, -7.0F})), (Triple{0.1F, 0.0F, -7.0F}));
    for (const char* const text : {"", "1", "1 2", "1 2 ", "1  2 3", " 1 2 3", "1 2 3 ", "1 2 3 4", "1\t2 3", "+1 2 3"})
        EXPECT_FALSE(parse(text)) << text;
}

TEST(Words, UnitsAreKnownWhateverTheSizeOfTheirLetters) {
    for (const UnitNames names : {UnitNames::Tiff, UnitNames::Ics}) {
        EXPECT_EQ(FindMicrons("Micron", names), 1.0);
        EXPECT_EQ(FindMicrons("\xC2\xB5m", names), 1.0);
        EXPECT_EQ(FindMicrons("\xCE\xBCm", names), 1.0);
        EXPECT_EQ(FindMicrons("\xB5m", names), 1.0);
        EXPECT_EQ(FindMicrons("NM", names), 1e-3);
        EXPECT_EQ(FindMicrons("mm", names), 1e3);
        EXPECT_EQ(FindMicrons("centimeters", names), 1e4);
        EXPECT_EQ(FindMicrons("meter", names), 1e6);
        EXPECT_EQ(FindMicrons("inch", names), 25400.0);
        for (const char* const text : {"", "pixel", "relative", "undefined", " um", "micro"})
            EXPECT_FALSE(FindMicrons(text, names)) << text;
    }
}

TEST(Words, UnitsOfOneFormatSayNothingInTheOther) {
    for (const char* const name : {"in", "\\u00b5m", "\\u00B5M"}) {
        EXPECT_TRUE(FindMicrons(name, UnitNames::Tiff)) << name;
        EXPECT_FALSE(FindMicrons(name, UnitNames::Ics)) << name;
    }
    for (const char* const name : {"micrometre", "micrometres", "nanometre", "millimetres", "centimetre", "metres"}) {
        EXPECT_TRUE(FindMicrons(name, UnitNames::Ics)) << name;
        EXPECT_FALSE(FindMicrons(name, UnitNames::Tiff)) << name;
    }
}

TEST(Words, SuffixesAreFoundInLettersOfAnySize) {
    EXPECT_TRUE(EndsWithIgnoringCase("a.ICS", ".ics"));
    EXPECT_TRUE(EndsWithIgnoringCase(".ics", ".ics"));
    EXPECT_FALSE(EndsWithIgnoringCase("ics", ".ics"));
    EXPECT_FALSE(EndsWithIgnoringCase("a.ics ", ".ics"));
    EXPECT_FALSE(EndsWithIgnoringCase("", ".ics"));
}

TEST(Words, PathsFallIntoFolderAndName) {
    EXPECT_EQ(GetFolder("/a/b.tif"), "/a/");
    EXPECT_EQ(GetBaseName("/a/b.tif"), "b.tif");
    EXPECT_EQ(GetFolder("b.tif"), "");
    EXPECT_EQ(GetBaseName("b.tif"), "b.tif");
    EXPECT_EQ(GetFolder("/a/"), "/a/");
    EXPECT_EQ(GetBaseName("/a/"), "");
}

} // namespace
} // namespace kep::detail
