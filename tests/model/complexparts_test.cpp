#include "model/zel_complexparts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace zel;

namespace {

using Voxel = std::complex<float>;
using Frame = kep::Image3d<Voxel>;

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::vector<float> ValuesOf(ComplexMode mode, const std::vector<Voxel>& voxels) {
    std::vector<float> values(voxels.size(), -99.0F);
    PartOf(mode)(voxels.data(), voxels.size(), values.data());
    return values;
}

/// A frame with an offset and a resolution of its own.
Frame MakeFrame(kep::Vector3d<std::size_t> size, const std::vector<Voxel>& voxels) {
    const kep::Vector3d<float> offset(10, 20, 30);
    const kep::Resolution resolution(1, 2, 4);
    Frame frame(&offset, &resolution);
    frame.MakeRoom(size.x, size.y, size.z);
    std::copy(voxels.begin(), voxels.end(), frame.begin());
    return frame;
}

std::vector<Voxel> Project(zel_ProjectionType type, ComplexMode mode, const Frame& frame) {
    Frame projection;
    ProjectComplex(type, frame, PartOf(mode), projection);
    return {projection.begin(), projection.end()};
}

class PlainMapper : public zel_Mapper<Voxel> {
public:
    void Map(const Voxel*, ColourBuffer&) const override {}
};
class PhaseMapper : public PlainMapper, public zel_ComplexPartShown {
public:
    ComplexMode GetShowMode() const override { return Phase; }
};

} // namespace

TEST(ComplexParts, AreRealImaginaryPhaseAndAmplitude) {
    const std::vector<Voxel> voxels{{3, 4}, {-1, 0}, {0, -2}, {0, 0}};
    EXPECT_EQ(ValuesOf(Real, voxels), (std::vector<float>{3, -1, 0, 0}));
    EXPECT_EQ(ValuesOf(Imaginary, voxels), (std::vector<float>{4, 0, -2, 0}));
    EXPECT_EQ(ValuesOf(Amplitude, voxels), (std::vector<float>{5, 1, 2, 0}));
    const auto phases = ValuesOf(Phase, voxels);
    EXPECT_FLOAT_EQ(phases[0], 0.92729522F); // atan(4 / 3)
    EXPECT_FLOAT_EQ(phases[1], 3.14159265F);
    EXPECT_FLOAT_EQ(phases[2], -1.57079633F);
    EXPECT_EQ(phases[3], 0.0F);
}

TEST(ComplexParts, HaveTheNumbersZeroToThree) {
    EXPECT_EQ(Real, 0);
    EXPECT_EQ(Imaginary, 1);
    EXPECT_EQ(Phase, 2);
    EXPECT_EQ(Amplitude, 3);
    EXPECT_EQ(PartOf(static_cast<ComplexMode>(4)), nullptr);
    EXPECT_EQ(PartOf(static_cast<ComplexMode>(-1)), nullptr);
}

TEST(ComplexParts, AMapperThatNamesNoneShowsTheAmplitude) {
    EXPECT_EQ(ShownPartOf(PlainMapper()), Amplitude);
    EXPECT_EQ(ShownPartOf(PhaseMapper()), Phase);
}

TEST(ProjectComplex, KeepsTheVoxelWithTheGreatestPart) {
    // Along z: two lines of three voxels.
    const Frame frame = MakeFrame({2, 1, 3}, {{1, -9}, {0, 0}, {5, 0}, {-7, 1}, {3, 3}, {2, 2}});
    EXPECT_EQ(Project(zel_PT_XY, Real, frame), (std::vector<Voxel>{{5, 0}, {2, 2}}));
    EXPECT_EQ(Project(zel_PT_XY, Imaginary, frame), (std::vector<Voxel>{{3, 3}, {2, 2}}));
    EXPECT_EQ(Project(zel_PT_XY, Amplitude, frame), (std::vector<Voxel>{{1, -9}, {-7, 1}}));
    // Phases: -1.46, 0, 0.79 and 0, 3.00, 0.79.
    EXPECT_EQ(Project(zel_PT_XY, Phase, frame), (std::vector<Voxel>{{3, 3}, {-7, 1}}));
}

