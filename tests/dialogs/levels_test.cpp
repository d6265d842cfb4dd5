#include "tests/dialogs/channel_dialog_fixture.h"
#include "tests/dialogs/random_ranges.h"

#include <wx/checkbox.h>
#include <wx/statbox.h>

using namespace zel;
using namespace zel::test;

namespace {

using Byte = unsigned char;
template <typename T>
using Levels = TLevelsParams<T, Byte>;

class LevelsTest : public ChannelDialogTest {
protected:
    /// Three channels of 8 bits with parameters that differ.
    LevelsWidget<Byte, Byte>* MakeThreeChannels() {
        channels.Add(0, 255, 256).Add(0, 255, 256).Add(0, 255, 256);
        return MakeLevels<Byte>(channels, own, Names({"Red", "Green", "Blue"}));
    }
    LevelsWidget<Byte, Byte>* MakeOneChannel() {
        return MakeLevels<Byte>(channels.Add(0, 255, 256), {{10, 200, 1.0, 0, 255}}, Names({"Gray"}));
    }

    Channels<Byte> channels;
    const std::vector<Levels<Byte>> own = {{10, 200, 2.0, 5, 250}, {20, 210, 0.5, 0, 255}, {15, 190, 1.0, 0, 100}};
};

TEST_F(LevelsTest, ControlsFromTopToBottom) {
    auto* const dialog = MakeOneChannel();
    EXPECT_EQ("Adjust Levels", dialog->GetTitle());
    EXPECT_EQ(style, dialog->GetWindowStyle() & style);
    EXPECT_EQ("Histogram type :", dialog->FindWindow(10000)->GetLabel());
    EXPECT_EQ((Texts{"Logarithmic", "Linear"}), Entries(In<wxChoice>(*dialog, 10001)));
    EXPECT_EQ(0, In<wxChoice>(*dialog, 10001).GetSelection());
    EXPECT_EQ("Choose the type of histogram.", In(*dialog, 10001).GetToolTipText());
    EXPECT_TRUE(In<wxCheckBox>(*dialog, 10003).IsChecked());
    EXPECT_EQ("Preview", In(*dialog, 10003).GetLabel());
    EXPECT_EQ("Input Levels", In(*dialog, 10004).GetParent()->GetLabel());
    EXPECT_EQ("Input Levels", In(*dialog, 10005).GetParent()->GetLabel());
    EXPECT_EQ("Output Levels", In(*dialog, 10006).GetParent()->GetLabel());
    EXPECT_TRUE(In(*dialog, 10004).HasFlag(wxBORDER_SUNKEN | wxCLIP_CHILDREN | wxTAB_TRAVERSAL));
    EXPECT_GE(In(*dialog, 10004).GetSize().x, 264);
    EXPECT_GE(In(*dialog, 10004).GetSize().y, 72);
    EXPECT_EQ("Reset", In<wxButton>(*dialog, 10007).GetLabel());
    EXPECT_EQ("Cancel", In<wxButton>(*dialog, 5101).GetLabel());
    EXPECT_EQ("OK", In<wxButton>(*dialog, 5100).GetLabel());
    EXPECT_EQ(dialog->FindWindow(5100), dialog->GetDefaultItem());
    ASSERT_TRUE(ShowAndWait(*dialog));
    int above = -1;
    for (const int id : {10001, 10002, 10003, 10004, 10005, 10006, 10007}) {
        const int y = In(*dialog, id).GetScreenPosition().y;
        EXPECT_GT(y, above) << id;
        above = y;
    }
    EXPECT_LT(In(*dialog, 10007).GetPosition().x, In(*dialog, 5101).GetPosition().x);
    EXPECT_LT(In(*dialog, 5101).GetPosition().x, In(*dialog, 5100).GetPosition().x);
    EXPECT_NE(nullptr, Control<Byte>(*dialog, 10005).GetGammaText());
    EXPECT_EQ(nullptr, Control<Byte>(*dialog, 10006).GetGammaText());
}

TEST_F(LevelsTest, MoreHeightGoesToTheGraph) {
    auto* const dialog = MakeOneChannel();
    const int graph = In(*dialog, 10004).GetSize().y;
    const int output = In(*dialog, 10006).GetParent()->GetSize().y;
    dialog->SetSize(dialog->GetSize() + wxSize(0, 50));
    dialog->Layout();
    EXPECT_EQ(graph + 50, In(*dialog, 10004).GetSize().y);
    EXPECT_EQ(output, In(*dialog, 10006).GetParent()->GetSize().y);
}

TEST_F(LevelsTest, OneChannelHasNoAll) {
    auto* const dialog = MakeOneChannel();
    EXPECT_EQ((Texts{"Gray"}), Entries(Channel(*dialog)));
    EXPECT_EQ(0, Channel(*dialog).GetSelection());
    EXPECT_EQ((Texts{"10..200 ^1 -> 0..255 in 0"}), TakePreviews());
    EXPECT_EQ((Texts{"10", "1", "200"}), Fields(Control<Byte>(*dialog, 10005)));
    EXPECT_EQ((Texts{"0", "255"}), Fields(Control<Byte>(*dialog, 10006)));
}

TEST_F(LevelsTest, ChannelsOfEqualBoundsOpenOnAll) {
    auto* const dialog = MakeThreeChannels();
    EXPECT_EQ((Texts{"Red", "Green", "Blue", "All"}), Entries(Channel(*dialog)));
    EXPECT_EQ(3, Channel(*dialog).GetSelection());
    // The least low end, 10, the greatest high end, 210, and no gamma.
    EXPECT_EQ((Texts{"10..210 ^1 -> 0..255 in 3"}), TakePreviews());
    EXPECT_EQ((Texts{"10", "1", "210"}), Fields(Control<Byte>(*dialog, 10005)));
    // The histogram is the sum: each bin of the three has counted to 1.
    EXPECT_EQ(3U, (*In<HistGraph<Byte>>(*dialog, 10004).GetHistogram())[100]);
}

TEST_F(LevelsTest, ChannelsOfDifferentBoundsHaveNoAll) {
    channels.Add(0, 255, 256).Add(0, 100, 101);
    auto* const dialog = MakeLevels<Byte>(channels, {own[0], {0, 100}}, Names({"One", "Two"}));
    EXPECT_EQ((Texts{"One", "Two"}), Entries(Channel(*dialog)));
    EXPECT_EQ(0, Channel(*dialog).GetSelection());
    EXPECT_EQ((Texts{"10..200 ^2 -> 5..250 in 0", "0..100 ^1 -> 0..255 in 1"}), TakePreviews());
}

TEST_F(LevelsTest, UntouchedAllLeavesTheChannelsAsTheyWere) {
    auto* const dialog = MakeThreeChannels();
    EXPECT_EQ(wxID_OK, Run(*dialog, [](wxDialog& open) { Click(In(open, wxID_OK)); }));
    EXPECT_EQ(own, ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, EachChangeOfAllOverwritesTheChannels) {
    auto* const dialog = MakeThreeChannels();
    const int result = Run(*dialog, [&](wxDialog& open) {
        TakePreviews();
        TypeInto(*Control<Byte>(open, 10005).GetGammaText(), "3");
        Press(WXK_RETURN);
        EXPECT_EQ((Texts{"10..210 ^3 -> 0..255 in 3"}), TakePreviews());
        ASSERT_TRUE(open.IsModal()); // Enter in a field is no OK
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    const Levels<Byte> all{10, 210, 3.0, 0, 255};
    EXPECT_EQ((std::vector<Levels<Byte>>{all, all, all}), ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, AChosenChannelIsShownAndChangedAlone) {
    auto* const dialog = MakeThreeChannels();
    const int result = Run(*dialog, [&](wxDialog& open) {
        TakePreviews();
        Choose(Channel(open), 1);
        EXPECT_EQ((Texts{"10..200 ^2 -> 5..250 in 0", "20..210 ^0.5 -> 0..255 in 1", "15..190 ^1 -> 0..100 in 2"}),
                  TakePreviews());
        EXPECT_EQ((Texts{"20", "0.5", "210"}), Fields(Control<Byte>(open, 10005)));
        EXPECT_EQ(1U, (*In<HistGraph<Byte>>(open, 10004).GetHistogram())[100]);
        TypeInto(*Control<Byte>(open, 10006).GetHighText(), "77");
        Press(WXK_RETURN);
        EXPECT_EQ((Texts{"20..210 ^0.5 -> 0..77 in 1"}), TakePreviews());
        Choose(Channel(open), 3);
        EXPECT_EQ((Texts{"10..210 ^1 -> 0..255 in 3"}), TakePreviews());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    auto expected = own;
    expected[1].outMax = 77;
    EXPECT_EQ(expected, ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, DraggedTrianglesArePreviewedStepByStep) {
    auto* const dialog = MakeOneChannel();
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& input = Control<Byte>(open, 10005);
        TakePreviews();
        DragFrom(*input.GetTriangles(), 200, {180, 150}); // the right one
        EXPECT_EQ((Texts{"10..180 ^1 -> 0..255 in 0", "10..150 ^1 -> 0..255 in 0"}), TakePreviews());
        EXPECT_EQ((Texts{"10", "1", "150"}), Fields(input));
        DragFrom(*input.GetTriangles(), 10, {100, 250}); // the left one, which stops at the right one
        EXPECT_EQ((Texts{"100..150 ^1 -> 0..255 in 0", "150..150 ^1 -> 0..255 in 0"}), TakePreviews());
        DragFrom(*input.GetTriangles(), 140, {50});
        EXPECT_EQ((Texts{"140..150 ^1 -> 0..255 in 0", "50..150 ^1 -> 0..255 in 0"}), TakePreviews());
        // Gamma 1 stands halfway, at 100. Half is 50, so the position 75 gives 10 ^ ((50 + 50 - 75) / 50) = 10 ^ 0.5.
        // The press tells too, as it may mean a place beside the tip.
        DragFrom(*input.GetTriangles(), 100, {75});
        EXPECT_EQ("3.2", input.GetGammaText()->GetValue());
        EXPECT_EQ((Texts{"50..150 ^1 -> 0..255 in 0", "50..150 ^3.2 -> 0..255 in 0"}), TakePreviews());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Levels<Byte>>{{50, 150, 3.2, 0, 255}}), ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, OutputLevelsMayCross) {
    auto* const dialog = MakeOneChannel();
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& output = Control<Byte>(open, 10006);
        DragFrom(*output.GetTriangles(), 0, {100});
        DragFrom(*output.GetTriangles(), 255, {30});
        TakePreviews();
        DragFrom(*output.GetTriangles(), 30, {20});
        EXPECT_EQ((Texts{"10..200 ^1 -> 100..20 in 0"}), TakePreviews());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Levels<Byte>>{{10, 200, 1.0, 100, 20}}), ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, FieldsAreCommittedByTabAndSteppedByArrows) {
    auto* const dialog = MakeOneChannel();
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& input = Control<Byte>(open, 10005);
        TakePreviews();
        TypeInto(*input.GetLowText(), "30");
        EXPECT_EQ((Texts{}), TakePreviews()); // nothing is committed yet
        Press(WXK_TAB);
        EXPECT_EQ((Texts{"30..200 ^1 -> 0..255 in 0"}), TakePreviews());
        EXPECT_EQ(input.GetGammaText(), wxWindow::FindFocus());
        Press(WXK_TAB);
        EXPECT_EQ(input.GetHighText(), wxWindow::FindFocus());
        EXPECT_EQ((Texts{}), TakePreviews()); // nothing was typed there
        Press(WXK_UP);
        Press(WXK_UP);
        Press(WXK_DOWN);
        EXPECT_EQ((Texts{"30..201 ^1 -> 0..255 in 0", "30..202 ^1 -> 0..255 in 0", "30..201 ^1 -> 0..255 in 0"}),
                  TakePreviews());
        TypeInto(*input.GetLowText(), "999"); // fits no byte: the last good value comes back
        Press(WXK_RETURN);
        EXPECT_EQ((Texts{"30..201 ^1 -> 0..255 in 0"}), TakePreviews());
        EXPECT_EQ("30", input.GetLowText()->GetValue());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
}

TEST_F(LevelsTest, NothingIsPreviewedWhileTheBoxIsUnchecked) {
    auto* const dialog = MakeOneChannel();
    Run(*dialog, [&](wxDialog& open) {
        TakePreviews();
        Click(In(open, 10003));
        ASSERT_FALSE(In<wxCheckBox>(open, 10003).IsChecked());
        DragFrom(*Control<Byte>(open, 10005).GetTriangles(), 200, {180});
        EXPECT_EQ((Texts{}), TakePreviews());
        Click(In(open, 10003));
        EXPECT_EQ((Texts{"10..180 ^1 -> 0..255 in 0"}), TakePreviews());
        Press(WXK_ESCAPE);
    });
}

TEST_F(LevelsTest, ResetIsForTheChannelShown) {
    auto* const dialog = MakeThreeChannels();
    const int result = Run(*dialog, [&](wxDialog& open) {
        Choose(Channel(open), 0);
        Choose(In<wxChoice>(open, 10001), 1);
        EXPECT_EQ(1, In<HistGraph<Byte>>(open, 10004).GetGraphType());
        TakePreviews();
        Click(In(open, 10007));
        EXPECT_EQ((Texts{"0..255 ^1 -> 0..255 in 0"}), TakePreviews());
        EXPECT_EQ((Texts{"0", "1", "255"}), Fields(Control<Byte>(open, 10005)));
        EXPECT_EQ(0, In<wxChoice>(open, 10001).GetSelection());
        EXPECT_EQ(0, In<HistGraph<Byte>>(open, 10004).GetGraphType());
        Click(In(open, wxID_OK)); // the texts that Reset has set are good ones
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Levels<Byte>>{{0, 255, 1.0, 0, 255}, own[1], own[2]}), ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, TheTypeOfTheHistogramChangesTheGraph) {
    channels.Add(0, 255, 256);
    for (std::size_t bin = 0; bin < 256; ++bin)
        (*channels.addresses.front())[bin] = bin == 100 ? 10000 : 100; // ln 100 is half of ln 10000
    auto* const dialog = MakeLevels<Byte>(channels, {own[0]}, Names({"Gray"}));
    Run(*dialog, [&](wxDialog& open) {
        auto& graph = In<HistGraph<Byte>>(open, 10004);
        // A bar that is as high as a hundredth of the graph does not reach a third of it, one of half the height does.
        const wxPoint third(graph.GetClientSize().x - 20, graph.GetClientSize().y * 2 / 3);
        const auto isBar = [&] { return ColourAt(Screen(graph), third) == *wxBLACK; };
        EXPECT_TRUE(WaitUntil(isBar));
        Choose(In<wxChoice>(open, 10001), 1);
        EXPECT_TRUE(WaitUntil([&] { return !isBar(); }));
        Choose(In<wxChoice>(open, 10001), 0);
        EXPECT_TRUE(WaitUntil(isBar));
        Press(WXK_ESCAPE);
    });
}

TEST_F(LevelsTest, BadTextKeepsTheDialogOpen) {
    auto* const dialog = MakeOneChannel();
    answers.ExpectDriven([](wxDialog& open) {
        auto& input = Control<Byte>(open, 10005);
        auto& output = Control<Byte>(open, 10006);
        input.GetHighText()->SetValue("300");
        output.GetLowText()->SetValue("-1");
        const auto ok = [&open] {
            wxCommandEvent event(wxEVT_BUTTON, wxID_OK);
            In(open, wxID_OK).ProcessWindowEvent(event);
        };
        ok();
        ASSERT_TRUE(open.IsModal());
        input.GetHighText()->SetValue("250");
        ok(); // the input is stored before the output is looked at
        ASSERT_TRUE(open.IsModal());
        output.GetLowText()->SetValue("1");
        ok();
    });
    answers.ExpectMessage("Validation conflict", "The value 300 is out of range [0,255]");
    answers.ExpectMessage("Validation conflict", "The value -1 is out of range [0,255]");
    EXPECT_EQ(wxID_OK, dialog->ShowModal());
    EXPECT_EQ((std::vector<Levels<Byte>>{{10, 250, 1.0, 1, 255}}), ParamsOf<Levels<Byte>>(*dialog));
}

TEST_F(LevelsTest, NothingIsPreviewedAfterTheEnd) {
    channels.Add(0, 255, 256);
    for (const int key : {int{WXK_ESCAPE}, int{WXK_RETURN}}) {
        auto* const dialog = MakeLevels<Byte>(channels, {{10, 200, 1.0, 0, 255}}, Names({"Gray"}));
        Run(*dialog, [&](wxDialog& open) {
            // Typed and not committed: the field loses the focus once the dialog is gone.
            TypeInto(*Control<Byte>(open, 10005).GetLowText(), "55");
            if (key == WXK_RETURN) {
                Press(key);
                Focus(In(open, wxID_OK));
            }
            TakePreviews();
            Press(key);
            EXPECT_TRUE(WaitUntil([&] { return !open.IsModal(); }));
        });
        Settle();
        EXPECT_EQ((Texts{}), TakePreviews());
        dialog->DoPreview();
        dialog->GeneratePreviewEvents(false);
        EXPECT_EQ((Texts{}), TakePreviews());
    }
}

TEST_F(LevelsTest, TheHiddenDialogOutlivesItsHistograms) {
    auto own_channels = std::make_unique<Channels<Byte>>();
    own_channels->Add(0, 255, 256).Add(0, 255, 256);
    auto* const dialog = MakeLevels<Byte>(*own_channels, {own[0], own[1]}, Names({"One", "Two"}));
    Run(*dialog, [](wxDialog&) { Press(WXK_ESCAPE); });
    own_channels.reset();
    dialog->Refresh();
    dialog->Update();
    Settle();
    dialog->Destroy(); // a reader of the histograms would be caught by the sanitizer
    Pump();
}

TEST_F(LevelsTest, WithoutAModalRunOkHides) {
    auto* const dialog = MakeOneChannel();
    ASSERT_TRUE(ShowAndWait(*dialog));
    Click(In(*dialog, wxID_OK));
    EXPECT_FALSE(dialog->IsShown());
    EXPECT_EQ(wxID_OK, dialog->GetReturnCode());
}

TEST_F(LevelsTest, ADialogCanGoWhileItIsOpen) {
    auto* const dialog = MakeThreeChannels();
    ASSERT_TRUE(ShowAndWait(*dialog));
    TypeInto(*Control<Byte>(*dialog, 10005).GetLowText(), "55");
    TakePreviews();
    dialog->Destroy();
    Settle();
    EXPECT_EQ((Texts{}), TakePreviews());
}

TEST_F(LevelsTest, FloatsAreShownWithSixDecimalsFirstAndWithTwoOnceChanged) {
    Channels<float> floats;
    floats.Add(0.0F, 512.0F, 257);
    // The step is 512 / 257 = 1.9922, so the values stand near the positions 0.125 / 1.9922 = 0 and
    // 256.5 / 1.9922 = 128.75, that is 129.
    auto* const dialog = MakeLevels<float>(floats, {{0.125F, 256.5F, 1.0, 0, 255}}, Names({"Gray"}));
    const int result = Run(*dialog, [&](wxDialog& open) {
        auto& input = Control<float>(open, 10005);
        EXPECT_EQ((Texts{"0.125000", "1", "256.500000"}), Fields(input));
        EXPECT_EQ(0, input.GetTriangles()->GetLeft());
        EXPECT_EQ(129, input.GetTriangles()->GetRight());
        TakePreviews();
        TypeInto(*input.GetHighText(), "300.126");
        Press(WXK_TAB);
        EXPECT_EQ((Texts{"0.125", "1", "300.13"}).back(), Fields(input).back());
        EXPECT_EQ((Texts{"0.125..300.130005 ^1 -> 0..255 in 0"}), TakePreviews());
        Click(In(open, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, result);
    EXPECT_EQ((std::vector<Levels<float>>{{0.125F, 300.13F, 1.0, 0, 255}}), ParamsOf<Levels<float>>(*dialog));
}

TEST_F(LevelsTest, EveryRangeOfFloatsIsAcceptedUntouchedAndReset) {
    std::mt19937 random(8);
    for (int i = 0; i < 200; ++i) {
        const FloatRange range = RandomRange(random, i);
        Channels<float> floats;
        floats.Add(range.first, range.second, 256);
        const std::vector<Levels<float>> whole = {{range.first, range.second, 1.0, 0, 255}};
        auto* const dialog = MakeLevels<float>(floats, whole, Names({"Gray"}));
        ASSERT_EQ((Texts{wxString::Format("%.9g..%.9g ^1 -> 0..255 in 0", static_cast<double>(range.first),
                                          static_cast<double>(range.second))
                             .utf8_string()}),
                  TakePreviews());
        dialog->TransferDataToWindow(); // as when it opens
        ASSERT_TRUE(IsAccepted(*dialog)) << range.first << " to " << range.second;
        ASSERT_EQ(whole, ParamsOf<Levels<float>>(*dialog));
        Control<float>(*dialog, 10005).SetHigh((range.first + range.second) / 2);
        wxCommandEvent reset(wxEVT_BUTTON, 10007);
        In(*dialog, 10007).ProcessWindowEvent(reset);
        ASSERT_TRUE(IsAccepted(*dialog)) << range.first << " to " << range.second << " reset";
        ASSERT_EQ(whole, ParamsOf<Levels<float>>(*dialog));
        dialog->Destroy();
        Pump();
    }
}

TEST_F(LevelsTest, ChoosingAnotherChannelLeavesTheDigitsOfTheFirst) {
    Channels<float> floats;
    floats.Add(0.0163F, 0.985977F, 256).Add(0.0F, 2.0F, 256);
    const std::vector<Levels<float>> whole = {{0.0163F, 0.985977F, 1.2345, 0, 255}, {0.0F, 2.0F, 1.0, 0, 255}};
    auto* const dialog = MakeLevels<float>(floats, whole, Names({"One", "Two"}));
    for (const int channel : {1, 0, 1, 0})
        Choose(Channel(*dialog), channel);
    EXPECT_TRUE(IsAccepted(*dialog));
    EXPECT_EQ(whole, ParamsOf<Levels<float>>(*dialog));
}

TEST_F(LevelsTest, LargeIntegersLoseDigitsInThePreviewAlone) {
    Channels<int> ints;
    ints.Add(16777210, 16777230, 21);
    auto* const dialog = MakeLevels<int>(ints, {{16777217, 16777219, 1.0, 0, 255}}, Names({"Gray"}));
    // Floats hold every second integer above 2^24 = 16777216; halfway goes to the even one.
    EXPECT_EQ((Texts{"16777216..16777220 ^1 -> 0..255 in 0"}), TakePreviews());
    EXPECT_EQ(wxID_OK, Run(*dialog, [](wxDialog& open) { Click(In(open, wxID_OK)); }));
    EXPECT_EQ((std::vector<Levels<int>>{{16777217, 16777219, 1.0, 0, 255}}), ParamsOf<Levels<int>>(*dialog));
}

TEST_F(LevelsTest, AChannelNamedAllIsTakenForAll) {
    channels.Add(0, 255, 256);
    auto* const dialog = MakeLevels<Byte>(channels, {own[0]}, Names({"All"}));
    EXPECT_EQ((Texts{"10..200 ^2 -> 5..250 in 0"}), TakePreviews());
    const AssertCatcher asserts;
    dialog->DoPreview();
    dialog->GeneratePreviewEvents(true);
    dialog->SelectChannel(-1);
    Texts conditions;
    for (const auto& entry : asserts.GetEntries())
        conditions.push_back(entry.file + " " + entry.function + " " + entry.condition);
    EXPECT_EQ((Texts{"dlg_levels zel::LevelsWidget::DoPreview All_params",
                     "dlg_levels zel::LevelsWidget::GeneratePreviewEvents All_params",
                     "dlg_levels zel::LevelsWidget::SelectChannel All_histdata",
                     "dlg_levels zel::LevelsWidget::SelectChannel All_params"}),
              conditions);
    EXPECT_EQ((Texts{}), TakePreviews());
}

TEST_F(LevelsTest, WrongArgumentsAreAsserted) {
    const AssertCatcher asserts;
    auto* const empty = MakeLevels<Byte>(channels, {}, Names({}));
    EXPECT_EQ((Texts{}), TakePreviews());
    channels.Add(0, 255, 256);
    auto* const unnamed = MakeLevels<Byte>(channels, {own[0]}, Names({}));
    auto* const unset = MakeLevels<Byte>(channels, {}, Names({"Gray"}));
    for (auto* const dialog : {empty, unnamed, unset}) {
        dialog->DoPreview();
        dialog->Destroy();
    }
    Texts conditions;
    for (const auto& entry : asserts.GetEntries()) {
        EXPECT_EQ("dlg_levels", entry.file);
        EXPECT_EQ("zel::LevelsWidget::LevelsWidget", entry.function);
        conditions.push_back(entry.condition);
    }
    EXPECT_EQ((Texts{"_HistData_vector.size()", "_HistData_vector.size() == channel_names.GetCount()",
                     "_HistData_vector.size() == params_vector.size()"}),
              conditions);
}

} // namespace
