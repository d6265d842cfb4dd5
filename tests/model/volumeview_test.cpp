#include "model/zel_volumeview.h"
#include "tests/model/matrix_near.h"
#include "tests/support/comma_locale.h"

#include <cmath>

using namespace zel;

namespace {

constexpr Size window(200, 100);
constexpr Point centre(100, 50), right(150, 50), top(100, 0), rim(200, 50);

void Repeat(VolumeView& view, VolumeStep step, int times) {
    for (int i = 0; i < times; ++i)
        view.Step(step);
}

/// A turn by 90 degrees about z, which brings x to y.
Matrix4 QuarterTurn() {
    return RotationMatrix({90, {0, 0, 1}});
}

} // namespace

TEST(VolumeView, TheEyeStaysWhileTheObjectTurns) {
    VolumeView view; // 5 in front of the object
    ExpectNear(view.GetEye(), {0, 0, 5});
    for (const auto& direction : viewDirections) { // it looks along the direction, so it stands against it
        view.LookAlong(direction, -3.0F);
        ExpectNear(view.GetEye(), {-3 * direction.forward.x, -3 * direction.forward.y, -3 * direction.forward.z});
    }
}

TEST(VolumeView, StartsAsItIsAfterAReset) {
    const VolumeView view;
    EXPECT_EQ(view.sliceCount, 100);
    EXPECT_EQ(view.intensity, 0.5F);
    EXPECT_EQ(view.threshold, 0.5F);
    EXPECT_FALSE(view.isLeftDragging);
    EXPECT_FALSE(view.isRightDragging);
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
    EXPECT_EQ(view.objectRotation.axis, Vector3f(1, 0, 0));
    EXPECT_EQ(view.planeRotation.angle, 0.0F);
    EXPECT_EQ(view.planeRotation.axis, Vector3f(1, 0, 0));
    EXPECT_EQ(view.action, VolumeAction::None);
    EXPECT_EQ(view.pose.eyeDistance, -5.0F);
    EXPECT_EQ(view.pose.planeOffset, 1.0);
    EXPECT_FALSE(view.isMovingPlane);
    EXPECT_TRUE(view.showsBox);
    EXPECT_TRUE(view.showsPlane);
    EXPECT_EQ(view.background, (std::array<float, 3>{0, 0, 0}));
    EXPECT_EQ(view.pose.objectMatrix, identityMatrix);
    EXPECT_EQ(view.pose.planeMatrix, identityMatrix);
}

TEST(VolumeViewKeys, SlicesGoByTensAndNotBelowNone) {
    VolumeView view;
    view.Step(VolumeStep::MoreSlices);
    EXPECT_EQ(view.sliceCount, 110);
    Repeat(view, VolumeStep::FewerSlices, 10);
    EXPECT_EQ(view.sliceCount, 10);
    Repeat(view, VolumeStep::FewerSlices, 3);
    EXPECT_EQ(view.sliceCount, 0);
    Repeat(view, VolumeStep::MoreSlices, 1000); // no upper limit
    EXPECT_EQ(view.sliceCount, 10000);
    view.sliceCount = 5;
    view.Step(VolumeStep::FewerSlices);
    EXPECT_EQ(view.sliceCount, 0);
}

TEST(VolumeViewKeys, IntensityGoesByThirtySecondsFromNoneToOne) {
    VolumeView view;
    view.Step(VolumeStep::MoreIntensity);
    EXPECT_EQ(view.intensity, 17.0F / 32.0F);
    Repeat(view, VolumeStep::MoreIntensity, 20);
    EXPECT_EQ(view.intensity, 1.0F);
    view.Step(VolumeStep::LessIntensity);
    EXPECT_EQ(view.intensity, 31.0F / 32.0F);
    Repeat(view, VolumeStep::LessIntensity, 40);
    EXPECT_EQ(view.intensity, 0.0F);
    EXPECT_EQ(view.threshold, 0.5F);
}

TEST(VolumeViewKeys, ThresholdGoesByThirtySecondsFromNoneToOne) {
    VolumeView view;
    view.Step(VolumeStep::LessThreshold);
    EXPECT_EQ(view.threshold, 15.0F / 32.0F);
    Repeat(view, VolumeStep::LessThreshold, 20);
    EXPECT_EQ(view.threshold, 0.0F);
    view.Step(VolumeStep::MoreThreshold);
    EXPECT_EQ(view.threshold, 1.0F / 32.0F);
    Repeat(view, VolumeStep::MoreThreshold, 40);
    EXPECT_EQ(view.threshold, 1.0F);
    EXPECT_EQ(view.intensity, 0.5F);
}

