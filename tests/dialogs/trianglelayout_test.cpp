#include "dialogs/zel_trianglelayout.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zel;

namespace {

TriangleRow Row(int left, int middle, int right, bool showGamma, bool allowCrossing = false) {
    TriangleRow row;
    row.left = left;
    row.middle = middle;
    row.right = right;
    row.showGamma = showGamma;
    row.allowCrossing = allowCrossing;
    return row;
}

int MiddleAt(double gamma, int left, int right) {
    TriangleRow row = Row(left, 0, right, true);
    row.gamma = gamma;
    return MiddlePosition(row);
}

TEST(TriangleLayout, MiddleFollowsGamma) {
    EXPECT_EQ(60, MiddleAt(1.0, 10, 110));
    EXPECT_EQ(10, MiddleAt(10.0, 10, 110));
    EXPECT_EQ(110, MiddleAt(0.1, 10, 110));
    EXPECT_EQ(45, MiddleAt(2.0, 10, 110)) << "10 + round(0.69897 * 50 = 34.95)";
    EXPECT_EQ(128, MiddleAt(1.0, 0, 255)) << "127.5";
    EXPECT_EQ(60, MiddleAt(1.0, 110, 10)) << "crossed";
    EXPECT_EQ(7, MiddleAt(5.0, 7, 7));
}

TEST(TriangleLayout, MiddleBearsWrongGammas) {
    EXPECT_EQ(10, MiddleAt(-1.0, 10, 110));
    EXPECT_GT(MiddleAt(0.0, 10, 110), 110);
    EXPECT_EQ(10, MiddleAt(std::numeric_limits<double>::quiet_NaN(), 10, 110));
}

TEST(TriangleLayout, RowsOfMillionsAreNoDifferentFromShortOnes) {
    constexpr int last = (1 << 25) - 1;
    EXPECT_EQ(1 << 24, MiddleAt(1.0, 0, last)) << "16777215.5";
    EXPECT_EQ(last, PositionUnderMouse(10000, last + 1, 260));
    EXPECT_EQ(258, TipOfTriangle(last, last + 1, 260));
}

TEST(TriangleLayout, TheLongestRowStaysWithinInt) {
    constexpr int count = std::numeric_limits<int>::max();
    EXPECT_EQ((1 << 30) - 1, MiddleAt(1.0, 0, count - 1)) << "half of 2^31 - 2";
    EXPECT_EQ(count, MiddleAt(0.0, 0, count - 1)) << "far beyond, and held";
    EXPECT_EQ(count - 1, PositionUnderMouse(10000, count, 260));
    EXPECT_EQ(0, PositionUnderMouse(-10000, count, 260));
    EXPECT_EQ(258, TipOfTriangle(count - 1, count, 260));
    EXPECT_GT(TipOfTriangle(count, 2, 260), 258) << "far to the right";
    EXPECT_EQ(zel_triangleLeft, ChooseTriangle(Row(0, -count, count - 1, true), count - 1)) << "the middle is further";
}

TEST(TriangleLayout, GammaFollowsTheMiddle) {
    EXPECT_DOUBLE_EQ(1.0, GammaAtPosition(Row(10, 0, 110, true), 60).value());
    EXPECT_DOUBLE_EQ(10.0, GammaAtPosition(Row(10, 0, 110, true), 10).value());
    EXPECT_DOUBLE_EQ(0.1, GammaAtPosition(Row(10, 0, 110, true), 110).value());
    // half = 127.5, rounded 128: at 0 it is 10^(128 / 127.5) = 10.09, cut; at 255 10^(-127 / 127.5) = 0.10091.
    EXPECT_DOUBLE_EQ(10.0, GammaAtPosition(Row(0, 0, 255, true), 0).value());
    EXPECT_NEAR(0.10091, GammaAtPosition(Row(0, 0, 255, true), 255).value(), 5e-6);
    EXPECT_EQ(std::nullopt, GammaAtPosition(Row(9, 9, 9, true), 9));
}

TEST(TriangleLayout, TipsRunFromTheThirdPixelToTheThirdLast) {
    EXPECT_EQ(2, TipOfTriangle(0, 256, 260));
    EXPECT_EQ(258, TipOfTriangle(255, 256, 260));
    EXPECT_EQ(130, TipOfTriangle(128, 256, 260)) << "128 * 256 / 255 + 2 = 130.5";
    EXPECT_EQ(258, TipOfTriangle(65535, 65536, 260));
    EXPECT_EQ(2, TipOfTriangle(0, 1, 260)) << "one position";
}

TEST(TriangleLayout, MouseFindsItsPosition) {
    EXPECT_EQ(0, PositionUnderMouse(2, 256, 260));
    EXPECT_EQ(128, PositionUnderMouse(131, 256, 260)) << "129 / 258 * 256";
    EXPECT_EQ(126, PositionUnderMouse(129, 256, 260)) << "127 / 258 * 256 = 126.02";
    EXPECT_EQ(255, PositionUnderMouse(259, 256, 260)) << "255.01";
    EXPECT_EQ(255, PositionUnderMouse(5000, 256, 260));
    EXPECT_EQ(0, PositionUnderMouse(-5000, 256, 260));
    EXPECT_EQ(0, PositionUnderMouse(100, 1, 260));
    EXPECT_EQ(0, PositionUnderMouse(1, 256, 2));
}

TEST(TriangleLayout, PressTakesTheNearestTriangle) {
    struct Case {
        int left, middle, right, position;
        TriangleId chosen;
    };
    for (const Case& c : {
             Case{10, 60, 110, 0, zel_triangleLeft},
             Case{10, 60, 110, 34, zel_triangleLeft},
             Case{10, 60, 110, 35, zel_triangleLeft}, // as near to the middle
             Case{10, 60, 110, 36, zel_triangleMiddle},
             Case{10, 60, 110, 85, zel_triangleMiddle}, // as near to the right
             Case{10, 60, 110, 86, zel_triangleRight},
             Case{10, 60, 110, 200, zel_triangleRight},
             Case{50, 50, 110, 50, zel_triangleLeft}, // middle on left: the pointer's side decides
             Case{50, 50, 110, 40, zel_triangleLeft},
             Case{50, 50, 110, 51, zel_triangleMiddle},
             Case{10, 80, 80, 79, zel_triangleMiddle}, // middle on right
             Case{10, 80, 80, 80, zel_triangleMiddle},
             Case{10, 80, 80, 81, zel_triangleRight},
             Case{50, 50, 50, 49, zel_triangleLeft}, // all three
             Case{50, 50, 50, 51, zel_triangleMiddle},
         })
        EXPECT_EQ(c.chosen, ChooseTriangle(Row(c.left, c.middle, c.right, true), c.position))
            << c.left << ", " << c.middle << ", " << c.right << " at " << c.position;
}

TEST(TriangleLayout, PressWithoutGammaTakesTheNearestOuterOne) {
    EXPECT_EQ(zel_triangleLeft, ChooseTriangle(Row(10, 60, 110, false), 60)) << "as near to both";
    EXPECT_EQ(zel_triangleRight, ChooseTriangle(Row(10, 60, 110, false), 61));
    EXPECT_EQ(zel_triangleLeft, ChooseTriangle(Row(50, 50, 50, false), 70));
    EXPECT_EQ(zel_triangleRight, ChooseTriangle(Row(110, 60, 10, false, true), 20)) << "crossed";
}

TEST(TriangleLayout, OuterTrianglesStopAtEachOther) {
    const TriangleRow row = Row(10, 60, 110, true);
    EXPECT_EQ(40, DragTriangle(row, zel_triangleLeft, 40));
    EXPECT_EQ(110, DragTriangle(row, zel_triangleLeft, 150));
    EXPECT_EQ(10, DragTriangle(row, zel_triangleRight, 3));
    EXPECT_EQ(200, DragTriangle(row, zel_triangleRight, 200));
    EXPECT_EQ(std::nullopt, DragTriangle(row, zel_triangleLeft, 10));
    EXPECT_EQ(std::nullopt, DragTriangle(row, zel_triangleRight, 110));
}

TEST(TriangleLayout, OuterTrianglesCrossWhereTheyMay) {
    const TriangleRow row = Row(10, 60, 110, false, true);
    EXPECT_EQ(150, DragTriangle(row, zel_triangleLeft, 150));
    EXPECT_EQ(3, DragTriangle(row, zel_triangleRight, 3));
}

TEST(TriangleLayout, MiddleStaysBetweenTheOthers) {
    const TriangleRow row = Row(10, 60, 110, true);
    EXPECT_EQ(std::nullopt, DragTriangle(row, zel_triangleMiddle, 9));
    EXPECT_EQ(10, DragTriangle(row, zel_triangleMiddle, 10));
    EXPECT_EQ(110, DragTriangle(row, zel_triangleMiddle, 110));
    EXPECT_EQ(std::nullopt, DragTriangle(row, zel_triangleMiddle, 111));
    EXPECT_EQ(std::nullopt, DragTriangle(row, zel_triangleNone, 50));
}

TEST(TriangleLayout, MiddleColourIsHalfTheDifference) {
    EXPECT_EQ(wxColour(127, 127, 127), MiddleColour(wxColour(0, 0, 0), wxColour(255, 255, 255)));
    EXPECT_EQ(wxColour(127, 127, 127), MiddleColour(wxColour(255, 255, 255), wxColour(0, 0, 0)));
    EXPECT_EQ(wxColour(0, 25, 2), MiddleColour(wxColour(9, 100, 20), wxColour(9, 50, 25)));
}

TEST(TriangleLayout, RowsInsideABlackOutline) {
    const wxColour red(255, 0, 0);
    const auto lines = LayOutTriangle(100, red);
    ASSERT_EQ(11U, lines.size());
    const int halves[] = {0, 0, 1, 1, 2, 2, 3, 3};
    for (int row = 0; row < 8; ++row) {
        const TriangleLine& line = lines[static_cast<std::size_t>(row)];
        EXPECT_EQ(wxPoint(100 - halves[row], row), line.from);
        EXPECT_EQ(wxPoint(100 + halves[row], row), line.to);
        EXPECT_EQ(red, line.colour);
    }
    const wxPoint outline[][2] = {{{100, 0}, {97, 7}}, {{100, 0}, {103, 7}}, {{97, 7}, {104, 7}}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(outline[i][0], lines[8 + i].from);
        EXPECT_EQ(outline[i][1], lines[8 + i].to);
        EXPECT_EQ(*wxBLACK, lines[8 + i].colour);
    }
}

} // namespace
