// The info window: its pages, its place, its life.

#include "tests/viewer/info_fixture.h"

#include <wx/minifram.h>
#include <wx/panel.h>

using namespace zel;
using namespace zel::test;

namespace {

using Texts = std::vector<std::string>;

} // namespace

TEST_F(InfoTest, ThePagesHaveTheirControls) {
    Open(nullptr); // without an image the start texts stay
    EXPECT_EQ(canvas->InfoFrame_Get(), nullptr);
    EXPECT_FALSE(canvas->InfoFrame_IsShown());
    ShowInfo();
    const auto* const window = dynamic_cast<wxMiniFrame*>(canvas->InfoFrame_Get());
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->GetTitle(), "Info frame");
    EXPECT_EQ(window->GetParent(), canvas);
    EXPECT_EQ(window->GetMaxSize(), wxSize(380, 200));
    EXPECT_FALSE(window->HasFlag(wxCAPTION | wxRESIZE_BORDER | wxSTAY_ON_TOP | wxFRAME_FLOAT_ON_PARENT));

    wxNotebook& pages = InfoPages(*canvas);
    ASSERT_EQ(pages.GetPageCount(), 3U);
    EXPECT_EQ(pages.GetPageText(0), "Pixel info");
    EXPECT_EQ(pages.GetPageText(1), "Image info");
    EXPECT_EQ(pages.GetPageText(2), "View info");
    EXPECT_EQ(pages.GetSelection(), 0);
    for (std::size_t page = 0; page < 3; ++page) {
        EXPECT_NE(dynamic_cast<wxPanel*>(pages.GetPage(page)), nullptr);
        EXPECT_TRUE(pages.GetPage(page)->HasFlag(wxTAB_TRAVERSAL));
    }
    EXPECT_EQ(PageTexts(*canvas, 0),
              (Texts{"10000 Position (um):", "10001 [0, 0, 0]", "10000 Position (pix):", "10002 [0, 0, 0]",
                     "10000 Original value:", "10003 [0, 0, 0]", "10000 Mapped colour:", "10004 [0, 0, 0]"}));
    EXPECT_EQ(PageTexts(*canvas, 1),
              (Texts{"10000 Type:", "10006 RGB", "10000 Image size (pix):", "10007  100 x  100 x   80",
                     "10000 Pixel size (nm):", "10008  123 x  123 x 100",
                     "10000 Image size (um):", "10009 12.3 x 12.3 x  8.0"}));
    EXPECT_EQ(PageTexts(*canvas, 2),
              (Texts{"10000 Bbox (offset):", "10011 [0, 0, 0]", "10000 Bbox (size):", "10012 100 x 100 x 80",
                     "10000 Visible (offset):", "10013 [0, 0, 0]", "10000 Visible (size):", "10014  50 x  50 x  30",
                     "10000 Cut position:", "10015 [0, 0, 0]"}));
    EXPECT_EQ(In(Info(), 10005).GetSize(), wxSize(30, 20));
    EXPECT_EQ(window->FindWindow(10016), nullptr) << "for labelled canvases";
    wxString text = "as it was";
    wxColour colour(1, 2, 3);
    canvas->GetColourInfo(zel_PT_XY, 5, 5, text, colour);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(colour, wxColour(1, 2, 3));
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XY, {5, 5}), std::nullopt);
    MovePointerTo(Window(zel_PT_XY), {5, 5});
    EXPECT_EQ(InfoText(*canvas, 10002), "[0, 0, 0]");
}

TEST_F(InfoTest, TheImageIsDescribed) {
    Open(Numbered(7, {10, 4, 0.5F}, {3, -2.5F, 0}));
    ShowInfo();
    EXPECT_EQ(InfoTexts(*canvas, {10006, 10007, 10008, 10009, 10011, 10012}),
              (Texts{"GRAY16", " 40 x  30 x  20 x   7", "100 x 250 x 2000", "4.000 x 7.500 x 40.000",
                     "[3.000, -2.500, 0.000]", "4.000 x 7.500 x 40.000"}));
    image->SetOffset({4, 0, 0});
    frame->GetCanvas()->OnDataChange();
    EXPECT_EQ(InfoText(*canvas, 10011), "[4.000, 0.000, 0.000]");
}

TEST_F(InfoTest, AResolutionThatIsNotDefinedIsUndefTwice) {
    Open(Numbered(1, {}));
    ShowInfo();
    EXPECT_EQ(InfoTexts(*canvas, {10008, 10009}), (Texts{"undef", "undef"}));
    EXPECT_EQ(InfoText(*canvas, 10012), "40.000 x 30.000 x 20.000") << "one micron a voxel, as it is shown";
}

