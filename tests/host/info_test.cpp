#include "host/info.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace zelviewer {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

FileInfo Stack() {
    FileInfo file;
    file.name = "folder/stack.tif";
    file.info.format = kep::FF_TIFF;
    file.info.size = {512, 400, 30};
    file.info.voxelType = kep::VoxelType::Gray16;
    file.info.storedType = "12-bit unsigned";
    file.info.compression = "LZW";
    file.info.resolution = {10, 10, 4};
    file.info.offset = {1, -2.5F, 0};
    file.info.description = {{"Software", "a microscope"}};
    file.info.fileSize = 8'250'000;
    return file;
}

TEST(Info, TextTellsWhatTheFileIs) {
    EXPECT_EQ(InfoAsText({Stack()}), "folder/stack.tif\n"
                                     "  format       TIFF, LZW, 8.2 MB\n"
                                     "  size         512 x 400 x 30 voxels\n"
                                     "  voxels       12-bit unsigned, shown as gray16\n"
                                     "  voxel size   0.1 x 0.1 x 0.25 microns\n"
                                     "  resolution   10 x 10 x 4 pixels per micron\n"
                                     "  offset       1, -2.5, 0 microns\n"
                                     "  description\n"
                                     "    Software: a microscope\n");
}

TEST(Info, WhatIsNotKnownIsSaid) {
    FileInfo file = Stack();
    file.info.resolution = {10, 10, 0};
    EXPECT_THAT(InfoAsText({file}), HasSubstr("voxel size   0.1 x 0.1 x ? microns"));
    file.info.resolution = {};
    EXPECT_THAT(InfoAsText({file}), HasSubstr("voxel size   not known\n"));
    EXPECT_THAT(InfoAsText({file}), Not(HasSubstr("resolution")));
}

TEST(Info, SeveralFilesAreComparedAsASequence) {
    FileInfo other = Stack();
    EXPECT_THAT(InfoAsText({Stack(), other}), HasSubstr("2 frames of one sequence, shown as gray16\n"));
    other.info.voxelType = kep::VoxelType::Float;
    EXPECT_THAT(InfoAsText({Stack(), other}), HasSubstr("2 frames of one sequence, shown as float\n"));
    other.info.resolution = {10, 10, 4.0000005F};
    EXPECT_THAT(InfoAsText({Stack(), other}), HasSubstr("form no sequence"));
}

TEST(Info, NothingInADescriptionReachesTheTerminalAsACommand) {
    FileInfo file = Stack();
    file.info.description = {{"k\x1B[2J", "red \x1B[31m\a\r\nnext\xC2\x9B"
                                          "31m \xC2\xB5m\n\n"}};
    EXPECT_THAT(InfoAsText({file}), HasSubstr("    k?[2J: red ?[31m?\n      next?31m \xC2\xB5m\n"));
}

TEST(Info, LongDescriptionsAreCutBetweenCharactersInTextOnly) {
    FileInfo file = Stack();
    // 1499 bytes, then micro signs of two bytes each: the first would be cut in its middle.
    const std::string text = std::string(1499, 'x') + "\xC2\xB5\xC2\xB5";
    file.info.description = {{"k", text}};
    EXPECT_THAT(InfoAsText({file}), HasSubstr("xx\n      (cut; 1503 bytes in all, see --json)\n"));
    EXPECT_EQ(json::parse(InfoAsJson({file}))["files"][0]["description"]["k"], text);
}

