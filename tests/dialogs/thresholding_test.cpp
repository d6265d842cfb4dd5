#include "tests/dialogs/channel_dialog_fixture.h"
#include "tests/dialogs/random_ranges.h"

#include <wx/checkbox.h>

using namespace zel;
using namespace zel::test;

namespace {

using Byte = unsigned char;
template <typename T>
using Thresholds = ThresParams<T>;

class ThresholdingTest : public ChannelDialogTest {
protected:
    ThresholdingDialog<Byte>* MakeThreeChannels(const std::vector<Thresholds<Byte>>& params) {
        channels.Add(0, 255, 256).Add(0, 255, 256).Add(0, 255, 256);
        return MakeThresholds<Byte>(channels, params, Names({"Red", "Green", "Blue"}));
    }
    ThresholdingDialog<Byte>* MakeOneChannel() {
        return MakeThresholds<Byte>(channels.Add(0, 255, 256), {{10, 200}}, Names({"Gray"}));
    }

    Channels<Byte> channels;
    const std::vector<Thresholds<Byte>> own = {{10, 200}, {20, 210}, {10, 200}};
};

TEST_F(ThresholdingTest, ControlsFromTopToBottom) {
    auto* const dialog = MakeOneChannel();
    EXPECT_EQ("Adjust Thresholds", dialog->GetTitle());
    EXPECT_EQ((Texts{"Logarithmic", "Linear"}), Entries(In<wxChoice>(*dialog, 10001)));
    EXPECT_EQ("Choose the type of histogram.", In(*dialog, 10001).GetToolTipText());
    EXPECT_TRUE(In<wxCheckBox>(*dialog, 10003).IsChecked());
    EXPECT_EQ("Input Levels", In(*dialog, 10005).GetParent()->GetLabel());
    EXPECT_EQ("Reset", In<wxButton>(*dialog, 10006).GetLabel());
    EXPECT_EQ(dialog->FindWindow(5100), dialog->GetDefaultItem());
    ASSERT_TRUE(ShowAndWait(*dialog));
    int above = -1;
    for (const int id : {10001, 10002, 10003, 10004, 10005, 10006}) {
        const int y = In(*dialog, id).GetScreenPosition().y;
        EXPECT_GT(y, above) << id;
        above = y;
    }
    EXPECT_LT(In(*dialog, 10006).GetPosition().x, In(*dialog, 5101).GetPosition().x);
    EXPECT_LT(In(*dialog, 5101).GetPosition().x, In(*dialog, 5100).GetPosition().x);
    EXPECT_EQ(nullptr, Control<Byte>(*dialog, 10005).GetGammaText());
}

TEST_F(ThresholdingTest, OneChannelHasNoAll) {
    auto* const dialog = MakeOneChannel();
    EXPECT_EQ((Texts{"Gray"}), Entries(Channel(*dialog)));
    EXPECT_EQ(0, Channel(*dialog).GetSelection());
    EXPECT_EQ((Texts{"10..200 in 0"}), TakePreviews());
    EXPECT_EQ((Texts{"10", "200"}), Fields(Control<Byte>(*dialog, 10005)));
}

TEST_F(ThresholdingTest, DifferentThresholdsOpenOnTheWholeRange) {
    auto* const dialog = MakeThreeChannels(own);
    EXPECT_EQ((Texts{"Red", "Green", "Blue", "All"}), Entries(Channel(*dialog)));
    EXPECT_EQ(3, Channel(*dialog).GetSelection());
    EXPECT_EQ((Texts{"0..255 in 3"}), TakePreviews());
    EXPECT_EQ(wxID_OK, Run(*dialog, [](wxDialog& open) { Click(In(open, wxID_OK)); }));
    EXPECT_EQ(own, ParamsOf<Thresholds<Byte>>(*dialog));
}

TEST_F(ThresholdingTest, EqualThresholdsOpenAsTheyAre) {
    MakeThreeChannels({own[0], own[0], own[0]});
    EXPECT_EQ((Texts{"10..200 in 3"}), TakePreviews());
}

TEST_F(ThresholdingTest, ChannelsOfDifferentBoundsHaveNoAll) {
    channels.Add(0, 255, 256).Add(0, 100, 101);
    auto* const dialog = MakeThresholds<Byte>(channels, {own[0], {5, 50}}, Names({"One", "Two"}));
    EXPECT_EQ((Texts{"One", "Two"}), Entries(Channel(*dialog)));
    EXPECT_EQ(0, Channel(*dialog).GetSelection());
    EXPECT_EQ((Texts{"10..200 in 0", "5..50 in 1"}), TakePreviews());
}

TEST_F(ThresholdingTest, TrianglesStopAtEachOtherAndOverwriteAllChannels) {
    auto* const dialog = MakeThreeChannels(own);
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& control = Control<Byte>(open, 10005);
        TakePreviews();
        DragFrom(*control.GetTriangles(), 0, {60});
        DragFrom(*control.GetTriangles(), 255, {90, 40});
        EXPECT_EQ((Texts{"60..255 in 3", "60..90 in 3", "60..60 in 3"}), TakePreviews());
        EXPECT_EQ((Texts{"60", "60"}), Fields(control));
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Thresholds<Byte>>{{60, 60}, {60, 60}, {60, 60}}), ParamsOf<Thresholds<Byte>>(*dialog));
}

