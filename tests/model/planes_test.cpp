#include "model/zel_geometry.h"
#include "model/zel_planes.h"

#include <gtest/gtest.h>

using namespace zel;

TEST(Planes, EachAxisRunsWhereItsWindowShowsIt) {
    EXPECT_EQ(*FindPlane(zel_PT_XY), (Plane{zel_PT_XY, Axis::X, Axis::Y, Axis::Z, false}));
    EXPECT_EQ(*FindPlane(zel_PT_XZ), (Plane{zel_PT_XZ, Axis::X, Axis::Z, Axis::Y, false}));
    EXPECT_EQ(*FindPlane(zel_PT_YZ), (Plane{zel_PT_YZ, Axis::Z, Axis::Y, Axis::X, true}));
}

TEST(Planes, OnlyTheThreeSingleMasksNameOne) {
    for (const int mask : {0, 3, 5, 6, 7, 8, -1})
        EXPECT_EQ(FindPlane(static_cast<zel_ProjectionType>(mask)), nullptr) << mask;
}

TEST(Planes, AnAxisRunsInTwoOfThem) {
    EXPECT_EQ(PlanesAlong(Axis::X), zel_PT_XY | zel_PT_XZ);
    EXPECT_EQ(PlanesAlong(Axis::Y), zel_PT_XY | zel_PT_YZ);
    EXPECT_EQ(PlanesAlong(Axis::Z), zel_PT_XZ | zel_PT_YZ);
}

TEST(Planes, TheTwoOthersStandBeside) {
    EXPECT_EQ(PlanesBeside(*FindPlane(zel_PT_XY)), 6);
    EXPECT_EQ(PlanesBeside(*FindPlane(zel_PT_XZ)), 5);
    EXPECT_EQ(PlanesBeside(*FindPlane(zel_PT_YZ)), 3);
}

TEST(Planes, PointsOfAWindowBecomePointsOfTheImage) {
    using Vector = kep::Vector3d<float>;
    EXPECT_EQ(ToImage(*FindPlane(zel_PT_XY), Vector(1, 2, 3)), Vector(1, 2, 3));
    EXPECT_EQ(ToImage(*FindPlane(zel_PT_XZ), Vector(1, 2, 3)), Vector(1, 3, 2));
    EXPECT_EQ(ToImage(*FindPlane(zel_PT_YZ), Vector(1, 2, 3)), Vector(3, 2, 1));
}

TEST(Planes, OneValueForEachIsFoundByItsType) {
    PerPlane<int> numbers{{10, 20, 40}};
    numbers[zel_PT_XZ] += 5;
    EXPECT_EQ(numbers[zel_PT_XY], 10);
    EXPECT_EQ(numbers[zel_PT_XZ], 25);
    EXPECT_EQ(numbers[zel_PT_YZ], 40);
}

namespace {

/// As toolkits have them.
struct ForeignPoint {
    ForeignPoint(int newX, int newY) : x(newX), y(newY) {}
    int x, y;
};
struct ForeignRectangle {
    ForeignRectangle(int newX, int newY, int w, int h) : x(newX), y(newY), width(w), height(h) {}
    int x, y, width, height;
};

} // namespace

TEST(Geometry, TurnsIntoAToolkitsOwnAndBack) {
    const ForeignPoint point = Point(3, 4);
    EXPECT_EQ(point.x, 3);
    EXPECT_EQ(point.y, 4);
    const Size size = ForeignPoint(5, 6);
    EXPECT_EQ(size, Size(5, 6));
    EXPECT_TRUE(Point(7, 8) == ForeignPoint(7, 8));
    EXPECT_FALSE(Point(7, 8) == ForeignPoint(7, 9));
    const ForeignRectangle rectangle = Rect(1, 2, 30, 40);
    EXPECT_EQ(rectangle.height, 40);
    EXPECT_TRUE(Rect(1, 2, 30, 40) == rectangle);
    EXPECT_FALSE(Rect(1, 2, 31, 40) == rectangle);
}
