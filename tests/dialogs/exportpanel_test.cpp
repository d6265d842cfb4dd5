#include "tests/dialogs/control_list.h"
#include "tests/dialogs/export_fixture.h"

#include "core/kepcore/kep_exceptions.h"

using namespace zel;
using namespace zel::test;

namespace {

const std::string strangeTemplate = "Strange teplate name";
const std::string noX = "The template name does not include a number-replacement character 'X'.\n\nContinue with the "
                        "previous template name instead?";
const std::string strangeFPS = "Strange FPS";
const std::string notPositive =
    "The FPS value must not be zero or negative.\n\nContinue with the previous value of the "
    "FPS instead?";
const std::string noNumber = "Unable to read the FPS which should be a positive integer number.\n\nContinue with the "
                             "previous value of the FPS instead?";

class ExportPanelTest : public ExportFixture {
protected:
    using Drive = std::function<void(wxDialog&, ExportSequenceDialog&)>;
    struct Question {
        std::string caption;
        std::string text;
        int answer;
    };

    /// Runs the plain dialog. @return the code that it ends with
    int Run(const Drive& drive, const std::vector<Question>& questions = {}) {
        Save3dDataDialog dialog(frame);
        ExportSequenceDialog panel(&dialog, canvas);
        answers.ExpectDriven([&](wxDialog& open) { drive(open, panel); });
        for (const Question& question : questions)
            answers.ExpectMessage(question.caption, question.text, question.answer);
        return RunModal(dialog);
    }
    static std::string Label(const wxDialog& dialog) { return In(dialog, 10014).GetLabel().utf8_string(); }
    static std::string Text(const wxDialog& dialog) { return In<wxTextCtrl>(dialog, 10015).GetValue().utf8_string(); }
    /// The id of the output format that is selected.
    static int Format(const wxDialog& dialog) {
        for (const int id : {10011, 10012, 10013})
            if (In<wxRadioButton>(dialog, id).GetValue())
                return id;
        return 0;
    }
    static bool IsEnabled(const wxDialog& dialog) {
        int enabled = 0;
        for (const int id : {10005, 10007, 10009, 10011, 10012, 10013, 10014, 10015})
            enabled += In(dialog, id).IsEnabled() ? 1 : 0;
        EXPECT_TRUE(enabled == 0 || enabled == 8) << enabled;
        return enabled == 8;
    }
    static void Cancel(wxDialog& dialog) { Click(In(dialog, wxID_CANCEL)); }
};

TEST_F(ExportPanelTest, ControlsOfThePlainDialog) {
    Save3dDataDialog dialog(frame);
    EXPECT_EQ("Save 3D image data as...", dialog.GetTitle());
    EXPECT_EQ(wxDEFAULT_DIALOG_STYLE, dialog.GetWindowStyle() & ~wxTAB_TRAVERSAL) << "which the toolkit adds";
    EXPECT_EQ(sequenceControls, ListControls(dialog));
    EXPECT_EQ("Should only a single frame/time-point be exported?", In(dialog, 10003).GetToolTipText());
    EXPECT_FALSE(In<wxCheckBox>(dialog, 10003).GetValue());
    EXPECT_EQ(10011, Format(dialog));
}

TEST_F(ExportPanelTest, ThePanelIsNotSeen) {
    Save3dDataDialog dialog(frame);
    const wxSize before = dialog.GetBestSize();
    const ExportSequenceDialog panel(&dialog, canvas);
    EXPECT_EQ(&dialog, panel.GetParent());
    EXPECT_EQ(wxTAB_TRAVERSAL | wxNO_BORDER, panel.GetWindowStyle());
    EXPECT_FALSE(panel.IsShown());
    EXPECT_EQ(nullptr, panel.GetContainingSizer());
    EXPECT_EQ(before, dialog.GetBestSize());
}

TEST_F(ExportPanelTest, ControlsStartFromTheStateOfBrowsing) {
    mor::ImageIterator& iterator = canvas->m_iterator;
    iterator.SetRange(2, 7);
    iterator.SetStep(3);
    iterator.SetFPS(25);
    iterator.SetNameTemplate("caf\xC3\xA9XX.tif");
    Run([&](wxDialog& dialog, ExportSequenceDialog& panel) {
        std::vector<std::string> expected = sequenceControls;
        expected[3] = "10005 spin 0 to 9, 2";
        expected[5] = "10007 spin 0 to 9, 7";
        expected[7] = "10009 spin 1 to 6, 3"; // frames 2 to 7 are 6
        std::vector<std::string> controls = ListControls(dialog);
        ASSERT_EQ(expected.size() + 1, controls.size());
        controls.pop_back(); // the panel
        EXPECT_EQ(expected, controls);
        EXPECT_EQ("caf\xC3\xA9XX.tif", Text(dialog));
        EXPECT_FALSE(panel.IsSingleImage());
        EXPECT_TRUE(panel.IsImageSequence());
        EXPECT_EQ(25, panel.GetIterator().fps);
        EXPECT_TRUE(IsEnabled(dialog));
        Click(In(dialog, 10012));
        EXPECT_EQ("25", Text(dialog));
        Cancel(dialog);
    });
    EXPECT_EQ((std::vector<int>{}), canvas->shown);
}

TEST_F(ExportPanelTest, ASingleFrameIsTheOnlyOneToChoose) {
    canvas->Play(1);
    Save3dDataDialog dialog(frame);
    const ExportSequenceDialog panel(&dialog, canvas);
    const auto controls = ListControls(dialog);
    EXPECT_EQ("10005 spin 0 to 0, 0", controls[3]);
    EXPECT_EQ("10007 spin 0 to 0, 0", controls[5]);
    EXPECT_EQ("10009 spin 1 to 1, 1", controls[7]);
}

TEST_F(ExportPanelTest, TheDefaultTemplateIsAccepted) {
    EXPECT_EQ(wxID_OK, Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
                  EXPECT_EQ("imageXXX.tif", Text(dialog));
                  EXPECT_TRUE(panel.CheckTemplate());
                  Click(In(dialog, wxID_OK));
              }));
}

