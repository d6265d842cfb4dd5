// Views and galleries that the program saves without a window: what is in them, what other programs find in them, and
// what becomes of the files when something goes wrong. None of the runs has a display.

#include "image/kep.h"
#include "tests/host/program.h"
#include "tests/support/file_size_limit.h"

#include <wx/gifdecod.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/wfstream.h>

#include <libics.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <gmock/gmock.h>
#include <random>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using zelviewer::test::Display;
using zelviewer::test::Outcome;
using zelviewer::test::ProgramTest;

using Colour = kep::RGB_generic<unsigned char>;
using Sheet = kep::Image3d<Colour>;

constexpr Colour white{255, 255, 255};

Sheet Read(const std::string& name) {
    return Sheet(name.c_str(), nullptr, false, -1, nullptr, nullptr);
}
Colour At(const Sheet& sheet, int x, int y) {
    return sheet.GetVoxel(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0);
}
Colour Gray(int level) {
    const auto l = static_cast<unsigned char>(level);
    return {l, l, l};
}
bool IsSame(const Sheet& a, const Sheet& b) {
    return !a.IsEmpty() && a.GetSize() == b.GetSize() && std::equal(a.begin(), a.end(), b.begin());
}
/// The value of WriteRamp's voxels.
int Ramp(int x, int y, int z) {
    return x + 2 * y + 5 * z;
}

class SavingPictures : public ProgramTest {
protected:
    /// Runs the program, which must succeed without a word. Older pictures of the test are replaced.
    void Save(std::vector<std::string> arguments) {
        arguments.emplace_back("--force");
        const Outcome outcome = Run(arguments, Display::None);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "");
    }
    Sheet SavedView(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--save-view", folder / "view.tif"});
        Save(arguments);
        return Read(folder / "view.tif");
    }
    Sheet SavedGallery(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--save-gallery", folder / "gallery.tif"});
        Save(arguments);
        return Read(folder / "gallery.tif");
    }
    static void ExpectSize(const Sheet& sheet, int width, int height) {
        ASSERT_EQ(sheet.GetSize(),
                  (kep::Vector3d<std::size_t>(static_cast<std::size_t>(width), static_cast<std::size_t>(height), 1)));
    }
    /// The sheet has a slice of the ramp there.
    static void ExpectSlice(const Sheet& sheet, int left, int top, int z) {
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(At(sheet, left + x, top + y), Gray(Ramp(x, y, z))) << x << " " << y << " " << z;
    }
    /// An image of noise, which no compression makes small.
    std::string WriteNoise(const std::string& name) {
        std::mt19937 random(1);
        kep::Image3d<unsigned char> frame;
        frame.MakeRoom(100, 90, 3);
        for (unsigned char& voxel : frame)
            voxel = static_cast<unsigned char>(random());
        return ::Save(frame, folder / name);
    }
};

TEST_F(SavingPictures, AViewIsTheThreeMiddleCuts) {
    const Sheet sheet = SavedView({WriteRamp("a.tif")});
    ExpectSize(sheet, 40 + 10 + 10, 30 + 10 + 10);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 60; ++x) {
            Colour expected = white;
            if (x < 40 && y < 30)
                expected = Gray(Ramp(x, y, 5));
            else if (x >= 50 && y < 30)
                expected = Gray(Ramp(20, y, x - 50));
            else if (x < 40 && y >= 40)
                expected = Gray(Ramp(x, 15, y - 40));
            ASSERT_EQ(At(sheet, x, y), expected) << x << " " << y;
        }
}

