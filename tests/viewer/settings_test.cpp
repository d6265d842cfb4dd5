#include "tests/support/pictures.h"
#include "tests/viewer/noting_canvas.h"
#include "viewer/zel_imagecanvas3d.h"

#include <limits>
#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

using Vector = kep::Vector3d<float>;

class SettingsTest : public NotingCanvasTest {};

/// Options that differ from a new canvas's in every field.
zel_CanvasSettings AllDifferent() {
    zel_CanvasSettings s;
    s.showAnnotation = true;
    s.showXY = false;
    s.showXZ = true; // one must be left
    s.showYZ = false;
    s.contentXY = zel_PC_AUTOFOCUS;
    s.contentXZ = zel_PC_AUTOFOCUS;
    s.contentYZ = zel_PC_AUTOFOCUS;
    s.zoom = 2;
    s.cut = {1, 2, 3};
    s.baseScale = {4, 5, 6};
    s.cutPointer = {5, wxColour(1, 2, 3)};
    s.reversedX = s.reversedY = s.reversedZ = true;
    s.annotation.textXY = "top";
    s.annotation.textXZ = "front";
    s.annotation.textYZ = "side";
    s.annotation.positionXY = 1;
    s.annotation.positionXZ = 2;
    s.annotation.positionYZ = 3;
    s.annotation.offsetXY = {1, 2};
    s.annotation.offsetXZ = {3, 4};
    s.annotation.offsetYZ = {6, 7};
    s.annotation.colour = wxColour(4, 5, 6);
    s.annotation.font = wxFont(14, wxFONTFAMILY_ROMAN, wxFONTSTYLE_ITALIC, wxFONTWEIGHT_NORMAL);
    s.scaleBar = {2.5F, 7, wxColour(7, 8, 9), 1, {11, 12}};
    s.timeBar = {70, 5, wxColour(10, 11, 12), 2, {13, 14}};
    return s;
}

void ExpectSame(const zel_CanvasSettings& a, const zel_CanvasSettings& b) {
    EXPECT_EQ(a.showAnnotation, b.showAnnotation);
    EXPECT_EQ(a.showXY, b.showXY);
    EXPECT_EQ(a.showXZ, b.showXZ);
    EXPECT_EQ(a.showYZ, b.showYZ);
    EXPECT_EQ(a.contentXY, b.contentXY);
    EXPECT_EQ(a.contentXZ, b.contentXZ);
    EXPECT_EQ(a.contentYZ, b.contentYZ);
    EXPECT_EQ(a.zoom, b.zoom);
    EXPECT_EQ(a.cut, b.cut);
    EXPECT_EQ(a.baseScale, b.baseScale);
    EXPECT_EQ(a.cutPointer.style, b.cutPointer.style);
    EXPECT_EQ(a.cutPointer.colour, b.cutPointer.colour);
    EXPECT_EQ(a.reversedX, b.reversedX);
    EXPECT_EQ(a.reversedY, b.reversedY);
    EXPECT_EQ(a.reversedZ, b.reversedZ);
    EXPECT_EQ(a.annotation.textXY, b.annotation.textXY);
    EXPECT_EQ(a.annotation.textXZ, b.annotation.textXZ);
    EXPECT_EQ(a.annotation.textYZ, b.annotation.textYZ);
    EXPECT_EQ(a.annotation.positionXY, b.annotation.positionXY);
    EXPECT_EQ(a.annotation.positionXZ, b.annotation.positionXZ);
    EXPECT_EQ(a.annotation.positionYZ, b.annotation.positionYZ);
    EXPECT_EQ(a.annotation.offsetXY, b.annotation.offsetXY);
    EXPECT_EQ(a.annotation.offsetXZ, b.annotation.offsetXZ);
    EXPECT_EQ(a.annotation.offsetYZ, b.annotation.offsetYZ);
    EXPECT_EQ(a.annotation.colour, b.annotation.colour);
    EXPECT_EQ(a.annotation.font, b.annotation.font);
    EXPECT_EQ(a.scaleBar.length, b.scaleBar.length);
    EXPECT_EQ(a.scaleBar.thickness, b.scaleBar.thickness);
    EXPECT_EQ(a.scaleBar.colour, b.scaleBar.colour);
    EXPECT_EQ(a.scaleBar.position, b.scaleBar.position);
    EXPECT_EQ(a.scaleBar.offset, b.scaleBar.offset);
    EXPECT_EQ(a.timeBar.length, b.timeBar.length);
    EXPECT_EQ(a.timeBar.thickness, b.timeBar.thickness);
    EXPECT_EQ(a.timeBar.colour, b.timeBar.colour);
    EXPECT_EQ(a.timeBar.position, b.timeBar.position);
    EXPECT_EQ(a.timeBar.offset, b.timeBar.offset);
}

} // namespace

