#include "core/kepcore/kep_exceptions.h"
#include "model/zel_imageiterator.h"
#include "tests/support/text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>

using mor::ImageIterator;

namespace {

/// Frames that a move shows, until it does not move any more, at most `count`.
std::vector<int> Shown(ImageIterator& it, int count, int (ImageIterator::*move)() = &ImageIterator::Advance) {
    std::vector<int> frames;
    while (count-- > 0) {
        (it.*move)();
        if (!it.moved)
            break;
        frames.push_back(it.current);
    }
    return frames;
}

/// Limits 0 to 12, range 3 to 10 by 4, at the range's start.
ImageIterator ThreeToTenByFour() {
    ImageIterator it(0, 12);
    it.SetRange(3, 10);
    it.SetStep(4);
    return it;
}

using Frames = std::vector<int>;

} // namespace

TEST(ImageIterator, StartsAtTheFirstIndexWithDefaults) {
    const ImageIterator it(2, 5);
    EXPECT_EQ(it.limitFirst, 2);
    EXPECT_EQ(it.limitLast, 5);
    EXPECT_EQ(it.rangeFirst, 2);
    EXPECT_EQ(it.rangeLast, 5);
    EXPECT_EQ(it.step, 1);
    EXPECT_EQ(it.nameTemplate, "imageXXX.tif");
    EXPECT_EQ(it.current, 2);
    EXPECT_FALSE(it.moved);
    EXPECT_FALSE(it.loopMode);
    EXPECT_FALSE(it.oscillationMode);
    EXPECT_EQ(it.direction, 1);
    EXPECT_EQ(it.fps, 1);
    EXPECT_EQ(TextOf([] { ImageIterator(3, 2); }), "Last index can't be smaller than the first index.");
}

TEST(ImageIterator, LimitsAreStoredBeforeTheTestAndHoldTheRange) {
    ImageIterator it(0, 10);
    it.current = 9;
    it.SetLimits(2, 6);
    EXPECT_EQ(it.rangeFirst, 2);
    EXPECT_EQ(it.rangeLast, 6);
    EXPECT_EQ(it.current, 6);
    EXPECT_TRUE(it.moved);

    it.SetLimits(4, 4); // a single frame
    EXPECT_EQ(it.rangeFirst, 4);
    EXPECT_EQ(it.rangeLast, 4);
    EXPECT_EQ(it.current, 4);
    EXPECT_TRUE(it.moved);

    EXPECT_EQ(TextOf([&] { it.SetLimits(5, 4); }), "Last index can't be smaller than the first index.");
    EXPECT_EQ(it.limitFirst, 5);
    EXPECT_EQ(it.limitLast, 4);
    EXPECT_EQ(it.rangeFirst, 4);
    EXPECT_TRUE(it.moved) << "a throwing setter leaves it";
}

TEST(ImageIterator, LimitsThatMissTheRangeLeaveItEmpty) {
    ImageIterator it(0, 3);
    it.SetLimits(5, 9);
    EXPECT_EQ(it.rangeFirst, 5);
    EXPECT_EQ(it.rangeLast, 3);
    EXPECT_EQ(it.current, 3); // raised to 5, then lowered to 3
    EXPECT_EQ(Shown(it, 3), Frames{});
}

TEST(ImageIterator, RefusesWrongValuesWithTheirTexts) {
    ImageIterator it(0, 12);
    it.SetRange(3, 10);
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { it.SetRange(-1, 5); }, [&] { it.SetRange(0, 13); }, [&] { it.SetRangeFirst(-1); },
             [&] { it.SetRangeFirst(11); }, [&] { it.SetRangeLast(2); }, [&] { it.SetRangeLast(13); }})
        EXPECT_EQ(TextOf(call), "Incorrect index given.");
    EXPECT_EQ(it.rangeFirst, 3);
    EXPECT_EQ(it.rangeLast, 10);
    EXPECT_EQ(TextOf([&] { it.SetStep(0); }), "Incorrect step size given.");
    EXPECT_EQ(TextOf([&] { it.SetStep(9); }), "Incorrect step size given."); // 10 - 3 + 1 is 8
    it.SetStep(8);
    EXPECT_EQ(TextOf([&] { it.SetNameTemplate("imagexxx.tif"); }), "Missing the number-replacement character 'X'.");
    it.SetNameTemplate("aX.ics");
    EXPECT_EQ(it.nameTemplate, "aX.ics");
    EXPECT_EQ(TextOf([&] { it.SetFPS(0); }), "Incorrect FPS requested.");
    it.SetFPS(25);
    EXPECT_EQ(it.GetInterval(), 40);
    it.SetFPS(1001);
    EXPECT_EQ(it.GetInterval(), 0);
}

