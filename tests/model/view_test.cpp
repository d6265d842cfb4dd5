#include "model/zel_view.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zel;

namespace {

using Vector = kep::Vector3d<float>;
using Kind = ViewChange::Kind;

const Plane& xy = *FindPlane(zel_PT_XY);
const Plane& xz = *FindPlane(zel_PT_XZ);
const Plane& yz = *FindPlane(zel_PT_YZ);

ViewChange Change(Kind kind, int planes, Axis axis = Axis::X) {
    return {kind, static_cast<zel_ProjectionType>(planes), axis};
}

/// 10 x 8 x 4 voxels of 0.5, 0.5 and 2 microns from (100, 200, 300) on: 5 x 4 x 8 microns.
ImageGeometry Image() {
    return {{100, 200, 300}, {10, 8, 4}, {2, 2, 0.5F}};
}

View Opened() {
    View view;
    view.Open(Image());
    return view;
}

/// Half of the image visible on each axis, in the middle of it.
View HalfVisible() {
    View view = Opened();
    view.visibleBox = {{101.25F, 201, 302}, {2.5F, 2, 4}};
    view.scrollStep = {0.5F, 0.4F, 0.8F};
    return view;
}

} // namespace

TEST(View, StartsWithABoxOfItsOwn) {
    const View view;
    EXPECT_EQ(view.boundingBox, MicronBox({0, 0, 0}, {20, 20, 7}));
    EXPECT_EQ(view.visibleBox, MicronBox());
    EXPECT_EQ(view.scale, Vector(10, 10, 10));
    EXPECT_EQ(view.options.baseScale, Vector(10, 10, 10));
    EXPECT_EQ(view.options.cut, Vector(0, 0, 0));
    EXPECT_EQ(view.scrollStep, Vector(1, 1, 1));
    EXPECT_EQ(view.cutStep, Vector(0.1F, 0.1F, 0.2F));
    EXPECT_TRUE(view.IsShown(zel_PT_ALL));
}

TEST(View, OpensOnePixelAVoxelAndCutsTheMiddleOfTheMiddleVoxel) {
    const View view = Opened();
    EXPECT_EQ(view.boundingBox, MicronBox({100, 200, 300}, {5, 4, 8}));
    EXPECT_EQ(view.options.baseScale, Vector(2, 2, 0.5F));
    EXPECT_EQ(view.cutStep, Vector(0.5F, 0.5F, 2));
    // Voxels 5, 4 and 2: their middles lie at 5.5 * 0.5, 4.5 * 0.5 and 2.5 * 2 microns.
    EXPECT_EQ(view.options.cut, Vector(102.75F, 202.25F, 305));
}

TEST(View, IsIsotropicAfterAChangeOfData) {
    View view = Opened();
    view.options.cut = {101, 201, 301};
    view.TakeChangedImage({{0, 0, 0}, {20, 20, 20}, {4, 5, 10}});
    EXPECT_EQ(view.boundingBox, MicronBox({0, 0, 0}, {5, 4, 2}));
    EXPECT_EQ(view.options.baseScale, Vector(4, 4, 4));
    EXPECT_EQ(view.cutStep, Vector(0.25F, 0.2F, 0.1F));
    EXPECT_EQ(view.options.cut, Vector(101, 201, 301)); // where it was, though outside now
}

TEST(View, AResolutionThatIsNotKnownCountsAsOne) {
    View view;
    view.Open({{0, 0, 0}, {3, 4, 5}, {}});
    EXPECT_EQ(view.boundingBox.size, Vector(3, 4, 5));
    EXPECT_EQ(view.options.baseScale, Vector(1, 1, 1));
}

TEST(View, ZoomHasNoBoundsAndAsksForANewLayout) {
    View view;
    EXPECT_EQ(view.ZoomIn(), Change(Kind::Layout, 7));
    EXPECT_EQ(view.options.zoom, 1);
    view.NormalZoom();
    EXPECT_EQ(view.ZoomOut(), Change(Kind::Layout, 7));
    EXPECT_EQ(view.options.zoom, -1);
    view.options.zoom = std::numeric_limits<int>::max();
    view.ZoomIn();
    EXPECT_EQ(view.options.zoom, std::numeric_limits<int>::max());
    view.options.zoom = std::numeric_limits<int>::min();
    view.ZoomOut();
    EXPECT_EQ(view.options.zoom, std::numeric_limits<int>::min());
}

TEST(View, ArrangesWindowsAndWhatTheyShow) {
    View view;
    const auto windows = view.Arrange({400, 400}, 2); // 200 x 200 x 70 pixels fit
    ASSERT_TRUE(windows);
    EXPECT_EQ((*windows)[zel_PT_XY], Rect(1, 1, 202, 202));
    EXPECT_EQ((*windows)[zel_PT_XZ], Rect(1, 203, 202, 72));
    EXPECT_EQ((*windows)[zel_PT_YZ], Rect(203, 1, 72, 202));
    EXPECT_EQ(view.visibleBox, MicronBox({0, 0, 0}, {20, 20, 7}));
    EXPECT_EQ(view.scrollStep, Vector(4, 4, 1.4F));
    EXPECT_EQ(view.GetFullSize(xz), Size(200, 70));
}

