#include "host/readingprogress.h"

#include <gtest/gtest.h>

namespace zelviewer {
namespace {

TEST(ReadingPlace, IsDescribedByFrameAndSlice) {
    EXPECT_EQ(DescribePlace({2, 51, {11, 200, 0}}), "Reading frame 3 of 51: slice 12 of 200");
    EXPECT_EQ(DescribePlace({0, 1, {11, 200, 0}}), "Reading slice 12 of 200");
    EXPECT_EQ(DescribePlace({50, 51, {0, 1, 0}}), "Reading frame 51 of 51");
    EXPECT_EQ(DescribePlace({0, 1, {0, 1, 0}}), "Reading");
    EXPECT_EQ(DescribePlace({0, 1, {200, 200, 0}}), "Reading slice 200 of 200"); // there is no more
}

TEST(ReadingPlace, IsMeasuredBySlices) {
    EXPECT_DOUBLE_EQ(FractionRead({0, 1, {50, 200, 0}}, 1000), 0.25);
    EXPECT_DOUBLE_EQ(FractionRead({1, 4, {100, 200, 0}}, 1000), 0.375);
    EXPECT_DOUBLE_EQ(FractionRead({4, 4, {}}, 1000), 1.0);
}

TEST(ReadingPlace, IsMeasuredByBytesWhereThereIsOneSlice) {
    EXPECT_DOUBLE_EQ(FractionRead({0, 1, {0, 1, 300}}, 1000), 0.3);
    EXPECT_DOUBLE_EQ(FractionRead({0, 1, {0, 1, 1200}}, 1000), 1.0); // a header counts too
    EXPECT_DOUBLE_EQ(FractionRead({0, 1, {1, 1, 300}}, 1000), 1.0);
    EXPECT_DOUBLE_EQ(FractionRead({0, 1, {0, 1, 300}}, 0), 0.0);
}

} // namespace
} // namespace zelviewer
