#include "image/zel_image4d.h"
#include "tests/support/text_of.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>

namespace {

using kep::Resolution;
using kep::Vector3d;
using mor::Image4d;
using Size = Vector3d<std::size_t>;
using PixelBox = kep::VOI<kep::T_pair<int, std::size_t>>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// Frames whose voxels say where they are: x + 10 y + 100 z + 1000 t.
template <typename T>
void FillWithPositions(Image4d<T>& image) {
    for (std::size_t t = 0; t < image.GetSizeT(); ++t) {
        for (std::size_t i = 0; i < image.GetFrameSize(); ++i) {
            const Size p = image.GetFramePos(i);
            image.SetVoxel(i, t, static_cast<T>(p.x + 10 * p.y + 100 * p.z + 1000 * t));
        }
        image.SetImageName(t, "frame " + std::to_string(t));
    }
    image.UpdateMinMaxValues();
}

// --- cached extremes ---

TEST(CachedExtremes, AreOldUntilTheyAreUpdated) {
    Image4d<int> image;
    image.MakeRoom(3, 2, 1, 2);
    FillWithPositions(image); // 0 to 1012
    image.SetVoxel(0, 0, 2000);
    image.SetVoxel(1, 1, -5);
    EXPECT_EQ(image.GetCachedMaxValue(), 1012);
    EXPECT_EQ(image.GetUpdatedMaxValue(), 2000);
    EXPECT_EQ(image.GetCachedMaxValue(), 2000);
    EXPECT_EQ(image.GetCachedMinValue(), -5);
    *image.GetVoxelAddr(1, 1) = -7;
    EXPECT_EQ(image.GetCachedMinValue(), -5);
    EXPECT_EQ(image.GetUpdatedMinValue(), -7);
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<int>{-7, 2000}));
}

TEST(CachedExtremes, AreTheEmptyValuesWithoutFrames) {
    Image4d<unsigned char> image;
    EXPECT_EQ(image.GetCachedMinValue(), 255);
    EXPECT_EQ(image.GetCachedMaxValue(), 0);
    image.MakeRoom(1, 1, 1, 1);
    EXPECT_EQ(image.GetUpdatedMinValue(), 0);
    image.DestroyData();
    EXPECT_EQ(image.GetCachedMinValue(), 0);
    EXPECT_EQ(image.GetUpdatedMinValue(), 255);
    EXPECT_EQ(image.GetUpdatedMaxValue(), 0);
}

TEST(CachedExtremes, OfNegativeFloatsAreNotThoseOfTheEmptyContainer) {
    Image4d<float> image;
    image.MakeRoom(2, 1, 1, 2);
    image.GetVoxelData(0) = -4;
    image.GetVoxelData(1) = -6;
    // The largest of the empty container, 1.17e-38, would stay if frames were only merged.
    EXPECT_EQ(image.GetUpdatedMaxValue(), -4);
    EXPECT_EQ(image.GetCachedMinValue(), -6);
}

TEST(CachedExtremes, LeaveFramesWithoutVoxelsOut) {
    Image4d<float> image;
    image.MakeRoom(2, 1, 1, 3);
    image.GetVoxelData(1) = -4;
    image.GetVoxelData(2) = -2;
    image[0]->DisposeData();
    EXPECT_EQ(image.GetUpdatedMaxValue(), -2); // set by the first frame that has voxels
    EXPECT_EQ(image.GetCachedMinValue(), -4);
    image.DisposeData();
    image.UpdateMinMaxValues();
    EXPECT_EQ(image.GetExtremes(), mor::ExtremaValues<float>());
}

TEST(CachedExtremes, AreSetByTheFirstFrameEvenIfItIsNaN) {
    Image4d<float> image;
    image.MakeRoom(2, 1, 1, 2);
    image.GetVoxelData(0) = nan;
    image.GetVoxelData(1) = 3;
    EXPECT_TRUE(std::isnan(image.GetUpdatedMaxValue())); // nothing is above NaN
    image.GetVoxelData(0) = 1;
    image.GetVoxelData(1) = nan;
    EXPECT_EQ(image.GetUpdatedMaxValue(), 1);
}

// --- the copy constructor ---

