// How the program's window comes to the screen, seen from outside as the display tells it.

#include "tests/host/program.h"
#include "tests/support/xwindows.h"

#include <csignal>
#include <filesystem>

namespace zelviewer {
namespace {

using namespace test;
using zel::test::WindowWatch;
using zel::test::XRect;

class FirstWindow : public ProgramTest {
protected:
    struct Seen {
        WindowWatch::Appearance client, whole;
        std::string errors;
    };

    /// Opens a window and closes it when it stands still.
    Seen See(std::vector<std::string> arguments, const std::string& title) {
        WindowWatch watch;
        const pid_t program = Start(std::move(arguments), Display::Present);
        const unsigned long window = watch.WaitFor(title);
        if (window == 0) {
            ADD_FAILURE() << "no window appears";
            kill(program, SIGKILL);
            return {{XRect(), {}}, {XRect(), {}}, Wait(program).errors};
        }
        Seen seen{watch.GetClient(window), watch.GetWhole(window), {}};
        watch.AskToClose(window);
        const Outcome outcome = Wait(program);
        EXPECT_EQ(outcome.exitCode, 0);
        seen.errors = outcome.errors;
        return seen;
    }

    std::string SettingsName() const { return settings / "zelviewer.conf"; }

    static void ExpectToStandStill(const Seen& seen) {
        ASSERT_TRUE(seen.client.first && seen.whole.first);
        EXPECT_TRUE(seen.client.later.empty())
            << "from " << Text(*seen.client.first) << " to " << Text(seen.client.later.back());
        EXPECT_TRUE(seen.whole.later.empty())
            << "from " << Text(*seen.whole.first) << " to " << Text(seen.whole.later.back());
    }

    static std::string Text(const XRect& rect) {
        return std::to_string(rect.width) + " x " + std::to_string(rect.height) + " at " + std::to_string(rect.x) +
               ", " + std::to_string(rect.y);
    }

