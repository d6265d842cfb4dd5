#include "model/zel_isosurfacegenerator.h"
#include "model/zel_volumesurfaces.h"
#include "model/zel_volumetexture.h"
#include "model/zel_wholemeshes.h"
#include "tests/model/matrix_near.h"

#include <array>
#include <limits>
#include <map>

using namespace zel;

namespace {

using Voxels = kep::Vector3d<std::size_t>;

Vector3f Apply(const Matrix4& matrix, const Vector3f& place) {
    const auto along = [&](std::size_t row) {
        return matrix[row] * place.x + matrix[row + 4] * place.y + matrix[row + 8] * place.z + matrix[row + 12];
    };
    return {along(0), along(1), along(2)};
}

/// Where the mesh has the middle of a voxel.
Vector3f InMesh(const MeshPlacement& placement, const Voxels& size, const Voxels& voxel) {
    return {static_cast<float>(voxel.x) * placement.cell.x, static_cast<float>(size.y - 1 - voxel.y) * placement.cell.y,
            static_cast<float>(voxel.z) * placement.cell.z};
}

/// Texture coordinates of the middle of a voxel, which has a border of one voxel before it.
Vector3f InTexture(const Voxels& size, const Voxels& voxel) {
    const auto along = [](std::size_t n, std::size_t at) {
        return (static_cast<float>(at) + 1.5F) / static_cast<float>(n + 2);
    };
    return {along(size.x, voxel.x), along(size.y, voxel.y), along(size.z, voxel.z)};
}

} // namespace

TEST(MeshPlacement, PutsEachVoxelOfACubeWhereTheVolumeHasIt) {
    const VoxelGrid grid{{4, 4, 4}, {0, 0, 0}, {1, 1, 1}};
    const MeshPlacement placement = PlaceMeshes(grid, grid);
    ExpectNear(placement.cell, {0.5F, 0.5F, 0.5F}); // 4 voxels from -1 to 1
    // Voxel 0 has its middle at -0.75. Row 0 is the highest of a mesh, at 3 cells, and the lowest of the volume.
    ExpectRows(placement.toObject, {1, 0, 0, -0.75F, 0, -1, 0, 0.75F, 0, 0, 1, -0.75F, 0, 0, 0, 1});
    ExpectNear(Apply(placement.toObject, {0, 1.5F, 0}), {-0.75F, -0.75F, -0.75F});
    ExpectNear(Apply(placement.toObject, {1.5F, 0, 1.5F}), {0.75F, 0.75F, 0.75F});
}

TEST(MeshPlacement, HasTheProportionsOfVoxels) {
    // In microns 4 / 2, 10 / 1, 6 / 0.5: z is the longest, and its 12 microns are 2.
    const VoxelGrid grid{{4, 10, 6}, {3, -7, 100}, {2, 1, 0.5F}};
    const MeshPlacement placement = PlaceMeshes(grid, grid);
    ExpectNear(placement.cell, {1 / 12.0F, 1 / 6.0F, 1 / 3.0F});
    // Half a cell behind the corner of the volume at (-2, -10, -12) / 12, and 9 cells of y further.
    ExpectRows(placement.toObject, {1, 0, 0, -1.5F / 12, 0, -1, 0, 9.0F / 12, 0, 0, 1, -10.0F / 12, 0, 0, 0, 1});
}

TEST(MeshPlacement, AgreesWithTheTextureAtAnyVoxelSize) {
    const Matrix4 identity = identityMatrix;
    for (const Voxels& size : {Voxels(37, 12, 90), Voxels(1, 1, 1), Voxels(6, 300, 2), Voxels(5, 7, 13)})
        for (const kep::Resolution& resolution : {kep::Resolution(1, 1, 1), kep::Resolution(3, 2, 0.7F),
                                                  kep::Resolution(0, 0, 0), kep::Resolution(0.01F, 20, 5)}) {
            const VoxelGrid grid{size, {1, 2, 3}, resolution};
            const MeshPlacement placement = PlaceMeshes(grid, grid);
            const Matrix4 toTexture = TextureMatrix(ComputeVolumeScale(size, resolution), identity, 0.0F);
            for (const Voxels& voxel : {Voxels(0, 0, 0), Voxels(size.x - 1, size.y - 1, size.z - 1),
                                        Voxels(size.x / 2, size.y / 3, size.z / 4)}) {
                const Vector3f object = Apply(placement.toObject, InMesh(placement, size, voxel));
                ExpectNear(Apply(toTexture, object), InTexture(size, voxel), 1e-5F);
            }
        }
}

TEST(MeshPlacement, HasTheCellsThatSurfacesHaveAnyway) {
    const VoxelGrid grid{{37, 12, 90}, {0, 0, 0}, {3, 2, 0.7F}};
    ExpectNear(PlaceMeshes(grid, grid).cell, ComputeIsosurfaceCells(grid.size, grid.resolution));
}

