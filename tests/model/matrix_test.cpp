#include "model/zel_matrix.h"
#include "tests/model/matrix_near.h"

#include <cmath>
#include <limits>

using namespace zel;

namespace {

/// Where a matrix puts a place.
Vector3f Place(const Matrix4& matrix, const Vector3f& at) {
    Vector3f place = TurnDirection(matrix, at);
    place += ColumnOf(matrix, 3);
    return place;
}

} // namespace

TEST(Matrix, MirrorsWithAnOddNumberOfAxes) {
    const auto scale = [](float x, float y, float z) { return ScaleMatrix({x, y, z}); };
    for (const Matrix4& plain :
         {identityMatrix, scale(-1, 1, -0.1F), RotationMatrix({200, {1, 2, 3}}), TranslationMatrix({-5, -5, -5})})
        EXPECT_FALSE(IsMirroring(plain));
    for (const Matrix4& mirroring :
         {scale(1, -1, 1), scale(-2, -3, -4), Multiply(RotationMatrix({77, {3, 1, -1}}), scale(0.1F, 0.1F, -0.1F))})
        EXPECT_TRUE(IsMirroring(mirroring));
}

TEST(Matrix, IsKeptColumnByColumn) {
    ExpectRows(TranslationMatrix({1, 2, 3}), {1, 0, 0, 1, //
                                              0, 1, 0, 2, //
                                              0, 0, 1, 3, //
                                              0, 0, 0, 1});
    EXPECT_EQ(TranslationMatrix({1, 2, 3})[13], 2.0F);
    EXPECT_EQ(ColumnOf(TranslationMatrix({1, 2, 3}), 3), Vector3f(1, 2, 3));
}

TEST(Matrix, ProductDoesTheRightFactorFirst) {
    const Matrix4 move = TranslationMatrix({1, 2, 3}), scale = ScaleMatrix({2, 3, 4});
    ExpectRows(Multiply(move, scale), {2, 0, 0, 1, //
                                       0, 3, 0, 2, //
                                       0, 0, 4, 3, //
                                       0, 0, 0, 1});
    ExpectRows(Multiply(scale, move), {2, 0, 0, 2,  // 2 * 1, 3 * 2, 4 * 3
                                       0, 3, 0, 6,  //
                                       0, 0, 4, 12, //
                                       0, 0, 0, 1});
}

TEST(Matrix, ProductTakesRowsOfTheLeftAndColumnsOfTheRight) {
    Matrix4 left{}, right{};
    for (std::size_t i = 0; i < 16; ++i) {
        left[i] = static_cast<float>(i + 1);
        right[i] = static_cast<float>(i);
    }
    const Matrix4 product = Multiply(left, right);
    EXPECT_EQ(product[0], 1.0F * 0 + 5 * 1 + 9 * 2 + 13 * 3);
    EXPECT_EQ(product[4 * 2 + 1], 2.0F * 8 + 6 * 9 + 10 * 10 + 14 * 11);
    EXPECT_EQ(product[15], 4.0F * 12 + 8 * 13 + 12 * 14 + 16 * 15);
}

TEST(Matrix, RotationGoesCounterclockwiseRoundItsAxis) {
    ExpectRows(RotationMatrix({90, {0, 0, 1}}), {0, -1, 0, 0, // x comes to y, y to -x
                                                 1, 0, 0, 0,  //
                                                 0, 0, 1, 0,  //
                                                 0, 0, 0, 1});
    ExpectRows(RotationMatrix({30, {1, 0, 0}}), {1, 0, 0, 0,              //
                                                 0, 0.8660254F, -0.5F, 0, //
                                                 0, 0.5F, 0.8660254F, 0,  //
                                                 0, 0, 0, 1});
    ExpectRows(RotationMatrix({90, {0, 1, 0}}), {0, 0, 1, 0,  // z comes to x, x to -z
                                                 0, 1, 0, 0,  //
                                                 -1, 0, 0, 0, //
                                                 0, 0, 0, 1});
}

TEST(Matrix, RotationTakesAnAxisOfAnyLength) {
    // A third of a turn about the diagonal takes x to y, y to z and z to x.
    for (const float length : {1e-6F, 1.0F, 250.0F})
        ExpectRows(RotationMatrix({120, {length, length, length}}), {0, 0, 1, 0, //
                                                                     1, 0, 0, 0, //
                                                                     0, 1, 0, 0, //
                                                                     0, 0, 0, 1});
}

TEST(Matrix, RotationThatIsNoneLeavesThingsAlone) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(RotationMatrix({0, {1, 0, 0}}), identityMatrix);
    EXPECT_EQ(RotationMatrix({45, {0, 0, 0}}), identityMatrix);
    EXPECT_EQ(RotationMatrix({45, {nan, 0, 1}}), identityMatrix);
    EXPECT_EQ(RotationMatrix({45, {inf, 0, 1}}), identityMatrix);
    EXPECT_EQ(RotationMatrix({nan, {0, 0, 1}}), identityMatrix);
}

