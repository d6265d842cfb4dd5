#include "histogram/zel_histogramset.h"

#include <gtest/gtest.h>

#include <complex>
#include <type_traits>
#include <utility>

namespace {

using zel::Histogram;
using zel::HistogramSet;
using Complex = std::complex<float>;
template <typename C>
using RGB = kep::RGB_generic<C>;

static_assert(std::is_same_v<HistogramSet<int>::Channel, Histogram<int>>);
static_assert(std::is_same_v<HistogramSet<RGB<unsigned char>>::Channel, Histogram<unsigned char>>);
static_assert(std::is_same_v<HistogramSet<RGB<unsigned short>>::Channel, Histogram<unsigned short>>);
static_assert(std::is_same_v<HistogramSet<Complex>::Channel, Histogram<float>>);

template <typename C>
Histogram<C> Make(C min, C max, std::size_t n) {
    Histogram<C> histogram;
    histogram.Init(min, max, n);
    return histogram;
}

TEST(HistogramSet, StartsWithoutBins) {
    EXPECT_TRUE(HistogramSet<unsigned char>().IsEmpty());
    EXPECT_TRUE(HistogramSet<unsigned short>().IsEmpty());
    EXPECT_TRUE(HistogramSet<int>().IsEmpty());
    EXPECT_TRUE(HistogramSet<float>().IsEmpty());
    EXPECT_TRUE(HistogramSet<RGB<unsigned char>>().IsEmpty());
    EXPECT_TRUE(HistogramSet<RGB<unsigned short>>().IsEmpty());
    EXPECT_TRUE(HistogramSet<Complex>().IsEmpty());
}

TEST(HistogramSet, OfAGrayImageHoldsOneHistogram) {
    HistogramSet<int> set;
    set.Set(Make(3, 8, 6));
    EXPECT_FALSE(set.IsEmpty());
    ++set.Get().GetBin(5);
    EXPECT_EQ(std::as_const(set).Get()[2], 1U);
    EXPECT_EQ(set.Get().size(), 6U);
}

TEST(HistogramSet, OfAComplexImageReplacesOneChannel) {
    HistogramSet<Complex> set;
    set.Set(1, Make(0.0F, 1.0F, 7));
    EXPECT_FALSE(set.IsEmpty());
    EXPECT_TRUE(set.Get(0).empty());
    EXPECT_EQ(set.Get(1).size(), 7U);
    EXPECT_TRUE(set.Get(2).empty());
    EXPECT_TRUE(set.Get(3).empty());
    set[3].Init(0, 1, 2);
    EXPECT_EQ(std::as_const(set)[3].size(), 2U);
    EXPECT_EQ(std::as_const(set).Get(1).size(), 7U);
}

TEST(HistogramSet, TakesTheBinsOfAHistogramThatIsMovedIn) {
    auto red = Make<unsigned char>(0, 255, 256);
    const std::size_t* const block = red.begin();
    HistogramSet<RGB<unsigned char>> colours;
    colours.Set(0, std::move(red));
    EXPECT_EQ(colours[0].begin(), block);
    EXPECT_TRUE(red.empty());

    HistogramSet<unsigned char> gray;
    gray.Set(std::move(colours[0]));
    EXPECT_EQ(gray.Get().begin(), block);
    EXPECT_TRUE(colours.IsEmpty());
}

TEST(HistogramSet, IsCopiedDeeplyAlsoWhenMoved) {
    HistogramSet<RGB<unsigned char>> set;
    set.Set(2, Make<unsigned char>(0, 255, 256));
    auto copy = set;
    copy[2][9] = 1;
    EXPECT_EQ(set[2][9], 0U);
    const auto moved = std::move(copy);
    EXPECT_EQ(moved[2][9], 1U);
    EXPECT_EQ(copy[2].size(), 256U);
    set = std::move(copy);
    EXPECT_EQ(set[2][9], 1U);
    EXPECT_EQ(copy[2][9], 1U);
    HistogramSet<RGB<unsigned char>> other;
    other.Swap(set);
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_EQ(other[2][9], 1U);
}

} // namespace
