// The first window of a program does not know its decoration before it stands: so this test has a program of its own.

#include "tests/viewer/frame_fixture.h"

using namespace zel;
using namespace zel::test;

TEST(FrameDecorationTest, TheFirstWindowGetsItsClientAreaBackFromTheTitleBar) {
    zel_Viewer3dFrame* const frame = MakeFrame();
    frame->SetCanvas(new FrameCanvas(frame));
    frame->ResizeFrameIfRequired();
    EXPECT_EQ(frame->GetClientSize(), wxSize(282, 282)); // 200 + 6 + 70 + 6
    frame->Show();
    EXPECT_TRUE(WaitUntil([&] { return frame->IsShownOnScreen() && frame->GetCanvas()->GetSize().x > 2; }));
    Settle();
    EXPECT_EQ(frame->GetClientSize(), wxSize(282, 282));
    EXPECT_EQ(frame->GetCanvas()->GetSize(), wxSize(282, 282));
    frame->Destroy();
    Pump();
}
