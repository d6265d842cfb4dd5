// What the program adds to a viewer: menus, keys, status line, sliders, fitting.

#include "host/frame/channeldialog.h"
#include "host/frame/dialogplaces.h"
#include "host/frame/hostmenus.h"
#include "host/frame/placement.h"
#include "host/frame/sequencequestion.h"
#include "host/imageframe.h"
#include "host/readingprogress.h"
#include "host/screenshot.h"
#include "tests/support/glib_complaints.h"
#include "tests/support/pictures.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/system_dialogs.h"
#include "tests/support/user.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/checklst.h>
#include <wx/choicdlg.h>
#include <wx/clipbrd.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/progdlg.h>
#include <wx/slider.h>
#include <wx/spinctrl.h>
#include <wx/toolbar.h>

#include <gmock/gmock.h>

namespace zelviewer {
namespace {

using namespace zel;
using namespace zel::test;

constexpr int copyView = 20000, goTo = 20001, fit = 20002, keys = 20003;

class HostFrame : public GuiTest {
protected:
    /// A viewer as the program opens it. The voxel at x, y, z, t has the value 100 t + x + 2 y + 4 z.
    void Open(std::size_t frames, const kep::Resolution& resolution = {2, 2, 1}) {
        auto image = MakeImage<unsigned short>(
            {30, 20, 10}, frames, [](auto x, auto y, auto z, auto t) { return 100 * t + x + 2 * y + 4 * z; },
            resolution);
        m_frame = MakeFrame(std::move(image), {});
        AddHostMenus(*m_frame, {[this](const std::vector<std::string>& files) { opened.push_back(files); },
                                [this] { ++quits; }, [this] { return recent; }});
        ShowInPlace(*m_frame, std::nullopt);
        ASSERT_TRUE(ShowAndWait(*m_frame));
        MovePointer({1500, 1100}); // away from the picture
    }
    void SetUp() override { GLibComplaints().clear(); }
    void TearDown() override {
        if (m_frame)
            m_frame->Destroy();
        GuiTest::TearDown();
        EXPECT_THAT(GLibComplaints(), testing::IsEmpty());
    }
    /// The entries of a menu by their labels, separators as "-".
    static std::vector<std::string> EntriesOf(const wxMenu& menu) {
        std::vector<std::string> entries;
        for (const wxMenuItem* const item : menu.GetMenuItems())
            entries.push_back(item->IsSeparator() ? "-" : item->GetItemLabelText().utf8_string());
        return entries;
    }
    /// As the user does.
    void OpenFileMenu() {
        wxMenuEvent event(wxEVT_MENU_OPEN, 0, m_frame->GetMenuBar()->GetMenu(0));
        m_frame->ProcessWindowEvent(event);
    }
    wxMenuItem& RecentItem() { return *m_frame->GetMenuBar()->GetMenu(0)->FindItemByPosition(2); }
    zel_Viewer3dCanvas& Canvas() { return *m_frame->GetCanvas(); }
    zel_DrWin3d& Window(zel_ProjectionType type) { return *Canvas().GetDrWin(type); }
    void Choose(int id) { EXPECT_TRUE(m_frame->ProcessCommand(id)); }
    std::string Status() {
        Settle();
        return m_frame->GetStatusBar()->GetStatusText(0).utf8_string();
    }
    std::vector<wxSlider*> Sliders() {
        std::vector<wxSlider*> sliders;
        for (wxWindow* const child : m_frame->GetToolBar()->GetChildren())
            if (auto* const slider = dynamic_cast<wxSlider*>(child))
                sliders.push_back(slider);
        return sliders;
    }
    static void Slide(wxSlider& slider, int to) {
        slider.SetValue(to);
        wxCommandEvent event(wxEVT_SLIDER, slider.GetId());
        event.SetInt(to);
        event.SetEventObject(&slider);
        slider.ProcessWindowEvent(event);
    }

    /// Runs an entry of the menu "Mapping".
    void ChooseMapping(const std::string& label) {
        const int id = m_frame->GetMenuBar()->FindMenuItem("Mapping", label);
        ASSERT_NE(id, wxNOT_FOUND) << label;
        Choose(id);
    }

    /// The same where the viewer is gone when the command returns, and can't say whether it knew it.
    void ChooseMappingOfAViewerThatGoes(const std::string& label) {
        m_frame->ProcessCommand(m_frame->GetMenuBar()->FindMenuItem("Mapping", label));
    }

