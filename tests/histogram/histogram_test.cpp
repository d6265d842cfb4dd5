#include "model/zel_histogram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using zel::Histogram;

constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

template <typename T>
Histogram<T> Make(T min, T max, std::size_t n) {
    Histogram<T> histogram;
    histogram.Init(min, max, n);
    return histogram;
}

/// Bins 0, 1, 2, ... with these counters.
Histogram<int> WithCounters(const std::vector<std::size_t>& counters) {
    auto histogram = Make(0, static_cast<int>(counters.size()) - 1, counters.size());
    for (std::size_t i = 0; i < counters.size(); ++i)
        histogram[i] = counters[i];
    return histogram;
}

template <typename T>
std::vector<T> Centers(const Histogram<T>& histogram) {
    std::vector<T> centers;
    for (std::size_t i = 0; i < histogram.size(); ++i)
        centers.push_back(histogram.GetBinCenter(i));
    return centers;
}

template <typename T>
std::vector<std::size_t> Counters(const Histogram<T>& histogram) {
    return {histogram.begin(), histogram.end()};
}

// --- layout ---

TEST(Histogram, StartsWithoutBins) {
    const Histogram<float> histogram;
    EXPECT_EQ(histogram.size(), 0U);
    EXPECT_TRUE(histogram.empty());
    EXPECT_EQ(histogram.begin(), histogram.end());
    EXPECT_EQ(histogram.GetSum(), 0U);
    EXPECT_EQ(histogram.FindFirstNonZero(), largest);
    EXPECT_EQ(histogram.FindLastNonZero(), 0U);
}

TEST(Histogram, HasABinForEachNumberOfAByte) {
    const auto histogram = Make<unsigned char>(0, 255, 256);
    ASSERT_EQ(histogram.size(), 256U);
    EXPECT_FALSE(histogram.empty());
    for (unsigned i = 0; i < 256; ++i) {
        EXPECT_EQ(histogram.GetBinCenter(i), i);
        EXPECT_EQ(histogram.GetBinPos(static_cast<unsigned char>(i)), i);
    }
    EXPECT_EQ(histogram.GetSum(), 0U);
}

TEST(Histogram, HasABinForEachNumberOfAWord) {
    const auto histogram = Make<unsigned short>(0, 65535, 65536);
    for (unsigned i = 0; i < 65536; ++i) {
        ASSERT_EQ(histogram.GetBinCenter(i), i);
        ASSERT_EQ(histogram.GetBinPos(static_cast<unsigned short>(i)), i);
    }
}

TEST(Histogram, TruncatesCentersTowardZero) {
    // step 10 / 4 = 2.5: 0, 2.5, 5, 7.5, 10
    EXPECT_THAT(Centers(Make(0, 10, 5)), ElementsAre(0, 2, 5, 7, 10));
    // -5, -2.5, 0, 2.5, 5
    EXPECT_THAT(Centers(Make(-5, 5, 5)), ElementsAre(-5, -2, 0, 2, 5));
    EXPECT_THAT(Centers(Make(-5.0F, 5.0F, 5)), ElementsAre(-5.0F, -2.5F, 0.0F, 2.5F, 5.0F));
    // a single bin stands half way: (3 + 8) / 2 = 5.5, (-8 - 3) / 2 = -5.5
    EXPECT_THAT(Centers(Make(3, 8, 1)), ElementsAre(5));
    EXPECT_THAT(Centers(Make(-8, -3, 1)), ElementsAre(-5));
    EXPECT_THAT(Centers(Make(3.0F, 8.0F, 1)), ElementsAre(5.5F));
}

TEST(Histogram, ReachesItsMaximumExactly) {
    // 1 / 49 in binary, 49 times, is a little less than 1 and would be truncated to 0.
    EXPECT_EQ(Make(0, 1, 50).GetRightCenter(), 1);
    for (int max = 1; max < 60; ++max) {
        for (std::size_t n = 2; n < 60; ++n) {
            const auto histogram = Make(-max, max, n);
            ASSERT_EQ(histogram.GetLeftCenter(), -max) << n;
            ASSERT_EQ(histogram.GetRightCenter(), max) << n;
        }
    }
}

