// How the program's window comes to the screen, seen from outside as the display tells it.

#include "tests/host/program.h"
#include "tests/support/xwindows.h"

#include <csignal>

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

    /// Opens a window and ends the program when it stands still.
    Seen See(std::vector<std::string> arguments, const std::string& title) {
        WindowWatch watch;
        const pid_t program = Start(std::move(arguments), Display::Present);
        const unsigned long window = watch.WaitFor(title);
        EXPECT_NE(window, 0U) << "no window appears";
        Seen seen{watch.GetClient(window), watch.GetWhole(window), {}};
        kill(program, SIGKILL);
        seen.errors = Wait(program).errors;
        return seen;
    }

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

} // namespace
} // namespace zelviewer