TEST(Copy, SharesNothing) {
    Image4d<int> source;
    source.MakeRoom(4, 3, 2, 2);
    source.SetOffset({1, 2, 3});
    source.SetResolution({4, 5, 6});
    source.SetTimeStep(0.5F);
    FillWithPositions(source);
    source[1]->SetDescription({{"Author", "someone"}});
    const Image4d<int> copy(source);
    EXPECT_EQ(copy.TestConsistency(), 0);
    EXPECT_EQ(copy.GetSize(), Size(4, 3, 2));
    EXPECT_EQ(copy.GetNumFrames(), 2U);
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(copy.GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(copy.GetTimeStep(), 0.5F);
    EXPECT_EQ(copy.GetImageName(1), "frame 1");
    EXPECT_EQ(copy[1]->GetDescription().at("Author"), "someone");
    EXPECT_EQ(copy.GetVoxel(3, 2, 1, 1), 1123);
    EXPECT_EQ(copy.GetCachedMinValue(), 0);
    EXPECT_EQ(copy.GetCachedMaxValue(), 1123);
    EXPECT_NE(copy.GetImage(0), source.GetImage(0));
    EXPECT_NE(copy.GetFirstVoxelAddr(1), source.GetFirstVoxelAddr(1));
    source.SetVoxel(3, 2, 1, 1, -1);
    EXPECT_EQ(copy.GetVoxel(3, 2, 1, 1), 1123);
}

TEST(Copy, OfAnEmptyContainerIsEmpty) {
    const Image4d<float> source;
    const Image4d<float> copy(source);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(copy.TestConsistency(), 0);
    EXPECT_EQ(copy.GetExtremes(), mor::ExtremaValues<float>());
}

TEST(Copy, TakesItsExtremesFromItsOwnVoxels) {
    Image4d<int> source;
    source.MakeRoom(2, 1, 1, 2);
    FillWithPositions(source);
    source.SetVoxel(0, 0, 5000); // the source's cache does not know
    const Image4d<int> copy(source);
    EXPECT_EQ(source.GetCachedMaxValue(), 1001);
    EXPECT_EQ(copy.GetCachedMaxValue(), 5000);
}

TEST(Copy, OfABoxMovesTheOffset) {
    Image4d<int> source;
    source.MakeRoom(6, 5, 4, 2);
    source.SetOffset({10, 20, 30});
    source.SetResolution({2, 4, 8});
    FillWithPositions(source);
    const PixelBox box(1, 2, 3, 3, 2, 1);
    const Image4d<int> copy(source, &box);
    EXPECT_EQ(copy.GetSize(), Size(3, 2, 1));
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(10.5F, 20.5F, 30.375F)); // 1 / 2, 2 / 4, 3 / 8 microns further
    EXPECT_EQ(copy.GetResolution(), Resolution(2, 4, 8));
    EXPECT_EQ(copy.TestConsistency(), 0);
    EXPECT_EQ(copy.GetVoxel(0, 0, 0, 0), 321);
    EXPECT_EQ(copy.GetVoxel(2, 1, 0, 1), 1333);
    EXPECT_EQ(copy.GetCachedMinValue(), 321);
    EXPECT_EQ(copy.GetCachedMaxValue(), 1333);
}

TEST(Copy, OfABoxIsConsistentForOddGeometry) {
    // Frames and container must come to the same float offsets by different ways.
    const Vector3d<float> offset(0.1F, 1234.567F, -77.7F);
    const Resolution resolution(3.3333F, 0.7F, 11.13F);
    Image4d<int> source(&offset, &resolution);
    source.MakeRoom(20, 20, 20, 1);
    for (int shift = 0; shift < 17; ++shift) {
        const PixelBox box(shift, shift, shift, 3, 3, 3);
        EXPECT_EQ(Image4d<int>(source, &box).TestConsistency(), 0) << shift;
    }
}

