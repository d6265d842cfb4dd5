#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using kep::Image3d;
using kep::Resolution;
using kep::Vector3d;

/// Each voxel names its own place: x + 10 y + 100 z.
Image3d<int> MakeNumbered(std::size_t x, std::size_t y, std::size_t z) {
    Image3d<int> frame;
    frame.MakeRoom(x, y, z);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const Vector3d<std::size_t> p = frame.GetPos(i);
        frame.SetVoxel(i, static_cast<int>(p.x + 10 * p.y + 100 * p.z));
    }
    return frame;
}

template <typename T>
class AnyFrame : public testing::Test {};

using FrameTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                  kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                  std::complex<float>, std::complex<double>, bool>;
TYPED_TEST_SUITE(AnyFrame, FrameTypes, );

TYPED_TEST(AnyFrame, IsEmptyAtFirst) {
    Image3d<TypeParam> frame;
    const auto& constant = frame;
    EXPECT_TRUE(frame.IsEmpty());
    EXPECT_EQ(frame.GetSize(), Vector3d<std::size_t>());
    EXPECT_EQ(frame.GetOffset(), Vector3d<float>());
    EXPECT_EQ(frame.GetResolution(), Resolution());
    EXPECT_EQ(frame.GetFirstVoxelAddr(), nullptr);
    EXPECT_EQ(frame.begin(), nullptr);
    EXPECT_EQ(constant.end(), nullptr);
    frame.Fill(TypeParam());
    frame.DisposeData();
    EXPECT_TRUE(Image3d<TypeParam>(frame).IsEmpty());
}

TYPED_TEST(AnyFrame, IsLeftEmptyAndOfUseWhenItIsMovedFrom) {
    using Frame = Image3d<TypeParam>;
    static_assert(std::is_nothrow_move_constructible_v<Frame> && std::is_nothrow_move_assignable_v<Frame>);
    const Vector3d<float> offset(1.0F, 2.0F, 3.0F);
    const Resolution resolution(4.0F, 5.0F, 6.0F);
    Frame frame(&offset, &resolution);
    frame.MakeRoom(3, 2, 1);
    frame.SetDescription({{"a", "b"}});
    const TypeParam* const block = frame.begin();
    const auto expectWhole = [&](const Frame& whole) {
        EXPECT_EQ(whole.begin(), block) << "no voxel was copied";
        EXPECT_EQ(whole.GetSize(), Vector3d<std::size_t>(3, 2, 1));
        EXPECT_EQ(whole.GetOffset(), offset);
        EXPECT_EQ(whole.GetResolution(), resolution);
        EXPECT_EQ(whole.GetDescription().size(), 1U);
    };
    const auto expectEmpty = [](const Frame& empty) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(empty.GetSize(), Vector3d<std::size_t>());
        EXPECT_EQ(empty.GetOffset(), Vector3d<float>());
        EXPECT_EQ(empty.GetResolution(), Resolution());
        EXPECT_TRUE(empty.GetDescription().empty());
        EXPECT_EQ(empty.begin(), nullptr);
        EXPECT_EQ(empty.end(), nullptr);
    };
    Frame moved(std::move(frame));
    expectWhole(moved);
    expectEmpty(frame);
    frame.Fill(TypeParam());
    expectEmpty(Frame(frame));
    frame.MakeRoom(1, 1, 2);
    EXPECT_EQ(frame.GetNumVoxels(), 2U);

    frame = std::move(moved);
    expectWhole(frame);
    expectEmpty(moved);
    auto& self = frame;
    frame = std::move(self);
    expectWhole(frame);
    frame = Frame();
    expectEmpty(frame);
}

TYPED_TEST(AnyFrame, NewRoomIsZeroed) {
    Image3d<TypeParam> frame;
    // 9 MB at least, which comes in a way of its own; filled in between, so that old memory would show.
    for (const std::size_t slices : {3U, 3000U}) {
        frame.MakeRoom(55, 57, slices);
        for (const TypeParam& v : frame)
            ASSERT_EQ(v, TypeParam());
        std::memset(static_cast<void*>(frame.begin()), 1, frame.GetNumVoxels() * sizeof(TypeParam));
        frame.DisposeData();
    }
}

