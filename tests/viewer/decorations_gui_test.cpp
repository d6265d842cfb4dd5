#include "tests/viewer/noting_canvas.h"

#include <wx/dcmemory.h>

#include <algorithm>
#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

// Each decoration has a colour channel or two of its own, on black, so that smoothed edges can be told apart as well.
const wxColour pointerColour(0, 255, 0);
const wxColour textColour(255, 0, 0);
const wxColour scaleColour(0, 0, 255);
const wxColour timeColour(0, 255, 255);

enum class Is { Lit, Red, Green, Blue, Cyan };

/// Whether at least half of a pixel is of the colour.
bool Has(const wxImage& picture, int x, int y, Is what) {
    const bool r = picture.GetRed(x, y) > 127, g = picture.GetGreen(x, y) > 127, b = picture.GetBlue(x, y) > 127;
    switch (what) {
    case Is::Lit:
        return r || g || b;
    case Is::Red:
        return r && !g && !b;
    case Is::Green:
        return g && !r && !b;
    case Is::Blue:
        return b && !r && !g;
    case Is::Cyan:
        return g && b && !r;
    }
    return false;
}

std::vector<wxPoint> Pixels(const wxImage& picture, Is what) {
    std::vector<wxPoint> found;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            if (Has(picture, x, y, what))
                found.emplace_back(x, y);
    return found;
}

/// The smallest rectangle around all pixels of the colour; empty without any.
wxRect Bounds(const wxImage& picture, Is what) {
    wxRect bounds;
    for (const wxPoint& at : Pixels(picture, what))
        bounds.Union(wxRect(at, wxSize(1, 1)));
    return bounds;
}

wxRect Span(const wxPoint& a, const wxPoint& b) {
    return {wxPoint(std::min(a.x, b.x), std::min(a.y, b.y)), wxPoint(std::max(a.x, b.x), std::max(a.y, b.y))};
}

wxSize Extent(const wxString& text, const wxFont& font) {
    wxBitmap bitmap(10, 10);
    wxMemoryDC dc(bitmap);
    dc.SetFont(font);
    return dc.GetTextExtent(text);
}

/// XY 200 x 200 pixels, XZ 200 x 70, YZ 70 x 200, at 10 pixels per micron; the cut is at pixel 50, 80 and 30.
class DecorationsTest : public NotingCanvasTest {
protected:
    void SetUp() override {
        NotingCanvasTest::SetUp();
        canvas->GetSettings(settings);
        settings.cut = {5, 8, 3};
        settings.cutPointer = {0, pointerColour};
        settings.annotation.colour = textColour;
        settings.scaleBar.colour = scaleColour;
        settings.timeBar.colour = timeColour;
        settings.scaleBar.thickness = settings.timeBar.thickness = 1; // one row of pixels
        settings.scaleBar.length = 5;
        canvas->resolution = kep::Resolution(4, 3, 2); // 5 microns are 20, 15 and 10 pixels
    }
    /// The picture of a window with the present settings.
    wxImage Picture(zel_ProjectionType type) {
        canvas->SetSettings(settings);
        Window(type).Render();
        return Window(type).GetPointerImage();
    }
    void OnlyText() { settings.scaleBar.thickness = 0; }
    void OnlyScaleBar() {
        settings.showAnnotation = true;
        settings.annotation.textXY = settings.annotation.textXZ = settings.annotation.textYZ = "";
    }

    zel_CanvasSettings settings;
};

constexpr zel_ProjectionType allTypes[] = {zel_PT_XY, zel_PT_XZ, zel_PT_YZ};

/// Where the cut lies in each window.
wxPoint CutIn(zel_ProjectionType type) {
    return type == zel_PT_XY ? wxPoint(50, 80) : type == zel_PT_XZ ? wxPoint(50, 30) : wxPoint(30, 80);
}

} // namespace

TEST_F(DecorationsTest, WithoutPointerAndFlagASingleImageIsBare) {
    for (const zel_ProjectionType type : allTypes)
        EXPECT_TRUE(Pixels(Picture(type), Is::Lit).empty());
}