    const DialogPlaces m_dialogPlaces; // the program's
    wxWeakRef<zel_Viewer3dFrame> m_frame;
    std::vector<std::vector<std::string>> opened;
    std::vector<OpenedFiles> recent;
    int quits = 0;
};

TEST_F(HostFrame, HasTheMenusOfEveryProgram) {
    Open(3);
    const wxMenuBar& bar = *m_frame->GetMenuBar();
    std::vector<std::string> labels;
    for (std::size_t i = 0; i < bar.GetMenuCount(); ++i)
        labels.push_back(bar.GetMenuLabelText(i).utf8_string());
    EXPECT_EQ(labels, (std::vector<std::string>{"File", "Edit", "Sequence", "View", "Mapping", "Help"}));
    for (const int id : {copyView, goTo, fit, keys, int{wxID_ABOUT}})
        EXPECT_NE(bar.FindItem(id), nullptr) << id;
    EXPECT_EQ(EntriesOf(*bar.GetMenu(0)),
              (std::vector<std::string>{"Open...", "Open folder...", "Open recent", "-", "Save 3D data...",
                                        "Save view...", "Save gallery...", "-", "Close", "Quit"}));
}

TEST_F(HostFrame, WhatWasOpenedBeforeIsListedWheneverTheMenuOpens) {
    Open(1);
    EXPECT_FALSE(RecentItem().IsEnabled()) << "there is nothing in it";
    recent = {{"/a/t1.tif", "/a/t2.tif"}, {"/b/one & two.tif"}};
    OpenFileMenu();
    EXPECT_TRUE(RecentItem().IsEnabled());
    EXPECT_EQ(EntriesOf(*RecentItem().GetSubMenu()),
              (std::vector<std::string>{"1 t1.tif and 1 more", "2 one & two.tif"}));
    Choose(wxID_FILE1);
    Choose(wxID_FILE2);
    EXPECT_EQ(opened, recent);
    recent.erase(recent.begin());
    OpenFileMenu();
    EXPECT_EQ(EntriesOf(*RecentItem().GetSubMenu()), (std::vector<std::string>{"1 one & two.tif"}));
}

TEST_F(HostFrame, AFolderIsOpenedAsItIs) {
    Open(1);
    const ScratchFolder folder;
    DialogAnswers answers;
    answers.ExpectDriven([&folder](wxDialog& dialog) { ChooseFolder(dialog, folder.GetPath()); });
    Choose(m_frame->GetMenuBar()->GetMenu(0)->FindItem("Open folder..."));
    EXPECT_EQ(opened, (std::vector<std::vector<std::string>>{{folder.GetPath()}}));
}

TEST_F(HostFrame, FilesAreAskedForWhereTheLastOnesWere) {
    const ScratchFolder folder;
    WriteBytes(folder / "t.tif", "");
    recent = {{folder / "t.tif"}};
    Open(1);
    DialogAnswers answers;
    answers.Expect([&folder](wxDialog& dialog) {
        EXPECT_EQ(dynamic_cast<wxFileDialog&>(dialog).GetDirectory(), folder.GetPath());
        return wxID_CANCEL;
    });
    Choose(wxID_OPEN);
}

TEST_F(HostFrame, AboutTellsTheVersions) {
    Open(1);
    DialogAnswers answers;
    answers.Expect([](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "About zelviewer");
        const std::string text = dynamic_cast<wxMessageDialog&>(dialog).GetMessage().utf8_string();
        EXPECT_THAT(text, testing::HasSubstr("\nzelviewer " ZEL_VERSION "\nwxWidgets 3."));
        EXPECT_THAT(text, testing::HasSubstr("\nlibtiff "));
        return wxID_OK;
    });
    Choose(wxID_ABOUT);
    EXPECT_EQ(wxApp::GetInstance(), wxTheApp);
}

TEST_F(HostFrame, TheKeysOfTheFileMenuWork) {
    Open(1);
    m_frame->Raise();
    Focus(Window(zel_PT_XY));
    const auto titleOf = [](const wxDialog& dialog) {
        const auto* const files = dynamic_cast<const wxFileDialog*>(&dialog);
        return (files != nullptr ? files->GetMessage() : dialog.GetTitle()).utf8_string();
    };
    const std::pair<int, std::string> dialogs[] = {
        {'O', "Open images: one, or one for each point in time"}, {'S', "Save 3D image data as..."}, {'G', "Go to"}};
    for (const auto& [key, title] : dialogs) {
        DialogAnswers answers; // one answer: a key that two entries have runs its command once
        answers.Expect([&titleOf, &title = title](wxDialog& dialog) {
            EXPECT_EQ(titleOf(dialog), title);
            return wxID_CANCEL;
        });
        Press(key, wxMOD_CONTROL);
    }
    Press('Q', wxMOD_CONTROL);
    EXPECT_EQ(quits, 1);
    Press('C', wxMOD_CONTROL);
    wxBitmapDataObject copied;
    ASSERT_TRUE(wxTheClipboard->Open());
    EXPECT_TRUE(wxTheClipboard->GetData(copied));
    wxTheClipboard->Close();
    wxTheClipboard->Clear();
    Press('W', wxMOD_CONTROL);
    EXPECT_TRUE(WaitUntil([this] { return !m_frame; }));
}

TEST_F(HostFrame, WithoutRoomForAPictureNothingIsCopied) {
    Open(1);
    Choose(copyView);
    zel_Viewer3dCanvas& canvas = *m_frame->GetCanvas();
    for (const wxSize size : {wxSize(0, 0), wxSize(200, 0), wxSize(0, 200)}) {
        canvas.SetSize(size);
        if (canvas.GetClientSize().x > 0 && canvas.GetClientSize().y > 0)
            ADD_FAILURE() << "the canvas keeps room";
        EXPECT_FALSE(ComposePicture(canvas).IsOk());
        EXPECT_NO_THROW(Choose(copyView));
    }
    wxBitmapDataObject copied;
    ASSERT_TRUE(wxTheClipboard->Open());
    EXPECT_TRUE(wxTheClipboard->GetData(copied)) << "what was copied before stays";
    wxTheClipboard->Close();
    wxTheClipboard->Clear();
}

TEST_F(HostFrame, TheKeysOfTheSizeWork) {
    Open(1, {1, 1, 1});
    ASSERT_TRUE(ResizeClient(*m_frame, {820, 630}));
    m_frame->Raise();
    Focus(Window(zel_PT_XY));
    Press('0');
    EXPECT_GT(Canvas().GetBaseScale().x, 10.0F);
    Press(WXK_F2);
    EXPECT_EQ(Canvas().GetZoom(), 1);
    Press('1');
    EXPECT_EQ(Canvas().GetZoom(), 0);
}

TEST_F(HostFrame, OpenTakesSeveralFilesInOrder) {
    Open(1);
    DialogAnswers answers;
    answers.Expect([](wxDialog& dialog) {
        EXPECT_TRUE(dynamic_cast<wxFileDialog&>(dialog).HasFlag(wxFD_MULTIPLE));
        return wxID_CANCEL;
    });
    Choose(wxID_OPEN);
    EXPECT_TRUE(opened.empty());
}

class OpeningQuestions : public GuiTest {
protected:
    static constexpr int all = 3;
    /// Answers the next dialog of channels with some of them checked. @return whether OK could be pressed
    bool Check(DialogAnswers& answers, const std::vector<unsigned>& channels, std::vector<std::size_t>& chosen) {
        bool mayAgree = false;
        answers.Expect([&](wxDialog& dialog) {
            wxCheckListBox* list = nullptr;
            for (wxWindow* const child : dialog.GetChildren())
                if (auto* const found = dynamic_cast<wxCheckListBox*>(child))
                    list = found;
            EXPECT_NE(list, nullptr);
            EXPECT_EQ(list->GetString(1), "Channel 2: GFP");
            for (const unsigned channel : channels)
                list->Check(channel);
            wxCommandEvent event(wxEVT_CHECKLISTBOX, list->GetId());
            list->ProcessWindowEvent(event);
            mayAgree = dialog.FindWindow(wxID_OK)->IsEnabled();
            return wxID_OK;
        });
        chosen = AskForChannels(nullptr, {"/a/b.tif", {"Channel 1", "Channel 2: GFP", "Channel 3", "Channel 4"}, all});
        return mayAgree;
    }
};

/// The window of the progress that is shown; null if there is none.
wxDialog* FindProgress() {
    for (wxWindow* const window : wxTopLevelWindows)
        if (auto* const dialog = dynamic_cast<wxGenericProgressDialog*>(window))
            return dialog;
    return nullptr;
}

TEST_F(OpeningQuestions, ProgressIsShownAtOnceForLargeImagesAndCancelledSoon) {
    {
        ReadingProgress small(1, 1000, true);
        EXPECT_TRUE(small.Report(0, {1, 10, 100}));
        EXPECT_EQ(FindProgress(), nullptr);
    }
    ReadingProgress progress(1, 500'000'000, true);
    EXPECT_TRUE(progress.Report(0, {1, 10, 100}));
    wxDialog* const dialog = FindProgress();
    ASSERT_NE(dialog, nullptr);
    wxCommandEvent cancel(wxEVT_BUTTON, wxID_CANCEL);
    cancel.SetEventObject(dialog->FindWindow(wxID_CANCEL));
    dialog->ProcessWindowEvent(cancel);
    wxStopWatch watch;
    bool goesOn = true;
    while (goesOn && watch.Time() < 250)
        goesOn = progress.Report(0, {2, 10, 200});
    EXPECT_FALSE(goesOn);
    EXPECT_FALSE(progress.Report("Counting gray levels", 0.5)) << "and so it stays";
}

TEST_F(OpeningQuestions, OneToThreeChannelsCanBeChosen) {
    DialogAnswers answers;
    std::vector<std::size_t> chosen;
    EXPECT_FALSE(Check(answers, {}, chosen));
    EXPECT_TRUE(Check(answers, {2}, chosen));
    EXPECT_EQ(chosen, std::vector<std::size_t>{2});
    EXPECT_TRUE(Check(answers, {3, 0, 1}, chosen));
    EXPECT_EQ(chosen, (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_FALSE(Check(answers, {0, 1, 2, 3}, chosen));
}

TEST_F(OpeningQuestions, ChannelsThatMakeNoColourAreChosenAlone) {
    DialogAnswers answers;
    answers.Expect([](wxDialog& dialog) {
        dynamic_cast<wxSingleChoiceDialog&>(dialog).SetSelection(1);
        return wxID_OK;
    });
    EXPECT_EQ(AskForChannels(nullptr, {"/a/b.tif", {"Channel 1", "Channel 2"}, 1}), std::vector<std::size_t>{1});
    answers.Expect([](wxDialog&) { return wxID_CANCEL; });
    EXPECT_EQ(AskForChannels(nullptr, {"/a/b.tif", {"Channel 1", "Channel 2"}, 1}), std::vector<std::size_t>());
}

TEST_F(OpeningQuestions, AFileMayStandForItsSequence) {
    const ScratchFolder folder;
    const std::string first = folder / "t9.tif", second = folder / "t10.tif";
    WriteBytes(first, "x");
    WriteBytes(second, "x");
    DialogAnswers answers;
    const auto answer = [&](int code) {
        answers.Expect([code](wxDialog& dialog) {
            EXPECT_EQ(dynamic_cast<wxMessageDialog&>(dialog).GetMessage(), "Open 2 files as a sequence?");
            return code;
        });
        return AskForSequence(nullptr, {second});
    };
    EXPECT_EQ(answer(wxID_YES), (std::vector<std::string>{first, second}));
    EXPECT_EQ(answer(wxID_NO), std::vector<std::string>{second});
    EXPECT_THROW(answer(wxID_CANCEL), Cancelled);
    EXPECT_EQ(AskForSequence(nullptr, {second, first}), (std::vector<std::string>{second, first})) << "no question";
}

TEST_F(HostFrame, CloseAndQuitAreTheirOwn) {
    Open(1);
    Choose(wxID_EXIT);
    EXPECT_EQ(quits, 1);
    Choose(wxID_CLOSE);
    EXPECT_TRUE(WaitUntil([this] { return !m_frame; }));
}

TEST_F(HostFrame, DroppedFilesAreOpenedAfterTheDrop) {
    Open(1);
    wxArrayString paths;
    paths.Add("/a/t10.tif"); // in no order
    paths.Add("/a/t9.tif");
    auto* const target = dynamic_cast<wxFileDropTarget*>(Window(zel_PT_XY).GetDropTarget());
    ASSERT_NE(target, nullptr);
    EXPECT_TRUE(target->OnDropFiles(1, 1, paths));
    EXPECT_TRUE(opened.empty());
    Pump();
    EXPECT_EQ(opened, (std::vector<std::vector<std::string>>{{"/a/t9.tif", "/a/t10.tif"}}));
}

TEST_F(HostFrame, CopyViewPutsThePictureOnTheClipboard) {
    Open(1);
    Choose(copyView);
    wxBitmapDataObject copied;
    ASSERT_TRUE(wxTheClipboard->Open());
    EXPECT_TRUE(wxTheClipboard->GetData(copied));
    wxTheClipboard->Close();
    ASSERT_TRUE(copied.GetBitmap().IsOk());
    EXPECT_EQ(copied.GetBitmap().GetSize(), Canvas().GetOptimalSize());
    wxTheClipboard->Clear();
}

TEST_F(HostFrame, KeysOfTheMainBlockZoom) {
    Open(3);
    m_frame->Raise();
    Focus(Window(zel_PT_XY));
    Press('=', wxMOD_CONTROL);
    EXPECT_EQ(Canvas().GetZoom(), 1);
    Press('-', wxMOD_CONTROL);
    Press('-', wxMOD_CONTROL);
    EXPECT_EQ(Canvas().GetZoom(), -1);
    EXPECT_EQ(Canvas().GetTime(), 0) << "alone they step in time";
    Press('=');
    EXPECT_EQ(Canvas().GetTime(), 1);
}

TEST_F(HostFrame, FitScalesThePictureIntoTheWindow) {
    Open(1, {1, 1, 1});
    ASSERT_TRUE(ResizeClient(*m_frame, {420, 330}));
    Canvas().ZoomIn();
    Choose(fit);
    // 30 + 10 across, 20 + 10 down: min((420 - 8) / 40, (330 - 8) / 30) = 10.3, so ten pixels a voxel.
    EXPECT_EQ(Canvas().GetBaseScale(), (kep::Vector3d<float>(10, 10, 10)));
    EXPECT_EQ(Canvas().GetZoom(), 0);
    const wxSize needed = Canvas().GetOptimalSize();
    EXPECT_LE(needed.x, 420);
    EXPECT_LE(needed.y, 330);
}

TEST_F(HostFrame, FitKeepsTheProportions) {
    Open(1, {2, 2, 1});
    ASSERT_TRUE(ResizeClient(*m_frame, {420, 330}));
    Choose(fit);
    const kep::Vector3d<float> scale = Canvas().GetBaseScale();
    EXPECT_EQ(scale.x, scale.y);
    EXPECT_EQ(scale.x, scale.z);
    // At 2 pixels a micron: 30 + 20 across, 20 + 20 down; (420 - 8) / 50 = 8.24, (330 - 8) / 40 = 8.05.
    EXPECT_EQ(scale.x, 16.0F);
}

TEST_F(HostFrame, OpenedForTheDisplayItFillsTwoThirdsOfIt) {
    m_frame =
        MakeFrame(MakeImage<unsigned char>({20, 20, 20}, 1, [](auto x, auto...) { return x; }), {.fillsDisplay = true});
    ASSERT_TRUE(ShowAndWait(*m_frame));
    const wxSize display = wxGetClientDisplayRect().GetSize();
    const wxSize picture = Canvas().GetOptimalSize();
    EXPECT_LE(picture.y, display.y * 2 / 3);
    EXPECT_GT(picture.y, display.y * 2 / 3 - 2 * 20 - 8) << "one more pixel a voxel has no room";
}

TEST_F(HostFrame, ASecondWindowLeavesTheTitleOfTheFirstFree) {
    const WindowPlace place{wxRect(100, 100, 700, 500), false};
    const auto make = [] {
        return MakeFrame(MakeImage<unsigned char>({30, 20, 10}, 1, [](auto x, auto...) { return x; }), {});
    };
    m_frame = make();
    ShowInPlace(*m_frame, place);
    ASSERT_TRUE(ShowAndWait(*m_frame));
    EXPECT_EQ(m_frame->GetRect(), place.rect);
    const wxSize picture = Canvas().GetOptimalSize();
    EXPECT_GT(std::max(static_cast<double>(picture.x) / Canvas().GetSize().x,
                       static_cast<double>(picture.y) / Canvas().GetSize().y),
              0.95)
        << "the picture fills the window";
    auto* const second = make();
    ShowInPlace(*second, place);
    EXPECT_TRUE(ShowAndWait(*second));
    EXPECT_EQ(second->GetRect(), wxRect(132, 132, 700, 500));
    second->Destroy();
}

TEST_F(HostFrame, TheSlidersFillTheBar) {
    Open(5);
    ASSERT_TRUE(ResizeClient(*m_frame, {600, 400}));
    int sum = 0;
    for (const wxSlider* const slider : Sliders())
        sum += slider->GetSize().x;
    EXPECT_GT(sum, 600 * 55 / 100);
    EXPECT_LE(Sliders().back()->GetRect().GetRight(), 600);
}

TEST_F(HostFrame, TheStatusLineTellsOfTheCutAndOfThePointer) {
    Open(3);
    ASSERT_TRUE(ResizeClient(*m_frame, {900, 500}));
    // The cut is in the middle: microns 7.5, 5, 5, in voxels 15, 10, 5. 15 + 20 + 20 = 55.
    EXPECT_EQ(Status(), "x 16 (7.75 um)  y 11 (5.25 um)  z 6 (5.50 um)  t 1 of 3  value 55");
    EXPECT_TRUE(Canvas().ShowNextImage());
    EXPECT_EQ(Status(), "x 16 (7.75 um)  y 11 (5.25 um)  z 6 (5.50 um)  t 2 of 3  value 155");
    // Two pixels a micron, one a voxel, in XY.
    MovePointerTo(Window(zel_PT_XY), {3, 4});
    EXPECT_EQ(Status(), "x 4 (1.75 um)  y 5 (2.25 um)  z 6 (5.50 um)  t 2 of 3  value 131");
}

TEST_F(HostFrame, TheStatusLineIsWholeInANarrowWindowToo) {
    Open(3);
    EXPECT_LT(m_frame->GetSize().x, 500);
    EXPECT_EQ(Status(), "x 16  y 11  z 6  t 1 of 3  value 55");
    EXPECT_FALSE(m_frame->GetStatusBar()->GetField(0).IsEllipsized());
    ASSERT_TRUE(ResizeClient(*m_frame, {900, 500}));
    EXPECT_EQ(Status(), "x 16 (7.75 um)  y 11 (5.25 um)  z 6 (5.50 um)  t 1 of 3  value 55");
    wxRect field;
    m_frame->GetStatusBar()->GetFieldRect(1, field);
    EXPECT_LT(field.width, 20);
    m_frame->SetInfoStatusText("Some message", 5);
    Settle();
    m_frame->GetStatusBar()->GetFieldRect(1, field);
    EXPECT_GT(field.width, 160) << "a message has its room";
}

TEST_F(HostFrame, TheStatusLineWaitsWhileTheImageHasNoFrames) {
    Open(2);
    const std::string before = Status();
    auto& canvas = dynamic_cast<zel_ImageViewer3dCanvas<unsigned short>&>(Canvas());
    canvas.GetImage()->RemoveFrame(1);
    canvas.GetImage()->RemoveFrame(0);
    canvas.OnSequenceChange();
    EXPECT_EQ(Status(), before);
}

TEST_F(HostFrame, TheStatusLineTellsColoursWithoutPadding) {
    const wxLogNull quiet; // the module tells what colours don't have
    using RGB = kep::RGB_generic<unsigned char>;
    m_frame = MakeFrame(MakeImage<RGB>({30, 20, 1}, 1, [](auto...) { return RGB(1, 20, 3); }), {});
    ShowInPlace(*m_frame, std::nullopt);
    ASSERT_TRUE(ShowAndWait(*m_frame));
    MovePointer({1500, 1100});
    EXPECT_THAT(Status(), testing::MatchesRegex("x 16  y 11  z 1  value 1 +20 +3"));
}

TEST_F(HostFrame, TheTitleFollowsZoomAndTime) {
    auto image = MakeImage<unsigned char>({30, 20, 10}, 2, [](auto x, auto...) { return x; });
    image->SetImageName(0, "/f/one.tif");
    image->SetImageName(1, "/f/two.tif");
    m_frame = MakeFrame(std::move(image), {});
    ShowInPlace(*m_frame, std::nullopt);
    ASSERT_TRUE(ShowAndWait(*m_frame));
    EXPECT_EQ(m_frame->GetTitle(), "one.tif - 30 x 20 x 10 - 100%");
    Choose(zel_CMD_ZOOM_IN);
    Settle();
    EXPECT_EQ(m_frame->GetTitle(), "one.tif - 30 x 20 x 10 - 200%");
    EXPECT_TRUE(Canvas().ShowNextImage());
    Settle();
    EXPECT_EQ(m_frame->GetTitle(), "two.tif - 30 x 20 x 10 - 200%");
    Choose(zel_CMD_NORMAL_ZOOM);
    Choose(zel_CMD_ZOOM_OUT);
    Settle();
    EXPECT_EQ(m_frame->GetTitle(), "two.tif - 30 x 20 x 10 - 50%");
}

TEST_F(HostFrame, SlidersMoveTheCutAndTheTimeAndFollowThem) {
    Open(5);
    const std::vector<wxSlider*> sliders = Sliders();
    ASSERT_EQ(sliders.size(), 2U);
    EXPECT_EQ(sliders[0]->GetMax(), 10);
    EXPECT_EQ(sliders[0]->GetValue(), 6);
    EXPECT_EQ(sliders[1]->GetMax(), 5);
    Slide(*sliders[0], 3);
    EXPECT_EQ(Canvas().GetCut().z, 2.5F) << "the middle of the third slice";
    Slide(*sliders[1], 4);
    EXPECT_EQ(Canvas().GetTime(), 3);
    Choose(zel_CMD_NORMAL_ZOOM);
    PressKey(Window(zel_PT_XY), WXK_END);
    PressKey(Window(zel_PT_XY), WXK_PAGEDOWN);
    Settle();
    EXPECT_EQ(sliders[1]->GetValue(), 5);
    EXPECT_EQ(sliders[0]->GetValue(), 4);
}

TEST_F(HostFrame, AFlatImageHasNoSliders) {
    m_frame = MakeFrame(MakeImage<unsigned char>({20, 20, 1}, 1, [](auto x, auto...) { return x; }), {});
    ASSERT_TRUE(ShowAndWait(*m_frame));
    EXPECT_EQ(m_frame->GetToolBar(), nullptr);
}

TEST_F(HostFrame, GoToTakesNumbersFromOne) {
    Open(4);
    DialogAnswers answers;
    answers.ExpectDriven([](wxDialog& dialog) {
        std::vector<wxSpinCtrl*> fields;
        for (wxWindow* const child : dialog.GetChildren())
            if (auto* const field = dynamic_cast<wxSpinCtrl*>(child))
                fields.push_back(field);
        ASSERT_EQ(fields.size(), 4U);
        const int shown[] = {16, 11, 6, 1}, count[] = {30, 20, 10, 4}, wanted[] = {1, 20, 2, 3};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(fields[i]->GetValue(), shown[i]);
            EXPECT_EQ(fields[i]->GetMax(), count[i]);
            fields[i]->SetValue(wanted[i]);
        }
        dialog.EndModal(wxID_OK);
    });
    Choose(goTo);
    EXPECT_EQ(Canvas().GetCut(), (kep::Vector3d<float>(0.25F, 9.75F, 1.5F)));
    EXPECT_EQ(Canvas().GetTime(), 2);
}

TEST_F(HostFrame, TheViewerMayGoUnderGoTo) {
    Open(4);
    DialogAnswers answers;
    answers.ExpectDriven([this](wxDialog&) { delete m_frame.get(); });
    m_frame->ProcessCommand(goTo);
    EXPECT_FALSE(m_frame);
}

TEST_F(HostFrame, ABadPaletteIsToldAndTheColoursStay) {
    Open(1);
    ChooseMapping("Periodic");
    const ScratchFolder folder;
    const std::string name = folder / "colours.pal";
    const auto mark = [this] {
        m_frame->GetMenuBar()->UpdateMenus();
        for (const char* const entry : {"Gray", "Saturation", "Labels", "Periodic", "Palette..."})
            if (m_frame->GetMenuBar()->IsChecked(m_frame->GetMenuBar()->FindMenuItem("Mapping", entry)))
                return std::string(entry);
        return std::string("none");
    };
    Settle();
    const wxImage before = Screen(Window(zel_PT_XY));
    const auto choose = [&](DialogAnswers& answers) {
        answers.ExpectDriven([&](wxDialog& dialog) {
            auto& files = dynamic_cast<wxFileDialog&>(dialog);
            files.SetPath(wxString::FromUTF8(name));
            EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == name; }));
            files.EndModal(wxID_OK);
        });
    };
    for (const auto& [contents, fault] : std::vector<std::pair<std::string, std::string>>{
             {"1 2 3\nred\n", "Line 2 has no three numbers for red, green and blue."}, {"", "The file is empty."}}) {
        WriteBytes(name, contents);
        DialogAnswers answers;
        choose(answers);
        answers.Expect([&, told = fault](wxDialog& dialog) {
            EXPECT_EQ(dynamic_cast<wxMessageDialog&>(dialog).GetMessage(),
                      name + ": " + told + " The colours stay as they were.");
            return wxID_OK;
        });
        ChooseMapping("Palette...");
        EXPECT_EQ(mark(), "Periodic");
    }
    {
        DialogAnswers answers;
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        ChooseMapping("Palette...");
        EXPECT_EQ(mark(), "Periodic");
    }
    Settle();
    const wxImage after = Screen(Window(zel_PT_XY));
    EXPECT_TRUE(
        std::equal(before.GetData(), before.GetData() + 3 * before.GetWidth() * before.GetHeight(), after.GetData()));
    WriteBytes(name, "1 2 3\n");
    DialogAnswers answers;
    choose(answers);
    ChooseMapping("Palette...");
    EXPECT_EQ(mark(), "Palette...");
}

