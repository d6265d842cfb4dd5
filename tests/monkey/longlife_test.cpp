// The same again and again: a program that runs for weeks may hold no more of anything each time. A short form here;
// ZEL_LONG=1 asks for the long one.

#include "core/kepcore/kep_exceptions.h"
#include "tests/monkey/hands.h"
#include "tests/monkey/monkey.h"
#include "tests/monkey/resources.h"
#include "viewer/zel_commands.h"
#include "volume/vol3D_frame.h"

#include <wx/menu.h>
#include <wx/stopwatch.h>

#include <cstdlib>
#include <iostream>

using namespace zel;
using namespace zel::test;

namespace {

bool IsLong() {
    const char* const wish = std::getenv("ZEL_LONG");
    return wish != nullptr && std::string(wish) != "0";
}

int Times(int shortly, int atLength) {
    return IsLong() ? atLength : shortly;
}

/// Cancels each dialog once it is on the screen.
class CancelDialogs : public wxModalDialogHook {
public:
    CancelDialogs() { Register(); }
    ~CancelDialogs() override { Unregister(); }
    CancelDialogs(const CancelDialogs&) = delete;
    CancelDialogs& operator=(const CancelDialogs&) = delete;

    int seen = 0;

protected:
    int Enter(wxDialog* dialog) override {
        ++seen;
        if (!IsOfTheLibrary(*dialog))
            return wxID_CANCEL;
        const wxWeakRef<wxDialog> self(dialog);
        wxTheApp->CallAfter([self] {
            WaitUntil([&self] { return !self || (self->IsModal() && self->IsShownOnScreen()); });
            if (self && self->IsModal())
                self->EndModal(wxID_CANCEL);
        });
        return wxID_NONE;
    }
    void Exit(wxDialog*) override {}

private:
    static bool IsOfTheLibrary(const wxDialog& dialog) {
        return dialog.GetClassInfo() == wxCLASSINFO(wxDialog) || dialog.FindWindow(wxID_OK) != nullptr;
    }
};

class LongLife : public GuiTest {
protected:
    std::unique_ptr<AnyViewer> Open(Dice& dice, int mostFrames = 3) {
        auto viewer = OpenAnyViewer(dice, nullptr, [] {}, {mostFrames, true});
        EXPECT_TRUE(WaitUntil([&] { return viewer->frame->IsShownOnScreen(); }));
        Pump();
        return viewer;
    }
    static void Close(AnyViewer& viewer) {
        viewer.Destroy();
        Pump();
    }

    const LogCatcher quiet;
};

/// All commands of a viewer's menus.
std::vector<int> CommandsOf(const wxMenu& menu) {
    std::vector<int> ids;
    for (const wxMenuItem* const item : menu.GetMenuItems())
        if (item->IsSubMenu())
            for (const int id : CommandsOf(*item->GetSubMenu()))
                ids.push_back(id);
        else if (!item->IsSeparator())
            ids.push_back(item->GetId());
    return ids;
}

std::vector<int> CommandsOf(const wxFrame& frame) {
    std::vector<int> ids;
    for (std::size_t i = 0; i < frame.GetMenuBar()->GetMenuCount(); ++i)
        for (const int id : CommandsOf(*frame.GetMenuBar()->GetMenu(i)))
            ids.push_back(id);
    return ids;
}

} // namespace

TEST_F(LongLife, OfFramesThatOpenAndClose) {
    Course course;
    for (int i = 0; i < Times(60, 1000); ++i) {
        Dice dice(static_cast<unsigned>(i % 12)); // the same dozen of kinds again and again
        const auto viewer = Open(dice);
        if (i % 3 == 0) {
            viewer->GetCanvas()->InfoFrame_Show(true);
            Pump();
        }
        Close(*viewer);
        course.Note();
    }
    course.ExpectFlat("a frame that opens and closes", 400);
}

TEST_F(LongLife, OfVolumeWindows) {
    Dice dice(3);
    const auto viewer = Open(dice);
    Course course;
    for (int i = 0; i < Times(15, 100); ++i) {
        viewer->frame->ProcessCommand(zel_CMD_VOLUME);
        vol3D_VolVisFrame* const volume = viewer->GetCanvas()->GetVolVisFrame();
        ASSERT_NE(volume, nullptr);
        volume->SetClientSize(60, 60);
        PumpFor(50);
        volume->Close(true);
        Pump();
        ASSERT_EQ(viewer->GetCanvas()->GetVolVisFrame(), nullptr);
        course.Note();
    }
    course.ExpectFlat("a volume window that opens and closes", 4000);
    Close(*viewer);
}

TEST_F(LongLife, OfEachDialog) {
    const CancelDialogs cancelled;
    const std::vector<unsigned> kinds = IsLong() ? std::vector{1U, 2U, 5U} : std::vector{2U};
    for (const unsigned kind : kinds) {
        Dice dice(kind);
        const auto viewer = Open(dice);
        for (const int id : CommandsOf(*viewer->frame)) {
            if (id == zel_CMD_VOLUME || id == wxID_CLOSE || id == wxID_EXIT)
                continue;
            const int before = cancelled.seen;
            viewer->frame->ProcessCommand(id);
            Pump();
            ASSERT_TRUE(viewer->frame) << id;
            if (cancelled.seen == before)
                continue; // it opens none
            Course course;
            for (int i = 0; i < Times(15, 300); ++i) {
                viewer->frame->ProcessCommand(id);
                Pump();
                course.Note();
            }
            course.ExpectFlat("the dialog of \"" +
                                  viewer->frame->GetMenuBar()->FindItem(id)->GetItemLabelText().utf8_string() +
                                  "\" of " + viewer->name,
                              6000);
        }
        Close(*viewer);
    }
}

TEST_F(LongLife, OfTimeSteps) {
    const std::vector<unsigned> kinds = IsLong() ? std::vector{1U, 2U, 3U, 4U} : std::vector{1U, 3U};
    for (const unsigned kind : kinds) {
        Dice dice(kind);
        const auto viewer = Open(dice, 6);
        while (viewer->GetCanvas()->GetImageCount() < 3)
            viewer->InsertFrame(dice);
        viewer->frame->ProcessCommand(zel_CMD_LOOP_MODE);
        Course course;
        for (int i = 0; i < Times(150, 2500); ++i) {
            viewer->GetCanvas()->GoToFrame(i % 3);
            Pump();
            course.Note();
        }
        course.ExpectFlat("a time step of " + viewer->name, 40);
        Close(*viewer);
    }
}

TEST_F(LongLife, OfAMonkeyThatBrowses) {
    const char* const wish = std::getenv("ZEL_LONG_MINUTES");
    const double minutes = IsLong() ? (wish != nullptr ? std::atof(wish) : 60.0) : 0.1;
    MonkeyRun run;
    run.seed = 11;
    run.browsesOnly = true;
    Monkey monkey(run);
    Course course;
    const wxStopWatch watch;
    int commands = 0;
    while (static_cast<double>(watch.Time()) < minutes * 60'000 && !HasFailure()) {
        monkey.Step();
        if (++commands % 10 == 0)
            course.Note();
    }
    if (HasFailure())
        std::cout << monkey.GetBlackBox().Tell();
    std::cout << commands << " commands\n";
    course.ExpectFlat("ten commands of a monkey that browses", 3000);
}
