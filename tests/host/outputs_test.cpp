#include "host/outputs.h"
#include "host/run.h"
#include "image/kep.h"
#include "tests/support/failing_calls.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace zelviewer {
namespace {

namespace fs = std::filesystem;

class Outputs : public testing::Test {
protected:
    /// An image of one voxel.
    std::string Write(const std::string& name) const {
        fs::rename(Save(FrameOf<unsigned char>({0}), folder / "new.tif"),
                   folder / name); // the format is recognised by content
        return folder / name;
    }
    /// An image of one voxel, 'v', whose header names another file for it, or leaves that to the file's own name.
    std::string WriteIcs(const std::string& name, const std::string& dataName, bool named) const {
        WriteBytes(folder / dataName, "v");
        const std::string source = named ? "source\tfile\t" + dataName + "\nsource\toffset\t0\n" : "";
        WriteBytes(folder / name, std::string("\t\nics_version\t") + (named ? "2.0" : "1.0") + "\nfilename\tx\n" +
                                      "layout\tparameters\t4\nlayout\torder\tbits\tx\ty\tz\n"
                                      "layout\tsizes\t8\t1\t1\t1\nrepresentation\tformat\tinteger\n"
                                      "representation\tsign\tunsigned\n" +
                                      source + "end\n");
        return folder / name;
    }
    static std::string Refusal(const std::string& output, const std::vector<std::string>& inputs) {
        return OutputRules(inputs, false).RefusalOf(output, {".png"});
    }
    static const std::vector<std::string>& Endings() {
        static const std::vector<std::string> endings = {".gif", ".ics", ".ply", ".png", ".tif", ".tiff"};
        return endings;
    }
    static std::string RefusalOfReplacing(const std::string& output) {
        return OutputRules({}, true).RefusalOf(output, Endings());
    }
    static std::string RefusalOfNew(const std::string& output) {
        return OutputRules({}, false).RefusalOf(output, Endings());
    }
    std::string RefusalOfScreenshot(const std::string& name, const std::vector<std::string>& files) const {
        Options options;
        options.files = files;
        options.screenshot = name;
        return RefusalOfOutputs(options);
    }
    std::string RefusalOfMeshes(const std::string& prefix, const std::vector<std::string>& labels) const {
        Options options;
        options.labels = labels;
        options.exportMeshes = prefix;
        return RefusalOfOutputs(options);
    }
    static std::string Replaces(const std::string& output, const std::string& input) {
        return output + ": It would replace the input '" + input + "'.";
    }