TEST(Histogram, SpansTheWholeRangeOfItsType) {
    constexpr int low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    const auto integers = Make(low, high, 4); // steps of 4294967295 / 3 = 1431655765
    EXPECT_THAT(Centers(integers), ElementsAre(low, -715827883, 715827882, high));
    EXPECT_EQ(integers.GetBinPos(low), 0U);
    EXPECT_EQ(integers.GetBinPos(0), 1U);
    EXPECT_EQ(integers.GetBinPos(high - 1), 2U);
    EXPECT_EQ(integers.GetBinPos(high), 3U);
    constexpr float most = std::numeric_limits<float>::max();
    const auto floats = Make(-most, most, 3);
    EXPECT_THAT(Centers(floats), ElementsAre(-most, 0.0F, most));
    EXPECT_EQ(floats.GetBinPos(-1e30F), 0U); // far enough from 0 for a double of 3.4e38 to show it
    EXPECT_EQ(floats.GetBinPos(0.0F), 1U);
    EXPECT_EQ(floats.GetBinPos(most), 2U);
}

TEST(Histogram, CanBeInitialisedAgainAndEmptied) {
    auto histogram = Make(0, 9, 10);
    histogram[3] = 7;
    histogram.Init(5, 6, 2);
    EXPECT_THAT(Centers(histogram), ElementsAre(5, 6));
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 0));
    histogram.Init(0, 9, 0);
    EXPECT_TRUE(histogram.empty());
    EXPECT_EQ(histogram.begin(), nullptr);
}

TEST(Histogram, StaysAsItWasWhenMemoryIsMissing) {
    auto histogram = WithCounters({1, 2, 3});
    EXPECT_THROW(histogram.Init(0, 1, largest), std::bad_alloc);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which ends the process where memory lacks
    EXPECT_THROW(histogram.Init(0, 1, largest / 16), std::bad_alloc);
#endif
    EXPECT_THAT(Counters(histogram), ElementsAre(1, 2, 3));
    EXPECT_THAT(Centers(histogram), ElementsAre(0, 1, 2));
}

// --- the bin of a value ---

TEST(Histogram, PutsAValueInTheBinWhoseCenterLiesBelow) {
    const auto histogram = Make(0, 100, 3);
    EXPECT_THAT(Centers(histogram), ElementsAre(0, 50, 100));
    EXPECT_EQ(histogram.GetBinPos(-7), 0U);
    EXPECT_EQ(histogram.GetBinPos(0), 0U);
    EXPECT_EQ(histogram.GetBinPos(49), 0U);
    EXPECT_EQ(histogram.GetBinPos(50), 1U);
    EXPECT_EQ(histogram.GetBinPos(99), 1U);
    EXPECT_EQ(histogram.GetBinPos(100), 2U);
    EXPECT_EQ(histogram.GetBinPos(200), 2U);
}

TEST(Histogram, OfOneBinTakesEveryValue) {
    const auto histogram = Make(5, 5, 1);
    EXPECT_THAT(Centers(histogram), ElementsAre(5));
    EXPECT_EQ(histogram.GetBinPos(-1000), 0U);
    EXPECT_EQ(histogram.GetBinPos(5), 0U);
    EXPECT_EQ(histogram.GetBinPos(1000), 0U);
}

TEST(Histogram, OfEqualCentersKnowsBelowAndAbove) {
    const auto histogram = Make(2.0F, 2.0F, 256);
    EXPECT_EQ(histogram.GetBinPos(1.0F), 0U);
    EXPECT_EQ(histogram.GetBinPos(2.0F), 0U);
    EXPECT_EQ(histogram.GetBinPos(3.0F), 255U);
}

