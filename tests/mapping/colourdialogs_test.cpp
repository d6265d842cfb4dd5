// The dialogs of colour and complex images, driven by hand, with the picture beside them.

#include "dialogs/zel_minmaxctrl.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/user.h"

#include <wx/choice.h>
#include <wx/fileconf.h>
#include <wx/spinctrl.h>
#include <wx/sstream.h>

using namespace zel;
using namespace zel::test;

namespace {

using Byte = unsigned char;
using Colour8 = kep::RGB_generic<Byte>;
using Complex = std::complex<float>;
using ByteLevels = TLevelsParams<Byte, Byte>;
using ByteThresholds = ThresParams<Byte>;
using Texts = std::vector<std::string>;
using ColourViewer = MappedViewer<Colour8, zel_RGBMappingModule<Byte>>;
using ComplexViewer = MappedViewer<Complex, zel_ComplexMappingModule<float>>;

class ColourDialogs : public GuiTest {
protected:
    /// Chooses an entry of the menu that opens a dialog, and drives it.
    template <typename Viewer>
    void Choose(Viewer& viewer, int entry, const std::function<void(wxDialog&)>& drive) {
        answers.ExpectDriven(drive); // wherever it lies: the picture is not read from the screen
        viewer.Choose(entry);
        EXPECT_EQ(answers.GetPending(), 0U);
    }
    template <typename T>
    static VariableMinMaxCtrl<T>& Input(const wxDialog& dialog) {
        return In<VariableMinMaxCtrl<T>>(dialog, 10005);
    }
    template <typename T>
    static void TypeRange(const wxDialog& dialog, const std::string& low, const std::string& high) {
        TypeInto(*Input<T>(dialog).GetLowText(), low);
        Press(WXK_RETURN);
        TypeInto(*Input<T>(dialog).GetHighText(), high);
        Press(WXK_RETURN);
    }
    static Texts Channels(const wxDialog& dialog) {
        Texts names;
        for (const wxString& name : In<wxChoice>(dialog, 10002).GetStrings())
            names.push_back(name.utf8_string());
        return names;
    }
    static void ChooseChannel(const wxDialog& dialog, const std::string& name) {
        auto& choice = In<wxChoice>(dialog, 10002);
        ASSERT_TRUE(choice.SetStringSelection(name));
        wxCommandEvent event(wxEVT_CHOICE, choice.GetId());
        event.SetInt(choice.GetSelection());
        event.SetString(name);
        event.SetEventObject(&choice);
        choice.ProcessWindowEvent(event);
    }

    LogCatcher toolkitLog;
    DialogAnswers answers;
};

std::unique_ptr<mor::Image4d<Colour8>> Coloured() {
    return MakeImage<Colour8>({40, 30, 9}, 1, [](auto, auto, auto, auto) { return Colour8(50, 100, 200); });
}

/// Real part 1 to 40 along x, imaginary part 0 to 29 along y.
std::unique_ptr<mor::Image4d<Complex>> Ramps() {
    return MakeImage<Complex>({40, 30, 9}, 1, [](auto x, auto y, auto, auto) {
        return Complex(static_cast<float>(x + 1), static_cast<float>(y));
    });
}

} // namespace

TEST_F(ColourDialogs, LevelsOfAllChannelsAreSeenAndKept) {
    ColourViewer viewer(Coloured());
    Choose(viewer, zel_ME_LEVELS, [&](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "Adjust Levels");
        EXPECT_EQ(Channels(dialog), (Texts{"Red", "Green", "Blue", "All"}));
        ChooseChannel(dialog, "All");
        TypeRange<Byte>(dialog, "0", "200");
        EXPECT_EQ(viewer.Middle(), wxColour(64, 128, 255)); // 63.75, 127.5
        EXPECT_EQ(viewer.module->GetLevels(0), (ByteLevels{0, 255, 1.0, 0, 255})) << "until OK";
        Click(In(dialog, wxID_OK));
    });
    for (const int c : {0, 1, 2})
        EXPECT_EQ(viewer.module->GetLevels(c), (ByteLevels{0, 200, 1.0, 0, 255}));
    EXPECT_EQ(viewer.module->GetStretchMode(), 4);
    EXPECT_EQ(viewer.Middle(), wxColour(64, 128, 255));
}

