#include "tests/viewer/frame_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

constexpr auto XZandYZ = static_cast<zel_ProjectionType>(6);

} // namespace

TEST_F(FrameTest, ZoomCommandsZoomAndFitTheFrame) {
    // 282 = 200 + 6 + 70 + 6 at zoom 0; 400 + 6 + 140 + 6 = 552 at zoom 1; 100 + 6 + 35 + 6 = 147 at zoom -1.
    Choose(5999);
    EXPECT_EQ(canvas->GetZoom(), 1);
    EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize() == wxSize(552, 552); })) << frame->GetClientSize().x;
    EXPECT_EQ(canvas->calls.front(), "OnVis3dChange 7");
    Choose(6001);
    EXPECT_EQ(canvas->GetZoom(), 0);
    EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize() == wxSize(282, 282); })) << frame->GetClientSize().x;
    Choose(6000);
    EXPECT_EQ(canvas->GetZoom(), -1);
    EXPECT_TRUE(WaitUntil([&] { return frame->GetSize().x == 200; })) << "147 and the size hint";
    Choose(6000);
    EXPECT_EQ(canvas->GetZoom(), -2);
}

TEST_F(FrameTest, BrowsingCommandsRunTheTimer) {
    Choose(6018);
    EXPECT_TRUE(canvas->IsPlaying());
    EXPECT_EQ(canvas->GetImageIterator().direction, 1);
    EXPECT_EQ(Message(), "Forward auto browsing.");
    EXPECT_EQ(Mark(6018), true);
    EXPECT_EQ(Mark(6019), false);
    Choose(6019);
    EXPECT_TRUE(canvas->IsPlaying());
    EXPECT_EQ(canvas->GetImageIterator().direction, -1);
    EXPECT_EQ(Message(), "Backward auto browsing.");
    EXPECT_EQ(Mark(6018), false);
    EXPECT_EQ(Mark(6019), true);
    Choose(6002);
    EXPECT_FALSE(canvas->IsPlaying());
    EXPECT_EQ(Message(), "Stopped auto browsing.");
    EXPECT_EQ(Mark(6018), false);
    EXPECT_EQ(Mark(6019), false);
}

TEST_F(FrameTest, ModesAreFlippedWithoutAMessage) {
    for (const int id : {6020, 6021}) {
        EXPECT_EQ(Mark(id), false);
        Choose(id);
        EXPECT_EQ(Mark(id), true);
    }
    EXPECT_TRUE(canvas->GetImageIterator().loopMode);
    EXPECT_TRUE(canvas->GetImageIterator().oscillationMode);
    Choose(6020);
    EXPECT_EQ(Mark(6020), false);
    EXPECT_EQ(Mark(6021), true);
    EXPECT_EQ(Message(), "");
}

TEST_F(FrameTest, SpeedAndStepChangeAndSayWhereTheyEnd) {
    Choose(6004);
    EXPECT_EQ(canvas->GetImageIterator().fps, 2);
    EXPECT_EQ(Message(), "FPS set to 2.");
    Choose(6005);
    EXPECT_EQ(canvas->GetImageIterator().fps, 1);
    EXPECT_EQ(Message(), "FPS set to 1.");
    Choose(6005);
    EXPECT_EQ(canvas->GetImageIterator().fps, 1);
    EXPECT_EQ(Message(), "No change.");
    Choose(6006);
    EXPECT_EQ(canvas->GetImageIterator().step, 2);
    EXPECT_EQ(Message(), "Browsing by 2 frames.");
    Choose(6007);
    EXPECT_EQ(canvas->GetImageIterator().step, 1);
    EXPECT_EQ(Message(), "Browsing by 1 frames.");
    Choose(6007);
    EXPECT_EQ(canvas->GetImageIterator().step, 1);
    EXPECT_EQ(Message(), "No change.");
}