TEST(MeshPlacement, PutsLabelsOfAnotherGridWhereMicronsSay) {
    // The image is 8 microns long, from 10 to 18; labels of two microns each begin 2 microns further and end there.
    const VoxelGrid image{{8, 8, 8}, {10, 10, 10}, {1, 1, 1}}, labels{{3, 2, 1}, {12, 10, 14}, {0.5F, 0.5F, 0.5F}};
    const MeshPlacement placement = PlaceMeshes(image, labels);
    ExpectNear(placement.cell, {0.5F, 0.5F, 0.5F}); // 2 of 8 microns, which are 2
    // Middles of voxel 0 at 13, 11, 15 microns: (13 - 14) / 4, (11 - 14) / 4, (15 - 14) / 4.
    ExpectNear(Apply(placement.toObject, InMesh(placement, labels.size, {0, 0, 0})), {-0.25F, -0.75F, 0.25F});
    // The last at 17, 13, 15.
    ExpectNear(Apply(placement.toObject, InMesh(placement, labels.size, {2, 1, 0})), {0.75F, -0.25F, 0.25F});
}

TEST(MeshPlacement, TurnsTrianglesAndNormalsOutwards) {
    const VoxelGrid grid{{3, 3, 3}, {0, 0, 0}, {1, 2, 4}};
    const MeshPlacement placement = PlaceMeshes(grid, grid);
    std::array<unsigned short, 27> labels{};
    labels[13] = 1; // in the middle
    IsosurfaceGenerator generator;
    generator.GenerateSurfaces(labels.data(), {{1, 0}}, 3, 3, 3, placement.cell.x, placement.cell.y, placement.cell.z);
    const LabelSurface& mesh = generator.GetSurfaces()[0];
    ASSERT_EQ(mesh.GetTriangleCount(), 8U);
    const auto corner = [&](std::uint64_t vertex) {
        const float* const v = mesh.GetVertices() + 3 * vertex;
        return Apply(placement.toObject, {v[0], v[1], v[2]});
    };
    const auto dot = [](const Vector3f& a, const Vector3f& b) { return a.x * b.x + a.y * b.y + a.z * b.z; };
    const auto minus = [](const Vector3f& a, const Vector3f& b) { return Vector3f(a.x - b.x, a.y - b.y, a.z - b.z); };
    for (std::size_t i = 0; i < 24; i += 3) { // round the origin, so a corner is a direction out of the label
        const Vector3f p = corner(mesh.GetIndices()[i]), q = corner(mesh.GetIndices()[i + 1]),
                       r = corner(mesh.GetIndices()[i + 2]);
        EXPECT_GT(dot(Cross(minus(q, p), minus(r, p)), p), 0.0F) << "counterclockwise as seen from outside";
    }
    for (std::uint64_t vertex = 0; vertex < mesh.GetVertexCount(); ++vertex) {
        const float* const n = mesh.GetNormals() + 3 * vertex;
        const Vector3f turned = TurnDirection(placement.toObject, {n[0], n[1], n[2]});
        EXPECT_GT(dot(turned, corner(vertex)), 0.0F);
        EXPECT_NEAR(dot(turned, turned), 1.0F, 1e-5F) << "light takes them as they are";
    }
}

TEST(OpenGLMesh, HasVerticesThat32BitsNumber) {
    EXPECT_TRUE(FitsOpenGL(0, 0));
    EXPECT_TRUE(FitsOpenGL(4294967295U, 8589934590U));
    EXPECT_FALSE(FitsOpenGL(4294967296U, 1));
    EXPECT_FALSE(FitsOpenGL(std::numeric_limits<std::uint64_t>::max(), 1));
}

TEST(OpenGLMesh, HasNoMoreBytesThanOffsetsCount) {
    // 12 bytes a triangle: (2^63 - 1) / 12 = 768614336404564650.58.
    EXPECT_TRUE(FitsOpenGL(3, 768614336404564650U));
    EXPECT_FALSE(FitsOpenGL(3, 768614336404564651U));
    EXPECT_FALSE(FitsOpenGL(3, std::numeric_limits<std::uint64_t>::max())) << "12 of them would overflow";
}

TEST(OpenGLMesh, IsDrawnInPieces) {
    using Ranges = std::vector<TriangleRange>;
    EXPECT_EQ(SplitTriangles(0, 10), Ranges{});
    EXPECT_EQ(SplitTriangles(10, 10), (Ranges{{0, 10}}));
    EXPECT_EQ(SplitTriangles(25, 10), (Ranges{{0, 10}, {10, 10}, {20, 5}}));
    // 2^32 triangles have more indices than one call can count.
    const Ranges large = SplitTriangles(std::uint64_t{1} << 32, trianglesPerCall);
    ASSERT_EQ(large.size(), 4096U);
    EXPECT_EQ(large.back(), (TriangleRange{4293918720U, 1048576}));
    EXPECT_LE(3 * trianglesPerCall, static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max()));
}

TEST(OpenGLMesh, HasIndicesOf32Bits) {
    constexpr std::array<std::uint64_t, 4> wide{0, 65536, 4294967294U, 7};
    std::array<std::uint32_t, 5> narrow{1, 1, 1, 1, 1};
    NarrowIndices(wide.data(), wide.size(), narrow.data());
    EXPECT_EQ(narrow, (std::array<std::uint32_t, 5>{0, 65536, 4294967294U, 7, 1}));
}
