// The program's application object with real windows: what it does with exceptions, and how windows open.

#include "host/imageframe.h"
#include "host/message.h"
#include "host/viewerapp.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dcclient.h>
#include <wx/display.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/menu.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
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
    std::function<zel::zel_Viewer3dFrame*()> opening; // in place of the program's own

protected:
    zel::zel_Viewer3dFrame* OpenFrame() override { return opening(); }
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

    /// Two voxels.
    template <typename T>
    static std::unique_ptr<mor::Image4d<T>> MakePair(T first, T second) {
        auto image = std::make_unique<mor::Image4d<T>>();
        image->MakeRoom(2, 1, 1, 1);
        (*image)[0]->SetVoxel(0, first);
        (*image)[0]->SetVoxel(1, second);
        image->UpdateMinMaxValues();
        return image;
    }

    static std::ptrdiff_t CountFrames() {
        return std::count_if(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                             [](wxWindow* window) { return dynamic_cast<zel::zel_Viewer3dFrame*>(window) != nullptr; });
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
    auto* const frame = MakeFrame(MakeImage(300, 200, 50), {Stretch::None});
    EXPECT_EQ(frame->GetTitle(), "stack 7.tif");
    frame->Show();
    // 300 + 6 + 50 + 6 by 200 + 6 + 50 + 6
    EXPECT_TRUE(RunUntil([frame] { return frame->GetCanvas()->GetSize() == wxSize(362, 262); }))
        << frame->GetCanvas()->GetSize().x << " x " << frame->GetCanvas()->GetSize().y;
    frame->Destroy();
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

TEST_F(ViewerAppTest, AWindowIsNotLargerThanTheDisplay) {
    auto* const frame = MakeFrame(MakeImage(5000, 3000, 2), {Stretch::None});
    frame->Show();
    const wxSize room = wxDisplay(0U).GetClientArea().GetSize();
    EXPECT_TRUE(RunUntil([&] { return frame->GetSize() == room; }))
        << frame->GetSize().x << " x " << frame->GetSize().y << " in " << room.x << " x " << room.y;
    frame->Destroy();
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

/// Which of the entries have their mark, once the menu was opened.
std::vector<std::string> MarkedEntries(wxFrame& frame) {
    wxMenuBar& bar = *frame.GetMenuBar();
    const int at = bar.FindMenu("Mapping");
    if (at == wxNOT_FOUND)
        return {"no menu"};
    bar.GetMenu(static_cast<std::size_t>(at))->UpdateUI();
    std::vector<std::string> marked;
    for (const wxMenuItem* item : bar.GetMenu(static_cast<std::size_t>(at))->GetMenuItems())
        if (item->IsCheckable() && item->IsChecked())
            marked.push_back(item->GetItemLabelText().utf8_string());
    return marked;
}

TEST_F(ViewerAppTest, AStretchMarksItsEntryOfTheMenu) {
    const std::pair<Stretch, const char*> cases[] = {{Stretch::None, "No stretch"},
                                                     {Stretch::Linear, "Linear stretch"},
                                                     {Stretch::Percentil, "Percentil stretch"},
                                                     {Stretch::Equalize, "Histogram equalization"}};
    for (const auto& [stretch, entry] : cases) {
        for (zel::zel_Viewer3dFrame* frame :
             {MakeFrame(MakePair<unsigned char>(1, 2), {stretch}), MakeFrame(MakePair<unsigned short>(1, 2), {stretch}),
              MakeFrame(MakePair<int>(-1, 2), {stretch}), MakeFrame(MakePair(-1.0F, 2.0F), {stretch})}) {
            EXPECT_THAT(MarkedEntries(*frame), ElementsAre(entry, "Gray"));
            frame->Destroy();
        }
    }
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

TEST_F(ViewerAppTest, ColoursAndComplexNumbersHaveNoMappingMenu) {
    using RGB = kep::RGB_generic<unsigned char>;
    for (zel::zel_Viewer3dFrame* frame :
         {MakeFrame(MakePair(RGB(1, 2, 3), RGB(4, 5, 6)), {Stretch::None}),
          MakeFrame(MakePair(std::complex<float>(1, 2), std::complex<float>(1, 2)), {Stretch::None})}) {
        EXPECT_THAT(MarkedEntries(*frame), ElementsAre("no menu"));
        EXPECT_NE(frame->GetCanvas(), nullptr);
        frame->Destroy();
    }
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

/// One label, on both voxels of a pair.
std::unique_ptr<Labels> MakeLabelPair() {
    auto labels = std::make_unique<Labels>();
    labels->MakeRoom(2, 1, 1, 1);
    labels->SetVoxel(0, 0, 4);
    labels->SetVoxel(1, 0, 4);
    return labels;
}

TEST_F(ViewerAppTest, LabelsHaveTheirMenuAndAreOutlinedIfAsked) {
    for (const bool outlines : {false, true}) {
        const FirstLook look{.outlines = outlines};
        for (zel::zel_Viewer3dFrame* frame :
             {MakeFrame(MakePair<unsigned char>(1, 2), look, MakeLabelPair()),
              MakeFrame(MakePair<int>(-1'000'000'000, 1'000'000'000), look, MakeLabelPair()),
              MakeFrame(MakePair(-1.0F, 2.0F), look, MakeLabelPair())}) {
            const wxMenuBar& bar = *frame->GetMenuBar();
            const int at = bar.FindMenu("Overlaying");
            ASSERT_NE(at, wxNOT_FOUND);
            bar.GetMenu(static_cast<std::size_t>(at))->UpdateUI();
            std::vector<std::string> marked;
            for (const wxMenuItem* item : bar.GetMenu(static_cast<std::size_t>(at))->GetMenuItems())
                if (item->IsCheckable() && item->IsChecked())
                    marked.push_back(item->GetItemLabelText().utf8_string());
            if (outlines)
                EXPECT_THAT(marked, ElementsAre("Enable", "Boundary", "Default palette"));
            else
                EXPECT_THAT(marked, ElementsAre("Components", "Default palette"));
            frame->Destroy();
        }
    }
    RunUntil([] { return wxTopLevelWindows.IsEmpty(); });
}

TEST_F(ViewerAppTest, NothingIsLeftOfAWindowThatCouldNotBeMade) {
    EXPECT_THROW(MakeFrame(MakePair(0.5F, 0.5F), {Stretch::None}), kep::InternalException);
    EXPECT_THROW(MakeFrame(MakePair(-3, -3), {Stretch::None}), kep::InternalException);
    // Here it is the viewer that refuses, with the frame made already.
    EXPECT_THROW(MakeFrame(std::make_unique<mor::Image4d<unsigned char>>(), {Stretch::None}), kep::InternalException);
    EXPECT_EQ(CountFrames(), 0);
}

TEST_F(ViewerAppTest, AnImageThatCannotBeShownEndsTheProgramBehindABox) {
    App().opening = [] { return MakeFrame(MakePair(0.5F, 0.5F), {Stretch::None}); };
    EXPECT_EQ(App().ViewerApp::OnRun(), 1);
    EXPECT_THAT(App().errors, ElementsAre("All voxels have the value 0.5. Images of type float are shown between their "
                                          "smallest and their largest value, which must differ."));
    EXPECT_EQ(CountFrames(), 0);
}

TEST_F(ViewerAppTest, AFileThatCannotBeReadNeedsNoBox) {
    App().opening = []() -> zel::zel_Viewer3dFrame* { throw Failure("a.tif: Cannot open the file."); };
    EXPECT_EQ(App().ViewerApp::OnRun(), 1);
    EXPECT_THAT(App().errors, testing::IsEmpty());
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
