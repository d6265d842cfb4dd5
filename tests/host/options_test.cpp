#include "host/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelviewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(Options, NothingAsksForTheSyntheticCells) {
    const CommandLine line = ParseCommandLine({});
    EXPECT_EQ(line.command, Command::Run);
    EXPECT_THAT(line.options.files, IsEmpty());
    EXPECT_FALSE(line.options.type || line.options.resolution || line.options.screenshot);
    EXPECT_FALSE(line.options.binary || line.options.voxels || line.options.info || line.options.json ||
                 line.options.verbose);
}

TEST(Options, FilesKeepTheirOrderAndStandAnywhere) {
    const CommandLine line = ParseCommandLine({"b.tif", "--voxels", "a.tif", "--verbose", "c.ics"});
    EXPECT_EQ(line.command, Command::Run);
    EXPECT_THAT(line.options.files, ElementsAre("b.tif", "a.tif", "c.ics"));
    EXPECT_TRUE(line.options.voxels);
    EXPECT_TRUE(line.options.verbose);
}

TEST(Options, WhatStandsBehindTwoDashesIsAFile) {
    EXPECT_THAT(ParseCommandLine({"--", "--info"}).options.files, ElementsAre("--info"));
}

TEST(Options, ValuesDoNotSwallowFiles) {
    const CommandLine line = ParseCommandLine(
        {"--resolution", "10,9.5,0.25", "a.tif", "--type", "gray16", "b.tif", "--screenshot", "c.png", "d.tif"});
    ASSERT_EQ(line.command, Command::Run) << line.text;
    EXPECT_THAT(line.options.files, ElementsAre("a.tif", "b.tif", "d.tif"));
    EXPECT_EQ(line.options.resolution, (kep::Vector3d<float>(10, 9.5F, 0.25F)));
    EXPECT_EQ(line.options.type, DisplayType::Gray16);
    EXPECT_EQ(line.options.screenshot, "c.png");
}