TEST_F(FrameTest, AutofocusOfAllSwitchesAllOnUnlessAllAre) {
    Choose(6032);
    EXPECT_EQ(canvas->GetContent(zel_PT_XZ), zel_PC_AUTOFOCUS);
    EXPECT_EQ(canvas->GetContent(zel_PT_XY), zel_PC_CUT);
    EXPECT_EQ(canvas->calls, (Calls{"OnContentChange 2"}));
    Choose(6025);
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ})
        EXPECT_EQ(canvas->GetContent(type), zel_PC_AUTOFOCUS) << type;
    Choose(6025);
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ})
        EXPECT_EQ(canvas->GetContent(type), zel_PC_CUT) << type;
    EXPECT_EQ(canvas->calls, (Calls{"OnContentChange 2", "OnContentChange 7", "OnContentChange 7"}));
}

TEST_F(FrameTest, AutofocusEntriesAreMarkedEachForItselfAndForAll) {
    for (const int id : {6025, 6031, 6032, 6033})
        EXPECT_EQ(Mark(id), false) << id;
    for (const int id : {6031, 6032}) {
        Choose(id);
        EXPECT_EQ(Mark(id), true) << id;
        EXPECT_EQ(Mark(6025), false);
    }
    EXPECT_EQ(Mark(6033), false);
    Choose(6033);
    EXPECT_EQ(Mark(6033), true);
    EXPECT_EQ(Mark(6025), true);
    Choose(6031);
    EXPECT_EQ(Mark(6031), false);
    EXPECT_EQ(Mark(6025), false);
}

TEST_F(FrameTest, WindowsAreHiddenAndShownAgainAndTheFrameKeepsItsSize) {
    const wxSize size = frame->GetSize();
    const std::pair<int, zel_ProjectionType> rows[] = {{6022, zel_PT_XY}, {6023, zel_PT_XZ}, {6024, zel_PT_YZ}};
    for (const auto& [id, type] : rows) {
        EXPECT_EQ(Mark(id), true);
        Choose(id);
        EXPECT_FALSE(canvas->GetDrWin(type)->IsShown());
        EXPECT_EQ(Mark(id), false);
        Choose(id);
        EXPECT_TRUE(canvas->GetDrWin(type)->IsShown());
        EXPECT_EQ(Mark(id), true);
    }
    Choose(6022);
    EXPECT_TRUE(canvas->IsDrWinShown(XZandYZ));
    Settle();
    EXPECT_EQ(frame->GetSize(), size);
}

TEST_F(FrameTest, AxesAreReversedAndTheIconIsRenewedALittleLater) {
    for (int axis = 0; axis < 3; ++axis) {
        canvas->calls.clear();
        const int id = 6028 + axis;
        const int icons = canvas->icons;
        EXPECT_EQ(Mark(id), false);
        Choose(id);
        EXPECT_TRUE(canvas->IsAxisReversed(static_cast<std::size_t>(axis)));
        EXPECT_EQ(Mark(id), true);
        EXPECT_EQ(canvas->calls, (Calls{"ReverseAxis " + std::to_string(axis)}));
        EXPECT_EQ(canvas->icons, icons);
        EXPECT_TRUE(WaitUntil([&] { return canvas->icons == icons + 1; }));
    }
    Choose(6029);
    EXPECT_EQ(Mark(6028), true);
    EXPECT_EQ(Mark(6029), false);
    EXPECT_EQ(Mark(6030), true);
}

TEST_F(FrameTest, AnnotationIsSwitchedAndPainted) {
    EXPECT_EQ(Mark(6026), false);
    Choose(6026);
    EXPECT_TRUE(canvas->GetInfoFlag());
    EXPECT_EQ(Mark(6026), true);
    EXPECT_TRUE(canvas->calls.empty()) << "no window is resampled";
    const int paints = canvas->paintsXY;
    EXPECT_TRUE(WaitUntil([&] { return canvas->paintsXY > paints; }));
    Choose(6026);
    EXPECT_EQ(Mark(6026), false);
}

TEST_F(FrameTest, InfoWindowIsNotMarkedWhileItIsNotThere) {
    EXPECT_EQ(Mark(6027), false);
}

