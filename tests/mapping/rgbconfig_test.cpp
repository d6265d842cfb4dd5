#include "tests/mapping/rgb_module.h"
#include "tests/support/log_catcher.h"
#include "tests/support/scratch_folder.h"

#include <wx/fileconf.h>
#include <wx/sstream.h>
#include <wx/wfstream.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

using Byte = unsigned char;
using Word = unsigned short;

/// A configuration of these lines.
std::unique_ptr<wxFileConfig> ConfigOf(const wxString& text) {
    wxStringInputStream stream(text);
    return std::make_unique<wxFileConfig>(stream);
}

wxString TextOf(wxFileConfig& config) {
    wxStringOutputStream stream;
    config.Save(stream);
    return stream.GetString();
}

const char* const everyKey = "RGBMAP_STRETCH_MODE=6\n"
                             "RGBMAP_PERCENTIL_VALUE=0.25\n"
                             "RGBMAP_MIN_RED=1\nRGBMAP_MIN_GREEN=2\nRGBMAP_MIN_BLUE=3\n"
                             "RGBMAP_MAX_RED=201\nRGBMAP_MAX_GREEN=202\nRGBMAP_MAX_BLUE=203\n"
                             "RGBMAP_SHOW_RED=0\nRGBMAP_SHOW_GREEN=1\nRGBMAP_SHOW_BLUE=0\n"
                             "RGBMAP_THRES_RMIN=11\nRGBMAP_THRES_GMIN=12\nRGBMAP_THRES_BMIN=13\n"
                             "RGBMAP_THRES_RMAX=91\nRGBMAP_THRES_GMAX=92\nRGBMAP_THRES_BMAX=93\n"
                             "RGBMAP_LEVELS_IMIN_RED=21\nRGBMAP_LEVELS_IMAX_RED=101\n"
                             "RGBMAP_LEVELS_IGAMMA_RED=1.5\n"
                             "RGBMAP_LEVELS_OMIN_RED=5\nRGBMAP_LEVELS_OMAX_RED=250\n"
                             "RGBMAP_LEVELS_IMIN_GREEN=22\nRGBMAP_LEVELS_IMAX_GREEN=102\n"
                             "RGBMAP_LEVELS_IGAMMA_GREEN=2\n"
                             "RGBMAP_LEVELS_OMIN_GREEN=6\nRGBMAP_LEVELS_OMAX_GREEN=251\n"
                             "RGBMAP_LEVELS_IMIN_BLUE=23\nRGBMAP_LEVELS_IMAX_BLUE=103\n"
                             "RGBMAP_LEVELS_IGAMMA_BLUE=0.5\n"
                             "RGBMAP_LEVELS_OMIN_BLUE=255\nRGBMAP_LEVELS_OMAX_BLUE=0\n";

void ExpectEveryKey(const zel_RGBMappingModule<Byte>& module) {
    EXPECT_EQ(module.GetStretchMode(), 4);
    EXPECT_EQ(module.GetPercentilValue(), 0.25);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(module.GetRangeMin(c), 1 + c);
        EXPECT_EQ(module.GetRangeMax(c), 201 + c);
        EXPECT_EQ(module.IsChannelShown(c), c == 1);
        EXPECT_EQ(module.GetThresholds(c).lower, 11 + c);
        EXPECT_EQ(module.GetThresholds(c).upper, 91 + c);
        EXPECT_EQ(module.GetLevels(c).inMin, 21 + c);
        EXPECT_EQ(module.GetLevels(c).inMax, 101 + c);
    }
    EXPECT_EQ(module.GetLevels(0).gamma, 1.5);
    EXPECT_EQ(module.GetLevels(1).gamma, 2.0);
    EXPECT_EQ(module.GetLevels(2).gamma, 0.5);
    EXPECT_EQ(module.GetLevels(0).outMin, 5);
    EXPECT_EQ(module.GetLevels(0).outMax, 250);
    EXPECT_EQ(module.GetLevels(2).outMin, 255);
    EXPECT_EQ(module.GetLevels(2).outMax, 0);
}

} // namespace

TEST(RGBConfig, AnEmptyOneGivesTheDefaults) {
    ColourModule<Word> module(OfVoxels<Word>({}, 100, 200));
    const LogCatcher log;
    module.Choose(3);
    module.Choose(14, false);
    module.SetPercentilValue(0.5);
    module.ReadFromConfig(*ConfigOf(""));
    EXPECT_EQ(module.GetStretchMode(), 0);
    EXPECT_EQ(module.GetPercentilValue(), 0.001);
    for (const int c : {0, 1, 2}) {
        EXPECT_EQ(module.GetRangeMin(c), 0);
        EXPECT_EQ(module.GetRangeMax(c), 65535);
        EXPECT_TRUE(module.IsChannelShown(c));
        EXPECT_EQ(module.GetThresholds(c), (ThresParams<Word>{0, 65535}));
        EXPECT_EQ(module.GetLevels(c), (TLevelsParams<Word, Byte>{0, 65535, 1.0, 0, 255}));
    }
}

TEST(RGBConfig, EveryKeyHasItsField) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(*ConfigOf(everyKey));
    ExpectEveryKey(module);
    EXPECT_EQ(module(0, 77), 77) << "no table is made";
    module.ResetMapping();
    EXPECT_EQ(module(0, 21), 5);
    EXPECT_EQ(module(0, 101), 250);
    EXPECT_EQ(module(2, 23), 255);
    EXPECT_EQ(module(2, 103), 0);
}

