// Runs the program itself, as a user does: what it prints, how it ends, and the pictures it writes.

#include "image/kep.h"
#include "tests/host/program.h"

#include <nlohmann/json.hpp>

#include <wx/image.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using zelviewer::test::Display;
using zelviewer::test::Outcome;
using zelviewer::test::ProgramTest;

class ZelViewer : public ProgramTest {
protected:
    /// Takes a screenshot, in place of an older one, which must succeed without a word. @return its picture
    wxImage Screenshot(std::vector<std::string> arguments) {
        const std::string name = folder / "picture.png";
        arguments.insert(arguments.end(), {"--force", "--screenshot", name});
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "");
        if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr)
            wxImage::AddHandler(new wxPNGHandler);
        return wxImage(wxString(name), wxBITMAP_TYPE_PNG);
    }
};

TEST_F(ZelViewer, HelpAndVersionNeedNoDisplay) {
    const Outcome help = Run({"--help"}, Display::None);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, HasSubstr("Usage: zelviewer"));
    EXPECT_EQ(help.errors, "");
    const Outcome version = Run({"--version"}, Display::None);
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_THAT(version.output, StartsWith("zelviewer " ZEL_VERSION "\n"));
    const std::string number = " [0-9]+\\.[0-9]+(\\.[0-9.]+)?\n";
    EXPECT_THAT(version.output, MatchesRegex("zelviewer" + number + "wxWidgets" + number + "libtiff" + number + "zlib" +
                                             number + "libarchive" + number));
    EXPECT_EQ(version.errors, "");
}

TEST_F(ZelViewer, WrongUseEndsWith2AndOneLine) {
    const Outcome outcome = Run({"--frob"}, Display::None);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: [^\n]*--frob\n"));
}

TEST_F(ZelViewer, WithoutADisplayItSaysSoInOneLine) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, {WriteRamp("a.tif")}, {"--screenshot", folder / "a.png"}}) {
        const Outcome outcome = Run(arguments, Display::None);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: There is no display[^\n]*\n"));
    }
}

TEST_F(ZelViewer, AMissingFileEndsWith1AndItsName) {
    const std::string missing = folder / "missing.tif", good = WriteRamp("a.tif");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{missing},
                                                      {good, missing},
                                                      {"--screenshot", folder / "a.png", missing},
                                                      {"--info", missing}}) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "zelviewer: " + missing + ": There is no such file.\n");
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "a.png"));
}

TEST_F(ZelViewer, AFileThatIsNoImageIsNamed) {
    const std::string name = folder / "text.tif";
    WriteBytes(name, "This is no image.");
    const Outcome outcome = Run({name});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors, "zelviewer: " + name + ": The file is not an ICS or TIFF image.\n");
}

TEST_F(ZelViewer, InfoTellsTheSizeWithoutADisplay) {
    const std::string name = WriteRamp("a.tif", {2, 2, 1});
    const Outcome text = Run({"--info", name}, Display::None);
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.output, StartsWith(name + "\n"));
    EXPECT_THAT(text.output, HasSubstr("40 x 30 x 10 voxels"));
    EXPECT_THAT(text.output, HasSubstr("0.5 x 0.5 x 1 microns"));
    const Outcome report = Run({"--info", "--json", name, WriteRamp("b.ics", {2, 2, 1})}, Display::None);
    EXPECT_EQ(report.exitCode, 0);
    const json parsed = json::parse(report.output);
    EXPECT_EQ(parsed["files"][0]["format"], "TIFF");
    EXPECT_EQ(parsed["files"][1]["format"], "ICS");
    EXPECT_EQ(parsed["files"][1]["size"], json({40, 30, 10}));
    EXPECT_EQ(parsed["files"][1]["voxelType"], "gray8");
    EXPECT_EQ(parsed["sequence"]["alike"], true);
}

