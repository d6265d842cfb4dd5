#include "host/meshexport.h"
#include "host/message.h"
#include "host/options.h"
#include "host/run.h"
#include "image/kep.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"
#include "tests/volume/label_volumes.h"
#include "tests/volume/ply_reader.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelviewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class MeshExporting : public testing::Test {
protected:
    /// A frame of 6 x 5 x 4 voxels with label 3 at (1, 1, 1) and (4, 3, 2), and label 300 at (4, 1, 1).
    kep::Image3d<unsigned short> MakeLabels(const kep::Resolution& resolution) const {
        kep::Image3d<unsigned short> frame(nullptr, &resolution);
        frame.MakeRoom(6, 5, 4);
        frame.Fill(0);
        frame.SetVoxel(1, 1, 1, 3);
        frame.SetVoxel(4, 3, 2, 3);
        frame.SetVoxel(4, 1, 1, 300);
        return frame;
    }
    template <typename T>
    std::string Write(const std::string& name, const kep::Image3d<T>& frame) const {
        return Save(frame, folder / name);
    }
    MeshExport OrderFor(const std::vector<std::string>& labels) const {
        MeshExport order;
        order.labels = labels;
        order.prefix = folder / "cell";
        order.replaces = true; // those of the order before
        return order;
    }
    /// @return what was said on standard error
    std::string Export(const MeshExport& order) const {
        testing::internal::CaptureStderr();
        EXPECT_NO_THROW(ExportMeshes(order));
        return testing::internal::GetCapturedStderr();
    }
    std::string FailureOf(const MeshExport& order) const {
        try {
            ExportMeshes(order);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "no failure";
    }

    ScratchFolder folder;
};

TEST(MeshFileName, TellsLabelAndFrame) {
    EXPECT_EQ(MeshFileName("out/cell", 7, 0, 1), "out/cell7.ply");
    EXPECT_EQ(MeshFileName("out/cell", 7, 0, 2), "out/cell7_t0.ply");
    EXPECT_EQ(MeshFileName("", 65535, 12, 13), "65535_t12.ply");
}

TEST_F(MeshExporting, EachLabelGetsItsMeshInMicrons) {
    EXPECT_EQ(Export(OrderFor({Write("l.tif", MakeLabels({2, 4, 0.5F}))})), "");
    EXPECT_THAT(folder.List(), ElementsAre("cell3.ply", "cell300.ply", "l.tif"));
    EXPECT_EQ(ReadPly(folder / "cell3.ply").triangles.size(), 16U); // two octahedra, as the label lies in two pieces
    const PlyMesh mesh = ReadPly(folder / "cell300.ply");
    ASSERT_EQ(mesh.triangles.size(), 8U);
    EXPECT_TRUE(GetShape(mesh.triangles.front().data(), mesh.triangles.size()).closed);
    // Voxel (4, 1, 1) of 0.5 x 0.25 x 2 microns reaches from (2, 0.25, 2) to (2.5, 0.5, 4); first comes the middle of
    // its near face, and its octahedron fills a sixth of it.
    EXPECT_EQ(mesh.vertices.at(0), (std::array<double, 3>{2.25, 0.375, 2}));
    EXPECT_NEAR(mesh.GetVolume(), 0.25 / 6, 1e-6);
}

TEST_F(MeshExporting, ComponentsAreNumberedFromOne) {
    MeshExport order = OrderFor({Write("l.ics", MakeLabels({1, 1, 1}))});
    order.components = true;
    EXPECT_EQ(Export(order), "");
    EXPECT_THAT(folder.List(), ElementsAre("cell1.ply", "cell2.ply", "cell3.ply", "l.ics"));
    // In the order of their first voxels: (1, 1, 1), (4, 1, 1), (4, 3, 2).
    EXPECT_EQ(ReadPly(folder / "cell2.ply").vertices.at(0), (std::array<double, 3>{4.5, 1.5, 1}));
    EXPECT_EQ(ReadPly(folder / "cell3.ply").vertices.at(0), (std::array<double, 3>{4.5, 3.5, 2}));
}

