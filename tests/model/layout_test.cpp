#include "model/zel_layout.h"
#include "model/zel_truncate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zel;

namespace {

/// Scale 10 on all axes and a box of 20 x 20 x 7 microns at 0: 200 x 200 x 70 pixels.
ViewLayoutInput Default(Size client, int border = 2) {
    ViewLayoutInput input;
    input.client = client;
    input.border = border;
    input.boundingBox = {{0, 0, 0}, {20, 20, 7}};
    input.scale = {10, 10, 10};
    return input;
}

ViewLayout Compute(const ViewLayoutInput& input) {
    ViewLayout layout;
    EXPECT_TRUE(ComputeViewLayout(input, layout));
    return layout;
}

} // namespace

TEST(Truncation, HoldsWhatIntCannotHold) {
    EXPECT_EQ(TruncToInt(2.9), 2);
    EXPECT_EQ(TruncToInt(-2.9), -2);
    EXPECT_EQ(TruncToInt(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(TruncToInt(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(TruncToInt(-std::numeric_limits<double>::infinity()), std::numeric_limits<int>::min());
}

TEST(Truncation, VoxelsAtTheirOwnScaleLoseNoPixel) {
    for (int nanometres = 1; nanometres < 2000; ++nanometres) {
        const float resolution = 1000.0F / static_cast<float>(nanometres);
        for (const int voxels : {1, 3, 64, 171, 512, 1000, 2048})
            ASSERT_EQ(PixelsAlong(static_cast<float>(voxels) / resolution, resolution), voxels) << nanometres;
    }
    EXPECT_EQ(PixelsAlong(1.99F, 10.0F), 19); // 19.9: truncated, not rounded
}

TEST(Truncation, AnExtentTakesNoLessThanNoPixels) {
    EXPECT_EQ(PixelsAlong(20.0F, -10.0F), 0);
    EXPECT_EQ(PixelsAlong(-20.0F, 10.0F), 0);
    EXPECT_EQ(PixelsAlong(20.0F, -std::numeric_limits<float>::infinity()), 0);
    EXPECT_EQ(PixelsAlong(20.0F, std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(PixelsAlong(20.0F, std::numeric_limits<float>::infinity()), std::numeric_limits<int>::max());
}

TEST(Scale, FollowsTheZoomLevel) {
    const kep::Vector3d<float> base(12, 6, 3);
    EXPECT_EQ(ScaleAtZoom(base, 0), base);
    EXPECT_EQ(ScaleAtZoom(base, 1), kep::Vector3d<float>(24, 12, 6));
    EXPECT_EQ(ScaleAtZoom(base, 2), kep::Vector3d<float>(36, 18, 9));
    EXPECT_EQ(ScaleAtZoom(base, -1), kep::Vector3d<float>(6, 3, 1.5F)); // half
    EXPECT_EQ(ScaleAtZoom(base, -2), kep::Vector3d<float>(4, 2, 1));    // a third
    EXPECT_GT(ScaleAtZoom(base, std::numeric_limits<int>::max()).x, 0.0F);
    EXPECT_GT(ScaleAtZoom(base, std::numeric_limits<int>::min()).x, 0.0F);
}

TEST(Layout, GivesEachWindowItsFullSizeWhereThereIsRoom) {
    const ViewLayout layout = Compute(Default({400, 400}));
    // XY 200 x 200, XZ 200 x 70, YZ 70 x 200 pixels, plus a border of 2; XZ begins at 200 + 2 + 1.
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 202, 202));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 203, 202, 72));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(203, 1, 72, 202));
    EXPECT_EQ(layout.visibleBox, MicronBox({0, 0, 0}, {20, 20, 7}));
    EXPECT_EQ(layout.scrollStep, kep::Vector3d<float>(0.2F * 20, 0.2F * 20, 0.2F * 7));
}

TEST(Layout, TakesFromTheLargerWhereOneNeedsLessThanHalf) {
    // w = 200 - 2 - 2 - 2 = 194: half is 97, XY wants 200, YZ 70: together too much, so YZ gets 70 and XY 124.
    // h = 400 - 6 = 394: both fit.
    const ViewLayout layout = Compute(Default({200, 400}));
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 126, 202));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(127, 1, 72, 202));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 203, 126, 72));
    EXPECT_FLOAT_EQ(layout.visibleBox.size.x, 12.4F);
}

TEST(Layout, HalvesWhatBothWouldFill) {
    ViewLayoutInput input = Default({107, 107});
    // w = h = 107 - 6 = 101, half 50: XY wants 200 and YZ 70, so both get 50; the same along the height.
    const ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 52, 52));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 53, 52, 52));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(53, 1, 52, 52));
}