TEST_F(SettingsTest, NewRecordsHaveTheCanvassDefaults) {
    const zel_CanvasSettings s;
    EXPECT_EQ(s.cut, Vector(0, 0, 0));
    EXPECT_EQ(s.baseScale, Vector(0, 0, 0));
    EXPECT_EQ(s.cutPointer.style, 1);
    EXPECT_EQ(s.cutPointer.colour, wxColour(0, 255, 0));
    EXPECT_EQ(s.annotation.textXY, "XY");
    EXPECT_EQ(s.annotation.textXZ, "XZ");
    EXPECT_EQ(s.annotation.textYZ, "YZ");
    EXPECT_EQ(s.annotation.positionXY, 0);
    EXPECT_EQ(s.annotation.positionXZ, 0);
    EXPECT_EQ(s.annotation.positionYZ, 0);
    EXPECT_EQ(s.annotation.offsetXY, wxPoint(5, 5));
    EXPECT_EQ(s.annotation.offsetXZ, wxPoint(5, 5));
    EXPECT_EQ(s.annotation.offsetYZ, wxPoint(5, 5));
    EXPECT_EQ(s.annotation.colour, *wxWHITE);
    EXPECT_EQ(s.annotation.font.GetPointSize(), 10);
    EXPECT_EQ(s.annotation.font.GetFamily(), wxFONTFAMILY_SWISS);
    EXPECT_EQ(s.annotation.font.GetStyle(), wxFONTSTYLE_NORMAL);
    EXPECT_EQ(s.annotation.font.GetWeight(), wxFONTWEIGHT_BOLD);
    EXPECT_FALSE(s.annotation.font.GetUnderlined());
    EXPECT_EQ(s.scaleBar.length, 1.0F);
    EXPECT_EQ(s.scaleBar.thickness, 2);
    EXPECT_EQ(s.scaleBar.colour, *wxWHITE);
    EXPECT_EQ(s.scaleBar.position, 2);
    EXPECT_EQ(s.scaleBar.offset, wxPoint(10, 10));
    EXPECT_EQ(s.timeBar.length, 50);
    EXPECT_EQ(s.timeBar.thickness, 2);
    EXPECT_EQ(s.timeBar.colour, *wxWHITE);
    EXPECT_EQ(s.timeBar.position, 3);
    EXPECT_EQ(s.timeBar.offset, wxPoint(10, 10));

    zel_CanvasSettings fresh;
    fresh.showAnnotation = fresh.reversedX = true;
    canvas->GetSettings(fresh);
    zel_CanvasSettings expected;
    expected.baseScale = {10, 10, 10};
    ExpectSame(fresh, expected);
}

TEST_F(SettingsTest, EveryFieldComesBack) {
    canvas->SetSettings(AllDifferent());
    zel_CanvasSettings back;
    canvas->GetSettings(back);
    ExpectSame(back, AllDifferent());
    EXPECT_EQ(canvas->GetScale(), Vector(12, 15, 18)); // zoom 2 is three times
    EXPECT_TRUE(canvas->IsAxisReversed(0) && canvas->IsAxisReversed(1) && canvas->IsAxisReversed(2));
    EXPECT_EQ(canvas->GetContent(zel_PT_ALL), zel_PC_AUTOFOCUS);
    EXPECT_TRUE(canvas->GetInfoFlag());
    EXPECT_FALSE(Window(zel_PT_XY).IsShown());
    EXPECT_TRUE(Window(zel_PT_XZ).IsShown());
    EXPECT_EQ(canvas->GetPointerStyle().style, 5);
    EXPECT_EQ(canvas->GetProjectionAnnotationStyle().textYZ, "side");
    EXPECT_EQ(canvas->GetScaleBarStyle().length, 2.5F);
    EXPECT_EQ(canvas->GetTimeBarStyle().length, 70);
}

TEST_F(SettingsTest, OneNotificationForTheWholeView) {
    canvas->SetSettings(AllDifferent());
    EXPECT_EQ(canvas->calls, (Calls{"OnVis3dChange 7"})) << "nothing is mirrored in place, no other word is said";
    EXPECT_EQ(canvas->cutInfos, 1);
    EXPECT_EQ(canvas->pixelInfos, 0);
}

TEST_F(SettingsTest, ACutThatIsNotInsideBecomesTheCentre) {
    canvas->GetView().boundingBox = {{2, 4, 6}, {20, 10, 8}};
    zel_CanvasSettings s = AllDifferent();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Vector& outside : {Vector(2, 5, 7), Vector(22, 5, 7), Vector(3, 4, 7), Vector(3, 14, 7), Vector(3, 5, 6),
                                  Vector(3, 5, 14), Vector(0, 0, 0), Vector(nan, 5, 7), Vector(3, 5, 100)}) {
        s.cut = outside;
        canvas->SetSettings(s);
        EXPECT_EQ(canvas->GetCut(), Vector(12, 9, 10)); // offset + size / 2
    }
    s.cut = {2.01F, 13.99F, 6.01F};
    canvas->SetSettings(s);
    EXPECT_EQ(canvas->GetCut(), s.cut);
}

