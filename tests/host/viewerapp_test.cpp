// The program's application object with real windows: what it does with exceptions, and how windows open.

#include "host/imageframe.h"
#include "host/message.h"
#include "host/viewerapp.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/support/pictures.h"
#include "tests/support/scratch_folder.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dcclient.h>
#include <wx/dialog.h>
#include <wx/display.h>
#include <wx/evtloop.h>
#include <wx/fileconf.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/menu.h>
#include <wx/modalhook.h>
#include <wx/mstream.h>
#include <wx/weakref.h>

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
    void ShowErrorInBox(const std::string& text) { ViewerApp::ShowError(text); }
    std::vector<std::string> errors;
    std::function<zel::zel_Viewer3dFrame*()> opening; // in place of the program's own
    std::vector<std::string> wanted;                  // the files that were to be opened last
    using ViewerApp::OpenFiles;

protected:
    zel::zel_Viewer3dFrame* OpenFrame(const Options& options) override {
        wanted = options.files;
        return opening();
    }
    void ShowError(const std::string& text) override { errors.push_back(text); }
};

TestApp& App() {
    return *static_cast<TestApp*>(wxTheApp);
}

class ViewerAppTest : public testing::Test {
protected:
    wxLogNull quiet; // the program has a log of its own; the toolkit's would open boxes

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
        auto image = zel::test::MakeImage<unsigned char>({x, y, z}, 1, [](auto...) { return 0; });
        image->SetImageName(0, "/some/folder/stack 7.tif");
        return image;
    }

    /// Two voxels.
    template <typename T>
    static std::unique_ptr<mor::Image4d<T>> MakePair(T first, T second) {
        return zel::test::MakeImage<T>({2, 1, 1}, 1, [&](auto x, auto...) { return x == 0 ? first : second; });
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
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

/// Deletes the window that the next dialog is shown over, once that is open.
class DeleteParent : public wxModalDialogHook {
public:
    DeleteParent() { Register(); }
    ~DeleteParent() override { Unregister(); }
    DeleteParent(const DeleteParent&) = delete;
    DeleteParent& operator=(const DeleteParent&) = delete;

protected:
    int Enter(wxDialog* dialog) override {
        App().CallAfter([dialog] { delete dialog->GetParent(); });
        return wxID_NONE;
    }
};

TEST_F(ViewerAppTest, TheBoxOfAnErrorEndsWithTheWindow) {
    const wxWeakRef<wxFrame> frame(new wxFrame(nullptr, wxID_ANY, "closing"));
    frame->Show();
    ASSERT_TRUE(RunUntil([&frame] { return frame->IsShownOnScreen(); }));
    const DeleteParent hook;
    bool ended = false;
    App().CallAfter([&ended] {
        App().ShowErrorInBox("text");
        ended = true;
    });
    EXPECT_TRUE(RunUntil([&ended] { return ended; }));
    EXPECT_EQ(frame.get(), nullptr);
}

TEST_F(ViewerAppTest, AWindowOpensWithTheNameAndTheSizeOfItsImage) {
    auto* const frame = MakeFrame(MakeImage(300, 200, 50), {});
    EXPECT_EQ(frame->GetTitle(), "stack 7.tif - 300 x 200 x 50 - 100%");
    frame->Show();
    // 300 + 6 + 50 + 6 by 200 + 6 + 50 + 6
    EXPECT_TRUE(RunUntil([frame] { return frame->GetCanvas()->GetSize() == wxSize(362, 262); }))
        << frame->GetCanvas()->GetSize().x << " x " << frame->GetCanvas()->GetSize().y;
    frame->Destroy();
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, AFolderOpensItsImagesAndAnEmptyOneSaysSo) {
    const ScratchFolder folder;
    for (const char* const name : {"t10.tif", "t9.tif", "notes.txt"})
        WriteBytes(folder / name, "");
    App().opening = [] { return MakeFrame(MakeImage(30, 20, 5), {}); };
    App().OpenFiles({folder.GetPath()});
    EXPECT_THAT(App().wanted, ElementsAre(folder / "t9.tif", folder / "t10.tif"));
    EXPECT_THAT(App().errors, testing::IsEmpty());
    EXPECT_EQ(CountFrames(), 1);
    const ScratchFolder empty;
    App().OpenFiles({empty.GetPath()});
    EXPECT_EQ(App().errors.size(), 1U);
    EXPECT_EQ(CountFrames(), 1);
    for (wxWindow* const window : wxTopLevelWindows)
        if (dynamic_cast<zel::zel_Viewer3dFrame*>(window) != nullptr)
            window->Destroy();
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, AWindowIsNotLargerThanTheDisplay) {
    auto* const frame = MakeFrame(MakeImage(5000, 3000, 2), {});
    frame->Show();
    const wxSize room = wxDisplay(0U).GetClientArea().GetSize();
    EXPECT_TRUE(RunUntil([&] { return frame->GetSize() == room; }))
        << frame->GetSize().x << " x " << frame->GetSize().y << " in " << room.x << " x " << room.y;
    frame->Destroy();
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
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
        for (zel::zel_Viewer3dFrame* frame : {MakeFrame(MakePair<unsigned char>(1, 2), {stretch, false, {}}),
                                              MakeFrame(MakePair<unsigned short>(1, 2), {stretch, false, {}}),
                                              MakeFrame(MakePair<int>(-1, 2), {stretch, false, {}}),
                                              MakeFrame(MakePair(-1.0F, 2.0F), {stretch, false, {}})}) {
            EXPECT_THAT(MarkedEntries(*frame), ElementsAre(entry, "Gray"));
            frame->Destroy();
        }
    }
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, ColoursAndComplexNumbersHaveTheirMenus) {
    using RGB = kep::RGB_generic<unsigned char>;
    using Complex = std::complex<float>;
    const auto colours = [](Stretch stretch) {
        return MakeFrame(MakePair(RGB(1, 2, 3), RGB(4, 5, 6)), {stretch, false, {}});
    };
    const auto parts = [](Stretch stretch, std::optional<zel::ComplexMode> part) {
        return MakeFrame(MakePair(Complex(1, 2), Complex(3, -4)), {stretch, false, part});
    };
    const std::pair<zel::zel_Viewer3dFrame*, std::vector<std::string>> cases[] = {
        {colours(Stretch::None), {"No stretch", "Red channel", "Green channel", "Blue channel"}},
        {colours(Stretch::Percentil), {"Percentil stretch", "Red channel", "Green channel", "Blue channel"}},
        {parts(Stretch::None, {}), {"No stretch", "Gray", "Real"}},
        {parts(Stretch::Linear, zel::Phase), {"Linear stretch", "Gray", "Phase"}}};
    for (const auto& [frame, entries] : cases) {
        EXPECT_EQ(MarkedEntries(*frame), entries);
        EXPECT_NE(frame->GetCanvas(), nullptr);
        frame->Destroy();
    }
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, KeptColoursDoNotCutTheRangeOfAnotherImage) {
    using RGB = kep::RGB_generic<unsigned short>;
    wxMemoryInputStream nothing("", 0);
    wxFileConfig config(nothing);
    zel::zel_Viewer3dFrame* const dark = MakeFrame(MakePair(RGB(0, 0, 0), RGB(1000, 900, 800)), {});
    WriteColours(*dark, config); // with a range of ten bits
    zel::zel_Viewer3dFrame* const bright = MakeFrame(MakePair(RGB(0, 0, 0), RGB(60000, 900, 800)), {});
    ReadColours(*bright, config);
    int found = 0;
    for (wxEvtHandler* handler = bright->GetEventHandler(); handler != nullptr; handler = handler->GetNextHandler())
        if (const auto* const module = dynamic_cast<zel::zel_RGBMappingModule<unsigned short>*>(handler)) {
            EXPECT_EQ(module->GetRangeMax(0), 65535);
            EXPECT_EQ(module->GetLevels(0).inMax, 60000);
            ++found;
        }
    EXPECT_EQ(found, 1);
    dark->Destroy();
    bright->Destroy();
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
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
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, NothingIsLeftOfAWindowThatCouldNotBeMade) {
    using Complex = std::complex<float>;
    EXPECT_THROW(MakeFrame(MakePair(Complex(1, 2), Complex(1, 3)), {Stretch::None, false, zel::Real}),
                 kep::InternalException);
    EXPECT_THROW(MakeFrame(std::make_unique<mor::Image4d<unsigned char>>(), {}), kep::InternalException);
    EXPECT_THROW(MakeFrame(MakePair(1, 2), {}, nullptr, [](double) { return false; }), kep::ReadingStopped);
    EXPECT_EQ(CountFrames(), 0);
}

