#include "histogram/zel_histogramset.h"
#include "tests/support/frames.h"
#include "tests/support/gui_test.h"
#include "tests/support/notice_watcher.h"

#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using zel::Histogram;
using zel::HistogramSet;
using zel::test::NoticeWatcher;
using Complex = std::complex<float>;
template <typename C>
using RGB = kep::RGB_generic<C>;

template <typename C>
std::vector<std::size_t> Counters(const Histogram<C>& histogram) {
    return {histogram.begin(), histogram.end()};
}

class HistogramSetOfImage : public zel::test::GuiTest {};

TEST_F(HistogramSetOfImage, OfBytesHasABinForEachNumber) {
    NoticeWatcher notices;
    const HistogramSet<unsigned char> set(FrameOf<unsigned char>({0, 0, 255}));
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram..."));
    EXPECT_EQ(notices.CountShown(), 0U);
    EXPECT_FALSE(set.IsEmpty());
    EXPECT_EQ(set.Get().size(), 256U);
    EXPECT_EQ(set.Get().GetLeftCenter(), 0);
    EXPECT_EQ(set.Get().GetRightCenter(), 255);
    EXPECT_EQ(set.Get()[0], 2U);
    EXPECT_EQ(set.Get()[255], 1U);
    EXPECT_EQ(set.Get().GetSum(), 3U);
}

TEST_F(HistogramSetOfImage, OfWordsHasABinForEachNumber) {
    NoticeWatcher notices;
    const HistogramSet<unsigned short> set(FrameOf<unsigned short>({7, 65535, 7, 7}));
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram..."));
    EXPECT_EQ(set.Get().size(), 65536U);
    EXPECT_EQ(set.Get().GetRightCenter(), 65535);
    EXPECT_EQ(set.Get()[7], 3U);
    EXPECT_EQ(set.Get()[65535], 1U);
    EXPECT_EQ(set.Get().GetSum(), 4U);
}

TEST_F(HistogramSetOfImage, ReplacesWhatWasThere) {
    HistogramSet<unsigned char> set(FrameOf<unsigned char>({9, 9}));
    set.CreateFromImage(FrameOf<unsigned char>({8}));
    EXPECT_EQ(set.Get()[9], 0U);
    EXPECT_EQ(set.Get()[8], 1U);
    set.CreateFromImage(kep::Image3d<unsigned char>());
    EXPECT_EQ(set.Get().size(), 256U);
    EXPECT_EQ(set.Get().GetSum(), 0U);
}

TEST_F(HistogramSetOfImage, OfFloatsFindsNoMemoryAndChangesNothing) {
    NoticeWatcher notices;
    HistogramSet<float> set;
    Histogram<float> before;
    before.Init(0, 1, 2);
    set.Set(before);
    EXPECT_THROW(set.CreateFromImage(FrameOf<float>({1})), std::bad_alloc);
    EXPECT_EQ(set.Get().size(), 2U);
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram..."));
    EXPECT_EQ(notices.CountShown(), 0U);
}

TEST_F(HistogramSetOfImage, OfColoursHasAHistogramForEachComponent) {
    NoticeWatcher notices;
    const HistogramSet<RGB<unsigned char>> set(FrameOf<RGB<unsigned char>>({{1, 2, 3}}));
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram (red)...", "Creating histogram (green)...",
                                           "Creating histogram (blue)..."));
    EXPECT_EQ(notices.most, 3U); // all stay up until the last channel is done
    EXPECT_EQ(notices.CountShown(), 0U);
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(set[channel].size(), 256U);
        EXPECT_EQ(set[channel].GetSum(), 1U);
        EXPECT_EQ(set[channel].GetBin(static_cast<unsigned char>(channel + 1)), 1U);
    }
}

TEST_F(HistogramSetOfImage, OfDeepColoursHasAHistogramForEachComponent) {
    NoticeWatcher notices;
    const HistogramSet<RGB<unsigned short>> set(FrameOf<RGB<unsigned short>>({{1, 2000, 65535}, {1, 2001, 0}}));
    EXPECT_EQ(notices.texts.size(), 3U);
    EXPECT_EQ(set[0].size(), 65536U);
    EXPECT_EQ(set[0][1], 2U);
    EXPECT_EQ(set[1][2000], 1U);
    EXPECT_EQ(set[1][2001], 1U);
    EXPECT_EQ(set[2][65535], 1U);
    EXPECT_EQ(set[2][0], 1U);
    EXPECT_EQ(set[0].GetSum() + set[1].GetSum() + set[2].GetSum(), 6U);
}

