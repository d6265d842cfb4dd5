#include "model/zel_meshfile.h"

#include "core/kepcore/kep_exceptions.h"
#include "tests/support/save_faults.h"
#include "tests/support/scratch_folder.h"
#include "tests/volume/label_volumes.h"
#include "tests/volume/ply_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class MeshFile : public testing::Test {
protected:
    /// Voxel (2, 1, 1) of 5 x 4 x 3 has the label 5.
    void MakeFrame(const kep::Vector3d<float>& offset, const kep::Resolution& resolution) {
        frame.SetOffset(offset);
        frame.SetResolution(resolution);
        frame.MakeRoom(5, 4, 3);
        frame.Fill(0);
        frame.SetVoxel(2, 1, 1, 5);
        const kep::Vector3d<float> cell = kep::PixelsToMicrons(kep::Vector3d<std::size_t>(1, 1, 1), resolution);
        generator.GenerateSurfaces(frame.begin(), {{5, 0}}, 5, 4, 3, cell.x, cell.y, cell.z);
    }
    const zel::LabelSurface& Surface() const { return generator.GetSurfaces().at(0); }

    ScratchFolder folder;
    kep::Image3d<unsigned short> frame;
    zel::IsosurfaceGenerator generator;
    const std::string name = folder / "mesh.ply";
};

TEST_F(MeshFile, HasAPlainHeaderAndTheBytesThatItPromises) {
    MakeFrame({}, {1, 1, 1});
    zel::SaveMesh(name, Surface(), frame);
    const std::string bytes = ReadBytes(name);
    const std::string header = "ply\nformat binary_little_endian 1.0\ncomment label 5, in microns\nelement vertex 6\n"
                               "property float x\nproperty float y\nproperty float z\n"
                               "property float nx\nproperty float ny\nproperty float nz\n"
                               "element face 8\nproperty list uchar uint vertex_indices\nend_header\n";
    EXPECT_THAT(bytes, StartsWith(header));
    EXPECT_EQ(bytes.size(), header.size() + 6 * 24 + 8 * 13);
    EXPECT_EQ(folder.List(), std::vector<std::string>{"mesh.ply"});
}

TEST_F(MeshFile, WithoutAVoxelSizeItCountsInPixels) {
    MakeFrame({}, {});
    zel::SaveMesh(name, Surface(), frame);
    EXPECT_THAT(ReadBytes(name), HasSubstr("\ncomment label 5, in pixels\n"));
}

TEST_F(MeshFile, IsTheOldOneOrWholeWhicheverCallFails) {
    MakeFrame({}, {1, 1, 1});
    ExpectOldOrWholeAtEveryFault(name, [this] {
        try {
            zel::SaveMesh(name, Surface(), frame);
        } catch (const kep::IOException&) {
            return false;
        }
        return true;
    });
}

TEST_F(MeshFile, PlacesTheVoxelWhereThePictureShowsIt) {
    // Voxels of 0.5 x 0.25 x 2 microns from (10, 20, 30) on: the voxel (2, 1, 1) reaches from (11, 20.25, 32) to
    // (11.5, 20.5, 34), and the corners of its octahedron are the middles of its faces.
    MakeFrame({10, 20, 30}, {2, 4, 0.5F});
    zel::SaveMesh(name, Surface(), frame);
    const PlyMesh mesh = ReadPly(name);
    using Place = std::array<double, 3>;
    // The order is that of the surface, which comes by slices, then rows, then along the row.
    EXPECT_EQ(mesh.vertices, (std::vector<Place>{{11.25, 20.375, 32},
                                                 {11, 20.375, 33},
                                                 {11.5, 20.375, 33},
                                                 {11.25, 20.25, 33},
                                                 {11.25, 20.375, 34},
                                                 {11.25, 20.5, 33}}));
    EXPECT_EQ(mesh.normals, (std::vector<Place>{{0, 0, -1}, {-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 0, 1}, {0, 1, 0}}));
    EXPECT_EQ(kep::MicronsToVoxel(kep::Vector3d<float>(11.25F, 20.375F, 33), frame.GetOffset(), frame.GetResolution()),
              kep::Vector3d<int>(2, 1, 1));
}