TEST_F(ExportPanelTest, ATemplateWithoutAnXAsks) {
    const auto drive = [](wxDialog& dialog, ExportSequenceDialog& panel) {
        TypeInto(In<wxTextCtrl>(dialog, 10015), "aXb.ics");
        EXPECT_TRUE(panel.CheckTemplate());
        TypeInto(In<wxTextCtrl>(dialog, 10015), "imagexxx.tif"); // small ones are none
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(dialog.IsModal());
        EXPECT_EQ("imagexxx.tif", Text(dialog));
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
        EXPECT_EQ("imagexxx.tif", Text(dialog));
        panel.ApplyToIterator();
        EXPECT_EQ("aXb.ics", panel.GetIterator().nameTemplate);
    };
    EXPECT_EQ(wxID_OK, Run(drive, {{strangeTemplate, noX, wxID_NO}, {strangeTemplate, noX, wxID_YES}}));
}

TEST_F(ExportPanelTest, TheQuestionHasTwoButtonsAndAWarningSign) {
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    ASSERT_TRUE(ShowAndWait(dialog));
    In<wxTextCtrl>(dialog, 10015).ChangeValue("no");
    for (const bool speed : {false, true}) {
        answers.Expect([&](wxDialog& open) -> int {
            const auto& box = dynamic_cast<wxMessageDialog&>(open);
            EXPECT_EQ(wxYES_NO | wxICON_EXCLAMATION | wxCENTRE, box.GetMessageDialogStyle());
            EXPECT_EQ(&dialog, box.GetParent());
            return wxID_YES;
        });
        EXPECT_TRUE(speed ? panel.CheckFPS() : panel.CheckTemplate());
    }
}

