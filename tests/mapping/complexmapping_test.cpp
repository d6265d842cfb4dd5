#include "mapping/zel_complexmapping.h"
#include "tests/mapping/counted.h"
#include "tests/support/log_catcher.h"
#include "viewer/zel_complexautofocus.h"

#include <wx/fileconf.h>
#include <wx/sstream.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace zel;
using namespace zel::test;

namespace {

using Colour = kep::RGB_generic<unsigned char>;
using Voxel = std::complex<float>;
using Levels = TLevelsParams<float, unsigned char>;
using Thresholds = ThresParams<float>;

constexpr float pi = 3.14159265F;

/// Real part 0 to 255, imaginary part -1 to 1, phase -pi to pi, amplitude 0 to 510.
HistogramSet<Voxel> Parts() {
    HistogramSet<Voxel> set;
    set[0].Init(0.0F, 255.0F, 256);
    set[1].Init(-1.0F, 1.0F, 256);
    set[2].Init(-pi, pi, 256);
    set[3].Init(0.0F, 510.0F, 256);
    return set;
}

struct Varying {
    bool real = true;
    bool imaginary = true;
    bool phase = true;
    bool amplitude = true;
};

/// A module whose dialogs are agreed to at once, with the parameters that they begin with.
class Module : public zel_ComplexMappingModule<float> {
public:
    explicit Module(const HistogramSet<Voxel>& parts = Parts(), const Varying& enabled = {})
        : zel_ComplexMappingModule<float>(nullptr, parts, enabled.real, enabled.imaginary, enabled.phase,
                                          enabled.amplitude) {}

    bool SetLevelsStretch() override { return true; }
    bool SetThreshold() override { return true; }

    void Choose(int entry, bool isChecked = true) {
        wxCommandEvent event(wxEVT_MENU, entry);
        event.SetInt(isChecked ? 1 : 0);
        OnMapping(event);
    }
    void Show(ComplexMode part) { Choose(17 + part); }
    /// The level of a value of the part shown.
    int operator()(float value) const { return GetMappingTable().Get(value); }
    Colour ColourOf(Voxel voxel) const {
        ColourBuffer buffer(1, 1);
        Map(&voxel, buffer);
        return buffer.data[0];
    }
};

Colour Gray(int level) {
    const auto value = static_cast<unsigned char>(level);
    return {value, value, value};
}

/// A module that says it shows a part which there is not.
class FifthPart : public Module {
public:
    ComplexMode GetShowMode() const override { return static_cast<ComplexMode>(complexModeCount); }
};

/// Also notes the source and the function that each entry names.
class PlaceCatcher : public LogCatcher {
public:
    std::vector<std::string> places;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo& info) override {
        LogCatcher::DoLogRecord(level, text, info);
        places.push_back(std::string(info.filename) + " " + info.func);
    }
};

} // namespace

TEST(ComplexModule, BeginsWithTheRangesOfItsParts) {
    const Module module;
    EXPECT_EQ(module.GetShowMode(), Real);
    EXPECT_EQ(module.GetStretchMode(), 0);
    EXPECT_EQ(module.GetPaletteMode(), 8);
    EXPECT_EQ(module.GetPercentilValue(), 0.001);
    EXPECT_EQ(module.GetRangeMin(Phase), -pi);
    EXPECT_EQ(module.GetRangeMax(Phase), pi);
    EXPECT_EQ(module.GetLevels(Imaginary), (Levels{-1.0F, 1.0F, 1.0, 0, 255}));
    EXPECT_EQ(module.GetThresholds(Amplitude), (Thresholds{0.0F, 510.0F}));
    EXPECT_EQ(module.GetMappingTable().GetSize(), 256U);
    EXPECT_EQ(module(128.0F), 128);
}

TEST(ComplexModule, ShowsTheFirstPartThatVaries) {
    EXPECT_EQ(Module(Parts(), {false, true, true, true}).GetShowMode(), Imaginary);
    EXPECT_EQ(Module(Parts(), {false, false, true, true}).GetShowMode(), Phase);
    const Module amplitude(Parts(), {false, false, false, true});
    EXPECT_EQ(amplitude.GetShowMode(), Amplitude);
    EXPECT_EQ(amplitude(510.0F), 255) << "with the table of that part";
    EXPECT_FALSE(amplitude.IsPartEnabled(Real));
    EXPECT_TRUE(amplitude.IsPartEnabled(Amplitude));
}

TEST(ComplexModule, WithoutAPartToShowThrowsACString) {
    try {
        const Module module(Parts(), {false, false, false, false});
        FAIL() << "was made";
    } catch (const char* text) {
        EXPECT_STREQ(text, "Complex: Shouldn't get here");
    }
}

