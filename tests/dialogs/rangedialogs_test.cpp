#include "dialogs/dlg_set_range.h"
#include "tests/dialogs/control_list.h"
#include "tests/dialogs/random_ranges.h"

using namespace zel;
using namespace zel::test;

namespace {

const std::string wrongOrder = "Min value must be less than max value.";

class RangeDialogTest : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "range dialogs");
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    void ExpectWrongOrder() { answers.ExpectMessage(wxMessageBoxCaptionStr, wrongOrder); }

    wxFrame* frame = nullptr;
    DialogAnswers answers;
};

TEST_F(RangeDialogTest, ControlsOfOneRange) {
    float min = 0.25F;
    float max = 0.5F;
    SetFloatRangeDlg dialog(frame, 0.0F, 1.0F, min, max);
    EXPECT_EQ("Set Range", dialog.GetTitle());
    EXPECT_TRUE(dialog.HasFlag(wxRESIZE_BORDER));
    const std::vector<std::string> labels = ListControls(dialog);
    EXPECT_EQ(
        (std::vector<std::string>{"box Range", "10000 Please, set range within the interval:", "10000 [",
                                  "10001 0.000000", "10000 ,", "10002 1.000000", "10000 ]", "10003 line",
                                  "10000 Min:", "10004 field", "10000 Max:", "10005 field", "5100 OK", "5101 Cancel"}),
        labels);
}

TEST_F(RangeDialogTest, ControlsOfThreeRanges) {
    kep::RGB_generic<unsigned short> min(1, 2, 3);
    kep::RGB_generic<unsigned short> max(100, 200, 300);
    SetRGBRangeDlg<unsigned short> dialog(frame, {0, 1, 2}, {1000, 2000, 65535}, min, max);
    EXPECT_EQ("Set Range", dialog.GetTitle());
    const std::vector<std::string> labels = ListControls(dialog);
    std::vector<std::string> expected;
    const char* const names[] = {"Red", "Green", "Blue"};
    const char* const limits[][2] = {{"0", "1000"}, {"1", "2000"}, {"2", "65535"}};
    for (int channel = 0; channel < 3; ++channel) {
        const auto id = [channel](int offset) { return std::to_string(10006 + 5 * channel + offset) + " "; };
        expected.insert(expected.end(),
                        {std::string("box ") + names[channel] + " Channel",
                         "10000 Please, set range within the interval:", "10000 [", id(0) + limits[channel][0],
                         "10000 ,", id(1) + limits[channel][1], "10000 ]", "10003 line", "10000 Min:", id(2) + "field",
                         "10000 Max:", id(3) + "field", id(4) + "Apply to the other channels"});
    }
    expected.insert(expected.end(), {"5100 OK", "5101 Cancel"});
    EXPECT_EQ(expected, labels);
}

