#include "tests/support/xwindows.h"
#include "tests/viewer/frame_fixture.h"

#include <wx/statusbr.h>
#include <wx/toolbar.h>

#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

class FrameSizeTest : public GuiTest {
protected:
    void SetUp() override {
        frame = MakeFrame();
        canvas = new FrameCanvas(frame);
        frame->SetCanvas(canvas);
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    /// Makes the client area smaller by a bar, and the frame no larger: so it is with a decoration that appears.
    void TakeFromClientArea() {
        const wxSize size = frame->GetSize();
        const int height = frame->GetClientSize().y;
        wxToolBar* const bar = frame->CreateToolBar();
        bar->AddTool(7000, "tool", wxBitmap(16, 16));
        bar->Realize();
        ASSERT_LT(frame->GetClientSize().y, height);
        ASSERT_EQ(frame->GetSize(), size);
    }

    zel_Viewer3dFrame* frame = nullptr;
    FrameCanvas* canvas = nullptr;
};

} // namespace

TEST_F(FrameSizeTest, ACanvasIsFittedIntoTheFrameAndNotTheOtherWay) {
    EXPECT_EQ(frame->GetSize(), wxSize(500, 450));
    EXPECT_EQ(canvas->GetSize(), frame->GetClientSize());
}

TEST_F(FrameSizeTest, AdjustsToTheOptimalSizeIfTheEntryIsMarked) {
    frame->GetMenuBar()->Check(6015, false);
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(frame->GetSize(), wxSize(500, 450));
    frame->GetMenuBar()->Check(6015, true);
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(frame->GetSize(), frame->ClientToWindowSize(wxSize(282, 282))); // 200 + 6 + 70 + 6
}

TEST_F(FrameSizeTest, AFrameBuiltTooSmallForItsBarsIsAdjustedToo) {
    for (const wxSize built : {wxSize(10, 10), wxSize(100, 60), wxSize(230, 40)}) {
        auto* const small = MakeFrame(nullptr, built);
        small->SetCanvas(new FrameCanvas(small));
        small->ResizeFrameIfRequired();
        EXPECT_TRUE(ShowAndWait(*small));
        EXPECT_TRUE(WaitUntil([&] { return small->GetClientSize() == wxSize(282, 282); }, 1000))
            << built.x << ": " << small->GetClientSize().x << " " << small->GetClientSize().y;
        small->Destroy();
        Pump();
    }
}

TEST_F(FrameSizeTest, ZoomsWithoutAdjustingIfTheEntryIsNotMarked) {
    frame->ProcessCommand(6015); // has no handler: the toolkit turns its mark
    EXPECT_FALSE(frame->GetMenuBar()->IsChecked(6015));
    for (const int zoom : {5999, 6000, 6001}) {
        frame->ProcessCommand(zoom);
        EXPECT_EQ(frame->GetSize(), wxSize(500, 450));
    }
    frame->ProcessCommand(6014); // asked for, it comes all the same
    EXPECT_EQ(frame->GetSize(), frame->ClientToWindowSize(wxSize(282, 282)));
}

TEST_F(FrameSizeTest, ASmallImageGetsTheSmallestFrame) {
    canvas->GetView().boundingBox.size = {1, 1, 1}; // 10 + 6 + 10 + 6 = 32 pixels
    canvas->RecomputeVisible();
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(32, 32));
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(frame->GetMinSize(), wxSize(200, 200));
    EXPECT_EQ(frame->GetSize(), wxSize(200, 200));
    ASSERT_TRUE(ShowAndWait(*frame));
    EXPECT_EQ(frame->GetSize(), wxSize(200, 200));
}

TEST_F(FrameSizeTest, TheAdjustmentItselfAsksForAHundredPixels) {
    frame->SetSizeHints(10, 10);
    canvas->GetView().boundingBox.size = {1, 1, 1};
    canvas->RecomputeVisible();
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(frame->GetSize().x, 100);
    EXPECT_EQ(frame->GetSize().y, std::max(100, frame->ClientToWindowSize(wxSize(32, 32)).y));
}

TEST_F(FrameSizeTest, ALargeImageGetsTheDisplay) {
    for (int i = 0; i < 9; ++i)
        canvas->ZoomIn(); // ten times: 2000 + 6 + 700 + 6 = 2712 pixels
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(2712, 2712));
    EXPECT_EQ(frame->GetSize(), wxGetClientDisplayRect().GetSize());
}

