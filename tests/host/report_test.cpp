// What --info says of files on disk.

#include "host/report.h"
#include "tests/host/ics_frames.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zelviewer {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class ReportOfFiles : public testing::Test {
protected:
    static Report Ask(const std::vector<std::string>& files, bool asJson = false) {
        Options options;
        options.info = true;
        options.json = asJson;
        options.files = files;
        return MakeReport(options);
    }
    /// An ICS file of 2 voxels of 8 bits a frame.
    std::string WriteFrames(const std::string& name, int channels, int times) const {
        const std::string voxels(static_cast<std::size_t>(2 * channels * times), 'v');
        WriteBytes(folder / name, test::IcsOfFrames(channels, times, voxels));
        return folder / name;
    }

    ScratchFolder folder;
};

TEST_F(ReportOfFiles, SeveralFramesAreDescribedNotRefused) {
    const Report report = Ask({WriteFrames("a.ics", 2, 3)});
    EXPECT_THAT(report.messages, testing::IsEmpty());
    EXPECT_THAT(report.text,
                HasSubstr("  size         2 x 1 x 1 voxels\n"
                          "  frames       2 channels, 3 time points\n"
                          "  voxels       8-bit unsigned, shown as rgb, channels 1 and 2 as red and green\n"));
    const json sequence = json::parse(Ask({folder / "a.ics", WriteFrames("b.ics", 2, 1)}, true).text)["sequence"];
    EXPECT_EQ(sequence["frames"], 4);
    EXPECT_EQ(sequence["shownAs"], "rgb");
}

TEST_F(ReportOfFiles, FilesWithDifferentChannelsFormNoSequence) {
    const std::string two = WriteFrames("a.ics", 2, 1), three = WriteFrames("b.ics", 3, 1);
    EXPECT_THAT(Ask({two, three}).text, HasSubstr(three + ": It has 3 channels to show, and " + two +
                                                  " has 2.\nThe files differ and form no sequence.\n"));
    EXPECT_FALSE(json::parse(Ask({two, three}, true).text)["sequence"]["alike"]);
    EXPECT_TRUE(json::parse(Ask({two, two}, true).text)["sequence"]["alike"]);
}

TEST_F(ReportOfFiles, ChannelsThatTheUserMustChooseAreSaidToBe) {
    const std::string name = WriteFrames("a.ics", 4, 1);
    EXPECT_THAT(Ask({name}).text, HasSubstr("8-bit unsigned, each channel shown as gray8, chosen by --channel\n"));
    EXPECT_TRUE(json::parse(Ask({name}, true).text)["files"][0]["channelsShown"].is_null());
    const json two = json::parse(Ask({WriteFrames("b.ics", 2, 1)}, true).text)["files"][0];
    EXPECT_EQ(two["channelsShown"], json({1, 2}));
    EXPECT_EQ(two["shownAs"], "rgb");
}

TEST_F(ReportOfFiles, ThreeChannelsThatMakeAColourAreShownAsOne) {
    EXPECT_THAT(Ask({WriteFrames("a.ics", 3, 1)}).text,
                HasSubstr("  frames       3 channels, 1 time point\n"
                          "  voxels       RGB 8-bit, shown as rgb, channels 1, 2 and 3 "
                          "as red, green and blue\n"));
    EXPECT_THAT(Ask({WriteFrames("b.ics", 3, 2)}).text,
                HasSubstr("8-bit unsigned, shown as rgb, channels 1, 2 and 3 as red, green and blue\n"));
    EXPECT_THAT(Ask({WriteFrames("c.ics", 1, 2)}).text, HasSubstr("8-bit unsigned, shown as gray8\n"));
}

TEST_F(ReportOfFiles, VoxelsThatNoWindowShowsAreFoundByReading) {
    const std::string small = Save(FrameOf<unsigned long long>({7}), folder / "small.tif");
    const std::string large = Save(FrameOf<unsigned long long>({1, 4294967296ULL}), folder / "large.tif");
    EXPECT_THAT(Ask({small}).text, HasSubstr("64-bit unsigned, shown as int\n"));
    EXPECT_THAT(Ask({large}).text,
                HasSubstr("64-bit unsigned, not shown: The value 4294967296 at (1, 0, 0) does not fit into 32-bit "
                          "integer.\n"));
}

TEST_F(ReportOfFiles, TheResolutionIsTheUsersWhereTheFileHasNone) {
    Options options;
    options.files = {Save(FrameOf<unsigned char>({7}), folder / "a.tif")};
    EXPECT_THAT(MakeReport(options).text, HasSubstr("voxel size   not known\n"));
    options.resolution = kep::Vector3d<float>(10, 5, 2);
    EXPECT_THAT(MakeReport(options).text, HasSubstr("voxel size   0.1 x 0.2 x 0.5 microns\n"));
    options.json = true;
    options.labels = options.files;
    const json report = json::parse(MakeReport(options).text);
    EXPECT_EQ(report["files"][0]["pixelsPerMicron"], json({10, 5, 2}));
    EXPECT_EQ(report["labels"][0]["pixelsPerMicron"], json({10, 5, 2}));
}

TEST_F(ReportOfFiles, EachFailureHasItsSentence) {
    const std::string good = WriteFrames("a.ics", 1, 1), missing = folder / "b.ics", text = folder / "c.txt";
    WriteBytes(text, "plain words");
    const Report report = Ask({missing, good, folder.GetPath(), text}, true);
    EXPECT_THAT(report.messages,
                ElementsAre(missing + ": There is no such file.", folder.GetPath() + ": It is a folder, not a file.",
                            text + ": The file is not an ICS or TIFF image."));
    const json files = json::parse(report.text)["files"];
    ASSERT_EQ(files.size(), 4U);
    EXPECT_EQ(files[0]["error"], "There is no such file.");
    EXPECT_EQ(files[1]["shownAs"], "gray8");
    EXPECT_EQ(files[2]["name"], folder.GetPath());
    EXPECT_EQ(files[2]["error"], "It is a folder, not a file.");
    EXPECT_EQ(files[3]["error"], "The file is not an ICS or TIFF image.");
}

} // namespace
} // namespace zelviewer