TEST_F(FrameTest, IdsWithoutAMarkAreLeftToTheHost) {
    auto* const host = new wxFrame(nullptr, wxID_ANY, "host");
    std::vector<int> seen; // by the host, behind the frame
    host->Bind(
        wxEVT_UPDATE_UI, [&seen](wxUpdateUIEvent& event) { seen.push_back(event.GetId()); }, 5990, 6100);
    zel_Viewer3dFrame* const child = MakeFrame(host);
    const auto ask = [child](int id) {
        wxUpdateUIEvent event(id);
        child->ProcessWindowEvent(event);
        EXPECT_FALSE(event.GetSetChecked()) << id;
    };
    for (const int id : {6018, 6035})
        ask(id);
    child->SetCanvas(new FrameCanvas(child));
    for (const int id : {6002, 6015, 6017, 6034, 6035, 6036, 6038})
        ask(id);
    EXPECT_EQ(seen, (std::vector<int>{6018, 6002, 6015, 6017, 6034, 6036, 6038}));
    seen.clear();
    for (int id = 6018; id <= 6033; ++id) {
        wxUpdateUIEvent event(id);
        EXPECT_TRUE(child->ProcessWindowEvent(event)) << id;
        EXPECT_TRUE(event.GetSetChecked()) << id;
    }
    EXPECT_TRUE(seen.empty());
    child->Destroy();
    Pump();
    EXPECT_EQ(seen, (std::vector<int>{6037}));
    host->Destroy();
}

TEST_F(FrameTest, WithoutVoxelsThereIsNothingToSave) {
    const DialogAnswers none; // a dialog would fail the test
    for (const int id : {6011, 6012, 6013})
        Choose(id);
    EXPECT_EQ(Message(), "");
}

TEST_F(FrameTest, TheRangeIsAskedForAndKeptOnCancel) {
    {
        DialogAnswers answers;
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        Choose(6003);
    }
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(canvas->GetImageIterator().rangeFirst, 0);
    EXPECT_EQ(canvas->GetImageIterator().rangeLast, 9);
    EXPECT_TRUE(canvas->shown.empty());
}

TEST_F(FrameTest, ASingleFrameHasNoRangeToAskFor) {
    const DialogAnswers noDialog;
    canvas->Play(1);
    Choose(6003);
    EXPECT_EQ(Message(), "No change.");
}

TEST_F(FrameTest, TheCanvasGivesTheFrameItsIcons) {
    frame->RefreshIcon();
    EXPECT_EQ(canvas->icons, 1);
    EXPECT_EQ(frame->GetIcons().GetIconCount(), 1U);
    wxUpdateUIEvent event(6035);
    EXPECT_TRUE(frame->ProcessWindowEvent(event));
    EXPECT_FALSE(event.GetSetChecked());
    EXPECT_EQ(canvas->icons, 2);
    canvas->DetachMapper();
    frame->RefreshIcon();
    EXPECT_EQ(canvas->icons, 2) << "no picture is made without a mapper";
}

TEST_F(FrameTest, ChangesOfMappingAndOverlayReachTheCanvas) {
    zel_MappingEvent committed;
    EXPECT_TRUE(frame->ProcessWindowEvent(committed));
    zel_MappingEvent preview(false);
    preview.SetId(123);
    EXPECT_TRUE(frame->ProcessWindowEvent(preview));
    zel_OverlayingEvent overlaying(true, true);
    overlaying.SetId(123);
    EXPECT_TRUE(frame->ProcessWindowEvent(overlaying));
    EXPECT_EQ(canvas->calls, (Calls{"MappingChanged", "MappingChanged in a preview", "OverlayingChanged by a reload"}));
}

TEST_F(FrameTest, AMoveIsPassedOn) {
    wxMoveEvent event(wxPoint(20, 30));
    frame->ProcessWindowEvent(event);
    EXPECT_TRUE(event.GetSkipped());
}

