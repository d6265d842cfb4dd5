#include "model/zel_decorations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zel;

namespace {

constexpr int top = std::numeric_limits<int>::max();

using Strokes = std::vector<Stroke>;

// zel_styles.h brings a record with a font, which needs a running toolkit; the other records are plain.

TimeBarShape TimeBarAt(int position) {
    TimeBarShape style; // 50 long, 2 thick, offset 10, 10
    style.position = position;
    return style;
}

ScaleBarShape ScaleBarAt(int position) {
    ScaleBarShape style; // 2 thick, offset 10, 10
    style.position = position;
    return style;
}

/// The scale bar with a text of 30 x 12 and these legs in a window of 300 x 200.
ScaleBarGeometry ScaleBar(int position, const Size& legs) {
    ScaleBarGeometry bar;
    EXPECT_TRUE(LayOutScaleBar(ScaleBarAt(position), {30, 12}, legs, {300, 200}, bar));
    return bar;
}

} // namespace

TEST(Block, StandsAtItsCorner) {
    const Point offset(7, 5);
    const Size block(40, 20), window(300, 200);
    EXPECT_EQ(PlaceBlock(0, offset, block, window), Point(7, 5));
    EXPECT_EQ(PlaceBlock(1, offset, block, window), Point(300 - 7 - 40, 5));
    EXPECT_EQ(PlaceBlock(2, offset, block, window), Point(7, 200 - 5 - 20));
    EXPECT_EQ(PlaceBlock(3, offset, block, window), Point(300 - 7 - 40, 200 - 5 - 20));
    EXPECT_EQ(PlaceBlock(4, offset, block, window), Point(0, 0));
    EXPECT_EQ(PlaceBlock(-1, offset, block, window), Point(0, 0));
}

TEST(Block, MayStandOutsideTheWindow) {
    EXPECT_EQ(PlaceBlock(0, {-7, -5}, {40, 20}, {300, 200}), Point(-7, -5));
    EXPECT_EQ(PlaceBlock(3, {-7, -5}, {40, 20}, {300, 200}), Point(267, 185));
    EXPECT_EQ(PlaceBlock(3, {0, 0}, {40, 20}, {30, 10}), Point(-10, -10)); // larger than the window
    EXPECT_EQ(PlaceBlock(1, {top, -top}, {40, 20}, {300, 200}), Point(300 - 1000000 - 40, -1000000));
}

TEST(CutPointer, IsAtTheRoundedPlaceOfTheCut) {
    EXPECT_EQ(CutPointerPlace(5.0F, 2.0F, 10.0F), 30);
    EXPECT_EQ(CutPointerPlace(5.25F, 2.0F, 10.0F), 33);  // 32.5 + 0.5
    EXPECT_EQ(CutPointerPlace(5.125F, 2.0F, 10.0F), 31); // 31.25 + 0.5 = 31.75
    EXPECT_EQ(CutPointerPlace(2.0F, 2.0F, 10.0F), 0);
    EXPECT_EQ(CutPointerPlace(1.875F, 2.0F, 10.0F), 0); // -1.25 + 0.5 = -0.75, towards zero
    EXPECT_EQ(CutPointerPlace(1.75F, 2.0F, 10.0F), -2); // -2.5 + 0.5
    EXPECT_EQ(CutPointerPlace(1.5F, 2.0F, 10.0F), -4);  // -5 + 0.5 = -4.5
}

TEST(CutPointer, OutOfSightStaysDrawable) {
    EXPECT_EQ(CutPointerPlace(1e9F, 0.0F, 1e6F), 1000000);
    EXPECT_EQ(CutPointerPlace(0.0F, 1e9F, 1e6F), -1000000);
    EXPECT_EQ(CutPointerPlace(std::nanf(""), 0.0F, 1.0F), 0);
}

TEST(CutPointer, MarksTheSides) {
    const Strokes marks{{{0, 30}, {10, 30}}, {{290, 30}, {300, 30}}, {{70, 0}, {70, 10}}, {{70, 190}, {70, 200}}};
    EXPECT_EQ(CutPointerStrokes(1, {70, 30}, {300, 200}), marks);
    EXPECT_EQ(CutPointerStrokes(2, {70, 30}, {300, 200}), marks);
}

TEST(CutPointer, CrossesTheWindow) {
    const Strokes cross{{{0, 30}, {300, 30}}, {{70, 0}, {70, 200}}};
    for (const int style : {3, 4, 5})
        EXPECT_EQ(CutPointerStrokes(style, {70, 30}, {300, 200}), cross);
}

TEST(CutPointer, OtherStylesDrawNothing) {
    for (const int style : {0, -1, 6, top})
        EXPECT_EQ(CutPointerStrokes(style, {70, 30}, {300, 200}), Strokes{}) << style;
}

TEST(TimeBar, NeedsAPenAndTwoFrames) {
    TimeBarShape style;
    EXPECT_TRUE(HasTimeBar(style, 2));
    EXPECT_FALSE(HasTimeBar(style, 1));
    EXPECT_FALSE(HasTimeBar(style, 0));
    style.thickness = 1;
    EXPECT_TRUE(HasTimeBar(style, 2));
    for (const int none : {0, -3}) {
        style.thickness = none;
        EXPECT_FALSE(HasTimeBar(style, 2));
    }
}