TEST_F(ExportPanelTest, OtherFormatsAskForTheSpeed) {
    const int code = Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
        TypeInto(In<wxTextCtrl>(dialog, 10015), "tX.tif");
        Click(In(dialog, 10012));
        EXPECT_EQ("FPS:", Label(dialog));
        EXPECT_EQ("1", Text(dialog));
        TypeInto(In<wxTextCtrl>(dialog, 10015), "25");
        Click(In(dialog, 10013)); // the field keeps its meaning, and what stands there is not looked at
        EXPECT_EQ("FPS:", Label(dialog));
        EXPECT_EQ("25", Text(dialog));
        EXPECT_EQ(10013, Format(dialog));
        Click(In(dialog, 10011));
        EXPECT_EQ("Name template:", Label(dialog));
        EXPECT_EQ("tX.tif", Text(dialog));
        EXPECT_EQ(10011, Format(dialog));
        Click(In(dialog, 10013));
        EXPECT_EQ("25", Text(dialog));
        EXPECT_FALSE(panel.IsImageSequence());
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
        panel.ApplyToIterator();
        EXPECT_EQ(25, panel.GetIterator().fps);
        EXPECT_EQ("imageXXX.tif", panel.GetIterator().nameTemplate) << "which counts for image sequences only";
    });
    EXPECT_EQ(wxID_OK, code);
}

TEST_F(ExportPanelTest, NoGoesBackToTheImageSequence) {
    for (const int pressed : {10012, 10013}) {
        const auto drive = [pressed](wxDialog& dialog, ExportSequenceDialog&) {
            TypeInto(In<wxTextCtrl>(dialog, 10015), "image.tif");
            Click(In(dialog, pressed));
            EXPECT_EQ(10011, Format(dialog));
            EXPECT_EQ("Name template:", Label(dialog));
            EXPECT_EQ("image.tif", Text(dialog));
            Click(In(dialog, pressed));
            EXPECT_EQ(pressed, Format(dialog)) << "after Yes";
            EXPECT_EQ("1", Text(dialog));
            Click(In(dialog, 10011));
            EXPECT_EQ("imageXXX.tif", Text(dialog)) << "the last accepted one";
            Cancel(dialog);
        };
        Run(drive, {{strangeTemplate, noX, wxID_NO}, {strangeTemplate, noX, wxID_YES}});
    }
}

TEST_F(ExportPanelTest, NoGoesBackToTheFormatBefore) {
    for (const int before : {10012, 10013}) {
        const auto drive = [before](wxDialog& dialog, ExportSequenceDialog&) {
            Click(In(dialog, before));
            TypeInto(In<wxTextCtrl>(dialog, 10015), "0");
            Click(In(dialog, 10011));
            EXPECT_EQ(before, Format(dialog));
            EXPECT_EQ("FPS:", Label(dialog));
            EXPECT_EQ("0", Text(dialog));
            Click(In(dialog, 10011));
            EXPECT_EQ(10011, Format(dialog)) << "after Yes";
            EXPECT_EQ("Name template:", Label(dialog));
            EXPECT_EQ("imageXXX.tif", Text(dialog));
            Cancel(dialog);
        };
        Run(drive, {{strangeFPS, notPositive, wxID_NO}, {strangeFPS, notPositive, wxID_YES}});
    }
}

TEST_F(ExportPanelTest, APressOfTheSelectedSequenceDoesNothing) {
    Run([](wxDialog& dialog, ExportSequenceDialog&) {
        TypeInto(In<wxTextCtrl>(dialog, 10015), "no");
        Send(dialog, wxEVT_RADIOBUTTON, 10011);
        EXPECT_EQ("no", Text(dialog));
        EXPECT_EQ("Name template:", Label(dialog));
        Cancel(dialog);
    });
}

TEST_F(ExportPanelTest, TheSpeedIsAPositiveNumber) {
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    auto& field = In<wxTextCtrl>(dialog, 10015);
    for (const char* const text : {"1", "25", "2147483647", " 7"}) {
        field.ChangeValue(text);
        EXPECT_TRUE(panel.CheckFPS()) << text;
    }
    const std::vector<std::pair<std::string, std::string>> refused = {{"0", notPositive},
                                                                      {"-1", notPositive},
                                                                      {"-2147483648", notPositive},
                                                                      {"abc", noNumber},
                                                                      {"", noNumber},
                                                                      {"2.5", noNumber},
                                                                      {"1e3", noNumber},
                                                                      {"3 fps", noNumber},
                                                                      {"2147483648", noNumber},     // above int
                                                                      {"-2147483649", notPositive}, // below it
                                                                      {"99999999999999999999", noNumber}};
    for (const auto& [text, message] : refused)
        for (const int answer : {wxID_YES, wxID_NO}) {
            field.ChangeValue(text);
            answers.ExpectMessage(strangeFPS, message, answer);
            EXPECT_EQ(answer == wxID_YES, panel.CheckFPS()) << text;
            EXPECT_EQ(text, field.GetValue().utf8_string());
        }
    field.ChangeValue("X");
    Send(dialog, wxEVT_RADIOBUTTON, 10012);
    EXPECT_EQ("7", field.GetValue()) << "the last accepted one";
}