TEST(View, ArrangingKeepsTheMiddleOfWhatWasVisible) {
    View view;
    view.visibleBox = {{6, 6, 1}, {8, 8, 5}}; // around 10, 10, 3.5
    view.ZoomIn();                            // 400 x 400 x 140 pixels, of which 101 are to be shared: 50 each
    ASSERT_TRUE(view.Arrange({107, 107}, 2));
    EXPECT_EQ(view.visibleBox, MicronBox({8.75F, 8.75F, 2.25F}, {2.5F, 2.5F, 2.5F}));
}

TEST(View, WithoutWindowsOnlyTheScaleFollowsTheZoom) {
    View view;
    view.Show(zel_PT_ALL, false);
    view.ZoomIn();
    EXPECT_FALSE(view.Arrange({400, 400}, 2));
    EXPECT_EQ(view.scale, Vector(20, 20, 20));
    EXPECT_EQ(view.visibleBox, MicronBox());
    EXPECT_FALSE(view.IsAnyShown());
}

TEST(View, ShowsAndHidesTheWindowsOfAMask) {
    View view;
    EXPECT_EQ(view.Show(PlanesAlong(Axis::Z), false), Change(Kind::Layout, 7));
    EXPECT_TRUE(view.IsShown(zel_PT_XY));
    EXPECT_FALSE(view.IsShown(zel_PT_XZ));
    EXPECT_FALSE(view.IsShown(zel_PT_ALL));
    EXPECT_TRUE(view.IsShown(static_cast<zel_ProjectionType>(0)));
    EXPECT_TRUE(view.IsAnyShown());
}

TEST(View, ContentIsAutofocusOfAllOnlyWhenAllShowIt) {
    View view;
    EXPECT_EQ(view.SetContent(zel_PC_AUTOFOCUS, PlanesAlong(Axis::X)), Change(Kind::Content, 3));
    EXPECT_EQ(view.GetContent(zel_PT_XY), zel_PC_AUTOFOCUS);
    EXPECT_EQ(view.GetContent(zel_PT_YZ), zel_PC_CUT);
    EXPECT_EQ(view.GetContent(zel_PT_ALL), zel_PC_CUT);
    view.SetContent(zel_PC_AUTOFOCUS, zel_PT_YZ);
    EXPECT_EQ(view.GetContent(zel_PT_ALL), zel_PC_AUTOFOCUS);
}

TEST(View, AMirroredAxisConcernsThePlanesInWhichItRuns) {
    View view;
    EXPECT_EQ(view.ToggleReversed(Axis::Z), Change(Kind::Mirrored, 6, Axis::Z));
    EXPECT_TRUE(view.options.reversedZ);
    view.ToggleReversed(Axis::Z);
    EXPECT_FALSE(view.options.reversedZ);
}

TEST(View, ACutOnAFaceIsRefused) {
    View view = Opened();
    EXPECT_EQ(view.MoveCut({102, 202, 300}), ViewChange());
    EXPECT_EQ(view.MoveCut({105, 202, 301}), ViewChange());
    EXPECT_EQ(view.options.cut, Vector(102.75F, 202.25F, 305));
    EXPECT_EQ(view.MoveCut({101, 202, 301}), Change(Kind::Cut, 7));
    EXPECT_EQ(view.options.cut, Vector(101, 202, 301));
    EXPECT_EQ(view.MoveCut({std::numeric_limits<float>::quiet_NaN(), 202, 301}), ViewChange());
}

TEST(View, OptionsWithACutOutsideCutTheMiddleOfTheBox) {
    View view = Opened();
    ViewOptions options = view.options;
    options.cut = {100, 202, 301}; // on a face
    options.zoom = 3;
    view.SetOptions(options);
    EXPECT_EQ(view.options.cut, Vector(102.5F, 202, 304));
    EXPECT_EQ(view.options.zoom, 3);
}

TEST(View, ACutMovedInAPlaneIsHeldInTheBoxAndShowsInTheOthers) {
    View view = Opened();
    EXPECT_EQ(view.MoveCutIn(xz, 101, 1000), Change(Kind::Cut, 5));
    EXPECT_EQ(view.options.cut, Vector(101, 202.25F, 308));
    EXPECT_EQ(view.MoveCutIn(yz, -1000, 203), Change(Kind::Cut, 3));
    EXPECT_EQ(view.options.cut, Vector(101, 203, 300));
    EXPECT_EQ(view.MoveCutThrough(xy, 303), Change(Kind::Cut, 1));
    EXPECT_EQ(view.options.cut, Vector(101, 203, 303));
}

