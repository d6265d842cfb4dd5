#include "core/kepalgo/kep_projection.h"
#include "tests/core/kepalgo/random_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();

template <typename T>
kep::Image3d<T> MakeFrame(std::size_t x, std::size_t y, std::size_t z, const std::vector<T>& voxels) {
    kep::Image3d<T> frame;
    frame.MakeRoom(x, y, z);
    std::copy(voxels.begin(), voxels.end(), frame.begin());
    return frame;
}

template <typename T>
std::vector<T> GetVoxels(const kep::Image3d<T>& frame) {
    return {frame.begin(), frame.end()};
}

// The rule of the projections, number by number.
template <typename C>
void Take(C& largest, const C& next) {
    if (next > largest || largest != largest)
        largest = next;
}
template <typename C>
void Take(kep::RGB_generic<C>& largest, const kep::RGB_generic<C>& next) {
    Take(largest.red, next.red);
    Take(largest.green, next.green);
    Take(largest.blue, next.blue);
}

enum class Collapsed { X, Y, Z };

// The slow twin: for each voxel of dst, a walk along the collapsed axis.
template <typename T>
kep::Image3d<T> ProjectSlowly(const kep::Image3d<T>& src, Collapsed axis) {
    kep::Image3d<T> dst;
    dst.MakeRoom(axis == Collapsed::X ? 1 : src.size.x, axis == Collapsed::Y ? 1 : src.size.y,
                 axis == Collapsed::Z ? 1 : src.size.z);
    for (std::size_t z = 0; z < dst.size.z; ++z) {
        for (std::size_t y = 0; y < dst.size.y; ++y) {
            for (std::size_t x = 0; x < dst.size.x; ++x) {
                T largest = src.GetVoxel(x, y, z);
                if (axis == Collapsed::X)
                    for (std::size_t i = 1; i < src.size.x; ++i)
                        Take(largest, src.GetVoxel(i, y, z));
                if (axis == Collapsed::Y)
                    for (std::size_t i = 1; i < src.size.y; ++i)
                        Take(largest, src.GetVoxel(x, i, z));
                if (axis == Collapsed::Z)
                    for (std::size_t i = 1; i < src.size.z; ++i)
                        Take(largest, src.GetVoxel(x, y, i));
                dst.SetVoxel(x, y, z, largest);
            }
        }
    }
    return dst;
}

template <typename T>
void ExpectSameVoxels(const kep::Image3d<T>& got, const kep::Image3d<T>& expected, const char* name) {
    ASSERT_EQ(got.size, expected.size) << name;
    for (std::size_t i = 0; i < expected.GetNumVoxels(); ++i)
        ASSERT_TRUE(IsSame(got.GetVoxel(i), expected.GetVoxel(i)))
            << name << " of " << expected.size.x << " x " << expected.size.y << " x " << expected.size.z << ", voxel "
            << i << ": " << got.GetVoxel(i) << " instead of " << expected.GetVoxel(i);
}

template <typename T>
void ExpectTwinsAgree(const kep::Image3d<T>& src) {
    kep::Image3d<T> dst;
    kep::Get_AF_XY(src, dst);
    ExpectSameVoxels(dst, ProjectSlowly(src, Collapsed::Z), "XY");
    kep::Get_AF_XZ(src, dst);
    ExpectSameVoxels(dst, ProjectSlowly(src, Collapsed::Y), "XZ");
    kep::Get_AF_YZ(src, dst);
    ExpectSameVoxels(dst, ProjectSlowly(src, Collapsed::X), "YZ");
}

