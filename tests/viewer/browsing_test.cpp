#include "tests/viewer/noting_canvas.h"
#include "viewer/zel_commands.h"

#include <wx/evtloop.h>
#include <wx/stopwatch.h>

#include <functional>
#include <limits>
#include <new>

using namespace zel;
using namespace zel::test;

namespace {

using Frames = std::vector<int>;

/// A canvas with a sequence of 13, of which the frames 3 to 10 are browsed by 4, from 3.
class BrowsingTest : public NotingCanvasTest {
protected:
    void SetUp() override {
        NotingCanvasTest::SetUp();
        Play(13, 3, 10, 4);
    }
    void Play(int count, int first, int last, int step) {
        canvas->Play(count);
        canvas->m_iterator.SetRange(first, last);
        canvas->m_iterator.SetStep(step);
        canvas->m_time = canvas->m_iterator.current;
        Forget();
    }
    /// Runs a command of the menu. @return its message
    std::string Run(int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        wxString message;
        canvas->OnSequenceMenuHandler(event, message);
        return message.utf8_string();
    }
    /// Frames that ticks show, until the timer stops, at most `count` ticks.
    Frames Ticks(int count) {
        canvas->shown.clear();
        wxTimerEvent tick(canvas->m_sequenceTimer);
        while (count-- > 0 && canvas->m_sequenceTimer.IsRunning())
            canvas->OnSequenceTimerHandler(tick);
        return canvas->shown;
    }
    void SetModes(bool loop, bool oscillation) {
        canvas->m_iterator.loopMode = loop;
        canvas->m_iterator.oscillationMode = oscillation;
    }
    mor::ImageIterator& It() { return canvas->m_iterator; }
    bool IsPlaying() { return canvas->m_sequenceTimer.IsRunning(); }
    void TearDown() override {
        canvas->m_sequenceTimer.Stop();
        NotingCanvasTest::TearDown();
    }
};

} // namespace

TEST_F(BrowsingTest, ForwardStopsAtTheLastFrameThatStepsReach) {
    EXPECT_EQ(Run(zel_CMD_BROWSE_FORWARD), "Forward auto browsing.");
    EXPECT_TRUE(IsPlaying());
    EXPECT_EQ(Ticks(9), (Frames{7})); // 11 is out of range
    EXPECT_FALSE(IsPlaying());
    EXPECT_EQ(canvas->GetTime(), 7);
}

TEST_F(BrowsingTest, BackwardStopsAtTheFirstFrameThatStepsReach) {
    It().current = 10;
    EXPECT_EQ(Run(zel_CMD_BROWSE_BACKWARD), "Backward auto browsing.");
    EXPECT_EQ(Ticks(9), (Frames{6})); // 2 is out of range
    EXPECT_FALSE(IsPlaying());
    EXPECT_EQ(It().direction, -1);
}

TEST_F(BrowsingTest, LoopsKeepTheirPhase) {
    SetModes(true, false);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(Ticks(6), (Frames{7, 3, 7, 3, 7, 3}));
    Run(zel_CMD_BROWSE_BACKWARD);
    EXPECT_EQ(Ticks(5), (Frames{7, 3, 7, 3, 7}));
    EXPECT_EQ(It().direction, -1);
    It().current = 4; // another phase: 4, 8
    EXPECT_EQ(Ticks(4), (Frames{8, 4, 8, 4}));
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(Ticks(4), (Frames{8, 4, 8, 4}));
    EXPECT_TRUE(IsPlaying());
}

TEST_F(BrowsingTest, LoopsByOneGoFromTheLastFrameToTheFirst) {
    Play(4, 0, 3, 1);
    SetModes(true, false);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(Ticks(7), (Frames{1, 2, 3, 0, 1, 2, 3}));
    Run(zel_CMD_BROWSE_BACKWARD);
    EXPECT_EQ(Ticks(6), (Frames{2, 1, 0, 3, 2, 1}));
}

TEST_F(BrowsingTest, OscillationTurnsRoundAtBothEnds) {
    Play(6, 1, 4, 1);
    SetModes(true, true);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(Ticks(8), (Frames{2, 3, 4, 3, 2, 1, 2, 3}));
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_PlayingForward());
    Play(6, 0, 5, 2);
    SetModes(true, true);
    EXPECT_EQ(Ticks(6), (Frames{2, 4, 2, 0, 2, 4}));
    EXPECT_EQ(Ticks(1), (Frames{2}));
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_PlayingBackward()) << "the menu shows the way it goes";
}