TEST(View, TheCutStepsThroughAPlaneToHalfAVoxelFromTheFace) {
    View view = Opened(); // Z at 305 of 300 to 308, steps of 2
    EXPECT_EQ(view.StepCutForward(xy), Change(Kind::Cut, 1));
    EXPECT_EQ(view.options.cut.z, 307);
    EXPECT_EQ(view.StepCutForward(xy), ViewChange());
    view.options.cut.z = 302;
    EXPECT_EQ(view.StepCutBack(xy), Change(Kind::Cut, 1));
    EXPECT_EQ(view.options.cut.z, 301);
    EXPECT_EQ(view.StepCutBack(xy), ViewChange());
    EXPECT_EQ(view.StepCutBack(yz), Change(Kind::Cut, 4)); // X
    EXPECT_EQ(view.options.cut.x, 102.25F);
}

TEST(View, ScrollingConcernsThePlanesInWhichTheAxisRuns) {
    View view = HalfVisible();
    EXPECT_EQ(view.ScrollForward(Axis::Z), Change(Kind::Visible, 6));
    EXPECT_FLOAT_EQ(view.visibleBox.offset.z, 302.8F);
    view.visibleBox.offset.z = 303.9F;
    view.ScrollForward(Axis::Z);
    EXPECT_EQ(view.visibleBox.offset.z, 304); // 308 - 4
    EXPECT_EQ(view.ScrollForward(Axis::Z), ViewChange());
    EXPECT_EQ(view.ScrollBack(Axis::X), Change(Kind::Visible, 3));
    EXPECT_EQ(view.visibleBox.offset.x, 100.75F);
    view.visibleBox.offset.x = 100;
    EXPECT_EQ(view.ScrollBack(Axis::X), ViewChange());
}

TEST(View, CentresOnAPointAsFarAsTheBoxLets) {
    View view = HalfVisible();
    EXPECT_EQ(view.CentreOn(xy, 102, 1000), Change(Kind::Visible, 7));
    EXPECT_EQ(view.visibleBox.offset, Vector(100.75F, 202, 302)); // 102 - 1.25; 204 - 2; untouched
    view.CentreOn(yz, std::numeric_limits<float>::quiet_NaN(), 202);
    EXPECT_EQ(view.visibleBox.offset, Vector(100.75F, 201, 300));
}

TEST(View, CentresOnACutThatIsOut) {
    View view = HalfVisible();
    EXPECT_EQ(view.CentreOnCutIfOut(), ViewChange()); // (102.75, 202.25, 305) is seen
    for (const Vector& onTheEdge : {Vector(101.25F, 201, 302), Vector(103.75F, 203, 306)}) {
        view.options.cut = onTheEdge;
        EXPECT_EQ(view.CentreOnCutIfOut(), ViewChange());
    }
    view.options.cut = {104, 201.5F, 305};
    EXPECT_EQ(view.CentreOnCutIfOut(), Change(Kind::Visible, 7));
    EXPECT_EQ(view.visibleBox.offset, Vector(102.5F, 200.5F, 303));
}

TEST(View, SlicesLieInTheCutOrUnderAutofocusAtZero) {
    View view = HalfVisible();
    EXPECT_EQ(view.GetSliceOffset(xy), Vector(101.25F, 201, 305));
    EXPECT_EQ(view.GetSliceOffset(xz), Vector(101.25F, 202.25F, 302));
    EXPECT_EQ(view.GetSliceOffset(yz), Vector(102.75F, 201, 302));
    view.SetContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    EXPECT_EQ(view.GetSliceOffset(xy), Vector(101.25F, 201, 0));
    EXPECT_EQ(view.GetSliceOffset(xz), Vector(101.25F, 0, 302));
    EXPECT_EQ(view.GetSliceOffset(yz), Vector(0, 201, 302));
}

TEST(View, PixelsBecomeMicronsMirroredByTheFlagsOfXAndY) {
    View view = HalfVisible();
    view.scale = {4, 5, 8};
    EXPECT_EQ(view.HorizontalMicrons(xy, 8, 102), 103.25F); // 101.25 + 8 / 4
    EXPECT_EQ(view.VerticalMicrons(xy, 5, 82), 202.0F);
    EXPECT_EQ(view.HorizontalMicrons(yz, 8, 102), 303.0F); // Z: 302 + 8 / 8
    view.options.reversedX = true;
    EXPECT_EQ(view.HorizontalMicrons(xy, 8, 102), 124.5F);   // pixel 102 - 8 - 1 = 93, at 101.25 + 93 / 4
    EXPECT_EQ(view.HorizontalMicrons(yz, 8, 102), 313.625F); // by X's flag, though the axis is Z
    view.options.reversedZ = true;
    EXPECT_EQ(view.VerticalMicrons(xz, 8, 102), 303.0F); // Y's flag counts
}