TEST(Projection, TakesTheLargestAlongTheAxisThatTheNameLeavesOut) {
    // Two slices of two rows of three voxels.
    const auto src = MakeFrame<int>(3, 2, 2, {1, 9, 3, /**/ 4, -5, 6, /*next slice*/ -7, 2, 8, /**/ 5, -5, 0});
    kep::Image3d<int> dst;
    kep::Get_AF_XY(src, dst);
    EXPECT_EQ(dst.size, kep::Vector3d<std::size_t>(3, 2, 1));
    EXPECT_THAT(GetVoxels(dst), testing::ElementsAre(1, 9, 8, 5, -5, 6));
    kep::Get_AF_XZ(src, dst);
    EXPECT_EQ(dst.size, kep::Vector3d<std::size_t>(3, 1, 2));
    EXPECT_THAT(GetVoxels(dst), testing::ElementsAre(4, 9, 6, 5, 2, 8));
    kep::Get_AF_YZ(src, dst);
    EXPECT_EQ(dst.size, kep::Vector3d<std::size_t>(1, 2, 2));
    EXPECT_THAT(GetVoxels(dst), testing::ElementsAre(9, 6, 8, 5));
}

TEST(Projection, ComparesColoursByComponent) {
    using Colour = kep::RGB_generic<unsigned short>;
    const auto src = MakeFrame<Colour>(2, 1, 1, {{1, 60000, 3}, {2, 5, 3}});
    kep::Image3d<Colour> dst;
    kep::Get_AF_YZ(src, dst);
    EXPECT_THAT(GetVoxels(dst), testing::ElementsAre(Colour(2, 60000, 3)));
}

TEST(Projection, TakesResolutionAndOffsetWithZeroOnTheCollapsedAxis) {
    auto src = MakeFrame<unsigned char>(2, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8});
    src.SetOffset({1.5F, -2.5F, 3.5F});
    src.SetResolution({4.0F, 0.0F, 6.0F}); // not defined: carried over as it is
    const kep::Vector3d<float> other(9.0F, 9.0F, 9.0F);
    kep::Image3d<unsigned char> dst(&other);
    kep::Get_AF_XY(src, dst);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(1.5F, -2.5F, 0.0F));
    EXPECT_EQ(dst.resolution, kep::Resolution(4.0F, 0.0F, 6.0F));
    kep::Get_AF_XZ(src, dst);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(1.5F, 0.0F, 3.5F));
    EXPECT_EQ(dst.resolution, kep::Resolution(4.0F, 0.0F, 6.0F));
    kep::Get_AF_YZ(src, dst);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(0.0F, -2.5F, 3.5F));
    EXPECT_EQ(dst.resolution, kep::Resolution(4.0F, 0.0F, 6.0F));
}

TEST(Projection, KeepsNothingOfWhatDstHeldBefore) {
    const auto src = MakeFrame<int>(2, 2, 1, {-4, -3, -2, -1});
    // Of another size, and of the right size already: what stood there is larger than all of src.
    for (const std::size_t width : {7U, 2U}) {
        auto dst = MakeFrame<int>(width, 2, 1, std::vector<int>(width * 2, 100));
        kep::Get_AF_XY(src, dst);
        EXPECT_THAT(GetVoxels(dst), testing::ElementsAre(-4, -3, -2, -1));
    }
}

TEST(Projection, EmptiesDstForAnEmptyFrame) {
    const kep::Image3d<float> src;
    const auto full = MakeFrame<float>(2, 1, 1, {1.0F, 2.0F});
    for (const auto project : {kep::Get_AF_XY<float>, kep::Get_AF_XZ<float>, kep::Get_AF_YZ<float>}) {
        auto dst = full;
        project(src, dst);
        EXPECT_TRUE(dst.IsEmpty());
        EXPECT_EQ(dst.size, kep::Vector3d<std::size_t>());
    }
}

struct FloatLine {
    std::vector<float> line;
    float largest;
};

class ProjectionOfFloats : public testing::TestWithParam<FloatLine> {};

