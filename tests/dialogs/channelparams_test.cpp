#include "dialogs/zel_channelparams.h"

#include <gtest/gtest.h>

using namespace zel;

namespace {

template <typename T>
Histogram<T> MakeHistogram(T first, T last, std::size_t bins) {
    Histogram<T> histogram;
    histogram.Init(first, last, bins);
    return histogram;
}

TEST(ChannelParams, LevelsOfAllCoverThoseOfEachChannel) {
    const auto histogram = MakeHistogram(-100, 100, 201);
    const std::vector<TLevelsParams<int, unsigned char>> params = {{-5, 50, 2.0, 10, 20}, {-7, 40, 0.5, 30, 0}};
    EXPECT_EQ((TLevelsParams<int, unsigned char>{-7, 50, 1.0, 0, 255}), MergeParams(params, histogram));
}

TEST(ChannelParams, ThresholdsOfAllAreCommonOnesOrTheWholeRange) {
    const auto histogram = MakeHistogram(-1.0F, 3.0F, 256);
    using Params = std::vector<ThresParams<float>>;
    EXPECT_EQ((ThresParams<float>{0.5F, 2.0F}), MergeParams(Params{{0.5F, 2.0F}, {0.5F, 2.0F}}, histogram));
    EXPECT_EQ((ThresParams<float>{-1.0F, 3.0F}), MergeParams(Params{{0.5F, 2.0F}, {0.5F, 2.5F}}, histogram));
}

TEST(ChannelParams, ParametersAreHeldWithinTheValuesOfAHistogram) {
    const auto histogram = MakeHistogram<unsigned short>(10, 4095, 4086);
    EXPECT_EQ((TLevelsParams<unsigned short, unsigned char>{10, 4095, 2.5, 7, 3}),
              HoldWithin(histogram, TLevelsParams<unsigned short, unsigned char>{0, 65535, 2.5, 7, 3}));
    EXPECT_EQ((ThresParams<unsigned short>{4095, 4095}),
              HoldWithin(histogram, ThresParams<unsigned short>{5000, 65535}));
    EXPECT_EQ((ThresParams<unsigned short>{10, 10}), HoldWithin(histogram, ThresParams<unsigned short>{0, 5}));
    EXPECT_EQ((ThresParams<unsigned short>{11, 4094}), HoldWithin(histogram, ThresParams<unsigned short>{11, 4094}));
}

TEST(ChannelParams, HistogramsOfOneLayoutAreAdded) {
    auto red = MakeHistogram<unsigned char>(0, 3, 4);
    auto green = red;
    auto blue = MakeHistogram<unsigned char>(0, 4, 4);
    red[1] = 5;
    green[1] = 7;
    green[3] = 1;
    EXPECT_TRUE(HaveSameLayout<unsigned char>({&red}));
    EXPECT_TRUE(HaveSameLayout<unsigned char>({&red, &green}));
    EXPECT_FALSE(HaveSameLayout<unsigned char>({&red, &green, &blue}));
    EXPECT_FALSE(HaveSameLayout<unsigned char>({&blue, &red, &red}));
    const auto sum = AddHistograms<unsigned char>({&red, &green, &red});
    EXPECT_EQ(17U, sum[1]); // 5 + 7 + 5
    EXPECT_EQ(1U, sum[3]);
    EXPECT_EQ(5U, red[1]); // its own stay
}

TEST(ChannelParams, PreviewsCarryTheParameters) {
    const auto levels = MakePreviewEvent(TLevelsParams<int, unsigned char>{-3, 9, 1.5, 200, 20}, 2);
    EXPECT_EQ(-3.0F, levels.GetInMin());
    EXPECT_EQ(9.0F, levels.GetInMax());
    EXPECT_EQ(1.5, levels.GetGamma());
    EXPECT_EQ(200.0F, levels.GetOutMin());
    EXPECT_EQ(20.0F, levels.GetOutMax());
    EXPECT_EQ(2, levels.GetChannel());
    const auto thresholds = MakePreviewEvent(ThresParams<unsigned char>{1, 254}, 3);
    EXPECT_EQ(1.0F, thresholds.GetLower());
    EXPECT_EQ(254.0F, thresholds.GetUpper());
    EXPECT_EQ(3, thresholds.GetChannel());
}

} // namespace