TYPED_TEST(AnyFrame, CopiesAndAssignsDeeply) {
    const Vector3d<float> offset(1.0F, -2.0F, 3.0F);
    const Resolution resolution(4.0F, 5.0F, 6.0F);
    Image3d<TypeParam> frame(&offset, &resolution);
    frame.MakeRoom(3, 2, 1);
    frame.SetDescription({{"author", "somebody"}});
    TypeParam one{};
    std::memset(static_cast<void*>(&one), 1, sizeof(one));
    frame.SetVoxel(2, 1, 0, one);

    const Image3d<TypeParam> copy(frame);
    Image3d<TypeParam> assigned;
    assigned.MakeRoom(1, 1, 1);
    assigned = frame;
    frame.Fill(TypeParam());
    for (const Image3d<TypeParam>* other : {&copy, static_cast<const Image3d<TypeParam>*>(&assigned)}) {
        EXPECT_EQ(other->GetSize(), Vector3d<std::size_t>(3, 2, 1));
        EXPECT_EQ(other->GetVoxel(5), one);
        EXPECT_EQ(other->GetVoxel(4), TypeParam());
        EXPECT_EQ(other->GetOffset(), offset);
        EXPECT_EQ(other->GetResolution(), resolution);
        EXPECT_EQ(other->GetDescription().at("author"), "somebody");
    }
}

TEST(Frame, DeletesThroughItsBase) {
    struct Derived : Image3d<int> {
        explicit Derived(bool& flag) : gone(flag) {}
        ~Derived() override { gone = true; }
        Derived(const Derived&) = delete;
        Derived& operator=(const Derived&) = delete;
        bool& gone;
    };
    bool gone = false;
    { const std::unique_ptr<Image3d<int>> frame = std::make_unique<Derived>(gone); }
    EXPECT_TRUE(gone);
}

TEST(Frame, RunsThroughXThenYThenZ) {
    const Image3d<int> frame = MakeNumbered(5, 4, 3);
    EXPECT_EQ(frame.GetIndex(1, 2, 1), 31U); // (4 * 1 + 2) * 5 + 1
    EXPECT_EQ(frame.GetPos(31), Vector3d<std::size_t>(1, 2, 1));
    EXPECT_EQ(frame.GetVoxel(1, 2, 1), 121);
    EXPECT_EQ(frame.GetVoxel(Vector3d<std::size_t>(4, 3, 2)), 234);
    EXPECT_EQ(frame.GetVoxelAddr(31), frame.begin() + 31);
    EXPECT_EQ(frame.GetVoxelAddr(1, 2, 1), frame.GetFirstVoxelAddr() + 31);
    EXPECT_EQ(frame.end() - frame.begin(), 60);
}

TEST(Frame, BordersAreTheFacesOfAxesLongerThanOne) {
    Image3d<bool> picture;
    picture.MakeRoom(10, 10, 1);
    EXPECT_FALSE(picture.OnBorder(picture.GetIndex(5, 5, 0)));
    EXPECT_TRUE(picture.OnBorder(picture.GetIndex(0, 5, 0)));
    EXPECT_TRUE(picture.OnBorder(picture.GetIndex(5, 9, 0)));
    Image3d<bool> stack;
    stack.MakeRoom(3, 3, 3);
    EXPECT_FALSE(stack.OnBorder(13)); // (1, 1, 1)
    EXPECT_TRUE(stack.OnBorder(22));  // (1, 1, 2)
    Image3d<bool> point;
    point.MakeRoom(1, 1, 1);
    EXPECT_FALSE(point.OnBorder(0));
}