TEST(Copy, OfABoxReachingOutsideIsFilledWithZero) {
    Image4d<int> source;
    source.MakeRoom(2, 2, 1, 1);
    source.GetVoxelData(0) = 7;
    const PixelBox box(-1, 0, 0, 2, 1, 1);
    const Image4d<int> copy(source, &box);
    EXPECT_EQ(copy.GetSize(), Size(2, 1, 1));
    EXPECT_EQ(copy.GetVoxel(0, 0), 0);
    EXPECT_EQ(copy.GetVoxel(1, 0), 7);
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(-1, 0, 0)); // without a resolution a voxel counts as a micron
    EXPECT_EQ(copy.TestConsistency(), 0);
}

TEST(Copy, OfAnInconsistentSourceIsRefused) {
    Image4d<int> source;
    source.MakeRoom(2, 2, 2, 2);
    source[1]->SetOffset({1, 0, 0});
    EXPECT_EQ(TextOf([&] { const Image4d<int> copy(source); }),
              "Image4d, copy constructor: Source image is not consistent!");
}

// --- CopyFromVOI ---

TEST(CopyFromVOI, ReusesTheFramesAndDeletesTheRest) {
    Image4d<int> source;
    source.MakeRoom(4, 4, 4, 2);
    source.SetResolution({2, 2, 2});
    source.SetTimeStep(0.5F);
    FillWithPositions(source);
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 3);
    image.SetResolution({2, 2, 2});
    const auto before = image.GetVoxelData();
    image.CopyFromVOI(source, PixelBox(1, 1, 1, 2, 2, 2));
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetImage(0), before[0]);
    EXPECT_EQ(image.GetImage(1), before[1]);
    EXPECT_EQ(image.GetSize(), Size(2, 2, 2));
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(0.5F, 0.5F, 0.5F)); // 1 voxel at 2 pixels per micron
    EXPECT_EQ(image.GetResolution(), Resolution(2, 2, 2));
    EXPECT_EQ(image.GetTimeStep(), 0.5F);
    EXPECT_EQ(image.GetImageName(1), "frame 1");
    EXPECT_EQ(image.GetVoxel(0, 0, 0, 0), 111);
    EXPECT_EQ(image.GetVoxel(1, 1, 1, 1), 1222);
    EXPECT_EQ(image.GetCachedMinValue(), 111);
    EXPECT_EQ(image.GetCachedMaxValue(), 1222);
}

TEST(CopyFromVOI, KeepsAllFramesWhenBothHaveTheSameNumber) {
    Image4d<int> source;
    source.MakeRoom(2, 2, 2, 2);
    FillWithPositions(source);
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 2);
    image.CopyFromVOI(source, PixelBox(0, 0, 0, 2, 2, 2));
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetVoxel(1, 1, 1, 1), 1111);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(CopyFromVOI, AddsOneFrameAndNoMore) {
    Image4d<int> source;
    source.MakeRoom(4, 4, 4, 3);
    source.SetResolution({1, 1, 1});
    FillWithPositions(source);
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 1);
    image.SetResolution({1, 1, 1});
    image.CopyFromVOI(source, PixelBox(1, 1, 1, 2, 2, 2));
    EXPECT_EQ(image.GetNumFrames(), 2U); // of three
    EXPECT_EQ(image.GetImageName(1), "frame 1");
    EXPECT_EQ(image.GetVoxel(0, 0, 0, 1), 1111);
    EXPECT_EQ(image.GetCachedMinValue(), 111);
    EXPECT_EQ(image.GetCachedMaxValue(), 1222);
    EXPECT_EQ(image.TestConsistency(), 0); // at one pixel per micron and offset 0
}

TEST(CopyFromVOI, AddsOneFrameToAnEmptyContainer) {
    Image4d<float> source;
    source.MakeRoom(2, 2, 2, 2);
    source.GetVoxelData(0) = -3;
    source.GetVoxelData(1) = 8;
    Image4d<float> image;
    image.CopyFromVOI(source, PixelBox(0, 0, 0, 2, 2, 2));
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetCachedMinValue(), -3);
    EXPECT_EQ(image.GetCachedMaxValue(), -3); // set, not merged into the empty values
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(CopyFromVOI, AddsAFrameThatTakesTheNumbersAsMicrons) {
    Image4d<int> source;
    source.MakeRoom(8, 8, 8, 2);
    source.SetResolution({2, 2, 2});
    FillWithPositions(source);
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 1);
    image.SetResolution({2, 2, 2});
    image.CopyFromVOI(source, PixelBox(1, 1, 1, 2, 2, 2));
    ASSERT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetSize(), Size(2, 2, 2));
    EXPECT_EQ(image[1]->GetSize(), Size(4, 4, 4)); // 2 microns of 2 pixels each
    EXPECT_EQ(image[1]->GetVoxel(0), 1222);        // its first voxel is that at 1 micron, (2, 2, 2)
    EXPECT_EQ(image.TestConsistency(), 2);         // told, not repaired
}