TEST_F(HostFrame, TheViewerMayGoUnderTheChoiceOfAPalette) {
    Open(1);
    DialogAnswers answers;
    answers.ExpectDriven([this](wxDialog&) { delete m_frame.get(); });
    ChooseMappingOfAViewerThatGoes("Palette...");
    EXPECT_FALSE(m_frame);
}

TEST_F(HostFrame, TheViewerMayGoUnderTheWordOfABadPalette) {
    Open(1);
    const ScratchFolder folder;
    const std::string name = folder / "colours.pal";
    WriteBytes(name, "red\n");
    DialogAnswers answers;
    answers.ExpectDriven([&name](wxDialog& dialog) {
        auto& files = dynamic_cast<wxFileDialog&>(dialog);
        files.SetPath(wxString::FromUTF8(name));
        EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == name; }));
        files.EndModal(wxID_OK);
    });
    answers.Expect([this](wxDialog& box) -> int {
        wxTheApp->CallAfter([this, &box] { // in the system's own loop, which the box runs in
            EXPECT_FALSE(box.IsModal());
            delete m_frame.get();
        });
        return wxID_NONE;
    });
    ChooseMappingOfAViewerThatGoes("Palette...");
    EXPECT_FALSE(m_frame);
}

TEST_F(HostFrame, EntriesThatCanDoNothingAreGray) {
    Open(1);
    m_frame->GetMenuBar()->UpdateMenus();
    EXPECT_FALSE(m_frame->GetMenuBar()->IsEnabled(zel_CMD_BROWSE_FORWARD));
    EXPECT_FALSE(m_frame->GetMenuBar()->IsEnabled(zel_CMD_BROWSING_RANGE));
    EXPECT_TRUE(m_frame->GetMenuBar()->IsEnabled(zel_CMD_ZOOM_IN));
}