TEST_F(BrowsingTest, OscillationTakesALoop) {
    SetModes(false, true);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(Ticks(9), (Frames{7}));
    EXPECT_EQ(It().direction, 1);
    EXPECT_FALSE(IsPlaying());
}

TEST_F(BrowsingTest, ASingleFrameStopsAtTheFirstTick) {
    for (const bool loop : {false, true})
        for (const bool oscillation : {false, true}) {
            Play(1, 0, 0, 1);
            SetModes(loop, oscillation);
            Run(zel_CMD_BROWSE_FORWARD);
            EXPECT_TRUE(IsPlaying());
            EXPECT_EQ(Ticks(3), Frames{});
            EXPECT_FALSE(IsPlaying());
        }
}

TEST_F(BrowsingTest, AFrameOutsideTheRangeIsBroughtInAtTheStart) {
    It().current = 12;
    canvas->m_time = 12;
    Run(zel_CMD_BROWSE_BACKWARD);
    EXPECT_EQ(canvas->shown, (Frames{10})) << "at once";
    EXPECT_EQ(Ticks(9), (Frames{6}));
    It().current = 0;
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas->shown.back(), 3);
    EXPECT_EQ(Ticks(9), (Frames{7}));
}

TEST_F(BrowsingTest, TicksComeFromTheTimer) {
    Play(8, 0, 7, 1);
    It().SetFPS(50);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas->GetSequenceInterval(), 20);
    const wxStopWatch watch;
    EXPECT_TRUE(WaitUntil([&] { return !IsPlaying(); }));
    EXPECT_GE(watch.Time(), 8 * 20 - 1) << "a tick for each frame, and one that finds no more";
    EXPECT_EQ(canvas->shown, (Frames{1, 2, 3, 4, 5, 6, 7}));
    LetUnwantedTicksCome(3 * 20);
    EXPECT_EQ(canvas->shown.size(), 7U);
}

TEST_F(BrowsingTest, TicksGoOnUnderAModalDialog) {
    Play(1000, 0, 999, 1);
    It().SetFPS(100);
    Run(zel_CMD_BROWSE_FORWARD);
    DialogAnswers answers;
    answers.ExpectDriven([this](wxDialog& dialog) {
        const int before = canvas->GetTime();
        EXPECT_TRUE(WaitUntil([&] { return canvas->GetTime() >= before + 2; }));
        dialog.EndModal(wxID_OK);
    });
    wxDialog dialog(frame, wxID_ANY, "modal");
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_TRUE(IsPlaying());
}

TEST_F(BrowsingTest, SpeedChangesWhilePlaying) {
    Play(1000, 0, 999, 1);
    EXPECT_EQ(Run(zel_CMD_FASTER), "FPS set to 2.");
    EXPECT_FALSE(IsPlaying()) << "the speed starts nothing";
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas->GetSequenceInterval(), 500);
    EXPECT_EQ(Run(zel_CMD_FASTER), "FPS set to 3.");
    EXPECT_EQ(canvas->GetSequenceInterval(), 333);
    EXPECT_TRUE(IsPlaying());
    EXPECT_FALSE(canvas->m_sequenceTimer.IsOneShot());
    EXPECT_EQ(Run(zel_CMD_SLOWER), "FPS set to 2.");
    EXPECT_EQ(canvas->GetSequenceInterval(), 500);
    EXPECT_EQ(Run(zel_CMD_SLOWER), "FPS set to 1.");
    EXPECT_EQ(canvas->GetSequenceInterval(), 1000);
    EXPECT_EQ(Run(zel_CMD_SLOWER), "No change.");
    EXPECT_EQ(It().fps, 1);
    EXPECT_EQ(canvas->GetSequenceInterval(), 1000);
}

TEST_F(BrowsingTest, TheOtherDirectionKeepsTheTimerGoing) {
    Run(zel_CMD_BROWSE_FORWARD);
    It().SetFPS(10); // not through the menu: the timer does not know
    EXPECT_EQ(Run(zel_CMD_BROWSE_BACKWARD), "Backward auto browsing.");
    EXPECT_EQ(canvas->GetSequenceInterval(), 1000);
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_PlayingBackward());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_PlayingForward());
    EXPECT_EQ(Run(zel_CMD_BROWSE_FORWARD), "Forward auto browsing.");
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_PlayingForward());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_PlayingBackward());
    EXPECT_EQ(Run(zel_CMD_STOP_BROWSING), "Stopped auto browsing.");
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_PlayingForward());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_PlayingBackward());
    EXPECT_EQ(Run(zel_CMD_STOP_BROWSING), "Stopped auto browsing.") << "also when nothing runs";
    EXPECT_EQ(canvas->shown, Frames{});
}