TEST_F(DecorationsTest, PointerMarksTheSidesOfEachWindow) {
    settings.cutPointer.style = 1;
    for (const zel_ProjectionType type : allTypes) {
        const wxImage picture = Picture(type);
        const wxPoint at = CutIn(type);
        const int w = picture.GetWidth(), h = picture.GetHeight();
        std::vector<wxPoint> expected;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if ((y == at.y && (x <= 10 || x >= w - 10)) || (x == at.x && (y <= 10 || y >= h - 10)))
                    expected.emplace_back(x, y);
        EXPECT_EQ(Pixels(picture, Is::Green), expected) << type;
        EXPECT_EQ(Pixels(picture, Is::Lit), expected) << type;
    }
}

TEST_F(DecorationsTest, PointersCircleStandsAroundTheNextPixel) {
    settings.cutPointer.style = 2;
    for (const zel_ProjectionType type : allTypes) {
        const wxImage picture = Picture(type);
        const wxPoint at = CutIn(type);
        EXPECT_TRUE(Has(picture, 3, at.y, Is::Green)) << "the marks too";
        EXPECT_TRUE(Has(picture, at.x, 3, Is::Green));
        EXPECT_FALSE(Has(picture, at.x + 1, at.y + 1, Is::Lit)) << "not filled";
        wxRect circle; // what is lit off the two lines of the marks
        for (const wxPoint& lit : Pixels(picture, Is::Green))
            if (lit.x > 10 && lit.x < picture.GetWidth() - 10 && lit.y > 10 && lit.y < picture.GetHeight() - 10)
                circle.Union(wxRect(lit, wxSize(1, 1)));
        EXPECT_NEAR(circle.GetLeft(), at.x + 1 - 10, 1);
        EXPECT_NEAR(circle.GetRight(), at.x + 1 + 10, 1);
        EXPECT_NEAR(circle.GetTop(), at.y + 1 - 10, 1);
        EXPECT_NEAR(circle.GetBottom(), at.y + 1 + 10, 1);
        EXPECT_EQ(circle.GetLeft() + circle.GetRight(), 2 * (at.x + 1)) << "its middle is the next pixel";
    }
}

TEST_F(DecorationsTest, PointersCrossesRunThroughTheWindow) {
    struct Case {
        int style;
        int least, most; // lit pixels of a row of 200
    };
    for (const Case& c : {Case{3, 80, 120}, Case{4, 110, 160}, Case{5, 200, 200}}) {
        settings.cutPointer.style = c.style;
        const wxImage picture = Picture(zel_PT_XY);
        int row = 0, column = 0;
        for (const wxPoint& lit : Pixels(picture, Is::Lit)) {
            EXPECT_TRUE(lit.y == 80 || lit.x == 50) << lit.x << " " << lit.y;
            row += lit.y == 80;
            column += lit.x == 50;
        }
        EXPECT_GE(row, c.least) << c.style;
        EXPECT_LE(row, c.most) << c.style;
        EXPECT_GE(column, c.least) << c.style;
        EXPECT_LE(column, c.most) << c.style;
        EXPECT_EQ(Bounds(picture, Is::Green).GetTopLeft(), wxPoint(0, 0));
    }
    settings.cutPointer.style = 6;
    EXPECT_TRUE(Pixels(Picture(zel_PT_XY), Is::Lit).empty());
}

TEST_F(DecorationsTest, PointerIsClippedWhereTheCutIsOut) {
    settings.cutPointer.style = 1;
    canvas->SetSettings(settings);
    canvas->GetView().options.cut.x = -3; // 30 pixels left of the window
    const auto lit = [&] {
        Window(zel_PT_XY).Render();
        return Window(zel_PT_XY).GetPointerImage();
    };
    for (const wxPoint& at : Pixels(lit(), Is::Lit))
        EXPECT_EQ(at.y, 80) << "the marks of Y are left";
    EXPECT_EQ(Bounds(lit(), Is::Green), wxRect(0, 80, 200, 1));
    canvas->GetView().options.cut.y = 1e9F;
    EXPECT_TRUE(Pixels(lit(), Is::Lit).empty());
    canvas->SetPointerStyle({2, pointerColour});
    canvas->GetView().options.cut = {-0.5F, 8, 3}; // at -4.5, cut to -4: the circle around (-3, 81) ends at 7
    const wxImage circle = lit();
    EXPECT_TRUE(Has(circle, 7, 81, Is::Green));
    EXPECT_FALSE(Has(circle, 9, 81, Is::Lit));
    canvas->SetPointerStyle({5, pointerColour});
    canvas->GetView().options.cut = {1e9F, 8, 3};
    EXPECT_EQ(Pixels(lit(), Is::Lit).size(), 200U);
    EXPECT_EQ(Bounds(lit(), Is::Green), wxRect(0, 80, 200, 1));
}

