#include "tests/viewer/noting_canvas.h"

#include <wx/dcclient.h>

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// Paints each window in a colour of its own.
class PlainCanvas : public NotingCanvas {
public:
    using NotingCanvas::NotingCanvas;

    void Draw(wxDC& dc, zel_ProjectionType type) override {
        ++draws;
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(wxBrush(wxColour(static_cast<unsigned char>(10 * type), 100, 200)));
        dc.DrawRectangle(0, 0, 4, 4);
    }
    void InfoFrame_UpdatePixelInfo() override { calls.push_back("PixelInfo"); }
    void MakeDirtyAndRefresh(zel_ProjectionType) override {}

    using zel_Viewer3dCanvas::CenterViewIfOut;
    using zel_Viewer3dCanvas::RepaintNow;

    int draws = 0;
};

class CanvasTest : public CanvasFixture<PlainCanvas> {
protected:
    wxSize Inner(zel_ProjectionType type) { return canvas->GetDrWin(type)->GetClientSize(); }
};

} // namespace

TEST_F(CanvasTest, ShowsAnEmptyBoxOf20By20By7MicronsAtTheStart) {
    // 10 pixels per micron: 200 x 200 x 70 pixels, which fit into 400 x 400.
    EXPECT_EQ(canvas->GetBoundingBox(), MicronBox({0, 0, 0}, {20, 20, 7}));
    EXPECT_EQ(canvas->GetVisibleBox(), MicronBox({0, 0, 0}, {20, 20, 7}));
    EXPECT_EQ(canvas->GetScale(), kep::Vector3d<float>(10, 10, 10));
    EXPECT_EQ(canvas->GetZoom(), 0);
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(0, 0, 0));
    EXPECT_EQ(canvas->GetCutStep(), kep::Vector3d<float>(0.1F, 0.1F, 0.2F));
    EXPECT_EQ(Inner(zel_PT_XY), wxSize(200, 200));
    EXPECT_EQ(Inner(zel_PT_XZ), wxSize(200, 70));
    EXPECT_EQ(Inner(zel_PT_YZ), wxSize(70, 200));
    EXPECT_FALSE(canvas->GetInfoFlag());
    EXPECT_EQ(canvas->GetDrWin(zel_PT_ALL), nullptr);
    EXPECT_FALSE(canvas->InfoFrame_IsShown());
    EXPECT_EQ(canvas->InfoFrame_Get(), nullptr);
}

TEST_F(CanvasTest, MeasuresTheBorderOfItsWindows) {
    const zel_DrWin3d* const window = canvas->GetDrWin(zel_PT_XY);
    EXPECT_EQ(canvas->GetBorder(), window->GetSize().x - window->GetClientSize().x);
    EXPECT_GT(canvas->GetBorder(), 0);
    EXPECT_EQ(window->GetPosition(), wxPoint(1, 1));
    EXPECT_EQ(canvas->GetDrWin(zel_PT_XZ)->GetPosition(), wxPoint(1, 200 + canvas->GetBorder() + 1));
    EXPECT_EQ(canvas->GetDrWin(zel_PT_YZ)->GetPosition(), wxPoint(200 + canvas->GetBorder() + 1, 1));
}

TEST_F(CanvasTest, WindowsKnowTheirPlace) {
    struct Case {
        zel_ProjectionType type;
        int others, vertical, horizontal;
        kep::Vector3d<float> image;
    };
    for (const Case& c : {Case{zel_PT_XY, 6, 5, 3, {1, 2, 3}}, Case{zel_PT_XZ, 5, 6, 3, {1, 3, 2}},
                          Case{zel_PT_YZ, 3, 5, 6, {3, 2, 1}}}) {
        const zel_DrWin3d* const window = canvas->GetDrWin(c.type);
        EXPECT_EQ(window->GetProjectionType(), c.type);
        EXPECT_EQ(window->GetOtherWindowsMask(), c.others);
        EXPECT_EQ(window->GetVerticalAxisMask(), c.vertical);
        EXPECT_EQ(window->GetHorizontalAxisMask(), c.horizontal);
        EXPECT_EQ(window->WindowToImage({1, 2, 3}), c.image);
    }
    EXPECT_EQ(canvas->GetDrWin(zel_PT_XZ)->GetOptimalSize(), wxSize(200, 70));
    EXPECT_EQ(canvas->GetDrWin(zel_PT_YZ)->GetOptimalSize(), wxSize(70, 200));
}

