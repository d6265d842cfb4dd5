// Sequences put together frame by frame.

#include "image/zel_framereading.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

TEST(AppendFrame, TheFirstFrameGivesTheGeometryAndOthersMustHaveIt) {
    const kep::Resolution resolution(1, 2, 3);
    auto first = std::make_unique<kep::Image3d<unsigned char>>(FrameOf<unsigned char>({1, 9}));
    first->SetResolution(resolution);
    first->SetOffset({4, 5, 6});
    mor::Image4d<unsigned char> image;
    mor::AppendFrame<unsigned char>(image, std::move(first), "a");
    EXPECT_EQ(image.GetSize(), kep::Vector3d<std::size_t>(2, 1, 1));
    EXPECT_EQ(image.GetResolution(), resolution);
    EXPECT_EQ(image.GetOffset(), kep::Vector3d<float>(4, 5, 6));
    EXPECT_EQ(image.GetCachedMaxValue(), 9);
    auto other = std::make_unique<kep::Image3d<unsigned char>>(FrameOf<unsigned char>({1, 9}));
    EXPECT_THROW(mor::AppendFrame<unsigned char>(image, std::move(other), "b"), kep::InternalException);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    auto alike = std::make_unique<kep::Image3d<unsigned char>>(*image[0]);
    mor::AppendFrame<unsigned char>(image, std::move(alike), "c");
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetImageName(1), "c");
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST(ReadFrame, ReadsAsSequencesDo) {
    const ScratchFolder folder;
    const std::string name = Save(FrameOf<unsigned short>({0, 700}), folder / "a.tif");
    kep::FrameReader reader(name.c_str());
    EXPECT_EQ(mor::ReadFrame<unsigned short>(reader, 0, 0, false)->GetVoxel(1), 700);
    const auto mask = mor::ReadFrame<unsigned short>(reader, 0, 0, true);
    EXPECT_EQ(mask->GetVoxel(0), 0);
    EXPECT_EQ(mask->GetVoxel(1), 255);
    EXPECT_THROW(mor::ReadFrame<unsigned char>(reader, 0, 0, false), kep::IOException);
    EXPECT_THROW(mor::ReadFrame<float>(reader, 1, 0, false), kep::IOException);
}

} // namespace