TEST_F(ZelViewer, InfoCountsLabels) {
    // 40 x 30 x 10 voxels: two blocks of label 7 with 2 voxels and 1, and one voxel of label 9 in the corner.
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    frame.SetVoxel(5, 5, 5, 7);
    frame.SetVoxel(6, 5, 5, 7);
    frame.SetVoxel(20, 5, 5, 7);
    frame.SetVoxel(0, 0, 0, 9);
    const std::string name = folder / "labels.tif";
    Save(frame, name);
    const Outcome stored = Run({"--info", "--labels", name}, Display::None);
    EXPECT_EQ(stored.exitCode, 0);
    EXPECT_EQ(stored.errors, "");
    EXPECT_THAT(stored.output, HasSubstr("  labels       2 as stored, 1 to 3 voxels each, 1 on the border\n"));
    const Outcome connected =
        Run({"--info", "--json", "--components", WriteRamp("a.tif"), "--labels", name}, Display::None);
    EXPECT_EQ(connected.exitCode, 0);
    EXPECT_EQ(json::parse(connected.output)["labels"][0]["labels"],
              json({{"connected", true}, {"count", 3}, {"smallest", 1}, {"largest", 2}, {"onBorder", 1}}));
    const Outcome missing = Run({"--info", "--labels", folder / "missing.tif"}, Display::None);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.errors, HasSubstr("missing.tif: There is no such file."));
}

TEST_F(ZelViewer, LabelsMustFitTheirImage) {
    const std::string image = WriteRamp("a.tif", {2, 2, 1}), picture = folder / "picture.png";
    EXPECT_TRUE(Screenshot({image, "--labels", WriteRamp("l.tif")}).IsOk());
    const std::string other = WriteRamp("m.tif", {2, 2, 2});
    const Outcome differs = Run({"--force", "--screenshot", picture, image, "--labels", other});
    EXPECT_EQ(differs.exitCode, 1);
    EXPECT_EQ(differs.errors,
              "zelviewer: " + other + ": The labels differ from the image in size, voxel size or offset.\n");
}

TEST_F(ZelViewer, InfoTellsOfTheOtherFilesToo) {
    const std::string good = WriteRamp("a.tif"), missing = folder / "missing.tif";
    const Outcome outcome = Run({"--info", missing, good});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.output, StartsWith(good + "\n"));
    EXPECT_EQ(outcome.errors, "zelviewer: " + missing + ": There is no such file.\n");
    const Outcome listed = Run({"--info", "--json", missing, good});
    EXPECT_EQ(listed.exitCode, 1);
    EXPECT_EQ(json::parse(listed.output)["files"][0]["error"], "There is no such file.");
    EXPECT_EQ(listed.errors, outcome.errors);
}

using Levels = std::function<int(int value)>;

/// The ramp's values as they are.
int Unstretched(int value) {
    return value;
}

/// Its values, which go up to 39 + 58 + 45 = 142, spread over all grays.
int Spread(int value) {
    return static_cast<int>(value * 255.0 / 142.0 + 0.5);
}

/// Whether the picture shows the ramp's three middle cuts, one pixel a voxel, in windows whose frame lines are `edge`
/// pixels wide. The rows and columns of the cut are left out: it may be marked there.
bool ShowsTheRamp(const wxImage& picture, const Levels& level, int edge) {
    constexpr int x0 = 20, y0 = 15, z0 = 5; // the middle voxel
    const auto shows = [&](int px, int py, int value) {
        const int l = level(value);
        return picture.GetRed(px, py) == l && picture.GetGreen(px, py) == l && picture.GetBlue(px, py) == l;
    };
    const auto marked = [](int a, int cutA, int b, int cutB) {
        return std::abs(a - cutA) <= 1 || std::abs(b - cutB) <= 1;
    };
    const int xy = 1 + edge;
    const int yz = xy + 40 + 2 * edge; // behind the XY window
    const int xz = xy + 30 + 2 * edge;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            if (!marked(x, x0, y, y0) && !shows(xy + x, xy + y, x + 2 * y + 5 * z0))
                return false;
    for (int z = 0; z < 10; ++z)
        for (int x = 0; x < 40; ++x)
            if (!marked(x, x0, z, z0) && !shows(xy + x, xz + z, x + 2 * y0 + 5 * z))
                return false;
    for (int y = 0; y < 30; ++y)
        for (int z = 0; z < 10; ++z)
            if (!marked(z, z0, y, y0) && !shows(yz + z, xy + y, x0 + 2 * y + 5 * z))
                return false;
    return true;
}