TEST_F(SavingPictures, EachChoiceOfWindows) {
    const std::string name = WriteRamp("a.tif");
    const char* const names[] = {"xy", "xz", "yz"};
    for (int mask = 1; mask < 8; ++mask) {
        std::string list;
        for (int i = 0; i < 3; ++i)
            if ((mask >> i & 1) != 0)
                list += (list.empty() ? "" : ",") + std::string(names[i]);
        const Sheet sheet = SavedView({name, "--windows", list, "--border", "3"});
        const bool xy = (mask & 1) != 0, xz = (mask & 2) != 0, yz = (mask & 4) != 0;
        const int left = xy || xz ? 40 : 0, upper = xy || yz ? 30 : 0;
        const int right = left > 0 ? left + 3 : 0, lower = upper > 0 ? upper + 3 : 0;
        ExpectSize(sheet, yz ? right + 10 : left, xz ? lower + 10 : upper);
        if (xy)
            ExpectSlice(sheet, 0, 0, 5);
        if (yz) {
            EXPECT_EQ(At(sheet, right + 9, 29), Gray(Ramp(20, 29, 9))) << list;
        }
        if (xz) {
            EXPECT_EQ(At(sheet, 39, lower + 9), Gray(Ramp(39, 15, 9))) << list;
        }
        if (!xy && xz && yz) {
            EXPECT_EQ(At(sheet, 5, 5), white);
        }
    }
}

TEST_F(SavingPictures, AViewHasTrueProportionsUnlessTheUserWantsPixels) {
    const std::string name = WriteRamp("a.tif", {2, 2, 1});
    const Sheet sheet = SavedView({name, "--border", "0"});
    ExpectSize(sheet, 40 + 20, 30 + 20);
    EXPECT_EQ(At(sheet, 40 + 13, 4), Gray(Ramp(20, 4, 6)));
    EXPECT_EQ(At(sheet, 7, 30 + 19), Gray(Ramp(7, 15, 9)));
    ExpectSize(SavedView({name, "--voxels"}), 60, 50);
    ExpectSize(SavedView({WriteRamp("b.tif"), "--resolution", "4,4,1"}), 40 + 10 + 40, 30 + 10 + 40);
}

TEST_F(SavingPictures, AGalleryHasAllSlicesInASquare) {
    const Sheet sheet = SavedGallery({WriteRamp("a.tif", {2, 2, 1})});
    // Ten slices: four columns, three rows.
    ExpectSize(sheet, 4 * 50 - 10, 3 * 40 - 10);
    for (int z = 0; z < 10; ++z)
        ExpectSlice(sheet, z % 4 * 50, z / 4 * 40, z);
    EXPECT_EQ(At(sheet, 189, 109), white);
    EXPECT_EQ(At(sheet, 45, 0), white);
}

TEST_F(SavingPictures, SlicesRowsColumnsAndSpacingOfAGallery) {
    const std::string name = WriteRamp("a.tif");
    const Sheet row = SavedGallery({name, "--slices", "0:6:2", "--rows", "1", "--spacing", "0"});
    ExpectSize(row, 160, 30); // room for all four
    for (int i = 0; i < 4; ++i)
        ExpectSlice(row, 40 * i, 0, 2 * i);
    const Sheet columns = SavedGallery({name, "--slices", "3:9", "--columns", "3", "--spacing", "1"});
    ExpectSize(columns, 3 * 41 - 1, 3 * 31 - 1);
    ExpectSlice(columns, 0, 62, 9);
    const Sheet rows = SavedGallery({name, "--slices", "9:9:5", "--rows", "2"});
    ExpectSize(rows, 40, 70);
    ExpectSlice(rows, 0, 0, 9);
    EXPECT_EQ(At(rows, 0, 40), white);
}

TEST_F(SavingPictures, SlicesAreFoundWhateverTheImagesOffset) {
    const kep::Vector3d<float> offset{-17.31F, 2033.7F, 412.123F};
    const kep::Resolution resolution(1 / 0.0645F, 1 / 0.0913F, 1 / 0.2017F);
    kep::Image3d<unsigned char> frame(&offset, &resolution);
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> p = frame.GetPos(i);
        frame.SetVoxel(i, static_cast<unsigned char>(p.x + 2 * p.y + 5 * p.z));
    }
    const Sheet sheet = SavedGallery({::Save(frame, folder / "a.ics"), "--rows", "1"});
    ExpectSize(sheet, 490, 30);
    for (int z = 0; z < 10; ++z)
        ExpectSlice(sheet, z * 50, 0, z);
}

