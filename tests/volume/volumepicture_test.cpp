// What OpenGL draws in the volume window, read back from the screen.

#include "tests/support/user.h"
#include "tests/volume/volume_window.h"

#include <cmath>
#include <map>

namespace zel::test {
namespace {

constexpr int hidePlane = 10003, hideBox = 10004, whiteBackground = 10002;

class VolumePicture : public GuiTest {};

Voxel Opaque(unsigned char red, unsigned char green, unsigned char blue) {
    return {red, green, blue, 255};
}

constexpr auto nothing = [](auto...) { return Voxel{}; };
constexpr auto white = [](auto...) { return Voxel{255, 255, 255, 255}; };

TEST_F(VolumePicture, WithoutAVolumeThereIsOnlyTheBackground) {
    const VolumeWindow window;
    EXPECT_FALSE(window.Canvas().HasVolume());
    EXPECT_EQ(ColourAt(window.Picture(), {100, 100}), wxColour(0, 0, 0));
    EXPECT_TRUE(window.Status(0).empty()) << "the status bar is left as it was";
    window.Canvas().SetBackground(1.0F, 0.5F, 0.0F);
    const wxColour ground = ColourAt(window.Picture(), {3, 100});
    EXPECT_EQ(ground.Red(), 255);
    EXPECT_NEAR(ground.Green(), 127.5, 1.0);
    EXPECT_EQ(ground.Blue(), 0);
}

TEST_F(VolumePicture, TheBoxIsSeenFromInFrontWithItsBackSmaller) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(hidePlane);
    const wxImage picture = window.Picture();
    // The front face, at z = 1: 274.75 / 4 = 68.7 from the middle. The back face, at -1: 274.75 / 6 = 45.8.
    for (const int x : {31, 54, 145, 168})
        EXPECT_TRUE(IsNear(picture, {x, 100}, IsBlue)) << x;
    for (const int y : {31, 54, 145, 168})
        EXPECT_TRUE(IsNear(picture, {100, y}, IsBlue)) << y;
    EXPECT_TRUE(IsBlack(ColourAt(picture, {100, 100})));
    EXPECT_TRUE(IsBlack(ColourAt(picture, {40, 100})));
    EXPECT_TRUE(IsBlack(ColourAt(picture, {20, 100})));
    window.Choose(hideBox);
    const wxImage hidden = window.Picture();
    for (int x = 0; x < 200; ++x)
        EXPECT_TRUE(IsBlack(ColourAt(hidden, {x, 100}))) << x;
}

TEST_F(VolumePicture, TheClippingPlaneIsOutlinedWhereItStands) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(hideBox);
    const wxImage atFace = window.Picture();
    // It stands at x = 1, 0.8 to either side: at z = 0.8, 274.75 / 4.2 = 65.4 right of the middle, and
    // 0.8 * 65.4 = 52.3 above and below; at z = -0.8, 274.75 / 5.8 = 47.4 and 37.9.
    EXPECT_TRUE(IsNear(atFace, {165, 100}, IsRed));
    EXPECT_TRUE(IsNear(atFace, {147, 100}, IsRed));
    EXPECT_TRUE(IsNear(atFace, {165, 49}, IsRed));
    EXPECT_TRUE(IsNear(atFace, {165, 151}, IsRed));
    EXPECT_FALSE(IsNear(atFace, {165, 44}, IsRed));
    // Dragged down by 100 pixels with the right button it stands in the middle, and is seen from its side.
    window.Press(WXK_SPACE);
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 50});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 150});
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 150});
    EXPECT_NEAR(window.Canvas().GetPlaneOffset(), 0.0, 1e-12);
    const wxImage inMiddle = window.Picture();
    EXPECT_TRUE(IsNear(inMiddle, {100, 100}, IsRed));
    EXPECT_FALSE(IsNear(inMiddle, {165, 100}, IsRed));
    window.Choose(hidePlane);
    EXPECT_FALSE(IsNear(window.Picture(), {100, 100}, IsRed));
}