TEST_F(BrowsingTest, AboveAThousandFramesThePictureStillFollows) {
    Play(1000000, 0, 999999, 1);
    It().SetFPS(1001);
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas->GetSequenceInterval(), 0);
    canvas->paintsXY = 0;
    const wxStopWatch watch;
    while (watch.Time() < 5000 &&
           canvas->shown.size() < 100) // WaitUntil goes on while there are events, which is always
        wxEventLoopBase::GetActive()->Dispatch();
    Run(zel_CMD_STOP_BROWSING);
    ASSERT_GE(canvas->shown.size(), 100U);
    EXPECT_GE(canvas->paintsXY, static_cast<int>(canvas->shown.size()) - 1) << "each tick is painted";
}

TEST_F(BrowsingTest, FramesThatTakeLongerThanTheirTimeArePaintedToo) {
    Play(1000000, 0, 999999, 1);
    It().SetFPS(200);
    canvas->onShown = [] { wxMilliSleep(12); };
    Run(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas->GetSequenceInterval(), 5);
    canvas->paintsXY = 0;
    const wxStopWatch watch;
    while (watch.Time() < 20000 && canvas->shown.size() < 50)
        wxEventLoopBase::GetActive()->Dispatch();
    Run(zel_CMD_STOP_BROWSING);
    ASSERT_GE(canvas->shown.size(), 50U);
    EXPECT_GE(canvas->paintsXY, static_cast<int>(canvas->shown.size()) - 1) << "each tick is painted";
}

TEST_F(BrowsingTest, TicksThatAreAlwaysLateLeaveRoomForEverythingElse) {
    for (const int fps : {200, 5000}) { // an interval of 5 ms, and of none
        SCOPED_TRACE(fps);
        Play(1000000, 0, 999999, 1);
        It().SetFPS(fps);
        constexpr std::size_t patience = 100;
        canvas->onShown = [&] {
            wxMilliSleep(8);
            if (canvas->shown.size() >= patience) // or a loop that never ends would hold the test
                canvas->m_sequenceTimer.Stop();
        };
        Run(zel_CMD_BROWSE_FORWARD);
        while (canvas->shown.size() < 3)
            wxEventLoopBase::GetActive()->Dispatch();
        auto* const other = new wxFrame(nullptr, wxID_ANY, "other", wxDefaultPosition, wxSize(300, 200));
        auto* const panel = new wxPanel(other);
        int paints = 0;
        int idles = 0;
        panel->Bind(wxEVT_PAINT, [&](wxPaintEvent& event) {
            ++paints;
            event.Skip();
        });
        panel->Bind(wxEVT_IDLE, [&](wxIdleEvent&) { ++idles; });
        other->Show();
        while (IsPlaying() && (paints == 0 || idles == 0 || panel->GetClientSize() != other->GetClientSize()))
            wxEventLoopBase::GetActive()->Dispatch();
        EXPECT_TRUE(IsPlaying()) << paints << " paints, " << idles << " idle events";
        for (int i = 0; i < 5; ++i) {
            const std::size_t before = canvas->shown.size();
            while (canvas->shown.size() == before && IsPlaying()) {
                wxMilliSleep(6); // so that a tick is due
                wxEventLoopBase::GetActive()->Yield();
            }
        }
        EXPECT_TRUE(IsPlaying()) << "a loop that yields until nothing waits does not end";
        EXPECT_EQ(canvas->GetSequenceInterval(), 1000 / fps);
        Run(zel_CMD_STOP_BROWSING);
        const std::size_t frames = canvas->shown.size();
        other->Destroy();
        Settle();
        EXPECT_EQ(canvas->shown.size(), frames) << "no tick comes after the end";
        EXPECT_FALSE(IsPlaying());
    }
}

