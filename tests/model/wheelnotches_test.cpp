#include "model/zel_wheelnotches.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(WheelNotches, PartsOfANotchAddUp) {
    WheelNotches wheel;
    EXPECT_EQ(wheel.Turn(120, 120), 1);
    EXPECT_EQ(wheel.Turn(-240, 120), -2);
    EXPECT_EQ(wheel.Turn(50, 120), 0);
    EXPECT_EQ(wheel.Turn(50, 120), 0);
    EXPECT_EQ(wheel.Turn(50, 120), 1); // 150: one, and 30 left
    EXPECT_EQ(wheel.Turn(-30, 120), 0);
    EXPECT_EQ(wheel.Turn(-119, 120), 0);
    EXPECT_EQ(wheel.Turn(-1, 120), -1);
    EXPECT_EQ(wheel.Turn(5, 0), 0); // a device that does not say what a notch is
}

} // namespace
} // namespace zel