TEST_F(ColourDialogs, LevelsOfOneChannelLeaveTheOthersAlone) {
    ColourViewer viewer(Coloured());
    Choose(viewer, zel_ME_LEVELS, [&](wxDialog& dialog) {
        ChooseChannel(dialog, "Green");
        TypeRange<Byte>(dialog, "100", "150");
        EXPECT_EQ(viewer.Middle(), wxColour(50, 0, 200));
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(viewer.module->GetLevels(0), (ByteLevels{0, 255, 1.0, 0, 255}));
    EXPECT_EQ(viewer.module->GetLevels(1), (ByteLevels{100, 150, 1.0, 0, 255}));
    EXPECT_EQ(viewer.Middle(), wxColour(50, 0, 200));
}

TEST_F(ColourDialogs, AChannelIsThresholdedAndTheOthersKeepTheirLevels) {
    ColourViewer viewer(Coloured());
    Choose(viewer, zel_ME_THRESHOLD, [&](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "Adjust Thresholds");
        ChooseChannel(dialog, "Red");
        TypeRange<Byte>(dialog, "40", "60");
        EXPECT_EQ(viewer.Middle(), wxColour(255, 100, 200));
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(viewer.module->GetThresholds(0), (ByteThresholds{40, 60}));
    EXPECT_EQ(viewer.module->GetThresholds(1), (ByteThresholds{0, 255}));
    EXPECT_EQ(viewer.Middle(), wxColour(255, 100, 200));

    // Levels tried and given up bring the thresholds back, and thresholds too.
    Choose(viewer, zel_ME_LEVELS, [&](wxDialog& dialog) {
        ChooseChannel(dialog, "All");
        TypeRange<Byte>(dialog, "0", "200");
        EXPECT_EQ(viewer.Middle(), wxColour(64, 128, 255));
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(viewer.Middle(), wxColour(255, 100, 200));
    EXPECT_EQ(viewer.module->GetStretchMode(), 5);
    Choose(viewer, zel_ME_THRESHOLD, [&](wxDialog& dialog) {
        ChooseChannel(dialog, "Blue");
        TypeRange<Byte>(dialog, "10", "20");
        EXPECT_EQ(viewer.Middle().Blue(), 0);
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(viewer.Middle(), wxColour(255, 100, 200));
}

TEST_F(ColourDialogs, ARangeIsGivenToAllChannelsByAButton) {
    ColourViewer viewer(Coloured());
    Choose(viewer, zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "Set Range");
        EXPECT_EQ(In(dialog, 10006).GetLabel(), "0");
        EXPECT_EQ(In(dialog, 10017).GetLabel(), "255");
        TypeInto(In<wxTextCtrl>(dialog, 10009), "200");
        EXPECT_TRUE(WaitUntil([&] { return In(dialog, 10010).IsEnabled(); }));
        Click(In(dialog, 10010));
        EXPECT_TRUE(WaitUntil([&] { return In<wxTextCtrl>(dialog, 10019).GetValue() == "200"; }));
        Click(In(dialog, wxID_OK));
    });
    for (const int c : {0, 1, 2})
        EXPECT_EQ(viewer.module->GetRangeMax(c), 200);
    EXPECT_EQ(viewer.Middle(), wxColour(64, 128, 255)) << "without a stretch the range is what is shown";
    EXPECT_EQ(viewer.TakeLog(), (std::vector<std::string>{"changed", "command 6040"}));
    Choose(viewer, zel_ME_RANGE, [&](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10013), "7");
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(viewer.module->GetRangeMin(1), 0);

    // Channels of different ranges have no entry for all of them.
    Choose(viewer, zel_ME_RANGE, [&](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10013), "7");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(viewer.module->GetRangeMin(1), 7);
    Choose(viewer, zel_ME_LEVELS, [&](wxDialog& dialog) {
        EXPECT_EQ(Channels(dialog), (Texts{"Red", "Green", "Blue"}));
        Click(In(dialog, wxID_CANCEL));
    });
}

TEST_F(ColourDialogs, TheBitDepthIsThatOfTheLeastChannel) {
    using Colour16 = kep::RGB_generic<unsigned short>;
    MappedViewer<Colour16, zel_RGBMappingModule<unsigned short>> viewer(
        MakeImage<Colour16>({40, 30, 9}, 1, [](auto, auto, auto, auto) { return Colour16(1000, 2000, 4095); }));
    const auto setBits = [&](int expected, int bits) {
        Choose(viewer, zel_ME_BITDEPTH, [=](wxDialog& dialog) {
            EXPECT_EQ(dialog.GetTitle(), "Image Bit Depth");
            for (wxWindow* const child : dialog.GetChildren())
                if (auto* const number = dynamic_cast<wxSpinCtrl*>(child)) {
                    EXPECT_EQ(number->GetValue(), expected);
                    EXPECT_EQ(number->GetMax(), 16);
                    number->SetValue(bits);
                }
            Click(In(dialog, wxID_OK));
        });
    };
    setBits(16, 12);
    for (const int c : {0, 1, 2})
        EXPECT_EQ(viewer.module->GetRangeMax(c), 4095);
    EXPECT_EQ(viewer.Middle(), wxColour(62, 125, 255)); // 62.3, 124.5
    setBits(12, 11);
    EXPECT_EQ(viewer.module->GetRangeMax(2), 2047);
}

TEST_F(ColourDialogs, DialogsOpenHeldWithinTheRangeAfterAConfiguration) {
    ColourViewer viewer(Coloured());
    Choose(viewer, zel_ME_RANGE, [&](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10009), "99");
        Click(In(dialog, wxID_OK));
    });
    wxStringInputStream stream("RGBMAP_MAX_RED=60\nRGBMAP_THRES_RMIN=80\nRGBMAP_THRES_RMAX=90\n");
    wxFileConfig config(stream);
    viewer.module->ReadFromConfig(config);
    Choose(viewer, zel_ME_THRESHOLD, [&](wxDialog& dialog) {
        EXPECT_EQ(Input<Byte>(dialog).GetLowText()->GetValue(), "60");
        EXPECT_EQ(Input<Byte>(dialog).GetHighText()->GetValue(), "60");
        Click(In(dialog, wxID_OK));
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); })) << "nothing is refused";
    });
    EXPECT_EQ(viewer.module->GetThresholds(0), (ByteThresholds{60, 60}));
}