TEST(ImageIterator, RangeSettersHoldTheCurrentIndex) {
    ImageIterator it(0, 12);
    it.SetRangeFirst(4);
    EXPECT_EQ(it.current, 4);
    EXPECT_TRUE(it.moved);
    it.SetRangeLast(9);
    EXPECT_FALSE(it.moved);
    it.SetRange(0, 2);
    EXPECT_EQ(it.current, 2);
    EXPECT_TRUE(it.moved);
}

TEST(ImageIterator, TheBoundsThemselvesAreAllowed) {
    ImageIterator it(2, 12);
    it.SetRange(2, 12);
    it.SetRangeLast(2);
    EXPECT_EQ(it.rangeLast, 2);
    it.SetRangeLast(12);
    EXPECT_EQ(it.rangeLast, 12);
    it.SetRangeFirst(12);
    EXPECT_EQ(it.rangeFirst, 12);
    EXPECT_EQ(it.current, 12);
    it.SetStep(1); // all of a range of one frame
    it.SetRangeFirst(2);
    EXPECT_EQ(it.rangeFirst, 2);
    it.SetStep(11);
    EXPECT_EQ(it.step, 11);
    it.SetStep(1);
    EXPECT_EQ(it.step, 1);
    it.SetFPS(1);
    EXPECT_EQ(it.GetInterval(), 1000);
}

TEST(ImageIterator, StepNameAndSpeedLeaveMovedAlone) {
    ImageIterator it(0, 12);
    it.StepForward();
    ASSERT_TRUE(it.moved);
    it.SetStep(2);
    it.SetNameTemplate("X.tif");
    it.SetFPS(3);
    EXPECT_TRUE(it.moved);
}

TEST(ImageIterator, ForwardStopsAtTheLastIndexThatStepsReach) {
    ImageIterator it = ThreeToTenByFour();
    EXPECT_EQ(Shown(it, 9), (Frames{7})); // 11 is out of range
    EXPECT_EQ(it.current, 7);
}

TEST(ImageIterator, LoopKeepsThePhaseOfTheStep) {
    ImageIterator it = ThreeToTenByFour();
    it.loopMode = true;
    EXPECT_EQ(Shown(it, 5), (Frames{7, 3, 7, 3, 7}));
    EXPECT_EQ(it.direction, 1);
}

TEST(ImageIterator, BackwardLoopStartsAgainFromTheEnd) {
    ImageIterator it = ThreeToTenByFour();
    it.loopMode = true;
    it.direction = -1;
    // From 3: -1 is out, so on by 4 * ((10 - 3) / 4) = 4 to 7.
    EXPECT_EQ(Shown(it, 4), (Frames{7, 3, 7, 3}));
    EXPECT_EQ(it.direction, -1);
}

TEST(ImageIterator, OscillationTurnsRound) {
    ImageIterator it(0, 3);
    it.loopMode = it.oscillationMode = true;
    EXPECT_EQ(Shown(it, 8), (Frames{1, 2, 3, 2, 1, 0, 1, 2}));
}

TEST(ImageIterator, OscillationNeedsLoopMode) {
    ImageIterator it(0, 2);
    it.oscillationMode = true;
    EXPECT_EQ(Shown(it, 8), (Frames{1, 2}));
    EXPECT_EQ(it.direction, 1);
}