TEST_F(RangeDialogTest, OkStoresWhatWasTyped) {
    long min = 3;
    long max = 7;
    answers.ExpectDriven([](wxDialog& dialog) {
        EXPECT_EQ("3", In<wxTextCtrl>(dialog, 10004).GetValue());
        EXPECT_EQ("7", In<wxTextCtrl>(dialog, 10005).GetValue());
        TypeInto(In<wxTextCtrl>(dialog, 10004), "-20");
        TypeInto(In<wxTextCtrl>(dialog, 10005), "40");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_TRUE(GetLongRangeFromUser(frame, -100, 100, min, max));
    EXPECT_EQ(-20, min);
    EXPECT_EQ(40, max);
}

TEST_F(RangeDialogTest, TabGoesThroughTheFieldsAndEnterIsOk) {
    float min = 0.0F;
    float max = 1.0F;
    answers.ExpectDriven([](wxDialog& dialog) {
        Focus(In(dialog, 10004));
        Press(WXK_TAB);
        EXPECT_EQ(10005, wxWindow::FindFocus()->GetId());
        Press(WXK_TAB);
        EXPECT_EQ(wxID_OK, wxWindow::FindFocus()->GetId());
        Press(WXK_TAB);
        EXPECT_EQ(wxID_CANCEL, wxWindow::FindFocus()->GetId());
        TypeInto(In<wxTextCtrl>(dialog, 10005), "0.75");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_TRUE(GetFloatRangeFromUser(frame, 0.0F, 1.0F, min, max));
    EXPECT_EQ(0.0F, min);
    EXPECT_EQ(0.75F, max);
}

TEST_F(RangeDialogTest, CancelAndEscapeChangeNothing) {
    for (const bool byKey : {false, true}) {
        long min = 3;
        long max = 7;
        answers.ExpectDriven([byKey](wxDialog& dialog) {
            TypeInto(In<wxTextCtrl>(dialog, 10004), "1");
            if (byKey)
                Press(WXK_ESCAPE);
            else
                Click(In(dialog, wxID_CANCEL));
        });
        EXPECT_FALSE(GetLongRangeFromUser(frame, 0, 9, min, max));
        EXPECT_EQ(3, min);
        EXPECT_EQ(7, max);
    }
}

TEST_F(RangeDialogTest, EqualEndsAreNoRange) {
    float min = 0.0F;
    float max = 1.0F;
    answers.ExpectDriven([](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10004), "0.5");
        TypeInto(In<wxTextCtrl>(dialog, 10005), "0.5");
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        // The same float, though not the same text: 0.5 has 23 bits behind its first, so 1e-9 is lost in it.
        TypeInto(In<wxTextCtrl>(dialog, 10005), "0.500000001");
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        Press(WXK_ESCAPE);
    });
    ExpectWrongOrder();
    ExpectWrongOrder();
    EXPECT_FALSE(GetFloatRangeFromUser(frame, 0.0F, 1.0F, min, max));
    EXPECT_EQ(0.0F, min);
    EXPECT_EQ(1.0F, max);
}

TEST_F(RangeDialogTest, ValueOutOfTheLimitsHasTheValidatorsMessageAlone) {
    float min = 0.0F;
    float max = 1.0F;
    answers.ExpectDriven([](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10005), "2");
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == &In(dialog, 10005); }));
        TypeInto(In<wxTextCtrl>(dialog, 10005), "1");
        Click(In(dialog, wxID_OK));
    });
    answers.ExpectMessage("Validation conflict", "The value 2.000000 is out of range [0.000000,1.000000]");
    EXPECT_TRUE(GetFloatRangeFromUser(frame, 0.0F, 1.0F, min, max));
    EXPECT_EQ(1.0F, max);
}

TEST_F(RangeDialogTest, WrongIntegersHaveMessages) {
    long min = 3;
    long max = 7;
    answers.ExpectDriven([this](wxDialog& dialog) {
        for (const char* const text : {"12", "1-2", "2"}) {
            const std::size_t pending = answers.GetPending();
            TypeInto(In<wxTextCtrl>(dialog, 10005), text);
            Press(WXK_RETURN); // the toolkit lets the button be seen pressed for a moment
            EXPECT_TRUE(WaitUntil([&] { return answers.GetPending() < pending; })) << text;
            ASSERT_TRUE(dialog.IsModal());
        }
        Press(WXK_ESCAPE);
    });
    answers.ExpectMessage("Validation conflict", "The value 12 is out of range [1,9]");
    answers.ExpectMessage("Validation conflict", "The value '1-2' cannot be converted to a long");
    ExpectWrongOrder();
    EXPECT_FALSE(GetLongRangeFromUser(frame, 1, 9, min, max));
    EXPECT_EQ(3, min);
    EXPECT_EQ(7, max);
}

TEST_F(RangeDialogTest, StartOutsideTheLimitsIsShownAndRefused) {
    long min = 3;
    long max = 70;
    answers.ExpectDriven([](wxDialog& dialog) {
        EXPECT_EQ("70", In<wxTextCtrl>(dialog, 10005).GetValue());
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        Press(WXK_ESCAPE);
    });
    answers.ExpectMessage("Validation conflict", "The value 70 is out of range [1,9]");
    EXPECT_FALSE(GetLongRangeFromUser(frame, 1, 9, min, max));
}