TEST_F(MeshFile, IsClosedAndCounterclockwiseFromOutside) {
    MakeFrame({10, 20, 30}, {2, 4, 0.5F});
    zel::SaveMesh(name, Surface(), frame);
    const PlyMesh mesh = ReadPly(name);
    ASSERT_EQ(mesh.triangles.size(), 8U);
    EXPECT_TRUE(GetShape(mesh.triangles.front().data(), mesh.triangles.size()).closed);
    // An octahedron fills a sixth of the box around it, here 0.5 * 0.25 * 2 / 6.
    EXPECT_NEAR(mesh.GetVolume(), 0.25 / 6, 1e-6);
}

TEST_F(MeshFile, CountsPixelsWhereTheVoxelSizeIsNotKnown) {
    MakeFrame({}, {});
    zel::SaveMesh(name, Surface(), frame);
    EXPECT_EQ(ReadPly(name).vertices.front(), (std::array<double, 3>{2.5, 1.5, 1})); // voxel (2, 1, 1), its near face
}

TEST_F(MeshFile, UsesDoublesWhereFloatsAreTooCoarse) {
    // Floats near 60000 are 1/256 apart, a voxel of 1/128 microns would have two places.
    MakeFrame({60000, 0, 0}, {128, 128, 128});
    zel::SaveMesh(name, Surface(), frame);
    EXPECT_THAT(ReadBytes(name), HasSubstr("property double x\nproperty double y\nproperty double z\n"
                                           "property float nx\n"));
    const PlyMesh mesh = ReadPly(name);
    EXPECT_EQ(mesh.vertices.at(1)[0], 60000 + 2.0 / 128); // the voxel's left face
    EXPECT_EQ(mesh.vertices.at(2)[0], 60000 + 3.0 / 128);
}

TEST_F(MeshFile, HoldsAnEmptySurfaceToo) {
    MakeFrame({}, {1, 1, 1});
    generator.GenerateSurfaces(frame.begin(), {{7, 0}}, 5, 4, 3, 1, 1, 1);
    zel::SaveMesh(name, Surface(), frame);
    const PlyMesh mesh = ReadPly(name);
    EXPECT_TRUE(mesh.vertices.empty());
    EXPECT_TRUE(mesh.triangles.empty());
}

TEST_F(MeshFile, HoldsMoreThanOneBlock) {
    // Voxels apart by two in all directions: 20 x 20 x 20 octahedra of 6 vertices and 8 triangles, nearly 2 MB.
    frame.MakeRoom(41, 41, 41);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> p = frame.GetPos(i);
        frame.SetVoxel(i, p.x % 2 == 1 && p.y % 2 == 1 && p.z % 2 == 1 ? 1 : 0);
    }
    generator.GenerateSurfaces(frame.begin(), {{1, 0}}, 41, 41, 41, 1, 1, 1);
    zel::SaveMesh(name, Surface(), frame);
    const PlyMesh mesh = ReadPly(name);
    EXPECT_EQ(mesh.vertices.size(), 48000U);
    ASSERT_EQ(mesh.triangles.size(), 64000U);
    EXPECT_TRUE(GetShape(mesh.triangles.front().data(), mesh.triangles.size()).closed);
    EXPECT_NEAR(mesh.GetVolume(), 8000.0 / 6, 0.01);
}

TEST_F(MeshFile, RefusesWhatItCannotNumberAndKeepsTheOldFile) {
    WriteBytes(name, "old");
    zel::detail::SurfaceArrays arrays;
    arrays.vertices.Append(3 * ((std::size_t{1} << 32) + 1)); // counted, not there: nothing may read them
    const zel::LabelSurface surface(5, std::move(arrays));
    try {
        zel::SaveMesh(name, surface, frame);
        ADD_FAILURE() << "not refused";
    } catch (const kep::IOException& error) {
        EXPECT_EQ(error.GetText(), "SaveMesh(): Cannot write the file '" + name +
                                       "': The mesh has 4294967297 vertices, more than its 32-bit indices can number.");
    }
    EXPECT_EQ(ReadBytes(name), "old");
}

TEST_F(MeshFile, SaysWhatCannotBeWritten) {
    MakeFrame({}, {1, 1, 1});
    try {
        zel::SaveMesh(folder / "missing/mesh.ply", Surface(), frame);
        ADD_FAILURE() << "not refused";
    } catch (const kep::IOException& error) {
        EXPECT_THAT(error.GetText(), HasSubstr("missing/mesh.ply"));
    }
}

} // namespace