TEST(CopyFromVOI, AddsAFrameWithoutVoxelsThatLeavesTheExtremes) {
    Image4d<int> source;
    source.MakeRoom(4, 4, 4, 2);
    FillWithPositions(source);
    source.SetOffset({100, 100, 100});
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 1);
    image.CopyFromVOI(source, PixelBox(1, 1, 1, 2, 2, 2)); // as microns, far from the frames
    ASSERT_EQ(image.GetNumFrames(), 2U);
    EXPECT_TRUE(image[1]->IsEmpty());
    EXPECT_EQ(image.GetCachedMinValue(), 111);
    EXPECT_EQ(image.GetCachedMaxValue(), 222);

    Image4d<int> empty;
    empty.CopyFromVOI(source, PixelBox(1, 1, 1, 2, 2, 2));
    ASSERT_EQ(empty.GetNumFrames(), 1U);
    EXPECT_EQ(empty.GetExtremes(), mor::ExtremaValues<int>());
}

TEST(CopyFromVOI, MovesTheOffsetByTheResolutionFromBefore) {
    Image4d<int> source;
    source.MakeRoom(4, 4, 4, 1);
    source.SetResolution({2, 2, 2});
    source.SetOffset({10, 10, 10});
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 1);
    image.SetResolution({4, 4, 4});
    image.CopyFromVOI(source, PixelBox(2, 2, 2, 1, 1, 1));
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(10.5F, 10.5F, 10.5F)); // 2 / 4 microns, and not 2 / 2
    EXPECT_EQ(image[0]->GetOffset(), Vector3d<float>(11, 11, 11));
    EXPECT_EQ(image.GetResolution(), Resolution(2, 2, 2));
    EXPECT_EQ(image.TestConsistency(), 3);
}

TEST(CopyFromVOI, FromASourceWithoutFramesDeletesAll) {
    const Image4d<int> source;
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 2);
    image.CopyFromVOI(source, PixelBox(0, 0, 0, 1, 1, 1));
    EXPECT_EQ(image.GetNumFrames(), 0U);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(CopyFromVOI, CutsTheContainerItselfToABox) {
    Image4d<int> image;
    image.MakeRoom(4, 4, 4, 2);
    image.SetResolution({2, 2, 2});
    FillWithPositions(image);
    image.CopyFromVOI(image, PixelBox(1, 2, 3, 2, 1, 1));
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetVoxel(0, 0), 321);
    EXPECT_EQ(image.GetVoxel(1, 1), 1322);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(CopyFromVOI, FromAnInconsistentSourceChangesNothing) {
    Image4d<int> source;
    source.MakeRoom(2, 2, 2, 1);
    source[0]->SetResolution({1, 0, 0});
    Image4d<int> image;
    image.MakeRoom(3, 3, 3, 2);
    EXPECT_EQ(TextOf([&] { image.CopyFromVOI(source, PixelBox(0, 0, 0, 1, 1, 1)); }),
              "Image4d, copy from VOI: Source image is not consistent!");
    EXPECT_EQ(image.GetSize(), Size(3, 3, 3));
    EXPECT_EQ(image.GetNumFrames(), 2U);
}

TEST(CopyFromVOI, WithoutMemoryKeepsAConsistentContainer) {
    Image4d<int> source;
    source.MakeRoom(2, 2, 2, 2);
    Image4d<int> image;
    image.MakeRoom(3, 3, 3, 2);
    const std::size_t side = std::size_t{1} << 21; // 2^63 voxels
    EXPECT_THROW(image.CopyFromVOI(source, PixelBox(0, 0, 0, side, side, side)), kep::LibException);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetNumFrames(), 0U);
}

} // namespace
