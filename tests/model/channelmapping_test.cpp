#include "model/zel_channelmapping.h"
#include "tests/model/counted.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

using namespace zel;
using namespace zel::test;

namespace {

template <typename T>
using Levels = TLevelsParams<T, unsigned char>;

template <typename T>
ChannelMapping<T> WithRange(const Histogram<T>& histogram, T min, T max) {
    auto mapping = ChannelMapping<T>::Of(histogram);
    mapping.rangeMin = min;
    mapping.rangeMax = max;
    return mapping;
}

} // namespace

TEST(ChannelMapping, BeginsWithTheWholeHistogram) {
    const auto mapping = ChannelMapping<int>::Of(OfVoxels<int>({}, -5, 9));
    EXPECT_EQ(mapping.rangeMin, -5);
    EXPECT_EQ(mapping.rangeMax, 9);
    EXPECT_EQ(mapping.levels, (Levels<int>{-5, 9, 1.0, 0, 255}));
    EXPECT_EQ(mapping.thresholds, (ThresParams<int>{-5, 9}));
    EXPECT_FALSE(mapping.IsThresholdedBy(mapping.thresholds));
}

TEST(ChannelMapping, WithoutBinsHasTheRangeOfNewLevels) {
    const auto bytes = ChannelMapping<unsigned char>::Of({});
    EXPECT_EQ(bytes.rangeMin, 0);
    EXPECT_EQ(bytes.rangeMax, 255);
    const auto reals = ChannelMapping<float>::Of({});
    EXPECT_EQ(reals.rangeMin, std::numeric_limits<float>::min());
    EXPECT_EQ(reals.rangeMax, std::numeric_limits<float>::max());
}

TEST(ChannelMapping, WithoutBinsIsLeftAlone) {
    auto mapping = WithRange<unsigned char>(OfVoxels<unsigned char>({}), 10, 20);
    const Histogram<unsigned char> none;
    mapping.NarrowRange(none);
    mapping.StretchLinear(none);
    mapping.StretchLinearOrWhole(none);
    mapping.StretchPercentil(none, 0.1);
    mapping.HoldLevels(none);
    mapping.HoldThresholds(none);
    mapping.HoldAll(none);
    GrayTable<unsigned char> table;
    table.Init(256, 0, 255);
    table.CreateThresholding(0, 255, 0, 77);
    EXPECT_TRUE(mapping.Equalize(none, table));
    EXPECT_EQ(table.Get(100), 77);
    EXPECT_EQ(mapping.rangeMin, 10);
    EXPECT_EQ(mapping.rangeMax, 20);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{0, 255, 1.0, 0, 255}));
    EXPECT_EQ(mapping.thresholds, (ThresParams<unsigned char>{0, 255}));
    mapping.StretchNone();
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{10, 20, 1.0, 0, 255}));
}

TEST(ChannelMapping, TheRangeOnlyShrinks) {
    auto mapping = WithRange<int>(OfVoxels<int>({}, 0, 100), 20, 80);
    mapping.NarrowRange(OfVoxels<int>({}, -100, 60));
    EXPECT_EQ(mapping.rangeMin, 20);
    EXPECT_EQ(mapping.rangeMax, 60);
    mapping.NarrowRange(OfVoxels<int>({}, 60, 200));
    EXPECT_EQ(mapping.rangeMin, 60) << "one number in common is a range";
    EXPECT_EQ(mapping.rangeMax, 60);
    mapping.NarrowRange(OfVoxels<int>({}, 70, 75));
    EXPECT_EQ(mapping.rangeMin, 70) << "nothing is left of the old one";
    EXPECT_EQ(mapping.rangeMax, 75);
}

TEST(ChannelMapping, ARangeWithItsEndsExchangedIsNotTakenForOneBesideTheHistogram) {
    // What a bit depth of 4 leaves of a range that began at 200.
    auto mapping = WithRange<unsigned char>(OfVoxels<unsigned char>({}), 200, 15);
    mapping.NarrowRange(OfVoxels<unsigned char>({}));
    EXPECT_EQ(mapping.rangeMin, 200);
    EXPECT_EQ(mapping.rangeMax, 15);
    mapping.NarrowRange(OfVoxels<unsigned char>({}, 210, 220));
    EXPECT_EQ(mapping.rangeMin, 210) << "nothing between 15 and 200 is left";
    EXPECT_EQ(mapping.rangeMax, 220);
}

TEST(ChannelMapping, AnEndThatIsNoNumberIsTheHistograms) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const auto histogram = OfVoxels<float>({2.0F, 3.0F, 4.0F}, 0.0F, 8.0F);
    for (const auto& [low, high] : {std::pair{5.0F, nan}, std::pair{nan, 5.0F}, std::pair{nan, nan}}) {
        auto mapping = WithRange<float>(histogram, low, high);
        EXPECT_LE(mapping.GetPart(histogram).size(), histogram.size());
        mapping.StretchLinear(histogram);
        mapping.StretchPercentil(histogram, 0.1);
        mapping.NarrowRange(histogram);
        EXPECT_EQ(mapping.rangeMin, std::isnan(low) ? 0.0F : low);
        EXPECT_EQ(mapping.rangeMax, std::isnan(high) ? 8.0F : high);
    }
    EXPECT_EQ(WithRange<float>(histogram, 8.0F, nan).GetPart(histogram).size(), histogram.size()) << "NaN counts as 0";
}

