#include "model/zel_infotexts.h"

#include <gtest/gtest.h>

#include <limits>

namespace zel {
namespace {

TEST(InfoTexts, PlacesAndExtentsHaveThreeDecimals) {
    EXPECT_EQ(PositionText({0.5F, -1.25F, 100.0F}), "[0.500, -1.250, 100.000]");
    EXPECT_EQ(ExtentText({20.0F, 0.0625F, 7.0F}), "20.000 x 0.062 x 7.000"); // a tie goes to the even digit
}

TEST(InfoTexts, VoxelsCarryTheirFrame) {
    EXPECT_EQ(VoxelNumberText({12, 0, 345}, 6), "[12, 0, 345, 6]");
}

TEST(InfoTexts, ColoursStandInColumns) {
    EXPECT_EQ(ColourText({1, 20, 255}), "  1  20 255");
}

TEST(InfoTexts, ImageSizesStandInColumns) {
    EXPECT_EQ(ImageSizeText({512, 64, 7}, 1), "512 x  64 x   7 x   1");
    EXPECT_EQ(ImageSizeText({4096, 10, 2}, 1000), "4096 x  10 x   2 x 1000");
}

TEST(InfoTexts, VoxelSizesAreWholeNanometresOfSinglePrecision) {
    EXPECT_EQ(VoxelSizeText({10.0F, 4.0F, 0.5F}), "100 x 250 x 2000");
    EXPECT_EQ(VoxelSizeText({3.0F, 7.0F, 600.0F}), "333 x 142 x   1"); // truncated: 333.3, 142.9, 1.7
    // 1 / 0.065 is 15.384616 as a float, and 1000 / 15.384616 is 64.99999 in double.
    const float res = 1.0F / 0.065F;
    ASSERT_LT(1000.0 / static_cast<double>(res), 65.0);
    EXPECT_EQ(VoxelSizeText({res, res, res}), " 65 x  65 x  65");
}

TEST(InfoTexts, AResolutionThatIsNotDefinedIsSaidTwice) {
    EXPECT_EQ(VoxelSizeText({}), "undef");
    EXPECT_EQ(ImageExtentText({10, 10, 10}, {}), "undef");
    EXPECT_EQ(VoxelSizeText({10.0F, 10.0F, 0.0F}), "undef");
    EXPECT_EQ(ImageExtentText({10, 10, 10}, {10.0F, 10.0F, 0.0F}), "undef");
}

TEST(InfoTexts, ImageExtentsAreTheBoxes) {
    EXPECT_EQ(ImageExtentText({512, 64, 7}, {10.0F, 4.0F, 0.5F}), "51.200 x 16.000 x 14.000");
}

TEST(InfoTexts, EnormousNumbersFit) {
    constexpr float most = std::numeric_limits<float>::max();
    const std::string number = "340282346638528859811704183484516925440.000";
    EXPECT_EQ(PositionText({-most, -most, -most}), "[-" + number + ", -" + number + ", -" + number + "]");
    // 1000 / 1e-30 nanometres are more than an int holds.
    EXPECT_EQ(VoxelSizeText({1e-30F, 1.0F, 1.0F}), "2147483647 x 1000 x 1000");
}

} // namespace
} // namespace zel