    static constexpr int displayX = 1600, displayY = 1200;
};

TEST_F(FirstWindow, HasItsFinalSizeAndPlaceAtOnce) {
    const Seen seen = See({WriteRamp("ramp.tif")}, "ramp.tif");
    ExpectToStandStill(seen);
    EXPECT_EQ(seen.errors, "");
}

TEST_F(FirstWindow, StandsInTheMiddleOfTheDisplayAndFillsTwoThirdsOfIt) {
    const Seen seen = See({WriteRamp("ramp.tif")}, "ramp.tif");
    ASSERT_TRUE(seen.whole.first);
    const XRect& whole = *seen.whole.first;
    EXPECT_LE(std::abs(whole.x - (displayX - whole.width) / 2), 1) << Text(whole);
    EXPECT_LE(std::abs(whole.y - (displayY - whole.height) / 2), 1) << Text(whole);
    // 40 x 30 x 10 voxels: 50 across, 40 down. Of 1066 x 800 pixels 8 are borders: factors 21.16 and 19.8, so 19.5.
    // 780 pixels down and, with them, menus, sliders, status line and title: between 80 and 180 more.
    EXPECT_GT(whole.height, 780 + 80);
    EXPECT_LT(whole.height, 780 + 180);
}

TEST_F(FirstWindow, OfALargeImageHasItWholeAndIsNoLargerThanTheDisplay) {
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(4096, 3000, 4);
    const Seen seen = See({Save(frame, folder / "large.tif")}, "large.tif");
    ExpectToStandStill(seen);
    EXPECT_LE(seen.whole.first->width, displayX);
    EXPECT_LE(seen.whole.first->height, displayY);
    EXPECT_EQ(seen.errors, "");
}

TEST_F(FirstWindow, OfTheProgramsOwnCellsIsQuietToo) {
    const Seen seen = See({}, "Synthetic cells");
    ExpectToStandStill(seen);
    EXPECT_EQ(seen.errors, "");
}

TEST_F(FirstWindow, MayBeADialogThatHasItsFinalSizeAtOnceToo) {
    WindowWatch watch;
    const pid_t program = Start({ZEL_TEST_DATA "/tiff/stack-channels-times/5channel.tif"}, Display::Present);
    const unsigned long window = watch.WaitFor("Channels");
    EXPECT_NE(window, 0U);
    const Seen seen{watch.GetClient(window), watch.GetWhole(window), {}};
    kill(program, SIGKILL);
    EXPECT_EQ(Wait(program).errors, "");
    ExpectToStandStill(seen);
}

const char placed[] = "[Window]\nMaximized=0\nX=200\nY=150\nWidth=700\nHeight=500\n";

TEST_F(FirstWindow, StandsWhereTheLastOneWasLeft) {
    WriteBytes(SettingsName(), placed);
    const std::string image = WriteRamp("ramp.tif");
    for (int run = 0; run < 2; ++run) { // and does not creep
        const Seen seen = See({image}, "ramp.tif");
        ExpectToStandStill(seen);
        EXPECT_EQ(Text(*seen.whole.first), "700 x 500 at 200, 150");
        EXPECT_EQ(seen.errors, "");
        EXPECT_EQ(ReadBytes(SettingsName()), placed + ("[Recent]\n[Recent/1]\nFile1=" + image + "\n"));
    }
}

TEST_F(FirstWindow, IsMaximizedIfTheLastOneWas) {
    if (!zel::test::HasWindowManager())
        GTEST_SKIP() << "nobody is there to maximize it";
    WriteBytes(SettingsName(), "[Window]\nMaximized=1\nX=200\nY=150\nWidth=700\nHeight=500\n");
    const std::string image = WriteRamp("ramp.tif");
    for (int run = 0; run < 2; ++run) {
        const Seen seen = See({image}, "ramp.tif");
        ExpectToStandStill(seen);
        EXPECT_EQ(seen.whole.first->width, displayX);
        EXPECT_EQ(seen.whole.first->height, displayY);
        EXPECT_EQ(seen.errors, "");
        EXPECT_TRUE(
            ReadBytes(SettingsName()).starts_with("[Window]\nMaximized=1\nX=200\nY=150\nWidth=700\nHeight=500\n"))
            << "the other size comes back with it";
    }
}

TEST_F(FirstWindow, ForgetsAPlaceThatIsOnNoDisplay) {
    WriteBytes(SettingsName(), "[Window]\nX=2000\nY=150\nWidth=700\nHeight=500\n");
    const Seen seen = See({WriteRamp("ramp.tif")}, "ramp.tif");
    ExpectToStandStill(seen);
    const XRect& whole = *seen.whole.first;
    EXPECT_LE(std::abs(whole.x - (displayX - whole.width) / 2), 1) << Text(whole);
}

TEST_F(FirstWindow, OpensWithDamagedSettingsAndKeepsThem) {
    WriteBytes(SettingsName(), "rubbish");
    const Seen seen = See({WriteRamp("ramp.tif")}, "ramp.tif");
    ExpectToStandStill(seen);
    EXPECT_EQ(seen.errors, "");
    EXPECT_EQ(ReadBytes(SettingsName() + ".damaged"), "rubbish");
    EXPECT_NE(ReadBytes(SettingsName()).find("[Window]"), std::string::npos);
}

TEST_F(FirstWindow, OpensWithoutSettingsThatCannotBeKeptAndSaysSoOnce) {
    std::filesystem::create_directory(SettingsName());
    const Seen seen = See({WriteRamp("ramp.tif")}, "ramp.tif");
    ExpectToStandStill(seen);
    EXPECT_EQ(seen.errors, "zelviewer: " + SettingsName() + ": Is a directory\n");
}

TEST_F(FirstWindow, OfAScriptHasNoSettings) {
    WriteBytes(SettingsName(), placed);
    EXPECT_EQ(Run({"--screenshot", folder / "a.png", WriteRamp("ramp.tif")}).exitCode, 0);
    EXPECT_EQ(ReadBytes(SettingsName()), placed);
    EXPECT_EQ(settings.List(), (std::vector<std::string>{"zelviewer.conf"}));
}

TEST_F(FirstWindow, HasTheColoursThatTheLastOneHad) {
    kep::Image3d<kep::RGB_generic<unsigned char>> frame;
    frame.MakeRoom(20, 10, 2);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
        frame.SetVoxel(i, {static_cast<unsigned char>(i), 100, 200});
    const std::string image = Save(frame, folder / "colours.tif");
    WriteBytes(SettingsName(), "[Colours8]\nRGBMAP_STRETCH_MODE=6\nRGBMAP_SHOW_RED=0\nRGBMAP_LEVELS_IGAMMA_BLUE=2\n");
    See({image}, "colours.tif");
    const std::string kept = ReadBytes(SettingsName());
    EXPECT_NE(kept.find("RGBMAP_SHOW_RED=0\n"), std::string::npos) << kept;
    EXPECT_NE(kept.find("RGBMAP_LEVELS_IGAMMA_BLUE=2\n"), std::string::npos) << kept;
    EXPECT_NE(kept.find("RGBMAP_SHOW_GREEN=1\n"), std::string::npos) << "and what was not there is complete";
}

TEST_F(FirstWindow, OfDeepColoursHasNoLevelsOfAnother) {
    kep::Image3d<kep::RGB_generic<unsigned short>> frame;
    frame.MakeRoom(20, 10, 2);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
        frame.SetVoxel(i, {static_cast<unsigned short>(i), 100, static_cast<unsigned short>(2 * i)});
    const std::string image = Save(frame, folder / "colours.tif");
    WriteBytes(SettingsName(), "[Colours16]\nRGBMAP_STRETCH_MODE=6\nRGBMAP_SHOW_RED=0\n"
                               "RGBMAP_LEVELS_IMIN_GREEN=30000\nRGBMAP_LEVELS_IMAX_GREEN=60000\n");
    See({image}, "colours.tif");
    const std::string kept = ReadBytes(SettingsName());
    EXPECT_NE(kept.find("RGBMAP_SHOW_RED=0\n"), std::string::npos) << kept;
    EXPECT_NE(kept.find("RGBMAP_STRETCH_MODE=4\n"), std::string::npos) << "percentil; " << kept;
}

TEST_F(FirstWindow, TakesNoColoursThatMakeNoSense) {
    kep::Image3d<kep::RGB_generic<unsigned char>> frame;
    frame.MakeRoom(20, 10, 2);
    const std::string image = Save(frame, folder / "colours.tif");
    WriteBytes(SettingsName(), "[Colours8]\nRGBMAP_STRETCH_MODE=6\nRGBMAP_LEVELS_IGAMMA_BLUE=-2\n");
    const Seen seen = See({image}, "colours.tif");
    EXPECT_EQ(seen.errors, "");
    EXPECT_NE(ReadBytes(SettingsName()).find("RGBMAP_LEVELS_IGAMMA_BLUE=1\n"), std::string::npos);
}

class FromDesktop : public ProgramTest {
protected:
    /// Closes the dialog that the program shows, whose caption is its name. @return the program's exit code
    int CloseDialog(std::vector<std::string> arguments) {
        fromDesktop = true;
        WindowWatch watch;
        const pid_t program = Start(std::move(arguments), Display::Present);
        const unsigned long window = watch.WaitFor("zelviewer");
        if (window != 0)
            watch.AskToClose(window);
        else
            kill(program, SIGKILL);
        return Wait(program).exitCode;
    }
};

TEST_F(FromDesktop, AFailureIsShownInADialog) {
    EXPECT_EQ(CloseDialog({folder / "missing.tif"}), 1);
    EXPECT_EQ(CloseDialog({"--no-such-option"}), 2);
}

TEST_F(FromDesktop, AFileWithASequenceIsAskedAbout) {
    const std::string first = WriteRamp("t1.tif");
    WriteRamp("t2.tif");
    EXPECT_EQ(CloseDialog({first}), 1) << "the question has no answer";
}

TEST_F(FirstWindow, IsPrecededByAQuestionForTheChannel) {
    const std::string name = folder / "c.ics";
    WriteBytes(name, "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t4\nlayout\torder\tbits\tx\ty\tch\n"
                     "layout\tsizes\t8\t2\t1\t4\nrepresentation\tformat\tinteger\n"
                     "representation\tsign\tunsigned\nrepresentation\tcompression\tuncompressed\nend\nabcdefgh");
    WindowWatch watch;
    const pid_t program = Start({name}, Display::Present);
    const unsigned long window = watch.WaitFor("Channels");
    ASSERT_NE(window, 0U);
    watch.AskToClose(window);
    const Outcome outcome = Wait(program);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors, "zelviewer: " + name + ": No channel was chosen.\n");
    EXPECT_TRUE(See({name, "--channel", "2"}, "c.ics").client.first);
}

TEST_F(FromDesktop, NothingStopsAScript) {
    fromDesktop = true;
    EXPECT_EQ(Run({"--screenshot", folder / "a.png", folder / "missing.tif"}).exitCode, 1);
    EXPECT_EQ(Run({"--info", folder / "missing.tif"}).exitCode, 1);
    EXPECT_EQ(Run({"--screenshot", folder / "a.png", "--no-such-option"}).exitCode, 2);
    EXPECT_EQ(Run({folder / "missing.tif"}, Display::None).exitCode, 1) << "without a display there is none to stop at";
}

} // namespace
} // namespace zelviewer
