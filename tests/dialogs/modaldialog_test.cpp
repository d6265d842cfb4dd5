#include "dialogs/zel_modaldialog.h"

#include "dialogs/dlg_set_range.h"
#include "tests/support/user.h"

#include <wx/weakref.h>

using namespace zel;
using namespace zel::test;

namespace {

class ModalDialogTest : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "modal dialogs");
        panel = new wxPanel(frame);
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    /// Lets a dialog of the system open, which has no loop of the toolkit's, and acts on it.
    void ExpectBox(std::function<void(wxDialog&)> act) {
        answers.Expect([act = std::move(act)](wxDialog& box) -> int {
            wxTheApp->CallAfter([act, &box] { act(box); });
            return wxID_NONE;
        });
    }
    void DeleteFrame() {
        delete frame.get();
        EXPECT_EQ(nullptr, frame.get());
    }

    wxWeakRef<wxFrame> frame;
    wxPanel* panel = nullptr;
    DialogAnswers answers;
};

TEST_F(ModalDialogTest, GivesTheCodeThatTheDialogWasEndedWith) {
    for (wxWindow* const parent : std::initializer_list<wxWindow*>{frame, panel, nullptr}) {
        wxDialog dialog(parent, wxID_ANY, "dialog");
        for (const int code : {int{wxID_OK}, int{wxID_CANCEL}, 7}) {
            answers.ExpectDriven([code](wxDialog& open) { open.EndModal(code); });
            EXPECT_EQ(code, RunModal(dialog));
            EXPECT_EQ(parent, dialog.GetParent());
        }
    }
}

TEST_F(ModalDialogTest, OneThatNeverOpensLeavesNothingBehind) {
    {
        wxDialog dialog(frame, wxID_ANY, "dialog");
        answers.Expect([](wxDialog&) { return wxID_OK; });
        EXPECT_EQ(wxID_OK, RunModal(dialog));
    }
    Settle();
    DeleteFrame();
    Settle();
}

TEST_F(ModalDialogTest, EndsWithTheWindowThatItBelongsTo) {
    wxDialog dialog(panel, wxID_ANY, "dialog");
    answers.ExpectDriven([this](wxDialog& open) {
        panel->Destroy(); // the frame stays
        EXPECT_FALSE(open.IsModal());
        EXPECT_EQ(nullptr, open.GetParent());
    });
    EXPECT_EQ(wxID_CANCEL, RunModal(dialog));
}

TEST_F(ModalDialogTest, ALostSiblingChangesNothing) {
    auto* const sibling = new wxPanel(frame);
    auto* const child = new wxPanel(panel);
    wxDialog dialog(panel, wxID_ANY, "dialog");
    new wxButton(&dialog, wxID_OK);
    answers.ExpectDriven([&](wxDialog& open) {
        sibling->Destroy();
        child->Destroy();
        EXPECT_TRUE(open.IsModal());
        EXPECT_EQ(panel, open.GetParent());
        EXPECT_TRUE(open.DestroyChildren());
        EXPECT_TRUE(open.IsModal());
        open.EndModal(wxID_OK);
    });
    EXPECT_EQ(wxID_OK, RunModal(dialog));
}

TEST_F(ModalDialogTest, AnAcceptedColourRangeOfAClosedFrameIsCancelled) {
    kep::RGB_generic<unsigned char> min(1, 2, 3);
    kep::RGB_generic<unsigned char> max(100, 110, 120);
    SetRGBRangeDlg<unsigned char> dialog(frame, {0, 0, 0}, {255, 255, 255}, min, max);
    answers.ExpectDriven([this](wxDialog& open) {
        wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
        In(open, wxID_OK).ProcessWindowEvent(ok);
        DeleteFrame();
    });
    EXPECT_EQ(wxID_CANCEL, RunModal(dialog));
}

TEST_F(ModalDialogTest, TheCallersRangeIsNotTouchedOnceTheFrameHasGone) {
    auto range = std::make_unique<std::pair<float, float>>(0.25F, 0.5F);
    answers.ExpectDriven([&](wxDialog& open) {
        range.reset(); // as members of the frame go
        DeleteFrame();
        wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
        In(open, wxID_OK).ProcessWindowEvent(ok); // a click that was on its way
    });
    EXPECT_FALSE(GetFloatRangeFromUser(frame, 0.0F, 1.0F, range->first, range->second));
}

TEST_F(ModalDialogTest, OneUnderAnotherEndsAfterIt) {
    for (const bool safely : {true, false}) {
        wxFrame* const owner = new wxFrame(nullptr, wxID_ANY, "owner");
        owner->Show();
        wxDialog lower(owner, wxID_ANY, "lower");
        wxDialog upper(&lower, wxID_ANY, "upper");
        answers.ExpectDriven([&](wxDialog&) {
            answers.ExpectDriven([&](wxDialog&) {
                delete owner;
                Settle();
                EXPECT_TRUE(lower.IsModal());
                EXPECT_EQ(safely, !upper.IsModal()) << "the toolkit's own call knows nothing of the owner";
                if (!safely)
                    upper.EndModal(wxID_OK);
            });
            EXPECT_EQ(safely ? wxID_CANCEL : wxID_OK, safely ? RunModal(upper) : upper.ShowModal());
            EXPECT_TRUE(WaitUntil([&] { return !lower.IsModal(); }));
        });
        EXPECT_EQ(wxID_CANCEL, RunModal(lower));
    }
}

TEST_F(ModalDialogTest, MessageBoxesSayWhatTheyAreTold) {
    answers.ExpectMessage("caption", "text");
    ShowMessage("text", "caption", wxOK | wxICON_EXCLAMATION, panel);
    answers.ExpectMessage(wxMessageBoxCaptionStr, "plain");
    ShowMessage("plain");
}

TEST_F(ModalDialogTest, AMessageBoxEndsWithTheFrameThatItCameOver) {
    for (wxWindow* const parent : std::initializer_list<wxWindow*>{panel, nullptr}) {
        wxWeakRef<wxFrame> owner(new wxFrame(nullptr, wxID_ANY, "owner"));
        ASSERT_TRUE(ShowAndWait(*owner));
        bool closed = false;
        ExpectBox([&](wxDialog& box) {
            closed = true;
            if (parent != nullptr) {
                EXPECT_EQ(frame.get(), wxGetTopLevelParent(box.GetParent()));
                DeleteFrame();
            } else if (wxWindow* const above = box.GetParent()) {
                delete above; // the active window
            }
            if (owner)
                delete owner.get();
        });
        ShowMessage("text", "caption", wxOK | wxCENTRE, parent);
        EXPECT_TRUE(closed);
        if (owner)
            owner->Destroy();
        Pump();
    }
}

} // namespace