TEST_F(ThresholdingTest, AChosenChannelIsChangedAlone) {
    auto* const dialog = MakeThreeChannels(own);
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& control = Control<Byte>(open, 10005);
        TakePreviews();
        Choose(Channel(open), 1);
        EXPECT_EQ((Texts{"10..200 in 0", "20..210 in 1", "10..200 in 2"}), TakePreviews());
        TypeInto(*control.GetLowText(), "99");
        Press(WXK_TAB);
        EXPECT_EQ((Texts{"99..210 in 1"}), TakePreviews());
        EXPECT_EQ(control.GetHighText(), wxWindow::FindFocus()); // there is no gamma between them
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Thresholds<Byte>>{own[0], {99, 210}, own[2]}), ParamsOf<Thresholds<Byte>>(*dialog));
}

TEST_F(ThresholdingTest, ResetGivesTheWholeRange) {
    auto* const dialog = MakeOneChannel();
    const int result = Run(*dialog, [&](wxDialog& open) {
        Choose(In<wxChoice>(open, 10001), 1);
        TakePreviews();
        Click(In(open, 10006));
        EXPECT_EQ((Texts{"0..255 in 0"}), TakePreviews());
        EXPECT_EQ(0, In<wxChoice>(open, 10001).GetSelection());
        EXPECT_EQ(0, In<HistGraph<Byte>>(open, 10004).GetGraphType());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Thresholds<Byte>>{{0, 255}}), ParamsOf<Thresholds<Byte>>(*dialog));
}

TEST_F(ThresholdingTest, CheckingTheBoxPreviewsWhatIsSet) {
    auto* const dialog = MakeThreeChannels(own);
    Run(*dialog, [&](wxDialog& open) {
        Click(In(open, 10003));
        DragFrom(*Control<Byte>(open, 10005).GetTriangles(), 0, {60});
        Choose(Channel(open), 2);
        EXPECT_EQ((Texts{"0..255 in 3"}), TakePreviews()); // the one from the beginning
        Click(In(open, 10003));
        EXPECT_EQ((Texts{"60..255 in 0", "60..255 in 1", "60..255 in 2"}), TakePreviews());
        Press(WXK_ESCAPE);
    });
}

TEST_F(ThresholdingTest, APreviewEventSentToTheDialogIsPassedOn) {
    auto* const dialog = MakeOneChannel();
    TakePreviews();
    zel_ThresholdingEvent event(1.0F, 2.0F, 0);
    dialog->ProcessWindowEvent(event);
    EXPECT_EQ((Texts{"10..200 in 0"}), TakePreviews()); // the dialog's own values, once
}

