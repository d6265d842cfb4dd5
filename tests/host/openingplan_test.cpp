// What a file becomes in a window, from what it says of itself.

#include "host/message.h"
#include "host/openingplan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelviewer {
namespace {

using kep::VoxelType;
using testing::ElementsAre;
using testing::IsEmpty;

/// A file with channels and time points.
FileContents FramesOf(VoxelType type, std::size_t channels, std::size_t times = 1) {
    FileContents file;
    file.info.voxelType = type;
    file.axes.emplace();
    file.axes->frame = file.info;
    file.axes->channels = channels;
    file.axes->times = times;
    file.axes->channelInfos.resize(channels);
    return file;
}

FileContents OneFrame(VoxelType type) {
    FileContents file;
    file.info.voxelType = type;
    return file;
}

std::string FailureOf(const FileContents& file, const OpeningWish& wish) {
    try {
        PlanFile(file, wish);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "no failure";
}

TEST(PlanFile, AFileThatIsOneFrameIsReadWhole) {
    const ShownFile shown = PlanFile(OneFrame(VoxelType::Gray16), {});
    EXPECT_EQ(shown.type, DisplayType::Gray16);
    EXPECT_EQ(shown.times, 1U);
    EXPECT_THAT(shown.channels, IsEmpty());
    EXPECT_TRUE(shown.isOneImage);
    EXPECT_EQ(shown.choices, 0U);
    EXPECT_EQ(PlanFile(OneFrame(VoxelType::Double), {}).type, DisplayType::Float);
    EXPECT_EQ(PlanFile(OneFrame(VoxelType::Gray8), {{0}, {}, false}).channels.size(), 0U);
}

TEST(PlanFile, TimePointsAreTheSequence) {
    const ShownFile shown = PlanFile(FramesOf(VoxelType::Float, 1, 51), {});
    EXPECT_EQ(shown.type, DisplayType::Float);
    EXPECT_EQ(shown.times, 51U);
    EXPECT_THAT(shown.channels, ElementsAre(0U));
    EXPECT_EQ(shown.choices, 0U);
    EXPECT_FALSE(shown.isOneImage);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::RGB8, 1, 2), {}).type, DisplayType::RGB8);
}

TEST(PlanFile, TwoOrThreeChannelsOf8Or16BitsAreColours) {
    struct Case {
        VoxelType type;
        DisplayType shown;
    };
    for (const auto& [type, expected] :
         {Case{VoxelType::Gray8, DisplayType::RGB8}, Case{VoxelType::Gray16, DisplayType::RGB16},
          Case{VoxelType::Binary, DisplayType::RGB8}}) {
        const ShownFile two = PlanFile(FramesOf(type, 2, 4), {});
        EXPECT_EQ(two.type, expected);
        EXPECT_THAT(two.channels, ElementsAre(0U, 1U));
        EXPECT_EQ(two.times, 4U);
        EXPECT_EQ(two.choices, 0U);
        EXPECT_THAT(PlanFile(FramesOf(type, 3), {}).channels, ElementsAre(0U, 1U, 2U));
    }
}

TEST(PlanFile, ThreeChannelsThatReadImageTakesTogetherAreReadSo) {
    FileContents file = FramesOf(VoxelType::Gray16, 3);
    file.info.voxelType = VoxelType::RGB16;
    const ShownFile shown = PlanFile(file, {});
    EXPECT_EQ(shown.type, DisplayType::RGB16);
    EXPECT_THAT(shown.channels, ElementsAre(0U, 1U, 2U));
    EXPECT_TRUE(shown.isOneImage);
    EXPECT_FALSE(PlanFile(file, {{2, 1, 0}, {}, false}).isOneImage);
    EXPECT_THAT(PlanFile(file, {{2}, {}, false}).channels, ElementsAre(2U));
    EXPECT_EQ(PlanFile(file, {{2}, {}, false}).type, DisplayType::Gray16);
    EXPECT_EQ(PlanFile(file, {{}, DisplayType::Float, false}).choices, 1U);
}

TEST(PlanFile, MoreChannelsOrOthersAreTheUsersChoice) {
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray8, 4), {}).choices, 3U);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray8, 4), {}).type, DisplayType::Gray8);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Int, 2), {}).choices, 1U);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Float, 3), {}).choices, 1U);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::RGB8, 2), {}).choices, 1U);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray8, 2), {{}, DisplayType::Int, false}).choices, 1U);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray8, 2), {{}, {}, true}).choices, 1U);
}

TEST(PlanFile, WhatTheUserNamesIsShown) {
    const ShownFile one = PlanFile(FramesOf(VoxelType::Gray8, 5, 2), {{3}, {}, false});
    EXPECT_EQ(one.type, DisplayType::Gray8);
    EXPECT_THAT(one.channels, ElementsAre(3U));
    EXPECT_EQ(one.choices, 0U);
    const ShownFile three = PlanFile(FramesOf(VoxelType::Gray16, 5), {{0, 2, 1}, {}, false});
    EXPECT_EQ(three.type, DisplayType::RGB16);
    EXPECT_THAT(three.channels, ElementsAre(0U, 2U, 1U));
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Int, 2), {{0, 1}, DisplayType::RGB16, false}).type, DisplayType::RGB16);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray16, 2), {{1}, DisplayType::Float, false}).type, DisplayType::Float);
    EXPECT_EQ(PlanFile(FramesOf(VoxelType::Gray16, 2), {{1}, {}, true}).type, DisplayType::Gray8);
}

TEST(PlanFile, ChannelsThatAreNotThereAreRefused) {
    EXPECT_EQ(FailureOf(FramesOf(VoxelType::Gray8, 2), {{2}, {}, false}), "There is no channel 3, it has 2 channels.");
    EXPECT_EQ(FailureOf(OneFrame(VoxelType::RGB8), {{0, 1}, {}, false}), "There is no channel 2, it has 1 channel.");
    EXPECT_EQ(FailureOf(FramesOf(VoxelType::Float, 2), {{0, 1}, {}, false}),
              "Its channels have the type float, which makes no colours; name one of them by --channel.");
}

TEST(Channels, AreDescribedByTheirColours) {
    EXPECT_EQ(DescribeChannels({2}), "channel 3");
    EXPECT_EQ(DescribeChannels({0, 1}), "channels 1 and 2 as red and green");
    EXPECT_EQ(DescribeChannels({0, 2, 1}), "channels 1, 3 and 2 as red, green and blue");
}

TEST(Channels, HaveTheirNamesOrNumbers) {
    FileContents file = FramesOf(VoxelType::Gray8, 3);
    file.axes->channelInfos = {{"DAPI", {}}, {"", {}}};
    EXPECT_THAT(NamesOfChannels(*file.axes), ElementsAre("Channel 1: DAPI", "Channel 2", "Channel 3"));
}

TEST(Channels, AreChosenByOptions) {
    EXPECT_EQ(HowToChoose(5, 3),
              "It has 5 channels: name the one to show by --channel, or two or three by --channels.");
    EXPECT_EQ(HowToChoose(2, 1), "It has 2 channels: name the one to show by --channel.");
}

} // namespace
} // namespace zelviewer