/// The same, for frame lines of any width that leaves the whole picture to be seen.
bool ShowsTheRamp(const wxImage& picture, const Levels& level) {
    return ShowsTheRamp(picture, level, 0) || ShowsTheRamp(picture, level, 1) || ShowsTheRamp(picture, level, 2);
}

TEST_F(ZelViewer, AScreenshotShowsTheThreeMiddleCutsExactly) {
    const wxImage picture = Screenshot({WriteRamp("a.tif")});
    ASSERT_TRUE(picture.IsOk());
    // Six pixels are added to each window: 40 + 6 + 10 + 6 wide and 30 + 6 + 10 + 6 high.
    ASSERT_EQ(picture.GetSize(), wxSize(62, 52));
    EXPECT_TRUE(ShowsTheRamp(picture, Unstretched));
}

TEST_F(ZelViewer, LabelsAreOutlined) {
    // Two blocks of label 9, of which connected components are labels 1 and 2.
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> p = frame.GetPos(i);
        if (p.x % 20 >= 8 && p.x % 20 < 18 && p.y >= 8 && p.y < 20)
            frame.SetVoxel(i, 9);
    }
    const std::string labels = folder / "labels.tif";
    frame.SaveImage(labels.c_str(), kep::FF_BY_NAME, false, nullptr);
    const std::string image = WriteRamp("a.tif");
    int edge = 0; // of the frame lines that are seen
    const wxImage plain = Screenshot({image});
    while (edge < 2 && !ShowsTheRamp(plain, Unstretched, edge))
        ++edge;
    const auto at = [&](const wxImage& picture, int x, int y) {
        return std::vector<int>{picture.GetRed(1 + edge + x, 1 + edge + y),
                                picture.GetGreen(1 + edge + x, 1 + edge + y),
                                picture.GetBlue(1 + edge + x, 1 + edge + y)};
    };
    const auto rampAt = [](int x, int y) { return std::vector<int>(3, x + 2 * y + 5 * 5); };
    const std::vector<int> paleBlue{128, 128, 255}, red{255, 0, 0}, green{0, 255, 0};
    const wxImage stored = Screenshot({image, "--labels", labels});
    EXPECT_EQ(at(stored, 8, 12), paleBlue);
    EXPECT_EQ(at(stored, 37, 19), paleBlue);
    EXPECT_EQ(at(stored, 12, 12), rampAt(12, 12)) << "inside the image is seen";
    EXPECT_EQ(at(stored, 7, 12), rampAt(7, 12));
    const wxImage connected = Screenshot({"--components", image, "--labels", labels});
    EXPECT_EQ(at(connected, 8, 12), red);
    EXPECT_EQ(at(connected, 37, 19), green);
    for (const char* type : {"gray16", "int", "float", "rgb", "rgb16", "complex"})
        EXPECT_EQ(at(Screenshot({"--type", type, image, "--labels", labels}), 8, 12), paleBlue) << type;
}

TEST_F(ZelViewer, VoxelsHaveTrueProportionsUnlessTheUserWantsPixels) {
    // Voxels of 0.5 x 0.5 x 1 microns: two pixels along Z, so Z takes 20.
    const std::string name = WriteRamp("a.tif", {2, 2, 1});
    EXPECT_EQ(Screenshot({name}).GetSize(), wxSize(40 + 6 + 20 + 6, 30 + 6 + 20 + 6));
    const wxImage picture = Screenshot({"--voxels", name});
    ASSERT_EQ(picture.GetSize(), wxSize(62, 52));
    EXPECT_TRUE(ShowsTheRamp(picture, Unstretched));
}

TEST_F(ZelViewer, TheUserTellsTheVoxelSizeThatAFileLacks) {
    EXPECT_EQ(Screenshot({"--resolution", "4,4,1", WriteRamp("a.tif")}).GetSize(), wxSize(40 + 6 + 40 + 6, 82));
}

