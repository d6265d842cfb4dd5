// Where windows and dialogs go, by the number.

#include "host/frame/places.h"

#include <gtest/gtest.h>

namespace zelviewer {
namespace {

const wxRect screen(0, 0, 1600, 1000);

TEST(Places, TheMiddleOfAnArea) {
    EXPECT_EQ(CentredIn(screen, {600, 400}), wxRect(500, 300, 600, 400));
    EXPECT_EQ(CentredIn({100, 50, 1000, 500}, {301, 200}), wxRect(449, 200, 301, 200));
    EXPECT_EQ(CentredIn({100, 50, 1000, 500}, {5000, 200}), wxRect(100, 200, 1000, 200)) << "no wider than it";
}

TEST(Places, ByTheShortestWayIntoAnArea) {
    EXPECT_EQ(MovedInto(screen, {100, 100, 600, 400}), wxRect(100, 100, 600, 400));
    EXPECT_EQ(MovedInto(screen, {1500, -20, 600, 400}), wxRect(1000, 0, 600, 400));
    EXPECT_EQ(MovedInto(screen, {-5, 700, 600, 400}), wxRect(0, 600, 600, 400));
    EXPECT_EQ(MovedInto({100, 50, 500, 300}, {0, 0, 600, 400}), wxRect(100, 50, 600, 400)) << "too large";
}

TEST(Places, OfAnEarlierRunCountOnlyOnAPresentDisplay) {
    const wxRect second(1600, 200, 800, 600);
    const wxRect onSecond(1700, 300, 500, 400), onEdge(1500, 300, 500, 400), large(0, 0, 1601, 1000);
    EXPECT_EQ(StillOnADisplay(onSecond, {screen, second}), onSecond);
    EXPECT_EQ(StillOnADisplay(onSecond, {screen}), std::nullopt) << "the display is gone";
    EXPECT_EQ(StillOnADisplay(onEdge, {screen, second}), std::nullopt) << "half on each";
    EXPECT_EQ(StillOnADisplay(large, {screen}), std::nullopt);
    EXPECT_EQ(StillOnADisplay(screen, {screen}), screen);
    EXPECT_EQ(StillOnADisplay({10, 10, 0, 0}, {screen}), std::nullopt) << "no window has no size";
}

TEST(Places, AWindowLeavesTheTitlesOfOthersFree) {
    const wxRect wanted(100, 100, 600, 400);
    EXPECT_EQ(BesideOthers(wanted, {}, screen), wanted);
    EXPECT_EQ(BesideOthers(wanted, {{101, 100}}, screen), wanted);
    EXPECT_EQ(BesideOthers(wanted, {{132, 132}, {100, 100}}, screen), wxRect(164, 164, 600, 400));
    // From 590 a step would end at 1022.
    EXPECT_EQ(BesideOthers({100, 590, 600, 400}, {{100, 590}}, screen), wxRect(100, 590, 600, 400));
}

TEST(Places, ADialogStandsBesideTheWindow) {
    const wxSize dialog(300, 500);
    EXPECT_EQ(PlaceBeside({400, 300, 600, 400}, dialog, screen), wxPoint(1000, 300)) << "at the right";
    EXPECT_EQ(PlaceBeside({400, 700, 600, 300}, dialog, screen), wxPoint(1000, 500)) << "moved up to be whole";
    EXPECT_EQ(PlaceBeside({900, 300, 600, 400}, dialog, screen), wxPoint(600, 300)) << "at the left";
    EXPECT_EQ(PlaceBeside({100, 0, 1400, 450}, dialog, screen), wxPoint(100, 450)) << "below";
    EXPECT_EQ(PlaceBeside({100, 550, 1400, 450}, dialog, screen), wxPoint(100, 50)) << "above";
}

TEST(Places, WithoutRoomADialogHidesAsLittleAsItCan) {
    const wxSize dialog(300, 500);
    // Left 250 wide, right 150: the left corners hide 50 columns, the lower one 300 rows of them, the upper one 400.
    EXPECT_EQ(PlaceBeside({250, 100, 1200, 700}, dialog, screen), wxPoint(0, 500));
    EXPECT_EQ(PlaceBeside(screen, dialog, screen), wxPoint(1300, 500)) << "all alike: away from the menus";
    EXPECT_EQ(PlaceBeside(screen, {2000, 1200}, screen), wxPoint(0, 0)) << "larger than the display";
}

} // namespace
} // namespace zelviewer