TEST_F(VolumePicture, TheVolumeFillsTheBox) {
    const VolumeWindow window;
    window.Show(8, white);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    const wxImage picture = window.Picture();
    for (const int x : {35, 100, 165})                           // the front face reaches from 31.3 to 168.7
        EXPECT_GT(ColourAt(picture, {x, 100}).Green(), 90) << x; // darker where the border is near
    for (const int x : {20, 28, 172, 180})
        EXPECT_LT(ColourAt(picture, {x, 100}).Green(), 20) << x;
}

TEST_F(VolumePicture, ThePlaneCutsAtItsOffset) {
    const VolumeWindow window;
    window.Show(8, white);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    window.Press(WXK_SPACE);
    const auto drag = [&window](int dy) {
        SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 100});
        SendMouse(window.Canvas(), wxEVT_MOTION, {100, 100 + dy});
        SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 100 + dy});
    };
    /// Where the bright part of the middle row ends.
    const auto edge = [](const wxImage& picture) {
        int x = 40;
        while (x < 200 && ColourAt(picture, {x, 100}).Green() > 128)
            ++x;
        return x;
    };
    // What lies at x <= offset stays. The plane is seen where it meets the front face, 68.7 * offset from the middle,
    // or the back face, 45.8 * offset, whichever is further right.
    drag(100); // offset 0
    EXPECT_NEAR(edge(window.Picture()), 100, 2);
    drag(-50); // 0.5
    EXPECT_NEAR(edge(window.Picture()), 100 + 34.3, 2);
    drag(100); // -0.5
    EXPECT_NEAR(edge(window.Picture()), 100 - 22.9, 2);
    drag(100); // -1.5: beyond the box
    EXPECT_EQ(edge(window.Picture()), 40);
}

TEST_F(VolumePicture, ThePlaneShowsTheCutThroughTheVolume) {
    const VolumeWindow window;
    window.Show(8, [](auto x, auto...) { return x < 4 ? Opaque(0, 255, 0) : Opaque(255, 0, 255); });
    window.Choose(hideBox);
    window.Press('-', 10); // no sheets
    EXPECT_EQ(window.Canvas().GetSliceCount(), 0);
    // The plane turns with the object, and stands across x. Looking along x it is met at the right angle.
    window.Press(WXK_SPACE);
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 150}); // offset 0.5
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 150});
    window.Choose(5007);
    EXPECT_EQ(ColourAt(window.Picture(), {100, 100}), wxColour(255, 0, 255));
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 200}); // -0.5
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 200});
    const wxImage picture = window.Picture();
    EXPECT_EQ(ColourAt(picture, {100, 100}), wxColour(0, 255, 0));
    // 0.8 to either side, at an eye's z of 0.5: 274.75 * 0.8 / 4.5 = 48.8 pixels.
    EXPECT_EQ(ColourAt(picture, {100 - 45, 100}), wxColour(0, 255, 0));
    EXPECT_TRUE(IsBlack(ColourAt(picture, {100 - 53, 100})));
}

TEST_F(VolumePicture, ABallIsSeenAsADisc) {
    constexpr int n = 32;
    const auto ball = [](auto x, auto y, auto z) {
        const auto from = [](auto i) { return (static_cast<double>(i) + 0.5) / n * 2.0 - 1.0; };
        return std::hypot(from(x), from(y), from(z)) < 0.5 ? Opaque(255, 255, 255) : Voxel{};
    };
    const VolumeWindow window;
    window.Show(n, ball);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    const wxImage picture = window.Picture();
    // Its rim is seen at an angle whose sine is 0.5 / 5: 274.75 * tan(asin(0.1)) = 27.6 pixels. A voxel has 3.4.
    for (int degrees = 0; degrees < 360; degrees += 15) {
        const double a = degrees * 3.14159265358979 / 180.0;
        const auto at = [a](double r) {
            return wxPoint(static_cast<int>(100 + r * std::cos(a)), static_cast<int>(100 + r * std::sin(a)));
        };
        EXPECT_GT(ColourAt(picture, at(23)).Red(), 128) << degrees;
        EXPECT_LT(ColourAt(picture, at(32)).Red(), 30) << degrees;
    }
}

