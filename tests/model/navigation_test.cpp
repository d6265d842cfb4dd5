#include "model/zel_navigation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zel;

// A box from 2 to 12 microns, of which 4 are visible; steps of 0.75, or of 1 for the cut.

TEST(Navigation, ScrollsBackToTheLowerEndAndNoFurther) {
    EXPECT_EQ(ScrollBack(5.0F, 2.0F, 0.75F), 4.25F);
    EXPECT_EQ(ScrollBack(2.5F, 2.0F, 0.75F), 2.0F);
    EXPECT_EQ(ScrollBack(2.0F, 2.0F, 0.75F), std::nullopt);
    EXPECT_EQ(ScrollBack(1.0F, 2.0F, 0.75F), std::nullopt);
}

TEST(Navigation, ScrollsForwardToTheUpperEndAndNoFurther) {
    // The range ends with the box at 2 + 10 - 4 = 8.
    EXPECT_EQ(ScrollForward(5.0F, 4.0F, 2.0F, 10.0F, 0.75F), 5.75F);
    EXPECT_EQ(ScrollForward(7.5F, 4.0F, 2.0F, 10.0F, 0.75F), 8.0F);
    EXPECT_EQ(ScrollForward(8.0F, 4.0F, 2.0F, 10.0F, 0.75F), std::nullopt);
    EXPECT_EQ(ScrollForward(9.0F, 4.0F, 2.0F, 10.0F, 0.75F), std::nullopt);
}

TEST(Navigation, ARangeLargerThanTheBoxDoesNotScroll) {
    EXPECT_EQ(ScrollForward(2.0F, 11.0F, 2.0F, 10.0F, 0.75F), std::nullopt); // it ends at 2 + 10 - 11 = 1
    EXPECT_EQ(ScrollBack(2.0F, 2.0F, 0.75F), std::nullopt);
}

TEST(Navigation, TheCutStaysHalfAStepInsideTheBox) {
    // From 2 + 0.5 to 12 - 0.5.
    EXPECT_EQ(StepCutBack(4.5F, 2.0F, 1.0F), 3.5F);
    EXPECT_EQ(StepCutBack(3.25F, 2.0F, 1.0F), 2.5F);
    EXPECT_EQ(StepCutBack(2.5F, 2.0F, 1.0F), std::nullopt);
    EXPECT_EQ(StepCutBack(2.0F, 2.0F, 1.0F), std::nullopt) << "a cut on the face is not brought in";
    EXPECT_EQ(StepCutForward(9.5F, 2.0F, 10.0F, 1.0F), 10.5F);
    EXPECT_EQ(StepCutForward(10.75F, 2.0F, 10.0F, 1.0F), 11.5F);
    EXPECT_EQ(StepCutForward(11.5F, 2.0F, 10.0F, 1.0F), std::nullopt);
    EXPECT_EQ(StepCutForward(12.0F, 2.0F, 10.0F, 1.0F), std::nullopt);
}

TEST(Navigation, ASingleLayerHasOnePlaceForTheCut) {
    EXPECT_EQ(StepCutBack(0.5F, 0.0F, 1.0F), std::nullopt);
    EXPECT_EQ(StepCutForward(0.5F, 0.0F, 1.0F, 1.0F), std::nullopt);
    EXPECT_EQ(StepCutBack(0.75F, 0.0F, 1.0F), 0.5F);
    EXPECT_EQ(StepCutForward(0.25F, 0.0F, 1.0F, 1.0F), 0.5F);
}

TEST(Navigation, PlacesAreHeldInTheBoxWithItsFaces) {
    EXPECT_EQ(HoldInBox(5.0F, 2.0F, 10.0F), 5.0F);
    EXPECT_EQ(HoldInBox(2.0F, 2.0F, 10.0F), 2.0F);
    EXPECT_EQ(HoldInBox(1.0F, 2.0F, 10.0F), 2.0F);
    EXPECT_EQ(HoldInBox(12.0F, 2.0F, 10.0F), 12.0F);
    EXPECT_EQ(HoldInBox(13.0F, 2.0F, 10.0F), 12.0F);
    EXPECT_EQ(HoldInBox(std::numeric_limits<float>::infinity(), 2.0F, 10.0F), 12.0F);
    EXPECT_EQ(HoldInBox(std::nanf(""), 2.0F, 10.0F), 2.0F);
}