TEST_F(HostFrame, EntriesFollowAnImageThatGetsFramesOrLosesThem) {
    Open(2);
    auto& canvas = dynamic_cast<zel_ImageViewer3dCanvas<unsigned short>&>(Canvas());
    EXPECT_TRUE(m_frame->GetMenuBar()->IsEnabled(zel_CMD_BROWSE_FORWARD));
    canvas.GetImage()->RemoveFrame(1);
    canvas.OnDataChange();
    Settle();
    EXPECT_FALSE(m_frame->GetMenuBar()->IsEnabled(zel_CMD_BROWSE_FORWARD));
}

TEST_F(HostFrame, TheLastWindowStays) {
    Open(1);
    Choose(zel_CMD_SHOW_XZ);
    Choose(zel_CMD_SHOW_YZ);
    EXPECT_FALSE(Canvas().IsDrWinShown(zel_PT_XZ) || Canvas().IsDrWinShown(zel_PT_YZ));
    Choose(zel_CMD_SHOW_XY);
    EXPECT_TRUE(Canvas().IsDrWinShown(zel_PT_XY));
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText(1), "This window is the last one.");
    Choose(zel_CMD_SHOW_XZ);
    Choose(zel_CMD_SHOW_XY);
    EXPECT_FALSE(Canvas().IsDrWinShown(zel_PT_XY));
}