TEST_F(ZelViewer, AVoxelSizeThatIsNotUsedIsSpokenOf) {
    const std::string name = WriteRamp("a.tif", {2, 2, 1});
    const Outcome outcome = Run({"--resolution", "4,4,1", name, "--screenshot", folder / "a.png"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "zelviewer: " + name + ": The file tells its voxel size; --resolution is not used.\n");
}

TEST_F(ZelViewer, ASequenceOfFilesIsRead) {
    const std::string first = WriteRamp("a.tif"), second = WriteRamp("b.ics");
    EXPECT_EQ(Screenshot({first, second}).GetSize(), wxSize(62, 52));
    const Outcome outcome = Run({"--verbose", first, second, "--screenshot", folder / "a.png"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("I_Reading: " + second));
}

TEST_F(ZelViewer, EveryVoxelTypeIsShown) {
    const std::string name = WriteRamp("a.tif");
    for (const char* type : {"gray8", "gray16", "int", "float", "rgb", "rgb16", "complex"}) {
        const wxImage picture = Screenshot({"--stretch", "linear", "--type", type, name});
        ASSERT_EQ(picture.GetSize(), wxSize(62, 52)) << type;
        EXPECT_TRUE(ShowsTheRamp(picture, Spread)) << type;
    }
}

TEST_F(ZelViewer, UnstretchedGraysSpanTheVoxelTypeOrTheExtremes) {
    const std::string name = WriteRamp("a.tif");
    // 16 bits: 65535 is white, so 257 values share a gray, and 142 is gray 142 / 257 = 0.55.
    const Levels of16Bits = [](int value) { return value > 128 ? 1 : 0; };
    const std::vector<std::pair<const char*, Levels>> cases = {
        {"gray8", Unstretched}, {"gray16", of16Bits}, {"int", Spread},    {"float", Spread},
        {"rgb", Unstretched},   {"rgb16", of16Bits},  {"complex", Spread}};
    for (const auto& [type, level] : cases) {
        EXPECT_TRUE(ShowsTheRamp(Screenshot({"--stretch", "none", "--type", type, name}), level)) << type;
    }
}

bool SamePixels(const wxImage& a, const wxImage& b) {
    return a.IsOk() && b.IsOk() && a.GetSize() == b.GetSize() &&
           std::equal(a.GetData(), a.GetData() + 3 * a.GetWidth() * a.GetHeight(), b.GetData());
}

TEST_F(ZelViewer, WithoutAStretchMoreThan8BitsOpenWithPercentil) {
    const std::string name = WriteRamp("a.tif");
    const std::pair<const char*, const char*> cases[] = {
        {"gray8", "none"},    {"rgb", "none"},        {"complex", "none"},   {"gray16", "percentil"},
        {"int", "percentil"}, {"float", "percentil"}, {"rgb16", "percentil"}};
    for (const auto& [type, stretch] : cases)
        EXPECT_TRUE(
            SamePixels(Screenshot({"--type", type, name}), Screenshot({"--type", type, "--stretch", stretch, name})))
            << type;
}

int CountGray(const wxImage& picture, int level) {
    int count = 0;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            count += picture.GetRed(x, y) == level && picture.GetGreen(x, y) == level && picture.GetBlue(x, y) == level;
    return count;
}

TEST_F(ZelViewer, EachStretchIsThatOfTheMenu) {
    // 12000 voxels: 4 layers of 10, 3 of 60, 3 of 110; of the 10 and the 110, five each are 0 and 255.
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
        frame.SetVoxel(i, frame.GetPos(i).z < 4 ? 10 : frame.GetPos(i).z < 7 ? 60 : 110);
    for (std::size_t i = 0; i < 5; ++i) {
        frame.SetVoxel(i, 0);
        frame.SetVoxel(frame.GetNumVoxels() - 1 - i, 255);
    }
    const std::string name = folder / "a.tif";
    Save(frame, name);
    const struct {
        const char* stretch;
        int low, middle, high;
    } cases[] = {
        {"none", 10, 60, 110},
        {"linear", 10, 60, 110},      // 0 to 255 occur, so nothing is gained
        {"percentil", 0, 128, 255},   // 12 voxels are cut off, and more than 5 have 10 and 110; 50 / 100 is 127.5
        {"equalize", 102, 178, 254}}; // 4800, 8400 and 11995 of 12000, times 255, truncated
    for (const auto& [stretch, low, middle, high] : cases) {
        const wxImage picture = Screenshot({"--stretch", stretch, name});
        EXPECT_GT(CountGray(picture, middle), 1000) << stretch; // the XY window has 1200 pixels
        EXPECT_GT(CountGray(picture, low), 200) << stretch;     // the two others 4 * 40 and 4 * 30
        EXPECT_GT(CountGray(picture, high), 150) << stretch;    // and 3 * 40 and 3 * 30
    }
}

TEST_F(ZelViewer, WhatDoesNotSuitTheFileIsRefused) {
    kep::Image3d<kep::RGB_generic<unsigned char>> frame;
    frame.MakeRoom(4, 3, 2);
    const std::string name = folder / "rgb.tif";
    Save(frame, name);
    const auto refusal = [&](const char* option, const char* value) {
        const Outcome outcome = Run({option, value, "--screenshot", folder / "a.png", name});
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_FALSE(std::filesystem::exists(folder / "a.png"));
        return outcome.errors;
    };
    EXPECT_EQ(refusal("--stretch", "equalize"),
              "zelviewer: " + name + ": --stretch equalize is not for colour images such as rgb.\n");
    EXPECT_EQ(refusal("--part", "phase"), "zelviewer: " + name + ": --part is for complex images, not for rgb.\n");
}

TEST_F(ZelViewer, APartOfAComplexFileIsShown) {
    kep::Image3d<std::complex<float>> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    frame.Fill({1, -1});
    frame.SetVoxel(0, {0, -3});
    frame.SetVoxel(1, {5, 1});
    frame.SetVoxel(2, {0, 0});
    const std::string name = folder / "a.ics";
    Save(frame, name);
    const std::pair<const char*, int> cases[] = {{"real", 51},       // 1 of 0 to 5
                                                 {"imaginary", 128}, // -1 of -3 to 1
                                                 {"phase", 113},     // -0.785 of -1.571 to 0.197
                                                 {"amplitude", 71}}; // 1.414 of 0 to 5.099
    for (const auto& [part, level] : cases)
        EXPECT_GT(CountGray(Screenshot({"--part", part, name}), level), 1000) << part;
    frame.Fill({2, -1});
    frame.SetVoxel(0, {2, 1});
    Save(frame, name);
    EXPECT_GT(CountGray(Screenshot({name}), 0), 1000) << "the imaginary part is the first that varies";
    const Outcome outcome = Run({"--part", "real", "--screenshot", folder / "a.png", name});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors, "zelviewer: " + name + ": The part that --part names has the same value everywhere.\n");
}

TEST_F(ZelViewer, IntegersFarApartShareBins) {
    // From the lowest to the highest int there are 2 to the 32 values. -1069531072 is 64 / 255 of the way.
    kep::Image3d<int> frame;
    frame.MakeRoom(sizeX, sizeY, sizeZ);
    frame.Fill(-1069531072);
    frame.SetVoxel(0, std::numeric_limits<int>::min());
    frame.SetVoxel(1, std::numeric_limits<int>::max());
    const std::string name = folder / "a.tif";
    Save(frame, name);
    for (const char* stretch : {"none", "linear"})
        EXPECT_GT(CountGray(Screenshot({"--stretch", stretch, name}), 64), 1000) << stretch;
}

TEST_F(ZelViewer, AConstantImageOpensWithASentence) {
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(8, 8, 4);
    frame.Fill(7);
    const std::string name = folder / "flat.tif", picture = folder / "a.png";
    Save(frame, name);
    const std::pair<const char*, const char*> cases[] = {
        {"gray8", "7"},       {"gray16", "7"},        {"int", "7"},         {"float", "7"},
        {"rgb", "(7, 7, 7)"}, {"rgb16", "(7, 7, 7)"}, {"complex", "7 + 0i"}};
    for (const auto& [type, value] : cases) {
        const Outcome outcome = Run({"--type", type, name, "--screenshot", picture, "--force"});
        EXPECT_EQ(outcome.exitCode, 0) << type;
        EXPECT_THAT(outcome.errors, EndsWith("flat.tif: All voxels have the value " + std::string(value) + ".\n"));
        EXPECT_EQ(wxImage(wxString(picture), wxBITMAP_TYPE_PNG).GetSize(), wxSize(8 + 6 + 4 + 6, 24)) << type;
    }
}

TEST_F(ZelViewer, InvalidFloatsOpenNoBoxInAScreenshot) {
    kep::Image3d<float> frame;
    frame.MakeRoom(8, 8, 4);
    frame.Fill(1.0F);
    frame.SetVoxel(5, NAN);
    const std::string name = folder / "nan.tif";
    Save(frame, name);
    const Outcome outcome = Run({name, "--screenshot", folder / "a.png"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("zelviewer: " + name + ": "));
    EXPECT_THAT(outcome.errors, HasSubstr("invalid values"));
    EXPECT_TRUE(std::filesystem::exists(folder / "a.png"));
}

TEST_F(ZelViewer, AWaveIsShownWhenAComplexImageIsAskedForWithoutFiles) {
    const wxImage phase = Screenshot({"--type", "complex", "--part", "phase"});
    // 240 x 240 x 40 voxels of 0.2 x 0.2 x 0.4 microns: Z takes 80 pixels.
    ASSERT_EQ(phase.GetSize(), wxSize(240 + 6 + 80 + 6, 240 + 6 + 80 + 6));
    EXPECT_FALSE(SamePixels(phase, Screenshot({"--type", "complex"})));
}

TEST_F(ZelViewer, TheSyntheticCellsAreShownWithoutFiles) {
    const wxImage picture = Screenshot({});
    // 320 x 280 x 32 voxels of 0.2 x 0.2 x 0.6 microns: Z takes 96 pixels.
    ASSERT_EQ(picture.GetSize(), wxSize(320 + 6 + 96 + 6, 280 + 6 + 96 + 6));
    int dark = 0, bright = 0;
    for (int y = 10; y < 270; ++y)
        for (int x = 10; x < 310; ++x) {
            dark += picture.GetRed(x, y) < 30;
            bright += picture.GetRed(x, y) > 100;
        }
    EXPECT_GT(dark, 260 * 300 / 3);    // background
    EXPECT_GT(bright, 260 * 300 / 50); // nuclei
    EXPECT_TRUE(SamePixels(picture, Screenshot({"--stretch", "percentil"})));
}

TEST_F(ZelViewer, TheSyntheticCellsStretchAsToldToo) {
    // Values below 4096 are grays below 16.
    const wxImage dark = Screenshot({"--stretch", "none"});
    for (int y = 10; y < 200; ++y) // above the time bar
        for (int x = 10; x < 310; ++x)
            ASSERT_LT(dark.GetRed(x, y), 16) << x << ", " << y; // the marks of the cuts are green
    EXPECT_FALSE(SamePixels(dark, Screenshot({"--stretch", "linear"})));
}

TEST_F(ZelViewer, APictureReplacesNoInput) {
    const std::string stack = WriteRamp("stack.tif"), labels = WriteRamp("labels.tif");
    std::filesystem::create_symlink("stack.tif", folder / "link.png");
    std::filesystem::create_hard_link(labels, folder / "hard.png");
    const std::string bytes = ReadBytes(stack);
    const struct {
        std::vector<std::string> arguments;
        std::string errors;
    } cases[] = {
        {{"--screenshot", stack}, stack + ": The name must end in .png.\n"},
        {{"--screenshot", folder / "new"}, (folder / "new") + ": The name must end in .png.\n"},
        {{"--screenshot", stack, stack}, stack + ": It would replace the input '" + stack + "'.\n"},
        {{stack, "--screenshot", folder / "link.png"},
         (folder / "link.png") + ": It would replace the input '" + stack + "'.\n"},
        {{"--screenshot", folder / "hard.png", stack, "--labels", labels},
         (folder / "hard.png") + ": It would replace the input '" + labels + "'.\n"},
    };
    for (const auto& [arguments, errors] : cases) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "zelviewer: " + errors);
    }
    EXPECT_EQ(ReadBytes(stack), bytes);
    EXPECT_EQ(ReadBytes(labels), bytes);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
    EXPECT_EQ(std::filesystem::hard_link_count(labels), 2U);
    EXPECT_THAT(folder.List(), testing::ElementsAre("hard.png", "labels.tif", "link.png", "stack.tif"));
}