TEST(ProjectComplex, RunsAlongTheAxisThatThePlaneLacks) {
    // Real parts 0 to 23 in a frame of 2 by 3 by 4; imaginary parts fall.
    std::vector<Voxel> voxels;
    for (int i = 0; i < 24; ++i)
        voxels.emplace_back(static_cast<float>(i), static_cast<float>(-i));
    const Frame frame = MakeFrame({2, 3, 4}, voxels);
    const auto reals = [&](zel_ProjectionType type, ComplexMode mode) {
        std::vector<int> numbers;
        for (const Voxel& voxel : Project(type, mode, frame))
            numbers.push_back(static_cast<int>(voxel.real()));
        return numbers;
    };
    EXPECT_EQ(reals(zel_PT_XY, Real), (std::vector<int>{18, 19, 20, 21, 22, 23}));
    EXPECT_EQ(reals(zel_PT_XY, Imaginary), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(reals(zel_PT_XZ, Real), (std::vector<int>{4, 5, 10, 11, 16, 17, 22, 23}));
    EXPECT_EQ(reals(zel_PT_XZ, Imaginary), (std::vector<int>{0, 1, 6, 7, 12, 13, 18, 19}));
    EXPECT_EQ(reals(zel_PT_YZ, Real), (std::vector<int>{1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}));
    EXPECT_EQ(reals(zel_PT_YZ, Imaginary), (std::vector<int>{0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22}));
}

TEST(ProjectComplex, HasTheFramesGeometryWithOneVoxelAtZero) {
    const Frame frame = MakeFrame({2, 3, 4}, std::vector<Voxel>(24));
    const auto geometry = [&](zel_ProjectionType type) {
        Frame projection;
        ProjectComplex(type, frame, PartOf(Real), projection);
        EXPECT_TRUE(projection.GetResolution() == frame.GetResolution());
        return std::pair(projection.GetSize(), projection.GetOffset());
    };
    using Size = kep::Vector3d<std::size_t>;
    using Offset = kep::Vector3d<float>;
    EXPECT_EQ(geometry(zel_PT_XY), std::pair(Size(2, 3, 1), Offset(10, 20, 0)));
    EXPECT_EQ(geometry(zel_PT_XZ), std::pair(Size(2, 1, 4), Offset(10, 0, 30)));
    EXPECT_EQ(geometry(zel_PT_YZ), std::pair(Size(1, 3, 4), Offset(0, 20, 30)));
}

TEST(ProjectComplex, OfEqualsTheFirstStays) {
    const Frame frame = MakeFrame({1, 1, 3}, {{3, 4}, {4, 3}, {-5, 0}});
    EXPECT_EQ(Project(zel_PT_XY, Amplitude, frame), (std::vector<Voxel>{{3, 4}}));
}

TEST(ProjectComplex, NotANumberLosesAgainstAnyNumber) {
    const Frame first = MakeFrame({1, 1, 4}, {{notANumber, 1}, {-8, 2}, {notANumber, 3}, {-9, 4}});
    EXPECT_EQ(Project(zel_PT_XY, Real, first), (std::vector<Voxel>{{-8, 2}}));
    const Frame none = MakeFrame({1, 1, 2}, {{notANumber, 1}, {notANumber, 2}});
    const auto kept = Project(zel_PT_XY, Real, none);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].imag(), 1.0F) << "the first of them";
}

TEST(ProjectComplex, OfAnEmptyFrameIsEmpty) {
    const Frame empty;
    Frame projection = MakeFrame({2, 2, 2}, std::vector<Voxel>(8));
    ProjectComplex(zel_PT_YZ, empty, PartOf(Real), projection);
    EXPECT_TRUE(projection.IsEmpty());
}

TEST(ProjectComplex, AnyOtherPlaneLeavesTheProjectionAlone) {
    const Frame frame = MakeFrame({1, 1, 1}, {{1, 1}});
    Frame projection = MakeFrame({1, 1, 1}, {{2, 2}});
    ProjectComplex(zel_PT_ALL, frame, PartOf(Real), projection);
    EXPECT_EQ(projection.GetVoxel(0), Voxel(2, 2));
}