TEST(VolumeViewKeys, ModeSwitchesForthAndBack) {
    VolumeView view;
    EXPECT_EQ(view.GetModeText(), "Mode: Moving Object");
    view.Step(VolumeStep::SwitchMode);
    EXPECT_TRUE(view.isMovingPlane);
    EXPECT_EQ(view.GetModeText(), "Mode: Moving Plane");
    view.Step(VolumeStep::SwitchMode);
    EXPECT_EQ(view.GetModeText(), "Mode: Moving Object");
}

TEST(VolumeViewTexts, TellTheSettings) {
    VolumeView view;
    EXPECT_EQ(view.GetSettingsText(), "# slices: 100, intensity: 0.500000, threshold: 0.500000");
    view.Step(VolumeStep::MoreSlices);
    view.Step(VolumeStep::MoreIntensity);
    view.Step(VolumeStep::LessThreshold);
    EXPECT_EQ(view.GetSettingsText(), "# slices: 110, intensity: 0.531250, threshold: 0.468750");
}

TEST(VolumeViewTexts, HaveTheLocalesDecimalPoint) {
    const CommaLocale german;
    EXPECT_EQ(VolumeView().GetSettingsText(), "# slices: 100, intensity: 0,500000, threshold: 0,500000");
}

TEST(ViewDirections, ShowTheSideThatTheMenuNames) {
    // For each: what of the object is to the right on the screen, what upwards, what towards the viewer.
    const std::array<std::array<float, 16>, 6> rows{{
        {0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 0, 1},   // along x: z, y, -x
        {0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1},   // against x: -z, y, x
        {-1, 0, 0, 0, 0, 0, -1, 0, 0, -1, 0, 0, 0, 0, 0, 1}, // along y: -x, -z, -y
        {1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1},   // against y: x, -z, y
        {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1},  // along z: -x, y, -z
        {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},    // against z: x, y, z
    }};
    for (std::size_t i = 0; i < viewDirections.size(); ++i) {
        SCOPED_TRACE(i);
        VolumeView view;
        view.pose.planeMatrix = QuarterTurn();
        view.pose.eyeDistance = -2;
        view.LookAlong(viewDirections[i], viewDirectionDistance);
        ExpectRows(view.pose.objectMatrix, rows[i], 0);
        EXPECT_EQ(view.pose.eyeDistance, -5.0F);
        EXPECT_EQ(view.pose.planeMatrix, QuarterTurn()) << "the plane stays in the object";
    }
}

TEST(VolumeViewMouse, LeftDragTurnsTheObject) {
    VolumeView view;
    view.PressLeft(centre, window);
    EXPECT_EQ(view.action, VolumeAction::RotateObject);
    EXPECT_TRUE(view.Drag(rim, window)); // from (0, 0, 1) to (1, 0, 0): 127.27922 degrees about y
    EXPECT_NEAR(view.objectRotation.angle, 127.27922F, 1e-4F);
    ExpectNear(view.objectRotation.axis, {0, 1, 0});
    EXPECT_EQ(view.planeRotation.angle, 0.0F);
    EXPECT_EQ(view.pose.objectMatrix, identityMatrix) << "nothing turns before the next picture";
    view.Advance();
    // cos = -0.6056998, sin = 0.7956932
    ExpectRows(view.pose.objectMatrix, {-0.6056998F, 0, 0.7956932F, 0,  //
                                        0, 1, 0, 0,                     //
                                        -0.7956932F, 0, -0.6056998F, 0, //
                                        0, 0, 0, 1});
}

TEST(VolumeViewMouse, DragGoesOnFromTheLastPlace) {
    VolumeView view;
    view.PressLeft(centre, window);
    view.Drag(right, window);
    EXPECT_NEAR(view.objectRotation.angle, 54.52298F, 1e-4F);
    view.Drag(right, window);
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
}

TEST(VolumeViewMouse, EveryPaintAppliesThePendingTurnAgain) {
    VolumeView view;
    view.action = VolumeAction::RotateObject;
    view.objectRotation = {90, {0, 0, 1}};
    view.Advance();
    view.Advance();
    ExpectRows(view.pose.objectMatrix, {-1, 0, 0, 0, //
                                        0, -1, 0, 0, //
                                        0, 0, 1, 0,  //
                                        0, 0, 0, 1});
    view.ReleaseLeft();
    view.Advance();
    EXPECT_NEAR(view.pose.objectMatrix[0], -1, 1e-6F);
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
    EXPECT_EQ(view.action, VolumeAction::None);
}

TEST(VolumeViewMouse, ObjectTurnsAboutAxesOfTheEye) {
    VolumeView view;
    view.pose.objectMatrix = QuarterTurn(); // the object's x points upwards
    view.action = VolumeAction::RotateObject;
    view.objectRotation = {90, {1, 0, 0}}; // what is upwards comes towards the viewer
    view.Advance();
    ExpectNear(ColumnOf(view.pose.objectMatrix, 0), {0, 0, 1});
}