TEST_F(BrowsingTest, StepGoesFromOneToTheSizeOfTheRange) {
    Play(5, 1, 3, 1);
    EXPECT_EQ(Run(zel_CMD_SMALLER_STEP), "No change.");
    EXPECT_EQ(Run(zel_CMD_LARGER_STEP), "Browsing by 2 frames.");
    EXPECT_EQ(Run(zel_CMD_LARGER_STEP), "Browsing by 3 frames.");
    EXPECT_EQ(Run(zel_CMD_LARGER_STEP), "No change.");
    EXPECT_EQ(It().step, 3);
    EXPECT_EQ(Run(zel_CMD_SMALLER_STEP), "Browsing by 2 frames.");
    EXPECT_EQ(canvas->shown, Frames{});
}

TEST_F(BrowsingTest, ModesFlipWithoutAWord) {
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_Loop());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_Oscillation());
    EXPECT_EQ(Run(zel_CMD_LOOP_MODE), "");
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_Loop());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_Oscillation());
    EXPECT_EQ(Run(zel_CMD_OSCILLATION_MODE), "");
    EXPECT_TRUE(canvas->OnSequenceMenuUpdateUI_Oscillation());
    Run(zel_CMD_LOOP_MODE);
    Run(zel_CMD_OSCILLATION_MODE);
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_Loop());
    EXPECT_FALSE(canvas->OnSequenceMenuUpdateUI_Oscillation());
    EXPECT_FALSE(IsPlaying());
}

TEST_F(BrowsingTest, OtherCommandsDoNothing) {
    for (const int id : {5999, 6000, 6001, 6008, 6011, 6017, 6022, 6100, 0, -1}) {
        EXPECT_EQ(Run(id), "") << id;
        EXPECT_EQ(canvas->shown, Frames{});
        EXPECT_EQ(canvas->calls, Calls{});
        EXPECT_FALSE(IsPlaying());
    }
    wxCommandEvent other(wxEVT_MENU, 6001);
    wxString message = "kept";
    canvas->OnSequenceMenuHandler(other, message);
    EXPECT_EQ(message, "kept");
}

TEST_F(BrowsingTest, AFailureOfAnyKindIsNoChange) {
    class Failing : public NotingCanvas {
    public:
        using NotingCanvas::NotingCanvas;
        void OnTimeChange() override { failure(); }
        std::function<void()> failure;
    };
    const std::function<void()> failures[] = {[] { throw 5; }, [] { throw std::bad_alloc(); }};
    for (const auto& failure : failures) {
        auto* const failing = new Failing(frame);
        failing->failure = failure;
        failing->Play(5);
        failing->m_iterator.SetRange(2, 3);
        failing->m_iterator.current = 0;
        wxCommandEvent event(wxEVT_MENU, zel_CMD_BROWSE_FORWARD);
        wxString message;
        EXPECT_NO_THROW(failing->OnSequenceMenuHandler(event, message));
        EXPECT_EQ(message, "No change.");
        EXPECT_FALSE(failing->m_sequenceTimer.IsRunning());
    }
}

TEST_F(BrowsingTest, ShowNextImageStepsAndPaints) {
    Settle();
    canvas->paintsXY = 0;
    EXPECT_TRUE(canvas->ShowNextImage());
    EXPECT_EQ(canvas->shown, (Frames{7}));
    EXPECT_GE(canvas->paintsXY, 1) << "painted before it returned";
    EXPECT_EQ(canvas->paintedTime, 7);
    Settle();
    canvas->paintsXY = 0;
    EXPECT_FALSE(canvas->ShowNextImage());
    EXPECT_EQ(canvas->shown, (Frames{7}));
    Settle();
    EXPECT_EQ(canvas->paintsXY, 0) << "nothing is drawn at the end";
    SetModes(true, true);
    EXPECT_TRUE(canvas->ShowNextImage());
    EXPECT_EQ(canvas->paintedTime, 3);
}

TEST_F(BrowsingTest, ShowNextImageOfASingleFrameStays) {
    Play(1, 0, 0, 1);
    EXPECT_FALSE(canvas->ShowNextImage());
    SetModes(true, false);
    EXPECT_FALSE(canvas->ShowNextImage());
    EXPECT_EQ(canvas->shown, Frames{});
}

