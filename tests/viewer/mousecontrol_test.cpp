// The mouse in the three windows of a frame that was equipped with it.

#include "factory/zel_viewerfactory.h"
#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "viewer/zel_equipframe.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

using Place = kep::Vector3d<float>;

class MouseTest : public GuiTest {
protected:
    void TearDown() override {
        if (m_frame != nullptr)
            m_frame->Destroy();
        GuiTest::TearDown();
    }

    /// One pixel a voxel and a micron; the cut is in the voxel in the middle.
    void Open(std::size_t x, std::size_t y, std::size_t z) {
        auto image = MakeImage<unsigned char>({x, y, z}, 1, [](std::size_t i, auto...) { return i % 2; });
        m_frame = zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, "mouse", wxDefaultPosition,
                                         wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        image.release(); // the frame has it
        EXPECT_TRUE(EquipFrame(*m_frame, {.trueProportions = true, .fillsDisplay = false}));
        ASSERT_TRUE(ShowAndWait(*m_frame));
        ASSERT_TRUE(WaitUntil([this] { // a small image leaves room in the smallest window
            const wxSize room = m_frame->GetClientSize(), wanted = Canvas().GetOptimalSize();
            return room.x >= wanted.x && room.y >= wanted.y;
        }));
    }
    zel_Viewer3dCanvas& Canvas() { return *m_frame->GetCanvas(); }
    zel_DrWin3d& Window(zel_ProjectionType type) { return *Canvas().GetDrWin(type); }

    void Send(zel_ProjectionType type, wxMouseEvent event, const wxPoint& at) {
        event.SetPosition(at);
        event.SetEventObject(&Window(type));
        Window(type).ProcessWindowEvent(event);
    }
    void Click(zel_ProjectionType type, const wxPoint& at) {
        wxMouseEvent down(wxEVT_LEFT_DOWN);
        down.SetLeftDown(true);
        Send(type, down, at);
        Send(type, wxMouseEvent(wxEVT_LEFT_UP), at);
    }
    void Wheel(zel_ProjectionType type, int rotation, const wxPoint& at = {3, 3}, bool control = false) {
        wxMouseEvent event(wxEVT_MOUSEWHEEL);
        event.m_wheelRotation = rotation;
        event.m_wheelDelta = 120;
        event.SetControlDown(control);
        Send(type, event, at);
    }
    void Middle(zel_ProjectionType type, wxEventType kind, const wxPoint& at, bool down = true) {
        wxMouseEvent event(kind);
        event.SetMiddleDown(down);
        Send(type, event, at);
    }

    zel_Viewer3dFrame* m_frame = nullptr;
};

TEST_F(MouseTest, AClickSetsTheCutToTheMiddleOfTheVoxelUnderIt) {
    Open(40, 30, 10);
    ASSERT_EQ(Canvas().GetCut(), Place(20.5F, 15.5F, 5.5F));
    Click(zel_PT_XY, {7, 11});
    EXPECT_EQ(Canvas().GetCut(), Place(7.5F, 11.5F, 5.5F));
    Click(zel_PT_XZ, {39, 2}); // X to the right, Z downwards
    EXPECT_EQ(Canvas().GetCut(), Place(39.5F, 11.5F, 2.5F));
    Click(zel_PT_YZ, {9, 0}); // Z to the right, Y downwards
    EXPECT_EQ(Canvas().GetCut(), Place(39.5F, 0.5F, 9.5F));
}

TEST_F(MouseTest, AClickFindsItsVoxelOnMirroredAxesToo) {
    Open(40, 30, 10);
    Canvas().ToggleAxisReverse(0);
    Canvas().ToggleAxisReverse(2);
    Click(zel_PT_XY, {7, 11}); // column 7 shows voxel 40 - 1 - 7
    EXPECT_EQ(Canvas().GetCut(), Place(32.5F, 11.5F, 5.5F));
    Click(zel_PT_XZ, {0, 2}); // row 2 shows layer 10 - 1 - 2
    EXPECT_EQ(Canvas().GetCut(), Place(39.5F, 11.5F, 7.5F));
    Click(zel_PT_YZ, {9, 4}); // its columns are Z's
    EXPECT_EQ(Canvas().GetCut(), Place(39.5F, 4.5F, 0.5F));
    Canvas().ToggleAxisReverse(1);
    Click(zel_PT_YZ, {9, 4});
    EXPECT_EQ(Canvas().GetCut(), Place(39.5F, 25.5F, 0.5F));
}