TEST_F(HostFrame, ALeftDragTakesTheCutAlong) {
    Open(1);
    const auto send = [this](wxEventType type, const wxPoint& at, bool down) {
        wxMouseEvent event(type);
        event.SetLeftDown(down);
        event.SetPosition(at);
        event.SetEventObject(&Window(zel_PT_XY));
        Window(zel_PT_XY).ProcessWindowEvent(event);
    };
    send(wxEVT_LEFT_DOWN, {3, 4}, true);
    EXPECT_EQ(Canvas().GetCut().x, 1.75F);
    send(wxEVT_MOTION, {8, 10}, true);
    EXPECT_EQ(Canvas().GetCut().x, 4.25F);
    EXPECT_EQ(Canvas().GetCut().y, 5.25F);
    send(wxEVT_LEFT_UP, {8, 10}, false);
    send(wxEVT_MOTION, {20, 12}, false);
    EXPECT_EQ(Canvas().GetCut().x, 4.25F);
}

TEST_F(HostFrame, ShiftAndTheWheelGoThroughTime) {
    Open(4);
    const auto wheel = [this](int rotation) {
        wxMouseEvent event(wxEVT_MOUSEWHEEL);
        event.m_wheelRotation = rotation;
        event.m_wheelDelta = 120;
        event.SetShiftDown(true);
        event.SetPosition({3, 3});
        event.SetEventObject(&Window(zel_PT_XY));
        Window(zel_PT_XY).ProcessWindowEvent(event);
    };
    wheel(-120);
    wheel(-120);
    EXPECT_EQ(Canvas().GetTime(), 2) << "towards the user is onwards, as through the slices";
    wheel(120);
    EXPECT_EQ(Canvas().GetTime(), 1);
    wheel(360);
    EXPECT_EQ(Canvas().GetTime(), 0);
}

