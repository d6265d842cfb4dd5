// What exceptions carry: the text for the user, and of files the name and the reason apart.

#include "core/kepcore/file/kep_refusal.h"
#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

using kep::InternalException;
using kep::IOException;
using kep::LibException;

TEST(Exceptions, SentencesStandBehindTheOperation) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"MakeRoom(): The image is too large.", "The image is too large."},
        {"LUT::Set(): The key lies outside the table.", "The key lies outside the table."},
        {"Image3d, copy constructor: The box is too large.", "Image3d, copy constructor: The box is too large."},
        {"Something (): odd.", "Something (): odd."},
        {"Incorrect FPS requested.", "Incorrect FPS requested."},
        {"F(): ", ""},
        {"", ""},
    };
    for (const auto& [text, sentence] : cases) {
        EXPECT_EQ(LibException(text).GetSentence(), sentence);
        EXPECT_EQ(InternalException(text).GetSentence(), sentence);
        EXPECT_EQ(IOException(text).GetReason(), sentence);
        EXPECT_EQ(IOException(text).GetFileName(), "");
        EXPECT_EQ(IOException(text).GetText(), text);
    }
}

/// One refusal of the file 'a b.tif'.
struct Refusal {
    std::function<void()> refuse;
    const char* text;
    const char* reason;
};

TEST(Exceptions, OfFilesCarryNameAndReasonApart) {
    const std::string name = "a b.tif";
    using namespace kep::detail;
    const std::vector<Refusal> refusals = {
        {[&] { ThrowDamaged(name, "page 3: too short"); },
         "ReadImage(): The file 'a b.tif' is damaged: page 3: too short", "The file is damaged: page 3: too short"},
        {[&] { ThrowNotSupported(name, "CMYK"); }, "ReadImage(): The voxel type of 'a b.tif' is not supported: CMYK.",
         "The voxel type is not supported: CMYK."},
        {[&] { ThrowChannels(name, 4); }, "ReadImage(): 'a b.tif' holds 4 channels; one frame holds one.",
         "The file holds 4 channels; one frame holds one."},
        {[&] { ThrowNotOneFrame(name, 2, "time points"); },
         "ReadImage(): 'a b.tif' holds 2 time points; one file must hold one frame.",
         "The file holds 2 time points; one file must hold one frame."},
        {[&] { ThrowManyFrames(name, 2, 51); },
         "ReadImage(): 'a b.tif' holds 2 channels and 51 time points; one frame holds one of each.",
         "The file holds 2 channels and 51 time points; one frame holds one of each."},
        {[&] { ThrowNoSuchFrame(name, 3, 0, 1, 51); },
         "ReadImage(): 'a b.tif' has no channel 4 at time point 1; it holds 1 channel and 51 time points.",
         "The file has no channel 4 at time point 1; it holds 1 channel and 51 time points."},
        {[&] { ThrowCannotOpen(name, ENOENT); }, "ReadImage(): There is no such file as 'a b.tif'.",
         "There is no such file."},
        {[&] { ThrowCannotOpen(name, EISDIR); }, "ReadImage(): 'a b.tif' is a folder, not a file.",
         "It is a folder, not a file."},
        {[&] { ThrowCannotOpen(name, EACCES); }, "ReadImage(): No permission to read the file 'a b.tif'.",
         "No permission to read the file."},
        {[&] { ThrowCannotOpen(name, EINVAL); }, "ReadImage(): 'a b.tif' is not a plain file.",
         "It is not a plain file."},
        {[&] { ThrowCannotOpen(name, EMFILE); }, "ReadImage(): Cannot open the file 'a b.tif': Too many open files.",
         "Cannot open the file: Too many open files."},
        {[&] { ThrowCannotRead("The pages", " of ", name, " differ in size or type."); },
         "ReadImage(): The pages of 'a b.tif' differ in size or type.", "The pages differ in size or type."},
        {[&] { ThrowCannotWrite(name, "No space left on device"); },
         "SaveImage(): Cannot write the file 'a b.tif': No space left on device",
         "Cannot write the file: No space left on device"},
        {[&] { ReadWithinMemory(name.c_str(), [] { throw std::bad_alloc(); }); },
         "ReadImage(): Not enough memory for 'a b.tif'.", "Not enough memory."},
        {[&] { kep::Image3d<int>().SaveImage(name.c_str(), kep::FF_BY_NAME, false, nullptr); },
         "SaveImage(): The image has no voxels.", "The image has no voxels."},
    };
    for (const Refusal& refusal : refusals) {
        try {
            refusal.refuse();
            ADD_FAILURE() << "nothing was thrown instead of: " << refusal.text;
        } catch (const IOException& failure) {
            EXPECT_EQ(failure.GetText(), refusal.text);
            EXPECT_EQ(failure.GetFileName(), name);
            EXPECT_EQ(failure.GetReason(), refusal.reason);
        }
    }
}