TEST_F(MouseTest, TheWheelStepsThroughTheWindowsThirdAxis) {
    Open(40, 30, 10);
    Wheel(zel_PT_XY, -120); // towards the user is on, as Page Down
    EXPECT_EQ(Canvas().GetCut(), Place(20.5F, 15.5F, 6.5F));
    Wheel(zel_PT_XZ, -240);
    EXPECT_EQ(Canvas().GetCut(), Place(20.5F, 17.5F, 6.5F));
    Wheel(zel_PT_YZ, 120);
    EXPECT_EQ(Canvas().GetCut(), Place(19.5F, 17.5F, 6.5F));
    Wheel(zel_PT_XY, -12000);
    EXPECT_EQ(Canvas().GetCut(), Place(19.5F, 17.5F, 9.5F));
    Wheel(zel_PT_XY, 12000);
    EXPECT_EQ(Canvas().GetCut(), Place(19.5F, 17.5F, 0.5F));
}

TEST_F(MouseTest, ControlAndTheWheelZoomAtThePointer) {
    Open(900, 700, 40);
    const wxPoint at(600, 500);
    const float x = Window(zel_PT_XY).WindowXToMicrons(at.x);
    const float y = Window(zel_PT_XY).WindowYToMicrons(at.y);
    Wheel(zel_PT_XY, 240, at, true);
    EXPECT_EQ(Canvas().GetZoom(), 2);
    // 2700 pixels don't fit on the display; the place stays under the pointer to a pixel, of which a micron has three.
    EXPECT_LT(Canvas().GetVisibleBox().size.x, 900.0F);
    EXPECT_NEAR(Window(zel_PT_XY).WindowXToMicrons(at.x), x, 0.34);
    EXPECT_NEAR(Window(zel_PT_XY).WindowYToMicrons(at.y), y, 0.34);
    EXPECT_EQ(Canvas().GetCut(), Place(450.5F, 350.5F, 20.5F));
    Wheel(zel_PT_XY, -120, at, true);
    EXPECT_EQ(Canvas().GetZoom(), 1);
}

TEST_F(MouseTest, TheMiddleButtonTakesThePictureAlong) {
    Open(400, 300, 100);
    ASSERT_TRUE(ResizeClient(*m_frame, {300, 260}));
    const Place before = Canvas().GetVisibleBox().offset;
    ASSERT_GT(before.x, 30.0F);
    ASSERT_GT(before.y, 20.0F);
    Middle(zel_PT_XY, wxEVT_MIDDLE_DOWN, {50, 50});
    Middle(zel_PT_XY, wxEVT_MOTION, {60, 70});
    Middle(zel_PT_XY, wxEVT_MOTION, {61, 62}); // 11 to the right, 12 down: the view goes left and up
    EXPECT_EQ(Canvas().GetVisibleBox().offset, Place(before.x - 11, before.y - 12, before.z));
    Middle(zel_PT_XY, wxEVT_MOTION, {5000, 62}); // as far as the image goes, and back with the hand
    EXPECT_EQ(Canvas().GetVisibleBox().offset.x, 0.0F);
    Middle(zel_PT_XY, wxEVT_MOTION, {50, 50});
    EXPECT_EQ(Canvas().GetVisibleBox().offset, before);
    Middle(zel_PT_XY, wxEVT_MIDDLE_UP, {50, 50}, false);
    Middle(zel_PT_XY, wxEVT_MOTION, {80, 80}, false);
    Middle(zel_PT_XY, wxEVT_MOTION, {90, 80}); // pressed elsewhere and dragged in
    EXPECT_EQ(Canvas().GetVisibleBox().offset, before);
}