TEST_F(FrameTest, AMessageGoesWhenItsTimeIsOver) {
    frame->SetInfoStatusText("saved", 1);
    EXPECT_EQ(Message(), "saved");
    EXPECT_EQ(frame->GetStatusBar()->GetStatusText(0), "");
    EXPECT_EQ(TimeLeftToMessage(), 1000);
    TickForMessage();
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(TimeLeftToMessage(), 0);
}

TEST_F(FrameTest, TheTickForAMessageComesFromTheTimer) {
    frame->SetInfoStatusText("gone at once", 0);
    EXPECT_EQ(Message(), "gone at once");
    EXPECT_TRUE(WaitUntil([&] { return Message().empty(); }));
}

TEST_F(FrameTest, ASecondMessageStartsTheTimeAnew) {
    for (const int seconds : {60, 1}) {
        frame->SetInfoStatusText("first", seconds);
        frame->SetInfoStatusText("second", 2);
        EXPECT_EQ(Message(), "second");
        EXPECT_EQ(TimeLeftToMessage(), 2000);
    }
    TickForMessage();
    EXPECT_EQ(Message(), "");
    frame->SetInfoStatusText("third", 2);
    EXPECT_EQ(TimeLeftToMessage(), 2000) << "the timer runs again";
    EXPECT_EQ(Message(), "third");
    frame->ClearInfoStatusText();
    EXPECT_EQ(Message(), "");
}

TEST_F(FrameTest, MessagesOfCommandsStayFiveSeconds) {
    frame->SetInfoStatusText("before", 60);
    Choose(6004);
    EXPECT_EQ(TimeLeftToMessage(), 5000);
    EXPECT_EQ(Message(), "FPS set to 2.");
    TickForMessage();
    EXPECT_EQ(Message(), "");
    Choose(6004);
    EXPECT_EQ(TimeLeftToMessage(), 5000);
    EXPECT_EQ(Message(), "FPS set to 3.");
}

TEST_F(FrameTest, WithoutACanvasNothingHappens) {
    zel_Viewer3dFrame* const empty = MakeFrame();
    const wxSize size = empty->GetSize();
    ASSERT_TRUE(ShowAndWait(*empty));
    for (int id = 5999; id <= 6040; ++id) {
        wxCommandEvent command(wxEVT_MENU, id);
        empty->ProcessWindowEvent(command);
        wxUpdateUIEvent update(id);
        empty->ProcessWindowEvent(update);
        EXPECT_FALSE(update.GetSetChecked()) << id;
    }
    zel_MappingEvent mapping;
    empty->ProcessWindowEvent(mapping);
    zel_OverlayingEvent overlaying;
    empty->ProcessWindowEvent(overlaying);
    wxMoveEvent move(wxPoint(1, 1));
    empty->ProcessWindowEvent(move);
    empty->RefreshIcon();
    empty->ResizeFrameIfRequired();
    Settle();
    EXPECT_EQ(empty->GetCanvas(), nullptr);
    EXPECT_EQ(empty->GetStatusBar()->GetStatusText(1), "");
    EXPECT_EQ(empty->GetSize(), size);
    empty->SetCanvas(nullptr);
    empty->Destroy();
}

TEST_F(FrameTest, ASecondCanvasReplacesTheFirst) {
    bool ended = false;
    canvas->onEnd = [&ended] { ended = true; };
    const wxSize size = frame->GetSize();
    auto* const second = new FrameCanvas(frame);
    frame->SetCanvas(second);
    EXPECT_TRUE(ended);
    EXPECT_EQ(frame->GetCanvas(), second);
    EXPECT_EQ(second->GetSize(), frame->GetClientSize());
    EXPECT_EQ(frame->GetSize(), size);
    frame->SetCanvas(second);
    EXPECT_EQ(frame->GetCanvas(), second) << "the same one again stays";
    ASSERT_TRUE(ResizeClient(*frame, wxSize(420, 333)));
    EXPECT_TRUE(WaitUntil([&] { return second->GetSize() == wxSize(420, 333); }));
    Choose(5999);
    EXPECT_EQ(second->GetZoom(), 1);
}