/// The exception that reading or saving a file ends in.
IOException FailureOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const IOException& failure) {
        return failure;
    }
    return IOException("nothing was thrown");
}

TEST(Exceptions, NameTheFileThatFailed) {
    const ScratchFolder folder;
    const std::string missing = folder / "missing 'of' \xC3\xBC.tif"; // quotes in a name mislead nobody
    const IOException unopened = FailureOf([&] { kep::ReadImageInfo(missing.c_str()); });
    EXPECT_EQ(unopened.GetFileName(), missing);
    EXPECT_EQ(unopened.GetReason(), "There is no such file.");
    EXPECT_EQ(unopened.GetText(), "ReadImage(): There is no such file as '" + missing + "'.");
    // A file in the place of a folder has nothing below it either.
    WriteBytes(folder / "file", "");
    EXPECT_EQ(FailureOf([&] { kep::ReadImageInfo((folder / "file/a.tif").c_str()); }).GetReason(),
              "There is no such file.");
    EXPECT_EQ(FailureOf([&] { kep::ReadImageInfo(folder.GetPath().c_str()); }).GetReason(),
              "It is a folder, not a file.");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(FailureOf([&] { kep::ReadImageInfo((folder / "pipe").c_str()); }).GetReason(), "It is not a plain file.");

    const std::string text = folder / "text.tif";
    WriteBytes(text, "plain words");
    const IOException unknown = FailureOf([&] { kep::ReadImageInfo(text.c_str()); });
    EXPECT_EQ(unknown.GetFileName(), text);
    EXPECT_EQ(unknown.GetReason(), "The file is not an ICS or TIFF image.");

    kep::Image3d<unsigned short> frame;
    frame.MakeRoom(2, 1, 1);
    frame.SetVoxel(1, 256);
    const std::string wide = folder / "wide.tif";
    frame.SaveImage(wide.c_str(), kep::FF_BY_NAME, false, nullptr);
    kep::Image3d<unsigned char> narrow;
    const IOException unfit = FailureOf([&] { narrow.ReadImage(wide.c_str(), nullptr, false, -1, nullptr, nullptr); });
    EXPECT_EQ(unfit.GetFileName(), wide);
    EXPECT_EQ(unfit.GetReason(), "The value 256 at (1, 0, 0) does not fit into 8-bit gray.");
    const IOException unsupported =
        FailureOf([&] { narrow.ReadImage(wide.c_str(), nullptr, true, -1, nullptr, nullptr); });
    EXPECT_EQ(unsupported.GetFileName(), wide);
    EXPECT_EQ(unsupported.GetReason(), "These arguments are not supported.");

    const std::string picture = folder / "a.png";
    const IOException formatless =
        FailureOf([&] { frame.SaveImage(picture.c_str(), kep::FF_BY_NAME, false, nullptr); });
    EXPECT_EQ(formatless.GetFileName(), picture);
    EXPECT_EQ(formatless.GetReason(), "The format cannot be told from its suffix; use .ics or .tif.");
    const std::string nowhere = folder / "none/a.tif";
    const IOException unwritten = FailureOf([&] { kep::AtomicFile file(nowhere); });
    EXPECT_EQ(unwritten.GetFileName(), nowhere);
    EXPECT_EQ(unwritten.GetReason(), "Cannot write the file: no file can be made in the folder '" + (folder / "none/") +
                                         "': No such file or directory");
}

} // namespace