TEST_F(MouseTest, ThePictureFollowsTheHandOnMirroredAxesToo) {
    Open(400, 300, 100);
    ASSERT_TRUE(ResizeClient(*m_frame, {300, 260}));
    Canvas().ToggleAxisReverse(0);
    const Place before = Canvas().GetVisibleBox().offset;
    Middle(zel_PT_XY, wxEVT_MIDDLE_DOWN, {50, 50});
    Middle(zel_PT_XY, wxEVT_MOTION, {60, 70});
    EXPECT_EQ(Canvas().GetVisibleBox().offset, Place(before.x + 10, before.y - 20, before.z));
    Middle(zel_PT_XY, wxEVT_MIDDLE_UP, {60, 70}, false);
    // X's mirror is no matter in the YZ window, whose columns are Z's.
    m_frame->GetMenuBar()->Check(zel_CMD_AUTO_ADJUST_FRAME_SIZE, false);
    Wheel(zel_PT_XY, 120, {50, 50}, true);
    const Place zoomed = Canvas().GetVisibleBox().offset;
    Middle(zel_PT_YZ, wxEVT_MIDDLE_DOWN, {20, 50});
    Middle(zel_PT_YZ, wxEVT_MOTION, {24, 40});
    EXPECT_FLOAT_EQ(Canvas().GetVisibleBox().offset.z, zoomed.z - 2); // two pixels a voxel
    EXPECT_FLOAT_EQ(Canvas().GetVisibleBox().offset.y, zoomed.y + 5);
    EXPECT_EQ(Canvas().GetVisibleBox().offset.x, zoomed.x);
}

TEST_F(MouseTest, ADoubleClickCentres) {
    Open(400, 300, 100);
    ASSERT_TRUE(ResizeClient(*m_frame, {300, 260}));
    const Place before = Canvas().GetVisibleBox().offset;
    Send(zel_PT_XY, wxMouseEvent(wxEVT_LEFT_DCLICK), {60, 40});
    const kep::VOI<kep::T_pair<float, float>>& visible = Canvas().GetVisibleBox();
    EXPECT_FLOAT_EQ(visible.offset.x + visible.size.x / 2, before.x + 60);
    EXPECT_FLOAT_EQ(visible.offset.y + visible.size.y / 2, before.y + 40);
    EXPECT_EQ(visible.offset.z, before.z);
}

TEST_F(MouseTest, AViewerThatClosesIsLeftAsItIs) {
    Open(40, 30, 10);
    Canvas().DetachMapper(); // as Destroy does; from here on there is no image
    const Place cut = Canvas().GetCut();
    const int zoom = Canvas().GetZoom();
    Click(zel_PT_XY, {4, 5});
    Wheel(zel_PT_XZ, -240);
    Wheel(zel_PT_XY, 120, {3, 3}, true);
    Send(zel_PT_YZ, wxMouseEvent(wxEVT_LEFT_DCLICK), {2, 3});
    Middle(zel_PT_XY, wxEVT_MIDDLE_DOWN, {9, 9});
    Middle(zel_PT_XY, wxEVT_MOTION, {5, 5});
    EXPECT_EQ(Canvas().GetCut(), cut);
    EXPECT_EQ(Canvas().GetZoom(), zoom);
}

TEST_F(MouseTest, OtherMouseEventsChangeNothing) {
    Open(40, 30, 10);
    for (const wxEventType type : {wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP, wxEVT_RIGHT_DCLICK, wxEVT_MOTION,
                                   wxEVT_ENTER_WINDOW, wxEVT_LEAVE_WINDOW, wxEVT_MIDDLE_UP, wxEVT_AUX1_DOWN})
        Send(zel_PT_XY, wxMouseEvent(type), {5, 6});
    EXPECT_EQ(Canvas().GetCut(), Place(20.5F, 15.5F, 5.5F));
    EXPECT_EQ(Canvas().GetZoom(), 0);
}

} // namespace