TEST_F(RangeDialogTest, UntouchedFloatsKeepTheirDigits) {
    float min = 0.1234567F;
    float max = 0.9F;
    answers.ExpectDriven([](wxDialog& dialog) {
        EXPECT_EQ("0.123457", In<wxTextCtrl>(dialog, 10004).GetValue());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_TRUE(GetFloatRangeFromUser(frame, 0.1234567F, 0.9F, min, max));
    EXPECT_EQ(0.1234567F, min);
    EXPECT_EQ(0.9F, max);
}

TEST_F(RangeDialogTest, EveryUntouchedRangeOfFloatsIsAccepted) {
    std::mt19937 random(20);
    for (int i = 0; i < 200; ++i) {
        const FloatRange limits = RandomRange(random, i);
        float min = limits.first;
        float max = limits.second;
        SetFloatRangeDlg dialog(frame, limits.first, limits.second, min, max);
        dialog.TransferDataToWindow(); // as when it opens
        ASSERT_TRUE(IsAccepted(dialog)) << limits.first << " to " << limits.second;
        ASSERT_EQ(limits, FloatRange(min, max));
    }
}

TEST_F(RangeDialogTest, ARangeThatSixDecimalsCannotTellIsAcceptedUntouched) {
    float min = 1e-7F;
    float max = 3e-7F;
    SetFloatRangeDlg dialog(frame, 1e-7F, 3e-7F, min, max);
    dialog.TransferDataToWindow();
    EXPECT_EQ("0.000000", In<wxTextCtrl>(dialog, 10004).GetValue());
    EXPECT_EQ("0.000000", In<wxTextCtrl>(dialog, 10005).GetValue());
    EXPECT_TRUE(IsAccepted(dialog));
    EXPECT_EQ(1e-7F, min);
    EXPECT_EQ(3e-7F, max);
}

TEST_F(RangeDialogTest, ATypedLimitIsTheLimit) {
    float min = 0.5F;
    float max = 0.6F;
    SetFloatRangeDlg dialog(frame, 0.1234564F, 0.9876544F, min, max);
    dialog.TransferDataToWindow();
    In<wxTextCtrl>(dialog, 10004).ChangeValue("0.123456");
    In<wxTextCtrl>(dialog, 10005).ChangeValue("0.987654");
    EXPECT_TRUE(IsAccepted(dialog));
    EXPECT_EQ(0.1234564F, min);
    EXPECT_EQ(0.987654F, max) << "which lies within the limits";
}

TEST_F(RangeDialogTest, LimitsThatDoNotRiseAreAsserted) {
    long min = 4;
    long max = 4;
    std::vector<AssertCatcher::Entry> asserted;
    answers.ExpectDriven([](wxDialog& dialog) {
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        Press(WXK_ESCAPE);
    });
    ExpectWrongOrder();
    {
        const AssertCatcher asserts;
        EXPECT_FALSE(GetLongRangeFromUser(frame, 4, 4, min, max));
        asserted = asserts.GetEntries();
    }
    ASSERT_EQ(1U, asserted.size());
    EXPECT_EQ("dlg_set_range", asserted[0].file);
    EXPECT_EQ("zel::SetLongRangeDlg::SetLongRangeDlg", asserted[0].function);
    EXPECT_EQ("min_limit < max_limit", asserted[0].condition);
}

TEST_F(RangeDialogTest, LimitsOfEachChannelAreAsserted) {
    kep::RGB_generic<unsigned char> min;
    kep::RGB_generic<unsigned char> max;
    const AssertCatcher asserts;
    const SetRGBRangeDlg<unsigned char> dialog(frame, {0, 5, 6}, {255, 5, 5}, min, max);
    ASSERT_EQ(2U, asserts.GetEntries().size());
    EXPECT_EQ("zel::SetRGBRangeDlg::SetRGBRangeDlg", asserts.GetEntries()[0].function);
    EXPECT_EQ("min_limit < max_limit", asserts.GetEntries()[1].condition);
}

TEST_F(RangeDialogTest, WithoutAModalRunOkHides) {
    long min = 3;
    long max = 7;
    auto* const dialog = new SetLongRangeDlg(frame, 0, 9, min, max);
    ASSERT_TRUE(ShowAndWait(*dialog));
    TypeInto(In<wxTextCtrl>(*dialog, 10005), "8");
    Click(In(*dialog, wxID_OK));
    EXPECT_FALSE(dialog->IsShown());
    EXPECT_EQ(wxID_OK, dialog->GetReturnCode());
    EXPECT_EQ(8, max);
}

class ColourRangeTest : public RangeDialogTest {
protected:
    using Byte = unsigned char;
    using Colour = kep::RGB_generic<Byte>;

    using Messages = std::vector<std::pair<std::string, std::string>>;

    /// Runs the dialog. @param messages  captions and texts of the boxes that come. @return what ShowModal says
    int Run(std::function<void(wxDialog&)> drive, const Messages& messages = {}) {
        answers.ExpectDriven(std::move(drive));
        for (const auto& [caption, text] : messages)
            answers.ExpectMessage(caption, text);
        SetRGBRangeDlg<Byte> dialog(frame, minLimit, maxLimit, min, max);
        return dialog.ShowModal();
    }
    static bool CanApply(const wxDialog& dialog, int channel) {
        auto& button = In<wxButton>(dialog, 10010 + 5 * channel);
        button.UpdateWindowUI(); // as in idle time
        return button.IsEnabled();
    }
    static std::vector<std::string> Texts(const wxDialog& dialog) {
        std::vector<std::string> texts;
        for (const int id : {10008, 10009, 10013, 10014, 10018, 10019})
            texts.push_back(In<wxTextCtrl>(dialog, id).GetValue().utf8_string());
        return texts;
    }

    Colour minLimit{0, 0, 0};
    Colour maxLimit{255, 255, 255};
    Colour min{1, 2, 3};
    Colour max{100, 110, 120};
};

TEST_F(ColourRangeTest, EachButtonCopiesItsOwnChannel) {
    const std::vector<std::string> first = {"1", "100", "2", "110", "3", "120"};
    const int result = Run([&](wxDialog& dialog) {
        EXPECT_EQ(first, Texts(dialog));
        const std::string own[][2] = {{"1", "100"}, {"2", "110"}, {"3", "120"}};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            for (std::size_t i = 0; i < 6; ++i)
                In<wxTextCtrl>(dialog, 10008 + static_cast<int>(5 * (i / 2) + i % 2)).SetValue(first[i]);
            EXPECT_TRUE(CanApply(dialog, static_cast<int>(channel)));
            Click(In(dialog, 10010 + 5 * static_cast<int>(channel)));
            const std::string& low = own[channel][0];
            const std::string& high = own[channel][1];
            EXPECT_EQ((std::vector<std::string>{low, high, low, high, low, high}), Texts(dialog));
        }
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ(Colour(3, 3, 3), min);
    EXPECT_EQ(Colour(120, 120, 120), max);
}

TEST_F(ColourRangeTest, ARangeAppliesWhereItFits) {
    maxLimit = Colour(255, 100, 255);
    max = Colour(200, 90, 100);
    const int result = Run([](wxDialog& dialog) {
        EXPECT_FALSE(CanApply(dialog, 0)); // 200 is above the 100 of green
        EXPECT_TRUE(CanApply(dialog, 1));
        EXPECT_TRUE(CanApply(dialog, 2)); // 3 to 100
        TypeInto(In<wxTextCtrl>(dialog, 10019), "101");
        EXPECT_FALSE(CanApply(dialog, 2));
        TypeInto(In<wxTextCtrl>(dialog, 10009), "50");
        EXPECT_TRUE(CanApply(dialog, 0));
        TypeInto(In<wxTextCtrl>(dialog, 10009), ""); // no number
        EXPECT_FALSE(CanApply(dialog, 0));
        TypeInto(In<wxTextCtrl>(dialog, 10009), "0"); // below its low end, 1
        EXPECT_FALSE(CanApply(dialog, 0));
        TypeInto(In<wxTextCtrl>(dialog, 10009), "1"); // as low as it can be, though no range
        EXPECT_TRUE(CanApply(dialog, 0));
        Press(WXK_ESCAPE);
    });
    EXPECT_EQ(wxID_CANCEL, result);
    EXPECT_EQ(Colour(200, 90, 100), max);
}

TEST_F(ColourRangeTest, TheFirstChannelInDisorderIsTold) {
    const auto drive = [](wxDialog& dialog) {
        In<wxTextCtrl>(dialog, 10013).SetValue("110"); // green 110 to 110
        In<wxTextCtrl>(dialog, 10018).SetValue("130"); // blue 130 to 120
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        In<wxTextCtrl>(dialog, 10018).SetValue("256");
        Click(In(dialog, wxID_OK));
        ASSERT_TRUE(dialog.IsModal());
        Click(In(dialog, wxID_CANCEL));
    };
    const Messages messages = {{wxMessageBoxCaptionStr, wrongOrder},
                               {"Validation conflict", "The value 256 is out of range [0,255]"}};
    EXPECT_EQ(wxID_CANCEL, Run(drive, messages));
    EXPECT_EQ(Colour(1, 2, 3), min);
}

} // namespace