TEST_F(VolumePicture, AGradientRisesAcrossTheRow) {
    const VolumeWindow window;
    window.Show(16, [](auto x, auto...) {
        const auto level = static_cast<unsigned char>(x * 17);
        return Opaque(level, level, level);
    });
    window.Choose(hidePlane);
    window.Choose(hideBox);
    const wxImage picture = window.Picture();
    int before = 0;
    for (int x = 44; x <= 156; x += 16) {
        const int level = ColourAt(picture, {x, 100}).Red();
        EXPECT_GT(level, before + 10) << x;
        before = level;
    }
}

/// Eight octants in eight colours: which of them are seen, and where, tells how the volume stands.
constexpr auto octants = [](auto x, auto y, auto z) {
    const auto level = [](auto i) -> unsigned char { return i < 8 ? 64 : 255; };
    return Voxel{level(x), level(y), level(z), 255};
};

/// Whether red, green, blue are high in the corner of the picture: x, y, z of the octant that is seen there.
std::array<bool, 3> OctantAt(const wxImage& picture, int right, int up) {
    const wxColour c = ColourAt(picture, {100 + 30 * right, 100 - 30 * up});
    return {c.Red() > 140, c.Green() > 140, c.Blue() > 140};
}

TEST_F(VolumePicture, AtFirstXGoesToTheRightYUpwardsAndTheLastSliceIsInFront) {
    const VolumeWindow window;
    window.Show(16, octants);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    const wxImage picture = window.Picture();
    for (const int right : {-1, 1})
        for (const int up : {-1, 1})
            EXPECT_EQ(OctantAt(picture, right, up), (std::array{right > 0, up > 0, true})) << right << ' ' << up;
}

TEST_F(VolumePicture, EachDirectionOfTheMenuShowsItsFace) {
    const VolumeWindow window;
    window.Show(16, octants);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    struct View {
        int command;
        std::size_t frontAxis; // 0 x, 1 y, 2 z
        bool frontHigh;        // the end of the axis that faces the viewer
        std::size_t rightAxis;
        bool rightHigh; // the end that is on the right
        std::size_t upAxis;
        bool upHigh;
    };
    const std::vector<View> views{
        {5007, 0, false, 2, true, 1, true},   // along x
        {5008, 0, true, 2, false, 1, true},   // against x
        {5009, 1, false, 0, false, 2, false}, // along y
        {5010, 1, true, 0, true, 2, false},   // against y
        {5011, 2, false, 0, false, 1, true},  // along z
        {5012, 2, true, 0, true, 1, true},    // against z
    };
    for (const View& view : views) {
        window.Choose(view.command);
        EXPECT_EQ(window.Canvas().GetEyeDistance(), -5.0F);
        const wxImage picture = window.Picture();
        for (const bool right : {false, true})
            for (const bool up : {false, true}) {
                std::array<bool, 3> octant{};
                octant[view.frontAxis] = view.frontHigh;
                octant[view.rightAxis] = view.rightHigh == right;
                octant[view.upAxis] = view.upHigh == up;
                EXPECT_EQ(OctantAt(picture, right ? 1 : -1, up ? 1 : -1), octant) << view.command << right << up;
            }
    }
}

TEST_F(VolumePicture, VoxelsBelowTheThresholdAreNotSeen) {
    const VolumeWindow window;
    window.Show(8, [](auto x, auto...) {
        const unsigned char alpha = x < 4 ? 100 : 160; // 0.39 and 0.63 of full
        return Voxel{255, 255, 255, alpha};
    });
    window.Choose(hidePlane);
    window.Choose(hideBox);
    const wxImage half = window.Picture(); // threshold 0.5
    EXPECT_TRUE(IsBlack(ColourAt(half, {60, 100})));
    EXPECT_GT(ColourAt(half, {140, 100}).Red(), 200);
    window.Press(WXK_LEFT, 4); // 0.375
    EXPECT_GT(ColourAt(window.Picture(), {60, 100}).Red(), 200);
    window.Press(WXK_RIGHT, 9); // 0.65625
    EXPECT_TRUE(IsBlack(ColourAt(window.Picture(), {140, 100})));
}

TEST_F(VolumePicture, AtThresholdOneNothingIsSeen) {
    const VolumeWindow window;
    window.Show(8, white);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    window.Press(WXK_RIGHT, 16);
    EXPECT_EQ(window.Canvas().GetThreshold(), 1.0F);
    EXPECT_TRUE(IsBlack(ColourAt(window.Picture(), {100, 100})));
    window.Press(WXK_LEFT, 1);
    EXPECT_FALSE(IsBlack(ColourAt(window.Picture(), {100, 100})));
}

