#include "core/kepcore/kep_resolution.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <limits>

namespace {

using kep::MicronsToVoxel;
using kep::PixelsToMicrons;
using kep::Resolution;
using kep::Vector3d;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

TEST(Resolution, IsDefinedWhenAllThreeComponentsAreFiniteAndAboveZero) {
    EXPECT_TRUE(Resolution(15.5F, 15.5F, 5.0F).IsDefined());
    EXPECT_FALSE(Resolution().IsDefined());
    for (const float bad : {0.0F, -1.0F, infinity, notANumber}) {
        EXPECT_FALSE(Resolution(bad, 1.0F, 1.0F).IsDefined()) << bad;
        EXPECT_FALSE(Resolution(1.0F, bad, 1.0F).IsDefined()) << bad;
        EXPECT_FALSE(Resolution(1.0F, 1.0F, bad).IsDefined()) << bad;
    }
}

TEST(Resolution, UsableFormTakesTheFirstGoodComponentForBadOnes) {
    EXPECT_EQ(Resolution().GetUsable(), Resolution(1.0F, 1.0F, 1.0F));
    EXPECT_EQ(Resolution(4.0F, 2.0F, 0.0F).GetUsable(), Resolution(4.0F, 2.0F, 4.0F));
    EXPECT_EQ(Resolution(notANumber, 2.0F, 3.0F).GetUsable(), Resolution(2.0F, 2.0F, 3.0F));
    EXPECT_EQ(Resolution(-1.0F, infinity, 3.0F).GetUsable(), Resolution(3.0F, 3.0F, 3.0F));
    EXPECT_EQ(Resolution(15.5F, 0.1F, 5.0F).GetUsable(), Resolution(15.5F, 0.1F, 5.0F));
}

TEST(Resolution, PixelsToMicronsDividesByTheUsableForm) {
    EXPECT_EQ(PixelsToMicrons(Vector3d<std::size_t>(8, 6, 3), Resolution(4.0F, 2.0F, 0.5F)),
              Vector3d<float>(2.0F, 3.0F, 6.0F));
    EXPECT_EQ(PixelsToMicrons(Vector3d<int>(-8, 0, 3), Resolution()), Vector3d<float>(-8.0F, 0.0F, 3.0F));
}

TEST(Resolution, EveryVoxelIsFoundAtItsOwnPlace) {
    for (const float r : {1.0F / 0.0645F, 1.0F / 0.3F, 0.7F, 11.2994F}) {
        for (const float from : {0.0F, -17.3F, 25000.1F}) {
            const Resolution resolution(r, r, r);
            const Vector3d<float> offset(from, from, from);
            for (int i = 0; i < 300; ++i) {
                Vector3d<float> position = offset;
                position += PixelsToMicrons(Vector3d<int>(i, i, i), resolution);
                ASSERT_EQ(MicronsToVoxel(position, offset, resolution), Vector3d<int>(i, i, i)) << r << " " << from;
            }
        }
    }
}

TEST(Resolution, PlacesBetweenFacesBelongToTheVoxelBelow) {
    const Resolution resolution(2.0F, 2.0F, 0.0F); // z is taken as 2 too
    const Vector3d<float> offset(10.0F, -10.0F, 0.0F);
    // (10.7 - 10) * 2 = 1.4; (-10.1 + 10) * 2 = -0.2; 0.49 * 2 = 0.98, which is below 1 by more than 1/128
    EXPECT_EQ(MicronsToVoxel({10.7F, -10.1F, 0.49F}, offset, resolution), Vector3d<int>(1, -1, 0));
}

TEST(Resolution, PlacesFarAwayAreHeldAtTheLimitsOfInt) {
    const Resolution resolution(1.0F, 1.0F, 1.0F);
    EXPECT_EQ(MicronsToVoxel({1e30F, -1e30F, notANumber}, {}, resolution), Vector3d<int>(INT_MAX, INT_MIN, -1));
}

} // namespace