TEST(Histogram, GivesEveryIntegerItsOwnBin) {
    // Divided first, 7 of the 50 bins would stay empty, and the bins below get twice their due.
    for (int n = 2; n < 300; ++n) {
        const auto histogram = Make(-n / 2, -n / 2 + n - 1, static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(histogram.GetBinPos(-n / 2 + i), static_cast<std::size_t>(i)) << n;
    }
}

TEST(Histogram, TruncatesThePlaceOfAFloat) {
    const auto histogram = Make(0.0F, 1.0F, 5); // places are 4 times the value
    EXPECT_EQ(histogram.GetBinPos(0.2499F), 0U);
    EXPECT_EQ(histogram.GetBinPos(0.25F), 1U);
    EXPECT_EQ(histogram.GetBinPos(0.9999F), 3U);
    EXPECT_EQ(histogram.GetBinPos(1.0F), 4U);
}

TEST(Histogram, GivesNotANumberTheFirstBin) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const auto histogram = Make(0.0F, 1.0F, 5);
    EXPECT_EQ(histogram.GetBinPos(nan), 0U);
    EXPECT_EQ(histogram.GetBinPos(-infinity), 0U);
    EXPECT_EQ(histogram.GetBinPos(infinity), 4U);
}

TEST(Histogram, NeverLeavesItsBins) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const std::vector<float> values{nan, -infinity, -3e38F, -1, 0, 1e-45F, 1, 3e38F, infinity};
    for (const float low : values) {
        for (const float high : values) {
            for (const std::size_t n : {1U, 2U, 256U}) {
                const auto histogram = Make(low, high, n);
                for (const float value : values)
                    ASSERT_LT(histogram.GetBinPos(value), n) << low << ' ' << high << ' ' << value;
            }
        }
    }
}

TEST(Histogram, GivesTheCounterOfAValue) {
    auto histogram = Make(0, 100, 3);
    ++histogram.GetBin(60);
    ++histogram.GetBin(70);
    ++histogram.GetBin(1000);
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 2, 1));
    EXPECT_EQ(std::as_const(histogram).GetBin(50), 2U);
    EXPECT_EQ(histogram.GetSum(), 3U);
    histogram.Clear();
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 0, 0));
    EXPECT_THAT(Centers(histogram), ElementsAre(0, 50, 100));
}

// --- searching ---

TEST(Histogram, FindsTheEndsOfWhatItCounted) {
    const auto histogram = WithCounters({0, 0, 10, 10});
    EXPECT_EQ(histogram.FindFirstNonZero(), 2U);
    EXPECT_EQ(histogram.FindLastNonZero(), 3U);
    EXPECT_EQ(WithCounters({0, 4, 0, 0}).FindFirstNonZero(), 1U);
    EXPECT_EQ(WithCounters({0, 4, 0, 0}).FindLastNonZero(), 1U);
    const auto zeros = Make(0, 9, 10);
    EXPECT_EQ(zeros.FindFirstNonZero(), 9U);
    EXPECT_EQ(zeros.FindLastNonZero(), 0U);
}

TEST(Histogram, FindsPercentils) {
    const auto histogram = WithCounters({0, 0, 10, 10}); // shares 0, 0, 0.5, 0.5
    EXPECT_EQ(histogram.FindLeftPercentil(0), 0U);
    EXPECT_EQ(histogram.FindLeftPercentil(0.1), 2U);
    EXPECT_EQ(histogram.FindLeftPercentil(0.5), 2U);
    EXPECT_EQ(histogram.FindLeftPercentil(0.51), 3U);
    EXPECT_EQ(histogram.FindLeftPercentil(1), 3U);
    EXPECT_EQ(histogram.FindLeftPercentil(2), 3U); // never reached: the last bin
    EXPECT_EQ(histogram.FindRightPercentil(0), 3U);
    EXPECT_EQ(histogram.FindRightPercentil(0.5), 3U);
    EXPECT_EQ(histogram.FindRightPercentil(0.51), 2U);
    EXPECT_EQ(histogram.FindRightPercentil(1), 2U);
    EXPECT_EQ(histogram.FindRightPercentil(2), 0U);
}

