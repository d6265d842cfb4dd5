#include "host/frame/whereabouts.h"

#include <gtest/gtest.h>

namespace zelviewer {
namespace {

TEST(Whereabouts, AreCountedFromOneAndMeasuredToTheMiddleOfTheVoxel) {
    // Voxel 12 of 10 a micron, from 0: (12 + 0.5) / 10 = 1.25. Voxel 3 of 2 a micron, from -1: 3.5 / 2 - 1 = 0.75.
    // Voxel 6 of 0.5 a micron, from 100: 13 + 100.
    EXPECT_EQ(DescribeWhereabouts({{12, 3, 6}, 2, 20, "1234", 5}, {0, -1, 100}, {10, 2, 0.5F}),
              "x 13 (1.25 um)  y 4 (0.75 um)  z 7 (113.00 um)  t 3 of 20  value 1234  label 5");
}

TEST(Whereabouts, LeaveOutWhatIsNotKnown) {
    EXPECT_EQ(DescribeWhereabouts({{0, 0, 0}, 0, 1, "", std::nullopt}, {}, {}), "x 1  y 1  z 1");
    EXPECT_EQ(DescribeWhereabouts({{0, 1, 2}, 0, 1, "[1, 2, 3]", 0}, {}, {}),
              "x 1  y 2  z 3  value [1, 2, 3]  no label");
}

TEST(Whereabouts, TakeLessRoomWithoutMicrons) {
    EXPECT_EQ(DescribeWhereabouts({{12, 3, 6}, 2, 20, "1234", 5}, {0, -1, 100}, {10, 2, 0.5F}, Detail::Voxels),
              "x 13  y 4  z 7  t 3 of 20  value 1234  label 5");
}

TEST(Whereabouts, HaveTheBarToThemselvesUntilThereIsAMessage) {
    EXPECT_EQ(WidthOfMessages(800, false), 16);
    EXPECT_EQ(WidthOfMessages(800, true), 180);
    EXPECT_EQ(WidthOfMessages(300, true), 150) << "no more than half";
    EXPECT_EQ(WidthOfMessages(10, true), 16);
}

} // namespace
} // namespace zelviewer
