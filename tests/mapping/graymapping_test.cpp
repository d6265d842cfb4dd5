#include "tests/mapping/gray_module.h"
#include "tests/support/log_catcher.h"

#include <wx/fileconf.h>
#include <wx/sstream.h>

#include <gtest/gtest.h>

#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

template <typename T>
using Levels = TLevelsParams<T, unsigned char>;
template <typename T>
using Thresholds = ThresParams<T>;

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

} // namespace

TEST(GrayModule, StartsWithoutAStretchOverTheWholeRange) {
    const Module<unsigned char> bytes(Bytes({3, 9}));
    EXPECT_EQ(bytes.GetStretchMode(), 0);
    EXPECT_EQ(bytes.GetPaletteMode(), 8);
    EXPECT_EQ(bytes.GetPercentilValue(), 0.001);
    EXPECT_EQ(bytes.GetRangeMin(), 0);
    EXPECT_EQ(bytes.GetRangeMax(), 255);
    EXPECT_EQ(bytes.GetLevels(), (Levels<unsigned char>{0, 255, 1.0, 0, 255}));
    EXPECT_EQ(bytes.GetThresholds(), (Thresholds<unsigned char>{0, 255}));
    EXPECT_EQ(bytes.GetMenuId(5), 5);
    EXPECT_EQ(bytes.GetFrame(), nullptr);
    for (int v = 0; v <= 255; ++v)
        EXPECT_EQ(bytes(static_cast<unsigned char>(v)), v);
}

TEST(GrayModule, TablesHaveAnEntryForEachNumberOrAStepForEachBin) {
    const Module<unsigned short> words(OfVoxels<unsigned short>({1}));
    EXPECT_EQ(words.GetMappingTable().GetSize(), 65536U);
    // A level is voxel * 255 / 65535 = voxel / 257, rounded: 128 = 257 / 2 rounds down, 129 up.
    EXPECT_EQ(words(128), 0);
    EXPECT_EQ(words(129), 1);
    EXPECT_EQ(words(65535), 255);

    const Module<int> numbers(OfVoxels<int>({}, -2, 2));
    EXPECT_EQ(numbers.GetMappingTable().GetSize(), 5U);
    // 255 / 4 = 63.75, 127.5, 191.25
    EXPECT_EQ(numbers(-2), 0);
    EXPECT_EQ(numbers(-1), 64);
    EXPECT_EQ(numbers(0), 128);
    EXPECT_EQ(numbers(1), 191);
    EXPECT_EQ(numbers(2), 255);
    EXPECT_EQ(numbers(-1000), 0);
    EXPECT_EQ(numbers(1000), 255);

    const Module<float> reals(Counted<float>(-1.0F, 1.0F, std::vector<std::size_t>(256)));
    EXPECT_EQ(reals.GetMappingTable().GetSize(), 256U);
    EXPECT_EQ(reals(-1.0F), 0);
    EXPECT_EQ(reals(1.0F), 255);
    // Entry i stands for -1 + i * 2 / 255. 0.1 lies at 140.25, nearest to 140.
    EXPECT_EQ(reals(0.1F), 140);
}

TEST(GrayModule, VoxelsThatAreNoNumbersAreBlackAndInfiniteOnesTheEnds) {
    const Module<float> module(Counted<float>(-1.0F, 1.0F, std::vector<std::size_t>(256)));
    EXPECT_EQ(module(notANumber), 0);
    EXPECT_EQ(module(-infinite), 0);
    EXPECT_EQ(module(infinite), 255);
}

TEST(GrayModule, WithoutBinsHasNoDataAndOnlyTheIdentity) {
    Module<unsigned char> bytes{Histogram<unsigned char>()};
    EXPECT_FALSE(bytes.HasData());
    EXPECT_EQ(bytes.GetRangeMin(), 0);
    EXPECT_EQ(bytes.GetRangeMax(), 255);
    const LogCatcher log;
    for (const int entry : {3, 4, 5, 2}) {
        bytes.Choose(entry);
        EXPECT_EQ(bytes.GetStretchMode(), entry - 2);
        EXPECT_EQ(bytes(77), 77) << entry;
    }
    bytes.Choose(0);
    bytes.Choose(1);
    for (const int entry : {6, 7}) {
        bytes.Choose(entry);
        bytes.ResetMapping();
        EXPECT_EQ(bytes(77), entry == 6 ? 77 : 255) << "the levels, or all between the thresholds";
    }
    EXPECT_TRUE(log.GetEntries().empty());

    Module<int> numbers{Histogram<int>()};
    EXPECT_EQ(numbers.GetMappingTable().GetSize(), 0U);
    EXPECT_EQ(numbers.GetRangeMin(), std::numeric_limits<int>::min());
    EXPECT_EQ(numbers.GetRangeMax(), std::numeric_limits<int>::max());
    EXPECT_EQ(numbers(5), 0);
    numbers.Choose(5);
    EXPECT_EQ(numbers(5), 0);
    EXPECT_EQ(numbers.GetStretchMode(), 3);
}