TEST(Frame, RoomThatCannotBeAddressedIsRefusedAndChangesNothing) {
    Image3d<int> frame = MakeNumbered(2, 2, 2);
    const int* const block = frame.begin();
    constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
    // 2^62 + 1 voxels of 4 bytes are 4 bytes in 64 bits; 2^61 of them are one byte more than a pointer reaches.
    for (const Vector3d<std::size_t>& size :
         {Vector3d<std::size_t>((std::size_t{1} << 62U) + 1, 1, 1), Vector3d<std::size_t>(huge, huge, huge),
          Vector3d<std::size_t>(1U << 31U, 1U << 31U, 4), Vector3d<std::size_t>(std::size_t{1} << 61U, 1, 1)}) {
        try {
            frame.MakeRoom(size.x, size.y, size.z);
            ADD_FAILURE() << "made room for " << size.x;
        } catch (const kep::LibException& refusal) {
            EXPECT_EQ(refusal.GetText(), "MakeRoom(): The image is too large.");
        }
        EXPECT_EQ(frame.GetSize(), Vector3d<std::size_t>(2, 2, 2));
        EXPECT_EQ(frame.begin(), block);
        EXPECT_EQ(frame.GetVoxel(7), 111);
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which ends the process where memory lacks
TEST(Frame, RoomThatCannotBeHadChangesNothing) {
    Image3d<unsigned char> frame;
    frame.MakeRoom(2, 2, 2);
    EXPECT_THROW(frame.MakeRoom(std::size_t{1} << 62U, 1, 1), std::bad_alloc);
    EXPECT_EQ(frame.GetSize(), Vector3d<std::size_t>(2, 2, 2));
    EXPECT_EQ(frame.GetNumVoxels(), 8U);
}
#endif

TEST(Frame, RoomOfTheSameSizeKeepsItsBlock) {
    Image3d<int> frame = MakeNumbered(4, 3, 2);
    const int* const block = frame.begin();
    frame.MakeRoom(4, 3, 2);
    EXPECT_EQ(frame.begin(), block);
    frame.MakeRoom(0, 3, 2);
    EXPECT_TRUE(frame.IsEmpty());
    EXPECT_EQ(frame.GetSize(), Vector3d<std::size_t>(0, 3, 2));
}

TEST(Frame, LettingGoOfVoxelsKeepsTheRest) {
    Image3d<int> frame = MakeNumbered(4, 3, 2);
    frame.SetOffset({1.0F, 2.0F, 3.0F});
    frame.SetResolution(Resolution(2.0F, 2.0F, 1.0F));
    frame.SetDescription({{"a", "b"}});
    frame.DisposeData();
    EXPECT_TRUE(frame.IsEmpty());
    EXPECT_EQ(frame.GetSize(), Vector3d<std::size_t>());
    EXPECT_EQ(frame.GetOffset(), Vector3d<float>(1.0F, 2.0F, 3.0F));
    EXPECT_EQ(frame.GetResolution(), Resolution(2.0F, 2.0F, 1.0F));
    EXPECT_EQ(frame.GetDescription().size(), 1U);
}

TEST(Frame, SwapsEverything) {
    Image3d<int> a = MakeNumbered(4, 3, 2);
    a.SetOffset({1.0F, 2.0F, 3.0F});
    Image3d<int> b;
    b.SetDescription({{"a", "b"}});
    const int* const block = a.begin();
    a.Swap(b);
    EXPECT_TRUE(a.IsEmpty());
    EXPECT_EQ(a.GetDescription().size(), 1U);
    EXPECT_EQ(b.begin(), block);
    EXPECT_EQ(b.GetOffset(), Vector3d<float>(1.0F, 2.0F, 3.0F));
    EXPECT_EQ(b.GetSize(), Vector3d<std::size_t>(4, 3, 2));
}

// Copies of boxes in voxels.

int VoxelOrFill(const Image3d<int>& src, int x, int y, int z, int fill) {
    const auto inside = [](int at, std::size_t extent) { return at >= 0 && static_cast<std::size_t>(at) < extent; };
    if (!inside(x, src.size.x) || !inside(y, src.size.y) || !inside(z, src.size.z))
        return fill;
    return src.GetVoxel(static_cast<std::size_t>(x), static_cast<std::size_t>(y), static_cast<std::size_t>(z));
}

void ExpectIsBoxOf(const Image3d<int>& src, const Image3d<int>::PixelBox& box, const Image3d<int>& copy, int fill) {
    ASSERT_EQ(copy.GetSize(), box.size);
    for (std::size_t i = 0; i < copy.GetNumVoxels(); ++i) {
        const Vector3d<std::size_t> p = copy.GetPos(i);
        ASSERT_EQ(copy.GetVoxel(i),
                  VoxelOrFill(src, box.offset.x + static_cast<int>(p.x), box.offset.y + static_cast<int>(p.y),
                              box.offset.z + static_cast<int>(p.z), fill))
            << i;
    }
}

TEST(FrameBox, CopiesWhatTheBoxHolds) {
    Image3d<int> src = MakeNumbered(7, 5, 4);
    src.SetOffset({10.0F, -20.0F, 0.5F});
    src.SetResolution(Resolution(2.0F, 4.0F, 0.5F));
    src.SetDescription({{"a", "b"}});
    const Image3d<int>::PixelBox box(2, 1, 3, 4, 3, 1);
    const Image3d<int> copy(src, &box);
    ExpectIsBoxOf(src, box, copy, -1);
    EXPECT_EQ(copy.GetVoxel(0, 0, 0), 312);                             // (2, 1, 3)
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(11.0F, -19.75F, 6.5F)); // + 2/2, 1/4, 3/0.5
    EXPECT_EQ(copy.GetResolution(), src.GetResolution());
    EXPECT_EQ(copy.GetDescription(), src.GetDescription());
}

TEST(FrameBox, OffsetIsTheSumInFloat) {
    Image3d<int> src = MakeNumbered(7, 5, 4);
    src.SetOffset({0.1F, 33.3F, -7.7F});
    src.SetResolution(Resolution(1.0F / 0.0645F, 3.3F, 0.7F));
    const Image3d<int>::PixelBox box(3, 2, 1, 1, 1, 1);
    Vector3d<float> expected = src.GetOffset();
    expected += kep::PixelsToMicrons(Vector3d<int>(3, 2, 1), src.GetResolution());
    EXPECT_EQ(Image3d<int>(src, &box).GetOffset(), expected);
}

TEST(FrameBox, OutsideIsFilled) {
    std::mt19937 random(7);
    const auto draw = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    for (int round = 0; round < 500; ++round) {
        const Image3d<int> src =
            MakeNumbered(static_cast<std::size_t>(draw(1, 6)), static_cast<std::size_t>(draw(1, 6)),
                         static_cast<std::size_t>(draw(1, 4)));
        const Image3d<int>::PixelBox box(draw(-8, 8), draw(-8, 8), draw(-8, 8), static_cast<std::size_t>(draw(0, 9)),
                                         static_cast<std::size_t>(draw(0, 9)), static_cast<std::size_t>(draw(0, 9)));
        ExpectIsBoxOf(src, box, Image3d<int>(src, &box), 0);
        Image3d<int> target;
        target.CopyFromVOI(src, box, false, -5);
        ExpectIsBoxOf(src, box, target, -5);
    }
    const Image3d<int> src = MakeNumbered(2, 2, 2);
    const Image3d<int>::PixelBox lowest(std::numeric_limits<int>::min(), 0, 0, 3, 2, 2);
    ExpectIsBoxOf(src, lowest, Image3d<int>(src, &lowest), 0);
}

TEST(FrameBox, KeepsOrTakesTheGeometry) {
    Image3d<int> src = MakeNumbered(7, 5, 4);
    src.SetOffset({10.0F, 0.0F, 0.0F});
    src.SetResolution(Resolution(2.0F, 2.0F, 2.0F));
    Image3d<int> target;
    target.SetOffset({1.0F, 2.0F, 3.0F});
    target.SetResolution(Resolution(9.0F, 9.0F, 9.0F));
    const Image3d<int>::PixelBox box(2, 1, 3, 4, 3, 1);
    target.CopyFromVOI(src, box, true, 0);
    ExpectIsBoxOf(src, box, target, 0);
    EXPECT_EQ(target.GetOffset(), Vector3d<float>(1.0F, 2.0F, 3.0F));
    EXPECT_EQ(target.GetResolution(), Resolution(9.0F, 9.0F, 9.0F));
    target.CopyFromVOI(src, box, false, 0);
    EXPECT_EQ(target.GetOffset(), Vector3d<float>(11.0F, 0.5F, 1.5F));
    EXPECT_EQ(target.GetResolution(), src.GetResolution());
}

TEST(FrameBox, CanBeCutOutOfTheFrameItself) {
    const Image3d<int> src = MakeNumbered(7, 5, 4);
    Image3d<int> frame = src;
    const Image3d<int>::PixelBox box(-1, 1, 3, 4, 3, 2);
    frame.CopyFromVOI(frame, box, false, 9);
    ExpectIsBoxOf(src, box, frame, 9);
}

TEST(FrameBox, OneThatCannotBeAddressedIsRefused) {
    const Image3d<int> src = MakeNumbered(2, 2, 2);
    const Image3d<int>::PixelBox box(0, 0, 0, std::size_t{1} << 31U, std::size_t{1} << 31U, 4);
    EXPECT_THROW(Image3d<int>(src, &box), kep::LibException);
    Image3d<int> target = src;
    EXPECT_THROW(target.CopyFromVOI(src, box, false, 0), kep::LibException);
    EXPECT_EQ(target.GetSize(), Vector3d<std::size_t>(2, 2, 2));
}

// Copies of boxes in microns.

TEST(FrameBoxInMicrons, IsRoundedToVoxels) {
    Image3d<int> src = MakeNumbered(8, 8, 4);
    src.SetOffset({10.0F, 20.0F, -5.0F});
    src.SetResolution(Resolution(2.0F, 4.0F, 0.5F));
    // x: (11.2 - 10) * 2 = 2.4, from 2; 1.8 * 2 = 3.6, 4 voxels. y: (20.4 - 20) * 4 = 1.6, from 2; 0.6 * 4 = 2.4, 2.
    // z: (-2.9 + 5) * 0.5 = 1.05, from 1; 4.4 * 0.5 = 2.2, 2.
    const Image3d<int> copy(src, Image3d<int>::MicronBox(11.2F, 20.4F, -2.9F, 1.8F, 0.6F, 4.4F));
    ExpectIsBoxOf(src, {2, 2, 1, 4, 2, 2}, copy, -1);
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(11.0F, 20.5F, -3.0F)); // 10 + 2/2, 20 + 2/4, -5 + 1/0.5
}

