#include "image/zel_image4d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using kep::Resolution;
using kep::Vector3d;
using mor::Image4d;
using Size = Vector3d<std::size_t>;

constexpr const char* noFile = "no file specified";

template <typename T>
class ContainerOfType : public testing::Test {};
using ContainerTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                      kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                      std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(ContainerOfType, ContainerTypes);

TYPED_TEST(ContainerOfType, IsEmptyAtFirst) {
    const Image4d<TypeParam> image;
    EXPECT_TRUE(image.IsEmpty());
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetSize(), Size(0, 0, 0));
    EXPECT_EQ(image.GetSizeT(), 0U);
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(0, 0, 0));
    EXPECT_EQ(image.GetResolution(), Resolution(0, 0, 0));
    EXPECT_EQ(image.GetTimeStep(), 0.0F);
    EXPECT_EQ(image.GetExtremes(), mor::ExtremaValues<TypeParam>());
}

TYPED_TEST(ContainerOfType, MakesRoomForFramesAndReachesTheirVoxels) {
    const Vector3d<float> offset(1, 2, 3);
    const Resolution resolution(4, 5, 6);
    Image4d<TypeParam> image(&offset, &resolution, 0.5F);
    image.MakeRoom(4, 3, 2, 5);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_FALSE(image.IsEmpty());
    EXPECT_EQ(image.GetVoxelData().size(), 5U);
    EXPECT_EQ(image.GetVoxelData(4).size(), 24U);
    EXPECT_EQ(image.GetVoxelData(4).size(), image.GetFrameSize());
    EXPECT_EQ(image.GetImage(4)->GetOffset(), offset);
    EXPECT_EQ(image.GetImage(4)->GetResolution(), resolution);
    EXPECT_EQ(image.GetImageName(4), noFile);

    const TypeParam voxel = mor::ExtremaValues<TypeParam>().min; // anything but T()
    const std::size_t index = (3 * 1 + 2) * 4 + 3;               // of (3, 2, 1)
    image.SetVoxel(3, 2, 1, 4, voxel);
    const auto& constant = image;
    EXPECT_EQ(constant.GetVoxel(index, 4), voxel);
    EXPECT_EQ(constant.GetVoxel(3, 2, 1, 4), voxel);
    EXPECT_EQ(constant.GetVoxel(Size(3, 2, 1), 4), voxel);
    EXPECT_EQ(*constant.GetVoxelAddr(index, 4), voxel);
    EXPECT_EQ(*constant.GetVoxelAddr(3, 2, 1, 4), voxel);
    EXPECT_EQ(constant.GetFirstVoxelAddr(4)[index], voxel);
    EXPECT_EQ(constant.GetVoxelData(4)[index], voxel);
    EXPECT_EQ(constant[4]->GetVoxel(index), voxel);
    EXPECT_EQ(constant.GetVoxelAddr(3, 2, 1, 4), image.GetVoxelAddr(3, 2, 1, 4));
    EXPECT_EQ(constant.GetVoxelAddr(index, 4), image.GetVoxelAddr(index, 4));
    EXPECT_EQ(constant.GetFirstVoxelAddr(4), image.GetFirstVoxelAddr(4));
    EXPECT_EQ(constant.GetVoxel(3, 2, 1, 3), TypeParam()); // the frame beside it
    image.SetVoxel(index, 3, voxel);
    EXPECT_EQ(constant.GetVoxel(3, 2, 1, 3), voxel);
    image.SetVoxel(Size(3, 2, 1), 2, voxel);
    EXPECT_EQ(constant.GetVoxel(3, 2, 1, 2), voxel);
}

TEST(Container, TakesOffsetResolutionAndTimeStep) {
    const Vector3d<float> offset(1, 2, 3);
    const Resolution resolution(4, 5, 6);
    const Image4d<int> image(&offset, &resolution, 0.25F);
    EXPECT_EQ(image.GetOffset(), offset);
    EXPECT_EQ(image.GetResolution(), resolution);
    EXPECT_EQ(image.GetTimeStep(), 0.25F);
}

TEST(Container, TellsItsSizes) {
    Image4d<int> image;
    image.MakeRoom(Size(5, 4, 3), 2);
    EXPECT_EQ(image.GetSize(), Size(5, 4, 3));
    EXPECT_EQ(image.GetSizeX(), 5U);
    EXPECT_EQ(image.GetWidth(), 5U);
    EXPECT_EQ(image.GetSizeY(), 4U);
    EXPECT_EQ(image.GetHeight(), 4U);
    EXPECT_EQ(image.GetSizeZ(), 3U);
    EXPECT_EQ(image.GetNumSlices(), 3U);
    EXPECT_EQ(image.GetSizeT(), 2U);
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetSliceSize(), 20U);
    EXPECT_EQ(image.GetFrameSize(), 60U);
}

