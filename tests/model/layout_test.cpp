#include "model/zel_layout.h"
#include "model/zel_truncate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

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

/// What two windows get of a width or height, rule by rule.
struct ExpectedShares {
    ExpectedShares(int available, int wantedFirst, int wantedSecond) : first(available / 2), second(available / 2) {
        const int half = available / 2;
        if (wantedFirst >= half && wantedSecond >= half)
            return;
        if (wantedFirst + wantedSecond > available && wantedFirst > wantedSecond) {
            first = available - wantedSecond;
            second = wantedSecond;
        } else {
            first = wantedFirst;
            second = wantedFirst + wantedSecond > available ? available - wantedFirst : wantedSecond;
        }
    }
    int first;
    int second;
};

/// Where a range begins that keeps its centre as far as the box lets it, the lower bound before the upper one.
float ExpectedOffset(float offset, float size, float newSize, float boxOffset, float boxSize) {
    float begin = offset + (size - newSize) * 0.5F;
    if (begin + newSize > boxOffset + boxSize)
        begin = boxOffset + boxSize - newSize;
    return boxOffset > begin ? boxOffset : begin;
}

/// The layout by its rules one after the other, for inputs whose pixel sizes come out exactly.
ViewLayout ExpectedLayout(const ViewLayoutInput& in) {
    const bool xy = in.shown[zel_PT_XY], xz = in.shown[zel_PT_XZ], yz = in.shown[zel_PT_YZ];
    int w = in.client.x - 2 - in.border, h = in.client.y - 2 - in.border;
    if ((xy && yz) || (yz && xz))
        w -= in.border;
    if (xz && (xy || yz))
        h -= in.border;
    w = w < 0 ? 0 : w;
    h = h < 0 ? 0 : h;
    const int sx = static_cast<int>(in.boundingBox.size.x * in.scale.x);
    const int sy = static_cast<int>(in.boundingBox.size.y * in.scale.y);
    const int sz = static_cast<int>(in.boundingBox.size.z * in.scale.z);
    int a = std::min(sx, w), b = std::min(sy, h), c = std::min(sz, w), d = std::min(sz, h);
    if (yz && (xy || xz)) {
        a = ExpectedShares(w, sx, sz).first;
        c = ExpectedShares(w, sx, sz).second;
    }
    if (xz && (xy || yz)) {
        b = ExpectedShares(h, sy, sz).first;
        d = ExpectedShares(h, sy, sz).second;
    }
    a = std::max(a, 1);
    b = std::max(b, 1);
    c = std::max(c, 1);
    d = std::max(d, 1);
    if (xz && yz)
        c = d = std::min(c, d);
    const int e = yz ? c : d;
    ViewLayout out;
    const MicronBox& old = in.visibleBox;
    const MicronBox& box = in.boundingBox;
    MicronBox& now = out.visibleBox;
    now.size = {static_cast<float>(a) / in.scale.x, static_cast<float>(b) / in.scale.y,
                static_cast<float>(e) / in.scale.z};
    now.offset.x = ExpectedOffset(old.offset.x, old.size.x, now.size.x, box.offset.x, box.size.x);
    now.offset.y = ExpectedOffset(old.offset.y, old.size.y, now.size.y, box.offset.y, box.size.y);
    now.offset.z = ExpectedOffset(old.offset.z, old.size.z, now.size.z, box.offset.z, box.size.z);
    out.windows[zel_PT_XY] = Rect(1, 1, a + in.border, b + in.border);
    out.windows[zel_PT_XZ] = Rect(1, xy || yz ? b + in.border + 1 : 1, a + in.border, d + in.border);
    out.windows[zel_PT_YZ] = Rect(xy || xz ? a + in.border + 1 : 1, 1, c + in.border, b + in.border);
    out.scrollStep = {0.2F * now.size.x, 0.2F * now.size.y, 0.2F * now.size.z};
    return out;
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

TEST(Layout, HalvesToTheLastPixelWhatIsOdd) {
    // 11 pixels each way, half 5: a window that wants just that gets no more, and neither does its neighbour.
    ViewLayoutInput input = Default({17, 17});
    input.boundingBox.size = {0.5F, 0.7F, 0.7F}; // 5 x 7 x 7 pixels: 5 + 7 is more than 11
    ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 7, 7));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(8, 1, 7, 7));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 8, 7, 7));
    input.boundingBox.size = {0.7F, 0.7F, 0.5F};
    layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 7, 7));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(8, 1, 7, 7));
}