TEST_F(VolumePicture, WithoutSheetsPlaneAndBoxAreStillThere) {
    const VolumeWindow window;
    window.Show(8, white);
    window.Press('-', 12);
    EXPECT_EQ(window.Canvas().GetSliceCount(), 0);
    const wxImage picture = window.Picture();
    EXPECT_TRUE(IsBlack(ColourAt(picture, {100, 100})));
    EXPECT_TRUE(IsNear(picture, {31, 100}, IsBlue));
    EXPECT_TRUE(IsNear(picture, {165, 100}, IsRed));
    // The plane stands between the outermost voxels and the border: half white, half opaque.
    EXPECT_NEAR(ColourAt(picture, {156, 100}).Green(), 255 / 4, 2);
}

TEST_F(VolumePicture, ABackgroundOfWhiteIsChosenInTheMenu) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(whiteBackground);
    EXPECT_EQ(ColourAt(window.Picture(), {5, 5}), wxColour(255, 255, 255));
    window.Choose(whiteBackground);
    EXPECT_TRUE(IsBlack(ColourAt(window.Picture(), {5, 5})));
}

TEST_F(VolumePicture, AnotherSizeOfTheWindowKeepsProportions) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(hidePlane);
    ASSERT_TRUE(ResizeClient(*window.frame, {400, 200}));
    const wxImage picture = window.Picture();
    EXPECT_EQ(picture.GetSize(), wxSize(400, 200));
    for (const int x : {131, 268}) // the height alone counts
        EXPECT_TRUE(IsNear(picture, {x, 100}, IsBlue)) << x;
}

TEST_F(VolumePicture, ThePictureThatIsTakenIsTheOneOnTheScreen) {
    const VolumeWindow window;
    window.Show(16, octants);
    const wxImage seen = window.Picture();
    const wxImage taken = window.Canvas().TakePicture();
    ASSERT_EQ(taken.GetSize(), seen.GetSize());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(taken.GetData()), 200 * 200 * 3),
              std::string(reinterpret_cast<const char*>(seen.GetData()), 200 * 200 * 3));
}

TEST_F(VolumePicture, ADragTurnsTheObjectUntilTheButtonIsUp) {
    const VolumeWindow window;
    window.Show(16, octants);
    SendMouse(window.Canvas(), wxEVT_LEFT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {120, 100});
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), identityMatrix) << "the paint turns it";
    window.Picture();
    const Matrix4 turned = window.Canvas().GetObjectMatrix();
    // From (0, 0, 1) to (0.2, 0, cos 18 degrees) / 0.9719 = (0.2058, 0, 0.9786): 90 * 0.2069 = 18.62 degrees about y.
    EXPECT_NEAR(turned[0], std::cos(18.62 * 3.14159 / 180.0), 1e-3);
    EXPECT_NEAR(turned[8], std::sin(18.62 * 3.14159 / 180.0), 1e-3);
    window.Picture(); // forced while the button is still: once more
    EXPECT_NEAR(window.Canvas().GetObjectMatrix()[0], std::cos(2 * 18.62 * 3.14159 / 180.0), 1e-3);
    SendMouse(window.Canvas(), wxEVT_LEFT_UP, {120, 100});
    const Matrix4 released = window.Canvas().GetObjectMatrix();
    window.Picture();
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), released);
}

TEST_F(VolumePicture, TheRealPointerTurnsThePlane) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Press(WXK_SPACE);
    Drag(window.Canvas(), {{100, 100}, {110, 100}, {120, 100}});
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), identityMatrix);
    EXPECT_LT(window.Canvas().GetPlaneMatrix()[0], 0.99F);
}

TEST_F(VolumePicture, ADragThatEndsOutsideIsOver) {
    const VolumeWindow window;
    window.Show(2, nothing);
    SendMouse(window.Canvas(), wxEVT_LEFT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {120, 100});
    SendMouse(window.Canvas(), wxEVT_LEAVE_WINDOW, {210, 100});
    const Matrix4 before = window.Canvas().GetObjectMatrix();
    SendMouse(window.Canvas(), wxEVT_MOTION, {150, 100});
    window.Picture();
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), before);
}