TEST_F(FrameSizeTest, AnImageWiderThanAnyNumberGetsTheDisplayToo) {
    zel_CanvasSettings settings;
    canvas->GetSettings(settings);
    settings.zoom = std::numeric_limits<int>::max();
    canvas->SetSettings(settings);
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()));
    EXPECT_EQ(frame->GetSize(), wxGetClientDisplayRect().GetSize());
}

TEST_F(FrameSizeTest, ANegativeScaleGetsTheSmallestFrame) {
    zel_CanvasSettings settings;
    canvas->GetSettings(settings);
    settings.baseScale = {-1, -1, -1};
    settings.zoom = std::numeric_limits<int>::max();
    canvas->SetSettings(settings);
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(canvas->GetOptimalSize(), wxSize(12, 12)); // the surroundings of two windows
    EXPECT_EQ(frame->GetSize(), wxSize(200, 200));
}

TEST_F(FrameSizeTest, AMaximizedFrameKeepsItsSize) {
    if (!HasWindowManager())
        GTEST_SKIP() << "nobody maximizes windows";
    ASSERT_TRUE(ShowAndWait(*frame));
    frame->Maximize();
    ASSERT_TRUE(WaitUntil([&] { return frame->IsMaximized(); }));
    Settle();
    const wxSize size = frame->GetSize();
    for (const int command : {5999, 6000, 6001, 6014}) {
        frame->ProcessCommand(command);
        EXPECT_EQ(frame->GetSize(), size) << "not even until the window manager says no";
        Settle();
        EXPECT_EQ(frame->GetSize(), size);
        EXPECT_TRUE(frame->IsMaximized());
    }
}

TEST_F(FrameSizeTest, AdjustsOnceMoreWhenTheDecorationTakesFromTheClientArea) {
    frame->ResizeFrameIfRequired();
    TakeFromClientArea();
    EXPECT_NE(frame->GetClientSize(), wxSize(282, 282));
    Settle();
    EXPECT_NE(frame->GetClientSize(), wxSize(282, 282)) << "not before it is shown";
    ASSERT_TRUE(ShowAndWait(*frame));
    EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize() == wxSize(282, 282); })) << frame->GetClientSize().y;
    const wxSize adjusted = frame->GetSize();
    wxToolBar* const bar = frame->GetToolBar();
    frame->SetToolBar(nullptr);
    bar->Destroy();
    EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize().y > 282; })) << "the bar gives back what it took";
    Settle();
    EXPECT_EQ(frame->GetSize(), adjusted) << "not a second time";
}

TEST_F(FrameSizeTest, AFrameThatTheHostResizedStaysAsItIs) {
    frame->ResizeFrameIfRequired();
    frame->SetSize(444, 333);
    TakeFromClientArea();
    ASSERT_TRUE(ShowAndWait(*frame));
    Settle();
    EXPECT_EQ(frame->GetSize(), wxSize(444, 333));
}

TEST_F(FrameSizeTest, AFrameThatTheUserMaximizedStaysAsItIs) {
    if (!HasWindowManager())
        GTEST_SKIP() << "nobody maximizes windows";
    ASSERT_TRUE(ShowAndWait(*frame));
    frame->ResizeFrameIfRequired();
    Settle();
    frame->Maximize();
    ASSERT_TRUE(WaitUntil([&] { return frame->IsMaximized(); }));
    Settle();
    TakeFromClientArea();
    Settle();
    EXPECT_TRUE(frame->IsMaximized());
    EXPECT_GT(frame->GetSize().x, 1000);
}

TEST_F(FrameSizeTest, AFrameThatWasNeverAdjustedStaysAsItIs) {
    TakeFromClientArea();
    ASSERT_TRUE(ShowAndWait(*frame));
    Settle();
    EXPECT_EQ(frame->GetSize(), wxSize(500, 450));
}

TEST_F(FrameSizeTest, AnUnmarkedEntryAlsoHoldsForTheDecoration) {
    frame->ResizeFrameIfRequired();
    const wxSize size = frame->GetSize();
    frame->GetMenuBar()->Check(6015, false);
    TakeFromClientArea();
    ASSERT_TRUE(ShowAndWait(*frame));
    Settle();
    EXPECT_EQ(frame->GetSize(), size);
}