TEST_F(DecorationsTest, PointerStaysAtItsPlaceInMirroredWindows) {
    settings.cutPointer.style = 5;
    const wxImage before = Picture(zel_PT_XZ);
    settings.reversedX = settings.reversedY = settings.reversedZ = true;
    EXPECT_EQ(Pixels(Picture(zel_PT_XZ), Is::Lit), Pixels(before, Is::Lit));
}

TEST_F(DecorationsTest, PointerFollowsTheView) {
    settings.cutPointer.style = 5;
    settings.zoom = 1;
    canvas->SetSettings(settings);
    canvas->GetView().visibleBox.offset.x = 4.75F;
    Window(zel_PT_XY).Render();
    // (5 - 4.75) * 20 + 0.5 = 5.5.
    EXPECT_TRUE(Has(Window(zel_PT_XY).GetPointerImage(), 5, 30, Is::Green));
    EXPECT_FALSE(Has(Window(zel_PT_XY).GetPointerImage(), 6, 30, Is::Green));
}

TEST_F(DecorationsTest, AnnotationStandsInEachCornerOfEachWindow) {
    settings.showAnnotation = true;
    OnlyText();
    settings.annotation.textXY = "top view";
    settings.annotation.textXZ = "front";
    settings.annotation.textYZ = "YZ";
    settings.annotation.offsetXY = {3, 4};
    settings.annotation.offsetXZ = {5, 6};
    settings.annotation.offsetYZ = {7, 8};
    struct Case {
        zel_ProjectionType type;
        const wxString& text;
        int& position;
        const wxPoint& offset;
    };
    for (const Case& c :
         {Case{zel_PT_XY, settings.annotation.textXY, settings.annotation.positionXY, settings.annotation.offsetXY},
          Case{zel_PT_XZ, settings.annotation.textXZ, settings.annotation.positionXZ, settings.annotation.offsetXZ},
          Case{zel_PT_YZ, settings.annotation.textYZ, settings.annotation.positionYZ, settings.annotation.offsetYZ}}) {
        const wxSize text = Extent(c.text, settings.annotation.font);
        for (const int position : {0, 1, 2, 3, 4}) {
            c.position = position;
            const wxImage picture = Picture(c.type);
            const bool right = position == 1 || position == 3, bottom = position == 2 || position == 3;
            wxPoint corner(right ? picture.GetWidth() - c.offset.x - text.x : c.offset.x,
                           bottom ? picture.GetHeight() - c.offset.y - text.y : c.offset.y);
            if (position == 4)
                corner = {0, 0};
            const wxRect ink = Bounds(picture, Is::Red);
            EXPECT_TRUE(wxRect(corner, text).Contains(ink)) << c.type << " " << position;
            EXPECT_GE(ink.width, text.x - 6) << "letters fill the block's width";
            EXPECT_GE(ink.height, text.y / 3);
            EXPECT_EQ(Pixels(picture, Is::Lit).size(), Pixels(picture, Is::Red).size());
        }
    }
}

TEST_F(DecorationsTest, AnEmptyTextLeavesItsWindowBare) {
    settings.showAnnotation = true;
    OnlyText();
    settings.annotation.textXZ = "";
    EXPECT_FALSE(Pixels(Picture(zel_PT_XY), Is::Red).empty());
    EXPECT_TRUE(Pixels(Picture(zel_PT_XZ), Is::Lit).empty());
    EXPECT_FALSE(Pixels(Picture(zel_PT_YZ), Is::Red).empty());
}