TEST(Info, ChannelsAndTimePointsAreCountedAndNamed) {
    FileInfo file = Stack();
    file.axes = kep::FileAxes{file.info, 2, 51, {{"DAPI", {}}, {"", {}}}, 1.5, {}};
    EXPECT_THAT(InfoAsText({file}),
                HasSubstr("  size         512 x 400 x 30 voxels\n"
                          "  frames       2 channels (DAPI, 2), 51 time points every 1.5 s\n"
                          "  voxels       12-bit unsigned, shown as rgb16, channels 1 and 2 as red and green\n"));
    const json report = json::parse(InfoAsJson({file}));
    EXPECT_EQ(report["files"][0]["channels"], 2);
    EXPECT_EQ(report["files"][0]["times"], 51);
    EXPECT_EQ(report["files"][0]["channelNames"], json({"DAPI", ""}));
    EXPECT_EQ(report["files"][0]["frameInterval"], 1.5);
    EXPECT_EQ(report["sequence"]["frames"], 51);
    file.axes = kep::FileAxes{file.info, 5, 1, {}, {}, kep::AxisCounts{30, 5, 9}};
    EXPECT_THAT(InfoAsText({file}), HasSubstr("  frames       5 channels, 1 time point\n"));
    EXPECT_EQ(json::parse(InfoAsJson({file}))["files"][0]["series"],
              json({{"slices", 30}, {"channels", 5}, {"times", 9}}));
    EXPECT_FALSE(json::parse(InfoAsJson({Stack()}))["files"][0].contains("channels"));
}

TEST(Info, WhatCannotBeShownSaysWhyNot) {
    FileInfo file = Stack();
    file.notShown = "The value 4294967295 at (0, 0, 0) does not fit into 32-bit integer.";
    EXPECT_THAT(InfoAsText({file}), HasSubstr("12-bit unsigned, not shown: The value 4294967295 at (0, 0, 0) does not "
                                              "fit into 32-bit integer.\n"));
    const json report = json::parse(InfoAsJson({file}));
    EXPECT_TRUE(report["files"][0]["shownAs"].is_null());
    EXPECT_EQ(report["files"][0]["notShown"], file.notShown);
}

TEST(Info, JsonListsFilesThatCannotBeRead) {
    FileInfo bad;
    bad.name = "missing.tif";
    bad.error = "There is no such file.";
    const json report = json::parse(InfoAsJson({bad, Stack()}, {bad}));
    EXPECT_EQ(report["files"][0], json({{"name", "missing.tif"}, {"error", "There is no such file."}}));
    EXPECT_EQ(report["files"][1]["format"], "TIFF");
    EXPECT_EQ(report["labels"][0], report["files"][0]);
    EXPECT_EQ(report["sequence"]["frames"], 1);
    EXPECT_EQ(report["sequence"]["alike"], false);
    EXPECT_TRUE(json::parse(InfoAsJson({bad}))["sequence"].is_null());
    EXPECT_EQ(InfoAsText({bad, Stack()}, {bad}), InfoAsText({Stack()}));
}

TEST(Info, FilesThatDifferAreBothNamed) {
    FileInfo other = Stack();
    other.name = "b.tif";
    EXPECT_EQ(DifferenceOf("a.tif", Stack().info, other.info), "");
    other.info.offset.z = 1;
    EXPECT_EQ(DifferenceOf("a.tif", Stack().info, other.info), "Its offset differs from that of a.tif.");
    other.info.resolution = {10, 10, 5};
    EXPECT_EQ(DifferenceOf("a.tif", Stack().info, other.info), "Its voxel size differs from that of a.tif.");
    other.info.size = {512, 400, 31};
    EXPECT_EQ(DifferenceOf("a.tif", Stack().info, other.info),
              "It has 512 x 400 x 31 voxels, and a.tif has 512 x 400 x 30.");
    EXPECT_THAT(InfoAsText({Stack(), Stack(), other}),
                HasSubstr("b.tif: It has 512 x 400 x 31 voxels, and folder/stack.tif has 512 x 400 x 30.\n"
                          "The files differ and form no sequence.\n"));
}

FileInfo LabelStack(const LabelSummary& labels) {
    FileInfo file = Stack();
    file.name = "labels.tif";
    file.info.description.clear();
    file.labels = labels;
    return file;
}

