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

inline zel_Viewer3dFrame* MakeFrame(wxWindow* parent = nullptr, wxSize size = {500, 450}) {
    return new zel_Viewer3dFrame(parent, wxID_ANY, "viewer", wxDefaultPosition, size, wxDEFAULT_FRAME_STYLE);
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

    zel_Viewer3dFrame* frame = nullptr;
    FrameCanvas* canvas = nullptr;
};

} // namespace zel::test
