#include "model/zel_iconpicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zel {
namespace {

/// The pixel of a column and a row.
Colour Made(int x, int y) {
    return {static_cast<unsigned char>(x), static_cast<unsigned char>(y), 9};
}

/// A picture whose pixels name their places: red the column, green the row, blue 9.
void FillWithPlaces(ColourBuffer& picture) {
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            picture.data[y * picture.width + x] = Made(x, y);
}

Colour PixelAt(const ColourBuffer& picture, int x, int y) {
    return picture.data[y * picture.width + x];
}

bool IsBlack(const ColourBuffer& picture, int x, int y) {
    return PixelAt(picture, x, y) == Colour(0, 0, 0);
}

struct Drawing {
    Drawing(const Size& size, const Size& icon, const ViewOptions& options = {})
        : picture(size.x, size.y), drawn(icon.x, icon.y) {
        FillWithPlaces(picture);
        DrawIcon(picture, options, drawn);
    }
    ColourBuffer picture;
    ColourBuffer drawn;
};

/// The mask as rows of '#' (opaque) and '.'.
std::vector<std::string> Mask(const Size& picture, const Size& icon) {
    ColourBuffer mask(icon.x, icon.y);
    std::fill_n(mask.data, mask.GetCount(), Colour(1, 2, 3));
    DrawIconMask(picture, mask);
    std::vector<std::string> rows;
    for (int y = 0; y < icon.y; ++y) {
        rows.emplace_back();
        for (int x = 0; x < icon.x; ++x)
            rows.back() += PixelAt(mask, x, y) == Colour(255, 255, 255) ? '#' : IsBlack(mask, x, y) ? '.' : '?';
    }
    return rows;
}

TEST(IconPicture, ALandscapeTakesTheWholeWidth) {
    // 100 by 50 in 16 by 16: 16 / (100 / 50) = 8 rows, (16 - 8 + 1) / 2 = 4 rows above them. Every 6th pixel is taken
    // both ways; 100 - 6 * 16 = 4 columns are left over, and 50 - 6 * 8 = 2 rows.
    const IconPlan plan = PlanIcon({100, 50}, {16, 16});
    EXPECT_EQ(plan.drawn, Size(16, 8));
    EXPECT_EQ(plan.corner, Point(0, 4));
    EXPECT_EQ(plan.step, Point(6, 6));
    EXPECT_EQ(plan.firstFrom, Point(2, 1));
    EXPECT_EQ(plan.opaque, Rect(0, 4, 16, 8)); // rows 4 to (8 + 16) / 2
    const Drawing icon({100, 50}, {16, 16});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            if (y < 4 || y >= 12)
                EXPECT_TRUE(IsBlack(icon.drawn, x, y)) << x << " " << y;
            else
                EXPECT_EQ(PixelAt(icon.drawn, x, y), Made(2 + 6 * x, 1 + 6 * (y - 4))) << x << " " << y;
}

TEST(IconPicture, APortraitAndASquareTakeTheWholeHeight) {
    // 40 by 160 in 32 by 32: 32 / (160 / 40) = 8 columns, 12 beside them; every 5th pixel of 40 and of 160.
    const IconPlan plan = PlanIcon({40, 160}, {32, 32});
    EXPECT_EQ(plan, (IconPlan{{8, 32}, {12, 0}, {0, 0}, {5, 5}, {12, 0, 8, 32}}));
    const Drawing icon({40, 160}, {32, 32});
    EXPECT_EQ(PixelAt(icon.drawn, 12, 0), Made(0, 0));
    EXPECT_EQ(PixelAt(icon.drawn, 19, 31), Made(35, 155));
    EXPECT_TRUE(IsBlack(icon.drawn, 11, 5));
    EXPECT_TRUE(IsBlack(icon.drawn, 20, 5));
    EXPECT_EQ(PlanIcon({64, 64}, {16, 16}), (IconPlan{{16, 16}, {0, 0}, {0, 0}, {4, 4}, {0, 0, 16, 16}}));
}

TEST(IconPicture, AnOddRestLeavesTheLastRowTransparent) {
    // 12 / (64 / 16) = 3 rows from (12 - 3 + 1) / 2 = 5 to 7, but the mask is open up to (3 + 12) / 2 = 7 exclusive:
    // one row fewer than is drawn.
    const IconPlan plan = PlanIcon({64, 16}, {16, 12});
    EXPECT_EQ(plan.drawn, Size(16, 3));
    EXPECT_EQ(plan.corner, Point(0, 5));
    EXPECT_EQ(plan.opaque, Rect(0, 5, 16, 2));
    const Drawing icon({64, 16}, {16, 12}); // every 4th column, and of 16 - 5 * 3 rows none is left over in halves
    EXPECT_EQ(PixelAt(icon.drawn, 3, 7), Made(12, 10));
    EXPECT_TRUE(IsBlack(icon.drawn, 3, 4));
    EXPECT_TRUE(IsBlack(icon.drawn, 3, 8));
    EXPECT_EQ(PlanIcon({16, 64}, {12, 16}).opaque, Rect(5, 0, 2, 16));
    EXPECT_EQ(PlanIcon({64, 4}, {16, 16}).opaque, Rect(0, 8, 16, 0)) << "a single row is not seen at all";
}

TEST(IconPicture, TheExtentIsComputedInSinglePrecision) {
    EXPECT_EQ(PlanIcon({16, 13}, {16, 16}).drawn, Size(16, 12)); // 16 / (16 / 13) is 12.999999 in floats
}

TEST(IconPicture, TheMaskIsWhiteWhereThePictureIs) {
    EXPECT_EQ(Mask({100, 50}, {4, 4}), (std::vector<std::string>{"....", "####", "####", "...."}));
    EXPECT_EQ(Mask({50, 100}, {4, 4}), (std::vector<std::string>{".##.", ".##.", ".##.", ".##."}));
    EXPECT_EQ(Mask({7, 7}, {2, 3}), (std::vector<std::string>{"##", "##", "##"}));
    // 3 rows are drawn from (4 - 3 + 1) / 2 = 1 on; the band ends at (3 + 4) / 2 = 3.
    EXPECT_EQ(Mask({4, 3}, {4, 4}), (std::vector<std::string>{"....", "####", "####", "...."}));
}

TEST(IconPicture, ReversedAxesAreMirrored) {
    ViewOptions options;
    options.reversedX = true;
    // Column 99 - 2 - 6 x, rows as before.
    EXPECT_EQ(PixelAt(Drawing({100, 50}, {16, 16}, options).drawn, 3, 4), Made(79, 1));
    options.reversedY = true;
    EXPECT_EQ(PixelAt(Drawing({100, 50}, {16, 16}, options).drawn, 3, 5), Made(79, 42)); // row 49 - 1 - 6
    options.reversedX = false;
    EXPECT_EQ(PixelAt(Drawing({100, 50}, {16, 16}, options).drawn, 3, 5), Made(20, 42));
    options.reversedZ = true; // not an axis of XY
    EXPECT_EQ(PixelAt(Drawing({100, 50}, {16, 16}, options).drawn, 3, 5), Made(20, 42));
}

TEST(IconPicture, ASmallPictureShowsItsMiddlePixel) {
    const Drawing icon({7, 5}, {16, 16}); // 16 / (7 / 5) = 11.4: 11 rows from 3 on; steps of 0 from (7, 5) / 2
    for (const Point& at : {Point(0, 3), Point(15, 13), Point(8, 8)})
        EXPECT_EQ(PixelAt(icon.drawn, at.x, at.y), Made(3, 2));
    EXPECT_TRUE(IsBlack(icon.drawn, 0, 2));
    EXPECT_TRUE(IsBlack(icon.drawn, 0, 14));
    ViewOptions options;
    options.reversedX = options.reversedY = true;
    EXPECT_EQ(PixelAt(Drawing({6, 4}, {16, 16}, options).drawn, 8, 8), Made(2, 1)); // 6 - 1 - 3, 4 - 1 - 2
}

TEST(IconPicture, WithoutAPictureAllIsBlackAndTransparent) {
    const std::vector<std::string> closed(16, std::string(16, '.'));
    for (const Size& size : {Size(0, 0), Size(0, 9), Size(9, 0), Size(170, 10), Size(10, 170)}) {
        const Drawing icon(size, {16, 16}); // 16 / 17 is no row
        EXPECT_EQ(PlanIcon(size, {16, 16}).drawn, Size(0, 0));
        EXPECT_TRUE(std::all_of(icon.drawn.data, icon.drawn.data + 256, [](Colour c) { return c == Colour(0, 0, 0); }));
        EXPECT_EQ(Mask(size, {16, 16}), closed) << size.x << " " << size.y;
    }
    EXPECT_EQ(Mask({170, 10}, {17, 15}), std::vector<std::string>(15, std::string(17, '.')));
}

TEST(IconPicture, EveryPixelThatIsTakenLiesInThePicture) {
    for (int width = 0; width < 60; ++width)
        for (int height = 0; height < 60; ++height)
            for (const Size& size : {Size(16, 16), Size(32, 32), Size(5, 11)}) {
                const IconPlan plan = PlanIcon({width, height}, size);
                const Point last(plan.firstFrom.x + (plan.drawn.x - 1) * plan.step.x,
                                 plan.firstFrom.y + (plan.drawn.y - 1) * plan.step.y);
                if (plan.drawn.x > 0) {
                    ASSERT_TRUE(plan.firstFrom.x >= 0 && last.x < width && plan.firstFrom.y >= 0 && last.y < height);
                    ASSERT_TRUE(plan.corner.x >= 0 && plan.corner.x + plan.drawn.x <= size.x);
                    ASSERT_TRUE(plan.corner.y >= 0 && plan.corner.y + plan.drawn.y <= size.y);
                }
                ASSERT_TRUE(plan.opaque.x >= 0 && plan.opaque.x + plan.opaque.width <= size.x);
                ASSERT_TRUE(plan.opaque.y >= 0 && plan.opaque.y + plan.opaque.height <= size.y);
            }
}

} // namespace
} // namespace zel
