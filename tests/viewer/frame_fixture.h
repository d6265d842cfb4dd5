#pragma once

// For tests of the viewer's frame.

#include "tests/viewer/noting_canvas.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_frame.h"

#include <wx/iconbndl.h>
#include <wx/menu.h>

#include <functional>
#include <optional>

namespace zel::test {

/// A canvas that also notes what a frame tells it.
class FrameCanvas : public NotingCanvas {
public:
    using NotingCanvas::NotingCanvas;
    ~FrameCanvas() override {
        if (onEnd)
            onEnd();
    }

    void GetIcons(wxIconBundle& bundle) override {
        ++icons;
        wxIcon icon;
        icon.CopyFromBitmap(wxBitmap(16, 16));
        bundle.AddIcon(icon);
    }
    void MappingChanged(zel_MappingEvent& event) override {
        calls.push_back(event.IsCommitted() ? "MappingChanged" : "MappingChanged in a preview");
    }
    void OverlayingChanged(zel_OverlayingEvent& event) override {
        calls.push_back(event.GetReload() ? "OverlayingChanged by a reload" : "OverlayingChanged");
    }
    bool IsPlaying() const { return m_sequenceTimer.IsRunning(); }

    int icons = 0;
    std::function<void()> onEnd;
};

/// A frame whose timer can be looked at.
class OpenFrame : public zel_Viewer3dFrame {
public:
    using zel_Viewer3dFrame::m_statusTimer;
    using zel_Viewer3dFrame::zel_Viewer3dFrame;
};

inline OpenFrame* MakeFrame(wxWindow* parent = nullptr, wxSize size = {500, 450}) {
    return new OpenFrame(parent, wxID_ANY, "viewer", wxDefaultPosition, size, wxDEFAULT_FRAME_STYLE);
}

/// A shown frame with a canvas of 10 frames. Its box wants 200 x 200, 200 x 70 and 70 x 200 pixels; with 6 for each
/// window's surroundings the whole is best at 282 x 282.
class FrameTest : public GuiTest {
protected:
    void SetUp() override {
        frame = MakeFrame();
        canvas = new FrameCanvas(frame);
        canvas->Play(10);
        frame->SetCanvas(canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        canvas->calls.clear();
    }
    void TearDown() override {
        if (frame != nullptr)
            frame->Destroy();
        GuiTest::TearDown();
    }

    /// Does what the toolkit does when a menu entry is chosen.
    void Choose(int id) { EXPECT_TRUE(frame->ProcessCommand(id)) << id; }
    /// What the frame answers when the toolkit asks for the state of a menu entry; nothing if it leaves it to others.
    std::optional<bool> Mark(int id) {
        wxUpdateUIEvent event(id);
        if (!frame->ProcessWindowEvent(event))
            return std::nullopt;
        EXPECT_TRUE(event.GetSetChecked()) << id;
        return event.GetChecked();
    }
    std::string Message() { return frame->GetStatusBar()->GetStatusText(1).utf8_string(); }
    /// Milliseconds that a message which has just come will stay; 0 if no time runs for one.
    int TimeLeftToMessage() {
        const wxTimer& timer = frame->m_statusTimer;
        EXPECT_TRUE(timer.IsOneShot());
        return timer.IsRunning() ? timer.GetInterval() : 0;
    }
    /// The end of that time, before it is over.
    void TickForMessage() {
        ASSERT_TRUE(frame->m_statusTimer.IsRunning());
        frame->m_statusTimer.Stop();
        frame->m_statusTimer.Notify();
    }

    OpenFrame* frame = nullptr;
    FrameCanvas* canvas = nullptr;
};

} // namespace zel::test
