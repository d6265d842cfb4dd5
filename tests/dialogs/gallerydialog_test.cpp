#include "dialogs/dlg_gallery.h"

#include "tests/dialogs/control_list.h"
#include "tests/dialogs/export_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

const std::string badInput = "'Starting slice' must be less or equal to 'Ending slice'";

class GalleryDialogTest : public ExportFixture {
protected:
    int Run(wxDialog& dialog, std::function<void(wxDialog&)> drive) {
        answers.ExpectDriven(std::move(drive));
        return RunModal(dialog);
    }
    static void SetSlices(wxDialog& dialog, int first, int last) {
        In<wxSpinCtrl>(dialog, 10018).SetValue(first);
        In<wxSpinCtrl>(dialog, 10019).SetValue(last);
    }
};

TEST_F(GalleryDialogTest, Controls) {
    const GalleryDialog dialog(frame, 10);
    EXPECT_EQ("Gallery parameters", dialog.GetTitle());
    EXPECT_EQ(wxDEFAULT_DIALOG_STYLE, dialog.GetWindowStyle() & ~wxTAB_TRAVERSAL) << "which the toolkit adds";
    std::vector<std::string> expected{"box Cut parameters",
                                      "10016 Slice count: 10",
                                      "10017 Starting slice:",
                                      "10018 spin 0 to 9, 0",
                                      "10017 Ending slice:",
                                      "10019 spin 0 to 9, 0",
                                      "10017 Step:",
                                      "10020 spin 0 to 9, 1",
                                      "box Gallery parameters",
                                      "10017 Fixed number of:",
                                      "10021 radio button Rows",
                                      "10022 radio button Colums",
                                      "10017 Row/Column count:",
                                      "10023 spin 0 to 100, 1",
                                      "10017 Spacing between images:",
                                      "10024 spin 0 to 100, 10"};
    expected.insert(expected.end(), sequenceControls.begin(), sequenceControls.end());
    EXPECT_EQ(expected, ListControls(dialog));
    EXPECT_TRUE(In<wxRadioButton>(dialog, 10021).GetValue());
    EXPECT_TRUE(In<wxRadioButton>(dialog, 10011).GetValue()) << "a group of its own";
}

TEST_F(GalleryDialogTest, OneSliceLeavesNoStep) {
    const GalleryDialog dialog(frame, 1);
    const auto controls = ListControls(dialog);
    EXPECT_EQ("10016 Slice count: 1", controls[1]);
    EXPECT_EQ("10018 spin 0 to 0, 0", controls[3]);
    EXPECT_EQ("10019 spin 0 to 0, 0", controls[5]);
    EXPECT_EQ("10020 spin 0 to 0, 0", controls[7]);
    EXPECT_EQ(0, dialog.GetParams().step);
}

TEST_F(GalleryDialogTest, MoreSlicesThanTheLayoutHas) {
    const GalleryDialog dialog(frame, 2000);
    EXPECT_EQ("10019 spin 0 to 1999, 0", ListControls(dialog)[5]);
}

TEST_F(GalleryDialogTest, TheControlsHoldWhatIsChosen) {
    GalleryDialog dialog(frame, 10);
    const ExportSequenceDialog panel(&dialog, canvas);
    const int code = Run(dialog, [](wxDialog& open) {
        const int numbers[][2] = {{10018, 2}, {10019, 8}, {10020, 3}, {10023, 4}, {10024, 0}};
        for (const auto& [id, number] : numbers) {
            Focus(In(open, id));
            Press('A', wxMOD_CONTROL);
            Type(std::to_string(number));
        }
        Click(In(open, 10022));
        EXPECT_TRUE(In<wxRadioButton>(open, 10011).GetValue());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    const GalleryParams params = dialog.GetParams();
    EXPECT_EQ(2, params.first);
    EXPECT_EQ(8, params.last);
    EXPECT_EQ(3, params.step);
    EXPECT_FALSE(params.byRows);
    EXPECT_EQ(4, params.count);
    EXPECT_EQ(0, params.spacing);
}

TEST_F(GalleryDialogTest, AloneItAsksForSlicesInOrder) {
    GalleryDialog dialog(frame, 10);
    answers.ExpectDriven([](wxDialog& open) {
        SetSlices(open, 5, 4);
        Click(In(open, wxID_OK));
        EXPECT_TRUE(open.IsModal());
        SetSlices(open, 5, 5); // a gallery of one picture
        Click(In(open, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !open.IsModal(); }));
    });
    answers.Expect([&](wxDialog& open) -> int {
        const auto& box = dynamic_cast<wxMessageDialog&>(open);
        EXPECT_EQ("Bad input", box.GetTitle());
        EXPECT_EQ(badInput, box.GetMessage());
        EXPECT_EQ(wxICON_EXCLAMATION, box.GetMessageDialogStyle() & wxICON_MASK);
        EXPECT_EQ(&dialog, box.GetParent());
        return wxID_OK;
    });
    EXPECT_EQ(wxID_OK, RunModal(dialog));
    EXPECT_EQ(5, dialog.GetParams().first);
}

TEST_F(GalleryDialogTest, AnAttachedPanelEndsItWithoutThatCheck) {
    GalleryDialog dialog(frame, 10);
    const ExportSequenceDialog panel(&dialog, canvas);
    const int code = Run(dialog, [](wxDialog& open) {
        SetSlices(open, 5, 4);
        Click(In(open, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !open.IsModal(); }));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(5, dialog.GetParams().first);
    EXPECT_EQ(4, dialog.GetParams().last);
}

TEST_F(GalleryDialogTest, AStepOfZeroIsNotRefused) {
    GalleryDialog dialog(frame, 10);
    const int code = Run(dialog, [](wxDialog& open) {
        In<wxSpinCtrl>(open, 10020).SetValue(0);
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(0, dialog.GetParams().step);
}

TEST_F(GalleryDialogTest, ASingleImageLeavesTheGalleryToChoose) {
    GalleryDialog dialog(frame, 10);
    const ExportSequenceDialog panel(&dialog, canvas);
    Run(dialog, [](wxDialog& open) {
        Click(In(open, 10003));
        EXPECT_FALSE(In(open, 10005).IsEnabled());
        for (const int id : {10018, 10019, 10020, 10021, 10022, 10023, 10024})
            EXPECT_TRUE(In(open, id).IsEnabled()) << id;
        Click(In(open, wxID_CANCEL));
    });
}

TEST_F(GalleryDialogTest, EndsWithTheViewer) {
    GalleryDialog dialog(frame, 10);
    const ExportSequenceDialog panel(&dialog, canvas);
    EXPECT_EQ(wxID_CANCEL, Run(dialog, [this](wxDialog& open) {
                  DeleteFrame();
                  EXPECT_FALSE(open.IsModal());
              }));
}

TEST_F(GalleryDialogTest, AViewerThatGoesUnderTheMessageEndsBoth) {
    GalleryDialog dialog(frame, 10);
    answers.ExpectDriven([](wxDialog& open) {
        SetSlices(open, 5, 4);
        Click(In(open, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !open.IsModal(); }));
    });
    answers.Expect([this](wxDialog&) -> int {
        wxTheApp->CallAfter([this] { DeleteFrame(); });
        return wxID_NONE;
    });
    EXPECT_EQ(wxID_CANCEL, RunModal(dialog));
}

} // namespace