TEST_F(SavingPictures, EveryVoxelTypeAndStretch) {
    const std::string name = WriteRamp("a.tif");
    for (const char* type : {"gray8", "gray16", "int", "float", "rgb", "rgb16", "complex"}) {
        const Sheet sheet = SavedView({name, "--type", type, "--stretch", "linear"});
        ExpectSize(sheet, 60, 50);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x) // up to 39 + 58 + 45 = 142 over all grays
                ASSERT_EQ(At(sheet, x, y), Gray(static_cast<int>(Ramp(x, y, 5) * 255.0 / 142.0 + 0.5))) << type;
    }
    EXPECT_EQ(At(SavedView({name, "--type", "complex", "--part", "real"}), 39, 29),
              Gray(static_cast<int>(Ramp(39, 29, 5) * 255.0 / 142.0 + 0.5)));
}

TEST_F(SavingPictures, LabelsAreOutlined) {
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> p = frame.GetPos(i);
        if (p.x >= 8 && p.x < 18 && p.y >= 8 && p.y < 20)
            frame.SetVoxel(i, 9);
    }
    const std::string image = WriteRamp("a.tif"), labels = ::Save(frame, folder / "labels.tif");
    const Colour paleBlue(128, 128, 255), red(255, 0, 0);
    const Sheet view = SavedView({image, "--labels", labels});
    EXPECT_EQ(At(view, 8, 12), paleBlue);
    EXPECT_EQ(At(view, 12, 12), Gray(Ramp(12, 12, 5)));
    EXPECT_EQ(At(view, 8, 43), paleBlue) << "XZ, through y = 15";
    EXPECT_EQ(At(view, 53, 12), Gray(Ramp(20, 12, 3))) << "YZ, through x = 20, beside them";
    const Sheet gallery = SavedGallery({image, "--components", "--rows", "1", "--labels", labels});
    EXPECT_EQ(At(gallery, 3 * 50 + 17, 19), red);
    EXPECT_EQ(At(gallery, 3 * 50 + 12, 12), Gray(Ramp(12, 12, 3)));
}

TEST_F(SavingPictures, FramesGoIntoFilesOfTheirNumbers) {
    std::vector<std::string> files;
    for (int t = 0; t < 5; ++t) {
        kep::Image3d<unsigned char> frame;
        frame.MakeRoom(4, 3, 2);
        frame.Fill(static_cast<unsigned char>(10 * t));
        files.push_back(::Save(frame, folder / ("in" + std::to_string(t) + ".tif")));
    }
    const auto with = [&files](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), files.begin(), files.end());
        return arguments;
    };
    Save(with({"--save-view", folder / "vXX.tif", "--frames", "1:4:3"}));
    Save(with({"--save-gallery", folder / "gX of X.ics", "--frames", "0:2"}));
    Save(with({"--save-view", folder / "X.tif", "--frames", "2"}));
    Save(with({"--save-view", folder / "first.tif"}));
    EXPECT_THAT(folder.List(), ElementsAre("X.tif", "first.tif", "g0 of X.ics", "g1 of X.ics", "g2 of X.ics", "in0.tif",
                                           "in1.tif", "in2.tif", "in3.tif", "in4.tif", "v01.tif", "v04.tif"));
    const auto firstPixel = [this](const std::string& name) { return At(Read(folder / name), 0, 0); };
    EXPECT_EQ(firstPixel("v01.tif"), Gray(10));
    EXPECT_EQ(firstPixel("v04.tif"), Gray(40));
    EXPECT_EQ(firstPixel("g2 of X.ics"), Gray(20));
    EXPECT_EQ(firstPixel("X.tif"), Gray(20));
    EXPECT_EQ(firstPixel("first.tif"), Gray(0));
}