TEST_F(ViewerAppTest, AnImageOfOneValueOpensAndSaysSo) {
    using Complex = std::complex<float>;
    using RGB = kep::RGB_generic<unsigned char>;
    const std::pair<zel::zel_Viewer3dFrame*, const char*> cases[] = {
        {MakeFrame(MakePair<unsigned char>(7, 7), {}), "7"},
        {MakeFrame(MakePair<unsigned short>(7, 7), {}), "7"},
        {MakeFrame(MakePair(-3, -3), {}), "-3"},
        {MakeFrame(MakePair(0.5F, 0.5F), {}), "0.5"},
        {MakeFrame(MakePair(RGB(1, 2, 3), RGB(1, 2, 3)), {}), "(1, 2, 3)"},
        {MakeFrame(MakePair(Complex(1, 2), Complex(1, 2)), {}), "1 + 2i"}};
    for (const auto& [frame, value] : cases) {
        EXPECT_EQ(frame->GetStatusBar()->GetStatusText(1), "All voxels have the value " + wxString(value) + ".");
        frame->Destroy();
    }
    EXPECT_TRUE(RunUntil([] { return wxTopLevelWindows.IsEmpty(); }));
}

TEST_F(ViewerAppTest, AnImageThatCannotBeShownEndsTheProgramBehindABox) {
    using Complex = std::complex<float>;
    App().opening = [] { return MakeFrame(MakePair(Complex(1, 2), Complex(1, 3)), {Stretch::None, false, zel::Real}); };
    EXPECT_EQ(App().ViewerApp::OnRun(), 1);
    EXPECT_THAT(App().errors, ElementsAre("The part that --part names has the same value everywhere."));
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
    const ScratchFolder settings; // not those of whoever runs the tests
    setenv("XDG_CONFIG_HOME", settings.GetPath().c_str(), 1);
    wxApp::SetInstance(new zelviewer::TestApp);
    return wxEntry(argc, argv);
}