TEST(Layout, GivesTheRestToADeepVolume) {
    ViewLayoutInput input = Default({206, 1000});
    input.boundingBox.size = {5, 20, 90}; // 50 x 200 x 900 pixels
    // w = 200, half 100: XY wants 50, YZ 900: XY gets 50, YZ the rest, 150. h = 994, half 497: XY wants 200, XZ 900:
    // XY gets 200, XZ 794. XZ and YZ show the same extent along Z: the smaller, 150.
    const ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 52, 202));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(53, 1, 152, 202));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 203, 52, 152));
    EXPECT_FLOAT_EQ(layout.visibleBox.size.z, 15.0F);
}

TEST(Layout, SingleWindowsStandInTheCorner) {
    ViewLayoutInput input = Default({100, 90});
    input.shown[zel_PT_XZ] = input.shown[zel_PT_YZ] = false;
    // One border only: w = 96, h = 86.
    EXPECT_EQ(Compute(input).windows[zel_PT_XY], Rect(1, 1, 98, 88));
    EXPECT_FLOAT_EQ(Compute(input).visibleBox.size.z, 7.0F); // min(70, 86) pixels

    input.shown[zel_PT_XY] = false;
    input.shown[zel_PT_XZ] = true;
    EXPECT_EQ(Compute(input).windows[zel_PT_XZ], Rect(1, 1, 98, 72));

    input.shown[zel_PT_XZ] = false;
    input.shown[zel_PT_YZ] = true;
    EXPECT_EQ(Compute(input).windows[zel_PT_YZ], Rect(1, 1, 72, 88));
}

TEST(Layout, XZStandsUnderAHiddenXYOnlyIfYZIsShown) {
    ViewLayoutInput input = Default({400, 400});
    input.shown[zel_PT_XY] = false;
    const ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 203, 202, 72));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(203, 1, 72, 202));
}

TEST(Layout, LeavesEverythingAloneWithoutWindowsOrRoom) {
    ViewLayout layout;
    layout.windows[zel_PT_XY] = Rect(7, 7, 7, 7);
    ViewLayoutInput input = Default({0, 0});
    EXPECT_FALSE(ComputeViewLayout(input, layout));
    input = Default({400, 400});
    input.shown[zel_PT_XY] = input.shown[zel_PT_XZ] = input.shown[zel_PT_YZ] = false;
    EXPECT_FALSE(ComputeViewLayout(input, layout));
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(7, 7, 7, 7));
    EXPECT_TRUE(ComputeViewLayout(Default({0, 5}), layout)); // only both being 0 counts
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 3, 3));  // one pixel and the border
}

TEST(Layout, KeepsTheCentreUntilAnEdgeIsReached) {
    ViewLayoutInput input = Default({107, 107}); // 50 pixels a window
    input.visibleBox = {{6, 6, 1}, {8, 8, 5}};   // centre 10, 10, 3.5
    input.scale = {20, 20, 20};                  // 50 pixels are 2.5 microns
    ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.visibleBox, MicronBox({8.75F, 8.75F, 2.25F}, {2.5F, 2.5F, 2.5F}));

    input.visibleBox = {{19, 0, 0}, {1, 1, 1}}; // centre 19.5: 18.25 + 2.5 goes past 20, so 17.5
    layout = Compute(input);
    EXPECT_FLOAT_EQ(layout.visibleBox.offset.x, 17.5F);
    EXPECT_FLOAT_EQ(layout.visibleBox.offset.y, 0.0F); // 0.5 - 1.25 is below the box
}

TEST(Layout, TheLowerBoundWinsWhereTheWindowIsLargerThanTheBox) {
    ViewLayoutInput input = Default({400, 400});
    input.boundingBox = {{3, 3, 3}, {0.01F, 20, 7}}; // a tenth of a pixel along x, which gets one pixel
    const ViewLayout layout = Compute(input);
    EXPECT_FLOAT_EQ(layout.visibleBox.size.x, 0.1F);
    EXPECT_FLOAT_EQ(layout.visibleBox.offset.x, 3.0F);
}

TEST(Layout, ScaleOfZeroShowsTheWholeBox) {
    ViewLayoutInput input = Default({400, 400});
    input.scale.x = 0;
    const ViewLayout layout = Compute(input);
    EXPECT_FLOAT_EQ(layout.visibleBox.size.x, 20.0F);
    EXPECT_FLOAT_EQ(layout.visibleBox.offset.x, 0.0F);
}

TEST(Layout, ANegativeScaleTakesNoShareOfTheOtherWindow) {
    ViewLayoutInput input = Default({400, 400});
    input.scale = {-1001, -1001, 1001}; // Z wants 7007 pixels, X and Y none
    // w = h = 400 - 6 = 394: XY gets the one pixel that each window has at least, YZ and XZ the rest.
    const ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 3, 3));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 4, 3, 396));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(4, 1, 396, 3));
    EXPECT_FLOAT_EQ(layout.visibleBox.size.x, 20.0F) << "as with a scale of 0";
    EXPECT_FLOAT_EQ(layout.visibleBox.size.z, 394.0F / 1001.0F);
}