TEST(Layout, EachAxisHasItsOwnScaleAndBox) {
    ViewLayoutInput input = Default({246, 145});
    input.boundingBox = {{100, -50, 7}, {30, 50, 16}};
    input.visibleBox = {{110, -40, 9}, {10, 20, 8}}; // centres 115, -30 and 13
    input.scale = {8, 4, 5};                         // 240 x 200 x 80 pixels
    // w = 246 - 6 = 240, half 120: X has more, Z 80: XY gets 160. h = 145 - 6 = 139, half 69: both have more.
    // Z is seen in 69 pixels, the smaller of 80 and 69.
    const ViewLayout layout = Compute(input);
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 162, 71));
    EXPECT_EQ(layout.windows[zel_PT_XZ], Rect(1, 72, 162, 71));
    EXPECT_EQ(layout.windows[zel_PT_YZ], Rect(163, 1, 71, 71));
    // 160 / 8 = 20 microns around 115; 69 / 4 = 17.25 around -30; 69 / 5 = 13.8 around 13, lifted to the box.
    EXPECT_EQ(layout.visibleBox.size, kep::Vector3d<float>(20, 17.25F, 13.8F));
    EXPECT_EQ(layout.visibleBox.offset, kep::Vector3d<float>(105, -38.625F, 7));
    EXPECT_EQ(layout.scrollStep, kep::Vector3d<float>(0.2F * 20, 0.2F * 17.25F, 0.2F * 13.8F));
}

TEST(Layout, AloneXZAndYZTakeTheDepthThatFitsThem) {
    ViewLayoutInput input = Default({54, 404}); // w = 50 and h = 400 for one window
    input.boundingBox.size.z = 30;              // 300 pixels
    input.shown[zel_PT_XY] = input.shown[zel_PT_YZ] = false;
    EXPECT_EQ(Compute(input).windows[zel_PT_XZ], Rect(1, 1, 52, 302));
    EXPECT_FLOAT_EQ(Compute(input).visibleBox.size.z, 30.0F);
    input.shown[zel_PT_XZ] = false;
    input.shown[zel_PT_YZ] = true;
    EXPECT_EQ(Compute(input).windows[zel_PT_YZ], Rect(1, 1, 52, 202));
    EXPECT_FLOAT_EQ(Compute(input).visibleBox.size.z, 5.0F);
}

TEST(Layout, IsThatOfTheRulesForRandomImages) {
    std::mt19937 random(20261122);
    const auto whole = [&random](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    // Products of quarters and halves are exact in floats.
    const auto quarters = [&](int low, int high) { return static_cast<float>(whole(low, high)) / 4.0F; };
    const auto halves = [&] { return static_cast<float>(whole(1, 24)) / 2.0F; };
    for (int round = 0; round < 3000; ++round) {
        ViewLayoutInput input;
        input.client = {whole(0, 300), whole(1, 300)};
        input.border = whole(0, 5);
        const int shown = whole(1, 7);
        for (const Plane& plane : planes)
            input.shown[plane.type] = (shown & plane.type) != 0;
        input.boundingBox = {{quarters(-80, 80), quarters(-80, 80), quarters(-80, 80)},
                             {quarters(1, 120), quarters(1, 120), quarters(1, 120)}};
        input.visibleBox = {{quarters(-100, 160), quarters(-100, 160), quarters(-100, 160)},
                            {quarters(0, 120), quarters(0, 120), quarters(0, 120)}};
        input.scale = {halves(), halves(), halves()};
        const ViewLayout layout = Compute(input);
        const ViewLayout expected = ExpectedLayout(input);
        for (const Plane& plane : planes)
            ASSERT_EQ(layout.windows[plane.type], expected.windows[plane.type]) << round;
        ASSERT_EQ(layout.visibleBox, expected.visibleBox) << round;
        ASSERT_EQ(layout.scrollStep, expected.scrollStep) << round;
    }
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
    EXPECT_TRUE(ComputeViewLayout(Default({5, 0}), layout)); // only both being 0 counts
    EXPECT_TRUE(ComputeViewLayout(Default({0, 5}), layout));
    EXPECT_EQ(layout.windows[zel_PT_XY], Rect(1, 1, 3, 3)); // one pixel and the border
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
