#include "tests/support/system_dialogs.h"
#include "tests/viewer/frame_fixture.h"

#include <wx/colordlg.h>
#include <wx/notebook.h>
#include <wx/spinctrl.h>

#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

class PreferencesCommandTest : public FrameTest {
protected:
    /// Chooses the command and drives its dialog.
    void Prefer(std::function<void(wxDialog&)> drive) {
        answers.ExpectDriven(std::move(drive));
        Choose(zel_CMD_PREFERENCES);
    }
    /// Sends what a button or spin control of the dialog sends.
    template <typename Event>
    static void Send(wxDialog& dialog, wxEventType type, int id) {
        Event event(type, id);
        dialog.ProcessWindowEvent(event);
    }
    static void SetWidthOfTimeBar(wxDialog& dialog, int width) {
        In<wxSpinCtrl>(dialog, 10038).SetValue(width);
        Send<wxSpinEvent>(dialog, wxEVT_SPINCTRL, 10038);
    }
    /// Lets the colour dialog of the time bar come and end.
    /// @param custom  what it leaves as the first custom colour
    /// @return the first custom colour that it comes with
    wxColour ChangeCustomColour(wxDialog& dialog, const wxColour& custom) {
        wxColour before;
        answers.ExpectDriven([&](wxDialog& open) {
            before = dynamic_cast<wxColourDialog&>(open).GetColourData().GetCustomColour(0);
            SetFirstCustomColour(custom);
            PressSystemButton(open, SystemButton::ok);
        });
        Send<wxCommandEvent>(dialog, wxEVT_BUTTON, 10039);
        return before;
    }

    DialogAnswers answers;
};

TEST_F(PreferencesCommandTest, OkGivesTheCanvasItsSettings) {
    Prefer([this](wxDialog& dialog) {
        EXPECT_EQ("Screen options dialog", dialog.GetTitle());
        EXPECT_EQ(frame, dialog.GetParent());
        EXPECT_EQ(canvas->GetTimeBarStyle().thickness, In<wxSpinCtrl>(dialog, 10038).GetValue());
        SetWidthOfTimeBar(dialog, 9);
        TypeInto(In<wxTextCtrl>(dialog, 10005), "5");
        EXPECT_EQ(2, canvas->GetTimeBarStyle().thickness);
        EXPECT_TRUE(canvas->calls.empty());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(9, canvas->GetTimeBarStyle().thickness);
    EXPECT_EQ((kep::Vector3d<float>(10, 5, 10)), canvas->GetBaseScale());
    EXPECT_EQ((kep::Vector3d<float>(10, 5, 10)), canvas->GetScale());
    EXPECT_EQ((Calls{"OnVis3dChange 7"}), canvas->calls);
}

TEST_F(PreferencesCommandTest, AnEmptyTextRemovesItsAnnotation) {
    Prefer([](wxDialog& dialog) {
        In<wxTextCtrl>(dialog, 10016).ChangeValue("");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ("", canvas->GetProjectionAnnotationStyle().textXZ);
    EXPECT_EQ("XY", canvas->GetProjectionAnnotationStyle().textXY);
}

TEST_F(PreferencesCommandTest, CancelChangesNothing) {
    Prefer([](wxDialog& dialog) {
        SetWidthOfTimeBar(dialog, 9);
        TypeInto(In<wxTextCtrl>(dialog, 10005), "5");
        Press(WXK_ESCAPE);
    });
    EXPECT_EQ(2, canvas->GetTimeBarStyle().thickness);
    EXPECT_EQ((kep::Vector3d<float>(10, 10, 10)), canvas->GetBaseScale());
    EXPECT_TRUE(canvas->calls.empty());
}

TEST_F(PreferencesCommandTest, CustomColoursAreKeptByOkForAllFrames) {
    const wxColour kept(1, 2, 3);
    Prefer([&](wxDialog& dialog) {
        ChangeCustomColour(dialog, kept);
        Click(In(dialog, wxID_OK));
    });
    OpenFrame* const other = MakeFrame();
    other->SetCanvas(new FrameCanvas(other));
    ASSERT_TRUE(ShowAndWait(*other));
    answers.ExpectDriven([&](wxDialog& dialog) {
        EXPECT_EQ(kept, ChangeCustomColour(dialog, wxColour(4, 5, 6)));
        EXPECT_EQ(wxColour(4, 5, 6), ChangeCustomColour(dialog, wxColour(7, 8, 9))) << "while the dialog is open";
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_TRUE(other->ProcessCommand(zel_CMD_PREFERENCES));
    other->Destroy();
    Prefer([&](wxDialog& dialog) {
        EXPECT_EQ(kept, ChangeCustomColour(dialog, wxColour(4, 5, 6))) << "the other was cancelled";
        Click(In(dialog, wxID_CANCEL));
    });
}

TEST_F(PreferencesCommandTest, ScalesThatAreNoneDoNoHarm) {
    for (const char* const text : {"0", "-1", "1e-30", "1e30", "1e300", "2"}) // 1e300 is infinite as a float
        for (const int changed : {10004, 10005, 10006}) {
            Prefer([&](wxDialog& dialog) {
                for (const int field : {10004, 10005, 10006})
                    In<wxTextCtrl>(dialog, field).SetValue(field == changed ? text : "2");
                Click(In(dialog, wxID_OK));
                EXPECT_FALSE(dialog.IsModal()) << text;
            });
            Settle();
            canvas->ZoomIn();
            canvas->NormalZoom();
            Settle();
        }
    EXPECT_EQ((kep::Vector3d<float>(2, 2, 2)), canvas->GetScale()) << "and the way back is open";
}

TEST_F(PreferencesCommandTest, EndsWithTheViewer) {
    Prefer([this](wxDialog& dialog) {
        SetWidthOfTimeBar(dialog, 9);
        delete frame;
        frame = nullptr;
        EXPECT_FALSE(dialog.IsModal());
    });
}

TEST_F(PreferencesCommandTest, EndsWithTheViewerUnderAColourDialog) {
    Prefer([this](wxDialog& dialog) {
        answers.Expect([this](wxDialog&) -> int {
            wxTheApp->CallAfter([this] {
                delete frame;
                frame = nullptr;
            });
            return wxID_NONE;
        });
        Send<wxCommandEvent>(dialog, wxEVT_BUTTON, 10039);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(nullptr, frame);
}

TEST_F(PreferencesCommandTest, ACanvasThatIsReplacedIsNotGivenTheSettingsOfAnother) {
    auto* const other = new FrameCanvas(frame);
    Prefer([&](wxDialog& dialog) {
        SetWidthOfTimeBar(dialog, 9);
        frame->SetCanvas(other);
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(2, other->GetTimeBarStyle().thickness);
}

TEST_F(PreferencesCommandTest, AFrameWithoutCanvasHasNoPreferences) {
    OpenFrame* const empty = MakeFrame();
    EXPECT_TRUE(empty->ProcessCommand(zel_CMD_PREFERENCES)); // and no dialog comes
    empty->Destroy();
}

} // namespace