TEST(Histogram, WithoutCountsEndsEachWalkWhereItStarts) {
    const auto zeros = Make(0, 9, 10);
    EXPECT_EQ(zeros.FindLeftPercentil(0.5), 0U);
    EXPECT_EQ(zeros.FindRightPercentil(0.5), 9U);
    EXPECT_EQ(Make(0, 0, 1).FindLeftPercentil(0.5), 0U);
    EXPECT_EQ(Make(0, 0, 1).FindRightPercentil(0.5), 0U);
}

// --- parts, sums, comparisons, copies ---

TEST(Histogram, CutsAPartOutOfAnother) {
    auto histogram = WithCounters({1, 2, 3, 4, 5});
    Histogram<int> part;
    part.CreateSubHist(histogram, 1, 3);
    EXPECT_THAT(Centers(part), ElementsAre(1, 2, 3));
    EXPECT_THAT(Counters(part), ElementsAre(2, 3, 4));
    part.CreateSubHist(histogram, -5, 90);
    EXPECT_THAT(Counters(part), ElementsAre(1, 2, 3, 4, 5));
    part.CreateSubHist(histogram, 4, 4);
    EXPECT_THAT(Centers(part), ElementsAre(4));
    EXPECT_THAT(Counters(part), ElementsAre(5));
    histogram.CreateSubHist(histogram, 2, 3);
    EXPECT_THAT(Centers(histogram), ElementsAre(2, 3));
    EXPECT_THAT(Counters(histogram), ElementsAre(3, 4));
}

/// A part between two values must read as the histogram that is copied out of the same range does.
template <typename T>
void ExpectPartLikeCopy(const Histogram<T>& histogram, T from, T to) {
    Histogram<T> copy;
    copy.CreateSubHist(histogram, from, to);
    const zel::HistogramPart<T> part = histogram.GetPart(from, to);
    ASSERT_EQ(part.size(), copy.size());
    EXPECT_FALSE(part.empty());
    EXPECT_EQ(std::vector<std::size_t>(part.begin(), part.end()), Counters(copy));
    EXPECT_EQ(part.GetLeftCenter(), copy.GetLeftCenter());
    EXPECT_EQ(part.GetRightCenter(), copy.GetRightCenter());
    EXPECT_EQ(part.GetSum(), copy.GetSum());
    EXPECT_EQ(part.FindFirstNonZero(), copy.FindFirstNonZero());
    EXPECT_EQ(part.FindLastNonZero(), copy.FindLastNonZero());
    for (const double share : {0.0, 0.001, 0.1, 0.5, 0.999, 1.0}) {
        EXPECT_EQ(part.FindLeftPercentil(share), copy.FindLeftPercentil(share)) << share;
        EXPECT_EQ(part.FindRightPercentil(share), copy.FindRightPercentil(share)) << share;
    }
    for (std::size_t i = 0; i < part.size(); ++i) {
        EXPECT_EQ(part[i], copy[i]) << i;
        EXPECT_EQ(part.GetBinCenter(i), copy.GetBinCenter(i)) << i;
    }
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        const T value = histogram.GetBinCenter(i);
        EXPECT_EQ(part.GetBinPos(value), copy.GetBinPos(value)) << i;
        EXPECT_EQ(part.GetBin(value), copy.GetBin(value)) << i;
    }
}

template <typename T>
Histogram<T> RandomlyFilled(T min, T max, std::size_t n) {
    auto histogram = Make(min, max, n);
    std::mt19937 random(7);
    for (std::size_t& counter : histogram)
        counter = random() % 3 == 0 ? 0 : random() % 1000;
    return histogram;
}