TEST(GrayModule, WithOneBinHasATableOfTheWholeType) {
    Module<unsigned char> bytes(Counted<unsigned char>(7, 7, {4}));
    EXPECT_TRUE(bytes.HasData());
    EXPECT_EQ(bytes.GetMappingTable().GetSize(), 256U);
    EXPECT_EQ(bytes.GetRangeMin(), 7);
    EXPECT_EQ(bytes.GetRangeMax(), 7);
    EXPECT_EQ(bytes(7), 0) << "black up to the one value, white above";
    EXPECT_EQ(bytes(8), 255);
    const LogCatcher log;
    bytes.Choose(5);
    EXPECT_EQ(bytes(6), 0);
    EXPECT_EQ(bytes(7), 255) << "all voxels are at or below it";
    EXPECT_EQ(bytes(8), 0);
}

TEST(GrayModule, EqualisationNeedsATableAsLongAsTheRange) {
    Module<int> numbers(Counted<int>(7, 7, {4})); // its table is without entries
    LogCatcher log;
    numbers.Choose(5);
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Error, "The function does nothing because sub-histogram is longer "
                                                 "than the current lut."}}));
    EXPECT_EQ(numbers.GetStretchMode(), 3);
    EXPECT_EQ(numbers(7), 0);
}

TEST(GrayModule, LinearStretchGoesFromTheLowestVoxelToTheHighest) {
    Module<unsigned char> module(Bytes({10, 105, 200}));
    LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetStretchMode(), 1);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{10, 200, 1.0, 0, 255}));
    EXPECT_EQ(module(0), 0);
    EXPECT_EQ(module(10), 0);
    EXPECT_EQ(module(11), 1);    // 255 / 190 = 1.34
    EXPECT_EQ(module(105), 128); // 95 * 255 / 190 = 127.5
    EXPECT_EQ(module(199), 254); // 255 - 1.34 = 253.66
    EXPECT_EQ(module(200), 255);
    EXPECT_EQ(module(255), 255);
    EXPECT_EQ(module.GetThresholds(), (Thresholds<unsigned char>{0, 255}));
    EXPECT_EQ(log.GetEntries(), (LogCatcher::Entries{{wxLOG_Debug, "linear stretch 10 200"}}));
    module.Choose(2);
    EXPECT_EQ(module.GetStretchMode(), 0);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{0, 255, 1.0, 0, 255}));
    EXPECT_EQ(module(11), 11);
}

TEST(GrayModule, TracesShowNegativeNumbersAsTheirComplementAndFloatsTruncated) {
    LogCatcher log;
    Module<int>(OfVoxels<int>({-5, 3}, -5, 3)).Choose(3);
    Module<float>(Counted<float>(-1.5F, 2.5F, {1, 0, 0, 0, 1})).Choose(4);
    Module<float>(Counted<float>(-3e38F, 3e38F, {1, 0, 1})).Choose(3);
    // 2^64 - 5 and 2^64 - 1; the last two are held at the limits of long, -2^63 and 2^63 - 1.
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Debug, "linear stretch 18446744073709551611 3"},
                                   {wxLOG_Debug, "percentil stretch 18446744073709551615 2"},
                                   {wxLOG_Debug, "linear stretch 9223372036854775808 9223372036854775807"}}));
}

