#include "tests/mapping/rgb_module.h"
#include "tests/support/log_catcher.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

using namespace zel;
using namespace zel::test;

namespace {

using Colour = kep::RGB_generic<unsigned char>;
template <typename T>
using Levels = TLevelsParams<T, unsigned char>;
template <typename T>
using Thresholds = ThresParams<T>;
using Byte = unsigned char;
using Word = unsigned short;

Histogram<Byte> Bytes(const std::vector<Byte>& voxels) {
    return OfVoxels<Byte>(voxels);
}

} // namespace

TEST(RGBModule, BeginsUnstretchedWithAllChannels) {
    const ColourModule<Byte> module(Bytes({1, 2}), Bytes({100}), Bytes({}));
    EXPECT_EQ(module.GetStretchMode(), 0);
    EXPECT_EQ(module.GetPercentilValue(), 0.001);
    for (const int c : {0, 1, 2}) {
        EXPECT_EQ(module.GetRangeMin(c), 0);
        EXPECT_EQ(module.GetRangeMax(c), 255);
        EXPECT_EQ(module.GetLevels(c), (Levels<Byte>{0, 255, 1.0, 0, 255}));
        EXPECT_EQ(module.GetThresholds(c), (Thresholds<Byte>{0, 255}));
        EXPECT_TRUE(module.IsChannelShown(c));
    }
    EXPECT_EQ(module.ColourOf({1, 77, 254}), Colour(1, 77, 254));
}

TEST(RGBModule, WordsComeOutAsBytes) {
    const ColourModule<Word> module(OfVoxels<Word>({}));
    EXPECT_EQ(module.GetMappingTable(1).GetSize(), 65536U);
    EXPECT_EQ(module.GetRangeMax(2), 65535);
    // 257 values a level: 257 is 1, 32896 is 128, and half way between is rounded.
    EXPECT_EQ(module.ColourOf({257, 32896, 65535}), Colour(1, 128, 255));
    EXPECT_EQ(module.ColourOf({128, 129, 0}), Colour(0, 1, 0));
}

TEST(RGBModule, TablesCoverTheTypeWhateverTheHistograms) {
    const auto narrow = OfVoxels<Byte>({}, 50, 100);
    const ColourModule<Byte> module(narrow, Bytes({}), Histogram<Byte>());
    EXPECT_EQ(module.GetMappingTable(0).GetSize(), 256U);
    EXPECT_EQ(module.GetMappingTable(2).GetSize(), 256U);
    EXPECT_EQ(module.GetRangeMin(0), 50);
    EXPECT_EQ(module.GetRangeMax(0), 100);
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{50, 100, 1.0, 0, 255}));
    EXPECT_EQ(module(0, 49), 0);
    EXPECT_EQ(module(0, 75), 128); // 25 * 255 / 50 = 127.5
    EXPECT_EQ(module(0, 101), 255);
    // Bins 0 to 50 hold 50 to 100, and thresholds are held at bin numbers already when the module is made.
    EXPECT_EQ(module.GetThresholds(0), (Thresholds<Byte>{50, 50}));
    EXPECT_EQ(module.GetRangeMin(2), 0) << "without bins the whole type";
    EXPECT_EQ(module.GetRangeMax(2), 255);
}

TEST(RGBModule, LinearStretchGoesByEachChannel) {
    ColourModule<Byte> module(Bytes({10, 200}), Bytes({0, 100}), Bytes({50, 150}));
    LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetStretchMode(), 1);
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{10, 200, 1.0, 0, 255}));
    EXPECT_EQ(module.GetLevels(1), (Levels<Byte>{0, 100, 1.0, 0, 255}));
    EXPECT_EQ(module.GetLevels(2), (Levels<Byte>{50, 150, 1.0, 0, 255}));
    EXPECT_EQ(module.ColourOf({105, 50, 75}), Colour(128, 128, 64)); // 127.5, 127.5, 63.75
    EXPECT_EQ(log.GetEntries(), (LogCatcher::Entries{{wxLOG_Debug, "linear stretch 0 - 10 200"},
                                                     {wxLOG_Debug, "linear stretch 1 - 0 100"},
                                                     {wxLOG_Debug, "linear stretch 2 - 50 150"}}));
}

TEST(RGBModule, AConstantChannelIsShownOverItsRangeByTheLinearStretchAlone) {
    ColourModule<Byte> module(Bytes({10, 200}), Bytes({90, 90}), Bytes({}));
    const LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetLevels(1), (Levels<Byte>{0, 255, 1.0, 0, 255}));
    EXPECT_EQ(module.GetLevels(2), (Levels<Byte>{0, 255, 1.0, 0, 255})) << "an empty one too";
    EXPECT_EQ(module(1, 90), 90);
    module.Choose(4);
    EXPECT_EQ(module.GetLevels(1), (Levels<Byte>{90, 90, 1.0, 0, 255}));
    EXPECT_EQ(module(1, 90), 0);
    EXPECT_EQ(module(1, 91), 255);
}