TEST(Container, IsEmptyWhenAnySizeIsZero) {
    const std::vector<std::pair<Size, std::size_t>> cases = {
        {{0, 4, 3}, 2}, {{5, 0, 3}, 2}, {{5, 4, 0}, 2}, {{5, 4, 3}, 0}};
    for (const auto& [size, frames] : cases) {
        Image4d<int> image;
        image.MakeRoom(size, frames);
        EXPECT_TRUE(image.IsEmpty()) << size.x << " " << size.y << " " << size.z << " " << frames;
        EXPECT_EQ(image.TestConsistency(), 0);
    }
}

TEST(Container, MovesAllFramesWithItself) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 3);
    image.SetOffset({7, 8, 9});
    image.SetResolution({1, 2, 4});
    image.SetTimeStep(3);
    EXPECT_EQ(image.GetTimeStep(), 3.0F);
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(7, 8, 9));
    EXPECT_EQ(image.GetResolution(), Resolution(1, 2, 4));
    for (std::size_t t = 0; t < 3; ++t) {
        EXPECT_EQ(image[t]->GetOffset(), Vector3d<float>(7, 8, 9));
        EXPECT_EQ(image[t]->GetResolution(), Resolution(1, 2, 4));
    }
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(Container, GivesReferencesToItsOwnGeometryOnly) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 1);
    image.GetOffset().x = 5;
    EXPECT_EQ(image.TestConsistency(), 3);
    image.GetOffset().x = 0;
    image.GetResolution() = Resolution(1, 1, 1);
    EXPECT_EQ(image.TestConsistency(), 4);
}

TEST(Container, CountsIndexesWithXFastest) {
    Image4d<int> image;
    image.MakeRoom(5, 4, 3, 1);
    // (2 * 4 + 3) * 5 + 4 = 59, the last voxel.
    EXPECT_EQ(image.GetInFrameIndex(4, 3, 2), 59U);
    EXPECT_EQ(image.GetInFrameIndex(Size(4, 3, 2)), 59U);
    EXPECT_EQ(image.GetInFrameIndex(1, 2, 0), 11U); // (0 * 4 + 2) * 5 + 1
    EXPECT_EQ(image.GetX(11), 1U);
    EXPECT_EQ(image.GetY(11), 2U);
    EXPECT_EQ(image.GetZ(11), 0U);
    EXPECT_EQ(image.GetFramePos(59), Size(4, 3, 2));
    EXPECT_EQ(image.GetInFrameCoords(59), Vector3d<int>(4, 3, 2));
}

TEST(Container, AnIndexPastTheFrameGivesASlicePastTheFrame) {
    Image4d<int> image;
    image.MakeRoom(5, 4, 3, 1);
    EXPECT_EQ(image.GetFramePos(60), Size(0, 0, 3));
    EXPECT_EQ(image.GetZ(20 * 7 + 6), 7U);
}

TEST(Container, IncludesPositionsInsideTheFrame) {
    Image4d<int> image;
    image.MakeRoom(5, 4, 3, 1);
    const std::vector<std::pair<Vector3d<int>, bool>> cases = {{{0, 0, 0}, true},
                                                               {{4, 3, 2}, true},
                                                               {{-1, 0, 0}, false},
                                                               {{0, -1, 0}, false},
                                                               {{0, 0, -1}, false},
                                                               {{5, 0, 0}, false},
                                                               {{0, 4, 0}, false},
                                                               {{0, 0, 3}, false},
                                                               {{std::numeric_limits<int>::max(), 0, 0}, false},
                                                               {{std::numeric_limits<int>::min(), 0, 0}, false}};
    for (const auto& [p, inside] : cases) {
        EXPECT_EQ(image.Include(p), inside) << p.x << " " << p.y << " " << p.z;
        EXPECT_EQ(image.Include(p.x, p.y, p.z), inside) << p.x << " " << p.y << " " << p.z;
    }
}

TEST(Container, IncludesNothingWhereItHasNoVoxels) {
    const Image4d<int> image;
    EXPECT_FALSE(image.Include(0, 0, 0));
    EXPECT_FALSE(image.Include(0, 0, 0, 0));
    EXPECT_FALSE(image.Include(0, 0, 0, -1));
}

