#include "image/zel_labeledimage4d.h"
#include "tests/support/text_of.h"

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
using Size = Vector3d<std::size_t>;
using Labels = mor::LabeledImage4d<unsigned short, unsigned char>;
using Box = kep::VOI<kep::T_pair<std::size_t, std::size_t>>;

constexpr const char* noFile = "no file specified";
constexpr const char* wrongTime = "InsertFrame(): Incorrect value of the time parameter.";
constexpr const char* wrongCounts = "InsertFrame(): Image4d metadata is not consistent.";

template <typename V>
class LabelsOfType : public testing::Test {};
using ImageTypes = testing::Types<unsigned char, unsigned short, bool>;
TYPED_TEST_SUITE(LabelsOfType, ImageTypes);

TYPED_TEST(LabelsOfType, AreEmptyAtFirst) {
    const mor::LabeledImage4d<unsigned short, TypeParam> labels;
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_EQ(labels.TestConsistency(), 0);
    EXPECT_EQ(labels.GetSize(), Size(0, 0, 0));
    EXPECT_EQ(labels.GetNumFrames(), 0U);
    EXPECT_EQ(labels.GetOffset(), Vector3d<float>(0, 0, 0));
    EXPECT_EQ(labels.GetResolution(), Resolution(0, 0, 0));
    EXPECT_EQ(labels.GetTimeStep(), 0.0F);
}

TYPED_TEST(LabelsOfType, MakeRoomForFramesAndReachTheirVoxels) {
    const Vector3d<float> offset(1, 2, 3);
    const Resolution resolution(4, 5, 6);
    mor::LabeledImage4d<unsigned short, TypeParam> labels(true, &offset, &resolution, 0.5F);
    labels.MakeRoom(4, 3, 2, 5);
    EXPECT_EQ(labels.TestConsistency(), 0);
    EXPECT_FALSE(labels.IsEmpty());
    EXPECT_EQ(labels.GetTimeStep(), 0.5F);
    EXPECT_EQ(labels.GetVoxelData().size(), 5U);
    EXPECT_EQ(labels.GetVoxelData(4).size(), 24U);
    EXPECT_EQ(labels.GetImage(4)->GetOffset(), offset);
    EXPECT_EQ(labels.GetImage(4)->GetResolution(), resolution);
    EXPECT_EQ(labels.GetImageName(4), noFile);

    const std::size_t index = (3 * 1 + 2) * 4 + 3; // of (3, 2, 1)
    labels.SetVoxel(3, 2, 1, 4, 65535);
    const auto& constant = labels;
    EXPECT_EQ(constant.GetVoxel(3, 2, 1, 4), 65535);
    EXPECT_EQ(constant.GetVoxel(index, 4), 65535);
    EXPECT_EQ(constant.GetVoxel(Size(3, 2, 1), 4), 65535);
    EXPECT_EQ(*constant.GetVoxelAddr(index, 4), 65535);
    EXPECT_EQ(*constant.GetVoxelAddr(3, 2, 1, 4), 65535);
    EXPECT_EQ(labels.GetVoxelAddr(3, 2, 1, 4), constant.GetVoxelAddr(3, 2, 1, 4));
    EXPECT_EQ(labels.GetVoxelAddr(index, 4), constant.GetVoxelAddr(index, 4));
    EXPECT_EQ(constant.GetFirstVoxelAddr(4) + index, constant.GetVoxelAddr(index, 4));
    EXPECT_EQ(labels.GetFirstVoxelAddr(4), constant.GetFirstVoxelAddr(4));
    EXPECT_EQ(constant.GetVoxelData(4)[index], 65535);
    EXPECT_EQ(constant[4], constant.GetImage(4));
    EXPECT_EQ(labels[4], constant.GetVoxelData()[4]);
    EXPECT_EQ(constant.GetVoxel(index, 3), 0);

    labels.SetVoxel(index, 3, 7);
    EXPECT_EQ(constant.GetVoxel(index, 3), 7);
    labels.SetVoxel(Size(3, 2, 1), 3, 8);
    EXPECT_EQ(constant.GetVoxel(index, 3), 8);
    labels.GetVoxelData(3)[0] = 9;
    EXPECT_EQ(constant.GetVoxel(0, 3), 9);
}