TEST(Matrix, InverseRotationTurnsBackAndLeavesTheTranslationOut) {
    const Matrix4 matrix = Multiply(TranslationMatrix({0, 0, -5}), RotationMatrix({90, {0, 0, 1}}));
    ExpectRows(InverseRotation(matrix), {0, 1, 0, 0,  //
                                         -1, 0, 0, 0, //
                                         0, 0, 1, 0,  //
                                         0, 0, 0, 1});
}

TEST(Matrix, InverseRotationKeepsTheLastRow) {
    Matrix4 matrix = identityMatrix;
    matrix[3] = 7.0F;
    matrix[15] = 2.0F;
    EXPECT_EQ(InverseRotation(matrix), matrix);
}

TEST(Matrix, DirectionIsTurnedAndNotMoved) {
    const Matrix4 matrix = Multiply(TranslationMatrix({10, 20, 30}), RotationMatrix({90, {0, 0, 1}}));
    ExpectNear(TurnDirection(matrix, {2, 3, 4}), {-3, 2, 4});
}

TEST(Matrix, PerspectiveSeesFortyDegreesFromBottomToTop) {
    const std::array<double, 16> matrix = PerspectiveMatrix(600, 300);
    const double f = 2.7474774194546225; // 1 / tan(20 degrees)
    const std::array<double, 16> expected{f / 2,
                                          0,
                                          0,
                                          0,
                                          0,
                                          f,
                                          0,
                                          0,
                                          0,
                                          0,
                                          -1.0040080160320641,
                                          -1, //
                                          0,
                                          0,
                                          -0.20040080160320642,
                                          0};
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(matrix[i], expected[i], 1e-14) << i;
}

TEST(Matrix, PerspectivePutsNearAndFarAtTheEndsOfTheDepth) {
    const std::array<double, 16> matrix = PerspectiveMatrix(100, 100);
    const auto depth = [&](double z) { return (matrix[10] * z + matrix[14]) / (matrix[11] * z); };
    EXPECT_NEAR(depth(-0.1), -1.0, 1e-12);
    EXPECT_NEAR(depth(-50), 1.0, 1e-12);
}

TEST(Matrix, LookingAlongADirectionPutsItIntoTheScreen) {
    // The rows: what is to the right on the screen, what is upwards, what comes towards the viewer.
    ExpectRows(LookAlongMatrix({1, 0, 0}, {0, 1, 0}), {0, 0, 1, 0,  //
                                                       0, 1, 0, 0,  //
                                                       -1, 0, 0, 0, //
                                                       0, 0, 0, 1});
    ExpectRows(LookAlongMatrix({0, 1, 0}, {0, 0, -1}), {-1, 0, 0, 0, //
                                                        0, 0, -1, 0, //
                                                        0, -1, 0, 0, //
                                                        0, 0, 0, 1});
}

TEST(Matrix, LookingAlongIsNotNormalised) {
    // Right: (0, 0, -2) x (0, 3, 0) = (6, 0, 0). Upwards: (6, 0, 0) x (0, 0, -2) = (0, 12, 0).
    ExpectRows(LookAlongMatrix({0, 0, -2}, {0, 3, 0}), {6, 0, 0, 0,  //
                                                        0, 12, 0, 0, //
                                                        0, 0, 2, 0,  //
                                                        0, 0, 0, 1});
}

TEST(TextureMatrix, PutsTheCentreBeforeTheEyeAtTheTexturesCentre) {
    const Matrix4 matrix = TextureMatrix({1, 1, 0.5F}, identityMatrix, -5);
    ExpectNear(Place(matrix, {0, 0, -5}), {0.5F, 0.5F, 0.5F});
    ExpectNear(Place(matrix, {1, 1, -4}), {1, 1, 1});
    ExpectNear(Place(matrix, {-1, -1, -6}), {0, 0, 0});
}

TEST(TextureMatrix, ScalesAlongTheObjectsAxes) {
    // The object is turned by 90 degrees about z: its x points upwards, its y to the left.
    const Matrix4 back = InverseRotation(RotationMatrix({90, {0, 0, 1}}));
    const Matrix4 matrix = TextureMatrix({2, 3, 0.25F}, back, -4);
    ExpectNear(Place(matrix, {0, 1, -4}), {1.5F, 0.5F, 0.5F});  // 0.5 + 0.5 * 2
    ExpectNear(Place(matrix, {1, 0, -4}), {0.5F, -1.0F, 0.5F}); // 0.5 - 0.5 * 3
    ExpectNear(Place(matrix, {0, 0, -2}), {0.5F, 0.5F, 1.0F});  // 0.5 + 1 * 0.25 * 2
}
