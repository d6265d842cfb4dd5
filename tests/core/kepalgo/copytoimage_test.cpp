#include "core/kepalgo/kep_copytoimage.h"
#include "tests/core/kepalgo/random_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();

// The rule on one axis, place by place: the voxel of src that a place of dst shows, or -1.
long FindSourceIndex(std::size_t place, float dstOffset, float dstRes, std::size_t dstSize, float srcOffset,
                     float srcRes, std::size_t srcSize) {
    const double srcPerMicron = srcRes;
    const double q = (double{dstOffset} - double{srcOffset}) * srcPerMicron +
                     static_cast<double>(place) * (srcPerMicron / double{dstRes});
    const double larger = std::max(std::abs(double{dstOffset}), std::abs(double{srcOffset}));
    const double e = 1.0 / 128 + 2 * larger * double{std::numeric_limits<float>::epsilon()} * srcPerMicron;
    const double index = std::floor(q + e);
    const double size = static_cast<double>(srcSize);
    if (dstSize == 1 && index == size && q <= size + e)
        return static_cast<long>(srcSize) - 1;
    if (!(index >= 0 && index < size))
        return -1;
    return static_cast<long>(index);
}

// The slow twin: each voxel by itself.
template <typename T>
void CopySlowly(const kep::Image3d<T>& src, kep::Image3d<T>& dst) {
    const kep::Vector3d<float> from = src.resolution.GetUsable().GetRes();
    const kep::Vector3d<float> to = dst.resolution.GetUsable().GetRes();
    for (std::size_t z = 0; z < dst.size.z; ++z) {
        for (std::size_t y = 0; y < dst.size.y; ++y) {
            for (std::size_t x = 0; x < dst.size.x; ++x) {
                const long i = FindSourceIndex(x, dst.offset.x, to.x, dst.size.x, src.offset.x, from.x, src.size.x);
                const long j = FindSourceIndex(y, dst.offset.y, to.y, dst.size.y, src.offset.y, from.y, src.size.y);
                const long k = FindSourceIndex(z, dst.offset.z, to.z, dst.size.z, src.offset.z, from.z, src.size.z);
                const bool inside = i >= 0 && j >= 0 && k >= 0;
                dst.SetVoxel(x, y, z,
                             inside ? src.GetVoxel(static_cast<std::size_t>(i), static_cast<std::size_t>(j),
                                                   static_cast<std::size_t>(k))
                                    : T());
            }
        }
    }
}

kep::Vector3d<float> OnAxis(int axis, float value, float others) {
    return {axis == 0 ? value : others, axis == 1 ? value : others, axis == 2 ? value : others};
}

// A frame that is a line of voxels along one axis.
kep::Image3d<int> MakeLine(int axis, const std::vector<int>& voxels, float offset, float resolution) {
    kep::Image3d<int> line;
    const std::size_t n = voxels.size();
    line.MakeRoom(axis == 0 ? n : 1, axis == 1 ? n : 1, axis == 2 ? n : 1);
    std::copy(voxels.begin(), voxels.end(), line.begin());
    line.SetOffset(OnAxis(axis, offset, 0.0F));
    line.SetResolution(kep::Resolution(OnAxis(axis, resolution, 1.0F)));
    return line;
}

struct LineCase {
    std::string name;
    float dstOffset; // microns; src begins at 0
    float dstRes;    // pixels per micron
    std::vector<int> expected;
    float srcRes = 1.0F;
};

class CopyToImageLine : public testing::TestWithParam<LineCase> {};