TEST_F(HostFrame, DialogsStandBesideThePicture) {
    Open(1);
    for (const char* const label : {"Levels", "Threshold", "Set image range..."}) {
        SCOPED_TRACE(label);
        DialogAnswers answers;
        answers.ExpectDriven([this](wxDialog& dialog) {
            EXPECT_FALSE(dialog.GetScreenRect().Intersects(m_frame->GetScreenRect()));
            EXPECT_TRUE(wxGetClientDisplayRect().Contains(dialog.GetScreenRect()));
            dialog.EndModal(wxID_CANCEL);
        });
        ChooseMapping(label);
    }
}

TEST_F(HostFrame, ReturnIsOkInDialogs) {
    Open(1);
    for (const char* const label : {"Levels", "Threshold", "Set image range..."}) {
        SCOPED_TRACE(label);
        DialogAnswers answers;
        int code = 0;
        answers.ExpectDriven([&code](wxDialog& dialog) {
            dialog.Raise();
            for (wxWindow* const child : dialog.GetChildren())
                if (auto* const field = dynamic_cast<wxTextCtrl*>(child)) {
                    Focus(*field);
                    break;
                }
            Press(WXK_RETURN);
            EXPECT_FALSE(dialog.IsModal());
            code = dialog.GetReturnCode();
        });
        ChooseMapping(label);
        EXPECT_EQ(code, wxID_OK);
    }
}