TEST_F(SavingPictures, OtherProgramsFindTheSamePixels) {
    const std::string name = WriteNoise("a.tif");
    for (const char* const file : {"v.tif", "v.TIFF", "v.ics", "v.png"})
        Save({name, "--save-view", folder / file});
    const Sheet sheet = Read(folder / "v.tif");
    ExpectSize(sheet, 113, 103);
    const auto same = [&sheet](const unsigned char* pixels) {
        return std::equal(pixels, pixels + 3 * sheet.GetNumVoxels(),
                          reinterpret_cast<const unsigned char*>(sheet.begin()));
    };
    const wxInitializer toolkit;
    wxImage::AddHandler(new wxPNGHandler);
    wxImage::AddHandler(new wxTIFFHandler);
    for (const char* const file : {"v.tif", "v.TIFF", "v.png"}) {
        const wxImage image(wxString(folder / file));
        ASSERT_EQ(image.GetSize(), wxSize(113, 103)) << file;
        EXPECT_TRUE(same(image.GetData())) << file;
        EXPECT_FALSE(image.HasAlpha()) << file;
    }
    ICS* ics = nullptr;
    ASSERT_EQ(IcsOpen(&ics, (folder / "v.ics").c_str(), "r"), IcsErr_Ok);
    Ics_DataType type{};
    int dimensions = 0;
    std::array<std::size_t, ICS_MAXDIM> extent{};
    EXPECT_EQ(IcsGetLayout(ics, &type, &dimensions, extent.data()), IcsErr_Ok);
    EXPECT_EQ(type, Ics_uint8);
    EXPECT_EQ(IcsGetDataSize(ics), 3 * sheet.GetNumVoxels());
    IcsClose(ics);
    const Sheet fromIcs = Read(folder / "v.ics");
    ASSERT_EQ(fromIcs.GetSize(), sheet.GetSize());
    EXPECT_TRUE(same(reinterpret_cast<const unsigned char*>(fromIcs.begin())));
    std::string told;
    FILE* const tiffinfo = ::popen(("tiffinfo '" + (folder / "v.tif") + "' 2>&1").c_str(), "r");
    ASSERT_NE(tiffinfo, nullptr);
    for (int c = std::fgetc(tiffinfo); c != EOF; c = std::fgetc(tiffinfo))
        told.push_back(static_cast<char>(c));
    if (const int status = ::pclose(tiffinfo); WEXITSTATUS(status) == 127)
        GTEST_SKIP() << "tiffinfo is not there";
    EXPECT_THAT(told, HasSubstr("Image Width: 113 Image Length: 103"));
    EXPECT_THAT(told, HasSubstr("Samples/Pixel: 3"));
    EXPECT_THAT(told, HasSubstr("Bits/Sample: 8"));
}

TEST_F(SavingPictures, TheProgramsOwnImagesNeedNoFiles) {
    // 320 x 280 x 32 voxels of 0.2 x 0.2 x 0.6 microns: Z takes 96 pixels.
    ExpectSize(SavedView({}), 320 + 10 + 96, 280 + 10 + 96);
    ExpectSize(SavedGallery({"--type", "complex", "--slices", "0:39:20"}), 240 + 10 + 240, 240);
}

TEST_F(SavingPictures, NamesNeedNotBeAscii) {
    const std::string name = WriteRamp("K\xC3\xB6rner 100%d.tif");
    Save({name, "--save-view", folder / "Schn\xC3\xADt 50%s.tif"});
    ExpectSize(Read(folder / "Schn\xC3\xADt 50%s.tif"), 60, 50);
}