TEST_F(ZelViewer, AnOlderPictureIsReplacedOnlyByForce) {
    const std::string stack = WriteRamp("stack.tif"), target = folder / "a.png", beside = folder / "a-volume.png";
    EXPECT_EQ(Run({stack, "--screenshot", target}).exitCode, 0);
    const std::string before = ReadBytes(target);
    const Outcome refused = Run({stack, "--voxels", "--screenshot", target});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_EQ(refused.errors, "zelviewer: " + target + ": It is there already; --force replaces it.\n");
    EXPECT_EQ(ReadBytes(target), before);
    WriteBytes(beside, "notes");
    const Outcome kept = Run({stack, "--force", "--volume", "--screenshot", target});
    EXPECT_EQ(kept.exitCode, 2);
    EXPECT_EQ(kept.errors, "zelviewer: " + beside + ": It is there already and not a .png file; it is not replaced.\n");
    EXPECT_EQ(ReadBytes(beside), "notes");
    EXPECT_EQ(ReadBytes(target), before);
}

TEST_F(ZelViewer, MeshesReplaceNoInput) {
    const std::string labels = WriteRamp("labels.tif"), bytes = ReadBytes(labels);
    std::filesystem::create_symlink("labels.tif", folder / "cell7.ply");
    const Outcome outcome = Run({"--export-meshes", folder / "cell", "--labels", labels}, Display::None);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "zelviewer: " + (folder / "cell7.ply") + ": It would replace the input '" + labels + "'.\n");
    EXPECT_EQ(ReadBytes(labels), bytes);
    EXPECT_THAT(folder.List(), testing::ElementsAre("cell7.ply", "labels.tif"));
}