TEST_F(MeshExporting, SeveralFramesHaveTheirNumbersInTheNames) {
    const std::string first = Write("a.tif", MakeLabels({1, 1, 1}));
    kep::Image3d<unsigned short> later = MakeLabels({1, 1, 1});
    later.SetVoxel(4, 1, 1, 0);
    EXPECT_EQ(Export(OrderFor({first, Write("b.tif", later)})), "");
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "b.tif", "cell300_t0.ply", "cell3_t0.ply", "cell3_t1.ply"));
}

TEST_F(MeshExporting, TwoValuedFilesHoldOneLabel) {
    kep::Image3d<bool> frame;
    frame.SetResolution({1, 1, 1});
    frame.MakeRoom(4, 4, 4);
    frame.Fill(false);
    frame.SetVoxel(1, 1, 1, true);
    const std::string name = Write("binary.tif", frame);
    MeshExport order = OrderFor({name});
    order.components = true;
    EXPECT_EQ(Export(order), "");
    EXPECT_EQ(ReadPly(folder / "cell1.ply").triangles.size(), 8U);
}

TEST_F(MeshExporting, TheUsersResolutionFillsWhatTheFileLacks) {
    MeshExport order = OrderFor({Write("l.tif", MakeLabels({}))});
    EXPECT_EQ(Export(order), "zelviewer: " + order.labels[0] +
                                 ": The voxel size is not known; the meshes count in pixels. Use --resolution.\n");
    EXPECT_EQ(ReadPly(folder / "cell300.ply").vertices.at(0), (std::array<double, 3>{4.5, 1.5, 1}));
    order.resolution = kep::Vector3d<float>(2, 4, 0.5F);
    EXPECT_EQ(Export(order), "");
    EXPECT_EQ(ReadPly(folder / "cell300.ply").vertices.at(0), (std::array<double, 3>{2.25, 0.375, 2}));
}

TEST_F(MeshExporting, AResolutionInTheFileStands) {
    MeshExport order = OrderFor({Write("l.tif", MakeLabels({1, 1, 1}))});
    order.resolution = kep::Vector3d<float>(2, 4, 0.5F);
    EXPECT_EQ(Export(order),
              "zelviewer: " + order.labels[0] + ": The file tells its voxel size; --resolution is not used.\n");
    EXPECT_EQ(ReadPly(folder / "cell300.ply").vertices.at(0), (std::array<double, 3>{4.5, 1.5, 1}));
}

TEST_F(MeshExporting, SaysWhatHasNoSurface) {
    kep::Image3d<unsigned short> frame = MakeLabels({1, 1, 1});
    frame.Fill(0);
    MeshExport order = OrderFor({Write("empty.tif", frame)});
    EXPECT_EQ(Export(order), "zelviewer: " + order.labels[0] + ": There are no labels.\n");
    frame.Fill(8);
    order = OrderFor({Write("full.tif", frame)});
    EXPECT_EQ(Export(order), "zelviewer: " + order.labels[0] + ": Label 8 fills the frame and has no surface.\n");
    EXPECT_THAT(folder.List(), ElementsAre("empty.tif", "full.tif"));
}

TEST_F(MeshExporting, RefusesFlatFramesAndWhatIsNoLabel) {
    kep::Image3d<unsigned short> flat;
    flat.MakeRoom(6, 5, 1);
    flat.Fill(1);
    const std::string flatName = Write("flat.tif", flat);
    EXPECT_EQ(
        FailureOf(OrderFor({flatName})),
        flatName +
            ": A flat frame has no surfaces: meshes need two voxels or more along each axis. Use --close-meshes.");
    kep::Image3d<float> grey;
    grey.MakeRoom(3, 3, 3);
    grey.Fill(0.5F);
    EXPECT_THAT(FailureOf(OrderFor({Write("grey.tif", grey)})), HasSubstr("grey.tif: "));
    EXPECT_THAT(FailureOf(OrderFor({folder / "missing.tif"})), HasSubstr("missing.tif: "));
    EXPECT_THAT(folder.List(), ElementsAre("flat.tif", "grey.tif"));
}

