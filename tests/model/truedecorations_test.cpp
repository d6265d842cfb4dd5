#include "model/zel_truedecorations.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zel {
namespace {

TEST(RoundLength, IsTheNearestOfOneTwoAndFive) {
    // Between two of them decides the root of their product: 1.414, 3.162, 7.071.
    for (const auto& [wished, length] : std::initializer_list<std::pair<float, float>>{{1, 1},
                                                                                       {1.41F, 1},
                                                                                       {1.42F, 2},
                                                                                       {3.16F, 2},
                                                                                       {3.17F, 5},
                                                                                       {7.07F, 5},
                                                                                       {7.08F, 10},
                                                                                       {12, 10},
                                                                                       {33, 50},
                                                                                       {990, 1000},
                                                                                       {0.3F, 0.2F},
                                                                                       {0.00048F, 0.0005F},
                                                                                       {6e7F, 5e7F}})
        EXPECT_FLOAT_EQ(RoundLength(wished), length) << wished;
}

TEST(RoundLength, NeverIsFurtherThanItsNeighbours) {
    for (double wished = 1e-6; wished < 1e6; wished *= 1.07) {
        const double ratio = static_cast<double>(RoundLength(static_cast<float>(wished))) / wished;
        EXPECT_LT(ratio, std::sqrt(2.5) * 1.0001) << wished; // from 2 to 5 is the widest step
        EXPECT_GT(ratio, 1 / (std::sqrt(2.5) * 1.0001)) << wished;
    }
}

TEST(TrueScaleBar, TakesASixthOfTheWindowAtThePicturesScale) {
    // 600 / 6 = 100 pixels are 33 microns; 50 are nearer than 20, by their ratio.
    const TrueScaleBar bar = MakeTrueScaleBar(3, 3, 600);
    EXPECT_EQ(bar.length, 50);
    EXPECT_EQ(bar.legs, Size(150, 150));
}

TEST(TrueScaleBar, EachLegHasTheScaleOfItsAxis) {
    // 480 / 6 = 80 pixels are 20 microns at 4 pixels a micron; along z there are 1.15.
    const TrueScaleBar bar = MakeTrueScaleBar(4, 1.15F, 480);
    EXPECT_EQ(bar.length, 20);
    EXPECT_EQ(bar.legs, Size(80, 23));
}

TEST(TrueScaleBar, HasTheLengthThatTheUserHasChosen) {
    const TrueScaleBar bar = MakeTrueScaleBar(4, 2, 600, 12.5F);
    EXPECT_EQ(bar.length, 12.5F);
    EXPECT_EQ(bar.legs, Size(50, 25));
    for (const float none :
         {1.0F, 0.0F, -3.0F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(MakeTrueScaleBar(4, 2, 600, none).length, 20.0F) << none; // 100 pixels are 25 microns: 20 is nearest
}

TEST(TrueScaleBar, OfPicturesLargeAndSmall) {
    EXPECT_EQ(MakeTrueScaleBar(1e-4F, 1e-4F, 600).length, 1e6F);
    EXPECT_EQ(MakeTrueScaleBar(1e-4F, 1e-4F, 600).legs, Size(100, 100));
    EXPECT_FLOAT_EQ(MakeTrueScaleBar(1e4F, 1e4F, 60).length, 0.001F);
    EXPECT_EQ(MakeTrueScaleBar(1e4F, 1e4F, 60).legs, Size(10, 10));
    EXPECT_EQ(MakeTrueScaleBar(1, 1e9F, 60).legs, Size(10, 1000000)); // held, as no window reaches there
    EXPECT_GT(MakeTrueScaleBar(1, 1, 0).length, 0);
}

TEST(TrueScaleBar, ItsTextTellsTheUnit) {
    EXPECT_EQ(TrueScaleBarText(50, true), "50 \u00b5m: ");
    EXPECT_EQ(TrueScaleBarText(0.2F, true), "0.2 \u00b5m: ");
    EXPECT_EQ(TrueScaleBarText(50, false), "50 pixels: ");
}

AxisLook Look(float scale, int pixels, bool reversed, float visibleOffset = 0) {
    AxisLook axis;
    axis.scale = scale;
    axis.pixels = pixels;
    axis.reversed = reversed;
    axis.visibleOffset = visibleOffset;
    return axis;
}

TEST(TrueCutPointer, StandsOnTheVoxelOfTheCut) {
    // Voxel 4 of 9, from its beginning to its end.
    EXPECT_EQ(TrueCutPointerPlace(Look(1, 9, false), 4.5F), 4);
    EXPECT_EQ(TrueCutPointerPlace(Look(1, 9, true), 4.5F), 4);
    EXPECT_EQ(TrueCutPointerPlace(Look(1, 9, false), 2.5F), 2);
    EXPECT_EQ(TrueCutPointerPlace(Look(1, 9, true), 2.5F), 6);
    // Three pixels a voxel: voxel 2 takes pixels 6 to 8, and mirrored, of 27, 18 to 20.
    EXPECT_EQ(TrueCutPointerPlace(Look(3, 27, false), 2.5F), 7);
    EXPECT_EQ(TrueCutPointerPlace(Look(3, 27, true), 2.5F), 19);
}

TEST(TrueCutPointer, CountsFromWhatIsVisible) {
    EXPECT_EQ(TrueCutPointerPlace(Look(2, 10, false, 3), 4.25F), 2);
    EXPECT_EQ(TrueCutPointerPlace(Look(2, 10, true, 3), 4.25F), 7);
    EXPECT_EQ(TrueCutPointerPlace(Look(2, 10, false, 3), 2.75F), -1); // outside: clipped when it is drawn
    EXPECT_EQ(TrueCutPointerPlace(Look(2, 10, true, 3), 2.75F), 10);
    EXPECT_EQ(TrueCutPointerPlace(Look(1e9F, 10, false), 1e9F), 1000000);
}

} // namespace
} // namespace zel