TEST(LabelledImage, TellsItsSize) {
    Labels labels;
    labels.MakeRoom({7, 5, 3}, 2);
    EXPECT_EQ(labels.GetSize(), Size(7, 5, 3));
    EXPECT_EQ(labels.GetSizeX(), 7U);
    EXPECT_EQ(labels.GetWidth(), 7U);
    EXPECT_EQ(labels.GetSizeY(), 5U);
    EXPECT_EQ(labels.GetHeight(), 5U);
    EXPECT_EQ(labels.GetSizeZ(), 3U);
    EXPECT_EQ(labels.GetNumSlices(), 3U);
    EXPECT_EQ(labels.GetSizeT(), 2U);
    EXPECT_EQ(labels.GetSliceSize(), 35U);
    EXPECT_EQ(labels.GetFrameSize(), 105U);
    labels.SetTimeStep(2.5F);
    EXPECT_EQ(labels.GetTimeStep(), 2.5F);
}

TEST(LabelledImage, CountsIndexesLikeAnImage) {
    Labels labels;
    labels.MakeRoom(7, 5, 3, 1);
    // (4, 2, 1) is 4 + 2 * 7 + 1 * 35 = 53; 7 * 5 * 3 = 105 lies in the slice behind the last.
    EXPECT_EQ(labels.GetInFrameIndex(4, 2, 1), 53U);
    EXPECT_EQ(labels.GetInFrameIndex({4, 2, 1}), 53U);
    EXPECT_EQ(labels.GetX(53), 4U);
    EXPECT_EQ(labels.GetY(53), 2U);
    EXPECT_EQ(labels.GetZ(53), 1U);
    EXPECT_EQ(labels.GetZ(105), 3U);
    EXPECT_EQ(labels.GetFramePos(53), Size(4, 2, 1));
    EXPECT_EQ(labels.GetInFrameCoords(53), Vector3d<int>(4, 2, 1));
}

TEST(LabelledImage, TellsPlacesLikeAnImage) {
    Labels labels;
    labels.MakeRoom(10, 10, 1, 3);
    EXPECT_TRUE(labels.Include(0, 9, 0));
    EXPECT_FALSE(labels.Include({0, 10, 0}));
    EXPECT_FALSE(labels.Include(0, -1, 0));
    EXPECT_TRUE(labels.Include(0, 0, 0, 1));
    EXPECT_FALSE(labels.Include(0, 0, 0, 2)); // the last frame is outside
    EXPECT_FALSE(labels.Include({0, 0, 0}, -1));
    EXPECT_FALSE(labels.OnFrameBorder(5, 5, 0));
    EXPECT_TRUE(labels.OnFrameBorder({0, 5, 0}));
    EXPECT_FALSE(labels.OnBorder(5, 5, 0, 1));
    EXPECT_TRUE(labels.OnBorder({5, 5, 0}, 2));
    EXPECT_TRUE(labels.OnSequenceBorder(0));
    EXPECT_FALSE(labels.OnSequenceBorder(1));
    EXPECT_TRUE(labels.OnSequenceBorder(2));
}