TEST(ComplexModule, MapsTheValueOfThePartShown) {
    Module module;
    const Voxel voxel(3.0F, 0.5F);
    EXPECT_EQ(module.ColourOf(voxel), Gray(3));
    module.Show(Imaginary);
    EXPECT_EQ(module.ColourOf(voxel), Gray(191)); // 1.5 / 2 * 255 = 191.25
    module.Show(Phase);
    EXPECT_EQ(module.ColourOf({1.0F, 0.0F}), Gray(128)); // the middle, 127.5
    EXPECT_EQ(module.ColourOf({0.0F, 1.0F}), Gray(191)); // three quarters
    EXPECT_EQ(module.ColourOf({-1.0F, 0.0F}), Gray(255));
    EXPECT_EQ(module.ColourOf({-1.0F, -0.0F}), Gray(0));
    module.Show(Amplitude);
    EXPECT_EQ(module.ColourOf({30.0F, 40.0F}), Gray(25)); // 50 / 510 * 255
}

TEST(ComplexModule, MapsMoreVoxelsThanAreComputedAtOnce) {
    Module module;
    module.Choose(9); // a palette
    std::vector<Voxel> voxels;
    for (int i = 0; i < 10007; ++i)
        voxels.emplace_back(static_cast<float>(i % 256), 0.0F);
    ColourBuffer buffer(10007, 1);
    module.Map(voxels.data(), buffer);
    for (std::size_t i = 0; i < voxels.size(); ++i) {
        const int level = static_cast<int>(i % 256);
        ASSERT_EQ(buffer.data[i], level == 255 ? Colour(255, 0, 0) : Gray(level)) << i;
    }
    ColourBuffer nothing(0, 0);
    module.Map(voxels.data(), nothing);
}

TEST(ComplexModule, NotANumberIsBlack) {
    Module module;
    EXPECT_EQ(module.ColourOf({std::numeric_limits<float>::quiet_NaN(), 1.0F}), Gray(0));
    module.Show(Phase);
    EXPECT_EQ(module.ColourOf({std::numeric_limits<float>::quiet_NaN(), 1.0F}), Gray(0));
}

TEST(ComplexModule, APartThatThereIsNotLeavesThePictureAsItIs) {
    const FifthPart module;
    const Voxel voxel(3.0F, 4.0F);
    ColourBuffer buffer(1, 1);
    buffer.data[0] = Colour(1, 2, 3);
    const LogCatcher log;
    module.Map(&voxel, buffer);
    EXPECT_EQ(buffer.data[0], Colour(1, 2, 3));
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Error, "Don't know how to display this mode of complex numbers."}}));
}

TEST(ComplexModule, APartThatThereIsNotHasNoAutofocus) {
    const FifthPart module;
    kep::Image3d<Voxel> frame;
    frame.MakeRoom(2, 2, 2);
    kep::Image3d<Voxel> autofocus;
    autofocus.MakeRoom(1, 1, 1);
    autofocus.SetVoxel(0, Voxel(5.0F, 6.0F));
    const PlaceCatcher log;
    MyGet_AF_XY(frame, autofocus, module);
    MyGet_AF_XZ(frame, autofocus, module);
    MyGet_AF_YZ(frame, autofocus, module);
    EXPECT_EQ(autofocus.GetNumVoxels(), 1U);
    EXPECT_EQ(autofocus.GetVoxel(0), Voxel(5.0F, 6.0F));
    const LogCatcher::Entry entry{wxLOG_Error, "Don't know how to 'GetAF' in this mode of complex numbers."};
    EXPECT_EQ(log.GetEntries(), (LogCatcher::Entries{entry, entry, entry}));
    EXPECT_EQ(log.places,
              (std::vector<std::string>{"zel_imagecanvas3d zel::MyGet_AF_XY", "zel_imagecanvas3d zel::MyGet_AF_XZ",
                                        "zel_imagecanvas3d zel::MyGet_AF_YZ"}));
}

TEST(ComplexModule, EachPartKeepsItsOwnLevels) {
    HistogramSet<Voxel> parts = Parts();
    parts[0][100] = 1;
    parts[0][200] = 1;
    parts[2][0] = 1;
    parts[2][255] = 1;
    Module module(parts);
    const LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetLevels(Real), (Levels{100.0F, 200.0F, 1.0, 0, 255}));
    EXPECT_EQ(module.GetLevels(Imaginary), (Levels{-1.0F, 1.0F, 1.0, 0, 255})) << "only the part shown is stretched";
    module.Choose(6); // the levels as they are
    module.Show(Phase);
    // Entry 191 stands for pi * (191 * 2 / 255 - 1) = pi * 0.498, and half of pi is looked up there.
    EXPECT_EQ(module(pi / 2), 127);
    EXPECT_EQ(module.GetLevels(Phase), (Levels{0.0F, pi, 1.0, 0, 255})) << "held at bin numbers, 0 to 255";
    module.Show(Real);
    EXPECT_EQ(module.GetLevels(Real), (Levels{100.0F, 200.0F, 1.0, 0, 255}));
    EXPECT_EQ(module(150.0F), 128);
}

