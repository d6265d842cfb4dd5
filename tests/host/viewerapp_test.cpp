// The program's application object with real windows: what it does with exceptions, and how windows open.

#include "host/imageframe.h"
#include "host/viewerapp.h"

#include <wx/dcclient.h>
#include <wx/display.h>
#include <wx/evtloop.h>
#include <wx/init.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace zelviewer {
namespace {

using testing::ElementsAre;

/// The program's application with the tests in place of its loop. Errors are collected instead of shown.
class TestApp : public ViewerApp {
public:
    TestApp() : ViewerApp(Options()) {}
    int OnRun() override {
        SetExitOnFrameDelete(false);
        return RUN_ALL_TESTS();
    }
    std::vector<std::string> errors;

protected:
    void ShowError(const std::string& text) override { errors.push_back(text); }
};

TestApp& App() {
    return *static_cast<TestApp*>(wxTheApp);
}

class ViewerAppTest : public testing::Test {
protected:
    void SetUp() override { App().errors.clear(); }

    /// Runs the program's loop until `done`, or for five seconds.
    static bool RunUntil(const std::function<bool()>& done) {
        wxGUIEventLoop loop;
        bool reached = false;
        wxTimer poll;
        wxStopWatch watch;
        poll.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
            reached = done();
            if (reached || watch.Time() > 5000)
                loop.Exit();
        });
        poll.Start(5);
        loop.Run();
        return reached;
    }

    static std::unique_ptr<mor::Image4d<unsigned char>> MakeImage(std::size_t x, std::size_t y, std::size_t z) {
        auto image = std::make_unique<mor::Image4d<unsigned char>>();
        image->MakeRoom(x, y, z, 1);
        image->UpdateMinMaxValues();
        image->SetImageName(0, "/some/folder/stack 7.tif");
        return image;
    }
};

TEST_F(ViewerAppTest, AnExceptionOfAnEventHandlerIsShownAndTheLoopGoesOn) {
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [](wxTimerEvent&) { throw kep::InternalException("out of a timer"); });
    timer.StartOnce(1);
    EXPECT_TRUE(RunUntil([] { return App().errors.size() == 1; }));
    EXPECT_THAT(App().errors, ElementsAre("out of a timer"));
}

TEST_F(ViewerAppTest, AnExceptionOfAPendingEventIsShownAndTheLoopGoesOn) {
    bool later = false;
    App().CallAfter([] { throw std::runtime_error("out of a call"); });
    App().CallAfter([&later] { later = true; });
    EXPECT_TRUE(RunUntil([&later] { return later; }));
    EXPECT_THAT(App().errors, ElementsAre("out of a call"));
}

TEST_F(ViewerAppTest, WhatIsNoExceptionOfTheLanguageIsShownToo) {
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [](wxTimerEvent&) { throw 7; });
    timer.StartOnce(1);
    EXPECT_TRUE(RunUntil([] { return App().errors.size() == 1; }));
}

TEST_F(ViewerAppTest, APaintThatAlwaysFailsIsShownOnce) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "failing");
    int paints = 0;
    frame->Bind(wxEVT_PAINT, [frame, &paints](wxPaintEvent&) {
        const wxPaintDC dc(frame);
        if (++paints < 10)
            frame->Refresh();
        throw std::runtime_error("out of a paint");
    });
    frame->Show();
    EXPECT_TRUE(RunUntil([&paints] { return paints >= 10; }));
    EXPECT_THAT(App().errors, ElementsAre("out of a paint"));
    frame->Destroy();
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

TEST_F(ViewerAppTest, AWindowOpensWithTheNameAndTheSizeOfItsImage) {
    auto* const frame = new ImageFrame<unsigned char>(MakeImage(300, 200, 50), false);
    EXPECT_EQ(frame->GetTitle(), "stack 7.tif");
    frame->Show();
    // 300 + 6 + 50 + 6 by 200 + 6 + 50 + 6
    EXPECT_TRUE(RunUntil([frame] { return frame->GetCanvas()->GetSize() == wxSize(362, 262); }))
        << frame->GetCanvas()->GetSize().x << " x " << frame->GetCanvas()->GetSize().y;
    frame->Destroy();
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

TEST_F(ViewerAppTest, AWindowIsNotLargerThanTheDisplay) {
    auto* const frame = new ImageFrame<unsigned char>(MakeImage(5000, 3000, 2), false);
    frame->Show();
    const wxSize room = wxDisplay(0U).GetClientArea().GetSize();
    EXPECT_TRUE(RunUntil([&] { return frame->GetSize() == room; }))
        << frame->GetSize().x << " x " << frame->GetSize().y << " in " << room.x << " x " << room.y;
    frame->Destroy();
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

} // namespace
} // namespace zelviewer

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("GSETTINGS_BACKEND", "memory", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    wxApp::SetInstance(new zelviewer::TestApp);
    return wxEntry(argc, argv);
}