TEST_F(ExportPanelTest, ASingleImageNeedsNoParameters) {
    const int code = Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
        TypeInto(In<wxTextCtrl>(dialog, 10015), "no");
        Click(In(dialog, 10003));
        EXPECT_TRUE(panel.IsSingleImage());
        EXPECT_FALSE(IsEnabled(dialog));
        for (const int id : {10003, 10004, 10006, 10008, 10010, 5100, 5101})
            EXPECT_TRUE(In(dialog, id).IsEnabled()) << id;
        Click(In(dialog, 10003));
        EXPECT_FALSE(panel.IsSingleImage());
        EXPECT_TRUE(IsEnabled(dialog));
        Click(In(dialog, 10003));
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
}

TEST_F(ExportPanelTest, TheStateOfTheBoxOutlivesTheDialog) {
    Run([](wxDialog& dialog, ExportSequenceDialog&) {
        Click(In(dialog, 10003));
        Cancel(dialog);
    });
    Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
        EXPECT_FALSE(panel.IsSingleImage());
        EXPECT_TRUE(IsEnabled(dialog));
        Click(In(dialog, 10003));
        EXPECT_TRUE(panel.IsSingleImage());
        EXPECT_TRUE(IsEnabled(dialog)) << "the box is as it was when the first dialog ended";
        Click(In(dialog, 10003));
        EXPECT_TRUE(IsEnabled(dialog));
        Click(In(dialog, 10003));
        EXPECT_FALSE(IsEnabled(dialog));
        Cancel(dialog);
    });
}

TEST_F(ExportPanelTest, TheFormatOutlivesTheDialog) {
    Run([](wxDialog& dialog, ExportSequenceDialog&) {
        Click(In(dialog, 10012));
        Cancel(dialog);
    });
    const auto drive = [](wxDialog& dialog, ExportSequenceDialog&) {
        EXPECT_EQ(10011, Format(dialog));
        EXPECT_EQ("Name template:", Label(dialog));
        EXPECT_EQ("imageXXX.tif", Text(dialog));
        Click(In(dialog, 10013)); // as if the field meant the speed already
        EXPECT_EQ("Name template:", Label(dialog));
        EXPECT_EQ("imageXXX.tif", Text(dialog));
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(dialog.IsModal());
        Click(In(dialog, 10011));
        EXPECT_EQ(10013, Format(dialog)) << "the one pressed last";
        TypeInto(In<wxTextCtrl>(dialog, 10015), "12");
        Click(In(dialog, 10011));
        EXPECT_EQ("imageXXX.tif", Text(dialog));
        Click(In(dialog, 10012));
        EXPECT_EQ("12", Text(dialog));
        Cancel(dialog);
    };
    Run(drive, {{strangeFPS, noNumber, wxID_NO}, {strangeFPS, noNumber, wxID_NO}});
}

TEST_F(ExportPanelTest, TheValuesGoIntoThePrivateIteratorAlone) {
    const int code = Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
        In<wxTextCtrl>(dialog, 10015).ChangeValue(wxString::FromUTF8("t\xC3\xA9XX.ics"));
        In<wxSpinCtrl>(dialog, 10005).SetValue(2);
        In<wxSpinCtrl>(dialog, 10007).SetValue(8);
        In<wxSpinCtrl>(dialog, 10009).SetValue(3);
        Click(In(dialog, wxID_OK));
        EXPECT_EQ(0, panel.GetIterator().rangeFirst);
        panel.ApplyToIterator();
        EXPECT_EQ(2, panel.GetIterator().rangeFirst);
        EXPECT_EQ(8, panel.GetIterator().rangeLast);
        EXPECT_EQ(3, panel.GetIterator().step);
        EXPECT_EQ("t\xC3\xA9XX.ics", panel.GetIterator().nameTemplate);
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(0, canvas->m_iterator.rangeFirst);
    EXPECT_EQ(9, canvas->m_iterator.rangeLast);
    EXPECT_EQ("imageXXX.tif", canvas->m_iterator.nameTemplate);
}