TEST_F(CanvasTest, OptimalSizeCountsTheShownWindows) {
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(200 + 6 + 70 + 6, 200 + 6 + 70 + 6));
    canvas->ShowDrWin(zel_PT_YZ, false);
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(206, 282));
    canvas->ZoomIn();
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(406, 406 + 146));
}

TEST_F(CanvasTest, ZoomKeepsTheCentreAndNotifies) {
    canvas->ZoomIn();
    EXPECT_EQ(canvas->GetZoom(), 1);
    EXPECT_EQ(canvas->GetScale(), kep::Vector3d<float>(20, 20, 20));
    EXPECT_EQ(canvas->calls, (Calls{"OnVis3dChange 7"}));
    // The box wants 400 pixels of the 400 - 2 - 2 * border: the rest is shared; the centre stays at 10, 10.
    const MicronBox& visible = canvas->GetVisibleBox();
    EXPECT_LT(visible.size.x, 20.0F);
    EXPECT_NEAR(visible.offset.x + visible.size.x / 2, 10, 1e-4);
    EXPECT_NEAR(visible.offset.y + visible.size.y / 2, 10, 1e-4);
    canvas->NormalZoom();
    canvas->ZoomOut();
    EXPECT_EQ(canvas->GetZoom(), -1);
    EXPECT_EQ(canvas->GetScale(), kep::Vector3d<float>(5, 5, 5));
    EXPECT_EQ(Inner(zel_PT_XY), wxSize(100, 100));
    canvas->ZoomOut();
    EXPECT_FLOAT_EQ(canvas->GetScale().x, 10.0F / 3.0F);
}

TEST_F(CanvasTest, WithoutWindowsOnlyTheScaleChanges) {
    canvas->ShowDrWin(zel_PT_ALL, false);
    EXPECT_FALSE(canvas->GetDrWin(zel_PT_XY)->IsShown());
    EXPECT_FALSE(canvas->GetDrWin(zel_PT_XZ)->IsShown());
    EXPECT_FALSE(canvas->GetDrWin(zel_PT_YZ)->IsShown());
    const MicronBox before = canvas->GetVisibleBox();
    canvas->ZoomIn();
    EXPECT_EQ(canvas->GetScale().x, 20.0F);
    EXPECT_EQ(canvas->GetVisibleBox(), before);
}

TEST_F(CanvasTest, ShownMeansAllOfTheMask) {
    EXPECT_TRUE(canvas->IsDrWinShown(zel_PT_ALL));
    canvas->ShowDrWin(zel_PT_XZ, false);
    EXPECT_FALSE(canvas->IsDrWinShown(zel_PT_ALL));
    EXPECT_TRUE(canvas->IsDrWinShown(zel_PT_XY));
    EXPECT_FALSE(canvas->IsDrWinShown(zel_PT_XZ));
    EXPECT_TRUE(canvas->IsDrWinShown(static_cast<zel_ProjectionType>(0)));
    EXPECT_TRUE(canvas->IsDrWinShown(static_cast<zel_ProjectionType>(5)));
    EXPECT_EQ(canvas->calls, (Calls{"OnVis3dChange 7"}));
}

TEST_F(CanvasTest, ContentOfAllIsAutofocusOnlyIfEachIs) {
    canvas->ChangeContent(zel_PC_AUTOFOCUS, static_cast<zel_ProjectionType>(3));
    EXPECT_EQ(canvas->calls, (Calls{"OnContentChange 3"}));
    EXPECT_EQ(canvas->GetContent(zel_PT_XY), zel_PC_AUTOFOCUS);
    EXPECT_EQ(canvas->GetContent(zel_PT_XZ), zel_PC_AUTOFOCUS);
    EXPECT_EQ(canvas->GetContent(zel_PT_YZ), zel_PC_CUT);
    EXPECT_EQ(canvas->GetContent(zel_PT_ALL), zel_PC_CUT);
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_YZ);
    EXPECT_EQ(canvas->GetContent(zel_PT_ALL), zel_PC_AUTOFOCUS);
}

TEST_F(CanvasTest, CutMovesOnlyStrictlyInsideTheBox) {
    for (const kep::Vector3d<float> refused :
         {kep::Vector3d<float>(10, 10, 0), {0, 10, 3}, {10, 20, 3}, {10, 10, 7}, {10, 10, -1}, {NAN, 10, 3}}) {
        canvas->ChangeCut(refused);
        EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(0, 0, 0));
    }
    EXPECT_TRUE(canvas->calls.empty());
    canvas->ChangeCut({10, 10, 0.01F});
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(10, 10, 0.01F));
    EXPECT_EQ(canvas->calls, (Calls{"OnCutChange 7"}));
}

