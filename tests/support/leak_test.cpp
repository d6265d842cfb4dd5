// Leaks on purpose, in handlers that the toolkit calls from within its loop. What the sanitizer then says is the test.

#include "tests/support/gui_test.h"

#include <wx/timer.h>

namespace zel::test {
namespace {

class LeakTest : public GuiTest {};

/// Memory that nothing points to when the function returns.
__attribute__((noinline)) void LeakFromPaint() {
    [[maybe_unused]] char* volatile lost = new char[1234];
    lost = nullptr;
}

__attribute__((noinline)) void LeakFromTimer() {
    [[maybe_unused]] char* volatile lost = new char[5678];
    lost = nullptr;
}

TEST_F(LeakTest, HandlersLoseMemory) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "leaking");
    bool painted = false, rung = false;
    frame->Bind(wxEVT_PAINT, [&painted](wxPaintEvent& event) {
        event.Skip();
        if (!painted)
            LeakFromPaint();
        painted = true;
    });
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&rung](wxTimerEvent&) {
        LeakFromTimer();
        rung = true;
    });
    timer.StartOnce(1);
    EXPECT_TRUE(ShowAndWait(*frame));
    EXPECT_TRUE(WaitUntil([&] { return painted && rung; }));
    frame->Destroy();
}

} // namespace
} // namespace zel::test
