#include "model/zel_saturate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zel;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

} // namespace

TEST(SaturateTo, TruncatesTowardsZero) {
    EXPECT_EQ(SaturateTo<unsigned char>(12.9), 12);
    EXPECT_EQ(SaturateTo<unsigned short>(65534.99), 65534);
    EXPECT_EQ(SaturateTo<int>(-7.9), -7);
    EXPECT_EQ(SaturateTo<int>(-0.5), 0);
}

TEST(SaturateTo, HoldsWhatDoesNotFitAtTheLimits) {
    EXPECT_EQ(SaturateTo<unsigned char>(-0.5), 0);
    EXPECT_EQ(SaturateTo<unsigned char>(-300), 0);
    EXPECT_EQ(SaturateTo<unsigned char>(255), 255);
    EXPECT_EQ(SaturateTo<unsigned char>(256), 255);
    EXPECT_EQ(SaturateTo<unsigned short>(1e30), 65535);
    EXPECT_EQ(SaturateTo<int>(2147483648.0), std::numeric_limits<int>::max()); // what 2147483647 is as a float
    EXPECT_EQ(SaturateTo<int>(-2147483648.0), std::numeric_limits<int>::min());
    EXPECT_EQ(SaturateTo<int>(-1e30), std::numeric_limits<int>::min());
    EXPECT_EQ(SaturateTo<long>(9223372036854775808.0), std::numeric_limits<long>::max());
    EXPECT_EQ(SaturateTo<int>(infinite), std::numeric_limits<int>::max());
    EXPECT_EQ(SaturateTo<int>(-infinite), std::numeric_limits<int>::min());
}

TEST(SaturateTo, NotANumberIsTheLowerLimit) {
    EXPECT_EQ(SaturateTo<unsigned char>(notANumber), 0);
    EXPECT_EQ(SaturateTo<int>(notANumber), std::numeric_limits<int>::min());
}

TEST(SaturateTo, FloatsStayAsTheyAre) {
    EXPECT_EQ(SaturateTo<float>(-1.25), -1.25F);
    EXPECT_EQ(SaturateTo<float>(infinite), std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(SaturateTo<float>(notANumber)));
}

TEST(CountBits, AreThoseOfTheNumberAndAtLeastOne) {
    const struct {
        long long value;
        int bits;
    } rows[] = {{0, 1},
                {1, 1},
                {2, 2},
                {3, 2},
                {4, 3},
                {200, 8},
                {255, 8},
                {256, 9},
                {4095, 12},
                {4096, 13},
                {65535, 16},
                {2147483647, 31},
                {-1, 1},
                {-4096, 1},
                {std::numeric_limits<long long>::max(), 63},
                {std::numeric_limits<long long>::min(), 1}};
    for (const auto& row : rows)
        EXPECT_EQ(CountBits(row.value), row.bits) << row.value;
}