TEST_F(DecorationsTest, ScaleBarStandsInEachCornerOfEachWindow) {
    OnlyScaleBar();
    settings.scaleBar.offset = {6, 7};
    for (const zel_ProjectionType type : allTypes)
        for (const int position : {0, 1, 2, 3}) {
            settings.scaleBar.position = position;
            const wxImage picture = Picture(type);
            // X 20, Y 15, Z 10 pixels. The angle's corner lies outwards; its text is at the left.
            const wxSize legs(type == zel_PT_YZ ? 10 : 20, type == zel_PT_XZ ? 10 : 15);
            const bool right = position == 1 || position == 3, bottom = position == 2 || position == 3;
            const wxRect bar = Bounds(picture, Is::Blue);
            EXPECT_EQ(bar.width, legs.x + 1) << type << " " << position;
            EXPECT_EQ(bar.height, legs.y + 1) << type << " " << position;
            const wxPoint corner(right ? bar.GetRight() : bar.GetLeft(), bottom ? bar.GetBottom() : bar.GetTop());
            EXPECT_EQ(corner.y, bottom ? picture.GetHeight() - 7 : 7);
            if (right) {
                EXPECT_EQ(corner.x, picture.GetWidth() - 6);
            }
            for (const wxPoint& lit : Pixels(picture, Is::Blue))
                EXPECT_TRUE(lit.x == corner.x || lit.y == corner.y) << "an angle";
            const wxRect text = Bounds(picture, Is::Red);
            ASSERT_FALSE(text.IsEmpty());
            EXPECT_LT(text.GetRight(), bar.GetLeft()) << "the text is before the angle";
            if (!right) {
                EXPECT_NEAR(text.GetLeft(), 6, 3);
            }
        }
    settings.scaleBar.position = 4;
    EXPECT_TRUE(Pixels(Picture(zel_PT_XY), Is::Lit).empty());
    settings.scaleBar.position = 0;
    settings.scaleBar.thickness = 0;
    EXPECT_TRUE(Pixels(Picture(zel_PT_XY), Is::Lit).empty()) << "not even the text";
}

TEST_F(DecorationsTest, ScaleBarFollowsZoomAndNotTheBaseScale) {
    OnlyScaleBar();
    settings.scaleBar.position = 3;
    settings.baseScale = {7, 7, 7}; // the window is 140 pixels wide and high
    EXPECT_EQ(Bounds(Picture(zel_PT_XY), Is::Blue).GetSize(), wxSize(21, 16));
    settings.zoom = 1;
    EXPECT_EQ(Bounds(Picture(zel_PT_XY), Is::Blue).GetSize(), wxSize(41, 31));
    settings.zoom = -1;
    const wxImage none = Picture(zel_PT_XY);
    EXPECT_LE(Pixels(none, Is::Blue).size(), 1U) << "no length";
    EXPECT_FALSE(Pixels(none, Is::Red).empty()) << "but a text";
    settings.zoom = 0;
    settings.scaleBar.length = 1e30F;
    EXPECT_EQ(Bounds(Picture(zel_PT_XY), Is::Blue), wxRect(0, 0, 131, 131)) << "to the edges, from (130, 130)";
}

TEST_F(DecorationsTest, ScaleBarsPenHasItsThickness) {
    OnlyScaleBar();
    settings.scaleBar.position = 0;
    settings.scaleBar.thickness = 5;
    const wxImage picture = Picture(zel_PT_XY);
    const wxRect bar = Bounds(picture, Is::Blue);
    int thick = 0;
    for (int y = bar.GetTop(); y <= bar.GetBottom(); ++y)
        thick += Has(picture, bar.GetLeft() + 12, y, Is::Blue);
    EXPECT_EQ(thick, 5);
}

TEST_F(DecorationsTest, ScaleBarUsesTheFontThatWasLeft) {
    OnlyScaleBar();
    settings.annotation.font = wxFont(24, wxFONTFAMILY_SWISS, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_BOLD);
    const int ownHeight = Bounds(Picture(zel_PT_XZ), Is::Red).height;
    settings.annotation.textXZ = " "; // sets the font, and shows nothing
    const int tallHeight = Bounds(Picture(zel_PT_XZ), Is::Red).height;
    EXPECT_GT(tallHeight, ownHeight * 3 / 2) << "the annotation's";
    const int plain = Bounds(Picture(zel_PT_XY), Is::Red).height;
    EXPECT_EQ(plain, ownHeight) << "an empty text leaves the window's own font";
    canvas->images = 3;
    settings.timeBar.position = 0;
    const wxImage withTime = Picture(zel_PT_XY);
    const int top = 100; // the time bar is above, the scale bar below
    wxRect scaleText;
    for (const wxPoint& lit : Pixels(withTime, Is::Red))
        if (lit.y > top)
            scaleText.Union(wxRect(lit, wxSize(1, 1)));
    EXPECT_EQ(scaleText.height, tallHeight) << "the time bar's font";
}