TEST(LabelledImage, MovesAndScalesEveryFrame) {
    Labels labels;
    labels.MakeRoom(2, 2, 2, 2);
    labels.SetOffset({1, 2, 3});
    labels.SetResolution({4, 5, 6});
    EXPECT_EQ(labels.GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(labels.GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(labels[1]->GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(labels[1]->GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(labels.TestConsistency(), 0);
}

TEST(LabelledImage, ResizesFramesInPlaceAndDropsTheirTables) {
    Labels labels;
    labels.MakeRoom(4, 3, 2, 3);
    const auto* const first = labels[0];
    labels[0]->components[5] = {};
    labels.SetImageName(0, "a.tif");
    labels.MakeRoom(4, 3, 2, 1); // as large as before: nothing moves
    EXPECT_EQ(labels.GetNumFrames(), 1U);
    EXPECT_EQ(labels[0], first);
    EXPECT_EQ(labels[0]->components.size(), 1U);
    EXPECT_EQ(labels.GetImageName(0), noFile);
    labels.MakeRoom(1, 1, 1, 2);
    EXPECT_EQ(labels[0], first);
    EXPECT_EQ(labels[0]->GetNumVoxels(), 1U);
    EXPECT_TRUE(labels[0]->components.empty());
    EXPECT_EQ(labels.TestConsistency(), 0);
}

TEST(LabelledImage, StaysAsItWasWhenAFrameCannotBeMade) {
    Labels labels;
    labels.MakeRoom(2, 2, 1, 1);
    EXPECT_THROW(labels.MakeRoom(std::numeric_limits<std::size_t>::max(), 2, 1, 2), kep::LibException);
    EXPECT_EQ(labels.GetSize(), Size(2, 2, 1));
    EXPECT_EQ(labels.GetNumFrames(), 1U);
    EXPECT_EQ(labels.TestConsistency(), 0);
}

TEST(LabelledImage, LetsGoOfFramesOrOfVoxelsAlone) {
    const Vector3d<float> offset(1, 2, 3);
    Labels labels(false, &offset, nullptr, 0.25F);
    labels.MakeRoom(2, 2, 2, 2);
    labels[0]->components[5] = {};
    labels.SetImageName(1, "b.tif");
    labels.DisposeData();
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_EQ(labels.GetNumFrames(), 2U);
    EXPECT_EQ(labels.GetImageName(1), "b.tif");
    EXPECT_TRUE(labels[0]->components.empty());
    EXPECT_EQ(labels.TestConsistency(), 0);
    labels.DestroyData();
    EXPECT_EQ(labels.GetNumFrames(), 0U);
    EXPECT_TRUE(labels.GetImageNames().empty());
    EXPECT_EQ(labels.GetOffset(), offset);
    EXPECT_EQ(labels.GetTimeStep(), 0.25F);
    EXPECT_EQ(labels.TestConsistency(), 0);
}

TEST(LabelledImage, TellsTheFirstFault) {
    Labels labels;
    labels.MakeRoom(2, 2, 2, 3);
    EXPECT_EQ(labels.TestConsistency(), 0);
    labels[2]->resolution = Resolution(1, 1, 1);
    EXPECT_EQ(labels.TestConsistency(), 4);
    labels[1]->offset.z = std::nanf("");
    EXPECT_EQ(labels.TestConsistency(), 3);
    labels[0]->MakeRoom(2, 1, 4);
    EXPECT_EQ(labels.TestConsistency(), 2);
    auto* const taken = labels.GetVoxelData().back();
    labels.GetVoxelData().pop_back();
    EXPECT_EQ(labels.TestConsistency(), 1);
    labels.GetVoxelData().push_back(taken); // for the destructor
}

TEST(LabelledImage, SharesItsFramesWithCopies) {
    Labels labels(true);
    labels.MakeRoom(2, 1, 1, 1);
    // Only one of the containers that share frames may be destroyed: the others give theirs up by hand.
    alignas(Labels) std::byte copyPlace[sizeof(Labels)];
    alignas(Labels) std::byte assignedPlace[sizeof(Labels)];
    auto* const copy = new (copyPlace) Labels(labels);
    auto* const assigned = new (assignedPlace) Labels;
    *assigned = labels;
    for (Labels* const other : {copy, assigned}) {
        EXPECT_EQ((*other)[0], labels[0]);
        EXPECT_EQ(other->GetSize(), Size(2, 1, 1));
        EXPECT_EQ(other->GetImageName(0), noFile);
        other->SetVoxel(1, 0, 42);
        EXPECT_EQ(labels.GetVoxel(1, 0), 42);
        labels.SetVoxel(1, 0, 0);
        other->GetVoxelData().clear();
        other->~Labels();
    }
}

TEST(LabelledImage, RemovesFrames) {
    Labels labels;
    labels.MakeRoom(2, 1, 1, 3);
    for (std::size_t t = 0; t < 3; ++t)
        labels.SetImageName(t, std::to_string(t));
    for (const int t : {-1, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(TextOf([&] { labels.RemoveFrame(t); }), wrongTime) << t;
    labels.RemoveFrame(1);
    EXPECT_EQ(labels.GetNumFrames(), 2U);
    EXPECT_EQ(labels.GetImageName(0), "0");
    EXPECT_EQ(labels.GetImageName(1), "2");
    EXPECT_EQ(labels.TestConsistency(), 0);
    labels.RemoveFrame(0);
    labels.RemoveFrame(0);
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_EQ(labels.GetSize(), Size(2, 1, 1));
    EXPECT_EQ(TextOf([&] { labels.RemoveFrame(0); }), wrongTime);
    labels.GetVoxelData().push_back(nullptr);
    EXPECT_EQ(TextOf([&] { labels.RemoveFrame(0); }), wrongCounts);
    labels.GetVoxelData().clear();
}

std::unique_ptr<Labels::Frame> FrameOfLabels(const std::vector<unsigned char>& values) {
    kep::Image3d<unsigned char> image;
    image.SetOffset({1, 2, 3});
    image.SetResolution({4, 5, 6});
    image.MakeRoom(values.size(), 1, 1);
    std::copy(values.begin(), values.end(), image.begin());
    auto frame = std::make_unique<Labels::Frame>();
    frame->CreateRegionsOfLabels(image);
    return frame;
}

TEST(LabelledImage, TakesFramesThatWereMadeInMemory) {
    Labels labels;
    labels.SetOffset({1, 2, 3});
    labels.SetResolution({4, 5, 6});
    labels.MakeRoom(3, 1, 1, 0);
    const auto insert = [&labels](const std::vector<unsigned char>& values, const wxString& name, int t) {
        auto frame = FrameOfLabels(values);
        labels.InsertFrame(frame.get(), name, t);
        frame.release(); // the sequence has taken it
    };
    insert({5, 0, 5}, "b", -1);
    insert({7, 0, 0}, "c", -1);
    insert({0, 9, 0}, "a", 0);
    ASSERT_EQ(labels.GetNumFrames(), 3U);
    EXPECT_EQ(labels.TestConsistency(), 0);
    EXPECT_EQ(labels.GetImageName(0), "a");
    EXPECT_EQ(labels.GetImageName(1), "b");
    EXPECT_EQ(labels.GetImageName(2), "c");
    EXPECT_EQ(labels.GetVoxel(1, 0, 0, 0), 9);
    EXPECT_EQ(labels.GetVoxel(2, 0, 0, 1), 5);
    EXPECT_EQ(labels.GetImage(1)->components.at(5).volume, 2U);
}

TEST(LabelledImage, RefusesFramesThatDoNotBelongToIt) {
    Labels labels;
    labels.SetOffset({1, 2, 3});
    labels.SetResolution({4, 5, 6});
    labels.MakeRoom(3, 1, 1, 1);
    const auto fits = FrameOfLabels({1, 2, 3}), tooLong = FrameOfLabels({1, 2, 3, 4}),
               elsewhere = FrameOfLabels({1, 2, 3});
    elsewhere->offset.x = 1.5F;
    const std::string other = "InsertFrame(): Inserted image is not consistent with the sequence!";
    EXPECT_EQ(TextOf([&] { labels.InsertFrame(tooLong.get(), "x", -1); }), other);
    EXPECT_EQ(TextOf([&] { labels.InsertFrame(elsewhere.get(), "x", -1); }), other);
    EXPECT_EQ(TextOf([&] { labels.InsertFrame(nullptr, "x", -1); }), "InsertFrame(): NULL image pointer given.");
    for (const int t : {-2, 1, std::numeric_limits<int>::max()})
        EXPECT_EQ(TextOf([&] { labels.InsertFrame(fits.get(), "x", t); }), wrongTime) << t;
    EXPECT_EQ(labels.GetNumFrames(), 1U);
    EXPECT_EQ(labels.TestConsistency(), 0);
}

/// Reaches the operation that derived containers call.
class OpenLabels : public Labels {
public:
    using Labels::CreateRegions;
    using Labels::LabeledImage4d;
};

TEST(LabelledImage, MakesRegionsByTheWayItWasTold) {
    kep::Image3d<unsigned char> image;
    image.MakeRoom(5, 1, 1);
    image.SetVoxel(0, 7);
    image.SetVoxel(1, 7);
    image.SetVoxel(4, 7);
    image.SetDescription({{"stain", "DAPI"}});
    for (const bool connected : {false, true}) {
        OpenLabels labels(connected);
        const std::unique_ptr<Labels::Frame> frame(labels.CreateRegions(image, kep::nb3D_6));
        EXPECT_EQ(frame->size, image.size);
        EXPECT_EQ(frame->description, image.description);
        EXPECT_EQ(labels.GetNumFrames(), 0U);
        if (connected) {
            ASSERT_EQ(frame->components.size(), 2U);
            EXPECT_EQ(frame->components.at(1), (Labels::Frame::Component(Box({0, 0, 0}, {2, 1, 1}), 2, 7, true)));
            EXPECT_EQ(frame->components.at(2), (Labels::Frame::Component(Box({4, 0, 0}, {1, 1, 1}), 1, 7, true)));
        } else {
            ASSERT_EQ(frame->components.size(), 1U);
            EXPECT_EQ(frame->components.at(7), (Labels::Frame::Component(Box({0, 0, 0}, {5, 1, 1}), 3, 7, true)));
        }
    }
    const kep::Image3d<unsigned char> nothing;
    const std::unique_ptr<Labels::Frame> empty(OpenLabels().CreateRegions(nothing, kep::nb3D_6));
    EXPECT_TRUE(empty->IsEmpty());
}

} // namespace