TEST_F(SavingPictures, WhatIsNotThereIsToldInOneLine) {
    const std::string name = WriteRamp("a.tif"), missing = folder / "missing.tif", target = folder / "new.tif";
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        std::string errors;
    } cases[] = {
        {{missing, "--save-view", target}, 1, missing + ": There is no such file."},
        {{name, "--save-gallery", target, "--slices", "5:10"},
         1,
         "--slices: There is no slice 10, they are numbered from 0 to 9."},
        {{"--save-view", target, "--frames", "700"},
         1,
         "--frames: There is no frame 700, they are numbered from 0 to "},
        {{name, "--save-view", target, "--part", "phase"}, 1, name + ": --part is for complex images, not for gray8."},
        {{name, "--save-view", target, "--frames", "1"},
         1,
         "--frames: There is no frame 1, they are numbered from 0 to 0."},
        {{name, "--save-view", folder / "new.jpg"},
         2,
         (folder / "new.jpg") + ": The name must end in .tif, .tiff, .ics or .png."},
        {{name, "--save-view", folder / "new"},
         2,
         (folder / "new") + ": The name must end in .tif, .tiff, .ics or .png."},
        {{name, "--save-gallery", name}, 2, name + ": It would replace the input '" + name + "'."},
        {{name, "--save-gallery", target, "--rows", "1000000", "--spacing", "1000000"},
         1,
         target + ": The picture would have 40 x 1000029000000 pixels, which is too large."},
    };
    for (const auto& [arguments, exitCode, errors] : cases) {
        const Outcome outcome = Run(arguments, Display::None);
        EXPECT_EQ(outcome.exitCode, exitCode) << errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, StartsWith("zelviewer: " + errors));
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    }
    EXPECT_THAT(folder.List(), ElementsAre("a.tif"));
}

TEST_F(SavingPictures, NoFileOfASequenceReplacesAnInput) {
    const std::string first = WriteRamp("v0.tif"), second = WriteRamp("v1.tif"), bytes = ReadBytes(second);
    const Outcome outcome = Run({first, second, "--save-view", folder / "vX.tif", "--frames", "1:1"}, Display::None);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors, "zelviewer: " + second + ": It would replace the input '" + second + "'.\n");
    EXPECT_EQ(ReadBytes(second), bytes);
}

TEST_F(SavingPictures, WhatIsThereIsReplacedOnlyByForce) {
    const std::string name = WriteRamp("a.tif"), other = WriteNoise("b.tif");
    const std::vector<std::pair<const char*, std::string>> written = {{"--save-view", folder / "view.tif"},
                                                                      {"--save-view", folder / "view.ics"},
                                                                      {"--save-gallery", folder / "gallery.png"},
                                                                      {"--save-film", folder / "film.gif"}};
    for (const auto& [option, target] : written) {
        EXPECT_EQ(Run({name, option, target}, Display::None).exitCode, 0) << target;
        const std::string before = ReadBytes(target);
        const Outcome refused = Run({other, option, target}, Display::None);
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.errors, "zelviewer: " + target + ": It is there already; --force replaces it.\n");
        EXPECT_EQ(ReadBytes(target), before);
        EXPECT_EQ(Run({other, option, target, "--force"}, Display::None).exitCode, 0) << target;
        const std::string after = ReadBytes(target);
        EXPECT_NE(after, before);
        EXPECT_EQ(Run({name, option, target, "--force"}, Display::None).exitCode, 0) << target;
        EXPECT_EQ(ReadBytes(target), before);
    }
}

TEST_F(SavingPictures, NothingIsWrittenIfOneFileOfASequenceMayNotBe) {
    const std::string name = WriteRamp("a.tif");
    std::filesystem::create_directory(folder / "v2.tif");
    const Outcome outcome =
        Run({name, name, name, "--save-view", folder / "vX.tif", "--frames", "0:2", "--force"}, Display::None);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors, "zelviewer: " + (folder / "v2.tif") + ": It is there already and not a plain file.\n");
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "v2.tif"));
}

