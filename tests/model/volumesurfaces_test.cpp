#include "core/kepcore/kep_exceptions.h"
#include "model/zel_volumesurfaces.h"
#include "model/zel_volumetexture.h"

#include <gtest/gtest.h>

using namespace zel;

namespace {

using Voxels = kep::Vector3d<std::size_t>;

void ExpectVector(const kep::Vector3d<float>& actual, const kep::Vector3d<float>& expected) {
    EXPECT_FLOAT_EQ(actual.x, expected.x);
    EXPECT_FLOAT_EQ(actual.y, expected.y);
    EXPECT_FLOAT_EQ(actual.z, expected.z);
}

} // namespace

TEST(IsosurfaceCells, OfACubeMakeItTwoLong) {
    // Powers of two 8, so m = 6 / 8 and a cell is 2 / (8 * 0.75).
    ExpectVector(ComputeIsosurfaceCells({6, 6, 6}, {1, 1, 1}), {1 / 3.0F, 1 / 3.0F, 1 / 3.0F});
}

TEST(IsosurfaceCells, HaveTheProportionsOfVoxels) {
    // Powers of two 16, 8, 4; sy = 16 * 2 / 8 = 4, sz = 16 * 4 / 4 = 16. The longest side is x: 7 / 16 / 1 = 0.4375,
    // 3 / 8 / 4 = 0.09375, 2 / 4 / 16 = 0.03125. Cells 2 / (16 * 0.4375), 2 / (8 * 0.4375 * 4), 2 / (4 * 0.4375 * 16).
    ExpectVector(ComputeIsosurfaceCells({7, 3, 2}, {1, 2, 4}), {2 / 7.0F, 1 / 7.0F, 1 / 14.0F});
}

TEST(IsosurfaceCells, TakeTheLongestSideWhereverItIs) {
    // In microns 4 / 2, 10 / 1, 6 / 0.5: z is the longest, and 12 microns are 2.
    ExpectVector(ComputeIsosurfaceCells({4, 10, 6}, {2, 1, 0.5F}), {1 / 12.0F, 1 / 6.0F, 1 / 3.0F});
    ExpectVector(ComputeIsosurfaceCells({4, 10, 6}, {2, 1, 1}), {1 / 10.0F, 1 / 5.0F, 1 / 5.0F});
}

TEST(IsosurfaceCells, OfAnUnknownVoxelSizeAreCubes) {
    ExpectVector(ComputeIsosurfaceCells({6, 6, 6}, {0, 0, 0}), {1 / 3.0F, 1 / 3.0F, 1 / 3.0F});
    ExpectVector(ComputeIsosurfaceCells({6, 3, 2}, {0, 2, 0}), {1 / 3.0F, 1 / 3.0F, 1 / 3.0F});
}

TEST(IsosurfaceCells, AreThoseOfTheVolumesVoxels) {
    // The texture's coordinate moves by 0.5 * scale for each unit of the view (in z by the scale, halved already), and
    // a voxel of the texture is 1 / (size + 2) of it.
    const Voxels size(37, 12, 90);
    const kep::Resolution resolution(3, 2, 0.7F);
    const kep::Vector3d<float> scale = ComputeVolumeScale(size, resolution);
    ExpectVector(ComputeIsosurfaceCells(size, resolution),
                 {2 / (39 * scale.x), 2 / (14 * scale.y), 1 / (92 * scale.z)});
}

TEST(IsosurfaceCells, ExistUpToTheLimit) {
    // 32766 voxels are 2 long.
    ExpectVector(ComputeIsosurfaceCells({32766, 1, 1}, {1, 1, 1}), {2 / 32766.0F, 2 / 32766.0F, 2 / 32766.0F});
    EXPECT_TRUE(FitsIsosurface({32766, 32766, 32766}));
    for (const Voxels& size : {Voxels(32767, 1, 1), Voxels(1, 32767, 1), Voxels(1, 1, 32767)}) {
        EXPECT_FALSE(FitsIsosurface(size));
        EXPECT_THROW(ComputeIsosurfaceCells(size, {1, 1, 1}), kep::InternalException);
    }
}

TEST(IsosurfaceTranslation, BringsTheMiddleToTheOrigin) {
    ExpectVector(ComputeIsosurfaceTranslation({7, 3, 2}, {2 / 7.0F, 1 / 7.0F, 1 / 14.0F}),
                 {-1, -3 / 14.0F, -1 / 14.0F});
}

TEST(SurfaceColours, AreTakenInTurn) {
    const std::vector<kep::RGB_generic<unsigned char>> colours{{0, 51, 255}, {255, 0, 102}, {1, 2, 3}};
    EXPECT_EQ(SurfaceColourOf(4, colours, firstSurfaceColour), (SurfaceColour{1.0F, 0.0F, 102 / 255.0F, 1.0F}));
    EXPECT_EQ(SurfaceColourOf(3, colours, firstSurfaceColour), (SurfaceColour{0.0F, 51 / 255.0F, 1.0F, 1.0F}));
    EXPECT_EQ(SurfaceColourOf(3, colours, {}), SurfaceColourOf(0, colours, {}));
}

TEST(SurfaceColours, StayAsBeforeWhereThereAreNone) {
    const SurfaceColour before{0.1F, 0.2F, 0.3F, 1.0F};
    EXPECT_EQ(SurfaceColourOf(4, {}, before), before);
    EXPECT_EQ(firstSurfaceColour, (SurfaceColour{1, 1, 1, 1}));
}