TEST_F(InfoTest, CutAndVisiblePartAreFollowedOnEveryPage) {
    Open(Numbered(1, {1, 1, 1}, {100, 0, 0}));
    ShowInfo();
    EXPECT_EQ(InfoTexts(*canvas, {10013, 10014, 10015}),
              (Texts{"[100.000, 0.000, 0.000]", "40.000 x 30.000 x 20.000", "[120.500, 15.500, 10.500]"}));
    for (std::size_t page = 0; page < 3; ++page) {
        InfoPages(*canvas).ChangeSelection(page);
        const float cut = 5.25F + static_cast<float>(page);
        canvas->ChangeCut({101, 2, cut});
        EXPECT_EQ(InfoText(*canvas, 10015), "[101.000, 2.000, " + std::to_string(page + 5) + ".250]");
    }
    canvas->ZoomOut();
    EXPECT_EQ(InfoText(*canvas, 10014), "40.000 x 30.000 x 20.000");
    canvas->GetView().visibleBox.offset.x = 101;
    canvas->OnVis3dChange(zel_PT_ALL);
    EXPECT_EQ(InfoText(*canvas, 10013), "[101.000, 0.000, 0.000]");
}

TEST_F(InfoTest, TheMenuEntryShowsAndHidesIt) {
    Open(Numbered());
    const auto mark = [&] {
        frame->GetMenuBar()->UpdateMenus();
        return frame->GetMenuBar()->IsChecked(zel_CMD_SHOW_INFO);
    };
    EXPECT_FALSE(mark());
    ShowInfo();
    EXPECT_TRUE(canvas->InfoFrame_IsShown());
    EXPECT_TRUE(mark());
    const wxWindow* const window = canvas->InfoFrame_Get();
    InfoPages(*canvas).ChangeSelection(2);
    ShowInfo();
    EXPECT_FALSE(canvas->InfoFrame_IsShown());
    EXPECT_FALSE(mark());
    EXPECT_EQ(canvas->InfoFrame_Get(), window) << "hidden, it is kept";
    canvas->ChangeCut({3, 4, 5});
    EXPECT_EQ(InfoText(*canvas, 10015), "[20.500, 15.500, 10.500]") << "and not worked on";
    ShowInfo();
    EXPECT_EQ(canvas->InfoFrame_Get(), window);
    EXPECT_EQ(InfoPages(*canvas).GetSelection(), 2);
    EXPECT_EQ(InfoText(*canvas, 10015), "[3.000, 4.000, 5.000]");
}

TEST_F(InfoTest, HidingWhatIsNotThereDoesNothing) {
    Open(Numbered());
    canvas->InfoFrame_Show(false);
    canvas->InfoFrame_Move();
    EXPECT_EQ(canvas->InfoFrame_Get(), nullptr);
}

TEST_F(InfoTest, ItComesUpInItsFittedSize) {
    Open(Numbered());
    ShowInfo();
    EXPECT_TRUE(WaitUntil([&] { return Info().GetSize() == Info().GetBestSize(); }));
    EXPECT_LE(Info().GetSize().x, 380);
    EXPECT_LE(Info().GetSize().y, 200);
    // All that it shows is seen.
    for (std::size_t page = 0; page < 3; ++page)
        for (const wxWindow* const child : InfoPages(*canvas).GetPage(page)->GetChildren())
            EXPECT_TRUE(wxRect(Info().GetBestSize()).Contains(wxRect(child->GetPosition(), child->GetBestSize())));
}

TEST_F(InfoTest, ItStaysBelowItsLargestSize) {
    Open(Numbered(1, {1, 1, 1}, {1e30F, -1e30F, 0}), {400, 350});
    ShowInfo();
    EXPECT_TRUE(WaitUntil([&] { return Info().GetSize().x == 380; }));
    EXPECT_GT(InfoText(*canvas, 10011).size(), 40U);
    EXPECT_LE(Info().GetSize().y, 200);
}