TEST_P(ProjectionOfFloats, FollowsTheRuleOnEveryAxis) {
    // The line alone, and stretched so that it fills several packs: each value repeated 37 times.
    for (const std::size_t repeated : {1U, 37U}) {
        std::vector<float> line;
        for (const float value : GetParam().line)
            line.insert(line.end(), repeated, value);
        const std::size_t n = line.size();
        kep::Image3d<float> dst;
        kep::Get_AF_XY(MakeFrame<float>(1, 1, n, line), dst);
        EXPECT_TRUE(IsSame(dst.GetVoxel(0), GetParam().largest)) << "XY " << dst.GetVoxel(0);
        kep::Get_AF_XZ(MakeFrame<float>(1, n, 1, line), dst);
        EXPECT_TRUE(IsSame(dst.GetVoxel(0), GetParam().largest)) << "XZ " << dst.GetVoxel(0);
        kep::Get_AF_YZ(MakeFrame<float>(n, 1, 1, line), dst);
        EXPECT_TRUE(IsSame(dst.GetVoxel(0), GetParam().largest)) << "YZ " << dst.GetVoxel(0);
    }
}

INSTANTIATE_TEST_SUITE_P(Rules, ProjectionOfFloats,
                         testing::Values(FloatLine{{nan, 1.0F, 2.0F}, 2.0F},          // first is no number
                                         FloatLine{{1.0F, nan, -2.0F}, 1.0F},         // one between
                                         FloatLine{{-3.0F, -2.0F, nan}, -2.0F},       // last
                                         FloatLine{{nan, nan, nan}, nan},             // none is a number
                                         FloatLine{{nan, -inf, nan}, -inf},           // the least number still wins
                                         FloatLine{{-inf, nan}, -inf},                //
                                         FloatLine{{-inf, -inf}, -inf},               //
                                         FloatLine{{nan, inf, 5.0F}, inf},            //
                                         FloatLine{{0.0F, -0.0F}, 0.0F},              // equal: the first one stays
                                         FloatLine{{-0.0F, 0.0F}, -0.0F},             //
                                         FloatLine{{nan, -1.0F, -0.0F, 0.0F}, -0.0F}, //
                                         FloatLine{{-1.0F, 0.0F, nan, -0.0F}, 0.0F}));

template <typename T>
class ProjectionTwins : public testing::Test {};
using ProjectedTypes = testing::Types<unsigned char, unsigned short, int, float, kep::RGB_generic<unsigned char>,
                                      kep::RGB_generic<unsigned short>>;
TYPED_TEST_SUITE(ProjectionTwins, ProjectedTypes);

TYPED_TEST(ProjectionTwins, AgreeOnRandomFrames) {
    std::mt19937 random(20240517);
    // Around the widths of packs and blocks, and lines in every direction.
    const kep::Vector3d<std::size_t> sizes[] = {{1, 1, 1},   {1, 1, 9},   {1, 9, 1},   {9, 1, 1},  {1, 70, 3},
                                                {70, 1, 5},  {15, 6, 4},  {16, 7, 5},  {17, 8, 6}, {63, 5, 9},
                                                {64, 9, 13}, {65, 11, 7}, {129, 3, 8}, {3, 65, 66}};
    for (const auto& size : sizes) {
        kep::Image3d<TypeParam> src;
        src.MakeRoom(size.x, size.y, size.z);
        FillAtRandom(src, random);
        ExpectTwinsAgree(src);
    }
    for (int trial = 0; trial < 200; ++trial) {
        kep::Image3d<TypeParam> src;
        src.MakeRoom(1 + random() % 80, 1 + random() % 12, 1 + random() % 12);
        FillAtRandom(src, random);
        ExpectTwinsAgree(src);
    }
}

TEST(Projection, OfFloatsAgreesWhereMostVoxelsAreNoNumbers) {
    std::mt19937 random(7);
    for (int trial = 0; trial < 200; ++trial) {
        kep::Image3d<float> src;
        src.MakeRoom(1 + random() % 80, 1 + random() % 9, 1 + random() % 9);
        FillAtRandom(src, random);
        for (float& voxel : src)
            if (random() % 8 != 0)
                voxel = nan;
        ExpectTwinsAgree(src);
    }
}

} // namespace
