#include "model/zel_axislook.h"

#include "core/kepalgo/kep_copytoimage.h"

#include <gtest/gtest.h>

#include <random>

namespace zel {
namespace {

/// 10 voxels of 0.5 microns from 100 on; the window shows 6 pixels of 0.25 microns from 101 on.
AxisLook HalfMicrons(bool reversed) {
    AxisLook axis;
    axis.voxels = 10;
    axis.boxOffset = 100.0F;
    axis.resolution = 2.0F;
    axis.visibleOffset = 101.0F;
    axis.visibleSize = 1.5F;
    axis.scale = 4.0F;
    axis.pixels = 6;
    axis.reversed = reversed;
    return axis;
}

TEST(AxisLook, PixelsCountFromTheSideWhereTheAxisBegins) {
    EXPECT_EQ(MicronsAt(HalfMicrons(false), 0), 101.0F);
    EXPECT_EQ(MicronsAt(HalfMicrons(false), 5), 102.25F); // 101 + 5 / 4
    EXPECT_EQ(MicronsAt(HalfMicrons(true), 5), 101.0F);
    EXPECT_EQ(MicronsAt(HalfMicrons(true), 0), 102.25F);
}

TEST(AxisLook, AClickMeansTheMiddleOfItsVoxel) {
    // Pixels 0 and 1 show voxel 2, which reaches from 101 to 101.5; pixels 2 and 3 the next one.
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(false), 0), 101.25F);
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(false), 1), 101.25F);
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(false), 2), 101.75F);
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(true), 5), 101.25F);
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(true), 3), 101.75F);
}

TEST(AxisLook, AClickBesideTheImageMeansItsLastVoxel) {
    // Voxels end at 105; pixel 100 lies at 126, pixel -100 at 76.
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(false), 100), 104.75F);
    EXPECT_EQ(MiddleOfVoxelAt(HalfMicrons(false), -100), 100.25F);
}

TEST(AxisLook, AClickMeansTheVoxelThatThePictureShows) {
    std::mt19937 random(7);
    const auto between = [&random](double low, double high) {
        return static_cast<float>(std::uniform_real_distribution<double>(low, high)(random));
    };
    for (int round = 0; round < 300; ++round) {
        constexpr std::size_t voxels = 200;
        constexpr int pixels = 150;
        AxisLook axis;
        axis.voxels = voxels;
        axis.boxOffset = between(-500, 500);
        axis.resolution = between(0.1, 12);
        axis.scale = round % 3 == 0 ? axis.resolution : axis.resolution * between(0.4, 5);
        axis.visibleOffset = axis.boxOffset + between(0, 40) / axis.resolution;
        axis.pixels = pixels;
        axis.reversed = round % 2 == 0;

        // The picture of a row of voxels that hold their own numbers.
        const kep::Vector3d<float> offset(axis.boxOffset, 0, 0), visible(axis.visibleOffset, 0, 0);
        const kep::Resolution resolution(axis.resolution, 1, 1), scale(axis.scale, 1, 1);
        kep::Image3d<int> row(&offset, &resolution), picture(&visible, &scale);
        row.MakeRoom(voxels, 1, 1);
        for (std::size_t i = 0; i < voxels; ++i)
            row.SetVoxel(i, static_cast<int>(i));
        picture.MakeRoom(pixels, 1, 1);
        picture.Fill(0);
        kep::CopyToImage(row, picture);

        for (int seen = 0; seen < pixels; ++seen) {
            const int unmirrored = axis.reversed ? pixels - 1 - seen : seen;
            const double shown = picture.GetVoxel(static_cast<std::size_t>(unmirrored));
            const double place = (static_cast<double>(unmirrored) / static_cast<double>(axis.scale) +
                                  static_cast<double>(axis.visibleOffset - axis.boxOffset)) *
                                 static_cast<double>(axis.resolution);
            if (place > static_cast<double>(voxels) - 1.0)
                break; // the last voxel, and the black beside the image
            const double middle =
                static_cast<double>(axis.boxOffset) + (shown + 0.5) / static_cast<double>(axis.resolution);
            ASSERT_NEAR(static_cast<double>(MiddleOfVoxelAt(axis, seen)), middle,
                        0.01 / static_cast<double>(axis.resolution))
                << "round " << round << ", pixel " << seen;
        }
    }
}