TEST(Layout, NoScaleTakesAWindowOutOfTheCanvas) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float odd[] = {-inf, -1e38F, -7656, -1, -1e-45F, 0, 1e-45F, 1e-3F, 10, 1e38F, inf, nan};
    for (const float x : odd)
        for (const float y : odd)
            for (const float z : odd)
                for (const int shown : {1, 2, 3, 4, 5, 6, 7})
                    for (const Size client : {Size(400, 300), Size(11, 5), Size(0, 1), Size(1, 2000)}) {
                        ViewLayoutInput input = Default(client);
                        input.visibleBox = {{1, 2, 3}, {4, 5, 2}};
                        for (const Plane& plane : planes)
                            input.shown[plane.type] = (shown & plane.type) != 0;
                        input.scale = {x, y, z};
                        const ViewLayout layout = Compute(input);
                        // Inside, but for the pixel and the border that a window has at least: the second of two
                        // begins at 4 then, and ends at 6, or takes one pixel more than there is.
                        const Size room(std::max(client.x + 1, 6), std::max(client.y + 1, 6));
                        for (const Plane& plane : planes) {
                            const Rect& window = layout.windows[plane.type];
                            ASSERT_GE(window.width, 3);
                            ASSERT_GE(window.height, 3);
                            if ((shown & plane.type) == 0)
                                continue;
                            ASSERT_LE(window.x + window.width - 1, room.x) << x << " " << y << " " << z << " " << shown;
                            ASSERT_LE(window.y + window.height - 1, room.y)
                                << x << " " << y << " " << z << " " << shown;
                        }
                        const MicronBox& visible = layout.visibleBox;
                        for (const float size : {visible.size.x, visible.size.y, visible.size.z}) {
                            ASSERT_TRUE(std::isfinite(size));
                            ASSERT_GE(size, 0.0F);
                        }
                        for (const float offset : {visible.offset.x, visible.offset.y, visible.offset.z}) {
                            ASSERT_TRUE(std::isfinite(offset));
                            ASSERT_GE(offset, 0.0F);
                            ASSERT_LE(offset, 20.0F);
                        }
                    }
}

TEST(Layout, NothingStaysOfAVisibleBoxThatWasNoNumber) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float inf = std::numeric_limits<float>::infinity();
    ViewLayoutInput input = Default({400, 400});
    for (const MicronBox& former : {MicronBox({nan, nan, nan}, {1, 1, 1}), MicronBox({1, 1, 1}, {nan, nan, nan}),
                                    MicronBox({inf, -inf, 0}, {inf, inf, -inf})}) {
        input.visibleBox = former;
        EXPECT_EQ(Compute(input).visibleBox, MicronBox({0, 0, 0}, {20, 20, 7}));
    }
}

TEST(OptimalSize, AddsSixPixelsForEachWindow) {
    const PerPlane<Size> windows{{Size(200, 100), Size(200, 70), Size(70, 100)}};
    EXPECT_EQ(ComputeOptimalSize(windows, {{true, true, true}}), Size(206 + 76, 106 + 76));
    EXPECT_EQ(ComputeOptimalSize(windows, {{true, false, false}}), Size(206, 106));
    EXPECT_EQ(ComputeOptimalSize(windows, {{false, true, false}}), Size(206, 76));
    EXPECT_EQ(ComputeOptimalSize(windows, {{false, false, true}}), Size(76, 106));
    EXPECT_EQ(ComputeOptimalSize(windows, {{false, true, true}}), Size(206 + 76, 106 + 76));
    EXPECT_EQ(ComputeOptimalSize(windows, {{false, false, false}}), Size(0, 0));
}

TEST(Centre, IsHeldInTheBoxWithTheUpperBoundLast) {
    EXPECT_FLOAT_EQ(ClampCenter(5, 4, 0, 10), 3);
    EXPECT_FLOAT_EQ(ClampCenter(1, 4, 0, 10), 0);
    EXPECT_FLOAT_EQ(ClampCenter(9, 4, 0, 10), 6);
    EXPECT_FLOAT_EQ(ClampCenter(5, 12, 0, 10), -2); // larger than the box: raised to 0, then lowered to 10 - 12
}

TEST(Mirror, CountsFromTheOtherEnd) {
    EXPECT_EQ(MirrorWindowCoordinate(3, 100, false), 3);
    EXPECT_EQ(MirrorWindowCoordinate(3, 100, true), 96);
}