TEST_F(VolumePicture, TheStateIsTold) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Picture();
    EXPECT_EQ(window.Status(0), "Mode: Moving Object");
    EXPECT_EQ(window.Status(1), "# slices: 100, intensity: 0.500000, threshold: 0.500000");
    window.Press(WXK_SPACE);
    window.Press('+', 2);
    window.Press(WXK_UP);
    window.Press(WXK_DOWN, 2);
    window.Press(WXK_RIGHT);
    EXPECT_EQ(window.Status(0), "Mode: Moving Object") << "told by the paint";
    window.Picture();
    EXPECT_EQ(window.Status(0), "Mode: Moving Plane");
    EXPECT_EQ(window.Status(1), "# slices: 120, intensity: 0.468750, threshold: 0.531250");
}

// Surfaces.

/// Labels of 6 x 6 x 6 voxels: 1 on the left, 2 on the right, each a block that touches nothing.
void ShowBlocks(const VolumeWindow& window, bool drawn, const std::vector<kep::RGB_generic<unsigned char>>& colours) {
    std::vector<unsigned short> labels(6 * 6 * 6, 0);
    for (std::size_t z = 1; z < 5; ++z)
        for (std::size_t y = 1; y < 5; ++y)
            for (std::size_t x = 1; x < 5; ++x)
                if (x != 3)
                    labels[(z * 6 + y) * 6 + x] = x < 3 ? 1 : 2;
    IsosurfaceGenerator generator;
    const float cell = 2.0F / 6.0F;
    generator.GenerateSurfaces(labels.data(), {{1, 0}, {2, 1}}, 6, 6, 6, cell, cell, cell);
    ASSERT_EQ(generator.GetSurfaces().size(), 2U);
    window.Canvas().SetSurfaceColours(drawn, colours);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    window.Canvas().SetIsosurfaces(generator, {-1, -1, -1});
}

/// How many pixels have more red than green, and more green than red, left and right of a column.
std::map<std::string, int> CountHues(const wxImage& picture, int column) {
    std::map<std::string, int> count;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x) {
            const wxColour c = ColourAt(picture, {x, y});
            if (c.Red() > c.Green() + 20)
                ++count[x < column ? "red left" : "red right"];
            else if (c.Green() > c.Red() + 20)
                ++count[x < column ? "green left" : "green right"];
            else if (c.Red() > 0)
                ++count["gray"];
        }
    return count;
}

TEST_F(VolumePicture, SurfacesStandAtTheirPlacesInTheirColours) {
    const VolumeWindow window;
    window.Show(6, nothing);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    // Labels take the colours in turn: 1 green, 2 red.
    ShowBlocks(window, true, {{255, 0, 0}, {0, 255, 0}});
    // Block 1 reaches from 0.5 to 2.5 cells, in the view's space from -0.833 to -0.167; block 2 from 3.5 to 4.5, from
    // 0.167 to 0.5. So one lies left of the middle, the other right.
    const auto hues = CountHues(window.Picture(), 100);
    EXPECT_GT(hues.count("green left") ? hues.at("green left") : 0, 80);
    EXPECT_GT(hues.count("red right") ? hues.at("red right") : 0, 30);
    EXPECT_EQ(hues.count("red left") + hues.count("green right"), 0U);
}

TEST_F(VolumePicture, SurfacesThatAreOffAreKept) {
    const VolumeWindow window;
    window.Show(6, nothing);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    ShowBlocks(window, false, {{255, 0, 0}});
    EXPECT_TRUE(CountHues(window.Picture(), 100).empty());
    window.Canvas().SetSurfaceColours(true, {{255, 0, 0}});
    EXPECT_GT(CountHues(window.Picture(), 100)["red left"], 80);
}

TEST_F(VolumePicture, SurfacesWithoutColoursAreWhite) {
    const VolumeWindow window;
    window.Show(6, nothing);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    ShowBlocks(window, true, {});
    const auto hues = CountHues(window.Picture(), 100);
    EXPECT_EQ(hues.size(), 1U);
    EXPECT_GT(hues.count("gray") ? hues.at("gray") : 0, 80);
}