TEST_F(HistogramSetOfImage, OfOneComplexVoxelHasEqualCenters) {
    NoticeWatcher notices;
    const HistogramSet<Complex> set(FrameOf<Complex>({{3, 4}}));
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram..."));
    EXPECT_EQ(notices.CountShown(), 0U);
    const float expected[] = {3, 4, std::atan2(4.0F, 3.0F), 5};
    for (int channel = 0; channel < 4; ++channel) {
        ASSERT_EQ(set[channel].size(), 256U);
        EXPECT_EQ(set[channel].GetLeftCenter(), expected[channel]);
        EXPECT_EQ(set[channel].GetRightCenter(), expected[channel]);
        EXPECT_EQ(set[channel][0], 1U);
        EXPECT_EQ(set[channel].GetSum(), 1U);
    }
}

TEST_F(HistogramSetOfImage, OfComplexVoxelsFindsTheBoundsOfEachChannel) {
    // Phases 0, pi / 2, pi; amplitudes 2, 1, 4.
    const HistogramSet<Complex> set(FrameOf<Complex>({{2, 0}, {0, 1}, {-4, 0}}));
    const float pi = std::atan2(0.0F, -1.0F);
    const float mins[] = {-4, 0, 0, 1};
    const float maxs[] = {2, 1, pi, 4};
    for (int channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(set[channel].GetLeftCenter(), mins[channel]) << channel;
        EXPECT_EQ(set[channel].GetRightCenter(), maxs[channel]) << channel;
        EXPECT_EQ(set[channel].GetSum(), 3U);
        EXPECT_GE(set[channel][0], 1U);
        EXPECT_GE(set[channel][255], 1U);
    }
    EXPECT_EQ(set[0][170], 1U); // (0 + 4) / 6 * 255
    EXPECT_EQ(set[1][0], 2U);
    EXPECT_EQ(set[2][127], 1U); // half of 255, truncated
    EXPECT_EQ(set[3][85], 1U);  // (2 - 1) / 3 * 255
}

TEST_F(HistogramSetOfImage, OfComplexVoxelsTakesGivenBounds) {
    NoticeWatcher notices;
    HistogramSet<Complex> set;
    const float mins[] = {0, 1, -1, 2};
    const float maxs[] = {255, 256, 1, 257};
    set.CreateFromImage(FrameOf<Complex>({{2, 0}, {0, 1}, {-4, 0}, {300, 0}}), mins, maxs);
    EXPECT_THAT(notices.texts, ElementsAre("Creating histogram..."));
    EXPECT_EQ(notices.CountShown(), 0U);
    for (int channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(set[channel].size(), 256U);
        EXPECT_EQ(set[channel].GetLeftCenter(), mins[channel]);
        EXPECT_EQ(set[channel].GetRightCenter(), maxs[channel]);
        EXPECT_EQ(set[channel].GetSum(), 4U);
    }
    EXPECT_EQ(set[0][2], 1U);
    EXPECT_EQ(set[0][0], 2U);   // 0, and -4 from below
    EXPECT_EQ(set[0][255], 1U); // 300 from above
    EXPECT_EQ(set[1][0], 4U);
    EXPECT_EQ(set[2][127], 2U); // phase 0 is half of 255, truncated
    EXPECT_EQ(set[2][255], 2U); // pi / 2 and pi
    EXPECT_EQ(set[3][0], 2U);   // 2, and 1 from below
    EXPECT_EQ(set[3][2], 1U);   // 4
    EXPECT_EQ(set[3][255], 1U);
}

TEST_F(HistogramSetOfImage, FoundAndGivenBoundsCountTheSame) {
    std::mt19937 random(11);
    std::normal_distribution<float> normal;
    std::vector<Complex> voxels(10007);
    for (Complex& voxel : voxels)
        voxel = {normal(random), normal(random)};
    const auto frame = FrameOf(voxels);
    const HistogramSet<Complex> found(frame);
    float mins[4], maxs[4];
    for (int channel = 0; channel < 4; ++channel) {
        mins[channel] = found[channel].GetLeftCenter();
        maxs[channel] = found[channel].GetRightCenter();
    }
    HistogramSet<Complex> given;
    given.CreateFromImage(frame, mins, maxs);
    for (int channel = 0; channel < 4; ++channel)
        EXPECT_EQ(Counters(given[channel]), Counters(found[channel])) << channel;
}

TEST_F(HistogramSetOfImage, WithoutVoxelsHasNoComplexBins) {
    HistogramSet<Complex> set(FrameOf<Complex>({{3, 4}}));
    set.CreateFromImage(kep::Image3d<Complex>());
    EXPECT_TRUE(set.IsEmpty());
    const float mins[] = {0, 0, 0, 0};
    const float maxs[] = {1, 1, 1, 1};
    set.CreateFromImage(kep::Image3d<Complex>(), mins, maxs);
    EXPECT_EQ(set[3].size(), 256U);
    EXPECT_EQ(set[3].GetSum(), 0U);
}

} // namespace
