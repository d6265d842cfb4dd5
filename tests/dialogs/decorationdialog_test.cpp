#include "dialogs/dlg_decoration.h"

#include "tests/dialogs/control_list.h"
#include "tests/dialogs/export_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

class DecorationDialogTest : public ExportFixture {
protected:
    /// Runs the dialog with the panel attached, as the viewer does. @return the code that it ends with
    int Run(std::function<void(wxDialog&)> drive) {
        DecorationDialog dialog(frame, &border);
        const ExportSequenceDialog panel(&dialog, canvas);
        answers.ExpectDriven(std::move(drive));
        const int code = RunModal(dialog);
        if (code == wxID_OK) {
            EXPECT_TRUE(dialog.TransferDataFromWindow());
            projections = dialog.GetProjections();
        }
        return code;
    }

    long border = 10;
    zel_ProjectionType projections{};
};

TEST_F(DecorationDialogTest, Controls) {
    const DecorationDialog dialog(frame, &border);
    EXPECT_EQ("Save view", dialog.GetTitle());
    EXPECT_EQ(wxDEFAULT_DIALOG_STYLE, dialog.GetWindowStyle() & ~wxTAB_TRAVERSAL) << "which the toolkit adds";
    std::vector<std::string> expected{"10000 radio box Choose projection [XY           |XZ|YZ     |All] 2 columns, All",
                                      "box View parameters", "10001 Border width (px):  ", "10002 spin 0 to 99, 10"};
    expected.insert(expected.end(), sequenceControls.begin(), sequenceControls.end());
    EXPECT_EQ(expected, ListControls(dialog));
}

TEST_F(DecorationDialogTest, OpensWithAllProjectionsAndTheBorderGiven) {
    for (const long given : {10L, 0L, 37L}) {
        border = given;
        const int code = Run([given](wxDialog& dialog) {
            EXPECT_EQ(given, In<wxSpinCtrl>(dialog, 10002).GetValue());
            EXPECT_EQ("All", In<wxRadioBox>(dialog, 10000).GetStringSelection());
            Click(In(dialog, wxID_OK));
        });
        EXPECT_EQ(wxID_OK, code);
        EXPECT_EQ(given, border);
        EXPECT_EQ(zel_PT_ALL, projections);
    }
}

TEST_F(DecorationDialogTest, EachChoiceHasItsBit) {
    DecorationDialog dialog(frame, &border);
    auto& box = In<wxRadioBox>(dialog, 10000);
    for (const int mask : {1, 2, 4, 7}) {
        box.SetSelection(mask == 1 ? 0 : mask == 2 ? 1 : mask == 4 ? 2 : 3);
        EXPECT_EQ(mask, int{dialog.GetProjections()});
    }
}

TEST_F(DecorationDialogTest, WhatTheUserChoosesIsTaken) {
    const int code = Run([](wxDialog& dialog) {
        Focus(In(dialog, 10002));
        Press('A', wxMOD_CONTROL);
        Type("25");
        ClickChoice(In<wxRadioBox>(dialog, 10000), 1);
        EXPECT_EQ("XZ", In<wxRadioBox>(dialog, 10000).GetStringSelection());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(25, border);
    EXPECT_EQ(zel_PT_XZ, projections);
}

TEST_F(DecorationDialogTest, ABorderTypedBeforeEnterCounts) {
    const int code = Run([](wxDialog& dialog) {
        Focus(In(dialog, 10002));
        Press('A', wxMOD_CONTROL);
        Type("3");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(3, border);
}

TEST_F(DecorationDialogTest, WhatIsNoNumberIsTheControlsToMend) {
    const int code = Run([](wxDialog& dialog) {
        auto& spin = In<wxSpinCtrl>(dialog, 10002);
        Focus(spin);
        Press('A', wxMOD_CONTROL);
        Type("250");
        Focus(In(dialog, 10015));
        EXPECT_EQ(99, spin.GetValue()) << "and no message comes";
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(99, border);
}

TEST_F(DecorationDialogTest, CancelLeavesTheBorder) {
    const int code = Run([](wxDialog& dialog) {
        In<wxSpinCtrl>(dialog, 10002).SetValue(50);
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(wxID_CANCEL, code);
    EXPECT_EQ(10, border);
}

TEST_F(DecorationDialogTest, TheSequenceParametersAreThoseOfThePanel) {
    const auto drive = [](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10015), "no");
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(dialog.IsModal());
        Click(In(dialog, 10003));
        EXPECT_FALSE(In(dialog, 10015).IsEnabled());
        EXPECT_TRUE(In(dialog, 10002).IsEnabled());
        Click(In(dialog, wxID_OK));
    };
    DecorationDialog dialog(frame, &border);
    const ExportSequenceDialog panel(&dialog, canvas);
    answers.ExpectDriven(drive);
    answers.Expect([](wxDialog&) { return wxID_NO; });
    EXPECT_EQ(wxID_OK, RunModal(dialog));
}

TEST_F(DecorationDialogTest, EndsWithTheViewer) {
    EXPECT_EQ(wxID_CANCEL, Run([this](wxDialog& dialog) {
                  Focus(In(dialog, 10002));
                  DeleteFrame();
                  EXPECT_FALSE(dialog.IsModal());
              }));
    EXPECT_EQ(10, border);
}

} // namespace
