#include "host/options.h"
#include "host/saveoptions.h"

#include <gmock/gmock.h>

namespace zelviewer {
namespace {

using testing::HasSubstr;
using testing::Not;

SaveOptions Parse(std::vector<std::string> arguments) {
    const CommandLine line = ParseCommandLine(std::move(arguments));
    EXPECT_EQ(line.command, Command::Run) << line.text;
    return line.options.save;
}

TEST(SaveOptions, WithoutThemNothingIsSaved) {
    const SaveOptions save = Parse({"a.tif"});
    EXPECT_FALSE(save.IsAskedFor());
    EXPECT_FALSE(ParseCommandLine({"a.tif"}).options.LeavesByItself());
    EXPECT_TRUE(ParseCommandLine({"a.tif", "--save-view", "v.tif"}).options.LeavesByItself());
}

TEST(SaveOptions, AViewHasAllWindowsAndTenPixelsBetweenThem) {
    const SaveOptions save = Parse({"--save-view", "v.tif", "a.tif"});
    EXPECT_EQ(save.view, "v.tif");
    EXPECT_EQ(save.gallery, std::nullopt);
    EXPECT_EQ(save.windows.values, (std::array{true, true, true}));
    EXPECT_EQ(save.border, 10);
    EXPECT_EQ(save.GetFrames(20), (Range{0, 0, 1}));
    EXPECT_EQ(save.GetFileName(0), "v.tif");
}

TEST(SaveOptions, WindowsAndBorderOfAView) {
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--windows", "xy"}).windows.values, (std::array{true, false, false}));
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--windows", "yz,xy"}).windows.values, (std::array{true, false, true}));
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--windows", "xz,xz"}).windows.values, (std::array{false, true, false}));
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--border", "0"}).border, 0);
}

TEST(SaveOptions, AGallery) {
    const SaveOptions plain = Parse({"--save-gallery", "g.png"});
    EXPECT_EQ(plain.gallery, "g.png");
    EXPECT_EQ(plain.view, std::nullopt);
    EXPECT_EQ(plain.slices, std::nullopt);
    EXPECT_EQ(plain.rows, std::nullopt);
    EXPECT_EQ(plain.columns, std::nullopt);
    EXPECT_EQ(plain.spacing, 10);
    const SaveOptions rows = Parse({"--save-gallery", "g.png", "--slices", "2:9:3", "--rows", "2", "--spacing", "0"});
    EXPECT_EQ(rows.slices, (Range{2, 9, 3}));
    EXPECT_EQ(rows.rows, 2);
    EXPECT_EQ(rows.spacing, 0);
    EXPECT_EQ(Parse({"--save-gallery", "g.png", "--slices", "4:4", "--columns", "7"}).columns, 7);
    EXPECT_EQ(Parse({"--save-gallery", "g.png", "--slices", "4:4"}).slices, (Range{4, 4, 1}));
}

TEST(SaveOptions, RangesCountTheirNumbers) {
    EXPECT_EQ((Range{2, 9, 3}.GetCount()), 3U); // 2, 5, 8
    EXPECT_EQ((Range{2, 9, 3}.GetNumber(2)), 8);
    EXPECT_EQ((Range{4, 4, 5}.GetCount()), 1U);
    EXPECT_EQ((Range{0, 6, 2}.GetCount()), 4U);
}

TEST(SaveOptions, SeveralFramesHaveTheirNumbersInTheNames) {
    const SaveOptions save = Parse({"--save-view", "X/vXXX of X.tif", "--frames", "0:12:4"});
    EXPECT_EQ(save.GetFrames(20), (Range{0, 12, 4}));
    EXPECT_EQ(save.GetFileName(4), "X/v004 of X.tif"); // the folder keeps its name
}

TEST(SaveOptions, OneFrameKeepsTheNameAsItIs) {
    const SaveOptions save = Parse({"--save-gallery", "X.tif", "--frames", "7"});
    EXPECT_EQ(save.GetFrames(20), (Range{7, 7, 1}));
    EXPECT_EQ(save.GetFileName(7), "X.tif");
}

TEST(SaveOptions, AFilmHasAllFrames) {
    const SaveOptions save = Parse({"--save-film", "X.gif", "a.tif"});
    EXPECT_TRUE(save.IsAskedFor());
    EXPECT_EQ(save.film, "X.gif");
    EXPECT_EQ(save.picturesASecond, 10);
    EXPECT_EQ(save.GetFrames(20), (Range{0, 19, 1}));
    EXPECT_EQ(save.GetFrames(1), (Range{0, 0, 1}));
    EXPECT_EQ(save.FindMissingFrame(1), "");
    EXPECT_EQ(save.GetFileNames(), std::vector<std::string>{"X.gif"});
}

TEST(SaveOptions, AFilmOfSomeFramesIsOneFileToo) {
    const SaveOptions save =
        Parse({"--save-film", "X.gif", "--frames", "2:8:3", "--fps", "25", "--windows", "xy", "--border", "0"});
    EXPECT_EQ(save.GetFrames(20), (Range{2, 8, 3}));
    EXPECT_EQ(save.GetFileNames(), std::vector<std::string>{"X.gif"});
    EXPECT_EQ(save.picturesASecond, 25);
    EXPECT_EQ(save.windows.values, (std::array{true, false, false}));
    EXPECT_EQ(save.border, 0);
    EXPECT_EQ(save.FindMissingFrame(8), "--frames: There is no frame 8, they are numbered from 0 to 7.");
    EXPECT_EQ(Parse({"--save-film", "X.gif", "--frames", "3"}).GetFrames(20), (Range{3, 3, 1}));
}

TEST(SaveOptions, FilesOfAllFramesAreNamed) {
    EXPECT_EQ(Parse({"--save-view", "vXX.tif", "--frames", "0:12:6"}).GetFileNames(),
              (std::vector<std::string>{"v00.tif", "v06.tif", "v12.tif"}));
    EXPECT_EQ(Parse({"--save-gallery", "X.tif", "--frames", "7"}).GetFileNames(), std::vector<std::string>{"X.tif"});
}

TEST(SaveOptions, FramesThatAreNotThereAreTold) {
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--frames", "3"}).FindMissingFrame(4), "");
    EXPECT_EQ(Parse({"--save-view", "v.tif", "--frames", "3"}).FindMissingFrame(3),
              "--frames: There is no frame 3, they are numbered from 0 to 2.");
    EXPECT_EQ(Parse({"--save-view", "v.tif"}).FindMissingFrame(1), "");
}

TEST(SaveOptions, WrongUseIsRefusedInOneLineThatNamesIt) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases = {
        {{"--save-view"}, "--save-view"},
        {{"--save-view", ""}, "--save-view needs a file name."},
        {{"--save-gallery", ""}, "--save-gallery needs a file name."},
        {{"--save-view", "a.tif", "--save-gallery", "b.tif"}, "--save-view and --save-gallery exclude each other."},
        {{"--save-view", "a.tif", "--info", "c.tif"}, "--save-view and --info exclude each other."},
        {{"--save-gallery", "a.tif", "--screenshot", "b.png"}, "--save-gallery and --screenshot exclude each other."},
        {{"--save-gallery", "a.tif", "--export-meshes", "p", "--labels", "l.tif"},
         "--save-gallery and --export-meshes exclude each other."},
        {{"--save-view", "a.tif", "--volume"}, "--save-view and --volume exclude each other."},
        {{"--save-view", "a.tif", "--view", "b.zelview"}, "--save-view and --view exclude each other."},
        {{"--windows", "xy"}, "--windows goes with --save-view or --save-film."},
        {{"--border", "3", "--save-gallery", "a.tif"}, "--border goes with --save-view or --save-film."},
        {{"--slices", "0:3", "--save-view", "a.tif"}, "--slices goes with --save-gallery."},
        {{"--rows", "3"}, "--rows goes with --save-gallery."},
        {{"--columns", "3"}, "--columns goes with --save-gallery."},
        {{"--spacing", "3"}, "--spacing goes with --save-gallery."},
        {{"--frames", "0:3"}, "--frames goes with --save-view, --save-gallery or --save-film."},
        {{"--fps", "3"}, "--fps goes with --save-film."},
        {{"--fps", "3", "--save-view", "a.tif"}, "--fps goes with --save-film."},
        {{"--save-film", "a.gif", "--fps", "0"}, "--fps 0: use a number from 1 to 50."},
        {{"--save-film", "a.gif", "--fps", "51"}, "--fps 51: use a number from 1 to 50."},
        {{"--save-film", "a.gif", "--fps", "1.5"}, "--fps 1.5: use a number from 1 to 50."},
        {{"--save-film", ""}, "--save-film needs a file name."},
        {{"--save-film", "a.gif", "--rows", "2"}, "--rows goes with --save-gallery."},
        {{"--save-film", "a.gif", "--save-view", "b.tif"}, "--save-view and --save-film exclude each other."},
        {{"--save-film", "a.gif", "--save-gallery", "b.tif"}, "--save-gallery and --save-film exclude each other."},
        {{"--save-film", "a.gif", "--info", "c.tif"}, "--save-film and --info exclude each other."},
        {{"--save-gallery", "a.tif", "--rows", "1", "--columns", "1"}, "--rows and --columns exclude each other."},
        {{"--save-view", "a.tif", "--windows", ""}, "--windows : use one or more of xy,xz,yz."},
        {{"--save-view", "a.tif", "--windows", "xy,"}, "--windows xy,: use one or more of xy,xz,yz."},
        {{"--save-view", "a.tif", "--windows", "XY"}, "--windows XY"},
        {{"--save-view", "a.tif", "--border", "-1"}, "--border"},
        {{"--save-view", "a.tif", "--border=-1"}, "--border -1: use a number of pixels from 0."},
        {{"--save-view", "a.tif", "--border", "1000001"}, "--border 1000001"},
        {{"--save-view", "a.tif", "--border", "99999999999"}, "--border 99999999999"},
        {{"--save-view", "a.tif", "--border", "3px"}, "--border 3px"},
        {{"--save-gallery", "a.tif", "--slices", "5"}, "--slices 5: use A:B or A:B:STEP"},
        {{"--save-gallery", "a.tif", "--slices", "5:4"}, "--slices 5:4"},
        {{"--save-gallery", "a.tif", "--slices", "0:4:0"}, "--slices 0:4:0"},
        {{"--save-gallery", "a.tif", "--slices", "0:4:"}, "--slices 0:4:"},
        {{"--save-gallery", "a.tif", "--slices", "0:4:2:1"}, "--slices 0:4:2:1"},
        {{"--save-gallery", "a.tif", "--slices", ":4"}, "--slices :4"},
        {{"--save-gallery", "a.tif", "--slices", "0:-4"}, "--slices 0:-4"},
        {{"--save-gallery", "a.tif", "--slices", "+0:4"}, "--slices +0:4"},
        {{"--save-gallery", "a.tif", "--rows", "0"}, "--rows 0: use a number from 1."},
        {{"--save-gallery", "a.tif", "--columns", "two"}, "--columns two: use a number from 1."},
        {{"--save-gallery", "a.tif", "--spacing", "x"}, "--spacing x: use a number of pixels from 0."},
        {{"--save-view", "aXX.tif", "--frames", "0"}, nullptr},
        {{"--save-view", "aXX.tif", "--frames", "0:"}, "--frames 0:: use A:B or A:B:STEP"},
        {{"--save-view", "a.tif", "--frames", "0:3"},
         "a.tif: --frames needs a run of 1 X or more in the file's name, such as viewXXX.tif."},
        {{"--save-view", "XX/a.tif", "--frames", "0:3"}, "XX/a.tif: --frames needs a run of 1 X"},
        {{"--save-view", "aX.tif", "--frames", "0:12:6"}, "aX.tif: --frames needs a run of 2 X"},
        {{"--save-view", "aX.tif", "--frames", "0:12:7"}, nullptr}, // 0 and 7
        {{"--save-view", "viewXX", "--frames", "0:3"}, "viewXX: --frames needs"},
        {{"--save-view", "a.tif", "--frames", "2", "b.tif", "c.tif"}, nullptr}, // each may hold many
    };
    for (const auto& [arguments, part] : cases) {
        const CommandLine line = ParseCommandLine(arguments);
        if (part == nullptr) {
            EXPECT_EQ(line.command, Command::Run) << line.text;
            continue;
        }
        EXPECT_EQ(line.command, Command::Refuse) << part;
        EXPECT_THAT(line.text, HasSubstr(part));
        EXPECT_THAT(line.text, Not(HasSubstr("\n")));
    }
}

} // namespace
} // namespace zelviewer