TEST(FrameBoxInMicrons, IsCutToTheFrame) {
    const Image3d<int> src = MakeNumbered(6, 5, 4);
    const Image3d<int> copy(src, Image3d<int>::MicronBox(-2.0F, 3.0F, 0.0F, 4.0F, 1e30F, 4.0F));
    ExpectIsBoxOf(src, {0, 3, 0, 2, 2, 4}, copy, -1); // x from -2 to 1, of which 0 and 1 are there
    EXPECT_EQ(copy.GetOffset(), Vector3d<float>(0.0F, 3.0F, 0.0F));
}

TEST(FrameBoxInMicrons, BesideTheFrameHoldsNothing) {
    const Image3d<int> src = MakeNumbered(6, 5, 4);
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    for (const Image3d<int>::MicronBox& box : {Image3d<int>::MicronBox(6.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1.0F),
                                               Image3d<int>::MicronBox(0.0F, -3.0F, 0.0F, 1.0F, 3.0F, 1.0F),
                                               Image3d<int>::MicronBox(0.0F, 0.0F, 0.0F, 1.0F, 0.2F, 1.0F),
                                               Image3d<int>::MicronBox(0.0F, 0.0F, notANumber, 1.0F, 1.0F, 1.0F),
                                               Image3d<int>::MicronBox(0.0F, 0.0F, 0.0F, 1.0F, 1.0F, -4.0F)}) {
        const Image3d<int> copy(src, box);
        EXPECT_TRUE(copy.IsEmpty());
        EXPECT_EQ(copy.GetSize(), Vector3d<std::size_t>());
    }
}

} // namespace
