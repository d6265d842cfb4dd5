#include "model/zel_proportions.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

using Scale = kep::Vector3d<float>;

TEST(Proportions, TheFinestAxisGetsOnePixelAVoxelAndTheOthersMore) {
    // Voxels of 0.1 x 0.2 x 0.5 microns: 10 pixels per micron everywhere make them 1 x 2 x 5 pixels.
    const OpeningScale opening = ChooseScale({10, 5, 2});
    EXPECT_EQ(opening.scale, Scale(10, 10, 10));
    EXPECT_TRUE(opening.proportional);
    EXPECT_EQ(ChooseScale({1, 2, 8}).scale, Scale(8, 8, 8));
}

TEST(Proportions, WithoutVoxelSizeAVoxelIsAPixel) {
    EXPECT_EQ(ChooseScale({}).scale, Scale(1, 1, 1));
}

TEST(Proportions, AMissingComponentCountsAsTheFirstGoodOne) {
    EXPECT_EQ(ChooseScale({4, 8, 0}).scale, Scale(8, 8, 8)); // z counts as 4
}

TEST(Proportions, VoxelsLikeNeedlesAreShownAsCubes) {
    EXPECT_TRUE(ChooseScale({10, 10, 0.1F}).proportional); // a hundredfold is still taken as it is
    const OpeningScale opening = ChooseScale({10, 10, 0.09F});
    EXPECT_FALSE(opening.proportional);
    EXPECT_EQ(opening.scale, Scale(10, 10, 0.09F));
}

TEST(Proportions, APictureGrowsByHalfNumbersAndShrinksAsItMust) {
    // 8 pixels of a room are for lines and borders. 100 + 20 across, 80 + 20 down.
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 360, 8 + 1000), 3.0F);
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 359, 8 + 1000), 2.5F);
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 1000, 8 + 249), 2.0F);
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 179, 8 + 1000), 1.0F);
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 180, 8 + 1000), 1.5F);
    EXPECT_EQ(FactorToFill({100, 80, 20}, 8 + 60, 8 + 1000), 0.5F);
    EXPECT_GT(FactorToFill({100, 80, 20}, 1, 1), 0.0F);
}

TEST(Title, NamesTheFileItsSizeAndTheZoom) {
    EXPECT_EQ(DescribeTitle("a.tif", {512, 256, 40}, 1.5F), "a.tif - 512 x 256 x 40 - 150%");
    EXPECT_EQ(DescribeTitle("a.tif", {1, 2, 3}, 0.333F), "a.tif - 1 x 2 x 3 - 33%");
    EXPECT_EQ(DescribeTitle("a.tif", {1, 2, 3}, 0.0123F), "a.tif - 1 x 2 x 3 - 1.2%");
}

} // namespace
} // namespace zel