TEST(AxisLook, TheWheelGoesFromMiddleToMiddleAndStopsAtTheEnds) {
    const AxisLook axis = HalfMicrons(false);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 101.25F, 1), 101.75F);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 101.25F, -2), 100.25F);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 101.4F, 1), 101.75F); // not in the middle before
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 100.25F, -1), 100.25F);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 104.25F, 7), 104.75F);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 105.0F, -1), 104.25F); // on the far face the last voxel is seen
}

TEST(AxisLook, EveryVoxelIsReachedByTheWheel) {
    AxisLook axis;
    axis.voxels = 1000;
    axis.boxOffset = 12345.678F;
    axis.resolution = 7.3F;
    float cut = MiddleOfVoxelBeside(axis, axis.boxOffset, 0);
    int steps = 0;
    for (float next = 0; (next = MiddleOfVoxelBeside(axis, cut, 1)) != cut; cut = next)
        ++steps;
    EXPECT_EQ(steps, 999);
}

TEST(AxisLook, AnImageWithoutVoxelsIsAtItsFirst) {
    AxisLook axis; // one voxel a micron and a pixel, from 0
    axis.voxels = 0;
    EXPECT_EQ(MiddleOfVoxelAt(axis, 7), 0.5F);
    EXPECT_EQ(MiddleOfVoxelBeside(axis, 3, 2), 0.5F);
    EXPECT_FALSE(VoxelAt(axis, 0));
}

TEST(AxisLook, APlaceIsBroughtUnderAPixel) {
    // At pixel 2 stands 101.5. To see it at pixel 4 the window must begin at 101.5 - 4 / 4 and has its middle 0.75 on.
    EXPECT_EQ(CentreToShowAt(HalfMicrons(false), 101.5F, 4), 101.25F);
    // Mirrored, pixel 4 is the second one: 101.5 - 1 / 4 + 0.75.
    EXPECT_EQ(CentreToShowAt(HalfMicrons(true), 101.5F, 4), 102.0F);
}

TEST(AxisLook, NamesTheVoxelThatIsSeen) {
    // Pixels 0 and 1 show voxel 2; voxels end at 105, which is pixel 16 of the window's 4 a micron.
    EXPECT_EQ(VoxelAt(HalfMicrons(false), 0), 2U);
    EXPECT_EQ(VoxelAt(HalfMicrons(false), 2), 3U);
    EXPECT_EQ(VoxelAt(HalfMicrons(true), 5), 2U);
    EXPECT_EQ(VoxelAt(HalfMicrons(false), 15), 9U);
    EXPECT_EQ(VoxelAt(HalfMicrons(false), 16), std::nullopt);
    EXPECT_EQ(VoxelAt(HalfMicrons(false), -5), std::nullopt);
}

TEST(AxisLook, TakesItsNumbersFromViewAndImage) {
    View view;
    view.visibleBox = {{1, 2, 3}, {4, 5, 6}};
    view.scale = {10, 20, 30};
    view.options.reversedZ = true;
    const AxisLook look = LookAlong(view, {{7, 8, 9}, {40, 50, 60}, {2, 3, 5}}, Axis::Z, 77);
    EXPECT_EQ(look.voxels, 60U);
    EXPECT_EQ(look.boxOffset, 9);
    EXPECT_EQ(look.resolution, 5);
    EXPECT_EQ(look.visibleOffset, 3);
    EXPECT_EQ(look.visibleSize, 6);
    EXPECT_EQ(look.scale, 30);
    EXPECT_EQ(look.pixels, 77);
    EXPECT_TRUE(look.reversed);
    EXPECT_FALSE(LookAlong(view, {{7, 8, 9}, {40, 50, 60}, {2, 3, 5}}, Axis::X, 77).reversed);
}

} // namespace
} // namespace zel