TEST_F(BrowsingTest, AnotherIteratorsRangeStepNameAndSpeedAreTaken) {
    mor::ImageIterator other(0, 100);
    other.SetRange(1, 8);
    other.SetStep(3);
    other.SetNameTemplate("fieldXX.ics");
    other.SetFPS(12);
    other.current = 99;
    other.loopMode = other.oscillationMode = true;
    other.direction = -1;
    It().current = 9;
    It().direction = -1;
    canvas->UpdateImageIterator(other);
    EXPECT_EQ(It().rangeFirst, 1);
    EXPECT_EQ(It().rangeLast, 8);
    EXPECT_EQ(It().step, 3);
    EXPECT_EQ(It().nameTemplate, "fieldXX.ics");
    EXPECT_EQ(It().fps, 12);
    EXPECT_EQ(It().limitLast, 12) << "not taken";
    EXPECT_FALSE(It().loopMode);
    EXPECT_FALSE(It().oscillationMode);
    EXPECT_EQ(It().direction, 1);
    EXPECT_EQ(It().current, 2); // 9 is held at 8, and goes back by 3 * (7 / 3)
    EXPECT_EQ(canvas->shown, (Frames{2}));
    EXPECT_EQ(canvas->paintedTime, 2) << "painted before it returned";
}

TEST_F(BrowsingTest, AnotherIteratorsStepKeepsThePhase) {
    Play(13, 0, 12, 1);
    It().current = 7;
    mor::ImageIterator other(0, 12);
    other.SetStep(5);
    canvas->UpdateImageIterator(other);
    EXPECT_EQ(canvas->GetTime(), 2); // 7 - 5
    Forget();
    canvas->UpdateImageIterator(other);
    EXPECT_EQ(canvas->shown, Frames{}) << "nothing moved";
}

TEST_F(BrowsingTest, BeingHeldInTheNewRangeCountsAsMoved) {
    Play(13, 0, 12, 1);
    mor::ImageIterator other(0, 12);
    other.SetRange(4, 6);
    canvas->UpdateImageIterator(other);
    EXPECT_EQ(canvas->shown, (Frames{4})) << "the range alone has moved it";
}

TEST_F(BrowsingTest, WrongIteratorsThrowAtTheFirstWrongField) {
    const auto textOf = [&](const mor::ImageIterator& other) -> std::string {
        try {
            canvas->UpdateImageIterator(other);
        } catch (const kep::InternalException& e) {
            return e.GetText();
        }
        return "no exception";
    };
    mor::ImageIterator other(0, 12);
    other.rangeFirst = 11; // above the present last, 10
    EXPECT_EQ(textOf(other), "Incorrect index given.");
    EXPECT_EQ(It().rangeFirst, 3);
    other.rangeFirst = 5;
    other.rangeLast = 13; // beyond the sequence
    EXPECT_EQ(textOf(other), "Incorrect index given.");
    EXPECT_EQ(It().rangeFirst, 5) << "the first was taken before";
    other.rangeLast = 8;
    other.step = 5; // of 4 frames
    other.nameTemplate = "none";
    other.fps = 0;
    EXPECT_EQ(textOf(other), "Incorrect step size given.");
    other.step = 2;
    EXPECT_EQ(textOf(other), "Missing the number-replacement character 'X'.");
    other.nameTemplate = "X";
    EXPECT_EQ(textOf(other), "Incorrect FPS requested.");
    EXPECT_EQ(It().nameTemplate, "X");
    EXPECT_EQ(It().fps, 1);
}

TEST_F(BrowsingTest, TheCopyIsACopy) {
    mor::ImageIterator copy = canvas->GetImageIterator();
    EXPECT_EQ(copy.rangeFirst, 3);
    EXPECT_EQ(copy.step, 4);
    copy.StepForward();
    EXPECT_EQ(canvas->GetImageIterator().current, 3);
}

TEST_F(BrowsingTest, ADetachedCanvasStopsPlaying) {
    Run(zel_CMD_BROWSE_FORWARD);
    canvas->DetachMapper();
    EXPECT_FALSE(IsPlaying());
}

TEST(BrowsingState, WholeStepsSpanTheWidestLimits) {
    constexpr int low = std::numeric_limits<int>::min();
    constexpr int high = std::numeric_limits<int>::max();
    mor::ImageIterator it(low, high);
    it.SetStep(high);
    // From -2^31 by 2^31 - 1: -1, 2^31 - 2, and no further.
    EXPECT_EQ(it.GoToLast(), high - 1);
    EXPECT_EQ(it.StepBackward(), -1);
    EXPECT_EQ(it.GoToFirst(), low);
    EXPECT_TRUE(it.moved);
}