TEST_F(ZelViewer, APictureThatCannotBeWrittenEndsWith1) {
    const std::string name = folder / "no such folder/a.png";
    const Outcome outcome = Run({WriteRamp("a.tif"), "--screenshot", name});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, MatchesRegex("zelviewer: " + name + ": Cannot write the file: [^\n]*\n"));
}

TEST_F(ZelViewer, NamesNeedNotBeAscii) {
    EXPECT_EQ(Screenshot({WriteRamp("K\xC3\xB6rner 100%d.tif")}).GetSize(), wxSize(62, 52));
}

TEST_F(ZelViewer, ThePictureOfTheVolumeIsWrittenBesideTheOther) {
    const std::string stack = WriteRamp("stack.tif"), view = folder / "far.zelview";
    const wxImage alone = Screenshot({stack});
    EXPECT_TRUE(SamePixels(Screenshot({stack, "--volume"}), alone));
    const wxImage volume(wxString(folder / "picture-volume.png"), wxBITMAP_TYPE_PNG);
    ASSERT_TRUE(volume.IsOk());
    std::ofstream(view) << "-9 "; // the rest of the view stands
    Screenshot({stack, "--view", view});
    const wxImage far(wxString(folder / "picture-volume.png"), wxBITMAP_TYPE_PNG);
    ASSERT_EQ(far.GetSize(), volume.GetSize());
    const auto countBlue = [](const wxImage& picture) { // the lines of the box
        int blue = 0;
        for (int i = 0; i < picture.GetWidth() * picture.GetHeight(); ++i)
            blue += picture.GetData()[3 * i] < 20 && picture.GetData()[3 * i + 2] > 150 ? 1 : 0;
        return blue;
    };
    EXPECT_GT(countBlue(volume), 2000); // four sides of 380 pixels, four of 250, and what joins them
    EXPECT_LT(countBlue(far), countBlue(volume) * 2 / 3);
}

TEST_F(ZelViewer, AViewThatIsMissingEndsWith1) {
    const std::string view = folder / "missing.zelview";
    const Outcome outcome = Run({WriteRamp("a.tif"), "--view", view, "--screenshot", folder / "a.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors, "zelviewer: " + view + ": The file cannot be opened.\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "a.png"));
}

} // namespace