    ScratchFolder folder;
};

TEST_F(Outputs, VoxelsOfSeveralFramesBesideTheirHeaderAreInputsToo) {
    WriteBytes(folder / "times.ids", "vw");
    WriteBytes(folder / "times.ics", "\t\nics_version\t1.0\nfilename\tx\nlayout\tparameters\t3\n"
                                     "layout\torder\tbits\tx\tt\nlayout\tsizes\t8\t1\t2\n"
                                     "representation\tformat\tinteger\nrepresentation\tsign\tunsigned\n");
    fs::create_hard_link(folder / "times.ids", folder / "picture.png");
    EXPECT_EQ(Refusal(folder / "picture.png", {folder / "times.ics"}),
              Replaces(folder / "picture.png", folder / "times.ids"));
}

TEST_F(Outputs, ThePictureOfTheVolumeCountsToo) {
    Options options;
    options.screenshot = folder / "a.b.png";
    options.view = Write("a.b-volume.png"); // a strange name for a view
    EXPECT_EQ(RefusalOfOutputs(options), "") << "without a volume there is no such picture";
    options.volume = true;
    EXPECT_EQ(RefusalOfOutputs(options), Replaces(folder / "a.b-volume.png", *options.view));
    options.screenshot = *options.view;
    EXPECT_EQ(RefusalOfOutputs(options), Replaces(*options.view, *options.view));
}

TEST_F(Outputs, ANameWithItsEndingThatNobodyReadsIsTaken) {
    const std::string input = Write("stack.tif");
    for (const std::string& name : {folder / "new.png", folder / "missing folder/new.png", std::string("a.png")})
        EXPECT_EQ(Refusal(name, {input}), "") << name;
    EXPECT_EQ(Refusal("a.png", {}), "");
}

TEST_F(Outputs, TheEndingMayBeInCapitals) {
    for (const char* name : {"a.png", "a.PNG", "a.pNg", "a.tif.png", ".png"})
        EXPECT_EQ(Refusal(name, {}), "") << name;
}

TEST_F(Outputs, ANameWithoutItsEndingIsRefused) {
    for (const std::string name :
         {"stack.tif", "a", "png", "apng", "a.png.tif", "a.png/", "a.png ", "a.jpg", ".pn", ""})
        EXPECT_EQ(Refusal(name, {}), name + ": The name must end in .png.");
}

TEST_F(Outputs, AnInputIsRefusedUnderEveryName) {
    const std::string input = Write("a.png"), other = Write("b.tif");
    fs::create_symlink("a.png", folder / "link.png");
    fs::create_symlink("link.png", folder / "link of link.png");
    fs::create_hard_link(input, folder / "hard.png");
    fs::create_directory_symlink(folder.GetPath(), folder / "folder");
    for (const char* name : {"a.png", "./a.png", "folder/a.png", "folder/folder/a.png", "link.png", "link of link.png",
                             "hard.png", "folder/hard.png"})
        EXPECT_EQ(Refusal(folder / name, {other, input}), Replaces(folder / name, input));
    EXPECT_EQ(Refusal(input, {folder / "hard.png"}), Replaces(input, folder / "hard.png"));
    EXPECT_EQ(Refusal(input, {folder / "link.png"}), Replaces(input, folder / "link.png"));
}

TEST_F(Outputs, ACopyOfAnInputIsAFileOfItsOwn) {
    const std::string input = Write("a.tif");
    fs::copy_file(input, folder / "copy.tif");
    EXPECT_EQ(OutputRules({input}, true).RefusalOf(folder / "copy.tif", {".tif"}), "");
    EXPECT_EQ(OutputRules({input}, true).RefusalOf(input, {".tif"}), Replaces(input, input));
}

TEST_F(Outputs, AnInputThatIsNotThereIsKnownByItsName) {
    const std::string name = folder / "missing.png";
    EXPECT_EQ(Refusal(name, {name}), Replaces(name, name));
}

TEST_F(Outputs, TheFileThatHoldsAnInputsVoxelsIsAnInputToo) {
    const std::string first = WriteIcs("first.ics", "first.ids", false),
                      second = WriteIcs("second.ics", "voxels", true);
    fs::create_symlink("first.ids", folder / "a.png");
    fs::create_hard_link(folder / "voxels", folder / "b.png");
    EXPECT_EQ(Refusal(folder / "a.png", {first, second}), Replaces(folder / "a.png", folder / "first.ids"));
    EXPECT_EQ(Refusal(folder / "b.png", {first, second}), Replaces(folder / "b.png", folder / "voxels"));
}

TEST_F(Outputs, WhatTheSystemFailsToTellIsNotReplaced) {
    const std::string image = Write("image.tif");
    fs::create_symlink("image.tif", folder / "link.tif");
    WriteBytes(folder / "notes.tif", "kept");
    const OutputRules rules({image}, true);
    for (const char* const name : {"link.tif", "notes.tif"}) {
        std::string refusal, call;
        std::size_t number = 0;
        do {
            const FailingCall fault(number++, EIO);
            refusal = rules.RefusalOf(folder / name, {".tif"});
            call = fault.GetName();
            EXPECT_NE(refusal, "") << name << ", " << call;
        } while (!call.empty());
        EXPECT_GT(number, 1U);
    }
    const FailingCall fault(1, EIO);
    EXPECT_EQ(rules.RefusalOf(folder / "notes.tif", {".tif"}),
              folder / "notes.tif" + ": It is there already and cannot be read: Input/output error");
}

TEST_F(Outputs, AScreenshotReplacesNeitherImagesNorLabels) {
    const std::string image = Write("a.tif"), labels = Write("l.png");
    EXPECT_EQ(RefusalOfScreenshot(folder / "new.png", {image}), "");
    EXPECT_EQ(RefusalOfScreenshot(image, {}), image + ": The name must end in .png.");
    EXPECT_EQ(RefusalOfScreenshot(image, {image}), Replaces(image, image));
    Options options;
    options.files = {image};
    options.labels = {labels};
    options.screenshot = labels;
    EXPECT_EQ(RefusalOfOutputs(options), Replaces(labels, labels));
    options.screenshot.reset();
    EXPECT_EQ(RefusalOfOutputs(options), "");
}

TEST_F(Outputs, MeshesReplaceNoLabels) {
    const std::string prefix = folder / "cell";
    const std::string labels = Write("l.tif");
    EXPECT_EQ(RefusalOfMeshes(prefix, {labels}), "");
    EXPECT_EQ(RefusalOfMeshes(folder / "missing folder/cell", {labels}), "");
    fs::create_symlink("l.tif", folder / "cell65535.ply");
    EXPECT_EQ(RefusalOfMeshes(prefix, {labels}), Replaces(folder / "cell65535.ply", labels));
    EXPECT_EQ(RefusalOfMeshes(folder / "cel", {labels}), ""); // "l65535" is no number
    EXPECT_EQ(RefusalOfMeshes(folder / "", {labels}), "");
    const std::string later = Write("8_t12.ply");
    EXPECT_EQ(RefusalOfMeshes(folder / "", {labels, later}), Replaces(folder / "8_t12.ply", later));
}

TEST_F(Outputs, OlderMeshesAreKeptOrReplacedAsAWhole) {
    const std::string labels = Write("l.tif"), old = folder / "cell7.ply";
    WriteBytes(old, "ply\nformat ascii 1.0\n");
    Options options;
    options.labels = {labels};
    options.exportMeshes = folder / "cell";
    EXPECT_EQ(RefusalOfOutputs(options), old + ": It is there already; --force replaces it.");
    options.force = true;
    EXPECT_EQ(RefusalOfOutputs(options), "");
    WriteBytes(old, "notes on cell 7");
    EXPECT_EQ(RefusalOfOutputs(options), old + ": It is there already and not a .ply file; it is not replaced.");
}

TEST_F(Outputs, EachFileOfASequenceCounts) {
    Options options;
    options.save.view = folder / "viewX.png";
    options.save.frames = Range{0, 2, 1};
    EXPECT_EQ(RefusalOfOutputs(options), "");
    WriteBytes(folder / "view2.png", "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(RefusalOfOutputs(options), folder / "view2.png" + ": It is there already; --force replaces it.");
    options.save.frames = Range{0, 1, 1};
    EXPECT_EQ(RefusalOfOutputs(options), "");
}

TEST_F(Outputs, AFilmIsOneFileThatEndsInGif) {
    Options options;
    options.save.film = folder / "filmX.gif";
    options.save.frames = Range{0, 2, 1};
    WriteBytes(folder / "film1.gif", "GIF89a");
    EXPECT_EQ(RefusalOfOutputs(options), "");
    WriteBytes(folder / "filmX.gif", "GIF89a");
    EXPECT_EQ(RefusalOfOutputs(options), folder / "filmX.gif" + ": It is there already; --force replaces it.");
    options.save.film = folder / "film.avi";
    EXPECT_EQ(RefusalOfOutputs(options), folder / "film.avi" + ": The name must end in .gif.");
}

struct Kind {
    std::string name, start;
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) {
    return out << kind.name;
}

const std::vector<Kind> kinds = {{"a.gif", "GIF89a..."},
                                 {"b.gif", "GIF87a..."},
                                 {"a.ics", "\t\nics_version\t2.0\n"},
                                 {"a.ply", "ply\nformat"},
                                 {"b.ply", "ply\r\nformat"},
                                 {"a.PNG", "\x89PNG\r\n\x1A\n..."},
                                 {"a.tif", std::string("II*\0....", 8)},
                                 {"b.tiff", std::string("MM\0*....", 8)},
                                 {"c.tif", std::string("II+\0....", 8)},
                                 {"d.TIF", std::string("MM\0+....", 8)}};

TEST_F(Outputs, AFileOfTheSameKindIsReplacedOnlyIfAskedFor) {
    for (const Kind& kind : kinds) {
        const std::string name = folder / kind.name;
        EXPECT_EQ(RefusalOfNew(name), "");
        WriteBytes(name, kind.start);
        EXPECT_EQ(RefusalOfNew(name), name + ": It is there already; --force replaces it.");
        EXPECT_EQ(RefusalOfReplacing(name), "") << kind;
    }
}

TEST_F(Outputs, AFileOfAnotherKindIsNeverReplaced) {
    for (const Kind& kind : kinds)
        for (const std::string& ending : Endings()) {
            if (kind.name.ends_with(ending) || (kind.name.ends_with("f") && ending.starts_with(".tif")) ||
                kind.name.ends_with("F") || (kind.name == "a.PNG" && ending == ".png"))
                continue;
            const std::string name = folder / ("other" + ending);
            WriteBytes(name, kind.start);
            const std::string refusal =
                name + ": It is there already and not a " + ending + " file; it is not replaced.";
            EXPECT_EQ(RefusalOfReplacing(name), refusal) << kind;
            EXPECT_EQ(RefusalOfNew(name), refusal) << kind;
        }
}

TEST_F(Outputs, AShortFileIsOfNoKind) {
    for (const std::string& ending : Endings()) {
        WriteBytes(folder / ("short" + ending), "I");
        EXPECT_THAT(RefusalOfReplacing(folder / ("short" + ending)), testing::HasSubstr("not a " + ending + " file"));
    }
}

TEST_F(Outputs, AnEmptyFileHasNothingToLose) {
    WriteBytes(folder / "empty.gif", "");
    EXPECT_EQ(RefusalOfReplacing(folder / "empty.gif"), "");
    EXPECT_EQ(RefusalOfNew(folder / "empty.gif"), folder / "empty.gif" + ": It is there already; --force replaces it.");
}

TEST_F(Outputs, FoldersAndDevicesAreNeverReplaced) {
    fs::create_directory(folder / "folder.png");
    fs::create_symlink("/dev/null", folder / "device.png");
    for (const char* name : {"folder.png", "device.png"})
        for (const bool replaces : {false, true})
            EXPECT_EQ(OutputRules({}, replaces).RefusalOf(folder / name, {".png"}),
                      folder / name + ": It is there already and not a plain file.");
}

TEST_F(Outputs, ALinkToNothingIsNoFileYet) {
    fs::create_symlink("nothing.png", folder / "link.png");
    EXPECT_EQ(RefusalOfNew(folder / "link.png"), "");
}

TEST_F(Outputs, MeshesInTheCurrentFolderHaveNamesWithoutOne) {
    const fs::path before = fs::current_path();
    fs::current_path(folder.GetPath());
    Write("7.ply");
    EXPECT_EQ(RefusalOfMeshes("", {folder / "7.ply"}), Replaces("7.ply", folder / "7.ply"));
    fs::current_path(before);
}

} // namespace
} // namespace zelviewer