TEST(Info, TextSumsLabelsUp) {
    EXPECT_EQ(InfoAsText({}, {LabelStack({false, 28, 12, 5301, 5})}), "labels.tif\n"
                                                                      "  format       TIFF, LZW, 8.2 MB\n"
                                                                      "  size         512 x 400 x 30 voxels\n"
                                                                      "  voxels       12-bit unsigned\n"
                                                                      "  labels       28 as stored, 12 to 5301 voxels "
                                                                      "each, 5 on the border\n"
                                                                      "  voxel size   0.1 x 0.1 x 0.25 microns\n"
                                                                      "  resolution   10 x 10 x 4 pixels per micron\n"
                                                                      "  offset       1, -2.5, 0 microns\n");
    EXPECT_THAT(InfoAsText({}, {LabelStack({true, 3, 1, 1, 0})}), HasSubstr("3 connected, 1 voxel each, 0 on the"));
    EXPECT_THAT(InfoAsText({}, {LabelStack({true, 1, 7, 7, 1})}),
                HasSubstr("1 connected, 7 voxels, 1 on the border\n"));
    EXPECT_THAT(InfoAsText({}, {LabelStack({false, 0, 0, 0, 0})}), HasSubstr("  labels       0 as stored\n"));
}

TEST(Info, LabelsAreComparedWithOneAnotherAndWithTheImage) {
    FileInfo other = LabelStack({});
    EXPECT_THAT(InfoAsText({Stack()}, {other}), Not(HasSubstr("differ")));
    EXPECT_THAT(InfoAsText({Stack()}, {other, other}), Not(HasSubstr("differ")));
    other.info.size.z = 29;
    EXPECT_THAT(InfoAsText({Stack()}, {other}), HasSubstr("The labels differ from the image in size"));
    EXPECT_THAT(InfoAsText({}, {LabelStack({}), other}), HasSubstr("The label files differ in size"));
}

TEST(Info, JsonCarriesLabels) {
    const json report = json::parse(InfoAsJson({Stack()}, {LabelStack({true, 28, 12, 5301, 5})}));
    EXPECT_EQ(report["files"].size(), 1U);
    const json& file = report["labels"][0];
    EXPECT_EQ(file["name"], "labels.tif");
    EXPECT_EQ(file["labels"],
              json({{"connected", true}, {"count", 28}, {"smallest", 12}, {"largest", 5301}, {"onBorder", 5}}));
    EXPECT_FALSE(file.contains("shownAs"));
    EXPECT_FALSE(json::parse(InfoAsJson({Stack()})).contains("labels"));
}

TEST(Info, JsonCarriesEverything) {
    const json report = json::parse(InfoAsJson({Stack(), Stack()}));
    const json& file = report["files"][1];
    EXPECT_EQ(file["name"], "folder/stack.tif");
    EXPECT_EQ(file["format"], "TIFF");
    EXPECT_EQ(file["compression"], "LZW");
    EXPECT_EQ(file["fileSize"], 8'250'000);
    EXPECT_EQ(file["size"], json({512, 400, 30}));
    EXPECT_EQ(file["voxelType"], "gray16");
    EXPECT_EQ(file["storedType"], "12-bit unsigned");
    EXPECT_EQ(file["shownAs"], "gray16");
    EXPECT_EQ(file["pixelsPerMicron"], json({10, 10, 4}));
    EXPECT_EQ(file["offset"], json({1, -2.5, 0}));
    EXPECT_EQ(file["description"]["Software"], "a microscope");
    EXPECT_EQ(report["sequence"], json({{"frames", 2}, {"alike", true}, {"shownAs", "gray16"}}));
}

TEST(Info, JsonSaysNullForWhatIsNotKnown) {
    FileInfo file = Stack();
    file.info.resolution = {10, std::numeric_limits<float>::infinity(), 0};
    EXPECT_EQ(json::parse(InfoAsJson({file}))["files"][0]["pixelsPerMicron"], json({10, nullptr, nullptr}));
    EXPECT_TRUE(json::parse(InfoAsJson({}))["sequence"].is_null());
}

TEST(Info, JsonWritesFloatsWithTheDigitsTheyNeed) {
    FileInfo file = Stack();
    file.info.resolution = {0.1F, 11.299435F, 1e10F};
    EXPECT_THAT(InfoAsJson({file}), HasSubstr("0.1,"));
    EXPECT_THAT(InfoAsJson({file}), HasSubstr("11.299435,"));
}

TEST(Info, JsonStaysValidWhateverBytesAFileHolds) {
    FileInfo file = Stack();
    file.name = "caf\xE9.tif";
    EXPECT_EQ(json::parse(InfoAsJson({file}))["files"][0]["name"], "caf\xEF\xBF\xBD.tif");
}

} // namespace
} // namespace zelviewer