TEST(ImageIterator, OscillationWithoutRoomStays) {
    ImageIterator it(0, 4);
    it.current = 2;
    it.SetStep(4);
    it.loopMode = it.oscillationMode = true;
    // 6 is out: turns, -2 is out: turns again, 6 is out: stays, going forward.
    EXPECT_EQ(it.Advance(), 2);
    EXPECT_FALSE(it.moved);
    EXPECT_EQ(it.direction, 1);
}

TEST(ImageIterator, SingleFrameNeverMoves) {
    for (const bool loop : {false, true})
        for (const bool oscillation : {false, true}) {
            ImageIterator it(0, 0);
            it.loopMode = loop;
            it.oscillationMode = oscillation;
            EXPECT_EQ(it.Advance(), 0);
            EXPECT_FALSE(it.moved);
        }
}

TEST(ImageIterator, AdvanceComesIntoTheRangeFirst) {
    ImageIterator it = ThreeToTenByFour();
    it.current = 12;
    EXPECT_EQ(it.Advance(), 10); // held at 10, 14 is out of range
    EXPECT_TRUE(it.moved);
}

TEST(ImageIterator, StepsByHandIgnoreDirectionAndOscillation) {
    ImageIterator it(0, 2);
    it.direction = -1;
    it.oscillationMode = true;
    EXPECT_EQ(Shown(it, 5, &ImageIterator::StepForward), (Frames{1, 2}));
    EXPECT_EQ(Shown(it, 5, &ImageIterator::StepBackward), (Frames{1, 0}));
    EXPECT_EQ(it.direction, -1);
    it.loopMode = true;
    EXPECT_EQ(it.StepBackward(), 2);
    EXPECT_EQ(it.direction, -1);
    EXPECT_EQ(it.StepForward(), 0);
    EXPECT_EQ(it.direction, 1);
    EXPECT_TRUE(it.moved);
}

TEST(ImageIterator, StepsByHandReachTheEndsOfALoop) {
    ImageIterator it(0, 2);
    it.loopMode = true;
    EXPECT_EQ(Shown(it, 5, &ImageIterator::StepForward), (Frames{1, 2, 0, 1, 2}));
    EXPECT_EQ(Shown(it, 5, &ImageIterator::StepBackward), (Frames{1, 0, 2, 1, 0}));
}

TEST(ImageIterator, HomeAndEndComeIntoTheRangeFirst) {
    ImageIterator it = ThreeToTenByFour();
    it.current = 12;
    EXPECT_EQ(it.GoToFirst(), 6); // held at 10, and back by 4
    it.current = 0;
    EXPECT_EQ(it.GoToLast(), 7); // held at 3, and on by 4
    it.SetStep(8);               // no way from anywhere to anywhere
    it.current = 12;
    EXPECT_EQ(it.GoToFirst(), 10);
    EXPECT_TRUE(it.moved) << "by being held";
    it.current = 0;
    EXPECT_EQ(it.GoToLast(), 3);
    EXPECT_TRUE(it.moved);
}

TEST(ImageIterator, HomeAndEndKeepThePhase) {
    ImageIterator it = ThreeToTenByFour();
    it.current = 8;
    EXPECT_EQ(it.GoToFirst(), 4); // 8 - 4 * (5 / 4)
    EXPECT_TRUE(it.moved);
    EXPECT_EQ(it.direction, 1);
    EXPECT_EQ(it.GoToLast(), 8); // 4 + 4 * (6 / 4)
    EXPECT_EQ(it.direction, -1);
    EXPECT_EQ(it.GoToLast(), 8);
    EXPECT_FALSE(it.moved);
}

TEST(ImageIterator, LargeStepsDoNotOverflow) {
    ImageIterator it(0, std::numeric_limits<int>::max());
    it.current = it.rangeLast - 1;
    it.SetStep(std::numeric_limits<int>::max());
    it.Advance();
    EXPECT_EQ(it.current, std::numeric_limits<int>::max() - 1);
    EXPECT_FALSE(it.moved);
}