TEST(GrayModule, PercentilStretchLeavesOutTheFractionLastSet) {
    std::vector<std::size_t> counts(256);
    counts[5] = 1;
    counts[20] = 9;
    counts[100] = 70;
    counts[180] = 15;
    counts[250] = 5;
    Module<unsigned char> module(Counted<unsigned char>(0, 255, counts));
    LogCatcher log;
    module.Choose(4);
    EXPECT_EQ(module.GetStretchMode(), 2);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{5, 250, 1.0, 0, 255})) << "a single voxel is a hundredth";
    module.SetPercentilValue(0.095);
    EXPECT_EQ(module.GetPercentilValue(), 0.095);
    EXPECT_EQ(module.GetLevels().inMin, 5) << "only the next stretch takes it up";
    EXPECT_EQ(module(20), 16); // 15 * 255 / 245 = 15.6
    module.ResetMapping();
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{20, 180, 1.0, 0, 255}));
    EXPECT_EQ(module(20), 0);
    EXPECT_EQ(module(100), 128); // 80 * 255 / 160 = 127.5
    EXPECT_EQ(module(180), 255);
    EXPECT_EQ(log.GetEntries().back().text, "percentil stretch 20 180");
}

TEST(GrayModule, SparseBrightVoxelsStandOnBlackUnderThePercentilStretch) {
    std::vector<std::size_t> counts(256);
    counts[0] = 99999;
    counts[40] = 1;
    Module<unsigned char> module(Counted<unsigned char>(0, 255, counts));
    const LogCatcher log;
    module.Choose(4);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{0, 0, 1.0, 0, 255}));
    EXPECT_EQ(module(0), 0);
    EXPECT_EQ(module(40), 255);
}

TEST(GrayModule, EqualisationFillsTheTableFromTheHistogram) {
    Module<int> module(Counted<int>(-2, 2, {1, 2, 0, 5, 2}));
    module.Choose(5);
    EXPECT_EQ(module.GetStretchMode(), 3);
    // Sums 1, 3, 3, 8, 10 of 10: 25.5, 76.5, 76.5, 204, 255, truncated.
    EXPECT_EQ(module(-2), 25);
    EXPECT_EQ(module(-1), 76);
    EXPECT_EQ(module(0), 76);
    EXPECT_EQ(module(1), 204);
    EXPECT_EQ(module(2), 255);
    EXPECT_EQ(module.GetLevels(), (Levels<int>{-2, 2, 1.0, 0, 255})) << "where the dialog begins";
}

TEST(GrayModule, ARangeWithoutVoxelsIsBlackWhenEqualised) {
    Module<unsigned char> module(Bytes({}));
    module.Choose(5);
    for (const unsigned char v : std::vector<unsigned char>{0, 7, 255})
        EXPECT_EQ(module(v), 0);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{0, 255, 1.0, 0, 255}));
}

TEST(GrayModule, ARangeWithoutVoxelsIsARampUnderTheLinearStretch) {
    Module<unsigned char> module(Bytes({}));
    const LogCatcher log;
    module.Choose(3);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{255, 0, 1.0, 0, 255})) << "the search crosses over";
    for (const unsigned char v : std::vector<unsigned char>{0, 7, 255})
        EXPECT_EQ(module(v), v) << "but the picture is no negative";
}

TEST(GrayModule, TheRangeShrinksWithTheHistogramAndLimitsTheStretch) {
    Module<unsigned char> module(Bytes({10, 200}));
    const LogCatcher log;
    module.Choose(3);
    module.OnHistogramChange(SetOf(OfVoxels<unsigned char>({60, 70}, 50, 100)));
    EXPECT_EQ(module.GetRangeMin(), 50);
    EXPECT_EQ(module.GetRangeMax(), 100);
    EXPECT_EQ(module.GetMappingTable().GetSize(), 51U);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{60, 70, 1.0, 0, 255})) << "the stretch in force is made anew";
    module.OnHistogramChange(SetOf(Bytes({10, 55, 90, 200})));
    EXPECT_EQ(module.GetRangeMin(), 50) << "it does not grow again";
    EXPECT_EQ(module.GetRangeMax(), 100);
    EXPECT_EQ(module.GetMappingTable().GetSize(), 256U);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{55, 90, 1.0, 0, 255})) << "voxels outside do not count";
    EXPECT_EQ(module.GetHistograms().Get()[200], 1U);

    module.Choose(5);
    // Two voxels in the range: 55 to 89 at 127, 90 to 100 at 255, and the rest black, below and above.
    EXPECT_EQ(module(54), 0);
    EXPECT_EQ(module(55), 127);
    EXPECT_EQ(module(100), 255);
    EXPECT_EQ(module(101), 0);
    EXPECT_EQ(module(200), 0);
}