TEST(Container, ComparesPositionsWithTheLow32BitsOfASize) {
    // 2^32 + 4 - 1 has the low bits 3; 2^32 - 1 reads as -1, so nothing is inside; 2^31 - 1 is the largest int.
    EXPECT_TRUE(mor::detail::IncludesCoordinate((std::size_t{1} << 32) + 4, 3));
    EXPECT_FALSE(mor::detail::IncludesCoordinate((std::size_t{1} << 32) + 4, 4));
    EXPECT_FALSE(mor::detail::IncludesCoordinate(std::size_t{1} << 32, 0));
    EXPECT_TRUE(mor::detail::IncludesCoordinate(std::size_t{1} << 31, std::numeric_limits<int>::max()));
}

TEST(Container, LeavesTheLastFrameOutOfWhatItIncludes) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 3);
    EXPECT_TRUE(image.Include(0, 0, 0, 0));
    EXPECT_TRUE(image.Include(0, 0, 0, 1)); // the last but one of three
    EXPECT_TRUE(image.Include(Vector3d<int>(1, 1, 1), 1));
    EXPECT_FALSE(image.Include(0, 0, 0, 2));
    EXPECT_FALSE(image.Include(0, 0, 0, 3));
    EXPECT_FALSE(image.Include(0, 0, 0, -1));
    EXPECT_FALSE(image.Include(0, 0, 2, 0));
    EXPECT_FALSE(image.Include(Vector3d<int>(2, 0, 0), 0));
}

TEST(Container, OfOneFrameIncludesNoTimeAtAll) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 1);
    EXPECT_FALSE(image.Include(0, 0, 0, 0));
    EXPECT_TRUE(image.Include(0, 0, 0));
}

TEST(Container, HasABorderOnAxesOfMoreThanOneVoxel) {
    Image4d<int> image;
    image.MakeRoom(10, 10, 1, 1);
    EXPECT_FALSE(image.OnBorder(5, 5, 0, 0));
    EXPECT_TRUE(image.OnBorder(0, 5, 0, 0));
    EXPECT_FALSE(image.OnFrameBorder(5, 5, 0));
    EXPECT_TRUE(image.OnFrameBorder(5, 9, 0));
    EXPECT_TRUE(image.OnFrameBorder(Size(9, 5, 0)));
    EXPECT_FALSE(image.OnFrameBorder(Size(8, 1, 0)));

    image.MakeRoom(5, 5, 5, 1);
    EXPECT_TRUE(image.OnFrameBorder(2, 2, 0));
    EXPECT_TRUE(image.OnFrameBorder(2, 2, 4));
    EXPECT_TRUE(image.OnFrameBorder(2, 0, 2));
    EXPECT_FALSE(image.OnFrameBorder(2, 2, 2));
}

TEST(Container, HasABorderInTimeWhenItHasSeveralFrames) {
    Image4d<int> image;
    image.MakeRoom(5, 5, 5, 3);
    EXPECT_TRUE(image.OnBorder(2, 2, 2, 0));
    EXPECT_FALSE(image.OnBorder(2, 2, 2, 1));
    EXPECT_TRUE(image.OnBorder(2, 2, 2, 2));
    EXPECT_TRUE(image.OnBorder(Size(0, 2, 2), 1));
    EXPECT_FALSE(image.OnBorder(Size(2, 2, 2), 1));
    EXPECT_TRUE(image.OnSequenceBorder(0));
    EXPECT_FALSE(image.OnSequenceBorder(1));
    EXPECT_TRUE(image.OnSequenceBorder(2));
}

TEST(Container, OfOneFrameIsOnTheSequenceBorderButItsMiddleVoxelOnNone) {
    Image4d<int> image;
    image.MakeRoom(3, 3, 3, 1);
    EXPECT_TRUE(image.OnSequenceBorder(0));
    EXPECT_FALSE(image.OnBorder(1, 1, 1, 0));
    image.MakeRoom(1, 1, 1, 1);
    EXPECT_FALSE(image.OnBorder(0, 0, 0, 0));
}

TEST(Container, NamesItsFrames) {
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 2);
    image.SetImageName(1, "second");
    EXPECT_EQ(image.GetImageName(0), noFile);
    EXPECT_EQ(image.GetImageName(1), "second");
    EXPECT_EQ(image.GetImageNames().size(), 2U);
    EXPECT_EQ(image.GetImageNames()[1], "second");
}

