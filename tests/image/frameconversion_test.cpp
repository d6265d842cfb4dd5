#include "image/sequence/zel_frameconversion.h"

#include <gtest/gtest.h>

#include <complex>
#include <limits>

namespace {

template <typename T>
T SetVoxel() {
    return 255;
}
template <>
kep::RGB_generic<unsigned char> SetVoxel() {
    return {255, 255, 255};
}
template <>
kep::RGB_generic<unsigned short> SetVoxel() {
    return {255, 255, 255};
}
template <>
std::complex<float> SetVoxel() {
    return {255, 0};
}
template <>
std::complex<double> SetVoxel() {
    return {255, 0};
}

template <typename T>
class BinaryToType : public testing::Test {};
using ContainerTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                      kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                      std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(BinaryToType, ContainerTypes);

TYPED_TEST(BinaryToType, Gives255And0WithTheGeometry) {
    kep::Image3d<bool> binary;
    binary.MakeRoom(3, 2, 1);
    binary.SetOffset({1, 2, 3});
    binary.SetResolution({4, 5, 6});
    binary.SetDescription({{"Author", "someone"}});
    binary.SetVoxel(1, true);
    binary.SetVoxel(5, true);
    kep::Image3d<TypeParam> frame;
    frame.SetDescription({{"old", "text"}});
    mor::BinaryFrameToVoxels(binary, frame);
    EXPECT_EQ(frame.GetSize(), kep::Vector3d<std::size_t>(3, 2, 1));
    EXPECT_EQ(frame.GetOffset(), kep::Vector3d<float>(1, 2, 3));
    EXPECT_EQ(frame.GetResolution(), kep::Resolution(4, 5, 6));
    EXPECT_EQ(frame.GetDescription(), binary.GetDescription());
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(frame.GetVoxel(i), i == 1 || i == 5 ? SetVoxel<TypeParam>() : TypeParam()) << i;
}

TYPED_TEST(BinaryToType, OfNoVoxelsGivesNone) {
    kep::Image3d<TypeParam> frame;
    frame.MakeRoom(2, 2, 2);
    mor::BinaryFrameToVoxels(kep::Image3d<bool>(), frame);
    EXPECT_TRUE(frame.IsEmpty());
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

template <typename T>
kep::Image3d<T> FrameOf(const std::vector<T>& voxels) {
    kep::Image3d<T> frame;
    frame.MakeRoom(voxels.size(), 1, 1);
    for (std::size_t i = 0; i < voxels.size(); ++i)
        frame.SetVoxel(i, voxels[i]);
    return frame;
}

TEST(InvalidFloats, BecomeZero) {
    const float largest = std::numeric_limits<float>::max();
    auto frame = FrameOf<float>({1, nan, -infinity, -2, infinity, largest, 1e-45F});
    EXPECT_TRUE(mor::ZeroInvalidFloats(frame));
    const std::vector<float> expected = {1, 0, 0, -2, 0, largest, 1e-45F};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(frame.GetVoxel(i), expected[i]) << i;
    EXPECT_FALSE(mor::ZeroInvalidFloats(frame)); // nothing is left to replace
}

template <typename F>
void TestComplex() {
    using C = std::complex<F>;
    auto frame = FrameOf<C>({C(1, 2), C(nan, 3), C(4, -infinity), C(5, 0), C(infinity, nan)});
    EXPECT_TRUE(mor::ZeroInvalidFloats(frame));
    const std::vector<C> expected = {C(1, 2), C(0, 0), C(0, 0), C(5, 0), C(0, 0)};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(frame.GetVoxel(i), expected[i]) << i;
    EXPECT_FALSE(mor::ZeroInvalidFloats(frame));
}

TEST(InvalidFloats, InOnePartZeroBothPartsOfAComplexVoxel) {
    TestComplex<float>();
    TestComplex<double>();
}

TEST(InvalidFloats, AreNotSpokenOfWhereThereAreNone) {
    auto frame = FrameOf<float>({1, -2});
    mor::ReplaceInvalidFloats(frame); // would end without a display if it showed its box
    EXPECT_EQ(frame.GetVoxel(1), -2);
    auto single = FrameOf<std::complex<float>>({{1, -2}});
    mor::ReplaceInvalidFloats(single);
    EXPECT_EQ(single.GetVoxel(0), std::complex<float>(1, -2));
    auto twice = FrameOf<std::complex<double>>({{1, -2}});
    mor::ReplaceInvalidFloats(twice);
    EXPECT_EQ(twice.GetVoxel(0), std::complex<double>(1, -2));
}

} // namespace