TEST(ChannelMapping, StretchesLookAtTheRangeAlone) {
    const auto histogram = OfVoxels<unsigned char>({5, 60, 70, 70, 90, 240});
    auto mapping = WithRange<unsigned char>(histogram, 50, 100);
    mapping.StretchLinear(histogram);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{60, 90, 1.0, 0, 255}));
    mapping.StretchPercentil(histogram, 0.3); // of 4 voxels: 60 is 0.25, 70 is 0.75; 90 is 0.25 from the right
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{70, 70, 1.0, 0, 255}));
}

TEST(ChannelMapping, ARangeWithItsEndsExchangedCountsAsIfInOrder) {
    const auto histogram = OfVoxels<unsigned char>({5, 60, 90, 240});
    auto mapping = WithRange<unsigned char>(histogram, 100, 50);
    EXPECT_EQ(mapping.GetPart(histogram).size(), 51U);
    EXPECT_EQ(mapping.CopyPart(histogram).GetLeftCenter(), 50);
    mapping.StretchLinear(histogram);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{60, 90, 1.0, 0, 255}));
    GrayTable<unsigned char> table;
    table.Init(256, 0, 255);
    ASSERT_TRUE(mapping.Equalize(histogram, table));
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{100, 50, 1.0, 0, 255})) << "the levels keep them as they are";
    EXPECT_EQ(table.Get(60), 127); // 1 * 255 / 2
    EXPECT_EQ(table.Get(100), 255);
}

TEST(ChannelMapping, OneValueIsAPointOrTheWholeRange) {
    const auto histogram = OfVoxels<unsigned char>({70, 70});
    auto mapping = WithRange<unsigned char>(histogram, 50, 100);
    mapping.StretchLinear(histogram);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{70, 70, 1.0, 0, 255}));
    mapping.StretchLinearOrWhole(histogram);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{50, 100, 1.0, 0, 255}));
    const auto empty = OfVoxels<unsigned char>({});
    mapping.StretchLinear(empty);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{100, 50, 1.0, 0, 255})) << "crossed, as nothing was found";
    mapping.StretchLinearOrWhole(empty);
    EXPECT_EQ(mapping.levels, (Levels<unsigned char>{50, 100, 1.0, 0, 255}));
}

TEST(ChannelMapping, EqualisingNeedsATableAsLongAsTheRange) {
    const auto histogram = OfVoxels<int>({3, 4}, 0, 9);
    auto mapping = ChannelMapping<int>::Of(histogram);
    mapping.levels.inMin = 2;
    GrayTable<int> table;
    table.Init(9, 0, 8);
    EXPECT_FALSE(mapping.Equalize(histogram, table));
    EXPECT_EQ(mapping.levels.inMin, 2);
    mapping.rangeMax = 8;
    EXPECT_TRUE(mapping.Equalize(histogram, table));
    EXPECT_EQ(mapping.levels, (Levels<int>{0, 8, 1.0, 0, 255}));
    EXPECT_EQ(table.Get(3), 127);
}

TEST(ChannelMapping, ParametersAreHeldAtBinNumbers) {
    const auto histogram = OfVoxels<int>({}, 100, 200); // bins 0 to 100
    auto mapping = ChannelMapping<int>::Of(histogram);
    mapping.levels = {-20, 150};
    mapping.thresholds = {-20, 150};
    auto all = mapping;
    mapping.HoldLevels(histogram);
    EXPECT_EQ(mapping.levels, (Levels<int>{0, 100, 1.0, 0, 255}));
    EXPECT_EQ(mapping.thresholds, (ThresParams<int>{-20, 150}));
    mapping.HoldThresholds(histogram);
    EXPECT_EQ(mapping.thresholds, (ThresParams<int>{0, 100}));
    all.HoldAll(histogram);
    EXPECT_EQ(all.levels, (Levels<int>{0, 100, 1.0, 0, 255}));
    EXPECT_EQ(all.thresholds, (ThresParams<int>{0, 100}));
}

TEST(ChannelMapping, EachEndOfTheLevelsIsHeldOnOneSideOrOnBoth) {
    const auto histogram = OfVoxels<int>({}, 0, 200);
    auto mapping = WithRange<int>(histogram, 10, 20);
    mapping.levels = {100, 200};
    auto all = mapping;
    mapping.HoldLevels(histogram);
    EXPECT_EQ(mapping.levels, (Levels<int>{100, 20, 1.0, 0, 255})) << "crossed";
    all.HoldAll(histogram);
    EXPECT_EQ(all.levels, (Levels<int>{20, 20, 1.0, 0, 255}));
}

TEST(ChannelMapping, ThresholdsAtTheEndsOfTheRangeAreNone) {
    auto mapping = ChannelMapping<unsigned char>::Of(OfVoxels<unsigned char>({}));
    EXPECT_FALSE(mapping.IsThresholdedBy({0, 255}));
    EXPECT_TRUE(mapping.IsThresholdedBy({0, 254}));
    EXPECT_TRUE(mapping.IsThresholdedBy({1, 255}));
    mapping.rangeMax = 254;
    EXPECT_FALSE(mapping.IsThresholdedBy({0, 254}));
}