TEST(HistogramPart, ReadsTheBinsOfARangeWhereTheyAre) {
    auto histogram = WithCounters({1, 2, 0, 4, 0, 6});
    const auto part = histogram.GetPart(2, 4);
    EXPECT_EQ(part.begin(), histogram.begin() + 2);
    EXPECT_THAT(std::vector<std::size_t>(part.begin(), part.end()), ElementsAre(0, 4, 0));
    EXPECT_EQ(part.GetSum(), 4U);
    EXPECT_EQ(part.FindFirstNonZero(), 1U);
    EXPECT_EQ(part.FindLastNonZero(), 1U);
    EXPECT_EQ(part.GetBinCenter(1), 3);
    EXPECT_EQ(part.GetBinPos(-9), 0U);
    EXPECT_EQ(part.GetBinPos(3), 1U);
    EXPECT_EQ(part.GetBinPos(9), 2U);
    histogram[2] = 5;
    EXPECT_EQ(part[0], 5U);
}

TEST(HistogramPart, IsWhatCreateSubHistCopies) {
    const auto bytes = RandomlyFilled<unsigned char>(0, 255, 256);
    const auto words = RandomlyFilled<unsigned short>(100, 1000, 77); // centers truncated, several values a bin
    const auto integers = RandomlyFilled(-1000, 1000, 301);
    const auto floats = RandomlyFilled(-0.7F, 12.3F, 301);
    for (int i = 0; i < 40; ++i) {
        ExpectPartLikeCopy<unsigned char>(bytes, static_cast<unsigned char>(3 * i),
                                          static_cast<unsigned char>(255 - i));
        ExpectPartLikeCopy<unsigned short>(words, static_cast<unsigned short>(17 * i),
                                           static_cast<unsigned short>(1100 - 8 * i));
        ExpectPartLikeCopy(integers, -1100 + 31 * i, 1100 - 23 * i);
        const float low = -1.0F + 0.17F * static_cast<float>(i);
        ExpectPartLikeCopy(floats, low, low + 0.09F * static_cast<float>(i));
    }
    ExpectPartLikeCopy(floats, std::numeric_limits<float>::quiet_NaN(), 3.0F); // counts as the lowest
    ExpectPartLikeCopy(floats, -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity());
}

TEST(HistogramPart, OfAWholeHistogramHasItsBins) {
    const auto histogram = WithCounters({3, 0, 5});
    const zel::HistogramPart<int> whole = histogram;
    EXPECT_EQ(whole.begin(), histogram.begin());
    EXPECT_EQ(whole.end(), histogram.end());
    EXPECT_EQ(whole.GetRightCenter(), 2);
    const Histogram<int> none;
    const zel::HistogramPart<int> nothing = none;
    EXPECT_TRUE(nothing.empty());
    EXPECT_EQ(nothing.GetSum(), 0U);
    EXPECT_EQ(nothing.FindFirstNonZero(), largest);
    EXPECT_EQ(nothing.FindLastNonZero(), 0U);
}

TEST(Histogram, AddsAnotherUpToTheSmallerSize) {
    auto histogram = WithCounters({1, 2, 3});
    EXPECT_EQ(&(histogram += WithCounters({10, 20})), &histogram);
    EXPECT_THAT(Counters(histogram), ElementsAre(11, 22, 3));
    histogram += WithCounters({1, 1, 1, 1, 1});
    EXPECT_THAT(Counters(histogram), ElementsAre(12, 23, 4));
    auto elsewhere = Make(1000, 2000, 3);
    elsewhere[1] = 1;
    histogram += elsewhere;
    EXPECT_THAT(Counters(histogram), ElementsAre(12, 24, 4));
    EXPECT_THAT(Centers(histogram), ElementsAre(0, 1, 2));
    histogram += Histogram<int>();
    EXPECT_EQ(histogram.GetSum(), 40U);
}

TEST(Histogram, IsEqualToOneOfTheSameLayout) {
    EXPECT_TRUE(WithCounters({1, 2, 3}) == WithCounters({4, 5, 6}));
    EXPECT_FALSE(WithCounters({1, 2, 3}) != WithCounters({4, 5, 6}));
    EXPECT_FALSE(Make(0, 9, 10) == Make(0, 9, 9));
    EXPECT_TRUE(Make(0, 9, 10) != Make(0, 8, 10));
    EXPECT_FALSE(Make(0, 9, 10) == Make(1, 9, 10));
    EXPECT_TRUE(Histogram<int>() == Histogram<int>());
    EXPECT_FALSE(Histogram<int>() == Make(0, 9, 10));
}