TEST_P(CopyToImageLine, ShowsTheVoxelAtEachPlaceOnEveryAxis) {
    const LineCase& given = GetParam();
    for (int axis = 0; axis < 3; ++axis) {
        const auto src = MakeLine(axis, {10, 20, 30}, 0.0F, given.srcRes);
        auto dst = MakeLine(axis, std::vector<int>(given.expected.size(), 77), given.dstOffset, given.dstRes);
        kep::CopyToImage(src, dst);
        EXPECT_EQ(std::vector<int>(dst.begin(), dst.end()), given.expected) << "axis " << axis;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Places, CopyToImageLine,
    testing::Values(
        LineCase{"OneToOne", 0.0F, 1.0F, {10, 20, 30}},
        // Positions -2, -1, 0, 1, 2, 3, 4.
        LineCase{"AroundIt", -2.0F, 1.0F, {0, 0, 10, 20, 30, 0, 0}},
        // Positions -1.5, -0.5, 0.5, 1.5, 2.5: the lower ones of -2, -1, 0, 1, 2.
        LineCase{"BetweenVoxels", -1.5F, 1.0F, {0, 0, 10, 20, 30}},
        // Positions 0, 0.5, 1, ... 3.
        LineCase{"TwiceAsLarge", 0.0F, 2.0F, {10, 10, 20, 20, 30, 30, 0}},
        // Positions 0, 2, 4: what lies between is left out, and the offset corner counts.
        LineCase{"HalfAsLarge", 0.0F, 0.5F, {10, 30, 0}}, LineCase{"HalfAsLargeFromOne", 1.0F, 0.5F, {20, 0}},
        // Positions -0.005 and 0.995 lie within 1/128 = 0.0078 of the faces above them; -0.01 and 0.99 don't.
        LineCase{"JustBelowTheFaces", -0.005F, 1.0F, {10, 20, 30, 0}},
        LineCase{"BelowTheFaces", -0.01F, 1.0F, {0, 10, 20, 30}},
        // One place: a cut. Voxels of 0.5 micron, the far face at 1.5: voxel 3 + (0, 0.006, 0.01).
        LineCase{"CutInTheMiddle", 0.75F, 1.0F, {20}, 2.0F}, LineCase{"CutOnTheNearFace", 0.0F, 1.0F, {10}, 2.0F},
        LineCase{"CutOnTheFarFace", 1.5F, 1.0F, {30}, 2.0F},
        LineCase{"CutJustBehindTheFarFace", 1.503F, 1.0F, {30}, 2.0F},
        LineCase{"CutBehindTheFarFace", 1.505F, 1.0F, {0}, 2.0F},
        LineCase{"CutBeforeTheNearFace", -0.005F, 1.0F, {0}, 2.0F},
        // Two places, positions 1 and 1.5: the far face belongs to no voxel.
        LineCase{"FarFaceOfAnAxisOfTwo", 1.0F, 2.0F, {30, 0}, 2.0F},
        // Usable resolutions: the others' 1 takes the place of what is missing.
        LineCase{"SourceUndefined", 0.0F, 2.0F, {10, 10, 20, 20, 30, 30}, 0.0F},
        LineCase{"SourceInfinite", 0.0F, 1.0F, {10, 20, 30}, inf},
        LineCase{"TargetUndefined", 0.0F, 0.0F, {10, 30, 0}, 2.0F},
        LineCase{"TargetNegative", 0.0F, -3.0F, {10, 20, 30}}, LineCase{"OffsetNotANumber", nan, 1.0F, {0, 0, 0}},
        LineCase{"OffsetInfinite", -inf, 1.0F, {0, 0, 0}}),
    [](const auto& test) { return test.param.name; });

TEST(CopyToImage, FindsAFlatSourceAtOffsetZero) {
    // An XZ projection: offset 0 on y, whatever the frame had; the window asks for it there, zoomed out.
    kep::Image3d<unsigned char> src;
    src.MakeRoom(4, 1, 2);
    std::iota(src.begin(), src.end(), static_cast<unsigned char>(1)); // 1 2 3 4 / 5 6 7 8
    src.SetOffset({100.0F, 0.0F, 50.0F});
    src.SetResolution({4.0F, 4.0F, 1.0F});
    kep::Image3d<unsigned char> dst;
    dst.MakeRoom(2, 1, 2);
    dst.SetOffset({100.0F, 0.0F, 50.0F});
    dst.SetResolution({2.0F, 2.0F, 1.0F});
    kep::CopyToImage(src, dst);
    EXPECT_THAT(std::vector<int>(dst.begin(), dst.end()), testing::ElementsAre(1, 3, 5, 7));
}

TEST(CopyToImage, GivesZeroVoxelsForAnEmptySource) {
    const kep::Image3d<std::complex<float>> src;
    kep::Image3d<std::complex<float>> dst;
    dst.MakeRoom(3, 1, 1);
    dst.Fill({1.0F, 2.0F});
    kep::CopyToImage(src, dst);
    for (const auto& voxel : dst)
        EXPECT_EQ(voxel, std::complex<float>());
}

TEST(CopyToImage, LeavesAnEmptyTargetEmpty) {
    const auto src = MakeLine(0, {1, 2, 3}, 0.0F, 1.0F);
    kep::Image3d<int> dst;
    kep::CopyToImage(src, dst);
    EXPECT_TRUE(dst.IsEmpty());
}

TEST(CopyToImage, KeepsTheGeometryOfTheTarget) {
    const auto src = MakeLine(0, {1, 2, 3}, 0.0F, 1.0F);
    auto dst = MakeLine(0, {7, 7}, 1.0F, 0.5F);
    dst.SetDescription({{"key", "value"}});
    kep::CopyToImage(src, dst);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(1.0F, 0.0F, 0.0F));
    EXPECT_EQ(dst.resolution, kep::Resolution(0.5F, 1.0F, 1.0F));
    EXPECT_EQ(dst.size, kep::Vector3d<std::size_t>(2, 1, 1));
    EXPECT_EQ(dst.description.at("key"), "value");
}

