#include "model/zel_clippingplane.h"
#include "tests/model/matrix_near.h"

#include <set>
#include <tuple>

using namespace zel;

namespace {

void ExpectCorners(const ClippingPlane& plane, const std::array<Vector3f, 4>& expected) {
    for (std::size_t i = 0; i < 4; ++i)
        ExpectNear(plane.corners[i], expected[i]);
}

void ExpectEquation(const ClippingPlane& plane, const std::array<double, 4>& expected) {
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(plane.equation[i], expected[i], 1e-7) << i;
}

} // namespace

TEST(ClippingPlane, StandsAcrossXAtFirst) {
    const ClippingPlane plane = MakeClippingPlane(identityMatrix, 1.0);
    ExpectEquation(plane, {-1, 0, 0, 1}); // what lies at x <= 1 stays
    ExpectCorners(plane, {{{1, -0.8F, -0.8F}, {1, -0.8F, 0.8F}, {1, 0.8F, -0.8F}, {1, 0.8F, 0.8F}}});
}

TEST(ClippingPlane, TurnsWithItsMatrix) {
    // Columns (0, 1, 0), (-1, 0, 0), (0, 0, 1): it stands across y, and its second direction is -x.
    const ClippingPlane plane = MakeClippingPlane(RotationMatrix({90, {0, 0, 1}}), 0.5);
    ExpectEquation(plane, {0, -1, 0, 0.5});
    ExpectCorners(plane, {{{0.8F, 0.5F, -0.8F}, {0.8F, 0.5F, 0.8F}, {-0.8F, 0.5F, -0.8F}, {-0.8F, 0.5F, 0.8F}}});
}

TEST(ClippingPlane, KeepsItsOffsetInDoublePrecision) {
    EXPECT_EQ(MakeClippingPlane(identityMatrix, 0.1).equation[3], 0.1);
}

TEST(ClippingPlane, TellsOnWhichSideAPlaceIs) {
    const ClippingPlane across = MakeClippingPlane(identityMatrix, 0.5); // x <= 0.5 stays
    EXPECT_TRUE(Keeps(across, {0.4F, 9, 9}));
    EXPECT_TRUE(Keeps(across, {0.5F, 0, 0}));
    EXPECT_FALSE(Keeps(across, {0.6F, -9, -9}));
    const ClippingPlane turned = MakeClippingPlane(RotationMatrix({90, {0, 0, 1}}), -2.0); // y <= -2
    EXPECT_TRUE(Keeps(turned, {5, -2.1F, 0}));
    EXPECT_FALSE(Keeps(turned, {-5, -1.9F, 0}));
}

TEST(ClippingPlane, OutlineHasTheSidesOfTheSquare) {
    const ClippingPlane plane = MakeClippingPlane(RotationMatrix({40, {1, 2, 3}}), -0.3);
    for (std::size_t i = 0; i < planeOutline.size(); i += 2) {
        Vector3f side = plane.corners[planeOutline[i]];
        side -= plane.corners[planeOutline[i + 1]];
        EXPECT_NEAR(side.x * side.x + side.y * side.y + side.z * side.z, 1.6F * 1.6F, 1e-5F) << i;
        EXPECT_EQ(planeOutline[i], planeQuad[i / 2]);
    }
}

TEST(VolumeBox, HasTheTwelveEdgesOfACube) {
    constexpr std::array<Vector3f, 24> lines = MakeBoxLines();
    const auto key = [](const Vector3f& p) { return std::tuple(p.x, p.y, p.z); };
    std::set<std::pair<std::tuple<float, float, float>, std::tuple<float, float, float>>> edges;
    for (std::size_t i = 0; i < lines.size(); i += 2) {
        const Vector3f a = lines[i], b = lines[i + 1];
        for (const float c : {a.x, a.y, a.z, b.x, b.y, b.z})
            EXPECT_EQ(c * c, 1.0F);
        EXPECT_EQ(int{a.x != b.x} + int{a.y != b.y} + int{a.z != b.z}, 1) << "along one axis";
        edges.insert(std::minmax(key(a), key(b)));
    }
    EXPECT_EQ(edges.size(), 12U);
}