TEST_F(InfoTest, ItStandsAtTheFreeCornerOfTheLayout) {
    Open(Numbered());
    ShowInfo();
    const auto standsAt = [&](zel_ProjectionType type) {
        Settle();
        return WaitUntil([&] { return Info().GetScreenPosition() == Corner(type); });
    };
    EXPECT_TRUE(standsAt(zel_PT_XY));
    for (const int command : {zel_CMD_ZOOM_IN, zel_CMD_ZOOM_IN, zel_CMD_ZOOM_OUT, zel_CMD_NORMAL_ZOOM}) {
        frame->ProcessCommand(command);
        EXPECT_TRUE(standsAt(zel_PT_XY)) << command;
    }
    struct Case {
        int shown;
        zel_ProjectionType corner;
    };
    for (const Case& c : {Case{6, zel_PT_XY}, Case{4, zel_PT_YZ}, Case{2, zel_PT_XZ}, Case{1, zel_PT_XY},
                          Case{5, zel_PT_XY}, Case{3, zel_PT_XY}, Case{0, zel_PT_XY}, Case{7, zel_PT_XY}}) {
        canvas->ShowDrWin(zel_PT_ALL, false);
        canvas->ShowDrWin(static_cast<zel_ProjectionType>(c.shown), true);
        EXPECT_TRUE(standsAt(c.corner)) << c.shown;
    }
    zel_CanvasSettings settings;
    static_cast<zel_Viewer3dCanvas&>(*canvas).GetSettings(settings);
    settings.zoom = 3;
    static_cast<zel_Viewer3dCanvas&>(*canvas).SetSettings(settings);
    EXPECT_TRUE(standsAt(zel_PT_XY)) << "after settings";
    wxPoint before = Corner(zel_PT_XY);
    ASSERT_TRUE(ResizeClient(*frame, {210, 200}));
    EXPECT_NE(Corner(zel_PT_XY), before);
    EXPECT_TRUE(standsAt(zel_PT_XY)) << "after a new size";
    before = Corner(zel_PT_XY);
    image->SetResolution({1, 4, 4}); // 40 x 7.5 x 5 microns
    canvas->OnDataChange();
    EXPECT_NE(Corner(zel_PT_XY), before);
    EXPECT_TRUE(standsAt(zel_PT_XY)) << "after other data";
}

TEST_F(InfoTest, ItFollowsTheFrameByMoveEvents) {
    Open(Numbered());
    ShowInfo();
    const wxPoint before = Info().GetScreenPosition();
    frame->Move(frame->GetPosition() + wxPoint(60, 40));
    ASSERT_TRUE(WaitUntil([&] { return Corner(zel_PT_XY) == before + wxPoint(60, 40); }));
    wxMoveEvent moved(frame->GetPosition(), frame->GetId()); // as a user's move sends it
    frame->ProcessWindowEvent(moved);
    EXPECT_TRUE(WaitUntil([&] { return Info().GetScreenPosition() == Corner(zel_PT_XY); }));
}

TEST_F(InfoTest, TheDrawingWindowKeepsTheKeyboard) {
    Open(Numbered());
    Focus(Window(zel_PT_XZ));
    ShowInfo();
    PassFrames(3);
    EXPECT_EQ(wxWindow::FindFocus(), &Window(zel_PT_XZ));
    Press('I'); // the entry's key reaches the frame
    EXPECT_FALSE(canvas->InfoFrame_IsShown());
    EXPECT_EQ(wxWindow::FindFocus(), &Window(zel_PT_XZ));
    Press('I');
    PassFrames(3);
    EXPECT_TRUE(canvas->InfoFrame_IsShown());
    EXPECT_EQ(wxWindow::FindFocus(), &Window(zel_PT_XZ)) << "also when it is shown again";
}

TEST_F(InfoTest, ClosedByTheUserItIsMadeAnew) {
    Open(Numbered());
    ShowInfo();
    const wxWeakRef<wxFrame> first(canvas->InfoFrame_Get());
    first->Close();
    Settle();
    EXPECT_FALSE(first);
    EXPECT_EQ(canvas->InfoFrame_Get(), nullptr);
    EXPECT_FALSE(canvas->InfoFrame_IsShown());
    canvas->InfoFrame_UpdatePixelInfo();
    canvas->ChangeCut({3, 4, 5});
    Paint();
    ShowInfo();
    ASSERT_TRUE(canvas->InfoFrame_IsShown());
    EXPECT_EQ(InfoText(*canvas, 10015), "[3.000, 4.000, 5.000]");
    EXPECT_EQ(Info().GetScreenPosition(), Corner(zel_PT_XY));
    // Shown again before the toolkit has deleted it.
    const wxWeakRef<wxFrame> second(canvas->InfoFrame_Get());
    second->Close();
    canvas->InfoFrame_Show(true);
    EXPECT_NE(canvas->InfoFrame_Get(), second.get());
    Settle();
    EXPECT_FALSE(second);
    EXPECT_TRUE(canvas->InfoFrame_IsShown());
}

TEST_F(InfoTest, ItGoesWithTheFrame) {
    Open(Numbered());
    ShowInfo();
    const wxWeakRef<wxFrame> window(canvas->InfoFrame_Get());
    frame->Destroy();
    image.reset(); // a host may, from here on
    canvas->InfoFrame_UpdatePixelInfo();
    canvas->InfoFrame_UpdateImageInfo();
    canvas->InfoFrame_UpdateCutAndVisBoxInfo();
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XY, {3, 3}), std::nullopt);
    Pump();
    EXPECT_FALSE(window);
    EXPECT_FALSE(frame);
}

TEST_F(InfoTest, TheFrameMayGoRightAfterItIsShown) {
    Open(Numbered());
    canvas->InfoFrame_Show(true); // a fit is still to come
    frame->Destroy();
    Pump();
    EXPECT_FALSE(frame);
}