TEST(TimeBar, StandsInEachCorner) {
    const Size text(40, 12), window(300, 200);
    // The block is 50 + 40 + 1 = 91 wide and 20 high, the larger of 12 and 20.
    struct Case {
        int position;
        Point corner;
    };
    for (const Case& c :
         {Case{0, {10, 10}}, Case{1, {199, 10}}, Case{2, {10, 170}}, Case{3, {199, 170}}, Case{7, {0, 0}}}) {
        const TimeBarGeometry bar = LayOutTimeBar(TimeBarAt(c.position), text, window, 0, 3);
        const int baseline = c.corner.y + 20;
        EXPECT_EQ(bar.text, Point(c.corner.x, baseline - 12)) << c.position;
        EXPECT_EQ(bar.bar, (Stroke{{c.corner.x + 41, baseline}, {c.corner.x + 91, baseline}})) << c.position;
        EXPECT_EQ(bar.marker, (Stroke{{c.corner.x + 41, baseline}, {c.corner.x + 41, baseline - 20}})) << c.position;
    }
}

TEST(TimeBar, MarkerRunsFromTheStartOfTheBarToItsEnd) {
    const Size text(40, 12), window(300, 200);
    const auto marker = [&](int frame, int count) {
        return LayOutTimeBar(TimeBarAt(0), text, window, frame, count).marker.from.x - 51; // the bar begins at 10 + 41
    };
    EXPECT_EQ(marker(0, 2), 0);
    EXPECT_EQ(marker(1, 2), 50);
    EXPECT_EQ(marker(1, 3), 25);
    EXPECT_EQ(marker(1, 4), 17); // 16.67
    EXPECT_EQ(marker(1, 5), 13); // 12.5 goes up
    EXPECT_EQ(marker(3, 9), 19); // 18.75
    EXPECT_EQ(marker(999, 1000), 50);
}

TEST(TimeBar, TallTextMakesATallerBlock) {
    // The block is 30 high; text and marker stand on the baseline 10 + 30.
    const TimeBarGeometry bar = LayOutTimeBar(TimeBarAt(0), {40, 30}, {300, 200}, 0, 2);
    EXPECT_EQ(bar.text, Point(10, 10));
    EXPECT_EQ(bar.bar.from, Point(51, 40));
    EXPECT_EQ(bar.marker.to, Point(51, 20));
}

TEST(TimeBar, GapIsHalfTheThickness) {
    TimeBarShape style = TimeBarAt(1);
    for (const auto& [thickness, gap] : {std::pair(1, 0), std::pair(2, 1), std::pair(5, 2), std::pair(99, 49)}) {
        style.thickness = thickness;
        const TimeBarGeometry bar = LayOutTimeBar(style, {40, 12}, {300, 200}, 0, 2);
        EXPECT_EQ(bar.bar.to.x, 290) << thickness; // the offset from the right
        EXPECT_EQ(bar.text.x, 290 - 50 - gap - 40) << thickness;
    }
}

TEST(TimeBar, ExcessiveNumbersStayNumbers) {
    TimeBarShape style = TimeBarAt(3);
    style.length = style.thickness = top;
    style.offset = {-top, -top};
    const TimeBarGeometry bar = LayOutTimeBar(style, {40, 12}, {300, 200}, top - 1, top);
    // Held at a million: 300 + 1000000 is the right end, and the marker is there.
    EXPECT_EQ(bar.bar.to, Point(1000300, 1000200));
    EXPECT_EQ(bar.marker.from.x, 1000300);
}

TEST(ScaleBar, TextHasTheDecimalsOfTheLength) {
    struct Case {
        float length;
        const char* text;
    };
    for (const Case& c :
         {Case{1.0F, "1"}, Case{2.5F, "2.5"}, Case{0.125F, "0.125"}, Case{10.0F, "10"}, Case{0.7F, "0.7"},
          Case{0.1F, "0.1"}, Case{0.0F, "0"}, Case{100.0F, "100"}, Case{-2.5F, "-2.5"}, Case{0.000001F, "0.000001"},
          Case{0.0625F, "0.0625"}, Case{0.03125F, "0.03125"}, Case{0.015625F, "0.015625"}})
        EXPECT_EQ(ScaleBarText(c.length), std::string(c.text) + " \xC2\xB5m: ")
            << c.length << " gives " << ScaleBarText(c.length);
}

TEST(ScaleBar, TextOfOddLengthsEnds) {
    // Below a millionth the truncated number is 0, and so is the number of decimals.
    EXPECT_EQ(ScaleBarText(1e-7F), "0 \xC2\xB5m: ");
    EXPECT_TRUE(
        ScaleBarText(std::numeric_limits<float>::max()).starts_with("340282346638528859811704183484516925440 "));
    for (const float odd : {std::nanf(""), std::numeric_limits<float>::infinity()})
        EXPECT_TRUE(ScaleBarText(odd).ends_with("\xC2\xB5m: "));
}