TEST_F(SavingPictures, AFilmHasTheViewsOfAllFrames) {
    const std::string first = WriteRamp("a.tif"), second = WriteNoise("b.tif");
    for (const char* const frame : {"0", "1"})
        Save({first, first, "--frames", frame, "--save-view", folder / (std::string("view") + frame + ".tif")});
    Save({first, first, "--save-film", folder / "film.gif", "--fps", "20"});
    wxFileInputStream file(folder / "film.gif");
    wxGIFDecoder decoder;
    ASSERT_EQ(decoder.LoadGIF(file), wxGIF_OK);
    ASSERT_EQ(decoder.GetFrameCount(), 2U);
    EXPECT_EQ(decoder.GetDelay(1), 50);
    for (unsigned t = 0; t < 2; ++t) {
        wxImage picture;
        ASSERT_TRUE(decoder.ConvertToImage(t, &picture));
        const Sheet view = Read(folder / ("view" + std::to_string(t) + ".tif"));
        ASSERT_EQ(picture.GetWidth(), static_cast<int>(view.GetSizeX()));
        ASSERT_EQ(picture.GetHeight(), static_cast<int>(view.GetSizeY()));
        for (int y = 0; y < picture.GetHeight(); ++y)
            for (int x = 0; x < picture.GetWidth(); ++x)
                ASSERT_EQ(Colour(picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y)), At(view, x, y));
    }
}

TEST_F(SavingPictures, AConstantImageIsSavedWithASentence) {
    kep::Image3d<float> frame;
    frame.MakeRoom(8, 8, 4);
    frame.Fill(7);
    const std::string name = ::Save(frame, folder / "flat.tif");
    const Outcome outcome = Run({name, "--save-view", folder / "v.tif"}, Display::None);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "zelviewer: " + name + ": All voxels have the value 7.\n");
    EXPECT_EQ(At(Read(folder / "v.tif"), 3, 3), Gray(255));
}

TEST_F(SavingPictures, MoreThan8BitsAreStretchedAsInAWindow) {
    const std::string name = WriteRamp("a.tif");
    for (const char* type : {"gray16", "float", "rgb16"})
        EXPECT_TRUE(
            IsSame(SavedView({name, "--type", type}), SavedView({name, "--type", type, "--stretch", "percentil"})))
            << type;
    EXPECT_EQ(At(SavedView({name, "--type", "gray16", "--stretch", "none"}), 39, 29), Gray(0)); // 122 / 257
}

TEST_F(SavingPictures, ChannelsAreSavedInTheirColours) {
    const std::string name = folder / "c.ics";
    WriteBytes(name, "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t4\nlayout\torder\tbits\tx\ty\tch\n"
                     "layout\tsizes\t8\t2\t1\t4\nrepresentation\tformat\tinteger\n"
                     "representation\tsign\tunsigned\nrepresentation\tcompression\tuncompressed\nend\nabcdefgh");
    EXPECT_EQ(At(SavedView({name, "--channels", "4,1,2"}), 0, 0), (Colour{'g', 'a', 'c'}));
    EXPECT_EQ(At(SavedView({name, "--channels", "2,3"}), 1, 0), (Colour{'d', 'f', 0}));
    EXPECT_EQ(At(SavedView({name, "--channel", "3"}), 0, 0), Gray('e'));
    const Outcome open = Run({name, "--save-view", folder / "v.tif"}, Display::None);
    EXPECT_EQ(open.exitCode, 1);
    EXPECT_EQ(open.errors, "zelviewer: " + name +
                               ": It has 4 channels: name the one to show by --channel, or two or three by "
                               "--channels.\n");
    EXPECT_EQ(Run({name, "--channel", "5", "--save-view", folder / "v.tif"}, Display::None).errors,
              "zelviewer: " + name + ": There is no channel 5, it has 4 channels.\n");
}

TEST_F(SavingPictures, AMissingFolderIsNamed) {
    const std::string name = folder / "no such folder/v.tif";
    for (const char* const ending : {".tif", ".ics", ".png"}) {
        const std::string target = folder / "no such folder/v" + ending;
        const Outcome outcome = Run({WriteRamp("a.tif"), "--save-view", target}, Display::None);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + target + ": Cannot write the file: [^\n]*\n"));
    }
}