TEST(GrayModule, AHistogramBesideTheRangeBringsItsOwn) {
    Module<int> module(OfVoxels<int>({}, 0, 10));
    module.OnHistogramChange(SetOf(OfVoxels<int>({}, 20, 30)));
    EXPECT_EQ(module.GetRangeMin(), 20);
    EXPECT_EQ(module.GetRangeMax(), 30);
    EXPECT_EQ(module(25), 128);
    module.OnHistogramChange(SetOf(OfVoxels<int>({}, 30, 40)));
    EXPECT_EQ(module.GetRangeMin(), 30) << "one number in common is a range";
    EXPECT_EQ(module.GetRangeMax(), 30);
}

TEST(GrayModule, ARangeThatABitDepthHasCrossedStaysWhenVoxelsAreCountedAnew) {
    Module<unsigned char> module(OfVoxels<unsigned char>({}, 100, 220));
    module.OnHistogramChange(SetOf(Bytes({40, 60}))); // the range is still 100 to 220
    module.ApplyBitdepth(5);
    ASSERT_EQ(module.GetRangeMin(), 100);
    ASSERT_EQ(module.GetRangeMax(), 31);
    module.OnHistogramChange(SetOf(Bytes({40, 60, 60})));
    EXPECT_EQ(module.GetRangeMin(), 100);
    EXPECT_EQ(module.GetRangeMax(), 31);
}

TEST(GrayModule, AnEmptyHistogramTakesTheDataAwayAndLeavesTheRange) {
    Module<unsigned char> module(OfVoxels<unsigned char>({}, 50, 100));
    module.OnHistogramChange(HistogramSet<unsigned char>());
    EXPECT_FALSE(module.HasData());
    EXPECT_EQ(module.GetRangeMin(), 50);
    EXPECT_EQ(module.GetRangeMax(), 100);
    EXPECT_EQ(module.GetMappingTable().GetSize(), 256U);
    EXPECT_EQ(module(75), 128); // 25 * 255 / 50 = 127.5
}

TEST(GrayModule, ResetHoldsLevelsAtBinNumbersNotAtValues) {
    const LogCatcher log;
    Module<int> module(OfVoxels<int>({-50, 80}, -100, 100)); // the range's bins are 0 and 200
    module.Choose(3);
    module.Choose(6);
    EXPECT_EQ(module.GetStretchMode(), 4);
    EXPECT_EQ(module.GetLevels(), (Levels<int>{-50, 80, 1.0, 0, 255}));
    module.ResetMapping();
    EXPECT_EQ(module.GetLevels(), (Levels<int>{0, 80, 1.0, 0, 255}));
    EXPECT_EQ(module(-1), 0);
    EXPECT_EQ(module(40), 128);
    EXPECT_EQ(module(80), 255);

    Module<int> high(OfVoxels<int>({150, 180}, 100, 200)); // bins 0 and 100
    high.Choose(3);
    high.Choose(6);
    high.ResetMapping();
    EXPECT_EQ(high.GetLevels(), (Levels<int>{150, 100, 1.0, 0, 255})) << "crossed";
    EXPECT_EQ(high(100), 0);
    EXPECT_EQ(high(125), 128) << "but rising between the two";
    EXPECT_EQ(high(150), 255);
    EXPECT_EQ(high(200), 255);
}

TEST(GrayModule, ResetHoldsThresholdsAtBinNumbersNotAtValues) {
    Module<int> module(OfVoxels<int>({}, -100, 100)); // bins 0 and 200
    module.Choose(7);
    EXPECT_EQ(module.GetStretchMode(), 5);
    EXPECT_EQ(module.GetThresholds(), (Thresholds<int>{-100, 100}));
    module.ResetMapping();
    EXPECT_EQ(module.GetThresholds(), (Thresholds<int>{0, 100}));
    EXPECT_EQ(module(-1), 0);
    EXPECT_EQ(module(0), 255);
    EXPECT_EQ(module(100), 255);

    Module<int> high(OfVoxels<int>({}, 100, 200)); // bins 0 and 100
    high.Choose(7);
    high.ResetMapping();
    EXPECT_EQ(high.GetThresholds(), (Thresholds<int>{100, 100}));
    EXPECT_EQ(high(100), 255);
    EXPECT_EQ(high(101), 0);
}