// Random geometry of a view of a frame: what the canvas does for a zoom, with the rounding that it has.
struct RandomAxis {
    float srcOffset;
    float srcRes;
    std::size_t srcSize;
    float dstOffset;
    float dstRes;
    std::size_t dstSize;
    long start; // the voxel of src at dst's first place, outside src perhaps
    long zoom;  // places a voxel, or voxels a place
    bool zoomedIn;
    long GetVoxel(std::size_t place) const {
        const long i = static_cast<long>(place);
        return zoomedIn ? start + i / zoom : start + i * zoom;
    }
};

RandomAxis MakeRandomAxis(std::mt19937& random) {
    // 40 nm to 20 microns a voxel, and stages that travel 25 mm each way. There a float's step is 1/512 micron, so a
    // place a fifth of a voxel below a face, the closest at zoom 5, still lies on its side of the tolerance.
    std::uniform_real_distribution<float> logOfRes(std::log(0.05F), std::log(25.0F));
    std::uniform_real_distribution<float> stage(-25000.0F, 25000.0F);
    RandomAxis axis{};
    axis.srcRes = std::exp(logOfRes(random));
    axis.srcOffset = random() % 4 == 0 ? 0.0F : stage(random);
    axis.srcSize = 1 + random() % 60;
    axis.zoom = 1 + static_cast<long>(random() % 5);
    axis.zoomedIn = random() % 2 == 0;
    axis.dstRes =
        axis.zoomedIn ? axis.srcRes * static_cast<float>(axis.zoom) : axis.srcRes / static_cast<float>(axis.zoom);
    axis.dstSize = 2 + random() % 100;
    axis.start = static_cast<long>(random() % (axis.srcSize + 20)) - 10;
    axis.dstOffset = axis.srcOffset + static_cast<float>(axis.start) / axis.srcRes;
    return axis;
}