TEST(RGBModule, PercentilStretchLeavesOutAShareAtEitherEnd) {
    std::vector<Byte> voxels(1000, 100);
    voxels[0] = 5; // a thousandth: reached by 5 itself
    voxels[1] = 250;
    ColourModule<Byte> module(Bytes(voxels));
    LogCatcher log;
    module.Choose(4);
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{5, 250, 1.0, 0, 255}));
    module.SetPercentilValue(0.0011);
    EXPECT_EQ(module.GetLevels(0).inMin, 5) << "nothing else happens";
    module.ResetMapping();
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{100, 100, 1.0, 0, 255}));
    EXPECT_EQ(log.GetEntries().front(), (LogCatcher::Entry{wxLOG_Debug, "percentil stretch 0 - 5 250"}));
}

TEST(RGBModule, EqualisationOnlyLogs) {
    ColourModule<Byte> module(Bytes({10, 200}));
    LogCatcher log;
    module.SetHistEqualStretch();
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{
                  {wxLOG_Error, "The function does nothing. It is implemented only for GRAY or float images."}}));
    EXPECT_EQ(module(0, 77), 77);
}

TEST(RGBModule, HiddenChannelsAreBlackAndKeepTheirTables) {
    ColourModule<Byte> module(Bytes({}));
    module.Choose(15, false);
    EXPECT_FALSE(module.IsChannelShown(1));
    EXPECT_EQ(module.ColourOf({1, 2, 3}), Colour(1, 0, 3));
    EXPECT_EQ(module(1, 2), 2);
    module.Choose(14, false);
    module.Choose(16, false);
    EXPECT_EQ(module.ColourOf({255, 255, 255}), Colour(0, 0, 0));
    module.Choose(16, true);
    EXPECT_EQ(module.ColourOf({1, 2, 3}), Colour(0, 0, 3));
    module.Choose(13);
    EXPECT_EQ(module.ColourOf({1, 2, 3}), Colour(1, 2, 3));
    EXPECT_EQ(module.GetStretchMode(), 0);
}

TEST(RGBModule, MapsEveryPixelOfABuffer) {
    const ColourModule<Word> module(OfVoxels<Word>({}));
    const std::vector<kep::RGB_generic<Word>> voxels{{0, 257, 514}, {771, 1028, 1285}, {65535, 0, 257}};
    ColourBuffer row(3, 1);
    module.Map(voxels.data(), row);
    EXPECT_EQ(row.data[0], Colour(0, 1, 2));
    EXPECT_EQ(row.data[1], Colour(3, 4, 5));
    EXPECT_EQ(row.data[2], Colour(255, 0, 1));
    ColourBuffer nothing(0, 5);
    module.Map(voxels.data(), nothing);
}

TEST(RGBModule, APreviewWithoutACurveLeavesTheTables) {
    ColourModule<Byte> module(Bytes({10, 200}));
    module.PreviewGamma(2.0, zel_allChannels);
    for (const double gamma : {-1.0, 0.0, 1e-50, std::numeric_limits<double>::quiet_NaN()}) {
        for (const int channel : {0, 1, 2, zel_allChannels})
            EXPECT_NO_THROW(module.PreviewGamma(gamma, channel)) << gamma;
        for (const int c : {0, 1, 2})
            EXPECT_EQ(module(c, 64), 128) << "sqrt(64 / 255) * 255 = 127.75";
    }
}

TEST(RGBModule, AChannelWithItsThresholdsAtTheEndsOfItsRangeKeepsItsLevels) {
    ColourModule<Byte> module(Bytes({10, 200}));
    const LogCatcher log;
    module.PreviewThresholds(100, 150, 0);
    EXPECT_EQ(module(0, 99), 0);
    EXPECT_EQ(module(0, 100), 255);
    EXPECT_EQ(module(0, 150), 255);
    EXPECT_EQ(module(0, 151), 0);
    EXPECT_EQ(module(1, 120), 120) << "the others are not touched";
    module.PreviewThresholds(0, 255, 0);
    EXPECT_EQ(module(0, 99), 99);
    module.PreviewThresholds(60, 70, 3);
    for (const int c : {0, 1, 2}) {
        EXPECT_EQ(module(c, 59), 0);
        EXPECT_EQ(module(c, 65), 255);
    }
    module.PreviewThresholds(0, 10, 4);
    module.PreviewThresholds(0, 10, -1);
    EXPECT_EQ(module(0, 65), 255) << "there is no such channel";
    EXPECT_EQ(module.GetThresholds(0), (Thresholds<Byte>{0, 255})) << "a preview lives in the tables alone";
    module.ResetMapping();
    EXPECT_EQ(module(2, 59), 59);
}