TEST(GrayModule, ForBytesValuesAndBinNumbersAreTheSame) {
    Module<unsigned char> module(Bytes({10, 200}));
    const LogCatcher log;
    module.Choose(3);
    module.Choose(6);
    module.ResetMapping();
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{10, 200, 1.0, 0, 255}));
    module.Choose(7);
    module.ResetMapping();
    EXPECT_EQ(module.GetThresholds(), (Thresholds<unsigned char>{0, 255}));
    EXPECT_EQ(module(0), 255) << "both thresholds belong to what is between them";
}

TEST(GrayModule, PreviewsLiveInTheTableAlone) {
    Module<unsigned char> module(Bytes({10, 200}));
    zel_LevelsEvent levels(10.9F, 20.9F, 1.0, 255.9F, 0.5F, 0);
    module.OnPreviewLevels(levels); // from (10, 255) to (20, 0): the numbers are truncated
    EXPECT_EQ(module(10), 255);
    EXPECT_EQ(module(15), 128);
    EXPECT_EQ(module(20), 0);
    EXPECT_EQ(module.GetLevels(), (Levels<unsigned char>{0, 255, 1.0, 0, 255}));
    zel_LevelsEvent curve(0, 255, 2.0, 0, 255);
    module.OnPreviewLevels(curve);
    EXPECT_EQ(module(64), 128); // sqrt(64 / 255) * 255 = 127.75
    for (const double gamma : {-1.0, 0.0, 1e-50, std::numeric_limits<double>::quiet_NaN()}) {
        zel_LevelsEvent none(0, 255, gamma, 0, 255);
        EXPECT_NO_THROW(module.OnPreviewLevels(none));
        EXPECT_EQ(module(64), 128) << "no curve has the gamma " << gamma;
    }
    zel_ThresholdingEvent thresholds(100.7F, 150.2F, 1);
    module.OnPreviewThresholding(thresholds);
    EXPECT_EQ(module(99), 0);
    EXPECT_EQ(module(100), 255);
    EXPECT_EQ(module(150), 255);
    EXPECT_EQ(module(151), 0);
    EXPECT_EQ(module.GetThresholds(), (Thresholds<unsigned char>{0, 255}));
    EXPECT_EQ(module.GetStretchMode(), 0);
    module.ResetMapping();
    EXPECT_EQ(module(150), 150);
}

TEST(GrayModule, PreviewsBeyondTheTypeAreHeldAtItsLimits) {
    Module<int> module(OfVoxels<int>({}, -2, 2));
    zel_LevelsEvent levels(-2147483648.0F, 2147483648.0F, 1.0, 0, 255);
    module.OnPreviewLevels(levels); // the whole range of int: its middle is 127.5
    EXPECT_EQ(module(-2), 127);
    EXPECT_EQ(module(2), 128);
    zel_ThresholdingEvent thresholds(notANumber, infinite);
    module.OnPreviewThresholding(thresholds);
    EXPECT_EQ(module(-2), 255);
    EXPECT_EQ(module(2), 255);

    Module<float> reals(Counted<float>(0.0F, 255.0F, std::vector<std::size_t>(256)));
    zel_LevelsEvent halves(10.5F, 20.5F, 1.0, 0, 255);
    reals.OnPreviewLevels(halves); // floats are taken as they are: (11 - 10.5) / 10 * 255 = 12.75
    EXPECT_EQ(reals(11.0F), 13);
}

TEST(GrayModule, KeepsNothingInAConfiguration) {
    wxStringInputStream nothing("");
    wxFileConfig config(nothing);
    LogCatcher log;
    const auto callAll = [&config](auto&& module) {
        module.ReadFromConfig(config);
        module.WriteToConfig(config);
        module.ReadLevelsFromConfig(config);
        module.WriteLevelsToConfig(config);
    };
    callAll(Module<unsigned char>(Bytes({})));
    callAll(Module<unsigned short>(OfVoxels<unsigned short>({})));
    callAll(Module<int>(OfVoxels<int>({}, 0, 1)));
    callAll(Module<float>(Counted<float>(0, 1, {0, 0})));
    LogCatcher::Entries expected;
    for (const std::string type : {"unsigned char", "unsigned short", "int", "float"})
        for (const std::string function :
             {"ReadFromConfig", "WriteToConfig", "ReadLevelsFromConfig", "WriteLevelsToConfig"})
            expected.push_back(
                {wxLOG_Error, "zel::zel_GrayMappingModule<" + type + ">::" + function + ": Not implemented"});
    EXPECT_EQ(log.GetEntries(), expected);
    EXPECT_EQ(config.GetNumberOfEntries(true), 0U);
}