TEST(Container, IsAddressedThroughTheFrames) {
    Image4d<int> image;
    image.MakeRoom(2, 1, 1, 2);
    EXPECT_EQ(image.GetImage(1), image.GetVoxelData()[1]);
    EXPECT_EQ(image[1], image.GetVoxelData()[1]);
    *image.GetVoxelAddr(1, 0, 0, 1) = 11;
    EXPECT_EQ(image[1]->GetVoxel(1), 11);
    image.GetVoxelData(1)[0] = 12;
    EXPECT_EQ(*image.GetFirstVoxelAddr(1), 12);
    *image.GetVoxelAddr(0, 1) = 13;
    EXPECT_EQ(image.GetVoxel(0, 1), 13);
    EXPECT_TRUE((std::is_same_v<decltype(std::as_const(image)[0]), const kep::Image3d<int>*>));
}

// --- TestConsistency ---

TEST(Consistency, CountsFramesAndNames) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 2);
    auto& frames = image.GetVoxelData();
    std::unique_ptr<kep::Image3d<int>> taken(frames.back());
    frames.pop_back();
    EXPECT_EQ(image.TestConsistency(), 1);
    frames.push_back(taken.release());
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(Consistency, ComparesSizesExactly) {
    const std::vector<Size> sizes = {{3, 2, 2}, {2, 3, 2}, {2, 2, 3}};
    for (const Size& size : sizes) {
        Image4d<int> image;
        image.MakeRoom(2, 2, 2, 2);
        image[1]->MakeRoom(size.x, size.y, size.z);
        EXPECT_EQ(image.TestConsistency(), 2);
    }
}

TEST(Consistency, ComparesOffsetsExactlyAndANaNNever) {
    const float next = std::nextafter(1.0F, 2.0F);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<Vector3d<float>> offsets = {{next, 1, 1}, {1, next, 1}, {1, 1, next}, {nan, 1, 1}};
    for (const auto& offset : offsets) {
        Image4d<int> image;
        image.MakeRoom(2, 2, 2, 2);
        image.SetOffset({1, 1, 1});
        EXPECT_EQ(image.TestConsistency(), 0);
        image[1]->SetOffset(offset);
        EXPECT_EQ(image.TestConsistency(), 3);
    }
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 1);
    image.SetOffset({nan, 0, 0}); // in the container and the frame
    EXPECT_EQ(image.TestConsistency(), 3);
}

TEST(Consistency, ComparesResolutionsExactly) {
    const std::vector<Resolution> resolutions = {{2, 1, 1}, {1, 2, 1}, {1, 1, 2}};
    for (const auto& resolution : resolutions) {
        Image4d<int> image;
        image.MakeRoom(2, 2, 2, 2);
        image.SetResolution({1, 1, 1});
        image[1]->SetResolution(resolution);
        EXPECT_EQ(image.TestConsistency(), 4);
    }
}

TEST(Consistency, GoesFrameByFrame) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 3);
    image[2]->MakeRoom(1, 1, 1);
    image[1]->SetOffset({5, 5, 5});
    EXPECT_EQ(image.TestConsistency(), 3); // the offset of frame 1 comes before the size of frame 2
    image[1]->SetResolution({9, 9, 9});
    image[1]->MakeRoom(1, 1, 1);
    EXPECT_EQ(image.TestConsistency(), 2); // in one frame the size comes first
}

// --- MakeRoom, DestroyData, DisposeData ---

TEST(Room, KeepsTheFramesThatAreThere) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 2);
    const auto before = image.GetVoxelData();
    image.SetImageName(0, "a file");
    image.GetImage(1)->SetOffset({9, 9, 9});
    image.MakeRoom(3, 2, 1, 4);
    ASSERT_EQ(image.GetNumFrames(), 4U);
    EXPECT_EQ(image.GetImage(0), before[0]);
    EXPECT_EQ(image.GetImage(1), before[1]);
    EXPECT_EQ(image.GetSize(), Size(3, 2, 1));
    EXPECT_EQ(image.GetImageName(0), noFile);
    EXPECT_EQ(image.GetImageName(3), noFile);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(Room, DeletesSurplusFrames) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 4);
    const auto before = image.GetVoxelData();
    image.MakeRoom(2, 2, 2, 1);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetImageNames().size(), 1U);
    EXPECT_EQ(image.GetImage(0), before[0]);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(Room, LeavesTheExtremes) {
    Image4d<int> image;
    image.MakeRoom(1, 1, 1, 1);
    image.SetVoxel(0, 0, 5);
    image.UpdateMinMaxValues();
    image.MakeRoom(2, 2, 2, 2);
    EXPECT_EQ(image.GetCachedMinValue(), 5);
    EXPECT_EQ(image.GetCachedMaxValue(), 5);
}