TEST_F(DecorationsTest, TimeBarIsInTheXYWindowAloneWhateverTheFlag) {
    canvas->images = 3;
    for (const bool flag : {false, true}) {
        settings.showAnnotation = flag;
        EXPECT_FALSE(Pixels(Picture(zel_PT_XY), Is::Cyan).empty()) << flag;
        EXPECT_TRUE(Pixels(Picture(zel_PT_XZ), Is::Cyan).empty()) << flag;
        EXPECT_TRUE(Pixels(Picture(zel_PT_YZ), Is::Cyan).empty()) << flag;
        EXPECT_EQ(Pixels(Picture(zel_PT_XZ), Is::Lit).empty(), !flag);
        EXPECT_EQ(Pixels(Picture(zel_PT_XY), Is::Blue).empty(), !flag) << "the scale bar needs the flag";
    }
    settings.showAnnotation = false;
    canvas->images = 1;
    EXPECT_TRUE(Pixels(Picture(zel_PT_XY), Is::Lit).empty()) << "a single image has none";
    canvas->images = 3;
    settings.timeBar.thickness = 0;
    EXPECT_TRUE(Pixels(Picture(zel_PT_XY), Is::Lit).empty());
}

TEST_F(DecorationsTest, TimeBarStandsInEachCornerWithItsMarker) {
    canvas->images = 3;
    settings.timeBar.offset = {6, 7};
    const wxSize text = Extent("Time: ", settings.annotation.font);
    const int height = std::max(text.y, 20);
    for (const int position : {0, 1, 2, 3, 4})
        for (const int frameShown : {0, 1, 2}) {
            settings.timeBar.position = position;
            canvas->m_time = frameShown;
            const wxImage picture = Picture(zel_PT_XY);
            const bool right = position == 1 || position == 3, bottom = position == 2 || position == 3;
            wxPoint corner(right ? 200 - 6 - 50 - text.x : 6, bottom ? 200 - 7 - height : 7);
            if (position == 4)
                corner = {0, 0};
            const int baseline = corner.y + height, start = corner.x + text.x;
            const int marker = start + 25 * frameShown;
            EXPECT_EQ(Bounds(picture, Is::Cyan), Span({start, baseline - 20}, {start + 50, baseline})) << position;
            for (const wxPoint& lit : Pixels(picture, Is::Cyan))
                EXPECT_TRUE(lit.y == baseline || lit.x == marker) << position << " " << frameShown;
            const wxRect ink = Bounds(picture, Is::Red);
            EXPECT_TRUE(wxRect(corner.x, baseline - text.y, text.x, text.y).Contains(ink)) << position;
            EXPECT_GE(ink.width, text.x / 2);
        }
}

TEST_F(DecorationsTest, AreDrawnInTheirOrder) {
    canvas->images = 2;
    settings.showAnnotation = true;
    settings.cutPointer.style = 5;
    settings.timeBar.position = settings.scaleBar.position = 0;
    settings.timeBar.offset = {-40, 60}; // a band across the cut's place, (50, 80)
    settings.timeBar.length = 300;
    settings.timeBar.thickness = 60;
    settings.annotation.positionXY = 0;
    settings.annotation.offsetXY = {100, 75};
    settings.scaleBar.thickness = 0;
    wxImage picture = Picture(zel_PT_XY);
    EXPECT_TRUE(Has(picture, 50, 80, Is::Cyan)) << "the time bar is over the pointer";
    EXPECT_TRUE(Has(picture, 50, 5, Is::Green)) << "which is there";
    const size_t letters = Pixels(picture, Is::Red).size();
    EXPECT_GT(letters, 10U) << "the annotation is over the time bar";
    EXPECT_TRUE(Has(picture, 95, 80, Is::Cyan)) << "which goes on to its side";

    settings.scaleBar.thickness = 60; // its horizontal leg covers the letters
    settings.scaleBar.length = 100;
    settings.scaleBar.offset = {-40, 80};
    picture = Picture(zel_PT_XY);
    EXPECT_TRUE(Has(picture, 110, 82, Is::Blue)) << "the scale bar is over all";
    for (const wxPoint& letter : Pixels(picture, Is::Red))
        EXPECT_FALSE(wxRect(100, 75, 40, 20).Contains(letter));
}

TEST_F(DecorationsTest, ReachTheScreen) {
    settings.cutPointer.style = 5;
    canvas->SetSettings(settings);
    canvas->Update();
    const wxImage screen = Screen(Window(zel_PT_XY));
    EXPECT_TRUE(Has(screen, 50, 20, Is::Green));
    EXPECT_TRUE(Has(screen, 20, 80, Is::Green));
    EXPECT_FALSE(Has(screen, 20, 20, Is::Lit));
}
