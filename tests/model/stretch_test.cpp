#include "model/zel_stretch.h"
#include "tests/model/counted.h"

#include <gtest/gtest.h>

#include <vector>

using namespace zel;
using namespace zel::test;

namespace {

/// The table of a histogram: white everywhere, so that what is left alone shows.
template <typename T>
GrayTable<T> White(const Histogram<T>& histogram) {
    GrayTable<T> table;
    table.Init(static_cast<long>(histogram.size()), histogram.GetLeftCenter(), histogram.GetRightCenter());
    table.CreateThresholding(histogram.GetLeftCenter(), histogram.GetRightCenter(), 0, 255);
    return table;
}

template <typename T>
std::vector<int> Entries(const GrayTable<T>& table, T from, T to) {
    std::vector<int> entries;
    for (int key = from; key <= static_cast<int>(to); ++key)
        entries.push_back(table.Get(static_cast<T>(key)));
    return entries;
}

} // namespace

TEST(LinearLevels, RunFromTheLowestToTheHighestValueThatOccurs) {
    const auto levels = LinearLevels<int>(Counted<int>(-3, 3, {0, 2, 0, 0, 0, 1, 0}));
    EXPECT_EQ(levels, (GrayLevels<int>{-2, 2, 1.0, 0, 255}));
}

TEST(LinearLevels, AreOnePointForOneValue) {
    const auto levels = LinearLevels<unsigned char>(Counted<unsigned char>(0, 3, {0, 0, 9, 0}));
    EXPECT_EQ(levels.inMin, 2);
    EXPECT_EQ(levels.inMax, 2);
}

TEST(LinearLevels, OfAnEmptyRangeAreItsEndsCrossed) {
    // Without voxels the search from below ends at the last bin, and that from above at the first.
    const auto levels = LinearLevels<unsigned char>(Counted<unsigned char>(10, 13, {0, 0, 0, 0}));
    EXPECT_EQ(levels.inMin, 13);
    EXPECT_EQ(levels.inMax, 10);
}

TEST(PercentilLevels, LeaveOutAShareAtEitherEnd) {
    // Of 100 voxels. From the left 1 + 9 = 10 reach 0.095 at bin 1, from the right 5 + 15 = 20 do at bin 3.
    const auto histogram = Counted<unsigned short>(100, 104, {1, 9, 70, 15, 5});
    EXPECT_EQ(PercentilLevels<unsigned short>(histogram, 0.095), (GrayLevels<unsigned short>{101, 103, 1.0, 0, 255}));
    EXPECT_EQ(PercentilLevels<unsigned short>(histogram, 0.0), (GrayLevels<unsigned short>{100, 104, 1.0, 0, 255}));
    EXPECT_EQ(PercentilLevels<unsigned short>(histogram, 0.005), (GrayLevels<unsigned short>{100, 104, 1.0, 0, 255}));
    EXPECT_EQ(PercentilLevels<unsigned short>(histogram, 0.75).inMin, 102) << "10 + 70 of 100 at bin 2";
}

TEST(PercentilLevels, MeetOnABackgroundThatIsAlmostAll) {
    const auto levels = PercentilLevels<unsigned char>(Counted<unsigned char>(0, 2, {9999, 0, 1}), 0.001);
    EXPECT_EQ(levels.inMin, 0);
    EXPECT_EQ(levels.inMax, 0);
}

TEST(PercentilLevels, OfAnEmptyRangeAreItsEnds) {
    const auto levels = PercentilLevels<unsigned char>(Counted<unsigned char>(10, 13, {0, 0, 0, 0}), 0.001);
    EXPECT_EQ(levels.inMin, 10);
    EXPECT_EQ(levels.inMax, 13);
}

TEST(EqualizeTable, EntriesAreTheShareOfTheVoxelsUpToThem) {
    const auto histogram = Counted<unsigned char>(0, 4, {1, 2, 0, 5, 2}); // 10 voxels
    GrayTable<unsigned char> table = White(histogram);
    ASSERT_TRUE(EqualizeTable<unsigned char>(histogram, 0, 4, table));
    // 1 * 255 / 10 = 25, 3 * 255 / 10 = 76, the same, 8 * 255 / 10 = 204, 255.
    EXPECT_EQ(Entries<unsigned char>(table, 0, 4), (std::vector<int>{25, 76, 76, 204, 255}));
}

TEST(EqualizeTable, IsBlackOutsideTheRange) {
    const auto whole = Counted<int>(-2, 5, {9, 9, 1, 3, 0, 4, 9, 9});
    GrayTable<int> table = White(whole);
    Histogram<int> range;
    range.CreateSubHist(whole, 0, 3);
    ASSERT_TRUE(EqualizeTable<int>(range, 0, 3, table));
    // 8 voxels in the range: 255 / 8 = 31, 4 * 255 / 8 = 127, 127, 255.
    EXPECT_EQ(Entries(table, -2, 5), (std::vector<int>{0, 0, 31, 127, 127, 255, 0, 0}));
    EXPECT_EQ(table.GetSize(), 8U);
}

TEST(EqualizeTable, IsAllBlackWithoutVoxelsInTheRange) {
    const auto histogram = Counted<unsigned char>(0, 3, {0, 0, 0, 0});
    GrayTable<unsigned char> table = White(histogram);
    ASSERT_TRUE(EqualizeTable<unsigned char>(histogram, 0, 3, table));
    EXPECT_EQ(Entries<unsigned char>(table, 0, 3), (std::vector<int>{0, 0, 0, 0}));
}

TEST(EqualizeTable, LeavesATableAloneThatIsTooSmall) {
    const auto histogram = Counted<int>(0, 4, {1, 1, 1, 1, 1});
    GrayTable<int> table;
    table.Init(4, 0, 3);
    table.CreateThresholding(0, 3, 0, 77);
    EXPECT_FALSE(EqualizeTable<int>(histogram, 0, 4, table));
    EXPECT_EQ(Entries(table, 0, 3), (std::vector<int>{77, 77, 77, 77}));
    EXPECT_TRUE(EqualizeTable<int>(histogram, 0, 3, table)) << "the part that is wanted fits";
    EXPECT_EQ(Entries(table, 0, 3), (std::vector<int>{63, 127, 191, 255})); // k * 255 / 4
}

TEST(EqualizeTable, WorksInStepsForFloats) {
    const auto histogram = Counted<float>(0.0F, 1.5F, {2, 0, 1, 1}); // centers 0, 0.5, 1, 1.5
    GrayTable<float> table = White(histogram);
    ASSERT_TRUE(EqualizeTable<float>(histogram, 0.0F, 1.5F, table));
    // 2 * 255 / 4 = 127, 127, 3 * 255 / 4 = 191, 255.
    EXPECT_EQ(table.Get(0.0F), 127);
    EXPECT_EQ(table.Get(0.5F), 127);
    EXPECT_EQ(table.Get(1.0F), 191);
    EXPECT_EQ(table.Get(1.5F), 255);
    EXPECT_EQ(table.Get(-3.0F), 127) << "as the lowest";
    EXPECT_EQ(table.Get(99.0F), 255) << "as the highest";
}

TEST(EqualizeTable, DoesNotOverflowOnLargeCounts) {
    constexpr std::size_t large = std::size_t{1} << 50;
    const auto histogram = Counted<unsigned char>(0, 1, {large, 3 * large});
    GrayTable<unsigned char> table = White(histogram);
    ASSERT_TRUE(EqualizeTable<unsigned char>(histogram, 0, 1, table));
    EXPECT_EQ(Entries<unsigned char>(table, 0, 1), (std::vector<int>{63, 255}));
}