TEST_F(MeshExporting, ClosedMeshesEndAtTheFacesOfTheImage) {
    kep::Image3d<unsigned short> frame = MakeLabels({2, 4, 0.5F});
    frame.SetOffset({10, 20, 30});
    frame.Fill(7);
    frame.SetVoxel(3, 2, 1, 9);
    MeshExport order = OrderFor({Write("l.tif", frame)});
    order.closed = true;
    EXPECT_EQ(Export(order), "");
    EXPECT_THAT(folder.List(), ElementsAre("cell7.ply", "cell9.ply", "l.tif"));
    const PlyMesh mesh = ReadPly(folder / "cell7.ply");
    EXPECT_TRUE(GetShape(mesh.triangles.front().data(), mesh.triangles.size()).closed);
    // 6 x 5 x 4 voxels of 0.5 x 0.25 x 2 microns.
    const std::array<double, 3> low{10, 20, 30}, high{13, 21.25, 38};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto less = [axis](const auto& a, const auto& b) { return a[axis] < b[axis]; };
        const auto [first, last] = std::minmax_element(mesh.vertices.begin(), mesh.vertices.end(), less);
        EXPECT_EQ((*first)[axis], low[axis]);
        EXPECT_EQ((*last)[axis], high[axis]);
    }
    // In voxels: between their middles 5 x 4 x 3 whole ones, half of one before each square of a face, an eighth before
    // each step of an edge, a 48th at each corner; less the octahedron of the other label, a sixth.
    const double inside = 5 * 4 * 3 + 2 * (5 * 4 + 4 * 3 + 5 * 3) / 2.0 + 4 * (5 + 4 + 3) / 8.0 + 8 / 48.0 - 1 / 6.0;
    const double voxel = 0.5 * 0.25 * 2;
    EXPECT_NEAR(mesh.GetVolume(), inside * voxel, 1e-4);
}

TEST_F(MeshExporting, ALabelInsideIsTheSameClosedOrNot) {
    const std::string labels = Write("l.tif", MakeLabels({2, 4, 0.5F}));
    Export(OrderFor({labels}));
    const std::string before = ReadBytes(folder / "cell300.ply");
    MeshExport order = OrderFor({labels});
    order.closed = true;
    Export(order);
    EXPECT_EQ(ReadBytes(folder / "cell300.ply"), before);
}

TEST_F(MeshExporting, ClosedAFrameMayBeFlat) {
    kep::Image3d<unsigned short> frame;
    frame.SetResolution({1, 1, 1});
    frame.MakeRoom(1, 1, 1);
    frame.Fill(4);
    MeshExport order = OrderFor({Write("l.tif", frame)});
    order.closed = true;
    EXPECT_EQ(Export(order), "");
    const PlyMesh mesh = ReadPly(folder / "cell4.ply");
    EXPECT_EQ(mesh.triangles.size(), 8U);
    EXPECT_NEAR(mesh.GetVolume(), 1.0 / 6, 1e-6); // an octahedron
}

TEST_F(MeshExporting, TheMeshesThemselvesTellTheirUnit) {
    MeshExport order = OrderFor({Write("l.tif", MakeLabels({}))});
    Export(order);
    EXPECT_THAT(ReadBytes(folder / "cell3.ply"), HasSubstr("comment label 3, in pixels\n"));
    order.resolution = kep::Vector3d<float>(2, 4, 0.5F);
    Export(order);
    EXPECT_THAT(ReadBytes(folder / "cell3.ply"), HasSubstr("comment label 3, in microns\n"));
}

TEST_F(MeshExporting, OlderMeshesStayUnlessTheyMayBeReplaced) {
    MeshExport order = OrderFor({Write("l.tif", MakeLabels({1, 1, 1}))});
    Export(order);
    const std::string before = ReadBytes(folder / "cell3.ply");
    order.replaces = false;
    order.closed = true;
    EXPECT_EQ(FailureOf(order), (folder / "cell3.ply") + ": It is there already; --force replaces it.");
    EXPECT_EQ(ReadBytes(folder / "cell3.ply"), before);
}