TEST(RGBConfig, IsWrittenInTheOrderOfItsKeysAsDecimalNumbers) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(*ConfigOf(everyKey));
    const auto config = ConfigOf("");
    module.WriteToConfig(*config);
    EXPECT_EQ(TextOf(*config), everyKey);
}

TEST(RGBConfig, TheLevelsAlsoGoAlone) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadLevelsFromConfig(*ConfigOf(everyKey));
    EXPECT_EQ(module.GetLevels(1), (TLevelsParams<Byte, Byte>{22, 102, 2.0, 6, 251}));
    EXPECT_EQ(module.GetStretchMode(), 0);
    EXPECT_EQ(module.GetRangeMin(0), 0);
    const auto config = ConfigOf("");
    module.WriteLevelsToConfig(*config);
    EXPECT_EQ(config->GetNumberOfEntries(true), 15U);
    EXPECT_EQ(config->ReadLong("RGBMAP_LEVELS_OMAX_GREEN", -1), 251);
}

TEST(RGBConfig, GoesRoundByAFile) {
    const ScratchFolder folder;
    const wxString name = wxString::FromUTF8(folder / "zel.conf");
    {
        ColourModule<Byte> module(OfVoxels<Byte>({}));
        module.ReadFromConfig(*ConfigOf(everyKey));
        const auto config = ConfigOf("");
        config->SetPath("/viewer/mapping");
        module.WriteToConfig(*config);
        wxFFileOutputStream file(name);
        EXPECT_TRUE(config->Save(file));
    }
    wxFFileInputStream file(name);
    wxFileConfig config(file);
    EXPECT_FALSE(config.HasEntry("RGBMAP_STRETCH_MODE")) << "the path is the caller's";
    config.SetPath("/viewer/mapping");
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(config);
    ExpectEveryKey(module);
}

TEST(RGBConfig, WordsGoRoundWhole) {
    ColourModule<Word> module(OfVoxels<Word>({}, 300, 65000));
    const auto config = ConfigOf("");
    module.WriteToConfig(*config);
    EXPECT_EQ(config->ReadLong("RGBMAP_MAX_BLUE", -1), 65000);
    ColourModule<Word> other(OfVoxels<Word>({}));
    other.ReadFromConfig(*config);
    EXPECT_EQ(other.GetRangeMin(0), 300);
    EXPECT_EQ(other.GetRangeMax(2), 65000);
}

TEST(RGBConfig, NumbersAreTruncatedToTheirFields) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(*ConfigOf("RGBMAP_MIN_RED=257\nRGBMAP_MAX_RED=-1\nRGBMAP_LEVELS_OMAX_BLUE=300\n"));
    EXPECT_EQ(module.GetRangeMin(0), 1);
    EXPECT_EQ(module.GetRangeMax(0), 255);
    EXPECT_EQ(module.GetLevels(2).outMax, 44);
}

TEST(RGBConfig, AValueThatIsNoNumberIsAMissingOne) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(*ConfigOf("RGBMAP_MIN_RED=red\nRGBMAP_PERCENTIL_VALUE=much\n"));
    EXPECT_EQ(module.GetRangeMin(0), 0);
    EXPECT_EQ(module.GetPercentilValue(), 0.001);
}

TEST(RGBConfig, AStretchThatIsNoneBlackensThePicture) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    LogCatcher log;
    for (const char* const mode : {"8", "1", "0", "-3", "2147483647", "-2147483648"}) {
        module.ReadFromConfig(*ConfigOf(wxString("RGBMAP_STRETCH_MODE=") + mode));
        module.ResetMapping();
        EXPECT_EQ(module(0, 255), 0) << mode;
        module.Choose(2);
        EXPECT_EQ(module(0, 255), 255) << "and any stretch of the menu ends that";
    }
    EXPECT_TRUE(log.GetEntries().empty());
    module.ReadFromConfig(*ConfigOf("RGBMAP_STRETCH_MODE=5"));
    for (int i = 0; i < 2; ++i)
        module.ResetMapping();
    EXPECT_EQ(module(0, 255), 0);
    EXPECT_EQ(module.GetStretchMode(), 3);
    const LogCatcher::Entry entry{wxLOG_Error,
                                  "The function does nothing. It is implemented only for GRAY or float images."};
    EXPECT_EQ(log.GetEntries(), (LogCatcher::Entries{entry, entry})) << "each time";
}

TEST(RGBConfig, AGammaThatIsNoneIsRefusedByTheTables) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.ReadFromConfig(*ConfigOf("RGBMAP_STRETCH_MODE=6\nRGBMAP_LEVELS_IGAMMA_GREEN=0\n"));
    EXPECT_THROW(module.ResetMapping(), kep::LibException);
    module.ReadFromConfig(*ConfigOf("RGBMAP_STRETCH_MODE=6\nRGBMAP_LEVELS_IGAMMA_GREEN=-1\n"));
    EXPECT_THROW(module.ResetMapping(), kep::LibException);
}

TEST(RGBConfig, DoublesHaveSixDigits) {
    ColourModule<Byte> module(OfVoxels<Byte>({}));
    module.SetPercentilValue(0.123456789);
    const auto config = ConfigOf("");
    module.WriteToConfig(*config);
    EXPECT_EQ(config->Read("RGBMAP_PERCENTIL_VALUE"), "0.123457");
}