TEST_F(ExportPanelTest, WhatTheIteratorRefusesIsThrown) {
    canvas->m_iterator.SetRange(0, 4);
    struct Case {
        int first, last, step;
        std::string text;
    };
    const Case cases[] = {{3, 2, 1, "Incorrect index given."},
                          {6, 8, 1, "Incorrect index given."}, // the first is above the last of before
                          {2, 3, 5, "Incorrect step size given."}};
    for (const Case& refused : cases) {
        Save3dDataDialog dialog(frame);
        ExportSequenceDialog panel(&dialog, canvas);
        In<wxSpinCtrl>(dialog, 10005).SetValue(refused.first);
        In<wxSpinCtrl>(dialog, 10007).SetValue(refused.last);
        In<wxSpinCtrl>(dialog, 10009).SetValue(refused.step);
        try {
            panel.ApplyToIterator();
            ADD_FAILURE() << refused.first << " to " << refused.last;
        } catch (const kep::InternalException& e) {
            EXPECT_EQ(refused.text, e.GetText());
        }
    }
}

TEST_F(ExportPanelTest, EnterIsOkAndEscapeIsCancel) {
    EXPECT_EQ(wxID_OK, Run([](wxDialog& dialog, ExportSequenceDialog&) {
                  Focus(In(dialog, 10015));
                  Press(WXK_RETURN);
                  EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
              }));
    EXPECT_EQ(wxID_CANCEL, Run([](wxDialog&, ExportSequenceDialog&) { Press(WXK_ESCAPE); }));
}

TEST_F(ExportPanelTest, ANumberTypedBeforeEnterCounts) {
    Run([](wxDialog& dialog, ExportSequenceDialog& panel) {
        Focus(In(dialog, 10005));
        Press('A', wxMOD_CONTROL);
        Type("4");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
        panel.ApplyToIterator();
        EXPECT_EQ(4, panel.GetIterator().rangeFirst);
    });
}

TEST_F(ExportPanelTest, WithoutAModalRunOkHides) {
    Save3dDataDialog dialog(frame);
    const ExportSequenceDialog panel(&dialog, canvas);
    ASSERT_TRUE(ShowAndWait(dialog));
    Click(In(dialog, wxID_OK));
    EXPECT_FALSE(dialog.IsShown());
    EXPECT_EQ(wxID_OK, dialog.GetReturnCode());
}

TEST_F(ExportPanelTest, EndsWithTheViewer) {
    const int code = Run([this](wxDialog& dialog, ExportSequenceDialog& panel) {
        DeleteFrame();
        EXPECT_FALSE(dialog.IsModal());
        EXPECT_EQ(nullptr, canvas.get());
        EXPECT_TRUE(panel.CheckTemplate());
    });
    EXPECT_EQ(wxID_CANCEL, code);
}

TEST_F(ExportPanelTest, AViewerThatGoesUnderAQuestionSaysNo) {
    // What asks: OK with a wrong template, a press of AVI with one, OK and a press of the sequence with a wrong speed.
    for (const int asks : {0, 1, 2, 3}) {
        if (!frame)
            SetUp();
        const int pressed[] = {wxID_OK, 10012, wxID_OK, 10011};
        const bool speed = asks >= 2;
        Save3dDataDialog dialog(frame);
        ExportSequenceDialog panel(&dialog, canvas);
        answers.ExpectDriven([&](wxDialog& open) {
            if (speed)
                Click(In(open, 10012));
            In<wxTextCtrl>(open, 10015).ChangeValue("no");
            Click(In(open, pressed[asks]));
            EXPECT_TRUE(WaitUntil([&] { return !open.IsModal(); }));
            EXPECT_EQ(speed ? 10012 : 10011, Format(open));
        });
        answers.Expect([this](wxDialog&) -> int {
            wxTheApp->CallAfter([this] { DeleteFrame(); });
            return wxID_NONE;
        });
        EXPECT_EQ(wxID_CANCEL, RunModal(dialog)) << asks;
    }
}

} // namespace