TEST_F(SavingPictures, AFullDiskLeavesTheOldFile) {
    const std::string name = WriteNoise("a.tif");
    for (const char* const ending : {".tif", ".ics", ".png"}) {
        const std::string target = folder / "v" + ending;
        Save({WriteRamp("small.tif"), "--save-view", target});
        const std::string before = ReadBytes(target);
        Outcome outcome;
        {
            const FileSizeLimit limit(20'000);
            outcome = Run({name, "--save-gallery", target, "--force"}, Display::None);
        }
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + target + ": [^\n]+\n"));
        EXPECT_EQ(ReadBytes(target), before);
    }
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "small.tif", "v.ics", "v.png", "v.tif"));
}

TEST_F(SavingPictures, AReadOnlyTargetStays) {
    const std::string name = WriteRamp("a.tif"), target = folder / "v.tif";
    const std::string before("II*\0what stood there before", 27);
    WriteBytes(target, before);
    const auto refuse = [&] {
        const Outcome outcome = Wait(Start({name, "--save-view", target, "--force"}, Display::None, false));
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + target + ": [^\n]*Permission denied[^\n]*\n"));
        EXPECT_EQ(ReadBytes(target), before);
    };
    // The file, and then its folder.
    ASSERT_EQ(0, ::chmod(target.c_str(), 0444));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0777));
    refuse();
    ASSERT_EQ(0, ::chmod(target.c_str(), 0666));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0555));
    refuse();
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0755));
}

TEST_F(SavingPictures, WhereOneFileFailsThoseBeforeAreWholeAndNoneFollow) {
    const std::string name = WriteRamp("a.tif");
    std::filesystem::create_symlink("no such folder/v2.tif", folder / "v2.tif");
    const Outcome outcome =
        Run({name, name, name, name, "--save-view", folder / "vX.tif", "--frames", "0:3"}, Display::None);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + (folder / "v2.tif") + ": [^\n]+\n"));
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "v0.tif", "v1.tif", "v2.tif"));
    for (const char* const file : {"v0.tif", "v1.tif"})
        ExpectSize(Read(folder / file), 60, 50);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "v2.tif"));
}

/// Looks every millisecond. @return whether it came true within a minute: a run that has failed never gets there
bool WaitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

TEST_F(SavingPictures, AFolderThatVanishesBetweenTwoFilesEndsTheRun) {
    const std::string inner = folder / "inner", moved = folder / "moved";
    std::filesystem::create_directory(inner);
    const pid_t child = Start({"--save-gallery", inner + "/gX.tif", "--frames", "0:7"}, Display::None);
    EXPECT_TRUE(WaitUntil([&] { return std::filesystem::exists(inner + "/g0.tif"); }));
    std::filesystem::rename(inner, moved);
    const Outcome outcome = Wait(child);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + inner + "/g[1-7].tif: Cannot write the file: [^\n]*\n"));
    const Sheet sheet = Read(moved + "/g0.tif");
    ExpectSize(sheet, 6 * 330 - 10, 6 * 290 - 10);
    EXPECT_FALSE(std::filesystem::exists(inner));
}

TEST_F(SavingPictures, AKilledRunLeavesWholeFilesAndTheNextOneCleansUp) {
    const std::vector<std::string> arguments{"--save-gallery", folder / "gX.tif", "--frames", "0:3"};
    for (const int delay : {0, 20, 60}) {                      // ms after the first file has been begun
        const std::vector<std::string> before = folder.List(); // what the last one has left
        const pid_t child = Start(arguments, Display::None);
        EXPECT_TRUE(WaitUntil([&] { return folder.List() != before; }));
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        ::kill(child, SIGKILL);
        Wait(child);
        EXPECT_FALSE(delay == 0 && std::filesystem::exists(folder / "g3.tif")) << "it had come to its end";
        for (int t = 0; t < 4; ++t) {
            const std::string name = folder / ("g" + std::to_string(t) + ".tif");
            if (std::filesystem::exists(name)) {
                ExpectSize(Read(name), 6 * 330 - 10, 6 * 290 - 10);
                std::filesystem::remove(name);
            }
        }
    }
    Save(arguments);
    EXPECT_THAT(folder.List(), ElementsAre("g0.tif", "g1.tif", "g2.tif", "g3.tif"));
}

} // namespace