TEST_F(MeshExporting, ReplacesNoLabels) {
    const std::string first = Write("a.tif", MakeLabels({1, 1, 1})), second = Write("b.tif", MakeLabels({1, 1, 1}));
    const std::string bytes = ReadBytes(second);
    std::filesystem::create_symlink("b.tif", folder / "cell300_t0.ply");
    EXPECT_EQ(FailureOf(OrderFor({first, second})),
              (folder / "cell300_t0.ply") + ": It would replace the input '" + second + "'.");
    EXPECT_EQ(ReadBytes(second), bytes);
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "b.tif", "cell300_t0.ply", "cell3_t0.ply"));
}

TEST_F(MeshExporting, SaysWhereItCannotWrite) {
    MeshExport order = OrderFor({Write("l.tif", MakeLabels({1, 1, 1}))});
    order.prefix = folder / "missing/cell";
    EXPECT_THAT(FailureOf(order), HasSubstr("missing/cell3.ply: Cannot write the file: "));
    EXPECT_THAT(folder.List(), ElementsAre("l.tif"));
}

TEST_F(MeshExporting, TheProgramNeedsNoDisplayForIt) {
    const CommandLine line = ParseCommandLine({"--export-meshes", folder / "cell", "--resolution", "2,4,0.5",
                                               "--components", "--labels", Write("l.tif", MakeLabels({}))});
    ASSERT_EQ(line.command, Command::Run) << line.text;
    const char* const before = std::getenv("DISPLAY");
    const std::string display = before != nullptr ? before : "";
    unsetenv("DISPLAY");
    char name[] = "zelviewer";
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunViewer(line.options, name), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    if (before != nullptr)
        setenv("DISPLAY", display.c_str(), 1);
    EXPECT_EQ(ReadPly(folder / "cell2.ply").vertices.at(0), (std::array<double, 3>{2.25, 0.375, 2}));
}

TEST(MeshOptions, AreReadAndTold) {
    const CommandLine line = ParseCommandLine({"--labels", "a.tif", "b.tif", "--export-meshes", "out/cell"});
    ASSERT_EQ(line.command, Command::Run) << line.text;
    EXPECT_EQ(line.options.exportMeshes, "out/cell");
    EXPECT_THAT(line.options.labels, ElementsAre("a.tif", "b.tif"));
    EXPECT_FALSE(line.options.closeMeshes);
    EXPECT_FALSE(line.options.force);
    const CommandLine closed =
        ParseCommandLine({"--force", "--close-meshes", "--export-meshes", "p", "--labels", "a.tif"});
    EXPECT_TRUE(closed.options.closeMeshes);
    EXPECT_TRUE(closed.options.force);
    EXPECT_FALSE(ParseCommandLine({"a.tif"}).options.exportMeshes);
    EXPECT_THAT(ParseCommandLine({"--help"}).text, HasSubstr("--export-meshes PREFIX"));
}

TEST(MeshOptions, WrongUseIsRefused) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases = {
        {{"--export-meshes"}, "--export-meshes"},
        {{"--export-meshes", "p"}, "--export-meshes goes with --labels."},
        {{"a.tif", "--export-meshes", "p"}, "--export-meshes goes with --labels."},
        {{"a.tif", "--export-meshes", "p", "--labels", "l.tif"}, "--export-meshes takes labels alone and no FILE."},
        {{"--info", "--export-meshes", "p", "--labels", "l.tif"}, "--export-meshes and --info exclude each other."},
        {{"--screenshot", "s.png", "--export-meshes", "p", "--labels", "l.tif"},
         "--export-meshes and --screenshot exclude each other."},
        {{"a.tif", "--close-meshes"}, "--close-meshes goes with --export-meshes."},
        {{"a.tif", "--force"}, "--force goes with options that write files."},
        {{"--type", "int", "--export-meshes", "p", "--labels", "l.tif"}, "--type needs a FILE."},
    };
    for (const auto& [arguments, text] : cases) {
        const CommandLine line = ParseCommandLine(arguments);
        EXPECT_EQ(line.command, Command::Refuse) << text;
        EXPECT_THAT(line.text, HasSubstr(text));
    }
}

} // namespace
} // namespace zelviewer
