#include "dialogs/zel_stripelayout.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zel;

namespace {

using Columns = std::vector<unsigned>;

constexpr unsigned leftEnd = 0x0000AA;
constexpr unsigned rightEnd = 0x00BB00;
constexpr unsigned band = 0xFF64C8; // blue 255, green 100, red 200

StripeState State(int count, int left, int right, bool shaded) {
    StripeState state;
    state.shaded = shaded;
    state.leftColour.SetRGB(leftEnd);
    state.rightColour.SetRGB(rightEnd);
    state.rampColour.SetRGB(band);
    state.count = count;
    state.left = left;
    state.right = right;
    return state;
}

/// The colours of the columns once all is filled, one after the other.
Columns Painted(const StripeState& state, int width) {
    Columns columns(static_cast<std::size_t>(width), 0xFFFFFFFF);
    for (const StripeFill& fill : LayOutStripe(state, {width, 6})) {
        EXPECT_EQ(0, fill.area.y);
        EXPECT_EQ(6, fill.area.height);
        for (int x = std::max(fill.area.x, 0); x < std::min(fill.area.x + fill.area.width, width); ++x)
            columns[static_cast<std::size_t>(x)] = fill.colour.GetRGB();
    }
    return columns;
}

/// Columns from several stretches of one colour each.
Columns Stretches(std::initializer_list<std::pair<int, unsigned>> stretches) {
    Columns columns;
    for (const auto& [width, colour] : stretches)
        columns.insert(columns.end(), static_cast<std::size_t>(width), colour);
    return columns;
}

/// Rows of a ramp to (200, 100, 255) at gamma 1: t 0, 1/4, 1/2, 3/4; 63.75 and 127.5 are rounded up, 191.25 down.
const Columns ramp = {0x000000, 0x401932, 0x803264, 0xBF4B96};

TEST(StripeLayout, BandBetweenThePositions) {
    // One pixel a position; the band has one column more than there are between start and end.
    EXPECT_EQ(Stretches({{64, leftEnd}, {129, band}, {63, rightEnd}}), Painted(State(256, 64, 192, false), 256));
    EXPECT_EQ(Stretches({{256, band}}), Painted(State(256, 0, 255, false), 256));
    EXPECT_EQ(Stretches({{5, leftEnd}, {1, band}, {4, rightEnd}}), Painted(State(10, 5, 5, false), 10));
}

TEST(StripeLayout, PixelsBetweenPositionsGoToTheBand) {
    // 12.5 pixels a position: left up to 13, start 12; right from 62 on, end 63, and the band covers 12 to 63.
    EXPECT_EQ(Stretches({{12, leftEnd}, {52, band}, {36, rightEnd}}), Painted(State(8, 1, 5, false), 100));
    const auto fills = LayOutStripe(State(8, 1, 5, false), {100, 6});
    ASSERT_EQ(4U, fills.size());
    EXPECT_EQ(wxRect(0, 0, 100, 6), fills[0].area);
    EXPECT_EQ(wxRect(0, 0, 13, 6), fills[1].area);
    EXPECT_EQ(wxRect(62, 0, 38, 6), fills[2].area);
    EXPECT_EQ(wxRect(12, 0, 52, 6), fills[3].area);
}

TEST(StripeLayout, RampBeginsOneColumnAfterTheLeftPosition) {
    // Start 2, end 6: the ramp has columns 3 to 6; column 2 keeps the left colour.
    EXPECT_EQ((Columns{leftEnd, leftEnd, leftEnd, ramp[0], ramp[1], ramp[2], ramp[3], rightEnd, rightEnd, rightEnd}),
              Painted(State(10, 2, 6, true), 10));
}

TEST(StripeLayout, RampOverTheWholeWidthIsCut) {
    // Start 0, end 4: columns 1 to 4 of 4.
    EXPECT_EQ((Columns{leftEnd, ramp[0], ramp[1], ramp[2]}), Painted(State(4, 0, 3, true), 4));
}

TEST(StripeLayout, CrossedStripeSwapsItsEndsAndRunsBackwards) {
    // The right colour up to 2, the left one from 6 on, the ramp from column 5 down to 2.
    EXPECT_EQ((Columns{rightEnd, rightEnd, ramp[3], ramp[2], ramp[1], ramp[0], leftEnd, leftEnd, leftEnd, leftEnd}),
              Painted(State(10, 6, 2, true), 10));
    EXPECT_EQ((Columns{ramp[3], ramp[2], ramp[1], ramp[0]}), Painted(State(4, 3, 0, true), 4));
    EXPECT_EQ(Stretches({{2, rightEnd}, {5, band}, {3, leftEnd}}), Painted(State(10, 6, 2, false), 10));
}

TEST(StripeLayout, RampWithoutWidthIsNotDrawn) {
    EXPECT_EQ(Stretches({{5, leftEnd}, {5, rightEnd}}), Painted(State(10, 5, 5, true), 10));
}

TEST(StripeLayout, GammaBendsTheRamp) {
    StripeState state = State(10, 2, 6, true);
    state.gamma = 2.0; // square roots: 0.5, 0.70711 and 0.86603 of (200, 100, 255)
    const Columns painted = Painted(state, 10);
    EXPECT_EQ((Columns{0x000000, 0x803264, 0xB4478D, 0xDD57AD}), Columns(painted.begin() + 3, painted.begin() + 7));
    for (const double gamma : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        state.gamma = gamma;
        for (const StripeFill& fill : LayOutStripe(state, {10, 6}))
            EXPECT_LE(fill.colour.Red(), 200) << gamma;
    }
}

} // namespace