TEST_F(CanvasTest, ReversingAnAxisTurnsItsFlag) {
    const auto asked = std::make_shared<int>(0); // pending events may come after the test
    canvas->Bind(
        wxEVT_UPDATE_UI, [asked](wxUpdateUIEvent&) { ++*asked; }, 6035);
    EXPECT_TRUE(canvas->ToggleAxisReverse(1));
    EXPECT_TRUE(canvas->IsAxisReversed(1));
    EXPECT_FALSE(canvas->IsAxisReversed(0));
    EXPECT_EQ(canvas->calls, (Calls{"ReverseAxis 1", "PixelInfo"}));
    EXPECT_EQ(*asked, 0) << "it comes in a later turn";
    Pump();
    EXPECT_EQ(*asked, 1);
    EXPECT_FALSE(canvas->ToggleAxisReverse(1));
    EXPECT_FALSE(canvas->ToggleAxisReverse(3));
    EXPECT_FALSE(canvas->ToggleAxisReverse(-1));
}

TEST_F(CanvasTest, CentresTheViewOnTheCut) {
    canvas->ZoomIn();
    canvas->ZoomIn();
    canvas->ChangeCut({12, 9, 3});
    canvas->CenterView();
    const MicronBox& visible = canvas->GetVisibleBox();
    EXPECT_NEAR(visible.offset.x + visible.size.x / 2, 12, 1e-4);
    EXPECT_NEAR(visible.offset.y + visible.size.y / 2, 9, 1e-4);
}

TEST_F(CanvasTest, CentresOnlyIfTheCutIsOut) {
    canvas->ZoomIn();
    canvas->ZoomIn();
    canvas->GetView().options.cut = {10, 10, 3};
    const MicronBox before = canvas->GetVisibleBox();
    canvas->CenterViewIfOut();
    EXPECT_EQ(canvas->GetVisibleBox(), before);
    canvas->GetView().options.cut.x = before.offset.x + before.size.x; // on the edge is inside
    canvas->CenterViewIfOut();
    EXPECT_EQ(canvas->GetVisibleBox(), before);
    canvas->GetView().options.cut = {19.9F, 10, 3};
    canvas->CenterViewIfOut();
    EXPECT_FLOAT_EQ(canvas->GetVisibleBox().offset.x, 20.0F - before.size.x);
}

TEST_F(CanvasTest, MirroredWindowCoordinatesFollowXAndYInEveryWindow) {
    zel_DrWin3d* const yz = canvas->GetDrWin(zel_PT_YZ);
    EXPECT_FLOAT_EQ(yz->WindowXToMicrons(30), 3.0F); // Z
    EXPECT_FLOAT_EQ(yz->WindowYToMicrons(50), 5.0F); // Y
    canvas->ToggleAxisReverse(0);
    const auto mirrored = static_cast<float>(yz->GetSize().x - 30 - 1); // the border counts
    EXPECT_FLOAT_EQ(yz->WindowXToMicrons(30), mirrored / 10.0F);
    EXPECT_FLOAT_EQ(yz->WindowYToMicrons(50), 5.0F);
    canvas->ToggleAxisReverse(0);
    canvas->ToggleAxisReverse(2);
    EXPECT_FLOAT_EQ(yz->WindowXToMicrons(30), 3.0F) << "Z's own flag plays no part";
}