TEST(CopyToImage, EveryPixelShowsTheVoxelThatMicronsToVoxelNames) {
    std::mt19937 random(31415);
    for (int trial = 0; trial < 20000; ++trial) {
        const int axis = trial % 3;
        const RandomAxis given = MakeRandomAxis(random);
        std::vector<int> numbers(given.srcSize);
        std::iota(numbers.begin(), numbers.end(), 1); // each voxel holds its number and 1
        const auto src = MakeLine(axis, numbers, given.srcOffset, given.srcRes);
        auto dst = MakeLine(axis, std::vector<int>(given.dstSize, -1), given.dstOffset, given.dstRes);
        kep::CopyToImage(src, dst);
        for (std::size_t i = 0; i < given.dstSize; ++i) {
            const long expected = given.GetVoxel(i);
            const bool inside = expected >= 0 && expected < static_cast<long>(given.srcSize);
            const float position = given.dstOffset + static_cast<float>(i) / given.dstRes;
            const auto named = kep::MicronsToVoxel(OnAxis(axis, position, 0.0F), src.offset, src.resolution);
            const int onAxis = axis == 0 ? named.x : axis == 1 ? named.y : named.z;
            ASSERT_EQ(dst.GetVoxel(i), inside ? expected + 1 : 0)
                << "trial " << trial << ", place " << i << ", offset " << given.srcOffset << ", resolution "
                << given.srcRes << ", zoom " << given.zoom << (given.zoomedIn ? " in" : " out");
            ASSERT_EQ(onAxis, expected) << "trial " << trial << ", place " << i << ", offset " << given.srcOffset
                                        << ", resolution " << given.srcRes << ", zoom " << given.zoom
                                        << (given.zoomedIn ? " in" : " out");
        }
    }
}

TEST(CopyToImage, AColumnOfALargeFrameIsGatheredInThreads) {
    std::mt19937 random(31);
    kep::Image3d<unsigned short> src;
    src.MakeRoom(3, 400, 300); // 120,000 voxels of each column
    for (unsigned short& voxel : src)
        voxel = static_cast<unsigned short>(random());
    for (const float zoom : {1.0F, 2.0F, 2.5F}) {
        const kep::Resolution scale(1.0F, zoom, zoom);
        kep::Image3d<unsigned short> dst(nullptr, &scale);
        const auto places = [zoom](int voxels) { return static_cast<std::size_t>(zoom * static_cast<float>(voxels)); };
        dst.MakeRoom(1, places(400), places(300) + 3); // three slices behind the frame
        dst.SetOffset({1.0F, 0.0F, 0.0F});
        src.resolution = kep::Resolution(1.0F, 1.0F, 1.0F);
        std::fill(dst.begin(), dst.end(), static_cast<unsigned short>(7));
        kep::CopyToImage(src, dst);
        for (std::size_t z = 0; z < dst.size.z; ++z)
            for (std::size_t y = 0; y < dst.size.y; ++y) {
                const auto place = [zoom](std::size_t at) {
                    return static_cast<std::size_t>(static_cast<float>(at) / zoom);
                };
                const unsigned short wanted = place(z) < 300 ? *src.GetVoxelAddr(1, place(y), place(z)) : 0;
                ASSERT_EQ(wanted, *dst.GetVoxelAddr(0, y, z)) << zoom << " " << y << " " << z;
            }
    }
}

TEST(CopyToImage, OneToOneIsTheIdentityInThreeDimensions) {
    std::mt19937 random(27182);
    std::uniform_real_distribution<float> stage(-25000.0F, 25000.0F);
    std::uniform_real_distribution<float> res(0.05F, 25.0F);
    for (int trial = 0; trial < 200; ++trial) {
        kep::Image3d<unsigned short> src;
        src.MakeRoom(1 + random() % 30, 1 + random() % 30, 1 + random() % 10);
        FillAtRandom(src, random);
        src.SetOffset({stage(random), stage(random), stage(random)});
        src.SetResolution({res(random), res(random), res(random)});
        kep::Image3d<unsigned short> dst(&src.offset, &src.resolution);
        dst.MakeRoom(src.size.x, src.size.y, src.size.z);
        kep::CopyToImage(src, dst);
        ASSERT_TRUE(std::equal(src.begin(), src.end(), dst.begin())) << "trial " << trial;
    }
}

template <typename T>
class CopyToImageTwins : public testing::Test {};
using DisplayTypes = testing::Types<unsigned char, unsigned short, int, float, kep::RGB_generic<unsigned char>,
                                    kep::RGB_generic<unsigned short>, std::complex<float>>;
TYPED_TEST_SUITE(CopyToImageTwins, DisplayTypes);