TEST(Room, WithoutFramesGivesAGeometryToInsertInto) {
    Image4d<int> image;
    image.MakeRoom(2, 1, 1, 0);
    EXPECT_EQ(image.GetSize(), Size(2, 1, 1));
    EXPECT_EQ(image.TestConsistency(), 0);
    kep::Image3d<int> frame;
    frame.MakeRoom(2, 1, 1);
    image.InsertFrame(frame, "first", -1);
    EXPECT_EQ(image.GetNumFrames(), 1U);
}

TEST(Room, ForTooManyVoxelsIsRefusedBeforeAnythingChanges) {
    const std::size_t side = std::size_t{1} << 21; // 2^63 voxels
    for (const std::size_t frames : {0U, 1U, 2U}) {
        Image4d<int> image;
        image.MakeRoom(2, 1, 1, frames);
        for (std::size_t t = 0; t < frames; ++t)
            image.SetImageName(t, "kept");
        EXPECT_THROW(image.MakeRoom(side, side, side, 3), kep::LibException);
        EXPECT_EQ(image.GetNumFrames(), frames);
        EXPECT_EQ(image.GetSize(), Size(2, 1, 1));
        EXPECT_EQ(image.TestConsistency(), 0);
        for (std::size_t t = 0; t < frames; ++t)
            EXPECT_EQ(image.GetImageName(t), "kept");
        EXPECT_THROW(image.MakeRoom(side, side, side, 1), kep::LibException);
        EXPECT_EQ(image.GetNumFrames(), frames);
        EXPECT_EQ(image.TestConsistency(), 0);
    }
}

TEST(Room, IsEmptiedByDestroyDataAndCanBeFilledAgain) {
    const Vector3d<float> offset(1, 2, 3);
    const Resolution resolution(4, 5, 6);
    Image4d<int> image(&offset, &resolution, 2);
    image.MakeRoom(2, 2, 2, 2);
    image.GetVoxelData(0) = 7;
    image.GetVoxelData(1) = 9;
    image.UpdateMinMaxValues();
    image.DestroyData();
    EXPECT_EQ(image.GetSize(), Size(0, 0, 0));
    EXPECT_EQ(image.GetNumFrames(), 0U);
    EXPECT_TRUE(image.GetVoxelData().empty());
    EXPECT_TRUE(image.GetImageNames().empty());
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetOffset(), offset);
    EXPECT_EQ(image.GetResolution(), resolution);
    EXPECT_EQ(image.GetTimeStep(), 2.0F);
    EXPECT_EQ(image.GetCachedMinValue(), 7); // the old image's
    EXPECT_EQ(image.GetCachedMaxValue(), 9);
    image.MakeRoom(1, 2, 3, 1);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(Room, KeepsFramesAndNamesWhenDisposed) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 2);
    image.GetVoxelData(0) = 7;
    image.GetVoxelData(1) = 7;
    image.UpdateMinMaxValues();
    image.SetImageName(1, "second");
    image.DisposeData();
    EXPECT_EQ(image.GetSize(), Size(0, 0, 0));
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetImageName(1), "second");
    EXPECT_EQ(image.GetFirstVoxelAddr(1), nullptr);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_TRUE(image.IsEmpty());
    EXPECT_EQ(image.GetCachedMaxValue(), 7);
}

TEST(Room, IsSharedAfterAnAssignment) {
    Image4d<int> image;
    image.MakeRoom(2, 1, 1, 2);
    image.SetTimeStep(3);
    image.SetOffset({1, 2, 3});
    image.SetResolution({4, 5, 6});
    image.SetImageName(0, "first");
    image.UpdateMinMaxValues();
    // Never destroyed, as the two would delete the same frames.
    auto* const other = new Image4d<int>;
    static Image4d<int>* kept; // keeps it reachable for leak checkers
    kept = other;
    *kept = image;
    *kept = image; // the frames overwritten are not deleted
    EXPECT_EQ(kept->TestConsistency(), 0);
    EXPECT_EQ(kept->GetImage(1), image.GetImage(1));
    EXPECT_EQ(kept->GetImageName(0), "first");
    EXPECT_EQ(kept->GetTimeStep(), 3.0F);
    EXPECT_EQ(kept->GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(kept->GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(kept->GetSize(), Size(2, 1, 1));
    EXPECT_EQ(kept->GetExtremes(), image.GetExtremes());
    image.SetVoxel(1, 1, 42);
    EXPECT_EQ(kept->GetVoxel(1, 1), 42);
}

} // namespace