TEST_F(HostFrame, ReturnTakesWhatWasJustTyped) {
    Open(1);
    const auto firstField = [](wxDialog& dialog) {
        wxTextCtrl* field = nullptr;
        const std::function<void(wxWindow&)> look = [&](wxWindow& window) {
            for (wxWindow* const child : window.GetChildren()) {
                if (field == nullptr)
                    field = dynamic_cast<wxTextCtrl*>(child);
                look(*child);
            }
        };
        look(dialog);
        return field;
    };
    DialogAnswers answers;
    answers.ExpectDriven([&](wxDialog& dialog) {
        dialog.Raise();
        ASSERT_NE(firstField(dialog), nullptr);
        TypeInto(*firstField(dialog), "17");
        Press(WXK_RETURN);
    });
    answers.ExpectDriven([&](wxDialog& dialog) {
        EXPECT_EQ(firstField(dialog)->GetValue(), "17");
        dialog.EndModal(wxID_CANCEL);
    });
    ChooseMapping("Levels");
    ChooseMapping("Levels");
}

TEST_F(HostFrame, ReturnOnCancelCancels) {
    Open(1);
    DialogAnswers answers;
    int code = 0;
    answers.ExpectDriven([&code](wxDialog& dialog) {
        dialog.Raise();
        Focus(*dialog.FindWindow(wxID_CANCEL));
        Press(WXK_RETURN);
        code = dialog.GetReturnCode();
    });
    ChooseMapping("Levels");
    EXPECT_EQ(code, wxID_CANCEL);
}

TEST_F(HostFrame, KeysAreToldOnRequest) {
    Open(1);
    DialogAnswers answers;
    answers.Expect([](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "Keys and mouse");
        return wxID_OK;
    });
    Choose(keys);
}

} // namespace
} // namespace zelviewer