TEST_F(VolumePicture, NewSurfacesReplaceTheOldOnes) {
    const VolumeWindow window;
    window.Show(6, nothing);
    window.Choose(hidePlane);
    window.Choose(hideBox);
    ShowBlocks(window, true, {{255, 0, 0}});
    EXPECT_FALSE(CountHues(window.Picture(), 100).empty());
    // A single voxel's label has eight triangles, of which none has an area when drawn.
    std::vector<unsigned short> labels(27, 0);
    labels[13] = 1;
    IsosurfaceGenerator generator;
    generator.GenerateSurfaces(labels.data(), {{1, 0}, {2, 1}}, 3, 3, 3, 1, 1, 1);
    window.Canvas().SetIsosurfaces(generator, {});
    EXPECT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 8U);
    EXPECT_EQ(generator.GetSurfaces()[1].GetTriangleCount(), 0U);
    window.Picture();
    generator.Release();
    window.Canvas().SetIsosurfaces(generator, {});
    EXPECT_TRUE(CountHues(window.Picture(), 100).empty());
}

// Uploads that fail.

TEST_F(VolumePicture, ASideAboveTheLimitIsRefused) {
    const VolumeWindow window;
    window.Show(2, white);
    const kep::Vector3d<float> scale = window.Canvas().GetTextureScale();
    LogCatcher log;
    window.Canvas().SetVolumeData(nullptr, {3, 32884, 3}, {9, 9, 9});
    EXPECT_TRUE(log.Has(wxLOG_Error, "Sorry. The data is too big and cannot be displayed"));
    EXPECT_FALSE(window.Canvas().HasVolume());
    EXPECT_EQ(window.Canvas().GetTextureScale(), scale);
    window.Canvas().SetVolumeData(nullptr, {std::size_t{1} << 32, 3, 3}, {9, 9, 9}); // 0 in 32 bits
    EXPECT_EQ(log.GetEntries().size(), 2U);
    EXPECT_TRUE(IsBlack(ColourAt(window.Picture(), {100, 100})));
}

TEST_F(VolumePicture, WhatTheDriverRefusesIsToldAndNotDrawn) {
    const VolumeWindow window;
    window.Show(2, white);
    LogCatcher log;
    window.Canvas().SetVolumeData(nullptr, {32883, 3, 3}, {9, 9, 9});
    EXPECT_TRUE(
        log.Has(wxLOG_Error,
                "Sorry. Creating the 3D texture failed (the image is probably too big), no data will be displayed."));
    EXPECT_FALSE(window.Canvas().HasVolume());
    EXPECT_EQ(window.Canvas().GetTextureScale(), kep::Vector3d<float>(9, 9, 9));
    EXPECT_TRUE(IsBlack(ColourAt(window.Picture(), {100, 100})));
    window.Show(2, white); // the next one that fits is drawn again
    EXPECT_FALSE(IsBlack(ColourAt(window.Picture(), {100, 100})));
}

TEST_F(VolumePicture, SidesThatAreNoPowersOfTwoAreFine) {
    const VolumeWindow window;
    std::vector<Voxel> voxels(5 * 7 * 13, Voxel{255, 255, 255, 255});
    window.Canvas().SetVolumeData(voxels.data(), {5, 7, 13}, {1, 1, 0.5F});
    EXPECT_TRUE(window.Canvas().HasVolume());
}

TEST_F(VolumePicture, TwoWindowsKeepTheirVolumesApart) {
    const VolumeWindow left;
    left.Show(4, [](auto...) { return Opaque(255, 0, 0); });
    {
        const VolumeWindow right;
        right.Show(4, [](auto...) { return Opaque(0, 255, 0); });
        EXPECT_GT(ColourAt(right.Picture(), {100, 100}).Green(), 140);
    }
    EXPECT_GT(ColourAt(left.Picture(), {100, 100}).Red(), 140);
    left.Show(4, [](auto...) { return Opaque(0, 0, 255); }); // no context is current but by its own call
    EXPECT_GT(ColourAt(left.Picture(), {100, 100}).Blue(), 140);
}

} // namespace
} // namespace zel::test