TEST_F(CanvasTest, SettingsComeBackAsGiven) {
    zel_CanvasSettings s;
    canvas->GetSettings(s);
    EXPECT_TRUE(s.showXY && s.showXZ && s.showYZ);
    EXPECT_FALSE(s.showAnnotation);
    s.showAnnotation = true;
    s.showYZ = false;
    s.contentXZ = zel_PC_AUTOFOCUS;
    s.zoom = 2;
    s.cut = {1, 2, 3};
    s.baseScale = {4, 5, 6};
    s.reversedY = true;
    s.cutPointer.style = 5;
    s.annotation.textXZ = "side";
    s.scaleBar.length = 2.5F;
    s.timeBar.position = 1;
    canvas->SetSettings(s);
    EXPECT_EQ(canvas->calls, (Calls{"OnVis3dChange 7"})) << "nothing is mirrored in place";
    EXPECT_EQ(canvas->GetScale(), kep::Vector3d<float>(12, 15, 18));
    zel_CanvasSettings back;
    canvas->GetSettings(back);
    EXPECT_TRUE(back.showAnnotation);
    EXPECT_FALSE(back.showYZ);
    EXPECT_EQ(back.contentXZ, zel_PC_AUTOFOCUS);
    EXPECT_EQ(back.cut, kep::Vector3d<float>(1, 2, 3));
    EXPECT_EQ(back.baseScale, kep::Vector3d<float>(4, 5, 6));
    EXPECT_TRUE(back.reversedY);
    EXPECT_EQ(back.cutPointer.style, 5);
    EXPECT_EQ(back.annotation.textXZ, "side");
    EXPECT_EQ(back.scaleBar.length, 2.5F);
    EXPECT_EQ(back.timeBar.position, 1);

    s.cut = {0, 2, 3}; // on a face
    canvas->SetSettings(s);
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(10, 10, 3.5F));
}

TEST_F(CanvasTest, WindowsShowTheirPictureOnBlack) {
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
        const wxImage picture = canvas->GetDrWin(type)->GetPointerImage();
        ASSERT_EQ(picture.GetSize(), Inner(type));
        EXPECT_EQ(ColourAt(picture, {1, 1}), wxColour(static_cast<unsigned char>(10 * type), 100, 200));
        EXPECT_EQ(ColourAt(picture, {8, 8}), wxColour(0, 0, 0));
        const wxImage screen = Screen(*canvas->GetDrWin(type));
        EXPECT_EQ(ColourAt(screen, {20, 20}), wxColour(0, 0, 0));
    }
}

TEST_F(CanvasTest, EveryPixelOfThePicturesIsOnTheScreen) {
    EXPECT_EQ(canvas->GetBorder(), 2) << "the border is drawn, and around the picture";
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
        const wxImage picture = canvas->GetDrWin(type)->GetPointerImage();
        const wxImage screen = OpenGLScreen(*canvas->GetDrWin(type)); // read from the display itself
        ASSERT_EQ(screen.GetSize(), picture.GetSize());
        int others = 0;
        for (int y = 0; y < picture.GetHeight(); ++y)
            for (int x = 0; x < picture.GetWidth(); ++x)
                others += ColourAt(screen, {x, y}) == ColourAt(picture, {x, y}) ? 0 : 1;
        EXPECT_EQ(others, 0) << "pixels differ in window " << type;
    }
}

TEST_F(CanvasTest, ARefreshPaintsEachWindowOnceAndThenAllIsQuiet) {
    canvas->draws = 0;
    canvas->Refresh(false);
    Settle();
    EXPECT_EQ(canvas->draws, 3);
    canvas->draws = 0;
    PassFrames(10);
    EXPECT_EQ(canvas->draws, 0);
}

TEST_F(CanvasTest, APaintOfOneWindowLeavesTheOthersAlone) {
    canvas->draws = 0;
    canvas->GetDrWin(zel_PT_XZ)->Refresh(false);
    PassFrames(10);
    EXPECT_EQ(canvas->draws, 1);
}

TEST_F(CanvasTest, AHiddenFrameStillGetsItsPictures) {
    frame->Hide();
    Settle();
    canvas->draws = 0;
    canvas->RepaintNow();
    EXPECT_EQ(canvas->draws, 3);
    canvas->ShowDrWin(zel_PT_YZ, false);
    canvas->draws = 0;
    canvas->RepaintNow();
    EXPECT_EQ(canvas->draws, 2);
    frame->Show();
}

TEST_F(CanvasTest, ResizingLaysOutAnew) {
    ASSERT_TRUE(ResizeClient(*frame, wxSize(200, 210)));
    std::erase(canvas->calls, "PixelInfo"); // the pointer may come to lie in another window
    ASSERT_FALSE(canvas->calls.empty());
    EXPECT_EQ(canvas->calls.back(), "OnVis3dChange 7");
    // w = 200 - 2 - 2 borders, and YZ wants 70, less than half: XY gets the rest.
    EXPECT_EQ(Inner(zel_PT_XY).x, 200 - 2 - 2 * canvas->GetBorder() - 70);
    EXPECT_EQ(Inner(zel_PT_YZ).x, 70);
}
