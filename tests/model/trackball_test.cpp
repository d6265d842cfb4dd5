#include "model/zel_trackball.h"
#include "tests/model/matrix_near.h"

using namespace zel;

TEST(Trackball, PointerTouchesABallThatFillsTheWindow) {
    const Size window(200, 100);
    ExpectNear(ProjectToSphere({100, 50}, window), {0, 0, 1});
    ExpectNear(ProjectToSphere({200, 50}, window), {1, 0, 0});
    ExpectNear(ProjectToSphere({0, 50}, window), {-1, 0, 0});
    ExpectNear(ProjectToSphere({100, 0}, window), {0, 1, 0}); // the window's top is up
    ExpectNear(ProjectToSphere({100, 100}, window), {0, -1, 0});
}

TEST(Trackball, HeightOfTheBallFollowsACosine) {
    // x = 0.5, y = 0, z = cos(45 degrees) = 0.7071068, of length sqrt(0.25 + 0.5) = 0.8660254
    ExpectNear(ProjectToSphere({150, 50}, {200, 100}), {0.5773503F, 0, 0.8164966F});
    ExpectNear(ProjectToSphere({100, 75}, {200, 100}), {0, -0.5773503F, 0.8164966F});
}

TEST(Trackball, PointerBesideTheBallIsOnItsRim) {
    ExpectNear(ProjectToSphere({200, 0}, {200, 100}), {0.7071068F, 0.7071068F, 0});
    ExpectNear(ProjectToSphere({-500, 50}, {200, 100}), {-1, 0, 0});
}

TEST(Trackball, WindowWithoutAnExtentHasItsCentreTouched) {
    EXPECT_EQ(ProjectToSphere({3, 4}, {0, 100}), Vector3f(0, 0, 1));
    EXPECT_EQ(ProjectToSphere({3, 4}, {100, 0}), Vector3f(0, 0, 1));
}

TEST(Trackball, DragTurnsByNinetyDegreesForEachRadiusOfStraightWay) {
    const Rotation quarter = RotationBetween({1, 0, 0}, {0, 1, 0});
    EXPECT_NEAR(quarter.angle, 127.27922F, 1e-5F); // 90 * sqrt(2)
    ExpectNear(quarter.axis, {0, 0, 1});
    EXPECT_NEAR(RotationBetween({-1, 0, 0}, {1, 0, 0}).angle, 180.0F, 1e-5F);
}

TEST(Trackball, DragToTheRightTurnsTheFrontToTheRight) {
    // (0.5773503, 0, -0.1835034) is 0.6058109 long.
    const Rotation rotation = RotationBetween({0, 0, 1}, {0.5773503F, 0, 0.8164966F});
    EXPECT_NEAR(rotation.angle, 54.52298F, 1e-4F);
    ExpectNear(rotation.axis, {0, 0.5773503F, 0});
    EXPECT_GT(TurnDirection(RotationMatrix(rotation), {0, 0, 1}).x, 0.0F);
}

TEST(Trackball, PointerThatStandsStillTurnsNothing) {
    const Vector3f place = ProjectToSphere({37, 81}, {200, 100});
    const Rotation rotation = RotationBetween(place, place);
    EXPECT_EQ(rotation.angle, 0.0F);
    EXPECT_EQ(RotationMatrix(rotation), identityMatrix);
}
