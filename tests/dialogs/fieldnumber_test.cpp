#include "dialogs/zel_fieldnumber.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

using namespace zel;

namespace {

using Byte = unsigned char;
using Word = unsigned short;

constexpr int greatestInt = std::numeric_limits<int>::max();
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr float greatestFloat = std::numeric_limits<float>::max();

TEST(ParseNumber, TakesIntegersThatFit) {
    EXPECT_EQ(255, ParseNumber<Byte>("255"));
    EXPECT_EQ(std::nullopt, ParseNumber<Byte>("256"));
    EXPECT_EQ(std::nullopt, ParseNumber<Byte>("-1"));
    EXPECT_EQ(std::nullopt, ParseNumber<Byte>("300"));
    EXPECT_EQ(65535, ParseNumber<Word>("65535"));
    EXPECT_EQ(std::nullopt, ParseNumber<Word>("65536"));
    EXPECT_EQ(leastInt, ParseNumber<int>("-2147483648"));
    EXPECT_EQ(std::nullopt, ParseNumber<int>("2147483648"));
    for (const char* const text : {"", "12 3", "abc", "1.5", "0x10", "99999999999999999999"})
        EXPECT_EQ(std::nullopt, ParseNumber<int>(text)) << text;
    EXPECT_EQ(10, ParseNumber<int>("010")) << "base 10";
}

TEST(ParseNumber, TakesFiniteReals) {
    EXPECT_EQ(0.1F, ParseNumber<float>("0.1"));
    EXPECT_EQ(-1e6F, ParseNumber<float>("-1e6"));
    EXPECT_EQ(std::nullopt, ParseNumber<float>("1e39")) << "infinite as a float";
    EXPECT_EQ(1e39, ParseNumber<double>("1e39"));
    for (const char* const text : {"", "nan", "inf", "1,5", "1.2.3"})
        EXPECT_EQ(std::nullopt, ParseNumber<double>(text)) << text;
}

TEST(NumberToFullText, HasTheDigitsOfTheValidators) {
    EXPECT_EQ("200", NumberToFullText<Byte>(200));
    EXPECT_EQ("0.126000", NumberToFullText(0.126F));
    EXPECT_EQ("0.333333", NumberToFullText(1.0 / 3.0));
}

TEST(ShowsNumber, TakesBothWaysOfShowing) {
    EXPECT_TRUE(ShowsNumber("0.99", 0.985977F));
    EXPECT_TRUE(ShowsNumber("0.985977", 0.985977F));
    for (const char* const text : {"0.98", "0.9860", "0.985976", "", "abc"})
        EXPECT_FALSE(ShowsNumber(text, 0.985977F)) << text;
    EXPECT_TRUE(ShowsNumber("1.2", 1.2345));
    EXPECT_TRUE(ShowsNumber("1.2345", 1.2345));
    EXPECT_FALSE(ShowsNumber("1.23", 1.2345));
    EXPECT_TRUE(ShowsNumber<Byte>("7", 7));
    EXPECT_FALSE(ShowsNumber<Byte>("07", 7));
}

TEST(NumberEntered, IsWhatTheFieldShowsOfIt) {
    EXPECT_EQ(0.13F, NumberEntered(0.126F, 0.0F, 1.0F));
    EXPECT_EQ(2.6, NumberEntered(2.5836, 0.1, 10.0));
    EXPECT_EQ(-3, NumberEntered(-3, -5, 5));
}

TEST(NumberEntered, KeepsItsDigitsWhereItsTextLeavesTheBoundsOrTellsNothing) {
    EXPECT_EQ(0.985977F, NumberEntered(0.985977F, 0.0163F, 0.985977F)) << "0.99 lies above";
    EXPECT_EQ(0.0171F, NumberEntered(0.0171F, 0.0163F, 0.0173F)) << "so does 0.02";
    EXPECT_EQ(0.0201F, NumberEntered(0.0201F, 0.0196F, 0.0204F)) << "both bounds are 0.02";
    EXPECT_EQ(greatestFloat, NumberEntered(greatestFloat, 0.0F, greatestFloat));
}

TEST(PositionCount, IsHeldWithinInt) {
    EXPECT_EQ(0, PositionCount(0));
    EXPECT_EQ(65536, PositionCount(65536));
    EXPECT_EQ(greatestInt, PositionCount(2147483647U));
    EXPECT_EQ(greatestInt, PositionCount(std::size_t{1} << 32)) << "an integer image over its whole type";
}

TEST(NumberToText, HasAFormatForEachType) {
    EXPECT_EQ("200", NumberToText<Byte>(200));
    EXPECT_EQ("65535", NumberToText<Word>(65535));
    EXPECT_EQ("-7", NumberToText(-7));
    EXPECT_EQ("0.13", NumberToText(0.126F));
    EXPECT_EQ("65535.00", NumberToText(65535.0F));
    EXPECT_EQ("1", NumberToText(1.0)) << "no blank before it";
    EXPECT_EQ("0.53", NumberToText(0.527));
    EXPECT_EQ("10", NumberToText(10.0));
}

TEST(StepBetweenPositions, DividesTheRange) {
    EXPECT_EQ(1, StepBetweenPositions<Byte>(0, 255, 256));
    EXPECT_EQ(16, StepBetweenPositions<Byte>(0, 255, 16));
    EXPECT_EQ(3, StepBetweenPositions(0, 1000, 256)) << "1001 / 256 truncated";
    EXPECT_EQ(0, StepBetweenPositions(0, 9, 11));
    EXPECT_EQ(0.25F, StepBetweenPositions(1.0F, 2.0F, 4));
    EXPECT_DOUBLE_EQ(0.1, StepBetweenPositions(0.1, 10.0, 99));
}

TEST(StepBetweenPositions, StaysWithinTheType) {
    EXPECT_EQ(65536, StepBetweenPositions(leastInt, greatestInt, 65536)) << "2^32 / 2^16";
    EXPECT_EQ(greatestInt, StepBetweenPositions(leastInt, greatestInt, 1)) << "2^32 is too large";
    EXPECT_EQ(255, StepBetweenPositions<Byte>(0, 255, 1)) << "256 is too large";
    EXPECT_EQ(255, StepBetweenPositions<Byte>(0, 255, 0)) << "no position counts as one";
    EXPECT_EQ(greatestFloat, StepBetweenPositions(-greatestFloat, greatestFloat, 1));
    EXPECT_EQ(0, StepBetweenPositions<Byte>(9, 3, 2)) << "no range";
}

TEST(StepNumber, StepsToTheBounds) {
    EXPECT_EQ(16, (StepNumber<Byte>(8, 8, true, 0, 255)));
    EXPECT_EQ(0, (StepNumber<Byte>(8, 8, false, 0, 255)));
    EXPECT_EQ(100, StepNumber(95, 10, true, 0, 100));
    EXPECT_EQ(-5, StepNumber(0, 10, false, -5, 100));
    EXPECT_EQ(1.0F, StepNumber(0.75F, 0.5F, true, 0.0F, 1.0F));
    EXPECT_EQ(10, StepNumber(3, 5, true, 10, 20)) << "from below the range";
}

TEST(StepNumber, GoesAroundTheTypeBeforeTheBoundHoldsIt) {
    EXPECT_EQ(4, (StepNumber<Byte>(250, 10, true, 0, 255))) << "260 - 256";
    EXPECT_EQ(250, (StepNumber<Byte>(4, 10, false, 0, 255))) << "-6 + 256";
    EXPECT_EQ(200, (StepNumber<Byte>(4, 10, false, 0, 200))) << "250, held";
    EXPECT_EQ(3, (StepNumber<Word>(65530, 9, true, 0, 65535)));
    EXPECT_EQ(leastInt + 6, StepNumber(greatestInt - 3, 10, true, leastInt, greatestInt)) << "-3 + 10 - 1";
}

TEST(StepNumber, StaysAtItsBound) {
    EXPECT_EQ(std::nullopt, (StepNumber<Byte>(255, 1, true, 0, 255)));
    EXPECT_EQ(std::nullopt, (StepNumber<Byte>(0, 1, false, 0, 255)));
    EXPECT_EQ(std::nullopt, StepNumber(120, 1, true, 0, 100)) << "beyond it";
    EXPECT_EQ(std::nullopt, StepNumber(10.0, 0.1, true, 0.1, 10.0));
}

TEST(StepNumber, WithoutAStepStaysWhereItIs) {
    EXPECT_EQ(50, StepNumber(50, 0, true, 0, 100));
    EXPECT_EQ(50, StepNumber(50, 0, false, 0, 100));
    EXPECT_EQ(std::nullopt, StepNumber(100, 0, true, 0, 100)) << "at its bound";
}

TEST(NumberAtPosition, CountsStepsFromTheLowEnd) {
    EXPECT_EQ(200, (NumberAtPosition<Byte>(200, 0, 1)));
    EXPECT_EQ(130, NumberAtPosition(10, 100, 3));
    EXPECT_EQ(0.5F, NumberAtPosition(2, 0.0F, 0.25F));
    EXPECT_EQ(255, (NumberAtPosition<Byte>(70, 0, 4))) << "280";
    EXPECT_EQ(2147418112, NumberAtPosition(65535, leastInt, 65536)) << "-2^31 + 2^32 - 2^16";
}

TEST(PositionOfNumber, CountsWholeSteps) {
    EXPECT_EQ(200, (PositionOfNumber<Byte>(200, 0, 255, 1, 256)));
    EXPECT_EQ(10, PositionOfNumber(132, 100, 200, 3, 33)) << "32 / 3";
    EXPECT_EQ(65535, PositionOfNumber(greatestInt, leastInt, greatestInt, 65536, 65536)) << "(2^32 - 1) / 2^16";
}

TEST(PositionOfNumber, RoundsReals) {
    // 0.29 / 0.01 is 28.999..., and a triangle dragged to 29 must stay there.
    EXPECT_EQ(29, PositionOfNumber(0.29F, 0.0F, 1.0F, 0.01F, 100));
    EXPECT_EQ(2, PositionOfNumber(0.5F, 0.0F, 1.0F, 0.25F, 4));
    EXPECT_EQ(3, PositionOfNumber(1.0F, 0.0F, 1.0F, 0.25F, 4)) << "position 4 is the last, 3";
}

TEST(PositionOfNumber, HasNoneOutside) {
    EXPECT_EQ(std::nullopt, PositionOfNumber(99, 100, 200, 3, 33));
    EXPECT_EQ(std::nullopt, PositionOfNumber(201, 100, 200, 3, 33));
    EXPECT_EQ(std::nullopt, PositionOfNumber(1000, 0, 1000, 3, 256)) << "333 steps: the division left a rest";
    EXPECT_EQ(255, PositionOfNumber(768, 0, 1000, 3, 256)) << "256 steps are the end";
    EXPECT_EQ(std::nullopt, PositionOfNumber(std::numeric_limits<float>::quiet_NaN(), 0.0F, 1.0F, 0.1F, 10));
}

TEST(PositionOfNumber, IsTheFirstWithoutAStep) {
    EXPECT_EQ(0, PositionOfNumber(7, 5, 9, 0, 11));
    EXPECT_EQ(0, PositionOfNumber(5.0F, 5.0F, 5.0F, 0.0F, 1));
}

TEST(HoldNumber, TruncatesAndHolds) {
    EXPECT_EQ(254, HoldNumber<Byte>(254.9));
    EXPECT_EQ(255, HoldNumber<Byte>(1e9));
    EXPECT_EQ(0, HoldNumber<Byte>(-3.0));
    EXPECT_EQ(greatestInt, HoldNumber<int>(2147483648.0));
    EXPECT_EQ(leastInt, HoldNumber<int>(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(greatestFloat, HoldNumber<float>(1e300));
    EXPECT_EQ(0.25F, HoldNumber<float>(0.25));
}

} // namespace