TEST_F(ThresholdingTest, BadTextKeepsTheDialogOpen) {
    auto* const dialog = MakeOneChannel();
    answers.ExpectDriven([](wxDialog& open) {
        Control<Byte>(open, 10005).GetHighText()->SetValue("256");
        Click(In(open, wxID_OK));
        ASSERT_TRUE(open.IsModal());
        Press(WXK_ESCAPE);
    });
    answers.ExpectMessage("Validation conflict", "The value 256 is out of range [0,255]");
    EXPECT_EQ(wxID_CANCEL, dialog->ShowModal());
}

TEST_F(ThresholdingTest, FloatThresholdsThatNobodyTouchedKeepTheirDigits) {
    Channels<float> floats;
    floats.Add(-1.0F, 1.0F, 256);
    auto* const dialog = MakeThresholds<float>(floats, {{-0.126F, 0.5F}}, Names({"Gray"}));
    EXPECT_EQ((Texts{"-0.126000002..0.5 in 0"}), TakePreviews());
    EXPECT_EQ(wxID_OK, Run(*dialog, [](wxDialog& open) {
                  EXPECT_EQ((Texts{"-0.126000", "0.500000"}), Fields(Control<float>(open, 10005)));
                  Click(In(open, wxID_OK));
              }));
    EXPECT_EQ((std::vector<Thresholds<float>>{{-0.126F, 0.5F}}), ParamsOf<Thresholds<float>>(*dialog));
}

TEST_F(ThresholdingTest, ChangedFloatThresholdsAreRoundedToTwoDecimals) {
    Channels<float> floats;
    floats.Add(-1.0F, 1.0F, 256);
    auto* const dialog = MakeThresholds<float>(floats, {{-0.126F, 0.5F}}, Names({"Gray"}));
    TakePreviews();
    EXPECT_EQ(wxID_OK, Run(*dialog, [&](wxDialog& open) {
                  TypeInto(*Control<float>(open, 10005).GetHighText(), "0.376");
                  Press(WXK_RETURN);
                  EXPECT_EQ((Texts{"-0.126000002..0.379999995 in 0"}), TakePreviews());
                  Click(In(open, wxID_OK));
              }));
    EXPECT_EQ((std::vector<Thresholds<float>>{{-0.126F, 0.38F}}), ParamsOf<Thresholds<float>>(*dialog));
}

TEST_F(ThresholdingTest, EveryUntouchedRangeOfFloatsIsAcceptedAndPreviewedExactly) {
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        const FloatRange range = RandomRange(random, i);
        Channels<float> floats;
        floats.Add(range.first, range.second, 256);
        const std::vector<Thresholds<float>> whole = {{range.first, range.second}};
        auto* const dialog = MakeThresholds<float>(floats, whole, Names({"Gray"}));
        ASSERT_EQ((Texts{wxString::Format("%.9g..%.9g in 0", static_cast<double>(range.first),
                                          static_cast<double>(range.second))
                             .utf8_string()}),
                  TakePreviews());
        dialog->TransferDataToWindow(); // as when it opens
        ASSERT_TRUE(IsAccepted(*dialog)) << range.first << " to " << range.second;
        ASSERT_EQ(whole, ParamsOf<Thresholds<float>>(*dialog));
        dialog->Destroy();
        Pump();
    }
}

TEST_F(ThresholdingTest, WrongArgumentsAreAsserted) {
    const AssertCatcher asserts;
    MakeThresholds<Byte>(channels, {own[0]}, Names({"Gray"}))->Destroy();
    Texts conditions;
    for (const auto& entry : asserts.GetEntries()) {
        EXPECT_EQ("dlg_thres", entry.file);
        EXPECT_EQ("zel::ThresholdingDialog::ThresholdingDialog", entry.function);
        conditions.push_back(entry.condition);
    }
    EXPECT_EQ((Texts{"_HistData_vector.size()", "_HistData_vector.size() == params_vector.size()",
                     "_HistData_vector.size() == channel_names.GetCount()"}),
              conditions);
}

} // namespace