TEST_F(SettingsTest, ThePointersStyleAloneRefreshesNothing) {
    Settle();
    canvas->paintsXY = 0;
    canvas->SetPointerStyle({4, wxColour(1, 2, 3)});
    Settle();
    EXPECT_EQ(canvas->paintsXY, 0);
    EXPECT_EQ(canvas->GetPointerStyle().style, 4);
    EXPECT_EQ(canvas->GetPointerStyle().colour, wxColour(1, 2, 3));
}

TEST_F(SettingsTest, OddBaseScalesAreStoredAndSurvived) {
    zel_CanvasSettings s;
    canvas->GetSettings(s);
    for (const Vector& odd : {Vector(0, 0, 0), Vector(-3, 10, 10), Vector(10, 0, -1), Vector(1e30F, 10, 10)}) {
        s.baseScale = odd;
        canvas->SetSettings(s);
        Settle();
        zel_CanvasSettings back;
        canvas->GetSettings(back);
        EXPECT_EQ(back.baseScale, odd);
        EXPECT_GE(Window(zel_PT_XY).GetClientSize().x, 1);
    }
    s.baseScale = {10, 10, 10};
    canvas->SetSettings(s);
    EXPECT_EQ(Window(zel_PT_XY).GetClientSize(), wxSize(200, 200));
    EXPECT_EQ(canvas->GetVisibleBox(), MicronBox({0, 0, 0}, {20, 20, 7})) << "nothing of it stays";
}

TEST_F(SettingsTest, NoBaseScaleMakesWindowsLargerThanTheCanvas) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    constexpr int furthest = std::numeric_limits<int>::max();
    const auto image = MakeImage<unsigned char>({6, 5, 4}, 1, [](auto...) { return 0; });
    const PlainMapper<unsigned char> mapper;
    auto* const typed =
        new zel_ImageViewer3dCanvas<unsigned char>(canvas, mapper, image.get(), false, wxID_ANY, {0, 0}, {300, 300});
    Settle();
    zel_ImageCanvasSettings s;
    typed->GetSettings(s);
    for (const Vector& odd : {Vector(-1, -1, 1), Vector(1, 1, -1), Vector(-inf, 1, inf), Vector(1, inf, -1),
                              Vector(1e38F, -1e38F, 1), Vector(std::numeric_limits<float>::quiet_NaN(), 1, 1)})
        for (const int zoom : {0, 1000, 4400, furthest, -furthest - 1}) {
            s.baseScale = odd;
            s.zoom = zoom;
            const int before = mapper.maps;
            typed->SetSettings(s);
            for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
                const wxRect window = typed->GetDrWin(type)->GetRect();
                ASSERT_TRUE(typed->GetClientRect().Contains(window))
                    << odd.x << " " << odd.y << " " << odd.z << " at " << zoom << ": " << window.width << " by "
                    << window.height;
            }
            EXPECT_TRUE(WaitUntil([&] { return mapper.maps > before; })) << "it is drawn";
        }
    typed->Destroy();
    Pump();
}

TEST_F(SettingsTest, TheTypedCanvasMirrorsByTheNewFlags) {
    const auto image =
        MakeImage<unsigned char>({6, 5, 4}, 1, [](auto x, auto y, auto z, auto) { return 1 + x + 10 * y + 50 * z; });
    const PlainMapper<unsigned char> mapper;
    auto* const typed =
        new zel_ImageViewer3dCanvas<unsigned char>(canvas, mapper, image.get(), false, wxID_ANY, {0, 0}, {300, 300});
    Settle();
    zel_ImageCanvasSettings s;
    typed->GetSettings(s);
    EXPECT_EQ(s.baseScale, Vector(1, 1, 1));
    EXPECT_EQ(s.cut, Vector(3.5F, 2.5F, 2.5F));
    s.cutPointer.style = 0;
    s.reversedX = true;
    s.reversedZ = true;
    typed->SetSettings(s);
    Settle();
    const auto at = [&](zel_ProjectionType type, int x, int y) {
        return static_cast<int>(typed->GetDrWin(type)->GetPointerImage().GetRed(x, y));
    };
    EXPECT_EQ(at(zel_PT_XY, 0, 0), 1 + 5 + 50 * 2); // X from the right, at Z 2
    EXPECT_EQ(at(zel_PT_XY, 5, 4), 1 + 0 + 10 * 4 + 50 * 2);
    EXPECT_EQ(at(zel_PT_XZ, 0, 0), 1 + 5 + 10 * 2 + 50 * 3); // Z from below
    EXPECT_EQ(at(zel_PT_YZ, 0, 0), 1 + 3 + 50 * 3);          // Z from the right
    zel_CanvasSettings plain;                                // the base's form stands too
    typed->GetSettings(plain);
    EXPECT_TRUE(plain.reversedX && plain.reversedZ && !plain.reversedY);
    typed->Destroy();
    Pump();
}