TEST(ComplexModule, AStretchIsMadeAnewForANewPart) {
    HistogramSet<Voxel> parts = Parts();
    parts[0][100] = 1;
    parts[0][200] = 1;
    parts[3][10] = 1; // 20
    parts[3][20] = 1; // 40
    Module module(parts);
    LogCatcher log;
    module.Choose(3);
    module.Show(Amplitude);
    EXPECT_EQ(module.GetStretchMode(), 1);
    EXPECT_EQ(module.GetLevels(Amplitude), (Levels{20.0F, 40.0F, 1.0, 0, 255}));
    EXPECT_EQ(module.ColourOf({0.0F, 40.0F}), Gray(255));
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Debug, "linear stretch 100 200"}, {wxLOG_Debug, "linear stretch 20 40"}}));
}

TEST(ComplexModule, ANewPartBeginsWithTheCurveOfItsLevelsEvenUnderThresholds) {
    Module module;
    module.Choose(7);
    module.ResetMapping();
    EXPECT_EQ(module(1.0F), 255) << "all between the thresholds";
    module.Show(Amplitude);
    EXPECT_EQ(module(255.0F), 128) << "the levels, until the next reset";
    EXPECT_EQ(module.GetStretchMode(), 5);
    module.ResetMapping();
    EXPECT_EQ(module(255.0F), 255);
    module.Show(Amplitude); // the same again
    EXPECT_EQ(module(255.0F), 128);
}

TEST(ComplexModule, AnEntryThatIsNotCheckedOrNotEnabledChangesNoPart) {
    Module module(Parts(), {true, false, true, true});
    module.Show(Imaginary);
    EXPECT_EQ(module.GetShowMode(), Real);
    module.Choose(19, false);
    EXPECT_EQ(module.GetShowMode(), Real);
    module.Choose(19, true);
    EXPECT_EQ(module.GetShowMode(), Phase);
}

TEST(ComplexModule, PalettesAreCommonToTheParts) {
    Module module;
    module.Choose(10);
    EXPECT_EQ(module.GetPaletteMode(), 10);
    EXPECT_EQ(module.ColourOf({1.0F, 0.0F}), Colour(0, 255, 0));
    module.Show(Amplitude);
    EXPECT_EQ(module.ColourOf({2.0F, 0.0F}), Colour(0, 255, 0));
    EXPECT_EQ(module.ColourOf({0.0F, 0.0F}), Gray(0));
    module.Choose(8);
    EXPECT_EQ(module.ColourOf({2.0F, 0.0F}), Gray(1));
}

TEST(ComplexModule, PreviewsLiveInTheTableOfThePartShown) {
    Module module;
    module.Show(Imaginary);
    zel_LevelsEvent levels(-0.5F, 0.5F, 1.0, 0, 255, 2); // the channel is of no account
    module.OnPreviewLevels(levels);
    EXPECT_EQ(module(0.25F), 191);
    zel_ThresholdingEvent thresholds(0.5F, 2.0F, 1);
    module.OnPreviewThresholding(thresholds);
    EXPECT_EQ(module(0.4F), 0);
    EXPECT_EQ(module(0.6F), 255);
    EXPECT_EQ(module.GetLevels(Imaginary), (Levels{-1.0F, 1.0F, 1.0, 0, 255}));
    EXPECT_EQ(module.GetThresholds(Imaginary), (Thresholds{-1.0F, 1.0F}));
}

TEST(ComplexModule, RangesShrinkPartByPart) {
    Module module;
    HistogramSet<Voxel> parts = Parts();
    parts[0].Init(100.0F, 300.0F, 256);
    parts[1].Init(5.0F, 6.0F, 256);
    parts[3] = Histogram<float>();
    module.OnHistogramChange(parts);
    EXPECT_EQ(module.GetRangeMin(Real), 100.0F);
    EXPECT_EQ(module.GetRangeMax(Real), 255.0F);
    EXPECT_EQ(module.GetRangeMin(Imaginary), 5.0F) << "nothing was left of the old one";
    EXPECT_EQ(module.GetRangeMax(Imaginary), 6.0F);
    EXPECT_EQ(module.GetRangeMax(Phase), pi);
    EXPECT_EQ(module.GetRangeMax(Amplitude), 510.0F) << "a part without bins is left alone";
    EXPECT_EQ(module.GetLevels(Real), (Levels{100.0F, 255.0F, 1.0, 0, 255}));
    EXPECT_TRUE(module.HasData());
    module.OnHistogramChange(HistogramSet<Voxel>());
    EXPECT_FALSE(module.HasData());
}

TEST(ComplexModule, KeepsNothingInAConfiguration) {
    wxStringInputStream nothing("");
    wxFileConfig config(nothing);
    LogCatcher log;
    Module module;
    module.ReadFromConfig(config);
    module.WriteToConfig(config);
    module.ReadLevelsFromConfig(config);
    module.WriteLevelsToConfig(config);
    LogCatcher::Entries expected;
    for (const char* const function :
         {"ReadFromConfig", "WriteToConfig", "ReadLevelsFromConfig", "WriteLevelsToConfig"})
        expected.push_back(
            {wxLOG_Error, std::string("zel::zel_ComplexMappingModule<float>::") + function + ": Not implemented"});
    EXPECT_EQ(log.GetEntries(), expected);
    EXPECT_EQ(config.GetNumberOfEntries(true), 0U);
}
