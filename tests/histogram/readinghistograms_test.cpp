#include "histogram/zel_readinghistograms.h"
#include "image/zel_framereading.h"
#include "model/zel_histogramcount.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <vector>

namespace {

using zel::ReadingHistograms;
template <typename C>
using RGB = kep::RGB_generic<C>;

static_assert(ReadingHistograms<unsigned char>::counts && ReadingHistograms<unsigned short>::counts);
static_assert(ReadingHistograms<RGB<unsigned char>>::counts && ReadingHistograms<RGB<unsigned short>>::counts);
static_assert(!ReadingHistograms<int>::counts && !ReadingHistograms<float>::counts);
static_assert(!ReadingHistograms<std::complex<float>>::counts);

class Counts : public testing::Test {
protected:
    template <typename T>
    wxArrayString SaveFrames(const std::vector<std::vector<T>>& frames) {
        wxArrayString names;
        for (const std::vector<T>& voxels : frames)
            names.Add(Save(FrameOf(voxels), folder / (std::to_string(names.size()) + ".tif")));
        return names;
    }
    ScratchFolder folder;
};

TEST_F(Counts, AllFramesOfASequence) {
    const wxArrayString names = SaveFrames<unsigned short>({{7, 7, 65535}, {0, 7, 9}});
    const ReadingHistograms<unsigned short> counts;
    mor::Image4d<unsigned short> image;
    image.ReadSequence(names, false);
    ASSERT_TRUE(counts.Hold(image));
    const auto& histogram = counts.Get().Get();
    EXPECT_EQ(histogram.size(), 65536U);
    EXPECT_EQ(histogram[0], 1U);
    EXPECT_EQ(histogram[7], 3U);
    EXPECT_EQ(histogram[9], 1U);
    EXPECT_EQ(histogram[65535], 1U);
    EXPECT_EQ(std::count(histogram.begin(), histogram.end(), 0U), 65532);
}

TEST_F(Counts, TheThreeColoursApart) {
    const wxArrayString names = SaveFrames<RGB<unsigned char>>({{{1, 2, 3}, {1, 200, 3}}});
    const ReadingHistograms<RGB<unsigned char>> counts;
    mor::Image4d<RGB<unsigned char>> image;
    image.ReadSequence(names, false);
    ASSERT_TRUE(counts.Hold(image));
    EXPECT_EQ(counts.Get()[0][1], 2U);
    EXPECT_EQ(counts.Get()[1][2], 1U);
    EXPECT_EQ(counts.Get()[1][200], 1U);
    EXPECT_EQ(counts.Get()[2][3], 2U);
    EXPECT_EQ(counts.Get()[2].size(), 256U);
}

TEST_F(Counts, DoNotHoldAnImageThatTheyDidNotSee) {
    const wxArrayString names = SaveFrames<unsigned char>({{1, 2, 3}, {0, 1, 1}});
    mor::Image4d<unsigned char> before;
    before.ReadSequence(names, false);
    const ReadingHistograms<unsigned char> counts;
    EXPECT_FALSE(counts.Hold(before));
    EXPECT_FALSE(counts.Hold(mor::Image4d<unsigned char>())); // nothing was counted, as it should be, and still
    mor::Image4d<unsigned char> twoValued;
    twoValued.ReadSequence(SaveFrames<unsigned char>({{0, 255}}), true);
    EXPECT_FALSE(counts.Hold(twoValued));
}

TEST_F(Counts, DoNotHoldAnImageBesideAnother) {
    const wxArrayString names = SaveFrames<unsigned char>({{1, 2, 3}, {0, 1, 1}});
    const ReadingHistograms<unsigned char> counts;
    mor::Image4d<unsigned char> image, other;
    image.ReadSequence(names, false);
    EXPECT_TRUE(counts.Hold(image));
    other.ReadSequence(names, false);
    EXPECT_FALSE(counts.Hold(image));
}

TEST_F(Counts, DoNotHoldTypesWhoseBinsAreNotKnownBefore) {
    const wxArrayString names = SaveFrames<float>({{1, 2, 3}});
    const ReadingHistograms<float> counts;
    mor::Image4d<float> image;
    image.ReadSequence(names, false);
    EXPECT_FALSE(counts.Hold(image));
}

} // namespace