TEST(Histogram, IsCopiedDeeply) {
    auto histogram = WithCounters({1, 2, 3});
    auto copy = histogram;
    copy[0] = 100;
    EXPECT_THAT(Counters(histogram), ElementsAre(1, 2, 3));
    EXPECT_THAT(Counters(copy), ElementsAre(100, 2, 3));
    EXPECT_THAT(Centers(copy), ElementsAre(0, 1, 2));
    copy = WithCounters({7});
    EXPECT_THAT(Counters(copy), ElementsAre(7));
    const auto& self = copy;
    copy = self;
    EXPECT_THAT(Counters(copy), ElementsAre(7));
    copy = Histogram<int>();
    EXPECT_TRUE(copy.empty());
    copy.Swap(histogram);
    EXPECT_THAT(Counters(copy), ElementsAre(1, 2, 3));
    EXPECT_TRUE(histogram.empty());
}

TEST(Histogram, IsEmptyAndOfUseAfterItWasMovedFrom) {
    static_assert(std::is_nothrow_move_constructible_v<Histogram<float>>);
    static_assert(std::is_nothrow_move_assignable_v<Histogram<float>>);
    auto histogram = WithCounters({1, 2, 3});
    const std::size_t* const block = histogram.begin();
    Histogram<int> moved = std::move(histogram);
    EXPECT_EQ(moved.begin(), block) << "nothing was copied";
    EXPECT_THAT(Centers(moved), ElementsAre(0, 1, 2));
    // What is left can do all that an empty one can.
    EXPECT_TRUE(histogram.empty());
    EXPECT_EQ(histogram.begin(), histogram.end());
    EXPECT_EQ(histogram.GetSum(), 0U);
    EXPECT_EQ(histogram.FindFirstNonZero(), largest);
    EXPECT_TRUE(histogram == Histogram<int>());
    histogram.Clear();
    histogram += moved;
    EXPECT_TRUE(histogram.empty());
    const Histogram<int> copy = histogram;
    EXPECT_TRUE(copy.empty());
    histogram.Init(5, 6, 2);
    EXPECT_THAT(Centers(histogram), ElementsAre(5, 6));

    histogram = std::move(moved);
    EXPECT_EQ(histogram.begin(), block);
    EXPECT_TRUE(moved.empty());
    auto& self = histogram;
    histogram = std::move(self);
    EXPECT_THAT(Counters(histogram), ElementsAre(1, 2, 3));
    histogram = Histogram<int>();
    EXPECT_TRUE(histogram.empty());
}

// --- the two element types with few operations ---

TEST(Histogram, OfDoublesFindsBins) {
    Histogram<double> histogram;
    EXPECT_EQ(histogram.size(), 0U);
    histogram.Init(0.5, 2.5, 5); // centers 0.5, 1, 1.5, 2, 2.5
    EXPECT_EQ(histogram.size(), 5U);
    EXPECT_EQ(histogram.GetLeftCenter(), 0.5);
    EXPECT_EQ(histogram.GetRightCenter(), 2.5);
    EXPECT_EQ(histogram.GetBinPos(1.49), 1U);
    EXPECT_EQ(histogram.GetBinPos(1.5), 2U);
    ++histogram.GetBin(2.0);
    EXPECT_EQ(histogram.GetBin(2.25), 1U);
    EXPECT_EQ(histogram.GetBin(1.75), 0U);
}

TEST(Histogram, OfComplexNumbersHasNoBins) {
    const Histogram<std::complex<float>> histogram;
    try {
        histogram.GetBinPos({1, 2});
        FAIL() << "nothing was thrown";
    } catch (const char* text) {
        EXPECT_EQ(std::string(text), "Not Implemented");
    }
}

} // namespace