// Now and then a flat axis, and a component of a resolution that can't be used.
std::size_t MakeExtent(std::mt19937& random, std::size_t most) {
    return random() % 4 == 0 ? 1 : 1 + random() % most;
}
float MakeResolution(std::mt19937& random) {
    constexpr float odd[] = {0.0F, -1.0F, nan, inf};
    if (random() % 12 == 0)
        return odd[random() % std::size(odd)];
    return 0.25F + static_cast<float>(random() % 1000) / 250.0F;
}
float MakeOffset(std::mt19937& random, float microns) {
    return (static_cast<float>(random() % 1000) / 1000.0F - 0.5F) * microns;
}

// The fast and the slow copy of the same view. Gives back how many voxels are not just the value for outside.
template <typename T>
std::size_t ExpectTwinsAgree(const kep::Image3d<T>& src, kep::Image3d<T>& dst, std::mt19937& random) {
    FillAtRandom(dst, random); // nothing of this may stay
    kep::Image3d<T> expected(dst);
    kep::CopyToImage(src, dst);
    CopySlowly(src, expected);
    std::size_t shown = 0;
    for (std::size_t i = 0; i < expected.GetNumVoxels(); ++i) {
        if (!IsSame(dst.GetVoxel(i), expected.GetVoxel(i))) {
            ADD_FAILURE() << "voxel " << i << ": " << dst.GetVoxel(i) << " instead of " << expected.GetVoxel(i);
            break;
        }
        if (!IsSame(expected.GetVoxel(i), T()))
            ++shown;
    }
    return shown;
}

TYPED_TEST(CopyToImageTwins, AgreeOnRandomGeometry) {
    std::mt19937 random(1618);
    std::size_t shown = 0;
    for (int trial = 0; trial < 3000; ++trial) {
        kep::Image3d<TypeParam> src;
        src.MakeRoom(MakeExtent(random, 40), MakeExtent(random, 40), MakeExtent(random, 12));
        FillAtRandom(src, random);
        src.SetResolution({MakeResolution(random), MakeResolution(random), MakeResolution(random)});
        src.SetOffset({MakeOffset(random, 4.0F), MakeOffset(random, 4.0F), MakeOffset(random, 1.0F)});
        kep::Image3d<TypeParam> dst;
        dst.MakeRoom(MakeExtent(random, 50), MakeExtent(random, 50), MakeExtent(random, 12));
        dst.SetResolution({MakeResolution(random), MakeResolution(random), MakeResolution(random)});
        dst.SetOffset({MakeOffset(random, 6.0F), MakeOffset(random, 6.0F), MakeOffset(random, 2.0F)});
        shown += ExpectTwinsAgree(src, dst, random);
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
    }
    EXPECT_GT(shown, 100000U); // not all of it lies outside
}

// What the canvas asks for: whole zooms, and places that begin anywhere in a voxel. Most of the ways to copy a line
// are for these.
TYPED_TEST(CopyToImageTwins, AgreeOnZoomedViews) {
    std::mt19937 random(57721);
    std::size_t shown = 0;
    for (int trial = 0; trial < 2000; ++trial) {
        kep::Image3d<TypeParam> src;
        src.MakeRoom(MakeExtent(random, 70), MakeExtent(random, 70), MakeExtent(random, 6));
        FillAtRandom(src, random);
        src.SetResolution({1.7F, 1.7F, 0.43F});
        src.SetOffset({MakeOffset(random, 4.0F), MakeOffset(random, 4.0F), MakeOffset(random, 1.0F)});
        const auto zoom = static_cast<float>(1 + random() % 20);
        const float scale = random() % 3 == 0 ? 1.7F / zoom : 1.7F * zoom;
        kep::Image3d<TypeParam> dst;
        dst.MakeRoom(MakeExtent(random, 200), MakeExtent(random, 80), MakeExtent(random, 6));
        dst.SetResolution({scale, scale, random() % 2 == 0 ? scale : 0.43F});
        dst.SetOffset({src.offset.x + MakeOffset(random, 8.0F), src.offset.y + MakeOffset(random, 8.0F),
                       src.offset.z + MakeOffset(random, 2.0F)});
        shown += ExpectTwinsAgree(src, dst, random);
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
    }
    EXPECT_GT(shown, 100000U);
}

} // namespace