TEST(RGBModule, LevelsArePreviewedForOneChannelOrAll) {
    ColourModule<Byte> module(Bytes({10, 200}));
    zel_LevelsEvent green(10.9F, 20.9F, 1.0, 255.9F, 0.5F, 1);
    module.OnPreviewLevels(green); // from (10, 255) to (20, 0): the numbers are truncated
    EXPECT_EQ(module(1, 15), 128);
    EXPECT_EQ(module(0, 15), 15);
    zel_LevelsEvent all(0, 100, 1.0, 0, 255, 3);
    module.OnPreviewLevels(all);
    for (const int c : {0, 1, 2})
        EXPECT_EQ(module(c, 50), 128);
    zel_LevelsEvent none(0, 10, 1.0, 0, 255, 7);
    module.OnPreviewLevels(none);
    EXPECT_EQ(module(0, 50), 128);
    EXPECT_EQ(module.GetLevels(1), (Levels<Byte>{0, 255, 1.0, 0, 255}));
}

TEST(RGBModule, RangesShrinkWithTheHistograms) {
    ColourModule<Byte> module(Bytes({10, 200}));
    module.OnHistogramChange(SetOf(OfVoxels<Byte>({}, 50, 255), OfVoxels<Byte>({}, 0, 100), Histogram<Byte>()));
    EXPECT_EQ(module.GetRangeMin(0), 50);
    EXPECT_EQ(module.GetRangeMax(0), 255);
    EXPECT_EQ(module.GetRangeMin(1), 0);
    EXPECT_EQ(module.GetRangeMax(1), 100);
    EXPECT_EQ(module.GetRangeMax(2), 255) << "a channel without bins is left alone";
    EXPECT_EQ(module(1, 50), 128);
    module.OnHistogramChange(SetOf(Bytes({}), OfVoxels<Byte>({}, 120, 130), Bytes({})));
    EXPECT_EQ(module.GetRangeMin(0), 50) << "no range grows again";
    EXPECT_EQ(module.GetRangeMin(1), 120) << "nothing was left of the old one";
    EXPECT_EQ(module.GetRangeMax(1), 130);
}

TEST(RGBModule, ParametersAreHeldWithinTheRangeWhateverTheStretch) {
    ColourModule<Byte> module(Bytes({10, 200}));
    const LogCatcher log;
    module.Choose(3);
    module.OnHistogramChange(SetOf(OfVoxels<Byte>({20, 30}, 0, 100), Bytes({10, 200}), Bytes({10, 200})));
    EXPECT_EQ(module.GetThresholds(0), (Thresholds<Byte>{0, 100})) << "under the linear stretch too";
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{20, 30, 1.0, 0, 255}));
    module.Choose(6); // the levels as they are
    module.OnHistogramChange(SetOf(OfVoxels<Byte>({}, 0, 25), Bytes({}), Bytes({})));
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{20, 25, 1.0, 0, 255}));
    EXPECT_EQ(module(0, 25), 255);
    module.Choose(7);
    module.OnHistogramChange(SetOf(OfVoxels<Byte>({}, 0, 10), Bytes({}), Bytes({})));
    EXPECT_EQ(module.GetThresholds(0), (Thresholds<Byte>{0, 10}));
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{10, 10, 1.0, 0, 255})) << "held on either side";
}

TEST(RGBModule, ResetFollowsTheStretch) {
    ColourModule<Byte> module(Bytes({10, 200}));
    const LogCatcher log;
    for (const int entry : {2, 3, 4, 6, 7}) {
        module.Choose(entry);
        const auto levels = module.GetLevels(1);
        module.PreviewThresholds(77, 78, 3);
        module.ResetMapping();
        EXPECT_EQ(module.GetLevels(1), levels) << entry;
        EXPECT_NE(module(1, 77), 255) << entry;
        EXPECT_EQ(module.GetStretchMode(), entry - 2);
    }
}

TEST(RGBModule, HasDataIfAnyChannelHas) {
    EXPECT_FALSE(ColourModule<Byte>(Histogram<Byte>()).HasData());
    ColourModule<Byte> module(Histogram<Byte>(), Histogram<Byte>(), Bytes({1}));
    EXPECT_TRUE(module.HasData());
    const LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetLevels(0), (Levels<Byte>{0, 255, 1.0, 0, 255})) << "left out";
    // Commands that would ask, with a channel that has nothing to be asked about.
    module.zel_RGBMappingModule<Byte>::SetRange();
    module.zel_RGBMappingModule<Byte>::SetBitdepth();
    EXPECT_FALSE(module.zel_RGBMappingModule<Byte>::SetLevelsStretch());
    EXPECT_FALSE(module.zel_RGBMappingModule<Byte>::SetThreshold());
}