TEST(ScaleBar, LengthFollowsZoomPlusOne) {
    EXPECT_EQ(ScaleBarPixels(2.5F, 0, 8.0F), 20);
    EXPECT_EQ(ScaleBarPixels(2.5F, 1, 8.0F), 40);
    EXPECT_EQ(ScaleBarPixels(2.5F, 3, 8.0F), 80);
    EXPECT_EQ(ScaleBarPixels(2.5F, -1, 8.0F), 0);
    EXPECT_EQ(ScaleBarPixels(2.5F, -3, 8.0F), -40);
    EXPECT_EQ(ScaleBarPixels(0.3125F, 0, 6.0F), 1); // 1.875
    EXPECT_EQ(ScaleBarPixels(0.3125F, -2, 6.0F), -1);
    EXPECT_EQ(ScaleBarPixels(1e30F, 0, 8.0F), 1000000);
    EXPECT_EQ(ScaleBarPixels(1e30F, -2, 8.0F), -1000000);
    EXPECT_EQ(ScaleBarPixels(1.0F, top, 1.0F), 1000000);
    EXPECT_EQ(ScaleBarPixels(std::nanf(""), 0, 8.0F), 0);
}

TEST(ScaleBar, IsAnAngleWithItsCornerOutside) {
    // Text 30 x 12, legs 50 and 20, gap 1: the block is 81 x 20.
    const ScaleBarGeometry topLeft = ScaleBar(0, {50, 20}); // block at (10, 10)
    EXPECT_EQ(topLeft.text, Point(10, 10));
    EXPECT_EQ(topLeft.horizontal, (Stroke{{41, 10}, {91, 10}}));
    EXPECT_EQ(topLeft.vertical, (Stroke{{41, 10}, {41, 30}}));

    const ScaleBarGeometry topRight = ScaleBar(1, {50, 20}); // block at (300 - 10 - 81, 10) = (209, 10)
    EXPECT_EQ(topRight.text, Point(209, 10));
    EXPECT_EQ(topRight.horizontal, (Stroke{{290, 10}, {240, 10}}));
    EXPECT_EQ(topRight.vertical, (Stroke{{290, 10}, {290, 30}}));

    const ScaleBarGeometry bottomLeft = ScaleBar(2, {50, 20}); // block at (10, 200 - 10 - 20) = (10, 170)
    EXPECT_EQ(bottomLeft.text, Point(10, 178));
    EXPECT_EQ(bottomLeft.horizontal, (Stroke{{41, 190}, {91, 190}}));
    EXPECT_EQ(bottomLeft.vertical, (Stroke{{41, 190}, {41, 170}}));

    const ScaleBarGeometry bottomRight = ScaleBar(3, {50, 20}); // block at (209, 170)
    EXPECT_EQ(bottomRight.text, Point(209, 178));
    EXPECT_EQ(bottomRight.horizontal, (Stroke{{290, 190}, {240, 190}}));
    EXPECT_EQ(bottomRight.vertical, (Stroke{{290, 190}, {290, 170}}));
}

TEST(ScaleBar, ShortLegsLeaveTheTextItsHeight) {
    // The block is 12 high, as the text: at (10, 200 - 10 - 12).
    const ScaleBarGeometry bar = ScaleBar(2, {5, 3});
    EXPECT_EQ(bar.text, Point(10, 178));
    EXPECT_EQ(bar.vertical, (Stroke{{41, 190}, {41, 187}}));
}

TEST(ScaleBar, NegativeLegsPointTheOtherWay) {
    // Zoom below -1. The block is 30 + 1 - 50 = -19 wide and 12 high.
    const ScaleBarGeometry left = ScaleBar(2, {-50, -20}); // block at (10, 178)
    EXPECT_EQ(left.horizontal, (Stroke{{41, 190}, {-9, 190}}));
    EXPECT_EQ(left.vertical, (Stroke{{41, 190}, {41, 210}}));
    const ScaleBarGeometry right = ScaleBar(1, {-50, -20}); // block at (300 - 10 + 19, 10) = (309, 10)
    EXPECT_EQ(right.text, Point(309, 10));
    EXPECT_EQ(right.horizontal, (Stroke{{290, 10}, {340, 10}}));
    EXPECT_EQ(right.vertical, (Stroke{{290, 10}, {290, -10}}));
}

TEST(ScaleBar, NeedsAPenAndACorner) {
    ScaleBarGeometry bar;
    for (const int position : {-1, 4, top})
        EXPECT_FALSE(LayOutScaleBar(ScaleBarAt(position), {30, 12}, {50, 20}, {300, 200}, bar));
    ScaleBarShape style = ScaleBarAt(0);
    for (const int thickness : {0, -1}) {
        style.thickness = thickness;
        EXPECT_FALSE(LayOutScaleBar(style, {30, 12}, {50, 20}, {300, 200}, bar));
    }
    style.thickness = 1; // no gap
    EXPECT_TRUE(LayOutScaleBar(style, {30, 12}, {50, 20}, {300, 200}, bar));
    EXPECT_EQ(bar.horizontal.from, Point(40, 10));
}