TEST_F(ColourDialogs, APartHasLevelsThresholdsAndRangeOfItsOwn) {
    ComplexViewer viewer(Ramps());
    viewer.Choose(zel_firstPartEntry + Imaginary);
    Choose(viewer, zel_ME_LEVELS, [&](wxDialog& dialog) {
        EXPECT_EQ(Channels(dialog), (Texts{"Gray"}));
        EXPECT_EQ(Input<float>(dialog).GetHighText()->GetValue(), "29.000000");
        TypeRange<float>(dialog, "5", "15");
        EXPECT_EQ(viewer.Middle().Red(), 255) << "15";
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(viewer.module->GetLevels(Imaginary), (TLevelsParams<float, Byte>{5.0F, 15.0F, 1.0, 0, 255}));
    EXPECT_EQ(viewer.module->GetLevels(Real), (TLevelsParams<float, Byte>{1.0F, 40.0F, 1.0, 0, 255}));
    Choose(viewer, zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ(In(dialog, 10002).GetLabel(), "29.000000");
        TypeInto(In<wxTextCtrl>(dialog, 10005), "20");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(viewer.module->GetRangeMax(Imaginary), 20.0F);
    EXPECT_EQ(viewer.module->GetRangeMax(Real), 40.0F);
    Choose(viewer, zel_ME_THRESHOLD, [&](wxDialog& dialog) {
        TypeRange<float>(dialog, "0", "10");
        EXPECT_EQ(viewer.Middle().Red(), 0);
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(viewer.Middle().Red(), 255) << "the curve of the levels";
    EXPECT_EQ(viewer.module->GetThresholds(Imaginary), (ThresParams<float>{0.0F, 29.0F}));
}