TEST(Options, LabelsTakeAllNamesBehindThem) {
    const CommandLine before = ParseCommandLine({"a.tif", "b.tif", "--labels", "la.tif", "lb.tif", "--components"});
    ASSERT_EQ(before.command, Command::Run) << before.text;
    EXPECT_THAT(before.options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_THAT(before.options.labels, ElementsAre("la.tif", "lb.tif"));
    EXPECT_TRUE(before.options.components);
    const CommandLine behind = ParseCommandLine({"--labels", "la.tif", "lb.tif", "--", "a.tif", "b.tif"});
    ASSERT_EQ(behind.command, Command::Run) << behind.text;
    EXPECT_THAT(behind.options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_THAT(behind.options.labels, ElementsAre("la.tif", "lb.tif"));
    EXPECT_FALSE(behind.options.components);
    const CommandLine alone = ParseCommandLine({"--info", "--labels", "la.tif"});
    ASSERT_EQ(alone.command, Command::Run) << alone.text;
    EXPECT_THAT(alone.options.files, IsEmpty());
    EXPECT_THAT(alone.options.labels, ElementsAre("la.tif"));
}

TEST(Options, EveryTypeHasAName) {
    const std::vector<std::pair<const char*, DisplayType>> cases = {
        {"gray8", DisplayType::Gray8},    {"gray16", DisplayType::Gray16}, {"int", DisplayType::Int},
        {"float", DisplayType::Float},    {"rgb", DisplayType::RGB8},      {"rgb16", DisplayType::RGB16},
        {"complex", DisplayType::Complex}};
    for (const auto& [name, type] : cases) {
        EXPECT_EQ(ParseCommandLine({"--type", name, "a.tif"}).options.type, type) << name;
        EXPECT_EQ(NameOf(type), name);
    }
}

TEST(Options, ChannelsAreCountedFromOne) {
    EXPECT_THAT(ParseCommandLine({"a.tif"}).options.channels, IsEmpty());
    EXPECT_THAT(ParseCommandLine({"--channel", "2", "a.tif"}).options.channels, ElementsAre(1U));
    EXPECT_THAT(ParseCommandLine({"--channels", "1,3,2", "a.tif"}).options.channels, ElementsAre(0U, 2U, 1U));
    EXPECT_THAT(ParseCommandLine({"--channels", "2,1", "a.tif"}).options.channels, ElementsAre(1U, 0U));
    EXPECT_EQ(ParseCommandLine({"--channels", "1,2", "--type", "rgb16", "a.tif"}).command, Command::Run);
}

TEST(Options, ASequenceIsAskedForByName) {
    EXPECT_FALSE(ParseCommandLine({"a.tif"}).options.sequence);
    EXPECT_TRUE(ParseCommandLine({"--sequence", "a.tif"}).options.sequence);
}

TEST(Options, OneFileMayHaveManyLabelFiles) {
    EXPECT_EQ(ParseCommandLine({"a.tif", "--labels", "l1.tif", "l2.tif"}).command, Command::Run);
}

TEST(Options, EveryStretchHasAName) {
    const std::vector<std::pair<const char*, Stretch>> cases = {{"none", Stretch::None},
                                                                {"linear", Stretch::Linear},
                                                                {"percentil", Stretch::Percentil},
                                                                {"equalize", Stretch::Equalize}};
    for (const auto& [name, stretch] : cases) {
        EXPECT_EQ(ParseCommandLine({"--stretch", name, "a.tif"}).options.stretch, stretch) << name;
        EXPECT_EQ(ParseCommandLine({"--stretch", name}).options.stretch, stretch) << name; // for the synthetic cells
    }
    EXPECT_EQ(ParseCommandLine({"a.tif"}).options.stretch, std::nullopt);
}

TEST(Options, AllTypesAreStretchedButColoursNotEqualised) {
    for (const char* type : {"gray8", "gray16", "int", "float", "rgb", "rgb16", "complex"})
        EXPECT_EQ(ParseCommandLine({"--stretch", "linear", "--type", type, "a.tif"}).command, Command::Run) << type;
    for (const char* type : {"rgb", "rgb16"})
        EXPECT_EQ(ParseCommandLine({"--stretch", "equalize", "--type", type, "a.tif"}).text,
                  std::string("--stretch equalize is not for colour images such as ") + type + ".");
    EXPECT_EQ(ParseCommandLine({"--stretch", "equalize", "--type", "complex", "a.tif"}).command, Command::Run);
}

TEST(Options, EveryPartHasAName) {
    const std::vector<std::pair<const char*, zel::ComplexMode>> cases = {
        {"real", zel::Real}, {"imaginary", zel::Imaginary}, {"phase", zel::Phase}, {"amplitude", zel::Amplitude}};
    for (const auto& [name, part] : cases) {
        EXPECT_EQ(ParseCommandLine({"--part", name, "a.tif"}).options.part, part) << name;
        EXPECT_EQ(ParseCommandLine({"--type", "complex", "--part", name}).options.part, part) << "of the wave";
    }
    EXPECT_EQ(ParseCommandLine({"a.tif"}).options.part, std::nullopt);
}

TEST(Options, AViewIsForTheVolumeWindow) {
    EXPECT_FALSE(ParseCommandLine({"a.tif"}).options.volume);
    EXPECT_TRUE(ParseCommandLine({"--volume"}).options.volume);
    const CommandLine line = ParseCommandLine({"--view", "v.zelview", "a.tif"});
    EXPECT_TRUE(line.options.volume);
    EXPECT_EQ(line.options.view, "v.zelview");
    EXPECT_EQ(line.options.files, std::vector<std::string>{"a.tif"});
}

TEST(Options, HelpNamesEveryOption) {
    const CommandLine line = ParseCommandLine({"--help"});
    EXPECT_EQ(line.command, Command::Help);
    for (const char* option : {"--type",       "--binary",  "--resolution",   "--labels",        "--components",
                               "--voxels",     "--stretch", "--part",         "--export-meshes", "--save-view",
                               "--windows",    "--border",  "--save-gallery", "--slices",        "--rows",
                               "--columns",    "--spacing", "--frames",       "--volume",        "--view",
                               "--screenshot", "--info",    "--json",         "--verbose",       "--help",
                               "--version",    "FILE",      "--channel",      "--channels",      "--sequence"})
        EXPECT_THAT(line.text, HasSubstr(option));
    EXPECT_EQ(ParseCommandLine({"-h"}).command, Command::Help);
}

TEST(Options, HelpWinsOverFiles) {
    EXPECT_EQ(ParseCommandLine({"a.tif", "--help"}).command, Command::Help);
}

TEST(Options, VersionNeedsNothingElse) {
    EXPECT_EQ(ParseCommandLine({"--version"}).command, Command::Version);
}

TEST(Options, WrongUseIsRefusedInOneLineThatNamesIt) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases = {
        {{"--frob"}, "--frob"},
        {{"--type"}, "--type"},
        {{"--type", "gray12", "a.tif"}, "gray12"},
        {{"--resolution", "1,2", "a.tif"}, "1,2"},
        {{"--resolution", "1,2,3,4", "a.tif"}, "1,2,3,4"},
        {{"--resolution", "1,2,0", "a.tif"}, "1,2,0"},
        {{"--resolution", "1,2,-3", "a.tif"}, "1,2,-3"},
        {{"--resolution", "1,2,nan", "a.tif"}, "nan"},
        {{"--resolution", "1,2,inf", "a.tif"}, "inf"},
        {{"--resolution", "1,2,3x", "a.tif"}, "3x"},
        {{"--resolution", "1;2;3", "a.tif"}, "1;2;3"},
        {{"--stretch", "a.tif"}, "--stretch a.tif: use one of none, linear, percentil, equalize."},
        {{"--stretch"}, "--stretch"},
        {{"--stretch", "none", "--info", "a.tif"}, "--stretch and --info exclude each other."},
        {{"--stretch", "none", "--export-meshes", "p", "--labels", "l.tif"}, "--stretch and --export-meshes exclude"},
        {{"--part", "a.tif"}, "--part a.tif: use one of real, imaginary, phase, amplitude."},
        {{"--part", "phase"}, "--part needs a FILE"},
        {{"--part", "phase", "--type", "rgb", "a.tif"}, "--part is for complex images, not for rgb."},
        {{"--part", "phase", "--info", "a.tif"}, "--part and --info exclude each other."},
        {{"--json", "a.tif"}, "--json"},
        {{"--screenshot", ""}, "--screenshot needs"},
        {{"--info"}, "--info needs a FILE"},
        {{"--binary"}, "--binary needs a FILE"},
        {{"--labels", "la.tif"}, "--labels needs a FILE"},
        {{"--labels"}, "--labels"},
        {{"a.tif", "--components"}, "--components goes with --labels"},
        {{"--sequence"}, "--sequence needs one FILE."},
        {{"--sequence", "a.tif", "b.tif"}, "--sequence needs one FILE."},
        {{"--channel", "0", "a.tif"}, "--channel 0: use a whole number from 1 on."},
        {{"--channel", "two", "a.tif"}, "--channel two: use a whole number from 1 on."},
        {{"--channel", "1.5", "a.tif"}, "--channel 1.5: use a whole number from 1 on."},
        {{"--channels", "1", "a.tif"}, "--channels 1: use two or three numbers from 1 on, such as 1,3,2."},
        {{"--channels", "1,2,", "a.tif"}, "--channels 1,2,: use two or three numbers from 1 on, such as 1,3,2."},
        {{"--channels", "1,0", "a.tif"}, "--channels 1,0: use two or three numbers from 1 on, such as 1,3,2."},
        {{"--channels", "1,2,3,4", "a.tif"}, "--channels 1,2,3,4: use two or three numbers from 1 on, such as 1,3,2."},
        {{"--channel", "1", "--channels", "1,2", "a.tif"}, "--channel and --channels exclude each other."},
        {{"--channel", "1"}, "--channel needs a FILE."},
        {{"--channels", "1,2"}, "--channels needs a FILE."},
        {{"--channel", "1", "--info", "a.tif"}, "--channel and --info exclude each other."},
        {{"--channels", "1,2", "--export-meshes", "m", "--labels", "l.tif"},
         "--channels and --export-meshes exclude each other."},
        {{"--channels", "1,2", "--binary", "a.tif"}, "--channels and --binary exclude each other."},
        {{"--channels", "1,2", "--type", "gray16", "a.tif"},
         "--channels makes a colour image, which is rgb or rgb16 and not gray16."},
        {{"a.tif", "b.tif", "--labels", "la.tif"}, "--labels needs one file for each FILE: 2, not 1."},
        {{"--type", "int"}, "--type needs a FILE"},
        {{"--resolution", "1,1,1"}, "--resolution needs a FILE"},
        {{"--info", "--screenshot", "a.png", "a.tif"}, "--screenshot"},
        {{"--info", "--volume", "a.tif"}, "--volume and --info exclude each other."},
        {{"--view", "v.zelview", "--export-meshes", "p", "--labels", "l.tif"},
         "--view and --export-meshes exclude each other."},
        {{"--view"}, "--view"},
    };
    for (const auto& [arguments, part] : cases) {
        const CommandLine line = ParseCommandLine(arguments);
        EXPECT_EQ(line.command, Command::Refuse) << part;
        EXPECT_THAT(line.text, HasSubstr(part));
        EXPECT_THAT(line.text, Not(HasSubstr("\n")));
    }
}

} // namespace
} // namespace zelviewer