TEST(VolumeViewMouse, PlaneTurnsAboutAxesOfTheEyeToo) {
    VolumeView view;
    view.pose.objectMatrix = QuarterTurn();
    view.isMovingPlane = true;
    view.PressLeft(centre, window);
    EXPECT_EQ(view.action, VolumeAction::RotatePlane);
    view.planeRotation = {90, {1, 0, 0}};
    view.Advance();
    // The eye's x is the object's -y. About it, the object's x, which is upwards, comes to the object's z: towards the
    // viewer.
    ExpectNear(ColumnOf(view.pose.planeMatrix, 0), {0, 0, 1});
    EXPECT_EQ(view.pose.objectMatrix, QuarterTurn());
}

TEST(VolumeViewMouse, LeftDragTurnsThePlaneWhenThatIsMoved) {
    VolumeView view;
    view.Step(VolumeStep::SwitchMode);
    view.PressLeft(centre, window);
    view.Drag(top, window); // from (0, 0, 1) to (0, 1, 0)
    ExpectNear(view.planeRotation.axis, {-1, 0, 0});
    EXPECT_NEAR(view.planeRotation.angle, 127.27922F, 1e-4F);
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
}

TEST(VolumeViewMouse, RightDragMovesTheObjectTowardsTheViewer) {
    VolumeView view;
    view.PressRight({10, 40});
    EXPECT_TRUE(view.Drag({10, 90}, window));
    EXPECT_FLOAT_EQ(view.pose.eyeDistance, -4.5F); // 50 pixels by 0.01
    EXPECT_TRUE(view.Drag({10, 80}, window));
    EXPECT_FLOAT_EQ(view.pose.eyeDistance, -4.6F);
    EXPECT_EQ(view.pose.planeOffset, 1.0);
}

TEST(VolumeViewMouse, RightDragMovesThePlaneAgainstItsOffset) {
    VolumeView view;
    view.Step(VolumeStep::SwitchMode);
    view.PressRight({10, 40});
    view.Drag({10, 90}, window);
    EXPECT_DOUBLE_EQ(view.pose.planeOffset, 0.5);
    EXPECT_EQ(view.pose.eyeDistance, -5.0F);
}

TEST(VolumeViewMouse, SecondPressOfTheRightButtonKeepsTheDragsPlace) {
    VolumeView view;
    view.PressRight({10, 40});
    view.PressRight({10, 90});
    view.Drag({10, 90}, window);
    EXPECT_FLOAT_EQ(view.pose.eyeDistance, -4.5F);
    view.ReleaseRight();
    EXPECT_FALSE(view.Drag({10, 10}, window));
    EXPECT_FLOAT_EQ(view.pose.eyeDistance, -4.5F);
}

TEST(VolumeViewMouse, BothButtonsTurnAndMove) {
    VolumeView view;
    view.PressLeft(centre, window);
    view.PressRight(centre);
    view.Drag(top, window);
    EXPECT_NEAR(view.objectRotation.angle, 127.27922F, 1e-4F);
    EXPECT_FLOAT_EQ(view.pose.eyeDistance, -5.5F);
}

TEST(VolumeViewMouse, PointerWithoutAButtonChangesNothing) {
    VolumeView view;
    EXPECT_FALSE(view.Drag(top, window));
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
    EXPECT_EQ(view.pose, VolumePose());
}

TEST(VolumeViewMouse, LeavingTheWindowEndsTheDrags) {
    VolumeView view;
    view.PressLeft(centre, window);
    view.PressRight(centre);
    view.Drag(top, window);
    view.Leave();
    EXPECT_FALSE(view.isLeftDragging);
    EXPECT_FALSE(view.isRightDragging);
    EXPECT_EQ(view.action, VolumeAction::None);
    EXPECT_EQ(view.objectRotation.angle, 0.0F);
    EXPECT_FALSE(view.Drag(rim, window));
}

TEST(VolumeViewMouse, SwitchingTheModeInADragKeepsTheActionThatWasBegun) {
    VolumeView view;
    view.PressLeft(centre, window);
    view.Drag(rim, window);
    view.Step(VolumeStep::SwitchMode);
    view.Drag(centre, window); // makes a turn of the plane, which isn't applied
    const Matrix4 plane = view.pose.planeMatrix, object = view.pose.objectMatrix;
    view.Advance();
    EXPECT_EQ(view.pose.planeMatrix, plane);
    EXPECT_NE(view.pose.objectMatrix, object);
}

TEST(VolumeView, StandsBeforeTheEye) {
    VolumeView view;
    view.pose.objectMatrix = QuarterTurn();
    ExpectRows(view.GetModelView(), {0, -1, 0, 0, //
                                     1, 0, 0, 0,  //
                                     0, 0, 1, -5, //
                                     0, 0, 0, 1});
}
