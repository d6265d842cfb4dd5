#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_vector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

namespace {

using kep::T_pair;
using kep::Vector3d;
using kep::VOI;
using IndexBox = VOI<T_pair<std::size_t, std::size_t>>;

TEST(Vector3d, IsZeroAtFirst) {
    EXPECT_EQ(Vector3d<float>(), Vector3d<float>(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(Vector3d<std::size_t>(), Vector3d<std::size_t>(0, 0, 0));
}

TEST(Vector3d, CalculatesByComponent) {
    Vector3d<float> v(1.5F, -2.0F, 8.0F);
    v += {1.0F, 2.0F, 3.0F};
    EXPECT_EQ(v, Vector3d<float>(2.5F, 0.0F, 11.0F));
    v -= {0.5F, 1.0F, 1.0F};
    EXPECT_EQ(v, Vector3d<float>(2.0F, -1.0F, 10.0F));
    v *= {2.0F, 3.0F, 0.5F};
    EXPECT_EQ(v, Vector3d<float>(4.0F, -3.0F, 5.0F));
}

TEST(Vector3d, NotANumberEqualsNothing) {
    const Vector3d<float> v(std::numeric_limits<float>::quiet_NaN(), 0.0F, 0.0F);
    EXPECT_FALSE(v == v);
}

TEST(Box, GrowsToHoldBoth) {
    IndexBox box(3, 4, 5, 2, 2, 2);              // 3..4, 4..5, 5..6
    box += IndexBox(1, 5, 8, 1, 9, 1);           // 1..1, 5..13, 8..8
    EXPECT_EQ(box, IndexBox(1, 4, 5, 4, 10, 4)); // 1..4, 4..13, 5..8
}

TEST(Box, OneWithoutContentsLeavesTheOtherAsItIs) {
    const IndexBox full(3, 4, 5, 2, 2, 2);
    IndexBox box = full;
    box += IndexBox(0, 0, 0, 9, 0, 9);
    EXPECT_EQ(box, full);
    IndexBox empty;
    empty += full;
    EXPECT_EQ(empty, full);
}

TEST(Box, GrowsBelowZero) {
    VOI<T_pair<int, std::size_t>> box(-3, 0, 0, 2, 1, 1);
    box += VOI<T_pair<int, std::size_t>>(4, 0, 0, 1, 1, 1);
    EXPECT_EQ(box, (VOI<T_pair<int, std::size_t>>(-3, 0, 0, 8, 1, 1))); // -3..4
}

TEST(Rgb, IsBlackAtFirstAndNamesItsComponents) {
    kep::RGB_generic<unsigned short> colour;
    EXPECT_EQ(colour, kep::RGB_generic<unsigned short>(0, 0, 0));
    colour.GetComponent(0) = 1;
    colour.GetComponent(1) = 2;
    colour.GetComponent(2) = 3;
    EXPECT_EQ(colour, kep::RGB_generic<unsigned short>(1, 2, 3));
    const auto& constant = colour;
    EXPECT_EQ(constant.GetComponent(2), 3);
}

} // namespace
